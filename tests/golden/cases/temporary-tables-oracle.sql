-- Oracle temporary tables are built like plain tables; ON COMMIT leaves nothing.
CREATE GLOBAL TEMPORARY TABLE "APP"."SESSION_ITEMS" (
  "ID" NUMBER(10) NOT NULL,
  "ITEM" VARCHAR2(100),
  CONSTRAINT "SESSION_ITEMS_PK" PRIMARY KEY ("ID")
) ON COMMIT PRESERVE ROWS;
CREATE GLOBAL TEMPORARY TABLE scratch_rows (n NUMBER, item_id NUMBER(10) REFERENCES "APP"."SESSION_ITEMS" ("ID"))
  ON COMMIT DELETE ROWS;
create global temporary table lower_case (v varchar2(10));
CREATE PRIVATE TEMPORARY TABLE ora$ptt_totals (total NUMBER);
CREATE PRIVATE TEMPORARY TABLE ora$ptt_kept (n NUMBER) ON COMMIT PRESERVE DEFINITION;
CREATE PRIVATE TEMPORARY TABLE ora$ptt_dropped (n NUMBER) ON COMMIT DROP DEFINITION;
CREATE INDEX scratch_n ON scratch_rows (n);
-- A kind of table the importer does not know is recorded, not silently lost.
CREATE SHARDED TABLE orders (id NUMBER(10)) TABLESPACE SET ts;
CREATE TABLE after_them (id NUMBER(10));
