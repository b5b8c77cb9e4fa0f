// Deterministic, realistic schema scripts for the benchmarks: CREATE TABLE
// statements in the styles of several dialects' dumps, mixed in one script.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

// A script of at least minimumBytes bytes; the same size gives the same text.
std::string generateSchemaScript(size_t minimumBytes);

// A mysqldump-style script of at least minimumBytes bytes: a few CREATE TABLE
// statements, then multi-row INSERTs whose strings hold escapes and quotes.
std::string generateDumpScript(size_t minimumBytes);

} // namespace bench
