-- A MySQL dump of a small library catalogue, with engine options.
/*!40101 SET @saved_cs_client     = @@character_set_client */;
/*!40101 SET character_set_client = utf8 */;

DROP TABLE IF EXISTS `author`;
CREATE TABLE `author` (
  `author_id` int(10) unsigned NOT NULL AUTO_INCREMENT,
  `pen_name` varchar(120) CHARACTER SET utf8mb4 COLLATE utf8mb4_bin NOT NULL DEFAULT '' COMMENT 'as printed',
  `born` year(4) DEFAULT NULL,
  `rating` tinyint(1) unsigned zerofill DEFAULT '0',
  `active` bit(1) NOT NULL DEFAULT b'1',
  `balance` decimal(12,2) NOT NULL DEFAULT -0.50,
  `kind` enum('person','collective') NOT NULL DEFAULT 'person',
  `tags` set('a','b','c') DEFAULT NULL,
  `bio` mediumtext,
  `updated` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP,
  `touched` datetime(3) DEFAULT CURRENT_TIMESTAMP(3) ON UPDATE CURRENT_TIMESTAMP(3),
  `seen` timestamp NULL DEFAULT NULL ON UPDATE NOW()
) ENGINE=InnoDB AUTO_INCREMENT=1201 DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_unicode_ci COMMENT='writers';

CREATE TABLE IF NOT EXISTS shelf (
  shelf_no smallint NOT NULL,
  label char(8) binary,
  capacity mediumint DEFAULT 40
) TYPE=MyISAM, PACK_KEYS=1, CHECKSUM=1, DELAY_KEY_WRITE=0, ROW_FORMAT=DYNAMIC, MAX_ROWS=100000 MIN_ROWS = 10
  AVG_ROW_LENGTH=64 KEY_BLOCK_SIZE=8 INSERT_METHOD=LAST CHARACTER SET latin1;

CREATE TEMPORARY TABLE scratch (n int) ENGINE=MEMORY;

CREATE TABLE loans_archive (loan_id bigint(20) NOT NULL) ENGINE=MRG_MyISAM UNION=(loans_2019,loans_2020)
  DATA DIRECTORY='/srv/data' INDEX DIRECTORY='/srv/index' DEFAULT CHARACTER SET = 'utf8' DEFAULT COLLATE utf8_general_ci;

INSERT INTO `author` VALUES (1,'Anon','1900',0,b'1',0.00,'person',NULL,NULL,NOW(),NOW(),NULL);
