// ALTER statements. ALTER TABLE is parsed in full: the clauses that
// add a CHECK, FOREIGN KEY, PRIMARY KEY or UNIQUE constraint stay in the
// tree for the walker; ENABLE/DISABLE clauses leave nothing; every other
// clause becomes one IGNORED_NODE in its place. ALTER PROCEDURE ...
// COMPILE and other object kinds are consumed and leave one IGNORED_NODE.

alterInstruction
    : T_ALTER ( 'IGNORE' )?
      ( alterTableInstruction
      | alterProcedureInstruction
      | alterUnsupportedObject
      | unknown_Alter
      )
    ;

// SQL Server's WITH CHECK / WITH NOCHECK, written before the clauses, leaves
// nothing.
alterTableInstruction
    : 'TABLE' ( { kp_isKeyword(LT(1), "ONLY") }?=> 'ONLY' )? anyQualifiedName ( existingRowsCheck )?
      { kp_markAddedSpatialIndex(RECOGNIZER); } alter_table_clause
      ( COMMA { kp_markAddedSpatialIndex(RECOGNIZER); } alter_table_clause )* SEMI
    ;

existingRowsCheck
    : T_WITH ( T_CHECK | { kp_isWord(LT(1), "NOCHECK") }?=> STRING ) ->
    ;

// Partition and inheritance maintenance is told by its leading words
// (kp_partitionMaintenanceAhead): DROP PARTITION p is no dropped column, ADD
// PARTITION (...) no added column list. One token decides between the two
// alternatives here, the predicate where both start with the same word; the
// other actions are told apart in their own rule.
alter_table_clause
options { k = 1; }
    : { kp_partitionMaintenanceAhead(RECOGNIZER) }?=> partitionMaintenance
    | { kp_listedColumnAhead(RECOGNIZER) }?=> listedColumn
    | table_alteration
    ;

// SQL Server adds several columns after one ADD: ADD b INT, c INT NULL. A
// column after a comma (kp_listedColumnAhead) is read like one after ADD
// and, like it, not applied.
listedColumn
    : field -> IGNORED_NODE
    ;

// The action is consumed by the helper, up to the comma before the next
// action or the end of the statement (kp_skipPartitionMaintenance); called
// as a predicate (always true unless a parenthesis stays open) so that it
// also runs while a decision tries the statement ahead.
partitionMaintenance
    : partitionMaintenanceWord { kp_skipPartitionMaintenance(RECOGNIZER) }? -> IGNORED_NODE
    ;

partitionMaintenanceWord
    : 'ADD' | 'DROP' | 'TRUNCATE' | 'MODIFY' | 'MERGE' | 'RENAME' | 'ANALYZE' | T_CHECK | 'DISCARD' | 'IMPORT'
    | 'SET' | T_NO | STRING
    ;

// SQL Server adds several constraints after one ADD, named or not: ADD
// CONSTRAINT a DEFAULT (0) FOR x, CONSTRAINT b DEFAULT ('') FOR y, CHECK (z > 0).
// CHECK followed by CONSTRAINT is SQL Server's CHECK CONSTRAINT c (enabling
// one), which is not an added constraint.
table_alteration
    : supported_alter_table_clause
    | unsupported_alter_table_clause
    | 'CONSTRAINT' qualifiedObjectName addedConstraintBody
    | unnamedAddedConstraint
    ;

unnamedAddedConstraint
    : ( foreignKeyConstraint | alterPrimaryKey | checkConstraint ) ( ignored_enable_disable_clause )*
    ;

// Oracle also adds constraints as a parenthesised list: ADD (CONSTRAINT ...,
// CONSTRAINT ...). MySQL's ADD FULLTEXT|SPATIAL INDEX|KEY (SPATIAL is marked
// as FULLTEXT before the clause is predicted) builds its index; a plain ADD
// INDEX or ADD KEY is not applied.
supported_alter_table_clause
    : 'ADD' ( addedConstraint | OPENPAREN addedConstraint ( COMMA addedConstraint )* CLOSEPAREN
            | addedKindIndex
            )
    | ignored_enable_disable_clause
    ;

// INDEX or KEY is required after the kind word here: without it the
// clause (ADD FULLTEXT ft (a)) reads as the clauses that are not applied.
addedKindIndex
    : 'FULLTEXT' ( 'INDEX' | T_KEY ) tableIndexBody
    ;

// The constraint name may be left out or be schema-qualified.
addedConstraint
    : ( 'CONSTRAINT' ( qualifiedObjectName )? )? ( addedConstraintBody | excludeConstraint )
    ;

// Oracle writes the constraint's state (ENABLE, DISABLE NOVALIDATE ...) after
// it. SQL Server's DEFAULT value FOR column sets the column's default; the
// value's text rides on the DEFAULT token as in a column definition.
addedConstraintBody
    : ( foreignKeyConstraint | alterPrimaryKey | checkConstraint | fieldDefaultValue 'FOR' objectName )
      ( ignored_enable_disable_clause )*
    ;

