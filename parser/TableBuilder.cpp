// The model side of the CREATE TABLE rules (treegrammar/20-CreateTable.g):
// the table itself and its table options.
#include "TableBuilder.h"

#include "AlterBuilder.h"

#include <SchemaModel/SchemaModel.h>

#include <variant>

SQLTable *kp_beginTable(SQLContainer *container, const std::vector<std::string> *nameParts)
{
    if (container == nullptr || nameParts == nullptr || nameParts->empty()) {
        return nullptr;
    }
    // The table is made under the first part; a schema-qualified name then
    // gets its schema and its base name, in this order.
    std::unique_ptr<SQLTable> table = SQLTable::tableForImportWithName(nameParts->front());
    if (nameParts->size() == 2) {
        table->setSchemaName((*nameParts)[0]);
        table->setBaseName((*nameParts)[1]);
    }
    return container->add(std::move(table));
}

void kp_setTableType(SQLTable *table, pANTLR3_BASE_TREE engine)
{
    if (table != nullptr && engine != nullptr && !kp_isRecoveryNode(engine)) {
        table->setTableType(kp_nodeText(engine));
    }
}

void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value)
{
    if (table != nullptr && value != nullptr && !kp_isRecoveryNode(value)) {
        table->setProperty(key, kp_nodeText(value));
    }
}

void kp_inheritColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                       const char *key)
{
    if (table == nullptr || parentParts == nullptr || parentParts->empty()) {
        return;
    }
    std::string parentName;
    for (const std::string &part : *parentParts) {
        parentName += (parentName.empty() ? "" : ".") + part;
    }
    const std::optional<std::string> earlier = table->getPropertyAsString(key);
    table->setProperty(key, earlier.has_value() && !earlier->empty() ? *earlier + ", " + parentName : parentName);
    const SQLTable *parent = kp_findAlterTarget(container, parentParts);
    if (parent == nullptr || parent == table) {
        return;
    }
    for (const std::unique_ptr<SQLField> &column : parent->fields()) {
        if (table->getFieldByName(column->getName()) != nullptr) {
            continue;
        }
        std::unique_ptr<SQLField> copy = SQLField::fieldWithName(column->getName(), column->getType());
        copy->setNotNull(column->isNotNull());
        copy->setAutoIncrement(column->isAutoIncrement());
        if (const std::optional<std::string> value = column->getDefaultValue()) {
            copy->setDefaultValueFromParsedString(*value);
        }
        for (const auto &[name, value] : column->getProperties()) {
            if (const bool *flag = std::get_if<bool>(&value)) {
                copy->setPropertyAsBoolean(name, *flag);
            } else {
                copy->setProperty(name, std::get<std::string>(value));
            }
        }
        for (const std::unique_ptr<SQLConstraint> &check : column->checkConstraints()) {
            std::unique_ptr<SQLConstraint> checkCopy = SQLConstraint::constraint();
            if (check->hasName()) {
                checkCopy->setName(check->getName());
            }
            if (const std::optional<std::string> expression = check->getCheckConstraintExpression()) {
                checkCopy->setCheckConstraintExpression(*expression);
            }
            copy->addCheckConstraint(std::move(checkCopy));
        }
        table->addWithRenaming(std::move(copy));
    }
}
