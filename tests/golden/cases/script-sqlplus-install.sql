REM  Installs the library schema.
REM  Run as the schema owner.
SET ECHO OFF
SET FEEDBACK 1
SET DEFINE ON
WHENEVER SQLERROR EXIT SQL.SQLCODE
SPOOL lib_install.log
DEFINE owner = &1
CONNECT &&owner/&&password@orcl
PROMPT Creating tables ...
@@lib_types.sql
CREATE TABLE app$log (
  log#    NUMBER(10) NOT NULL,
  message VARCHAR2(200) DEFAULT 'C:\logs\',
  CONSTRAINT app$log_pk PRIMARY KEY (log#)
)
/
CREATE TABLE emp#hist (
  id      NUMBER(10),
  log_ref NUMBER(10) REFERENCES app$log (log#)
);
/
CREATE SEQUENCE app$log_seq START WITH 1
/
CREATE OR REPLACE TRIGGER app$log_bi BEFORE INSERT ON app$log FOR EACH ROW
BEGIN
  SELECT app$log_seq.NEXTVAL INTO :new.log# FROM dual;
END;
/
SHOW ERRORS
COLUMN name FORMAT a30
PROMPT Creating indexes ...
CREATE INDEX emp#hist_ix ON emp#hist (log_ref)
/
EXEC dbms_stats.gather_schema_stats('&&owner')
SPOOL OFF
EXIT
