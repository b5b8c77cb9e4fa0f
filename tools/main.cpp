// sqlantlr: command-line access to the SQL script importer.
//
//   sqlantlr model [--pretty|--compact] FILE...   the merged model and records as JSON
//   sqlantlr check [--max N] FILE...              records as FILE:LINE:COL: message
//   sqlantlr diagram [--format F] [-o OUT] FILE...  an entity-relationship diagram
//   sqlantlr tokens [--json] FILE                 every token of the script
//   sqlantlr tree FILE                            the syntax tree
//
// FILE "-" reads standard input. --trace sends the library's traces to
// standard error; --quiet silences progress, notes and warnings there.
#include "Diagram.h"
#include "JsonWriter.h"
#include "ModelJson.h"
#include "ParseProgress.h"
#include "Versions.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <functional>
#include <limits>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr int exitRecords = 3;

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

std::string displayName(const std::string &file)
{
    return file == "-" ? std::string("<stdin>") : file;
}

// What the commands that read whole models share.
struct InputOptions {
    std::vector<std::string> files;
    bool quiet = false;
};

// A record of a parse with the file it came from.
struct FileRecord {
    std::string file;
    std::string reason;  // "[line:pos] message"
};

// The scripts parsed one after the other and merged into one model, in
// order, with references resolved across them.
struct LoadedModel {
    std::unique_ptr<SQLContainer> container = std::make_unique<SQLContainer>();
    std::vector<FileRecord> records;
    int failures = 0;  // files that could not be read or parsed
};

// Parses every file; a file that cannot be read or parsed gets one line on
// standard error and counts as a failure. With stopOnFailure the first
// failure ends the loading.
LoadedModel loadModel(const InputOptions &input, bool stopOnFailure)
{
    LoadedModel loaded;
    SQLParser parser;
    for (const std::string &file : input.files) {
        // A named file is parsed in place, without its text in memory;
        // standard input is read whole.
        const bool fromStdin = file == "-";
        std::string text;
        if (!fromStdin || readScript(file, text)) {
            const std::size_t before = parser.getExceptionList().size();
            std::error_code sizeError;
            const std::uintmax_t fileSize = fromStdin ? text.size() : std::filesystem::file_size(file, sizeError);
            sqlantlr::ParseProgress progress(parser.driver(), displayName(file), sizeError ? 0 : fileSize, input.quiet);
            KpError error;
            std::unique_ptr<SQLContainer> container;
            bool read = true;
            try {
                container = fromStdin ? parser.parseString(text, &error) : parser.parseFile(file, &error);
            } catch (const SQLFileEncodingError &failure) {
                std::cerr << "sqlantlr: " << file << ": " << SQLFileEncodingError::Name << ": " << failure.what()
                          << "\n";
                read = false;
            }
            const auto &list = parser.getExceptionList();
            for (std::size_t i = before; i < list.size(); ++i) {
                loaded.records.push_back({file, list[i].reason});
            }
            if (container != nullptr) {
                loaded.container->append(std::move(*container));
                continue;
            }
            if (read && error.code == KpErrorUnallocatedTree) {
                // Nothing in the script made a tree (grants or SET lines only,
                // or a script wholly swallowed): an empty schema, kept with its
                // records.
                continue;
            }
            if (read) {
                std::cerr << "sqlantlr: " << file << ": parse failed: " << error.domain << " " << error.code << ": "
                          << error.message << "\n";
            }
        }
        ++loaded.failures;
        if (stopOnFailure) {
            break;
        }
    }
    loaded.container->postLoadProcess();
    return loaded;
}

// The process ends once its output is written: the model is left for the
// system to reclaim with the process instead of being taken apart object by
// object (a few percent of a large import). It stays reachable, so leak
// checkers do not count it.
void keepUntilExit(std::unique_ptr<SQLContainer> model)
{
    static std::unique_ptr<SQLContainer> *const kept = new std::unique_ptr<SQLContainer>;
    *kept = std::move(model);
}

int runModel(const InputOptions &input, bool pretty)
{
    LoadedModel loaded = loadModel(input, true);
    if (loaded.failures > 0) {
        return exitFailure;
    }
    // One file keeps the records as the parse wrote them; with several, each
    // names its file.
    std::vector<SQLParserException> records;
    for (const FileRecord &record : loaded.records) {
        records.push_back({"ParsingException", input.files.size() > 1 ? displayName(record.file) + ": " + record.reason
                                                                      : record.reason});
    }
    sqlantlr::writeModelJson(std::cout, *loaded.container, records, pretty);
    std::cout << "\n";
    keepUntilExit(std::move(loaded.container));
    return 0;
}

