// Data statements (INSERT, REPLACE) skipped by a scan instead of the lexer:
// where the scan ends or gives up, and that an import with the skip gives
// the same model and records (texts and positions) as one that lexes and
// parses every statement.
#include "DataStatements.h"
#include "ParserTestSupport.h"

#include <random>

namespace {

using sqlantlr::DataStatementCut;

// The offset of the ";" the scan stops at, or -1 when it gives up; text is
// the script after the statement's first two tokens.
long scanEnd(const std::u16string &text, DataStatementCut cut = DataStatementCut::AtStatementWords)
{
    sqlantlr::QuoteScanCache cache;
    const char16_t *end =
        sqlantlr::dataStatementEnd(text.data(), text.data(), text.data() + text.size(), cut, &cache);
    return end == nullptr ? -1 : static_cast<long>(end - text.data());
}

// The model JSON (records included) of a script, imported with or without
// skipping data statements.
std::string importJson(const std::string &sql, bool skip)
{
    return ::importJson(sql, [skip](SQLParserC &driver) { driver.setSkipsDataStatements(skip); });
}

void expectSameImport(const std::string &sql)
{
    EXPECT_EQ(importJson(sql, true), importJson(sql, false)) << sql;
}

} // namespace

TEST(DataStatements, TheScanStopsAtTheTerminatorOutsideStringsAndComments)
{
    EXPECT_EQ(scanEnd(u" INTO t VALUES (1,'a;b'),(2,\"c;\"),(3,`d;`);"), 42);
    EXPECT_EQ(scanEnd(u" INTO t VALUES ('It\\'s; \\\\', 'O''B;') ;"), 38);
    EXPECT_EQ(scanEnd(u" INTO t /* ; */ VALUES (1) -- ;\n, (2) # ;\r\n,(3) // ;\r,(4);"), 57);
    EXPECT_EQ(scanEnd(u" INTO [a;b] VALUES (x[1], N'é;', _binary'x', -1.5e3, 0x1F, @v := 1 <=> 2 || ?);"), 78);
    // Rows on their own lines, and statement words inside parentheses.
    EXPECT_EQ(scanEnd(u" INTO t VALUES\n(1,\nSET,\nDROP)\n,(2)\n;"), 35);
    // A backslash outside strings takes a quote with it.
    EXPECT_EQ(scanEnd(u" INTO t VALUES (\\';"), 18);
    // REPLACE is never cut at statement words.
    EXPECT_EQ(scanEnd(u" INTO t VALUES (1)\nCREATE x;", DataStatementCut::Never), 27);
}

TEST(DataStatements, TheScanGivesUpWhereTokensCouldMeanMore)
{
    int index = 0;
    for (const char16_t *text : {
             u" INTO t VALUES ('open);",              // an unclosed quote is a token of its own
             u" INTO t VALUES (1) /* open;",          // an unclosed comment
             u" INTO t VALUES (1) -- ;",              // a line comment without a line end
             u" INTO t VALUES (1)",                   // no terminator
             u" /*!40000 INTO t */ VALUES (1);",      // an executable comment holds SQL
             u" INTO t VALUES (q'[x]');",             // Oracle q-quote
             u" INTO t VALUES ($$x$$);",              // dollar quotes
             u" INTO t VALUES (1 & 2, ~3, ^4);",      // characters without a token of their own
             u" INTO t VALUES (é);",                  // names beyond ASCII
             u" INTO t VALUES (1)\nGO\n;",            // a GO line
             u" INTO t VALUES (1)\n/\n;",             // a "/" line
             u" INTO t VALUES (1)GO\n;",              // a GO glued to the parenthesis
             u" INTO t VALUES (1)\nDELIMITER $$\n;",  // a DELIMITER line
             u" INTO t VALUES (1)\n  /* c */ CREATE TABLE u (x INT);",  // the filter cuts here
             u" INTO t VALUES (1,[a);",               // a bracket that opens no name
             u" INTO t VALUES (a--b);",               // dashes inside a word
             u" INTO t VALUES (''Q;",                 // a Q glued to a string: a Q'...' piece to the lexer
             u" INTO t VALUES (\"x\"q);",             // (in any case)
         }) {
        EXPECT_EQ(scanEnd(text), -1) << "case " << index;
        ++index;
    }
}

