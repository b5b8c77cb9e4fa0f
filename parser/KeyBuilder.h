// Model helpers of the key rules of a table definition (treegrammar/58-Keys.g):
// primary keys, unique constraints, indexes and table-level foreign keys.
// The model helpers accept a missing table, field or index and then do
// nothing, so a rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

class SQLParserC;

#include <SchemaModel/SchemaModel.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

// Flags a column of the table as part of the primary key. An unknown column
// is only logged ("can't find primary key entry."); nothing is recorded.
void kp_setPrimaryKeyColumn(SQLTable *table, pANTLR3_BASE_TREE columnName);
// The same for the column's name as written.
void kp_setPrimaryKeyColumnNamed(SQLTable *table, const std::string &name);

// A UNIQUE table element: a unique constraint marked "collapseUnique".
std::unique_ptr<SQLIndex> kp_newUniqueConstraint();
// Any other index table element: an index marked "collapseSimpleIndex", with
// the kind word's type ("FULL TEXT", "FULLTEXT", "CLUSTERED"); nullptr for a
// plain INDEX or KEY leaves it without a type.
std::unique_ptr<SQLIndex> kp_newTableIndex(const char *indexType);
// A CLUSTERED table element: a "CLUSTERED" index, traced as found.
std::unique_ptr<SQLIndex> kp_newClusteredIndex();
// A FULLTEXT table element, or MySQL's SPATIAL that reaches the walker as one
// (see kp_markSpatialIndex): typed "FULLTEXT" or "SPATIAL" by the
// kind word's text.
std::unique_ptr<SQLIndex> kp_newKindWordIndex(pANTLR3_BASE_TREE kindWord);
// Names the index after a node's text (an index name, or the word PRIMARY as
// written).
void kp_setIndexName(SQLIndex *index, pANTLR3_BASE_TREE nameNode);
// Adds one column entry to the index: the column's name, or "column(name)"
// when the parentheses hold a name; a prefix length when they hold a number.
// The index's field name follows each entry, so it ends as the last one's.
void kp_addIndexEntry(SQLIndex *index, pANTLR3_BASE_TREE column, pANTLR3_BASE_TREE prefixSize,
                      pANTLR3_BASE_TREE innerName);
// The same for an entry named as written, with its prefix length (empty for none).
void kp_addIndexEntryNamed(SQLIndex *index, const std::string &name, const std::string &prefixSize);
// Adds an expression entry, named by the expression's text that its node
// carries (see kp_carryIndexExpression); the index's field name follows it.
void kp_addIndexExpressionEntry(SQLIndex *index, pANTLR3_BASE_TREE expression);
// Adds a finished table element to its table, renaming it on a name clash;
// returns it, or nullptr without a table.
SQLIndex *kp_addTableIndex(SQLTable *table, std::unique_ptr<SQLIndex> index);
// INCLUDE (d, e): the property "include" holds the column names joined by
// ", ".
void kp_setIndexIncludedColumns(SQLIndex *index, const std::vector<std::string> *columns);
// A partial index's WHERE: the property "where" holds the predicate's text
// that the WHERE node carries.
void kp_setIndexFilterFromToken(SQLIndex *index, pANTLR3_BASE_TREE whereNode);

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
// The same for a key whose FOREIGN word stands at line and position.
SQLReferentialActions *kp_addForeignKeyAt(SQLParserC *driver, SQLTable *table, const std::string *constraintName,
                                          int line, int position, const KpForeignKeyClause &clause);
