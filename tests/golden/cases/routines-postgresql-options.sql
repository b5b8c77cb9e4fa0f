-- PostgreSQL: SETOF and TABLE results, options before and after the body,
-- dollar tags inside dollar tags, quoted bodies, BEGIN ATOMIC, rules,
-- aggregates, DO blocks and triggers.
CREATE TABLE item (id integer PRIMARY KEY, name text);

CREATE OR REPLACE FUNCTION items_named(p text) RETURNS SETOF item AS $body$
  SELECT * FROM item WHERE name = p; -- a $$ inside $body$
$body$ LANGUAGE sql STABLE STRICT SECURITY DEFINER SET search_path = public COST 10 ROWS 5;
CREATE FUNCTION pairs() RETURNS TABLE (a integer, "end" text) LANGUAGE plpgsql PARALLEL SAFE AS $$
BEGIN
  RETURN QUERY SELECT id, name FROM item;
END $$;
CREATE FUNCTION twice(x int) RETURNS int LANGUAGE plpgsql IMMUTABLE AS $fn$
DECLARE s text := $q$ it's; $$ $q$;
BEGIN RETURN x * 2; END
$fn$ STRICT;
CREATE FUNCTION rows_of() RETURNS SETOF record AS 'SELECT 1, ''x;y''' LANGUAGE sql;
CREATE OR REPLACE PROCEDURE note(a int) LANGUAGE plpgsql AS 'BEGIN RAISE NOTICE ''%;'', a; END';
CREATE FUNCTION atomic_one() RETURNS int LANGUAGE sql BEGIN ATOMIC SELECT 1; SELECT 2; END;

CREATE OR REPLACE RULE item_ins AS ON INSERT TO item DO INSTEAD NOTHING;
CREATE RULE item_upd AS ON UPDATE TO item DO ALSO (INSERT INTO item VALUES (new.id, 'x'); UPDATE item SET name = 'y';);
CREATE AGGREGATE my_sum (integer) (SFUNC = int4pl, STYPE = integer, INITCOND = '0');
CREATE OR REPLACE AGGREGATE my_avg (float8 ORDER BY float8) (sfunc = float8_accum, stype = float8[]);
DO $do$ BEGIN IF NOT EXISTS (SELECT 1) THEN RAISE NOTICE 'a;b'; END IF; END $do$;
DO LANGUAGE plpgsql $$ BEGIN NULL; END $$;

CREATE TRIGGER item_t BEFORE INSERT OR UPDATE OF name ON item FOR EACH ROW WHEN (new.name IS NOT NULL)
EXECUTE FUNCTION items_named('a');
CREATE CONSTRAINT TRIGGER item_c AFTER INSERT ON item DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE PROCEDURE rows_of();
CREATE TRIGGER item_s AFTER INSERT ON item REFERENCING NEW TABLE AS nt FOR EACH STATEMENT EXECUTE FUNCTION twice(1);

CREATE TABLE after_routines (id integer PRIMARY KEY, item_id integer REFERENCES item (id));
