-- Views as a MySQL dump writes them: inside executable comments, with the
-- SET lines around them, and as hand-written DDL.
/*!40101 SET @saved_cs_client = @@character_set_client */;
/*!40101 SET character_set_client = utf8mb4 */;
CREATE TABLE `shop` (
  `id` int NOT NULL,
  `owner` varchar(40) DEFAULT NULL,
  PRIMARY KEY (`id`)
) ENGINE=InnoDB /*!50100 COMMENT='stores' */;
/*!40000 ALTER TABLE `shop` DISABLE KEYS */;

/*!50001 CREATE ALGORITHM=UNDEFINED */
/*!50013 DEFINER=`admin`@`%` SQL SECURITY DEFINER */
/*!50001 VIEW `shop_sales` AS select `s`.`id` AS `id`,count(distinct `o`.`item`) AS `items`,group_concat(`o`.`item` order by `o`.`item` ASC separator ', ') AS `names` from (`shop` `s` left join `orders` `o` on(((`o`.`shop` = `s`.`id`) and (`o`.`state` <> 'void')))) group by `s`.`id` */;

CREATE OR REPLACE ALGORITHM=MERGE DEFINER=CURRENT_USER SQL SECURITY INVOKER VIEW archive.big_orders (id, amount) AS
    SELECT o.id, o.qty * o.price + 1 FROM orders AS o
    WHERE o.qty > 10 OR (o.price > 100 AND o.id IN (SELECT order_id FROM flagged))
    WITH CASCADED CHECK OPTION;

CREATE VIEW labels AS
    SELECT id, CASE WHEN qty > 1 THEN 'many' ELSE 'one' END AS label, IF(qty > 0, 1, 0) in_stock,
           EXTRACT(YEAR FROM created) AS y, SUBSTRING(name FROM 1 FOR 3) short
    FROM orders
    UNION ALL
    (SELECT id, 'archived', 0, 0, '' FROM old_orders)
    ORDER BY id DESC LIMIT 10 OFFSET 5;

CREATE VIEW per_shop AS
    SELECT t.shop, t.n FROM (SELECT shop, COUNT(*) AS n FROM orders GROUP BY shop HAVING COUNT(*) > 2) AS t
    JOIN shop ON shop.id = t.shop;

-- A query that is no SELECT: a record, no view, and the next table is built.
CREATE VIEW broken AS SELECT a FROM t x y;
CREATE TABLE after_broken (id INT);
