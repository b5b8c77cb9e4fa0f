-- SQL Server table features of generated scripts.
CREATE TABLE [dbo].[invoice] (
  [id] [int] IDENTITY(1,1) NOT FOR REPLICATION NOT NULL,
  [ref] uniqueidentifier ROWGUIDCOL NOT NULL,
  [qty] int SPARSE NULL,
  [price] money NOT NULL,
  [total] AS ([qty] * [price]) PERSISTED,
  [doc] xml(CONTENT dbo.invoice_schema),
  [key] nvarchar(20) NULL,
  CONSTRAINT [PK_invoice] PRIMARY KEY CLUSTERED ([id] ASC)
    WITH (PAD_INDEX = OFF, STATISTICS_NORECOMPUTE = OFF, IGNORE_DUP_KEY = OFF, ONLINE = OFF,
          ALLOW_ROW_LOCKS = ON, ALLOW_PAGE_LOCKS = ON) ON [PRIMARY]
) ON [PRIMARY] TEXTIMAGE_ON [PRIMARY]
GO
CREATE TABLE line (id int NOT NULL PRIMARY KEY NONCLUSTERED, code char(4) UNIQUE CLUSTERED, note text)
GO
