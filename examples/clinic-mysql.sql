-- A veterinary clinic, as a MySQL dump writes it.
/*!40101 SET NAMES utf8mb4 */;
SET FOREIGN_KEY_CHECKS=0;

DROP TABLE IF EXISTS `owner`;
CREATE TABLE `owner` (
  `id` int unsigned NOT NULL AUTO_INCREMENT,
  `first_name` varchar(60) NOT NULL,
  `last_name` varchar(60) NOT NULL,
  `phone` varchar(24) DEFAULT NULL,
  `email` varchar(190) DEFAULT NULL,
  PRIMARY KEY (`id`),
  UNIQUE KEY `uq_owner_email` (`email`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `species`;
CREATE TABLE `species` (
  `code` char(3) NOT NULL,
  `label` varchar(40) NOT NULL,
  PRIMARY KEY (`code`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `pet`;
CREATE TABLE `pet` (
  `id` int unsigned NOT NULL AUTO_INCREMENT,
  `owner_id` int unsigned NOT NULL,
  `species_code` char(3) NOT NULL,
  `name` varchar(60) NOT NULL,
  `born` date DEFAULT NULL,
  `chip` varchar(15) DEFAULT NULL,
  PRIMARY KEY (`id`),
  KEY `ix_pet_owner` (`owner_id`),
  CONSTRAINT `fk_pet_owner` FOREIGN KEY (`owner_id`) REFERENCES `owner` (`id`) ON DELETE CASCADE,
  CONSTRAINT `fk_pet_species` FOREIGN KEY (`species_code`) REFERENCES `species` (`code`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `vet`;
CREATE TABLE `vet` (
  `id` smallint unsigned NOT NULL AUTO_INCREMENT,
  `name` varchar(100) NOT NULL,
  `licence` varchar(20) NOT NULL,
  PRIMARY KEY (`id`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `visit`;
CREATE TABLE `visit` (
  `id` int unsigned NOT NULL AUTO_INCREMENT,
  `pet_id` int unsigned NOT NULL,
  `vet_id` smallint unsigned DEFAULT NULL,
  `starts_at` datetime NOT NULL,
  `reason` varchar(255) NOT NULL,
  `notes` text,
  PRIMARY KEY (`id`),
  CONSTRAINT `fk_visit_pet` FOREIGN KEY (`pet_id`) REFERENCES `pet` (`id`),
  CONSTRAINT `fk_visit_vet` FOREIGN KEY (`vet_id`) REFERENCES `vet` (`id`) ON DELETE SET NULL
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

DROP TABLE IF EXISTS `treatment`;
CREATE TABLE `treatment` (
  `visit_id` int unsigned NOT NULL,
  `line` tinyint unsigned NOT NULL,
  `drug` varchar(80) NOT NULL,
  `dose_mg` decimal(8,2) DEFAULT NULL,
  `price` decimal(10,2) NOT NULL DEFAULT '0.00',
  PRIMARY KEY (`visit_id`,`line`),
  CONSTRAINT `fk_treatment_visit` FOREIGN KEY (`visit_id`) REFERENCES `visit` (`id`) ON DELETE CASCADE
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

SET FOREIGN_KEY_CHECKS=1;
