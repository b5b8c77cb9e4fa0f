-- A MySQL dump: keys and foreign keys inside the table definitions.

/*!40101 SET @OLD_CHARACTER_SET_CLIENT=@@CHARACTER_SET_CLIENT */;
/*!40101 SET NAMES utf8mb4 */;

DROP TABLE IF EXISTS `author`;
CREATE TABLE `author` (
  `author_id` int(10) unsigned NOT NULL AUTO_INCREMENT,
  `handle` varchar(64) NOT NULL,
  `bio` text,
  PRIMARY KEY (`author_id`),
  UNIQUE KEY `uq_handle` (`handle`),
  FULLTEXT KEY `ft_bio` (`bio`)
) ENGINE=InnoDB AUTO_INCREMENT=12 DEFAULT CHARSET=utf8mb4;

LOCK TABLES `author` WRITE;
/*!40000 ALTER TABLE `author` DISABLE KEYS */;
INSERT INTO `author` VALUES (1,'ann','Writes; a lot.'),(2,'bo',NULL);
/*!40000 ALTER TABLE `author` ENABLE KEYS */;
UNLOCK TABLES;

DROP TABLE IF EXISTS `post`;
CREATE TABLE `post` (
  `post_id` int(10) unsigned NOT NULL AUTO_INCREMENT,
  `author_id` int(10) unsigned NOT NULL,
  `slug` varchar(190) NOT NULL,
  `title` varchar(255) NOT NULL,
  `published_on` date DEFAULT NULL,
  PRIMARY KEY (`post_id`) USING BTREE,
  UNIQUE KEY `uq_author_slug` (`author_id`,`slug`(100)),
  KEY `idx_published` (`published_on` DESC),
  KEY `idx_title` (`title`(32)) USING HASH,
  CONSTRAINT `fk_post_author` FOREIGN KEY (`author_id`) REFERENCES `author` (`author_id`) ON DELETE CASCADE ON UPDATE NO ACTION
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `post_tag`;
CREATE TABLE `post_tag` (
  `post_id` int(10) unsigned NOT NULL,
  `tag` varchar(40) NOT NULL,
  `tagged_by` int(10) unsigned DEFAULT NULL,
  PRIMARY KEY (`post_id`,`tag`),
  KEY `fk_tagged_by` (`tagged_by`),
  CONSTRAINT `fk_tag_post` FOREIGN KEY (`post_id`) REFERENCES `post` (`post_id`) ON DELETE CASCADE,
  CONSTRAINT `fk_tag_author` FOREIGN KEY (`tagged_by`) REFERENCES `author` (`author_id`) ON DELETE SET NULL ON UPDATE RESTRICT
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

ALTER TABLE `post_tag`
  ADD KEY `idx_tag` (`tag`),
  ADD UNIQUE KEY `uq_tag_post` (`tag`,`post_id`),
  MODIFY `tag` varchar(40) NOT NULL COMMENT 'lower case';
