// Functions that the generated lexer, parser and tree walker call from their
// actions, and the hooks the driver installs in them. Private to the library:
// this header carries ANTLR types and is never installed.
#pragma once

#include <antlr3.h>
// <antlr3.h> pulls in the resolver's DNS constants; T_KEY is a token here.
#undef T_KEY

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;
class SQLTable;
class SQLField;
class SQLObject;
class SQLView;
class SQLIndex;
class SQLReferentialActions;

namespace sqlantlr {
struct ParseSession;
}

// Token name tables of the generated parser (types 0 to 442) and tree walker
// (0 to 444, adding ';' and 'to').
extern pANTLR3_UINT8 VellumGrammarCParserTokenNames[];
extern pANTLR3_UINT8 VellumTreeGrammarCTokenNames[];
constexpr ANTLR3_UINT32 kp_parserTokenCount = 443;

// ---- Case-folding character stream -------------------------------------
// Look-ahead that answers with the upper-case form of each UTF-16 unit.
ANTLR3_UCHAR lc_antlr3UCS2LA(pANTLR3_INT_STREAM is, ANTLR3_INT32 la);
// Consumes one UTF-16 code unit, counting lines and positions in units.
void kp_utf16Consume(pANTLR3_INT_STREAM is);

// Matches the body and closing quote of a quoted piece whose opening quote was
// just matched (see lexer/QuotedText.h); a piece never closed matches nothing.
void kp_matchQuotedBody(pANTLR3_LEXER lexer, ANTLR3_UCHAR quote);
// True when a bracketed name starts at the lexer's position.
bool kp_bracketedNameAhead(pANTLR3_LEXER lexer);
// True when a SQL*Plus substitution variable prefixes a name at the lexer's
// position (&&owner..emp).
bool kp_substitutionPrefixAhead(pANTLR3_LEXER lexer);
// Makes an '&&' token that starts such a prefix the whole hidden prefix.
void kp_widenSubstitutionPrefix(pANTLR3_LEXER lexer, pANTLR3_COMMON_TOKEN token);
// QUOTED_STRING, or QUOTE when a piece of the token was never closed, or
// SYMBOL for a quote inside a dollar-quoted string.
ANTLR3_UINT32 kp_quotedStringType(pANTLR3_LEXER lexer);
// After a '$': when it opens a dollar-quoted string, notes where the string
// ends, so that the quotes inside it open no string, and marks the sign's
// token with the string's length.
void kp_noteDollarQuote(pANTLR3_LEXER lexer);
// The units of the dollar-quoted string ($$...$$, $tag$...$tag$) that opens
// at the token, closing tag included, as the lexer found them; 0 when the
// token opens none (a '$' inside such a string, or one whose tag never
// closes, opens none). The one notion of a dollar quote: the parser's skips
// read it here.
size_t kp_dollarQuoteUnits(pANTLR3_COMMON_TOKEN token);

// Consumes the characters that may follow the first letter of a name (see
// STRING in the lexer grammar): letters, digits, '_', '-', '$' and '#'.
void kp_matchNameRest(pANTLR3_LEXER lexer);
// The type of the word the STRING rule just matched: its keyword token when
// lexer/keywords.txt lists it (in any case), else STRING. A keyword listed
// with a trailing blank takes the blank that follows it into the token, and
// is a STRING without one. The words of the lexer's one-word rules (T_NOT)
// give their rule's type, as the generated lexer would.
ANTLR3_UINT32 kp_keywordType(pANTLR3_LEXER lexer);

// Both in one pass: consumes a name from its first letter, where the token
// starts and the stream stands, and gives the word's type.
ANTLR3_UINT32 kp_matchWordRest(pANTLR3_LEXER lexer);
// NAME_LETTER of the lexer grammar: letters of other scripts (an upper-cased unit).
bool kp_isNameLetter(char16_t unit);
// True when the lexer of this parse leaves blanks out of the token stream.
bool kp_dropsBlanks(pANTLR3_RECOGNIZER_SHARED_STATE state);

