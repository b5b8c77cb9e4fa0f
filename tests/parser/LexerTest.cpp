// The token vocabulary as the lexer produces it: fixed numbers and names,
// case-insensitive keywords with the script's own text, hidden tokens,
// quoted runs, comments, and the fold table behind the keyword matching.
#include "KpAntlrStringOperations.h"
#include "QuotedText.h"
#include "ParserTestSupport.h"
#include "RecognizerSupport.h"

#include <SQLAntlrParser/SQLParserC.h>

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <set>

namespace {

std::string VellumGrammarCTokenName(int type)
{
    return reinterpret_cast<const char *>(VellumGrammarCParserTokenNames[type]);
}

struct Tok {
    int type;
    std::string name;
    std::string text;
    bool operator==(const Tok &other) const
    {
        return type == other.type && name == other.name && text == other.text;
    }
};

std::ostream &operator<<(std::ostream &out, const Tok &tok)
{
    return out << "{" << tok.type << " " << tok.name << " '" << tok.text << "'}";
}

// Tokens on the default channel.
std::vector<Tok> visible(const std::string &sql)
{
    SQLParserC driver;
    std::vector<Tok> result;
    for (const SQLToken &token : driver.tokensForString(sql)) {
        if (token.channel == 0) {
            result.push_back({token.type, token.name, token.text});
        }
    }
    return result;
}

TEST(Lexer, KeywordsMatchAnyCaseAndKeepTheirText)
{
    EXPECT_EQ(visible("create Table CrEaTe TABLES"),
              (std::vector<Tok>{{53, "'CREATE'", "create"}, {70, "'TABLE'", "Table"}, {53, "'CREATE'", "CrEaTe"},
                                {35, "STRING", "TABLES"}}));
    // Named keyword tokens and the two lower-case literals that can never match.
    EXPECT_EQ(visible("not Null sqlcode"),
              (std::vector<Tok>{{28, "T_NOT", "not"}, {85, "'NULL'", "Null"}, {35, "STRING", "sqlcode"}}));
}

TEST(Lexer, VocabularyProbeCoversTheNumberRanges)
{
    const std::vector<Tok> tokens = visible("; = , ( ) / x 42 -7 'q' $ . || <=> :: UNION ALL");
    const std::vector<int> types = {13, 22, 23, 24, 25, 18, 35, 38, 42, 40, 41, 149, 191, 272, 433, 442, 98};
    ASSERT_EQ(tokens.size(), types.size());
    for (size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(tokens[i].type, types[i]) << tokens[i];
    }
    EXPECT_EQ(tokens[15].name, "'UNION '");
    EXPECT_EQ(tokens[15].text, "UNION ");
    EXPECT_EQ(VellumGrammarCTokenName(442), "'UNION '");
    EXPECT_EQ(VellumGrammarCTokenName(4), "UNKNOWN_TOKEN");
    EXPECT_EQ(VellumGrammarCTokenName(12), "CREATE_TRIGGER_NODE");
    EXPECT_EQ(VellumGrammarCTokenName(52), "WS");
}

TEST(Lexer, KeywordsWithATrailingBlankNeedTheBlank)
{
    EXPECT_EQ(visible("UNION\nMAX_ROWS=100 MAX_ROWS 1"),
              (std::vector<Tok>{{386, "'UNION'", "UNION"}, {376, "'MAX_ROWS'", "MAX_ROWS"}, {22, "EQUALS", "="},
                                {38, "INT", "100"}, {440, "'MAX_ROWS '", "MAX_ROWS "}, {38, "INT", "1"}}));
}

// The lexer reads words with one rule and looks the keywords up; the
// vocabulary's literal names are the reference: every word literal is its
// keyword in any case, and only as a whole word.
TEST(Lexer, EveryWordLiteralIsAKeywordInAnyCaseAndOnlyAsAWholeWord)
{
    std::string script;
    std::vector<Tok> expected;
    for (ANTLR3_UINT32 type = 53; type < kp_parserTokenCount; ++type) {
        const std::string name = VellumGrammarCTokenName(static_cast<int>(type));
        const bool blank = name.size() > 3 && name[name.size() - 2] == ' ';
        const std::string word = name.substr(1, name.size() - (blank ? 3 : 2));
        if (word.empty() || !std::isupper(static_cast<unsigned char>(word[0])) ||
            word.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") != std::string::npos) {
            continue;
        }
        std::string lower = word;
        std::transform(lower.begin(), lower.end(), lower.begin(),
                       [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
        const std::string spelling = blank ? word + " " : lower;
        // A tab, not a blank: UNION and MAX_ROWS are keywords with a trailing
        // blank as well.
        script += spelling + (blank ? "" : "\t") + word + "_x9 , ";
        expected.push_back({static_cast<int>(type), name, spelling});
        expected.push_back({35, "STRING", word + "_x9"});
        expected.push_back({23, "COMMA", ","});
    }
    ASSERT_GT(expected.size(), 3u * 300);
    EXPECT_EQ(visible(script), expected);
}

// A keyword is told by its first eight letters and its length, then by the
// rest: a word that differs from a keyword only after its eighth letter is a
// name.
TEST(Lexer, WordsThatDifferFromAKeywordLateAreNames)
{
    std::set<std::string> words;
    for (ANTLR3_UINT32 type = 53; type < kp_parserTokenCount; ++type) {
        const std::string name = VellumGrammarCTokenName(static_cast<int>(type));
        if (name.size() > 2 && name.front() == '\'' && name.back() == '\'') {
            words.insert(name.substr(1, name.size() - 2));
        }
    }
    std::string script;
    std::vector<Tok> expected;
    for (const std::string &word : words) {
        if (word.size() <= 8 || word.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_") != std::string::npos) {
            continue;
        }
        for (size_t at = 8; at < word.size(); ++at) {
            std::string near = word;
            near[at] = near[at] == 'Q' ? 'Z' : 'Q';
            if (words.count(near) == 0) {
                script += near + " ";
                expected.push_back({35, "STRING", near});
            }
        }
    }
    ASSERT_GT(expected.size(), 100u);
    EXPECT_EQ(visible(script), expected);
}

TEST(Lexer, WordsNumbersAndSizeSuffixes)
{
    EXPECT_EQ(visible("my-table 3-4 10K M"),
              (std::vector<Tok>{{35, "STRING", "my-table"}, {38, "INT", "3"}, {42, "SIGNED_INT", "-4"},
                                {38, "INT", "10"}, {420, "'K'", "K"}, {421, "'M'", "M"}}));
}

TEST(Lexer, QuotedRunsAreSingleTokens)
{
    for (const char *text : {"'It''s'", "N'abc'", "'a'\"b\"`c`", "\"quoted id\"", "`back``tick`", "'esc\\'aped'",
                             "Q'[x]'"}) {
        const std::vector<Tok> tokens = visible(text);
        ASSERT_EQ(tokens.size(), 1U) << text;
        EXPECT_EQ(tokens[0].type, 40) << text;
        EXPECT_EQ(tokens[0].text, text);
    }
}

TEST(Lexer, HiddenTokensCarryBlanksLineEndsAndComments)
{
    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString("a \t-- one\r\n# two\n/* three */b // four\n");
    std::vector<std::pair<std::string, std::string>> seen;
    for (const SQLToken &token : tokens) {
        seen.emplace_back(token.name, token.text);
        EXPECT_EQ(token.channel, token.name == "STRING" ? 0 : 99) << token.name;
    }
    EXPECT_EQ(seen, (std::vector<std::pair<std::string, std::string>>{{"STRING", "a"},
                                                                       {"WS", " \t"},
                                                                       {"SL_COMMENT", "-- one\r\n"},
                                                                       {"SL_COMMENT", "# two\n"},
                                                                       {"ML_COMMENT", "/* three */"},
                                                                       {"STRING", "b"},
                                                                       {"WS", " "},
                                                                       {"SL_COMMENT", "// four\n"}}));
}

TEST(Lexer, PositionsCountUtf16UnitsFromZero)
{
    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString("x 'é𝄞' y\n  z");
    ASSERT_EQ(tokens.size(), 8U);
    EXPECT_EQ(std::make_pair(tokens[0].line, tokens[0].pos), std::make_pair(1, 0));
    EXPECT_EQ(tokens[2].text, "'é𝄞'");
    EXPECT_EQ(std::make_pair(tokens[4].line, tokens[4].pos), std::make_pair(1, 8));  // the clef is two units
    EXPECT_EQ(std::make_pair(tokens[7].line, tokens[7].pos), std::make_pair(2, 2));
}

TEST(Lexer, LexicalErrorsAtTheEndDropOnlyTheBrokenToken)
{
    for (const char *tail : {"-- no line end", "/* open", "'open", "\"open"}) {
        SQLParserC driver;
        const std::vector<SQLToken> tokens = driver.tokensForString(std::string("a ") + tail);
        ASSERT_FALSE(tokens.empty()) << tail;
        EXPECT_EQ(tokens.front().text, "a") << tail;
        EXPECT_TRUE(driver.getExceptionList().empty()) << "lexer errors are never records";
    }
}

TEST(FoldTable, UpperCasesLowerCaseLettersWithSingleUnitForms)
{
    const KpAntlrStringOperations &fold = KpAntlrStringOperations::sharedManager();
    EXPECT_EQ(fold.uppercaseCharacter(u'a'), u'A');
    EXPECT_EQ(fold.uppercaseCharacter(u'é'), u'É');
    EXPECT_EQ(fold.uppercaseCharacter(u'ς'), u'Σ');
    EXPECT_EQ(fold.uppercaseCharacter(u'ж'), u'Ж');
    // Upper case longer than one unit, or not a lower-case letter: unchanged.
    for (char16_t c : {u'ß', u'\u0149', u'A', u'7', u' ', u'_', u'\xD834', u'\u01C5'}) {
        EXPECT_EQ(fold.uppercaseCharacter(c), c) << static_cast<int>(c);
    }
    EXPECT_EQ(SQLParserC::uppercaseCharacter(u'ß'), u'S');  // the driver's one-off helper takes the first unit
}

TEST(FoldTable, TheTableMadeAtBuildTimeIsIcusUpperCaseOfEveryUnit)
{
    const KpAntlrStringOperations &fold = KpAntlrStringOperations::sharedManager();
    for (unsigned c = 0; c < 0x10000; ++c) {
        auto unit = static_cast<UChar>(c);
        auto expected = static_cast<char16_t>(c);
        if (u_charType(static_cast<UChar32>(c)) == U_LOWERCASE_LETTER) {
            UChar upper[4];
            UErrorCode status = U_ZERO_ERROR;
            if (u_strToUpper(upper, 4, &unit, 1, "", &status) == 1 && U_SUCCESS(status)) {
                expected = static_cast<char16_t>(upper[0]);
            }
        }
        ASSERT_EQ(fold.uppercaseCharacter(static_cast<char16_t>(c)), expected) << c;
    }
}

TEST(FoldTable, SharpSIsALetterOfAWordAndDoesNotFold)
{
    // The sharp s belongs to the word and does not fold into "SS" (no keyword match).
    EXPECT_EQ(visible("claß"), (std::vector<Tok>{{35, "STRING", "claß"}}));
    EXPECT_EQ(visible("naß"), (std::vector<Tok>{{35, "STRING", "naß"}}));
}

} // namespace

namespace {

TEST(LexerNames, BracketsQuoteANameWhateverItHolds)
{
    EXPECT_EQ(visible("[Order Details].[Set] [$(Db)]"),
              (std::vector<Tok>{{40, "QUOTED_STRING", "[Order Details]"}, {149, "'.'", "."},
                                {40, "QUOTED_STRING", "[Set]"}, {40, "QUOTED_STRING", "[$(Db)]"}}));
    // Array bounds are no names but tokens of their own; other brackets that
    // open no name are skipped as before.
    EXPECT_EQ(visible("int[] a[1] ['x']"),
              (std::vector<Tok>{{338, "'INT'", "int"}, {447, "<unknown>", "[]"}, {35, "STRING", "a"},
                                {447, "<unknown>", "[1]"}, {40, "QUOTED_STRING", "'x'"}}));
    const ParseResult result = parse("CREATE TABLE [Order Details] ([Key] [int], [Primary] [nvarchar](10));");
    const SQLTable &table = tableNamed(result, "Order Details");
    ASSERT_EQ(table.fields().size(), 2U);
    EXPECT_EQ(table.fields()[0]->getName(), "Key");
    EXPECT_EQ(table.fields()[1]->getType(), "nvarchar ( 10 )");
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

TEST(LexerNames, OracleNamesHoldDollarAndHashAfterTheFirstLetter)
{
    EXPECT_EQ(visible("app$log emp#hist $x"),
              (std::vector<Tok>{{35, "STRING", "app$log"}, {35, "STRING", "emp#hist"}, {41, "SYMBOL", "$"},
                                {35, "STRING", "x"}}));
    const ParseResult result = parse("CREATE TABLE app$log (id INT);\nCREATE TABLE b (id INT);");
    EXPECT_EQ(result.container->tables().size(), 2U);
    tableNamed(result, "app$log");
    EXPECT_EQ(tableNamed(parse("CREATE TABLE emp#hist (log# INT);"), "emp#hist").fields()[0]->getName(), "log#");
}

TEST(LexerNames, LettersOfAnyScriptAreNameCharacters)
{
    EXPECT_EQ(visible("café 表 naïve int"),
              (std::vector<Tok>{{35, "STRING", "café"}, {35, "STRING", "表"}, {35, "STRING", "naïve"},
                                {338, "'INT'", "int"}}));
    const ParseResult result = parse("CREATE TABLE 表 (naïve int, café varchar(5));");
    const SQLTable &table = tableNamed(result, "表");
    ASSERT_EQ(table.fields().size(), 2U);
    EXPECT_EQ(table.fields()[0]->getName(), "naïve");
    EXPECT_EQ(table.fields()[0]->getType(), "int");
    EXPECT_EQ(table.fields()[1]->getName(), "café");
}

TEST(LexerLines, ALoneCarriageReturnEndsALine)
{
    const ParseResult result = parse("CREATE TABLE a (id INT);\rCREATE TABLE b (id INT);\r-- c\rCREATE TABLE c (id INT);\r");
    EXPECT_EQ(result.container->tables().size(), 3U);
    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString("a\rb\r\nc");
    ASSERT_EQ(tokens.size(), 5U);
    EXPECT_EQ(tokens[1].text, "\r");
    EXPECT_EQ(std::make_pair(tokens[2].line, tokens[2].pos), std::make_pair(2, 0));
    EXPECT_EQ(tokens[3].text, "\r\n");
    EXPECT_EQ(std::make_pair(tokens[4].line, tokens[4].pos), std::make_pair(3, 0));
}

TEST(LexerLines, AFailedTokenDropsOnlyItsFirstCharacter)
{
    // '&&' is predicted on '&' and fails on 't': the word after it stays whole.
    EXPECT_EQ(visible("x &tab y"), (std::vector<Tok>{{35, "STRING", "x"}, {35, "STRING", "tab"}, {35, "STRING", "y"}}));
    tableNamed(parse("CREATE TABLE &tab (id INT);"), "tab");
}

TEST(LexerLines, ANulSplitsNoWord)
{
    const ParseResult result = parse(std::string("CREATE TABLE a (id INT);\nCRE\0ATE TABLE b (id INT);\n", 50));
    EXPECT_EQ(result.container->tables().size(), 2U);
}

TEST(LexerLines, AByteOrderMarkAtTheStartIsNoPartOfTheScript)
{
    // The record's column counts from the script's first character, as it
    // would without the mark; a NUL on the line counts for nothing either.
    const std::string broken = "CREATE TABLE a (x varchar(10) DEFAULT 'abc);\nCREATE TABLE b (id INT);\n";
    for (const std::string &script : {"\xEF\xBB\xBF" + broken, std::string("\0", 1) + broken}) {
        const ParseResult result = parse(script);
        ASSERT_FALSE(result.records.empty());
        EXPECT_EQ(result.records.front().substr(0, 6), "[1:38]");
        tableNamed(result, "b");
    }
    // Elsewhere a U+FEFF is a character of the script, and counts.
    const ParseResult inside = parse("CREATE TABLE z (id INT);\n\xEF\xBB\xBF" + broken);
    ASSERT_FALSE(inside.records.empty());
    EXPECT_EQ(inside.records.front().substr(0, 6), "[2:39]");
}

TEST(LexerQuotes, AnUnclosedQuoteIsReportedWhereItStands)
{
    const ParseResult result = parse("CREATE TABLE a (x varchar(10) DEFAULT 'abc);\nCREATE TABLE b (id INT);\n");
    ASSERT_FALSE(result.records.empty());
    EXPECT_EQ(result.records.front().substr(0, 6), "[1:38]");
    tableNamed(result, "b");
}

TEST(LexerQuotes, BackslashesEscapeOnlyWhereTheLineStaysBalanced)
{
    using sqlantlr::quotedBodyLength;
    auto length = [](std::u16string_view text) {
        return quotedBodyLength(text.data() + 1, text.data() + text.size(), text[0]);
    };
    EXPECT_EQ(length(u"'It\\'s' x"), 6U);                 // MySQL escape
    EXPECT_EQ(length(u"'a\\\\' x"), 4U);                  // escaped backslash
    EXPECT_EQ(length(u"'C:\\data\\'\n, 'x'"), 9U);        // would run past the line end
    EXPECT_EQ(length(u"'C:\\data\\', 'x');"), 9U);        // would open a string on its line
    EXPECT_EQ(length(u"\"C:\\data\\\"\nx"), 9U);
    EXPECT_EQ(length(u"'two\nlines' x"), 10U);            // a string may span lines
    EXPECT_EQ(length(u"'It\\'s\nmore'"), 4U);             // the plain reading closes on the line
    EXPECT_EQ(length(u"'It\\'s\nmore' 'x'"), 4U);
    EXPECT_EQ(length(u"'never closed"), 0U);
    EXPECT_EQ(length(u"'dangling\\"), 0U);
    const ParseResult result = parse("CREATE TABLE p (a varchar(9) DEFAULT 'C:\\tmp\\', b int);\n"
                                     "CREATE TABLE m (a varchar(9) DEFAULT 'It\\'s', b int);\n");
    EXPECT_EQ(tableNamed(result, "p").fields().size(), 2U);
    EXPECT_EQ(tableNamed(result, "m").fields()[0]->getDefaultValue(), "'It\\'s'");
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

TEST(LexerQuotes, QuotesInsideDollarQuotesOpenNoString)
{
    using sqlantlr::dollarQuotedLength;
    auto length = [](std::u16string_view text) { return dollarQuotedLength(text.data(), text.data() + text.size()); };
    EXPECT_EQ(length(u"$$it's$$ x"), 8U);
    EXPECT_EQ(length(u"$a_1$x$$y$a_1$"), 14U);  // only the same tag closes
    EXPECT_EQ(length(u"$1 + $2"), 0U);          // parameters, not tags
    EXPECT_EQ(length(u"$$never closed"), 0U);
    EXPECT_EQ(length(u"$(Var)"), 0U);
    const ParseResult result = parse("CREATE TABLE d (a text DEFAULT $$it's$$, b text DEFAULT $q$'$q$, c int);\n"
                                     "CREATE TABLE e (x varchar(5) DEFAULT 'y$$', z int);\n");
    const SQLTable &d = tableNamed(result, "d");
    ASSERT_EQ(d.fields().size(), 3U);
    EXPECT_EQ(d.fields()[0]->getDefaultValue(), "$$it's$$");
    EXPECT_EQ(d.fields()[1]->getDefaultValue(), "$q$'$q$");
    EXPECT_EQ(tableNamed(result, "e").fields().size(), 2U);
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

// Distinct dollar tags, none of which closes: $aaaa$ $baaa$ ...
std::string unclosedDollarTags(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += '$';
        for (int n = i, k = 0; k < 4; ++k, n /= 26) {
            text += static_cast<char>('a' + n % 26);
        }
        text += "$ ";
    }
    return text;
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(LexerQuotes, TheDollarTagIndexAnswersAsASearchWould)
{
    using sqlantlr::dollarQuotedLength;
    for (std::u16string_view text : {u"$a$ x $a$ $$ y $b$ $$ $a$", u"$$$$$", u"$x1$y$x1$ $1$ $x1$", u"$_$ $_$ a$_$",
                                     u"$a$b$ $b$ $a$", u"$\u00e9t\u00e9$ x $\u00e9t\u00e9$ $$", u"$a$ $A$ $a"}) {
        sqlantlr::DollarTagIndex index;
        const char16_t *end = text.data() + text.size();
        for (const char16_t *p = text.data(); p < end; ++p) {
            EXPECT_EQ(dollarQuotedLength(p, end, &index), dollarQuotedLength(p, end)) << p - text.data();
        }
    }
}

TEST(LexerQuotes, DollarTagsThatNeverCloseCostLinearTime)
{
    // Searching the rest of the text for each of them made n tags cost n
    // squared: hours here instead of a fraction of a second.
    const std::string ascii = unclosedDollarTags(200000);
    const std::u16string text(ascii.begin(), ascii.end());
    const char16_t *end = text.data() + text.size();
    sqlantlr::DollarTagIndex index;
    size_t quoted = 0;
    const auto start = std::chrono::steady_clock::now();
    for (const char16_t *p = text.data(); p < end; ++p) {
        quoted += sqlantlr::dollarQuotedLength(p, end, &index);
    }
    EXPECT_EQ(quoted, 0U);
    EXPECT_LT(secondsSince(start), 10.0);
    // The same through the parser, with a table after them.
    const auto parseStart = std::chrono::steady_clock::now();
    const ParseResult result = parse("SELECT " + unclosedDollarTags(100000) + ";\nCREATE TABLE t (id INT);\n");
    EXPECT_LT(secondsSince(parseStart), 20.0);
    EXPECT_EQ(tableNames(result), std::vector<std::string>{"t"});
}

// Under DELIMITER $$ the terminator is no dollar quote: the quotes of the
// statements it ends are strings and names as usual; after DELIMITER ; a
// dollar quote is one again.
TEST(LexerQuotes, ADollarDelimiterOpensNoDollarQuote)
{
    sqlantlr::DelimiterTrack track;
    const std::u16string text = u"$$x$$\n  delimiter $$\nSELECT 1$$\nDELIMITER ;\nSELECT $$a$$";
    auto at = [&](size_t from) {
        const size_t sign = text.find(u'$', from);
        return sqlantlr::delimiterAt(track, text.data(), text.data() + sign, text.data() + text.size());
    };
    EXPECT_FALSE(at(0));                              // before any DELIMITER line
    EXPECT_TRUE(at(text.find(u"delimiter")));         // the DELIMITER line's own terminator
    EXPECT_TRUE(at(text.find(u"1$")));
    EXPECT_FALSE(at(text.find(u"$a")));               // DELIMITER ; ended it
    EXPECT_TRUE(at(text.find(u"1$")));                // asked again from before: scanned anew
    const ParseResult result = parse("DELIMITER $$\n"
                                     "CREATE TABLE `a b` (id INT, n VARCHAR(5) DEFAULT 'x;y')$$\n"
                                     "CREATE PROCEDURE p() SELECT 1$$\n"
                                     "CREATE TABLE `c d` (id INT)$$\n"
                                     "DELIMITER ;\n"
                                     "CREATE TABLE e (t text DEFAULT $$it's$$);\n");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    EXPECT_EQ(tableNames(result), (std::vector<std::string>{"a b", "c d", "e"}));
    EXPECT_EQ(tableNamed(result, "a b").fields()[1]->getDefaultValue(), "'x;y'");
    EXPECT_EQ(tableNamed(result, "e").fields()[0]->getDefaultValue(), "$$it's$$");
}

TEST(LexerQuotes, RemarkAndPromptLinesHoldNoStringBeyondTheirEnd)
{
    using sqlantlr::isRemarkLine;
    auto remark = [](std::u16string_view text) {
        return isRemarkLine(text.data(), text.data() + text.find(u'\''));
    };
    EXPECT_TRUE(remark(u"REM don't"));
    EXPECT_TRUE(remark(u"x;\n  prompt it's done"));
    EXPECT_TRUE(remark(u"Remark it's"));
    EXPECT_TRUE(remark(u"PROM it's"));
    EXPECT_FALSE(remark(u"REMOVE it's"));                 // no abbreviation of either
    EXPECT_FALSE(remark(u"PROMPTS it's"));
    EXPECT_FALSE(remark(u"REM x\nINSERT 'y"));               // the command's line has ended
    using sqlantlr::quotedBodyLength;
    auto length = [](std::u16string_view text, bool lineBound) {
        return quotedBodyLength(text.data() + 1, text.data() + text.size(), text[0], nullptr, lineBound);
    };
    EXPECT_EQ(length(u"'t do this\nCREATE 'x'", true), 0U);
    EXPECT_EQ(length(u"'t do this\nCREATE 'x'", false), 18U);
    EXPECT_EQ(length(u"'done' it\\'s", true), 5U);
    // A lone apostrophe of a REM line leaves the next lines to the parser.
    const ParseResult result = parse("REM don't do this\nCREATE TABLE a (id INT);\nPROMPT it's done\n"
                                     "CREATE TABLE b (v VARCHAR(9) DEFAULT 'x');\n");
    EXPECT_EQ(tableNamed(result, "a").fields().size(), 1U);
    EXPECT_EQ(tableNamed(result, "b").fields()[0]->getDefaultValue(), "'x'");
    EXPECT_EQ(result.records, std::vector<std::string>{});
}

TEST(Lexer, SubstitutionVariablesBeforeNamesAreHidden)
{
    using sqlantlr::substitutionPrefixLength;
    auto length = [](std::u16string_view text) {
        const size_t at = text.find(u'&');
        return substitutionPrefixLength(text.data(), text.data() + at, text.data() + text.size());
    };
    EXPECT_EQ(length(u"TABLE &&owner..emp"), 9U);
    EXPECT_EQ(length(u"TABLE &owner.emp"), 7U);
    EXPECT_EQ(length(u"TABLE &1..emp"), 4U);
    EXPECT_EQ(length(u"ON &&own$r..\"e\""), 9U);
    EXPECT_EQ(length(u"TABLESPACE &&tbs"), 0U);  // no period: a token of the statement
    EXPECT_EQ(length(u"a.flags&b.mask"), 0U);    // an operator between names
    EXPECT_EQ(length(u"x & b.mask"), 0U);
    EXPECT_EQ(length(u"&&owner..1"), 0U);        // no name follows
    EXPECT_EQ(visible("CREATE TABLE &&owner..emp"),
              (std::vector<Tok>{{53, "'CREATE'", "CREATE"}, {70, "'TABLE'", "TABLE"}, {35, "STRING", "emp"}}));
}

} // namespace

namespace {

// A token over the units [from, from + count) of text, as the lexer makes them.
ANTLR3_COMMON_TOKEN sliceToken(ANTLR3_INPUT_STREAM &input, const std::u16string &text, size_t from, size_t count)
{
    ANTLR3_COMMON_TOKEN token{};
    token.type = 35;  // STRING
    token.textState = ANTLR3_TEXT_NONE;
    token.input = &input;
    token.start = reinterpret_cast<ANTLR3_MARKER>(text.data() + from);
    token.stop = reinterpret_cast<ANTLR3_MARKER>(text.data() + from + count) - 1;
    return token;
}

} // namespace

// Grammar predicates and the script-line filter compare words in the input's
// UTF-16 units: ASCII letters in any case, nothing beyond ASCII (the lexer
// folds a dotless i to I, but "ıf" is not the word IF), the whole token only.
TEST(TokenWords, CompareTheInputInPlaceInAsciiOnly)
{
    const std::u16string text = u"iF \u0131f ifx i";
    ANTLR3_INPUT_STREAM input{};
    input.data = const_cast<char16_t *>(text.data());
    input.sizeBuf = static_cast<ANTLR3_UINT32>(text.size() * 2);
    ANTLR3_COMMON_TOKEN mixedCase = sliceToken(input, text, 0, 2);
    ANTLR3_COMMON_TOKEN dotless = sliceToken(input, text, 3, 2);
    ANTLR3_COMMON_TOKEN longer = sliceToken(input, text, 6, 3);
    ANTLR3_COMMON_TOKEN shorter = sliceToken(input, text, 10, 1);
    EXPECT_TRUE(kp_tokenIsWord(&mixedCase, "IF"));
    EXPECT_FALSE(kp_tokenIsWord(&dotless, "IF"));
    EXPECT_FALSE(kp_tokenIsWord(&longer, "IF"));
    EXPECT_FALSE(kp_tokenIsWord(&shorter, "IF"));
    EXPECT_EQ(kp_tokenText(&dotless), "\xC4\xB1" "f");
    // A token that carries its own text (a made-up terminator) is read from it.
    ANTLR3_COMMON_TOKEN own = sliceToken(input, text, 6, 3);
    own.textState = ANTLR3_TEXT_CHARP;
    own.tokText.chars = reinterpret_cast<pANTLR3_UCHAR>(const_cast<char *>("If"));
    EXPECT_TRUE(kp_tokenIsWord(&own, "IF"));
    ANTLR3_COMMON_TOKEN end = mixedCase;
    end.type = ANTLR3_TOKEN_EOF;
    EXPECT_FALSE(kp_tokenIsWord(&end, "IF"));
}
