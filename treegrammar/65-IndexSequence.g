// CREATE INDEX builds an index of a table that is already in the container
// (a missing table drops it, silently); CREATE SEQUENCE is matched and makes
// nothing.

// UNIQUE, CLUSTERED, FULLTEXT, SPATIAL and BITMAP become the index type; a schema prefix on
// the index name is dropped. The index is added once its column list is
// read, so a broken trailing option does not lose it; its included columns
// and filter then become its properties.
createIndex[SQLContainer *c]
@init { std::unique_ptr<SQLIndex> index = kp_newStatementIndex(); SQLIndex *added = NULL; }
    : ( 'UNIQUE' { kp_setIndexType(index.get(), "UNIQUE"); }
      | 'CLUSTERED' { kp_setIndexType(index.get(), "CLUSTERED"); }
      | 'FULLTEXT' { kp_setIndexType(index.get(), "FULLTEXT"); }
      | kind=STRING { kp_setIndexTypeFromWord(index.get(), $kind); }  // SPATIAL or BITMAP
      )?
      'INDEX' ( 'CONCURRENTLY' )? name=qualifiedObjectName { kp_setIndexNameFromParts(index.get(), $name.parts); }
      'ON' ( 'ONLY' )? target=qualifiedObjectName
      ( 'USING' ( using_index_method | errorNode ) )?
      OPENPAREN indexEntry[index.get()] ( COMMA indexEntry[index.get()] )* CLOSEPAREN
      { added = kp_addIndexToNamedTable(c, $target.parts, std::move(index)); }
      ( indexClause[added] | errorNode )*
    ;

// The method is ignored.
// BTREE, HASH and the other methods are names; GIST and GIN name columns only.
using_index_method
    : objectName
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
