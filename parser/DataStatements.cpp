#include "DataStatements.h"

#include "ScriptLines.h"
#include "UnitScan.h"

#include <string>

namespace sqlantlr {

namespace {

bool isLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The unit after the line end at p (LF, CRLF or a lone CR).
const char16_t *afterLineEnd(const char16_t *p, const char16_t *end)
{
    return *p == u'\r' && p + 1 < end && p[1] == u'\n' ? p + 2 : p + 1;
}

// The end of the closed block comment whose "/*" is at p, or nullptr.
const char16_t *afterBlockComment(const char16_t *p, const char16_t *end)
{
    const UnitSet star(u'*');
    for (const char16_t *q = star.findIn(p + 2, end); q + 1 < end; q = star.findIn(q + 1, end)) {
        if (q[1] == u'/') {
            return q + 2;
        }
    }
    return nullptr;
}

// The end of the line comment at p, its line end included, or nullptr when
// the input ends first (the lexer rejects that comment).
const char16_t *afterLineComment(const char16_t *p, const char16_t *end)
{
    p = lineEndUnits.findIn(p, end);
    return p < end ? afterLineEnd(p, end) : nullptr;
}

bool startsWithWord(const std::string &word, const char *prefix)
{
    return word.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

// The letters a word starts with: a keyword the lexer might take on its own.
std::string leadingLetters(const std::string &word)
{
    size_t n = 0;
    while (n < word.size() && word[n] >= 'A' && word[n] <= 'Z') {
        ++n;
    }
    return word.substr(0, n);
}

} // namespace

namespace {

// What a unit is to the scan below; every unit beyond ASCII is Other.
enum class UnitClass : unsigned char {
    Other,        // no token rule, or one whose tokens are not followed here
    Blank,        // space, tab
    LineEnd,      // LF, CR
    Semicolon,
    Slash,        // a comment, or a "/" token
    Dash,         // a line comment, or a "-" token
    Hash,         // a line comment
    Quote,        // ' " `
    Letter,
    Digit,
    Open,
    Close,
    Bracket,      // [
    Backslash,
    Punctuation,  // a token of its own (or an operator's first unit) that means nothing here
};

struct UnitClasses {
    UnitClass of[128] = {};
    constexpr UnitClasses()
    {
        for (int c = 'A'; c <= 'Z'; ++c) {
            of[c] = UnitClass::Letter;
            of[c + ('a' - 'A')] = UnitClass::Letter;
        }
        for (int c = '0'; c <= '9'; ++c) {
            of[c] = UnitClass::Digit;
        }
        for (const char c : {'.', '+', '*', '{', '}', '%', ':', '_', '!', '<', '>', '@', '=', ',', '?', '|'}) {
            of[static_cast<unsigned char>(c)] = UnitClass::Punctuation;
        }
        of[static_cast<unsigned char>(' ')] = UnitClass::Blank;
        of[static_cast<unsigned char>('\t')] = UnitClass::Blank;
        of[static_cast<unsigned char>('\n')] = UnitClass::LineEnd;
        of[static_cast<unsigned char>('\r')] = UnitClass::LineEnd;
        of[static_cast<unsigned char>(';')] = UnitClass::Semicolon;
        of[static_cast<unsigned char>('/')] = UnitClass::Slash;
        of[static_cast<unsigned char>('-')] = UnitClass::Dash;
        of[static_cast<unsigned char>('#')] = UnitClass::Hash;
        of[static_cast<unsigned char>('\'')] = UnitClass::Quote;
        of[static_cast<unsigned char>('"')] = UnitClass::Quote;
        of[static_cast<unsigned char>('`')] = UnitClass::Quote;
        of[static_cast<unsigned char>('(')] = UnitClass::Open;
        of[static_cast<unsigned char>(')')] = UnitClass::Close;
        of[static_cast<unsigned char>('[')] = UnitClass::Bracket;
        of[static_cast<unsigned char>('\\')] = UnitClass::Backslash;
    }
};

constexpr UnitClasses unitClasses;

UnitClass classOf(char16_t c) { return c < 128 ? unitClasses.of[c] : UnitClass::Other; }

// Whether a line of [from, to), or the line holding from, starts with a
// SQL*Plus REM or PROMPT word and a blank: on such a line the lexer closes a
// quote on its line or not at all (isRemarkLine), which the scan does not
// follow. Lines are found eight units at a time: dump data has few.
bool spansRemarkLine(const char16_t *begin, const char16_t *from, const char16_t *to, QuoteScanCache *cache)
{
    if (isRemarkLine(begin, from, cache)) {
        return true;
    }
    for (const char16_t *p = lineEndUnits.findIn(from, to); p < to;) {
        const char16_t *q = p + 1;
        p = lineEndUnits.findIn(q, to);
        while (q < p && (*q == u' ' || *q == u'\t')) {
            ++q;
        }
        // Only a line that starts with R or P is looked at whole.
        if (q < p && ((*q | 0x20) == u'r' || (*q | 0x20) == u'p') && isRemarkLine(begin, p)) {
            return true;
        }
    }
    return false;
}

} // namespace

const char16_t *dataStatementEnd(const char16_t *begin, const char16_t *from, const char16_t *end,
                                 DataStatementCut cut, QuoteScanCache *cache, bool *metEnd)
{
    bool ignored = false;
    bool &met = metEnd != nullptr ? *metEnd : ignored;
    met = false;
    bool lineStart = false;  // a line end since the last significant token
    int parens = 0;
    std::string word;
    for (const char16_t *p = from; p < end;) {
        const char16_t c = *p;
        const UnitClass unitClass = classOf(c);
        // What is no token: blanks, line ends, comments.
        switch (unitClass) {
        case UnitClass::Blank:
            ++p;
            continue;
        case UnitClass::LineEnd:
            p = afterLineEnd(p, end);
            lineStart = true;
            continue;
        case UnitClass::Semicolon:
            return spansRemarkLine(begin, from, p, cache) ? nullptr : p;
        case UnitClass::Slash:
            if (p + 1 < end && p[1] == u'*') {
                if (p + 2 < end && p[2] == u'!') {
                    return nullptr;  // executable comment: its text is SQL
                }
                p = afterBlockComment(p, end);
                if (p == nullptr) {
                    met = true;
                    return nullptr;
                }
                continue;
            }
            [[fallthrough]];
        case UnitClass::Dash:
        case UnitClass::Hash:
            // "//", "--" and "#" start line comments.
            if (unitClass == UnitClass::Hash || (p + 1 < end && p[1] == c)) {
                p = afterLineComment(p, end);
                if (p == nullptr) {
                    met = true;
                    return nullptr;
                }
                lineStart = true;
                continue;
            }
            break;
        default:
            break;
        }
        // A significant token.
        const bool firstOfLine = lineStart;
        lineStart = false;
        switch (unitClass) {
        case UnitClass::Quote: {
            const size_t length = quotedBodyLength(p + 1, end, c, cache, false, &met);
            if (length == 0) {
                return nullptr;  // a QUOTE token of its own
            }
            met = false;
            p += 1 + length;
            if (p < end && (*p == u'Q' || *p == u'q')) {
                // The lexer takes a Q right after a quoted piece for the start
                // of a Q'...' piece of the same token, and reads on its own way.
                return nullptr;
            }
            break;
        }
        case UnitClass::Letter: {
            const char16_t *start = p;
            for (; p < end && (isLetter(*p) || isDigit(*p) || *p == u'_' || *p == u'-'); ++p) {
                if (*p == u'-' && p + 1 < end && p[1] == u'-') {
                    return nullptr;
                }
            }
            if ((p[-1] == u'Q' || p[-1] == u'q') && p < end && *p == u'\'') {
                return nullptr;  // an Oracle q-quote (Q'..', NQ'..') reads its body its own way
            }
            if (p < end && (*p == u'#' || *p == u'$' || *p >= 0x80)) {
                return nullptr;  // names with these go on in ways not followed here
            }
            if (firstOfLine) {
                word.clear();
                for (const char16_t *q = start; q < p; ++q) {
                    word += static_cast<char>(*q >= u'a' ? *q - (u'a' - u'A') : *q);
                }
            }
            if (firstOfLine && (startsWithWord(word, "GO") || startsWithWord(word, "DELIMITER") ||
                                (cut == DataStatementCut::AtStatementWords && parens == 0 &&
                                 (isStatementWord(word) || isStatementWord(leadingLetters(word)))))) {
                return nullptr;
            }
            break;
        }
        case UnitClass::Digit:
            while (p < end && isDigit(*p)) {
                ++p;
            }
            break;
        case UnitClass::Open:
            ++parens;
            ++p;
            break;
        case UnitClass::Close:
            parens = parens > 0 ? parens - 1 : 0;
            if (p + 2 < end && (p[1] == u'G' || p[1] == u'g') && (p[2] == u'O' || p[2] == u'o')) {
                return nullptr;  // ")GO" may end a batch
            }
            ++p;
            break;
        case UnitClass::Bracket: {
            size_t length = bracketedNameLength(p, end);
            if (length == 0) {
                const char16_t *q = p + 1;
                while (q < end && isDigit(*q)) {
                    ++q;
                }
                if (q >= end || *q != u']') {
                    return nullptr;
                }
                length = static_cast<size_t>(q - p) + 1;  // array bounds
            }
            p += length;
            break;
        }
        case UnitClass::Slash:
            if (firstOfLine) {
                return nullptr;  // a "/" line ends the statement
            }
            ++p;
            break;
        case UnitClass::Backslash:
            // A backslash outside strings takes a quote or a backslash with it.
            p += p + 1 < end && (p[1] == u'\'' || p[1] == u'"' || p[1] == u'\\') ? 2 : 1;
            break;
        case UnitClass::Dash:
        case UnitClass::Punctuation:
            ++p;
            break;
        default:
            return nullptr;  // no token rule, or one whose tokens are not followed here
        }
    }
    met = true;
    return nullptr;  // no ";" before the end of input
}

} // namespace sqlantlr
