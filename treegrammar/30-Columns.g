// Columns: the field is made from its name and type text and added to the
// table (renamed and reported when the name is taken), then every option is
// applied in the order written. A type the walker does not take leaves no
// column; its options are still walked, against no field.

fieldBlock[SQLTable *table]
    : field[table]
    ;

// A column without a type (SQLite) has an empty type text. A run of plain
// columns is the first name alone, with what the parser read of them on the
// name's token.
field[SQLTable *table]
@init { SQLField *field = NULL; ANTLR3_MARKER typeStart = 0; bool accepted = true; }
    : { kp_isPlainColumn(LT(1)) }?=> plain=fieldName { kp_addPlainColumns(RECOGNIZER, table, $plain.start); }
    | name=fieldName { typeStart = INDEX(); }
      ( { kp_columnTypeAhead(LT(1)->getToken(LT(1))) }?=> type=fieldType { accepted = $type.accepted; }
        ( ARRAY_BOUNDS | STRING )*  // PostgreSQL's array bounds (int[3], int ARRAY[3]) are part of the type text
      )?
      { field = kp_addField(RECOGNIZER, table, $name.start, kp_nodeRunText(RECOGNIZER, typeStart), accepted); }
      ( fieldOptions[field] )?
      ( T_PRIMARY T_KEY { kp_setPrimaryKey(field); }
      | references[field]
      | as='AS' { kp_setGeneratedExpressionFromToken(field, $as); }
      | 'NULL'
      | notNull { kp_setNotNull(field); }
      | ( 'AUTO_INCREMENT' | 'AUTOINCREMENT' ) { kp_setAutoIncrement(field); }
      | identity
      | 'UNIQUE' { kp_setFieldFlag(field, "unique"); }
      | 'ZEROFILL' { kp_setFieldFlag(field, "zerofill"); }
      | 'UNSIGNED' { kp_setFieldFlag(field, "unsigned"); }
      | fieldDefaultValue[field]
      | fieldOnUpdate[field]
      | fieldComment[field]
      | fieldConstraint[field]
      | checkConstraint[field, NULL]
      | 'ENABLE'
      | ( T_CHARACTER 'SET' | 'CHARSET' ) charset=objectName
        { kp_setFieldProperty(field, "field_character_set", $charset.start); }
      | collate='COLLATE' qualifiedObjectName
        { kp_setFieldProperty(field, "field_collation", kp_customValue($collate)); }
      )*
    ;

// accepted is false for the types the walker rejects (see data_type).
fieldType returns [bool accepted = true]
    : dataType=data_type { $accepted = $dataType.accepted; }
    | STRING ( '.' objectName )? ( typeModifiers )?
    | QUOTED_STRING ( type_precision )?
    | 'LONG' 'RAW'
    | 'CURSOR'
    | ( 'ENUM' | 'SET' ) OPENPAREN optionList CLOSEPAREN
    ;

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

// An entry that failed to parse leaves the type without a text.
optionEntry
    : STRING
    | QUOTED_STRING ( type_precision )?
    | ERROR_NODE
    ;

// UNICODE and ASCII are matched only.
fieldOptions[SQLField *field]
    : 'BINARY' { kp_setFieldFlag(field, "binary"); }
    | 'UNICODE'
    | 'ASCII'
    ;

notNull
    : T_NOT 'NULL'
    ;

// IDENTITY does not make the column auto-increment.
identity
    : 'IDENTITY' ( OPENPAREN integer COMMA integer CLOSEPAREN )?
    ;

// The value's text rides on the DEFAULT token.
fieldDefaultValue[SQLField *field]
    : T_DEFAULT { kp_setDefaultFromToken(field, $T_DEFAULT); }
    ;

fieldOnUpdate[SQLField *field]
    : 'ON' 'UPDATE' entry=fieldDefaultValueEntry
      { kp_setFieldProperty(field, "onUpdateFieldValue", $entry.value); }
    ;

// The text of a value: a parenthesised expression in parentheses, or the
// tokens as written (a word, a function call, CURRENT_TIMESTAMP with its
// parentheses); a cast does not change it.
fieldDefaultValueEntry returns [const std::string *value = NULL]
@init { ANTLR3_MARKER from = INDEX(); }
    : ( OPENPAREN { from = INDEX(); } boolean_expression
        { $value = kp_keepRunText(RECOGNIZER, from, true); }
        CLOSEPAREN
      | ( INT | 'NULL' | T_TRUE | T_FALSE )
        { $value = kp_keepRunText(RECOGNIZER, from, false); }
      | ( 'CURRENT_TIMESTAMP' | 'LOCALTIME' | 'LOCALTIMESTAMP' ) ( OPENPAREN ( INT )? CLOSEPAREN )?
        { $value = kp_keepRunText(RECOGNIZER, from, false); }
      | objectName ( defaultFunctionArguments )?
        { $value = kp_keepRunText(RECOGNIZER, from, false); }
      )
      ( typeValueSpecifier )?
    ;

typeValueSpecifier
    : '::' fieldType
    ;

// A word, or a function call (see the parser's defaultFunction).
defaultFunction
    : objectName defaultFunctionArguments
    ;

defaultFunctionArguments
    : OPENPAREN ( boolean_expression ( COMMA boolean_expression )* )? CLOSEPAREN
    ;

fieldComment[SQLField *field]
    : 'COMMENT' value=fieldValue { kp_setCommentFromNode(field, $value.start); }
    ;

// A NOT NULL written as a named constraint does not make the column not
// null; only the unnamed form does.
fieldConstraint[SQLField *field]
@init { std::string constraintName; }
    : 'CONSTRAINT' cn=objectName { constraintName = kp_nodeText($cn.start); }
      ( notNull
      | fieldPKOrUniqueConstraint[field]
      | ( T_FOREIGN T_KEY )? references[field]
      | checkConstraint[field, &constraintName]
      | fieldDefaultValue[field]
      )
    ;

// The clustering word is matched only; the index options leave nothing.
fieldPKOrUniqueConstraint[SQLField *field]
    : ( T_PRIMARY T_KEY { kp_setPrimaryKey(field); }
      | 'UNIQUE' { kp_setFieldFlag(field, "unique"); }
      )
      ( 'CLUSTERED' | 'NONCLUSTERED' )?
    ;

// The expression's text rides on the CHECK token. The target is the table
// or the column; a check without a name is called cons_check.
checkConstraint[SQLObject *target, const std::string *name]
    : T_CHECK { kp_addCheckConstraintFromToken(target, $T_CHECK, name); }
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

numericValue
    : ( INT | SIGNED_INT ) ( '.' INT )?
    | ( '-' | '+' ) INT ( '.' INT )?
    | '.' INT
    ;
