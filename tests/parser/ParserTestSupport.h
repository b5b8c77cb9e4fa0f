// Shared helpers of the parser tests.
#pragma once

#include "ModelJson.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <gtest/gtest.h>

#include <functional>
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

// The model JSON (records included) of a script imported by a driver set up
// by `configure`. Without a model (no statement gave a tree) the records
// still count, with an empty model.
inline std::string importJson(const std::string &sql, const std::function<void(SQLParserC &)> &configure)
{
    SQLParser parser;
    configure(parser.driver());
    std::unique_ptr<SQLContainer> container = parser.parseString(sql);
    if (container == nullptr) {
        return "<no model> " + sqlantlr::modelJsonText(SQLContainer(), parser.getExceptionList(), true);
    }
    return sqlantlr::modelJsonText(*container, parser.getExceptionList(), true);
}

// The syntax tree of a script in tree-string form.
inline std::string tree(const std::string &sql)
{
    SQLParserC driver;
    KpError error;
    return driver.syntaxTreeForString(sql, &error);
}

// The parsed table of that name; a test failure and a placeholder when absent.
inline const SQLTable &tableNamed(const ParseResult &result, const std::string &name)
{
    if (result.container != nullptr) {
        if (SQLTable *found = result.container->getTableByName(name)) {
            return *found;
        }
    }
    ADD_FAILURE() << "no table " << name;
    static const std::unique_ptr<SQLTable> none = SQLTable::tableForImportWithName("<none>");
    return *none;
}

// Names of a table's primary-key columns, in column order.
// The names of the tables the parse built, in script order.
inline std::vector<std::string> tableNames(const ParseResult &result)
{
    std::vector<std::string> names;
    if (result.container != nullptr) {
        for (const auto &table : result.container->tables()) {
            names.push_back(table->getName());
        }
    }
    return names;
}

inline std::vector<std::string> primaryKeyNames(const SQLTable &table)
{
    std::vector<std::string> names;
    for (const SQLField *field : table.getPrimaryKeyFields()) {
        names.push_back(field->getName());
    }
    return names;
}
