-- Statements that never end name their own start in a record.
CREATE TABLE a (id INT PRIMARY KEY);
CREATE TABLE b (id INT, a_id INT);
-- A real block keeps CREATE text in its strings.
DECLARE
  v_sql VARCHAR2(200) := 'CREATE TABLE x (id INT)';
BEGIN
  EXECUTE IMMEDIATE v_sql;
  EXECUTE IMMEDIATE 'CREATE TABLE y (id INT)';
END;
/
-- A column list that never closes runs into the next statement.
CREATE TABLE c (id INT,
  name VARCHAR(10)
CREATE TABLE d (id INT);
ALTER TABLE b ADD CONSTRAINT fk_b_a FOREIGN KEY (a_id) REFERENCES a (id);
CREATE INDEX b_a ON b (a_id);
-- A DECLARE whose BEGIN never comes ends at the next statement line.
DECLARE v_count INT;
CREATE TABLE e (id INT);
DECLARE v_total INT;
  v_name VARCHAR2(10);
ALTER TABLE e ADD CONSTRAINT e_pk PRIMARY KEY (id);
