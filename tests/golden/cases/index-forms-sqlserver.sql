-- Filtered indexes with included columns, and default constraints added by
-- ALTER TABLE: the column takes the default as a column definition would.
CREATE TABLE [dbo].[item] (
	[id] [int] NOT NULL,
	[sku] [nvarchar](40) NULL,
	[qty] [int] NOT NULL,
	[price] [money] NULL,
	[flag] [bit] NOT NULL,
	[stamp] [datetime] NULL,
 CONSTRAINT [PK_item] PRIMARY KEY CLUSTERED ([id] ASC) WITH (PAD_INDEX = OFF) ON [PRIMARY]
) ON [PRIMARY]
GO
CREATE NONCLUSTERED INDEX [IX_item_sku] ON [dbo].[item] ([sku] ASC, [qty] DESC) INCLUDE ([price], [flag]) WHERE ([sku] IS NOT NULL) WITH (PAD_INDEX = OFF, SORT_IN_TEMPDB = OFF) ON [PRIMARY]
GO
CREATE UNIQUE NONCLUSTERED INDEX [UX_item_sku] ON [dbo].[item] ([sku]) WHERE [sku] IS NOT NULL AND [qty] > 0
GO
ALTER TABLE [dbo].[item] ADD CONSTRAINT [DF_item_flag] DEFAULT ((0)) FOR [flag]
GO
ALTER TABLE [dbo].[item] ADD DEFAULT (getdate()) FOR [stamp]
GO
ALTER TABLE [dbo].[item] ADD
	CONSTRAINT [DF_item_qty] DEFAULT (1) FOR [qty],
	CONSTRAINT [DF_item_price] DEFAULT ('0') FOR [price]
GO
ALTER TABLE [dbo].[item] WITH CHECK ADD CONSTRAINT [CK_item_qty] CHECK (([qty]>=(0)))
GO
ALTER TABLE [dbo].[item] CHECK CONSTRAINT [CK_item_qty]
GO
ALTER TABLE [dbo].[item] NOCHECK CONSTRAINT [CK_item_qty]
GO
