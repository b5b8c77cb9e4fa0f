// The check and diagram commands, model over several files, --version,
// --help, --quiet and the progress line, run as processes.
#include "CliSupport.h"
#include "ModelJson.h"
#include "ParserTestSupport.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

// A directory of scripts that lives as long as the test.
class Scripts {
public:
    Scripts() : dir_(fs::temp_directory_path() / ("sqlantlr-scripts-" + std::to_string(getpid())))
    {
        fs::create_directories(dir_);
    }
    ~Scripts() { fs::remove_all(dir_); }
    Scripts(const Scripts &) = delete;
    Scripts &operator=(const Scripts &) = delete;

    std::string add(const std::string &name, const std::string &text)
    {
        const fs::path path = dir_ / name;
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }
    std::string dir() const { return dir_.string(); }

private:
    fs::path dir_;
};

const char *const parentScript = "CREATE TABLE parent (id int NOT NULL PRIMARY KEY, name varchar(20));\n";
const char *const childScript = "CREATE TABLE child (\n  id int PRIMARY KEY,\n  parent_id int NOT NULL,\n"
                                "  FOREIGN KEY (parent_id) REFERENCES parent (id)\n);\n";
const char *const brokenScript = "CREATE TABLE t (a int,, b int);\n";

std::size_t lines(const std::string &text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(CliModel, MergesFilesInOrderAndResolvesKeysAcrossThem)
{
    Scripts scripts;
    const std::string parent = scripts.add("parent.sql", parentScript);
    const std::string child = scripts.add("child.sql", childScript);
    const CliRun merged = runCli("model " + child + " - " + parent, brokenScript);
    ASSERT_EQ(merged.exitCode, 0) << merged.err;
    const nlohmann::json json = nlohmann::json::parse(merged.out);
    ASSERT_EQ(json["tables"].size(), 3U);
    EXPECT_EQ(json["tables"][0]["name"], "child");
    EXPECT_EQ(json["tables"][1]["name"], "t");
    EXPECT_EQ(json["tables"][0]["fields"][1]["references"]["resolved"], true) << merged.out;
    ASSERT_FALSE(json["exceptions"].empty());
    EXPECT_EQ(json["exceptions"][0].get<std::string>().rfind("<stdin>: [1:21] ", 0), 0U) << json["exceptions"][0];

    // Alone, the child's key stays unresolved.
    const nlohmann::json alone = nlohmann::json::parse(runCli("model " + child).out);
    EXPECT_EQ(alone["tables"][0]["fields"][1]["references"]["resolved"], false);
}

TEST(CliModel, OneFileKeepsItsBytesAndPrettyAndCompactChooseTheLayout)
{
    Scripts scripts;
    const std::string file = scripts.add("broken.sql", brokenScript);
    SQLParser parser;
    KpError error;
    std::unique_ptr<SQLContainer> container = parser.driver().parseString(brokenScript, &error);
    ASSERT_NE(container, nullptr);
    container->postLoadProcess();
    const nlohmann::ordered_json expected = nlohmann::ordered_json::parse(sqlantlr::modelJsonText(*container, parser.getExceptionList()));

    EXPECT_EQ(runCli("model " + file).out, expected.dump() + "\n");
    EXPECT_EQ(runCli("model --compact " + file).out, expected.dump() + "\n");
    EXPECT_EQ(runCli("model --pretty " + file).out, expected.dump(2) + "\n");
    EXPECT_EQ(runCli("model --pretty --compact " + file).exitCode, 2);
}

TEST(CliModel, AnUnreadableFileAmongSeveralFailsWithOneLine)
{
    Scripts scripts;
    const std::string parent = scripts.add("parent.sql", parentScript);
    for (const std::string &bad : {std::string("/nonexistent/x.sql"), scripts.dir()}) {
        const CliRun run = runCli("model " + parent + " " + bad);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(lines(run.err), 1U) << run.err;
        EXPECT_NE(run.err.find(bad), std::string::npos) << run.err;
    }
}

TEST(CliCheck, PrintsRecordsAsFileLineColumnAndExitsThreeWhenThereAreAny)
{
    Scripts scripts;
    const std::string clean = scripts.add("clean.sql", parentScript);
    const std::string broken = scripts.add("broken.sql", std::string("-- comment\n") + brokenScript);
    const CliRun none = runCli("check " + clean);
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "");

    const CliRun some = runCli("check " + clean + " " + broken);
    EXPECT_EQ(some.exitCode, 3);
    EXPECT_EQ(some.err, "");
    ASSERT_GE(lines(some.out), 2U);
    EXPECT_EQ(some.out.rfind(broken + ":2:22: Parse Error: ", 0), 0U) << some.out;

    const CliRun first = runCli("check --max 1 " + broken);
    EXPECT_EQ(first.exitCode, 3);
    EXPECT_EQ(lines(first.out), 1U) << first.out;
    EXPECT_EQ(runCli("check --max 0 " + broken).exitCode, 2);

    const CliRun stdinRun = runCli("check -", brokenScript);
    EXPECT_EQ(stdinRun.out.rfind("<stdin>:1:22: ", 0), 0U) << stdinRun.out;
}

