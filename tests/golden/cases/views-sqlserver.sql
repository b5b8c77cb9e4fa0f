-- SQL Server views: TOP, table hints, APPLY, SCHEMABINDING.
CREATE TABLE dbo.Orders (OrderID int NOT NULL PRIMARY KEY, CustomerID nchar(5), Freight money);

CREATE VIEW dbo."Top Orders" WITH SCHEMABINDING AS
SELECT TOP 10 PERCENT o.OrderID, o.Freight, c.CompanyName
FROM dbo.Orders AS o WITH (NOLOCK)
INNER JOIN dbo.Customers c ON c.CustomerID = o.CustomerID
CROSS APPLY (SELECT TOP (1) d.ProductID FROM dbo."Order Details" d WHERE d.OrderID = o.OrderID) AS first_line
ORDER BY o.Freight DESC;

CREATE VIEW dbo.OrderTotals AS
SELECT DISTINCT OrderID, CONVERT(money, SUM(UnitPrice * Quantity * (1 - Discount) / 100) * 100) AS Subtotal
FROM "Order Details" od
GROUP BY OrderID;

CREATE TABLE dbo.AfterViews (ID int);
