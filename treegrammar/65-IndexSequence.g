// CREATE INDEX builds an index of a table that is already in the container
// (a missing table drops it, silently); CREATE SEQUENCE is matched and makes
// nothing.

// UNIQUE and CLUSTERED become the index type; a schema prefix on the index
// name is dropped. The index is added once its column list is read, so a
// broken trailing option does not lose it.
createIndex[SQLContainer *c]
@init { std::unique_ptr<SQLIndex> index = kp_newStatementIndex(); }
    : ( 'UNIQUE' { kp_setIndexType(index.get(), "UNIQUE"); }
      | 'CLUSTERED' { kp_setIndexType(index.get(), "CLUSTERED"); }
      )?
      'INDEX' ( 'CONCURRENTLY' )? name=qualifiedObjectName { kp_setIndexNameFromParts(index.get(), $name.parts); }
      'ON' ( 'ONLY' )? target=qualifiedObjectName
      ( 'USING' ( using_index_method | errorNode ) )?
      OPENPAREN indexEntry[index.get()] ( COMMA indexEntry[index.get()] )* CLOSEPAREN
      { kp_addIndexToNamedTable(c, $target.parts, std::move(index)); }
      ( errorNode )*
    ;

using_index_method
    : 'BTREE'
    | T_HASH
    | 'GIST'
    | 'GIN'
    ;

createSequence[SQLContainer *c]
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
