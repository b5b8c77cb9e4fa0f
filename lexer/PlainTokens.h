// The lexer's fast path (lexer/PlainTokens.cpp): the tokens that make up
// most of a schema script, made without the generated lexer's prediction.
#pragma once

#include <antlr3.h>

// The next token when it is a blank run, a line end, a name or keyword, a
// quoted string or name, a line or block comment, a number, a punctuation
// mark or an operator of expressions; nullptr, with nothing consumed, when
// the generated lexer is to make it. Blanks a parse drops are skipped.
pANTLR3_COMMON_TOKEN kp_scanPlainToken(pANTLR3_LEXER lexer);

// The same for a reading that only needs to know whether a line ended:
// blanks and line ends before the token are passed without tokens (the
// stream moves as scanning them would), and lineEnded is set when one of
// them ended a line, also when nullptr is returned.
pANTLR3_COMMON_TOKEN kp_scanPlainTokenPassingBlanks(pANTLR3_LEXER lexer, bool &lineEnded);
