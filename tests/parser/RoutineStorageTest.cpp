// Routines, triggers and storage clauses: parsed, dropped, and nothing after
// them lost.
#include "ModelJson.h"
#include "ParserTestSupport.h"

namespace {

// The model of a script as JSON, with its records.
std::string modelOf(const std::string &sql)
{
    SQLParser parser;
    std::unique_ptr<SQLContainer> container = parser.parseString(sql);
    if (container == nullptr) {
        return "<no model>";
    }
    return sqlantlr::modelJsonText(*container, parser.getExceptionList(), true);
}

const char *const plainTable = "CREATE TABLE t (id INT NOT NULL PRIMARY KEY, name VARCHAR(20))";

void expectSameAsPlain(const std::string &clauses)
{
    EXPECT_EQ(modelOf(std::string(plainTable) + " " + clauses + ";\nCREATE TABLE u (a INT);"),
              modelOf(std::string(plainTable) + ";\nCREATE TABLE u (a INT);"))
        << clauses;
}

} // namespace

TEST(StorageClauses, OracleSegmentLobOrganizationAndPartitionsLeaveTheTableAsWithout)
{
    expectSameAsPlain("TABLESPACE users PCTFREE 10 INITRANS 1 MAXTRANS 255 STORAGE (INITIAL 64K NEXT 1M MINEXTENTS 1 "
                      "MAXEXTENTS UNLIMITED PCTINCREASE 0 FREELISTS 1 FREELIST GROUPS 1 BUFFER_POOL DEFAULT) "
                      "LOGGING NOCOMPRESS");
    expectSameAsPlain("SEGMENT CREATION IMMEDIATE LOB (name) STORE AS SECUREFILE name_lob (TABLESPACE users ENABLE "
                      "STORAGE IN ROW CHUNK 8192 NOCACHE) COMPRESS FOR OLTP PARALLEL 4 CACHE ENABLE ROW MOVEMENT");
    expectSameAsPlain("ORGANIZATION INDEX PCTTHRESHOLD 50 INCLUDING name OVERFLOW TABLESPACE users NOPARALLEL");
    expectSameAsPlain("PARTITION BY RANGE (id) SUBPARTITION BY HASH (name) SUBPARTITIONS 4 "
                      "(PARTITION p1 VALUES LESS THAN (100) TABLESPACE a, PARTITION p2 VALUES LESS THAN (MAXVALUE))");
    expectSameAsPlain("SEGMENT CREATION DEFERRED COLUMN STORE COMPRESS FOR QUERY HIGH MONITORING "
                      "RESULT_CACHE (MODE DEFAULT) FLASHBACK ARCHIVE fa NO INMEMORY ROWDEPENDENCIES");
    expectSameAsPlain("ROW STORE COMPRESS ADVANCED STORAGE (INITIAL 1G MAXSIZE UNLIMITED) PARALLEL (DEGREE 4)");
    expectSameAsPlain("COMPRESS FOR ALL OPERATIONS NOCACHE DISABLE ROW MOVEMENT");
    expectSameAsPlain("ORGANIZATION EXTERNAL (TYPE oracle_loader DEFAULT DIRECTORY d ACCESS PARAMETERS "
                      "(RECORDS DELIMITED BY NEWLINE FIELDS TERMINATED BY ',' (a, b)) LOCATION ('t.csv')) "
                      "REJECT LIMIT UNLIMITED");
    expectSameAsPlain("PARTITION BY LIST (name) (PARTITION pa VALUES ('a', 'b') TABLESPACE x "
                      "LOB (name) STORE AS SECUREFILE (CHUNK 8192 COMPRESS HIGH DEDUPLICATE), PARTITION pd VALUES (DEFAULT))");
    expectSameAsPlain("PARTITION BY HASH (id) PARTITIONS 8 STORE IN (ts1, ts2)");
    expectSameAsPlain("PARTITION BY RANGE (id) INTERVAL (NUMTOYMINTERVAL(1, 'MONTH')) SUBPARTITION BY LIST (name) "
                      "SUBPARTITION TEMPLATE (SUBPARTITION a VALUES ('x'), SUBPARTITION b VALUES (DEFAULT)) "
                      "(PARTITION p0 VALUES LESS THAN (TO_DATE('2001-01-01', 'YYYY-MM-DD')) "
                      "(SUBPARTITION s1 VALUES ('q') TABLESPACE t, SUBPARTITION s2 VALUES (DEFAULT)))");
    expectSameAsPlain("LOB (name) STORE AS name_seg VARRAY arr STORE AS LOB arr_seg (CACHE READS LOGGING) "
                      "NESTED TABLE nt STORE AS nt_tab RETURN AS LOCATOR");
}

