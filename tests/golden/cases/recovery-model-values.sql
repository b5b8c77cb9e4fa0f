-- Values that recovery would have to make up are left unset; the records stay.
CREATE TABLE t1 (x VARCHAR(10, y INT);
CREATE TABLE t2 (x INT) TYPE=;
CREATE TABLE t3 (x INT DEFAULT , y INT ON UPDATE CURRENT_TIMESTAMP(, z INT) CHARACTER SET =;
-- Entries of ENUM and SET are strings; every error node gives one record.
CREATE TABLE t4 (e ENUM('x', 5), s SET(1), z INT, INDEX i (z, 5), INDEX j (z));
-- Primary-key columns take no sort order: reported, and the key is kept.
CREATE TABLE t5 (x INT, y INT, PRIMARY KEY (x DESC, y ASC));
