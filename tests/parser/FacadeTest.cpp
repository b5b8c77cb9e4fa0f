// The facade and the driver's public operations: file input and its encoding
// fallback, record bookkeeping across parses, foreign-key linking, threads.
#include "ModelJson.h"
#include "ParserTestSupport.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class TempFile {
public:
    explicit TempFile(const std::string &bytes)
        : path_(fs::temp_directory_path() /
                ("sqlantlr-test-" + std::to_string(getpid()) + "-" + std::to_string(counter_++) + ".sql"))
    {
        std::ofstream(path_, std::ios::binary) << bytes;
    }
    ~TempFile() { fs::remove(path_); }
    std::string path() const { return path_.string(); }

private:
    static inline std::atomic<int> counter_{0};
    fs::path path_;
};

// Collects log messages while alive.
class LogCapture {
public:
    LogCapture()
    {
        SQLAntlrParser::setLogSink([this](std::string_view message) { lines.emplace_back(message); });
    }
    ~LogCapture() { SQLAntlrParser::setLogSink(nullptr); }
    bool contains(const std::string &text) const
    {
        for (const std::string &line : lines) {
            if (line.find(text) != std::string::npos) {
                return true;
            }
        }
        return false;
    }
    std::vector<std::string> lines;
};

TEST(FileInput, Utf8FileIsReadAsIs)
{
    TempFile file("INSERT INTO t VALUES ('caf\xC3\xA9');\n");
    LogCapture log;
    EXPECT_EQ(SQLParser::stringForFile(file.path(), SQLTextEncoding::UTF8), "INSERT INTO t VALUES ('caf\xC3\xA9');\n");
    EXPECT_FALSE(log.contains("falling back"));
    SQLParser parser;
    EXPECT_TRUE(parser.parseFile(file.path()));
    EXPECT_FALSE(parser.hasExceptions());
}

TEST(FileInput, InvalidUtf8FallsBackToMacRoman)
{
    TempFile file("INSERT INTO t VALUES ('\xE9\x8E');\n");
    LogCapture log;
    // 0xE9 is E with grave and 0x8E e with acute in Mac OS Roman.
    EXPECT_EQ(SQLParser::stringForFile(file.path(), SQLTextEncoding::UTF8), "INSERT INTO t VALUES ('\xC3\x88\xC3\xA9');\n");
    EXPECT_TRUE(log.contains("falling back to latin encoding"));
}

TEST(FileInput, MissingFileRaisesTheEncodingError)
{
    SQLParser parser;
    try {
        parser.parseFile("/nonexistent/dir/schema.sql");
        FAIL() << "no exception";
    } catch (const SQLFileEncodingError &error) {
        EXPECT_STREQ(error.what(), "Unable to identify text encoding during parsing");
    }
}

TEST(FileInput, DirectoryRaisesTheEncodingErrorInsteadOfAborting)
{
    SQLParser parser;
    EXPECT_THROW(parser.parseFile(fs::temp_directory_path().string()), SQLFileEncodingError);
}

TEST(Records, AccumulateAcrossParsesAndCountModulo256)
{
    SQLParser parser;
    EXPECT_FALSE(parser.hasExceptions());
    ASSERT_TRUE(parser.parseString(""));  // 2 records
    EXPECT_TRUE(parser.hasExceptions());
    std::string script;
    for (int i = 0; i < 84; ++i) {
        script += "END;\n";  // 3 records each
    }
    script += "INSERT x";  // 2 records at the end
    ASSERT_TRUE(parser.parseString(script));
    ASSERT_EQ(parser.getExceptionList().size(), 256U);
    EXPECT_EQ(parser.getExceptionList().front().reason, "[1:0] missing elements...");
    EXPECT_EQ(parser.getExceptionList().front().name, "ParsingException");
    EXPECT_FALSE(parser.hasExceptions()) << "the count's low 8 bits decide";
}