TEST(StorageClauses, MySqlPostgreSqlAndSqlServerClausesLeaveTheTableAsWithout)
{
    expectSameAsPlain("/*!50100 PARTITION BY LIST (id) (PARTITION p0 VALUES IN (1,2) ENGINE = InnoDB) */");
    expectSameAsPlain("STATS_PERSISTENT=0 PARTITION BY HASH (id) PARTITIONS 4");
    expectSameAsPlain("PARTITION BY RANGE (id) USING heap WITH (fillfactor = 70) TABLESPACE fast");
    expectSameAsPlain("PARTITION BY LIST (lower(name) text_pattern_ops)");
    expectSameAsPlain("ON [PRIMARY] TEXTIMAGE_ON [PRIMARY] FILESTREAM_ON fs");
    expectSameAsPlain("ON ps_by_id (id)");
    expectSameAsPlain("TABLESPACE ts STORAGE DISK STATS_AUTO_RECALC=DEFAULT ENCRYPTION='N' "
                      "PARTITION BY KEY ALGORITHM=2 (id) PARTITIONS 4");
    expectSameAsPlain("PARTITION BY LINEAR HASH (id) PARTITIONS 3");
    expectSameAsPlain("/*!50500 PARTITION BY RANGE COLUMNS(id, name) (PARTITION p0 VALUES LESS THAN (10, 'm') "
                      "ENGINE = InnoDB COMMENT = 'first', PARTITION p1 VALUES LESS THAN (MAXVALUE, MAXVALUE)) */");
    expectSameAsPlain("PARTITION BY RANGE (id) SUBPARTITION BY HASH (id) SUBPARTITIONS 2 (PARTITION p0 VALUES "
                      "LESS THAN (5) (SUBPARTITION s0 DATA DIRECTORY = '/d' STORAGE ENGINE = InnoDB, SUBPARTITION s1), "
                      "PARTITION p1 VALUES LESS THAN MAXVALUE MAX_ROWS = 10 NODEGROUP 0)");
    // Keywords as partition names.
    expectSameAsPlain("PARTITION BY LIST (id) (PARTITION data VALUES IN (1), PARTITION max VALUES IN (2), "
                      "PARTITION default VALUES IN (3) (SUBPARTITION index, SUBPARTITION values_x))");
    expectSameAsPlain("PARTITION BY HASH (id) (PARTITION data DATA DIRECTORY = '/d', PARTITION max ENGINE = InnoDB, "
                      "PARTITION default)");
    expectSameAsPlain("PARTITION BY RANGE (id) (PARTITION VALUES LESS THAN (10), PARTITION max VALUES LESS THAN "
                      "(MAXVALUE) TABLESPACE ts)");
    // A temporary table's ON COMMIT; ON alone still names a file group.
    expectSameAsPlain("ON COMMIT PRESERVE ROWS");
    expectSameAsPlain("ON COMMIT DELETE ROWS TABLESPACE scratch");
    expectSameAsPlain("ON COMMIT DROP");
    expectSameAsPlain("ON COMMIT DROP DEFINITION");
    expectSameAsPlain("ON COMMIT PRESERVE DEFINITION TABLESPACE scratch");
    expectSameAsPlain("ON commit_fg");
}

