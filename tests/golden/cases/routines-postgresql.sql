-- PostgreSQL functions, procedures, triggers, DO blocks, rules and aggregates.
CREATE TABLE item (id integer PRIMARY KEY, name text, updated timestamp);

CREATE OR REPLACE FUNCTION touch() RETURNS trigger AS $$
BEGIN
    -- a quote ' and a semicolon ; inside the body
    NEW.updated := now();
    IF NEW.name = 'x;y' THEN RAISE NOTICE 'it''s %', NEW.name; END IF;
    RETURN NEW;
END;
$$ LANGUAGE plpgsql;

CREATE FUNCTION nested(a integer) RETURNS TABLE (n integer, label text)
    LANGUAGE plpgsql STABLE
    AS $body$
DECLARE
    q text := $q$SELECT 1; SELECT 2$q$;
BEGIN
    EXECUTE $x$ SELECT $$inner$$ $x$;
    RETURN QUERY SELECT a, 'done;';
END
$body$;

CREATE FUNCTION add(integer, integer) RETURNS integer AS 'select $1 + $2;' LANGUAGE SQL IMMUTABLE;

CREATE PROCEDURE reset_item() LANGUAGE SQL BEGIN ATOMIC DELETE FROM item; END;

CREATE TRIGGER item_touch BEFORE INSERT OR UPDATE ON item FOR EACH ROW EXECUTE PROCEDURE touch();

DO $$ BEGIN PERFORM 1; END $$;

CREATE AGGREGATE concat_all (text) (SFUNC = textcat, STYPE = text, INITCOND = '');

CREATE RULE item_nodelete AS ON DELETE TO item DO INSTEAD NOTHING;

CREATE TABLE item_tag (item_id integer REFERENCES item (id), tag text);
