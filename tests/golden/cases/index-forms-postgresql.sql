-- Expression and partial indexes: an expression entry is named by its text,
-- WHERE and INCLUDE become the index's properties; sort order, collation,
-- operator classes and any method name are read and dropped.
CREATE TABLE account (id integer NOT NULL, email character varying(120), active boolean, a integer, b integer, note text, embedding text);
CREATE INDEX account_email_lower ON public.account USING btree (lower((email)::text)) WHERE active;
CREATE UNIQUE INDEX account_sum ON account (a, (b + a)) INCLUDE (note, id) WHERE note IS NOT NULL;
CREATE INDEX account_order ON account (a DESC NULLS LAST, note COLLATE "C" text_pattern_ops);
CREATE INDEX account_search ON account USING gin (to_tsvector('simple', note));
CREATE INDEX account_vector ON account USING hnsw (embedding public.vector_ops);
CREATE TABLE after_index (x integer);
