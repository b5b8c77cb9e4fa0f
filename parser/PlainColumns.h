// The direct reading of plain table columns. Most columns of real schemas
// are a name, a common type and a few common options (`id` int(11) NOT NULL
// AUTO_INCREMENT, name varchar(255) DEFAULT NULL COMMENT 'x'); the parser's
// rules and the tree walker spend a dozen rule calls and a tree node per
// token on each. A column whose tokens all fall within the forms read here
// is read in one pass instead: the parser keeps only its name in the tree,
// with the reading on the name's token, and the walker makes the field from
// that reading. Every other column takes the grammar's way. The model and
// records are the same either way (the tests and the fuzz target compare
// them); syntax-tree dumps do not use it, so their trees keep every token.
#pragma once

#include "RecognizerSupport.h"

#include <string>
#include <vector>

namespace sqlantlr {

// What a plain column sets on its field, in the order written.
struct PlainColumnStep {
    enum class Kind : unsigned char {
        NotNull,
        PrimaryKey,
        AutoIncrement,
        Flag,          // text: "unique", "zerofill" or "unsigned"
        Default,       // text: the value as written
        OnUpdate,      // text: the value's tokens joined by blanks
        Comment,       // text: the comment as written (quotes and all)
        CharacterSet,  // text: the character set's name
        Collation,     // text: the collation as written
        Reference,     // text: the target table; detail: its first column, if any; at line and position
        UpdateAction,  // code: the action
        DeleteAction,  // code: the action
        Deferrable,    // code: 1 or 0
        InitiallyDeferred,  // code: 1 or 0
    };
    explicit PlainColumnStep(Kind what, std::string written = {}) : kind(what), text(std::move(written)) {}

    Kind kind;
    std::string text;
    std::string detail;
    bool hasDetail = false;
    int code = 0;
    int line = 0;
    int position = 0;
};

struct PlainColumn {
    pANTLR3_COMMON_TOKEN name = nullptr;
    std::string type;  // as the walker renders a type: its tokens joined by blanks
    std::vector<PlainColumnStep> steps;
};

// Plain columns that follow one another in a column list, separated by
// commas: the parser reads them as one entry, the walker adds them in order.
using PlainColumnRun = std::vector<PlainColumn>;

} // namespace sqlantlr

// Parser: whether the column at LT(1) (the decision's first token) is plain.
// The reading (of it and of the plain columns after it) is kept, so repeated
// asks for the same token cost nothing.
bool kp_plainColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// Parser, after the first name was matched: consumes the rest of the run of
// plain columns, up to the COMMA or CLOSEPAREN after its last column, and
// leaves the reading on the first name's token.
void kp_takePlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN name);

// A whole CREATE TABLE statement of plain columns and plain keys, indexes,
// CHECK constraints and table options (parser/PlainColumns.cpp says which)
// is imported straight into the container, without a syntax tree, and its
// tokens through its SEMI are consumed; true then. False, with nothing read
// or built, for any other statement (the current token is its first).
bool kp_importPlainTable(sqlantlr::ParseSession &session, pANTLR3_TOKEN_STREAM tokens, SQLContainer &container);

// How many plain columns, and how many whole CREATE TABLE statements, the
// parsers of this thread read directly so far.
unsigned long kp_plainColumnsTaken();
unsigned long kp_plainTablesTaken();

// Walker: whether the node is the first name of a run of plain columns.
bool kp_isPlainColumn(pANTLR3_BASE_TREE node);
// Walker: makes the fields of the run's columns (as kp_addField does) and
// applies their options.
void kp_addPlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE name);