TEST(Records, FacadeReportsItsErrorAndTakesANullString)
{
    SQLParser parser;
    LogCapture log;
    KpError error;
    EXPECT_EQ(parser.parseString(static_cast<const char *>(nullptr), &error), nullptr);
    EXPECT_EQ(error.code, KpErrorNilInput);
    EXPECT_EQ(error.message, "Invalid input (is nil)");
    EXPECT_TRUE(log.contains("Error: Invalid input (is nil)"));
    EXPECT_EQ(parser.parseString(static_cast<const char *>(nullptr)), nullptr);

    error = KpError();
    EXPECT_EQ(parser.parseString(std::string("GRANT x ON y TO z;"), &error), nullptr);
    EXPECT_EQ(error.code, KpErrorUnallocatedTree);

    // A parse that succeeds leaves the error alone and resolves references.
    error = KpError();
    std::unique_ptr<SQLContainer> container =
        parser.parseString("CREATE TABLE a (x INT PRIMARY KEY); CREATE TABLE b (y INT REFERENCES a);", &error);
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(error.code, 0);
    const SQLFieldReference *reference = container->getTableByName("b")->getFieldByName("y")->getReferences();
    ASSERT_NE(reference, nullptr);
    EXPECT_TRUE(reference->resolved);
}

TEST(Records, NilParseIsLoggedByTheFacade)
{
    SQLParser parser;
    LogCapture log;
    EXPECT_EQ(parser.parseString("GRANT x ON y TO z;"), nullptr);
    EXPECT_TRUE(log.contains("Tried to parse unallocated Tree"));
    KpError error;
    EXPECT_TRUE(KpError::handleErrorWithLocalizedString("m", 5, &error));
    EXPECT_EQ(error.code, 5);
    EXPECT_FALSE(KpError::handleErrorWithLocalizedString("lost", 6, nullptr));
    EXPECT_TRUE(log.contains("ERROR (6): lost"));
}

TEST(Driver, TableNamesAreTrimmedPartsJoinedWithDots)
{
    EXPECT_EQ(SQLParserC::tableNameFromReturnArray({" s ", "`t`"}), "s.t");
    EXPECT_EQ(SQLParserC::tableNameFromReturnArray({"\"only\""}), "only");
    EXPECT_EQ(SQLParserC::tableNameFromReturnArray({}), "");
}

class ForeignKeyLinking : public ::testing::Test {
protected:
    void SetUp() override
    {
        table = SQLTable::tableForImportWithName("orders");
        for (const char *name : {"id", "customer", "region"}) {
            table->addWithRenaming(SQLField::fieldWithName(name, "INT"));
        }
    }
    SQLParserC driver;
    std::unique_ptr<SQLTable> table;
};

TEST_F(ForeignKeyLinking, OneColumnKeyLivesOnTheField)
{
    SQLReferentialActions *carrier =
        driver.addForeignKey(table.get(), std::string("fk_c"), 3, 4, {"s", "customers"}, {"customer"}, {});
    SQLField *field = table->getFieldByName("customer");
    ASSERT_EQ(carrier, static_cast<SQLReferentialActions *>(field));
    ASSERT_NE(field->getReferences(), nullptr);
    EXPECT_EQ(field->getReferences()->table, "s.customers");
    EXPECT_FALSE(field->getReferences()->field.has_value());
    EXPECT_EQ(field->getReferences()->referenceId, std::optional<std::string>("fk_c"));
    EXPECT_TRUE(table->foreignKeys().empty());
}

TEST_F(ForeignKeyLinking, SeveralColumnsMakeAForeignKey)
{
    SQLReferentialActions *carrier =
        driver.addForeignKey(table.get(), std::nullopt, 1, 0, {"customers"}, {"customer", "region"}, {});
    ASSERT_EQ(table->foreignKeys().size(), 1U);
    const SQLForeignKey &key = *table->foreignKeys().front();
    EXPECT_EQ(carrier, static_cast<const SQLReferentialActions *>(&key));
    EXPECT_TRUE(key.getPropertyAsBoolean("targetsPrimaryKey"));
    ASSERT_EQ(key.entries().size(), 2U);
    EXPECT_FALSE(key.entries()[0]->getTargetName().has_value());
}

