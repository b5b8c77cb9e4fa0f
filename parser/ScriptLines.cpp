#include "ScriptLines.h"

#include "UnitScan.h"

#include "DataStatements.h"
#include "InputMoves.h"
#include "ParseSession.h"
#include "PlainTokens.h"
#include "RecognizerSupport.h"
#include "QuotedText.h"
#include "TokenWindow.h"
#include "VellumGrammarCLexer.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <string>

namespace sqlantlr {

namespace {

// A condition of an IF guard longer than this is not taken for one.
constexpr size_t longestGuardCondition = 2000;
// Lines are read ahead to decide on them; a line of more tokens than this is
// no GO, "/" or command line (and a huge one-line script is not buffered).
constexpr size_t longestCommandLine = 1000;
constexpr size_t npos = static_cast<size_t>(-1);

bool isEnd(pANTLR3_COMMON_TOKEN token) { return token == nullptr || token->type == ANTLR3_TOKEN_EOF; }

bool isSignificant(pANTLR3_COMMON_TOKEN token)
{
    return isEnd(token) || token->channel == ANTLR3_TOKEN_DEFAULT_CHANNEL;
}

// Hidden tokens that end a line: line feeds, and line comments, which own theirs.
bool endsLine(pANTLR3_COMMON_TOKEN token)
{
    return !isEnd(token) && (token->type == NEWLINE || token->type == SL_COMMENT);
}

// The upper-case text of a word (a name or a keyword), or "" for other tokens.
std::string word(pANTLR3_COMMON_TOKEN token)
{
    if (isEnd(token) || token->type == QUOTED_STRING || token->type == INT || token->type == SEMI ||
        token->type == OPENPAREN || token->type == CLOSEPAREN) {
        return {};
    }
    // Most tokens are read in place: the first unit decides, and an ASCII
    // word is upper-cased without a detour through UTF-8.
    const char16_t *units = nullptr;
    size_t count = 0;
    if (kp_tokenUnits(token, &units, &count)) {
        const auto upper = [](char16_t unit) {
            return static_cast<char>(unit >= u'a' && unit <= u'z' ? unit - (u'a' - u'A') : unit);
        };
        const char first = count > 0 && units[0] < 0x80 ? upper(units[0]) : '\0';
        if (first < 'A' || first > 'Z') {
            return {};
        }
        char piece[32];
        bool ascii = count <= sizeof piece;
        for (size_t i = 0; ascii && i < count; ++i) {
            ascii = units[i] < 0x80;
            piece[i] = upper(units[i]);
        }
        if (ascii) {
            return std::string(piece, count);
        }
    }
    std::string text = kp_tokenText(token);
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text[0]))) {
        return {};
    }
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
    return text;
}

// Line and statement starts ask this for every line and statement: each
// listed word's length is a constant where it is listed, so a text of
// another length is passed over with one compare per word.
template <std::size_t... Sizes>
bool isOneOf(std::string_view text, const char (&...words)[Sizes])
{
    return ((text.size() == Sizes - 1 && std::memcmp(text.data(), words, Sizes - 1) == 0) || ...);
}

// The same for one word (a std::string compared with a C string would count
// the literal's letters and call out for the compare).
template <std::size_t Size>
bool is(std::string_view text, const char (&word)[Size])
{
    return isOneOf(text, word);
}

#include "StatementStartExclusions.inc"

// Whether a statement's first token or word opens a statement of its own rule
// rather than the grammar's unknown statement.
bool opensKnownStatement(ANTLR3_UINT32 type, const std::string &w)
{
    return std::find(std::begin(unknownStatementExcludedTokens), std::end(unknownStatementExcludedTokens), type) !=
               std::end(unknownStatementExcludedTokens) ||
           std::find(std::begin(unknownStatementExcludedWords), std::end(unknownStatementExcludedWords), w) !=
               std::end(unknownStatementExcludedWords);
}

// The word GO in any case, read in place.
bool isGo(pANTLR3_COMMON_TOKEN token)
{
    const char16_t *units = nullptr;
    size_t count = 0;
    if (isEnd(token) || token->type == QUOTED_STRING || !kp_tokenUnits(token, &units, &count)) {
        return is(word(token), "GO");
    }
    return count == 2 && (units[0] | 0x20) == u'g' && (units[1] | 0x20) == u'o';
}

bool isText(pANTLR3_COMMON_TOKEN token, const char *text)
{
    if (isEnd(token)) {
        return false;
    }
    // An ASCII text is compared with the token's units in place.
    const char16_t *units = nullptr;
    size_t count = 0;
    if (kp_tokenUnits(token, &units, &count)) {
        size_t i = 0;
        for (; i < count && text[i] != '\0'; ++i) {
            if (units[i] != static_cast<unsigned char>(text[i])) {
                return false;
            }
        }
        return i == count && text[i] == '\0';
    }
    return kp_tokenText(token) == text;
}

