#include <SchemaModel/Names.h>

#include "NameLookup.h"

#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <functional>

namespace SchemaModel {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

bool isWhiteSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');  // \t \n \v \f \r
}

std::string_view stripWhiteSpace(std::string_view text)
{
    // Most names have no blank at either end.
    if (!text.empty() && !isWhiteSpace(text.front()) && !isWhiteSpace(text.back()))
        return text;
    const auto first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(kWhiteSpace);
    return text.substr(first, last - first + 1);
}

char closingQuoteFor(char open)
{
    switch (open) {
    case '"':
    case '`':
    case '\'':
        return open;
    case '[':
        return ']';
    default:
        return '\0';
    }
}

// Undoubles `close` in the body of a quoted identifier. Fails when the body
// holds a lone closing quote, i.e. the text is not one quoted identifier
// (e.g. "s"."t").
bool unquoteBody(std::string_view body, char close, std::string &out)
{
    out.clear();
    out.reserve(body.size());
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (body[i] == close) {
            if (i + 1 >= body.size() || body[i + 1] != close)
                return false;
            ++i;
        }
        out += body[i];
    }
    return true;
}

bool isAscii(std::string_view text)
{
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

icu::UnicodeString fromUtf8(std::string_view text)
{
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

} // namespace

std::string trim(std::string_view name)
{
    if (const std::optional<std::string_view> view = detail::trimmedView(name))
        return std::string(*view);
    // A quoted name with a doubled quote inside.
    const std::string_view stripped = stripWhiteSpace(name);
    std::string body;
    if (unquoteBody(stripped.substr(1, stripped.size() - 2), closingQuoteFor(stripped.front()), body))
        return std::string(stripWhiteSpace(body));
    return std::string(stripped);
}

namespace detail {

std::optional<std::string_view> trimmedView(std::string_view name)
{
    const std::string_view stripped = stripWhiteSpace(name);
    if (stripped.size() >= 2) {
        const char close = closingQuoteFor(stripped.front());
        if (close != '\0' && stripped.back() == close) {
            const std::string_view body = stripped.substr(1, stripped.size() - 2);
            if (body.find(close) != std::string_view::npos)
                return std::nullopt;
            return stripWhiteSpace(body);
        }
    }
    return stripped;
}

} // namespace detail

bool namesEqualIgnoringCase(std::string_view a, std::string_view b)
{
    if (a == b)
        return true;
    if (isAscii(a) && isAscii(b)) {
        if (a.size() != b.size())
            return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (detail::asciiLower(a[i]) != detail::asciiLower(b[i]))
                return false;
        return true;
    }
    return fromUtf8(a).caseCompare(fromUtf8(b), U_FOLD_CASE_DEFAULT) == 0;
}

namespace detail {

std::string foldedName(std::string_view name)
{
    if (isAscii(name)) {
        std::string folded(name);
        for (char &c : folded)
            c = asciiLower(c);
        return folded;
    }
    std::string folded;
    fromUtf8(name).foldCase(U_FOLD_CASE_DEFAULT).toUTF8String(folded);
    return folded;
}

bool foldsToAfterEnds(std::string_view name, std::string_view folded)
{
    if (!isAscii(name))
        return foldedName(name) == folded;
    if (name.size() != folded.size())
        return false;
    for (std::size_t i = 0; i < name.size(); ++i)
        if (asciiLower(name[i]) != folded[i])
            return false;
    return true;
}

std::uint32_t FoldedKey::hash() const
{
    const std::size_t full = std::hash<std::string_view>()(folded);
    return static_cast<std::uint32_t>(full ^ (full >> 16 >> 16));
}

} // namespace detail

QualifiedName splitQualifiedName(std::string_view qualifiedName)
{
    std::size_t lastDot = std::string_view::npos;
    char inQuote = '\0'; // closing character of the quoted part we are in
    for (std::size_t i = 0; i < qualifiedName.size(); ++i) {
        const char c = qualifiedName[i];
        if (inQuote != '\0') {
            if (c == inQuote) {
                if (i + 1 < qualifiedName.size() && qualifiedName[i + 1] == inQuote)
                    ++i; // doubled quote: still inside
                else
                    inQuote = '\0';
            }
        } else if (c == '.') {
            lastDot = i;
        } else {
            inQuote = closingQuoteFor(c);
        }
    }

    QualifiedName result;
    if (lastDot == std::string_view::npos) {
        result.name = trim(qualifiedName);
        return result;
    }
    std::string schema = trim(qualifiedName.substr(0, lastDot));
    if (!schema.empty())
        result.schema = std::move(schema);
    result.name = trim(qualifiedName.substr(lastDot + 1));
    return result;
}

} // namespace SchemaModel
