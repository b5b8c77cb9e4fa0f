// Deterministic, realistic schema scripts for the benchmarks: CREATE TABLE
// statements in the styles of several dialects' dumps, mixed in one script.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

// A script of at least minimumBytes bytes; the same size gives the same text.
std::string generateSchemaScript(size_t minimumBytes);

// A mysqldump-style script of at least minimumBytes bytes: a few CREATE TABLE
// statements, then INSERTs of rowsPerInsert rows each whose strings hold
// escapes and quotes (one row each is what mysqldump --skip-extended-insert
// and pg_dump --inserts write).
std::string generateDumpScript(size_t minimumBytes, int rowsPerInsert = 200);

} // namespace bench
