-- Columns that cannot be read are left out, each with a record at its
-- place; the columns, keys and constraints after them are still read.
CREATE TABLE bad_args (id INT, weight DECIMAL(5,,), name VARCHAR(10), PRIMARY KEY (id));
CREATE TABLE stray_after_type (id INT, price NUMERIC(8,2) garbage words, code CHAR(3) NOT NULL, UNIQUE (code));
CREATE TABLE unclosed_default (id INT, d INT DEFAULT (1, e INT,
  CONSTRAINT pk_unclosed PRIMARY KEY (id));
CREATE TABLE bad_option (id INT, amount INT DEFAULT 0 NOT FOO, label VARCHAR(20),
  FOREIGN KEY (id) REFERENCES bad_args (id));
CREATE TABLE empty_args (a VARCHAR(), b ENUM('x', 5), c INT CHECK (c > 0), KEY kc (c));
CREATE TABLE missing_close (a NUMERIC(10, b INT, c INT);
CREATE TABLE after_all (x INT);
