// The parse driver: runs one parse from script text to a filled SQLContainer,
// keeps the parse's diagnostic records, and links foreign keys by name.
#pragma once

#include <SQLAntlrParser/KpError.h>
#include <SQLAntlrParser/SQLParserException.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;
class SQLTable;
class SQLField;
class SQLReferentialActions;

// Opaque handles on the stages of the recognizer pipeline (character stream,
// lexer, token stream, parser, syntax tree, tree node stream). They are
// defined privately; a subclass meets them only when it overrides a stage.
struct SQLInputStream;
struct SQLLexer;
struct SQLTokenStream;
struct SQLRecognizer;
struct SQLSyntaxTree;
struct SQLTreeNodeStream;

namespace sqlantlr {
struct ParseSession;
class RecognizerPipeline;
class ScriptFileText;
}

// One token of a script, as the lexer cut it.
struct SQLToken {
    long index = 0;         // position in the token stream, from 0
    int type = 0;           // token type number
    std::string name;       // token type name ("STRING", "'CREATE'", ...)
    int channel = 0;        // 0 default, 99 hidden (blanks, line ends, comments)
    int line = 0;           // from 1
    int pos = 0;            // position in the line, in UTF-16 units, from 0
    std::string text;       // the token's text as written
};

// How far a parse has got, reported after each statement.
struct SQLParseProgress {
    std::size_t done = 0;    // bytes of the parsed (UTF-16) text before the next statement
    std::size_t total = 0;   // bytes of the parsed (UTF-16) text
    std::size_t tables = 0;  // tables built so far
};

class SQLParserC {
public:
    SQLParserC();
    virtual ~SQLParserC();
    SQLParserC(const SQLParserC &) = delete;
    SQLParserC &operator=(const SQLParserC &) = delete;

    // A new driver.
    static std::unique_ptr<SQLParserC> parser();

    // The first UTF-16 unit of the upper-case form of a character.
    static char16_t uppercaseCharacter(char16_t character);

    // Name parts (schema, table) trimmed and joined with ".".
    static std::string tableNameFromReturnArray(const std::vector<std::string> &parts);

    // Parses a script (UTF-8; invalid sequences are replaced). Returns the
    // container, or nullptr with *error set when no parse could be made.
    // Syntax errors do not fail a parse: they become records.
    std::unique_ptr<SQLContainer> parseString(std::string_view sql, KpError *error);
    // As above; a null pointer is the "Invalid input (is nil)" error (code 1).
    std::unique_ptr<SQLContainer> parseString(const char *sql, KpError *error);
    // Parses a script file as parseString parses the text that
    // SQLParser::stringForFile reads from it, same model and records, but
    // without the whole text in memory: a long file is decoded as the parse
    // reads it, and the parts parsed leave memory.
    // Files that are no regular files or start with a UTF-16 byte order mark
    // are read whole. Throws SQLFileEncodingError when the file cannot be read.
    std::unique_ptr<SQLContainer> parseFile(const std::string &path, KpError *error);

    // Called after each statement of every later parse; an empty handler
    // turns the reports off.
    void setProgressHandler(std::function<void(const SQLParseProgress &)> handler)
    {
        progressHandler_ = std::move(handler);
    }

    // Whether later parses skip the text of data statements (INSERT and
    // REPLACE at the start of a statement) with a quick scan instead of lexing
    // and parsing it token by token; on by default. The model and the records
    // are the same either way; off serves to check that.
    void setSkipsDataStatements(bool skip) { skipsDataStatements_ = skip; }

    // Whether later parses read plain table columns (a name, a common type
    // and common options such as NOT NULL, DEFAULT, COMMENT) in one pass
    // instead of through the grammar's column rules; on by default. The
    // model and the records are the same either way; off serves to check
    // that.
    void setReadsPlainColumns(bool read) { readsPlainColumns_ = read; }

    // Whether later parses and token listings cut the most common tokens
    // (blanks, line ends, names and keywords, quoted strings and names, line
    // comments, unsigned numbers, and ( ) , ; = .) with a direct scan instead
    // of the generated lexer's prediction; on by default. The tokens are the
    // same either way; off serves to check that.
    void setUsesTokenFastPath(bool use) { usesTokenFastPath_ = use; }

    // Every token of a script, hidden ones included, end of input excluded.
    std::vector<SQLToken> tokensForString(std::string_view sql);
    // The same tokens handed over one at a time as the lexer cuts them; none
    // is kept after its call, so memory does not grow with the script.
    void forEachToken(std::string_view sql, const std::function<void(const SQLToken &)> &each);
    // The same for a script file, read in place as parseFile reads it.
    void forEachTokenOfFile(const std::string &path, const std::function<void(const SQLToken &)> &each);

