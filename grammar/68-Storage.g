// Oracle's index clauses (USING INDEX in ALTER TABLE, the options after
// CREATE INDEX) and the physical attribute and storage clauses they use.
// Everything here is consumed; the rules that use it leave nothing of it in
// the tree.

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

parallel_clause
    : 'NOPARALLEL'
    | 'PARALLEL' ( options { greedy = true; } : integer )?
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
      | { kp_isWord(LT(1), "FLASH_CACHE") || kp_isWord(LT(1), "CELL_FLASH_CACHE") }?=> STRING ( T_DEFAULT | 'KEEP' | STRING )
      )+
      CLOSEPAREN
    ;

objectSizeSuffix
    : 'K'
    | 'M'
    ;
