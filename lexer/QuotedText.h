// How far a quoted piece of a script runs, and how a backslash inside it is
// read. MySQL escapes the next character with a backslash ('It\'s'); SQL
// Server, Oracle, PostgreSQL and SQLite do not ('C:\data\' is complete). The
// script's dialect is not known while lexing, so each piece is read both ways
// and the escaping reading is taken unless it leaves its line inside a string
// (it runs on past the line end, or the rest of its line opens a string that
// the line does not close) while the plain reading does not.
#pragma once

#include <cstddef>
#include <vector>

namespace sqlantlr {

// What the scans of the rest of a line learnt, for the next piece of the same
// line: a dump's one-line INSERT holds thousands of pieces, and scanning to
// the line end for each of them would make the line cost its length squared.
// One cache serves one text; a fresh one knows nothing.
struct QuoteScanCache {
    struct Scan {
        const char16_t *end = nullptr;         // the end of the text of the last scan
        std::vector<const char16_t *> closes;  // after each string the last scan closed, in text order
        size_t passed = 0;                     // closes before the last question
        bool result = false;                   // whether the line of the last scan ended inside a string
    };
    Scan plain;
    Scan escaping;
};

// Units from body up to and including the closing quote, or 0 when the piece
// is never closed either way. body points just after the opening quote.
size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote, QuoteScanCache *cache = nullptr);

// Units of the bracketed name [..] at p, or 0 when the bracket opens none: it
// stays on its line, is not empty and does not start with a digit or a quote.
size_t bracketedNameLength(const char16_t *p, const char16_t *end);

} // namespace sqlantlr