// SQL*Plus and SQLCMD commands that hold a line, whatever it ends with.
bool isClientCommand(const std::string &w)
{
    return isRemarkWord(w) ||
           isOneOf(w, "SPO", "SPOOL", "DEFINE", "DEF", "UNDEFINE", "UNDEF",
                      "WHENEVER", "CONN", "ACCEPT", "ACC", "VARIABLE", "VAR", "TTITLE", "BTITLE", "BREAK",
                      "COMPUTE", "CLEAR", "PAUSE", "HOST", "TIMING", "STA");
}

// Client commands that are also statements of some dialect: left to the
// grammar when their line ends with ";".
bool isClientStatement(const std::string &w)
{
    return isOneOf(w, "SET", "EXEC", "EXECUTE", "SHOW", "CONNECT", "COLUMN", "COL", "EXIT", "QUIT", "DESC",
                      "DESCRIBE");
}

const char lineEndText[] = "";

} // namespace

bool isStatementWord(const std::string &w)
{
    return isOneOf(w, "CREATE", "ALTER", "DROP", "INSERT", "UPDATE", "DELETE", "SET", "USE", "PRINT", "DECLARE",
                      "EXEC", "EXECUTE", "IF", "BEGIN", "COMMIT", "ROLLBACK", "RAISERROR", "CHECKPOINT", "TRUNCATE",
                      "GRANT", "DENY", "REVOKE");
}

pANTLR3_COMMON_TOKEN ScriptLines::raw(size_t i)
{
    while (raw_.size() <= i) {
        if (eof_ != nullptr) {
            return eof_;
        }
        pANTLR3_COMMON_TOKEN token = source_->nextToken(source_);
        if (isEnd(token)) {
            eof_ = token != nullptr ? token : &source_->eofToken;
            return eof_;
        }
        raw_.push_back(token);
    }
    return raw_[i];
}

size_t ScriptLines::significant(size_t from)
{
    while (!isSignificant(raw(from))) {
        ++from;
    }
    return from;
}

bool ScriptLines::lineEndBetween(size_t from, size_t to)
{
    for (size_t i = from; i < to; ++i) {
        if (endsLine(raw(i))) {
            return true;
        }
    }
    return false;
}

size_t ScriptLines::lineEnd(size_t from)
{
    size_t i = from;
    while (!isEnd(raw(i)) && !endsLine(raw(i))) {
        if (i - from >= longestCommandLine) {
            return npos;
        }
        ++i;
    }
    return isEnd(raw(i)) ? i : i + 1;
}

void ScriptLines::emitUpTo(size_t count)
{
    for (size_t i = 0; i < count && !raw_.empty(); ++i) {
        pANTLR3_COMMON_TOKEN token = raw_.front();
        raw_.pop_front();
        if (endsLine(token)) {
            lineStart_ = true;
        }
        out_.push_back(token);
    }
}

void ScriptLines::hide(size_t from, size_t to)
{
    for (size_t i = from; i < to; ++i) {
        pANTLR3_COMMON_TOKEN token = raw(i);
        if (!isEnd(token)) {
            token->channel = HIDDEN;
        }
    }
}

// A ";" that no script text stands for, put before a line that starts a new statement.
void ScriptLines::emitTerminator(pANTLR3_COMMON_TOKEN before)
{
    pANTLR3_COMMON_TOKEN token = factory_->newToken(factory_);
    token->type = SEMI;
    token->channel = ANTLR3_TOKEN_DEFAULT_CHANNEL;
    token->line = before->line;
    token->charPosition = before->charPosition;
    token->start = before->start;
    token->stop = before->start;
    token->textState = ANTLR3_TEXT_CHARP;
    token->tokText.chars = reinterpret_cast<pANTLR3_UCHAR>(const_cast<char *>(lineEndText));
    out_.push_back(token);
    endStatement();
    linesEnd_ = true;
}

void ScriptLines::endStatement()
{
    empty_ = true;
    copy_ = false;
    fromStdin_ = false;
    kind_ = Kind::None;
    parens_ = 0;
    tokens_ = 0;
}

// GO and "/" lines. at is the first significant token of a line.
bool ScriptLines::batchLine(size_t at)
{
    pANTLR3_COMMON_TOKEN first = raw(at);
    if (first->type != FORWARD_SLASH && !isGo(first)) {
        return false;
    }
    const size_t end = lineEnd(at);
    if (end == npos) {
        return false;
    }
    size_t second = significant(at + 1);
    const bool go = first->type != FORWARD_SLASH;
    if (go && second < end && raw(second)->type == INT) {
        second = significant(second + 1);
    }
    const bool alone = second >= end || isEnd(raw(second));
    if (!alone || !(go || first->type == FORWARD_SLASH)) {
        return false;
    }
    hide(at + 1, end);
    linesEnd_ = true;
    if (empty_) {
        first->channel = HIDDEN;
    } else {
        first->type = SEMI;
        if (kind_ == Kind::Routine) {
            first->user2 = kp_routineEndMark;
        }
    }
    endStatement();
    guards_.clear();
    blocks_ = 0;
    emitUpTo(end);
    lineStart_ = true;
    return true;
}

