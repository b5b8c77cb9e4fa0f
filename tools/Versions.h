// Versions of the libraries the tool runs with, for --version.
#pragma once

#include <string>

namespace sqlantlr {

// One "name version" line each: the parser library, the ANTLR C runtime,
// ICU, Graphviz and the C++ compiler and standard library.
std::string libraryVersions();

} // namespace sqlantlr
