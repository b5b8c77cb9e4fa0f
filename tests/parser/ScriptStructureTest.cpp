// Script structure: statements that are skipped, stray tokens and the records
// they leave, and recovery that goes on with the rest of the script.
#include "ParserTestSupport.h"

namespace {

TEST(ScriptStructure, SkippedStatementsLeaveNoModelAndNoRecords)
{
    const ParseResult result = parse(
        ";;\nGRANT SELECT ON t TO u;\nDELIMITER ;;\nSOURCE a.dump ;\nsource b.dump\n"
        "DECLARE n NUMBER; BEGIN IF n > 0 THEN n := 0; END IF; END;\n/\n"
        "BEGIN TRANSACTION;\nINSERT INTO t VALUES (1, 'x;y');\nDROP TABLE IF EXISTS t;\n"
        "CREATE DATABASE d;\nALTER SESSION SET x = 1;\nCOMMIT;\n");
    ASSERT_TRUE(result.container);
    EXPECT_TRUE(result.container->tables().empty());
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

TEST(ScriptStructure, EmptyStatementsAreLeavesOfTheTree)
{
    SQLParserC driver;
    KpError error;
    EXPECT_EQ(driver.syntaxTreeForString(";;", &error), "; ;");
    // The new terminator of a DELIMITER line is the line's business, not a statement.
    EXPECT_EQ(driver.syntaxTreeForString("DELIMITER ;;\n", &error), "DELIMITER");
}

TEST(ScriptStructure, StrayEndAndSlashAreErrorsOfTheirOwnStatement)
{
    // A "/" on a line of its own runs the statement before it (see the
    // ScriptLines tests); one after a statement on the same line is stray.
    const ParseResult result = parse("END;\nGRANT ALL ON x TO y; /\nCREATE FOO bar;\n");
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records,
              (std::vector<std::string>{
                  "[1:0] Parse Error: No Viable Alternative Exception (3): found token 'END' near 'END' 1",
                  "[1:0] No Viable Alternative cannot match to any predicted input...",
                  "[2:21] Parse Error: No Viable Alternative Exception (3): found token '/' near '/' 2",
                  "[2:21] No Viable Alternative cannot match to any predicted input...",
                  "[1:0] error field ERROR",
                  "[2:21] error field ERROR",
              }));
    SQLParserC driver;
    KpError error;
    EXPECT_EQ(driver.syntaxTreeForString("END;\nINSERT x;\n", &error), "ERROR ; INSERT x ;");
}

TEST(ScriptStructure, MissingSemicolonAtEndOfInputIsReportedAtTheEnd)
{
    const ParseResult result = parse("INSERT INTO t VALUES (1)\n  ");
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records,
              (std::vector<std::string>{"[2:2] Parse Error: Missing Token Exception (10): found token '<missing SEMI>' "
                                        "near '<missing SEMI>' 1",
                                        "[2:2] Missing (SEMI)"}));
}

TEST(ScriptStructure, LaterRecordsCarryTheirOwnPositions)
{
    const ParseResult result = parse("END;\nINSERT INTO t VALUES (1)");
    ASSERT_TRUE(result.container);
    ASSERT_EQ(result.records.size(), 5U);
    EXPECT_EQ(result.records[3], "[2:24] Missing (SEMI)");
}

TEST(ScriptStructure, ScriptThatLeavesNoTreeFailsWithCode279)
{
    SQLParserC driver;
    KpError error;
    EXPECT_EQ(driver.parseString("GRANT a ON b TO c;\nSET x = 1;\n", &error), nullptr);
    EXPECT_EQ(error.code, 279);
    EXPECT_EQ(error.message, "Tried to parse unallocated Tree");
}

TEST(ScriptStructure, EmptyInputIsAnEarlyExitRecordNotAFailure)
{
    const ParseResult result = parse("");
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records, (std::vector<std::string>{"[1:0] missing elements...", "[1:0] error field ERROR"}));
}

TEST(ScriptStructure, NilInputFailsWithCodeOne)
{
    SQLParserC driver;
    KpError error;
    EXPECT_EQ(driver.parseString(static_cast<const char *>(nullptr), &error), nullptr);
    EXPECT_EQ(error.domain, "Vellum Error");
    EXPECT_EQ(error.code, 1);
    EXPECT_EQ(error.message, "Invalid input (is nil)");
}

TEST(ScriptStructure, UnterminatedBlockCommentOrQuoteStillImportsWhatCameBefore)
{
    for (const char *tail : {"/* never closed", "'never closed", "-- no line end", "`x"}) {
        const ParseResult result = parse(std::string("INSERT INTO t VALUES (1);\n") + tail);
        EXPECT_TRUE(result.container) << tail;
    }
}

} // namespace