bool ScriptLines::lineCommand(size_t at, const std::string &w)
{
    pANTLR3_COMMON_TOKEN first = raw(at);
    // (a word is none of these punctuation commands)
    const bool sqlcmd = w.empty() && (isText(first, ":") || isText(first, "!!"));
    const bool script = w.empty() && (isText(first, "@") || isText(first, "@@"));
    const bool command = isClientCommand(w);
    if (!sqlcmd && !script && !command && !isClientStatement(w)) {
        return false;
    }
    if (isRemarkWord(w)) {
        passRemarkText(first);
    }
    const size_t end = lineEnd(at);
    if (end == npos) {
        return false;
    }
    // The last significant token of the line.
    pANTLR3_COMMON_TOKEN last = first;
    for (size_t i = at; i < end; ++i) {
        if (isSignificant(raw(i)) && !isEnd(raw(i))) {
            last = raw(i);
        }
    }
    if (!sqlcmd && !script && !command) {
        // SET x = ... ; and EXEC p ...; are statements; a line ending with a
        // comma or an open parenthesis goes on on the next line.
        if (last->type == SEMI || last->type == COMMA || last->type == OPENPAREN) {
            return false;
        }
        // Dropped only when the next line starts something new; otherwise the
        // statement is left to the grammar (and to the cut at statement words).
        pANTLR3_COMMON_TOKEN next = raw(significant(end));
        const std::string nextWord = word(next);
        if (!isEnd(next) && next->type != FORWARD_SLASH && !isText(next, "@") && !isText(next, ":") &&
            !isStatementWord(nextWord) && !isClientCommand(nextWord) && !isClientStatement(nextWord) &&
            !is(nextWord, "GO")) {
            return false;
        }
    }
    hide(at, end);
    emitUpTo(end);
    lineStart_ = true;
    return true;
}

// IF <condition> before a statement, at the start of a statement.
bool ScriptLines::guard(size_t at, const std::string &w)
{
    if (is(w, "ELSE")) {
        // ELSE of a guard: what follows is read like the guarded statement.
        const size_t body = significant(at + 1);
        hide(at, body);
        emitUpTo(body);
        return guardedBlock(0);
    }
    if (!is(w, "IF")) {
        return false;
    }
    int depth = 0;
    size_t i = at + 1;
    for (size_t n = 0; n < longestGuardCondition; ++n, i = significant(i + 1)) {
        i = significant(i);
        pANTLR3_COMMON_TOKEN token = raw(i);
        if (isEnd(token) || token->type == SEMI) {
            return false;
        }
        if (token->type == OPENPAREN) {
            ++depth;
            continue;
        }
        if (token->type == CLOSEPAREN) {
            --depth;
            continue;
        }
        const std::string next = word(token);
        if (is(next, "THEN") || is(next, "GO")) {
            return false;
        }
        if (depth == 0 && i > at + 1 && isStatementWord(next) && !is(next, "IF")) {
            break;
        }
        if (n + 1 == longestGuardCondition) {
            return false;
        }
    }
    hide(at, i);
    emitUpTo(i);
    return guardedBlock(0);
}

// Hides the BEGIN of a guarded block at raw index at; its END is hidden by track.
bool ScriptLines::guardedBlock(size_t at)
{
    if (is(word(raw(at)), "BEGIN") && !isOneOf(word(raw(significant(at + 1))), "TRAN", "TRANSACTION")) {
        raw(at)->channel = HIDDEN;
        guards_.push_back(blocks_);
        emitUpTo(at + 1);
    }
    return true;
}

bool ScriptLines::breaksStatement(pANTLR3_COMMON_TOKEN token)
{
    if (empty_ || parens_ > 0) {
        return false;
    }
    const std::string w = word(token);
    if (!isStatementWord(w) || (is(w, "IF") && tokens_ < 3)) {
        return false;
    }
    switch (kind_) {
    case Kind::Splittable:
        return true;
    case Kind::Insert:
        return !isOneOf(w, "SET", "EXEC", "EXECUTE", "UPDATE", "DELETE");
    case Kind::Update:
        return !is(w, "SET");
    case Kind::Alter:
        return !isOneOf(w, "ALTER", "DROP", "SET");
    default:
        return false;
    }
}

bool ScriptLines::blockBeginFollows(size_t at, pANTLR3_COMMON_TOKEN *until)
{
    constexpr size_t reach = 100000;  // tokens; a longer declaration list is taken for a block's
    for (size_t i = at + 1; i < at + reach; ++i) {
        pANTLR3_COMMON_TOKEN token = raw(i);
        if (isEnd(token)) {
            *until = token;
            return false;
        }
        if (token->type == T_BEGIN) {
            return true;
        }
        if (token->type == SEMI && kp_startsStatementLine(raw(significant(i + 1)))) {
            *until = raw(significant(i + 1));
            return false;
        }
    }
    return true;
}

