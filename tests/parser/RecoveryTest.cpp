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
    const ParseResult result = parse("CREATE TABLE u (a INT DEFAULT (1 2), b INT);\n"
                                     "CREATE TABLE v (a DECIMAL(10 2), b INT);\n"
                                     "CREATE TABLE w (a DECIMAL(10 2) b INT);\n");
    EXPECT_EQ(result.records,
              (Names{"[1:33] Parse Error: No Viable Alternative Exception (3): found token '2' near '2' 1",
                     "[1:33] No Viable Alternative cannot match to any predicted input...",
                     "[2:29] Parse Error: Extraneous Token Exception (9): found token '2' near '2' 2",
                     "[2:29] Extraneous input - expected CLOSEPAREN",
                     "[3:29] Parse Error: Extraneous Token Exception (9): found token '2' near '2' 3",
                     "[3:29] Extraneous input - expected CLOSEPAREN",
                     "[3:32] Parse Error: Mismatched Token Exception (2): found token 'b' near 'b' 4",
                     "[3:32] expected CLOSEPAREN ... ",
                     "[3:16] error field ERROR"}));
    EXPECT_EQ(tableNamed(result, "v").fields().size(), 2u);
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

// The columns around a broken one are kept; the broken one keeps its name
// and no type, and a broken key or index entry leaves its key out.
TEST(Recovery, BrokenColumnsAndEntriesLeaveTheRestOfTheTable)
{
    const ParseResult result = parse(kBrokenScripts[3]);
    const SQLTable &table = tableNamed(result, "e");
    ASSERT_EQ(table.fields().size(), 3u);
    EXPECT_EQ(table.fields()[0]->getType(), "");
    EXPECT_EQ(table.fields()[1]->getType(), "");
    EXPECT_EQ(table.fields()[2]->getType(), "INT");
    ASSERT_EQ(table.indexes().size(), 1u);
    EXPECT_EQ(table.indexes()[0]->getName(), "j");
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
