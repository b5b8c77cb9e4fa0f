// Script-level lines read between the lexer and the parser: GO and "/" lines,
// SQL*Plus and SQLCMD commands, T-SQL statements without ";" and IF guards.
// Each case checks which tables come back and that nothing leaves a record.
#include "ParserTestSupport.h"
#include "ScriptLines.h"

#include <SchemaModel/SchemaModel.h>

#include <vector>

namespace {

void expectTables(const std::string &sql, const std::vector<std::string> &names)
{
    const ParseResult result = parse(sql);
    EXPECT_EQ(tableNames(result), names) << sql;
    EXPECT_EQ(result.records, std::vector<std::string>{}) << sql;
}

TEST(ScriptLines, GoLinesEndStatementsLikeSemicolons)
{
    expectTables("CREATE TABLE a (id INT)\nGO\nCREATE TABLE b (id INT)\nGO", {"a", "b"});
    expectTables("create table a (id int)\r\n  go 3 -- three times\r\ncreate table b (id int)\r\nGo\r\n", {"a", "b"});
    expectTables("CREATE TABLE a (id INT);\nGO\nGO\nCREATE TABLE b (id INT)\n  GO  \n", {"a", "b"});
    // Glued to the closing parenthesis at a line end.
    expectTables("CREATE TABLE a (\n id INT\n)GO\nCREATE TABLE b (id INT)GO\n", {"a", "b"});
    // GO inside a line is a name.
    expectTables("CREATE TABLE go (go INT);\n", {"go"});
}

TEST(ScriptLines, SlashLinesRunTheStatementBeforeThem)
{
    expectTables("CREATE TABLE a (id INT)\n/\nCREATE TABLE b (id INT);\n/\n/\nCREATE TABLE c (id INT)\n/", {"a", "b", "c"});
}

TEST(ScriptLines, ClientCommandLinesAreDropped)
{
    expectTables("REM setup\nPROMPT Creating a ...\nSET ECHO OFF\nSET DEFINE ON\nSPOOL x.log\nDEFINE u = &1\n"
                 "WHENEVER SQLERROR EXIT 1\nCONNECT &&u/pw@db\n@@types.sql\n@ other\nCOLUMN n FORMAT a20\n"
                 "VARIABLE v NUMBER\nACCEPT p PROMPT 'x'\nCREATE TABLE a (id INT);\nSHOW ERRORS\n"
                 "EXEC dbms_output.put_line('x')\nEXIT\n",
                 {"a"});
    expectTables(":setvar db \"x\"\n:on error exit\n:r .\\more.sql\nUSE [$(db)]\nGO\nCREATE TABLE a (id INT)\nGO\n",
                 {"a"});
    // Ended by ";", SET and EXEC are statements; a command word inside a statement is a name.
    expectTables("SET NAMES utf8;\nCREATE TABLE a (\nprompt INT,\nrem INT\n);\n", {"a"});
    const ParseResult result = parse("CREATE TABLE a (\nprompt INT,\nrem INT\n);\n");
    EXPECT_EQ(tableNamed(result, "a").fields().size(), 2U);
}

TEST(ScriptLines, RemarkLinesEndAtTheirLineEndWhateverTheyHold)
{
    expectTables("REM /* old\nCREATE TABLE a (id INT);\nPROMPT /* creating */ tables\nCREATE TABLE b (id INT);\n"
                 "REMARK /* never closed\nPro it's /* done\nCREATE TABLE c (id INT);\nREM /*",
                 {"a", "b", "c"});
    // Elsewhere a comment still spans its lines, MySQL's executable comments
    // are still read, and a column named rem opens no REM line.
    expectTables("/* REM\n*/ CREATE TABLE a (id INT);\n/*!40101 SET NAMES utf8 */;\n"
                 "CREATE TABLE b (id INT) /*!50100 PARTITION BY HASH (id) */;\n",
                 {"a", "b"});
    const ParseResult result = parse("CREATE TABLE a (\nrem INT /* a note\nover lines */,\nb INT\n);\n");
    EXPECT_EQ(tableNamed(result, "a").getFieldNameListString(), "rem, b");
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

TEST(ScriptLines, TsqlStatementsWithoutSemicolonsEndAtTheNextStatementLine)
{
    expectTables("SET ANSI_NULLS ON\nSET QUOTED_IDENTIFIER ON\nUSE [db]\nPRINT 'x'\nDECLARE @v INT\nSET @v = 1\n"
                 "EXECUTE p @a = N'x',\n  @b = 1\nBEGIN TRAN\nCREATE TABLE a (id INT)\nCOMMIT\n"
                 "RAISERROR ('x', 0, 1)\nCREATE TABLE b (id INT)\nINSERT INTO a VALUES (1)\nCREATE TABLE c (id INT)",
                 {"a", "b", "c"});
    // Lines that carry a statement on are not cut.
    expectTables("CREATE TABLE a (id INT)\nUPDATE a\nSET id = 2\nALTER TABLE a\nDROP COLUMN x\n"
                 "INSERT INTO a\nSELECT 1\nCREATE TABLE b (id INT)",
                 {"a", "b"});
}

TEST(ScriptLines, IfGuardsAroundStatementsAreRead)
{
    expectTables("IF NOT EXISTS (SELECT * FROM sys.objects WHERE name = N'a')\nBEGIN\nCREATE TABLE a (id INT)\nEND\n"
                 "GO\nIF OBJECT_ID(N'b') IS NOT NULL DROP TABLE b\nCREATE TABLE b (id INT)\n"
                 "IF OBJECT_ID('c') IS NULL\nBEGIN\n  PRINT 'c'\n  CREATE TABLE c (id INT)\nEND\nELSE\nBEGIN\n"
                 "  PRINT 'kept'\nEND\nIF NOT EXISTS (SELECT 1 FROM t) CREATE TABLE d (id INT)\n",
                 {"a", "b", "c", "d"});
}

TEST(ScriptLines, SemicolonScriptsAndBlocksAreLeftAlone)
{
    // A line starting with a statement word inside a routine, a PL/SQL block
    // or a GRANT does not cut it.
    EXPECT_EQ(tree("CREATE TABLE a (id INT);\nGRANT\n  CREATE TABLE\nTO u;\n"),
              tree("CREATE TABLE a (id INT);\nGRANT CREATE TABLE TO u;\n"));
    expectTables("DECLARE\n  n NUMBER;\nBEGIN\n  IF n > 0 THEN\n    n := 0;\n  END IF;\n  SET TRANSACTION READ ONLY;\n"
                 "END;\n/\nCREATE TABLE a (id INT);\n",
                 {"a"});
    // A line that starts a statement ends one without ";" (a ";" with no text).
    EXPECT_EQ(tree("CREATE TABLE a (id INT)\nCREATE TABLE b (id INT);"),
              "CREATE TABLE a ( id INT )  CREATE TABLE b ( id INT ) ;");
}

TEST(ScriptLines, AllDroppedScriptsHaveNoTree)
{
    SQLParserC driver;
    KpError error;
    EXPECT_EQ(driver.parseString("SET NOCOUNT ON\nGO\nPROMPT x\nGRANT a ON b TO c;\n", &error), nullptr);
    EXPECT_EQ(error.code, KpErrorUnallocatedTree);
}

// The filter's queues drop their consumed head now and then; the tokens
// still queued keep their order and indexes across that.
TEST(TokenQueue, KeepsOrderWhileDroppingItsHead)
{
    std::vector<ANTLR3_COMMON_TOKEN> tokens(3000);
    sqlantlr::TokenQueue queue;
    size_t pushed = 0;
    size_t popped = 0;
    while (pushed + 3 <= tokens.size()) {
        for (int i = 0; i < 3; ++i) {
            queue.push_back(&tokens[pushed++]);
        }
        for (int i = 0; i < 2; ++i) {
            ASSERT_EQ(queue.front(), &tokens[popped]);
            queue.pop_front();
            ++popped;
        }
        ASSERT_EQ(queue.size(), pushed - popped);
        ASSERT_EQ(queue.back(), &tokens[pushed - 1]);
        for (size_t i = 0; i < queue.size(); ++i) {
            ASSERT_EQ(queue[i], &tokens[popped + i]);
        }
    }
    const std::vector<pANTLR3_COMMON_TOKEN> rest(queue.begin(), queue.end());
    ASSERT_EQ(rest.size(), pushed - popped);
    EXPECT_EQ(rest.front(), &tokens[popped]);
    while (!queue.empty()) {
        queue.pop_front();
    }
    EXPECT_EQ(queue.size(), 0u);
}

} // namespace