TEST(StorageClauses, StorageOnlyAlterTableActionsLeaveNoRecordAndTheTableAsItWas)
{
    const std::string plain = std::string(plainTable) + ";\n";
    const char *const alters[] = {
        "ALTER TABLE t ENABLE ROW MOVEMENT;",
        "ALTER TABLE t DISABLE ROW MOVEMENT;",
        "ALTER TABLE t MOVE TABLESPACE x;",
        "ALTER TABLE t MOVE ONLINE TABLESPACE x STORAGE (INITIAL 64K) COMPRESS PARALLEL 4 UPDATE GLOBAL INDEXES;",
        "ALTER TABLE t MOVE PARTITION p1 TABLESPACE y NOLOGGING;",
        "ALTER TABLE t NOLOGGING;",
        "ALTER TABLE t PCTFREE 20 PARALLEL 4 CACHE;",
        "ALTER TABLE t SHRINK SPACE COMPACT CASCADE;",
        "ALTER TABLE t ALLOCATE EXTENT (SIZE 1M);",
        "ALTER TABLE t DEALLOCATE UNUSED KEEP 10M;",
        "ALTER TABLE t PARTITION BY HASH (id) PARTITIONS 4;",
        "ALTER TABLE t DROP PARTITION p1;",
        "ALTER TABLE t TRUNCATE PARTITION p1;",
        "ALTER TABLE t REMOVE PARTITIONING;",
        "ALTER TABLE t MODIFY LOB (name) (CACHE);",
        "ALTER TABLE t SET UNLOGGED;",
        "ALTER TABLE t SET (fillfactor = 70);",
        "ALTER TABLE t RESET (fillfactor);",
        "ALTER TABLE t INHERIT parent;",
        // Partition and inheritance maintenance of every dialect.
        "ALTER TABLE t ADD PARTITION p3 VALUES LESS THAN (TO_DATE('2030-01-01', 'YYYY-MM-DD')) TABLESPACE x;",
        "ALTER TABLE t ADD PARTITION (PARTITION p3 VALUES LESS THAN (30), PARTITION p4 VALUES LESS THAN MAXVALUE);",
        "ALTER TABLE t ADD PARTITION PARTITIONS 2;",
        "ALTER TABLE t COALESCE PARTITION 2;",
        "ALTER TABLE t MODIFY PARTITION p1 STORAGE (MAXEXTENTS 10) NOLOGGING;",
        "ALTER TABLE t MODIFY DEFAULT ATTRIBUTES TABLESPACE y;",
        "ALTER TABLE t EXCHANGE PARTITION p1 WITH TABLE t_new INCLUDING INDEXES WITHOUT VALIDATION;",
        "ALTER TABLE t REORGANIZE PARTITION p0, p1 INTO (PARTITION p01 VALUES LESS THAN (20));",
        "ALTER TABLE t DROP PARTITION p1, p2;",
        "ALTER TABLE t TRUNCATE PARTITION p1, p2 UPDATE GLOBAL INDEXES;",
        "ALTER TABLE t SPLIT PARTITION p1 AT (50) INTO (PARTITION p1a, PARTITION p1b);",
        "ALTER TABLE t MERGE PARTITIONS p1, p2 INTO PARTITION p12;",
        "ALTER TABLE t RENAME PARTITION p1 TO p_one;",
        "ALTER TABLE t ANALYZE PARTITION p1, p2;",
        "ALTER TABLE t CHECK PARTITION ALL;",
        "ALTER TABLE t OPTIMIZE PARTITION p1;",
        "ALTER TABLE t REBUILD PARTITION p1, p2;",
        "ALTER TABLE t REPAIR PARTITION p1;",
        "ALTER TABLE t DISCARD PARTITION p1 TABLESPACE;",
        "ALTER TABLE t IMPORT PARTITION p1, p2 TABLESPACE;",
        "ALTER TABLE t SET INTERVAL (NUMTOYMINTERVAL(1, 'MONTH'));",
        "ALTER TABLE t SET SUBPARTITION TEMPLATE (SUBPARTITION a VALUES ('x'));",
        "ALTER TABLE t ATTACH PARTITION t_2020 FOR VALUES FROM ('2020-01-01') TO ('2021-01-01');",
        "ALTER TABLE t ATTACH PARTITION t_rest DEFAULT;",
        "ALTER TABLE t DETACH PARTITION t_2020 CONCURRENTLY;",
        "ALTER TABLE t DETACH PARTITION t_2020 FINALIZE;",
        "ALTER TABLE t NO INHERIT parent;",
        "ALTER TABLE t UPGRADE PARTITIONING;",
    };
    for (const char *alter : alters) {
        const ParseResult r = parse(plain + alter);
        EXPECT_TRUE(r.records.empty()) << alter << ": " << r.records.front();
        EXPECT_EQ(modelOf(plain + alter), modelOf(plain)) << alter;
    }
}

