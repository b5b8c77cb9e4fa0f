// The command-line tool as a process: output shapes, exit codes, standard
// input, and that traces go to standard error only with --trace.
#include "CliSupport.h"
#include "ParserTestSupport.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(Cli, ModelPrintsOneJsonObjectFromStandardInput)
{
    const CliRun run = runCli("model -", "INSERT INTO t VALUES (1);\nEND;\n");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const nlohmann::json json = nlohmann::json::parse(run.out);
    EXPECT_TRUE(json["tables"].is_array());
    EXPECT_TRUE(json["views"].is_array());
    ASSERT_EQ(json["exceptions"].size(), 3U);
    EXPECT_EQ(json["exceptions"][2], "[2:0] error field ERROR");
}

TEST(Cli, TokensJsonHasExactlyTheDocumentedKeys)
{
    const CliRun run = runCli("tokens --json -", "select 1;");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const nlohmann::json tokens = nlohmann::json::parse(run.out);
    ASSERT_EQ(tokens.size(), 4U);  // SELECT, WS, INT, SEMI
    std::vector<std::string> keys;
    for (const auto &item : tokens[1].items()) {
        keys.push_back(item.key());
    }
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(keys, (std::vector<std::string>{"channel", "index", "line", "name", "pos", "text", "type"}));
    EXPECT_EQ(tokens[1]["channel"], 99);
    EXPECT_EQ(tokens[0]["name"], "'SELECT'");
    EXPECT_EQ(tokens[0]["text"], "select");
}

TEST(Cli, TreeAndPlainTokens)
{
    const CliRun tree = runCli("tree -", "INSERT x;\n;");
    EXPECT_EQ(tree.out, "INSERT x ; ;\n");
    const CliRun tokens = runCli("tokens -", "a\n");
    EXPECT_EQ(tokens.out, "0 35 STRING 0 1:0 \"a\"\n1 51 NEWLINE 99 1:1 \"\\n\"\n");
    // The generated lexer alone cuts the same tokens.
    const std::string script = "CREATE TABLE `t` (a int NOT NULL DEFAULT N'x', b.c char(2));\r\n-- end\n";
    const CliRun fast = runCli("tokens -", script);
    const CliRun reference = runCli("tokens --reference -", script);
    EXPECT_EQ(reference.exitCode, 0) << reference.err;
    EXPECT_EQ(fast.out, reference.out);
    EXPECT_NE(fast.out.find("T_NOT 0 1:24 \"NOT\""), std::string::npos) << fast.out;
}

TEST(Cli, ExitCodesForUnreadableFilesEmptySchemasAndUsage)
{
    const CliRun missing = runCli("model /nonexistent/x.sql");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(std::count(missing.err.begin(), missing.err.end(), '\n'), 1) << missing.err;
    EXPECT_NE(missing.err.find("Unable to identify text encoding during parsing"), std::string::npos);

    const CliRun directory = runCli("model " + std::filesystem::temp_directory_path().string());
    EXPECT_EQ(directory.exitCode, 1);
    EXPECT_EQ(std::count(directory.err.begin(), directory.err.end(), '\n'), 1) << directory.err;
    EXPECT_NE(directory.err.find("UnknownFileEncoding"), std::string::npos) << directory.err;

    // A script whose statements are all dropped is an empty schema.
    const CliRun empty = runCli("model -", "GRANT a ON b TO c;\nSET NOCOUNT ON\nGO\n");
    EXPECT_EQ(empty.exitCode, 0) << empty.err;
    EXPECT_EQ(nlohmann::json::parse(empty.out)["tables"].size(), 0U);
    const CliRun swallowed = runCli("model -", "DECLARE x INT;\nCREATE TABLE t (a INT);\n");
    EXPECT_EQ(swallowed.exitCode, 0) << swallowed.err;
    EXPECT_FALSE(nlohmann::json::parse(swallowed.out)["exceptions"].empty());

    EXPECT_EQ(runCli("frobnicate x").exitCode, 2);
    EXPECT_EQ(runCli("model").exitCode, 2);
    EXPECT_EQ(runCli("--help").exitCode, 0);
}

TEST(Cli, TraceGoesToStandardErrorOnlyWhenAsked)
{
    const CliRun quiet = runCli("model -", "END;");
    EXPECT_EQ(quiet.err, "");
    const CliRun traced = runCli("--trace model -", "END;");
    EXPECT_NE(traced.err.find("created error node"), std::string::npos);
    EXPECT_EQ(nlohmann::json::parse(traced.out)["exceptions"].size(), 3U);
}

} // namespace
