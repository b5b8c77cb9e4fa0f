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

// A bare column name: no prefix length (that form belongs to indexes). A
// sort order is reported and dropped, except after SQL Server's CLUSTERED or
// NONCLUSTERED, whose key columns take ASC and DESC; the key keeps the column.
tablePKeyEntry[ANTLR3_BOOLEAN sortOrderAllowed]
    : listColumnName ( keySortOrder[sortOrderAllowed] )?
    ;

keyClustering
    : ( 'CLUSTERED' | 'NONCLUSTERED' ) ->
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
    : ( 'ENABLE' | 'DISABLE' | 'VALIDATE' | 'NOVALIDATE' | 'RELY' | 'NORELY' | exceptions_clause )+ ->
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
      | 'COMMENT' QUOTED_STRING  // MySQL's index comment
      )+ ->
    ;

// SQL Server's index options and file group: WITH (PAD_INDEX = OFF, ...) ON [PRIMARY].
indexStorageOption
    : T_WITH storage_parameterOptions
    | 'ON' ( objectName | T_PRIMARY )
    ;

// One kind word at most; the name may be the word PRIMARY; the method named
// after USING is accepted before the column list.
tableIndex
    : ( ( 'FULL' 'TEXT' | 'FULLTEXT' | 'CLUSTERED' ) ( 'INDEX' | T_KEY )?
      | 'UNIQUE' ( keyClustering )? ( 'INDEX' | T_KEY )?
      | 'INDEX'
      | T_KEY
      )
      ( T_PRIMARY | objectName )? ( 'USING' objectName )?
      OPENPAREN indexEntry ( COMMA indexEntry )* CLOSEPAREN ( constraint_state )?
    ;

// A column, with a prefix length (a(10)) or a name in parentheses (an
// expression such as lower(name) in CREATE INDEX).
indexEntry
    : listColumnName ( OPENPAREN ( fieldSize | objectName ) CLOSEPAREN )? ( indexEntryOptions )*
    ;

// Sort order, collation, null ordering and operator classes.
indexEntryOptions
    : 'COLLATE' objectName
    | 'ASC'
    | 'DESC'
    | 'NULLS' ( 'FIRST' | 'LAST' )
    | STRING
    ;
