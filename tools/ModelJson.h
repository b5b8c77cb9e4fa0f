// The JSON form of a parsed model, as `sqlantlr model` prints it.
#pragma once

#include <SQLAntlrParser/SQLParserException.h>

#include <ostream>
#include <string>
#include <vector>

class SQLContainer;

namespace sqlantlr {

// {"tables": [...], "views": [...], "exceptions": ["[line:pos] message", ...]}
// written to `out` object by object as the model is walked; pretty indents
// by two spaces. No newline follows.
void writeModelJson(std::ostream &out, const SQLContainer &container, const std::vector<SQLParserException> &exceptions,
                    bool pretty = false);

// The same text as a string.
std::string modelJsonText(const SQLContainer &container, const std::vector<SQLParserException> &exceptions,
                          bool pretty = false);

} // namespace sqlantlr
