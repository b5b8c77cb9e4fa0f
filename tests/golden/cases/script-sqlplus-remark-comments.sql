REM /* install notes: a comment opener on a REM line opens nothing
REM the lines below are still read
CREATE TABLE a (id NUMBER(10) PRIMARY KEY);
PROMPT /* creating */ tables
CREATE TABLE b (id NUMBER(10), a_id NUMBER(10) REFERENCES a (id));
REMARK /* never closed
Rem it's lower case too
CREATE TABLE c (id NUMBER(10));
/* an ordinary comment
   spans its lines */
CREATE TABLE d (id NUMBER(10));
