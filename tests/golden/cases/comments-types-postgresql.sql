-- Comments, dollar quotes, array and interval types and the statements that
-- are consumed without records (PostgreSQL).
CREATE EXTENSION IF NOT EXISTS "uuid-ossp" WITH SCHEMA public;
CREATE SCHEMA app AUTHORIZATION owner_role;
CREATE SCHEMA IF NOT EXISTS audit;
CREATE TYPE app.mood AS ENUM ('sad', 'ok', 'happy');
CREATE TYPE app.pair AS (a integer, b text);
CREATE DOMAIN app.posint AS integer CHECK (VALUE > 0);
CREATE SEQUENCE app.doc_id_seq AS bigint START WITH 1 INCREMENT BY 1 NO MINVALUE NO MAXVALUE CACHE 1;

COMMENT ON TABLE app.doc IS 'made before the table: dropped';

CREATE TABLE app.doc (
    id bigint DEFAULT nextval('app.doc_id_seq'::regclass) NOT NULL,
    title text DEFAULT $$untitled$$ NOT NULL,
    body text DEFAULT $body$a; "quoted" $$ inside$body$::text,
    code varchar(8) CHECK (code <> $$none$$ AND code <> $t$x$t$),
    tags text ARRAY,
    grid int ARRAY[4],
    names varchar(10)[],
    span interval,
    precise interval(3),
    window_ interval day to second(3),
    key text,
    type integer
);

COMMENT ON TABLE app.doc IS 'Documents';
COMMENT ON COLUMN app.doc.title IS 'The title, ''quoted''';
COMMENT ON COLUMN app.doc.key IS $$dollar comment$$;
COMMENT ON COLUMN doc.body IS E'escape string';
COMMENT ON COLUMN app.doc.type IS 'removed next';
COMMENT ON COLUMN app.doc.type IS NULL;
COMMENT ON COLUMN app.doc.missing IS 'no such column';
COMMENT ON COLUMN app.nothing.x IS 'no such table';
COMMENT ON INDEX app.doc_pkey IS 'index comments are not kept';
COMMENT ON FUNCTION app.f(integer) IS 'nor function comments';
COMMENT ON SCHEMA app IS 'nor schema comments';
COMMENT ON EXTENSION "uuid-ossp" IS 'nor extension comments';

ALTER TABLE ONLY app.doc ADD CONSTRAINT doc_pkey PRIMARY KEY (id);
CREATE TABLE interval (id integer, doc_id bigint REFERENCES app.doc);
ALTER TABLE interval ADD CONSTRAINT interval_pkey PRIMARY KEY (id);