void ScriptLines::reportUnendedBlock(pANTLR3_COMMON_TOKEN declare, pANTLR3_COMMON_TOKEN until)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    auto *session = lexer != nullptr ? static_cast<ParseSession *>(lexer->rec->state->userp) : nullptr;
    if (session == nullptr) {
        return;
    }
    const std::string end = isEnd(until) ? std::string("<EOF>")
                                          : "[" + std::to_string(until->line) + ":" +
                                                std::to_string(until->charPosition) + "]";
    session->addException("Unended statement - read up to " + end, static_cast<int>(declare->line),
                          declare->charPosition);
}

void ScriptLines::startStatement(size_t at, const std::string &w)
{
    const std::string second = word(raw(significant(at + 1)));
    empty_ = false;
    if (is(w, "CREATE") || is(w, "ALTER")) {
        size_t i = significant(at + 1);
        std::string kindWord = second;
        // CREATE OR REPLACE / OR ALTER, UNIQUE, CLUSTERED, TEMPORARY ... TABLE.
        while (isOneOf(kindWord, "OR", "REPLACE", "UNIQUE", "CLUSTERED", "NONCLUSTERED", "TEMPORARY", "TEMP",
                                 "GLOBAL", "LOCAL", "EDITIONABLE", "NONEDITIONABLE", "FORCE", "NOFORCE") ||
               (is(w, "CREATE") && is(kindWord, "ALTER"))) {
            i = significant(i + 1);
            kindWord = word(raw(i));
        }
        // MySQL's DEFINER=user@host stands before the kind word.
        for (int n = 0; is(kindWord, "DEFINER") && n < 8; ++n) {
            const size_t after = significant(i + 1);
            if (isEnd(raw(after)) || isOneOf(word(raw(after)), "PROCEDURE", "FUNCTION", "TRIGGER", "EVENT", "VIEW")) {
                kindWord = word(raw(after));
            }
            i = after;
        }
        // Bodies of routines hold statements; ALTER PROCEDURE p COMPILE does not.
        if (is(w, "CREATE") && (isOneOf(kindWord, "PROCEDURE", "PROC", "FUNCTION", "TRIGGER", "PACKAGE", "EVENT",
                                                "LIBRARY", "JAVA") ||
                              (is(kindWord, "TYPE") && is(word(raw(significant(i + 1))), "BODY")))) {
            kind_ = Kind::Routine;
        } else if (is(w, "ALTER")) {
            kind_ = Kind::Alter;
        } else if (isOneOf(kindWord, "TABLE", "INDEX", "SEQUENCE", "DATABASE", "SYNONYM", "USER", "LOGIN", "ROLE")) {
            kind_ = Kind::Splittable;
        } else {
            kind_ = Kind::Whole;
        }
    } else if (is(w, "INSERT")) {
        kind_ = Kind::Insert;
    } else if (is(w, "UPDATE")) {
        kind_ = Kind::Update;
    } else if (is(w, "DECLARE")) {
        const bool variable = isText(raw(significant(at + 1)), "@");
        pANTLR3_COMMON_TOKEN until = nullptr;
        kind_ = variable || !blockBeginFollows(at, &until) ? Kind::Splittable : Kind::Routine;
        if (!variable && kind_ == Kind::Splittable) {
            reportUnendedBlock(raw(at), until);
        }
        if (kind_ == Kind::Splittable) {
            // DECLARE @v INT declares a T-SQL variable, and a DECLARE whose
            // BEGIN never comes opens no block either: each of its ";" ends a
            // statement that is dropped.
            raw(at)->type = STRING;
        }
    } else if (is(w, "BEGIN")) {
        const bool transaction = isOneOf(second, "TRAN", "TRANSACTION", "WORK", "DEFERRED", "IMMEDIATE", "EXCLUSIVE") ||
                                 raw(significant(at + 1))->type == SEMI;
        kind_ = transaction ? Kind::Splittable : Kind::Routine;
    } else if (isOneOf(w, "DROP", "SET", "USE", "PRINT", "EXEC", "EXECUTE", "COMMIT", "ROLLBACK", "RAISERROR",
                          "CHECKPOINT", "TRUNCATE", "DELETE")) {
        kind_ = Kind::Splittable;
    } else {
        kind_ = Kind::Whole;
    }
}

void ScriptLines::track(pANTLR3_COMMON_TOKEN token, size_t at)
{
    if (!guards_.empty()) {
        const std::string w = word(token);
        if ((is(w, "BEGIN") && !isOneOf(word(raw(significant(at + 1))), "TRAN", "TRANSACTION")) || is(w, "CASE")) {
            ++blocks_;
        } else if (is(w, "END")) {
            if (blocks_ == guards_.back()) {
                // The END of a guarded block ends the statement before it.
                guards_.pop_back();
                if (empty_ || kind_ == Kind::Routine) {
                    token->channel = HIDDEN;
                } else {
                    token->type = SEMI;
                }
                if (kind_ != Kind::Routine) {
                    endStatement();
                }
                return;
            }
            --blocks_;
        }
    }
    // Its place is copied (the window may recycle the token itself): a
    // terminator made for a statement ended by the script's end stands there.
    last_.line = token->line;
    last_.charPosition = token->charPosition;
    last_.start = token->start;
    last_.stop = token->stop;
    hasLast_ = true;
    previousType_ = token->type;
    previousLine_ = token->line;
    previousPosition_ = token->charPosition;
    if (empty_) {
        // (the token is raw(at))
        const std::string w = word(token);
        startStatement(at, w);
        copy_ = is(w, "COPY");
        fromStdin_ = false;
    } else if (copy_ && is(word(token), "STDIN")) {
        fromStdin_ = true;
    }
    ++tokens_;
    if (token->type == OPENPAREN) {
        ++parens_;
    } else if (token->type == CLOSEPAREN) {
        parens_ = std::max(0, parens_ - 1);
    } else if (token->type == SEMI && kind_ != Kind::Routine) {
        if (copy_ && fromStdin_) {
            skipCopyData(token);
        }
        endStatement();
    }
}

