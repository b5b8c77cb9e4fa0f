// Physical storage, organisation and partitioning clauses: Oracle's index
// clauses (USING INDEX in ALTER TABLE, the options after CREATE INDEX), the
// clauses after a table of every dialect (reached from tableOptionEntry
// through table_properties_ignore) and the physical attribute and storage
// clauses they share. Everything here is consumed; the rules that use it
// leave nothing of it in the tree.

index_properties
    : ( global_partioned_index | local_partioned_index | index_attributes )*
    | domain_index_clause
    ;

global_partioned_index
    : 'GLOBAL' 'PARTITION' 'BY'
      ( 'RANGE' OPENPAREN idList CLOSEPAREN
        OPENPAREN index_partitioning_clause ( COMMA index_partitioning_clause )* CLOSEPAREN
      | T_HASH OPENPAREN idList CLOSEPAREN ( individual_hash_partitions | hash_partitions_by_quanitity )
      )
    ;

// PARTITION p VALUES LESS THAN (MAXVALUE) TABLESPACE ts
index_partitioning_clause
    : 'PARTITION' ( objectName )? 'VALUES' 'LESS' 'THAN' OPENPAREN partitionBound ( COMMA partitionBound )* CLOSEPAREN
      ( segment_attributes_clause )*
    ;

// A literal, MAXVALUE, or a conversion such as TO_DATE('2001-01-01', 'YYYY-MM-DD').
partitionBound
    : integer
    | objectName ( OPENPAREN ( partitionBoundArgument ( COMMA partitionBoundArgument )* )? CLOSEPAREN )?
    ;

partitionBoundArgument
    : integer
    | objectName
    ;

hash_partitions_by_quanitity
    : 'PARTITIONS' integer ( 'STORE' 'IN' OPENPAREN idList CLOSEPAREN )?
      ( 'OVERFLOW' 'STORE' 'IN' OPENPAREN idList CLOSEPAREN )?
    ;

individual_hash_partitions
    : OPENPAREN hash_partition_entry ( COMMA hash_partition_entry )* CLOSEPAREN
    ;

// A name that is also a storage word (OVERFLOW) is taken as the name.
hash_partition_entry
    : 'PARTITION' ( options { greedy = true; } : objectName )? partitioning_storage_clause
    ;

partitioning_storage_clause
    : ( 'OVERFLOW'
      | T_TABLESPACE objectName
      | 'LOB' OPENPAREN objectName CLOSEPAREN 'STORE' 'AS'
        ( objectName ( OPENPAREN T_TABLESPACE objectName CLOSEPAREN )? | OPENPAREN T_TABLESPACE objectName CLOSEPAREN )
      | 'VARRAY' objectName 'STORE' 'AS' 'LOB' objectName
      )*
    ;

// LOCAL, with its tablespaces or its partitions (and their subpartitions).
local_partioned_index
    : 'LOCAL' ( on_partitioned_table | on_comp_partitioned_table )?
    ;

on_partitioned_table
    : OPENPAREN partition_entry ( COMMA partition_entry )* CLOSEPAREN
    ;

on_comp_partitioned_table
    : store_in_tablespace ( on_partitioned_table )?
    ;

store_in_tablespace
    : 'STORE' 'IN' OPENPAREN ( idList | T_DEFAULT ) CLOSEPAREN
    ;

partition_entry
    : 'PARTITION' ( objectName )? ( segment_attributes_clause | key_compression )* ( index_subpartition_clause )?
    ;

index_subpartition_clause
    : store_in_tablespace
    | OPENPAREN subpartition_entry ( COMMA subpartition_entry )* CLOSEPAREN
    ;

subpartition_entry
    : 'SUBPARTITION' ( objectName )? ( T_TABLESPACE objectName )?
    ;

// One attribute; index_properties repeats them.
index_attributes
    : physical_attributes_clause
    | logging_clause
    | 'ONLINE'
    | 'COMPUTE' 'STATISTICS'
    | T_TABLESPACE ( objectName | T_DEFAULT )
    | key_compression
    | 'SORT'
    | 'NOSORT'
    | 'REVERSE'
    | parallel_clause
    ;