// "[line:pos] message" as "FILE:LINE:COL: message", the column from 1.
// Parsed by hand: a record's message may be long.
std::string compilerStyle(const FileRecord &record)
{
    const std::string &reason = record.reason;
    const std::size_t colon = reason.find(':');
    const std::size_t close = reason.find(']');
    const auto digits = [&](std::size_t from, std::size_t to) {
        return to > from && to - from <= 9 &&
               std::all_of(reason.begin() + static_cast<std::ptrdiff_t>(from),
                           reason.begin() + static_cast<std::ptrdiff_t>(to),
                           [](unsigned char c) { return std::isdigit(c) != 0; });
    };
    if (reason.empty() || reason[0] != '[' || colon == std::string::npos || close == std::string::npos ||
        !digits(1, colon) || !digits(colon + 1, close)) {
        return displayName(record.file) + ": " + reason;
    }
    const std::size_t text = close + 1 < reason.size() && reason[close + 1] == ' ' ? close + 2 : close + 1;
    return displayName(record.file) + ":" + reason.substr(1, colon - 1) + ":" +
           std::to_string(std::stol(reason.substr(colon + 1, close - colon - 1)) + 1) + ": " + reason.substr(text);
}

int runCheck(const InputOptions &input, std::size_t maxRecords)
{
    const LoadedModel loaded = loadModel(input, false);
    std::size_t printed = 0;
    for (const FileRecord &record : loaded.records) {
        if (printed == maxRecords) {
            break;
        }
        std::cout << compilerStyle(record) << "\n";
        ++printed;
    }
    if (loaded.failures > 0) {
        return exitFailure;
    }
    return loaded.records.empty() ? 0 : exitRecords;
}

struct DiagramRequest {
    std::string format;  // svg, png, dot or mermaid; empty: from the output's extension
    std::string output;  // empty: standard output
    sqlantlr::DiagramOptions filters;
};

std::string formatFor(const DiagramRequest &request)
{
    if (!request.format.empty()) {
        return request.format;
    }
    const std::string extension = std::filesystem::path(request.output).extension().string();
    if (extension == ".png") {
        return "png";
    }
    if (extension == ".dot" || extension == ".gv") {
        return "dot";
    }
    if (extension == ".mmd" || extension == ".mermaid") {
        return "mermaid";
    }
    return "svg";
}

int runDiagram(const InputOptions &input, const DiagramRequest &request)
{
    const std::string format = formatFor(request);
    if (format == "png" && request.output.empty() && isatty(STDOUT_FILENO)) {
        std::cerr << "sqlantlr: not writing a PNG picture to a terminal; use -o FILE\n";
        return exitUsage;
    }
    LoadedModel loaded = loadModel(input, true);
    if (loaded.failures > 0) {
        return exitFailure;
    }
    const sqlantlr::DiagramGraph graph = sqlantlr::collectDiagram(*loaded.container, request.filters);
    std::string picture;
    if (format == "mermaid") {
        picture = sqlantlr::diagramMermaid(graph);
    } else if (format == "dot") {
        picture = sqlantlr::diagramDot(graph);
    } else {
        const sqlantlr::RenderResult rendered = sqlantlr::renderDot(sqlantlr::diagramDot(graph), format);
        if (!rendered.ok) {
            std::cerr << "sqlantlr: Graphviz: " << rendered.messages;
            return exitFailure;
        }
        if (!input.quiet && !rendered.messages.empty()) {
            std::cerr << "sqlantlr: Graphviz: " << rendered.messages;
        }
        picture = rendered.data;
    }
    if (!input.quiet && !loaded.records.empty()) {
        std::cerr << "sqlantlr: " << loaded.records.size() << " record(s); `sqlantlr check` lists them\n";
    }
    if (request.output.empty()) {
        std::cout.write(picture.data(), static_cast<std::streamsize>(picture.size()));
        std::cout.flush();
        return std::cout ? 0 : exitFailure;
    }
    std::ofstream out(request.output, std::ios::binary);
    out.write(picture.data(), static_cast<std::streamsize>(picture.size()));
    out.close();
    if (!out) {
        std::cerr << "sqlantlr: " << request.output << ": cannot write the diagram\n";
        return exitFailure;
    }
    return 0;
}