// ---- Recognition error display and recovery ----------------------------
void kp_lexer_displayRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *tokenNames);
void kp_parser_displayRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *tokenNames);
void kp_parser_recover2(pANTLR3_BASE_RECOGNIZER recognizer);
void kp_parser_recover(pANTLR3_BASE_RECOGNIZER recognizer);
// Drops the exception of an error that was reported and recovered from, so
// that a later error never reports its position.
void kp_forgetRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer);
// Ends the error state between statements: no pending exception, no error
// flags, out of error recovery (so that the next error is reported).
void kp_resetRecognitionState(pANTLR3_BASE_RECOGNIZER recognizer);
// Replaces the runtime's single-token repair in a parser by one that reports
// each error at its own token and leaves no exception behind, and marks the
// tokens it makes up for missing ones.
void kp_installParserRecovery(pANTLR3_BASE_RECOGNIZER recognizer);
// The mark (in user1) of a token that recovery made: an error node's token or
// a token the parser made up for a missing one.
constexpr ANTLR3_UINT32 kp_recoveryMark = 99999999;
// How many error nodes and marked tokens recovery has made on this thread so
// far: a stretch of the parse over which the count stays the same made none,
// so its trees need no search for them.
unsigned long kp_recoveryMarkCount();
// The errors reported and recovery marks made up to a point of the parse.
struct KpRecoveryCheckpoint {
    ANTLR3_UINT32 errors;
    unsigned long marks;
};
KpRecoveryCheckpoint kp_recoveryCheckpoint(pANTLR3_BASE_RECOGNIZER recognizer);
// The mark (in user2) of the SEMI that ends a routine: the active DELIMITER,
// or a GO or "/" line after a procedure, function, trigger or package.
constexpr ANTLR3_UINT32 kp_routineEndMark = 0x52454e44;
void kp_lexer_recover(pANTLR3_LEXER lexer);
void *kp_errorNode(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_TOKEN_STREAM input, pANTLR3_COMMON_TOKEN start,
                   pANTLR3_COMMON_TOKEN stop, pANTLR3_EXCEPTION exception);
void *kp_tree_getMissingSymbol(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_INT_STREAM input,
                               pANTLR3_EXCEPTION exception, ANTLR3_UINT32 expectedTokenType,
                               pANTLR3_BITSET_LIST follow);
void *kp_recoverFromMismatchedToken(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_UINT32 ttype,
                                    pANTLR3_BITSET_LIST follow);

// Notes the first token of a statement of the script.
void kp_statementStart(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token);
// A record at the first token of the statement being parsed, once per
// statement: it was read on up to `until` (a later statement, or the end of
// the script) because something in it never ended. Not while backtracking.
void kp_reportRunOnStatement(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN until);
// True when token starts a line with a word that starts a statement of a
// schema script (CREATE, ALTER, DROP, INSERT): text that recovery or a
// skipped block passes there belongs to the next statement.
bool kp_startsStatementLine(pANTLR3_COMMON_TOKEN token);

// Raises a failed prediction at a token already matched (a token that can
// start no statement), so the rule reports it and leaves an ERROR_NODE.
void kp_raiseNoViableAlternative(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token);
// Reports a token that was matched but has no place there (an extraneous
// token, expected the COMMA or CLOSEPAREN that follows it) and drops it; the
// parse goes on as if it were not written.
void kp_reportDroppedToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token);
// Raises a recognition error at the next token because the input nests
// deeper than the parser allows (stack safety).
void kp_raiseNestingTooDeep(pANTLR3_BASE_RECOGNIZER recognizer);
// True when this parse has used more stack than a parse may (see
// ParseSession::stackBudget): recursive rules check it on entry and fail with
// kp_raiseNestingTooDeep rather than exhaust a small thread stack.
bool kp_nestingTooDeep(pANTLR3_BASE_RECOGNIZER recognizer);

