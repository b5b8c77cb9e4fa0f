/****** Object:  Database [Shop]    Script Date: 01/02/2024 10:00:00 ******/
USE [master]
GO
IF NOT EXISTS (SELECT name FROM sys.databases WHERE name = N'Shop')
BEGIN
CREATE DATABASE [Shop]
END
GO
USE [Shop]
GO
SET ANSI_NULLS ON
GO
SET QUOTED_IDENTIFIER ON
GO
/****** Object:  Table [dbo].[Order Details]    Script Date: 01/02/2024 10:00:00 ******/
IF NOT EXISTS (SELECT * FROM sys.objects WHERE object_id = OBJECT_ID(N'[dbo].[Order Details]') AND type in (N'U'))
BEGIN
CREATE TABLE [dbo].[Order Details](
	[OrderID] [int] NOT NULL,
	[Key] [nvarchar](40) NOT NULL,
	[Set] [money] NOT NULL CONSTRAINT [DF_Order_Details_Set]  DEFAULT ((0)),
	[Path] [nvarchar](260) NULL CONSTRAINT [DF_Order_Details_Path]  DEFAULT (N'C:\exports\'),
 CONSTRAINT [PK_Order_Details] PRIMARY KEY CLUSTERED
(
	[OrderID] ASC,
	[Key] ASC
)WITH (PAD_INDEX = OFF, STATISTICS_NORECOMPUTE = OFF) ON [PRIMARY]
) ON [PRIMARY]
END
GO
SET ANSI_PADDING OFF
GO
IF OBJECT_ID(N'[dbo].[Orders]', N'U') IS NOT NULL DROP TABLE [dbo].[Orders]
GO
CREATE TABLE [dbo].[Orders](
	[OrderID] [int] IDENTITY(1,1) NOT NULL,
	[Customer] [nchar](5) NULL,
	[Primary] [bit] NOT NULL,
	[Notes] [nvarchar](max) NULL
) ON [PRIMARY]
GO
CREATE NONCLUSTERED INDEX [IX_Orders_Customer] ON [dbo].[Orders]
(
	[Customer] ASC
) ON [PRIMARY]
GO
ALTER TABLE [dbo].[Order Details]  WITH CHECK ADD  CONSTRAINT [FK_Order_Details_Orders] FOREIGN KEY([OrderID])
REFERENCES [dbo].[Orders] ([OrderID])
GO
ALTER TABLE [dbo].[Order Details] CHECK CONSTRAINT [FK_Order_Details_Orders]
GO
PRINT 'done'
GO
