#include "KeyBuilder.h"

#include "Log.h"
#include "ParseSession.h"
#include "VellumGrammarCParser.h"

#include <SQLAntlrParser/SQLParserC.h>

using sqlantlr::logf;
using sqlantlr::ParseSession;

namespace {

// Name parts as one line: "(s, t)".
std::string namePartsText(const std::vector<std::string> *parts)
{
    std::string text = "(";
    if (parts != nullptr) {
        for (size_t i = 0; i < parts->size(); ++i) {
            text += (i > 0 ? ", " : "") + (*parts)[i];
        }
    }
    return text + ")";
}

SQLParserC *driverOf(pANTLR3_BASE_RECOGNIZER recognizer)
{
    ParseSession *session = kp_session(recognizer);
    return session != nullptr ? session->driver : nullptr;
}

} // namespace

// ---- Parser ----------------------------------------------------------------

void kp_skipToClosingParenthesis(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_INT_STREAM is = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream->istream;
    long depth = 0;
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (next == CLOSEPAREN && depth == 0)) {
            return;
        }
        depth += next == OPENPAREN ? 1 : next == CLOSEPAREN ? -1 : 0;
        is->consume(is);
    }
}

// ---- Keys and indexes of a table definition --------------------------------

void kp_setPrimaryKeyColumn(SQLTable *table, pANTLR3_BASE_TREE columnName)
{
    const std::string name = kp_nodeText(columnName);
    SQLField *field = table != nullptr && !kp_isRecoveryNode(columnName) ? table->getFieldByName(name) : nullptr;
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
    auto entry = std::make_unique<SQLIndexEntry>();
    if (prefixSize != nullptr) {
        entry->setPrefixSize(kp_nodeText(prefixSize));
    }
    std::string name = kp_nodeText(column);
    if (innerName != nullptr) {
        name += "(" + kp_nodeText(innerName) + ")";
    }
    entry->setName(name);
    index->setFieldName(name);
    index->addIndexEntry(std::move(entry));
}

void kp_addTableIndex(SQLTable *table, std::unique_ptr<SQLIndex> index)
{
    if (table != nullptr) {
        table->addWithRenaming(std::move(index));
    }
}

// ---- Foreign keys ----------------------------------------------------------

SQLReferentialActions *kp_addTableForeignKey(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table,
                                             const std::string *constraintName, pANTLR3_BASE_TREE foreignWord,
                                             const KpForeignKeyClause &clause)
{
    SQLParserC *driver = driverOf(recognizer);
    if (driver == nullptr || foreignWord == nullptr) {
        return nullptr;
    }
    std::optional<std::string> name = clause.keyName;
    if (constraintName != nullptr && !constraintName->empty()) {
        name = *constraintName;
    }
    static const std::vector<std::string> none;
    SQLReferentialActions *result = driver->addForeignKey(
        table, name, static_cast<int>(foreignWord->getLine(foreignWord)),
        static_cast<int>(foreignWord->getCharPositionInLine(foreignWord)),
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

// ---- CREATE INDEX ----------------------------------------------------------

std::unique_ptr<SQLIndex> kp_newStatementIndex()
{
    return kp_newTableIndex(nullptr);
}

void kp_setIndexType(SQLIndex *index, const char *indexType)
{
    if (index != nullptr) {
        index->setIndexType(indexType);
    }
}

void kp_setIndexNameFromParts(SQLIndex *index, const std::vector<std::string> *nameParts)
{
    if (index != nullptr && nameParts != nullptr && !nameParts->empty()) {
        index->setName(nameParts->back());
    }
}

void kp_addIndexToNamedTable(SQLContainer *container, const std::vector<std::string> *tableParts,
                             std::unique_ptr<SQLIndex> index)
{
    if (container == nullptr || tableParts == nullptr || tableParts->empty()) {
        return;
    }
    SQLObject *target = tableParts->size() == 1
                            ? container->getObjectWithSchema((*tableParts)[0], std::nullopt)
                            : container->getObjectWithSchema((*tableParts)[1], (*tableParts)[0]);
    if (auto *table = dynamic_cast<SQLTable *>(target)) {
        table->add(std::move(index));
    }
}

// ---- ALTER TABLE -----------------------------------------------------------

SQLTable *kp_findAlterTarget(SQLContainer *container, const std::vector<std::string> *nameParts)
{
    if (container == nullptr || nameParts == nullptr) {
        return nullptr;
    }
    SQLObject *target = nullptr;
    if (nameParts->size() == 1) {
        target = container->getObjectByName((*nameParts)[0]);
    } else if (nameParts->size() == 2) {
        target = container->getObjectWithSchema((*nameParts)[1], (*nameParts)[0]);
    }
    return dynamic_cast<SQLTable *>(target);
}

SQLTable *kp_alterTargetTable(pANTLR3_BASE_RECOGNIZER recognizer, SQLContainer *container,
                              const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE tableWord)
{
    SQLTable *table = kp_findAlterTarget(container, nameParts);
    if (table != nullptr || tableWord == nullptr) {
        return table;
    }
    const std::string parts = namePartsText(nameParts);
    const int line = static_cast<int>(tableWord->getLine(tableWord));
    const int charPos = static_cast<int>(tableWord->getCharPositionInLine(tableWord));
    const std::string message = "alter table constraint missing target table " + parts + "," +
                                std::to_string(line) + "," + std::to_string(charPos);
    logf("warning: target table is nil %s", parts.c_str());
    logf("warning: %s", message.c_str());
    if (ParseSession *session = kp_session(recognizer)) {
        session->addException(message, line, charPos);
    }
    return nullptr;
}

void kp_takeConstraintName(std::optional<std::string> *current, const std::vector<std::string> *nameParts)
{
    if (current != nullptr && nameParts != nullptr && !nameParts->empty()) {
        *current = nameParts->back();
    }
}

const std::string *kp_currentConstraintName(const std::optional<std::string> *current)
{
    return current != nullptr && current->has_value() ? &**current : nullptr;
}

void kp_setPrimaryKeyColumns(SQLTable *table, const std::vector<std::string> *columns)
{
    if (table != nullptr && columns != nullptr) {
        table->setPrimaryKeyToFieldNames(*columns);
    }
}

void kp_addUniqueKey(SQLTable *table, pANTLR3_BASE_TREE nameNode, const std::vector<std::string> *columns)
{
    if (table == nullptr || columns == nullptr) {
        return;
    }
    std::optional<std::string> name;
    if (nameNode != nullptr) {
        name = kp_nodeText(nameNode);
    }
    table->addParsedIndexWithName(name, *columns, "UNIQUE");
}
