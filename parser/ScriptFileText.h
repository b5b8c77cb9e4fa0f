// The UTF-16 text of a script file, decoded piece by piece. A long text
// goes into an unlinked temporary file and is mapped from there, so that the
// parse does not hold it in memory: the parse reads the mapping in place,
// exactly as it reads text decoded in memory; the pages it has gone past are
// dropped from the process's memory and, should anything look back at them,
// read again from the file. Memory then follows the statement at hand, not
// the script. A short text (below heldInMemoryBelow bytes of input) is
// decoded into memory instead: a temporary file's set-up, its file system's
// work for every page and the pages read back would cost more than the few
// megabytes it saves.
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
    // Inputs of at least heldInMemoryBelow() bytes are decoded into a
    // temporary file; the tests lower the bound to have short texts go there.
    static constexpr std::size_t defaultHeldInMemoryBelow = std::size_t(4) << 20U;
    static std::size_t heldInMemoryBelow();
    static void setHeldInMemoryBelow(std::size_t bytes);
    static std::unique_ptr<ScriptFileText> open(const std::string &path,
                                                std::size_t heldInMemoryBelow = ScriptFileText::heldInMemoryBelow());
    // The text of a UTF-8 string as the driver prepares it (invalid
    // sequences as U+FFFD, no leading byte order mark, no NUL characters),
    // held the same way, so that a parse of a long string need not hold it
    // twice in memory. nullptr when it needs a temporary file and none can
    // be made.
    static std::unique_ptr<ScriptFileText> fromUtf8(std::string_view text,
                                                    std::size_t heldInMemoryBelow = ScriptFileText::heldInMemoryBelow());

    ~ScriptFileText();
    ScriptFileText(const ScriptFileText &) = delete;
    ScriptFileText &operator=(const ScriptFileText &) = delete;

    std::u16string_view units() const { return {data_, size_}; }
    // True when the text is in the process's memory, not in a file.
    bool inMemory() const { return inMemory_; }

    // Drops the whole pages before `before` from memory once enough of them
    // have gathered; reading them later reads the file again. Text held in
    // memory stays.
    void releaseBefore(const char16_t *before);
    // Drops every page before `before` now (for the tests).
    void releaseAllBefore(const char16_t *before);

private:
    ScriptFileText() = default;
    // Decodes the pieces nextPiece gives (at most `capacity` bytes in all,
    // each piece ending after an ASCII byte) as UTF-8, into memory or a
    // mapped temporary file. With a `restart`, the pieces are checked as
    // they come: at the first that is not UTF-8, restart() goes back to the
    // first piece and the whole text is decoded as Mac OS Roman instead.
    // Without, ill-formed UTF-8 becomes U+FFFD.
    static std::unique_ptr<ScriptFileText> decode(std::size_t capacity,
                                                  const std::function<bool(std::string_view &)> &nextPiece,
                                                  const std::function<bool()> &restart, std::size_t heldInMemoryBelow);

    const char16_t *data_ = nullptr;
    std::size_t size_ = 0;      // units
    std::size_t mapped_ = 0;    // bytes
    std::size_t released_ = 0;  // bytes from the start already dropped
    bool inMemory_ = false;
};

} // namespace sqlantlr