// Calls fromFile with a named file, which is then read in place, or
// fromText with the text of standard input; false, with one line printed,
// when the script cannot be read (before anything is written).
template <typename FromFile, typename FromText>
bool withScript(const std::string &file, const FromFile &fromFile, const FromText &fromText)
{
    if (file == "-") {
        std::string text;
        if (!readScript(file, text)) {
            return false;
        }
        fromText(text);
        return true;
    }
    try {
        fromFile(file);
        return true;
    } catch (const SQLFileEncodingError &error) {
        std::cerr << "sqlantlr: " << file << ": " << SQLFileEncodingError::Name << ": " << error.what() << "\n";
        return false;
    }
}

// Tokens and trees are written as the parse makes them, statement by
// statement, so that memory does not grow with the script.
int runTokens(const std::string &file, bool asJson, bool reference)
{
    SQLParserC driver;
    driver.setUsesTokenFastPath(!reference);
    std::function<void(const SQLToken &)> each;
    std::optional<sqlantlr::JsonWriter> json;  // made at the first token or at the end
    const auto openArray = [&json] {
        if (!json) {
            json.emplace(std::cout, false);
            json->beginArray();
        }
    };
    std::string quoted;
    if (asJson) {
        using namespace sqlantlr::literals;
        each = [&](const SQLToken &token) {
            openArray();
            json->beginObject();
            json->key("index"_key);
            json->value(int64_t{token.index});
            json->key("type"_key);
            json->value(int64_t{token.type});
            json->key("name"_key);
            json->value(token.name);
            json->key("channel"_key);
            json->value(int64_t{token.channel});
            json->key("line"_key);
            json->value(int64_t{token.line});
            json->key("pos"_key);
            json->value(int64_t{token.pos});
            json->key("text"_key);
            json->value(token.text);
            json->endObject();
        };
    } else {
        each = [&quoted](const SQLToken &token) {
            quoted.clear();
            sqlantlr::appendJsonString(quoted, token.text);
            std::cout << token.index << ' ' << token.type << ' ' << token.name << ' ' << token.channel << ' '
                      << token.line << ':' << token.pos << ' ' << quoted << '\n';
        };
    }
    if (!withScript(
            file, [&](const std::string &path) { driver.forEachTokenOfFile(path, each); },
            [&](const std::string &text) { driver.forEachToken(text, each); })) {
        return exitFailure;
    }
    if (asJson) {
        openArray();
        json->endArray();
        json.reset();
        std::cout << "\n";
    }
    return 0;
}

int runTree(const std::string &file)
{
    SQLParserC driver;
    KpError error;
    bool written = false;
    const auto write = [](std::string_view piece) {
        std::cout.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    };
    if (!withScript(
            file, [&](const std::string &path) { written = driver.writeSyntaxTreeOfFile(path, write, &error); },
            [&](const std::string &text) { written = driver.writeSyntaxTree(text, write, &error); })) {
        return exitFailure;
    }
    if (!written) {
        std::cerr << "sqlantlr: " << file << ": parse failed: " << error.domain << " " << error.code << ": "
                  << error.message << "\n";
        return exitFailure;
    }
    std::cout << "\n";
    return 0;
}

std::string versionText()
{
    return "sqlantlr " SQLANTLR_VERSION "\n" + sqlantlr::libraryVersions();
}