// A partition action ends at the comma before another action: what follows
// is read as usual (MySQL does not allow the mix, Oracle allows some).
TEST(StorageClauses, AnActionAfterAPartitionActionIsStillApplied)
{
    const ParseResult r = parse(std::string(plainTable) + ";\n"
                                "ALTER TABLE t DROP PARTITION p1, p2, ADD CONSTRAINT u UNIQUE (name);\n"
                                "ALTER TABLE t EXCHANGE PARTITION p WITH TABLE x, ADD CONSTRAINT c CHECK (id > 0);");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    EXPECT_EQ(tableNamed(r, "t").indexes().size(), 1U);
    EXPECT_EQ(tableNamed(r, "t").checkConstraints().size(), 1U);
    // A parenthesis left open costs only its statement.
    const ParseResult open = parse(std::string(plainTable) + ";\nALTER TABLE t ADD PARTITION (PARTITION p VALUES (1;\n"
                                   "CREATE TABLE u (a INT);");
    EXPECT_FALSE(open.records.empty());
    EXPECT_EQ(tableNames(open), (std::vector<std::string>{"t", "u"}));
}

TEST(StorageClauses, ABrokenClauseCostsOnlyItsStatement)
{
    const ParseResult r = parse("CREATE TABLE a (id INT) PARTITION BY RANGE (id) (PARTITION p0 VALUES LESS THAN (1;\n"
                                "CREATE TABLE b (id INT) STORAGE (INITIAL 64K BOGUS);\nCREATE TABLE c (id INT);");
    EXPECT_FALSE(r.records.empty());
    EXPECT_EQ(tableNames(r), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(StorageClauses, KeptOptionsAfterAClauseAreStillRead)
{
    const ParseResult r = parse("CREATE TABLE t (id INT) TABLESPACE ts ENGINE=InnoDB DEFAULT CHARSET=utf8;");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    EXPECT_EQ(tableNamed(r, "t").getTableType(), std::optional<std::string>("InnoDB"));
}

TEST(Partitions, APartitionHasItsParentsColumnsAndItsOwnConstraints)
{
    const ParseResult r = parse(
        "CREATE TABLE p (id int NOT NULL, city int DEFAULT 0, at date NOT NULL CHECK (at > '2000-01-01')) "
        "PARTITION BY RANGE (at);\n"
        "CREATE TABLE p1 PARTITION OF p (CONSTRAINT p1_pk PRIMARY KEY (id, at), CHECK (city > 0)) "
        "FOR VALUES FROM ('2020-01-01') TO ('2021-01-01') PARTITION BY LIST (city);\n"
        "CREATE TABLE p1a PARTITION OF p1 FOR VALUES IN (1, 2);\n"
        "CREATE TABLE p2 PARTITION OF p FOR VALUES WITH (MODULUS 4, REMAINDER 0);\n"
        "CREATE TABLE pd PARTITION OF p DEFAULT;\n"
        "CREATE TABLE lost PARTITION OF nowhere FOR VALUES IN (1);\n"
        "CREATE TABLE cities (id int PRIMARY KEY);\n"
        "ALTER TABLE ONLY p1a ADD CONSTRAINT p1a_city FOREIGN KEY (city) REFERENCES cities (id);\n");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    const SQLTable &p1 = tableNamed(r, "p1");
    EXPECT_EQ(p1.getFieldNameListString(), tableNamed(r, "p").getFieldNameListString());
    EXPECT_EQ(p1.getPropertyAsString("partitionOf"), std::optional<std::string>("p"));
    ASSERT_NE(p1.getFieldByName("city"), nullptr);
    EXPECT_EQ(p1.getFieldByName("city")->getDefaultValue(), std::optional<std::string>("0"));
    EXPECT_TRUE(p1.getFieldByName("at")->isNotNull());
    EXPECT_EQ(p1.getFieldByName("at")->checkConstraints().size(), 1U);
    EXPECT_EQ(p1.getPrimaryKeyFields().size(), 2U);
    EXPECT_EQ(p1.checkConstraints().size(), 1U);
    EXPECT_TRUE(tableNamed(r, "p").getPrimaryKeyFields().empty());
    EXPECT_EQ(tableNamed(r, "p1a").getFieldNameListString(), p1.getFieldNameListString());
    EXPECT_EQ(tableNamed(r, "p1a").getPropertyAsString("partitionOf"), std::optional<std::string>("p1"));
    EXPECT_EQ(tableNamed(r, "p2").fields().size(), 3U);
    EXPECT_EQ(tableNamed(r, "pd").fields().size(), 3U);
    EXPECT_TRUE(tableNamed(r, "lost").fields().empty());
    EXPECT_EQ(tableNamed(r, "lost").getPropertyAsString("partitionOf"), std::optional<std::string>("nowhere"));
    EXPECT_EQ(tableNamed(r, "p1a").foreignKeys().size() + (tableNamed(r, "p1a").getFieldByName("city")->getReferences() ? 1U : 0U), 1U);
}

TEST(Partitions, AnInheritingTableHasItsParentsColumnsFirst)
{
    const ParseResult r = parse("CREATE TABLE base (id int NOT NULL, name text);\n"
                                "CREATE TABLE more (code int, id int, note text);\n"
                                "CREATE TABLE child (extra text, name text NOT NULL) INHERITS (base, other, more);\n");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    const SQLTable &child = tableNamed(r, "child");
    EXPECT_EQ(child.getFieldNameListString(), "id, name, code, note, extra");
    EXPECT_TRUE(child.getFieldByName("name")->isNotNull());
    EXPECT_EQ(child.getPropertyAsString("inherits"), std::optional<std::string>("base, other, more"));
}

TEST(Partitions, LikeCopiesTheParentsColumnsWhereItStands)
{
    const ParseResult r = parse(
        "CREATE TABLE src (id serial NOT NULL, name text DEFAULT 'x' CHECK (name <> ''));\n"
        "COMMENT ON COLUMN src.name IS 'the name';\n"
        "CREATE TABLE plain (a int, LIKE src, z int);\n"
        "CREATE TABLE full_copy (LIKE src INCLUDING ALL EXCLUDING COMMENTS, extra text);\n"
        "CREATE TABLE unknown (a int, LIKE nowhere INCLUDING DEFAULTS);\n");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    const SQLTable &plain = tableNamed(r, "plain");
    EXPECT_EQ(plain.getFieldNameListString(), "a, id, name, z");
    EXPECT_TRUE(plain.getFieldByName("id")->isNotNull());
    EXPECT_FALSE(plain.getFieldByName("name")->getDefaultValue().has_value());
    EXPECT_TRUE(plain.getFieldByName("name")->checkConstraints().empty());
    EXPECT_FALSE(plain.getFieldByName("name")->getPropertyAsString("comment").has_value());
    const SQLTable &full = tableNamed(r, "full_copy");
    EXPECT_EQ(full.getFieldNameListString(), "id, name, extra");
    EXPECT_EQ(full.getFieldByName("name")->getDefaultValue(), std::optional<std::string>("'x'"));
    EXPECT_EQ(full.getFieldByName("name")->checkConstraints().size(), 1U);
    EXPECT_FALSE(full.getFieldByName("name")->getPropertyAsString("comment").has_value());
    EXPECT_EQ(full.getFieldByName("id")->isAutoIncrement(), tableNamed(r, "src").getFieldByName("id")->isAutoIncrement());
    EXPECT_EQ(tableNamed(r, "unknown").getFieldNameListString(), "a");
}

TEST(Routines, ABrokenRoutineCostsOnlyItself)
{
    const char *const cases[] = {
        "DELIMITER ;;\nCREATE PROCEDURE p() BEGIN IF ( ( ;; END ;;\nDELIMITER ;\n",
        "CREATE OR REPLACE PROCEDURE p IS BEGIN IF x THEN ( END;\n/\n",
        "CREATE FUNCTION f() RETURNS int AS $$ BEGIN ) ; ( END; $$ LANGUAGE plpgsql;\n",
        "CREATE PROCEDURE p AS BEGIN SELECT ( ; END\nGO\n",
        "CREATE TRIGGER t AFTER INSERT ON a FOR EACH ROW BEGIN ) ;\n",
    };
    for (const char *routine : cases) {
        const ParseResult r = parse(std::string("CREATE TABLE a (id INT);\n") + routine +
                                    "CREATE TABLE b (id INT PRIMARY KEY);\n");
        ASSERT_NE(r.container, nullptr) << routine;
        EXPECT_NE(r.container->getTableByName("a"), nullptr) << routine;
        EXPECT_NE(r.container->getTableByName("b"), nullptr) << routine;
    }
}

TEST(Routines, ARoutineLeavesOneNodeAndNoModelObject)
{
    EXPECT_EQ(tree("CREATE TRIGGER t BEFORE INSERT ON s.t FOR EACH ROW BEGIN SET NEW.a = 1; END;"),
              "CREATE CREATE_TRIGGER_NODE");
    EXPECT_EQ(tree("CREATE OR REPLACE FUNCTION f() RETURNS int AS $$ SELECT 1; $$ LANGUAGE sql;"),
              "CREATE PSQL_NODE");
    const ParseResult r = parse("CREATE PROCEDURE p (a OUT INT) BEGIN DECLARE x INT DEFAULT 0; SELECT a; END;");
    EXPECT_TRUE(r.records.empty());
    ASSERT_NE(r.container, nullptr);
    EXPECT_TRUE(r.container->tables().empty());
}

TEST(Routines, AWordTerminatorEndsStatementsButNoWordThatEndsLikeIt)
{
    const ParseResult r = parse("DELIMITER GO\nCREATE TABLE algo (id int)GO\n"
                                "CREATE PROCEDURE p() BEGIN SELECT 1; END GO\nDELIMITER ;\nCREATE TABLE b (id int);\n");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    EXPECT_NE(r.container->getTableByName("algo"), nullptr);
    EXPECT_NE(r.container->getTableByName("b"), nullptr);
}

TEST(Routines, ABodyThatNeverClosesStopsAtTheNextStatementLine)
{
    const char *const cases[] = {
        "CREATE PROCEDURE p AS BEGIN SELECT 1;\nALTER TABLE a ADD CONSTRAINT a_u UNIQUE (id);\n"
        "INSERT INTO a VALUES (1);\n",
        "CREATE OR REPLACE PROCEDURE p IS BEGIN NULL;\nALTER TABLE a ADD CONSTRAINT a_u UNIQUE (id);\n/\n",
        "CREATE PROCEDURE p AS BEGIN SELECT 1;\nALTER TABLE a ADD CONSTRAINT a_u UNIQUE (id);\nGO\n",
    };
    for (const char *routine : cases) {
        const ParseResult r = parse(std::string("CREATE TABLE a (id INT);\n") + routine + "CREATE TABLE b (id INT);\n");
        EXPECT_EQ(r.records, std::vector<std::string>{"[2:0] Unended statement - read up to [3:0]"}) << routine;
        EXPECT_EQ(tableNames(r), (std::vector<std::string>{"a", "b"})) << routine;
        const SQLTable &a = tableNamed(r, "a");
        ASSERT_EQ(a.indexes().size(), 1U) << routine;
        EXPECT_EQ(a.indexes().front()->getIndexType(), std::optional<std::string>("UNIQUE")) << routine;
    }
}

TEST(Routines, StatementLinesInABodyThatClosesStayInIt)
{
    const char *const cases[] = {
        "CREATE FUNCTION f() RETURNS void AS $_$\nBEGIN\nINSERT INTO a VALUES (1);\nCREATE TEMP TABLE t (x INT);\n"
        "END;\n$_$ LANGUAGE plpgsql;\n",
        "CREATE FUNCTION f() RETURNS void AS $_x_$\nBEGIN\nDROP TABLE a;\nCREATE TABLE t (x INT);\nEND;\n$_x_$ "
        "LANGUAGE plpgsql;\n",
        "CREATE PROCEDURE p AS\nBEGIN\nINSERT INTO a VALUES (1);\nALTER TABLE a ADD lost INT;\nEND;\n",
        "DELIMITER //\nCREATE PROCEDURE p()\nBEGIN\nINSERT INTO a VALUES (1);\nDROP TABLE a;\nEND //\nDELIMITER ;\n",
        "CREATE PROCEDURE p AS\nBEGIN TRAN;\nINSERT INTO a VALUES (1);\nDROP TABLE a;\nCOMMIT;\nGO\n",
    };
    for (const char *routine : cases) {
        const ParseResult r = parse(std::string("CREATE TABLE a (id INT);\n") + routine + "CREATE TABLE b (id INT);\n");
        EXPECT_TRUE(r.records.empty()) << routine << r.records.front();
        EXPECT_EQ(tableNames(r), (std::vector<std::string>{"a", "b"})) << routine;
        EXPECT_EQ(tableNamed(r, "a").getFieldNameListString(), "id") << routine;
    }
}

TEST(TableKinds, TemporaryAndUnloggedTablesAreBuiltLikePlainTables)
{
    const std::string rest = " TABLE t (id INT NOT NULL PRIMARY KEY, name VARCHAR(20));\nCREATE TABLE u (a INT);";
    for (const char *kind : {"TEMP", "TEMPORARY", "GLOBAL TEMPORARY", "global temporary", "LOCAL TEMPORARY",
                             "LOCAL TEMP", "GLOBAL TEMP", "PRIVATE TEMPORARY", "UNLOGGED", "OR REPLACE TEMPORARY"}) {
        EXPECT_EQ(modelOf(std::string("CREATE ") + kind + rest), modelOf("CREATE" + rest)) << kind;
    }
    EXPECT_EQ(tree("CREATE GLOBAL TEMPORARY TABLE t (a INT) ON COMMIT PRESERVE ROWS;"), "CREATE TABLE t ( a INT ) ;");
}

TEST(TableKinds, AnUnknownKindOfTableIsRecordedAndTheScriptGoesOn)
{
    const ParseResult r = parse("CREATE FOREIGN TABLE f (id int) SERVER s;\n"
                                "CREATE OR REPLACE MULTISET VOLATILE TABLE m (id int);\n"
                                "CREATE TEMPORARY EXTERNAL TABLE x (id int);\n"
                                "CREATE TABLE u (a INT);\n");
    ASSERT_GE(r.records.size(), 3U);
    EXPECT_EQ(r.records[0], "[1:7] Unknown kind of table 'FOREIGN' - table not read");
    EXPECT_EQ(r.records[1], "[2:18] Unknown kind of table 'MULTISET VOLATILE' - table not read");
    EXPECT_EQ(r.records[2].substr(0, 7), "[3:17] ");
    EXPECT_EQ(tableNames(r), std::vector<std::string>{"u"});
    // TABLE as a part of another object's definition is no lost table, and
    // SQLite's virtual tables are no tables of the model.
    const ParseResult other = parse("CREATE TYPE tt AS TABLE (id int);\nCREATE PUBLICATION p FOR TABLE u;\n"
                                    "CREATE DATABASE d;\nCREATE SCHEMA s AUTHORIZATION o;\n"
                                    "CREATE VIRTUAL TABLE docs USING fts5(a, b);\nCREATE TABLE u (a INT);\n");
    EXPECT_EQ(other.records, std::vector<std::string>{});
    EXPECT_EQ(tableNames(other), std::vector<std::string>{"u"});
}

TEST(Routines, DollarQuotedBodiesEndWhereTheLexerFoundTheirClosingTag)
{
    const char *const cases[] = {
        "CREATE FUNCTION f() RETURNS int AS $a$ SELECT 1; $b$ ; END; $b$ ; $a$ LANGUAGE sql;\n",
        "CREATE FUNCTION f() RETURNS text AS $$ SELECT 'it''s $x$'; $$ LANGUAGE sql;\n",
        "CREATE FUNCTION f() RETURNS void AS $body$BEGIN\nCREATE TABLE lost (x INT);\nEND;$body$ LANGUAGE plpgsql;\n",
        "DO $do$ BEGIN PERFORM 1; END $do$;\n",
        "CREATE FUNCTION f() RETURNS int AS $x$ SELECT 1;\n",  // never closes: not a quote
    };
    for (const char *routine : cases) {
        const ParseResult r = parse(std::string("CREATE TABLE a (id INT);\n") + routine + "CREATE TABLE b (id INT);\n");
        EXPECT_EQ(tableNames(r), (std::vector<std::string>{"a", "b"})) << routine;
    }
}
