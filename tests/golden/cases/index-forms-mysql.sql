-- SPATIAL keys, functional key parts, prefix lengths in keys, and index
-- options before or after the column list.
CREATE TABLE place (
  id int NOT NULL,
  code varchar(200) NOT NULL,
  shape geometry NOT NULL,
  area polygon NOT NULL,
  label varchar(40),
  a int, b int,
  PRIMARY KEY USING BTREE (id, code(100)),
  UNIQUE KEY uq_code (a, code(50)),
  SPATIAL KEY sp_shape (shape),
  SPATIAL INDEX (area),
  FULLTEXT KEY ft_label (label),
  KEY fx_label ((lower(label))),
  UNIQUE KEY uq_sum ((a + b)),
  KEY k_a (a) COMMENT 'by a',
  KEY k_b (b) USING BTREE,
  KEY k_ab USING HASH (a, b)
) ENGINE=InnoDB;
ALTER TABLE place ADD UNIQUE KEY uq_label (label(10), b), ADD KEY k_upper ((upper(label)));
