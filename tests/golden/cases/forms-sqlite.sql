-- A trailing comma, virtual tables and keyword names (SQLite).
CREATE TABLE "index" (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  desc TEXT NOT NULL,
  asc TEXT,
  column INTEGER DEFAULT 0,
);
CREATE VIRTUAL TABLE search USING fts5(title, body);
CREATE VIRTUAL TABLE IF NOT EXISTS search4 USING fts4(content="index", desc);
CREATE TABLE partition (
  id INTEGER,
  index_id INTEGER REFERENCES "index" (id),
  temporary INTEGER,
  cascade INTEGER,
  UNIQUE (temporary, cascade),
  FOREIGN KEY (index_id) REFERENCES index (id)
);
CREATE INDEX partition_index ON "partition" (index_id);
