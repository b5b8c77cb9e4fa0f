// Time and peak memory of one import of hostile scripts: deep nesting of
// every recursive construct, many columns of one name, and 10 MB names and
// strings. Both should grow linearly with the argument.
//
// Each iteration parses in a child process, so that its peak resident memory
// is its own, and so that a case that exhausts the stack, the address space
// limit or the time limit is reported as an error instead of ending the run.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr rlim_t addressSpaceLimit = rlim_t(4) << 30;  // 4 GiB
constexpr unsigned timeLimitSeconds = 120;

std::string repeat(const std::string &text, long count)
{
    std::string result;
    result.reserve(text.size() * static_cast<size_t>(count));
    for (long i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

struct ChildResult {
    double seconds = 0;
    long tables = -1;
};

// Parses the script once in a child process; false with a reason when the
// child did not finish normally. maxResidentKB is the child's own peak.
bool parseInChild(const std::string &script, ChildResult &result, long &maxResidentKB, std::string &reason)
{
    int channel[2];
    if (pipe(channel) != 0) {
        reason = "pipe failed";
        return false;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        close(channel[0]);
        const rlimit limit{addressSpaceLimit, addressSpaceLimit};
        setrlimit(RLIMIT_AS, &limit);
        alarm(timeLimitSeconds);
        const auto start = std::chrono::steady_clock::now();
        SQLParser parser;
        std::unique_ptr<SQLContainer> model = parser.parseString(script);
        ChildResult child;
        child.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        child.tables = model ? static_cast<long>(model->tables().size()) : -1;
        const ssize_t written = write(channel[1], &child, sizeof child);
        _exit(written == static_cast<ssize_t>(sizeof child) ? 0 : 1);
    }
    close(channel[1]);
    const ssize_t got = pid > 0 ? read(channel[0], &result, sizeof result) : -1;
    close(channel[0]);
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) {
        reason = "fork failed";
        return false;
    }
    maxResidentKB = usage.ru_maxrss;
    if (WIFSIGNALED(status)) {
        reason = "child ended by signal " + std::to_string(WTERMSIG(status)) +
                 (WTERMSIG(status) == SIGALRM ? " (time limit)" : WTERMSIG(status) == SIGSEGV ? " (stack?)" : "");
        return false;
    }
    if (got != static_cast<ssize_t>(sizeof result) || WEXITSTATUS(status) != 0) {
        reason = "child failed (out of memory?)";
        return false;
    }
    return true;
}

// The child's peak memory with an empty script: what the process costs
// before it parses anything.
long baselineKB()
{
    static const long baseline = [] {
        ChildResult result;
        long kb = 0;
        std::string reason;
        parseInChild("", result, kb, reason);
        return kb;
    }();
    return baseline;
}

void runHostile(benchmark::State &state, const std::function<std::string(long)> &makeScript)
{
    const std::string script = makeScript(state.range(0));
    for (auto _ : state) {
        ChildResult result;
        long kb = 0;
        std::string reason;
        if (!parseInChild(script, result, kb, reason)) {
            state.SkipWithError(reason.c_str());
            return;
        }
        state.SetIterationTime(result.seconds);
        state.counters["peak_MB_over_empty"] = static_cast<double>(kb - baselineKB()) / 1024.0;
        state.counters["tables"] = static_cast<double>(result.tables);
    }
    state.counters["script_KB"] = static_cast<double>(script.size()) / 1024.0;
}

// Parentheses around a DEFAULT value, nested n deep.
void NestedParenthesesInDefault(benchmark::State &state)
{
    runHostile(state, [](long n) {
        return "CREATE TABLE t (a INT DEFAULT " + repeat("(", n) + "1" + repeat(")", n) + ", b INT);\n";
    });
}

// Parentheses in a CHECK expression, nested n deep.
void NestedParenthesesInCheck(benchmark::State &state)
{
    runHostile(state, [](long n) {
        return "CREATE TABLE t (a INT, CHECK (" + repeat("(", n) + "a > 0" + repeat(")", n) + "));\n";
    });
}

// Function calls nested n deep in a DEFAULT value.
void NestedFunctionCalls(benchmark::State &state)
{
    runHostile(state,
               [](long n) { return "CREATE TABLE t (a INT DEFAULT " + repeat("f(", n) + "1" + repeat(")", n) + ");\n"; });
}

// BEGIN ... END blocks nested n deep.
void NestedBeginBlocks(benchmark::State &state)
{
    runHostile(state, [](long n) { return repeat("BEGIN ", n) + repeat("END; ", n) + "\nCREATE TABLE t (a INT);\n"; });
}

// n columns of one name: renamed a_1 ... a_(n-1), one record each.
void DuplicateColumnNames(benchmark::State &state)
{
    runHostile(state, [](long n) {
        std::string script = "CREATE TABLE t (a INT";
        script += repeat(", a INT", n - 1);
        return script + ");\n";
    });
}

// A column name of n MB.
void LongName(benchmark::State &state)
{
    runHostile(state, [](long n) { return "CREATE TABLE t (" + std::string(size_t(n) << 20, 'n') + " INT);\n"; });
}

// A string literal of n MB as a DEFAULT value.
void LongString(benchmark::State &state)
{
    runHostile(state, [](long n) {
        return "CREATE TABLE t (a VARCHAR(10) DEFAULT '" + std::string(size_t(n) << 20, 'x') + "');\n";
    });
}

void depths(benchmark::internal::Benchmark *b)
{
    b->Arg(1000)->Arg(10000)->Arg(100000)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

void megabytes(benchmark::internal::Benchmark *b)
{
    b->Arg(1)->Arg(10)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(NestedParenthesesInDefault)->Apply(depths);
BENCHMARK(NestedParenthesesInCheck)->Apply(depths);
BENCHMARK(NestedFunctionCalls)->Apply(depths);
BENCHMARK(NestedBeginBlocks)->Apply(depths);
BENCHMARK(DuplicateColumnNames)->Apply(depths);
BENCHMARK(LongName)->Apply(megabytes);
BENCHMARK(LongString)->Apply(megabytes);

} // namespace

BENCHMARK_MAIN();
