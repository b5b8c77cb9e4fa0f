-- Keys of every kind a diagram draws: column references, named and
-- composite table keys, a self-reference, a key added by ALTER TABLE, and
-- targets that are not in the script.
CREATE TABLE region (
    code char(2) NOT NULL,
    name varchar(40) NOT NULL,
    parent char(2) REFERENCES region (code),
    PRIMARY KEY (code)
);

CREATE TABLE app.depot (
    id integer PRIMARY KEY,
    region_code char(2) NOT NULL REFERENCES region (code),
    label "quoted <type>",
    capacity numeric(12, 3)
);

CREATE TABLE stock (
    depot_id integer NOT NULL,
    item_no varchar(20) NOT NULL,
    lot integer,
    qty integer DEFAULT 0 NOT NULL,
    CONSTRAINT stock_pk PRIMARY KEY (depot_id, item_no),
    CONSTRAINT stock_depot_fk FOREIGN KEY (depot_id) REFERENCES app.depot (id),
    CONSTRAINT stock_item_fk FOREIGN KEY (item_no, lot) REFERENCES catalogue.item (no, lot)
);

CREATE TABLE movement (
    id bigint NOT NULL,
    depot_id integer,
    item_no varchar(20),
    supplier_id integer REFERENCES supplier
);

ALTER TABLE movement ADD CONSTRAINT movement_stock_fk FOREIGN KEY (depot_id, item_no) REFERENCES stock (depot_id, item_no);
