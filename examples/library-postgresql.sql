-- A lending library: branches, a catalogue of works and copies, members
-- and loans. PostgreSQL, written the way a hand-maintained schema reads.
CREATE SCHEMA lending;

CREATE TABLE lending.branch (
    branch_id   serial PRIMARY KEY,
    name        varchar(80) NOT NULL UNIQUE,
    city        varchar(60) NOT NULL,
    opened_on   date
);

CREATE TABLE lending.author (
    author_id   serial PRIMARY KEY,
    full_name   text NOT NULL,
    born        smallint,
    died        smallint,
    CHECK (died IS NULL OR died >= born)
);

CREATE TABLE lending.work (
    work_id     serial PRIMARY KEY,
    title       text NOT NULL,
    language    char(2) NOT NULL DEFAULT 'en',
    first_year  smallint,
    series_id   integer REFERENCES lending.work (work_id) ON DELETE SET NULL
);

CREATE TABLE lending.work_author (
    work_id     integer NOT NULL REFERENCES lending.work (work_id) ON DELETE CASCADE,
    author_id   integer NOT NULL REFERENCES lending.author (author_id),
    role        varchar(20) NOT NULL DEFAULT 'author',
    PRIMARY KEY (work_id, author_id, role)
);

CREATE TABLE lending.copy (
    copy_id     bigserial PRIMARY KEY,
    work_id     integer NOT NULL,
    branch_id   integer NOT NULL,
    barcode     varchar(32) NOT NULL UNIQUE,
    acquired_on date NOT NULL DEFAULT CURRENT_DATE,
    condition   varchar(12),
    CONSTRAINT copy_work_fk FOREIGN KEY (work_id) REFERENCES lending.work (work_id),
    CONSTRAINT copy_branch_fk FOREIGN KEY (branch_id) REFERENCES lending.branch (branch_id)
);

CREATE TABLE lending.member (
    member_id   serial PRIMARY KEY,
    card_number varchar(16) NOT NULL UNIQUE,
    full_name   text NOT NULL,
    email       varchar(254),
    home_branch integer REFERENCES lending.branch (branch_id),
    joined_on   date NOT NULL DEFAULT CURRENT_DATE
);

CREATE TABLE lending.loan (
    loan_id     bigserial PRIMARY KEY,
    copy_id     bigint NOT NULL,
    member_id   integer NOT NULL,
    lent_at     timestamp with time zone NOT NULL DEFAULT now(),
    due_on      date NOT NULL,
    returned_at timestamp with time zone
);

CREATE TABLE lending.reservation (
    work_id     integer NOT NULL,
    member_id   integer NOT NULL,
    placed_at   timestamp with time zone NOT NULL DEFAULT now(),
    pickup_at   integer,
    PRIMARY KEY (work_id, member_id)
);

ALTER TABLE ONLY lending.loan
    ADD CONSTRAINT loan_copy_fk FOREIGN KEY (copy_id) REFERENCES lending.copy (copy_id);
ALTER TABLE ONLY lending.loan
    ADD CONSTRAINT loan_member_fk FOREIGN KEY (member_id) REFERENCES lending.member (member_id);
ALTER TABLE ONLY lending.reservation
    ADD CONSTRAINT reservation_work_fk FOREIGN KEY (work_id) REFERENCES lending.work (work_id),
    ADD CONSTRAINT reservation_member_fk FOREIGN KEY (member_id) REFERENCES lending.member (member_id),
    ADD CONSTRAINT reservation_branch_fk FOREIGN KEY (pickup_at) REFERENCES lending.branch (branch_id);

CREATE INDEX loan_open_idx ON lending.loan (member_id) WHERE returned_at IS NULL;
-- Fines are kept by an external accounting system.
ALTER TABLE ONLY lending.loan
    ADD CONSTRAINT loan_fine_fk FOREIGN KEY (loan_id) REFERENCES accounting.fine (loan_id);
