// The UTF-16 text of a script file for a parse that does not hold it in
// memory: decoded piece by piece into an unlinked temporary file and mapped
// from there. The parse reads the mapping in place, exactly as it reads text
// decoded in memory; the pages it has gone past are dropped from the
// process's memory and, should anything look back at them, read again from
// the file. Memory then follows the statement at hand, not the script.
#pragma once

#include <cstddef>
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

    const char16_t *data_ = nullptr;
    std::size_t size_ = 0;      // units
    std::size_t mapped_ = 0;    // bytes
    std::size_t released_ = 0;  // bytes from the start already dropped
};

} // namespace sqlantlr
