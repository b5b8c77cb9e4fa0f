// The model side of ALTER TABLE (treegrammar/60-Alter.g): the target table,
// the constraint name that carries over between clauses, and the keys the
// statement adds (foreign keys go through the key builder).
#include "AlterBuilder.h"

#include "Log.h"
#include "ParseSession.h"

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

} // namespace

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

SQLIndex *kp_addUniqueKey(SQLTable *table, pANTLR3_BASE_TREE nameNode)
{
    if (table == nullptr) {
        return nullptr;
    }
    std::optional<std::string> name;
    if (nameNode != nullptr && !kp_isRecoveryNode(nameNode)) {
        name = kp_nodeText(nameNode);
    }
    return table->addParsedIndexWithName(name, {}, "UNIQUE");
}

void kp_setColumnDefaultFromToken(SQLTable *table, pANTLR3_BASE_TREE columnName, pANTLR3_BASE_TREE defaultNode)
{
    if (table == nullptr || columnName == nullptr || kp_isRecoveryNode(columnName)) {
        return;
    }
    const std::string name = kp_nodeText(columnName);
    SQLField *field = table->getFieldByName(name);
    if (field == nullptr) {
        logf("can't find default value column. %s", name.c_str());
        return;
    }
    kp_setDefaultFromToken(field, defaultNode);
}
