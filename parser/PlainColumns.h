// The direct reading of plain table columns. Most columns of real schemas
// are a name, a common type and a few common options (`id` int(11) NOT NULL
// AUTO_INCREMENT, name varchar(255) DEFAULT NULL COMMENT 'x'); the parser's
// rules and the tree walker spend a dozen rule calls and a tree node per
// token on each. A column whose tokens all fall within the forms read here
// is read in one pass instead: the parser keeps only its name in the tree,
// with the reading on the name's token, and the walker makes the field from
// that reading. Every other column takes the grammar's way. The model and
// records are the same either way (the tests and the fuzz target compare
// them); syntax-tree dumps do not use it, so their trees keep every token.
// A whole CREATE TABLE of such columns and of plain keys and options goes
// straight into the model (kp_importPlainTable).
#pragma once

#include "RecognizerSupport.h"

class SQLContainer;

namespace sqlantlr {
struct ParseSession;
}

// Parser: whether the column at LT(1) (the decision's first token) is plain.
// The reading (of it and of the plain columns after it) is kept, so repeated
// asks for the same token cost nothing.
bool kp_plainColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// Parser, after the first name was matched: consumes the rest of the run of
// plain columns, up to the COMMA or CLOSEPAREN after its last column, and
// leaves the reading on the first name's token.
void kp_takePlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN name);

// A whole CREATE TABLE statement of plain columns and plain keys, indexes,
// CHECK constraints and table options (parser/PlainColumns.cpp says which)
// is imported straight into the container, without a syntax tree, and its
// tokens through its SEMI are consumed; true then. False, with nothing read
// or built, for any other statement (the current token is its first).
bool kp_importPlainTable(sqlantlr::ParseSession &session, pANTLR3_TOKEN_STREAM tokens, SQLContainer &container);

// How many plain columns, and how many whole CREATE TABLE statements, the
// parsers of this thread read directly so far.
unsigned long kp_plainColumnsTaken();
unsigned long kp_plainTablesTaken();

// Walker: whether the node is the first name of a run of plain columns.
bool kp_isPlainColumn(pANTLR3_BASE_TREE node);
// Walker: makes the fields of the run's columns (as kp_addField does) and
// applies their options.
void kp_addPlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE name);
