// The library's diagnostic sink. Traces of the parse (lexer errors, recovery
// steps, skipped statements, debugging dumps) go to one process-wide sink
// that is silent until an application installs one. The library itself never
// writes to standard output or standard error.
#pragma once

#include <functional>
#include <string_view>

namespace SQLAntlrParser {

// Receives one diagnostic message at a time, without a trailing line feed.
using LogSink = std::function<void(std::string_view message)>;

// Installs the sink (an empty function makes the library silent again). Safe
// to call from any thread, also from inside a sink: a sink may replace or
// remove itself (it finishes the message at hand) and may call the library,
// whose messages it then receives in turn. Messages are delivered one at a
// time.
void setLogSink(LogSink sink);

// True when a sink is installed.
bool isLogging();

} // namespace SQLAntlrParser
