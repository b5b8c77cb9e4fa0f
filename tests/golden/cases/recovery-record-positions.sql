-- Each record names the line, position and token of its own error.
CREATE TABLE a (x INT) COMMENT 'c';
CREATE TABLE b (x INT) COMMENT 'c';
-- A failed prediction, then a dropped extra token in the next statement.
CREATE TABLE u (a INT DEFAULT (1 2), b INT);
CREATE TABLE v (a DECIMAL(10 2), b INT);
-- Several errors in one statement, one right after a repaired one.
CREATE TABLE w (a DECIMAL(10 2) b INT, c VARCHAR(5 6), d INT) ENGINE=;
CREATE TABLE y (a INT) COMMENT 'c' TYPE=;
ALTER TABLE v ADD CONSTRAINT PRIMARY KEY (a b);
CREATE TABLE z (a INT;
CREATE TABLE ok (a INT);
