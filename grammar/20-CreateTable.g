// MySQL's SPATIAL [INDEX|KEY] at the start of an entry is marked before the
// entry is predicted (kp_markSpatialIndex), so it reads as a FULLTEXT index.
//
// CREATE TABLE: the table's name, its column list and its options. Reached
// from createObject after 'CREATE', the optional OR REPLACE and TEMPORARY.
// The tree is flat; options the model keeps (engine, character set,
// collation) stay as tokens, the other options leave nothing.
//
// A broken entry of the column list does not end the statement: the entry
// keeps what was read, an ERROR_NODE follows it, and reading goes on after
// the entry's closing COMMA or CLOSEPAREN.

createTable
    : 'TABLE' ( 'IF' T_NOT 'EXISTS' )? anyQualifiedName
      ( OPENPAREN { kp_markSpatialIndex(RECOGNIZER); } ( subsequentTableEntry ( tableEntrySeparator )* )? CLOSEPAREN
      | partitionOfParent
      )
      ( tableOption )?
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        PREPORTERROR();
        PRECOVER();
        retval.tree = kp_treeEndingInError(ADAPTOR, retval.tree,
            (pANTLR3_BASE_TREE)ADAPTOR->errorNode(ADAPTOR, INPUT, retval.start, LT(-1), EXCEPTION));
        kp_forgetRecognitionError(RECOGNIZER);
    }

// A comma and the entry after it. A comma before the closing parenthesis
// (SQL Server accepts one, hand-written scripts of every dialect have it) is
// dropped; one before another comma is reported as an extraneous token and
// dropped, so that no entry is lost and no empty entry is made of it.
tableEntrySeparator
    : c=COMMA { kp_markSpatialIndex(RECOGNIZER); }
      ( subsequentTableEntry -> COMMA subsequentTableEntry
      | { if (LA(1) != CLOSEPAREN) { kp_reportDroppedToken(RECOGNIZER, $c); } } ->
      )
    ;

tableName
    : objectName
    ;

// PostgreSQL's partition: PARTITION OF parent [(constraints and column
// options)] FOR VALUES ... | DEFAULT. PARTITION OF and the parent's name stay
// in the tree (the walker gives the table the parent's columns); the bounds
// leave nothing.
partitionOfParent
    : 'PARTITION' 'OF' qualifiedObjectName
      ( OPENPAREN subsequentTableEntry ( COMMA subsequentTableEntry )* CLOSEPAREN )?
      partitionOfBound
    ;

partitionOfBound
    : 'FOR' 'VALUES'
      ( 'FROM' balancedParentheses 'TO' balancedParentheses
      | 'IN' balancedParentheses
      | T_WITH balancedParentheses
      ) ->
    | T_DEFAULT ->
    ;

// A column, or a key, index or CHECK constraint (named or not); the first
// entry may be a constraint too. CHECK followed by a type is a column called
// check.
subsequentTableEntry
    : ( 'CONSTRAINT' objectName )?
      ( tableKeyConstraint
      | checkConstraint ( checkConstraintState )?
      | tableIndex
      | ignoredTableConstraint
      ) { kp_requireTableEntryEnd(RECOGNIZER); }
    | likeParent { kp_requireTableEntryEnd(RECOGNIZER); }
    | tableColumn
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        PREPORTERROR();
        kp_recoverToTableEntryEnd(RECOGNIZER);
        retval.tree = kp_treeEndingInError(ADAPTOR, retval.tree,
            (pANTLR3_BASE_TREE)ADAPTOR->errorNode(ADAPTOR, INPUT, retval.start, LT(-1), EXCEPTION));
        kp_forgetRecognitionError(RECOGNIZER);
    }

// A column of the list. A column the parser cannot read whole (an error
// reported inside it, a token made up by recovery, or a token after it in its
// entry) is left out: one ERROR_NODE at its name stands for it, and reading
// goes on after its entry (kp_endTableColumn), so that no made-up text
// reaches the model and the entries after it are read.
// Plain columns (parser/PlainColumns.h) are read by a helper in one pass,
// with the plain columns that follow them: the first name stays in the tree
// with the reading on its token.
tableColumn
@init { ANTLR3_MARKER entryStart = INDEX(); KpRecoveryCheckpoint before = kp_recoveryCheckpoint(RECOGNIZER); }
@after { retval.tree = kp_endTableColumn(RECOGNIZER, ADAPTOR, retval.tree, entryStart, before, retval.start); }
    : { kp_plainColumnAhead(RECOGNIZER) }?=> name=columnName { kp_takePlainColumns(RECOGNIZER, $name.start); }
    | fieldBlock { kp_requireTableEntryEnd(RECOGNIZER); }
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        retval.tree = kp_endTableColumn(RECOGNIZER, ADAPTOR, retval.tree, entryStart, before, retval.start);
    }

