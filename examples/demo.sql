-- A small shop schema written the way real dumps mix dialects.
SET NAMES utf8mb4;
DROP TABLE IF EXISTS `order_line`;

CREATE TABLE `customer` (
  `id` int(11) unsigned NOT NULL AUTO_INCREMENT,
  `email` varchar(190) NOT NULL COMMENT 'login name',
  `name` varchar(100) CHARACTER SET utf8mb4 COLLATE utf8mb4_bin DEFAULT NULL,
  `created` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP,
  PRIMARY KEY (`id`),
  UNIQUE KEY `uq_email` (`email`),
  KEY `ix_name` (`name`(20))
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

CREATE TABLE public.product (
    id integer NOT NULL,
    title character varying(200) DEFAULT 'untitled'::character varying NOT NULL,
    price numeric(10,2) CHECK (price >= 0),
    tags text
);

CREATE TABLE "order" (
    id NUMBER(10) PRIMARY KEY,
    customer_id NUMBER(10) NOT NULL REFERENCES customer (id) ON DELETE CASCADE,
    placed DATE DEFAULT SYSDATE
);

CREATE TABLE order_line (
    order_id INTEGER NOT NULL,
    product_id INTEGER NOT NULL,
    quantity INTEGER DEFAULT 1,
    CONSTRAINT pk_order_line PRIMARY KEY (order_id, product_id),
    CONSTRAINT fk_line_product FOREIGN KEY (product_id) REFERENCES public.product (id)
);

ALTER TABLE ONLY public.product ADD CONSTRAINT product_pkey PRIMARY KEY (id);
CREATE INDEX ix_product_title ON public.product USING btree (title);

INSERT INTO customer (email, name) VALUES ('a@example.org', 'Ann');
GRANT SELECT ON customer TO reporting;
