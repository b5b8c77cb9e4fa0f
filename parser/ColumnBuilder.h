// Model helpers of the column, data type and expression rules
// (treegrammar/30-Columns.g, 40-DataTypes.g, 50-Expressions.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <optional>
#include <string>
#include <string_view>

// Creates the field and adds it to the table, renaming it when its name is
// taken; a rename is reported at the name's position. A type the walker did
// not accept (accepted false) builds no field. Returns the added field.
SQLField *kp_addField(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE nameNode,
                      const std::string &type, bool accepted);
// The same for a column of the name, which stands at line and position,
// with its default value when it has one (set with the type, in one step).
SQLField *kp_addFieldAt(sqlantlr::ParseSession *session, SQLTable *table, const std::string &name,
                        const std::string &type, std::optional<std::string_view> defaultValue, int line,
                        int position);
// Traces a data type that the walker does not take.
void kp_traceRejectedType(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE typeWord);

void kp_setPrimaryKey(SQLField *field);
void kp_setNotNull(SQLField *field);
void kp_setAutoIncrement(SQLField *field);
// A boolean property set to true ("unique", "zerofill", "unsigned", "binary").
void kp_setFieldFlag(SQLField *field, const char *key);
// A string property ("field_character_set", "field_collation", "onUpdateFieldValue").
void kp_setFieldProperty(SQLField *field, const char *key, pANTLR3_BASE_TREE value);
void kp_setFieldProperty(SQLField *field, const char *key, const std::string *value);
// The expression of a computed or generated column (its text rides on the
// AS token) as the property generatedExpression.
void kp_setGeneratedExpressionFromToken(SQLField *field, pANTLR3_BASE_TREE asNode);
// The default value's text carried on the DEFAULT token; nothing without one.
void kp_setDefaultFromToken(SQLField *field, pANTLR3_BASE_TREE defaultNode);
// A check constraint from the text carried on the CHECK token, on a table or
// a field; named "cons_check" when no name is given. Nothing without a text
// or for any other target.
void kp_addCheckConstraintFromToken(SQLObject *target, pANTLR3_BASE_TREE checkNode, const std::string *name);
// The same from the expression's text.
void kp_addCheckConstraint(SQLObject *target, const std::string &expression, const std::string *name);
