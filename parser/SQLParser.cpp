// The facade: file reading, the parse, and the model's post-load resolution.
#include <SQLAntlrParser/SQLParser.h>

#include "Log.h"
#include "TextEncoding.h"

#include <SchemaModel/SchemaModel.h>

#include <fstream>
#include <iterator>
#include <optional>

using sqlantlr::logf;

namespace {

// The file's bytes, or nothing when it cannot be opened or read (a
// directory opens but fails on the first read, which the stream library
// reports by throwing).
std::optional<std::string> readBytes(const std::string &path)
{
    try {
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            return std::nullopt;
        }
        std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        if (file.bad()) {
            return std::nullopt;
        }
        return bytes;
    } catch (const std::ios_base::failure &) {
        return std::nullopt;
    }
}

// UTF-16 text as SQL Server tools save it: a byte order mark (FF FE little
// endian, FE FF big endian) followed by the units. Nothing when the bytes do
// not start with one.
std::optional<std::string> decodeUtf16(const std::string &bytes)
{
    if (bytes.size() < 2) {
        return std::nullopt;
    }
    const auto b0 = static_cast<unsigned char>(bytes[0]);
    const auto b1 = static_cast<unsigned char>(bytes[1]);
    const bool little = b0 == 0xFF && b1 == 0xFE;
    if (!little && !(b0 == 0xFE && b1 == 0xFF)) {
        return std::nullopt;
    }
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const auto lo = static_cast<unsigned char>(bytes[little ? i : i + 1]);
        const auto hi = static_cast<unsigned char>(bytes[little ? i + 1 : i]);
        units.push_back(static_cast<char16_t>(hi << 8 | lo));
    }
    return sqlantlr::utf16ToUtf8(units);
}

// The file's text in one encoding, or nothing when the bytes are not valid in it.
std::optional<std::string> decode(const std::string &bytes, SQLTextEncoding encoding)
{
    if (std::optional<std::string> text = decodeUtf16(bytes)) {
        return text;  // a UTF-16 byte order mark decides whatever encoding was asked for
    }
    if (encoding == SQLTextEncoding::UTF8) {
        if (!sqlantlr::isValidUtf8(bytes)) {
            return std::nullopt;
        }
        return bytes;
    }
    return sqlantlr::macRomanToUtf8(bytes);  // every byte has a character
}

} // namespace

SQLParser::SQLParser() : parser_(SQLParserC::parser()) {}
SQLParser::~SQLParser() = default;

std::unique_ptr<SQLParser> SQLParser::parser()
{
    return std::make_unique<SQLParser>();
}

std::unique_ptr<SQLContainer> SQLParser::parseString(std::string_view sql)
{
    return parseString(sql, nullptr);
}

std::unique_ptr<SQLContainer> SQLParser::parseString(const char *sql)
{
    return parseString(sql, nullptr);
}

std::unique_ptr<SQLContainer> SQLParser::parseString(const char *sql, KpError *error)
{
    KpError failure;
    return finishParse(parser_->parseString(sql, &failure), failure, error);
}

std::unique_ptr<SQLContainer> SQLParser::parseString(std::string_view sql, KpError *error)
{
    KpError failure;
    return finishParse(parser_->parseString(sql, &failure), failure, error);
}

std::unique_ptr<SQLContainer> SQLParser::finishParse(std::unique_ptr<SQLContainer> container, const KpError &failure,
                                                     KpError *error)
{
    if (container == nullptr) {
        logf("Error: %s (%s %d)", failure.message.c_str(), failure.domain.c_str(), failure.code);
        if (error != nullptr) {
            *error = failure;
        }
        return nullptr;
    }
    container->postLoadProcess();
    return container;
}

std::unique_ptr<SQLContainer> SQLParser::parseFile(const std::string &path)
{
    return parseFile(path, nullptr);
}

std::unique_ptr<SQLContainer> SQLParser::parseFile(const std::string &path, KpError *error)
{
    KpError failure;
    return finishParse(parser_->parseFile(path, &failure), failure, error);
}

std::string SQLParser::stringForFile(const std::string &path, SQLTextEncoding encoding)
{
    const std::optional<std::string> bytes = readBytes(path);
    if (bytes) {
        if (std::optional<std::string> text = decode(*bytes, encoding)) {
            return *text;
        }
        logf("falling back to latin encoding");
        if (std::optional<std::string> text = decode(*bytes, SQLTextEncoding::MacOSRoman)) {
            return *text;
        }
    }
    throw SQLFileEncodingError();
}

std::string sqlantlr::scriptFileString(const std::string &path)
{
    return SQLParser::stringForFile(path, SQLTextEncoding::UTF8);
}

const std::vector<SQLParserException> &SQLParser::getExceptionList() const
{
    return parser_->getExceptionList();
}

bool SQLParser::hasExceptions() const
{
    return static_cast<unsigned char>(parser_->getExceptionList().size() & 0xFF) != 0;
}

void SQLParser::displayErrors() const {}
