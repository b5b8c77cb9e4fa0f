// Shared helpers of the parser tests.
#pragma once

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

struct ParseResult {
    std::unique_ptr<SQLContainer> container;
    std::vector<std::string> records;
};

// Parses a script with a fresh facade: the container after post-load
// processing and the record texts.
inline ParseResult parse(const std::string &sql)
{
    SQLParser parser;
    ParseResult result;
    result.container = parser.parseString(sql);
    for (const SQLParserException &exception : parser.getExceptionList()) {
        result.records.push_back(exception.reason);
    }
    return result;
}
