// Script-level constructs that are recognised by lines rather than by the
// grammar: T-SQL batch separators (GO lines), the SQL*Plus "/" line, SQL*Plus
// and SQLCMD line commands, T-SQL statements written without ";", and T-SQL
// IF guards around statements. The filter sits between the lexer and the
// parser's token stream and rewrites the raw tokens in place:
//
// - a line holding only GO (optionally a count and a comment), or a GO glued
//   to the closing parenthesis at the end of a line, and a line holding only
//   "/" end the statement before them like ";" (and are hidden when nothing
//   precedes them);
// - at the start of a statement, a line that starts with a SQL*Plus or SQLCMD
//   command (REM, PROMPT, SET, SPOOL, DEFINE, WHENEVER, CONNECT, @file, :setvar,
//   ...) is hidden up to its line end; SET, EXEC, SHOW, COLUMN, EXIT and their
//   kin are left to the grammar when their line ends with ";";
// - in a statement not ended by ";", a line that starts with a statement word
//   (CREATE, ALTER, INSERT, SET, USE, PRINT, DECLARE, EXEC, IF, GO, BEGIN, ...)
//   starts a new statement: a ";" token is put before it. Statements that may
//   hold such lines (routine bodies, blocks, GRANT, CREATE SCHEMA) are never
//   cut; a routine or block runs to the next GO, "/" or DELIMITER line;
// - "IF <condition>" before a statement at the start of a statement is hidden,
//   and so are the BEGIN and END around a guarded block, so the statements
//   inside are read as statements of the script;
// - the data lines after COPY ... FROM STDIN; up to the "\." line are not read.
//
// Scripts whose statements all end with ";" and that use none of these lines
// reach the parser unchanged.
#pragma once

