// Deeply nested expressions are refused with a record instead of
// overflowing the stack: every parse here runs on a thread with a 1 MiB
// stack, the smallest a caller may give the library.
#include "ParserTestSupport.h"

#include <pthread.h>

#include <functional>

namespace {

// Runs the work on a new thread with a stack of exactly `stackSize` bytes.
void runWithStack(size_t stackSize, const std::function<void()> &work)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackSize), 0);
    pthread_t thread;
    auto body = [](void *argument) -> void * {
        (*static_cast<const std::function<void()> *>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, body, const_cast<std::function<void()> *>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string repeat(const std::string &text, size_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

constexpr size_t depth = 100000;
constexpr size_t oneMiB = 1024 * 1024;

// A column's DEFAULT, CHECK and function arguments are kept as written: their
// parentheses are balanced without recursion, so any depth is read whole.
TEST(NestingDepth, DeepColumnValuesAreKeptOnASmallStack)
{
    const std::string nested = repeat("(", depth) + "1" + repeat(")", depth);
    const std::string scripts[] = {
        "CREATE TABLE deep (a INT DEFAULT " + nested + ");",
        "CREATE TABLE deep (a INT CHECK " + nested + ");",
        "CREATE TABLE deep (a INT, CONSTRAINT c CHECK (a IN " + nested + "));",
        "CREATE TABLE deep (a INT CHECK (a = " + repeat("1 + ", depth) + "1));",
        "CREATE TABLE deep (a INT DEFAULT f(" + repeat("g(", depth) + repeat(")", depth) + "));",
    };
    for (const std::string &script : scripts) {
        ParseResult result;
        runWithStack(oneMiB, [&] { result = parse(script + "\nCREATE TABLE after (b INT);"); });
        ASSERT_TRUE(result.container) << script.substr(0, 40);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << script.substr(0, 40);
        ASSERT_EQ(result.container->tables().size(), 2u) << script.substr(0, 40);
        const SQLTable &deep = *result.container->tables()[0];
        ASSERT_EQ(deep.fields().size(), 1u);
        const SQLField &a = *deep.fields()[0];
        EXPECT_TRUE(a.getDefaultValue().has_value() || !a.checkConstraints().empty() ||
                    !deep.checkConstraints().empty())
            << script.substr(0, 40);
        EXPECT_EQ(result.container->tables()[1]->getName(), "after");
    }
}

// Expressions that are read, not skipped (a table option's value), are
// refused with a record past the depth a parse may go.
TEST(NestingDepth, DeepExpressionsBecomeRecordsOnASmallStack)
{
    const std::string nested = repeat("(", depth) + "1" + repeat(")", depth);
    const std::string script = "CREATE TABLE deep (a INT) COLLATE " + nested + ";";
    ParseResult result;
    runWithStack(oneMiB, [&] { result = parse(script + "\nCREATE TABLE after (b INT);"); });
    ASSERT_TRUE(result.container);
    bool refused = false;
    for (const std::string &record : result.records) {
        refused = refused || record.find("syntax error [RECOGNITION EXCEPTION]") != std::string::npos;
    }
    EXPECT_TRUE(refused);
    ASSERT_EQ(result.container->tables().size(), 2u);
    EXPECT_EQ(result.container->tables()[0]->getName(), "deep");
    EXPECT_EQ(result.container->tables()[1]->getName(), "after");
}

TEST(NestingDepth, OrdinaryNestingIsNotRefused)
{
    ParseResult result;
    runWithStack(oneMiB, [&] {
        result = parse("CREATE TABLE t (a INT CHECK (" + repeat("(", 40) + "a > 0" + repeat(")", 40) + "));");
    });
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_EQ(result.container->tables().size(), 1u);
    EXPECT_EQ(result.container->tables()[0]->fields()[0]->checkConstraints().size(), 1u);
}

// Deep enough to overflow a 1 MiB stack with one frame set per level many
// times over.
constexpr size_t blockDepth = 20000;

// Tables and records of a script parsed on a thread with a 1 MiB stack.
ParseResult parseOnSmallStack(const std::string &script)
{
    ParseResult result;
    runWithStack(oneMiB, [&] { result = parse(script); });
    return result;
}

// Blocks are skipped without recursion: any depth of BEGIN and CASE nesting
// is balanced on a small stack, in linear time (20,000 levels used to need
// a minute and gigabytes, as each level's subtree was copied into its parent).
TEST(NestingDepth, DeepBlocksAreSkippedOnASmallStack)
{
    const std::string after = "\nCREATE TABLE after (b INT);";
    const std::string scripts[] = {
        repeat("BEGIN ", blockDepth) + repeat("END; ", 1) + repeat("END ", blockDepth - 1) + ";",
        "DECLARE x INT; BEGIN " + repeat("BEGIN ", blockDepth) + repeat("END; ", blockDepth) + "END;",
        "BEGIN x := " + repeat("CASE WHEN a THEN ", blockDepth) + "1" + repeat(" END CASE", blockDepth) + "; END;",
        "BEGIN " + repeat("IF a THEN BEGIN ", blockDepth) + repeat("END; END IF; ", blockDepth) + "END;",
    };
    for (const std::string &script : scripts) {
        const ParseResult result = parseOnSmallStack(script + after);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << script.substr(0, 40);
        EXPECT_EQ(tableNames(result), std::vector<std::string>{"after"}) << script.substr(0, 40);
    }
}

// Parenthesised runs the model has no use for (partition keys and bounds,
// access parameters, index expressions, skipped ALTER actions) are balanced
// without recursion: any depth is skipped on a small stack, without a record.
TEST(NestingDepth, DeepSkippedParenthesesAreBalancedOnASmallStack)
{
    const std::string nested = repeat("(", blockDepth) + "1" + repeat(")", blockDepth);
    const std::string after = "\nCREATE TABLE after (b INT);";
    const std::string scripts[] = {
        "CREATE TABLE t (a INT) PARTITION BY RANGE (a) (PARTITION p0 VALUES LESS THAN " + nested + ");",
        "CREATE TABLE t (a INT) PARTITION BY HASH (a + " + nested + ") PARTITIONS 2;",
        "CREATE TABLE t (a INT) PARALLEL " + nested + ";",
        "CREATE TABLE t (a INT, KEY k ((a + " + nested + ")));",
        "CREATE TABLE t (a INT);\nALTER TABLE t MODIFY " + nested + ";",
    };
    for (const std::string &script : scripts) {
        const ParseResult result = parseOnSmallStack(script + after);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << script.substr(0, 60);
        EXPECT_EQ(tableNames(result), (std::vector<std::string>{"t", "after"})) << script.substr(0, 60);
    }
}

// Unclosed blocks run to the end of the input: the records of one unclosed
// block (a missing END and SEMI at the end of input), not one per level.
TEST(NestingDepth, UnclosedDeepBlocksEndInTheRecordsOfOne)
{
    const std::string before = "CREATE TABLE before (a INT);\n";
    const ParseResult one = parse(before + "BEGIN ");
    const ParseResult deep = parseOnSmallStack(before + repeat("BEGIN ", blockDepth));
    ASSERT_FALSE(one.records.empty());
    EXPECT_EQ(deep.records.size(), one.records.size());
    const std::string endOfInput = "[2:" + std::to_string(6 * blockDepth) + "]";
    for (const std::string &record : deep.records) {
        EXPECT_EQ(record.rfind(endOfInput, 0), 0u) << record;
    }
    EXPECT_EQ(tableNames(deep), std::vector<std::string>{"before"});
}

// The block body ends at its own END: END IF, END LOOP, END REPEAT and
// END WHILE close constructs inside it, END CASE closes a CASE.
TEST(NestingDepth, BlockEndsAtItsOwnEnd)
{
    const ParseResult result = parse(
        "BEGIN CASE x WHEN 1 THEN BEGIN NULL; END; END CASE;\n"
        "  LOOP NULL; END LOOP; WHILE a DO NULL; END WHILE; REPEAT NULL; UNTIL b END REPEAT;\n"
        "  IF a THEN SELECT CASE WHEN b THEN 1 END FROM t; END IF;\n"
        "END;\n"
        "CREATE TABLE after (b INT);");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    EXPECT_EQ(tableNames(result), std::vector<std::string>{"after"});
}

} // namespace
