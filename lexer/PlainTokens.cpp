// The lexer's fast path for the tokens that make up most of a schema script:
// blanks, line ends, names and keywords, quoted strings and names, line
// comments, numbers, the punctuation of lists and the operators of
// expressions. The generated
// lexer predicts every token through its state tables and matches it
// character by character through the stream's function pointers; these
// tokens need neither. Each is made here exactly as
// the generated rule makes it (same type, channel, extent, line, position
// and the same helpers for names), and anything else, including every token
// whose first characters could also start another rule (N'...', Q'...',
// '..', '=='), is left to the generated lexer at the same position.
#include "InputMoves.h"
#include "PlainTokens.h"
#include "KpAntlrStringOperations.h"
#include "RecognizerSupport.h"
#include "VellumGrammarCLexer.h"

#include <cstdint>

namespace {

const KpAntlrStringOperations &foldTable = KpAntlrStringOperations::sharedManager();

// Where the token starts, as the generated lexer notes it before it runs its
// rules. The rest of the state it resets there is read only by those rules
// (and reset again before they run), so the fast path leaves it; user1 counts
// the unclosed pieces of a quoted string (see kp_matchQuotedBody).
void startToken(pANTLR3_RECOGNIZER_SHARED_STATE state, pANTLR3_INPUT_STREAM input)
{
    state->tokenStartCharIndex = reinterpret_cast<ANTLR3_MARKER>(input->nextChar);
    state->tokenStartCharPositionInLine = input->charPositionInLine;
    state->tokenStartLine = input->line;
    state->user1 = 0;
}

// Moves the stream to `to`, on the same line.
void moveWithinLine(pANTLR3_INPUT_STREAM input, const uint16_t *to)
{
    const auto *from = static_cast<const uint16_t *>(input->nextChar);
    input->charPositionInLine += static_cast<ANTLR3_INT32>(to - from);
    input->nextChar = const_cast<uint16_t *>(to);
}

// Moves the stream past a line end that finishes at `next`.
void moveToNextLine(pANTLR3_INPUT_STREAM input, const uint16_t *next)
{
    input->line++;
    input->charPositionInLine = 0;
    input->currentLine = const_cast<uint16_t *>(next);
    input->nextChar = const_cast<uint16_t *>(next);
}

// The token from the start set by startToken to the stream's next unit, as
// the runtime's emit makes it, without its calls through the lexer's
// function pointers: the stream's index is the address of its next unit.
// The fast path's rules set no text and no user fields: the token carries
// none (a quoted string's count is read and cleared before its token).
pANTLR3_COMMON_TOKEN emitToken(pANTLR3_LEXER lexer, ANTLR3_UINT32 type, ANTLR3_UINT32 channel)
{
    pANTLR3_RECOGNIZER_SHARED_STATE state = lexer->rec->state;
    pANTLR3_INPUT_STREAM input = lexer->input;
    pANTLR3_COMMON_TOKEN token = state->tokFactory->newToken(state->tokFactory);
    token->type = type;
    token->channel = channel;
    token->start = state->tokenStartCharIndex;
    token->stop = reinterpret_cast<ANTLR3_MARKER>(input->nextChar) - 1;
    token->line = state->tokenStartLine;
    token->charPosition = state->tokenStartCharPositionInLine;
    token->textState = ANTLR3_TEXT_NONE;
    token->lineStart = input->currentLine;
    token->user1 = 0;
    token->user3 = 0;
    token->custom = nullptr;
    return token;
}

bool isQuote(uint16_t unit)
{
    return unit == '\'' || unit == '"' || unit == '`';
}

// True when a word that starts with the upper-cased unit `first` at p opens
// a Q'...' piece instead (Q'..', NQ'..'), which the generated lexer reads.
// (N'..', N".." and N`..` are read by scanQuotedString.)
bool opensQPiece(char16_t first, const uint16_t *p, const uint16_t *end)
{
    if (first == 'Q') {
        return p + 1 < end && p[1] == '\'';
    }
    return first == 'N' && p + 2 < end && foldTable.uppercaseCharacter(p[1]) == 'Q' && p[2] == '\'';
}

// The type of a token of one unit at p that starts no longer token, or 0.
ANTLR3_UINT32 punctuationType(const uint16_t *p, const uint16_t *end)
{
    const bool doubled = p + 1 < end && p[1] == p[0];
    switch (*p) {
    case '(':
        return OPENPAREN;
    case ')':
        return CLOSEPAREN;
    case ',':
        return COMMA;
    case ';':
        return SEMI;
    case '=':
        return doubled ? 0 : EQUALS;  // '=='
    case '.':
        return doubled ? 0 : T__149;  // '.', not '..'
    case '*':
        return p + 1 < end && p[1] == '/' ? 0 : T__194;  // '*', not an executable comment's '*/'
    default:
        return 0;
    }
}

// An operator of expressions at p: its type, with its length in units, or
// 0. Each is the longest literal of the lexer's that starts there, as the
// generated lexer cuts it: '<=>' before '<=' before '<', a '-' before a digit
// is the sign of a SIGNED_INT. PostgreSQL's cast '::' is taken only when no
// ':' or '=' follows it; '|' alone (a SYMBOL), '--' and the rest are left.
struct Operator {
    ANTLR3_UINT32 type = 0;
    int length = 0;
};

Operator operatorAt(const uint16_t *p, const uint16_t *end)
{
    const uint16_t next = p + 1 < end ? p[1] : 0;
    switch (*p) {
    case '<':
        if (next == '=') {
            return p + 2 < end && p[2] == '>' ? Operator{T__272, 3} : Operator{T__270, 2};  // '<=>', '<='
        }
        return next == '>' ? Operator{T__273, 2} : Operator{T__268, 1};  // '<>', '<'
    case '>':
        return next == '=' ? Operator{T__271, 2} : Operator{T__269, 1};  // '>=', '>'
    case '!':
        return next == '=' ? Operator{T__275, 2} : Operator{T__260, 1};  // '!=', '!'
    case '+':
        return {T__193, 1};
    case '%':
        return {T__256, 1};
    case '|':
        return next == '|' ? Operator{T__191, 2} : Operator{};  // '||'
    case '-':
        if (next >= '0' && next <= '9') {
            int length = 2;
            while (p + length < end && p[length] >= '0' && p[length] <= '9') {
                ++length;
            }
            return {SIGNED_INT, length};
        }
        return next == '-' ? Operator{} : Operator{T__192, 1};
    case ':':
        if (next == ':' && (p + 2 == end || (p[2] != ':' && p[2] != '='))) {
            return {T__433, 2};
        }
        return {};
    default:
        return {};
    }
}

// The line end at p (LF, CRLF or a lone CR): where the next line starts, or
// nullptr when p holds no line end.
const uint16_t *afterLineEnd(const uint16_t *p, const uint16_t *end)
{
    if (p >= end) {
        return nullptr;
    }
    if (*p == '\n') {
        return p + 1;
    }
    if (*p == '\r') {
        return p + 1 < end && p[1] == '\n' ? p + 2 : p + 1;
    }
    return nullptr;
}

// Where the stream stood before a token that the fast path gives up on.
struct StreamPlace {
    void *nextChar;
    ANTLR3_UINT32 line;
    ANTLR3_INT32 charPositionInLine;
    void *currentLine;
    ANTLR3_UINT32 user1;
};

StreamPlace placeOf(pANTLR3_INPUT_STREAM input, pANTLR3_RECOGNIZER_SHARED_STATE state)
{
    return {input->nextChar, input->line, input->charPositionInLine, input->currentLine, state->user1};
}

void restorePlace(pANTLR3_INPUT_STREAM input, pANTLR3_RECOGNIZER_SHARED_STATE state, const StreamPlace &place)
{
    input->nextChar = place.nextChar;
    input->line = place.line;
    input->charPositionInLine = place.charPositionInLine;
    input->currentLine = place.currentLine;
    state->user1 = place.user1;
}

// QUOTED_STRING as its rule reads it: an optional N, then adjacent pieces
// '...', "..." and `...`, each body matched by kp_matchQuotedBody, and the
// type from kp_quotedStringType (QUOTE for a piece never closed, SYMBOL for a
// quote inside a dollar-quoted string). A Q'...' piece is left to the
// generated lexer (its rule fails on a Q without a quote after it), and so
// is a token that meets one: the stream goes back to where the token began.
pANTLR3_COMMON_TOKEN scanQuotedString(pANTLR3_LEXER lexer, const uint16_t *p, const uint16_t *end)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    pANTLR3_RECOGNIZER_SHARED_STATE state = lexer->rec->state;
    const StreamPlace place = placeOf(input, state);
    startToken(state, input);
    if (!isQuote(*p)) {
        moveWithinLine(input, p + 1);  // the N
    }
    for (;;) {
        const auto *next = static_cast<const uint16_t *>(input->nextChar);
        if (next >= end) {
            break;
        }
        const char16_t unit = foldTable.uppercaseCharacter(*next);
        if (unit == 'Q') {
            restorePlace(input, state, place);
            return nullptr;
        }
        if (!isQuote(unit)) {
            break;
        }
        moveWithinLine(input, next + 1);
        kp_matchQuotedBody(lexer, unit);
    }
    return emitToken(lexer, kp_quotedStringType(lexer), ANTLR3_TOKEN_DEFAULT_CHANNEL);
}

