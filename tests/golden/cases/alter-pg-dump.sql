--
-- A PostgreSQL dump: tables first, then sequences, defaults, keys,
-- indexes and foreign keys as separate statements.
--

SET statement_timeout = 0;
SET client_encoding = 'UTF8';
SELECT pg_catalog.set_config('search_path', '', false);

CREATE TABLE shop.customer (
    customer_id integer NOT NULL,
    email character varying(120) NOT NULL,
    country character(2),
    created_at timestamp without time zone DEFAULT now() NOT NULL
);

ALTER TABLE shop.customer OWNER TO shop_owner;

CREATE SEQUENCE shop.customer_customer_id_seq
    AS integer
    START WITH 1
    INCREMENT BY 1
    NO MINVALUE
    NO MAXVALUE
    CACHE 1;

ALTER TABLE shop.customer_customer_id_seq OWNER TO shop_owner;
ALTER SEQUENCE shop.customer_customer_id_seq OWNED BY shop.customer.customer_id;

CREATE TABLE shop.country (
    code character(2) NOT NULL,
    name text
);

CREATE TABLE shop.region (
    country character(2) NOT NULL,
    code character(2) NOT NULL,
    label text
);

CREATE TABLE shop.purchase (
    purchase_id bigint NOT NULL,
    customer_id integer NOT NULL,
    country character(2),
    region_code character(2),
    total numeric(10,2)
);

ALTER TABLE ONLY shop.customer ALTER COLUMN customer_id SET DEFAULT nextval('shop.customer_customer_id_seq'::regclass);

ALTER TABLE ONLY shop.customer
    ADD CONSTRAINT customer_pkey PRIMARY KEY (customer_id);

ALTER TABLE ONLY shop.customer
    ADD CONSTRAINT customer_email_key UNIQUE (email);

ALTER TABLE ONLY shop.country
    ADD CONSTRAINT country_pkey PRIMARY KEY (code);

ALTER TABLE ONLY shop.region
    ADD CONSTRAINT region_pkey PRIMARY KEY (country, code);

ALTER TABLE ONLY shop.purchase
    ADD CONSTRAINT purchase_pkey PRIMARY KEY (purchase_id);

ALTER TABLE ONLY shop.purchase
    ADD CONSTRAINT purchase_total_check CHECK ((total >= (0)::numeric));

CREATE INDEX idx_customer_email ON shop.customer USING btree (email);

CREATE UNIQUE INDEX idx_purchase_customer ON shop.purchase USING btree (customer_id, purchase_id DESC);

CREATE INDEX idx_region_label ON shop.region USING gin (label);

ALTER TABLE ONLY shop.purchase
    ADD CONSTRAINT purchase_customer_id_fkey FOREIGN KEY (customer_id) REFERENCES shop.customer(customer_id) ON UPDATE CASCADE ON DELETE RESTRICT;

ALTER TABLE ONLY shop.purchase
    ADD CONSTRAINT purchase_region_fkey FOREIGN KEY (country, region_code) REFERENCES shop.region(country, code) DEFERRABLE INITIALLY DEFERRED;

ALTER TABLE ONLY shop.customer
    ADD CONSTRAINT customer_country_fkey FOREIGN KEY (country) REFERENCES shop.country MATCH SIMPLE ON DELETE SET NULL;
