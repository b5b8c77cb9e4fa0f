-- SQLite columns without a type, lengths on any type word, keyword names.
CREATE TABLE kv (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  key NOT NULL,
  value,
  sort DEFAULT 0,
  slug UNIQUE ON CONFLICT REPLACE,
  parent REFERENCES kv (id),
  body text(65535) NOT NULL DEFAULT '',
  blob_data mediumblob(16777215),
  max INT,
  CHECK (length(slug) > 0)
);
CREATE INDEX kv_sort ON kv (sort, key);
CREATE TABLE setting (name TEXT PRIMARY KEY, value) WITHOUT ROWID, STRICT;
CREATE VIRTUAL TABLE doc_index USING fts5(title, body);
