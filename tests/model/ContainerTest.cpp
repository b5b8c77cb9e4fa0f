#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

namespace {

SQLTable *addTable(SQLContainer &container, std::string_view name, std::optional<std::string_view> schema,
                   std::initializer_list<const char *> fields, std::initializer_list<const char *> key = {})
{
    SQLTable *table = container.add(SQLTable::tableForImportWithName(name));
    if (schema)
        table->setSchemaName(*schema);
    for (const char *field : fields)
        table->addWithRenaming(SQLField::fieldWithName(field, "int"));
    table->setPrimaryKeyToFieldNames(std::vector<std::string>(key.begin(), key.end()));
    return table;
}

SQLForeignKey *addForeignKey(SQLTable &source, std::string_view target,
                             std::initializer_list<std::pair<const char *, const char *>> columns)
{
    auto foreignKey = std::make_unique<SQLForeignKey>();
    foreignKey->setTargetTableByName(target);
    for (const auto &[from, to] : columns) {
        auto entry = std::make_unique<SQLForeignKeyEntry>(source.getFieldByName(from), nullptr);
        if (to)
            entry->setTargetByName(to);
        foreignKey->addForeignKeyEntry(std::move(entry));
    }
    return source.add(std::move(foreignKey));
}

} // namespace

TEST(ContainerLookupTest, ExactNameWinsOverCaseInsensitiveAndTablesOverViews)
{
    SQLContainer container;
    SQLTable *lower = addTable(container, "item", std::nullopt, {});
    SQLTable *upper = addTable(container, "ITEM", std::nullopt, {});
    SQLView *view = container.add(SQLView::viewWithName("Item"));
    SQLView *report = container.add(SQLView::viewWithName("report"));

    EXPECT_EQ(container.getObjectByName("ITEM"), upper);
    EXPECT_EQ(container.getObjectByName("Item"), view); // exact view beats a case-insensitive table
    EXPECT_EQ(container.getObjectByName("iTEM"), lower);
    EXPECT_EQ(container.getObjectByName("`REPORT`"), report);
    EXPECT_EQ(container.getTableByName("Item"), lower);
    EXPECT_EQ(container.getTableByName("report"), nullptr);
    EXPECT_EQ(container.getObjectByName(""), nullptr);
}

TEST(ContainerLookupTest, ManyObjectsAndRenamesAfterAdding)
{
    SQLContainer container;
    for (int i = 0; i < 2000; ++i) {
        container.add(SQLTable::tableForImportWithName("t" + std::to_string(i)));
    }
    SQLTable *renamed = container.add(SQLTable::tableForImportWithName("Straße"));
    EXPECT_EQ(container.getTableByName("T1999"), container.tables()[1999].get());
    EXPECT_EQ(container.getTableByName("STRASSE"), renamed) << "full case folding";
    renamed->setName("later");
    EXPECT_EQ(container.getTableByName("later"), renamed);
    EXPECT_EQ(container.getTableByName("Straße"), nullptr);
    EXPECT_EQ(container.getTableByName("missing"), nullptr);
}

TEST(ContainerLookupTest, ManyTablesOfOneNameKeepTheirOrderInEverySchema)
{
    SQLContainer container;
    for (int i = 0; i < 500; ++i)
        addTable(container, i % 2 == 0 ? "t" : "T", "s" + std::to_string(i), {});
    EXPECT_EQ(container.getTableWithSchema("t", std::string_view("s498")), container.tables()[498].get());
    EXPECT_EQ(container.getTableWithSchema("t", std::string_view("S7")), container.tables()[7].get());
    EXPECT_EQ(container.getTableByName("T"), container.tables()[1].get());
    EXPECT_EQ(container.getTableWithSchema("t", std::string_view("none")), nullptr);
    container.tables()[0]->setName("first");
    EXPECT_EQ(container.getTableByName("t"), container.tables()[2].get());
    EXPECT_EQ(container.getTableByName("FIRST"), container.tables()[0].get());

    const SQLContainer moved(std::move(container));
    EXPECT_EQ(moved.getTableWithSchema("T", std::string_view("s11")), moved.tables()[11].get());
}

