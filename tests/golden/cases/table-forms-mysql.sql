-- MySQL generated columns, column option words and keyword column names.
CREATE TABLE `shape` (
  `id` int NOT NULL AUTO_INCREMENT,
  key varchar(32) NOT NULL,
  index int(11) NOT NULL DEFAULT '0',
  fulltext text,
  desc varchar(100) INVISIBLE,
  w int, h int,
  area int AS (w * h) VIRTUAL,
  perimeter int GENERATED ALWAYS AS (2 * (w + h)) STORED,
  pos point NOT NULL SRID 4326,
  PRIMARY KEY (`id`),
  UNIQUE KEY `uk_key` (key),
  KEY `k_index` (index, desc),
  FULLTEXT KEY `ft` (fulltext)
) ENGINE=InnoDB;
CREATE TABLE `note` (
  `id` int NOT NULL,
  `body` varchar(200) NOT NULL,
  `rank` int DEFAULT (`id` + 1),
  PRIMARY KEY USING BTREE (`id`),
  UNIQUE KEY `uk_body` (`id`, `body`(100)),
  KEY `k_body` (`body`) COMMENT 'lookups by body',
  CONSTRAINT `positive` CHECK (`id` > 0) /*!80016 NOT ENFORCED */,
  CHECK (`rank` < 10)
) ENGINE=InnoDB;