// PARALLEL, PARALLEL 4, PARALLEL (DEGREE 4 INSTANCES 1). One token decides
// (k = 1): the tool sees an empty pair of parentheses in balancedParentheses,
// so a longer look-ahead would take only PARALLEL () for the parameters.
parallel_clause
    : 'NOPARALLEL'
    | 'PARALLEL' ( options { greedy = true; k = 1; } : integer | balancedParentheses )?
    ;

domain_index_clause
    : 'INDEXTYPE' 'IS' qualifiedObjectName ( options { greedy = true; } : parallel_clause )?
      ( 'PARAMETERS' OPENPAREN QUOTED_STRING CLOSEPAREN )?
    ;

segment_attributes_clause
    : physical_attributes_clause
    | T_TABLESPACE qualifiedObjectName
    | logging_clause
    ;

logging_clause
    : 'LOGGING'
    | 'NOLOGGING'
    ;

// COMPRESS takes an optional prefix length.
key_compression
    : 'COMPRESS' ( options { greedy = true; } : integer )?
    | 'NOCOMPRESS'
    ;

physical_attributes_clause
    : ( 'PCTFREE' | 'PCTUSED' | 'INITRANS' | 'MAXTRANS' ) integer
    | storage_clause
    ;

// STORAGE (INITIAL 64K NEXT 1M MINEXTENTS 1 MAXEXTENTS UNLIMITED ...). Newer
// exports add FLASH_CACHE and CELL_FLASH_CACHE, plain words to the lexer.
storage_clause
    : T_STORAGE OPENPAREN
      ( 'INITIAL' integer ( objectSizeSuffix )?
      | 'NEXT' integer ( objectSizeSuffix )?
      | 'MINEXTENTS' integer
      | 'MAXEXTENTS' ( integer | 'UNLIMITED' )
      | 'PCTINCREASE' integer
      | 'FREELISTS' integer
      | 'FREELIST' 'GROUPS' integer
      | 'OPTIMAL' ( integer ( objectSizeSuffix )? | 'NULL' )
      | 'BUFFER_POOL' ( T_DEFAULT | 'KEEP' | 'RECYCLE' )
      | { kp_isAnyWord(LT(1), "FLASH_CACHE CELL_FLASH_CACHE") }?=> STRING ( T_DEFAULT | 'KEEP' | STRING )
      | { kp_isWord(LT(1), "MAXSIZE") }?=> STRING ( 'UNLIMITED' | integer ( objectSizeSuffix )? )
      | { kp_isWord(LT(1), "ENCRYPT") }?=> STRING
      )+
      CLOSEPAREN
    ;

objectSizeSuffix
    : 'K'
    | 'M'
    | { kp_isAnyWord(LT(1), "G T P E") }?=> STRING
    ;

// ---- After a table ----------------------------------------------------------
// One clause a turn: tableOption repeats them in any order.

