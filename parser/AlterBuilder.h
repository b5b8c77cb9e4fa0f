// Model helpers of ALTER TABLE (treegrammar/60-Alter.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <optional>
#include <string>
#include <vector>

// The table named by one part or two (schema, table), or nullptr: with one
// part any object of that name, with two the object of that schema (else one
// of that name without a schema); only a table is a target.
SQLTable *kp_findAlterTarget(SQLContainer *container, const std::vector<std::string> *nameParts);
// As kp_findAlterTarget; a missing table is recorded ("alter table constraint
// missing target table ...") at the TABLE word.
SQLTable *kp_alterTargetTable(pANTLR3_BASE_RECOGNIZER recognizer, SQLContainer *container,
                              const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE tableWord);
// The name given after CONSTRAINT replaces the current one (the last of its
// parts); the current one otherwise carries over to later clauses.
void kp_takeConstraintName(std::optional<std::string> *current, const std::vector<std::string> *nameParts);
// The current constraint name, or nullptr while none was written.
const std::string *kp_currentConstraintName(const std::optional<std::string> *current);
// ADD PRIMARY KEY: exactly these columns become the primary key.
void kp_setPrimaryKeyColumns(SQLTable *table, const std::vector<std::string> *columns);
// ADD UNIQUE: an index of type "UNIQUE", named when a name was written, added
// to the table before its entries (kp_addIndexEntry) are read; nullptr
// without a table.
SQLIndex *kp_addUniqueKey(SQLTable *table, pANTLR3_BASE_TREE nameNode);
// SQL Server's ADD [CONSTRAINT c] DEFAULT value FOR column: the column's
// default is the text the DEFAULT node carries, as in a column definition.
// An unknown column is only logged.
void kp_setColumnDefaultFromToken(SQLTable *table, pANTLR3_BASE_TREE columnName, pANTLR3_BASE_TREE defaultNode);
