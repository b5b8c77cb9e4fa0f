// Upper-casing of single UTF-16 units for the lexer's case-insensitive
// matching. The fold table is made at build time (lexer/CaseFoldTableGen.cpp),
// set up once per process and then only read, so any number of parses may
// use it at the same time.
#pragma once

class KpAntlrStringOperations {
public:
    // The shared instance.
    static const KpAntlrStringOperations &sharedManager();

    // The upper-case form of a unit when the unit is a lower-case letter whose
    // upper case is a single unit; every other unit unchanged (digits,
    // punctuation, upper-case letters, sharp s, surrogates).
    char16_t uppercaseCharacter(char16_t c) const { return table_[c]; }

private:
    KpAntlrStringOperations();
    char16_t table_[0x10000];
};
