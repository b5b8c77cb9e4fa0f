// The UTF-16 text of a script file for a parse that does not hold it in
// memory: decoded piece by piece into an unlinked temporary file and mapped
// from there. The parse reads the mapping in place, exactly as it reads text
// decoded in memory; the pages it has gone past are dropped from the
// process's memory and, should anything look back at them, read again from
// the file. Memory then follows the statement at hand, not the script.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace sqlantlr {

class ScriptFileText {
public:
    // The text of the file as SQLParser::stringForFile reads it (UTF-8, else
    // Mac OS Roman for the whole file) and the driver prepares it (no
    // leading byte order mark, no NUL characters). nullptr when the file is
    // not a regular file that can be read, or starts with a UTF-16 byte
    // order mark: those are read whole, as before.
    static std::unique_ptr<ScriptFileText> open(const std::string &path);
    // The text of a UTF-8 string as the driver prepares it (invalid
    // sequences as U+FFFD, no leading byte order mark, no NUL characters),
    // held the same way, so that a parse of a long string need not hold it
    // twice in memory. nullptr without a usable temporary file.
    static std::unique_ptr<ScriptFileText> fromUtf8(std::string_view text);

    ~ScriptFileText();
    ScriptFileText(const ScriptFileText &) = delete;
    ScriptFileText &operator=(const ScriptFileText &) = delete;

    std::u16string_view units() const { return {data_, size_}; }

    // Drops the whole pages before `before` from memory once enough of them
    // have gathered; reading them later reads the file again.
    void releaseBefore(const char16_t *before);
    // Drops every page before `before` now (for the tests).
    void releaseAllBefore(const char16_t *before);

private:
    ScriptFileText() = default;
    // Decodes the pieces nextPiece gives (UTF-8 or, with utf8 false, Mac OS
    // Roman; at most `capacity` bytes in all, each piece ending after an
    // ASCII byte) into a mapped temporary file.
    static std::unique_ptr<ScriptFileText> decode(std::size_t capacity,
                                                  const std::function<bool(std::string_view &)> &nextPiece,
                                                  bool utf8);

    const char16_t *data_ = nullptr;
    std::size_t size_ = 0;      // units
    std::size_t mapped_ = 0;    // bytes
    std::size_t released_ = 0;  // bytes from the start already dropped
};

} // namespace sqlantlr
