#include "Diagram.h"

#include <SchemaModel/SchemaModel.h>

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>
#include <sstream>
#include <unordered_map>

#include <dlfcn.h>

namespace sqlantlr {

namespace {

std::string folded(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool passes(const DiagramOptions &options, const std::optional<std::string> &schema, const std::string &name,
            const std::string &title)
{
    if (options.schema && (!schema || folded(*schema) != folded(*options.schema))) {
        return false;
    }
    if (options.tables && !std::regex_search(name, *options.tables) && !std::regex_search(title, *options.tables)) {
        return false;
    }
    return true;
}

std::string qualified(const std::optional<std::string> &schema, const std::string &name)
{
    return schema ? *schema + "." + name : name;
}

std::size_t columnIndex(const SQLTable &table, const SQLField *field)
{
    const auto &fields = table.fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].get() == field) {
            return i;
        }
    }
    return 0;
}

// Collects boxes first, then edges, which need every box's index.
class Collector {
public:
    Collector(const SQLContainer &container, const DiagramOptions &options) : container_(container)
    {
        for (const auto &table : container.tables()) {
            const std::string title = qualified(table->getSchemaName(), table->getName());
            if (passes(options, table->getSchemaName(), table->getName(), title)) {
                tableIndex_[table.get()] = graph_.entities.size();
                graph_.entities.push_back(tableEntity(*table, title));
            }
        }
        for (const auto &view : container.views()) {
            const std::string name = view->getBaseName().value_or(view->getName());
            const std::string title = qualified(view->getSchemaName(), name);
            if (passes(options, view->getSchemaName(), name, title)) {
                viewEntity(*view, title);
            }
        }
    }

    DiagramGraph take()
    {
        for (const auto &table : container_.tables()) {
            const auto found = tableIndex_.find(table.get());
            if (found != tableIndex_.end()) {
                addEdges(*table, found->second);
            }
        }
        return std::move(graph_);
    }

private:
    static DiagramEntity tableEntity(const SQLTable &table, const std::string &title)
    {
        DiagramEntity entity;
        entity.title = title;
        for (const auto &field : table.fields()) {
            entity.columns.push_back({field->getName(), field->getType(), field->isPrimaryKey(),
                                      field->getReferences() != nullptr, field->isNotNull()});
        }
        for (const auto &key : table.foreignKeys()) {
            for (const auto &entry : key->entries()) {
                if (entry->getSource() != nullptr) {
                    entity.columns[columnIndex(table, entry->getSource())].foreignKey = true;
                }
            }
        }
        return entity;
    }

    void viewEntity(const SQLView &view, const std::string &title)
    {
        DiagramEntity entity;
        entity.title = title;
        entity.view = true;
        const auto &names = view.columns().empty() ? view.selectColumns() : view.columns();
        for (const std::string &name : names) {
            entity.columns.push_back({name, "", false, false, false});
        }
        const std::size_t index = graph_.entities.size();
        graph_.entities.push_back(std::move(entity));
        for (const SQLViewTableEntry &used : view.tableEntries()) {
            const SQLTable *table = container_.getTableByName(used.name);
            const auto found = table != nullptr ? tableIndex_.find(table) : tableIndex_.end();
            if (found != tableIndex_.end()) {
                graph_.uses.push_back({index, found->second});
            }
        }
    }

    std::size_t stubFor(const std::string &name, bool unresolved)
    {
        const std::string key = (unresolved ? "?" : "=") + name;
        const auto found = stubIndex_.find(key);
        if (found != stubIndex_.end()) {
            return found->second;
        }
        stubIndex_[key] = graph_.stubs.size();
        graph_.stubs.push_back({name, unresolved});
        return graph_.stubs.size() - 1;
    }

    // Points the edge at the target's box when drawn, else at a stub.
    void target(DiagramEdge &edge, const SQLTable *table, const SQLField *field, const std::string &name,
                bool resolved)
    {
        const auto found = resolved && table != nullptr ? tableIndex_.find(table) : tableIndex_.end();
        if (found != tableIndex_.end()) {
            edge.to = found->second;
            if (field != nullptr) {
                edge.toColumn = columnIndex(*table, field);
            }
        } else {
            edge.stub = stubFor(resolved && table != nullptr ? qualified(table->getSchemaName(), table->getName())
                                                             : name,
                                !resolved);
        }
    }

