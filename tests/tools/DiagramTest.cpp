// Diagrams of models built in C++ (views included) and of parsed scripts:
// what is drawn, the DOT and Mermaid texts against golden files, and that
// Graphviz renders the pictures without complaint.
#include "Diagram.h"

#include <SQLAntlrParser/SQLAntlrParser.h>
#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace fs = std::filesystem;
using namespace sqlantlr;

namespace {

SQLField *addField(SQLTable &table, const char *name, const char *type, bool notNull = false)
{
    SQLField *field = table.addWithRenaming(SQLField::fieldWithName(name, type));
    field->setNotNull(notNull);
    return field;
}

// customer <- purchase (column reference), purchase_line -> purchase (two
// column key), an unresolved key to ledger, and a view over purchase.
std::unique_ptr<SQLContainer> shopModel()
{
    auto container = std::make_unique<SQLContainer>();
    SQLTable *customer = container->add(SQLTable::tableForImportWithName("customer"));
    addField(*customer, "id", "integer", true);
    addField(*customer, "email", "varchar ( 190 )", true);
    customer->setPrimaryKeyToFieldNames({"id"});

    SQLTable *purchase = container->add(SQLTable::tableForImportWithName("purchase"));
    purchase->setSchemaName("sales");
    addField(*purchase, "id", "integer", true);
    addField(*purchase, "no", "integer", true);
    addField(*purchase, "customer_id", "integer")->setReferences("customer", std::string_view("id"));
    purchase->setPrimaryKeyToFieldNames({"id", "no"});

    SQLTable *line = container->add(SQLTable::tableForImportWithName("purchase_line"));
    SQLField *purchaseId = addField(*line, "purchase_id", "integer", true);
    SQLField *purchaseNo = addField(*line, "purchase_no", "integer", true);
    SQLField *ledgerId = addField(*line, "ledger_id", "numeric ( 10 , 2 )");
    auto key = std::make_unique<SQLForeignKey>();
    key->setName("fk_line_purchase");
    key->setTargetTableByName("purchase");
    key->addForeignKeyEntry(std::make_unique<SQLForeignKeyEntry>(purchaseId, nullptr))->setTargetByName("id");
    key->addForeignKeyEntry(std::make_unique<SQLForeignKeyEntry>(purchaseNo, nullptr))->setTargetByName("no");
    line->add(std::move(key));
    auto dangling = std::make_unique<SQLForeignKey>();
    dangling->setTargetTableByName("ledger");
    dangling->addForeignKeyEntry(std::make_unique<SQLForeignKeyEntry>(ledgerId, nullptr));
    line->add(std::move(dangling));

    std::unique_ptr<SQLView> view = SQLView::viewWithName("big_spenders");
    view->addSelectColumn("c.email");
    view->addSelectColumn("count(*) AS purchases");
    view->addTableEntry("customer", "c");
    view->addTableEntry("purchase", "p");
    container->add(std::move(view));
    container->postLoadProcess();
    return container;
}

std::string slurp(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

std::size_t count(const std::string &text, const std::string &needle)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) {
        ++found;
    }
    return found;
}

TEST(Diagram, CollectsBoxesKeysStubsAndViews)
{
    const DiagramGraph graph = collectDiagram(*shopModel(), {});
    ASSERT_EQ(graph.entities.size(), 4U);
    EXPECT_EQ(graph.entities[1].title, "sales.purchase");
    EXPECT_TRUE(graph.entities[1].columns[0].primaryKey);
    EXPECT_TRUE(graph.entities[1].columns[2].foreignKey);
    EXPECT_TRUE(graph.entities[2].columns[1].foreignKey);
    EXPECT_FALSE(graph.entities[2].columns[1].primaryKey);

    const DiagramEntity &view = graph.entities[3];
    EXPECT_TRUE(view.view);
    ASSERT_EQ(view.columns.size(), 2U);
    EXPECT_EQ(view.columns[1].name, "count(*) AS purchases");
    ASSERT_EQ(graph.uses.size(), 2U);
    EXPECT_EQ(graph.uses[1].table, 1U);

    ASSERT_EQ(graph.edges.size(), 3U);
    const DiagramEdge &reference = graph.edges[0];
    EXPECT_EQ(reference.from, 1U);
    EXPECT_EQ(reference.fromColumn, 2U);
    EXPECT_EQ(reference.to, 0U);
    EXPECT_EQ(reference.toColumn, 0U);
    EXPECT_TRUE(reference.optional);
    const DiagramEdge &composite = graph.edges[1];
    EXPECT_EQ(composite.to, 1U);
    EXPECT_EQ(composite.fromColumns, (std::vector<std::string>{"purchase_id", "purchase_no"}));
    EXPECT_FALSE(composite.optional);
    const DiagramEdge &unresolved = graph.edges[2];
    ASSERT_TRUE(unresolved.stub.has_value());
    EXPECT_FALSE(unresolved.to.has_value());
    ASSERT_EQ(graph.stubs.size(), 1U);
    EXPECT_EQ(graph.stubs[0].name, "ledger");
    EXPECT_TRUE(graph.stubs[0].unresolved);
}

