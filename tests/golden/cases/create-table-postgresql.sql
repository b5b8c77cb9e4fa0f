--
-- PostgreSQL database dump of a ticketing schema
--

SET statement_timeout = 0;
SET client_encoding = 'UTF8';

CREATE TABLE public.venue (
    venue_id integer DEFAULT nextval('public.venue_venue_id_seq'::regclass) NOT NULL,
    title character varying(80) NOT NULL,
    city text DEFAULT 'Lyon'::text,
    seats smallint DEFAULT 0 CHECK ((seats >= 0)),
    opened date DEFAULT ('now'::text)::date NOT NULL,
    price numeric(6,2) DEFAULT 12.50 NOT NULL,
    indoor boolean DEFAULT true NOT NULL,
    created timestamp without time zone DEFAULT now() NOT NULL,
    starts time(0) with time zone,
    kind public.venue_kind DEFAULT 'hall'::public.venue_kind,
    notes bytea
);

CREATE TABLE show (
    show_id serial PRIMARY KEY,
    venue_id integer NOT NULL REFERENCES public.venue (venue_id) ON UPDATE CASCADE ON DELETE RESTRICT,
    sponsor integer REFERENCES sponsor MATCH SIMPLE ON DELETE SET NULL DEFERRABLE INITIALLY DEFERRED,
    length interval HOUR TO MINUTE,
    duration interval MINUTE(4),
    flags varbit(8),
    slot interval,
    CONSTRAINT show_length_positive CHECK (((VALUE > 0) AND (VALUE < 600))),
    CHECK (show_id <> venue_id)
) WITH (fillfactor=70, autovacuum_enabled=false);

CREATE TABLE ONLY_OIDS (a int) WITH OIDS;
CREATE TABLE no_oids (a int) WITHOUT OIDS;
