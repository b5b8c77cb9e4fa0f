// How far a quoted piece of a script runs, and how a backslash inside it is
// read. MySQL escapes the next character with a backslash ('It\'s'); SQL
// Server, Oracle, PostgreSQL and SQLite do not ('C:\data\' is complete). The
// script's dialect is not known while lexing, so each piece is read both ways
// and the escaping reading is taken unless it leaves its line inside a string
// (it runs on past the line end, or the rest of its line opens a string that
// the line does not close) while the plain reading does not.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
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
    // The start of the line of the last quote asked about, so that finding
    // the line start of the next quote on the same line costs only the units
    // between the two.
    const char16_t *lineAt = nullptr;
    const char16_t *lineStart = nullptr;
};

// Units from body up to and including the closing quote, or 0 when the piece
// is never closed either way. body points just after the opening quote. In a
// line that only runs to its end (see isRemarkLine) the piece closes on its
// line or not at all, and a backslash escapes nothing.
// With `cut`, sets it when a reading met `end` before its closing quote:
// more text after `end` could change the answer.
size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote, QuoteScanCache *cache = nullptr,
                        bool lineBound = false, bool *cut = nullptr);

// True when the line holding at starts with a SQL*Plus REM[ARK] or PRO[MPT]
// command: free text up to the line end, where an apostrophe (REM don't) opens
// no string. begin is the start of the script.
bool isRemarkLine(const char16_t *begin, const char16_t *at, QuoteScanCache *cache = nullptr);

// True for REM[ARK] and PRO[MPT] in upper case, down to the three-letter
// abbreviations SQL*Plus takes: the commands whose line is free text.
bool isRemarkWord(std::string_view upperWord);

// Units of the SQL*Plus substitution variable that prefixes a name at p
// (&owner. in &owner.emp, &&owner.. in &&owner..emp, &1..emp), or 0. The
// variable starts a name (no name character, ')' or quote before it), holds
// ASCII letters, digits, '_', '$' and '#', and ends at the period that
// SQL*Plus takes as its end; a second period and the name must follow.
size_t substitutionPrefixLength(const char16_t *begin, const char16_t *p, const char16_t *end);

// Where the dollar tags ($$, $tag$) of one text stand, found in one forward
// pass over the text from the first question on, read only as far as the
// questions need. A tag that never closes then costs a look-up instead of a
// scan to the end of the text, so that a script of many such tags is read in
// linear time, and a closed quote does not make the rest of a big script
// read (and resident) ahead of the parse. One index serves one text; a
// question before the part it has indexed, or about another text, starts it
// again.
class DollarTagIndex {
public:
    // The first place at or after from where tag stands (its '$'), or nullptr.
    const char16_t *next(std::u16string_view tag, const char16_t *from, const char16_t *end);

private:
    // Indexes the next step of the text after scanned_.
    void extend();

    const char16_t *from_ = nullptr;
    const char16_t *end_ = nullptr;
    const char16_t *scanned_ = nullptr;  // where indexing stopped
    std::unordered_map<std::u16string, std::vector<size_t>> places_;  // offsets from from_, ascending
};

// Units of the dollar-quoted string at p ($$x$$, $tag$x$tag$) up to and
// including its closing tag, or 0 when p opens none: the tag is $ with an
// optional name between (letters and '_', then digits too) and the same tag
// closes the string further on. With an index, the closing tag is looked up
// there instead of searched for.
// With `cut`, sets it when p opens a tag whose close is not found before
// `end`.
size_t dollarQuotedLength(const char16_t *p, const char16_t *end, DollarTagIndex *index = nullptr,
                          bool *cut = nullptr);

// Units of the bracketed name [..] at p, or 0 when the bracket opens none: it
// stays on its line, is not empty and does not start with a digit or a quote.
size_t bracketedNameLength(const char16_t *p, const char16_t *end);

// The MySQL client's statement terminator as DELIMITER lines set it, followed
// through a text as the lexer meets its '$' signs: a '$$' or '$x$' that is the
// active terminator ends a statement and opens no dollar-quoted string.
struct DelimiterTrack {
    const char16_t *scannedTo = nullptr;  // where the scan for DELIMITER lines stopped
    std::u16string delimiter;             // set by the last DELIMITER line, empty for ";"
};

// Follows the DELIMITER lines that start between the track's last stop and p
// (from begin when the scan has not started in this text or p lies before its
// stop) and says whether the active terminator stands at p.
bool delimiterAt(DelimiterTrack &track, const char16_t *begin, const char16_t *p, const char16_t *end);
// Follows the DELIMITER lines up to p without a question: before the text
// behind p is given back, so that no later question reads it.
void advanceDelimiterTrack(DelimiterTrack &track, const char16_t *begin, const char16_t *p, const char16_t *end);

} // namespace sqlantlr
