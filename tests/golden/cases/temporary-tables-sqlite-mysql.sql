-- SQLite's TEMP and TEMPORARY tables, MySQL's TEMPORARY tables: plain tables.
CREATE TEMP TABLE s_temp (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL);
CREATE TEMPORARY TABLE IF NOT EXISTS s_temporary (id INTEGER, s_id INTEGER REFERENCES s_temp (id));
CREATE TEMPORARY TABLE m_scratch (n int unsigned NOT NULL, KEY n_idx (n)) ENGINE=MEMORY;
-- SQLite's virtual tables are no tables of the model: consumed without a record.
CREATE VIRTUAL TABLE docs USING fts5(title, body);
CREATE TABLE after_them (id INTEGER);
