// The scans that dump data goes through, eight units at a time, against
// plain one-unit-at-a-time readings of the same rules: the unit finders and
// line-feed count, the quoted-body decisions (plain or backslash-escaped
// reading, chosen by what the rest of the line does), and UTF-8 decoding
// against ICU's, on random text of every length around the eight-unit
// steps.
#include "QuotedText.h"
#include "TextEncoding.h"
#include "UnitScan.h"

#include <gtest/gtest.h>

#include <unicode/ustring.h>

#include <random>
#include <string>
#include <vector>

namespace {

std::u16string randomText(std::mt19937 &random, const std::u16string &alphabet, size_t length)
{
    std::u16string text;
    for (size_t i = 0; i < length; ++i) {
        text += alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST(UnitScan, FindsAndCountsAsOneUnitAtATime)
{
    const std::u16string alphabet = u"abcdefghij\n\r'\"\\-\u00e9\u20ac";
    const sqlantlr::UnitSet lineEnds(u'\n', u'\r');
    const sqlantlr::UnitSet quoteOrDash(u'\'', u'-', u'\u20ac');
    std::mt19937 random(11);
    for (int n = 0; n < 20000; ++n) {
        const std::u16string text = randomText(random, alphabet, random() % 70);
        const char16_t *begin = text.data();
        const char16_t *end = begin + text.size();
        for (size_t from = 0; from <= text.size(); from += 1 + random() % 5) {
            const char16_t *expected = begin + from;
            while (expected < end && *expected != u'\n' && *expected != u'\r') {
                ++expected;
            }
            ASSERT_EQ(lineEnds.findIn(begin + from, end), expected);
            expected = begin + from;
            while (expected < end && *expected != u'\'' && *expected != u'-' && *expected != u'\u20ac') {
                ++expected;
            }
            ASSERT_EQ(quoteOrDash.findIn(begin + from, end), expected);
        }
        size_t feeds = 0;
        bool returns = false;
        for (char16_t c : text) {
            feeds += c == u'\n' ? 1 : 0;
            returns = returns || c == u'\r';
        }
        bool sawReturns = false;
        ASSERT_EQ(sqlantlr::countLineFeeds(begin, end, &sawReturns), feeds);
        ASSERT_EQ(sawReturns, returns);
    }
    // Past the point where a lane of the count is folded.
    const std::u16string feeds(8 * 8192 * 2 + 5, u'\n');
    bool returns = true;
    EXPECT_EQ(sqlantlr::countLineFeeds(feeds.data(), feeds.data() + feeds.size(), &returns), feeds.size());
    EXPECT_FALSE(returns);
}

// The rules of a quoted body, one unit at a time: the reading that ends at
// the first quote (plain) and the one in which a backslash takes the next
// unit (escaping); where they differ, the escaping one unless it leaves its
// line open (or runs past a line end) and the plain one does not.
bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\r'; }

bool restOfLineEndsInString(const char16_t *p, const char16_t *end, bool escapes)
{
    char16_t open = 0;
    for (; p < end; ++p) {
        const char16_t c = *p;
        if (isLineEnd(c)) {
            break;
        }
        if (open != 0) {
            if (escapes && c == u'\\' && p + 1 < end && !isLineEnd(p[1])) {
                ++p;
            } else if (c == open) {
                open = 0;
            }
        } else if (c == u'\'' || c == u'"' || c == u'`') {
            open = c;
        } else if (c == u'-' && p + 1 < end && p[1] == u'-') {
            return false;
        }
    }
    return open != 0;
}

const char16_t *plainClose(const char16_t *p, const char16_t *end, char16_t quote)
{
    for (; p < end; ++p) {
        if (*p == quote) {
            return p + 1;
        }
    }
    return nullptr;
}

const char16_t *escapedClose(const char16_t *p, const char16_t *end, char16_t quote)
{
    for (; p < end; ++p) {
        if (*p == quote) {
            return p + 1;
        }
        if (*p == u'\\' && p + 1 < end) {
            ++p;
        }
    }
    return nullptr;
}

bool staysOnLine(const char16_t *body, const char16_t *close, const char16_t *end, bool escapes)
{
    if (close == nullptr) {
        return false;
    }
    for (const char16_t *p = body; p < close; ++p) {
        if (isLineEnd(*p)) {
            return false;
        }
    }
    return !restOfLineEndsInString(close, end, escapes);
}

size_t referenceBodyLength(const char16_t *body, const char16_t *end, char16_t quote)
{
    const char16_t *plain = plainClose(body, end, quote);
    const char16_t *escaped = escapedClose(body, end, quote);
    const char16_t *chosen = escaped;
    if (escaped != plain &&
        (escaped == nullptr || (!staysOnLine(body, escaped, end, true) && staysOnLine(body, plain, end, false)))) {
        chosen = plain;
    }
    return chosen != nullptr ? static_cast<size_t>(chosen - body) : 0;
}

TEST(UnitScan, QuotedBodiesReadAsTheRulesSay)
{
    // Long lines of short strings with escapes, dashes and line ends, as in
    // dumps, and shorter ones of anything.
    const std::u16string dumpAlphabet = u"aaaaaaaa1234,,(()''''\\\\\"`--\n";
    const std::u16string anyAlphabet = u"ab'\"`\\\n\r-; ";
    std::mt19937 random(5);
    for (int n = 0; n < 6000; ++n) {
        const std::u16string &alphabet = n % 2 == 0 ? dumpAlphabet : anyAlphabet;
        const std::u16string text = randomText(random, alphabet, random() % (n % 2 == 0 ? 400 : 40));
        const char16_t *end = text.data() + text.size();
        sqlantlr::QuoteScanCache cache;
        for (size_t i = 0; i < text.size(); ++i) {
            const char16_t quote = text[i];
            if (quote != u'\'' && quote != u'"' && quote != u'`') {
                continue;
            }
            const char16_t *body = text.data() + i + 1;
            const size_t expected = referenceBodyLength(body, end, quote);
            ASSERT_EQ(sqlantlr::quotedBodyLength(body, end, quote), expected)
                << std::string(text.begin(), text.end()) << " at " << i;
            ASSERT_EQ(sqlantlr::quotedBodyLength(body, end, quote, &cache), expected)
                << std::string(text.begin(), text.end()) << " at " << i;
        }
    }
}

std::u16string icuDecoding(const std::string &text)
{
    std::u16string units(text.size(), u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar *>(units.data()), static_cast<int32_t>(units.size()), &length,
                         text.data(), static_cast<int32_t>(text.size()), 0xFFFD, nullptr, &status);
    units.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
    return units;
}

TEST(UnitScan, Utf8DecodesAsIcuDoes)
{
    // Well-formed characters of every length, ASCII runs around sixteen
    // bytes, and ill-formed pieces: stray and missing continuation bytes,
    // overlong forms, surrogates, code points past U+10FFFF, bytes no UTF-8
    // holds.
    const std::vector<std::string> pieces = {
        "a", "0123456789abcdef", "ABCDEFGHIJKLMNOPQRSTU", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
        "\xF4\x8F\xBF\xBF", "\xEF\xBB\xBF", "\x80", "\xBF", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\x80",
        "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xFE", std::string(1, '\0'),
    };
    std::mt19937 random(17);
    for (int n = 0; n < 20000; ++n) {
        std::string text;
        const int count = static_cast<int>(random() % 12);
        for (int i = 0; i < count; ++i) {
            // Mostly well-formed text; ill-formed pieces now and then.
            const size_t pick = random() % 4 != 0 ? random() % 8 : random() % pieces.size();
            text += pieces[pick];
        }
        ASSERT_EQ(sqlantlr::utf8ToUtf16(text), icuDecoding(text)) << n;
    }
}

} // namespace
