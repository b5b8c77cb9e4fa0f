// Helpers that parser and walker actions of several rules share: the source
// text that DEFAULT and CHECK tokens carry from the parser to the walker, the
// parser's recovery inside a table definition and its skips, and the
// walker's flat-run texts and entry recovery.
#pragma once

#include "RecognizerSupport.h"

#include <functional>
#include <string>

// ---- Parser ----------------------------------------------------------------

// The input's characters from the start of `start` to the end of `stop`,
// hidden blanks and comments included; empty when the span is empty (stop
// before start) or has no place in the input.
std::string kp_sourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// The source text of a value start..stop as a carrying token keeps it: with
// the closing brackets the lexer skipped right after it (ARRAY['a']).
std::string kp_valueSourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// Attaches the source text of the span start..stop to the carrying token
// (its custom pointer, a const std::string * kept by the parse session).
void setCustomStringValueOnToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                                 pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// Attaches the source text of an index expression start..stop to the node
// that stands for it, without the one pair of parentheses that may enclose
// the whole expression: (b + c) carries "b + c", lower(x) "lower(x)".
void kp_carryIndexExpression(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE carrier,
                             pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop);

// PostgreSQL's array constructor in a value: ARRAY followed by '[' in the
// source (the lexer skips a bracket that opens no name, so the parser does
// not see it). kp_skipArrayElements then consumes the tokens up to the
// bracket that closes it; always true (called as a predicate).
bool kp_arrayConstructorAhead(pANTLR3_COMMON_TOKEN token);
bool kp_skipArrayElements(pANTLR3_BASE_RECOGNIZER recognizer);

// Attaches to `carrier` the source text between the parentheses `open` and
// `close` (from the first to the last token on the default channel inside
// them); nothing when they hold no such token.
void kp_carryTextInside(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                        pANTLR3_COMMON_TOKEN open, pANTLR3_COMMON_TOKEN close);

// The source text that setCustomStringValueOnToken attached to a node's
// token, or nullptr.
const std::string *kp_customValue(pANTLR3_BASE_TREE node);

// An entry of a table's column list ends at COMMA or CLOSEPAREN (SEMI and
// the end of input are left to the statement). Anything else raises a
// mismatch expecting CLOSEPAREN at the next token.
void kp_requireTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer);

// Recovery of a broken table entry: skips to the COMMA or CLOSEPAREN that
// ends it, passing over balanced parentheses, and stops early at SEMI or
// the end of input (reporting a statement that ran on past a line starting
// another one, or to the end). With `endAtEntryInside`, when that runs to
// the end of the statement, a parenthesis never closed: the entry ends at
// the first comma inside parentheses followed by what looks like the next
// entry (kp_entryStartAhead).
void kp_recoverToTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer, bool endAtEntryInside = false);

// Ends a column of CREATE TABLE's list. A column the parser could not read
// whole (an error reported since `before`, an error node or a token
// made up by recovery in its tree, or a pending error: a token after it in
// its entry) is left out: the pending error is reported, the input moves to
// the COMMA or CLOSEPAREN that ends its entry, found by balancing parentheses
// from the entry's first token at `entryStart` (when that runs to the end of
// the statement, a parenthesis never closed: the entry ends at the first
// comma inside parentheses that is followed by what looks like the next
// entry), and one error node at the column's first token stands for it. A
// column read whole that the next statement follows (a list never closed)
// is kept, with an error node after it. Otherwise, and while backtracking,
// `tree` is returned as is.
pANTLR3_BASE_TREE kp_endTableColumn(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE_ADAPTOR adaptor,
                                    pANTLR3_BASE_TREE tree, ANTLR3_MARKER entryStart, KpRecoveryCheckpoint before,
                                    pANTLR3_COMMON_TOKEN first);

// Visits a tree depth first, children in order, without recursion (trees may
// be deep); the visit says whether to go into the node's children or stop.
enum class TreeVisit { Descend, SkipChildren, Stop };
void kp_walkTree(pANTLR3_BASE_TREE root, const std::function<TreeVisit(pANTLR3_BASE_TREE node)> &visit);

// Whether a tree holds an error node or a token made up by recovery.
bool kp_treeHasRecoveryMark(pANTLR3_BASE_TREE tree);

