// CREATE VIEW: the SELECT reader on token runs, and views built from scripts.
#include "ParserTestSupport.h"
#include "ViewBuilder.h"

#include <sstream>

namespace {

// Splits a query at blanks: the tests write their token runs spaced out.
std::vector<std::string> tokensOf(const std::string &query)
{
    std::istringstream in(query);
    std::vector<std::string> tokens;
    for (std::string token; in >> token;) {
        tokens.push_back(token);
    }
    return tokens;
}

struct ReadQuery {
    bool fits;
    std::vector<std::string> columns;
    std::vector<std::string> tables;  // "name/alias"
    std::string query;
};

ReadQuery read(const std::string &text)
{
    const std::vector<std::string> tokens = tokensOf(text);
    const sqlantlr::ViewQuery query = sqlantlr::readViewQuery(tokens);
    ReadQuery result{query.fits, {}, {}, sqlantlr::joinTokenTexts(tokens, 0, query.queryEnd)};
    for (const auto &column : query.selectColumns) {
        result.columns.push_back(sqlantlr::joinTokenTexts(tokens, column.first, column.second));
    }
    for (const SQLViewTableEntry &table : query.tables) {
        result.tables.push_back(table.name + "/" + table.alias);
    }
    return result;
}

using Texts = std::vector<std::string>;

TEST(ViewQuery, SelectColumnsAreTheOutermostSelectExpressionsWithTheirAliases)
{
    const ReadQuery q = read("SELECT DISTINCT a , f ( b , ( SELECT c FROM t ) ) AS x , CASE WHEN d THEN 1 END e FROM u");
    ASSERT_TRUE(q.fits);
    EXPECT_EQ(q.columns, (Texts{"a", "f ( b , ( SELECT c FROM t ) ) AS x", "CASE WHEN d THEN 1 END e"}));
    EXPECT_EQ(q.tables, (Texts{"t/", "u/"}));
}

TEST(ViewQuery, TopAndSetQuantifiersAreNoColumnText)
{
    EXPECT_EQ(read("SELECT TOP 5 PERCENT WITH TIES a FROM t").columns, (Texts{"a"}));
    EXPECT_EQ(read("SELECT TOP ( 5 ) ALL a FROM t").columns, (Texts{"a"}));
    EXPECT_EQ(read("SELECT DISTINCT ON ( a ) a , b FROM t").columns, (Texts{"a", "b"}));
}

TEST(ViewQuery, EveryNamedTableOfEveryBranchInOrderOfAppearance)
{
    const ReadQuery q = read(
        "( SELECT a FROM s . t1 x JOIN t2 ON x . id = t2 . id AND t2 . k = 1 ) UNION ALL "
        "SELECT b FROM ( SELECT b FROM t3 ) d , t4 AS y WHERE b IN ( SELECT b FROM t5 ) "
        "OR EXISTS ( SELECT 1 FROM t6 ) MINUS SELECT c FROM { OJ t7 LEFT OUTER JOIN t8 ON t7 . a = t8 . a }");
    ASSERT_TRUE(q.fits);
    EXPECT_EQ(q.columns, (Texts{"a"}));
    EXPECT_EQ(q.tables, (Texts{"s.t1/x", "t2/", "t3/", "t4/y", "t5/", "t6/", "t7/", "t8/"}));
}

TEST(ViewQuery, CteNamesAndTableFunctionsAreNoTables)
{
    const ReadQuery q = read(
        "WITH RECURSIVE c ( n ) AS ( SELECT n FROM base ) SELECT n FROM c JOIN LATERAL generate_series ( 1 , n ) g ON true "
        "CROSS APPLY ( SELECT TOP ( 1 ) x FROM other ) o");
    ASSERT_TRUE(q.fits);
    EXPECT_EQ(q.tables, (Texts{"base/", "other/"}));
}

TEST(ViewQuery, HintsAndTrailingOptionsAreNoAliasesAndNoQuery)
{
    const ReadQuery q = read("SELECT a FROM t WITH ( NOLOCK ) INNER HASH JOIN u USE INDEX ( i ) ON t . a = u . a "
                             "WITH CASCADED CHECK OPTION");
    ASSERT_TRUE(q.fits);
    EXPECT_EQ(q.tables, (Texts{"t/", "u/"}));
    EXPECT_EQ(q.query, "SELECT a FROM t WITH ( NOLOCK ) INNER HASH JOIN u USE INDEX ( i ) ON t . a = u . a");
    EXPECT_EQ(read("SELECT a FROM t WITH READ ONLY CONSTRAINT c").query, "SELECT a FROM t");
    EXPECT_EQ(read("SELECT a FROM t GROUP BY a WITH ROLLUP WITH NO DATA").query, "SELECT a FROM t GROUP BY a WITH ROLLUP");
}

TEST(ViewQuery, ClauseWordsInsideExpressionsDoNotEndThem)
{
    const ReadQuery q = read("SELECT EXTRACT ( YEAR FROM d ) y , LEFT ( n , 2 ) FROM t WHERE a IS DISTINCT FROM b "
                             "ORDER BY 1 LIMIT 2 OFFSET 3");
    ASSERT_TRUE(q.fits);
    EXPECT_EQ(q.columns, (Texts{"EXTRACT ( YEAR FROM d ) y", "LEFT ( n , 2 )"}));
    EXPECT_EQ(q.tables, (Texts{"t/"}));
}

TEST(ViewQuery, WhatIsNoSelectDoesNotFitAndSaysWhere)
{
    for (const char *text : {"", "UPDATE t SET a = 1", "SELECT FROM t", "SELECT a FROM t x y", "SELECT a FROM ( t",
                             "SELECT a FROM t JOIN", "SELECT ( a FROM t"}) {
        EXPECT_FALSE(read(text).fits) << text;
    }
    const std::vector<std::string> tokens = tokensOf("SELECT a FROM t x y");
    EXPECT_EQ(sqlantlr::readViewQuery(tokens).failAt, 5u);
}

TEST(ViewQuery, DeepNestingFailsInsteadOfOverflowing)
{
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "( ";
    }
    text += "SELECT 1";
    for (int i = 0; i < 5000; ++i) {
        text += " )";
    }
    EXPECT_FALSE(read(text).fits);
}

