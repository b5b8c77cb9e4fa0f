// The model side of the CREATE TABLE rules (treegrammar/20-CreateTable.g):
// the table itself and its table options.
#include "TableBuilder.h"

#include <SchemaModel/SchemaModel.h>

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