// Oracle's segment attributes, compression, organisation, parallelism,
// caching, row movement and table state words; MySQL's STORAGE DISK;
// PostgreSQL's USING method (TABLESPACE is a segment attribute).
physical_properties
    : segment_attributes_clause
    | table_compression
    | 'ORGANIZATION' ( 'HEAP' | 'INDEX' | 'EXTERNAL' external_table_clause )
    | index_org_table_clause
    | 'CLUSTER' qualifiedObjectName OPENPAREN idList CLOSEPAREN
    | parallel_clause
    | 'CACHE'
    | 'NOCACHE'
    | ( 'ENABLE' | 'DISABLE' ) 'ROW' { kp_isWord(LT(1), "MOVEMENT") }?=> STRING
    | { kp_isWord(LT(1), "SEGMENT") }?=> STRING { kp_isWord(LT(1), "CREATION") }?=> STRING ( 'IMMEDIATE' | 'DEFERRED' )
    | { kp_isAnyWord(LT(1), "MONITORING NOMONITORING ROWDEPENDENCIES NOROWDEPENDENCIES INMEMORY NOINMEMORY") }?=> STRING
    | { kp_isWord(LT(1), "MEMCOMPRESS") }?=> STRING 'FOR' compression_level
    | { kp_isWord(LT(1), "PRIORITY") }?=> STRING ( 'NONE' | STRING )
    | { kp_isWord(LT(1), "FLASHBACK") }?=> STRING { kp_isWord(LT(1), "ARCHIVE") }?=> STRING ( options { greedy = true; } : nonKeyWordObjectName )?
    | T_NO { kp_isAnyWord(LT(1), "FLASHBACK MEMCOMPRESS INMEMORY") }?=> STRING ( options { greedy = true; } : { kp_isWord(LT(1), "ARCHIVE") }?=> STRING )?
    | { kp_isWord(LT(1), "RESULT_CACHE") }?=> STRING OPENPAREN 'MODE' ( T_DEFAULT | 'FORCE' ) CLOSEPAREN
    | T_STORAGE { kp_isAnyWord(LT(1), "DISK MEMORY") }?=> STRING
    | 'USING' objectName
    ;

// COMPRESS [n | BASIC | ADVANCED | FOR OLTP | FOR QUERY HIGH ...], NOCOMPRESS,
// ROW STORE COMPRESS ..., COLUMN STORE COMPRESS FOR ...; a LOB's COMPRESS
// HIGH too.
table_compression
    : 'COMPRESS' ( options { greedy = true; } : compression_kind )?
    | 'NOCOMPRESS'
    | ( 'ROW' | 'COLUMN' ) 'STORE' ( 'COMPRESS' ( options { greedy = true; } : compression_kind )? | 'NOCOMPRESS' )
    ;

compression_kind
    : integer
    | 'FOR' compression_level
    | { kp_isAnyWord(LT(1), "BASIC ADVANCED HIGH MEDIUM LOW") }?=> STRING
    ;

// OLTP, ALL OPERATIONS, DIRECT_LOAD OPERATIONS, QUERY [LOW | HIGH], ARCHIVE [LOW | HIGH].
compression_level
    : 'ALL' STRING
    | STRING ( options { greedy = true; } : { kp_isAnyWord(LT(1), "LOW HIGH OPERATIONS") }?=> STRING )?
    ;

// The parts of an index-organized table's clause, one a turn; OVERFLOW's
// segment attributes follow as clauses of their own.
index_org_table_clause
    : 'PCTTHRESHOLD' integer
    | 'INCLUDING' objectName
    | 'OVERFLOW'
    | 'OVERFLOW '
    | { kp_isWord(LT(1), "MAPPING") }?=> STRING 'TABLE'
    ;

// (TYPE oracle_loader DEFAULT DIRECTORY d ACCESS PARAMETERS (...) LOCATION ('f'))
// REJECT LIMIT UNLIMITED. The access parameters are the driver's own
// language; they are taken as a balanced list.
external_table_clause
    : OPENPAREN ( 'TYPE' objectName )? ( T_DEFAULT 'DIRECTORY' objectName )?
      ( { kp_isWord(LT(1), "ACCESS") }?=> STRING 'PARAMETERS' balancedParentheses )?
      ( { kp_isWord(LT(1), "LOCATION") }?=> STRING balancedParentheses )?
      CLOSEPAREN ( 'REJECT' 'LIMIT' ( integer | 'UNLIMITED' ) )?
    ;

// Storage of LOB, VARRAY, nested table and object type columns.
table_properties
    : column_properties
    ;

column_properties
    : lob_storage_clause ( OPENPAREN lob_partition_storage ( COMMA lob_partition_storage )* CLOSEPAREN )?
    | varray_col_properties
    | nested_table_col_properties
    | object_type_col_properties
    ;