TEST(CliCheck, UnreadableFilesFailButTheOthersAreStillChecked)
{
    Scripts scripts;
    const std::string broken = scripts.add("broken.sql", brokenScript);
    const CliRun run = runCli("check /nonexistent/x.sql " + scripts.dir() + " " + broken);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(lines(run.err), 2U) << run.err;
    EXPECT_NE(run.out.find(broken + ":1:22: "), std::string::npos) << run.out;
}

TEST(CliDiagram, WritesEachFormatToStandardOutputOrAFile)
{
    Scripts scripts;
    const std::string parent = scripts.add("parent.sql", parentScript);
    const std::string child = scripts.add("child.sql", childScript);
    const std::string both = parent + " " + child;

    const CliRun dot = runCli("diagram --format dot " + both);
    ASSERT_EQ(dot.exitCode, 0) << dot.err;
    EXPECT_EQ(dot.out.rfind("digraph schema {", 0), 0U);
    EXPECT_NE(dot.out.find("n1:e1:e -> n0:w0:w"), std::string::npos) << dot.out;

    const CliRun mermaid = runCli("diagram --format mermaid " + both);
    EXPECT_NE(mermaid.out.find("    child }o--|| parent : \"(parent_id)\"\n"), std::string::npos) << mermaid.out;

    const CliRun svg = runCli("diagram " + both);
    ASSERT_EQ(svg.exitCode, 0) << svg.err;
    EXPECT_EQ(svg.err, "");
    EXPECT_NE(svg.out.find("<svg"), std::string::npos);
    EXPECT_NE(svg.out.find("</svg>"), std::string::npos);

    const std::string png = scripts.dir() + "/out.png";
    const CliRun toFile = runCli("diagram -o " + png + " " + both);
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
    EXPECT_EQ(toFile.out, "");
    EXPECT_EQ(slurpFile(png).substr(0, 4), "\x89PNG");
    const std::string mmd = scripts.dir() + "/out.mmd";
    ASSERT_EQ(runCli("diagram -o " + mmd + " " + both).exitCode, 0);
    EXPECT_EQ(slurpFile(mmd).rfind("erDiagram\n", 0), 0U);

    EXPECT_EQ(runCli("diagram -o /nonexistent/dir/x.svg " + both).exitCode, 1);
}

// Graphviz is loaded when a picture is drawn, not for the other commands
// (nor for DOT or Mermaid text): the dynamic linker's file log names it then.
TEST(CliDiagram, GraphvizIsLoadedOnlyToDrawAPicture)
{
    Scripts scripts;
    const std::string file = scripts.add("both.sql", std::string(parentScript) + childScript);
    const auto loadsGraphviz = [](const std::string &arguments) {
        setenv("LD_DEBUG", "files", 1);
        const CliRun run = runCli(arguments);
        unsetenv("LD_DEBUG");
        EXPECT_EQ(run.exitCode, 0) << arguments << run.err;
        return run.err.find("libgvc") != std::string::npos;
    };
    EXPECT_FALSE(loadsGraphviz("-q model " + file));
    EXPECT_FALSE(loadsGraphviz("-q tokens " + file));
    EXPECT_FALSE(loadsGraphviz("diagram --format mermaid " + file));
    EXPECT_TRUE(loadsGraphviz("diagram " + file));
}

