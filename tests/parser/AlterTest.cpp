// ALTER statements: which clauses reach the walker, how added
// constraints land on tables built earlier, the constraint name that carries
// over, missing targets, and the statements that are only consumed.
#include "ParserTestSupport.h"

namespace {

using Names = std::vector<std::string>;

const char *const kTables = "CREATE TABLE s.t (a INT, b INT, k INT);\nCREATE TABLE u (id INT, b INT);\n";

} // namespace

TEST(AlterTable, OnlyAddedConstraintsStayInTheTree)
{
    EXPECT_EQ(tree("ALTER TABLE ONLY public.t ADD CONSTRAINT fk FOREIGN KEY (a) REFERENCES u (b) MATCH FULL "
                   "ON DELETE CASCADE;"),
              "ALTER TABLE ONLY public . t ADD CONSTRAINT fk FOREIGN KEY ( a ) REFERENCES u ( b ) ON_DELETE CASCADE ;");
    EXPECT_EQ(tree("ALTER TABLE t ADD COLUMN x INT FIRST, ADD INDEX i (x), DROP PRIMARY KEY;"),
              "ALTER TABLE t IGNORED_NODE , IGNORED_NODE , IGNORED_NODE ;");
    EXPECT_EQ(tree("ALTER TABLE t ENABLE CONSTRAINT c;"), "ALTER TABLE t ;");
    EXPECT_EQ(tree("ALTER TABLE t ADD CONSTRAINT pk PRIMARY KEY (a) USING INDEX TABLESPACE ts ENABLE NOVALIDATE;"),
              "ALTER TABLE t ADD CONSTRAINT pk PRIMARY KEY ( a ) ;");
    EXPECT_EQ(tree("ALTER TABLE [dbo].[t] WITH NOCHECK ADD CONSTRAINT c CHECK (a > 0), NOCHECK CONSTRAINT c;"),
              "ALTER TABLE [dbo] . [t] ADD CONSTRAINT c CHECK , IGNORED_NODE ;");
}

TEST(AlterTable, EveryOtherClauseIsConsumedWithoutARecord)
{
    const ParseResult result = parse(
        std::string(kTables) +
        "ALTER TABLE s.t ALTER COLUMN a SET DEFAULT nextval('s.t_a_seq'::regclass), ALTER a TYPE bigint USING a::bigint,"
        " ALTER COLUMN a DROP NOT NULL, ALTER a SET STORAGE PLAIN, ALTER COLUMN a ADD GENERATED ALWAYS AS IDENTITY"
        " (SEQUENCE NAME s.t_a_seq START WITH 1);\n"
        "ALTER TABLE u CHANGE COLUMN b c INT AFTER id, MODIFY id BIGINT FIRST, MODIFY (b NOT NULL ENABLE),"
        " DROP COLUMN IF EXISTS x CASCADE, DROP INDEX i, DROP FOREIGN KEY f, DROP CONSTRAINT c RESTRICT,"
        " DISABLE KEYS, ENABLE TRIGGER ALL, RENAME TO v, RENAME COLUMN a TO b, ORDER BY a, b;\n"
        "ALTER TABLE u CONVERT TO CHARACTER SET utf8 COLLATE utf8_bin, DISCARD TABLESPACE, IMPORT TABLESPACE,"
        " CLUSTER ON i, SET SCHEMA x, SET WITHOUT OIDS, OWNER TO postgres, ENGINE=InnoDB, AUTO_INCREMENT=5,"
        " ADD (c INT, d INT), ADD KEY k USING BTREE (b(10)), ADD CONSTRAINT df DEFAULT 0 FOR b;\n"
        "ALTER TABLE ONLY public.u ATTACH PARTITION public.u_1 FOR VALUES FROM ('2022-01-01') TO ('2022-02-01');\n"
        "ALTER TABLE u ENABLE ALL TRIGGERS, DISABLE TABLE LOCK, ENABLE VALIDATE UNIQUE (b) USING INDEX i "
        "EXCEPTIONS INTO ex CASCADE KEEP INDEX;\n"
        "ALTER TABLE nowhere ADD COLUMN z INT, DISABLE CONSTRAINT c;\n"
        "ALTER TABLE u;\n");
    EXPECT_EQ(result.records, Names{});
    EXPECT_EQ(tableNamed(result, "u").fields().size(), 2u);
    EXPECT_EQ(tableNamed(result, "t").fields().size(), 3u);
}