pANTLR3_COMMON_TOKEN ScriptLines::next()
{
    if (pANTLR3_COMMON_TOKEN token = passThrough()) {
        return token;
    }
    while (out_.empty()) {
        const size_t at = significant(0);
        pANTLR3_COMMON_TOKEN token = raw(at);
        const bool lineStart = lineStart_ || lineEndBetween(0, at);
        emitUpTo(at);
        if (isEnd(token)) {
            if (!empty_ && linesEnd_ && hasLast_) {
                // A script whose statements end at lines ends its last one at its end.
                emitTerminator(&last_);
                out_.back()->start = out_.back()->stop = last_.stop;
                break;
            }
            if (out_.empty()) {
                return eof_;
            }
            break;
        }
        lineStart_ = lineStart;
        if (lineStart && step(token)) {
            continue;
        }
        if (!lineStart && gluedGo(token)) {
            continue;
        }
        if (activeDelimiter()) {
            continue;
        }
        track(token, 0);
        lineStart_ = false;
        emitUpTo(1);
    }
    pANTLR3_COMMON_TOKEN token = out_.front();
    out_.pop_front();
    return token;
}

// Most tokens need none of the line decisions: a hidden token, or a token
// inside a statement that neither starts a line nor follows a ")" (a glued
// GO), with no DELIMITER, guarded block or COPY in play. When nothing is
// waiting, such a token is taken from the lexer and handed on at once, with
// the bookkeeping the loop in next() would do for it; nullptr when next() is
// to decide (having read nothing, or only the end of input).
pANTLR3_COMMON_TOKEN ScriptLines::passThrough()
{
    if (!out_.empty() || !raw_.empty() || eof_ != nullptr || lineStart_ || empty_ || copy_ ||
        previousType_ == CLOSEPAREN || !delimiter_.empty() || !guards_.empty()) {
        return nullptr;
    }
    pANTLR3_COMMON_TOKEN token = source_->nextToken(source_);
    if (isEnd(token)) {
        eof_ = token != nullptr ? token : &source_->eofToken;  // as raw() keeps it; next() decides
        return nullptr;
    }
    if (!isSignificant(token)) {
        if (endsLine(token)) {
            lineStart_ = true;
        }
        return token;
    }
    track(token, 0);
    return token;
}

// The line-start decisions for the first significant token of a line; true
// when the token has been dealt with.
bool ScriptLines::step(pANTLR3_COMMON_TOKEN token)
{
    if (batchLine(0)) {
        return true;
    }
    if (token->type == T_DELIMITER) {
        endStatement();
        return delimiterLine(0);
    }
    if (!empty_ && kind_ != Kind::Routine && breaksStatement(token)) {
        emitTerminator(token);
    }
    if (!empty_) {
        return false;
    }
    const std::string w = word(token);  // the token is raw(0)
    return lineCommand(0, w) || guard(0, w);
}

// ")GO" at the end of a line: a batch separator written against the closing
// parenthesis of the statement.
bool ScriptLines::gluedGo(pANTLR3_COMMON_TOKEN token)
{
    if (previousType_ != CLOSEPAREN || token->line != previousLine_ ||
        token->charPosition != previousPosition_ + 1 || !is(word(token), "GO")) {
        return false;
    }
    const size_t end = lineEnd(0);
    if (end == npos) {
        return false;
    }
    const size_t after = significant(1);
    if (after < end && !isEnd(raw(after))) {
        return false;
    }
    token->type = SEMI;
    endStatement();
    linesEnd_ = true;
    emitUpTo(1);
    return true;
}

// DELIMITER x: the rest of the line is the terminator from here on. Its
// tokens are hidden, so the grammar meets the DELIMITER word alone.
bool ScriptLines::delimiterLine(size_t at)
{
    const size_t end = lineEnd(at);
    if (end == npos) {
        return false;
    }
    std::string text;
    for (size_t i = at + 1; i < end; ++i) {
        if (isSignificant(raw(i)) && !isEnd(raw(i))) {
            text += kp_tokenText(raw(i));
        }
    }
    delimiter_ = text == ";" ? std::string() : text;
    hide(at + 1, end);
    emitUpTo(end);
    lineStart_ = true;
    return true;
}

