't
PRO ";
CREATE OR";
CREATE TABLE after_remark (a INT);
INSERT INTO t VALUES (1,
PROMPT it's
'a;b');
CREATE TABLE last_one (z INT);
