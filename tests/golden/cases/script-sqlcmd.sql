:setvar DatabaseName "Inventory"
:setvar SchemaName "stock"
:on error exit
:r .\Schema\Types.sql
USE [$(DatabaseName)]
GO
BEGIN TRANSACTION
GO
CREATE TABLE [$(SchemaName)].[Item] (
	[ItemID] int NOT NULL PRIMARY KEY,
	[Label] nvarchar(50) NULL
)
GO
EXEC sp_addextendedproperty @name = N'MS_Description', @value = N'Items on hand',
	@level0type = N'SCHEMA', @level0name = N'dbo'
GO
RAISERROR (N'Created %s', 0, 1, N'Item') WITH NOWAIT
COMMIT
GO
CREATE TABLE dbo.Stock (ItemID int NOT NULL REFERENCES [$(SchemaName)].[Item] (ItemID), Qty int)
GO 2
