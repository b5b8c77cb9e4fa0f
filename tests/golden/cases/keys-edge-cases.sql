-- Keys at their edges: action codes, which name a foreign key gets, keys
-- without target columns, unknown columns, statements out of order, and the
-- resolution of every kind of reference after the parse.

-- Constraints added before their table exist are lost (one record each);
-- so is an index on a table that does not exist (silently).
ALTER TABLE parent ADD CONSTRAINT parent_pk PRIMARY KEY (id);
CREATE INDEX early_idx ON parent (id);
CREATE INDEX nowhere_idx ON nowhere (id);

CREATE TABLE parent (
  id INT,
  k1 INT,
  k2 INT,
  PRIMARY KEY (k1, k2),
  UNIQUE (id)
);

CREATE TABLE child (
  a INT REFERENCES parent (id) ON DELETE CASCADE ON UPDATE SET DEFAULT,
  b INT,
  c INT,
  d INT,
  e INT,
  f INT,
  g INT,
  CONSTRAINT c_name FOREIGN KEY fk_name (b) REFERENCES parent (id) ON DELETE SET NULL ON UPDATE NO ACTION,
  FOREIGN KEY fk_only (c) REFERENCES parent (id) ON DELETE CASCADE ON DELETE RESTRICT ON UPDATE NO_ACTION,
  FOREIGN KEY (d, e) REFERENCES parent,
  CONSTRAINT pair_fk FOREIGN KEY (d, missing) REFERENCES parent (k1, k2) NOT DEFERRABLE INITIALLY IMMEDIATE,
  -- One column naming the two-column primary key: it stays unresolved.
  FOREIGN KEY (f) REFERENCES parent,
  FOREIGN KEY (absent) REFERENCES parent (id),
  FOREIGN KEY (g) REFERENCES elsewhere (id)
);

ALTER TABLE child ADD CONSTRAINT carried FOREIGN KEY (e, f) REFERENCES parent (k1, k2),
  ADD CHECK (e > 0),
  ADD UNIQUE (g);
