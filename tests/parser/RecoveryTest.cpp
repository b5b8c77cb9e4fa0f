// Records of broken input: each names the line, position and token of its
// own error, every error node left in the tree gives one record, and no text
// that recovery made up reaches the model.
#include "ModelJson.h"
#include "ParserTestSupport.h"

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

size_t countOf(const std::string &text, const std::string &word)
{
    size_t count = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + word.size())) {
        ++count;
    }
    return count;
}

// Scripts with broken spans of several kinds: made-up missing tokens, dropped
// extra tokens, failed predictions and mismatched sets.
const char *const kBrokenScripts[] = {
    "CREATE TABLE a (x VARCHAR(10, y INT);",
    "CREATE TABLE b (x INT) TYPE=;\nCREATE TABLE c (x INT) ENGINE = ;",
    "CREATE TABLE d (x INT DEFAULT , y INT ON UPDATE CURRENT_TIMESTAMP(, z INT) CHARACTER SET =;",
    "CREATE TABLE e (x ENUM('x', 5), y SET(1), z INT, INDEX i (z, 5), UNIQUE KEY (z, 7), INDEX j (z));",
    "CREATE TABLE f (x DECIMAL(10 2) y INT, z NUMERIC(3,);",
    "CREATE TABLE g (x INT, PRIMARY KEY (x,), FOREIGN KEY (x) REFERENCES h ();",
};

} // namespace

TEST(Recovery, ARepeatedErrorIsReportedAtEachOfItsOwnLines)
{
    std::string script;
    for (int i = 0; i < 4; ++i) {
        script += "CREATE TABLE t" + std::to_string(i) + " (x INT) COMMENT 'c';\n";
    }
    const ParseResult result = parse(script);
    ASSERT_EQ(result.records.size(), 8u);
    for (size_t i = 0; i < result.records.size(); ++i) {
        EXPECT_EQ(result.records[i].rfind("[" + std::to_string(i / 2 + 1) + ":32] ", 0), 0u) << result.records[i];
    }
}

TEST(Recovery, AnErrorAfterARepairedOneIsReportedAtItsOwnToken)
{
    const ParseResult result = parse("CREATE TABLE u (a INT DEFAULT 1 2, b INT);\n"
                                     "CREATE TABLE v (a DECIMAL(10 2), b INT);\n"
                                     "CREATE TABLE w (a DECIMAL(10 2) b INT);\n");
    EXPECT_EQ(result.records,
              (Names{"[1:32] Parse Error: Mismatched Token Exception (2): found token '2' near '2' 1",
                     "[1:32] expected CLOSEPAREN ... ",
                     "[2:29] Parse Error: Extraneous Token Exception (9): found token '2' near '2' 2",
                     "[2:29] Extraneous input - expected CLOSEPAREN",
                     "[3:29] Parse Error: Extraneous Token Exception (9): found token '2' near '2' 3",
                     "[3:29] Extraneous input - expected CLOSEPAREN",
                     "[3:32] Parse Error: Mismatched Token Exception (2): found token 'b' near 'b' 4",
                     "[3:32] expected CLOSEPAREN ... ",
                     "[1:16] error field ERROR",
                     "[2:16] error field ERROR",
                     "[3:16] error field ERROR"}));
    EXPECT_EQ(tableNamed(result, "v").fields().size(), 1u);
}

TEST(Recovery, EveryErrorNodeGivesOneRecord)
{
    for (const char *script : kBrokenScripts) {
        const ParseResult result = parse(script);
        const size_t errorNodes = countOf(tree(script), "ERROR");
        const size_t records = static_cast<size_t>(std::count_if(
            result.records.begin(), result.records.end(),
            [](const std::string &record) { return record.find("] error field ERROR") != std::string::npos; }));
        EXPECT_EQ(records, errorNodes) << script;
    }
}

TEST(Recovery, NoTextMadeByRecoveryReachesTheModel)
{
    for (const char *script : kBrokenScripts) {
        const ParseResult result = parse(script);
        ASSERT_NE(result.container, nullptr) << script;
        EXPECT_FALSE(result.records.empty()) << script;
        const std::string model = sqlantlr::modelJsonText(*result.container, {});
        EXPECT_EQ(model.find("<missing"), std::string::npos) << script << "\n" << model;
        EXPECT_EQ(model.find("ERROR"), std::string::npos) << script << "\n" << model;
    }
}

// The columns around a broken one are kept; the broken one is left out, and
// a broken key or index entry leaves its key out.
TEST(Recovery, BrokenColumnsAndEntriesLeaveTheRestOfTheTable)
{
    const ParseResult result = parse(kBrokenScripts[3]);
    const SQLTable &table = tableNamed(result, "e");
    ASSERT_EQ(table.fields().size(), 1u);
    EXPECT_EQ(table.fields()[0]->getName(), "z");
    EXPECT_EQ(table.fields()[0]->getType(), "INT");
    ASSERT_EQ(table.indexes().size(), 1u);
    EXPECT_EQ(table.indexes()[0]->getName(), "j");
}

