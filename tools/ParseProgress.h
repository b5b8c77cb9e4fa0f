// The progress line the tool shows on standard error while it parses a
// large script.
#pragma once

#include <SQLAntlrParser/SQLParserC.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace sqlantlr {

// A progress line on standard error while a large script is parsed, only
// when standard error is a terminal and not --quiet: percentage of the
// script, speed, tables so far. Redrawn at most five times a second and
// cleared when the parse ends.
class ParseProgress {
public:
    static constexpr std::size_t minimumBytes = 4U << 20U;

    // Reports the driver's parses of the named script of that size until
    // destroyed, when the line is cleared.
    ParseProgress(SQLParserC &driver, std::string name, std::size_t bytes, bool quiet);
    ~ParseProgress();
    ParseProgress(const ParseProgress &) = delete;
    ParseProgress &operator=(const ParseProgress &) = delete;

private:
    using Clock = std::chrono::steady_clock;

    void report(const SQLParseProgress &progress);

    SQLParserC &driver_;
    std::string file_;
    std::size_t bytes_;
    bool active_ = false;
    bool drawn_ = false;
    Clock::time_point started_;
    Clock::time_point lastDrawn_;
};


} // namespace sqlantlr
