// State of one parse, shared by the driver and the recognizers' actions
// through the recognizers' user pointer.
#pragma once

#include "PlainColumnReading.h"
#include "QuotedText.h"

#include <antlr3.h>

#include <SQLAntlrParser/SQLParserException.h>

#include <deque>
#include <string>
#include <vector>

class SQLParserC;

namespace sqlantlr {

class TokenWindow;
class RecognizerPipeline;
class ScriptFileText;

struct ParseSession {
    SQLParserC *driver = nullptr;
    // Running number for token descriptions in error messages.
    unsigned descriptionCounter = 0;
    // Source texts of DEFAULT values and CHECK expressions, attached to their
    // tokens by the parser and read back by the walker. Kept for one statement
    // when a script is parsed statement by statement, else for the parse.
    std::deque<std::string> customValues;
    // The lexer's own token source function, wrapped to place the end of input.
    pANTLR3_COMMON_TOKEN (*lexerNextToken)(pANTLR3_TOKEN_SOURCE) = nullptr;
    // Records of the tree walker wait here while statements are parsed and
    // walked one by one, and follow the parser's records at the end.
    bool deferRecords = false;
    std::vector<SQLParserException> deferredRecords;
    // The recognizers of the call, while the driver runs one.
    RecognizerPipeline *pipeline = nullptr;
    // The parser's token stream, when it reads tokens lazily.
    TokenWindow *tokenWindow = nullptr;
    // The text of a file or long string, when the parse reads it in place:
    // the pages of finished statements are given back.
    ScriptFileText *mappedText = nullptr;
    // Parses drop blank tokens; token listings keep every token.
    bool dropBlanks = false;
    // An import skips the text of data statements (INSERT, REPLACE) without
    // lexing it: the parser meets their first word and their ";" only (see
    // ScriptLines). Syntax-tree dumps and token listings read every token.
    bool skipDataStatements = false;
    // The lexer cuts common tokens by a direct scan (kp_scanPlainToken).
    bool plainTokens = true;
    // An import reads plain table columns and plain CREATE TABLE statements
    // directly (see PlainColumns.h).
    bool plainColumns = false;
    // The last column the parser asked about, and whether it is plain.
    struct PlainColumnProbe {
        pANTLR3_COMMON_TOKEN name = nullptr;
        ANTLR3_MARKER index = -1;
        bool plain = false;
        pANTLR3_COMMON_TOKEN last = nullptr;  // the run's last token, before its COMMA or CLOSEPAREN
        PlainColumnRun columns;
    } plainProbe;
    // The CREATE TABLE statement read whole last (kp_importPlainTable): its
    // room is reused by the next one.
    PlainTable plainTable;
    // The readings of the statement's runs of plain columns, which their
    // first name tokens point at; cleared with customValues.
    std::deque<PlainColumnRun> plainColumnReadings;
    // What the lexer's scans of quoted pieces learnt about the current line.
    QuoteScanCache quoteScans;
    // The dollar-quoted string the lexer is in or last met ($$...$$), in
    // which quotes open no string.
    const char16_t *dollarQuoteBegin = nullptr;
    const char16_t *dollarQuoteEnd = nullptr;
    // Where the script's dollar tags stand, for the lexer's look-ups.
    DollarTagIndex dollarTags;
    // The MySQL terminator the lexer has met so far: '$$' set by DELIMITER
    // ends statements and opens no dollar-quoted string.
    DelimiterTrack delimiterTrack;
    // Name lists that walker rules return (qualified names, column lists);
    // cleared with customValues.
    std::deque<std::vector<std::string>> nameLists;
    // Stack address at the start of the parse, and how many bytes below it
    // the recognizers may go. Deeply nested input beyond that becomes a
    // record instead of overflowing the stack; the budget keeps a parse safe
    // on a thread with a 1 MiB stack.
    const char *stackBase = nullptr;
    // Where the statement being parsed starts, and whether a record already
    // says that it runs on past its end (see kp_reportRunOnStatement).
    int statementLine = 0;
    int statementPosition = -1;
    bool runOnReported = false;
    // kp_recoveryMarkCount() when the walker last searched a tree for error
    // nodes (none yet: a value the count does not reach).
    unsigned long recoveryMarksWalked = static_cast<unsigned long>(-1);
    static constexpr long stackBudget = 384 * 1024;

    void addException(const std::string &message, int line, int charPos);
    const std::string *addCustomValue(std::string value);
    std::vector<std::string> *newNameList();
};

} // namespace sqlantlr
