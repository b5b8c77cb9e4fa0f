#include "QuotedText.h"

#include "InputMoves.h"
#include "ParseSession.h"
#include "RecognizerSupport.h"
#include "UnitScan.h"
#include "VellumGrammarCLexer.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace sqlantlr {

namespace {

bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\r'; }

// Outside strings, the units that change what a scan of the rest of a line
// knows: line ends, quotes and dashes. Dump lines are mostly other units,
// which the scans pass eight at a time.
const UnitSet outsideStrings(u'\n', u'\r', u'\'', u'"', u'`', u'-');

// The units that end or change the reading of a string opened by one quote.
struct QuoteSets {
    UnitSet<4> body;           // the quote, a backslash, a line end
    UnitSet<1> quote;          // the quote alone
    UnitSet<2> quoteOrEscape;  // the quote, a backslash
    UnitSet<4> rest;           // the quote, a line end (the quote twice: a set of four, as the next)
    UnitSet<4> restEscaping;   // the quote, a line end, a backslash
    explicit QuoteSets(char16_t q)
        : body(q, u'\\', u'\n', u'\r'), quote(q), quoteOrEscape(q, u'\\'), rest(q, q, u'\n', u'\r'),
          restEscaping(q, u'\\', u'\n', u'\r')
    {
    }
};

const QuoteSets singleQuoted(u'\''), doubleQuoted(u'"'), backQuoted(u'`');

// The sets of one of the three quotes, or nullptr for another unit.
const QuoteSets *standardSets(char16_t quote)
{
    switch (quote) {
    case u'\'':
        return &singleQuoted;
    case u'"':
        return &doubleQuoted;
    case u'`':
        return &backQuoted;
    default:
        return nullptr;
    }
}

bool isAsciiLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

bool isNameCharacter(char16_t c)
{
    return isAsciiLetter(c) || (c >= u'0' && c <= u'9') || c == u'_' || c == u'$' || c == u'#';
}

// The position just after the closing quote, or nullptr when the piece is not
// closed before end (backslashes escaping the next unit). A doubled quote
// closes the piece: the next piece of the same token starts there.
const char16_t *closingEscapedQuote(const char16_t *p, const char16_t *end, const QuoteSets &sets)
{
    for (p = sets.quoteOrEscape.findIn(p, end); p < end; p = sets.quoteOrEscape.findIn(p + 1, end)) {
        if (*p != u'\\') {
            return p + 1;
        }
        if (p + 1 < end) {  // a backslash: the next unit is taken with it
            ++p;
        }
    }
    return nullptr;
}

bool crossesLineEnd(const char16_t *from, const char16_t *to) { return lineEndUnits.findIn(from, to) != to; }

// True when the rest of the line from p leaves a string open; a line comment
// outside strings ends the scan. closes, if given, receives the position after
// each string the scan closes.
bool lineEndsInString(const char16_t *p, const char16_t *end, bool escapes,
                      std::vector<const char16_t *> *closes = nullptr)
{
    for (p = outsideStrings.findIn(p, end); p < end;) {
        if (isLineEnd(*p)) {
            return false;
        }
        if (*p == u'-') {
            if (p + 1 < end && p[1] == u'-') {
                return false;
            }
            p = outsideStrings.findIn(p + 1, end);
            continue;
        }
        // A quote opens a string: only its quote, a line end and (escaping)
        // a backslash count until it closes.
        const QuoteSets &sets = *standardSets(*p);
        const UnitSet<4> &inside = escapes ? sets.restEscaping : sets.rest;
        for (p = inside.findIn(p + 1, end);; p = inside.findIn(p + 1, end)) {
            if (p >= end || isLineEnd(*p)) {
                return true;
            }
            if (*p != u'\\') {
                break;
            }
            if (p + 1 < end && !isLineEnd(p[1])) {
                ++p;  // the backslash takes the next unit with it
            }
        }
        if (closes != nullptr) {
            closes->push_back(p + 1);
        }
        p = outsideStrings.findIn(p + 1, end);
    }
    return false;
}

// lineEndsInString, answered from the last scan when that scan closed a
// string just before p: from there on it read what a scan from p reads.
// Pieces are asked about in text order, after their closing quote, so each
// line is scanned about once instead of once for each piece.
bool lineEndsInString(const char16_t *p, const char16_t *end, bool escapes, QuoteScanCache *cache)
{
    if (cache == nullptr) {
        return lineEndsInString(p, end, escapes);
    }
    QuoteScanCache::Scan &last = escapes ? cache->escaping : cache->plain;
    if (last.end == end) {
        while (last.passed < last.closes.size() && last.closes[last.passed] < p) {
            ++last.passed;
        }
        if (last.passed < last.closes.size() && last.closes[last.passed] == p) {
            return last.result;
        }
    }
    last.end = end;
    last.closes.clear();
    last.passed = 0;
    last.result = lineEndsInString(p, end, escapes, &last.closes);
    return last.result;
}

bool staysOnItsLine(const char16_t *body, const char16_t *close, const char16_t *end, bool escapes,
                    QuoteScanCache *cache)
{
    return close != nullptr && !crossesLineEnd(body, close) && !lineEndsInString(close, end, escapes, cache);
}

} // namespace

