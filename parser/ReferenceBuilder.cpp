// The model side of the REFERENCES rules (treegrammar/55-References.g): a
// column-level reference and the referential actions of any reference.
#include "ReferenceBuilder.h"

#include "Log.h"
#include "ParseSession.h"

#include <SQLAntlrParser/SQLParserC.h>
#include <SchemaModel/SchemaModel.h>

#include <optional>

using sqlantlr::logf;
using sqlantlr::ParseSession;

void kp_setFieldReference(pANTLR3_BASE_RECOGNIZER recognizer, SQLField *field,
                          const std::vector<std::string> *targetParts,
                          const std::vector<std::string> *targetColumns, pANTLR3_BASE_TREE referencesWord)
{
    const std::string tableName =
        targetParts != nullptr ? SQLParserC::tableNameFromReturnArray(*targetParts) : std::string();
    std::optional<std::string> foreignName;
    if (targetColumns != nullptr && !targetColumns->empty()) {
        foreignName = targetColumns->front();
    }
    const int line = referencesWord != nullptr ? static_cast<int>(referencesWord->getLine(referencesWord)) : -1;
    const int position =
        referencesWord != nullptr ? static_cast<int>(referencesWord->getCharPositionInLine(referencesWord)) : -1;
    kp_setFieldReferenceNamed(kp_session(recognizer), field, tableName, foreignName, line, position);
}

void kp_setFieldReferenceNamed(ParseSession *session, SQLField *field, const std::string &tableName,
                               const std::optional<std::string> &foreignName, int line, int position)
{
    if (field != nullptr) {
        field->setReferences(tableName, foreignName);
        field->setDefaultCardinalityForImport();
        return;
    }
    const std::string message = "local field not found when linking to " + tableName + "(" +
                                foreignName.value_or("(null)") + ")";
    logf("Parsing exception - no local field %s", message.c_str());
    if (session != nullptr && line >= 0) {
        session->addException(message, line, position);
    }
}

void kp_setUpdateAction(SQLReferentialActions *target, int code)
{
    if (target != nullptr) {
        target->setUpdateAction(code);
    }
}

void kp_setDeleteAction(SQLReferentialActions *target, int code)
{
    if (target != nullptr) {
        target->setDeleteAction(code);
    }
}

void kp_setDeferrable(SQLReferentialActions *target, bool deferrable)
{
    if (target != nullptr) {
        target->setDeferrable(deferrable);
    }
}

void kp_setInitiallyDeferred(SQLReferentialActions *target, bool initiallyDeferred)
{
    if (target != nullptr) {
        target->setInitiallyDeferred(initiallyDeferred);
    }
}
