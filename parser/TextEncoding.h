// Conversions between the UTF-8 of the public API and the UTF-16 that the
// recognizers read. Invalid sequences become U+FFFD, never an error.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sqlantlr {

std::u16string utf8ToUtf16(std::string_view text);
// Decodes into out, which has room for text.size() units (never more units
// than bytes): the number of units written, 0 when ICU fails.
size_t utf8ToUtf16(std::string_view text, char16_t *out);
std::string utf16ToUtf8(const char16_t *text, size_t length);
inline std::string utf16ToUtf8(std::u16string_view text) { return utf16ToUtf8(text.data(), text.size()); }

// The units of decoded script text that the parse reads, in place: a byte
// order mark at the script's start (atStart: the units begin the script) is
// not part of it, and a NUL is read as if absent, so that it cannot split a
// word (positions after it on its line count one less). Returns where the
// kept units begin, and moves end back over the dropped NULs. bytes are the
// UTF-8 the units were decoded from: a NUL unit comes only from a NUL byte,
// so the units are scanned for one only when the bytes hold one.
char16_t *keepScriptUnits(char16_t *begin, char16_t *&end, bool atStart, std::string_view bytes);

// True when the bytes are well-formed UTF-8.
bool isValidUtf8(std::string_view bytes);
// The same, and then, with `units`, the UTF-16 units they decode to.
bool validUtf8Units(std::string_view bytes, size_t *units);
// Bytes in the Mac OS Roman single-byte encoding, as UTF-8.
std::string macRomanToUtf8(std::string_view bytes);
// A script file's text as SQLParser::stringForFile reads it, asked for in
// UTF-8; throws SQLFileEncodingError when it cannot be read.
std::string scriptFileString(const std::string &path);

} // namespace sqlantlr
