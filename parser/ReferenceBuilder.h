// Model helpers of the REFERENCES rules (treegrammar/55-References.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <optional>
#include <string>
#include <vector>

// A column-level REFERENCES: stores the target table (its name parts joined)
// and the first target column on the field. Without a field, records
// "local field not found when linking to T(C)" at the REFERENCES token.
void kp_setFieldReference(pANTLR3_BASE_RECOGNIZER recognizer, SQLField *field,
                          const std::vector<std::string> *targetParts,
                          const std::vector<std::string> *targetColumns, pANTLR3_BASE_TREE referencesWord);
// The same for a target table name already joined and the first target
// column, the record placed at line and position (none when line is -1).
void kp_setFieldReferenceNamed(sqlantlr::ParseSession *session, SQLField *field, const std::string &tableName,
                               const std::optional<std::string> &foreignName, int line, int position);
void kp_setUpdateAction(SQLReferentialActions *target, int code);
void kp_setDeleteAction(SQLReferentialActions *target, int code);
void kp_setDeferrable(SQLReferentialActions *target, bool deferrable);
void kp_setInitiallyDeferred(SQLReferentialActions *target, bool initiallyDeferred);