    void addEdges(const SQLTable &table, std::size_t index)
    {
        for (const auto &field : table.fields()) {
            const SQLFieldReference *reference = field->getReferences();
            if (reference == nullptr) {
                continue;
            }
            DiagramEdge edge;
            edge.from = index;
            edge.fromColumn = columnIndex(table, field.get());
            edge.name = reference->referenceId.value_or("");
            edge.fromColumns = {field->getName()};
            if (reference->field) {
                edge.toColumns = {*reference->field};
            }
            edge.optional = !field->isNotNull() && !field->isPrimaryKey();
            target(edge, reference->targetTable, reference->targetField, reference->table, reference->resolved);
            graph_.edges.push_back(std::move(edge));
        }
        for (const auto &key : table.foreignKeys()) {
            DiagramEdge edge;
            edge.from = index;
            edge.name = key->getName();
            const SQLField *firstTarget = nullptr;
            for (const auto &entry : key->entries()) {
                if (const SQLField *source = entry->getSource()) {
                    if (edge.fromColumns.empty()) {
                        edge.fromColumn = columnIndex(table, source);
                    }
                    edge.fromColumns.push_back(source->getName());
                    edge.optional = edge.optional || (!source->isNotNull() && !source->isPrimaryKey());
                }
                if (const auto targetName = entry->getTargetName()) {
                    edge.toColumns.push_back(*targetName);
                }
                if (firstTarget == nullptr) {
                    firstTarget = entry->getTarget();
                }
            }
            target(edge, key->getTargetTable(), firstTarget, key->getTargetTableName().value_or(""),
                   key->isResolved());
            graph_.edges.push_back(std::move(edge));
        }
    }

    const SQLContainer &container_;
    DiagramGraph graph_;
    std::unordered_map<const SQLTable *, std::size_t> tableIndex_;
    std::map<std::string, std::size_t> stubIndex_;
};

// Text for an HTML-like label: markup characters escaped, control
// characters blanked, and long texts cut so a box stays narrow.
std::string html(std::string_view text, std::size_t limit = 48)
{
    std::string result;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if ((c & 0xC0) != 0x80 && ++characters > limit) {
            result += "&#8230;";
            break;
        }
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += c < 0x20 || c == 0x7F ? ' ' : static_cast<char>(c);
        }
    }
    return result;
}

// A quoted DOT string.
std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
    return result + "\"";
}

} // namespace

std::string compactType(std::string_view type)
{
    std::string result;
    for (std::size_t i = 0; i < type.size(); ++i) {
        const char c = type[i];
        if (c == ' ') {
            const char next = i + 1 < type.size() ? type[i + 1] : ' ';
            const char previous = result.empty() ? ' ' : result.back();
            if (next == '(' || next == ')' || next == ',' || next == ' ' || previous == '(' || previous == ',' ||
                previous == ' ') {
                continue;
            }
        }
        result += c;
    }
    return result;
}

namespace {

const char *const tableHeader = "#2f5d8a";
const char *const viewHeader = "#3d7a4f";
const char *const stubColour = "#8a8a8a";

// Graphviz rejects an empty FONT element, so empty text stays plain.
std::string styled(const std::string &text, const std::string &attributes)
{
    return text.empty() ? text : "<FONT " + attributes + ">" + text + "</FONT>";
}

std::string cell(const std::string &fill, const std::string &attributes, const std::string &content)
{
    return "<TD ALIGN=\"LEFT\"" + attributes + fill + ">" + content + "</TD>";
}

void writeEntity(std::ostream &out, const DiagramEntity &entity, std::size_t index)
{
    out << "  n" << index << " [label=<<TABLE BORDER=\"1\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"3\" COLOR=\""
        << (entity.view ? viewHeader : tableHeader) << "\"" << (entity.view ? " STYLE=\"ROUNDED\"" : "") << ">\n";
    out << "    <TR><TD COLSPAN=\"4\" BGCOLOR=\"" << (entity.view ? viewHeader : tableHeader)
        << "\"><FONT COLOR=\"white\"><B>" << html(entity.title, 64) << "</B>" << (entity.view ? "  <I>view</I>" : "")
        << "</FONT></TD></TR>\n";
    if (entity.columns.empty()) {
        out << "    <TR><TD COLSPAN=\"4\"><FONT COLOR=\"" << stubColour << "\"><I>no columns</I></FONT></TD></TR>\n";
    }
    for (std::size_t i = 0; i < entity.columns.size(); ++i) {
        const DiagramColumn &column = entity.columns[i];
        const std::string fill = i % 2 == 1 ? " BGCOLOR=\"#f2f5f9\"" : "";
        std::string marker = column.primaryKey ? "PK" : "";
        if (column.foreignKey) {
            marker += marker.empty() ? "FK" : " FK";
        }
        std::string name = html(column.name);
        if (column.primaryKey) {
            name = "<B>" + name + "</B>";
        }
        // Keys leave a row on its right edge and arrive on its left one.
        const std::string row = std::to_string(i);
        out << "    <TR>"
            << cell(fill, " PORT=\"w" + row + "\"", styled(marker, "POINT-SIZE=\"9\" COLOR=\"#b5651d\""))
            << cell(fill, "", name)
            << cell(fill, "", styled(html(compactType(column.type), 32), "COLOR=\"#555555\""))
            << cell(fill, " PORT=\"e" + row + "\"",
                    styled(column.notNull ? "NOT NULL" : "", "POINT-SIZE=\"9\" COLOR=\"#a03030\""))
            << "</TR>\n";
    }
    out << "  </TABLE>>];\n";
}

std::string edgeTooltip(const DiagramGraph &graph, const DiagramEdge &edge)
{
    std::string target = edge.to ? graph.entities[*edge.to].title : graph.stubs[*edge.stub].name;
    std::string text = graph.entities[edge.from].title + " (" + joinNames(edge.fromColumns) + ") -> " + target;
    if (!edge.toColumns.empty()) {
        text += " (" + joinNames(edge.toColumns) + ")";
    }
    return edge.name.empty() ? text : edge.name + ": " + text;
}

} // namespace