TEST(DataStatements, ImportsAreTheSameWithAndWithoutTheSkip)
{
    const char *const scripts[] = {
        "CREATE TABLE a (id INT);\nINSERT INTO a VALUES (1,'x;y'),(2,'It\\'s'),(3,'O''Brien'),(4,\"q\\\"\");\n"
        "CREATE TABLE b (id INT);\n",
        // Broken quotes and comments inside data, then more statements.
        "INSERT INTO a VALUES ('open);\nCREATE TABLE c (id INT);\nINSERT INTO a VALUES (1) /* never closed",
        "INSERT INTO a VALUES (1)\nCREATE TABLE d (id INT);\nINSERT INTO a VALUES ('C:\\data\\', 'x');\n"
        "CREATE TABLE e (id INT, PRIMARY KEY (id));",
        // Statements the filter cuts, GO and "/" lines, DELIMITER.
        "INSERT INTO t VALUES (1)\nGO\nCREATE TABLE f (id INT)\nGO\nINSERT t VALUES (2)\n/\nCREATE TABLE g (x INT);",
        "DELIMITER ;;\nINSERT INTO t VALUES (1);;\nDELIMITER ;\nINSERT INTO t VALUES (2);\nCREATE TABLE h (x INT);",
        "/*!40000 INSERT INTO t VALUES (1) */;\nREPLACE INTO t VALUES ('a;b');\nCREATE TABLE i (x INT);",
        // Errors after skipped statements keep their lines and positions.
        "INSERT INTO t VALUES\n(1, 'two\nlines'),\r\n(2, 'crlf'),\r(3, 'cr');\nCREATE TABLE j (x DECIMAL(10 2));",
        "INSERT INTO t VALUES (1);\nCREATE TABLE k (x INT DEFAULT , y INT);\nINSERT INTO t VALUES (2)",
        "insert into [dbo].[t] ([a]) values (N'x');\nCREATE TABLE l (x INT) COMMENT 'c';\n",
        "DO $$ BEGIN UPDATE x SET y = 1; INSERT INTO t VALUES (1); END $$;\nCREATE TABLE m (x INT);",
        "INSERT INTO t VALUES (1)\nSET @x = 1;\nCREATE TABLE n (x INT) TYPE=;",
        "INSERT INTO t VALUES (1), -- comment ; here\n (2);\nINSERT INTO t VALUES (';' # x\n);\nCREATE TABLE o (x INT);",
        // Other statements the grammar skips: COPY data, GRANT, SET, LOCK.
        "COPY t (a, b) FROM stdin;\n1\tO\\'Brien\t\\N\n2\tx;y\t\\N\n\\.\nCREATE TABLE p (x INT);\n",
        "COPY t FROM stdin;\nalice\tit's\n\\.\nCREATE TABLE q (x INT);\nGRANT ALL ON q TO u;\n",
        "LOCK TABLES `t` WRITE;\nSET @a = 'x;y', b = 2;\nUNLOCK TABLES;\nUPDATE t SET a = 1\nCREATE TABLE r (x INT);",
        "GRANT SELECT\nON t\nTO u;\nDECLARE @v INT\nCREATE TABLE s (x INT)\nGO\nREVOKE x ON y FROM z",
        // DROP statements are skipped too, cut where the filter cuts them.
        "DROP TABLE IF EXISTS `a`;\nCREATE TABLE a (id INT);\nDROP TABLE a CASCADE CONSTRAINTS\nCREATE TABLE b (x INT);\n"
        "DROP INDEX i ON t\nGO\nDROP VIEW 'v;w';\ndrop table \"x;y\" /* ; */;\nCREATE TABLE c (x DECIMAL(10 2));",
        "DROP TABLE t\n/\nDROP SEQUENCE s;\nDROP TABLE u -- ;\n;\nDROP",
        // Scripts of skipped statements only: INSERT and DROP leave an empty
        // model, statements the grammar drops leave none.
        "DROP TABLE a;", "INSERT INTO t VALUES (1);\nDROP TABLE t;", "GRANT x ON y TO z;\nLOCK TABLES t WRITE;",
        "GRANT x ON y TO z;\nINSERT INTO t VALUES (1);",
        // A Q right after a quoted string: the lexer reads on in its own way.
        "-O\"\"Q;\nSET\"",
        "INSERT INTO t VALUES (''Q;\nCREATE TABLE v (x INT);\nINSERT INTO t VALUES ('a'q'b');\n",
        // A statement that starts within a dollar-quoted string, where quotes open nothing.
        "$$;$f';#';$$",
        // REM and PROMPT lines inside a statement: their quotes close on their line or not at all.
        "'t\nPRO \";\nCREATE OR\";\nCREATE TABLE w (x INT);",
        "INSERT INTO t VALUES (1,\nPROMPT it's\n'a;b');\nCREATE TABLE x (y INT);",
        "INSERT INTO t VALUES (1,\n  rem \"closed\" ok\n2);\nCREATE TABLE y (z INT);",
        "INSERT INTO t VALUES ('a\nREM', 'b;\nc');\nCREATE TABLE z (w INT);",
    };
    for (const char *sql : scripts) {
        expectSameImport(sql);
    }
}

