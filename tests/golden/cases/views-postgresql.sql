-- PostgreSQL views: CTEs, window functions, casts, materialized views.
CREATE TABLE public.film (film_id integer NOT NULL, title text, rating text, length smallint);

CREATE VIEW public.film_rank AS
 WITH ranked AS (
         SELECT f.film_id, rank() OVER (PARTITION BY f.rating ORDER BY f.length DESC ROWS BETWEEN UNBOUNDED PRECEDING AND CURRENT ROW) AS r
           FROM public.film f
        ), titles (id, t) AS (SELECT film_id, title FROM public.film)
 SELECT ranked.film_id, (ranked.r)::text AS r, titles.t COLLATE "C" AS title
   FROM ranked
   JOIN titles ON titles.id = ranked.film_id
  WHERE EXISTS (SELECT 1 FROM public.inventory i WHERE i.film_id = ranked.film_id)
    AND ranked.r <= (SELECT max(r) FROM public.limits);

CREATE OR REPLACE TEMP RECURSIVE VIEW nums (n) AS
    SELECT 1 UNION ALL SELECT n + 1 FROM nums WHERE n < 10;

CREATE VIEW opts WITH (security_barrier = true) AS
    SELECT DISTINCT ON (rating) rating, title || ' (' || CAST(length AS varchar(5)) || ')' AS label
    FROM ONLY public.film
    EXCEPT SELECT rating, title FROM public.hidden
    INTERSECT SELECT rating, title FROM public.shown
    ORDER BY rating FETCH FIRST 5 ROWS ONLY;

CREATE MATERIALIZED VIEW public.film_stats AS
    SELECT rating, count(*) FILTER (WHERE length > 90) AS long_films FROM public.film GROUP BY rating
    WITH NO DATA;

CREATE TABLE public.after_views (id integer);