std::string joinNames(const std::vector<std::string> &names)
{
    std::string result;
    for (const std::string &name : names) {
        result += (result.empty() ? "" : ", ") + name;
    }
    return result;
}

DiagramGraph collectDiagram(const SQLContainer &container, const DiagramOptions &options)
{
    return Collector(container, options).take();
}

std::string diagramDot(const DiagramGraph &graph)
{
    std::ostringstream out;
    // Left to right keeps the wide boxes in columns; separately packed
    // components keep unrelated tables from forming one endless rank.
    out << "digraph schema {\n"
           "  graph [rankdir=LR, ranksep=0.9, nodesep=0.35, pack=true, packmode=\"array_u\", "
           "fontname=\"DejaVu Sans\", bgcolor=\"white\"];\n"
           "  node [shape=plain, fontname=\"DejaVu Sans\", fontsize=10];\n"
           "  edge [fontname=\"DejaVu Sans\", fontsize=9, color=\"#4a6a8a\", arrowsize=0.8, penwidth=1.1];\n";
    for (std::size_t i = 0; i < graph.entities.size(); ++i) {
        writeEntity(out, graph.entities[i], i);
    }
    for (std::size_t i = 0; i < graph.stubs.size(); ++i) {
        const DiagramStub &stub = graph.stubs[i];
        out << "  s" << i << " [shape=box, style=\"dashed,rounded\", color=\"" << stubColour << "\", fontcolor=\""
            << stubColour << "\", margin=\"0.15,0.05\", label=" << quoted(stub.name + (stub.unresolved ? " ?" : ""))
            << ", tooltip=" << quoted(stub.unresolved ? "not found in the model" : "not shown") << "];\n";
    }
    for (const DiagramEdge &edge : graph.edges) {
        out << "  n" << edge.from << ":e" << edge.fromColumn << ":e -> ";
        if (edge.to) {
            out << "n" << *edge.to;
            if (edge.toColumn) {
                out << ":w" << *edge.toColumn << ":w";
            }
        } else {
            out << "s" << *edge.stub;
        }
        out << " [dir=both, arrowtail=" << (edge.optional ? "crowodot" : "crowtee")
            << ", arrowhead=" << (edge.optional ? "teeodot" : "teetee");
        if (edge.stub) {
            out << ", style=dashed, color=\"" << stubColour << "\"";
        }
        out << ", tooltip=" << quoted(edgeTooltip(graph, edge)) << "];\n";
    }
    for (const DiagramUse &use : graph.uses) {
        out << "  n" << use.view << " -> n" << use.table
            << " [style=dotted, color=\"" << viewHeader << "\", arrowhead=none, constraint=false];\n";
    }
    out << "}\n";
    return out.str();
}