// SL_COMMENT after '--' or '#': the rest of the line and its line end. A
// comment that the end of input cuts before its line end is a lexical error
// of the generated lexer's, left to it.
pANTLR3_COMMON_TOKEN scanLineComment(pANTLR3_LEXER lexer, const uint16_t *p, const uint16_t *end)
{
    const uint16_t *q = p;
    while (q < end && *q != '\n' && *q != '\r') {
        ++q;
    }
    const uint16_t *next = afterLineEnd(q, end);
    if (next == nullptr) {
        return nullptr;
    }
    pANTLR3_INPUT_STREAM input = lexer->input;
    startToken(lexer->rec->state, input);
    moveToNextLine(input, next);
    return emitToken(lexer, SL_COMMENT, HIDDEN);
}

// ML_COMMENT: "/*" up to the first "*/" after it, as the rule's forms all
// end (an executable "/*!" comment is left to the generated lexer, and so is
// one the end of input cuts). Its line ends move the stream's line.
pANTLR3_COMMON_TOKEN scanBlockComment(pANTLR3_LEXER lexer, const uint16_t *p, const uint16_t *end)
{
    if (p + 2 >= end || p[2] == '!') {
        return nullptr;
    }
    const uint16_t *close = p + 2;
    while (close + 1 < end && !(close[0] == '*' && close[1] == '/')) {
        ++close;
    }
    if (close + 1 >= end) {
        return nullptr;
    }
    pANTLR3_INPUT_STREAM input = lexer->input;
    startToken(lexer->rec->state, input);
    kp_moveInputTo(input, reinterpret_cast<const char16_t *>(close + 2));
    return emitToken(lexer, ML_COMMENT, HIDDEN);
}

