// A streaming JSON writer: values go to the stream as they are written, with
// no document in memory. The bytes match what nlohmann::json's dump() prints
// (dump() compact, dump(2) pretty), which the golden files are written in.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace sqlantlr {

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

    void value(std::string_view text);
    void value(const char *text) { value(std::string_view(text)); }
    void value(bool flag);
    void value(int64_t number);
    void null();

    // Writes the buffered text to the stream.
    void flush();

private:
    void beforeValue();
    void begin(char bracket);
    void end(char bracket);
    void newline(size_t depth);

    std::ostream &out_;
    bool pretty_;
    bool afterKey_ = false;
    std::string buffer_;
    // Per open object or array: whether it has a member or element yet.
    std::vector<bool> nonEmpty_;
};

// `text` as a JSON string literal, quotes included, escaped as dump() does.
// Bytes that are not UTF-8 become U+FFFD.
void appendJsonString(std::string &out, std::string_view text);

} // namespace sqlantlr
