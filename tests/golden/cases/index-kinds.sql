-- Index kinds of CREATE INDEX, and keyword names of tables in CREATE INDEX
-- and in view queries.
CREATE TABLE parcel (id NUMBER(10) NOT NULL, status CHAR(1), shape SDO_GEOMETRY);
CREATE BITMAP INDEX parcel_status ON parcel (status);
CREATE SPATIAL INDEX parcel_shape ON parcel (shape);
CREATE UNIQUE INDEX parcel_id ON parcel (id);

CREATE TABLE key (key INT NOT NULL, sort INT, value TEXT);
CREATE INDEX key_sort ON key (sort, key);
CREATE VIEW key_list AS SELECT key, sort FROM key;
CREATE VIEW key_pairs AS SELECT k.key, s.sort FROM key k JOIN key s ON s.key = k.sort;
