// Keys and indexes of a table definition: PRIMARY KEY, FOREIGN KEY ...
// REFERENCES, and the UNIQUE / INDEX / KEY / FULLTEXT / CLUSTERED index
// forms with their column entries. Reached from subsequentTableEntry after
// the optional CONSTRAINT name. The tree is flat; the state and storage
// options after a key (deferrability of a primary key, Oracle's ENABLE and
// USING INDEX, MySQL's trailing USING BTREE) leave nothing.

tableKeyConstraint
    : primaryKey
    | foreignKeyConstraint ( foreignKeyState )?
    ;

// The key's name is carried but never used. SQL Server's CLUSTERED and
// sort order words leave nothing.
primaryKey
@init { ANTLR3_BOOLEAN clustered = ANTLR3_FALSE; }
    : T_PRIMARY T_KEY ( keyClustering { clustered = ANTLR3_TRUE; } )? ( objectName )? ( keyMethod )?
      OPENPAREN tablePKey[clustered] CLOSEPAREN ( constraint_state )?
    ;

tablePKey[ANTLR3_BOOLEAN sortOrderAllowed]
    : tablePKeyEntry[sortOrderAllowed] ( COMMA tablePKeyEntry[sortOrderAllowed] )*
    ;

// A column name. MySQL's prefix length (s(100)) leaves nothing: the key is
// a flag of its columns. A sort order is reported and dropped, except after
// SQL Server's CLUSTERED or NONCLUSTERED, whose key columns take ASC and
// DESC; the key keeps the column.
tablePKeyEntry[ANTLR3_BOOLEAN sortOrderAllowed]
    : listColumnName ( keyPrefixLength )? ( keySortOrder[sortOrderAllowed] )?
    ;

keyPrefixLength
    : OPENPAREN INT CLOSEPAREN ->
    ;

// SQL Server's memory-optimized tables add HASH to NONCLUSTERED.
keyClustering
    : ( 'CLUSTERED' | 'NONCLUSTERED' ) ( options { greedy = true; } : hashIndex )? ->
    ;

hashIndex
    : T_HASH ->
    ;

// MySQL's index method before a primary key's column list.
keyMethod
    : 'USING' objectName ->
    ;

keySortOrder[ANTLR3_BOOLEAN allowed]
    : order=( 'ASC' | 'DESC' ) { if (!allowed) { kp_reportDroppedToken(RECOGNIZER, $order); } } ->
    ;

foreignKeyConstraint
    : T_FOREIGN T_KEY ( objectName )? OPENPAREN idList CLOSEPAREN references
    ;

// Oracle's state words after a foreign key in a table definition;
// deferrability stays with references.
foreignKeyState
    : ( 'ENABLE' | 'DISABLE' | 'VALIDATE' | 'NOVALIDATE' | 'RELY' | 'NORELY' | exceptions_clause
      | T_NOT 'FOR' { kp_isWord(LT(1), "REPLICATION") }?=> STRING  // SQL Server's NOT FOR REPLICATION
      )+ ->
    ;

// Deferrability and state options of several dialects, in any order, MySQL's
// index method and SQL Server's index options after the column list; none
// reaches the model.
constraint_state
    : ( ( T_NOT )? 'DEFERRABLE'
      | 'INITIALLY' ( 'IMMEDIATE' | 'DEFERRED' )
      | 'ENABLE'
      | 'DISABLE'
      | 'VALIDATE'
      | 'NOVALIDATE'
      | 'RELY'
      | 'NORELY'
      | using_index_clause
      | mysql_index_type
      | exceptions_clause
      | indexStorageOption
      | T_WITH 'FILLFACTOR' EQUALS INT  // SQL Server 2000's form
      | T_WITH { kp_isWord(LT(1), "PARSER") }?=> STRING objectName  // MySQL's full-text parser
      | 'KEY_BLOCK_SIZE' ( EQUALS )? INT
      | { kp_isAnyWord(LT(1), "VISIBLE INVISIBLE") }?=> STRING  // MySQL's index visibility
      | 'COMMENT' QUOTED_STRING  // MySQL's index comment
      )+ ->
    ;

// SQL Server's index options and file group: WITH (PAD_INDEX = OFF, ...) ON
// [PRIMARY]. They leave nothing, also after an index's INCLUDE or WHERE.
indexStorageOption
    : T_WITH storage_parameterOptions ->
    | 'ON' ( objectName | T_PRIMARY ) ->
    ;

// One kind word at most; the name may be the word PRIMARY; SQL Server's
// CLUSTERED or NONCLUSTERED after the name and the method named after USING
// are accepted before the column list. SQL Server's included
// columns and filter stay for the walker.
tableIndex
    : 'UNIQUE' ( nullsDistinct )? ( keyClustering )? ( 'INDEX' | T_KEY )? tableIndexBody
    | nonUniqueIndex
    ;

// Also what MySQL's ALTER TABLE ... ADD INDEX adds.
nonUniqueIndex
    : ( ( 'FULL' 'TEXT' | 'FULLTEXT' | 'CLUSTERED' ) ( 'INDEX' | T_KEY )?
      | 'INDEX'
      | T_KEY
      )
      tableIndexBody
    ;

tableIndexBody
    : ( ( T_PRIMARY | objectName ) ( keyClustering | hashIndex )? )? ( 'USING' objectName )?
      OPENPAREN indexEntry ( COMMA indexEntry )* CLOSEPAREN
      ( constraint_state )?
      ( indexInclude ( indexFilter )? ( indexStorageOption )* | indexFilter ( indexStorageOption )* )?
    ;

// A column, with a prefix length (a(10)) or a name in parentheses (lower(name)
// reads as that form), or else an expression: a function call, an operation,
// or an expression in parentheses (MySQL's functional key parts,
// PostgreSQL's and Oracle's expression indexes).
indexEntry
    : ( columnIndexEntry ( COMMA | CLOSEPAREN ) )=> columnIndexEntry
    | indexExpression ( indexEntryOptions )*
    ;

columnIndexEntry
    : listColumnName ( OPENPAREN ( fieldSize | objectName ) CLOSEPAREN )? ( indexEntryOptions )*
    ;

// The expression's tokens up to the sort order or collation, the COMMA or
// the CLOSEPAREN that ends the entry (parentheses balanced) leave one
// INDEX_EXPRESSION node that carries their text without the parentheses
// around it.
indexExpression
@after { kp_carryIndexExpression(RECOGNIZER, retval.tree, retval.start, LT(-1)); }
    : ( balancedParentheses | listColumnName ) { kp_skipIndexExpressionRest(RECOGNIZER) }?
      -> INDEX_EXPRESSION[$start]
    ;

// Sort order, collation, null ordering and operator classes (which may be
// schema-qualified).
indexEntryOptions
    : 'COLLATE' qualifiedObjectName
    | 'ASC'
    | 'DESC'
    | 'NULLS' ( 'FIRST' | 'LAST' )
    | STRING ( '.' objectName )?
    ;

// INCLUDE (columns) of PostgreSQL and SQL Server.
indexInclude
    : { kp_isWord(LT(1), "INCLUDE") }?=> STRING OPENPAREN idList CLOSEPAREN
    ;

// A partial index's WHERE: the predicate's text rides on the WHERE token.
indexFilter
    : where='WHERE' condition=boolean_expression
      { setCustomStringValueOnToken(RECOGNIZER, $where, $condition.start, $condition.stop); }
      -> $where
    ;
