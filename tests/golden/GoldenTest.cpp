// Runs every golden case: parses cases/NAME.sql as `sqlantlr model` does and
// compares the JSON with cases/NAME.json. With SQLANTLR_UPDATE_GOLDEN=1 the
// expected files are rewritten from the current output instead.
#include "ModelJson.h"

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

nlohmann::ordered_json parseCase(const std::string &name)
{
    SQLParser parser;
    const std::string text = SQLParser::stringForFile(std::string(GOLDEN_DIR) + "/" + name + ".sql", SQLTextEncoding::UTF8);
    KpError error;
    std::unique_ptr<SQLContainer> container = parser.parseString(text, &error);
    if (container == nullptr) {
        return {{"error", error.code}};
    }
    return sqlantlr::modelToJson(*container, parser.getExceptionList());
}

class Golden : public ::testing::TestWithParam<std::string> {};

TEST_P(Golden, ModelMatchesExpectedJson)
{
    const std::string name = GetParam();
    const nlohmann::ordered_json actual = parseCase(name);
    const fs::path expectedPath = fs::path(GOLDEN_DIR) / (name + ".json");
    const char *update = std::getenv("SQLANTLR_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        std::ofstream(expectedPath) << actual.dump(2) << "\n";
        GTEST_SKIP() << "rewrote " << expectedPath;
    }
    std::ifstream file(expectedPath);
    ASSERT_TRUE(file) << "missing " << expectedPath << " (run with SQLANTLR_UPDATE_GOLDEN=1 to create it)";
    const nlohmann::ordered_json expected = nlohmann::ordered_json::parse(file);
    EXPECT_EQ(expected, actual) << "expected:\n" << expected.dump(2) << "\nactual:\n" << actual.dump(2);
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, ::testing::ValuesIn(caseNames()),
                         [](const ::testing::TestParamInfo<std::string> &param) {
                             std::string id = param.param;
                             std::replace_if(id.begin(), id.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return id;
                         });

} // namespace
