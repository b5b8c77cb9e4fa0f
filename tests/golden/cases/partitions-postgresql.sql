-- PostgreSQL partitions and inheritance: a partition has its parent's columns
-- and its own constraints; the bounds and storage leave nothing.
CREATE TABLE public.measurement (
    id integer NOT NULL,
    city_id integer DEFAULT 0 NOT NULL,
    logdate date NOT NULL,
    peaktemp integer CHECK (peaktemp > -100),
    PRIMARY KEY (id, logdate)
) PARTITION BY RANGE (logdate);

CREATE TABLE public.measurement_y2006 PARTITION OF public.measurement
    FOR VALUES FROM ('2006-01-01') TO ('2007-01-01');

CREATE TABLE public.measurement_y2007 PARTITION OF public.measurement (
    CONSTRAINT measurement_y2007_pkey PRIMARY KEY (id, logdate),
    CONSTRAINT y2007_peak CHECK (peaktemp < 60)
) FOR VALUES FROM ('2007-01-01') TO (MAXVALUE) PARTITION BY LIST (city_id);

CREATE TABLE public.measurement_y2007_c1 PARTITION OF public.measurement_y2007 FOR VALUES IN (1, 2)
    WITH (fillfactor = 90) TABLESPACE fast;

CREATE TABLE measurement_h0 PARTITION OF public.measurement FOR VALUES WITH (MODULUS 4, REMAINDER 0);

CREATE TABLE IF NOT EXISTS public.measurement_rest PARTITION OF public.measurement DEFAULT;

-- The parent comes later (or never): an empty table, the parent still named.
CREATE TABLE public.early PARTITION OF public.late FOR VALUES IN ('x');

CREATE TABLE public.cities (id integer PRIMARY KEY);

ALTER TABLE ONLY public.measurement_y2006
    ADD CONSTRAINT measurement_y2006_city_fk FOREIGN KEY (city_id) REFERENCES public.cities(id);

-- Old-style partitioning by inheritance.
CREATE TABLE public.measurement_2005 (
    CONSTRAINT measurement_2005_check CHECK (logdate < '2006-01-01')
) INHERITS (public.measurement);

ALTER TABLE ONLY public.measurement_2005
    ADD CONSTRAINT measurement_2005_city_fk FOREIGN KEY (city_id) REFERENCES public.cities(id);
