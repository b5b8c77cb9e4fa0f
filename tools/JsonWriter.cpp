#include "JsonWriter.h"

#include <array>
#include <charconv>
#include <cstring>

namespace sqlantlr {

namespace {

// The buffer's size: it goes to the stream each time it fills up.
constexpr size_t bufferSize = 1 << 16;

// Bytes copied as they are without a further look: ASCII other than control
// characters, '"' and '\\'.
constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> plain{};
    for (size_t c = 0x20; c < 0x80; ++c) {
        plain[c] = c != '"' && c != '\\';
    }
    return plain;
}();

// Whether any of the eight bytes in `word` is not a plain byte. A term has a
// high bit set only if some byte matches (a borrow starts only at a matching
// byte), so the answer is exact.
bool hasSpecialByte(uint64_t word)
{
    constexpr uint64_t ones = 0x0101010101010101;
    constexpr uint64_t highs = ones * 0x80;
    const auto hasZero = [&](uint64_t x) { return (x - ones) & ~x; };
    const uint64_t control = (word - ones * 0x20) & ~word;
    return ((control | hasZero(word ^ (ones * '"')) | hasZero(word ^ (ones * '\\')) | word) & highs) != 0;
}

uint64_t eightBytes(const char *at)
{
    uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// Length of the well-formed UTF-8 sequence starting at `at`, or 0.
size_t utf8Length(const char *at, const char *end)
{
    const auto byte = [&](size_t k) { return static_cast<unsigned char>(at[k]); };
    const unsigned char lead = byte(0);
    size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (static_cast<size_t>(end - at) < length || byte(1) < low || byte(1) > high) {
        return 0;
    }
    for (size_t k = 2; k < length; ++k) {
        if (byte(k) < 0x80 || byte(k) > 0xBF) {
            return 0;
        }
    }
    return length;
}

char *copy(char *dest, const char *begin, const char *end)
{
    const auto size = static_cast<size_t>(end - begin);
    std::memcpy(dest, begin, size);
    return dest + size;
}

char *copy(char *dest, std::string_view text)
{
    return copy(dest, text.data(), text.data() + text.size());
}

// The escape dump() writes for a byte that is not copied as it is.
char *escapeByte(char *dest, unsigned char c)
{
    static const char hex[] = "0123456789abcdef";
    switch (c) {
    case '"': return copy(dest, "\\\"");
    case '\\': return copy(dest, "\\\\");
    case '\b': return copy(dest, "\\b");
    case '\f': return copy(dest, "\\f");
    case '\n': return copy(dest, "\\n");
    case '\r': return copy(dest, "\\r");
    case '\t': return copy(dest, "\\t");
    default:
        if (c < 0x20) {
            dest = copy(dest, "\\u00");
            *dest++ = hex[c >> 4];
            *dest++ = hex[c & 0xF];
            return dest;
        }
        return copy(dest, "\xEF\xBF\xBD");  // not UTF-8: the replacement character
    }
}

// A line break and the indentation of `depth` levels (two spaces each).
char *lineBreak(char *at, size_t depth)
{
    *at++ = '\n';
    std::memset(at, ' ', depth * 2);
    return at + depth * 2;
}

// Writes `text` as a JSON string literal at `dest`, which has room for
// JsonWriter::stringBound(text.size()) bytes, and returns the end. Runs of
// bytes that need no escape are found eight bytes at a time and copied whole.
char *writeJsonString(char *dest, std::string_view text)
{
    const char *at = text.data();
    const char *const end = at + text.size();
    const char *run = at;  // start of the bytes copied as they are
    *dest++ = '"';
    for (;;) {
        while (end - at >= 8 && !hasSpecialByte(eightBytes(at))) {
            at += 8;
        }
        while (at != end && plainBytes[static_cast<unsigned char>(*at)]) {
            ++at;
        }
        if (at == end) {
            break;
        }
        const auto c = static_cast<unsigned char>(*at);
        if (c >= 0x80) {
            if (const size_t length = utf8Length(at, end)) {
                at += length;
                continue;
            }
        }
        dest = escapeByte(copy(dest, run, at), c);
        run = ++at;
    }
    dest = copy(dest, run, end);
    *dest++ = '"';
    return dest;
}

} // namespace

void appendJsonString(std::string &out, std::string_view text)
{
    const size_t start = out.size();
    out.resize(start + JsonWriter::stringBound(text.size()));
    const char *end = writeJsonString(&out[start], text);
    out.resize(static_cast<size_t>(end - out.data()));
}

JsonWriter::JsonWriter(std::ostream &out, bool pretty) : out_(out), pretty_(pretty), buffer_(bufferSize)
{
}

JsonWriter::~JsonWriter()
{
    flush();
}

void JsonWriter::flush()
{
    out_.write(buffer_.data(), static_cast<std::streamsize>(used_));
    used_ = 0;
}

char *JsonWriter::makeRoom(size_t size)
{
    flush();
    if (buffer_.size() < size) {
        buffer_.resize(size);
    }
    return buffer_.data();
}

void JsonWriter::append(std::string_view text)
{
    copy(room(text.size()), text);
    used_ += text.size();
}

void JsonWriter::breakLine(Place place)
{
    char *const start = room(2 + depth_ * 2);
    char *at = start;
    if (place == Place::next) {
        *at++ = ',';
    }
    at = lineBreak(at, depth_);
    used_ += static_cast<size_t>(at - start);
}

void JsonWriter::key(std::string_view name)
{
    value(name);
    append(pretty_ ? ": " : ":");
    place_ = Place::afterKey;
}

void JsonWriter::endOnNewLine(char bracket)
{
    char *const start = room(2 + depth_ * 2);
    char *at = lineBreak(start, depth_);
    *at++ = bracket;
    used_ += static_cast<size_t>(at - start);
}

void JsonWriter::beginObject()
{
    begin('{');
}

void JsonWriter::endObject()
{
    end('}');
}

void JsonWriter::beginArray()
{
    begin('[');
}

void JsonWriter::endArray()
{
    end(']');
}

void JsonWriter::value(std::string_view text)
{
    beforeValue();
    char *const start = room(stringBound(text.size()));
    used_ += static_cast<size_t>(writeJsonString(start, text) - start);
}

char *JsonWriter::writeString(char *dest, std::string_view text)
{
    return writeJsonString(dest, text);
}

void JsonWriter::value(int64_t number)
{
    beforeValue();
    constexpr size_t maxDigits = 20;  // "-9223372036854775808"
    char *const start = room(maxDigits);
    used_ += static_cast<size_t>(std::to_chars(start, start + maxDigits, number).ptr - start);
}

} // namespace sqlantlr
