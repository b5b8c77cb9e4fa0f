// The recognizers of one call of the driver (character stream, lexer, token
// stream, parser, tree node stream, tree walker), owned by one object that
// frees whichever exist, in reverse order, on every path. This is the only
// place, with the token window, that reaches into the runtime's structures
// beyond their documented functions; it is written for libantlr3c 3.4, which
// the build checks for.
#pragma once

#include "ScriptFileText.h"

#include "ParseSession.h"

#include <SQLAntlrParser/KpError.h>
#include <SQLAntlrParser/SQLParserC.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;

namespace sqlantlr {

class TokenWindow;
struct StatementWalker;

// Making the stages, for the driver's stage hooks.
SQLInputStream *newInputStream(std::u16string_view text);
// The lexer over the stream; the session (if any) becomes its user pointer
// and learns where the end of input is.
SQLLexer *newLexer(SQLInputStream *input, ParseSession *session);
SQLRecognizer *newParser(SQLTokenStream *tokens, ParseSession *session, bool customErrorDisplay);

// Debugging dumps into the log sink.
void logTokenStream(SQLTokenStream *tokens);
void logSyntaxTree(SQLSyntaxTree *tree);
// The tree-string form of a syntax tree.
std::string syntaxTreeString(SQLSyntaxTree *tree);
// Appends the items of a tree as a list holding them would show them: the
// children of a list, else the tree itself; each after a blank unless it is
// the first item written (first is then cleared). Nothing for nullptr.
void appendSyntaxTreeItems(SQLSyntaxTree *tree, std::string &out, bool &first);

// Walks a whole syntax tree through a node stream into the container with a
// new walker; false with *error set when no walker could be made.
bool walkTreeStream(SQLTreeNodeStream *nodes, SQLContainer &container, ParseSession *session,
                    bool customErrorDisplay, KpError *error);
// A node stream over a tree (nullptr when it cannot be made), and its release.
SQLTreeNodeStream *newTreeNodeStream(SQLSyntaxTree *tree);
void freeTreeNodeStream(SQLTreeNodeStream *nodes);

class RecognizerPipeline {
public:
    // What the call needs: a parse (blank tokens dropped, a lazy token window,
    // a nesting guard) or only the list of every token.
    enum class Use { Parse, Tokens };

    // Makes the session current in the driver until the pipeline is gone.
    RecognizerPipeline(SQLParserC &driver, Use use);
    ~RecognizerPipeline();
    RecognizerPipeline(const RecognizerPipeline &) = delete;
    RecognizerPipeline &operator=(const RecognizerPipeline &) = delete;

    ParseSession &session() { return session_; }

    // The character stream, the lexer and the token stream, made through the
    // driver's stage hooks. False with *error set (codes 2, 3, 4) when one
    // cannot be made.
    bool openTokens(std::u16string_view text, KpError *error);
    // The parser, through the driver's hook. False with *error set (code 5).
    bool openParser(KpError *error);

    SQLTokenStream *tokenStream() const;
    // Every token read so far (all of them once the stream has been read).
    std::vector<SQLToken> tokenList();
    // Reads the tokens one at a time straight from the lexer, hands each to
    // `each` with the index tokenList would give it, and recycles it soon
    // after (Use::Tokens only, instead of tokenList).
    void streamTokens(const std::function<void(const SQLToken &)> &each);

    // How far the parser has read: the bytes of the input before the next
    // token, and the input's size (tables left at 0).
    SQLParseProgress progress() const;
    // True when the parser is at the end of input.
    bool atEnd() const;
    // Runs the whole-script rule: the syntax tree of everything left.
    SQLSyntaxTree *parseScript();
    // Parses the next statement with the script rule's recovery; nullptr when
    // it built no tree.
    SQLSyntaxTree *parseStatement();
    // Imports the next statement straight into the container when it is a
    // plain CREATE TABLE (kp_importPlainTable); false, with nothing read,
    // for any other statement, which parseStatement then parses.
    bool importPlainStatement(SQLContainer &container);
    // Passes the next statement when it is a data or unknown statement whose
    // text the script-line filter skips (TokenWindow::skipDataStatement) and
    // that is then its first word and its ";": the grammar would make a
    // tree of the two that the walker passes over (*leavesTree: whether that
    // tree counts as one, as it does for INSERT and DROP). False when it is
    // not so; parseStatement then parses what is left of it.
    bool skipDataStatement(bool *leavesTree);
    // Walks one statement's tree into the container with the walker that
    // serves every statement of the call. False with *error set when the
    // walker cannot be made.
    bool walkStatement(SQLSyntaxTree *tree, SQLContainer &container, KpError *error);
    // Releases the trees and tokens of the statements already walked, so that
    // memory follows the largest statement rather than the whole script.
    // Also moves the input's text window on (see textWindowUnits).
    void releaseFinishedStatements();

    // The runtime keeps its input's size in 32 bits, so a text of more units
    // than this (2 GiB of them, 4 GiB of UTF-16) is read through a window of
    // this many units, which a parse moves on between statements: to the
    // line of the next statement once it has passed half of the window. A
    // statement must then fit in half a window from its line's start.
    static std::size_t textWindowUnits();
    // Another window for the parses that follow (0: the runtime's limit),
    // for the tests, which cannot use texts of 4 GiB.
    static void setTextWindowUnits(std::size_t units);

private:
    // Moves the window to the line of `from` once `from` is past half of it.
    void moveTextWindow(const void *from);
    void releaseTextBefore(const char16_t *from);

    SQLParserC &driver_;
    ParseSession session_;
    ParseSession *previousSession_;
    Use use_;
    std::u16string_view text_;  // all of it, whatever the window shows
    bool windowed_ = false;     // read through a window that moves on
    std::size_t windowUnits_ = 0;
    TextFeed feed_;             // the stream's `super` for a text decoded as it is read
    SQLInputStream *input_ = nullptr;
    SQLLexer *lexer_ = nullptr;
    SQLTokenStream *tokens_ = nullptr;
    std::unique_ptr<TokenWindow> window_;
    SQLRecognizer *parser_ = nullptr;
    std::unique_ptr<StatementWalker> walker_;
};

} // namespace sqlantlr
