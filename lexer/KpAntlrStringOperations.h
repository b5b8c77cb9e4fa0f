// Upper-casing of single UTF-16 units for the lexer's case-insensitive
// matching. The fold table is made at build time (lexer/CaseFoldTableGen.cpp)
// and only read, straight from the library's constant data, so any number of
// parses may use it at the same time and no process copies it.
#pragma once

namespace kp_detail {
// For each unit, the unit upper-cased as uppercaseCharacter says.
extern const char16_t upperCaseTable[0x10000];
}

class KpAntlrStringOperations {
public:
    // The shared instance.
    static const KpAntlrStringOperations &sharedManager();

    // The upper-case form of a unit when the unit is a lower-case letter whose
    // upper case is a single unit; every other unit unchanged (digits,
    // punctuation, upper-case letters, sharp s, surrogates).
    char16_t uppercaseCharacter(char16_t c) const { return kp_detail::upperCaseTable[c]; }

private:
    KpAntlrStringOperations() = default;
};
