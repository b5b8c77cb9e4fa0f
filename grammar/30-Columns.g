// Column definitions, in CREATE TABLE and in ALTER TABLE. Options come in
// any order and number. DEFAULT and CHECK keep only their keyword token in
// the tree; the exact source text of the value or expression rides on that
// token (setCustomStringValueOnToken) for the tree walker.

fieldBlock
    : field
    ;

// SQLite lets a column go without a type (v NOT NULL, v DEFAULT 0, v,): the
// column then has an empty type text and keeps its options.

field
    : columnName ( { kp_columnTypeAhead(LT(1)) }?=> fieldType ( arraySuffix )* )? ( fieldOptions )?
      ( options { greedy = true; }
      : T_PRIMARY T_KEY ( keySortWord )? ( keyClustering )? ( keyIndexOptions )?
      | 'NULL'
      | notOption
      | 'AUTO_INCREMENT'
      | 'AUTOINCREMENT'
      | identity
      | 'UNIQUE' ( nullsDistinct )? ( keyClustering )? ( keyIndexOptions )?
      | 'ZEROFILL'
      | 'UNSIGNED'
      | fieldDefaultValue
      | onOption
      | fieldComment
      | fieldConstraint
      | checkConstraint
      | 'ENABLE'
      | constraintStateWord
      | ( T_CHARACTER 'SET' | 'CHARSET' ) objectName
      | collate='COLLATE' collation=qualifiedObjectName  // COLLATE "C", COLLATE pg_catalog."default"
        { setCustomStringValueOnToken(RECOGNIZER, $collate, $collation.start, $collation.stop); }
      | references
      | asGeneratedColumn
      | wordColumnOption
      )*
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        if (kp_isColumnEndAtWord(RECOGNIZER)) {
            kp_dropColumnEndAtWord(RECOGNIZER);
        } else {
            PREPORTERROR();
            PRECOVER();
            retval.tree = (pANTLR3_BASE_TREE)ADAPTOR->errorNode(ADAPTOR, INPUT, retval.start, LT(-1), EXCEPTION);
        }
    }

// PostgreSQL's array forms after a type: int[], int[3], int ARRAY, int
// ARRAY[4]. They stay in the type text as written.
arraySuffix
    : ARRAY_BOUNDS
    | { kp_isWord(LT(1), "ARRAY") }?=> STRING ( options { greedy = true; } : ARRAY_BOUNDS )?
    ;

// Column options the model has no place for leave nothing: SQL Server's
// NOT FOR REPLICATION, ROWGUIDCOL, SPARSE, FILESTREAM, PERSISTED; MySQL's
// and Oracle's VISIBLE, INVISIBLE, VIRTUAL, STORED and SRID n; SQLite's ON
// CONFLICT clause. The options of a column are told apart by their first token, so that a
// token that starts none of them ends the column: each form that shares a
// first token with another is decided inside its own rule.
notOption
    : notNull
    | T_NOT 'FOR' STRING ->
    ;

onOption
    : mysqlTimestampUpdate
    | 'ON' STRING ( STRING | 'IGNORE' | 'REPLACE' ) ->
    ;

// The option words (kp_isColumnOptionWord: GENERATED, ALWAYS, SPARSE, ...)
// and what follows them (kp_skipColumnOptionArguments: SRID n, STORAGE DISK,
// MASKED WITH (...), ...) leave nothing. Another word ends the column unread
// (see kp_endColumnAtWord): the table entry then reports it, as it reports
// any token after a column.
wordColumnOption
    : { if (!kp_isColumnOptionWord(LT(1))) { kp_endColumnAtWord(RECOGNIZER); goto rulewordColumnOptionEx; } }
      ( STRING | T_STORAGE | 'WITHOUT' | 'SORT' | 'COMPRESSED' ) { kp_skipColumnOptionArguments(RECOGNIZER) }? ->
    | 'BY' T_DEFAULT ( 'ON' 'NULL' )? ->
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        if (!kp_isColumnEndAtWord(RECOGNIZER)) {
            PREPORTERROR();
            PRECOVER();
            retval.tree = (pANTLR3_BASE_TREE)ADAPTOR->errorNode(ADAPTOR, INPUT, retval.start, LT(-1), EXCEPTION);
        }
    }

// AS (expr) of a computed column, AS IDENTITY [(options)], or AS ROW START
// and AS ROW END.
asGeneratedColumn
    : as='AS'
      ( expression=balancedParentheses
        { kp_carryTextInside(RECOGNIZER, $as, $expression.start, $expression.stop); }
        -> $as
      | 'IDENTITY' ( OPENPAREN ( identityOption )* CLOSEPAREN | ( options { greedy = true; } : identityBareOption )+ )? ->
      | 'ROW' ( 'START' | T_END ) ->  // the period columns of a system-versioned table
      )
    ;

// The sequence options of an identity column.
identityOption
    : STRING | INT | SIGNED_INT | '-' | COMMA | T_WITH | T_NO | 'BY' | 'START' | 'INCREMENT' | 'MINVALUE'
    | 'MAXVALUE' | 'NOMINVALUE' | 'NOMAXVALUE' | 'CACHE' | 'NOCACHE' | 'CYCLE' | 'NOCYCLE' | 'ORDER'
    | 'NOORDER'
    ;

