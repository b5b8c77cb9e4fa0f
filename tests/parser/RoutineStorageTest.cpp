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
}

TEST(StorageClauses, MySqlPostgreSqlAndSqlServerClausesLeaveTheTableAsWithout)
{
    expectSameAsPlain("/*!50100 PARTITION BY LIST (id) (PARTITION p0 VALUES IN (1,2) ENGINE = InnoDB) */");
    expectSameAsPlain("STATS_PERSISTENT=0 PARTITION BY HASH (id) PARTITIONS 4");
    expectSameAsPlain("INHERITS (base) PARTITION BY RANGE (id) USING heap WITH (fillfactor = 70) TABLESPACE fast");
    expectSameAsPlain("ON [PRIMARY] TEXTIMAGE_ON [PRIMARY]");
}

TEST(StorageClauses, KeptOptionsAfterAClauseAreStillRead)
{
    const ParseResult r = parse("CREATE TABLE t (id INT) TABLESPACE ts ENGINE=InnoDB DEFAULT CHARSET=utf8;");
    EXPECT_TRUE(r.records.empty()) << r.records.front();
    EXPECT_EQ(tableNamed(r, "t").getTableType(), std::optional<std::string>("InnoDB"));
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