bool isNameStart(char16_t folded)
{
    return (folded >= 'A' && folded <= 'Z') || (folded >= 0x80 && kp_isNameLetter(folded));
}

// The scan of both entry points. Passing blanks, blanks and line ends are
// passed without tokens, as scanning them into hidden WS and NEWLINE tokens
// would move the stream, and lineEnded is set when a line ended.
template <bool PassingBlanks>
inline __attribute__((always_inline)) pANTLR3_COMMON_TOKEN scanTokenIn(pANTLR3_LEXER lexer, bool *lineEnded)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    pANTLR3_RECOGNIZER_SHARED_STATE state = lexer->rec->state;
    const auto *end = static_cast<const uint16_t *>(input->data) + input->sizeBuf / 2;
    for (;;) {
        const auto *p = static_cast<const uint16_t *>(input->nextChar);
        if (p >= end) {
            return nullptr;
        }
        const char16_t c = foldTable.uppercaseCharacter(*p);
        if (isNameStart(c)) {
            // Most tokens are names and keywords, told first: a letter starts
            // nothing else but N'...' (read here) and Q'...' pieces (left to
            // the generated lexer).
            if (c == 'N' && p + 1 < end && isQuote(p[1])) {
                return scanQuotedString(lexer, p, end);
            }
            if (opensQPiece(c, p, end)) {
                return nullptr;
            }
            // STRING: the name and the type of the word (a keyword, a
            // one-word rule such as T_NOT, or STRING).
            startToken(state, input);
            return emitToken(lexer, kp_matchWordRest(lexer), ANTLR3_TOKEN_DEFAULT_CHANNEL);
        }
        switch (c) {
        case ' ':
        case '\t': {
            const uint16_t *q = p + 1;
            while (q < end && (*q == ' ' || *q == '\t')) {
                ++q;
            }
            if (PassingBlanks) {
                moveWithinLine(input, q);
                continue;
            }
            startToken(state, input);
            moveWithinLine(input, q);
            if (kp_dropsBlanks(state)) {
                continue;  // the generated rule skips them too
            }
            return emitToken(lexer, WS, HIDDEN);
        }
        case '\n':
        case '\r':
            // LF, CRLF (the carriage return moves the column, the line feed
            // ends the line) or a lone CR.
            if (PassingBlanks) {
                moveToNextLine(input, afterLineEnd(p, end));
                *lineEnded = true;
                continue;
            }
            startToken(state, input);
            moveToNextLine(input, afterLineEnd(p, end));
            return emitToken(lexer, NEWLINE, HIDDEN);
        case '\'':
        case '"':
        case '`':
            return scanQuotedString(lexer, p, end);
        case '#':
            return scanLineComment(lexer, p, end);
        case '/':
            // "//" and "/*" comments; a "/" alone is left, as it may end a statement on its line.
            if (p + 1 < end && p[1] == '/') {
                return scanLineComment(lexer, p, end);
            }
            return p + 1 < end && p[1] == '*' ? scanBlockComment(lexer, p, end) : nullptr;
        case '-':
            if (p + 1 < end && p[1] == '-') {
                return scanLineComment(lexer, p, end);
            }
            break;  // an operator
        default:
            break;
        }
        if (const ANTLR3_UINT32 type = punctuationType(p, end)) {
            startToken(state, input);
            moveWithinLine(input, p + 1);
            return emitToken(lexer, type, ANTLR3_TOKEN_DEFAULT_CHANNEL);
        }
        if (const Operator op = operatorAt(p, end); op.type != 0) {
            startToken(state, input);
            moveWithinLine(input, p + op.length);
            return emitToken(lexer, op.type, ANTLR3_TOKEN_DEFAULT_CHANNEL);
        }
        if (c >= '0' && c <= '9') {
            const uint16_t *q = p + 1;
            while (q < end && *q >= '0' && *q <= '9') {
                ++q;
            }
            startToken(state, input);
            moveWithinLine(input, q);
            return emitToken(lexer, INT, ANTLR3_TOKEN_DEFAULT_CHANNEL);
        }
        return nullptr;
    }
}

