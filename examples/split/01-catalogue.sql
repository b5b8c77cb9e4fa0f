-- A web shop split over two scripts: the catalogue (SQLite).
CREATE TABLE category (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    parent_id INTEGER REFERENCES category (id),
    name TEXT NOT NULL
);

CREATE TABLE article (
    sku TEXT PRIMARY KEY,
    category_id INTEGER NOT NULL REFERENCES category (id),
    title TEXT NOT NULL,
    price_cents INTEGER NOT NULL CHECK (price_cents >= 0)
);
