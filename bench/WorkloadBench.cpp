// Throughput and peak memory of the three workloads users run, at several
// input sizes:
//   ddl-import  the library imports a DDL-only schema script file (parseFile)
//   cli-model   `sqlantlr model FILE` on the same script, JSON output included
//   dump-import the library imports a dump file (parseFile): a few tables, many multi-row INSERTs
//   cli-dump    `sqlantlr model FILE` on the same dump (the file parsed in place)
//   rows-import the library imports a dump of one row per INSERT (pg_dump --inserts,
//               mysqldump --skip-extended-insert)
//   cli-rows    `sqlantlr model FILE` on the same dump
//
// MB/s is given per wall second and per CPU second of the child (user and
// system time, process start and file reading included, the freeing of the
// model not: a library child leaves it to the process end, as the CLI
// does): on a shared machine the CPU figure is the steadier one.
//
// Every case runs in a fresh process (this program re-executed with --child,
// or the CLI), so that its peak resident memory is its own: the figure is the
// ru_maxrss wait4 reports for that child, the input text included. A case
// of a few milliseconds is at the mercy of whatever else the machine does:
// below 50 MB each case runs five times (--runs N to choose) and the run of
// the median CPU time is reported, with the throughput of the fastest run
// (best_MB/cpu_s: the machine's other work only ever adds time, so the fastest
// run is the least disturbed one).
//
//   sqlantlr_workload_bench [--short] [--sizes MB,MB,...] [--runs N] [--cli PATH]
// The sizes default to 1,10,100 MB; SQLANTLR_BENCH_1GB=1 adds 1000 MB.
// --short runs 0.2 MB of each workload once, to prove the benchmark still works.
//   sqlantlr_workload_bench --write ddl|dump|rows MB FILE
// writes the script a workload would parse, for measuring other commands on it.
//   sqlantlr_workload_bench --child FILE | --child-string FILE
// imports FILE once with parseFile (as ddl-import and dump-import do) or
// parseString, for measuring one import with /usr/bin/time or heaptrack.
#include "ScriptGenerator.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef SQLANTLR_CLI_PATH
#define SQLANTLR_CLI_PATH "sqlantlr"
#endif

namespace {

constexpr rlim_t addressSpaceLimit = rlim_t(12) << 30;  // 12 GiB: a runaway case fails instead of the machine
constexpr unsigned timeLimitSeconds = 1800;

struct Outcome {
    bool ok = false;
    double seconds = 0;     // wall time
    double cpuSeconds = 0;  // the child's user and system time
    double bestCpuSeconds = 0;  // the least of the runs' CPU times
    long peakKB = 0;
    std::string note;
};

// The file in one piece, read straight into a string of its size (a string
// stream would copy 100 MB twice more and count as import time).
std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::string text(static_cast<size_t>(std::max<std::streamoff>(in.tellg(), 0)), '\0');
    in.seekg(0);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    return text;
}

