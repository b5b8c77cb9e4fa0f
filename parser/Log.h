// printf-style logging into the installed sink; formats nothing when silent.
#pragma once

#include <string>

namespace sqlantlr {

bool logEnabled();
void logMessage(const std::string &message);
void logf(const char *format, ...) __attribute__((format(printf, 1, 2)));

} // namespace sqlantlr
