// The token vocabulary as the lexer produces it: fixed numbers and names,
// case-insensitive keywords with the script's own text, hidden tokens,
// quoted runs, comments, and the fold table behind the keyword matching.
#include "KpAntlrStringOperations.h"
#include "ParserTestSupport.h"
#include "RecognizerSupport.h"

#include <SQLAntlrParser/SQLParserC.h>

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

TEST(FoldTable, SharpSIsALetterOfAWordAndDoesNotFold)
{
    // The sharp s belongs to the word and does not fold into "SS" (no keyword match).
    EXPECT_EQ(visible("claß"), (std::vector<Tok>{{35, "STRING", "claß"}}));
    EXPECT_EQ(visible("naß"), (std::vector<Tok>{{35, "STRING", "naß"}}));
}

} // namespace
