// Data statements of dumps (INSERT ... VALUES with thousands of rows,
// REPLACE, COPY data, GRANT and other statements the model does not hold)
// carry most of a dump's bytes: the grammar consumes them up to their ";" and
// builds nothing from their tokens. An import therefore skips their text with
// a tight scan over the script's UTF-16 units instead of lexing it, and hands
// the parser the statement's first token and its ";" only.
//
// The scan must end exactly where the lexer and the script-line filter would
// end the statement, and the statement must be one whose tokens raise no
// record. So it honours what the lexer honours (quoted pieces with the
// backslash decision of QuotedText, comments, bracketed names, line ends) and
// gives up (returns nullptr) on everything whose tokens could mean more than
// "not a ;": characters no token rule accepts, an unclosed quote or comment,
// MySQL executable comments, Oracle q-quotes, dollar signs, GO and "/"
// lines, ")GO",
// DELIMITER lines, REM and PROMPT lines (where quotes close on their line)
// and, where the filter would cut the statement there, a statement word at
// the start of a line. The caller then reads the
// statement with the lexer as usual.
#pragma once

#include "QuotedText.h"

namespace sqlantlr {

// How the script-line filter treats the statement: most are cut before a
// line that starts with a statement word outside parentheses; some (GRANT,
// unknown statements) run to their ";" whatever their lines hold.
enum class DataStatementCut { AtStatementWords, Never };

// The position of the ";" that ends the statement whose first two words end
// just before from (the line has not ended since the first), or nullptr when
// the statement cannot be skipped that way. begin is the start of the script.
// With `metEnd`, sets it when the answer came from meeting `end` (more text
// after it could change it); `end` must follow a line end or end the text.
const char16_t *dataStatementEnd(const char16_t *begin, const char16_t *from, const char16_t *end,
                                 DataStatementCut cut, QuoteScanCache *cache, bool *metEnd = nullptr);

} // namespace sqlantlr
