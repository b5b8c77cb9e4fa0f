# One script mixing dialects, keyword names, duplicates and mistakes.
CREATE TABLE date (type INT, comment TEXT, year YEAR, minute INT, check INT, `date` DATE);

CREATE TABLE a.b.c (id INT);

CREATE OR REPLACE TABLE crm.contact (
  id INT NOT NULL,
  Id VARCHAR(10),
  email varchar(100) DEFAULT 'nobody@example.org' /* fallback */,
  ID CHAR(2),
  phone VARCHAR(20) CHECK (phone LIKE '+%'  -- international only
     AND length(phone) > 4),
  note TEXT
);

CREATE TABLE broken (
  ok1 INT NOT NULL,
  bad INT DEFAULT 1 + 2 NOT NULL,
  ok2 VARCHAR(5),
  worse INT FOO BAR (1, 2),
  ok3 DATE
);

CREATE TABLE gap (a INT, , b INT);

CREATE TABLE unclosed (a INT, b INT;

CREATE TABLE after_mistakes (x INT DEFAULT 0, y INT DEFAULT (x * 2) CHECK (y <> x));

CREATE TABLE last_one (z INT);
