#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <chrono>

namespace {

std::unique_ptr<SQLIndex> indexNamed(std::string_view name)
{
    auto index = std::make_unique<SQLIndex>();
    index->setName(name);
    return index;
}

} // namespace

TEST(TableFieldsTest, RenamesClashingFieldsToFirstFreeSuffix)
{
    auto table = SQLTable::tableForImportWithName("t");
    bool renamed = true;
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("id", "int"), &renamed)->getName(), "id");
    EXPECT_FALSE(renamed);
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("ID", "int"), &renamed)->getName(), "ID_1");
    EXPECT_TRUE(renamed);
    // id_2 is taken (case-insensitively) before the next clash on "Id".
    table->addWithRenaming(SQLField::fieldWithName("ID_2", "int"));
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("Id", "int"), &renamed)->getName(), "Id_3");
    EXPECT_TRUE(renamed);
    EXPECT_EQ(table->addWithRenaming(std::unique_ptr<SQLField>(), &renamed), nullptr);
    EXPECT_FALSE(renamed);
    EXPECT_EQ(table->getFieldNameListString(), "id, ID_1, ID_2, Id_3");
}

TEST(TableFieldsTest, LookupPrefersExactNameOverCaseInsensitive)
{
    auto table = SQLTable::tableForImportWithName("t");
    SQLField *lower = table->addWithRenaming(SQLField::fieldWithName("name", "text"));
    // Adding would rename a clashing field, so create the clash afterwards.
    SQLField *upper = table->addWithRenaming(SQLField::fieldWithName("other", "text"));
    upper->setName("NAME");
    EXPECT_EQ(table->getFieldByName("NAME"), upper);
    EXPECT_EQ(table->getFieldByName("name"), lower);
    EXPECT_EQ(table->getFieldByName("Name"), lower);
    EXPECT_EQ(table->getFieldByName("\"NAME\""), upper);
    EXPECT_EQ(table->getFieldByName("missing"), nullptr);
}

TEST(TableIndexesTest, RenamesNamedIndexesAndConstraintsTogether)
{
    auto table = SQLTable::tableForImportWithName("t");
    table->addWithRenaming(indexNamed("idx"));
    auto unique = SQLConstraint::constraint();
    unique->setName("IDX");
    SQLIndex *constraint = table->addWithRenaming(std::move(unique));
    EXPECT_EQ(constraint->getName(), "IDX_1");
    EXPECT_TRUE(constraint->isConstraint());

    EXPECT_FALSE(table->addWithRenaming(std::make_unique<SQLIndex>())->hasName());
    EXPECT_FALSE(table->addWithRenaming(std::make_unique<SQLIndex>())->hasName());
    // add() keeps the name even when taken.
    EXPECT_EQ(table->add(indexNamed("idx"))->getName(), "idx");
    ASSERT_EQ(table->indexes().size(), 5u);
    EXPECT_EQ(table->indexes()[1].get(), constraint);
    EXPECT_EQ(table->addWithRenaming(std::unique_ptr<SQLIndex>()), nullptr);
}

TEST(TableIndexesTest, AddParsedIndexWithName)
{
    auto table = SQLTable::tableForImportWithName("t");
    SQLIndex *index = table->addParsedIndexWithName(std::string_view("by_name"), {"`last`", "first"}, "BTREE");
    ASSERT_EQ(index->entries().size(), 2u);
    EXPECT_EQ(index->getName(), "by_name");
    EXPECT_EQ(index->getIndexType(), "BTREE");
    EXPECT_EQ(index->entries()[0]->getName(), "last");
    EXPECT_EQ(index->entries()[0]->getFieldName(), "last");
    EXPECT_EQ(index->entries()[1]->getFieldName(), "first");
    EXPECT_EQ(index->getFieldName(), "first");
    EXPECT_FALSE(index->isConstraint());

    EXPECT_EQ(table->addParsedIndexWithName(std::string_view("BY_NAME"), {"x"}, "")->getName(), "BY_NAME_1");
    SQLIndex *unnamed = table->addParsedIndexWithName(std::nullopt, {"x"}, "");
    EXPECT_FALSE(unnamed->hasName());
    EXPECT_FALSE(unnamed->getIndexType());
}

