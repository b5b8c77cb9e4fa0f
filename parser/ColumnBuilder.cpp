// The model side of the column, data type and expression rules
// (treegrammar/30-Columns.g, 40-DataTypes.g, 50-Expressions.g): each column
// becomes a field of the current table, its options become field settings.
#include "ColumnBuilder.h"

#include "Log.h"
#include "ParseSession.h"

#include <SQLAntlrParser/SQLParserC.h>
#include <SchemaModel/SchemaModel.h>

using sqlantlr::logf;
using sqlantlr::ParseSession;

namespace {

// Adds the field, renamed when its name is taken; a rename is reported at
// the name's line and position.
SQLField *addField(ParseSession *session, SQLTable *table, const std::string &name, const std::string &type,
                   std::optional<std::string_view> defaultValue, int line, int position)
{
    bool didRename = false;
    SQLField *added = table->addWithRenaming(SQLField::fieldWithName(name, type, defaultValue), &didRename);
    if (didRename && added != nullptr && session != nullptr && session->driver != nullptr) {
        // The name the field had before the table renamed it: the name as
        // setName trims it.
        session->driver->addDuplicateFieldExceptionMessage(*added, *table, SchemaModel::trim(name), line, position);
    }
    return added;
}

} // namespace

SQLField *kp_addField(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE nameNode,
                      const std::string &type, bool accepted)
{
    if (!accepted || table == nullptr || nameNode == nullptr) {
        return nullptr;
    }
    return addField(kp_session(recognizer), table, kp_nodeText(nameNode), type, std::nullopt,
                    static_cast<int>(nameNode->getLine(nameNode)),
                    static_cast<int>(nameNode->getCharPositionInLine(nameNode)));
}

SQLField *kp_addFieldAt(ParseSession *session, SQLTable *table, const std::string &name, const std::string &type,
                        std::optional<std::string_view> defaultValue, int line, int position)
{
    return table != nullptr ? addField(session, table, name, type, defaultValue, line, position) : nullptr;
}

void kp_traceRejectedType(pANTLR3_BASE_RECOGNIZER, pANTLR3_BASE_TREE typeWord)
{
    if (typeWord == nullptr) {
        return;
    }
    logf(" Tree Parser : syntax not recognized... type %s at [%u:%u] is not taken; the column is not built\n",
         kp_nodeText(typeWord).c_str(), typeWord->getLine(typeWord), typeWord->getCharPositionInLine(typeWord));
}

void kp_setPrimaryKey(SQLField *field)
{
    if (field != nullptr) {
        field->setPrimaryKey(true);
    }
}

void kp_setNotNull(SQLField *field)
{
    if (field != nullptr) {
        field->setNotNull(true);
    }
}

void kp_setAutoIncrement(SQLField *field)
{
    if (field != nullptr) {
        field->setAutoIncrement(true);
    }
}

void kp_setFieldFlag(SQLField *field, const char *key)
{
    if (field != nullptr) {
        field->setPropertyAsBoolean(key, true);
    }
}

void kp_setFieldProperty(SQLField *field, const char *key, pANTLR3_BASE_TREE value)
{
    if (field != nullptr && value != nullptr && !kp_isRecoveryNode(value)) {
        field->setProperty(key, kp_nodeText(value));
    }
}

void kp_setFieldProperty(SQLField *field, const char *key, const std::string *value)
{
    if (field != nullptr && value != nullptr) {
        field->setProperty(key, *value);
    }
}

void kp_setGeneratedExpressionFromToken(SQLField *field, pANTLR3_BASE_TREE asNode)
{
    kp_setFieldProperty(field, "generatedExpression", kp_customValue(asNode));
}

void kp_setDefaultFromToken(SQLField *field, pANTLR3_BASE_TREE defaultNode)
{
    const std::string *value = kp_customValue(defaultNode);
    if (field != nullptr && value != nullptr) {
        field->setDefaultValueFromParsedString(*value);
    }
}

void kp_addCheckConstraintFromToken(SQLObject *target, pANTLR3_BASE_TREE checkNode, const std::string *name)
{
    if (const std::string *expression = kp_customValue(checkNode)) {
        kp_addCheckConstraint(target, *expression, name);
    }
}

void kp_addCheckConstraint(SQLObject *target, const std::string &expression, const std::string *name)
{
    if (target == nullptr) {
        return;
    }
    auto makeConstraint = [&] {
        std::unique_ptr<SQLConstraint> constraint = SQLConstraint::constraint();
        constraint->setName(name != nullptr ? *name : std::string("cons_check"));
        constraint->setCheckConstraintExpression(expression);
        return constraint;
    };
    if (auto *table = dynamic_cast<SQLTable *>(target)) {
        table->addCheckConstraint(makeConstraint());
    } else if (auto *field = dynamic_cast<SQLField *>(target)) {
        field->addCheckConstraint(makeConstraint());
    }
}
