#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace SchemaModel {

/// Removes white space around an identifier and, when the whole rest is one
/// quoted identifier ("x", `x`, 'x' or [x]), removes the quotes and undoubles
/// the escaped closing quotes inside. Case is kept; anything else is returned
/// unchanged (after white space removal).
std::string trim(std::string_view name);

/// Unicode case-insensitive comparison using full case folding
/// ("STRASSE" equals "straße").
bool namesEqualIgnoringCase(std::string_view a, std::string_view b);

/// A possibly schema-qualified object name split into its parts.
struct QualifiedName {
    std::optional<std::string> schema;
    std::string name;
};

/// Splits "s.t" at the last dot that is not inside identifier quotes and
/// trims both parts. Without such a dot the schema is empty (nullopt).
QualifiedName splitQualifiedName(std::string_view qualifiedName);

} // namespace SchemaModel
