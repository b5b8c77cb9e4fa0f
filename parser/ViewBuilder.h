// The query of a CREATE VIEW statement. The parser keeps the query as a flat
// run of tokens; this reader re-reads that run as a SELECT (CTEs, set
// operations, parenthesised branches, derived tables, joins, sub-selects at
// any depth) and finds what the model keeps of it: the select expressions
// of the outermost SELECT, the tables named in every FROM, and where the
// query ends and a trailing WITH ... OPTION / WITH [NO] DATA begins.
// Conditions and expressions are not checked beyond balanced parentheses
// and the sub-selects they hold.
#pragma once

#include "RecognizerSupport.h"

#include <SchemaModel/SQLView.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace sqlantlr {

struct ViewQuery {
    // False when the run is no SELECT this reader knows; `failAt` is then the
    // index of the first token that does not fit (the run's size when the
    // run ends too early).
    bool fits = false;
    size_t failAt = 0;
    // Tokens [0, queryEnd) are the query; the rest is the trailing option.
    size_t queryEnd = 0;
    // Token ranges [first, second) of the outermost select expressions.
    std::vector<std::pair<size_t, size_t>> selectColumns;
    // Named tables, in order of appearance; CTE names and derived tables
    // are not tables.
    std::vector<SQLViewTableEntry> tables;
};

// Reads a view's query from its token texts (hidden tokens left out).
ViewQuery readViewQuery(const std::vector<std::string> &tokens);

// The texts of tokens [from, to) joined by one blank.
std::string joinTokenTexts(const std::vector<std::string> &tokens, size_t from, size_t to);

} // namespace sqlantlr

// ---- Parser ----------------------------------------------------------------

// Checks the view query of tokens start..stop (the parser's token stream,
// hidden tokens skipped): a query that does not fit raises a recognition
// error at its first unfitting token, so that the statement becomes an
// error record and no view.
void kp_checkViewQuery(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// ---- Tree walker -----------------------------------------------------------

// A new view named after the first name part; a two-part name also sets the
// schema and base names.
std::unique_ptr<SQLView> kp_newView(const std::vector<std::string> *nameParts);
void kp_addViewColumns(SQLView *view, const std::vector<std::string> *columns);
// Reads the query nodes from stream index `from` up to the current one and
// sets the view's select columns, table entries and query string.
void kp_setViewQuery(pANTLR3_BASE_RECOGNIZER recognizer, SQLView *view, ANTLR3_MARKER from);
void kp_addView(SQLContainer *c, std::unique_ptr<SQLView> view);