// LOB (doc) STORE AS [SECUREFILE | BASICFILE] [doc_seg] [(parameters)]
lob_storage_clause
    : 'LOB' OPENPAREN idList CLOSEPAREN 'STORE' 'AS'
      ( options { greedy = true; } : { kp_isAnyWord(LT(1), "SECUREFILE BASICFILE") }?=> STRING )?
      ( options { greedy = true; } : lob_segname )?
      ( options { greedy = true; } : OPENPAREN ( lob_parameters )* CLOSEPAREN )?
    ;

lob_segname
    : nonKeyWordObjectName
    ;

lob_partition_storage
    : 'PARTITION' nonKeyWordObjectName ( lob_storage_clause | varray_col_properties )+
      ( OPENPAREN 'SUBPARTITION' nonKeyWordObjectName ( lob_storage_clause | varray_col_properties )+ CLOSEPAREN )?
    ;

lob_parameters
    : T_TABLESPACE objectName
    | ( 'ENABLE' | 'DISABLE' ) T_STORAGE 'IN' 'ROW'
    | storage_clause
    | 'CHUNK' integer
    | 'PCTVERSION' integer
    | 'RETENTION' ( options { greedy = true; } : 'MAX' | 'NONE' | { kp_isWord(LT(1), "AUTO") }?=> STRING
                  | { kp_isWord(LT(1), "MIN") }?=> STRING integer )?
    | 'FREEPOOLS' integer
    | 'CACHE' ( options { greedy = true; } : 'READS' )?
    | 'NOCACHE'
    | logging_clause
    | table_compression
    | { kp_isAnyWord(LT(1), "FILESYSTEM_LIKE_LOGGING DEDUPLICATE KEEP_DUPLICATES ENCRYPT DECRYPT") }?=> STRING
    ;

// VARRAY v [IS OF TYPE (ONLY t) | [NOT] SUBSTITUTABLE AT ALL LEVELS] STORE AS [SECUREFILE | BASICFILE] LOB seg [(parameters)]
varray_col_properties
    : 'VARRAY' qualifiedObjectName ( substitutable_column_clause )? 'STORE' 'AS'
      ( options { greedy = true; } : { kp_isAnyWord(LT(1), "SECUREFILE BASICFILE") }?=> STRING )? 'LOB'
      ( options { greedy = true; } : lob_segname )?
      ( options { greedy = true; } : OPENPAREN ( lob_parameters )* CLOSEPAREN )?
    ;

// NESTED TABLE col STORE AS storage_table [RETURN AS LOCATOR | VALUE]
nested_table_col_properties
    : 'NESTED' 'TABLE' qualifiedObjectName ( substitutable_column_clause )? 'STORE' 'AS' objectName
      ( options { greedy = true; } : 'RETURN' ( 'AS' )? ( 'VALUE' | { kp_isWord(LT(1), "LOCATOR") }?=> STRING ) )?
    ;

object_type_col_properties
    : 'COLUMN' qualifiedColumnName substitutable_column_clause
    ;

substitutable_column_clause
    : ( 'ELEMENT' )? 'IS' 'OF' ( 'TYPE' )? OPENPAREN ( 'ONLY' )? fieldType CLOSEPAREN
    | ( T_NOT )? 'SUBSTITUTABLE' 'AT' 'ALL' 'LEVELS'
    ;

// PARTITION BY of every dialect. Oracle: RANGE, LIST, HASH, REFERENCE or
// SYSTEM, INTERVAL, subpartitioning, PARTITIONS n or the partition list;
// MySQL: [LINEAR] HASH or KEY, RANGE or LIST [COLUMNS], PARTITIONS n,
// SUBPARTITION BY, the partition list (also inside /*!50100 ... */);
// PostgreSQL: the method and its key only.
table_partitioning_clauses
    : 'PARTITION' 'BY' partition_method
      ( 'INTERVAL' balancedParentheses ( store_in_tablespace )? )?
      ( hash_partitions_by_quanitity ( subpartition_by_clause )?
      | subpartition_by_clause ( hash_partitions_by_quanitity )?
      )?
      ( OPENPAREN table_partition ( COMMA table_partition )* CLOSEPAREN )?
    ;

