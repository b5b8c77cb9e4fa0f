-- Function-based indexes: the entry is the expression's text.
CREATE TABLE emp (id NUMBER(10) NOT NULL, name VARCHAR2(60), salary NUMBER(10,2), bonus NUMBER(10,2));
CREATE INDEX emp_upper_name ON emp (UPPER(name));
CREATE INDEX emp_income ON emp (salary + NVL(bonus, 0) DESC, id) TABLESPACE users COMPUTE STATISTICS;
CREATE UNIQUE INDEX emp_trunc ON emp (TRUNC(salary, -2), id);