TEST(TableTest, SetPrimaryKeyToFieldNamesReplacesTheKey)
{
    auto table = SQLTable::tableForImportWithName("t");
    for (const char *name : {"a", "b", "c"})
        table->addWithRenaming(SQLField::fieldWithName(name, "int"));
    table->fields()[0]->setPrimaryKey(true);

    table->setPrimaryKeyToFieldNames({"C", "`b`", "missing"});
    const std::vector<SQLField *> key = table->getPrimaryKeyFields();
    ASSERT_EQ(key.size(), 2u);
    EXPECT_EQ(key[0]->getName(), "b"); // field order, not list order
    EXPECT_EQ(key[1]->getName(), "c");
    EXPECT_FALSE(table->fields()[0]->isPrimaryKey());

    table->setPrimaryKeyToFieldNames({});
    EXPECT_TRUE(table->getPrimaryKeyFields().empty());
}

TEST(TableTest, BaseNameRenamesTablesButNotViews)
{
    auto table = SQLTable::tableForImportWithName("s.t");
    table->setSchemaName("\"s\"");
    table->setBaseName("\"t\"");
    EXPECT_EQ(table->getName(), "t");
    EXPECT_EQ(table->getSchemaName(), "s");
    EXPECT_EQ(table->getBaseName(), "t");

    auto view = SQLView::viewWithName("s.v");
    view->setSchemaName("s");
    view->setBaseName("v");
    EXPECT_EQ(view->getName(), "s.v");
    EXPECT_EQ(view->getBaseName(), "v");

    view->addTableEntry(" `orders` ", " o ");
    view->addSelectColumn(" o.id ");
    view->setQueryString(" SELECT o.id FROM orders o ");
    EXPECT_EQ(view->tableEntries()[0].name, "orders");
    EXPECT_EQ(view->tableEntries()[0].alias, " o ");
    EXPECT_EQ(view->selectColumns()[0], " o.id ");
    EXPECT_EQ(view->getQueryString(), " SELECT o.id FROM orders o ");
}

TEST(FieldTest, RemovingAPropertyLeavesTheOthers)
{
    auto field = SQLField::fieldWithName("a", "int");
    field->setProperty("comment", "c");
    field->setPropertyAsBoolean("unique", true);
    field->removeProperty("comment");
    field->removeProperty("absent");
    EXPECT_FALSE(field->hasProperty("comment"));
    EXPECT_TRUE(field->getPropertyAsBoolean("unique"));
    EXPECT_EQ(field->getProperties().size(), 1u);
}

TEST(FieldTest, StoresTextsExactly)
{
    auto field = SQLField::fieldWithName(" [amount] ", " DECIMAL(10, 2) ");
    field->setDefaultValueFromParsedString(" 'x' ");
    EXPECT_EQ(field->getName(), "amount");
    EXPECT_EQ(field->getType(), " DECIMAL(10, 2) ");
    EXPECT_EQ(field->getDefaultValue(), " 'x' ");
}

