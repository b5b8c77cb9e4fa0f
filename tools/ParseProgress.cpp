#include "ParseProgress.h"

#include <cstdio>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace sqlantlr {

ParseProgress::ParseProgress(SQLParserC &driver, std::string name, std::size_t bytes, bool quiet)
    : driver_(driver), file_(std::move(name)), bytes_(bytes)
{
    if (quiet || bytes < minimumBytes || isatty(STDERR_FILENO) == 0) {
        return;
    }
    active_ = true;
    started_ = Clock::now();
    driver_.setProgressHandler([this](const SQLParseProgress &progress) { report(progress); });
}

ParseProgress::~ParseProgress()
{
    if (active_) {
        driver_.setProgressHandler(nullptr);
        if (drawn_) {
            std::cerr << "\r\033[K" << std::flush;
        }
    }
}

void ParseProgress::report(const SQLParseProgress &progress)
{
    const Clock::time_point now = Clock::now();
    if (drawn_ && now - lastDrawn_ < std::chrono::milliseconds(200)) {
        return;
    }
    const double fraction = progress.total == 0 ? 1.0 : static_cast<double>(progress.done) / progress.total;
    const double seconds = std::chrono::duration<double>(now - started_).count();
    const double megabytes = fraction * static_cast<double>(bytes_) / (1024.0 * 1024.0);
    char line[160];
    std::snprintf(line, sizeof line, "\rsqlantlr: %s %3.0f%%  %.1f MB/s  %zu tables\033[K", file_.c_str(),
                  fraction * 100.0, seconds > 0 ? megabytes / seconds : 0.0, progress.tables);
    std::cerr << line << std::flush;
    drawn_ = true;
    lastDrawn_ = now;
}

} // namespace sqlantlr
