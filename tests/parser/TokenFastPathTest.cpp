// The lexer's fast path for common tokens against the generated lexer alone:
// every token (type, channel, line, position, text) and every record must be
// the same, on the golden scripts, on inputs made to sit on the edges of the
// fast path (words that open quoted strings, one-word rules, '..', '==',
// line ends of every kind, letters that upper-case to ASCII), and on random
// text drawn from the characters those edges are made of.
#include "ModelJson.h"

#include <SQLAntlrParser/SQLParserC.h>
#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace {

std::string listing(const std::string &sql, bool fastPath)
{
    SQLParserC driver;
    driver.setUsesTokenFastPath(fastPath);
    std::ostringstream out;
    driver.forEachToken(sql, [&out](const SQLToken &token) {
        out << token.index << ' ' << token.type << ' ' << token.channel << ' ' << token.line << ':' << token.pos
            << ' ' << token.text << '\n';
    });
    for (const SQLParserException &record : driver.getExceptionList()) {
        out << "record " << record.reason << '\n';
    }
    return out.str();
}

// The model and records of a parse, as text, with or without the fast path.
std::string parsed(const std::string &sql, bool fastPath)
{
    SQLParserC driver;
    driver.setUsesTokenFastPath(fastPath);
    KpError error;
    std::unique_ptr<SQLContainer> container = driver.parseString(sql, &error);
    return container != nullptr ? sqlantlr::modelJsonText(*container, driver.getExceptionList()) : "no model";
}

void expectSameTokens(const std::string &sql)
{
    EXPECT_EQ(listing(sql, true), listing(sql, false)) << "input: " << sql;
}

TEST(TokenFastPath, EdgesOfTheCommonTokens)
{
    const char *const inputs[] = {
        // Words that open quoted strings, and words that only look like it.
        "N'abc' n'x' NQ'[a]' nq'{b}' Q'(c)' q'x' N\"n\" N`b` NO'x' NOT'x' Nx'y' QQ'z' N",
        // One-word rules against longer words and keywords.
        "NOT NOTE NO NONE NOT-NULL KEY KEYS CHAR CHARACTER CHARACTERS CHARSET TRUE TRUE_ false$ default#1",
        // The longest keywords against words that differ from them only in
        // their last letters, one letter shorter or longer, in any case;
        // words that upper-case to a keyword only through letters beyond
        // ASCII; names around the longest word a keyword look-up reads.
        "CURRENT_TIMESTAMP current_timestamp CURRENT_TIMESTAMQ CURRENT_TIMESTAM CURRENT_TIMESTAMPS "
        "SUBSTRING_INDEX SUBSTRING_INDEY DELAY_KEY_WRITE_ LOCALTIMESTAMP(3) KEY_BLOCK_SIZE=8 "
        "current_t\xC4\xB1mestamp CURRENT_TIMESTAMP\xC5\xBF pr\xC4\xB1mary_ PR\xC4\xB1MARY "
        "a234567890123456789012345678901234567890 a2345678901234567890123456789012345678901 "
        "a23456789012345678901234567890123456789\xC4\xB1 b23456789012345678901234567890123456789012\xC3\xA9x",
        // Keywords with a trailing blank, with and without the blank.
        "MAX_ROWS =1 MAX_ROWS=1 max_rows\t=1 UNION ALL union\nall",
        // Punctuation of lists and its longer neighbours.
        "a.b a..b a . . b x==y x=y x= =y (a,b);(;) ., 1.5 .5 5. 1..2 -1 a-1 a--b --c\n",
        // Stars and colons: a cast, its longer and shorter neighbours, a star against comment ends.
        "'a'::text x::int[] a:::b a::=b a:=b :x :: : * ** */ *\\/ (*,2) a*/b count(*)::bigint",
        // Comparisons and arithmetic, each against its longer neighbours.
        "a>0 a>=1 a<2 a<=3 a<>4 a!=5 a<=>6 <=>= <>= >== !== !! ! %% ||| | a- b -1 - 1 -a -1.5 1-2 (x)-1 +1 -- c\n-",
        // Line ends of every kind, blanks around them, and none at the end.
        "a\r\nb\rc\nd \r\n\te\r\r\n\n\rf   \t",
        // Numbers against names.
        "123abc 0x1F 1e10 007 a1 _a $1 #1 @a",
        // Letters beyond ASCII, and units that upper-case to ASCII letters.
        "\xC3\xA9t\xC3\xA9 \xC4\xB1nt pr\xC4\xB1mary \xC5\xBF" "et \xE6\x97\xA5\xE6\x9C\xAC ab\xC3\x9F"
        "\xC3\x97x \xE2\x80\x94y",
        // Quoted pieces next to words and numbers, dollar quotes, brackets.
        "a'b'c \"x\"y `z`1 'it''s' $$a b$$ $t$ x $t$ [Order Details] int[3] &&x..y &1.z",
        // Comments, executable comments, and what follows them.
        "/* c */a/*!40101 SET x=1 */b-- d\nc# e\r\nf/**/g",
        "/***/a/*/ */b/****x**/c/*\r\nd\re\n\r\n*/f // g\nh/*/*/i/ j/*",
        "x/*\n\n*/y /*!*/ z /* a */\n/\n//",
        // A script whose last token is cut: unclosed quote, comment without line end.
        "CREATE TABLE t (a int DEFAULT 'x",
        "SELECT 1 -- no line end",
    };
    for (const char *input : inputs) {
        expectSameTokens(input);
    }
}