void addInputOptions(CLI::App &command, InputOptions &input, bool &trace)
{
    command.add_option("FILE", input.files, "SQL scripts, parsed in order into one model (- is standard input)")
        ->required()
        ->type_name("FILE");
    command.add_flag("--trace", trace, "Send the library's traces to standard error");
    command.add_flag("-q,--quiet", input.quiet, "No progress line, notes or warnings on standard error");
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app{"Imports SQL schema scripts (MySQL, PostgreSQL, Oracle, SQL Server, SQLite) into a schema model.\n"
                 "FILE may be - for standard input. Files are read as UTF-16 after its byte order mark, else as UTF-8, else as Mac OS Roman.\n"
                 "Exit codes: 0 success (also a script whose statements are all dropped); 1 a file cannot be read or parsed, or the output cannot be written;\n"
                 "2 usage error; 3 `check` found records."};
    app.require_subcommand(1);
    // Made only when asked for: finding Graphviz's version loads its plugins,
    // which cost more than parsing a small script.
    app.set_version_flag("--version", std::function<std::string()>(versionText),
                         "Print the versions of the tool and its libraries");
    bool trace = false;
    InputOptions input;
    app.add_flag("--trace", trace, "Send the library's traces to standard error");
    app.add_flag("-q,--quiet", input.quiet, "No progress line, notes or warnings on standard error");

    bool pretty = false;
    bool compact = false;
    CLI::App *model = app.add_subcommand(
        "model", "Print the model merged from all FILEs and the parse's records as one JSON object (exit 0 "
                 "whenever a model came back, 1 when a file cannot be read or a parse failed). With several "
                 "files each record starts with its file's name");
    CLI::Option *prettyFlag = model->add_flag("--pretty", pretty, "Indent the JSON");
    model->add_flag("--compact", compact, "One line of JSON (the default)")->excludes(prettyFlag);
    addInputOptions(*model, input, trace);

    std::size_t maxRecords = std::numeric_limits<std::size_t>::max();
    CLI::App *check = app.add_subcommand(
        "check", "Print every record as FILE:LINE:COL: message (column from 1); exit 0 without records, 3 with "
                 "records, 1 when a file cannot be read or parsed (the other files are still checked)");
    check->add_option("--max", maxRecords, "Stop after N records")->check(CLI::Range(std::size_t{1}, std::size_t{1000000000}))
        ->type_name("N");
    addInputOptions(*check, input, trace);

    DiagramRequest request;
    std::string schemaFilter;
    std::string tablesFilter;
    CLI::App *diagram = app.add_subcommand(
        "diagram", "Draw an entity-relationship diagram of the model merged from all FILEs: tables and views as "
                   "boxes, one edge per foreign key, dashed stubs for targets not drawn. Exit 0 when written, 1 "
                   "when a file cannot be read or parsed or the picture cannot be made or written");
    diagram->add_option("--format", request.format,
                        "svg (default), png, dot (Graphviz source) or mermaid (erDiagram for Markdown); without "
                        "it, -o's extension .png, .dot/.gv or .mmd picks the format")
        ->check(CLI::IsMember({"svg", "png", "dot", "mermaid"}))
        ->type_name("FORMAT");
    diagram->add_option("-o,--output", request.output, "Write to OUT instead of standard output")->type_name("OUT");
    diagram->add_option("--schema", schemaFilter, "Only objects of schema NAME (any case)")->type_name("NAME");
    diagram->add_option("--tables", tablesFilter,
                        "Only objects whose name or schema.name contains a match of REGEX (ECMAScript, any case)")
        ->type_name("REGEX");
    addInputOptions(*diagram, input, trace);

    std::string file;
    bool asJson = false;
    bool reference = false;
    CLI::App *tokens = app.add_subcommand(
        "tokens", "Print every token, hidden ones included: index, type, name, channel (99 hidden), line:pos, text");
    tokens->add_flag("--json", asJson,
                     "Print a JSON array of objects with keys index, type, name, channel, line, pos, text");
    tokens->add_flag("--reference", reference,
                     "Cut every token with the generated lexer alone (slower; the tokens are the same)");
    tokens->add_option("FILE", file, "SQL script")->required();

    CLI::App *tree = app.add_subcommand("tree", "Print the syntax tree in tree-string form");
    tree->add_option("FILE", file, "SQL script")->required();

    for (CLI::App *sub : {tokens, tree}) {
        sub->add_flag("--trace", trace, "Send the library's traces to standard error");
    }

    try {
        app.parse(argc, argv);
        if (!schemaFilter.empty()) {
            request.filters.schema = schemaFilter;
        }
        if (!tablesFilter.empty()) {
            request.filters.tables = std::regex(tablesFilter, std::regex::ECMAScript | std::regex::icase);
        }
    } catch (const CLI::CallForHelp &e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion &e) {
        return app.exit(e);
    } catch (const CLI::ParseError &e) {
        app.exit(e);
        return exitUsage;
    } catch (const std::regex_error &e) {
        std::cerr << "sqlantlr: --tables: not a regular expression: " << e.what() << "\n";
        return exitUsage;
    }

    if (trace) {
        SQLAntlrParser::setLogSink([](std::string_view message) { std::cerr << message << '\n'; });
    }
    if (model->parsed()) {
        return runModel(input, pretty);
    }
    if (check->parsed()) {
        return runCheck(input, maxRecords);
    }
    if (diagram->parsed()) {
        return runDiagram(input, request);
    }
    if (tokens->parsed()) {
        return runTokens(file, asJson, reference);
    }
    return runTree(file);
}
