-- A procedure without its END stops before the next statement line: the
-- ALTER after it is applied, the INSERT is read as an INSERT.
CREATE TABLE a (id INT PRIMARY KEY);
CREATE OR REPLACE PROCEDURE p IS
BEGIN
  UPDATE a SET id = 1;
ALTER TABLE a ADD CONSTRAINT a_u UNIQUE (id);
INSERT INTO a VALUES (1);
CREATE TABLE b (id INT);
-- Bodies that close keep their unindented statements, whatever quotes them.
CREATE FUNCTION f() RETURNS trigger AS $_$
BEGIN
INSERT INTO b VALUES (1);
CREATE TEMP TABLE scratch (x INT);
DROP TABLE scratch;
RETURN NEW;
END;
$_$ LANGUAGE plpgsql;
CREATE FUNCTION g() RETURNS void AS $_body_$
BEGIN
ALTER TABLE b ADD COLUMN lost INT;
END;
$_body_$ LANGUAGE plpgsql;
CREATE PROCEDURE q AS
BEGIN
INSERT INTO b VALUES (2);
DELETE FROM b;
ALTER TABLE b ADD lost2 INT;
END;
CREATE TABLE c (id INT);
