// Helpers that the tree walker calls from its actions for keys, indexes and
// foreign keys (of a table definition, of CREATE INDEX and of ALTER TABLE),
// and one that the parser uses to skip what ALTER TABLE does not spell out.
// Like the table helpers they accept a missing table, index or name and then
// do nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <SchemaModel/SchemaModel.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

// ---- Parser ----------------------------------------------------------------

// Consumes the tokens after an OPENPAREN up to the CLOSEPAREN that closes it,
// which is left; stops early at SEMI or the end of input.
void kp_skipToClosingParenthesis(pANTLR3_BASE_RECOGNIZER recognizer);

// ---- Keys and indexes of a table definition --------------------------------

// Flags a column of the table as part of the primary key. An unknown column
// is only logged ("can't find primary key entry."); nothing is recorded.
void kp_setPrimaryKeyColumn(SQLTable *table, pANTLR3_BASE_TREE columnName);

// A UNIQUE table element: a unique constraint marked "collapseUnique".
std::unique_ptr<SQLIndex> kp_newUniqueConstraint();
// Any other index table element: an index marked "collapseSimpleIndex", with
// the kind word's type ("FULL TEXT", "FULLTEXT", "CLUSTERED"); nullptr for a
// plain INDEX or KEY leaves it without a type.
std::unique_ptr<SQLIndex> kp_newTableIndex(const char *indexType);
// A CLUSTERED table element: a "CLUSTERED" index, traced as found.
std::unique_ptr<SQLIndex> kp_newClusteredIndex();
// Names the index after a node's text (an index name, or the word PRIMARY as
// written).
void kp_setIndexName(SQLIndex *index, pANTLR3_BASE_TREE nameNode);
// Adds one column entry to the index: the column's name, or "column(name)"
// when the parentheses hold a name; a prefix length when they hold a number.
// The index's field name follows each entry, so it ends as the last one's.
void kp_addIndexEntry(SQLIndex *index, pANTLR3_BASE_TREE column, pANTLR3_BASE_TREE prefixSize,
                      pANTLR3_BASE_TREE innerName);
// Adds a finished table element to its table, renaming it on a name clash.
void kp_addTableIndex(SQLTable *table, std::unique_ptr<SQLIndex> index);

// ---- Foreign keys ----------------------------------------------------------

// What a FOREIGN KEY ... REFERENCES clause says, collected while it is walked.
// Actions and deferrability that are not written stay 0 and false.
struct KpForeignKeyClause {
    std::optional<std::string> keyName;                      // the name after FOREIGN KEY
    const std::vector<std::string> *localColumns = nullptr;
    const std::vector<std::string> *targetParts = nullptr;   // the target table's name parts
    const std::vector<std::string> *targetColumns = nullptr; // nullptr when no list was written
    int updateAction = SQLNoActionWritten;
    int deleteAction = SQLNoActionWritten;
    bool deferrable = false;
    bool initiallyDeferred = false;
};

// Hands a table-level foreign key to the driver, which stores a one-column
// reference on its field and makes an SQLForeignKey of the others. A
// CONSTRAINT name that is not empty wins over the name after FOREIGN KEY.
// The actions and deferrability are then set on whatever carries the
// reference. Returns it, or nullptr when the driver reported a problem.
SQLReferentialActions *kp_addTableForeignKey(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table,
                                             const std::string *constraintName, pANTLR3_BASE_TREE foreignWord,
                                             const KpForeignKeyClause &clause);

// ---- CREATE INDEX ----------------------------------------------------------

// The index of a CREATE INDEX statement, marked "collapseSimpleIndex".
std::unique_ptr<SQLIndex> kp_newStatementIndex();
void kp_setIndexType(SQLIndex *index, const char *indexType);
// Names the index after the last of its name parts (a schema prefix is dropped).
void kp_setIndexNameFromParts(SQLIndex *index, const std::vector<std::string> *nameParts);
// Adds the index to the table named by one part (table) or two (schema,
// table), looked up in the container. Without such a table the index is
// dropped, silently.
void kp_addIndexToNamedTable(SQLContainer *container, const std::vector<std::string> *tableParts,
                             std::unique_ptr<SQLIndex> index);

// ---- ALTER TABLE -----------------------------------------------------------

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
// ADD UNIQUE: an index of type "UNIQUE" over the columns, named when a name
// was written.
void kp_addUniqueKey(SQLTable *table, pANTLR3_BASE_TREE nameNode, const std::vector<std::string> *columns);
