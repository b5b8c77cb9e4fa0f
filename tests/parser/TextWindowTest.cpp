// A text longer than the runtime's 32-bit input size is read through a
// window that the parse moves on between statements. The tests cannot use
// texts of 4 GiB: with a window of a few thousand units, every script must
// give the model, the records and the tokens of the whole text read at once.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include "ModelJson.h"
#include "RecognizerPipeline.h"
#include "ScriptFileText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using sqlantlr::RecognizerPipeline;

// Parses with a window of `units` until it goes out of scope.
struct Window {
    explicit Window(std::size_t units) { RecognizerPipeline::setTextWindowUnits(units); }
    ~Window() { RecognizerPipeline::setTextWindowUnits(0); }
};

// The model JSON with the records; with `total`, also checks the progress
// reports (done never falls, the total never changes, all done at the end)
// and gives their total.
std::string modelOf(const std::string &script, std::size_t *total = nullptr)
{
    SQLParser parser;
    SQLParseProgress last;
    std::size_t reports = 0;
    if (total != nullptr) {
        parser.driver().setProgressHandler([&](const SQLParseProgress &progress) {
            EXPECT_LE(progress.done, progress.total);
            if (reports++ > 0) {
                EXPECT_GE(progress.done, last.done);
                EXPECT_EQ(progress.total, last.total);
            }
            last = progress;
        });
    }
    const std::unique_ptr<SQLContainer> model = parser.parseString(script);
    if (total != nullptr) {
        EXPECT_GT(reports, 0U);
        EXPECT_EQ(last.done, last.total);
        *total = last.total;
    }
    if (model == nullptr) {
        return "<no model>";
    }
    return sqlantlr::modelJsonText(*model, parser.getExceptionList());
}

// A token as the listings here give it: index, name, channel, place, text.
std::string tokenLine(const SQLToken &token)
{
    return std::to_string(token.index) + " " + token.name + " " + std::to_string(token.channel) + " " +
           std::to_string(token.line) + ":" + std::to_string(token.pos) + " " + token.text + "\n";
}

std::string tokensOf(const std::string &script)
{
    std::string listed;
    SQLParserC driver;
    driver.forEachToken(script, [&listed](const SQLToken &token) { listed += tokenLine(token); });
    return listed;
}

// The golden cases one after the other: every statement form the tests know,
// with their records, script-line decisions and recoveries.
std::string goldenCases()
{
    std::vector<std::filesystem::path> cases;
    for (const auto &entry : std::filesystem::directory_iterator(GOLDEN_DIR)) {
        if (entry.path().extension() == ".sql") {
            cases.push_back(entry.path());
        }
    }
    std::sort(cases.begin(), cases.end());
    std::string script;
    for (const auto &path : cases) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        script += text.str() + "\n;\n";
    }
    return script;
}

// Statements of every dialect's scripts, with GO and "/" lines, DELIMITER,
// REM lines, dollar-quoted bodies, data with quotes and semicolons, and
// errors, many times over.
std::string mixedScript(int copies)
{
    std::string script;
    for (int i = 0; i < copies; ++i) {
        const std::string n = std::to_string(i);
        script += "CREATE TABLE `m" + n + "` (`id` int(11) NOT NULL AUTO_INCREMENT, `s` varchar(20) DEFAULT 'a;b',\n"
                  "  PRIMARY KEY (`id`)) ENGINE=InnoDB;\n"
                  "INSERT INTO `m" + n + "` VALUES (1,'x\\');'),(2,'y''z');\n"
                  "REM a remark with a ' quote " + n + "\n"
                  "CREATE TABLE [dbo].[s" + n + "] ([id] [int] IDENTITY(1,1) NOT NULL,\n"
                  "  CONSTRAINT [PK_s" + n + "] PRIMARY KEY CLUSTERED ([id] ASC)) ON [PRIMARY]\nGO\n"
                  "CREATE OR REPLACE FUNCTION f" + n + "() RETURNS int AS $$ BEGIN RETURN 1; END; $$ LANGUAGE plpgsql;\n"
                  "DELIMITER //\nCREATE PROCEDURE p" + n + "() BEGIN SELECT 1; END //\nDELIMITER ;\n"
                  "CREATE TABLE o" + n + " (a NUMBER(10) DEFAULT 0, b BROKEN(, c INT)\n/\n"
                  "CREATE VIEW v" + n + " AS SELECT id FROM m" + n + ";\n"
                  "-- a comment ; with a semicolon\n"
                  "ALTER TABLE o" + n + " ADD CONSTRAINT fk" + n + " FOREIGN KEY (a) REFERENCES m" + n + " (id);\n";
    }
    return script;
}

// Every text decoded as it is read, in pieces of about `bytes` (each ends
// with a line), the pages passed given back every few kilobytes, until it
// goes out of scope.
struct DecodedAsRead {
    explicit DecodedAsRead(std::size_t bytes)
    {
        sqlantlr::ScriptFileText::setHeldInMemoryBelow(0);
        sqlantlr::ScriptFileText::setPieceBytes(bytes);
        sqlantlr::ScriptFileText::setReleaseBytes(4096);
    }
    ~DecodedAsRead()
    {
        sqlantlr::ScriptFileText::setHeldInMemoryBelow(sqlantlr::ScriptFileText::defaultHeldInMemoryBelow);
        sqlantlr::ScriptFileText::setPieceBytes(0);
        sqlantlr::ScriptFileText::setReleaseBytes(0);
    }
    DecodedAsRead(const DecodedAsRead &) = delete;
    DecodedAsRead &operator=(const DecodedAsRead &) = delete;
};

