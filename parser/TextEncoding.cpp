#include "TextEncoding.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <memory>
#include <vector>

#include <cstring>

namespace sqlantlr {

namespace {

// How many bytes from the start of text are ASCII, read eight at a time.
size_t asciiPrefixLength(std::string_view text)
{
    size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        uint64_t word;
        std::memcpy(&word, text.data() + i, sizeof word);
        if ((word & 0x8080808080808080ULL) != 0) {
            break;
        }
    }
    while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) {
        ++i;
    }
    return i;
}

} // namespace

std::u16string utf8ToUtf16(std::string_view text)
{
    std::u16string result(text.size(), u'\0');  // never more units than bytes
    // Scripts are mostly ASCII: the ASCII start is widened here, and ICU
    // decodes from the first other byte on (an ASCII byte always ends a
    // character, so the split is clean).
    const size_t ascii = asciiPrefixLength(text);
    for (size_t i = 0; i < ascii; ++i) {
        result[i] = static_cast<char16_t>(text[i]);
    }
    if (ascii == text.size()) {
        return result;
    }
    const std::string_view rest = text.substr(ascii);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar *>(result.data() + ascii), static_cast<int32_t>(rest.size()), &length,
                         rest.data(), static_cast<int32_t>(rest.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) {
        return {};
    }
    result.resize(ascii + static_cast<size_t>(length));
    return result;
}

std::string utf16ToUtf8(const char16_t *text, size_t length)
{
    if (length == 0) {
        return {};
    }
    // Nearly every token is ASCII: copied unit by unit, without ICU and
    // without the three-bytes-per-unit buffer.
    size_t ascii = 0;
    while (ascii < length && text[ascii] < 0x80) {
        ++ascii;
    }
    if (ascii == length && length <= static_cast<size_t>(INT32_MAX / 3)) {
        return std::string(text, text + length);
    }
    std::string result(length * 3, '\0');
    int32_t written = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(result.data(), static_cast<int32_t>(result.size()), &written,
                       reinterpret_cast<const UChar *>(text), static_cast<int32_t>(length), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) {
        return {};
    }
    result.resize(static_cast<size_t>(written));
    return result;
}

bool isValidUtf8(std::string_view bytes)
{
    const auto *s = reinterpret_cast<const uint8_t *>(bytes.data());
    const auto length = static_cast<int32_t>(bytes.size());
    int32_t i = 0;
    while (i < length) {
        // ASCII runs are skipped in bulk; each other character is decoded.
        i += static_cast<int32_t>(asciiPrefixLength(bytes.substr(static_cast<size_t>(i))));
        if (i >= length) {
            break;
        }
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0) {
            return false;
        }
    }
    return true;
}

std::string macRomanToUtf8(std::string_view bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open("macintosh", &status), &ucnv_close);
    if (U_FAILURE(status)) {
        return {};
    }
    std::u16string units(bytes.size(), u'\0');
    const int32_t length = ucnv_toUChars(converter.get(), reinterpret_cast<UChar *>(units.data()),
                                         static_cast<int32_t>(units.size()), bytes.data(),
                                         static_cast<int32_t>(bytes.size()), &status);
    if (U_FAILURE(status)) {
        return {};
    }
    return utf16ToUtf8(units.data(), static_cast<size_t>(length));
}

} // namespace sqlantlr