// Entries the model has no place for: PostgreSQL's exclusion constraint and
// the period of a system-versioned table (SQL Server, MariaDB).
ignoredTableConstraint
    : excludeConstraint
    | periodForTime
    ;

// EXCLUDE [USING method] (element WITH operator, ...) [INCLUDE (...)]
// [WITH (...)] [USING INDEX TABLESPACE t] [WHERE (predicate)] [DEFERRABLE ...]
excludeConstraint
    : { kp_isWord(LT(1), "EXCLUDE") }?=> STRING ( 'USING' using_index_method )? balancedParentheses
      ( indexInclude )? ( constraint_state )? ( 'WHERE' balancedParentheses ( constraint_state )? )?
      -> IGNORED_NODE
    ;

// PERIOD FOR SYSTEM_TIME (valid_from, valid_to)
periodForTime
    : { kp_isWord(LT(1), "PERIOD") && kp_isKeyword(LT(2), "FOR") }?=> STRING 'FOR' objectName balancedParentheses
      -> IGNORED_NODE
    ;

// PostgreSQL's LIKE parent [INCLUDING|EXCLUDING what ...] becomes
// ^( LIKE parent options ): the walker copies the parent's columns there.
likeParent
    : { kp_isWord(LT(1), "LIKE") && LA(2) != OPENPAREN && LA(2) != COMMA && LA(2) != CLOSEPAREN }?=>
      like=STRING qualifiedObjectName ( likeOption )*
      -> ^( $like qualifiedObjectName ( likeOption )* )
    ;

likeOption
    : ( 'INCLUDING' | STRING ) ( 'ALL' | STRING | T_DEFAULT | 'COMMENT' )
    ;

// Oracle's state words and MySQL's [NOT] ENFORCED after a table CHECK; the
// model has no place for them.
checkConstraintState
    : ( 'ENABLE' | 'DISABLE' | 'VALIDATE' | 'NOVALIDATE' | 'RELY' | 'NORELY' )+ ->
    | ( T_NOT )? { kp_isWord(LT(1), "ENFORCED") }?=> STRING ->  // MySQL's [NOT] ENFORCED
    ;

// Options, separated by commas or by blanks. Called only when one follows.
tableOption
    : ( postgresSpecificTableOptions
      | inheritsClause
      | tableOptionEntry
      | optionalComma
      )+
    ;

optionalComma
    : COMMA ->
    ;

postgresSpecificTableOptions
    : T_WITH ( storage_parameterOptions | 'OIDS' ) ->
    | 'WITHOUT' ( 'OIDS' | { kp_isWord(LT(1), "ROWID") }?=> STRING ) ->  // SQLite's WITHOUT ROWID
    | { kp_isWord(LT(1), "STRICT") }?=> STRING ->  // SQLite's STRICT
    ;

// PostgreSQL's INHERITS (parent, ...) stays in the tree: the walker gives the
// table its parents' columns.
inheritsClause
    : { kp_isWord(LT(1), "INHERITS") }?=> STRING OPENPAREN qualifiedObjectName ( COMMA qualifiedObjectName )* CLOSEPAREN
    ;

// WITH (fillfactor = 70, autovacuum_enabled = false, toast.x = 1)
storage_parameterOptions
    : OPENPAREN storageParameter ( COMMA storageParameter )* CLOSEPAREN
    ;

storageParameter
    : ( objectName | 'FILLFACTOR' | 'ONLINE' ) ( '.' objectName )? ( EQUALS storageParameterValue )?
    ;

// SQL Server writes ON and OFF, and lists in parentheses for a spatial
// index: BOUNDING_BOX = (0, 0, 500, 200), GRIDS = (LEVEL_1 = MEDIUM).
storageParameterValue
    : numericValue
    | objectName
    | 'ON' ( balancedParentheses )?  // SYSTEM_VERSIONING = ON (HISTORY_TABLE = h)
    | T_TRUE
    | T_FALSE
    | balancedParentheses
    ;