// SQL Server's column list after one ADD: every column is read (and, like any
// added column, not applied), and the constraints among them are applied.
TEST(AlterTable, SeveralColumnsAfterOneAddAreReadWithTheConstraintsAmongThem)
{
    EXPECT_EQ(tree("ALTER TABLE t ADD b INT, c INT NULL, CONSTRAINT pk PRIMARY KEY (a), d [int] NOT NULL;"),
              "ALTER TABLE t IGNORED_NODE , IGNORED_NODE , CONSTRAINT pk PRIMARY KEY ( a ) , IGNORED_NODE ;");
    const ParseResult result = parse(std::string(kTables) +
                                     "ALTER TABLE u ADD x INT, y [nvarchar](10) NULL, CONSTRAINT pk PRIMARY KEY (id),\n"
                                     "  z INT CONSTRAINT dz DEFAULT 0, CHECK (b > 0);\n"
                                     "ALTER TABLE u ADD w INT, ENGINE = InnoDB, DEFAULT CHARSET utf8, DROP COLUMN w;\n");
    EXPECT_EQ(result.records, Names{});
    const SQLTable &u = tableNamed(result, "u");
    EXPECT_EQ(u.fields().size(), 2u);
    EXPECT_EQ(primaryKeyNames(u), Names{"id"});
    EXPECT_EQ(u.checkConstraints().size(), 1u);
}

TEST(AlterTable, AddsKeysToTablesBuiltEarlier)
{
    const ParseResult result = parse(
        std::string(kTables) +
        "ALTER TABLE ONLY s.t ADD CONSTRAINT fk FOREIGN KEY (a) REFERENCES u (id) ON DELETE CASCADE;\n"
        "ALTER TABLE u ADD PRIMARY KEY (id), ADD UNIQUE (b), ADD UNIQUE KEY ub (b, id);\n"
        "ALTER TABLE u ADD CONSTRAINT pk PRIMARY KEY (b) DEFERRABLE INITIALLY DEFERRED;\n"
        "ALTER TABLE t ADD (CONSTRAINT ck CHECK (k > 0), CONSTRAINT fk2 FOREIGN KEY (b, k) REFERENCES u);\n");
    EXPECT_EQ(result.records, Names{});
    const SQLTable &t = tableNamed(result, "t");
    const SQLFieldReference *reference = t.getFieldByName("a")->getReferences();
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->referenceId, std::optional<std::string>("fk"));
    EXPECT_EQ(reference->onDelete, 1);
    EXPECT_TRUE(reference->resolved);

    // ADD PRIMARY KEY makes exactly its columns the key, each time.
    const SQLTable &u = tableNamed(result, "u");
    EXPECT_EQ(primaryKeyNames(u), Names{"b"});
    ASSERT_EQ(u.indexes().size(), 2u);
    EXPECT_FALSE(u.indexes()[0]->hasName());
    EXPECT_EQ(u.indexes()[0]->getIndexType(), std::optional<std::string>("UNIQUE"));
    EXPECT_EQ(u.indexes()[1]->getName(), "ub");
    EXPECT_EQ(u.indexes()[1]->getFieldName(), std::optional<std::string>("id"));

    ASSERT_EQ(t.checkConstraints().size(), 1u);
    EXPECT_EQ(t.checkConstraints()[0]->getName(), "ck");
    ASSERT_EQ(t.foreignKeys().size(), 1u);
    EXPECT_EQ(t.foreignKeys()[0]->getName(), "fk2");
    EXPECT_TRUE(t.foreignKeys()[0]->getPropertyAsBoolean("targetsPrimaryKey"));
}