TEST(ContainerLookupTest, SchemaMatchesFirstThenFallsBackToUnqualified)
{
    SQLContainer container;
    SQLTable *unqualified = addTable(container, "t", std::nullopt, {});
    SQLTable *inA = addTable(container, "t", std::string_view("a"), {});
    SQLTable *inB = addTable(container, "T", std::string_view("B"), {});

    EXPECT_EQ(container.getObjectWithSchema("t", std::string_view("a")), inA);
    EXPECT_EQ(container.getObjectWithSchema("t", std::string_view("b")), inB);
    EXPECT_EQ(container.getObjectWithSchema("t", std::string_view("\"c\"")), unqualified);
    EXPECT_EQ(container.getObjectWithSchema("t", std::nullopt), unqualified);
    EXPECT_EQ(container.getTableWithSchema("u", std::string_view("a")), nullptr);

    SQLContainer onlyQualified;
    addTable(onlyQualified, "t", std::string_view("a"), {});
    // A qualified object is not a fallback for another schema.
    EXPECT_EQ(onlyQualified.getObjectWithSchema("t", std::string_view("b")), nullptr);
}

class ResolutionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        single = addTable(container, "customer", std::nullopt, {"id", "name"}, {"id"});
        composite = addTable(container, "line", std::string_view("sales"), {"order_id", "line_no"},
                             {"order_id", "line_no"});
        source = addTable(container, "source", std::nullopt, {"a", "b", "c"});
    }

    SQLContainer container;
    SQLTable *single = nullptr;
    SQLTable *composite = nullptr;
    SQLTable *source = nullptr;
};

TEST_F(ResolutionTest, FieldReferences)
{
    SQLField *named = source->getFieldByName("a");
    SQLField *toKey = source->getFieldByName("b");
    SQLField *toComposite = source->getFieldByName("c");
    named->setReferences("CUSTOMER", std::string_view("NAME"));
    toKey->setReferences("dbo.customer", std::nullopt); // unknown schema: unqualified table
    toComposite->setReferences("sales.line", std::nullopt);
    container.postLoadProcess();

    const SQLFieldReference *reference = named->getReferences();
    EXPECT_TRUE(reference->resolved);
    EXPECT_EQ(reference->targetTable, single);
    EXPECT_EQ(reference->targetField, single->getFieldByName("name"));

    EXPECT_TRUE(toKey->getReferences()->resolved);
    EXPECT_EQ(toKey->getReferences()->targetField, single->getFieldByName("id"));

    reference = toComposite->getReferences();
    EXPECT_FALSE(reference->resolved);
    EXPECT_EQ(reference->targetTable, composite);
    EXPECT_EQ(reference->targetField, nullptr);
    EXPECT_EQ(reference->table, "sales.line");

    named->setReferences("customer", std::string_view("missing"));
    container.postLoadProcess();
    EXPECT_FALSE(named->getReferences()->resolved);
    EXPECT_EQ(named->getReferences()->field, "missing");
}

TEST_F(ResolutionTest, ForeignKeyWithNamedColumnsAndQualifiedTable)
{
    SQLForeignKey *foreignKey =
        addForeignKey(*source, "\"sales\".\"line\"", {{"a", "LINE_NO"}, {"b", "order_id"}});
    container.postLoadProcess();

    EXPECT_TRUE(foreignKey->isResolved());
    EXPECT_EQ(foreignKey->getTargetTable(), composite);
    EXPECT_EQ(foreignKey->entries()[0]->getSource(), source->getFieldByName("a"));
    EXPECT_EQ(foreignKey->entries()[0]->getTarget(), composite->getFieldByName("line_no"));
    EXPECT_EQ(foreignKey->entries()[1]->getTarget(), composite->getFieldByName("order_id"));
}

TEST_F(ResolutionTest, ForeignKeyTargetingPrimaryKey)
{
    SQLForeignKey *byProperty = addForeignKey(*source, "SALES.LINE", {{"a", nullptr}, {"b", nullptr}});
    byProperty->setPropertyAsBoolean("targetsPrimaryKey", true);
    SQLForeignKey *wrongWidth = addForeignKey(*source, "customer", {{"a", nullptr}, {"b", nullptr}});
    wrongWidth->setPropertyAsBoolean("targetsPrimaryKey", true);
    container.postLoadProcess();

    EXPECT_TRUE(byProperty->isResolved());
    EXPECT_EQ(byProperty->entries()[0]->getTarget(), composite->getFieldByName("order_id"));
    EXPECT_EQ(byProperty->entries()[1]->getTarget(), composite->getFieldByName("line_no"));
    EXPECT_EQ(byProperty->entries()[1]->getTargetName(), "line_no");

    EXPECT_FALSE(wrongWidth->isResolved());
    EXPECT_EQ(wrongWidth->getTargetTable(), single);
    EXPECT_EQ(wrongWidth->entries()[0]->getTarget(), nullptr);
}