namespace {

size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote, const QuoteSets *sets,
                        QuoteScanCache *cache, bool lineBound, bool &cut)
{
    if (lineBound) {
        const char16_t *p = sets->rest.findIn(body, end);
        cut = p >= end;
        return p < end && *p == quote ? static_cast<size_t>(p + 1 - body) : 0;
    }
    // The plain reading, and whether its body holds a backslash or a line
    // end: only then may the escaping reading differ from it.
    const char16_t *plain = nullptr;
    const char16_t *p = sets->body.findIn(body, end);
    const bool special = p < end && *p != quote;
    if (special) {
        p = sets->quote.findIn(p + 1, end);
    }
    if (p < end) {
        plain = p + 1;
    }
    const char16_t *escaped = plain;
    if (plain == nullptr || special) {
        escaped = closingEscapedQuote(body, end, *sets);
    }
    cut = plain == nullptr || escaped == nullptr;
    const char16_t *chosen = escaped;
    if (escaped != plain) {
        if (escaped == nullptr || (!staysOnItsLine(body, escaped, end, true, cache) && staysOnItsLine(body, plain, end, false, cache))) {
            chosen = plain;
        }
    }
    return chosen != nullptr ? static_cast<size_t>(chosen - body) : 0;
}

} // namespace

size_t quotedBodyLength(const char16_t *body, const char16_t *end, char16_t quote, QuoteScanCache *cache,
                        bool lineBound, bool *cut)
{
    bool ignored = false;
    bool &met = cut != nullptr ? *cut : ignored;
    if (const QuoteSets *sets = standardSets(quote)) {
        return quotedBodyLength(body, end, quote, sets, cache, lineBound, met);
    }
    const QuoteSets own(quote);
    return quotedBodyLength(body, end, quote, &own, cache, lineBound, met);
}

bool isRemarkLine(const char16_t *begin, const char16_t *at, QuoteScanCache *cache)
{
    const char16_t *p = at;
    const char16_t *stop = begin;
    const bool sameLineKnown = cache != nullptr && cache->lineAt != nullptr && cache->lineAt >= begin &&
                               cache->lineAt <= at;
    if (sameLineKnown) {
        stop = cache->lineAt;
    }
    while (p > stop && !isLineEnd(p[-1])) {
        --p;
    }
    if (sameLineKnown && p == stop && (stop == begin || !isLineEnd(stop[-1]))) {
        p = cache->lineStart;
    }
    if (cache != nullptr) {
        cache->lineAt = at;
        cache->lineStart = p;
    }
    while (p < at && (*p == u' ' || *p == u'\t')) {
        ++p;
    }
    // Most lines start with no R or P, and so with no such command.
    if (p == at || ((*p | 0x20) != u'r' && (*p | 0x20) != u'p')) {
        return false;
    }
    std::string word;
    for (; p < at && isAsciiLetter(*p) && word.size() < 8; ++p) {
        word += static_cast<char>(*p >= u'a' ? *p - (u'a' - u'A') : *p);
    }
    if (p == at || (*p != u' ' && *p != u'\t')) {
        return false;
    }
    return isRemarkWord(word);
}