TEST(Diagram, FiltersLeaveTargetsAsStubs)
{
    const std::unique_ptr<SQLContainer> model = shopModel();
    DiagramOptions onlyLines;
    onlyLines.tables = std::regex("LINE$", std::regex::icase);
    const DiagramGraph lines = collectDiagram(*model, onlyLines);
    ASSERT_EQ(lines.entities.size(), 1U);
    ASSERT_EQ(lines.stubs.size(), 2U);
    EXPECT_EQ(lines.stubs[0].name, "sales.purchase");
    EXPECT_FALSE(lines.stubs[0].unresolved);

    DiagramOptions sales;
    sales.schema = "SALES";
    const DiagramGraph inSales = collectDiagram(*model, sales);
    ASSERT_EQ(inSales.entities.size(), 1U);
    EXPECT_EQ(inSales.stubs[0].name, "customer");
    EXPECT_TRUE(inSales.uses.empty());

    DiagramOptions qualified;
    qualified.tables = std::regex("^sales\\.");
    EXPECT_EQ(collectDiagram(*model, qualified).entities.size(), 1U);
}

TEST(Diagram, LabelsEscapeMarkupAndMermaidNamesBecomeWords)
{
    SQLContainer container;
    SQLTable *odd = container.add(SQLTable::tableForImportWithName("order <&> \"x\""));
    addField(*odd, "1st col", "enum ( 'a' , \"b\" )");
    addField(*odd, "1st-col", "int");
    container.add(SQLTable::tableForImportWithName("order______x_"));
    const DiagramGraph graph = collectDiagram(container, {});
    const std::string dot = diagramDot(graph);
    EXPECT_NE(dot.find("order &lt;&amp;&gt; &quot;x&quot;"), std::string::npos) << dot;
    EXPECT_NE(dot.find("enum('a',&quot;b&quot;)"), std::string::npos) << dot;
    EXPECT_NE(dot.find("no columns"), std::string::npos);

    const std::string mermaid = diagramMermaid(graph);
    EXPECT_NE(mermaid.find("    order______x_ {\n        enum _1st_col \"1st col enum('a','b')\"\n"), std::string::npos)
        << mermaid;
    EXPECT_NE(mermaid.find("        int _1st-col \"1st-col\"\n"), std::string::npos) << mermaid;
    EXPECT_NE(mermaid.find("    order______x__2 {\n    }\n"), std::string::npos) << mermaid;
}

TEST(Diagram, RendersSvgWithOneNodePerBoxAndPng)
{
    const DiagramGraph graph = collectDiagram(*shopModel(), {});
    const RenderResult svg = renderDot(diagramDot(graph), "svg");
    ASSERT_TRUE(svg.ok) << svg.messages;
    EXPECT_EQ(svg.messages, "");
    EXPECT_EQ(count(svg.data, "class=\"node\""), graph.entities.size() + graph.stubs.size());
    EXPECT_EQ(count(svg.data, "class=\"edge\""), graph.edges.size() + graph.uses.size());

    const RenderResult png = renderDot(diagramDot(graph), "png");
    ASSERT_TRUE(png.ok) << png.messages;
    EXPECT_EQ(png.messages, "");
    EXPECT_EQ(png.data.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));

    const RenderResult broken = renderDot("digraph { a -> ", "svg");
    EXPECT_FALSE(broken.ok);
    EXPECT_NE(broken.messages, "");
}

TEST(Diagram, EmptyModelGivesAnEmptyPicture)
{
    const DiagramGraph graph = collectDiagram(SQLContainer(), {});
    const RenderResult svg = renderDot(diagramDot(graph), "svg");
    ASSERT_TRUE(svg.ok) << svg.messages;
    EXPECT_EQ(count(svg.data, "class=\"node\""), 0U);
    EXPECT_EQ(diagramMermaid(graph), "erDiagram\n");
}

// Golden diagrams: each diagrams/NAME.sql gives NAME.dot and NAME.mmd;
// SQLANTLR_UPDATE_GOLDEN=1 rewrites them.
class GoldenDiagram : public ::testing::TestWithParam<std::string> {};

void compareWithGolden(const fs::path &path, const std::string &actual)
{
    const char *update = std::getenv("SQLANTLR_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        std::ofstream(path, std::ios::binary) << actual;
        return;
    }
    ASSERT_TRUE(fs::exists(path)) << "missing " << path << " (run with SQLANTLR_UPDATE_GOLDEN=1 to create it)";
    EXPECT_EQ(slurp(path), actual) << path;
}

TEST_P(GoldenDiagram, DotAndMermaidMatchAndTheSvgRenders)
{
    const fs::path base = fs::path(DIAGRAM_DIR) / GetParam();
    SQLParser parser;
    const std::unique_ptr<SQLContainer> container =
        parser.parseString(SQLParser::stringForFile(base.string() + ".sql", SQLTextEncoding::UTF8));
    ASSERT_NE(container, nullptr);
    const DiagramGraph graph = collectDiagram(*container, {});
    const std::string dot = diagramDot(graph);
    compareWithGolden(base.string() + ".dot", dot);
    compareWithGolden(base.string() + ".mmd", diagramMermaid(graph));

    const RenderResult svg = renderDot(dot, "svg");
    ASSERT_TRUE(svg.ok) << svg.messages;
    EXPECT_EQ(svg.messages, "");
    EXPECT_EQ(count(svg.data, "class=\"node\""), container->tables().size() + graph.stubs.size());
}

std::vector<std::string> diagramCases()
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(DIAGRAM_DIR)) {
        if (entry.path().extension() == ".sql") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenDiagram, ::testing::ValuesIn(diagramCases()),
                         [](const ::testing::TestParamInfo<std::string> &param) {
                             std::string id = param.param;
                             std::replace_if(id.begin(), id.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return id;
                         });

} // namespace