    // The syntax tree of a script in tree-string form: a node's text; a node
    // with children "(text child child ...)"; a list its items joined by blanks.
    std::string syntaxTreeForString(std::string_view sql, KpError *error);
    // The same text handed over in pieces, statement by statement, each
    // statement's tree freed once written; the pieces joined are the text
    // syntaxTreeForString returns. False with *error set when the
    // recognizers cannot be made (nothing is written then).
    bool writeSyntaxTree(std::string_view sql, const std::function<void(std::string_view)> &write,
                         KpError *error);
    // The same for a script file, read in place as parseFile reads it.
    bool writeSyntaxTreeOfFile(const std::string &path, const std::function<void(std::string_view)> &write,
                               KpError *error);

    // Diagnostic records of every parse this driver ran, in report order.
    const std::vector<SQLParserException> &getExceptionList() const { return exceptionsList_; }
    void addException(SQLParserException exception);
    // Adds the record "[line:charPos] message".
    void addExceptionWithMessage(const std::string &message, int lineNumber, int charPos);
    // Reports a column renamed because its name was taken.
    void addDuplicateFieldExceptionMessage(const SQLField &field, const SQLTable &table,
                                           const std::string &originalName, int lineNumber, int charPos);
    // Logs the records.
    void displayErrors() const;

    // Attaches a foreign key written in table (or ALTER TABLE) form. A
    // one-column key whose target names at most one column is stored on the
    // field; others become an SQLForeignKey of the table. Returns the object
    // that carries the reference, or nullptr when its column is unknown (a
    // record says so).
    SQLReferentialActions *addForeignKey(SQLTable *table, const std::optional<std::string> &fkRefName, int line,
                                         int charPos, const std::vector<std::string> &tableNameParts,
                                         const std::vector<std::string> &localFieldList,
                                         const std::vector<std::string> &foreignFieldList);

    // Switches a subclass may override. useCustomErrorDisplay is asked when
    // the parser and the tree walker of a parse are made; displayTokenStream
    // once per parse, before parsing; displayNodeList once for each
    // statement's syntax tree, before it is walked (and for the whole tree
    // in parseTree).
    virtual bool useCustomErrorDisplay() const { return true; }
    virtual bool displayNodeList() const { return false; }
    virtual bool displayTokenStream() const { return false; }

protected:
    // The stages of a parse. What a subclass can rely on:
    // - parseString, parseFile, syntaxTreeForString and writeSyntaxTree call
    //   inputStreamFromString, lexerForInputStream and parserForTokenStream
    //   once each, in this order; tokensForString and forEachToken call the
    //   first two. The returned handles
    //   belong to the call and are freed by it; nullptr fails the call with
    //   the stage's error (codes 2, 3, 5).
    // - parseString parses the script one statement at a time and calls
    //   walkStatement for every statement that built a syntax tree, in
    //   script order, all into the one container the parse returns.
    // - parseTree (and from it parseTreeStream) walk a whole syntax tree into
    //   a new container. parseString calls parseTree only for a script with
    //   no statement at all (blank or only comments); they are kept for
    //   subclasses that walk a tree of their own.
    virtual SQLInputStream *inputStreamFromString(std::u16string_view text);
    virtual SQLLexer *lexerForInputStream(SQLInputStream *input);
    virtual SQLRecognizer *parserForTokenStream(SQLTokenStream *tokens);
    // Walks one statement's syntax tree into the parse's container; false
    // with *error set fails the parse. The default walks it with the tree
    // walker that serves every statement of the parse.
    virtual bool walkStatement(SQLSyntaxTree *tree, SQLContainer &container, KpError *error);
    virtual std::unique_ptr<SQLContainer> parseTree(SQLSyntaxTree *tree, KpError *error);
    virtual std::unique_ptr<SQLContainer> parseTreeStream(SQLTreeNodeStream *nodes, KpError *error);
    // Debugging dumps into the log sink.
    void displayTokenStream(SQLTokenStream *tokens) const;
    void displayTreeString(SQLSyntaxTree *tree) const;

private:
    // Parses prepared UTF-16 text; mapped, when given, is where it lives.
    std::unique_ptr<SQLContainer> parseUnits(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                                             KpError *error);
    // forEachToken and writeSyntaxTree on prepared UTF-16 text.
    void streamTokens(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                      const std::function<void(const SQLToken &)> &each);
    bool streamSyntaxTree(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                          const std::function<void(std::string_view)> &write, KpError *error);
    // Parses and walks the script one statement at a time.
    std::unique_ptr<SQLContainer> parseStatements(sqlantlr::RecognizerPipeline &pipeline, KpError *error);
    // Walks a syntax tree into the container; false when no walker could be made.
    bool walkTree(SQLTreeNodeStream *nodes, SQLContainer &container, KpError *error);

    friend struct sqlantlr::ParseSession;
    friend class sqlantlr::RecognizerPipeline;
    std::vector<SQLParserException> exceptionsList_;
    sqlantlr::ParseSession *session_ = nullptr;  // the parse in progress, if any
    std::function<void(const SQLParseProgress &)> progressHandler_;
    bool skipsDataStatements_ = true;
    bool usesTokenFastPath_ = true;
    bool readsPlainColumns_ = true;
};
