// The keywords marked "name" in lexer/keywords.txt must serve as column
// names in the parser and in the tree walker alike: a word the walker does
// not accept would silently drop every column of that name.
#include "ParserTestSupport.h"

namespace {

const char *const keywordNames[] = {
#include "KeywordNameWords.inc"
};

TEST(KeywordNames, EveryNameKeywordNamesAColumnAndATable)
{
    std::string script;
    size_t count = 0;
    for (const char *word : keywordNames) {
        script += "CREATE TABLE kw" + std::to_string(count++) + " (" + word + " INT, after_it INT);\n";
        script += std::string("CREATE TABLE ") + word + " (a INT);\n";
    }
    ASSERT_GT(count, 200u);
    const ParseResult result = parse(script);
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_TRUE(result.container);
    count = 0;
    for (const char *word : keywordNames) {
        const SQLTable &table = tableNamed(result, "kw" + std::to_string(count++));
        std::vector<std::string> columns;
        for (const auto &field : table.fields()) {
            columns.push_back(field->getName());
        }
        EXPECT_EQ(columns, (std::vector<std::string>{word, "after_it"})) << word;
        EXPECT_EQ(tableNamed(result, word).fields().size(), 1u) << word;
    }
}

} // namespace
