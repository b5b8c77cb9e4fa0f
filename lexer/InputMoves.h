// Moving the lexer's character stream over text without reading it as
// tokens: a skipped statement, a comment cut by the fast path.
#pragma once

#include <antlr3.h>

// Moves the stream to `to` (within its text, at or after its next unit) as
// consuming each unit would (kp_utf16Consume): LF, and a CR no LF follows,
// end a line.
void kp_moveInputTo(pANTLR3_INPUT_STREAM input, const char16_t *to);

// A long text is decoded as it is read (the stream's `super` is then its
// TextFeed): the stream's readable units end where the decoding has got to.
// A reader that meets that end asks for more before it takes it for the
// end of the text. kp_moreText decodes on, to at least `wanted` and at
// least one more piece, and widens the readable units; false when there is
// no more (the text's end, or the end of the stream's window).
bool kp_moreText(pANTLR3_INPUT_STREAM input, const char16_t *wanted = nullptr);

// The end of the stream's readable units.
inline const char16_t *kp_readableEnd(pANTLR3_INPUT_STREAM input)
{
    return static_cast<const char16_t *>(input->data) + input->sizeBuf / 2;
}

// More text for a scan from `from` that met the readable end: about as much
// again as it has read, so that a long scan retried costs linear time.
inline bool kp_moreTextFor(pANTLR3_INPUT_STREAM input, const char16_t *from)
{
    const char16_t *end = kp_readableEnd(input);
    return kp_moreText(input, end + (end - from));
}

// The answer of `scan(end, cut)` from `from` on, where the scan sets `cut`
// when it met `end` before it could answer: made again with more text until
// it answers or the text ends.
template <typename Scan>
auto kp_scanReadingOn(pANTLR3_INPUT_STREAM input, const char16_t *from, Scan scan)
{
    for (;;) {
        bool cut = false;
        auto answer = scan(kp_readableEnd(input), cut);
        if (!cut || !kp_moreTextFor(input, from)) {
            return answer;
        }
    }
}
