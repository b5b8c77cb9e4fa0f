// Hostile input: random bytes, NUL bytes, invalid UTF-8 and unterminated
// constructs never crash or hang a parse, and what parsed before them stays.
#include "ParserTestSupport.h"

#include <random>

namespace {

std::string randomBytes(std::mt19937 &random, size_t length, bool printable)
{
    std::uniform_int_distribution<int> byte(printable ? 32 : 0, printable ? 126 : 255);
    std::string bytes(length, '\0');
    for (char &c : bytes) {
        c = static_cast<char>(byte(random));
    }
    return bytes;
}

TEST(Robustness, RandomBytesNeverCrash)
{
    std::mt19937 random(20261121);
    const std::vector<std::string> pieces = {"CREATE ", "TABLE ", "(", ")", ";", "'", "\"", "`", "--", "/*", "*/",
                                             "END ", "BEGIN ", "DELIMITER ", "/", "\n", "INSERT ", "ALTER ", "x "};
    for (int round = 0; round < 300; ++round) {
        std::string script = randomBytes(random, static_cast<size_t>(random() % 200), round % 2 == 0);
        for (int i = 0; i < 20; ++i) {
            script.insert(static_cast<size_t>(random()) % (script.size() + 1), pieces[static_cast<size_t>(random()) % pieces.size()]);
        }
        SQLParser parser;
        parser.parseString(script);  // a container or nullptr, never a crash
        SQLParserC driver;
        driver.tokensForString(script);
    }
}

TEST(Robustness, NulBytesAndInvalidUtf8)
{
    const std::string nul("INSERT INTO t VALUES ('a\0b');\n\0\0INSERT y;", 42);
    const ParseResult withNul = parse(nul);
    EXPECT_TRUE(withNul.container);

    const ParseResult invalid = parse("INSERT INTO t VALUES ('\xFF\xFE\xC3');\nINSERT \x80 y;");
    EXPECT_TRUE(invalid.container);
    EXPECT_TRUE(invalid.records.empty()) << invalid.records.front();

    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString("'\xFF'");
    ASSERT_EQ(tokens.size(), 1U);
    EXPECT_EQ(tokens[0].text, "'\xEF\xBF\xBD'") << "invalid bytes become U+FFFD";
}

TEST(Robustness, LongUnterminatedQuoteEndsAtTheEndOfInput)
{
    std::string script = "INSERT INTO t VALUES (1);\nINSERT INTO t VALUES ('";
    script.append(200000, 'x');
    const ParseResult result = parse(script);
    EXPECT_TRUE(result.container);
}

} // namespace
