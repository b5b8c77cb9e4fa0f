-- PostgreSQL temporary and unlogged tables are built like plain tables.
CREATE TEMP TABLE t_temp (id integer PRIMARY KEY, v text);
CREATE TEMPORARY TABLE t_temporary (id integer, t_temp_id integer REFERENCES t_temp (id)) ON COMMIT DROP;
CREATE LOCAL TEMPORARY TABLE t_local (id integer) ON COMMIT DELETE ROWS;
CREATE LOCAL TEMP TABLE IF NOT EXISTS t_local_temp (id integer);
CREATE GLOBAL TEMPORARY TABLE t_global (id integer) ON COMMIT PRESERVE ROWS;
CREATE UNLOGGED TABLE public.t_unlogged (id bigint NOT NULL, payload jsonb) WITH (fillfactor = 70);
CREATE OR REPLACE TEMP VIEW v_temp AS SELECT id FROM t_temp;
-- Kinds of table the importer does not read leave a record each.
CREATE FOREIGN TABLE remote_items (id integer) SERVER films_server;
CREATE TYPE item_row AS (id integer);
CREATE TABLE after_them (id integer);
