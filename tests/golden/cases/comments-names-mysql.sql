-- Column and table comments, keyword names and a trailing comma (MySQL).
CREATE TABLE `key` (
  `id` int(11) NOT NULL AUTO_INCREMENT COMMENT 'row id',
  sort int DEFAULT 0 COMMENT 'It''s the order',
  max varchar(20) COMMENT "double \"q\"",
  status tinyint NOT NULL,
  PRIMARY KEY (id),
  KEY sort_max (sort, max)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COMMENT='keys; with a semicolon';

CREATE TABLE sort (
  id int NOT NULL,
  key_id int REFERENCES key (id),
  value int,
  CONSTRAINT fk_sort FOREIGN KEY (value) REFERENCES `key` (sort),
);

CREATE TABLE level (a int, b int,) COMMENT = 'after the comma';
CREATE VIEW status AS SELECT id FROM sort;
ALTER TABLE max ADD CONSTRAINT m UNIQUE (a);
CREATE TABLE max (a int);
ALTER TABLE max ADD CONSTRAINT m UNIQUE (a);
