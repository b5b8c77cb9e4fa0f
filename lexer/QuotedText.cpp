#include "QuotedText.h"

#include "RecognizerSupport.h"
#include "VellumGrammarCLexer.h"

#include <string>

namespace sqlantlr {

namespace {

bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\r'; }

bool isAsciiLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

bool isNameCharacter(char16_t c)
{
    return isAsciiLetter(c) || (c >= u'0' && c <= u'9') || c == u'_' || c == u'$' || c == u'#';
}

// The position just after the closing quote, or nullptr when the piece is not
// closed before end. A doubled quote closes the piece: the next piece of the
// same token starts there.
const char16_t *closingQuote(const char16_t *p, const char16_t *end, char16_t quote, bool escapes)
{
    for (; p < end; ++p) {
        if (*p == quote) {
            return p + 1;
        }
        if (escapes && *p == u'\\' && p + 1 < end) {
            ++p;
        }
    }
    return nullptr;
}

bool crossesLineEnd(const char16_t *from, const char16_t *to)
{
    for (const char16_t *p = from; p < to; ++p) {
        if (isLineEnd(*p)) {
            return true;
        }
    }
    return false;
}

// True when the rest of the line from p leaves a string open; a line comment
// outside strings ends the scan.
bool lineEndsInString(const char16_t *p, const char16_t *end, bool escapes)
{
    char16_t open = 0;
    for (; p < end && !isLineEnd(*p); ++p) {
        const char16_t c = *p;
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

bool staysOnItsLine(const char16_t *body, const char16_t *close, const char16_t *end, bool escapes)
{
    return close != nullptr && !crossesLineEnd(body, close) && !lineEndsInString(close, end, escapes);
}

} // namespace

size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote, bool lineBound)
{
    if (lineBound) {
        const char16_t *p = body;
        while (p < end && !isLineEnd(*p) && *p != quote) {
            ++p;
        }
        return p < end && *p == quote ? static_cast<size_t>(p + 1 - body) : 0;
    }
    const char16_t *plain = closingQuote(body, end, quote, false);
    const char16_t *escaped = plain;
    if (plain == nullptr || crossesLineEnd(body, plain) || [&] {
            for (const char16_t *p = body; p < plain; ++p) {
                if (*p == u'\\') {
                    return true;
                }
            }
            return false;
        }()) {
        escaped = closingQuote(body, end, quote, true);
    }
    const char16_t *chosen = escaped;
    if (escaped != plain) {
        if (escaped == nullptr || (!staysOnItsLine(body, escaped, end, true) && staysOnItsLine(body, plain, end, false))) {
            chosen = plain;
        }
    }
    return chosen != nullptr ? static_cast<size_t>(chosen - body) : 0;
}

bool isRemarkLine(const char16_t *begin, const char16_t *at)
{
    const char16_t *p = at;
    while (p > begin && !isLineEnd(p[-1])) {
        --p;
    }
    while (p < at && (*p == u' ' || *p == u'\t')) {
        ++p;
    }
    std::string word;
    for (; p < at && isAsciiLetter(*p) && word.size() < 8; ++p) {
        word += static_cast<char>(*p >= u'a' ? *p - (u'a' - u'A') : *p);
    }
    if (p == at || (*p != u' ' && *p != u'\t')) {
        return false;
    }
    // SQL*Plus takes any abbreviation down to REM and PRO.
    auto abbreviates = [&](const std::string &full, size_t shortest) {
        return word.size() >= shortest && full.compare(0, word.size(), word) == 0 && word.size() <= full.size();
    };
    return abbreviates("REMARK", 3) || abbreviates("PROMPT", 3);
}

size_t substitutionPrefixLength(const char16_t *begin, const char16_t *p, const char16_t *end)
{
    if (p >= end || *p != u'&') {
        return 0;
    }
    if (p > begin) {
        const char16_t before = p[-1];
        if (isNameCharacter(before) || before == u')' || before == u']' || before == u'&' || before == u'\'' ||
            before == u'"' || before == u'`' || before >= 0x80) {
            return 0;
        }
    }
    const char16_t *q = p + 1;
    if (q < end && *q == u'&') {
        ++q;
    }
    const char16_t *name = q;
    while (q < end && isNameCharacter(*q)) {
        ++q;
    }
    if (q == name || q >= end || *q != u'.') {
        return 0;
    }
    ++q;
    if (q < end && *q == u'.') {
        ++q;
    }
    const bool nameFollows = q < end && (isAsciiLetter(*q) || *q == u'"' || *q == u'`' || *q == u'[' || *q == u'_' ||
                                         *q >= 0x80);
    return nameFollows ? static_cast<size_t>(q - p) : 0;
}

size_t bracketedNameLength(const char16_t *p, const char16_t *end)
{
    if (end - p < 3 || *p != u'[') {
        return 0;
    }
    const char16_t first = p[1];
    if (first == u']' || isLineEnd(first) || (first >= u'0' && first <= u'9') || first == u'\'' || first == u'"') {
        return 0;
    }
    for (const char16_t *q = p + 2; q < end && !isLineEnd(*q); ++q) {
        if (*q == u']') {
            return static_cast<size_t>(q - p) + 1;
        }
    }
    return 0;
}

} // namespace sqlantlr

// The lexer state's user1 counts the pieces of the current token that were
// never closed; kp_quotedStringType reads and clears it.
void kp_matchQuotedBody(pANTLR3_LEXER lexer, ANTLR3_UCHAR quote)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *body = static_cast<const char16_t *>(input->nextChar);
    const bool lineBound = sqlantlr::isRemarkLine(data, body - 1);
    const size_t length = sqlantlr::quotedBodyLength(body, end, static_cast<char16_t>(quote), lineBound);
    if (length == 0) {
        lexer->rec->state->user1++;
        return;
    }
    pANTLR3_INT_STREAM stream = input->istream;
    for (size_t i = 0; i < length; ++i) {
        stream->consume(stream);
    }
}

ANTLR3_UINT32 kp_quotedStringType(pANTLR3_LEXER lexer)
{
    const bool unclosed = lexer->rec->state->user1 != 0;
    lexer->rec->state->user1 = 0;
    // A quote that is never closed is a token of its own, reported by the parser where it stands.
    return unclosed ? QUOTE : QUOTED_STRING;
}

bool kp_bracketedNameAhead(pANTLR3_LEXER lexer)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *p = static_cast<const char16_t *>(input->nextChar);
    return sqlantlr::bracketedNameLength(p, end) != 0;
}

bool kp_substitutionPrefixAhead(pANTLR3_LEXER lexer)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *p = static_cast<const char16_t *>(input->nextChar);
    return sqlantlr::substitutionPrefixLength(data, p, end) != 0;
}

void kp_widenSubstitutionPrefix(pANTLR3_LEXER lexer, pANTLR3_COMMON_TOKEN token)
{
    // The '&&' operator wins the lexer's prediction over the longer prefix rule.
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF || token->type == SUBSTITUTION_PREFIX ||
        kp_tokenText(token) != "&&") {
        return;
    }
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    const auto *p = reinterpret_cast<const char16_t *>(token->start);
    const size_t length = sqlantlr::substitutionPrefixLength(data, p, end);
    if (length <= 2 || static_cast<const char16_t *>(input->nextChar) != p + 2) {
        return;
    }
    pANTLR3_INT_STREAM stream = input->istream;
    for (size_t i = 2; i < length; ++i) {
        stream->consume(stream);
    }
    token->type = SUBSTITUTION_PREFIX;
    token->channel = HIDDEN;
    token->stop = reinterpret_cast<ANTLR3_MARKER>(p + length) - 1;
}