// The active terminator of a DELIMITER line (;; $$ // ...) at the next raw
// token, glued to a word or not (END$$ is one word to the lexer): it becomes
// one SEMI that ends the statement, and ends a routine where it stands.
bool ScriptLines::activeDelimiter()
{
    if (delimiter_.empty()) {
        return false;
    }
    pANTLR3_COMMON_TOKEN first = raw(0);
    std::string text = kp_tokenText(first);
    size_t count = 1;
    // Only a terminator of punctuation is taken off the end of a word.
    const bool punctuation = std::isalnum(static_cast<unsigned char>(delimiter_[0])) == 0;
    const size_t glued = punctuation && text.size() > delimiter_.size() && first->type != QUOTED_STRING &&
                                 text.compare(text.size() - delimiter_.size(), npos, delimiter_) == 0
                             ? text.size() - delimiter_.size()
                             : 0;
    if (glued == 0) {
        while (text.size() < delimiter_.size() && delimiter_.compare(0, text.size(), text) == 0) {
            pANTLR3_COMMON_TOKEN next = raw(count);
            if (isEnd(next) || next->start != raw(count - 1)->stop + 1) {
                return false;
            }
            text += kp_tokenText(next);
            ++count;
        }
        if (text != delimiter_) {
            return false;
        }
    }
    const bool routine = kind_ == Kind::Routine;
    pANTLR3_COMMON_TOKEN semi = first;
    if (glued != 0) {
        // END$$: the word keeps its letters, a new SEMI stands for the rest.
        // Bounds are byte addresses of UTF-16 units; the terminator is ASCII.
        first->stop = static_cast<ANTLR3_MARKER>(first->start + 2 * glued - 1);
        if (is(word(first), "END")) {
            first->type = T_END;
        }
        track(first, 0);
        emitUpTo(1);
        semi = factory_->newToken(factory_);
        semi->type = SEMI;
        semi->channel = ANTLR3_TOKEN_DEFAULT_CHANNEL;
        semi->line = first->line;
        semi->charPosition = first->charPosition + static_cast<ANTLR3_INT32>(glued);
        semi->start = first->stop + 1;
        semi->stop = first->stop + 2;
        semi->input = first->input;
        semi->textState = ANTLR3_TEXT_CHARP;
        semi->tokText.chars = reinterpret_cast<pANTLR3_UCHAR>(const_cast<char *>(";"));
        out_.push_back(semi);
    } else {
        first->type = SEMI;
        if (!empty_) {
            track(first, 0);
        }
        hide(1, count);
        emitUpTo(count);
    }
    if (routine) {
        semi->user2 = kp_routineEndMark;
    }
    endStatement();
    return true;
}

} // namespace sqlantlr

namespace sqlantlr {

bool ScriptLines::lastStepWas(pANTLR3_COMMON_TOKEN first) const
{
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    return out_.empty() && eof_ == nullptr && delimiter_.empty() && guards_.empty() && !empty_ &&
           previousType_ == first->type && previousLine_ == first->line && previousPosition_ == first->charPosition &&
           static_cast<pVellumGrammarCLexer>(lexer->ctx)->inExecutableComment != ANTLR3_TRUE;
}

pANTLR3_COMMON_TOKEN ScriptLines::secondWord(pANTLR3_COMMON_TOKEN first)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    // The filter's last step must have been the statement's first word, read
    // ahead up to the next word on the same line and no further.
    if (!lastStepWas(first) || raw_.empty() || tokens_ != 1) {
        return nullptr;
    }
    for (size_t i = 0; i + 1 < raw_.size(); ++i) {
        if (isSignificant(raw_[i]) || endsLine(raw_[i])) {
            return nullptr;
        }
    }
    pANTLR3_COMMON_TOKEN second = raw_.back();
    if (isEnd(second) || !isSignificant(second) ||
        reinterpret_cast<const char *>(lexer->input->nextChar) != reinterpret_cast<const char *>(second->stop) + 1) {
        return nullptr;
    }
    return second;
}

