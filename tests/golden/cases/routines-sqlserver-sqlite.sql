-- SQL Server routines up to GO, and SQLite triggers.
CREATE TABLE orders (id INT PRIMARY KEY, total INT)
GO
CREATE PROCEDURE dbo.order_total @id INT AS
    SET NOCOUNT ON;
    SELECT total FROM orders WHERE id = @id;
GO
CREATE OR ALTER FUNCTION dbo.twice (@x INT) RETURNS INT
AS
BEGIN
    DECLARE @y INT;
    SET @y = @x * 2;
    IF @y > 10 BEGIN SET @y = 10; END
    RETURN @y;
END
GO
CREATE TRIGGER orders_ins ON orders AFTER INSERT AS
BEGIN
    UPDATE orders SET total = 0 WHERE total IS NULL;
END
GO
CREATE TRIGGER IF NOT EXISTS orders_upd AFTER UPDATE ON orders
FOR EACH ROW WHEN new.total < 0
BEGIN
    UPDATE orders SET total = 0 WHERE id = new.id;
    SELECT CASE WHEN new.total IS NULL THEN RAISE(ABORT, 'no; total') END;
END;
CREATE TABLE order_line (id INT PRIMARY KEY, order_id INT REFERENCES orders (id))
GO