TEST(AlterTable, TheLastConstraintNameCarriesOverWithinAStatement)
{
    const ParseResult result = parse(std::string(kTables) +
                                     "ALTER TABLE u ADD CHECK (id > 0), ADD CONSTRAINT f1 FOREIGN KEY (id) REFERENCES t (a),"
                                     " ADD FOREIGN KEY (b) REFERENCES t (b), ADD CHECK (b > 0);\n"
                                     "ALTER TABLE u ADD CHECK (b < 9);\n");
    EXPECT_EQ(result.records, Names{});
    const SQLTable &u = tableNamed(result, "u");
    EXPECT_EQ(u.getFieldByName("id")->getReferences()->referenceId, std::optional<std::string>("f1"));
    EXPECT_EQ(u.getFieldByName("b")->getReferences()->referenceId, std::optional<std::string>("f1"));
    ASSERT_EQ(u.checkConstraints().size(), 3u);
    EXPECT_EQ(u.checkConstraints()[0]->getName(), "cons_check");
    EXPECT_EQ(u.checkConstraints()[1]->getName(), "f1");
    EXPECT_EQ(u.checkConstraints()[2]->getName(), "cons_check");
}

TEST(AlterTable, AMissingTargetIsRecordedOncePerAddAndChangesNothing)
{
    const ParseResult result = parse("ALTER TABLE t ADD PRIMARY KEY (a), ADD COLUMN x INT,\n"
                                     "  ADD CONSTRAINT f FOREIGN KEY (a, b) REFERENCES u (x, y);\n"
                                     "CREATE TABLE t (a INT, b INT);\n"
                                     "ALTER  TABLE s.missing ADD UNIQUE (a);\n"
                                     "ALTER TABLE a.b.t ADD CHECK (a > 0);\n");
    EXPECT_EQ(result.records, (Names{"[1:6] alter table constraint missing target table (t),1,6",
                                     "[1:6] alter table constraint missing target table (t),1,6",
                                     "[2:19] Table Constraint foreign key Field Name x not found in table (null)\n",
                                     "[2:19] Table Constraint foreign key Field Name y not found in table (null)\n",
                                     "[4:7] alter table constraint missing target table (s, missing),4,7",
                                     "[5:6] alter table constraint missing target table (a, b, t),5,6"}));
    const SQLTable &t = tableNamed(result, "t");
    EXPECT_EQ(primaryKeyNames(t), Names{});
    EXPECT_TRUE(t.foreignKeys().empty() && t.indexes().empty() && t.checkConstraints().empty());
}

TEST(AlterTable, ABrokenClauseKeepsWhatCameBeforeIt)
{
    const ParseResult result = parse(std::string(kTables) +
                                     "ALTER TABLE u ADD PRIMARY KEY (id), ADD FOO BAR BAZ;\n"
                                     "ALTER TABLE u ADD CONSTRAINT f FOREIGN KEY (b) REFERENCES t (b) ON DELETE FOO;\n"
                                     "CREATE TABLE v (x INT);\n");
    EXPECT_FALSE(result.records.empty());
    EXPECT_EQ(primaryKeyNames(tableNamed(result, "u")), Names{"id"});
    EXPECT_EQ(tableNamed(result, "v").fields().size(), 1u);
}

TEST(AlterOther, ProceduresAndOtherObjectsLeaveOneIgnoredNodeAndNoRecord)
{
    EXPECT_EQ(tree("ALTER PROCEDURE p COMPILE DEBUG plsql_debug = TRUE REUSE SETTINGS;\n/\n"
                   "ALTER PROCEDURE s.p COMPILE PLSQL_OPTIMIZE_LEVEL = 2 TIMESTAMP '2020-01-01';\n"
                   "ALTER PROCEDURE p COMMENT 'x';\n"
                   "ALTER SEQUENCE s OWNED BY t.id;\nALTER FOOBAR x y z;\nALTER IGNORE TABLE t ADD COLUMN x INT;"),
              "ALTER IGNORED_NODE ALTER IGNORED_NODE ALTER IGNORED_NODE ALTER IGNORED_NODE ALTER IGNORED_NODE "
              "ALTER IGNORE TABLE t IGNORED_NODE ;");
    const ParseResult result = parse("ALTER FOOBAR x y z;\nALTER SESSION SET x = 1;\nCREATE TABLE t (a INT);");
    EXPECT_EQ(result.records, Names{});
    EXPECT_EQ(result.container->tables().size(), 1u);
}

