// Column definitions, in CREATE TABLE and in ALTER TABLE. Options come in
// any order and number. DEFAULT and CHECK keep only their keyword token in
// the tree; the exact source text of the value or expression rides on that
// token (setCustomStringValueOnToken) for the tree walker.

fieldBlock
    : field
    ;

field
    : fieldName fieldType ( fieldOptions )?
      ( T_PRIMARY T_KEY
      | 'NULL'
      | notNull
      | 'AUTO_INCREMENT'
      | 'AUTOINCREMENT'
      | identity
      | 'UNIQUE'
      | 'ZEROFILL'
      | 'UNSIGNED'
      | fieldDefaultValue
      | mysqlTimestampUpdate
      | fieldComment
      | fieldConstraint
      | checkConstraint
      | 'ENABLE'
      | ( T_CHARACTER 'SET' | 'CHARSET' ) objectName
      | 'COLLATE' objectName
      | references
      )*
    ;

// A type word outside data_type (serial, datetime, a domain) is a STRING,
// possibly qualified by its schema and sized; SQL Server dumps quote it.
fieldType
    : data_type
    | STRING ( '.' objectName )? ( type_precision )?
    | QUOTED_STRING ( type_precision )?
    | 'LONG' 'RAW'
    | 'CURSOR'
    | ( 'ENUM' | 'SET' ) OPENPAREN optionList CLOSEPAREN
    ;

optionList
    : optionEntry ( COMMA optionEntry )*
    ;

// Any other token is a mismatched set.
optionEntry
    : ( STRING | QUOTED_STRING ) ( type_precision )?
    ;

fieldOptions
    : 'BINARY'
    | 'UNICODE'
    | 'ASCII'
    ;

notNull
    : T_NOT 'NULL'
    ;

// SQL Server's IDENTITY (seed, increment).
identity
    : 'IDENTITY' ( OPENPAREN integer COMMA integer CLOSEPAREN )?
    ;

fieldDefaultValue
    : T_DEFAULT value=fieldDefaultValueEntry
      { setCustomStringValueOnToken(RECOGNIZER, $T_DEFAULT, $value.start, $value.stop); }
      -> T_DEFAULT
    ;

fieldDefaultValueEntry
    : ( OPENPAREN boolean_expression CLOSEPAREN
      | ( 'NULL' | 'LOCALTIME' | 'LOCALTIMESTAMP' | T_TRUE | T_FALSE )
      | 'CURRENT_TIMESTAMP' ( OPENPAREN ( INT )? CLOSEPAREN )?
      | numericValue
      | specific_function_call
      | objectName ( QUOTED_STRING | defaultFunctionArguments )?
      )
      ( typeValueSpecifier )?
    ;

// A PostgreSQL cast after a value.
typeValueSpecifier
    : '::' fieldType
    ;

// A word (a name, a keyword, a quoted string, or b'0' with its prefix) or a
// function call: one alternative with a suffix, since a keyword alone and a
// keyword before parentheses are told apart only by the token after it.
defaultFunction
    : objectName defaultFunctionArguments
    ;

defaultFunctionArguments
    : OPENPAREN ( boolean_expression ( COMMA boolean_expression )* )? CLOSEPAREN
    ;

mysqlTimestampUpdate
    : 'ON' 'UPDATE'
      ( 'CURRENT_TIMESTAMP' ( OPENPAREN ( INT )? CLOSEPAREN )?
      | 'NOW' OPENPAREN CLOSEPAREN
      | 'LOCALTIME' ( OPENPAREN CLOSEPAREN )?
      | 'LOCALTIMESTAMP' ( OPENPAREN CLOSEPAREN )?
      )
    ;

fieldComment
    : 'COMMENT' fieldValue
    ;

fieldConstraint
    : 'CONSTRAINT' objectName
      ( notNull
      | fieldPKOrUniqueConstraint
      | ( T_FOREIGN T_KEY )? references
      | checkConstraint
      | fieldDefaultValue
      )
    ;

fieldPKOrUniqueConstraint
    : ( T_PRIMARY T_KEY | 'UNIQUE' ) ( 'CLUSTERED' | 'NONCLUSTERED' )? ( T_WITH 'FILLFACTOR' EQUALS INT )?
    ;

checkConstraint
    : T_CHECK OPENPAREN condition=boolean_expression CLOSEPAREN
      { setCustomStringValueOnToken(RECOGNIZER, $T_CHECK, $condition.start, $condition.stop); }
      -> T_CHECK
    ;

defaultValue
    : 'NULL'
    | fieldValue ( '::' fieldType )?
    ;

fieldValue
    : QUOTED_STRING
    | STRING
    | fieldSize
    | T_TRUE
    | T_FALSE
    ;

fieldSize
    : INT ( COMMA INT )?
    ;

// Numbers as written: 1, -1, 0.5, -0.5, .5 (the lexer makes one SIGNED_INT
// of a minus sign glued to digits).
numericValue
    : ( INT | SIGNED_INT ) ( '.' INT )?
    | ( '-' | '+' ) INT ( '.' INT )?
    | '.' INT
    ;