TEST(FieldTest, ReferentialActionsNeedAReference)
{
    auto field = SQLField::fieldWithName("customer_id", "int");
    field->setDeleteAction(SQLCascade);
    field->setDeferrable(true);
    field->setReferenceId("fk");
    EXPECT_EQ(field->getReferences(), nullptr);
    EXPECT_EQ(field->getDeleteAction(), SQLNoActionWritten);
    EXPECT_FALSE(field->isDeferrable());

    field->setReferences(" \"customer\" ", std::string_view("`id`"));
    field->setReferenceId("fk_customer");
    field->setDeleteAction(SQLCascade);
    field->setUpdateAction(SQLSetNull);
    field->setDeferrable(true);
    field->setInitiallyDeferred(true);
    const SQLFieldReference *reference = field->getReferences();
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->table, "customer");
    EXPECT_EQ(reference->field, "id");
    EXPECT_EQ(reference->referenceId, "fk_customer");
    EXPECT_EQ(reference->onDelete, SQLCascade);
    EXPECT_EQ(field->getUpdateAction(), SQLSetNull);
    EXPECT_TRUE(field->isInitiallyDeferred());

    // A second REFERENCES replaces the first one entirely.
    field->setReferences("account", std::nullopt);
    EXPECT_EQ(field->getReferences()->table, "account");
    EXPECT_FALSE(field->getReferences()->field);
    EXPECT_EQ(field->getDeleteAction(), SQLNoActionWritten);

    field->setDefaultCardinalityForImport();
    EXPECT_EQ(field->getSourceCardinality(), SQLCardinality::ZeroOrMore);
    EXPECT_EQ(field->getTargetCardinality(), SQLCardinality::ExactlyOne);
}

TEST(TableFieldsTest, RenamingFollowsFieldsRenamedAfterAdding)
{
    auto table = SQLTable::tableForImportWithName("t");
    SQLField *first = table->addWithRenaming(SQLField::fieldWithName("a", "int"));
    table->addWithRenaming(SQLField::fieldWithName("A", "int"));  // A_1
    // Renaming a field frees its old name and takes the new one at once.
    first->setName("b");
    EXPECT_EQ(table->getFieldByName("a"), nullptr);
    EXPECT_EQ(table->getFieldByName("B"), first);
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("a", "int"))->getName(), "a");
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("a", "int"))->getName(), "a_2");
    table->fields()[1]->setName("x");  // frees A_1
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("a", "int"))->getName(), "a_1");
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("B", "int"))->getName(), "B_1");
    // Exact spelling wins, then the first added of any case.
    table->addWithRenaming(SQLField::fieldWithName("Straße", "int"));
    SQLField *upper = table->addWithRenaming(SQLField::fieldWithName("STRASSE", "int"));
    EXPECT_EQ(upper->getName(), "STRASSE_1");
    upper->setName("STRASSE");
    EXPECT_EQ(table->getFieldByName("STRASSE"), upper);
    EXPECT_EQ(table->getFieldByName("strasse")->getName(), "Straße");
}

TEST(TableFieldsTest, ManyFieldsOfOneNameAreRenamedInLinearTime)
{
    // Each rename used to rescan every field for every suffix tried: cubic.
    auto table = SQLTable::tableForImportWithName("t");
    const auto start = std::chrono::steady_clock::now();
    constexpr int count = 3000;
    for (int i = 0; i < count; ++i) {
        table->addWithRenaming(SQLField::fieldWithName(i % 2 == 0 ? "col" : "COL", "int"));
        table->addWithRenaming(indexNamed("idx"));
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 5.0);
    EXPECT_EQ(table->fields()[count - 1]->getName(), "COL_" + std::to_string(count - 1));
    EXPECT_EQ(table->indexes()[count - 1]->getName(), "idx_" + std::to_string(count - 1));
    EXPECT_EQ(table->getFieldByName("col_2999"), table->fields()[count - 1].get());
}

TEST(TableFieldsTest, MovingFieldsToFrontKeepsTheOthersInOrderAndLookupsWorking)
{
    auto table = SQLTable::tableForImportWithName("t");
    for (const char *name : {"a", "b", "c", "d"}) {
        table->addWithRenaming(SQLField::fieldWithName(name, "int"));
    }
    // Names are matched like getFieldByName; repeated and unknown names are passed over.
    table->moveFieldsToFront({"D", "b", "nowhere", "d"});
    EXPECT_EQ(table->getFieldNameListString(), "d, b, a, c");
    table->moveFieldsToFront({});
    EXPECT_EQ(table->getFieldNameListString(), "d, b, a, c");
    EXPECT_EQ(table->getFieldByName("a"), table->fields()[2].get());
    EXPECT_EQ(table->addWithRenaming(SQLField::fieldWithName("B", "int"))->getName(), "B_1");
}