// Guard for the start of a recursive parser rule (in its @init): fails the
// rule with a record when the input nests too deeply. @init runs before the
// generated code sets the rule's start token and its rewrite streams, so the
// guard sets the start itself and may only be used in rules without a
// rewrite. While backtracking it only marks the attempt as failed.
#define KP_GUARD_NESTING(ruleName) \
    do { \
        if (kp_nestingTooDeep(RECOGNIZER)) { \
            if (BACKTRACKING > 0) { \
                FAILEDFLAG = ANTLR3_TRUE; \
                return retval; \
            } \
            retval.start = LT(1); \
            retval.stop = retval.start; \
            retval.tree = NULL; \
            kp_raiseNestingTooDeep(RECOGNIZER); \
            goto rule##ruleName##Ex; \
        } \
    } while (0)

// The same guard for a tree walker rule that returns nothing.
#define KP_GUARD_TREE_NESTING(ruleName) \
    do { \
        if (kp_nestingTooDeep(RECOGNIZER)) { \
            if (BACKTRACKING > 0) { \
                FAILEDFLAG = ANTLR3_TRUE; \
                return; \
            } \
            kp_raiseNestingTooDeep(RECOGNIZER); \
            goto rule##ruleName##Ex; \
        } \
    } while (0)

// ---- Token and text helpers ---------------------------------------------
// The text of a token as UTF-8: its own text if it has one, else the slice of
// the input it covers ("<EOF>" for the end of input).
std::string kp_tokenText(pANTLR3_COMMON_TOKEN token);
// The UTF-16 units of the input a token covers, when its text is that slice
// (no text set on the token, not the end of input): true, with units and count.
bool kp_tokenUnits(pANTLR3_COMMON_TOKEN token, const char16_t **units, size_t *count);
// True when the text of a token of any type is the ASCII upper-case word in
// any case; compares the input in place (no text is made).
bool kp_tokenIsWord(pANTLR3_COMMON_TOKEN token, const char *upperWord);
std::string kp_nodeText(pANTLR3_BASE_TREE node);
// True for a node that recovery made (an error node, or a token made up for
// a missing one): its text is no input, and no model value is made of it.
bool kp_isRecoveryNode(pANTLR3_BASE_TREE node);
// UTF-16 units as UTF-8.
std::string kp_utf16Slice(const char16_t *units, size_t count);
// Case-insensitive check of a plain word (a STRING token) against an ASCII
// upper-case word.
bool kp_isWord(pANTLR3_COMMON_TOKEN token, const char *upperWord);
// The same for a keyword's token (any type but STRING and QUOTED_STRING).
bool kp_isKeyword(pANTLR3_COMMON_TOKEN token, const char *upperWord);
// True when the token is a plain word (STRING) that is one of the ASCII
// upper-case words of a blank-separated list ("MONITORING NOMONITORING").
bool kp_isAnyWord(pANTLR3_COMMON_TOKEN token, const char *upperWords);
// The same check on a text.
bool kp_textIsWord(std::string_view text, const char *upperWord);
// True when the keyword at LT(1) names a column of a table's element list:
// the token before it opens the list or separates its entries, and the word
// does not start an index there (KEY k (a), INDEX USING BTREE (a),
// FULLTEXT KEY (a), FULL TEXT k (a), CLUSTERED (a)).
bool kp_keywordColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// False when the token after a column's name ends the column or starts one
// of its options (SQLite's columns without a type), true when it may start a
// type.
bool kp_columnTypeAhead(pANTLR3_COMMON_TOKEN token);
// True for the words among a column's options that the model has no place
// for (GENERATED, ALWAYS, ROWGUIDCOL, SPARSE, PERSISTED, VIRTUAL, STORED,
// VISIBLE, INVISIBLE, SRID, ...).
bool kp_isColumnOptionWord(pANTLR3_COMMON_TOKEN token);
// Consumes what follows such a word, the token before the input (SRID's
// number, COLUMN_FORMAT's or STORAGE's word, MASKED WITH (...), SERIAL
// DEFAULT VALUE, ...). Always true: called as a predicate, so that it also
// runs while a decision tries the tokens ahead.
bool kp_skipColumnOptionArguments(pANTLR3_BASE_RECOGNIZER recognizer);
// Another word ends the column where it stands: a marked exception that the
// column rule drops (kp_isColumnEndAtWord), so that the column keeps what it
// read and the table entry reports the word as it reports any stray token.
void kp_endColumnAtWord(pANTLR3_BASE_RECOGNIZER recognizer);
bool kp_isColumnEndAtWord(pANTLR3_BASE_RECOGNIZER recognizer);
void kp_dropColumnEndAtWord(pANTLR3_BASE_RECOGNIZER recognizer);
// Makes a matched name token a STRING (a quoted name stays as it is).
void kp_retypeAsName(pANTLR3_COMMON_TOKEN token);
// At the start of a table's element: MySQL's SPATIAL [INDEX|KEY] [name] (...)
// (the word SPATIAL followed by what starts an index; a column may be called
// spatial) becomes a FULLTEXT token, the kind word whose path it shares; its
// text stays as written, and the walker reads it.
void kp_markSpatialIndex(pANTLR3_BASE_RECOGNIZER recognizer);
// The same at the start of an ALTER TABLE clause: ADD SPATIAL [INDEX|KEY] ...
void kp_markAddedSpatialIndex(pANTLR3_BASE_RECOGNIZER recognizer);
// True for END followed by IF, LOOP, REPEAT or WHILE: the end of a construct
// inside a block, not the end of the block.
bool kp_isConstructEnd(pANTLR3_COMMON_TOKEN end, pANTLR3_COMMON_TOKEN next);
// Consumes the body of a BEGIN or CASE block up to the END that closes it,
// which is left, or to the end of the input. Nested BEGIN ... END and
// CASE ... END [CASE] blocks are balanced with a counter, not recursion, so
// any depth costs linear time, no stack and no tree.
void kp_skipBlockBody(pANTLR3_BASE_RECOGNIZER recognizer);
// 0 when the tokens after CREATE [OR REPLACE] start no routine, 1 for a
// procedure, function, package, type body, event, aggregate or rule, 2 for a
// trigger (DEFINER=..., EDITIONABLE and CONSTRAINT may come first), 3 for a
// view that starts with DEFINER=... (the view alternative is tried first and
// takes it; a routine alternative is never entered for it).
int kp_routineKind(pANTLR3_BASE_RECOGNIZER recognizer);
// After CREATE [OR REPLACE]: true at the words of a temporary or unlogged
// table followed by TABLE: [GLOBAL | LOCAL | PRIVATE] TEMPORARY | TEMP, or
// UNLOGGED.
bool kp_tableKindAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// True at a dollar-quoted string ($$text$$, $tag$text$tag$) that closes
// within a value's reach.
bool kp_dollarQuoteAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// After the sign of such a string: consumes the rest of it (always true).
bool kp_skipDollarQuote(pANTLR3_BASE_RECOGNIZER recognizer);
// True at DO followed by a dollar-quoted body.
bool kp_isDollarBlock(pANTLR3_BASE_RECOGNIZER recognizer);
// Consumes the rest of a routine after its first word (always true): the routine ends at a marked terminator, before a DELIMITER line,
// at the ; after its closing dollar tag or after the END of its body, or at
// its first ; when it has no body block. Dollar-quoted bodies are passed over
// whole; BEGIN/CASE ... END nest without recursion.
bool kp_skipRoutine(pANTLR3_BASE_RECOGNIZER recognizer);
// True at an ALTER TABLE action that only maintains partitions or
// inheritance: ADD, DROP, TRUNCATE, COALESCE, MODIFY, EXCHANGE, SPLIT, MERGE,
// RENAME, REORGANIZE, ANALYZE, CHECK, OPTIMIZE, REBUILD, REPAIR, DISCARD,
// IMPORT, ATTACH or DETACH followed by [SUB]PARTITION[S]; MODIFY DEFAULT
// ATTRIBUTES; SET INTERVAL | SUBPARTITION | PARTITIONING; NO INHERIT;
// REMOVE or UPGRADE PARTITIONING. Keywords and plain words alike, any case.
bool kp_partitionMaintenanceAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// True after a comma of ALTER TABLE at a column added without its own ADD
// (SQL Server's ADD b INT, c INT): a name followed by a type word, neither an
// action word nor a table option or constraint word.
bool kp_listedColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// Consumes the rest of such an action after its first word, parentheses
// balanced, up to the end of the statement, a stray CLOSEPAREN, or a comma
// followed by a word that starts another action (a comma followed by
// anything else continues a list of partition names). False when a
// parenthesis is still open at the end of the statement.
bool kp_skipPartitionMaintenance(pANTLR3_BASE_RECOGNIZER recognizer);
// After ON: true at COMMIT PRESERVE ROWS | DELETE ROWS | DROP, a temporary
// table's option, and at COMMIT PRESERVE DEFINITION (DROP DEFINITION starts
// like DROP), a private temporary table's (SQL Server's ON filegroup is
// anything else after ON).
bool kp_onCommitAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// After PARTITION or SUBPARTITION in a partition list: true when LT(1) is
// the partition's name. A plain or quoted word always is; a keyword (max,
// default, data) is when the bounds (VALUES), the end of the entry, its
// subpartitions or an option word follow it, and reads as an option else.
bool kp_partitionNameAhead(pANTLR3_BASE_RECOGNIZER recognizer);
// A runtime string as UTF-8; empty for NULL.
std::string AntlrCocoaString(pANTLR3_STRING string);
// The tree-string rendering of a subtree; empty for NULL.
std::string AntlrTreeString(pANTLR3_BASE_TREE tree);
// Appends the tree-string of each item of a tree (a list's children, else the
// tree), a blank before each but the very first (see appendSyntaxTreeItems).
void AntlrAppendTreeItems(pANTLR3_BASE_TREE tree, std::string &out, bool &first);
// Moves the token stream forward, over hidden tokens too, up to a token of
// the given type (or an SL_COMMENT when looking for NEWLINE), which is left.
void consumeUntilToken(pANTLR3_TOKEN_STREAM stream, ANTLR3_UINT32 tokenType);
// After CREATE [OR REPLACE] of a statement that is consumed unread: when one
// to three plain words stand before TABLE (CREATE FOREIGN TABLE, CREATE
// EXTERNAL TABLE), records "Unknown kind of table 'FOREIGN' - table not read"
// at the first word, so that the lost table is never silent. TYPE, AS, FOR,
// ON, IN and TO among the words tie TABLE to another object (CREATE TYPE t
// AS TABLE, CREATE PUBLICATION p FOR TABLE t): no record. SQLite's CREATE
// VIRTUAL TABLE (a module and its arguments, no columns) is no table of the
// model and is consumed without a record, as it always was.
void kp_reportUnknownTableKind(pANTLR3_BASE_RECOGNIZER recognizer);
// Logs "unknown CREATE/ALTER object type" for a skipped statement.
void kp_logUnknownObjectType(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token, const char *statement);

// ---- Tree walker support --------------------------------------------------
sqlantlr::ParseSession *kp_session(pANTLR3_BASE_RECOGNIZER recognizer);
// Records every error subtree of the tree the walker is about to walk ("error
// field ..." at the error node), each once, in tree order.
void kp_reportErrorNodes(pANTLR3_BASE_RECOGNIZER recognizer);

// Shared action helpers and the model builders, one per grammar family.
#include "ActionHelpers.h"
#include "AlterBuilder.h"
#include "ColumnBuilder.h"
#include "IndexBuilder.h"
#include "KeyBuilder.h"
#include "PlainColumns.h"
#include "ReferenceBuilder.h"
#include "TableBuilder.h"
#include "ViewBuilder.h"