namespace {

// The Graphviz library is loaded when a diagram is first rendered, not when
// the tool starts: every command would otherwise pay for mapping and
// relocating it and the half dozen libraries it needs (about half a
// millisecond, a tenth of the import of a 1 MB dump).
struct Graphviz {
    decltype(&::gvContext) context = nullptr;
    decltype(&::gvcVersion) version = nullptr;
    decltype(&::gvLayout) layout = nullptr;
    decltype(&::gvRenderData) renderData = nullptr;
    decltype(&::gvFreeRenderData) freeRenderData = nullptr;
    decltype(&::gvFreeLayout) freeLayout = nullptr;
    decltype(&::agmemread) memread = nullptr;
    decltype(&::agclose) close = nullptr;
    decltype(&::agseterr) seterr = nullptr;
    decltype(&::agseterrf) seterrf = nullptr;
    std::string error;  // why it could not be loaded; empty when it was
};

template <typename Function>
void resolve(void *library, const char *name, Function &function, std::string &error)
{
    function = library != nullptr ? reinterpret_cast<Function>(::dlsym(library, name)) : nullptr;
    if (function == nullptr && error.empty()) {
        error = std::string("no ") + name + " in the Graphviz library";
    }
}

Graphviz loadGraphviz()
{
    Graphviz graphviz;
    // Kept loaded to the end of the process, as a linked library would be.
    void *const gvc = ::dlopen(SQLANTLR_GVC_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    void *const cgraph = gvc != nullptr ? ::dlopen(SQLANTLR_CGRAPH_LIBRARY, RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (gvc == nullptr || cgraph == nullptr) {
        const char *reason = ::dlerror();
        graphviz.error = std::string("the Graphviz library could not be loaded: ") +
                         (reason != nullptr ? reason : SQLANTLR_GVC_LIBRARY);
        return graphviz;
    }
    resolve(gvc, "gvContext", graphviz.context, graphviz.error);
    resolve(gvc, "gvcVersion", graphviz.version, graphviz.error);
    resolve(gvc, "gvLayout", graphviz.layout, graphviz.error);
    resolve(gvc, "gvRenderData", graphviz.renderData, graphviz.error);
    resolve(gvc, "gvFreeRenderData", graphviz.freeRenderData, graphviz.error);
    resolve(gvc, "gvFreeLayout", graphviz.freeLayout, graphviz.error);
    resolve(cgraph, "agmemread", graphviz.memread, graphviz.error);
    resolve(cgraph, "agclose", graphviz.close, graphviz.error);
    resolve(cgraph, "agseterr", graphviz.seterr, graphviz.error);
    resolve(cgraph, "agseterrf", graphviz.seterrf, graphviz.error);
    return graphviz;
}

// The library's functions, or nullptr with the reason in `error`.
const Graphviz *graphviz(std::string &error)
{
    static const Graphviz loaded = loadGraphviz();
    error = loaded.error;
    return loaded.error.empty() ? &loaded : nullptr;
}

std::string graphvizMessages;

int collectMessage(char *message)
{
    graphvizMessages += message;
    return 0;
}

// Graphviz keeps process-wide state (its error hook, and a font cache in the
// text layout that outlives a freed context and is read by the next one), so
// the tool makes one context for the process, never frees it, and renders one
// graph at a time.
std::mutex graphvizMutex;

GVC_t *graphvizContext(const Graphviz &library)
{
    static GVC_t *const context = library.context();
    return context;
}

} // namespace

RenderResult renderDot(const std::string &dot, std::string_view format)
{
    const std::lock_guard<std::mutex> lock(graphvizMutex);
    RenderResult result;
    std::string unavailable;
    const Graphviz *library = graphviz(unavailable);
    if (library == nullptr) {
        result.messages = unavailable + "\n";
        return result;
    }
    graphvizMessages.clear();
    library->seterr(AGWARN);
    library->seterrf(collectMessage);
    GVC_t *context = graphvizContext(*library);
    Agraph_t *graph = context != nullptr ? library->memread(dot.c_str()) : nullptr;
    if (graph != nullptr && library->layout(context, graph, "dot") == 0) {
        const std::string renderer = format == "png" ? "png:cairo" : std::string(format);
        char *data = nullptr;
        unsigned int length = 0;
        if (library->renderData(context, graph, renderer.c_str(), &data, &length) == 0 && data != nullptr) {
            result.data.assign(data, length);
            result.ok = true;
        }
        library->freeRenderData(data);
        library->freeLayout(context, graph);
    }
    if (graph != nullptr) {
        library->close(graph);
    }
    library->seterrf(nullptr);
    result.messages = graphvizMessages;
    if (!result.ok && result.messages.empty()) {
        result.messages = "Graphviz could not render " + std::string(format) + "\n";
    }
    return result;
}

std::string graphvizVersion()
{
    const std::lock_guard<std::mutex> lock(graphvizMutex);
    std::string unavailable;
    const Graphviz *library = graphviz(unavailable);
    if (library == nullptr) {
        return "Graphviz (" + unavailable + ")";
    }
    GVC_t *context = graphvizContext(*library);
    return std::string("Graphviz ") + (context != nullptr ? library->version(context) : "?");
}

} // namespace sqlantlr
