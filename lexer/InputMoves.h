// Moving the lexer's character stream over text without reading it as
// tokens: a skipped statement, a comment cut by the fast path.
#pragma once

#include <antlr3.h>

// Moves the stream to `to` (within its text, at or after its next unit) as
// consuming each unit would (kp_utf16Consume): LF, and a CR no LF follows,
// end a line.
void kp_moveInputTo(pANTLR3_INPUT_STREAM input, const char16_t *to);
