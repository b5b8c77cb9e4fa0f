-- SQLite views: TEMP, IF NOT EXISTS, sub-selects in the select list.
CREATE TABLE artist (id INTEGER PRIMARY KEY, name TEXT);

CREATE TEMP VIEW IF NOT EXISTS artist_albums AS
SELECT a.name COLLATE NOCASE AS artist,
       (SELECT COUNT(*) FROM album WHERE album.artist_id = a.id) AS albums,
       CAST(a.id AS TEXT) || '-' || a.name AS code
FROM artist a
LEFT JOIN album b USING (id)
WHERE a.id NOT IN (SELECT artist_id FROM banned) AND b.title LIKE 'A%';

CREATE VIEW "Album Names" AS SELECT title FROM main.album;

CREATE TABLE after_views (id INTEGER);
