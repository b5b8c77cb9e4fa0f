// The lexer's fast path reads a name and looks up its keyword type in one
// pass (kp_matchNameRest and kp_keywordType, which the generated lexer's
// STRING rule calls one after the other, in one).
#pragma once

#include <antlr3.h>

// With the stream after the first letter of a name (the token's start):
// moves it past the rest of the name, as kp_matchNameRest does, and returns
// the token type kp_keywordType would return then.
ANTLR3_UINT32 kp_matchNameWithType(pANTLR3_LEXER lexer);
