// The model side of the key rules of a table definition
// (treegrammar/58-Keys.g): primary keys, unique constraints, indexes and
// table-level foreign keys.
#include "KeyBuilder.h"

#include "Log.h"
#include "ParseSession.h"

#include <SQLAntlrParser/SQLParserC.h>

using sqlantlr::logf;
using sqlantlr::ParseSession;

namespace {

SQLParserC *driverOf(pANTLR3_BASE_RECOGNIZER recognizer)
{
    ParseSession *session = kp_session(recognizer);
    return session != nullptr ? session->driver : nullptr;
}

} // namespace

void kp_setPrimaryKeyColumn(SQLTable *table, pANTLR3_BASE_TREE columnName)
{
    if (!kp_isRecoveryNode(columnName)) {
        kp_setPrimaryKeyColumnNamed(table, kp_nodeText(columnName));
    } else {
        logf("can't find primary key entry. %s", kp_nodeText(columnName).c_str());
    }
}

void kp_setPrimaryKeyColumnNamed(SQLTable *table, const std::string &name)
{
    SQLField *field = table != nullptr ? table->getFieldByName(name) : nullptr;
    if (field == nullptr) {
        logf("can't find primary key entry. %s", name.c_str());
        return;
    }
    field->setPrimaryKey(true);
}

std::unique_ptr<SQLIndex> kp_newUniqueConstraint()
{
    std::unique_ptr<SQLIndex> constraint = SQLConstraint::constraint();
    constraint->setPropertyAsBoolean("collapseUnique", true);
    return constraint;
}

std::unique_ptr<SQLIndex> kp_newTableIndex(const char *indexType)
{
    auto index = std::make_unique<SQLIndex>();
    if (indexType != nullptr) {
        index->setIndexType(indexType);
    }
    index->setPropertyAsBoolean("collapseSimpleIndex", true);
    return index;
}

std::unique_ptr<SQLIndex> kp_newClusteredIndex()
{
    logf("found clustered index");
    return kp_newTableIndex("CLUSTERED");
}

std::unique_ptr<SQLIndex> kp_newKindWordIndex(pANTLR3_BASE_TREE kindWord)
{
    return kp_newTableIndex(kindWord != nullptr && kp_textIsWord(kp_nodeText(kindWord), "SPATIAL") ? "SPATIAL"
                                                                                                 : "FULLTEXT");
}

void kp_setIndexName(SQLIndex *index, pANTLR3_BASE_TREE nameNode)
{
    if (index != nullptr && nameNode != nullptr && !kp_isRecoveryNode(nameNode)) {
        index->setName(kp_nodeText(nameNode));
    }
}

void kp_addIndexEntry(SQLIndex *index, pANTLR3_BASE_TREE column, pANTLR3_BASE_TREE prefixSize,
                      pANTLR3_BASE_TREE innerName)
{
    if (index == nullptr || column == nullptr || kp_isRecoveryNode(column) || kp_isRecoveryNode(prefixSize) ||
        kp_isRecoveryNode(innerName)) {
        return;
    }
    std::string name = kp_nodeText(column);
    if (innerName != nullptr) {
        name += "(" + kp_nodeText(innerName) + ")";
    }
    kp_addIndexEntryNamed(index, name, prefixSize != nullptr ? kp_nodeText(prefixSize) : std::string());
}

void kp_addIndexEntryNamed(SQLIndex *index, const std::string &name, const std::string &prefixSize)
{
    if (index == nullptr) {
        return;
    }
    auto entry = std::make_unique<SQLIndexEntry>();
    if (!prefixSize.empty()) {
        entry->setPrefixSize(prefixSize);
    }
    entry->setName(name);
    index->setFieldName(name);
    index->addIndexEntry(std::move(entry));
}

void kp_addIndexExpressionEntry(SQLIndex *index, pANTLR3_BASE_TREE expression)
{
    const std::string *text = kp_customValue(expression);
    if (index == nullptr || text == nullptr) {
        return;
    }
    auto entry = std::make_unique<SQLIndexEntry>();
    entry->setName(*text);
    index->setFieldName(*text);
    index->addIndexEntry(std::move(entry));
}

SQLIndex *kp_addTableIndex(SQLTable *table, std::unique_ptr<SQLIndex> index)
{
    return table != nullptr ? table->addWithRenaming(std::move(index)) : nullptr;
}

void kp_setIndexIncludedColumns(SQLIndex *index, const std::vector<std::string> *columns)
{
    if (index == nullptr || columns == nullptr || columns->empty()) {
        return;
    }
    std::string text;
    for (const std::string &column : *columns) {
        text += (text.empty() ? "" : ", ") + SchemaModel::trim(column);
    }
    index->setProperty("include", text);
}

void kp_setIndexFilterFromToken(SQLIndex *index, pANTLR3_BASE_TREE whereNode)
{
    const std::string *predicate = kp_customValue(whereNode);
    if (index != nullptr && predicate != nullptr) {
        index->setProperty("where", *predicate);
    }
}

SQLReferentialActions *kp_addTableForeignKey(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table,
                                             const std::string *constraintName, pANTLR3_BASE_TREE foreignWord,
                                             const KpForeignKeyClause &clause)
{
    if (foreignWord == nullptr) {
        return nullptr;
    }
    return kp_addForeignKeyAt(driverOf(recognizer), table, constraintName,
                              static_cast<int>(foreignWord->getLine(foreignWord)),
                              static_cast<int>(foreignWord->getCharPositionInLine(foreignWord)), clause);
}

SQLReferentialActions *kp_addForeignKeyAt(SQLParserC *driver, SQLTable *table, const std::string *constraintName,
                                          int line, int position, const KpForeignKeyClause &clause)
{
    if (driver == nullptr) {
        return nullptr;
    }
    std::optional<std::string> name = clause.keyName;
    if (constraintName != nullptr && !constraintName->empty()) {
        name = *constraintName;
    }
    static const std::vector<std::string> none;
    SQLReferentialActions *result = driver->addForeignKey(
        table, name, line, position,
        clause.targetParts != nullptr ? *clause.targetParts : none,
        clause.localColumns != nullptr ? *clause.localColumns : none,
        clause.targetColumns != nullptr ? *clause.targetColumns : none);
    if (result != nullptr) {
        result->setDeferrable(clause.deferrable);
        result->setInitiallyDeferred(clause.initiallyDeferred);
        result->setUpdateAction(clause.updateAction);
        result->setDeleteAction(clause.deleteAction);
    }
    return result;
}