bool isRemarkWord(std::string_view upperWord)
{
    // SQL*Plus takes any abbreviation down to REM and PRO.
    auto abbreviates = [&](std::string_view full) {
        return upperWord.size() >= 3 && upperWord.size() <= full.size() && full.substr(0, upperWord.size()) == upperWord;
    };
    return abbreviates("REMARK") || abbreviates("PROMPT");
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

namespace {

bool isTagLetter(char16_t c) { return isAsciiLetter(c) || c == u'_' || c >= 0x80; }
bool isTagCharacter(char16_t c) { return isTagLetter(c) || (c >= u'0' && c <= u'9'); }

// The end of the tag name that follows the '$' at p: the '$' that closes it,
// or nullptr when a character that no tag holds comes first. The name of an
// opening tag does not start with a digit; where a closing tag may stand,
// any tag character counts (no opening tag will match a name with a digit
// first).
const char16_t *tagClose(const char16_t *p, const char16_t *end, bool opening)
{
    const char16_t *q = p + 1;
    if (opening && q < end && !isTagLetter(*q) && *q != u'$') {
        return nullptr;
    }
    while (q < end && isTagCharacter(*q)) {
        ++q;
    }
    return q < end && *q == u'$' ? q : nullptr;
}

} // namespace

void DollarTagIndex::extend()
{
    // Each '$' names at most one tag that can stand there: the '$', the tag
    // characters after it, and the '$' that ends them. The text is indexed in
    // steps, only as far as a question needs, so that a closed dollar quote
    // reads no further than its closing tag.
    constexpr size_t step = 1U << 16U;
    const char16_t *stop = static_cast<size_t>(end_ - scanned_) > step ? scanned_ + step : end_;
    for (const char16_t *p = scanned_; p < stop; ++p) {
        if (*p != u'$') {
            continue;
        }
        if (const char16_t *close = tagClose(p, end_, false)) {
            places_[std::u16string(p, static_cast<size_t>(close - p) + 1)].push_back(static_cast<size_t>(p - from_));
        }
    }
    scanned_ = stop;
}

const char16_t *DollarTagIndex::next(std::u16string_view tag, const char16_t *from, const char16_t *end)
{
    if (end != end_ || from < from_ || from_ == nullptr) {
        from_ = from;
        end_ = end;
        scanned_ = from;
        places_.clear();
    }
    const std::u16string key(tag);
    for (;;) {
        const auto found = places_.find(key);
        if (found != places_.end()) {
            const std::vector<size_t> &places = found->second;
            const auto place = std::lower_bound(places.begin(), places.end(), static_cast<size_t>(from - from_));
            if (place != places.end()) {
                return from_ + *place;
            }
        }
        if (scanned_ >= end_) {
            return nullptr;
        }
        extend();
    }
}

size_t dollarQuotedLength(const char16_t *p, const char16_t *end, DollarTagIndex *index, bool *cut)
{
    if (p >= end || *p != u'$') {
        return 0;
    }
    const char16_t *q = tagClose(p, end, true);
    if (q == nullptr) {
        return 0;
    }
    const std::u16string_view tag(p, static_cast<size_t>(q - p) + 1);
    const char16_t *close = nullptr;
    if (index != nullptr) {
        close = index->next(tag, q + 1, end);
    } else {
        const std::u16string_view rest(q + 1, static_cast<size_t>(end - q - 1));
        const size_t at = rest.find(tag);
        close = at == std::u16string_view::npos ? nullptr : q + 1 + at;
    }
    if (cut != nullptr) {
        *cut = close == nullptr;
    }
    return close == nullptr ? 0 : static_cast<size_t>(close - p) + tag.size();
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

void advanceDelimiterTrack(DelimiterTrack &track, const char16_t *begin, const char16_t *p, const char16_t *end)
{
    const char16_t *q = track.scannedTo;
    if (q == nullptr || q < begin || q > p) {
        q = begin;
        track.delimiter.clear();
    }
    bool lineStart = q == begin || isLineEnd(q[-1]);
    const std::u16string_view word = u"DELIMITER";
    while (q < p) {
        if (!lineStart) {
            // On to the next line: only a line's first word can be DELIMITER.
            q = lineEndUnits.findIn(q, p);
            if (q >= p) {
                break;
            }
            ++q;
            lineStart = true;
            continue;
        }
        if (isLineEnd(*q) || *q == u' ' || *q == u'\t') {
            ++q;
            continue;
        }
        lineStart = false;
        const char16_t *r = q;
        size_t matched = 0;
        while (matched < word.size() && r < end && (*r & ~0x20) == word[matched]) {
            ++r;
            ++matched;
        }
        ++q;
        if (matched < word.size() || r >= end || (*r != u' ' && *r != u'\t')) {
            continue;
        }
        while (r < end && (*r == u' ' || *r == u'\t')) {
            ++r;
        }
        const char16_t *text = r;
        while (r < end && !isLineEnd(*r) && *r != u' ' && *r != u'\t') {
            ++r;
        }
        track.delimiter.assign(text, r);
        if (track.delimiter == u";") {
            track.delimiter.clear();
        }
    }
    track.scannedTo = p;
}

bool delimiterAt(DelimiterTrack &track, const char16_t *begin, const char16_t *p, const char16_t *end)
{
    advanceDelimiterTrack(track, begin, p, end);
    const std::u16string &d = track.delimiter;
    return !d.empty() && static_cast<size_t>(end - p) >= d.size() && std::u16string_view(p, d.size()) == d;
}

} // namespace sqlantlr

namespace {
// user1's value for a quote inside a dollar-quoted string (see kp_noteDollarQuote).
constexpr ANTLR3_UINT32 quoteInDollarQuote = 0x10000;
} // namespace

void kp_noteDollarQuote(pANTLR3_LEXER lexer)
{
    auto *session = static_cast<sqlantlr::ParseSession *>(lexer->rec->state->userp);
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *sign = static_cast<const char16_t *>(input->nextChar) - 1;
    if (session == nullptr || (sign >= session->dollarQuoteBegin && sign < session->dollarQuoteEnd)) {
        return;
    }
    const auto *data = static_cast<const char16_t *>(input->data);
    const char16_t *end = data + input->sizeBuf / 2;
    if (sqlantlr::delimiterAt(session->delimiterTrack, data, sign, end)) {
        return;
    }
    const size_t length = kp_scanReadingOn(input, sign, [&](const char16_t *readable, bool &cut) {
        return sqlantlr::dollarQuotedLength(sign, readable, &session->dollarTags, &cut);
    });
    if (length != 0) {
        session->dollarQuoteBegin = sign;
        session->dollarQuoteEnd = sign + length;
        // The token of the sign carries the extent (see kp_dollarQuoteUnits).
        lexer->rec->state->user3 = static_cast<ANTLR3_UINT32>(std::min<size_t>(length, UINT32_MAX));
    }
}

size_t kp_dollarQuoteUnits(pANTLR3_COMMON_TOKEN token)
{
    return token != nullptr && token->type == SYMBOL ? token->user3 : 0;
}

// The lexer state's user1 counts the pieces of the current token that were
// never closed; kp_quotedStringType reads and clears it. A quote inside a
// dollar-quoted string opens nothing: the token is the quote alone.
void kp_matchQuotedBody(pANTLR3_LEXER lexer, ANTLR3_UCHAR quote)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    const auto *data = static_cast<const char16_t *>(input->data);
    const auto *body = static_cast<const char16_t *>(input->nextChar);
    auto *session = static_cast<sqlantlr::ParseSession *>(lexer->rec->state->userp);
    if (session != nullptr && body - 1 >= session->dollarQuoteBegin && body - 1 < session->dollarQuoteEnd) {
        lexer->rec->state->user1 = quoteInDollarQuote;
        return;
    }
    sqlantlr::QuoteScanCache *cache = session != nullptr ? &session->quoteScans : nullptr;
    const bool lineBound = sqlantlr::isRemarkLine(data, body - 1, cache);
    const size_t length = kp_scanReadingOn(input, body, [&](const char16_t *readable, bool &cut) {
        return sqlantlr::quotedBodyLength(body, readable, static_cast<char16_t>(quote), cache, lineBound, &cut);
    });
    if (length == 0) {
        lexer->rec->state->user1++;
        return;
    }
    kp_moveInputTo(input, body + length);
}

ANTLR3_UINT32 kp_quotedStringType(pANTLR3_LEXER lexer)
{
    const ANTLR3_UINT32 mark = lexer->rec->state->user1;
    lexer->rec->state->user1 = 0;
    if (mark == quoteInDollarQuote) {
        return SYMBOL;
    }
    const bool unclosed = mark != 0;
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
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF || token->type == SUBSTITUTION_PREFIX) {
        return;
    }
    // Every token passes here: its text is read in place, not copied.
    const char16_t *units = nullptr;
    size_t count = 0;
    const bool ampersands = kp_tokenUnits(token, &units, &count) ? count == 2 && units[0] == u'&' && units[1] == u'&'
                                                                 : kp_tokenText(token) == "&&";
    if (!ampersands) {
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