// PRIMARY KEY or UNIQUE (MySQL adds KEY or INDEX after UNIQUE); the walker
// reads the column list as a list of names. Sort order words leave nothing;
// they are reported unless SQL Server's CLUSTERED or NONCLUSTERED allows them.
alterPrimaryKey
@init { ANTLR3_BOOLEAN clustered = ANTLR3_FALSE; }
    : T_PRIMARY T_KEY ( keyClustering { clustered = ANTLR3_TRUE; } )? ( objectName )? ( keyMethod )?
      OPENPAREN tablePKey[clustered] CLOSEPAREN ( alterPrimaryKeyOptions )*
    | 'UNIQUE' ( keyClustering )? ( 'INDEX' | T_KEY )? ( objectName )? ( keyMethod )?
      OPENPAREN indexEntry ( COMMA indexEntry )* CLOSEPAREN ( alterPrimaryKeyOptions )*
    ;

alterPrimaryKeyOptions
    : deferrableOptions
    | using_index_clause
    | mysql_index_type ->
    | exceptions_clause ->
    | indexStorageOption ->
    ;

// The index that backs a key: a named one, one made on the spot, or Oracle's
// index clauses. Nothing of it reaches the model. The index's name does not
// start with a keyword, which would read as one of the index clauses
// (TABLESPACE, COMPUTE, LOCAL ...).
using_index_clause
    : 'USING' 'INDEX'
      ( nonKeyWordObjectName ( '.' objectName )?
      | OPENPAREN 'CREATE' createIndex CLOSEPAREN
      | index_properties
      ) ->
    ;

exceptions_clause
    : 'EXCEPTIONS' 'INTO' qualifiedObjectName
    ;

mysql_index_type
    : 'USING' ( 'BTREE' | T_HASH )
    ;

ignored_enable_disable_clause
    : enable_disable_clause ->
    ;

enable_disable_clause
    : ( 'ENABLE' | 'DISABLE' )
      ( 'TABLE' 'LOCK'
      | 'ALL' 'TRIGGERS'
      | ( 'VALIDATE' | 'NOVALIDATE' )?
        ( 'UNIQUE' OPENPAREN idList CLOSEPAREN | T_PRIMARY T_KEY | 'CONSTRAINT' objectName )?
        ( using_index_clause )? ( exceptions_clause )? ( 'CASCADE' )? ( ( 'KEEP' | 'DROP' ) 'INDEX' )?
      )
    ;

unsupported_alter_table_clause
    : unsupported_alter_table_clause_entry -> IGNORED_NODE
    ;

// Added columns and plain indexes are not applied to the model. The empty
// alternative lets a clause list hold empty entries (ALTER TABLE t;).
// Beyond the MySQL, PostgreSQL and Oracle forms: PostgreSQL's ATTACH and
// DETACH PARTITION, SQL Server's CHECK / NOCHECK CONSTRAINT.
unsupported_alter_table_clause_entry
    : ( tableOptionEntry )+
    | storage_alteration
    | partition_alteration
    | 'ADD' ( ( 'COLUMN' )? ( field ( columnPosition )? | OPENPAREN field ( COMMA field )* CLOSEPAREN )
            | ( 'INDEX' | T_KEY | 'FULLTEXT' ) ( objectName )? ( mysql_index_type )?
              OPENPAREN indexEntry ( COMMA indexEntry )* CLOSEPAREN ( mysql_index_type )?
            )
    | T_ALTER ( 'COLUMN' )? objectName alterColumnAction
    | 'CHANGE' ( 'COLUMN' )? objectName field ( columnPosition )?
    | 'MODIFY' ( ( 'COLUMN' )? field ( columnPosition )? | balancedParentheses )
    | 'DROP' ( ( 'COLUMN' )? ( 'IF' 'EXISTS' )? objectName ( 'RESTRICT' | 'CASCADE' )?
             | T_PRIMARY T_KEY
             | ( 'INDEX' | T_KEY ) objectName
             | T_FOREIGN T_KEY objectName
             | 'CONSTRAINT' ( 'IF' 'EXISTS' )? objectName ( 'RESTRICT' | 'CASCADE' )?
             )
    | 'DISABLE' ( 'KEYS' | 'TRIGGER' ( triggerName | 'ALL' | 'USER' )? )
    | 'ENABLE' ( 'KEYS' | 'TRIGGER' ( triggerName | 'ALL' | 'USER' )? )
    | 'RENAME' ( 'TO' objectName | ( 'COLUMN' | 'CONSTRAINT' )? objectName ( 'TO' objectName )? )
    | 'ORDER' 'BY' objectName ( options { greedy = true; } : COMMA objectName )*
    | 'CONVERT' 'TO' ( T_CHARACTER 'SET' | 'CHARSET' ) objectName ( 'COLLATE' objectName )?
    | 'DISCARD' T_TABLESPACE
    | 'IMPORT' T_TABLESPACE
    |
    | 'CLUSTER' 'ON' objectName
    | 'SET' ( 'SCHEMA' objectName | T_TABLESPACE objectName | 'WITHOUT' ( 'CLUSTER' | 'OIDS' )
            | { kp_isAnyWord(LT(1), "LOGGED UNLOGGED") }?=> STRING
            | storage_parameterOptions
            )
    | 'OWNER' 'TO' objectName
    | ( T_CHECK | { kp_isWord(LT(1), "NOCHECK") }?=> STRING ) 'CONSTRAINT' objectName
    ;

