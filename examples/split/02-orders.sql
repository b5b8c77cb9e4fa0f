-- The orders, whose keys point into the catalogue script.
CREATE TABLE customer (
    id INTEGER PRIMARY KEY,
    email TEXT NOT NULL UNIQUE
);

CREATE TABLE purchase (
    id INTEGER PRIMARY KEY,
    customer_id INTEGER NOT NULL REFERENCES customer (id),
    placed_at TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP
);

CREATE TABLE purchase_line (
    purchase_id INTEGER NOT NULL,
    sku TEXT NOT NULL,
    quantity INTEGER NOT NULL DEFAULT 1,
    PRIMARY KEY (purchase_id, sku),
    FOREIGN KEY (purchase_id) REFERENCES purchase (id) ON DELETE CASCADE,
    FOREIGN KEY (sku) REFERENCES article (sku)
);