bool ScriptLines::skipDataStatement(pANTLR3_COMMON_TOKEN first, std::vector<pANTLR3_COMMON_TOKEN> &dropped)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    pANTLR3_COMMON_TOKEN second = secondWord(first);
    if (second == nullptr) {
        return false;
    }
    // The grammar consumes INSERT and DROP statements, and every statement
    // whose first token opens no other rule, up to their ";" without looking
    // at the tokens. COPY is read, to see whether data lines follow it, and DO
    // may open a dollar-quoted block.
    const std::string w = word(first);
    if ((!is(w, "INSERT") && !is(w, "DROP") && opensKnownStatement(first->type, w)) || isOneOf(w, "DO", "COPY")) {
        return false;
    }
    if (is(w, "INSERT") ? kind_ != Kind::Insert
                      : kind_ != Kind::Whole && kind_ != Kind::Splittable && kind_ != Kind::Update) {
        return false;
    }
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *from = static_cast<const char16_t *>(input->nextChar);
    // The next token: a plain word, a number or a closed quoted string,
    // which mean nothing to the filter after a statement's first word.
    const std::string text = kp_tokenText(second);
    const bool plainWord = !text.empty() && std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
                           std::all_of(text.begin(), text.end(), [](char c) {
                               return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
                           });
    if (!(plainWord || second->type == INT || second->type == QUOTED_STRING)) {
        return false;
    }
    auto *session = static_cast<ParseSession *>(lexer->rec->state->userp);
    if (session != nullptr && from >= session->dollarQuoteBegin && from < session->dollarQuoteEnd) {
        return false;  // within a dollar-quoted string quotes open nothing, which the scan does not know
    }
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *semi = kp_scanReadingOn(input, from, [&](const char16_t *readable, bool &metEnd) {
        return dataStatementEnd(data, from, readable,
                                kind_ == Kind::Whole ? DataStatementCut::Never : DataStatementCut::AtStatementWords,
                                session != nullptr ? &session->quoteScans : nullptr, &metEnd);
    });
    if (semi == nullptr) {
        return false;
    }
    dropped.assign(raw_.begin(), raw_.end());
    raw_.clear();
    advanceInput(semi);
    return true;
}

pANTLR3_COMMON_TOKEN ScriptLines::newAheadToken(pANTLR3_TOKEN_FACTORY factory)
{
    // A hidden token is made in the place of the next one.
    ScriptLines *lines = static_cast<AheadFactory *>(factory)->lines;
    if (lines->aheadTail_ - lines->aheadHead_ == lines->aheadRing_.size()) {
        lines->growAheadRing();
    }
    return lines->aheadRing_[lines->aheadTail_ & (lines->aheadRing_.size() - 1)];
}

// Every place handed out: twice the places, the handed-out ones first in
// their order, then the free ones, then new tokens.
void ScriptLines::growAheadRing()
{
    const std::size_t size = aheadRing_.size();
    std::vector<pANTLR3_COMMON_TOKEN> grown;
    grown.reserve(size == 0 ? 64 : 2 * size);
    for (std::size_t count = aheadHead_; count != aheadHead_ + size; ++count) {
        grown.push_back(aheadRing_[count & (size - 1)]);
    }
    while (grown.size() < grown.capacity()) {
        aheadTokens_.emplace_back();
        initialiseFactoryToken(factory_, &aheadTokens_.back());
        grown.push_back(&aheadTokens_.back());
    }
    aheadTail_ -= aheadHead_;
    aheadHead_ = 0;
    aheadRing_ = std::move(grown);
}

bool ScriptLines::startAhead(pANTLR3_COMMON_TOKEN first, pANTLR3_COMMON_TOKEN *second)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    pANTLR3_INPUT_STREAM input = lexer->input;
    if (kind_ != Kind::Routine) {
        *second = secondWord(first);
        if (*second == nullptr) {
            return false;
        }
    } else {
        // Within what the filter takes for a routine (PostgreSQL's functions
        // leave the rest of a script so), it decides only GO, "/" and
        // DELIMITER lines, which stop the reading: a statement is read ahead
        // from its first word, when that is the last token read.
        *second = nullptr;
        if (!lastStepWas(first) || !raw_.empty() || copy_ ||
            reinterpret_cast<const char *>(input->nextChar) != reinterpret_cast<const char *>(first->stop) + 1) {
            return false;
        }
    }
    aheadStart_ = {input->nextChar, input->line, input->charPositionInLine, input->currentLine};
    aheadFactory_.newToken = newAheadToken;
    aheadFactory_.lines = this;
    aheadLineStart_ = false;
    aheadEnded_ = false;
    aheadStopped_ = false;
    aheadParens_ = 0;
    recycleAhead(0);
    // The lexer makes its tokens in the reading's places until endAhead.
    pANTLR3_RECOGNIZER_SHARED_STATE state = lexer->rec->state;
    aheadLexerFactory_ = state->tokFactory;
    state->tokFactory = &aheadFactory_;
    return true;
}

pANTLR3_COMMON_TOKEN ScriptLines::nextAhead()
{
    if (aheadEnded_ || aheadStopped_) {
        return nullptr;
    }
    auto lexer = static_cast<pANTLR3_LEXER>(source_->super);
    pANTLR3_COMMON_TOKEN token = nullptr;
    // The filter changes nothing in a statement that neither a GO, "/" or
    // DELIMITER line nor a statement word opening a line outside parentheses
    // cuts; "/" and anything else the fast path does not cut stop the reading.
    for (;;) {
        bool lineEnded = false;
        token = kp_scanPlainTokenPassingBlanks(lexer, lineEnded);
        aheadLineStart_ = aheadLineStart_ || lineEnded;
        if (token == nullptr) {
            break;
        }
        if (token->channel != ANTLR3_TOKEN_DEFAULT_CHANNEL) {
            aheadLineStart_ = aheadLineStart_ || endsLine(token);
            continue;
        }
        // (GO is two units: stop is the last byte of the second.)
        if (token->type == T_DELIMITER || (token->stop - token->start == 3 && isGo(token)) ||
            (aheadLineStart_ && aheadParens_ == 0 && isStatementWord(word(token)))) {
            token = nullptr;
        }
        break;
    }
    if (token == nullptr) {
        aheadStopped_ = true;
        return nullptr;
    }
    aheadLineStart_ = false;
    ++aheadTail_;  // the token made in the place at the tail is handed out
    if (token->type == OPENPAREN) {
        ++aheadParens_;
    } else if (token->type == CLOSEPAREN) {
        aheadParens_ = std::max(0, aheadParens_ - 1);
    } else if (token->type == SEMI) {
        aheadEnd_ = {reinterpret_cast<void *>(token->start), token->line,
                     static_cast<ANTLR3_INT32>(token->charPosition), token->lineStart};
        aheadEnded_ = true;
    }
    return token;
}

