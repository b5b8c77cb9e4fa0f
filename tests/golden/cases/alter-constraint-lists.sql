-- Several constraints after one ALTER TABLE ... ADD (SQL Server), and the
-- index kinds that MySQL adds with ALTER TABLE.
CREATE TABLE dbo.Region (RegionId INT NOT NULL, Code CHAR(2) NOT NULL);
CREATE TABLE dbo.Depot (
    DepotId INT NOT NULL,
    RegionId INT NOT NULL,
    Capacity INT NOT NULL,
    Reserve INT NOT NULL,
    Label NVARCHAR(40) NULL
);
GO
ALTER TABLE dbo.Region ADD CONSTRAINT PK_Region PRIMARY KEY CLUSTERED (RegionId ASC);
ALTER TABLE dbo.Depot WITH CHECK ADD CONSTRAINT CK_Depot_Capacity CHECK (Capacity > 0), CHECK (Reserve >= 0),
    CONSTRAINT FK_Depot_Region FOREIGN KEY (RegionId) REFERENCES dbo.Region (RegionId),
    PRIMARY KEY (DepotId), UNIQUE (Label);
ALTER TABLE dbo.Depot CHECK CONSTRAINT CK_Depot_Capacity;

CREATE TABLE place (
  id int NOT NULL,
  name varchar(80) NOT NULL,
  notes text,
  area polygon NOT NULL,
  spot point NOT NULL
) ENGINE=InnoDB;
ALTER TABLE place
  ADD PRIMARY KEY (id),
  ADD UNIQUE KEY place_name (name(40)),
  ADD KEY place_by_name (name),
  ADD INDEX (notes(20)),
  ADD FULLTEXT KEY place_notes (notes),
  ADD SPATIAL KEY place_area (area),
  ADD SPATIAL INDEX (spot),
  ADD spatial geometry NULL;
-- Without KEY or INDEX after it the kind word adds nothing (and no record).
ALTER TABLE place ADD FULLTEXT place_text (name, notes), ADD FULLTEXT (notes);
