-- Statements the model does not hold are consumed whole.
;;
GRANT SELECT, INSERT ON accounts TO reporting;
DELIMITER ;;
SOURCE load_departments.dump ;
source load_employees.dump
DECLARE
  n NUMBER;
BEGIN
  IF n > 0 THEN
    n := 0;
  END IF;
  BEGIN NULL; END;
END;
/
BEGIN TRANSACTION;
INSERT INTO accounts VALUES (1, 'It''s; not the end');
DROP TABLE IF EXISTS accounts;
CREATE DATABASE shop;
CREATE INSTRUCTION foo;
CREATE USER admin IDENTIFIED BY 'x';
ALTER SESSION SET NLS_DATE_FORMAT = 'YYYY-MM-DD';
ALTER VIEW v RENAME TO w;
COMMIT;