// Oracle's storage-only actions: MOVE [ONLINE] [PARTITION p] with new
// storage, SHRINK SPACE, ALLOCATE EXTENT, DEALLOCATE UNUSED.
storage_alteration
    : { kp_isWord(LT(1), "MOVE") }?=> STRING ( 'ONLINE' )? ( ( 'PARTITION' | 'SUBPARTITION' ) nonKeyWordObjectName )?
      ( tableOptionEntry )* ( 'UPDATE' ( 'GLOBAL' )? { kp_isWord(LT(1), "INDEXES") }?=> STRING )?
    | { kp_isWord(LT(1), "SHRINK") }?=> STRING { kp_isWord(LT(1), "SPACE") }?=> STRING
      ( 'COMPACT' )? ( 'CASCADE' )?
    | { kp_isWord(LT(1), "ALLOCATE") }?=> STRING { kp_isWord(LT(1), "EXTENT") }?=> STRING ( balancedParentheses )?
    | 'DEALLOCATE' { kp_isWord(LT(1), "UNUSED") }?=> STRING ( 'KEEP' integer ( objectSizeSuffix )? )?
    ;

// PostgreSQL's RESET (...) and INHERIT parent, Oracle's MODIFY LOB (...)
// (...): nothing reaches the model.
partition_alteration
    : 'MODIFY' 'LOB' OPENPAREN idList CLOSEPAREN OPENPAREN ( lob_parameters )* CLOSEPAREN
    | { kp_isWord(LT(1), "RESET") }?=> STRING storage_parameterOptions
    | { kp_isWord(LT(1), "INHERIT") }?=> STRING qualifiedObjectName
    ;

columnPosition
    : 'FIRST'
    | 'AFTER' objectName
    ;

alterColumnAction
    : 'SET' ( T_DEFAULT fieldDefaultValueEntry
            | T_NOT 'NULL'
            | 'STATISTICS' integer
            | T_STORAGE ( 'PLAIN' | 'EXTERNAL' | 'EXTENDED' | 'MAIN' )
            | ( 'DATA' )? 'TYPE' fieldType
            )
    | 'TYPE' fieldType ( 'USING' boolean_expression )?
    | 'DROP' ( T_DEFAULT | T_NOT 'NULL' )
    | 'ADD' balancedTokens
    ;

// The tokens of a clause the grammar does not spell out, up to its
// COMMA or SEMI; parentheses are balanced.
balancedTokens
    : ( balancedParentheses | ~( OPENPAREN | CLOSEPAREN | COMMA | SEMI ) )*
    ;

// Oracle: ALTER PROCEDURE p COMPILE ... The other forms of other dialects
// are skipped to the end of the statement.
alterProcedureInstruction
    : 'PROCEDURE' qualifiedObjectName ( procedureCompilation | procedureAlteration ) -> IGNORED_NODE
    ;

procedureCompilation
    : 'COMPILE' ( 'DEBUG' )? ( compiler_parameters_clause )* ( 'REUSE' 'SETTINGS' )? ( 'TIMESTAMP' fieldValue )?
      SEMI ( options { greedy = true; } : FORWARD_SLASH )?
    ;

// Anything but COMPILE up to SEMI (a '.' after the name belongs to the name).
procedureAlteration
    : ( ~( 'COMPILE' | '.' | SEMI ) ( ~SEMI )* )? SEMI
    ;

compiler_parameters_clause
    : objectName EQUALS fieldValue
    ;

// Object kinds that the model does not hold.
alterUnsupportedObject
    : ( 'FUNCTION' | 'SEQUENCE' | 'USER' | 'VIEW' | 'INDEX' | 'TRIGGER' | 'DATABASE' | 'SCHEMA'
      | T_TABLESPACE | 'TYPE' | 'EXTENSION' | T_DEFAULT )
      skipToSemi SEMI -> IGNORED_NODE
    ;

unknown_Alter
    : unknownAlterObject -> IGNORED_NODE
    ;

unknownAlterObject
@init { pANTLR3_COMMON_TOKEN first = LT(1); }
    : ~( 'TABLE' | 'PROCEDURE' | 'FUNCTION' | 'SEQUENCE' | 'USER' | 'VIEW' | 'INDEX' | 'TRIGGER'
         | 'DATABASE' | 'SCHEMA' | T_TABLESPACE | 'TYPE' | 'EXTENSION' | T_DEFAULT | 'IGNORE' | SEMI )
      ( ~SEMI )* SEMI
      { kp_logUnknownObjectType(RECOGNIZER, first, "ALTER"); }
    ;
