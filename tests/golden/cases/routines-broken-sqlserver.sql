-- SQL Server: a procedure whose body cannot be read costs only itself; the
-- batch after its GO is built.
CREATE TABLE t1 (id INT PRIMARY KEY) ON [PRIMARY]
GO
CREATE PROCEDURE dbo.broken AS
BEGIN
  IF (( @x = 1
  SELECT 1 FROM t1 WHERE id IN (1,
END
GO
CREATE TABLE after_broken (id INT PRIMARY KEY, t1_id INT REFERENCES t1 (id)) ON [fg2] TEXTIMAGE_ON [fg2]
GO
