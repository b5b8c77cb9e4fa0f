#include "TextEncoding.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace sqlantlr {

namespace {

// The first byte of [p, end) that is not ASCII, or end: sixteen bytes at a
// time with SSE2, eight at a time otherwise.
const uint8_t *asciiRunEnd(const uint8_t *p, const uint8_t *end)
{
#if defined(__SSE2__)
    while (end - p >= 16 && _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(p))) == 0) {
        p += 16;
    }
#else
    for (; end - p >= 8; p += 8) {
        uint64_t word;
        std::memcpy(&word, p, sizeof word);
        if ((word & 0x8080808080808080ULL) != 0) {
            break;
        }
    }
#endif
    while (p < end && *p < 0x80) {
        ++p;
    }
    return p;
}

// Widens the ASCII bytes at the start of [bytes, end) to UTF-16 units at
// out, sixteen at a time with SSE2; returns how many there were.
size_t widenAsciiRun(const uint8_t *bytes, const uint8_t *end, char16_t *out)
{
    const uint8_t *p = bytes;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; end - p >= 16; p += 16, out += 16) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        if (_mm_movemask_epi8(chunk) != 0) {
            break;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_unpacklo_epi8(chunk, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + 8), _mm_unpackhi_epi8(chunk, zero));
    }
#endif
    for (; p < end && *p < 0x80; ++p) {
        *out++ = static_cast<char16_t>(*p);
    }
    return static_cast<size_t>(p - bytes);
}

const uint8_t *bytesOf(std::string_view text) { return reinterpret_cast<const uint8_t *>(text.data()); }

// An ASCII start widened, then ICU from the first other byte on (beyond
// 2 GB ICU's lengths fail, as they always did here).
size_t utf8ToUtf16ByIcu(std::string_view text, char16_t *out)
{
    const size_t ascii = widenAsciiRun(bytesOf(text), bytesOf(text) + text.size(), out);
    if (ascii == text.size()) {
        return ascii;
    }
    const std::string_view rest = text.substr(ascii);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar *>(out + ascii), static_cast<int32_t>(rest.size()), &length,
                         rest.data(), static_cast<int32_t>(rest.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) {
        return 0;
    }
    return ascii + static_cast<size_t>(length);
}

} // namespace

size_t utf8ToUtf16(std::string_view text, char16_t *out)
{
    if (text.size() > static_cast<size_t>(INT32_MAX)) {
        return utf8ToUtf16ByIcu(text, out);
    }
    // Well-formed UTF-8 has one decoding, so it is decoded here: ASCII runs
    // sixteen bytes at a time, other characters one by one. From the first
    // ill-formed sequence on (a character boundary) ICU decodes the rest,
    // with its substitutions, as it did the whole text before.
    const uint8_t *bytes = bytesOf(text);
    const auto length = static_cast<int32_t>(text.size());
    int32_t i = 0;
    size_t o = 0;
    while (i < length) {
        const size_t run = widenAsciiRun(bytes + i, bytes + length, out + o);
        i += static_cast<int32_t>(run);
        o += run;
        if (i >= length) {
            break;
        }
        const int32_t start = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0) {
            int32_t written = 0;
            UErrorCode status = U_ZERO_ERROR;
            u_strFromUTF8WithSub(reinterpret_cast<UChar *>(out + o), static_cast<int32_t>(text.size() - o), &written,
                                 text.data() + start, length - start, 0xFFFD, nullptr, &status);
            if (U_FAILURE(status)) {
                return 0;
            }
            o += static_cast<size_t>(written);
            break;
        }
        if (c <= 0xFFFF) {
            out[o++] = static_cast<char16_t>(c);
        } else {
            out[o++] = static_cast<char16_t>(U16_LEAD(c));
            out[o++] = static_cast<char16_t>(U16_TRAIL(c));
        }
    }
    return o;
}

std::u16string utf8ToUtf16(std::string_view text)
{
    std::u16string result(text.size(), u'\0');  // never more units than bytes
    result.resize(utf8ToUtf16(text, result.data()));
    return result;
}

char16_t *keepScriptUnits(char16_t *begin, char16_t *&end, bool atStart, std::string_view bytes)
{
    if (atStart && begin != end && *begin == u'\uFEFF') {
        ++begin;
    }
    if (std::memchr(bytes.data(), 0, bytes.size()) != nullptr) {
        end = std::remove(begin, end, u'\0');
    }
    return begin;
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
    return validUtf8Units(bytes, nullptr);
}

bool validUtf8Units(std::string_view bytes, size_t *units)
{
    const auto *s = reinterpret_cast<const uint8_t *>(bytes.data());
    const auto length = static_cast<int32_t>(bytes.size());
    int32_t i = 0;
    size_t count = 0;
    while (i < length) {
        // ASCII runs are skipped in bulk; each other character is decoded.
        const auto run = static_cast<int32_t>(asciiRunEnd(s + i, s + length) - s);
        count += static_cast<size_t>(run - i);
        i = run;
        if (i >= length) {
            break;
        }
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0) {
            return false;
        }
        count += c > 0xFFFF ? 2 : 1;
    }
    if (units != nullptr) {
        *units = count;
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