// The key is a column list or expressions (YEAR(created), (lower(name)) opclass).
// One token and the words' predicates decide (k = 1): the tool sees an empty
// pair of parentheses in balancedParentheses, so a longer look-ahead would
// take LIST only before ().
partition_method
options { k = 1; }
    : ( 'RANGE' | { kp_isWord(LT(1), "LIST") }?=> STRING ) ( { kp_isWord(LT(1), "COLUMNS") }?=> STRING )? balancedParentheses
    | ( { kp_isWord(LT(1), "LINEAR") }?=> STRING )? ( T_HASH | T_KEY ( 'ALGORITHM' EQUALS integer )? ) balancedParentheses
    | { kp_isWord(LT(1), "REFERENCE") }?=> STRING OPENPAREN objectName CLOSEPAREN
    | { kp_isWord(LT(1), "SYSTEM") }?=> STRING
    ;

// SUBPARTITION BY method [SUBPARTITIONS n [STORE IN (...)] | SUBPARTITION TEMPLATE (...)]
subpartition_by_clause
    : 'SUBPARTITION' 'BY' partition_method
      ( { kp_isWord(LT(1), "SUBPARTITIONS") }?=> STRING integer ( store_in_tablespace )?
      | 'SUBPARTITION' { kp_isWord(LT(1), "TEMPLATE") }?=> STRING ( balancedParentheses | integer )
      )?
    ;

// PARTITION p VALUES LESS THAN (...) | VALUES [IN] (...), then its storage
// (Oracle's segment attributes and LOB storage, MySQL's ENGINE, COMMENT,
// directories ...) and its subpartitions.
table_partition
    : 'PARTITION' ( options { greedy = true; k = 1; } : { kp_partitionNameAhead(RECOGNIZER) }?=> partitionName )?
      ( partition_values )? ( partition_option )*
      ( OPENPAREN table_subpartition ( COMMA table_subpartition )* CLOSEPAREN )?
    ;

table_subpartition
    : 'SUBPARTITION' ( options { greedy = true; k = 1; } : { kp_partitionNameAhead(RECOGNIZER) }?=> partitionName )?
      ( partition_values )? ( partition_option )*
    ;

// A partition's name: a word, keywords too (max, default, data), where
// what follows shows it is the name (kp_partitionNameAhead); a keyword
// followed by anything else reads as an option. (The tokens are listed: a
// complement set in a decision with a gated predicate stops the antlr3 tool.)
partitionName
    : objectName
    | columnKeyword
    | T_DEFAULT
    ;

partition_values
    : 'VALUES' ( 'LESS' 'THAN' ( balancedParentheses | 'MAXVALUE' ) | ( 'IN' )? balancedParentheses )
    ;

partition_option
    : physical_properties
    | table_properties
    | ( T_STORAGE )? 'ENGINE' ( EQUALS )? objectName
    | 'COMMENT' ( EQUALS )? ( QUOTED_STRING | STRING )
    | mysql_unsupported_table_property
    | T_TABLESPACE EQUALS objectName
    | { kp_isWord(LT(1), "NODEGROUP") }?=> STRING ( EQUALS )? integer
    | { kp_isWord(LT(1), "SUBPARTITIONS") }?=> STRING integer ( store_in_tablespace )?
    ;

// A parenthesised list whose inside the model has no use for (partition
// keys and bounds, access parameters, index expressions, clauses the grammar
// does not spell out): the helper consumes it up to the CLOSEPAREN that
// closes it (parentheses balanced, stopping early at the statement's end),
// without recursion, so nesting depth costs nothing. It is called as a
// predicate (always true) so that it also runs when an enclosing syntactic
// predicate tries the tokens ahead, where actions are not run. Decisions see
// an empty pair of parentheses here: none may need to look past the
// OPENPAREN to choose an alternative.
balancedParentheses
    : OPENPAREN { kp_skipToClosingParenthesis(RECOGNIZER) }? CLOSEPAREN
    ;
