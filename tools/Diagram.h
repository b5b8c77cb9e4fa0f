// Entity-relationship diagrams of a parsed model: which objects and key
// edges a diagram draws, the Graphviz DOT and Mermaid texts of it, and SVG or
// PNG pictures rendered in-process with the Graphviz library.
#pragma once

#include <cstddef>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;

namespace sqlantlr {

// Which objects a diagram shows. Both filters must match when both are set.
struct DiagramOptions {
    // Only objects in this schema (compared case-insensitively).
    std::optional<std::string> schema;
    // Only objects whose name or schema-qualified name this matches
    // (searched, not anchored).
    std::optional<std::regex> tables;
};

struct DiagramColumn {
    std::string name;
    std::string type;  // empty for view columns
    bool primaryKey = false;
    bool foreignKey = false;
    bool notNull = false;
};

// A box: a table, or a view listing its columns or select-list items.
struct DiagramEntity {
    std::string title;  // "schema.name" or "name"
    bool view = false;
    std::vector<DiagramColumn> columns;
};

// A referenced table that is not drawn as a box: the target of an
// unresolved key, or a table the filters left out.
struct DiagramStub {
    std::string name;
    bool unresolved = false;
};

// One foreign key (or column reference) from columns of `from` to a box or a
// stub.
struct DiagramEdge {
    std::size_t from = 0;
    std::size_t fromColumn = 0;                // first referencing column
    std::optional<std::size_t> to;             // box index, when drawn
    std::optional<std::size_t> toColumn;       // first target column of the box
    std::optional<std::size_t> stub;           // stub index otherwise
    std::string name;                          // constraint name, may be empty
    std::vector<std::string> fromColumns;
    std::vector<std::string> toColumns;
    bool optional = false;                     // some referencing column may be NULL
};

// A view's dependency on a table it selects from, when both are drawn.
struct DiagramUse {
    std::size_t view = 0;
    std::size_t table = 0;
};

struct DiagramGraph {
    std::vector<DiagramEntity> entities;
    std::vector<DiagramStub> stubs;
    std::vector<DiagramEdge> edges;
    std::vector<DiagramUse> uses;
};

// The boxes, stubs and edges of the container's objects that pass the filters.
DiagramGraph collectDiagram(const SQLContainer &container, const DiagramOptions &options);

// Graphviz DOT source of the diagram, laid out left to right by `dot`.
std::string diagramDot(const DiagramGraph &graph);

// A Mermaid `erDiagram`.
std::string diagramMermaid(const DiagramGraph &graph);

struct RenderResult {
    bool ok = false;
    std::string data;      // the picture's bytes
    std::string messages;  // Graphviz's errors and warnings, one per line
};

// Lays out DOT source with `dot` and renders it as "svg" or "png".
RenderResult renderDot(const std::string &dot, std::string_view format);

// Collapses the blanks the model keeps between type tokens:
// "varchar ( 10 )" reads "varchar(10)", "numeric ( 10 , 2 )" "numeric(10,2)".
std::string compactType(std::string_view type);

// Names joined with ", ".
std::string joinNames(const std::vector<std::string> &names);

// "Graphviz X.Y.Z", the version of the library in use.
std::string graphvizVersion();

} // namespace sqlantlr
