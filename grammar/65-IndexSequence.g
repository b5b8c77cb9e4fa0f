// CREATE INDEX and CREATE SEQUENCE. createObject matches CREATE, TEMPORARY
// and the closing SEMI; CREATE INDEX is also reached from USING INDEX
// (CREATE INDEX ...) in ALTER TABLE. Both trees are flat.

createIndex
    : createIndexCore createIndexOptions
    ;

// Index and table names may be schema-qualified; the table's may be a
// column keyword (CREATE INDEX i ON key (a)). CONCURRENTLY, ONLY (an
// index of a partitioned table) and the method (any name: btree, gin, hnsw
// ...) are accepted and ignored. SQL Server's NONCLUSTERED (the default)
// leaves no node, nor does CLUSTERED after UNIQUE: the index type is one
// word, as is MySQL's FULLTEXT, and so are SPATIAL (MySQL, SQL Server) and
// Oracle's BITMAP, which stay words.
createIndexCore
    : ( 'UNIQUE' ( 'CLUSTERED'! | 'NONCLUSTERED'! )? | 'CLUSTERED' | 'NONCLUSTERED'! | 'FULLTEXT'
      | { kp_isAnyWord(LT(1), "SPATIAL BITMAP") && kp_isKeyword(LT(2), "INDEX") }?=> STRING
      )?
      'INDEX' ( 'CONCURRENTLY' )? qualifiedObjectName
      'ON' ( { kp_isKeyword(LT(1), "ONLY") }?=> 'ONLY' )? anyQualifiedName
      ( 'USING' using_index_method )?
      OPENPAREN indexEntry ( COMMA indexEntry )* CLOSEPAREN
    ;

// BTREE, HASH and the other methods are names; GIST and GIN name columns only.
using_index_method
    : objectName
    | 'GIST'
    | 'GIN'
    ;

// What the dialects write after the column list: storage parameters, MySQL's
// method and comment, SQL Server's file group, Oracle's index clauses leave
// nothing; a partial index's WHERE and the included columns stay for the
// walker.
createIndexOptions
    : ( createIndexOption | indexInclude | indexFilter )*
    ;

createIndexOption
    : indexStorageOption ->
    | mysql_index_type ->
    | spatialIndexGrid ->
    | 'COMMENT' ( STRING | QUOTED_STRING ) ->
    | global_partioned_index ->
    | local_partioned_index ->
    | index_attributes ->
    | domain_index_clause ->
    ;

// SQL Server's tessellation scheme of a spatial index.
spatialIndexGrid
    : 'USING' { kp_isAnyWord(LT(1), "GEOMETRY_GRID GEOGRAPHY_GRID GEOMETRY_AUTO_GRID GEOGRAPHY_AUTO_GRID") }?=> STRING
    ;

// Options in any order, repeatable, none required. Oracle and PostgreSQL
// spellings stand side by side; sequences do not reach the model.
createSequence
    : 'SEQUENCE' ( 'TEMP' | 'TEMPORARY' )? ( 'IF' T_NOT 'EXISTS' )? qualifiedObjectName ( sequenceOption )*
    ;

sequenceOption
    : 'AS' fieldType
    | 'MINVALUE' integer
    | T_NO 'MINVALUE'
    | 'NOMINVALUE'
    | 'MAXVALUE' integer
    | T_NO 'MAXVALUE'
    | 'NOMAXVALUE'
    | 'START' ( T_WITH )? integer
    | 'CACHE' integer
    | 'NOCACHE'
    | T_NO 'CACHE'
    | ( T_NO )? 'CYCLE'
    | 'NOCYCLE'
    | 'ORDER'
    | 'NOORDER'
    | 'OWNED' 'BY' ( qualifiedColumnName | 'NONE' )
    | 'INCREMENT' ( 'BY' )? integer
    ;