TEST(TokenFastPath, GoldenScriptsGiveTheSameTokensAndModels)
{
    size_t scripts = 0;
    for (const auto &entry : std::filesystem::directory_iterator(GOLDEN_DIR)) {
        if (entry.path().extension() != ".sql") {
            continue;
        }
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string sql((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        EXPECT_EQ(listing(sql, true), listing(sql, false)) << entry.path();
        EXPECT_EQ(parsed(sql, true), parsed(sql, false)) << entry.path();
        ++scripts;
    }
    EXPECT_GT(scripts, 50u);
}

TEST(TokenFastPath, RandomTextFromTheEdgeCharacters)
{
    // Pieces rather than single characters, so that words, quotes, numbers
    // and line ends meet in every order.
    const std::vector<std::string> pieces = {
        "a",    "N",      "n",     "Q",      "q",    "NOT",  "no",   "KEY",  "char",      "MAX_ROWS", "TRUE",
        "x1",   "_",      "$",     "#",      "-",    "--",   "/",    "*",    "/*",        "*/",       "/*!",
        "1",    "42",     ".",     "..",     "=",    "==",   "(",    ")",    ",",         ";",        " ",
        "\t",   "\n",     "\r",    "\r\n",   "'",    "\"",   "`",    "''",   "[",         "]",        "&",
        "&&",   "\\",     "@",     "<",      ">",    ":",    "\xC3\xA9",    "\xC4\xB1",  "\xC5\xBF", "\xE2\x80\x94",
        "CREATE TABLE ", "int", "DEFAULT ", "$$", "::", ":=", "**", "/**/", "*/\n", "//", "/*\r", "\r*/", "<", ">=", "<=>", "!=", "!", "+", "%", "||", "|", "GO\n", "\n/\n", "DELIMITER $$\n", "INSERT INTO t VALUES ",
    };
    std::mt19937 random(20261123);
    std::uniform_int_distribution<size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(1, 60);
    for (int round = 0; round < 400; ++round) {
        std::string sql;
        for (int i = length(random); i > 0; --i) {
            sql += pieces[pick(random)];
        }
        expectSameTokens(sql);
        if (round % 4 == 0) {
            EXPECT_EQ(parsed(sql, true), parsed(sql, false)) << "input: " << sql;
        }
    }
}

} // namespace
