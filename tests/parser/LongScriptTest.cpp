// Long scripts: statements are parsed and walked one at a time and their
// tokens and trees recycled, so objects and records far into a script must
// come out exactly as near its start.
#include "ParserTestSupport.h"

namespace {

TEST(LongScript, ObjectsAndRecordsStayExactAcrossThousandsOfStatements)
{
    std::string script;
    int line = 1;
    std::vector<std::string> expectedRecords;
    for (int i = 0; i < 3000; ++i) {
        script += "CREATE TABLE t" + std::to_string(i) + " (id INT NOT NULL, name VARCHAR(20) DEFAULT 'x');\n";
        ++line;
        if (i % 500 == 499) {
            script += "END;\n";  // a stray token: its own records, the rest goes on
            expectedRecords.push_back("[" + std::to_string(line) + ":0] Parse Error: No Viable Alternative Exception (3): "
                                      "found token 'END' near 'END' " + std::to_string(expectedRecords.size() / 2 + 1));
            expectedRecords.push_back("[" + std::to_string(line) + ":0] No Viable Alternative cannot match to any "
                                      "predicted input...");
            ++line;
        }
        if (i % 700 == 0) {
            script += "SOURCE data" + std::to_string(i) + ".sql\n";
            ++line;
        }
    }
    const size_t strays = expectedRecords.size() / 2;
    for (size_t i = 0; i < strays; ++i) {
        // The walker's records follow the parser's, in script order.
        const std::string &parserRecord = expectedRecords[2 * i];
        expectedRecords.push_back(parserRecord.substr(0, parserRecord.find(']') + 1) + " error field ERROR");
    }

    const ParseResult result = parse(script);
    ASSERT_TRUE(result.container);
    ASSERT_EQ(result.container->tables().size(), 3000U);
    const SQLTable &last = *result.container->tables().back();
    EXPECT_EQ(last.getName(), "t2999");
    ASSERT_EQ(last.fields().size(), 2U);
    EXPECT_EQ(last.fields()[1]->getType(), "VARCHAR ( 20 )");
    EXPECT_EQ(last.fields()[1]->getDefaultValue(), std::optional<std::string>("'x'"));
    EXPECT_EQ(result.records, expectedRecords);
}

} // namespace
