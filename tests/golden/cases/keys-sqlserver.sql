-- A SQL Server script: clustered keys and indexes, index options and file
-- groups, constraints added with WITH CHECK.

CREATE TABLE [dbo].[Warehouse](
	[WarehouseID] [int] IDENTITY(1,1) NOT NULL,
	[Code] [nvarchar](10) NOT NULL,
	[Name] [nvarchar](100) NULL,
 CONSTRAINT [PK_Warehouse] PRIMARY KEY CLUSTERED
(
	[WarehouseID] ASC
)WITH (PAD_INDEX = OFF, STATISTICS_NORECOMPUTE = OFF, IGNORE_DUP_KEY = OFF) ON [PRIMARY],
 CONSTRAINT [UQ_Warehouse_Code] UNIQUE NONCLUSTERED
(
	[Code] ASC
)
);

CREATE TABLE [dbo].[Bin](
	[BinID] [int] NOT NULL,
	[WarehouseID] [int] NOT NULL,
	[Label] [varchar](20) NULL,
	CONSTRAINT [PK_Bin] PRIMARY KEY NONCLUSTERED ([BinID]),
	CLUSTERED INDEX [CX_Bin_Warehouse] ([WarehouseID], [Label])
);

CREATE CLUSTERED INDEX [IX_Warehouse_Name] ON [dbo].[Warehouse]
(
	[Name] ASC
)WITH (SORT_IN_TEMPDB = OFF, DROP_EXISTING = OFF) ON [PRIMARY];

CREATE UNIQUE INDEX [IX_Bin_Label] ON [dbo].[Bin] ([WarehouseID], [Label]);

ALTER TABLE [dbo].[Bin]  WITH CHECK ADD  CONSTRAINT [FK_Bin_Warehouse] FOREIGN KEY([WarehouseID])
REFERENCES [dbo].[Warehouse] ([WarehouseID]);

ALTER TABLE [dbo].[Bin] CHECK CONSTRAINT [FK_Bin_Warehouse];

ALTER TABLE [dbo].[Bin] ADD  CONSTRAINT [DF_Bin_Label]  DEFAULT ('') FOR [Label];