TEST(CliDiagram, FiltersAndTheirUsageErrors)
{
    Scripts scripts;
    const std::string file = scripts.add("both.sql", std::string(parentScript) + childScript);
    const CliRun only = runCli("diagram --format mermaid --tables '^ch' " + file);
    ASSERT_EQ(only.exitCode, 0) << only.err;
    EXPECT_NE(only.out.find("    parent {\n        stub not_drawn\n    }\n"), std::string::npos) << only.out;
    EXPECT_NE(only.out.find("    child }o..|| parent"), std::string::npos) << only.out;
    const CliRun noSchema = runCli("diagram --format mermaid --schema sales " + file);
    EXPECT_EQ(noSchema.out, "erDiagram\n");

    const CliRun badRegex = runCli("diagram --tables '(' " + file);
    EXPECT_EQ(badRegex.exitCode, 2);
    EXPECT_EQ(lines(badRegex.err), 1U) << badRegex.err;
    EXPECT_EQ(runCli("diagram --format jpg " + file).exitCode, 2);
    EXPECT_EQ(runCli("diagram").exitCode, 2);
}

TEST(CliDiagram, BadInputGivesOneLineOrAnEmptyDiagramNeverACrash)
{
    Scripts scripts;
    const CliRun missing = runCli("diagram /nonexistent/x.sql");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(lines(missing.err), 1U) << missing.err;
    const CliRun directory = runCli("diagram " + scripts.dir());
    EXPECT_EQ(directory.exitCode, 1);
    EXPECT_EQ(lines(directory.err), 1U) << directory.err;
    EXPECT_EQ(directory.err.rfind("sqlantlr: " + scripts.dir() + ": ", 0), 0U) << directory.err;

    const CliRun empty = runCli("diagram --format mermaid " + scripts.add("empty.sql", ""));
    EXPECT_EQ(empty.exitCode, 0) << empty.err;
    EXPECT_EQ(empty.out, "erDiagram\n");
    EXPECT_EQ(runCli("diagram --quiet --format mermaid " + scripts.add("empty2.sql", "")).err, "");

    std::string junk;
    for (int i = 0; i < 4096; ++i) {
        junk += static_cast<char>((i * 7919 + 13) % 256);
    }
    const std::string junkFile = scripts.add("junk.sql", junk);
    for (const char *format : {"svg", "mermaid"}) {
        const CliRun run = runCli(std::string("diagram --format ") + format + " " + junkFile);
        EXPECT_TRUE(run.exitCode == 0 || (run.exitCode == 1 && lines(run.err) == 1U)) << run.exitCode << run.err;
    }
}

TEST(CliGeneral, VersionAndHelpDocumentTheToolAndItsExitCodes)
{
    const CliRun version = runCli("--version");
    EXPECT_EQ(version.exitCode, 0);
    for (const char *part : {"sqlantlr ", "SQLAntlrParser library", "ANTLR 3 C runtime", "ICU", "Graphviz"}) {
        EXPECT_NE(version.out.find(part), std::string::npos) << version.out;
    }
    const CliRun help = runCli("--help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char *part : {"model", "check", "diagram", "tokens", "tree", "Exit codes", "3 `check` found records"}) {
        EXPECT_NE(help.out.find(part), std::string::npos) << part;
    }
}

// A script just above the progress threshold that parses quickly: a long
// comment, then two statements.
std::string largeScript()
{
    std::string text = "/*";
    const std::string line(79, 'x');
    while (text.size() < (4U << 20U) + 1000) {
        text += line + "\n";
    }
    return text + "*/\nCREATE TABLE a (x int);\nCREATE TABLE b (y int);\n";
}

TEST(CliGeneral, ProgressLineOnlyWhenStandardErrorIsATerminal)
{
    Scripts scripts;
    const std::string file = scripts.add("large.sql", largeScript());
    const CliRun piped = runCli("model " + file);
    ASSERT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.err, "");

    if (std::system("command -v script > /dev/null") != 0) {
        GTEST_SKIP() << "no `script` to give the tool a terminal";
    }
    // `script` runs the tool on a pseudo-terminal and copies what it shows.
    const std::string shown = scripts.dir() + "/shown";
    const std::string command = "script -qec '" + std::string(SQLANTLR_CLI) + " model " + file + " > /dev/null' " +
                                "/dev/null > " + shown + " 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_NE(slurpFile(shown).find("% "), std::string::npos) << slurpFile(shown);
    EXPECT_NE(slurpFile(shown).find("1 tables"), std::string::npos) << slurpFile(shown);

    const std::string quiet = "script -qec '" + std::string(SQLANTLR_CLI) + " model --quiet " + file +
                              " > /dev/null' /dev/null > " + shown + " 2>&1";
    ASSERT_EQ(std::system(quiet.c_str()), 0);
    EXPECT_EQ(slurpFile(shown), "");
}

} // namespace