const SQLView *viewNamed(const ParseResult &result, const std::string &name)
{
    for (const auto &view : result.container->views()) {
        if (view->getName() == name) {
            return view.get();
        }
    }
    ADD_FAILURE() << "no view " << name;
    return nullptr;
}

TEST(Views, TwoPartNamesNameTheViewAfterTheSchema)
{
    const ParseResult result = parse("CREATE VIEW s.v (a, b) AS SELECT x, y FROM t;\nCREATE VIEW a.b.c AS SELECT 1;\n");
    ASSERT_TRUE(result.records.empty());
    const SQLView *view = viewNamed(result, "s");
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->getSchemaName(), "s");
    EXPECT_EQ(view->getBaseName(), "v");
    EXPECT_EQ(view->columns(), (Texts{"a", "b"}));
    const SQLView *three = viewNamed(result, "a");
    ASSERT_NE(three, nullptr);
    EXPECT_FALSE(three->getSchemaName().has_value());
    EXPECT_EQ(three->getQueryString(), "SELECT 1");
}

TEST(Views, ExecutableCommentsAreReadAsSqlAndOrdinaryCommentsStayComments)
{
    const ParseResult result = parse("/*!50001 CREATE ALGORITHM=UNDEFINED */ /*!50013 DEFINER=`u`@`%` SQL SECURITY "
                                     "DEFINER */ /*!50001 VIEW `v` AS select 1 AS `a` */;\n"
                                     "/* CREATE VIEW w AS SELECT 2 */ /*!*/ /**/ /***/;\n");
    EXPECT_TRUE(result.records.empty());
    ASSERT_EQ(result.container->views().size(), 1u);
    EXPECT_EQ(result.container->views()[0]->getQueryString(), "select 1 AS `a`");
}

// DEFINER may come first, with or without OR REPLACE and SQL SECURITY; the
// routines that also start with DEFINER stay routines.
TEST(Views, DefinerFirstIsAViewModifier)
{
    const ParseResult result = parse("CREATE DEFINER=`root`@`localhost` VIEW v AS SELECT a FROM t;\n"
                                     "CREATE OR REPLACE DEFINER=CURRENT_USER SQL SECURITY INVOKER VIEW w AS SELECT 1;\n"
                                     "CREATE DEFINER=`root`@`%` PROCEDURE p() SELECT 1;\n"
                                     "CREATE DEFINER=`root`@`%` TRIGGER tr BEFORE INSERT ON t FOR EACH ROW SET NEW.a = 1;\n"
                                     "CREATE TABLE t (a INT);\n");
    EXPECT_TRUE(result.records.empty()) << result.records.front();
    ASSERT_EQ(result.container->views().size(), 2u);
    ASSERT_NE(viewNamed(result, "v"), nullptr);
    EXPECT_EQ(viewNamed(result, "v")->getQueryString(), "SELECT a FROM t");
    ASSERT_NE(viewNamed(result, "w"), nullptr);
    EXPECT_EQ(result.container->tables().size(), 1u);
}

TEST(Views, AViewThatDoesNotFitLeavesRecordsAndTheRestIsBuilt)
{
    const ParseResult result = parse("CREATE VIEW v AS SELECT a FROM t x y;\nCREATE TABLE after (id INT);\n"
                                     "CREATE VIEW w AS;\nCREATE TABLE later (id INT);\n");
    EXPECT_TRUE(result.container->views().empty());
    EXPECT_FALSE(result.records.empty());
    EXPECT_EQ(result.records.front().rfind("[1:35]", 0), 0u) << result.records.front();
    EXPECT_EQ(result.container->tables().size(), 2u);
}

} // namespace