#include <antlr3.h>

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace sqlantlr {

// A first-in first-out list of tokens kept in one vector: the filter indexes
// its look-ahead at every token, and an index here is one addition.
class TokenQueue {
public:
    bool empty() const { return head_ == items_.size(); }
    std::size_t size() const { return items_.size() - head_; }
    pANTLR3_COMMON_TOKEN operator[](std::size_t i) const { return items_[head_ + i]; }
    pANTLR3_COMMON_TOKEN front() const { return items_[head_]; }
    pANTLR3_COMMON_TOKEN back() const { return items_.back(); }
    std::vector<pANTLR3_COMMON_TOKEN>::const_iterator begin() const
    {
        return items_.begin() + static_cast<std::ptrdiff_t>(head_);
    }
    std::vector<pANTLR3_COMMON_TOKEN>::const_iterator end() const { return items_.end(); }
    void push_back(pANTLR3_COMMON_TOKEN token) { items_.push_back(token); }
    void pop_front()
    {
        if (++head_ == items_.size()) {
            clear();
        } else if (head_ >= compactAfter && head_ * 2 >= items_.size()) {
            items_.erase(items_.begin(), begin());
            head_ = 0;
        }
    }
    void clear()
    {
        items_.clear();
        head_ = 0;
    }

private:
    static constexpr std::size_t compactAfter = 256;
    std::vector<pANTLR3_COMMON_TOKEN> items_;
    std::size_t head_ = 0;
};

// Words (upper case) that start a statement when they open a line.
bool isStatementWord(const std::string &word);

class ScriptLines {
public:
    ScriptLines(pANTLR3_TOKEN_SOURCE source, pANTLR3_TOKEN_FACTORY factory) : source_(source), factory_(factory) {}

    // The next raw token for the parser's stream, or the end-of-input token.
    pANTLR3_COMMON_TOKEN next();

    // Called with the first word of a statement (INSERT, REPLACE) when it is
    // the last token handed out and the parser is about to parse the
    // statement: skips the statement's text up to its ";" with the
    // data-statement scan (see DataStatements.h), so that the next token is
    // that ";". The tokens read ahead and dropped go to dropped. False, with
    // nothing changed, when the statement is to be read token by token.
    bool skipDataStatement(pANTLR3_COMMON_TOKEN first, std::vector<pANTLR3_COMMON_TOKEN> &dropped);

    // Reading a CREATE TABLE statement ahead, straight from the lexer's fast
    // path, without the parser's tokens and the filter's steps:
    //
    // startAhead is called with the statement's first word in the same place
    // as skipDataStatement, or, within what the filter takes for a routine,
    // when the first word is the last token read; it sets second to the
    // second word when the filter read it already (else nullptr), or returns
    // false, with nothing changed, when the filter has decided more.
    // nextAhead then gives the statement's parser-channel tokens one at a
    // time, in tokens kept here, up to and including its ";". It gives
    // nullptr after the ";", and where the reading must stop: at a token the
    // fast path leaves to the generated lexer, where a line decision could
    // apply to the statement (a GO or DELIMITER word, a statement word opening
    // a line outside parentheses) and at the end of input; stoppedAhead tells
    // which. recycleAhead gives the tokens handed out back for reuse, but for
    // the last keepLast of them. The lexer makes its tokens in the reading's
    // places until endAhead finishes the reading: with pass (the ";" given
    // out) the lexer moves to the ";" with the text before it unread, so that
    // the next token is that ";", and the tokens read before are added to dropped;
    // else the lexer goes back to where the reading started.
    bool startAhead(pANTLR3_COMMON_TOKEN first, pANTLR3_COMMON_TOKEN *second);
    pANTLR3_COMMON_TOKEN nextAhead();
    bool stoppedAhead() const { return aheadStopped_; }
    void recycleAhead(size_t keepLast);
    void endAhead(bool pass, std::vector<pANTLR3_COMMON_TOKEN> &dropped);

private:
    // How a statement not ended by ";" may be cut at a line that starts with
    // a statement word: always, with exceptions, or never (Whole ends at ";",
    // Routine at the next GO, "/" or DELIMITER line).
    enum class Kind { None, Splittable, Insert, Update, Alter, Whole, Routine };

    pANTLR3_COMMON_TOKEN passThrough();  // the next token when it needs no line decision
    // Whether the filter's last step was the statement's first word, with
    // nothing decided or pending since (no DELIMITER, guard or executable
    // comment in play).
    bool lastStepWas(pANTLR3_COMMON_TOKEN first) const;
    // When the last step was the statement's first word and the lexer has
    // read no further than the next word on its line (and nothing is
    // pending): that word; else nullptr.
    pANTLR3_COMMON_TOKEN secondWord(pANTLR3_COMMON_TOKEN first);
    pANTLR3_COMMON_TOKEN raw(size_t i);  // i-th unprocessed raw token (EOF at the end)
    size_t significant(size_t from);     // index of the first significant raw token from `from`
    bool lineEndBetween(size_t from, size_t to);
    size_t lineEnd(size_t from);          // index just after the last token of the line of `from`
    void emitUpTo(size_t count);          // moves count raw tokens to the output
    void hide(size_t from, size_t to);
    void emitTerminator(pANTLR3_COMMON_TOKEN before);
    void endStatement();

    bool batchLine(size_t at);
    // These take the word of the first token (at), which the caller has.
    bool lineCommand(size_t at, const std::string &w);
    bool guard(size_t at, const std::string &w);
    bool guardedBlock(size_t at);
    bool step(pANTLR3_COMMON_TOKEN token);
    bool gluedGo(pANTLR3_COMMON_TOKEN token);
    bool delimiterLine(size_t at);
    bool activeDelimiter();
    bool breaksStatement(pANTLR3_COMMON_TOKEN token);
    // True when a BEGIN comes after the DECLARE at raw index at before a ";"
    // followed by a line that starts another statement (CREATE, ALTER, DROP,
    // INSERT) and before the end of the script; else false, with until set
    // to that line's first token or the end of input.
    bool blockBeginFollows(size_t at, pANTLR3_COMMON_TOKEN *until);
    // The record of a DECLARE whose BEGIN never comes, read up to until.
    void reportUnendedBlock(pANTLR3_COMMON_TOKEN declare, pANTLR3_COMMON_TOKEN until);
    void startStatement(size_t at, const std::string &w);
    void track(pANTLR3_COMMON_TOKEN token, size_t at);
    void advanceInput(const char16_t *to);
    void skipCopyData(pANTLR3_COMMON_TOKEN semi);
    void passRemarkText(pANTLR3_COMMON_TOKEN command);

    // Hands the lexer the tokens of nextAhead.
    struct AheadFactory : ANTLR3_TOKEN_FACTORY {
        ScriptLines *lines = nullptr;
    };
    static pANTLR3_COMMON_TOKEN newAheadToken(pANTLR3_TOKEN_FACTORY factory);
    // Where the lexer's stream stands: a place to go back or on to.
    struct InputPlace {
        void *nextChar = nullptr;
        ANTLR3_UINT32 line = 0;
        ANTLR3_INT32 charPositionInLine = 0;
        void *currentLine = nullptr;
    };

    pANTLR3_TOKEN_SOURCE source_;
    pANTLR3_TOKEN_FACTORY factory_;
    // The statement read ahead: its tokens (in place for good, reused once
    // recycled), where the reading started and where its ";" starts. The
    // tokens are handed out and recycled in order, so their places make a
    // ring: those handed out since the last recycling are the ring's
    // aheadHead_ to aheadTail_ (counts that only grow; a place is
    // aheadRing_[count & (size - 1)]), the rest are free, and the token being
    // made is made in the place at aheadTail_.
    std::deque<ANTLR3_COMMON_TOKEN> aheadTokens_;
    std::vector<pANTLR3_COMMON_TOKEN> aheadRing_;  // a power of two of places, or none
    std::size_t aheadHead_ = 0;
    std::size_t aheadTail_ = 0;
    void growAheadRing();
    AheadFactory aheadFactory_{};
    pANTLR3_TOKEN_FACTORY aheadLexerFactory_ = nullptr;  // the lexer's own, back at endAhead
    InputPlace aheadStart_;
    InputPlace aheadEnd_;
    bool aheadLineStart_ = false;
    bool aheadEnded_ = true;  // no reading, or its ";" given out
    bool aheadStopped_ = false;
    int aheadParens_ = 0;
    pANTLR3_COMMON_TOKEN eof_ = nullptr;
    TokenQueue raw_;  // read from the lexer, not yet decided
    TokenQueue out_;  // decided, for the parser
    bool linesEnd_ = false;                 // a statement of the script was ended by a line
    ANTLR3_COMMON_TOKEN last_{};             // the place (line, position, extent) of the last significant token
    bool hasLast_ = false;
    bool lineStart_ = true;                 // a line end since the last significant token
    bool empty_ = true;                     // no significant token since the statement began
    Kind kind_ = Kind::None;
    int parens_ = 0;
    int tokens_ = 0;                        // significant tokens in the statement
    ANTLR3_UINT32 previousType_ = 0;        // the last significant token: type and place
    ANTLR3_UINT32 previousLine_ = 0;
    ANTLR3_INT32 previousPosition_ = 0;
    std::vector<int> guards_;               // block depth of each open guarded BEGIN
    int blocks_ = 0;                        // BEGIN/CASE depth inside guarded blocks
    std::string delimiter_;                 // the terminator set by the last DELIMITER line
    bool copy_ = false;                     // the statement is a COPY ...
    bool fromStdin_ = false;                // ... FROM STDIN: data lines follow its ";"
};

} // namespace sqlantlr
