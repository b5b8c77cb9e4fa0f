// A streaming JSON writer: values go to the stream as they are written, with
// no document in memory. The bytes match what nlohmann::json's dump() prints
// (dump() compact, dump(2) pretty), which the golden files are written in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sqlantlr {

// A member name that JSON prints as it is: ASCII without control characters,
// '"' or '\\'. The writer copies it without escaping. Made from a literal with
// `"name"_key`; declared constexpr, a name that needs escaping does not
// compile, and otherwise the check throws std::invalid_argument.
class JsonKey {
public:
    constexpr explicit JsonKey(std::string_view text) : text_(text)
    {
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            if (byte < 0x20 || byte >= 0x80 || c == '"' || c == '\\') {
                throw std::invalid_argument("JSON member name needs escaping");
            }
        }
    }
    constexpr std::string_view text() const { return text_; }

private:
    std::string_view text_;
};

inline namespace literals {
constexpr JsonKey operator""_key(const char *text, size_t size)
{
    return JsonKey(std::string_view(text, size));
}
} // namespace literals

class JsonWriter {
public:
    // pretty: two-space indentation, one member or element per line.
    JsonWriter(std::ostream &out, bool pretty);
    ~JsonWriter();
    JsonWriter(const JsonWriter &) = delete;
    JsonWriter &operator=(const JsonWriter &) = delete;

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    // The name of the object member whose value is written next.
    void key(std::string_view name);
    // Inline: a model's JSON writes a dozen member names per column, each of
    // a length known where it is written.
    void key(JsonKey name)
    {
        beforeValue();
        const std::string_view text = name.text();
        char *at = room(text.size() + 4);
        *at++ = '"';
        std::memcpy(at, text.data(), text.size());
        at += text.size();
        *at++ = '"';
        *at++ = ':';
        used_ += text.size() + 3;
        if (pretty_) {
            *at = ' ';
            ++used_;
        }
        place_ = Place::afterKey;
    }

    // A member in one step, name and value: the same bytes as key() then
    // value(), with a compact writer's separator, name and value placed at
    // once (an object of many members, such as a column's, is mostly these).
    // Inline, so that each member's name is copied as the constant it is.
    void member(JsonKey name, std::string_view text)
    {
        if (char *at = compactMember(name, stringBound(text.size()))) {
            finishMember(writeString(at, text));
            return;
        }
        key(name);
        value(text);
    }
    void member(JsonKey name, const std::string &text) { member(name, std::string_view(text)); }
    // The text, or null when it is unset.
    void member(JsonKey name, const std::optional<std::string> &text)
    {
        if (text) {
            member(name, std::string_view(*text));
        } else {
            nullMember(name);
        }
    }
    void member(JsonKey name, bool flag)
    {
        if (flag) {
            literalMember(name, "true");
        } else {
            literalMember(name, "false");
        }
    }
    void nullMember(JsonKey name) { literalMember(name, "null"); }
    void emptyObjectMember(JsonKey name) { literalMember(name, "{}"); }
    void emptyArrayMember(JsonKey name) { literalMember(name, "[]"); }

    void value(std::string_view text);
    void value(const char *text) { value(std::string_view(text)); }
    void value(bool flag)
    {
        beforeValue();
        if (flag) {
            appendLiteral("true");
        } else {
            appendLiteral("false");
        }
    }
    void value(int64_t number);
    void null()
    {
        beforeValue();
        appendLiteral("null");
    }

    // Writes the buffered text to the stream.
    void flush();

    // Room a string needs in the worst case, quotes included: a control
    // character becomes six bytes (\u00XX).
    static constexpr size_t stringBound(size_t length) { return length * 6 + 2; }

private:
    // Writes `text` as a JSON string literal at `dest`, which has room for
    // stringBound(text.size()) bytes; returns the end.
    static char *writeString(char *dest, std::string_view text);

    // Where the writer stands: what goes before the next value.
    enum class Place { first, next, afterKey };

    // Room for `size` more bytes at the end of the buffer, flushing or
    // growing it as needed; the caller writes them and moves used_ on.
    char *room(size_t size)
    {
        return buffer_.size() - used_ >= size ? buffer_.data() + used_ : makeRoom(size);
    }
    char *makeRoom(size_t size);
    // A compact writer's separator and `"name":`, written where the member's
    // value gets `valueRoom` bytes of room after them; the caller writes the
    // value there and hands its end to finishMember. nullptr when pretty: the
    // caller takes key() and value(), which break lines and indent.
    char *compactMember(JsonKey name, size_t valueRoom)
    {
        if (pretty_) {
            return nullptr;
        }
        const std::string_view text = name.text();
        char *at = room(text.size() + 4 + valueRoom);
        if (place_ == Place::next) {
            *at++ = ',';
        }
        *at++ = '"';
        std::memcpy(at, text.data(), text.size());
        at += text.size();
        *at++ = '"';
        *at++ = ':';
        place_ = Place::next;
        return at;
    }
    void finishMember(const char *end) { used_ = static_cast<size_t>(end - buffer_.data()); }
    // A member whose value is a literal of N - 1 bytes (true, null, {}).
    template <size_t N>
    void literalMember(JsonKey name, const char (&text)[N])
    {
        if (char *at = compactMember(name, N - 1)) {
            finishMember(copyLiteral(at, text));
            return;
        }
        key(name);
        beforeValue();
        appendLiteral(text);
    }
    void append(std::string_view text);
    // Writes a literal of N - 1 bytes (true, false, null).
    template <size_t N>
    void appendLiteral(const char (&text)[N])
    {
        copyLiteral(room(N - 1), text);
        used_ += N - 1;
    }
    // Copies a literal of N - 1 bytes to `at`; returns its end.
    template <size_t N>
    static char *copyLiteral(char *at, const char (&text)[N])
    {
        for (size_t i = 0; i + 1 < N; ++i) {
            at[i] = text[i];
        }
        return at + N - 1;
    }
    // What goes before a member or element: nothing after a key or at the
    // top, else a comma unless it is the first, and when pretty a line break
    // and indentation.
    void beforeValue()
    {
        const Place place = place_;
        place_ = Place::next;
        if (place == Place::afterKey || depth_ == 0) {
            return;
        }
        if (pretty_) {
            breakLine(place);
        } else if (place == Place::next) {
            *room(1) = ',';
            ++used_;
        }
    }
    void breakLine(Place place);
    // Inline: a model's JSON opens and closes an object per column.
    void begin(char bracket)
    {
        beforeValue();
        *room(1) = bracket;
        ++used_;
        place_ = Place::first;
        ++depth_;
    }
    void end(char bracket)
    {
        const bool hadItems = place_ != Place::first;
        --depth_;
        if (pretty_ && hadItems) {
            endOnNewLine(bracket);
        } else {
            *room(1) = bracket;
            ++used_;
        }
        place_ = Place::next;
    }
    // A pretty writer's closing bracket, on a line of its own.
    void endOnNewLine(char bracket);

    std::ostream &out_;
    bool pretty_;
    Place place_ = Place::first;
    size_t depth_ = 0;  // open objects and arrays
    std::vector<char> buffer_;
    size_t used_ = 0;
};

// `text` as a JSON string literal, quotes included, escaped as dump() does.
// Bytes that are not UTF-8 become U+FFFD.
void appendJsonString(std::string &out, std::string_view text);

} // namespace sqlantlr