// EQUALS is required after TYPE, ENGINE and AUTO_INCREMENT and optional
// after the character set and collation words. MySQL writes DEFAULT before
// either of the latter.
tableOptionEntry
    : ( 'TYPE' | 'ENGINE' ) EQUALS STRING
    | tableComment
    | 'AUTO_INCREMENT' EQUALS fieldSize
    | ( T_DEFAULT )?
      ( ( T_CHARACTER 'SET' | 'CHARSET' ) ( EQUALS )? ( STRING | QUOTED_STRING )
      | 'COLLATE' ( EQUALS )? boolean_expression_match
      )
    | table_properties_ignore
    | fileGroupOption
    ;

// SQL Server's file groups and partition schemes: ON [PRIMARY],
// ON scheme (column), TEXTIMAGE_ON [PRIMARY], FILESTREAM_ON fg. A temporary
// table's ON COMMIT shares the ON; the words after it tell them apart.
fileGroupOption
    : 'ON' ( options { k = 1; } : { kp_onCommitAhead(RECOGNIZER) }?=> onCommitAction | fileGroupName ) ->
    | { kp_isAnyWord(LT(1), "TEXTIMAGE_ON FILESTREAM_ON") }?=> STRING fileGroupName ->
    ;

fileGroupName
    : ( T_PRIMARY | objectName ) ( OPENPAREN objectName CLOSEPAREN )?
    ;

// What a temporary table does with its rows at COMMIT (PostgreSQL, Oracle):
// COMMIT PRESERVE ROWS | DELETE ROWS | DROP after ON.
// PRESERVE ROWS, DELETE ROWS, DROP; Oracle's private temporary tables also
// PRESERVE DEFINITION and DROP DEFINITION.
onCommitAction
    : STRING ( ( STRING | 'DELETE' ) STRING | 'DROP' ( options { k = 1; } : { kp_isWord(LT(1), "DEFINITION") }?=> STRING )? )
    ;

tableComment
    : 'COMMENT' EQUALS ( STRING | QUOTED_STRING )
    ;

// Storage, organisation and partitioning clauses (68-Storage.g) and the
// MySQL options the model has no place for; none of them reaches the tree.
table_properties_ignore
    : mysql_unsupported_table_property ->
    | physical_properties ->
    | table_properties ->
    | table_partitioning_clauses ->
    ;

// MySQL options the model has no place for. The lexer makes 'MAX_ROWS ',
// 'MIN_ROWS ' and 'UNION ' (with the blank) of the words followed by one.
mysql_unsupported_table_property
    : 'AVG_ROW_LENGTH' ( EQUALS )? fieldValue
    | 'CHECKSUM' ( EQUALS )? INT
    | 'CONNECTION' ( EQUALS )? QUOTED_STRING
    | 'DATA' 'DIRECTORY' ( EQUALS )? QUOTED_STRING
    | 'DELAY_KEY_WRITE' ( EQUALS )? INT
    | 'INDEX' 'DIRECTORY' ( EQUALS )? QUOTED_STRING
    | 'INSERT_METHOD' ( EQUALS )? ( T_NO | 'FIRST' | 'LAST' )
    | 'KEY_BLOCK_SIZE' ( EQUALS )? fieldValue
    | ( 'MAX_ROWS' | 'MAX_ROWS ' ) ( EQUALS )? fieldValue
    | ( 'MIN_ROWS' | 'MIN_ROWS ' ) ( EQUALS )? fieldValue
    | 'PACK_KEYS' ( EQUALS )? ( INT | T_DEFAULT )
    | 'PASSWORD' ( EQUALS )? QUOTED_STRING
    | 'ROW_FORMAT' ( EQUALS )? ( T_DEFAULT | 'DYNAMIC' | 'FIXED' | 'COMPRESSED' | 'REDUNDANT' | 'COMPACT' )
    | ( 'UNION' | 'UNION ' ) ( EQUALS )? OPENPAREN idList CLOSEPAREN
    | { kp_isAnyWord(LT(1), "STATS_PERSISTENT STATS_AUTO_RECALC STATS_SAMPLE_PAGES ENCRYPTION COMPRESSION") }?=>
      STRING ( EQUALS )? ( fieldValue | T_DEFAULT )
    | { kp_isAnyWord(LT(1), "AUTOEXTEND_SIZE SECONDARY_ENGINE ENGINE_ATTRIBUTE SECONDARY_ENGINE_ATTRIBUTE") }?=>
      STRING ( EQUALS )? fieldValue
    | { kp_isAnyWord(LT(1), "PAGE_CHECKSUM PAGE_COMPRESSED PAGE_COMPRESSION_LEVEL TRANSACTIONAL") }?=>
      STRING ( EQUALS )? fieldValue
    ;