TEST(DataStatements, GeneratedScriptsImportTheSameWithAndWithoutTheSkip)
{
    // Pieces of INSERTs: values, quotes with escapes, comments, line ends and
    // the odd broken or unusual bit, between tables that carry errors.
    const char *const pieces[] = {
        "1", "-2.5", "NULL", "'plain'", "'It\\'s'", "'O''Brien'", "\"say \\\"hi\\\"\"", "'back\\\\'", "'C:\\dir\\'",
        "'semi; colon'", "`name`", "[br;ack]", "'two\nlines'", "/* c; */", "-- c;\n", "# c\n", "\n", "\r\n", "\r",
        "(", ")", ",", "'", "\"", "\\", "$", "&", "é", "q'", "GO", "\nGO\n", "\n/\n", "\nCREATE TABLE z (a INT);",
        "\nSET", "END", "/*!", "*/", "DELIMITER", ";", "\nREM ", "\nPRO ",
    };
    std::mt19937 random(20240611);
    for (int n = 0; n < 300; ++n) {
        std::string sql = "CREATE TABLE t" + std::to_string(n) + " (id INT, x DECIMAL(10 2));\n";
        const int statements = 1 + static_cast<int>(random() % 3);
        for (int s = 0; s < statements; ++s) {
            const char *const starts[] = {"INSERT INTO t VALUES (", "INSERT INTO t VALUES (", "REPLACE INTO t VALUES (",
                                          "GRANT SELECT ON t TO u (", "SET x = (", "COPY t FROM stdin;\n1\t(",
                                          "DROP TABLE t ("};
            sql += starts[random() % std::size(starts)];
            const int count = static_cast<int>(random() % 12);
            for (int i = 0; i < count; ++i) {
                // Mostly ordinary values, now and then anything.
                const size_t ordinary = 12;
                const size_t pick = random() % 3 != 0 ? random() % ordinary : random() % std::size(pieces);
                sql += pieces[pick];
                sql += random() % 2 == 0 ? "," : " ";
            }
            sql += random() % 8 == 0 ? ")\n" : ");\n";
        }
        sql += "CREATE TABLE u" + std::to_string(n) + " (id INT DEFAULT , y INT);\n";
        expectSameImport(sql);
    }
}

TEST(DataStatements, TheLineScanCacheGivesTheAnswersOfFreshScans)
{
    // Random lines of quotes, backslashes, dashes and line ends; every quote
    // asked about in text order, as the lexer and the scan ask.
    const char16_t alphabet[] = u"ab'\"`\\\n\r-; ";
    std::mt19937 random(3);
    for (int n = 0; n < 200000; ++n) {
        std::u16string text;
        const int length = static_cast<int>(random() % 30);
        for (int i = 0; i < length; ++i) {
            text += alphabet[random() % 12];
        }
        sqlantlr::QuoteScanCache cache;
        const char16_t *end = text.data() + text.size();
        for (size_t i = 0; i < text.size(); ++i) {
            const char16_t quote = text[i];
            if (quote == u'\'' || quote == u'"' || quote == u'`') {
                const char16_t *body = text.data() + i + 1;
                ASSERT_EQ(sqlantlr::quotedBodyLength(body, end, quote, &cache),
                          sqlantlr::quotedBodyLength(body, end, quote))
                    << std::string(text.begin(), text.end()) << " at " << i;
            }
        }
    }
}

TEST(DataStatements, CopyDataUpToItsEndLineIsNoSql)
{
    // Quotes, semicolons and statement words in the data lines neither end
    // the data nor start statements; what follows the "\." line is read with
    // its own lines and positions.
    for (const std::string newline : {"\n", "\r\n", "\r"}) {
        const std::string sql = "CREATE TABLE a (id INT);" + newline + "COPY a (id, s) FROM stdin;  " + newline +
                                "1\tO'Brien\t\\N" + newline + "2\tx;y; CREATE TABLE z (q INT);" + newline + "\\." +
                                newline + "CREATE TABLE b (x DECIMAL(10 2));" + newline;
        const ParseResult result = parse(sql);
        EXPECT_EQ(tableNames(result), (std::vector<std::string>{"a", "b"})) << sql;
        ASSERT_FALSE(result.records.empty());
        EXPECT_EQ(result.records[0].rfind("[6:29] ", 0), 0u) << result.records[0];
        expectSameImport(sql);
    }
}
