// What the direct reading of a plain column keeps for the walker (see
// PlainColumns.h): the parse session holds these from the parser's reading
// to the walk of the statement.
#pragma once

#include <antlr3.h>

#include <cstddef>
#include <optional>
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

// A REFERENCES clause: where it stands, its target and its actions in order
// (UpdateAction, DeleteAction, Deferrable and InitiallyDeferred steps).
struct PlainReference {
    int line = 0;
    int position = 0;
    std::vector<std::string> parts;
    std::vector<std::string> columns;
    bool listWritten = false;
    std::vector<PlainColumnStep> actions;
};

// One entry of a CREATE TABLE statement read whole. Names and values are
// kept as texts: the tokens of a statement read ahead are reused as the
// reading goes on.
struct PlainEntry {
    enum class Kind : unsigned char { Column, PrimaryKey, Unique, Index, Check, ForeignKey } kind = Kind::Column;
    PlainColumn column;
    std::optional<std::string> name;  // of an index, or the CONSTRAINT name of a CHECK or foreign key
    std::optional<std::string> keyName;  // the name after FOREIGN KEY
    std::vector<std::string> columns;  // of a key or index
    std::string text;  // of a CHECK
    PlainReference reference;  // of a foreign key

    // As a new entry, keeping the room its texts and lists have.
    void clear();
};

struct PlainTableOption {
    enum class Kind : unsigned char { Engine, CharacterSet, Collation, Comment } kind;
    std::string value;
};

// A CREATE TABLE statement read whole: its name parts, its entries and its
// options, in the order written. The session keeps one for every statement,
// so that the entries of one are read into the room the last one left.
class PlainTable {
public:
    std::vector<std::string> name;
    std::vector<PlainTableOption> options;

    // The entry after those kept, cleared; it becomes part of the table
    // with keepEntry() (a reading that fails leaves it out).
    PlainEntry &nextEntry();
    void keepEntry() { ++kept_; }

    struct Entries {
        const PlainEntry *first;
        const PlainEntry *last;
        const PlainEntry *begin() const { return first; }
        const PlainEntry *end() const { return last; }
    };
    Entries entries() const { return {entries_.data(), entries_.data() + kept_}; }

    void clear();

private:
    std::vector<PlainEntry> entries_;
    std::size_t kept_ = 0;
};

// Plain columns that follow one another in a column list, separated by
// commas: the parser reads them as one entry, the walker adds them in order.
using PlainColumnRun = std::vector<PlainColumn>;

} // namespace sqlantlr

// How many of the whole CREATE TABLE statements counted by
// kp_plainTablesTaken were read ahead from the text by the lexer's fast path
// (TokenWindow::readStatementAhead) rather than from the token window.
unsigned long kp_plainTablesReadAhead();
