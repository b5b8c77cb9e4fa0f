// The Mermaid form of a diagram. Mermaid's erDiagram accepts only plain
// words as entity, attribute and type names, so names are turned into such
// words (kept unique) and the text as written goes into the attribute's
// comment when the word had to differ.
#include "Diagram.h"

#include <set>
#include <sstream>

namespace sqlantlr {

namespace {

bool wordCharacter(char c, bool first)
{
    const unsigned char u = static_cast<unsigned char>(c);
    return (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || c == '_' || (!first && ((u >= '0' && u <= '9') || c == '-'));
}

// A Mermaid word for a name: other characters become "_", and a leading
// character that cannot start a word gets a "_" in front.
std::string word(std::string_view name)
{
    std::string result;
    for (const char c : name) {
        result += wordCharacter(c, false) ? c : '_';
    }
    if (result.empty() || !wordCharacter(result.front(), true)) {
        result.insert(result.begin(), '_');
    }
    return result;
}

// A type word: the type as written when Mermaid takes it ("varchar(10)"),
// else its leading word ("numeric" for "numeric(10,2)").
std::string typeWord(const std::string &type, bool &cut)
{
    std::string compact;
    for (const char c : type) {
        if (c != ' ') {
            compact += c;
        }
    }
    std::size_t length = 0;
    while (length < compact.size() &&
           (wordCharacter(compact[length], length == 0) || compact[length] == '(' || compact[length] == ')' ||
            compact[length] == '[' || compact[length] == ']')) {
        ++length;
    }
    cut = length < compact.size();
    if (compact.find('(', 0) < length && compact.find(')', 0) >= length) {
        length = compact.find('(');  // no half-open parentheses
    }
    return length == 0 ? std::string("unknown") : compact.substr(0, length);
}

// Comment text: Mermaid ends a comment at the next double quote.
std::string comment(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        result += c == '"' ? '\'' : (static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
    }
    return result;
}

class Words {
public:
    std::string unique(std::string_view name)
    {
        std::string candidate = word(name);
        const std::string base = candidate;
        for (int n = 2; !used_.insert(candidate).second; ++n) {
            candidate = base + "_" + std::to_string(n);
        }
        return candidate;
    }

private:
    std::set<std::string> used_;
};

void writeAttributes(std::ostream &out, const DiagramEntity &entity)
{
    Words columnWords;
    for (const DiagramColumn &column : entity.columns) {
        bool cut = false;
        const std::string type = entity.view ? std::string("view") : typeWord(column.type, cut);
        const std::string name = columnWords.unique(column.name);
        std::string note;
        if (cut || (!entity.view && type == "unknown")) {
            note = compactType(column.type);
        }
        if (name != column.name) {
            note = column.name + (note.empty() ? "" : " " + note);
        }
        if (column.notNull) {
            note += note.empty() ? "NOT NULL" : ", NOT NULL";
        }
        out << "        " << type << " " << name;
        if (column.primaryKey || column.foreignKey) {
            out << " " << (column.primaryKey ? "PK" : "") << (column.primaryKey && column.foreignKey ? ", " : "")
                << (column.foreignKey ? "FK" : "");
        }
        if (!note.empty()) {
            out << " \"" << comment(note) << "\"";
        }
        out << "\n";
    }
}

} // namespace

std::string diagramMermaid(const DiagramGraph &graph)
{
    std::ostringstream out;
    out << "erDiagram\n";
    Words entityWords;
    std::vector<std::string> entityNames;
    for (const DiagramEntity &entity : graph.entities) {
        entityNames.push_back(entityWords.unique(entity.title));
        out << "    " << entityNames.back() << " {\n";
        writeAttributes(out, entity);
        out << "    }\n";
    }
    std::vector<std::string> stubNames;
    for (const DiagramStub &stub : graph.stubs) {
        stubNames.push_back(entityWords.unique(stub.name));
        out << "    " << stubNames.back() << " {\n        stub " << (stub.unresolved ? "not_found" : "not_drawn")
            << "\n    }\n";
    }
    for (const DiagramEdge &edge : graph.edges) {
        // Many referencing rows to at most one target row; dashed when the
        // target is not drawn.
        out << "    " << entityNames[edge.from] << " }o" << (edge.to ? "--" : "..") << (edge.optional ? "o|" : "||")
            << " " << (edge.to ? entityNames[*edge.to] : stubNames[*edge.stub]) << " : \""
            << comment(edge.name.empty() ? "(" + joinNames(edge.fromColumns) + ")" : edge.name) << "\"\n";
    }
    return out.str();
}

} // namespace sqlantlr
