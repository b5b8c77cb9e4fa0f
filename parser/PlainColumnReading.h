// What the direct reading of a plain column keeps for the walker (see
// PlainColumns.h): the parse session holds these from the parser's reading
// to the walk of the statement.
#pragma once

#include <antlr3.h>

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
        Check,         // text: the condition as written (none when empty); detail: the CONSTRAINT name, if any
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

// A column's name is kept as its text and place: the tokens of a statement
// read ahead are reused before the column is built.
struct PlainColumn {
    std::string name;
    int line = 0;
    int position = 0;
    std::string type;  // as the walker renders a type: its tokens joined by blanks
    std::vector<PlainColumnStep> steps;
};

// Plain columns that follow one another in a column list, separated by
// commas: the parser reads them as one entry, the walker adds them in order.
using PlainColumnRun = std::vector<PlainColumn>;

} // namespace sqlantlr

// How many of the whole CREATE TABLE statements counted by
// kp_plainTablesTaken were read ahead from the text by the lexer's fast path
// (TokenWindow::readStatementAhead) rather than from the token window.
unsigned long kp_plainTablesReadAhead();
