// Token rules of the SQL lexer.
//
// Keywords are written in upper case only: the character stream hands the
// lexer upper-cased look-ahead (see lexer/CaseFoldingStream.cpp), so every
// literal below matches without regard to case while token texts keep the
// script's own spelling. The token numbers are fixed by VellumGrammarC.tokens
// (named tokens) and keywords.txt (literals), shared with the parser and the
// tree walker.
lexer grammar VellumGrammarCLexer;

options {
    language  = C;
    tokenVocab = VellumGrammarC;
}

@lexer::header {
#include "RecognizerSupport.h"
}

// Literal keywords and operators, one rule each, in token-number order, are
// generated from lexer/keywords.txt in place of the marker line below. They
// stand before the named rules so that an exact keyword wins a tie with STRING.

// @KEYWORD_RULES@

// Named tokens, in priority order.
ML_COMMENT
    : '/*' ( options { greedy = false; } : . )* '*/' { $channel = HIDDEN; }
    ;

// A line comment owns its line feed; one without a line feed at the end of
// the input is a lexical error.
SL_COMMENT
    : ( '#' | '--' | FORWARD_SLASH FORWARD_SLASH ) ~('\n')* '\n' { $channel = HIDDEN; }
    ;

FORWARD_SLASH : '/' ;

// A run of adjacent quoted pieces is one token: 'It''s', N'abc', 'a'"b"`c`.
QUOTED_STRING
    : ( 'N' )? ( QUOTED_PIECE )+
    ;

fragment QUOTED_PIECE
    : 'Q' QUOTE ( ~QUOTE )+ QUOTE
    | BACKTICK ( ESCAPE_CHAR | ~( '`' | '\\' ) )* BACKTICK
    | DOUBLE_QUOTE ( ESCAPE_CHAR | ~( '"' | '\\' ) )* DOUBLE_QUOTE
    | QUOTE ( ESCAPE_CHAR | ~( '\'' | '\\' ) )* QUOTE
    ;

DOUBLE_QUOTE : '"' ;
BACKTICK     : '`' ;
ESCAPE_CHAR  : '\\' ( 'a'..'z' | '"' | QUOTE | '\\' )? ;
T_TRUE       : 'TRUE' ;
T_FALSE      : 'FALSE' ;
T_TABLESPACE : 'TABLESPACE' ;
T_STORAGE    : 'STORAGE' ;
T_NOT        : 'NOT' ;
T_NO         : 'NO' ;
T_DEFAULT    : 'DEFAULT' ;
T_PRIMARY    : 'PRIMARY' ;
T_KEY        : 'KEY' ;
T_FOREIGN    : 'FOREIGN' ;
T_END        : 'END' ;
T_DECLARE    : 'DECLARE' ;
T_BEGIN      : 'BEGIN' ;
T_WITH       : 'WITH' ;
T_HASH       : 'HASH' ;
T_CHARACTER  : 'CHARACTER' ;
T_VARYING    : 'VARYING' ;
T_CHAR       : 'CHAR' ;
T_DELIMITER  : 'DELIMITER' ;
T_CHECK      : 'CHECK' ;
T_ALTER      : 'ALTER' ;
OPENPAREN    : '(' ;
CLOSEPAREN   : ')' ;
EQUALS       : '=' ;
COMMA        : ',' ;
QUOTE        : '\'' ;
SEMI         : ';' ;
SIGNED_INT   : '-' INT ;
INT          : ( '0'..'9' )+ ;
SYMBOL       : '$' | ',' | '-' | '<' | '>' | '?' | '_' | '|' ;
STRING       : ( 'A'..'Z' | 'a'..'z' ) ( '-' | INT | 'A'..'Z' | 'a'..'z' | '_' )* ;
NEWLINE      : ( '\r' )? '\n' { $channel = HIDDEN; } ;
// Blanks are hidden tokens; a parse drops them at once (nothing reads them
// and each token costs memory until the parse ends), a token listing keeps them.
WS           : ( ' ' | '\t' )+ { $channel = HIDDEN; if (kp_dropsBlanks(LEXSTATE)) { SKIP(); } } ;