// Oracle writes the sequence options of an identity column without
// parentheses: AS IDENTITY MINVALUE 1 MAXVALUE 999 INCREMENT BY 1 START WITH 1
// CACHE 20 NOORDER NOCYCLE NOKEEP NOSCALE.
identityBareOption
    : ( 'START' T_WITH | 'INCREMENT' 'BY' | 'MAXVALUE' | 'MINVALUE' | 'CACHE' )
      ( numericValue | 'LIMIT' 'VALUE' )
    | 'NOMAXVALUE' | 'NOMINVALUE' | 'CYCLE' | 'NOCYCLE' | 'NOCACHE' | 'ORDER' | 'NOORDER'
    | { kp_isAnyWord(LT(1), "KEEP NOKEEP SCALE NOSCALE EXTEND NOEXTEND") }?=> STRING
    ;

// A type word outside data_type (serial, datetime, a domain) is a STRING,
// possibly qualified by its schema and sized; SQL Server dumps quote it.
fieldType
    : data_type
    | STRING ( '.' objectName )? ( typeModifiers )?
    | QUOTED_STRING ( type_precision )?
    | 'LONG' 'RAW'
    | 'CURSOR'
    | ( 'ENUM' | 'SET' ) OPENPAREN optionList CLOSEPAREN
    ;

// (10), (10,2), geometry's (Polygon, 4326), xml's (CONTENT s.coll).
typeModifiers
    : OPENPAREN typeModifier ( COMMA typeModifier )* CLOSEPAREN
    ;

typeModifier
    : ( objectName ( '.' objectName )* )+
    | precision
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
    : T_DEFAULT ( 'ON' 'NULL' )? value=fieldDefaultValueEntry
      { setCustomStringValueOnToken(RECOGNIZER, $T_DEFAULT, $value.start, $value.stop); }
      -> T_DEFAULT
    ;

// A value, or values joined by arithmetic and concatenation (SYSDATE + 30,
// now() - interval '1 day', 'a' || 'b'). The text is kept as written, so the
// insides of parentheses are only balanced, not read: any expression there
// is a value.
fieldDefaultValueEntry
    : defaultOperand ( options { greedy = true; } : defaultOperator defaultOperand | SIGNED_INT )*
    ;

// Decided on one token: a decision that looked past a '(' would take the
// skipped inside of balancedParentheses for empty.
defaultOperand
    : ( options { k = 1; } : valueParentheses
      | dollarQuotedString
      | ( 'NULL' | 'LOCALTIME' | 'LOCALTIMESTAMP' | T_TRUE | T_FALSE )
      | 'CURRENT_TIMESTAMP' ( OPENPAREN ( INT )? CLOSEPAREN )?
      | numericValue
      | specific_function_call
      | { kp_arrayConstructorAhead(LT(1)) }?=> STRING { kp_skipArrayElements(RECOGNIZER) }?  // ARRAY['a', 'b']
      | objectName ( QUOTED_STRING | valueParentheses )?
      | 'INTERVAL' ( QUOTED_STRING | numericValue ) ( options { greedy = true; } : interval_qualifier )?
      )
      ( typeValueSpecifier )?
    ;

defaultOperator
    : '+' | '-' | '*' | FORWARD_SLASH | '%' | '||'
    ;

// The parentheses of a value or condition, skipped like balancedParentheses
// except that the next table entry after a comma ends them
// (kp_skipValueInParentheses).
valueParentheses
    : OPENPAREN { kp_skipValueInParentheses(RECOGNIZER) }? CLOSEPAREN
    ;

// A PostgreSQL cast after a value.
typeValueSpecifier
    : '::' fieldType ( options { greedy = true; } : ARRAY_BOUNDS )*
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
    : ( T_PRIMARY T_KEY ( keySortWord )? | 'UNIQUE' ( nullsDistinct )? ) ( keyClustering )? ( keyIndexOptions )?
    ;

// SQLite's PRIMARY KEY ASC|DESC on a column.
keySortWord
    : ( 'ASC' | 'DESC' ) ->
    ;

// PostgreSQL's UNIQUE NULLS [NOT] DISTINCT.
nullsDistinct
    : 'NULLS' ( T_NOT )? 'DISTINCT' ->
    ;

// Oracle's state words after a column constraint (ENABLE stays in the tree).
constraintStateWord
    : ( 'DISABLE' | 'VALIDATE' | 'NOVALIDATE' | 'RELY' | 'NORELY' ) ->
    ;

// SQL Server's options of the index behind a column's key: WITH (FILLFACTOR
// = 80, ...) or the older WITH FILLFACTOR = 80. They leave nothing.
keyIndexOptions
    : T_WITH ( storage_parameterOptions | 'FILLFACTOR' EQUALS INT ) ->
    ;

// The condition is kept as written: its parentheses are balanced, and what
// stands inside them is not read.
checkConstraint
    : T_CHECK condition=valueParentheses
      { kp_carryTextInside(RECOGNIZER, $T_CHECK, $condition.start, $condition.stop); }
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