TEST_F(ForeignKeyLinking, UnknownColumnsAreRecordedAndTheRestKept)
{
    driver.addForeignKey(table.get(), std::nullopt, 7, 2, {"customers"}, {"customer", "nope"}, {"id", "rid"});
    ASSERT_EQ(table->foreignKeys().size(), 1U);
    EXPECT_EQ(table->foreignKeys().front()->entries().size(), 1U);
    EXPECT_EQ(driver.addForeignKey(table.get(), std::nullopt, 8, 1, {"x"}, {"missing"}, {"y"}), nullptr);
    ASSERT_EQ(driver.getExceptionList().size(), 2U);
    EXPECT_EQ(driver.getExceptionList()[0].reason,
              "[7:2] Table Constraint foreign key Field Name rid not found in table orders\n");
    EXPECT_EQ(driver.getExceptionList()[1].reason,
              "[8:1] [8], local field not found when parsing foreign key:'missing' -> 'y' -- id, customer, region");
}

TEST(Threads, SeparateParsersRunConcurrently)
{
    std::string script;
    for (int i = 0; i < 200; ++i) {
        script += "INSERT INTO t VALUES (" + std::to_string(i) + ", 'x');\nEND;\n";
    }
    const std::vector<std::string> expected = parse(script).records;
    ASSERT_EQ(expected.size(), 600U);
    std::atomic<int> mismatches{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5; ++round) {
                if (parse(script).records != expected) {
                    ++mismatches;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(mismatches.load(), 0);
}

TEST(Threads, ModelsMadeOnSeveralThreadsMatchAndAreFreedOnAnother)
{
    // Enough tables and columns that each thread's model takes several of
    // the model's storage blocks; the models are freed on the main thread,
    // after the threads that made them have ended.
    std::string script;
    for (int t = 0; t < 400; ++t) {
        script += "CREATE TABLE t" + std::to_string(t) + " (id INT PRIMARY KEY";
        for (int c = 0; c < 30; ++c) {
            script += ", c" + std::to_string(c) + " VARCHAR(" + std::to_string(c + 1) + ") DEFAULT 'x'";
        }
        script += ", parent INT REFERENCES t" + std::to_string(t / 2) + " (id));\n";
    }
    const ParseResult single = parse(script);
    ASSERT_NE(single.container, nullptr);
    const std::string expected = sqlantlr::modelJsonText(*single.container, {});
    std::vector<std::unique_ptr<SQLContainer>> models(4);
    std::vector<std::thread> threads;
    for (auto &model : models) {
        threads.emplace_back([&script, &model] { model = parse(script).container; });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (const auto &model : models) {
        ASSERT_NE(model, nullptr);
        EXPECT_EQ(sqlantlr::modelJsonText(*model, {}), expected);
    }
    models.clear();
}

TEST(Version, SymbolsAndBacktrace)
{
    EXPECT_DOUBLE_EQ(SQLAntlrParserVersionNumber, 1.0);
    EXPECT_STREQ(reinterpret_cast<const char *>(SQLAntlrParserVersionString),
                 "@(#)PROGRAM:SQLAntlrParser  PROJECT:Vellum-17-1\n");
    LogCapture log;
    printBackTrace();
    EXPECT_FALSE(log.lines.empty());
}

} // namespace

namespace {

// Runs work on its own thread; false when it has not finished within a few
// seconds (a deadlock; the thread is then left behind).
bool finishesInTime(std::function<void()> work)
{
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> finished = done->get_future();
    std::thread([work = std::move(work), done] {
        work();
        done->set_value();
    }).detach();
    return finished.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
}

} // namespace

TEST(LogSink, SinkMayLogAndRemoveItself)
{
    // A sink whose work logs gets that message too, on the same thread.
    auto received = std::make_shared<std::vector<std::string>>();
    ASSERT_TRUE(finishesInTime([received] {
        auto nested = std::make_shared<bool>(false);
        SQLAntlrParser::setLogSink([received, nested](std::string_view message) {
            received->emplace_back(message);
            if (!*nested) {
                *nested = true;
                SQLParser().parseString(static_cast<const char *>(nullptr));  // logs "Error: ..."
            }
        });
        SQLParser().parseString("GRANT x ON y TO z;");
        SQLAntlrParser::setLogSink(nullptr);
    })) << "a sink that logs deadlocked";
    ASSERT_GE(received->size(), 2U);
    EXPECT_NE(received->at(1).find("Invalid input (is nil)"), std::string::npos);

    // A sink that removes itself finishes its message and hears no more.
    auto calls = std::make_shared<std::atomic<int>>(0);
    ASSERT_TRUE(finishesInTime([calls] {
        SQLAntlrParser::setLogSink([calls](std::string_view) {
            ++*calls;
            SQLAntlrParser::setLogSink(nullptr);
        });
        SQLParser().parseString("GRANT x ON y TO z;");
        SQLParser().parseString("GRANT x ON y TO z;");
    })) << "a sink that removes itself deadlocked";
    EXPECT_EQ(calls->load(), 1);
    EXPECT_FALSE(SQLAntlrParser::isLogging());
}

namespace {

// A driver that watches its stages.
class WatchingDriver : public SQLParserC {
public:
    bool displayNodeList() const override { return true; }
    bool displayTokenStream() const override { return true; }
    std::vector<std::string> stages;
    int statementsWalked = 0;

protected:
    SQLInputStream *inputStreamFromString(std::u16string_view text) override
    {
        stages.emplace_back("input");
        return SQLParserC::inputStreamFromString(text);
    }
    SQLLexer *lexerForInputStream(SQLInputStream *input) override
    {
        stages.emplace_back("lexer");
        return SQLParserC::lexerForInputStream(input);
    }
    SQLRecognizer *parserForTokenStream(SQLTokenStream *tokens) override
    {
        stages.emplace_back("parser");
        return SQLParserC::parserForTokenStream(tokens);
    }
    bool walkStatement(SQLSyntaxTree *tree, SQLContainer &container, KpError *error) override
    {
        ++statementsWalked;
        stages.emplace_back("walk " + std::to_string(container.tables().size()));
        return SQLParserC::walkStatement(tree, container, error);
    }
    std::unique_ptr<SQLContainer> parseTree(SQLSyntaxTree *tree, KpError *error) override
    {
        stages.emplace_back("tree");
        return SQLParserC::parseTree(tree, error);
    }
};

} // namespace

TEST(Driver, SubclassSeesEveryStageOfEveryParse)
{
    WatchingDriver driver;
    LogCapture log;
    KpError error;
    std::unique_ptr<SQLContainer> container =
        driver.parseString("CREATE TABLE a (x INT);\nDROP TABLE q;\nCREATE TABLE b (y INT);", &error);
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(container->tables().size(), 2U);
    // Every statement that built a tree (DROP TABLE too) is walked into the
    // one container.
    EXPECT_EQ(driver.stages,
              (std::vector<std::string>{"input", "lexer", "parser", "walk 0", "walk 1", "walk 1"}));
    EXPECT_TRUE(log.contains("tokens found"));
    const auto dumps = std::count_if(log.lines.begin(), log.lines.end(),
                                     [](const std::string &line) { return line.rfind("Nodes: ", 0) == 0; });
    EXPECT_EQ(dumps, driver.statementsWalked);

    // A script without statements goes through parseTree.
    driver.stages.clear();
    driver.parseString("-- nothing\n", &error);
    EXPECT_EQ(driver.stages, (std::vector<std::string>{"input", "lexer", "parser", "tree"}));

    // Token listings make the stream and the lexer only.
    driver.stages.clear();
    EXPECT_FALSE(driver.tokensForString("a b").empty());
    EXPECT_EQ(driver.stages, (std::vector<std::string>{"input", "lexer"}));
}
