-- CREATE INDEX on existing tables in several dialects, and sequences, which
-- leave nothing in the model.

CREATE TABLE app.account (id INT, login VARCHAR(40), email VARCHAR(200), active BOOLEAN);

CREATE UNIQUE INDEX CONCURRENTLY app.account_login_uq ON app.account USING btree (login);
CREATE INDEX account_email_idx ON app.account (lower(email), login(8) ASC NULLS FIRST) WHERE (active = true);
CREATE INDEX account_email_hash ON ONLY account USING hash (email varchar_pattern_ops) WITH (fillfactor = 80) TABLESPACE fast;
CREATE CLUSTERED INDEX account_cx ON account (id DESC);
CREATE INDEX account_login_idx ON account (login COLLATE "C") INCLUDE (email);
CREATE INDEX account_login_idx ON account (login) LOCAL NOLOGGING PARALLEL 2;

CREATE SEQUENCE app.account_seq START WITH 1000 INCREMENT BY 10 MINVALUE 1000 NO MAXVALUE CACHE 5 CYCLE OWNED BY app.account.id;
CREATE SEQUENCE plain_seq;
CREATE SEQUENCE ora_seq NOMINVALUE NOMAXVALUE NOCACHE NOCYCLE ORDER;
