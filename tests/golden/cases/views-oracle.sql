-- Oracle views: FORCE and editioning words, trailing options, MINUS.
CREATE TABLE emp (empno NUMBER(4) PRIMARY KEY, ename VARCHAR2(10), deptno NUMBER(2));

CREATE OR REPLACE FORCE EDITIONABLE VIEW scott.emp_names (no, name) AS
  SELECT e.empno, e.ename FROM emp e, dept d WHERE e.deptno = d.deptno(+)
  WITH READ ONLY;

CREATE OR REPLACE NOFORCE NONEDITIONABLE VIEW dept_list AS
  SELECT d.deptno, LISTAGG(e.ename, ',') WITHIN GROUP (ORDER BY e.ename) names
  FROM dept d LEFT OUTER JOIN emp e ON e.deptno = d.deptno
  GROUP BY d.deptno
  MINUS
  SELECT deptno, NULL FROM closed_dept
  WITH CHECK OPTION CONSTRAINT dept_list_ck;

CREATE VIEW managers AS
  SELECT empno, ename, LEVEL lvl FROM emp START WITH mgr IS NULL CONNECT BY PRIOR empno = mgr;

CREATE TABLE after_views (id NUMBER);
