// The lexer's character stream: UTF-16 code units of the script, read in
// place. Look-ahead answers with upper-cased units so that the upper-case
// keyword rules match any spelling, while token texts are cut from the
// unchanged buffer. Positions count UTF-16 units; LF, CRLF and a lone CR end a line.
#include "InputMoves.h"
#include "KpAntlrStringOperations.h"
#include "RecognizerSupport.h"
#include "UnitScan.h"

#include <cstdint>

namespace {

// Made when the library is loaded, so look-ahead needs no first-use check.
const KpAntlrStringOperations &foldTable = KpAntlrStringOperations::sharedManager();

const uint16_t *unitAt(pANTLR3_INPUT_STREAM input, ANTLR3_INT32 offset)
{
    return static_cast<const uint16_t *>(input->nextChar) + offset;
}

} // namespace

ANTLR3_UCHAR lc_antlr3UCS2LA(pANTLR3_INT_STREAM is, ANTLR3_INT32 la)
{
    auto input = static_cast<pANTLR3_INPUT_STREAM>(is->super);
    const auto *start = static_cast<const uint16_t *>(input->data);
    const auto *end = start + input->sizeBuf / 2;  // the buffer size is kept in bytes
    const uint16_t *unit = unitAt(input, la - 1);
    while (unit >= end) {
        if (!kp_moreText(input, reinterpret_cast<const char16_t *>(unit) + 1)) {
            return ANTLR3_CHARSTREAM_EOF;
        }
        start = static_cast<const uint16_t *>(input->data);
        end = start + input->sizeBuf / 2;
    }
    if (unit < start) {
        return ANTLR3_CHARSTREAM_EOF;
    }
    return foldTable.uppercaseCharacter(*unit);
}

void kp_utf16Consume(pANTLR3_INT_STREAM is)
{
    auto input = static_cast<pANTLR3_INPUT_STREAM>(is->super);
    const auto *end = static_cast<const uint16_t *>(input->data) + input->sizeBuf / 2;
    const auto *next = static_cast<const uint16_t *>(input->nextChar);
    if (next + 1 >= end && kp_moreText(input, reinterpret_cast<const char16_t *>(next) + 2)) {
        end = static_cast<const uint16_t *>(input->data) + input->sizeBuf / 2;  // a CR's LF may follow
    }
    if (next >= end) {
        return;
    }
    input->charPositionInLine++;
    // A line feed starts a line, and so does a carriage return that no line
    // feed follows (old Mac line ends).
    if (*next == input->newlineChar || (*next == u'\r' && (next + 1 >= end || next[1] != u'\n'))) {
        input->line++;
        input->charPositionInLine = 0;
        input->currentLine = const_cast<uint16_t *>(next + 1);
    }
    input->nextChar = const_cast<uint16_t *>(next + 1);
}

void kp_moveInputTo(pANTLR3_INPUT_STREAM input, const char16_t *to)
{
    const auto *from = static_cast<const char16_t *>(input->nextChar);
    bool returns = false;
    auto lines = static_cast<ANTLR3_UINT32>(sqlantlr::countLineFeeds(from, to, &returns));
    if (returns) {
        // A carriage return that no line feed follows ends a line too (to is
        // within the text; the unit after it is read when it is there).
        if (to == kp_readableEnd(input)) {
            kp_moreText(input, to + 1);
        }
        const char16_t *end = kp_readableEnd(input);
        for (const char16_t *p = from; p < to; ++p) {
            lines += static_cast<ANTLR3_UINT32>(*p == u'\r' && (p + 1 >= end || p[1] != u'\n'));
        }
    }
    if (lines != 0) {
        const char16_t *lineStart = to;
        while (*(lineStart - 1) != u'\n' && *(lineStart - 1) != u'\r') {
            --lineStart;
        }
        input->line += lines;
        input->charPositionInLine = static_cast<ANTLR3_INT32>(to - lineStart);
        input->currentLine = const_cast<char16_t *>(lineStart);
    } else {
        input->charPositionInLine += static_cast<ANTLR3_INT32>(to - from);
    }
    input->nextChar = const_cast<char16_t *>(to);
}
