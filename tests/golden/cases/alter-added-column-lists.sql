-- SQL Server adds several columns after one ADD, without COLUMN, mixed with
-- constraints; added columns are read and not applied, the constraints are.
CREATE TABLE t (a INT NOT NULL, z INT);
ALTER TABLE t ADD b INT, c INT;
ALTER TABLE t ADD c2 INT NULL, CONSTRAINT pk_t PRIMARY KEY (a);
ALTER TABLE t ADD CONSTRAINT uq_t UNIQUE (z), d [nvarchar](50) NOT NULL, e INT CONSTRAINT df_e DEFAULT 0;
ALTER TABLE [dbo].[t] ADD [f] [int] NULL, [g] [datetime] NOT NULL, CONSTRAINT ck_t CHECK (z > 0);
-- Options and actions after a comma are still what they were.
ALTER TABLE t ADD h INT, DROP COLUMN c;
ALTER TABLE t ADD COLUMN i INT, ENGINE = InnoDB, DEFAULT CHARSET utf8;
