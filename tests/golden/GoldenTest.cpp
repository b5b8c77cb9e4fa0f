// Runs every golden case: parses cases/NAME.sql as `sqlantlr model` does and
// compares the JSON with cases/NAME.json. With SQLANTLR_UPDATE_GOLDEN=1 the
// expected files are rewritten from the current output instead.
#include "ModelJson.h"

#include <nlohmann/json.hpp>

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::vector<std::string> caseNames()
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(GOLDEN_DIR)) {
        if (entry.path().extension() == ".sql") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The text `sqlantlr model --pretty` prints for the case, newline included.
std::string parseCase(const std::string &name, bool plainColumns = true)
{
    SQLParser parser;
    parser.driver().setReadsPlainColumns(plainColumns);
    const std::string text = SQLParser::stringForFile(std::string(GOLDEN_DIR) + "/" + name + ".sql", SQLTextEncoding::UTF8);
    KpError error;
    std::unique_ptr<SQLContainer> container = parser.parseString(text, &error);
    if (container == nullptr) {
        return nlohmann::ordered_json({{"error", error.code}}).dump(2) + "\n";
    }
    return sqlantlr::modelJsonText(*container, parser.getExceptionList(), true) + "\n";
}

class Golden : public ::testing::TestWithParam<std::string> {};

// The values are compared first for a readable difference, then the bytes:
// the CLI's output must not change in spacing or escaping either.
TEST_P(Golden, ModelMatchesExpectedJson)
{
    const std::string name = GetParam();
    const std::string actualText = parseCase(name);
    const fs::path expectedPath = fs::path(GOLDEN_DIR) / (name + ".json");
    const char *update = std::getenv("SQLANTLR_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        std::ofstream(expectedPath, std::ios::binary) << actualText;
        GTEST_SKIP() << "rewrote " << expectedPath;
    }
    std::ifstream file(expectedPath, std::ios::binary);
    ASSERT_TRUE(file) << "missing " << expectedPath << " (run with SQLANTLR_UPDATE_GOLDEN=1 to create it)";
    std::ostringstream expectedText;
    expectedText << file.rdbuf();
    const nlohmann::ordered_json expected = nlohmann::ordered_json::parse(expectedText.str());
    const nlohmann::ordered_json actual = nlohmann::ordered_json::parse(actualText);
    EXPECT_EQ(expected, actual) << "expected:\n" << expected.dump(2) << "\nactual:\n" << actual.dump(2);
    EXPECT_EQ(expectedText.str(), actualText);
}

// The direct reading of plain columns is a shortcut only: without it every
// case gives the same text.
TEST_P(Golden, SameModelWithoutPlainColumnReading)
{
    const std::string name = GetParam();
    EXPECT_EQ(parseCase(name, true), parseCase(name, false));
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, ::testing::ValuesIn(caseNames()),
                         [](const ::testing::TestParamInfo<std::string> &param) {
                             std::string id = param.param;
                             std::replace_if(id.begin(), id.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return id;
                         });

} // namespace