// Units past a token that its scan may read: the unit that ends a word, a
// CR's LF, an operator's second and third.
constexpr ANTLR3_UINT32 readPastToken = 8;

// A token of a text decoded as it is read whose scan came near `scanEnd`,
// the end of the decoded text when the scan began (the scan's parts that
// took it for the end of the text may have decided by it, even where a part
// decoded more): with more text, the scan is made again from the token's
// start (blanks passed before it stay passed). False when there is no more
// text than the scan had: the token stands.
__attribute__((noinline)) bool rescanWithMoreText(pANTLR3_INPUT_STREAM input, pANTLR3_COMMON_TOKEN token,
                                                  const char16_t *scanEnd)
{
    const auto *next = static_cast<const char16_t *>(input->nextChar);
    const char16_t *end = kp_readableEnd(input);
    const auto *from = token != nullptr ? reinterpret_cast<const char16_t *>(token->start) : next;
    if (end <= scanEnd && !kp_moreTextFor(input, from)) {
        return false;
    }
    if (token != nullptr) {
        input->nextChar = const_cast<char16_t *>(from);
        input->line = token->line;
        input->charPositionInLine = token->charPosition;
        const char16_t *lineStart = from;
        const auto *data = static_cast<const char16_t *>(input->data);
        while (lineStart > data && lineStart[-1] != u'\n' && lineStart[-1] != u'\r') {
            --lineStart;
        }
        input->currentLine = const_cast<char16_t *>(lineStart);
    }
    // Without a token, the scan stopped where a token starts (it puts the
    // stream back when it leaves one to the generated lexer) or at the end.
    return true;
}

// A token of a text decoded as it is read, scanned again with more text
// when its scan came near the decoded end. That happens about once a piece
// (the first token made is then left unused). Apart from the scan of text
// held whole, which is every short script's, so that it costs that scan
// nothing.
template <bool PassingBlanks>
__attribute__((noinline)) pANTLR3_COMMON_TOKEN scanTokenDecodedAsRead(pANTLR3_LEXER lexer, bool *lineEnded)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    for (;;) {
        const char16_t *scanEnd = kp_readableEnd(input);
        pANTLR3_COMMON_TOKEN token = scanTokenIn<PassingBlanks>(lexer, lineEnded);
        if (static_cast<const char16_t *>(input->nextChar) + readPastToken < scanEnd ||
            !rescanWithMoreText(input, token, scanEnd)) {
            return token;
        }
    }
}

template <bool PassingBlanks>
inline __attribute__((always_inline)) pANTLR3_COMMON_TOKEN scanToken(pANTLR3_LEXER lexer, bool *lineEnded)
{
    if (__builtin_expect(lexer->input->super != nullptr, 0)) {
        return scanTokenDecodedAsRead<PassingBlanks>(lexer, lineEnded);
    }
    return scanTokenIn<PassingBlanks>(lexer, lineEnded);
}

} // namespace

pANTLR3_COMMON_TOKEN kp_scanPlainToken(pANTLR3_LEXER lexer)
{
    return scanToken<false>(lexer, nullptr);
}

pANTLR3_COMMON_TOKEN kp_scanPlainTokenPassingBlanks(pANTLR3_LEXER lexer, bool &lineEnded)
{
    return scanToken<true>(lexer, &lineEnded);
}
