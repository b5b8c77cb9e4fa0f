-- T-SQL written without semicolons and without batch separators.
SET NOCOUNT ON
SET ANSI_NULLS ON
DECLARE @version INT
SET @version = 3
IF EXISTS (SELECT 1 FROM sys.tables WHERE name = 'Bin')
    DROP TABLE Bin
IF OBJECT_ID('Shelf') IS NOT NULL
BEGIN
    PRINT 'dropping Shelf'
    DROP TABLE Shelf
END
ELSE
    PRINT 'no Shelf'
CREATE TABLE Shelf (
    ShelfID INT NOT NULL PRIMARY KEY,
    Name NVARCHAR(20) NOT NULL
)
EXEC sp_rename 'Shelf.Name', 'Label', 'COLUMN'
CREATE TABLE Bin (
    BinID INT NOT NULL,
    ShelfID INT NOT NULL
)
INSERT INTO Shelf (ShelfID, Name) VALUES (1, 'A')
INSERT INTO Shelf (ShelfID, Name) VALUES (2, 'B')
ALTER TABLE Bin ADD CONSTRAINT FK_Bin_Shelf FOREIGN KEY (ShelfID) REFERENCES Shelf (ShelfID)
CREATE INDEX IX_Bin_Shelf ON Bin (ShelfID)
BEGIN TRAN
UPDATE Shelf
SET Name = 'C'
WHERE ShelfID = 2
COMMIT
PRINT 'done'
