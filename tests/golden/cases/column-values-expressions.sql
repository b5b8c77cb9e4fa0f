-- DEFAULT values joined by operators, and DEFAULT, CHECK and generated
-- expressions of any form in parentheses: the texts are kept as written.
CREATE TABLE oracle_defaults (
  expires DATE DEFAULT SYSDATE + 30 NOT NULL,
  due DATE DEFAULT TRUNC(SYSDATE) + 1,
  code VARCHAR2(10) DEFAULT 'A' || 'B',
  n NUMBER DEFAULT 2 * 3.5
);
CREATE TABLE postgres_defaults (
  id integer DEFAULT nextval('postgres_defaults_id_seq'::regclass) NOT NULL,
  created timestamp with time zone DEFAULT now() NOT NULL,
  valid_until timestamp DEFAULT now() + interval '1 day',
  yesterday date DEFAULT CURRENT_DATE - 1,
  day date DEFAULT ('now'::text)::date,
  tags text[] DEFAULT '{}'::text[],
  labels character varying(20)[] DEFAULT ARRAY[]::character varying[],
  kinds text[] DEFAULT ARRAY['a'::text, 'b'::text] NOT NULL,
  grid integer[] DEFAULT ARRAY[[1, 2], [3, 4]],
  picks integer[] DEFAULT ARRAY[1, 2]::integer[] CHECK (picks <@ ARRAY[1, 2, 3]),
  utc timestamp DEFAULT timezone('utc'::text, now()),
  local_ts timestamp DEFAULT (now() AT TIME ZONE 'utc'),
  doc jsonb DEFAULT '{}'::jsonb NOT NULL,
  name text COLLATE pg_catalog."default" NOT NULL,
  status text CHECK (status = ANY (ARRAY['new'::text, 'done'::text])),
  email text CHECK (email ~* '^[^@]+@[^@]+$'),
  score integer CHECK (CASE WHEN score > 0 THEN true ELSE false END),
  total numeric GENERATED ALWAYS AS (score * 2) STORED,
  CONSTRAINT recent CHECK (created > now() - interval '1 year')
);
CREATE TABLE mysql_defaults (
  ends DATETIME DEFAULT (CURRENT_TIMESTAMP + INTERVAL 1 DAY),
  slug VARCHAR(20) DEFAULT (lower(concat('a', 'b'))),
  total INT AS (price * qty) VIRTUAL,
  price INT,
  qty INT
);
CREATE TABLE [dbo].[sqlserver_defaults] (
  [id] [int] NOT NULL,
  [created] [datetime] NOT NULL DEFAULT (getdate()),
  [flag] [bit] NOT NULL DEFAULT ((0)),
  [amount] [money] NULL CHECK ([amount]>=(0)),
  [code] [nchar](3) NULL DEFAULT (N'abc')
);
-- A parenthesis that never closes stops at the next entry.
CREATE TABLE unclosed (id INT, d INT DEFAULT (1, e INT, c INT CHECK (c > 0, f INT);
