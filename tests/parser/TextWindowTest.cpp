// A text longer than the runtime's 32-bit input size is read through a
// window that the parse moves on between statements. The tests cannot use
// texts of 4 GiB: with a window of a few thousand units, every script must
// give the model, the records and the tokens of the whole text read at once.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include "ModelJson.h"
#include "RecognizerPipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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

std::string tokensOf(const std::string &script)
{
    std::string listed;
    SQLParserC driver;
    driver.forEachToken(script, [&listed](const SQLToken &token) {
        listed += std::to_string(token.index) + " " + token.name + " " + std::to_string(token.channel) + " " + std::to_string(token.line) + ":" +
                  std::to_string(token.pos) + " " + token.text + "\n";
    });
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

} // namespace

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
