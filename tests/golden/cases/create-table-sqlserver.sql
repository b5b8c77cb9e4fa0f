-- SQL Server script for a help desk.
CREATE TABLE [dbo].[Ticket] (
	[TicketID] [int] IDENTITY (1, 1) NOT NULL,
	[Title] [nvarchar] (200) NOT NULL,
	[Body] nvarchar(max) NULL,
	[Opened] [datetime] NOT NULL CONSTRAINT [DF_Ticket_Opened] DEFAULT (getdate()),
	[Priority] [tinyint] NOT NULL CONSTRAINT [DF_Ticket_Priority] DEFAULT ((3)),
	[Closed] [bit] NULL,
	"Owner" "varchar" (40) NULL,
	[Cost] [money] NULL CONSTRAINT [CK_Ticket_Cost] CHECK (Cost >= (0)),
	[Code] char(6) NOT NULL CONSTRAINT [PK_Ticket] PRIMARY KEY NONCLUSTERED WITH FILLFACTOR = 90,
	[Ref] uniqueidentifier CONSTRAINT [UQ_Ticket_Ref] UNIQUE CLUSTERED,
	[Pattern] varchar(20) CHECK (Pattern like '[A-Z]%' OR Pattern IS NULL),
	CONSTRAINT [CK_Ticket_Dates] CHECK (Opened <= getdate())
);

CREATE TABLE Comment (
	CommentID int IDENTITY NOT NULL,
	TicketID int NOT NULL CONSTRAINT FK_Comment_Ticket FOREIGN KEY REFERENCES Ticket (TicketID) ON DELETE CASCADE ON UPDATE NO ACTION,
	Body ntext NULL
);
