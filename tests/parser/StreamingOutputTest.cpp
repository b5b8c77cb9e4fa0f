// Token listings and syntax trees handed over piece by piece, as the tokens
// and tree commands write them, against the lists and trees made whole.
#include "CliSupport.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace {

std::string describe(const SQLToken &token)
{
    return std::to_string(token.index) + " " + std::to_string(token.type) + " " + token.name + " " +
           std::to_string(token.channel) + " " + std::to_string(token.line) + ":" + std::to_string(token.pos) +
           " [" + token.text + "]";
}

std::vector<std::string> wholeTokens(const std::string &sql)
{
    SQLParserC driver;
    std::vector<std::string> lines;
    for (const SQLToken &token : driver.tokensForString(sql)) {
        lines.push_back(describe(token));
    }
    return lines;
}

std::vector<std::string> streamedTokens(const std::string &sql)
{
    SQLParserC driver;
    std::vector<std::string> lines;
    driver.forEachToken(sql, [&lines](const SQLToken &token) { lines.push_back(describe(token)); });
    return lines;
}

std::string wholeTree(const std::string &sql)
{
    SQLParserC driver;
    KpError error;
    return driver.syntaxTreeForString(sql, &error);
}

// The pieces joined, and how many there were.
std::pair<std::string, size_t> streamedTree(const std::string &sql)
{
    SQLParserC driver;
    KpError error;
    std::string text;
    size_t pieces = 0;
    EXPECT_TRUE(driver.writeSyntaxTree(
        sql,
        [&](std::string_view piece) {
            text += piece;
            ++pieces;
        },
        &error));
    return {text, pieces};
}

void expectSameOutput(const std::string &sql, const std::string &label)
{
    EXPECT_EQ(streamedTokens(sql), wholeTokens(sql)) << label;
    EXPECT_EQ(streamedTree(sql).first, wholeTree(sql)) << label;
}

// Scripts whose trees have lists, single nodes, error nodes, skipped and
// empty statements, and none at all.
const char *const edgeScripts[] = {
    "",
    "   \n-- only a comment\n/* and another */\n",
    ";;",
    "DELIMITER ;;\n",
    "END;\nINSERT x;\n",
    "CREATE TABLE a (id INT PRIMARY KEY, b VARCHAR(10) DEFAULT 'x''y');\r\nCREATE TABLE b (a_id INT REFERENCES a(id));\r\n",
    "CREATE TABLE t (id INT,, x);\nGRANT ALL ON t TO u;\nCREATE TABLE u (id INT);\n",
    "CREATE TABLE t (\n  id INT\n",  // never closed
    "INSERT INTO t VALUES (1, 'a;b'), (2, 'c\\'d');\nCREATE TABLE t (id INT);\nSELECT 1;\n",
    "\xEF\xBB\xBF" "CREATE TABLE \"q\" (a INT);\n\x01\x02 stray;\nCREATE TABLE r (b TEXT);",
};

} // namespace

TEST(StreamingOutput, EdgeScriptsGiveTheSameTokensAndTreeAsWholeLists)
{
    for (const char *sql : edgeScripts) {
        expectSameOutput(sql, sql);
    }
}

TEST(StreamingOutput, GoldenScriptsGiveTheSameTokensAndTreeAsWholeLists)
{
    size_t cases = 0;
    for (const auto &entry : std::filesystem::directory_iterator(GOLDEN_DIR)) {
        if (entry.path().extension() != ".sql") {
            continue;
        }
        const std::string path = entry.path().string();
        const std::string sql = slurpFile(path);
        expectSameOutput(sql, path);
        // The same read from the file in place, against the text the file
        // reader makes of it (UTF-16 files included).
        const std::string text = SQLParser::stringForFile(path, SQLTextEncoding::UTF8);
        SQLParserC driver;
        std::vector<std::string> tokens;
        driver.forEachTokenOfFile(path, [&tokens](const SQLToken &token) { tokens.push_back(describe(token)); });
        EXPECT_EQ(tokens, wholeTokens(text)) << path;
        std::string tree;
        KpError error;
        EXPECT_TRUE(driver.writeSyntaxTreeOfFile(path, [&tree](std::string_view piece) { tree += piece; }, &error));
        EXPECT_EQ(tree, wholeTree(text)) << path;
        ++cases;
    }
    EXPECT_GT(cases, 50u);
}

TEST(StreamingOutput, LongScriptsComeInManyPiecesAndReuseTokensWithoutChangingThem)
{
    // Far more tokens than the listing's ring of recycled tokens, each with a
    // text of its own, so that a token reused too early would show.
    std::string sql;
    for (int i = 0; i < 400; ++i) {
        const std::string n = std::to_string(i);
        sql += "CREATE TABLE t" + n + " (c" + n + " INT DEFAULT " + n + ", d" + n + " VARCHAR(" + n + "));\n";
    }
    const std::vector<std::string> tokens = streamedTokens(sql);
    EXPECT_EQ(tokens, wholeTokens(sql));
    ASSERT_GT(tokens.size(), 4000u);
    EXPECT_NE(tokens.back().find("[\n]"), std::string::npos);
    const auto [text, pieces] = streamedTree(sql);
    EXPECT_EQ(text, wholeTree(sql));
    EXPECT_EQ(pieces, 400u);
}

TEST(StreamingOutput, CliTokensAndTreePrintTheLibrarysOutput)
{
    const std::string sql = "CREATE TABLE a (id INT);\nCREATE TABLE b (x TEXT, y INT);\n";
    const CliRun tree = runCli("tree -", sql);
    EXPECT_EQ(tree.exitCode, 0);
    EXPECT_EQ(tree.out, wholeTree(sql) + "\n");
    const CliRun tokens = runCli("tokens -", sql);
    EXPECT_EQ(tokens.exitCode, 0);
    SQLParserC driver;
    const std::vector<SQLToken> whole = driver.tokensForString(sql);
    ASSERT_FALSE(whole.empty());
    EXPECT_EQ(tokens.out.substr(0, tokens.out.find('\n')),
              "0 " + std::to_string(whole[0].type) + " 'CREATE' 0 1:0 \"CREATE\"");
    EXPECT_EQ(static_cast<size_t>(std::count(tokens.out.begin(), tokens.out.end(), '\n')), whole.size());
    // An unreadable file writes nothing but its one line.
    for (const char *command : {"tokens", "tokens --json", "tree"}) {
        const CliRun missing = runCli(std::string(command) + " /nonexistent/x.sql");
        EXPECT_EQ(missing.exitCode, 1) << command;
        EXPECT_EQ(missing.out, "") << command;
        EXPECT_NE(missing.err.find("/nonexistent/x.sql"), std::string::npos) << command;
    }
}