// Tokens and scans that run over many lines, each longer than a small piece:
// strings (with and without backslashes, one never closed), a dollar-quoted
// body, block comments, COPY data, a long data statement, CRLF lines.
std::string longSpans()
{
    std::string script = "CREATE TABLE a (id INT, s TEXT DEFAULT 'line one\r\n";
    for (int i = 0; i < 200; ++i) {
        script += "more of the default, it's " + std::to_string(i) + " \\ \r\n";
    }
    script += "end', c INT);\r\n/* a comment\n";
    for (int i = 0; i < 200; ++i) {
        script += " * line " + std::to_string(i) + " with 'quotes' and $$ signs\n";
    }
    script += " */\nCREATE FUNCTION f() RETURNS int AS $body$\n";
    for (int i = 0; i < 200; ++i) {
        script += "  x := 'a;b' || $$c$$; -- " + std::to_string(i) + "\n";
    }
    script += "$body$ LANGUAGE plpgsql;\nCOPY a (id, s) FROM stdin;\n";
    for (int i = 0; i < 300; ++i) {
        script += std::to_string(i) + "\tit's; CREATE TABLE no (x INT);\n";
    }
    script += "\\.\nINSERT INTO a VALUES\n";
    for (int i = 0; i < 300; ++i) {
        script += "(" + std::to_string(i) + ", 'x\\'y;z', 'multi\nline'),\n";
    }
    script += "(0, '');\nCREATE TABLE b (id INT REFERENCES a (id), [name] NVARCHAR(20));\n";
    // A quoted name over many lines that a Q follows (the lexer's Q'..'
    // pieces), and an ARRAY whose brackets never close, so that the scan
    // for its closing bracket runs to the end of the script.
    script += "CREATE TABLE q (a INT);\n\"";
    for (int i = 0; i < 200; ++i) {
        script += "name line " + std::to_string(i) + (i % 2 == 0 ? "\r" : "\n");
    }
    script += "\"Q;\nCREATE TABLE c (d VARCHAR(9) DEFAULT 'never closed);\nCREATE TABLE e (id INT);\n";
    script += "CREATE TABLE arr (grid integer[] DEFAULT ARRAY[[1, 2]x[] DEFAULT '{}'::text[],\n";
    for (int i = 0; i < 200; ++i) {
        script += "  c" + std::to_string(i) + " text[] DEFAULT ARRAY['a'::text],\n";
    }
    script += "  last int)\n";  // and no ';' before the end
    return script;
}

} // namespace

TEST(TextWindow, ScriptsDecodedAsTheyAreReadGiveTheirWholeModelAndRecords)
{
    const std::string golden = goldenCases();
    const std::string mixed = mixedScript(100);
    const std::string spans = longSpans();
    for (const std::string *script : {&spans, &golden, &mixed}) {
        const std::string whole = modelOf(*script);
        for (const std::size_t piece : {std::size_t(1), std::size_t(100), std::size_t(700), std::size_t(5000)}) {
            SCOPED_TRACE(piece);
            const DecodedAsRead decoded(piece);
            EXPECT_EQ(modelOf(*script), whole);
        }
        // And through a window that moves on as well (the long spans do
        // not fit a window this small).
        if (script != &spans) {
            const DecodedAsRead decoded(100);
            const Window window(16384);
            EXPECT_EQ(modelOf(*script), whole) << "through a window";
        }
    }
}

TEST(TextWindow, TokensOfAFileDecodedAsItIsReadAreThoseOfTheWholeText)
{
    const std::string script = mixedScript(30) + longSpans();
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("sqlantlr-tokens-" + std::to_string(::getpid()) + ".sql"))
                                 .string();
    std::ofstream(path, std::ios::binary) << script;
    const std::string whole = tokensOf(script);
    for (const std::size_t piece : {std::size_t(1), std::size_t(300)}) {
        const DecodedAsRead decoded(piece);
        std::string listed;
        SQLParserC driver;
        driver.forEachTokenOfFile(path, [&listed](const SQLToken &token) { listed += tokenLine(token); });
        EXPECT_EQ(listed, whole) << piece;
    }
    std::filesystem::remove(path);
}

TEST(TextWindow, ScriptsReadThroughASmallWindowGiveTheirWholeModelAndRecords)
{
    const std::string golden = goldenCases();
    const std::string mixed = mixedScript(300);
    for (const std::string *script : {&golden, &mixed}) {
        const std::string whole = modelOf(*script);
        for (const std::size_t units : {16384U, 40000U}) {
            SCOPED_TRACE(units);
            const Window window(units);
            std::size_t total = 0;
            EXPECT_EQ(modelOf(*script, &total), whole);
            // Progress counts the whole text, not the window.
            EXPECT_GT(total, units * 2);
        }
    }
}

TEST(TextWindow, TokensListedThroughASmallWindowAreThoseOfTheWholeText)
{
    const std::string mixed = mixedScript(100);
    const std::string whole = tokensOf(mixed);
    const Window window(8192);
    EXPECT_EQ(tokensOf(mixed), whole);
}
