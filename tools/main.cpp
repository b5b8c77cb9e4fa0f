// sqlantlr: command-line access to the SQL script importer.
//
//   sqlantlr model [--pretty] FILE    the parsed model and records as JSON
//   sqlantlr tokens [--json] FILE     every token of the script
//   sqlantlr tree FILE                the syntax tree
//
// FILE "-" reads standard input. --trace sends the library's traces to
// standard error.
#include "ModelJson.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <CLI/CLI.hpp>

#include <iostream>
#include <string>

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

std::string sourcePath(const std::string &file)
{
    return file == "-" ? std::string("/dev/stdin") : file;
}

// The script's text; on failure prints one line and returns false.
bool readScript(const std::string &file, std::string &text)
{
    try {
        text = SQLParser::stringForFile(sourcePath(file), SQLTextEncoding::UTF8);
        return true;
    } catch (const SQLFileEncodingError &error) {
        std::cerr << "sqlantlr: " << file << ": " << SQLFileEncodingError::Name << ": " << error.what() << "\n";
        return false;
    }
}

int runModel(const std::string &file, bool pretty)
{
    std::string text;
    if (!readScript(file, text)) {
        return exitFailure;
    }
    SQLParser parser;
    KpError error;
    std::unique_ptr<SQLContainer> container = parser.parseString(text, &error);
    if (container == nullptr && error.code == KpErrorUnallocatedTree) {
        // Nothing in the script made a tree (grants or SET lines only, or a
        // script wholly swallowed): an empty schema, printed with its records.
        container = std::make_unique<SQLContainer>();
    }
    if (container == nullptr) {
        std::cerr << "sqlantlr: " << file << ": parse failed: " << error.domain << " " << error.code << ": "
                  << error.message << "\n";
        return exitFailure;
    }
    const nlohmann::ordered_json json = sqlantlr::modelToJson(*container, parser.getExceptionList());
    std::cout << (pretty ? json.dump(2) : json.dump()) << "\n";
    return 0;
}

int runTokens(const std::string &file, bool asJson)
{
    std::string text;
    if (!readScript(file, text)) {
        return exitFailure;
    }
    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString(text);
    if (asJson) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const SQLToken &token : tokens) {
            list.push_back({{"index", token.index},
                            {"type", token.type},
                            {"name", token.name},
                            {"channel", token.channel},
                            {"line", token.line},
                            {"pos", token.pos},
                            {"text", token.text}});
        }
        std::cout << list.dump() << "\n";
        return 0;
    }
    for (const SQLToken &token : tokens) {
        std::cout << token.index << ' ' << token.type << ' ' << token.name << ' ' << token.channel << ' '
                  << token.line << ':' << token.pos << ' ' << nlohmann::json(token.text).dump() << '\n';
    }
    return 0;
}

int runTree(const std::string &file)
{
    std::string text;
    if (!readScript(file, text)) {
        return exitFailure;
    }
    SQLParserC driver;
    KpError error;
    const std::string tree = driver.syntaxTreeForString(text, &error);
    if (error.code != 0) {
        std::cerr << "sqlantlr: " << file << ": parse failed: " << error.domain << " " << error.code << ": "
                  << error.message << "\n";
        return exitFailure;
    }
    std::cout << tree << "\n";
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app{"Imports SQL schema scripts (MySQL, PostgreSQL, Oracle, SQL Server, SQLite) into a schema model.\n"
                 "FILE may be - for standard input. Files are read as UTF-16 after its byte order mark, else as UTF-8, else as Mac OS Roman."};
    app.require_subcommand(1);
    bool trace = false;
    app.add_flag("--trace", trace, "Send the library's traces to standard error");

    std::string file;
    bool pretty = false;
    CLI::App *model = app.add_subcommand(
        "model", "Print the parsed model and the parse's records as one JSON object (exit 0 whenever a model came "
                 "back, 1 when the file cannot be read or the parse failed)");
    model->add_flag("--pretty", pretty, "Indent the JSON");
    model->add_option("FILE", file, "SQL script")->required();

    bool asJson = false;
    CLI::App *tokens = app.add_subcommand(
        "tokens", "Print every token, hidden ones included: index, type, name, channel (99 hidden), line:pos, text");
    tokens->add_flag("--json", asJson,
                     "Print a JSON array of objects with keys index, type, name, channel, line, pos, text");
    tokens->add_option("FILE", file, "SQL script")->required();

    CLI::App *tree = app.add_subcommand("tree", "Print the syntax tree in tree-string form");
    tree->add_option("FILE", file, "SQL script")->required();

    for (CLI::App *sub : {model, tokens, tree}) {
        sub->add_flag("--trace", trace, "Send the library's traces to standard error");
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &e) {
        return app.exit(e);
    } catch (const CLI::ParseError &e) {
        app.exit(e);
        return exitUsage;
    }

    if (trace) {
        SQLAntlrParser::setLogSink([](std::string_view message) { std::cerr << message << '\n'; });
    }
    if (model->parsed()) {
        return runModel(file, pretty);
    }
    if (tokens->parsed()) {
        return runTokens(file, asJson);
    }
    return runTree(file);
}
