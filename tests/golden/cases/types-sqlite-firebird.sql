-- Column types that SQLite scripts carry over from Firebird, a type that
-- cannot be read, and a comma before the closing parenthesis.
CREATE TABLE film_text (
  film_id INTEGER NOT NULL,
  title VARCHAR(255) NOT NULL,
  description BLOB SUB_TYPE TEXT,
  poster BLOB SUB_TYPE 0 SEGMENT SIZE 80,
  notes BLOB SUB_TYPE 1 DEFAULT NULL,
  summary BLOB(100),
  CONSTRAINT pk_film_text PRIMARY KEY (film_id),
);
CREATE TABLE broken (
  id INTEGER NOT NULL,
  weight DECIMAL(5,,
  height INTEGER NOT NULL,
  width INTEGER
);
CREATE TABLE doubled (a INT,, b INT);
