// The JSON form of a parsed model, as `sqlantlr model` prints it.
#pragma once

#include <SQLAntlrParser/SQLParserException.h>

#include <nlohmann/json.hpp>

#include <vector>

class SQLContainer;

namespace sqlantlr {

// {"tables": [...], "views": [...], "exceptions": ["[line:pos] message", ...]}
nlohmann::ordered_json modelToJson(const SQLContainer &container, const std::vector<SQLParserException> &exceptions);

} // namespace sqlantlr