// Each shape of a column the parser cannot read: the column is left out with
// an error record at its name, and the column, key and constraint after it,
// the table's options and the next statement are read as if it were not there.
TEST(Recovery, AnUnreadableColumnIsLeftOutAndTheEntriesAfterItAreRead)
{
    const char *const brokenColumns[] = {
        "w DECIMAL(5,,)",                  // bad type arguments
        "w VARCHAR()",                     // empty type arguments
        "w ENUM('x', 5)",                  // a value that is no text
        "w NUMERIC(8,2) garbage words",    // stray words after the type
        "w INT DEFAULT 0 NOT FOO",         // a broken option
        "w INT DEFAULT (1",                // a parenthesis that never closes
        "w DECIMAL(10, 2",                 // a type's parenthesis that never closes
        "w INT CHECK w > 0 NOT NULL",      // a check without its parentheses
        "w 123 INT",                       // a number where the type stands
    };
    for (const char *column : brokenColumns) {
        const std::string script = std::string("CREATE TABLE t (id INT,\n  ") + column +
                                   ",\n  after_it VARCHAR(5) NOT NULL, PRIMARY KEY (id), UNIQUE (after_it),\n"
                                   "  CHECK (id > 0)) ENGINE=InnoDB;\nCREATE TABLE next_one (x INT);\n";
        const ParseResult result = parse(script);
        ASSERT_NE(result.container, nullptr) << column;
        const SQLTable &t = tableNamed(result, "t");
        Names fields;
        for (const auto &field : t.fields()) {
            fields.push_back(field->getName());
        }
        EXPECT_EQ(fields, (Names{"id", "after_it"})) << column;
        EXPECT_EQ(primaryKeyNames(t), Names{"id"}) << column;
        EXPECT_TRUE(t.getFieldByName("after_it") != nullptr && t.getFieldByName("after_it")->isNotNull()) << column;
        EXPECT_EQ(t.indexes().size(), 1u) << column;
        EXPECT_EQ(t.checkConstraints().size(), 1u) << column;
        EXPECT_EQ(t.getTableType(), std::optional<std::string>("InnoDB")) << column;
        EXPECT_EQ(tableNamed(result, "next_one").fields().size(), 1u) << column;
        EXPECT_NE(std::find(result.records.begin(), result.records.end(), "[2:2] error field ERROR"),
                  result.records.end())
            << column;
        const std::string model = sqlantlr::modelJsonText(*result.container, {});
        EXPECT_EQ(model.find("ERROR"), std::string::npos) << column << "\n" << model;
        EXPECT_EQ(model.find("<missing"), std::string::npos) << column << "\n" << model;
    }
}

// A broken column that ends the list, or the statement, costs nothing else;
// a parenthesis it never closes ends at the comma before the next column.
TEST(Recovery, ABrokenLastColumnLeavesTheTableAndTheNextStatement)
{
    const ParseResult result = parse("CREATE TABLE a (id INT, w DECIMAL(5,,));\n"
                                     "CREATE TABLE b (id INT, w INT DEFAULT (1, x INT);\n"
                                     "CREATE TABLE c (id INT);\n");
    ASSERT_NE(result.container, nullptr);
    EXPECT_EQ(tableNames(result), (Names{"a", "b", "c"}));
    EXPECT_EQ(tableNamed(result, "a").fields().size(), 1u);
    ASSERT_EQ(tableNamed(result, "b").fields().size(), 2u);
    EXPECT_EQ(tableNamed(result, "b").fields()[1]->getName(), "x");
    EXPECT_EQ(tableNamed(result, "c").fields().size(), 1u);
}

// Imaginary tokens (ON_DELETE ...) reuse the token objects of earlier
// statements: a mark of recovery an error left on one must not make a later,
// clean column look broken.
TEST(Recovery, AnErrorLeavesNoMarkOnTheStatementsAfterIt)
{
    const ParseResult result = parse("CREATE TABLE m (c BLOB COMPRESSED FOO, z INT);\n"
                                     "CREATE TABLE p (a text, b integer REFERENCES p (z) ON DELETE CASCADE, z int,\n"
                                     "  CONSTRAINT f FOREIGN KEY (z) REFERENCES m (z) ON UPDATE SET NULL);\n");
    ASSERT_NE(result.container, nullptr);
    const SQLTable &p = tableNamed(result, "p");
    ASSERT_EQ(p.fields().size(), 3u);
    EXPECT_EQ(p.fields()[1]->getName(), "b");
    ASSERT_NE(p.fields()[1]->getReferences(), nullptr);
    EXPECT_EQ(result.records.size(), 3u) << result.records.front();
}

namespace {

// A statement that never ends names its own first token in a record, whatever
// kind of construct stays open; the statements it swallows are named by it.
TEST(Recovery, AStatementThatRunsOnIsNamedWhereItStarts)
{
    const std::pair<const char *, const char *> scripts[] = {
        {"CREATE TABLE a (id INT);\nBEGIN\n  NULL;\nCREATE TABLE b (id INT);\n", "[2:0] "},
        {"CREATE TABLE a (id INT,\n  name INT\nCREATE TABLE b (id INT);\n", "[1:0] "},
        {"CREATE TABLE a (id INT);\n  CREATE PROCEDURE p IS\nBEGIN\n  NULL;\nALTER TABLE a ADD UNIQUE (id);\n", "[2:2] "},
        {"DECLARE x INT;\nINSERT INTO a VALUES (1);\n", "[1:0] "},
    };
    for (const auto &[script, start] : scripts) {
        const ParseResult result = parse(script);
        const bool named = std::any_of(result.records.begin(), result.records.end(), [&](const std::string &r) {
            return r.rfind(std::string(start) + "Unended statement - read up to ", 0) == 0;
        });
        EXPECT_TRUE(named) << script << "\n" << ::testing::PrintToString(result.records);
    }
}

} // namespace
