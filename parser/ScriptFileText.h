// The UTF-16 text of a script file or of a long string. A short text is
// decoded whole into memory. A long one is decoded as the parse reads it:
// its units have their places in one reserved range of addresses (so that a
// unit's address never changes), a piece is decoded when a reader reaches
// the end of what is decoded (kp_moreText), and the pages the parse has
// gone past are given back. Memory then follows the statement at hand, not
// the script, and a few megabytes of pages serve the whole text over and
// over instead of a page cache or a temporary file as large as the text.
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
    // Inputs of at least heldInMemoryBelow() bytes are decoded as they are
    // read; the tests lower the bound to have short texts decoded so.
    static constexpr std::size_t defaultHeldInMemoryBelow = std::size_t(4) << 20U;
    static std::size_t heldInMemoryBelow();
    static void setHeldInMemoryBelow(std::size_t bytes);
    // The bytes of input decoded at a time, and the bytes of decoded text
    // passed before its pages are given back (0: the defaults). The tests
    // make both a few bytes so that every reader meets the decoded end.
    static void setPieceBytes(std::size_t bytes);
    static void setReleaseBytes(std::size_t bytes);
    static std::unique_ptr<ScriptFileText> open(const std::string &path,
                                                std::size_t heldInMemoryBelow = ScriptFileText::heldInMemoryBelow());
    // The text of a UTF-8 string as the driver prepares it (invalid
    // sequences as U+FFFD, no leading byte order mark, no NUL characters).
    // A long string is decoded as it is read, so the string must outlive
    // the text.
    static std::unique_ptr<ScriptFileText> fromUtf8(std::string_view text,
                                                    std::size_t heldInMemoryBelow = ScriptFileText::heldInMemoryBelow());

    ~ScriptFileText();
    ScriptFileText(const ScriptFileText &) = delete;
    ScriptFileText &operator=(const ScriptFileText &) = delete;

    // The places of all the units: only those before decodedEnd() hold the
    // text yet.
    std::u16string_view units() const { return {data_, size_}; }
    // True when the text is decoded whole into memory, not as it is read.
    bool inMemory() const { return inMemory_; }
    const char16_t *decodedEnd() const { return data_ + decoded_; }
    // Where the units not given back start.
    const char16_t *keptFrom() const { return data_ + released_ / sizeof(char16_t); }
    // False when the text holds no '$' (only a '$' makes the lexer follow
    // DELIMITER lines).
    bool holdsDollar() const { return holdsDollar_; }
    // True when nothing is left to decode.
    bool complete() const { return source_ == nullptr; }
    // Decodes pieces until the text is decoded up to `upTo` or to its end;
    // the decoded end.
    const char16_t *decodeTo(const char16_t *upTo);

    // Gives back the whole pages before `before` once enough of them have
    // gathered: they read as NUL units from then on, so nothing may look
    // back at them. Text held in memory stays.
    void releaseBefore(const char16_t *before);
    // Gives back every page before `before` now (for the tests).
    void releaseAllBefore(const char16_t *before);

    class Source;

private:
    ScriptFileText() = default;
    // Decodes the pieces nextPiece gives (at most `capacity` bytes, each
    // piece ending after an ASCII byte) whole into memory; see decodeWhole.
    static std::unique_ptr<ScriptFileText> held(std::size_t capacity,
                                                const std::function<bool(std::string_view &)> &nextPiece,
                                                const std::function<bool()> &restart);
    // Reserves the places of `units` units and makes the text read from
    // `source` as it is asked for.
    static std::unique_ptr<ScriptFileText> reserve(std::size_t units, std::unique_ptr<Source> source);
    void decodePiece();

    char16_t *data_ = nullptr;
    std::size_t size_ = 0;      // units
    std::size_t decoded_ = 0;   // units
    std::size_t mapped_ = 0;    // bytes
    std::size_t released_ = 0;  // bytes from the start already given back
    bool inMemory_ = false;
    bool first_ = true;         // no piece decoded yet
    bool holdsDollar_ = true;
    std::unique_ptr<Source> source_;
    std::u16string aside_;      // a piece that needs more room than is left
};

// What a lexer's reader needs to ask for more of a text decoded as it is
// read: set as the input stream's `super` (see kp_moreText). The readable
// units never pass windowUnits from the stream's start.
struct TextFeed {
    ScriptFileText *text = nullptr;
    std::size_t windowUnits = 0;
};

} // namespace sqlantlr
