// How far a quoted piece of a script runs, and how a backslash inside it is
// read. MySQL escapes the next character with a backslash ('It\'s'); SQL
// Server, Oracle, PostgreSQL and SQLite do not ('C:\data\' is complete). The
// script's dialect is not known while lexing, so each piece is read both ways
// and the escaping reading is taken unless it leaves its line inside a string
// (it runs on past the line end, or the rest of its line opens a string that
// the line does not close) while the plain reading does not.
#pragma once

#include <cstddef>

namespace sqlantlr {

// Units from body up to and including the closing quote, or 0 when the piece
// is never closed either way. body points just after the opening quote.
size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote);

// Units of the bracketed name [..] at p, or 0 when the bracket opens none: it
// stays on its line, is not empty and does not start with a digit or a quote.
size_t bracketedNameLength(const char16_t *p, const char16_t *end);

} // namespace sqlantlr
