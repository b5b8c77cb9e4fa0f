DEFINE owner = hr
CREATE TABLE &&owner..dept (
  id NUMBER(10) PRIMARY KEY,
  name VARCHAR2(30)
);
CREATE TABLE &owner..emp (
  id NUMBER(10) PRIMARY KEY,
  dept_id NUMBER(10) CONSTRAINT emp_dept REFERENCES &&owner..dept (id)
);
CREATE TABLE &1..job (id NUMBER(10));
CREATE TABLE &schema.hist (emp_id NUMBER(10));
ALTER TABLE &&owner..hist ADD CONSTRAINT hist_emp FOREIGN KEY (emp_id) REFERENCES &&owner..emp (id);
CREATE INDEX &&owner..emp_dept_i ON &&owner..emp (dept_id);
CREATE VIEW &&owner..emp_v AS SELECT e.id, d.name FROM &&owner..emp e JOIN &&owner..dept d ON e.dept_id = d.id;
