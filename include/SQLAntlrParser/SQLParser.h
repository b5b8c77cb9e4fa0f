// The parser facade: parse a script from a string or a file into a schema
// model, and read the parse's diagnostic records.
#pragma once

#include <SQLAntlrParser/SQLParserC.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;

// Raised by parseFile and stringForFile when a file can be read in neither
// UTF-8 nor the single-byte fallback (a missing or unreadable file).
class SQLFileEncodingError : public std::runtime_error {
public:
    SQLFileEncodingError() : std::runtime_error("Unable to identify text encoding during parsing") {}
    // The name of this failure.
    static constexpr const char *Name = "UnknownFileEncoding";
};

// Text encodings of script files.
enum class SQLTextEncoding : int {
    UTF8 = 4,
    MacOSRoman = 30,
};

class SQLParser {
public:
    SQLParser();
    ~SQLParser();
    SQLParser(const SQLParser &) = delete;
    SQLParser &operator=(const SQLParser &) = delete;

    static std::unique_ptr<SQLParser> parser();

    // Parses a script held in memory (UTF-8). Returns the container with its
    // references resolved (postLoadProcess), or nullptr when the parse failed
    // (the error is logged). Syntax errors are records, not failures.
    std::unique_ptr<SQLContainer> parseString(std::string_view sql);
    // As above; a null pointer fails with the "Invalid input (is nil)" error
    // (code 1), which is logged.
    std::unique_ptr<SQLContainer> parseString(const char *sql);
    // As the two above, and on failure the error is also stored in *error
    // (when error is not null).
    std::unique_ptr<SQLContainer> parseString(std::string_view sql, KpError *error);
    std::unique_ptr<SQLContainer> parseString(const char *sql, KpError *error);

    // Reads a script file (UTF-8, else Mac OS Roman) and parses it. Throws
    // SQLFileEncodingError when the file cannot be read (missing, a
    // directory, or failing while read).
    std::unique_ptr<SQLContainer> parseFile(const std::string &path);
    // As above, and on failure the error is also stored in *error. The text
    // is not held in memory (see SQLParserC::parseFile).
    std::unique_ptr<SQLContainer> parseFile(const std::string &path, KpError *error);

    // The text of a file as UTF-8: read in the given encoding, falling back to
    // Mac OS Roman. Throws SQLFileEncodingError when both fail.
    static std::string stringForFile(const std::string &path, SQLTextEncoding encoding);

    // Records of every parse made with this facade, in report order.
    const std::vector<SQLParserException> &getExceptionList() const;
    // True when there are records. As in every release so far, the answer is
    // the count's low 8 bits taken as a truth value: 256 records answer false.
    bool hasExceptions() const;
    // Does nothing; use getExceptionList.
    void displayErrors() const;

    // The driver that runs the parses.
    SQLParserC &driver() { return *parser_; }

private:
    std::unique_ptr<SQLContainer> finishParse(std::unique_ptr<SQLContainer> container, const KpError &failure,
                                              KpError *error);

    std::unique_ptr<SQLParserC> parser_;
};
