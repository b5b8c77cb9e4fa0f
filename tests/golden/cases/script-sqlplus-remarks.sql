REM don't lose the next table
CREATE TABLE a (id NUMBER(10) PRIMARY KEY);
PROMPT it's done, creating b
CREATE TABLE b (note VARCHAR2(10) DEFAULT 'x', a_id NUMBER(10) REFERENCES a (id));
REMARK a closed 'quote' stays on its line
PRO "double quotes too
CREATE TABLE c (id NUMBER(10));
