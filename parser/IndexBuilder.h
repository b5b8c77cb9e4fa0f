// Model helpers of CREATE INDEX (treegrammar/65-IndexSequence.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <SchemaModel/SchemaModel.h>

#include <memory>
#include <vector>

// The index of a CREATE INDEX statement, marked "collapseSimpleIndex".
std::unique_ptr<SQLIndex> kp_newStatementIndex();
void kp_setIndexType(SQLIndex *index, const char *indexType);
// The kind word of CREATE SPATIAL INDEX or CREATE BITMAP INDEX: the type
// "SPATIAL" or "BITMAP".
void kp_setIndexTypeFromWord(SQLIndex *index, pANTLR3_BASE_TREE kindWord);
// Names the index after the last of its name parts (a schema prefix is dropped).
void kp_setIndexNameFromParts(SQLIndex *index, const std::vector<std::string> *nameParts);
// Adds the index to the table named by one part (table) or two (schema,
// table), looked up in the container, and returns it. Without such a table
// the index is dropped, silently, and the result is nullptr.
SQLIndex *kp_addIndexToNamedTable(SQLContainer *container, const std::vector<std::string> *tableParts,
                                  std::unique_ptr<SQLIndex> index);
