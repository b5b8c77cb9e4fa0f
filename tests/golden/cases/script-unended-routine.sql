-- A procedure without its END takes the rest of the script with it.
CREATE TABLE a (id INT PRIMARY KEY);
CREATE OR REPLACE PROCEDURE p IS
BEGIN
  UPDATE a SET id = 1;
ALTER TABLE a ADD CONSTRAINT a_u UNIQUE (id);
INSERT INTO a VALUES (1);
