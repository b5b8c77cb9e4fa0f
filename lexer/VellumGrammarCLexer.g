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

// Set between the markers of a MySQL executable comment (see
// EXECUTABLE_COMMENT_START). The runtime clears its own user fields before
// every token, so the flag lives in the lexer's context.
@lexer::context {
    ANTLR3_BOOLEAN inExecutableComment;
}

@lexer::apifuncs {
    ctx->inExecutableComment = ANTLR3_FALSE;
}

// Literal operators, one rule each, in token-number order, are generated from
// lexer/keywords.txt in place of the marker line below. The word keywords of
// that list have no rules: STRING matches them and kp_keywordType gives the
// token its keyword type (a rule per word made the lexer's prediction large
// and slow).

// @KEYWORD_RULES@

// Named tokens, in priority order.
// MySQL runs the text of /*! ... */ and /*!NNNNN ... */ comments as SQL (a
// dump wraps views, triggers and SET statements in them), so only their
// markers are hidden and what lies between is read as tokens. An ordinary
// comment never starts with /*!, so the two never compete.
EXECUTABLE_COMMENT_START
    : '/*!' ( '0'..'9' )* { $type = ML_COMMENT; $channel = HIDDEN; ctx->inExecutableComment = ANTLR3_TRUE; }
    ;

ML_COMMENT
    : '/*' ( '*'+ '/' | ( '*'+ ~( '*' | '/' ) | ~( '*' | '!' ) ) COMMENT_REST )
      { $channel = HIDDEN; }
    ;

fragment COMMENT_REST
    : ( options { greedy = false; } : . )* '*/'
    ;

EXECUTABLE_COMMENT_END
    : { ctx->inExecutableComment }?=> '*/'
      { $type = ML_COMMENT; $channel = HIDDEN; ctx->inExecutableComment = ANTLR3_FALSE; }
    ;

// A line comment owns its line end (LF, CRLF or a lone CR); one without a line
// end at the end of the input is a lexical error.
SL_COMMENT
    : ( '#' | '--' | FORWARD_SLASH FORWARD_SLASH ) ~( '\n' | '\r' )* ( '\n' | '\r' ( options { greedy = true; } : '\n' )? )
      { $channel = HIDDEN; }
    ;

FORWARD_SLASH : '/' ;

// A run of adjacent quoted pieces is one token: 'It''s', N'abc', 'a'"b"`c`.
// The body of a piece is matched by kp_matchQuotedBody, which decides whether
// a backslash escapes the next character (see lexer/QuotedText.h). A quote
// that is never closed is a QUOTE token of its own, so the parser reports it
// where it stands and the rest of the script is read as usual.
QUOTED_STRING
    : ( 'N' )? ( QUOTED_PIECE )+ { $type = kp_quotedStringType(LEXER); }
    | { kp_bracketedNameAhead(LEXER) }?=> BRACKETED_NAME
    ;

fragment QUOTED_PIECE
    : 'Q' '\'' ( ~'\'' )+ '\''
    | '`' { kp_matchQuotedBody(LEXER, '`'); }
    | '"' { kp_matchQuotedBody(LEXER, '"'); }
    | '\'' { kp_matchQuotedBody(LEXER, '\''); }
    ;

// A bracketed name of SQL Server and SQLite: [Order Details], [dbo].[Set],
// [$(DatabaseName)]. It stays on one line and does not start with a digit or a
// quote, so that array types and subscripts (int[], a[1], ARRAY['x']) keep
// their old meaning; a bracket that opens no name is skipped alone, as
// before (kp_bracketedNameAhead looks first, so no rule starts on it).
fragment BRACKETED_NAME
    : '[' ~( ']' | '\r' | '\n' | '0'..'9' | '\'' | '"' ) ( ~( ']' | '\r' | '\n' ) )* ']'
    ;

// A SQL*Plus substitution variable before a name: &&owner..emp, &owner.emp,
// &1..emp. SQL*Plus ends the variable at the first period, so the name that
// follows is the table's own; its value is not known here, so the prefix is
// hidden and the name is read without a schema. kp_substitutionPrefixAhead
// checks the whole form first (see lexer/QuotedText.h); elsewhere '&&' and a
// lone '&' keep their old meaning.
SUBSTITUTION_PREFIX
    : { kp_substitutionPrefixAhead(LEXER) }?=> '&' ( '&' )? ( 'A'..'Z' | '0'..'9' | '_' | '$' | '#' )+ '.' ( '.' )?
      { $channel = HIDDEN; }
    ;

// The bounds of a PostgreSQL array type: int[], int[3]. Other brackets
// that open no name are skipped alone, as before.
ARRAY_BOUNDS
    : '[' ( '0'..'9' )* ']'
    ;

// A lone quote is matched by QUOTED_STRING (as QUOTE when it is never
// closed), so DOUBLE_QUOTE, BACKTICK and QUOTE have no rules of their own.
ESCAPE_CHAR  : '\\' ( 'a'..'z' | '"' | '\'' | '\\' )? ;
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
SEMI         : ';' ;
SIGNED_INT   : '-' INT ;
INT          : ( '0'..'9' )+ ;
// A '$' that opens a dollar-quoted string ($$it's$$) marks its extent, in
// which a quote is a SYMBOL of its own (see kp_noteDollarQuote).
SYMBOL       : '$' { kp_noteDollarQuote(LEXER); } | ',' | '-' | '<' | '>' | '?' | '_' | '|' ;
// Unquoted names: ASCII letters plus the letters of other scripts; after the
// first letter also digits, '_', '-', and Oracle's '$' and '#' (app$log, emp#hist).
// A word of lexer/keywords.txt becomes its keyword token. kp_matchNameRest
// consumes the rest of the name in one pass (the generated loop predicts every
// character through a table); the loop stays for the token prediction, which
// must know how far a name runs, and then finds nothing left to match.
STRING       : ( 'A'..'Z' | 'a'..'z' | NAME_LETTER ) { kp_matchNameRest(LEXER); }
               ( '-' | INT | 'A'..'Z' | 'a'..'z' | '_' | '$' | '#' | NAME_LETTER )*
               { $type = kp_keywordType(LEXER); } ;
// Letters (and other name characters) beyond ASCII: everything from U+00C0 on
// except the multiplication and division signs, the general punctuation and
// symbol blocks, CJK punctuation, the byte order mark and the specials.
fragment NAME_LETTER
    : '\u00AA' | '\u00B5' | '\u00BA' | '\u00C0'..'\u00D6' | '\u00D8'..'\u00F6' | '\u00F8'..'\u1FFF'
    | '\u2C00'..'\u2DFF' | '\u3040'..'\uD7FF' | '\uD800'..'\uDFFF' | '\uF900'..'\uFDFF'
    | '\uFE70'..'\uFEFE' | '\uFF10'..'\uFF19' | '\uFF21'..'\uFF3A' | '\uFF41'..'\uFF5A' | '\uFF66'..'\uFFDC'
    ;
// LF, CRLF, and a lone CR (old Mac files) each end a line.
NEWLINE      : ( '\n' | '\r' ( options { greedy = true; } : '\n' )? ) { $channel = HIDDEN; } ;
// Blanks are hidden tokens; a parse drops them at once (nothing reads them
// and each token costs memory until the parse ends), a token listing keeps them.
WS           : ( ' ' | '\t' )+ { $channel = HIDDEN; if (kp_dropsBlanks(LEXSTATE)) { SKIP(); } } ;
