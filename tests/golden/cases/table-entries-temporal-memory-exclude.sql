-- SQL Server's system-versioned and memory-optimized tables: the period
-- columns, PERIOD FOR SYSTEM_TIME, HASH indexes and their bucket counts, and
-- the table options leave the columns, keys and indexes as written.
CREATE TABLE dbo.Employee (
  EmployeeID INT NOT NULL PRIMARY KEY CLUSTERED,
  Name NVARCHAR(100) NOT NULL,
  ValidFrom DATETIME2 GENERATED ALWAYS AS ROW START HIDDEN NOT NULL,
  ValidTo DATETIME2 GENERATED ALWAYS AS ROW END HIDDEN NOT NULL,
  PERIOD FOR SYSTEM_TIME (ValidFrom, ValidTo),
  Salary DECIMAL(10, 2) NULL
) WITH (SYSTEM_VERSIONING = ON (HISTORY_TABLE = dbo.EmployeeHistory, DATA_CONSISTENCY_CHECK = ON));
CREATE TABLE dbo.Session (
  SessionId INT NOT NULL PRIMARY KEY NONCLUSTERED HASH WITH (BUCKET_COUNT = 1024),
  UserId INT NOT NULL,
  Created DATETIME2 NOT NULL,
  INDEX ix_user HASH (UserId) WITH (BUCKET_COUNT = 256),
  INDEX ix_created NONCLUSTERED (Created),
  CONSTRAINT uq_session UNIQUE NONCLUSTERED HASH (UserId, Created) WITH (BUCKET_COUNT = 512)
) WITH (MEMORY_OPTIMIZED = ON, DURABILITY = SCHEMA_ONLY);
CREATE TABLE dbo.Cart (
  CartId INT NOT NULL,
  CONSTRAINT pk_cart PRIMARY KEY NONCLUSTERED HASH (CartId) WITH (BUCKET_COUNT = 64),
  Total MONEY
) WITH (MEMORY_OPTIMIZED = ON);
-- MariaDB's system versioning.
CREATE TABLE prices (
  id INT PRIMARY KEY,
  amount DECIMAL(8, 2),
  row_start TIMESTAMP(6) GENERATED ALWAYS AS ROW START INVISIBLE,
  row_end TIMESTAMP(6) GENERATED ALWAYS AS ROW END INVISIBLE,
  PERIOD FOR SYSTEM_TIME(row_start, row_end)
);
-- PostgreSQL's exclusion constraints, in the table and added later; a column
-- named exclude or period is still a column.
CREATE TABLE booking (
  id integer NOT NULL,
  room integer NOT NULL,
  during tsrange NOT NULL,
  exclude boolean,
  period integer,
  EXCLUDE USING gist (room WITH =, during WITH &&),
  CONSTRAINT no_overlap EXCLUDE USING gist (room WITH =, during WITH &&) INCLUDE (id)
    WITH (fillfactor = 70) WHERE (id > 0) DEFERRABLE INITIALLY DEFERRED,
  CONSTRAINT booking_pk PRIMARY KEY (id)
);
ALTER TABLE ONLY booking ADD CONSTRAINT room_during_excl EXCLUDE USING gist (room WITH =, during WITH &&);
ALTER TABLE booking ADD EXCLUDE (room WITH =);
ALTER TABLE booking ADD CONSTRAINT booking_room_fk FOREIGN KEY (room) REFERENCES booking (id);
