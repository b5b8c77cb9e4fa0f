// Helpers that the CREATE TABLE, column, data type and reference rules call
// from their actions: in the parser, the source text carried on DEFAULT and
// CHECK tokens and the recovery of a broken table entry; in the tree
// walker, every change to the model that a table or a column brings. The
// model helpers accept a missing table or field and then do nothing, so a
// rule that failed half-way never needs to check.
#pragma once

#include "RecognizerSupport.h"

#include <string>
#include <vector>

// ---- Parser ----------------------------------------------------------------

// The input's characters from the start of `start` to the end of `stop`,
// hidden blanks and comments included; empty when the span is empty (stop
// before start) or has no place in the input.
std::string kp_sourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// Attaches the source text of the span start..stop to the carrying token
// (its custom pointer, a const std::string * kept by the parse session).
void setCustomStringValueOnToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                                 pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// The source text that setCustomStringValueOnToken attached to a node's
// token, or nullptr.
const std::string *kp_customValue(pANTLR3_BASE_TREE node);

// An entry of a table's column list ends at COMMA or CLOSEPAREN (SEMI and
// the end of input are left to the statement). Anything else raises a
// mismatch expecting CLOSEPAREN at the next token.
void kp_requireTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer);

// Recovery of a broken table entry: skips to the COMMA or CLOSEPAREN that
// ends it, passing over balanced parentheses, and stops early at SEMI or
// the end of input.
void kp_recoverToTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer);


// The tree read before an error, followed by the error node (one error node
// at the end at most).
pANTLR3_BASE_TREE kp_treeEndingInError(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_BASE_TREE partial,
                                       pANTLR3_BASE_TREE errorNode);

// ---- Tree walker: texts ----------------------------------------------------

// The texts of the nodes from stream index `from` up to the current one,
// joined by one blank: the rendering of a flat run such as a column type.
std::string kp_nodeRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from);

// Calls visit(node) for each token node from stream index `from` up to the
// current one (navigation nodes left out).
template <typename Visit> void kp_forEachRunNode(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from, Visit visit)
{
    pANTLR3_TREE_NODE_STREAM nodes = static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->tnstream;
    const ANTLR3_MARKER to = nodes->istream->index(nodes->istream);
    for (ANTLR3_MARKER i = from; i < to; ++i) {
        auto node = static_cast<pANTLR3_BASE_TREE>(nodes->get(nodes, static_cast<ANTLR3_INT32>(i)));
        if (node == nullptr) {
            continue;
        }
        const ANTLR3_UINT32 type = node->getType(node);
        if (type != ANTLR3_TOKEN_DOWN && type != ANTLR3_TOKEN_UP && type != ANTLR3_TOKEN_EOF) {
            visit(node);
        }
    }
}
// Keeps a text for the rest of the parse.
const std::string *kp_keepText(pANTLR3_BASE_RECOGNIZER recognizer, std::string text);
// A kept text, empty for nullptr.
std::string kp_keptText(const std::string *text);
// Case-insensitive check of a node's STRING text against an upper-case word.
bool kp_isWordNode(pANTLR3_BASE_TREE node, const char *upperWord);

// ---- Tree walker: tables ---------------------------------------------------

// The walker's recovery of a broken table entry (a key or index whose tree
// holds an error node where a token was due): skips the nodes up to the
// COMMA or CLOSEPAREN that ends the entry begun at node index `entryStart`,
// parentheses balanced from there, stopping early at SEMI or the end of the
// nodes, and clears the error so that the table's next entries are walked.
void kp_skipToTableEntryEndInTree(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER entryStart);

// Creates the table from the first name part, gives a two-part name its
// schema and base name, and adds the table to the container at once.
// nullptr when there is no name.
SQLTable *kp_beginTable(SQLContainer *container, const std::vector<std::string> *nameParts);
// The engine (TYPE or ENGINE option), the STRING token's text.
void kp_setTableType(SQLTable *table, pANTLR3_BASE_TREE engine);
// A string property from a node's text.
void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value);

// ---- Tree walker: fields ---------------------------------------------------

// Creates the field and adds it to the table, renaming it when its name is
// taken; a rename is reported at the name's position. A type the walker did
// not accept (accepted false) builds no field. Returns the added field.
SQLField *kp_addField(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE nameNode,
                      const std::string &type, bool accepted);
// Traces a data type that the walker does not take.
void kp_traceRejectedType(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE typeWord);

void kp_setPrimaryKey(SQLField *field);
void kp_setNotNull(SQLField *field);
void kp_setAutoIncrement(SQLField *field);
// A boolean property set to true ("unique", "zerofill", "unsigned", "binary").
void kp_setFieldFlag(SQLField *field, const char *key);
// A string property ("field_character_set", "field_collation", "onUpdateFieldValue").
void kp_setFieldProperty(SQLField *field, const char *key, pANTLR3_BASE_TREE value);
void kp_setFieldProperty(SQLField *field, const char *key, const std::string &value);
// The default value's text carried on the DEFAULT token; nothing without one.
void kp_setDefaultFromToken(SQLField *field, pANTLR3_BASE_TREE defaultNode);
// A check constraint from the text carried on the CHECK token, on a table or
// a field; named "cons_check" when no name is given. Nothing without a text
// or for any other target.
void kp_addCheckConstraintFromToken(SQLObject *target, pANTLR3_BASE_TREE checkNode, const std::string *name);

// ---- Tree walker: references -----------------------------------------------

// A column-level REFERENCES: stores the target table (its name parts joined)
// and the first target column on the field. Without a field, records
// "local field not found when linking to T(C)" at the REFERENCES token.
void kp_setFieldReference(pANTLR3_BASE_RECOGNIZER recognizer, SQLField *field,
                          const std::vector<std::string> *targetParts,
                          const std::vector<std::string> *targetColumns, pANTLR3_BASE_TREE referencesWord);
void kp_setUpdateAction(SQLReferentialActions *target, int code);
void kp_setDeleteAction(SQLReferentialActions *target, int code);
void kp_setDeferrable(SQLReferentialActions *target, bool deferrable);
void kp_setInitiallyDeferred(SQLReferentialActions *target, bool initiallyDeferred);
