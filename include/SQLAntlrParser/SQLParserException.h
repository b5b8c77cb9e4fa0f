// One diagnostic record of a parse: a syntax error, a renamed duplicate
// column, an unresolved key column, a missing ALTER target.
#pragma once

#include <string>

struct SQLParserException {
    std::string name;    // always "ParsingException"
    std::string reason;  // "[line:position] message", line from 1, position from 0

    bool operator==(const SQLParserException &other) const
    {
        return name == other.name && reason == other.reason;
    }
};
