-- Column types that SQLite scripts carry over from Firebird, a comma before
-- the closing parenthesis (read silently) and a doubled comma (reported).
CREATE TABLE film_text (
  film_id INTEGER NOT NULL,
  title VARCHAR(255) NOT NULL,
  description BLOB SUB_TYPE TEXT,
  poster BLOB SUB_TYPE 0 SEGMENT SIZE 80,
  notes BLOB SUB_TYPE 1 DEFAULT NULL,
  summary BLOB(100),
  CONSTRAINT pk_film_text PRIMARY KEY (film_id),
);
CREATE TABLE doubled (a INT,, b INT);