TEST(AlterOther, OracleIndexClausesAfterUsingIndexParse)
{
    const ParseResult result = parse(
        std::string(kTables) +
        "ALTER TABLE u ADD CONSTRAINT p1 PRIMARY KEY (id) USING INDEX PCTFREE 10 INITRANS 2 MAXTRANS 255 "
        "COMPUTE STATISTICS STORAGE(INITIAL 65536 NEXT 1M MINEXTENTS 1 MAXEXTENTS UNLIMITED PCTINCREASE 0 "
        "FREELISTS 1 FREELIST GROUPS 1 BUFFER_POOL DEFAULT FLASH_CACHE DEFAULT) TABLESPACE \"USERS\" ENABLE;\n"
        "ALTER TABLE u ADD CONSTRAINT p2 PRIMARY KEY (id) USING INDEX (CREATE UNIQUE INDEX pk ON u (id) "
        "TABLESPACE x) EXCEPTIONS INTO ex;\n"
        "ALTER TABLE u ADD CONSTRAINT u1 UNIQUE (b) USING INDEX LOCAL (PARTITION a TABLESPACE x, PARTITION b "
        "(SUBPARTITION c TABLESPACE y)) ENABLE;\n"
        "ALTER TABLE u ADD CONSTRAINT u2 UNIQUE (b) USING INDEX GLOBAL PARTITION BY RANGE (b) (PARTITION p1 "
        "VALUES LESS THAN (10) TABLESPACE x, PARTITION p2 VALUES LESS THAN (MAXVALUE)) NOLOGGING;\n"
        "ALTER TABLE u ADD CONSTRAINT u3 UNIQUE (b) USING INDEX GLOBAL PARTITION BY HASH (b) PARTITIONS 4 "
        "STORE IN (a, b) REVERSE NOSORT COMPRESS 1 PARALLEL 2 ONLINE;\n"
        "ALTER TABLE u ADD CONSTRAINT u4 UNIQUE (b) USING INDEX GLOBAL PARTITION BY HASH (b) (PARTITION x "
        "TABLESPACE a, PARTITION OVERFLOW LOB (c) STORE AS (TABLESPACE d));\n"
        "ALTER TABLE u ADD CONSTRAINT u5 UNIQUE (b) USING INDEX s.ui DISABLE;\n"
        "ALTER TABLE u ADD CONSTRAINT u6 UNIQUE (b) USING INDEX INDEXTYPE IS ctx.context PARAMETERS ('x');\n");
    EXPECT_EQ(result.records, Names{});
    EXPECT_EQ(tableNamed(result, "u").indexes().size(), 6u);
}

TEST(AlterTable, TruncatedOrDeeplyNestedStatementsNeverCrash)
{
    const std::string script =
        "CREATE TABLE t (a INT, b INT, PRIMARY KEY (a), UNIQUE KEY u (b(4) DESC), CONSTRAINT f FOREIGN KEY (b) "
        "REFERENCES t (a) ON DELETE CASCADE DEFERRABLE);\n"
        "CREATE UNIQUE INDEX i ON t USING btree (a, b) WHERE (a > 0) TABLESPACE x;\n"
        "ALTER TABLE t ADD CONSTRAINT k PRIMARY KEY (a) USING INDEX (CREATE INDEX j ON t (a)) ENABLE, "
        "ADD (CONSTRAINT c CHECK (a > 0)), MODIFY (a NOT NULL), ALTER COLUMN b SET DEFAULT 1;\n"
        "CREATE SEQUENCE s START WITH 1 OWNED BY t.a;\nCREATE TABLE last (z INT);\n";
    // Every cut keeps the tables read before it.
    for (size_t cut = 0; cut <= script.size(); cut += 3) {
        const ParseResult result = parse(script.substr(0, cut));
        if (cut > script.find("CREATE UNIQUE")) {
            ASSERT_TRUE(result.container) << cut;
            EXPECT_NE(result.container->getTableByName("t"), nullptr) << cut;
        }
    }
    const std::string deep(100000, '(');
    const ParseResult nested = parse("CREATE TABLE t (a INT);\nALTER TABLE t MODIFY " + deep + ";\n"
                                     "ALTER TABLE t ALTER a ADD GENERATED " + deep + ", ADD PRIMARY KEY (a);\n"
                                     "CREATE TABLE u (b INT);");
    EXPECT_FALSE(nested.records.empty());
    EXPECT_NE(nested.container->getTableByName("u"), nullptr);
}