// Whether `name` and `next`, the tokens after a comma, look like the start
// of a table entry or of an added column: a constraint or key word, or a
// name followed by a word (a type).
bool kp_entryStartAhead(pANTLR3_COMMON_TOKEN name, pANTLR3_COMMON_TOKEN next);

// The tree read before an error, followed by the error node (one error node
// at the end at most).
pANTLR3_BASE_TREE kp_treeEndingInError(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_BASE_TREE partial,
                                       pANTLR3_BASE_TREE errorNode);

// Consumes tokens with their parentheses balanced until the statement ends (end
// of input or SEMI, and T_DELIMITER when delimiterEnds) or, outside any
// parentheses, LT(1) is a token of type `type` for which stopsAtTop answers
// true; the stopping token is left. Returns the depth of parentheses still open.
long kp_skipBalancedTokens(pANTLR3_TOKEN_STREAM stream, bool delimiterEnds,
                           const std::function<bool(ANTLR3_UINT32 type)> &stopsAtTop);

// Consumes the tokens after an OPENPAREN up to the CLOSEPAREN that closes it,
// which is left; stops early at the statement's end (SEMI, T_DELIMITER or the
// end of input). Always true: the grammar calls it as a predicate so that it
// also runs while a syntactic predicate tries the tokens ahead.
bool kp_skipToClosingParenthesis(pANTLR3_BASE_RECOGNIZER recognizer);
// The same for the parentheses of a column's value or condition (DEFAULT
// (...), CHECK (...), AS (...), a function's arguments), where a comma
// followed by what looks like the next table entry (kp_entryStartAhead) ends
// the skip too: the parenthesis was never closed, and the entries after it
// are not taken into the value.
bool kp_skipValueInParentheses(pANTLR3_BASE_RECOGNIZER recognizer);

// Consumes the rest of an index expression: the tokens up to the COMMA or
// CLOSEPAREN that ends the entry (parentheses balanced) or a sort order or
// collation word after it; stops early at SEMI or the end of input. Always
// true: it runs as a predicate, so that it also runs while a decision tries
// the entry ahead.
bool kp_skipIndexExpressionRest(pANTLR3_BASE_RECOGNIZER recognizer);

// ---- Tree walker -----------------------------------------------------------

// The parser's token type of the keyword literal `word` ('CREATE'), or 0.
ANTLR3_UINT32 kp_literalType(const char *word);

// Appends a token's text (as kp_tokenText gives it) to `out`.
void kp_appendTokenText(std::string &out, pANTLR3_COMMON_TOKEN token);

// Appends a token to a run of words as the walker renders a type or value:
// a blank before it unless it is the first, and a bracketed name without
// its brackets ([int] is int; array bounds keep theirs).
void kp_appendRunWord(std::string &text, bool first, pANTLR3_COMMON_TOKEN token);

// The texts of the nodes from stream index `from` up to the current one,
// joined by one blank: the rendering of a flat run such as a column type.
// Empty when the run holds a node made by recovery.
std::string kp_nodeRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from);

// Calls visit(node) for each token node from stream index `from` up to the
// current one (navigation nodes left out), while visit returns true.
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
        if (type != ANTLR3_TOKEN_DOWN && type != ANTLR3_TOKEN_UP && type != ANTLR3_TOKEN_EOF && !visit(node)) {
            return;
        }
    }
}
// Keeps a text for the rest of the parse.
const std::string *kp_keepText(pANTLR3_BASE_RECOGNIZER recognizer, std::string text);
// The run's text kept for the parse (in parentheses if asked), or nullptr
// when the run is empty or holds a node made by recovery.
const std::string *kp_keepRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from, bool parenthesised);
// Case-insensitive check of a node's STRING text against an upper-case word.
bool kp_isWordNode(pANTLR3_BASE_TREE node, const char *upperWord);

// The walker's recovery of a broken table entry (a key or index whose tree
// holds an error node where a token was due): skips the nodes up to the
// COMMA or CLOSEPAREN that ends the entry begun at node index `entryStart`,
// parentheses balanced from there, stopping early at SEMI or the end of the
// nodes, and clears the error so that the table's next entries are walked.
void kp_skipToTableEntryEndInTree(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER entryStart);
