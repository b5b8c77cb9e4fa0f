#include "DataStatements.h"

#include "ScriptLines.h"

#include <string>

namespace sqlantlr {

namespace {

bool isLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\r'; }

// Characters that make a token of their own (or the first unit of an
// operator token) and mean nothing to the filter.
bool isPlainPunctuation(char16_t c)
{
    switch (c) {
    case u'.': case u'+': case u'*': case u'{': case u'}': case u'%': case u':': case u'_': case u'!':
    case u'<': case u'>': case u'@': case u'=': case u',': case u'?': case u'|': case u'-':
        return true;
    default:
        return false;
    }
}

// The unit after the line end at p (LF, CRLF or a lone CR).
const char16_t *afterLineEnd(const char16_t *p, const char16_t *end)
{
    return *p == u'\r' && p + 1 < end && p[1] == u'\n' ? p + 2 : p + 1;
}

// The end of the closed block comment whose "/*" is at p, or nullptr.
const char16_t *afterBlockComment(const char16_t *p, const char16_t *end)
{
    for (const char16_t *q = p + 2; q + 1 < end; ++q) {
        if (q[0] == u'*' && q[1] == u'/') {
            return q + 2;
        }
    }
    return nullptr;
}

// The end of the line comment at p, its line end included, or nullptr when
// the input ends first (the lexer rejects that comment).
const char16_t *afterLineComment(const char16_t *p, const char16_t *end)
{
    for (; p < end; ++p) {
        if (isLineEnd(*p)) {
            return afterLineEnd(p, end);
        }
    }
    return nullptr;
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

const char16_t *dataStatementEnd(const char16_t *from, const char16_t *end, DataStatementCut cut,
                                 QuoteScanCache *cache)
{
    bool lineStart = false;  // a line end since the last significant token
    int parens = 0;
    std::string word;
    for (const char16_t *p = from; p < end;) {
        const char16_t c = *p;
        if (c == u' ' || c == u'\t') {
            ++p;
            continue;
        }
        if (isLineEnd(c)) {
            p = afterLineEnd(p, end);
            lineStart = true;
            continue;
        }
        if (c == u';') {
            return p;
        }
        if (c == u'/' && p + 1 < end && p[1] == u'*') {
            if (p + 2 < end && p[2] == u'!') {
                return nullptr;  // executable comment: its text is SQL
            }
            p = afterBlockComment(p, end);
            if (p == nullptr) {
                return nullptr;
            }
            continue;
        }
        if ((c == u'/' && p + 1 < end && p[1] == u'/') || (c == u'-' && p + 1 < end && p[1] == u'-') ||
            c == u'#') {
            p = afterLineComment(p, end);
            if (p == nullptr) {
                return nullptr;
            }
            lineStart = true;
            continue;
        }
        // A significant token.
        const bool firstOfLine = lineStart;
        lineStart = false;
        if (c == u'\'' || c == u'"' || c == u'`') {
            const size_t length = quotedBodyLength(p + 1, end, c, cache);
            if (length == 0) {
                return nullptr;  // a QUOTE token of its own
            }
            p += 1 + length;
        } else if (isLetter(c)) {
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
        } else if (isDigit(c)) {
            while (p < end && isDigit(*p)) {
                ++p;
            }
        } else if (c == u'(') {
            ++parens;
            ++p;
        } else if (c == u')') {
            parens = parens > 0 ? parens - 1 : 0;
            if (p + 2 < end && (p[1] == u'G' || p[1] == u'g') && (p[2] == u'O' || p[2] == u'o')) {
                return nullptr;  // ")GO" may end a batch
            }
            ++p;
        } else if (c == u'[') {
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
        } else if (c == u'/') {
            if (firstOfLine) {
                return nullptr;  // a "/" line ends the statement
            }
            ++p;
        } else if (c == u'\\') {
            // A backslash outside strings takes a quote or a backslash with it.
            p += p + 1 < end && (p[1] == u'\'' || p[1] == u'"' || p[1] == u'\\') ? 2 : 1;
        } else if (isPlainPunctuation(c)) {
            ++p;
        } else {
            return nullptr;  // no token rule, or one whose tokens are not followed here
        }
    }
    return nullptr;  // no ";" before the end of input
}

} // namespace sqlantlr
