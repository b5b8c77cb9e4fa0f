#include "JsonWriter.h"

namespace sqlantlr {

namespace {

constexpr size_t flushThreshold = 1 << 16;

// Length of the well-formed UTF-8 sequence starting at text[i], or 0.
size_t utf8Length(std::string_view text, size_t i)
{
    const auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
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
    if (i + length > text.size() || byte(i + 1) < low || byte(i + 1) > high) {
        return 0;
    }
    for (size_t k = 2; k < length; ++k) {
        if (byte(i + k) < 0x80 || byte(i + k) > 0xBF) {
            return 0;
        }
    }
    return length;
}

} // namespace

void appendJsonString(std::string &out, std::string_view text)
{
    static const char hex[] = "0123456789abcdef";
    out += '"';
    size_t plain = 0;  // start of the run of bytes copied as they are
    for (size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c != '"' && c != '\\' && c < 0x80) {
            ++i;
            continue;
        }
        if (c >= 0x80) {
            if (const size_t length = utf8Length(text, i)) {
                i += length;
                continue;
            }
        }
        out.append(text.data() + plain, i - plain);
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                out += "\\u00";
                out += hex[c >> 4];
                out += hex[c & 0xF];
            } else {
                out += "\xEF\xBF\xBD";  // not UTF-8: the replacement character
            }
        }
        plain = ++i;
    }
    out.append(text.data() + plain, text.size() - plain);
    out += '"';
}

JsonWriter::JsonWriter(std::ostream &out, bool pretty) : out_(out), pretty_(pretty)
{
}

JsonWriter::~JsonWriter()
{
    flush();
}

void JsonWriter::flush()
{
    out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
}

void JsonWriter::newline(size_t depth)
{
    buffer_ += '\n';
    buffer_.append(depth * 2, ' ');
}

void JsonWriter::beforeValue()
{
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (nonEmpty_.empty()) {
        return;
    }
    if (nonEmpty_.back()) {
        buffer_ += ',';
    }
    nonEmpty_.back() = true;
    if (pretty_) {
        newline(nonEmpty_.size());
    }
    if (buffer_.size() >= flushThreshold) {
        flush();
    }
}

void JsonWriter::key(std::string_view name)
{
    beforeValue();
    appendJsonString(buffer_, name);
    buffer_ += pretty_ ? ": " : ":";
    afterKey_ = true;
}

void JsonWriter::begin(char bracket)
{
    beforeValue();
    buffer_ += bracket;
    nonEmpty_.push_back(false);
}

void JsonWriter::end(char bracket)
{
    const bool hadItems = nonEmpty_.back();
    nonEmpty_.pop_back();
    if (pretty_ && hadItems) {
        newline(nonEmpty_.size());
    }
    buffer_ += bracket;
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
    appendJsonString(buffer_, text);
}

void JsonWriter::value(bool flag)
{
    beforeValue();
    buffer_ += flag ? "true" : "false";
}

void JsonWriter::value(int64_t number)
{
    beforeValue();
    buffer_ += std::to_string(number);
}

void JsonWriter::null()
{
    beforeValue();
    buffer_ += "null";
}

} // namespace sqlantlr