// The child side of a library case: imports FILE as SQLParser::parseFile
// does (decoded piece by piece, read in place) and prints the seconds the
// import took and the table count. With `string`, it reads the file into a
// string first and imports that with parseString, which holds the text as
// UTF-8 and UTF-16 while it parses (reading the file is then not timed).
int runChild(const std::string &file, bool string)
{
    const std::string script = string ? readFile(file) : std::string();
    const auto start = std::chrono::steady_clock::now();
    std::unique_ptr<SQLContainer> model;
    {
        SQLParser parser;
        model = string ? parser.parseString(script) : parser.parseFile(file);
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%.6f %zu\n", seconds, model ? model->tables().size() : 0);
    // The model is left to the end of the process, as the CLI leaves it:
    // the child's CPU time is the import's (and the process start's), not
    // that of taking the model apart object by object. It stays reachable.
    static std::unique_ptr<SQLContainer> *const kept = new std::unique_ptr<SQLContainer>;
    *kept = std::move(model);
    return 0;
}

// Runs argv in a child with its output to a pipe (or /dev/null); returns the
// wall time, the child's peak RSS and, when captured, its output.
Outcome runProcess(const std::vector<std::string> &args, bool captureOutput, std::string &output)
{
    Outcome outcome;
    int channel[2] = {-1, -1};
    if (captureOutput && pipe(channel) != 0) {
        outcome.note = "pipe failed";
        return outcome;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        const int out = captureOutput ? channel[1] : open("/dev/null", O_WRONLY);
        dup2(out, STDOUT_FILENO);
        if (captureOutput) {
            close(channel[0]);
        }
        const rlimit limit{addressSpaceLimit, addressSpaceLimit};
        setrlimit(RLIMIT_AS, &limit);
        alarm(timeLimitSeconds);
        std::vector<char *> argv;
        for (const std::string &arg : args) {
            argv.push_back(const_cast<char *>(arg.c_str()));
        }
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    if (captureOutput) {
        close(channel[1]);
        char buffer[256];
        ssize_t got = 0;
        while (pid > 0 && (got = read(channel[0], buffer, sizeof buffer)) > 0) {
            output.append(buffer, static_cast<size_t>(got));
        }
        close(channel[0]);
    }
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) {
        outcome.note = "fork failed";
        return outcome;
    }
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.peakKB = usage.ru_maxrss;
    const auto toSeconds = [](const timeval &time) { return static_cast<double>(time.tv_sec) + time.tv_usec / 1e6; };
    outcome.cpuSeconds = toSeconds(usage.ru_utime) + toSeconds(usage.ru_stime);
    if (WIFSIGNALED(status)) {
        outcome.note = "ended by signal " + std::to_string(WTERMSIG(status));
        return outcome;
    }
    if (WEXITSTATUS(status) != 0) {
        outcome.note = "exit status " + std::to_string(WEXITSTATUS(status));
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

std::string selfPath()
{
    char buffer[4096];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return length > 0 ? std::string(buffer, static_cast<size_t>(length)) : std::string();
}

// Runs a case `runs` times: the run of the median CPU time (with the least
// CPU time of all the runs), or the first that failed.
Outcome medianRun(int runs, const std::function<Outcome()> &run)
{
    std::vector<Outcome> outcomes;
    for (int i = 0; i < runs; ++i) {
        outcomes.push_back(run());
        if (!outcomes.back().ok) {
            return outcomes.back();
        }
    }
    std::sort(outcomes.begin(), outcomes.end(),
              [](const Outcome &a, const Outcome &b) { return a.cpuSeconds < b.cpuSeconds; });
    Outcome median = outcomes[outcomes.size() / 2];
    median.bestCpuSeconds = outcomes.front().cpuSeconds;
    return median;
}

void report(const char *workload, double megabytes, size_t bytes, int runs, const Outcome &outcome)
{
    if (!outcome.ok) {
        std::printf("%-12s %9.1f  FAILED: %s\n", workload, megabytes, outcome.note.c_str());
        std::fflush(stdout);
        return;
    }
    const double peakBytes = static_cast<double>(outcome.peakKB) * 1024.0;
    const double inputMB = static_cast<double>(bytes) / 1e6;
    std::printf("%-12s %9.1f %5d %8.3f %8.3f %8.1f %8.1f %13.1f %12.1f %9.1f\n", workload, megabytes, runs,
                outcome.seconds, outcome.cpuSeconds, inputMB / outcome.seconds, inputMB / outcome.cpuSeconds,
                inputMB / outcome.bestCpuSeconds, peakBytes / 1e6, peakBytes / static_cast<double>(bytes));
    std::fflush(stdout);
}

// The script of a workload: ddl, dump or rows.
std::string scriptOf(const std::string &kind, size_t bytes)
{
    if (kind == "ddl") {
        return bench::generateSchemaScript(bytes);
    }
    return bench::generateDumpScript(bytes, kind == "rows" ? 1 : 200);
}

// Writes the script and waits until it is on the disk: otherwise the
// kernel writes it back while the first case reads it, which charged that
// case seconds of system time at 1 GB.
bool writeFile(const std::string &path, const std::string &text)
{
    {
        std::ofstream out(path, std::ios::binary);
        out << text;
        if (!out) {
            return false;
        }
    }
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<double> sizes = {1, 10, 100};
    const char *big = std::getenv("SQLANTLR_BENCH_1GB");
    if (big != nullptr && std::string(big) == "1") {
        sizes.push_back(1000);
    }
    std::string cli = SQLANTLR_CLI_PATH;
    int chosenRuns = 0;  // by size
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "--child" || arg == "--child-string") && i + 1 < argc) {
            return runChild(argv[i + 1], arg == "--child-string");
        } else if (arg == "--write" && i + 3 < argc) {
            const std::string kind = argv[i + 1];
            const auto bytes = static_cast<size_t>(std::stod(argv[i + 2]) * 1e6);
            if (kind != "ddl" && kind != "dump" && kind != "rows") {
                std::cerr << "sqlantlr_workload_bench: --write takes ddl, dump or rows\n";
                return 2;
            }
            if (!writeFile(argv[i + 3], scriptOf(kind, bytes))) {
                std::perror(argv[i + 3]);
                return 1;
            }
            return 0;
        } else if (arg == "--short") {
            sizes = {0.2};
        } else if (arg == "--sizes" && i + 1 < argc) {
            sizes.clear();
            std::stringstream list(argv[++i]);
            for (std::string item; std::getline(list, item, ',');) {
                sizes.push_back(std::stod(item));
            }
        } else if (arg == "--runs" && i + 1 < argc) {
            chosenRuns = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--cli" && i + 1 < argc) {
            cli = argv[++i];
        } else {
            std::cerr << "usage: sqlantlr_workload_bench [--short] [--sizes MB,MB,...] [--runs N] [--cli PATH]\n"
                         "       sqlantlr_workload_bench --write ddl|dump|rows MB FILE\n";
            return 2;
        }
    }
    const std::string self = selfPath();
    char directory[] = "/tmp/sqlantlr-bench-XXXXXX";
    if (mkdtemp(directory) == nullptr) {
        std::perror("mkdtemp");
        return 1;
    }
    const std::string file = std::string(directory) + "/script.sql";
    std::printf("%-12s %9s %5s %8s %8s %8s %8s %13s %12s %9s\n", "workload", "input_MB", "runs", "wall_s", "cpu_s",
                "MB/s", "MB/cpu_s", "best_MB/cpu_s", "peak_RSS_MB", "RSS/byte");
    bool failed = false;
    for (const double megabytes : sizes) {
        const auto bytes = static_cast<size_t>(megabytes * 1e6);
        const int runs = chosenRuns != 0 ? chosenRuns : megabytes < 50 ? 5 : 1;
        for (const std::string kind : {"ddl", "dump", "rows"}) {
            std::string script = scriptOf(kind, bytes);
            if (!writeFile(file, script)) {
                std::perror(file.c_str());
                return 1;
            }
            // A child's peak RSS counts the pages it shared with this process
            // between fork and exec: the script must not be among them.
            const size_t scriptBytes = script.size();
            std::string().swap(script);
            const Outcome imported = medianRun(runs, [&self, &file] {
                std::string output;
                Outcome outcome = runProcess({self, "--child", file}, true, output);
                // The import's own wall time, without process start.
                double seconds = 0;
                if (outcome.ok && std::sscanf(output.c_str(), "%lf", &seconds) == 1 && seconds > 0) {
                    outcome.seconds = seconds;
                }
                return outcome;
            });
            report((kind + "-import").c_str(), megabytes, scriptBytes, runs, imported);
            failed = failed || !imported.ok;
            const Outcome model = medianRun(runs, [&cli, &file] {
                std::string unused;
                return runProcess({cli, "model", file}, false, unused);
            });
            report(kind == "ddl" ? "cli-model" : ("cli-" + kind).c_str(), megabytes, scriptBytes, runs, model);
            failed = failed || !model.ok;
        }
    }
    std::remove(file.c_str());
    rmdir(directory);
    return failed ? 1 : 0;
}
