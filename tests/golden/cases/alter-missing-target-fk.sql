-- A foreign key added to a missing table reports its columns too.
CREATE TABLE u (b INT, d INT);
ALTER TABLE missing ADD CONSTRAINT fk FOREIGN KEY (a) REFERENCES u (b);
ALTER TABLE missing ADD FOREIGN KEY (a, c) REFERENCES u (b, d);
ALTER TABLE missing ADD FOREIGN KEY (a) REFERENCES u;
ALTER TABLE missing ADD FOREIGN KEY (a, c) REFERENCES u;
