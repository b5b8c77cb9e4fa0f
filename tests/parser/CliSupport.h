// Runs the command-line tool as a process for the CLI tests.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

struct CliRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string slurpFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

// Runs `sqlantlr ARGUMENTS` with the input on standard input, through the
// shell (so arguments may use its quoting).
inline CliRun runCli(const std::string &arguments, const std::string &input = "")
{
    static int counter = 0;
    const std::string base = (std::filesystem::temp_directory_path() /
                              ("sqlantlr-cli-" + std::to_string(getpid()) + "-" + std::to_string(counter++)))
                                 .string();
    std::ofstream(base + ".in", std::ios::binary) << input;
    const std::string command = std::string(SQLANTLR_CLI) + " " + arguments + " < " + base + ".in > " + base +
                                ".out 2> " + base + ".err";
    const int status = std::system(command.c_str());
    CliRun run;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = slurpFile(base + ".out");
    run.err = slurpFile(base + ".err");
    for (const char *suffix : {".in", ".out", ".err"}) {
        std::filesystem::remove(base + suffix);
    }
    return run;
}
