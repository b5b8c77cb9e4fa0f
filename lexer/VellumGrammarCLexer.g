// Token rules of the SQL lexer.
//
// Keywords are written in upper case only: the character stream hands the
// lexer upper-cased look-ahead (see lexer/CaseFoldingStream.cpp), so every
// literal below matches without regard to case while token texts keep the
// script's own spelling. The token numbers are fixed by VellumGrammarC.tokens,
// shared with the parser and the tree walker.
lexer grammar VellumGrammarCLexer;

options {
    language  = C;
    tokenVocab = VellumGrammarC;
}

@lexer::header {
#include "RecognizerSupport.h"
}

// Literal keywords and operators, one rule each, in token-number order. They
// stand before the named rules so that an exact keyword wins a tie with STRING.

T__53 : 'CREATE' ;
T__54 : 'INSERT' ;
T__55 : 'DROP' ;
T__56 : 'SOURCE' ;
T__57 : 'PROCEDURE' ;
T__58 : 'COMPILE' ;
T__59 : 'DEBUG' ;
T__60 : 'REUSE' ;
T__61 : 'SETTINGS' ;
T__62 : 'TIMESTAMP' ;
T__63 : 'IGNORE' ;
T__64 : 'VIEW' ;
T__65 : 'USER' ;
T__66 : 'UNIQUE' ;
T__67 : 'FUNCTION' ;
T__68 : 'INSTRUCTION' ;
T__69 : 'INDEX' ;
T__70 : 'TABLE' ;
T__71 : 'SEQUENCE' ;
T__72 : 'OR' ;
T__73 : 'ALGORITHM' ;
T__74 : 'DEFINER' ;
T__75 : 'SQL' ;
T__76 : 'TEMPORARY' ;
T__77 : 'TRIGGER' ;
T__78 : 'ONLY' ;
T__79 : 'ADD' ;
T__80 : 'CONSTRAINT' ;
T__81 : 'COLUMN' ;
T__82 : 'FIRST' ;
T__83 : 'AFTER' ;
T__84 : 'SET' ;
T__85 : 'NULL' ;
T__86 : 'STATISTICS' ;
T__87 : 'PLAIN' ;
T__88 : 'EXTERNAL' ;
T__89 : 'EXTENDED' ;
T__90 : 'MAIN' ;
T__91 : 'TYPE' ;
T__92 : 'CHANGE' ;
T__93 : 'MODIFY' ;
T__94 : 'RESTRICT' ;
T__95 : 'CASCADE' ;
T__96 : 'DISABLE' ;
T__97 : 'KEYS' ;
T__98 : 'ALL' ;
T__99 : 'ENABLE' ;
T__100 : 'RENAME' ;
T__101 : 'TO' ;
T__102 : 'ORDER' ;
T__103 : 'BY' ;
T__104 : 'CONVERT' ;
T__105 : 'COLLATE' ;
T__106 : 'DISCARD' ;
T__107 : 'IMPORT' ;
T__108 : 'CLUSTER' ;
T__109 : 'ON' ;
T__110 : 'SCHEMA' ;
T__111 : 'WITHOUT' ;
T__112 : 'OIDS' ;
T__113 : 'OWNER' ;
T__114 : 'USING' ;
T__115 : 'BTREE' ;
T__116 : 'LOCK' ;
T__117 : 'TRIGGERS' ;
T__118 : 'VALIDATE' ;
T__119 : 'NOVALIDATE' ;
T__120 : 'KEEP' ;
T__121 : 'EXCEPTIONS' ;
T__122 : 'INTO' ;
T__123 : 'GLOBAL' ;
T__124 : 'PARTITION' ;
T__125 : 'RANGE' ;
T__126 : 'PARTITIONS' ;
T__127 : 'STORE' ;
T__128 : 'IN' ;
T__129 : 'OVERFLOW' ;
T__130 : 'VALUES' ;
T__131 : 'LESS' ;
T__132 : 'THAN' ;
T__133 : 'LOB' ;
T__134 : 'AS' ;
T__135 : 'VARRAY' ;
T__136 : 'LOCAL' ;
T__137 : 'SUBPARTITION' ;
T__138 : 'ONLINE' ;
T__139 : 'COMPUTE' ;
T__140 : 'SORT' ;
T__141 : 'NOSORT' ;
T__142 : 'REVERSE' ;
T__143 : 'NOPARALLEL' ;
T__144 : 'PARALLEL' ;
T__145 : 'INDEXTYPE' ;
T__146 : 'IS' ;
T__147 : 'PARAMETERS' ;
T__148 : 'REFERENCES' ;
T__149 : '.' ;
T__150 : 'DEFERRABLE' ;
T__151 : 'INITIALLY' ;
T__152 : 'DEFERRED' ;
T__153 : 'IMMEDIATE' ;
T__154 : 'NO_ACTION' ;
T__155 : 'ACTION' ;
T__156 : 'UPDATE' ;
T__157 : 'DELETE' ;
T__158 : 'MATCH' ;
T__159 : 'FULL' ;
T__160 : 'PARTIAL' ;
T__161 : 'SIMPLE' ;
T__162 : 'TEMP' ;
T__163 : 'MINVALUE' ;
T__164 : 'NOMINVALUE' ;
T__165 : 'MAXVALUE' ;
T__166 : 'NOMAXVALUE' ;
T__167 : 'START' ;
T__168 : 'CACHE' ;
T__169 : 'NOCACHE' ;
T__170 : 'CYCLE' ;
T__171 : 'NOCYCLE' ;
T__172 : 'NOORDER' ;
T__173 : 'OWNED' ;
T__174 : 'NONE' ;
T__175 : 'INCREMENT' ;
T__176 : 'EXTENSION' ;
T__177 : 'CLUSTERED' ;
T__178 : 'SELECT' ;
T__179 : 'FROM' ;
T__180 : 'WHERE' ;
T__181 : 'GROUP' ;
T__182 : 'ROLLUP' ;
T__183 : 'HAVING' ;
T__184 : 'LIMIT' ;
T__185 : 'OFFSET' ;
T__186 : 'FOR' ;
T__187 : 'SHARE' ;
T__188 : 'MODE' ;
T__189 : 'ASC' ;
T__190 : 'DESC' ;
T__191 : '||' ;
T__192 : '-' ;
T__193 : '+' ;
T__194 : '*' ;
T__195 : 'IF' ;
T__196 : '{' ;
T__197 : 'OJ' ;
T__198 : '}' ;
T__199 : 'INNER' ;
T__200 : 'CROSS' ;
T__201 : 'JOIN' ;
T__202 : 'STRAIGHT_JOIN' ;
T__203 : 'LEFT' ;
T__204 : 'RIGHT' ;
T__205 : 'OUTER' ;
T__206 : 'NATURAL' ;
T__207 : 'USE' ;
T__208 : 'FORCE' ;
T__209 : 'UNDEFINED' ;
T__210 : 'MERGE' ;
T__211 : 'TEMPTABLE' ;
T__212 : 'CURRENT_USER' ;
T__213 : 'SECURITY' ;
T__214 : 'INVOKER' ;
T__215 : 'CASCADED' ;
T__216 : 'OPTION' ;
T__217 : 'REPLACE' ;
T__218 : 'BEFORE' ;
T__219 : 'INSTEAD' ;
T__220 : 'OF' ;
T__221 : 'DATABASE' ;
T__222 : 'WHEN' ;
T__223 : 'ANALYZE' ;
T__224 : 'ASSOCIATE' ;
T__225 : 'AUDIT' ;
T__226 : 'COMMENT' ;
T__227 : 'DISASSOCIATE' ;
T__228 : 'GRANT' ;
T__229 : 'NOAUDIT' ;
T__230 : 'REVOKE' ;
T__231 : 'TRUNCATE' ;
T__232 : 'DDL' ;
T__233 : 'SERVERERROR' ;
T__234 : 'LOGON' ;
T__235 : 'LOGOFF' ;
T__236 : 'STARTUP' ;
T__237 : 'SHUTDOWN' ;
T__238 : 'SUSPEND' ;
T__239 : 'DB_ROLE_CHANGE' ;
T__240 : 'NESTED' ;
T__241 : 'EACH' ;
T__242 : 'ROW' ;
T__243 : 'REFERENCING' ;
T__244 : 'OLD' ;
T__245 : 'NEW' ;
T__246 : 'PARENT' ;
T__247 : 'LANGUAGE' ;
T__248 : 'DETERMINISTIC' ;
T__249 : 'CONTAINS' ;
T__250 : 'READS' ;
T__251 : 'DATA' ;
T__252 : 'MODIFIES' ;
T__253 : 'RETURNS' ;
T__254 : 'UNSIGNED' ;
T__255 : 'CHARSET' ;
T__256 : '%' ;
T__257 : 'ROWTYPE' ;
T__258 : ':' ;
T__259 : '_' ;
T__260 : '!' ;
T__261 : 'sqlcode' ;
T__262 : 'sqlstate' ;
T__263 : 'OUT' ;
T__264 : 'CURSOR' ;
T__265 : 'AUTHID' ;
T__266 : 'EXCEPTION' ;
T__267 : 'THEN' ;
T__268 : '<' ;
T__269 : '>' ;
T__270 : '<=' ;
T__271 : '>=' ;
T__272 : '<=>' ;
T__273 : '<>' ;
T__274 : '==' ;
T__275 : '!=' ;
T__276 : '@' ;
T__277 : 'AND' ;
T__278 : '&&' ;
T__279 : 'LOOP' ;
T__280 : 'REPEAT' ;
T__281 : 'UNTIL' ;
T__282 : 'ELSE' ;
T__283 : 'ELSEIF' ;
T__284 : '..' ;
T__285 : 'EXECUTE' ;
T__286 : 'CONTINUE' ;
T__287 : 'EXIT' ;
T__288 : 'UNDO' ;
T__289 : 'HANDLER' ;
T__290 : 'SQLSTATE' ;
T__291 : 'VALUE' ;
T__292 : 'SQLWARNING' ;
T__293 : 'FOUND' ;
T__294 : 'SQLEXCEPTION' ;
T__295 : 'CLOSE' ;
T__296 : 'OPEN' ;
T__297 : 'NEXT' ;
T__298 : 'PRIOR' ;
T__299 : 'LAST' ;
T__300 : 'ABSOLUTE' ;
T__301 : 'RELATIVE' ;
T__302 : 'FORWARD' ;
T__303 : 'BACKWARD' ;
T__304 : 'FETCH' ;
T__305 : 'RETURN' ;
T__306 : 'SUBSTRING' ;
T__307 : 'SUBSTRING_INDEX' ;
T__308 : 'CALL' ;
T__309 : 'PREPARE' ;
T__310 : 'DEALLOCATE' ;
T__311 : 'GROUP_CONCAT' ;
T__312 : 'DISTINCT' ;
T__313 : 'SEPARATOR' ;
T__314 : ':=' ;
T__315 : 'VARCHAR' ;
T__316 : 'VARCHAR2' ;
T__317 : 'BLOB' ;
T__318 : 'RAW' ;
T__319 : 'TINYBLOB' ;
T__320 : 'MEDIUMBLOB' ;
T__321 : 'LONGBLOB' ;
T__322 : 'NVARCHAR2' ;
T__323 : 'NVARCHAR' ;
T__324 : 'TINYTEXT' ;
T__325 : 'TEXT' ;
T__326 : 'MEDIUMTEXT' ;
T__327 : 'LONGTEXT' ;
T__328 : 'NATIONAL' ;
T__329 : 'NCHAR' ;
T__330 : 'MAX' ;
T__331 : 'BYTE' ;
T__332 : 'BIT' ;
T__333 : 'VARBIT' ;
T__334 : 'NUMERIC' ;
T__335 : 'DECIMAL' ;
T__336 : 'DEC' ;
T__337 : 'INTEGER' ;
T__338 : 'INT' ;
T__339 : 'SMALLINT' ;
T__340 : 'NUMBER' ;
T__341 : 'MEDIUMINT' ;
T__342 : 'LONGINT' ;
T__343 : 'LONG' ;
T__344 : 'TINYINT' ;
T__345 : 'BIGINT' ;
T__346 : 'FLOAT' ;
T__347 : 'REAL' ;
T__348 : 'DOUBLE' ;
T__349 : 'PRECISION' ;
T__350 : 'TIME' ;
T__351 : 'ZONE' ;
T__352 : 'TIMEZONE' ;
T__353 : 'DATE' ;
T__354 : 'YEAR' ;
T__355 : 'MONTH' ;
T__356 : 'DAY' ;
T__357 : 'HOUR' ;
T__358 : 'MINUTE' ;
T__359 : 'SECOND' ;
T__360 : 'INTERVAL' ;
T__361 : 'VARBINARY' ;
T__362 : 'BINARY' ;
T__363 : 'CONCURRENTLY' ;
T__364 : 'GIST' ;
T__365 : 'GIN' ;
T__366 : 'EXISTS' ;
T__367 : 'ENGINE' ;
T__368 : 'AUTO_INCREMENT' ;
T__369 : 'AVG_ROW_LENGTH' ;
T__370 : 'CHECKSUM' ;
T__371 : 'CONNECTION' ;
T__372 : 'DIRECTORY' ;
T__373 : 'DELAY_KEY_WRITE' ;
T__374 : 'INSERT_METHOD' ;
T__375 : 'KEY_BLOCK_SIZE' ;
T__376 : 'MAX_ROWS' ;
T__377 : 'MIN_ROWS' ;
T__378 : 'PACK_KEYS' ;
T__379 : 'PASSWORD' ;
T__380 : 'ROW_FORMAT' ;
T__381 : 'DYNAMIC' ;
T__382 : 'FIXED' ;
T__383 : 'COMPRESSED' ;
T__384 : 'REDUNDANT' ;
T__385 : 'COMPACT' ;
T__386 : 'UNION' ;
T__387 : 'ELEMENT' ;
T__388 : 'SUBSTITUTABLE' ;
T__389 : 'AT' ;
T__390 : 'LEVELS' ;
T__391 : 'CHUNK' ;
T__392 : 'PCTVERSION' ;
T__393 : 'RETENTION' ;
T__394 : 'FREEPOOLS' ;
T__395 : 'ORGANIZATION' ;
T__396 : 'HEAP' ;
T__397 : 'COMPRESS' ;
T__398 : 'NOCOMPRESS' ;
T__399 : 'REJECT' ;
T__400 : 'UNLIMITED' ;
T__401 : 'PCTTHRESHOLD' ;
T__402 : 'INCLUDING' ;
T__403 : 'OVERFLOW ' ;
T__404 : 'LOGGING' ;
T__405 : 'NOLOGGING' ;
T__406 : 'PCTFREE' ;
T__407 : 'PCTUSED' ;
T__408 : 'INITRANS' ;
T__409 : 'MAXTRANS' ;
T__410 : 'INITIAL' ;
T__411 : 'MINEXTENTS' ;
T__412 : 'MAXEXTENTS' ;
T__413 : 'PCTINCREASE' ;
T__414 : 'FREELISTS' ;
T__415 : 'FREELIST' ;
T__416 : 'GROUPS' ;
T__417 : 'OPTIMAL' ;
T__418 : 'BUFFER_POOL' ;
T__419 : 'RECYCLE' ;
T__420 : 'K' ;
T__421 : 'M' ;
T__422 : 'RELY' ;
T__423 : 'NORELY' ;
T__424 : 'FULLTEXT' ;
T__425 : 'NULLS' ;
T__426 : 'AUTOINCREMENT' ;
T__427 : 'IDENTITY' ;
T__428 : 'ZEROFILL' ;
T__429 : 'CURRENT_TIMESTAMP' ;
T__430 : 'NOW' ;
T__431 : 'LOCALTIME' ;
T__432 : 'LOCALTIMESTAMP' ;
T__433 : '::' ;
T__434 : 'ENUM' ;
T__435 : 'UNICODE' ;
T__436 : 'ASCII' ;
T__437 : 'NONCLUSTERED' ;
T__438 : 'FILLFACTOR' ;
T__439 : 'CHILD' ;
T__440 : 'MAX_ROWS ' ;
T__441 : 'MIN_ROWS ' ;
T__442 : 'UNION ' ;

// Named tokens, in priority order.
ML_COMMENT
    : '/*' ( options { greedy = false; } : . )* '*/' { $channel = HIDDEN; }
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
SYMBOL       : '$' | ',' | '-' | '<' | '>' | '?' | '_' | '|' ;
// Unquoted names: ASCII letters plus the letters of other scripts; after the
// first letter also digits, '_', '-', and Oracle's '$' and '#' (app$log, emp#hist).
STRING       : ( 'A'..'Z' | 'a'..'z' | NAME_LETTER ) ( '-' | INT | 'A'..'Z' | 'a'..'z' | '_' | '$' | '#' | NAME_LETTER )* ;
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
