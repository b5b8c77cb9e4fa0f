// The model's JSON form is an interface: every object's keys, in order, with
// null for unset values and properties only when set.
#include "ModelJson.h"

#include <nlohmann/json.hpp>

#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> keysOf(const nlohmann::ordered_json &object)
{
    std::vector<std::string> keys;
    for (const auto &item : object.items()) {
        keys.push_back(item.key());
    }
    return keys;
}

class ModelJson : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto table = SQLTable::tableForImportWithName("s");
        table->setSchemaName("s");
        table->setBaseName("orders");
        table->setTableType("InnoDB");
        table->setProperty("table_collation", "utf8_bin");
        auto id = SQLField::fieldWithName("id", "INT");
        id->setPrimaryKey(true);
        auto customer = SQLField::fieldWithName("customer", "INT");
        customer->setReferences("customers", std::nullopt);
        customer->setDeleteAction(SQLCascade);
        customer->setPropertyAsBoolean("unsigned", true);
        auto check = SQLConstraint::constraint();
        check->setName("cons_check");
        check->setCheckConstraintExpression("customer > 0");
        customer->addCheckConstraint(std::move(check));
        SQLTable *orders = table.get();
        orders->addWithRenaming(std::move(id));
        SQLField *customerField = orders->addWithRenaming(std::move(customer));
        auto unique = SQLConstraint::constraint();
        unique->setPropertyAsBoolean("collapseUnique", true);
        auto entry = std::make_unique<SQLIndexEntry>();
        entry->setName("customer");
        entry->setPrefixSize("10");
        unique->addIndexEntry(std::move(entry));
        orders->addWithRenaming(std::unique_ptr<SQLIndex>(std::move(unique)));
        auto key = std::make_unique<SQLForeignKey>();
        key->setTargetTableByName("regions");
        key->addForeignKeyEntry(std::make_unique<SQLForeignKeyEntry>(customerField, nullptr));
        orders->add(std::move(key));
        container.add(std::move(table));
        auto view = SQLView::viewWithName("v");
        view->addTableEntry("orders", "");
        view->addSelectColumn("id");
        container.add(std::move(view));
        json = nlohmann::ordered_json::parse(sqlantlr::modelJsonText(container, {{"ParsingException", "[1:0] a record"}}));
    }

    SQLContainer container;
    nlohmann::ordered_json json;
};

TEST_F(ModelJson, TopLevelAndTableKeysInOrder)
{
    EXPECT_EQ(keysOf(json), (std::vector<std::string>{"tables", "views", "exceptions"}));
    EXPECT_EQ(json["exceptions"], nlohmann::ordered_json::array({"[1:0] a record"}));
    const auto &table = json["tables"][0];
    EXPECT_EQ(keysOf(table), (std::vector<std::string>{"name", "schemaName", "baseName", "tableType", "properties",
                                                       "fields", "indexes", "foreignKeys", "checks"}));
    EXPECT_EQ(table["name"], "orders");
    EXPECT_EQ(table["schemaName"], "s");
    EXPECT_EQ(table["properties"], nlohmann::ordered_json({{"table_collation", "utf8_bin"}}));
}

TEST_F(ModelJson, FieldsWithAndWithoutReferences)
{
    const auto &id = json["tables"][0]["fields"][0];
    EXPECT_EQ(keysOf(id), (std::vector<std::string>{"name", "type", "notNull", "autoIncrement", "primaryKey",
                                                    "defaultValue", "properties", "references", "checks"}));
    EXPECT_TRUE(id["references"].is_null());
    EXPECT_TRUE(id["defaultValue"].is_null());
    EXPECT_EQ(id["properties"], nlohmann::ordered_json::object());
    const auto &customer = json["tables"][0]["fields"][1];
    EXPECT_EQ(keysOf(customer["references"]),
              (std::vector<std::string>{"table", "field", "referenceId", "onDelete", "onUpdate", "deferrable",
                                        "initiallyDeferred", "resolved"}));
    EXPECT_EQ(customer["references"]["onDelete"], 1);
    EXPECT_TRUE(customer["references"]["field"].is_null());
    EXPECT_EQ(customer["properties"]["unsigned"], true);
    EXPECT_EQ(customer["checks"], nlohmann::ordered_json::array({{{"name", "cons_check"}, {"expression", "customer > 0"}}}));
}

TEST_F(ModelJson, IndexesForeignKeysAndViews)
{
    const auto &index = json["tables"][0]["indexes"][0];
    EXPECT_EQ(keysOf(index), (std::vector<std::string>{"kind", "name", "indexType", "fieldName", "entries", "properties"}));
    EXPECT_EQ(index["kind"], "unique");
    EXPECT_TRUE(index["name"].is_null());
    EXPECT_EQ(index["entries"], nlohmann::ordered_json::array({{{"name", "customer"}, {"prefixSize", "10"}}}));
    const auto &key = json["tables"][0]["foreignKeys"][0];
    EXPECT_EQ(keysOf(key), (std::vector<std::string>{"name", "targetTable", "entries", "onDelete", "onUpdate",
                                                     "deferrable", "initiallyDeferred", "properties", "resolved"}));
    EXPECT_EQ(key["entries"], nlohmann::ordered_json::array({{{"field", "customer"}, {"target", nullptr}}}));
    const auto &view = json["views"][0];
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"name", "schemaName", "baseName", "queryString", "columns",
                                                      "selectColumns", "tables"}));
    EXPECT_EQ(view["tables"], nlohmann::ordered_json::array({{{"name", "orders"}, {"alias", ""}}}));
    EXPECT_TRUE(view["queryString"].is_null());
}

} // namespace
