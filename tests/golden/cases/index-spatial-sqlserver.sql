-- SQL Server's spatial indexes: the grid method after USING and the
-- parenthesised lists of their options.
CREATE TABLE shapes (id INT PRIMARY KEY, geom geometry, place geography);
CREATE SPATIAL INDEX si ON shapes(geom) USING GEOMETRY_GRID
  WITH (BOUNDING_BOX = (0, 0, 500, 200), GRIDS = (LEVEL_1 = MEDIUM, LEVEL_2 = LOW),
        CELLS_PER_OBJECT = 64, PAD_INDEX = OFF) ON [PRIMARY];
CREATE SPATIAL INDEX sg ON shapes(place) USING GEOGRAPHY_GRID
  WITH (GRIDS = (MEDIUM, LOW, MEDIUM, HIGH), CELLS_PER_OBJECT = 16);
CREATE SPATIAL INDEX sa ON dbo.shapes(geom) USING GEOMETRY_AUTO_GRID
  WITH (BOUNDING_BOX = (XMIN = 0, YMIN = 0, XMAX = 500, YMAX = 200));
CREATE SPATIAL INDEX [sw] ON [dbo].[shapes]([geom]) WITH (BOUNDING_BOX = (0, 0, 10, 10)) ON [PRIMARY];
CREATE INDEX ih ON shapes USING hash (id);
CREATE INDEX ib ON shapes (id) USING BTREE;
-- Index options after INCLUDE or WHERE leave the entries after the index.
CREATE TABLE opts (a INT, b INT, INDEX i (a) INCLUDE (b) WITH (PAD_INDEX = OFF) ON [PRIMARY],
  INDEX j (b) WHERE b > 0 WITH (FILLFACTOR = 80), c INT);
