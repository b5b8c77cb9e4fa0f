// Error values of the library: a domain, a code and a message.
#pragma once

#include <string>

struct KpError {
    std::string domain;  // always "Vellum Error"
    int code = 0;
    std::string message;

    // Domain of every error the library makes.
    static constexpr const char *Domain = "Vellum Error";

    // A new error with the library's domain.
    static KpError errorWithLocalizedString(const std::string &message, int code);

    // Stores a new error in *error and returns true; with no error pointer it
    // logs "ERROR (code): message" instead and returns false.
    static bool handleErrorWithLocalizedString(const std::string &message, int code, KpError *error);
};

// Error codes of a parse.
enum KpErrorCode : int {
    KpErrorNilInput = 1,            // "Invalid input (is nil)"
    KpErrorInputStream = 2,         // "Failed to create parser input stream (out of memory?)"
    KpErrorLexer = 3,               // "Failed to create the lexer (malloc failure)"
    KpErrorTokenStream = 4,         // "Failed to create token stream (out of memory?)"
    KpErrorParser = 5,              // "Failed to allocate parser (out of memory?)"
    KpErrorTreeParser = 7,          // "Failed to create the tree parser (out of memory)"
    KpErrorUnallocatedTree = 279,   // "Tried to parse unallocated Tree"
    KpErrorEmptyTree = 290,         // "Tried to parse empty Tree"
};
