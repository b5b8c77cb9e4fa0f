-- PostgreSQL inheritance, LIKE, temporary tables and partition maintenance.
CREATE TABLE public.item (
    id integer NOT NULL,
    name text DEFAULT 'none' NOT NULL,
    price numeric(10,2) CHECK (price >= 0)
);

-- Inherited columns come first, in the parent's order; a column the child
-- declares again stays where the parent has it.
CREATE TABLE public.book (
    isbn text,
    name text NOT NULL
) INHERITS (public.item);

-- LIKE copies the columns where it stands; defaults and checks only when asked.
CREATE TABLE public.item_log (
    logged_at timestamp NOT NULL,
    LIKE public.item,
    note text
);
CREATE TABLE public.item_copy (LIKE public.item INCLUDING DEFAULTS INCLUDING CONSTRAINTS);

CREATE TEMPORARY TABLE scratch (v text) ON COMMIT DROP;
CREATE TEMPORARY TABLE keep_rows (v text) ON COMMIT PRESERVE ROWS;

CREATE TABLE public.event (id integer NOT NULL, at date NOT NULL) PARTITION BY RANGE (at);
CREATE TABLE public.event_2020 (id integer NOT NULL, at date NOT NULL);

ALTER TABLE ONLY public.event ATTACH PARTITION public.event_2020 FOR VALUES FROM ('2020-01-01') TO ('2021-01-01');
ALTER TABLE public.event DETACH PARTITION public.event_2020 CONCURRENTLY;
ALTER TABLE public.event DETACH PARTITION public.event_2020 FINALIZE;
ALTER TABLE public.book NO INHERIT public.item;
ALTER TABLE public.book INHERIT public.item;