TEST_F(ResolutionTest, UnresolvableForeignKeysKeepTheirNames)
{
    SQLForeignKey *missingTable = addForeignKey(*source, "nowhere", {{"a", "id"}});
    SQLForeignKey *missingColumn = addForeignKey(*source, "customer", {{"a", "id"}, {"b", "nothing"}});
    container.postLoadProcess();

    EXPECT_FALSE(missingTable->isResolved());
    EXPECT_EQ(missingTable->getTargetTable(), nullptr);
    EXPECT_EQ(missingTable->getTargetTableName(), "nowhere");
    EXPECT_EQ(missingTable->entries()[0]->getTargetName(), "id");

    EXPECT_FALSE(missingColumn->isResolved());
    EXPECT_EQ(missingColumn->getTargetTable(), single);
    EXPECT_EQ(missingColumn->entries()[0]->getTarget(), single->getFieldByName("id"));
    EXPECT_EQ(missingColumn->entries()[1]->getTarget(), nullptr);
    EXPECT_EQ(missingColumn->entries()[1]->getTargetName(), "nothing");
    EXPECT_EQ(source->foreignKeys().size(), 2u);
}

TEST_F(ResolutionTest, ResolvingTwiceGivesTheSameResultAndFollowsChanges)
{
    SQLForeignKey *foreignKey = addForeignKey(*source, "customer", {{"a", "id"}});
    source->getFieldByName("b")->setReferences("customer", std::nullopt);
    container.postLoadProcess();
    container.postLoadProcess();
    EXPECT_TRUE(foreignKey->isResolved());
    EXPECT_EQ(foreignKey->entries()[0]->getTarget(), single->getFieldByName("id"));
    EXPECT_EQ(source->getFieldByName("b")->getReferences()->targetField, single->getFieldByName("id"));

    // Names stay authoritative: retargeting and resolving again updates the result.
    foreignKey->setTargetTableByName("nowhere");
    container.postLoadProcess();
    EXPECT_FALSE(foreignKey->isResolved());
    EXPECT_EQ(foreignKey->entries()[0]->getTarget(), nullptr);
}

TEST_F(ResolutionTest, TableNameContainingADot)
{
    SQLTable *dotted = addTable(container, "`odd.name`", std::nullopt, {"id"}, {"id"});
    SQLField *field = source->getFieldByName("a");
    field->setReferences("`odd.name`", std::nullopt);
    container.postLoadProcess();
    EXPECT_EQ(field->getReferences()->targetTable, dotted);
    EXPECT_TRUE(field->getReferences()->resolved);
}

namespace {

TEST(ContainerAppendTest, MovesObjectsInOrderAndLaterResolutionFindsKeysAcrossContainers)
{
    SQLContainer first;
    SQLTable *child = addTable(first, "child", std::nullopt, {"id", "parent_id"}, {"id"});
    SQLForeignKey *key = addForeignKey(*child, "Parent", {{"parent_id", "id"}});
    first.postLoadProcess();
    ASSERT_FALSE(key->isResolved());

    SQLContainer second;
    SQLTable *parent = addTable(second, "parent", std::nullopt, {"id"}, {"id"});
    second.add(SQLView::viewWithName("v"));
    first.append(std::move(second));
    EXPECT_TRUE(second.tables().empty());
    EXPECT_TRUE(second.views().empty());
    EXPECT_EQ(second.getTableByName("parent"), nullptr);
    ASSERT_EQ(first.tables().size(), 2U);
    EXPECT_EQ(first.tables()[1].get(), parent);
    EXPECT_EQ(first.getTableByName("PARENT"), parent);
    EXPECT_NE(first.getViewByName("v"), nullptr);

    first.postLoadProcess();
    EXPECT_TRUE(key->isResolved());
    EXPECT_EQ(key->getTargetTable(), parent);
    first.append(std::move(first));
    EXPECT_EQ(first.tables().size(), 2U);
}

} // namespace
