// Model helpers of the CREATE TABLE rules (treegrammar/20-CreateTable.g).
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Creates the table from the first name part, gives a two-part name its
// schema and base name, and adds the table to the container at once.
// nullptr when there is no name.
SQLTable *kp_beginTable(SQLContainer *container, const std::vector<std::string> *nameParts);
// The engine (TYPE or ENGINE option), the STRING token's text.
void kp_setTableType(SQLTable *table, pANTLR3_BASE_TREE engine);
// A string property from a node's text.
void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value);

// The text of a comment as the script wrote its value: a quoted string
// ('x', "x", E'x', with or without its prefix) loses its quotes and a doubled
// quote becomes one; a dollar-quoted string ($$x$$, $t$x$t$) loses its tags;
// backslashes stay as written; a bare word is kept. Nullopt for NULL.
std::optional<std::string> kp_commentText(std::string_view written);
// A column's COMMENT 'x' or a table's COMMENT='x': the "comment" property.
void kp_setCommentFromNode(SQLObject *target, pANTLR3_BASE_TREE value);
// The same from the value's text as written.
void kp_setCommentText(SQLObject *target, std::string_view written);
// COMMENT ON TABLE [schema.]t IS ... and COMMENT ON COLUMN [schema.]t.c IS
// ...: the value's text rides on the IS node. IS NULL removes the comment. A
// table or column that is not in the model (yet) is left alone, unreported.
void kp_commentOnTable(SQLContainer *container, const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE is);
void kp_commentOnColumn(SQLContainer *container, const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE is);
// Gives a table the columns of its parent (PostgreSQL's PARTITION OF and
// INHERITS): each parent column the table does not have yet is copied (name,
// type, NOT NULL, auto-increment, default, properties, column checks) and
// added after the table's own; keys stay with the parent. The parent's name
// as written is recorded in the table property `key`, several parents
// separated by ", ". A parent not (yet) in the container adds no column.
// With `inheritedNames` (INHERITS), the names of the parent's columns are
// appended to it and the columns so named move before the table's own, in
// that order.
void kp_inheritColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                       const char *key, std::vector<std::string> *inheritedNames = nullptr);
// PostgreSQL's LIKE parent in a table's element list: copies the parent's
// columns that the table does not have yet, after those it has. Name, type,
// NOT NULL and properties always; defaults, identity, column checks and
// comments as the options say ("INCLUDING ALL EXCLUDING COMMENTS ", words
// separated by blanks, applied in order). A parent not (yet) in the
// container copies nothing.
void kp_copyLikeColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                        const std::string &options);
