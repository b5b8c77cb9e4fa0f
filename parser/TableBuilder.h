// Model helpers of the CREATE TABLE rules (treegrammar/20-CreateTable.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <vector>

// Creates the table from the first name part, gives a two-part name its
// schema and base name, and adds the table to the container at once.
// nullptr when there is no name.
SQLTable *kp_beginTable(SQLContainer *container, const std::vector<std::string> *nameParts);
// The engine (TYPE or ENGINE option), the STRING token's text.
void kp_setTableType(SQLTable *table, pANTLR3_BASE_TREE engine);
// A string property from a node's text.
void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value);
// Gives a table the columns of its parent (PostgreSQL's PARTITION OF and
// INHERITS): each parent column the table does not have yet is copied (name,
// type, NOT NULL, auto-increment, default, properties, column checks) and
// added after the table's own; keys stay with the parent. The parent's name
// as written is recorded in the table property `key`, several parents
// separated by ", ". A parent not (yet) in the container adds no column.
void kp_inheritColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                       const char *key);