void ScriptLines::recycleAhead(size_t keepLast)
{
    if (aheadTail_ - aheadHead_ > keepLast) {
        aheadHead_ = aheadTail_ - keepLast;
    }
}

void ScriptLines::endAhead(bool pass, std::vector<pANTLR3_COMMON_TOKEN> &dropped)
{
    pANTLR3_INPUT_STREAM input = static_cast<pANTLR3_LEXER>(source_->super)->input;
    const bool passing = pass && aheadEnded_ && !aheadStopped_;
    if (passing) {
        dropped.insert(dropped.end(), raw_.begin(), raw_.end());
        raw_.clear();
    }
    const InputPlace &place = passing ? aheadEnd_ : aheadStart_;
    input->nextChar = place.nextChar;
    input->line = place.line;
    input->charPositionInLine = place.charPositionInLine;
    input->currentLine = place.currentLine;
    aheadEnded_ = true;
    static_cast<pANTLR3_LEXER>(source_->super)->rec->state->tokFactory = aheadLexerFactory_;
    recycleAhead(0);
}

// Moves the lexer's stream to to, as consuming each unit would.
void ScriptLines::advanceInput(const char16_t *to)
{
    kp_moveInputTo(static_cast<pANTLR3_LEXER>(source_->super)->input, to);
}

// The text of a REM or PROMPT line after its command word is free text up to
// the line end: the stream moves to that line end unread, so that a "/*" in it
// opens no comment that would run on into the statements below (and a quote
// opens no string). Only when the command word is the last token read, as it
// is when the line is met in order.
void ScriptLines::passRemarkText(pANTLR3_COMMON_TOKEN command)
{
    pANTLR3_INPUT_STREAM input = static_cast<pANTLR3_LEXER>(source_->super)->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *p = static_cast<const char16_t *>(input->nextChar);
    if (raw_.empty() || raw_.back() != command || eof_ != nullptr ||
        reinterpret_cast<const char *>(p) != reinterpret_cast<const char *>(command->stop) + 1) {
        return;
    }
    while (p < end && *p != u'\n' && *p != u'\r') {
        ++p;
    }
    advanceInput(p);
}

// After the ";" of COPY ... FROM STDIN: the data lines up to the "\." line
// are no SQL. The stream moves to just after the "\.", so that its line end
// is read as usual. Without a "\." line (or with more on the line of the
// ";"), the lines are read as before.
void ScriptLines::skipCopyData(pANTLR3_COMMON_TOKEN semi)
{
    pANTLR3_INPUT_STREAM input = static_cast<pANTLR3_LEXER>(source_->super)->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *p = static_cast<const char16_t *>(input->nextChar);
    if (raw_.size() != 1 || raw_.front() != semi || eof_ != nullptr || !delimiter_.empty() ||
        reinterpret_cast<const char *>(p) != reinterpret_cast<const char *>(semi->stop) + 1) {
        return;
    }
    while (p < end && (*p == u' ' || *p == u'\t')) {
        ++p;
    }
    const auto lineEndAt = [&end](const char16_t *q) { return q < end && (*q == u'\n' || *q == u'\r'); };
    const auto afterLine = [&end](const char16_t *q) { return *q == u'\r' && q + 1 < end && q[1] == u'\n' ? q + 2 : q + 1; };
    if (!lineEndAt(p)) {
        return;
    }
    // The data's lines, decoded further as they are met.
    const char16_t *line = afterLine(p);
    for (;;) {
        if (line >= end) {
            if (!kp_moreTextFor(input, p)) {
                return;
            }
            end = kp_readableEnd(input);
            continue;
        }
        if (end - line >= 2 && line[0] == u'\\' && line[1] == u'.' && (line + 2 == end || lineEndAt(line + 2))) {
            advanceInput(line + 2);
            return;
        }
        const char16_t *q = line;
        while (q < end && !lineEndAt(q)) {
            ++q;
        }
        if (q == end) {
            if (!kp_moreTextFor(input, p)) {
                return;
            }
            end = kp_readableEnd(input);
            continue;  // the line again, whole
        }
        line = afterLine(q);
    }
}

} // namespace sqlantlr
