// Keys, indexes and foreign keys of a table definition, and the key forms
// that ALTER TABLE adds. Each rule matches its tree first; the model call
// comes at the end, so a rule that failed to match changes nothing.
//
// The rules of a table entry leave a node that does not fit to their caller
// (catch clauses that do not recover): subsequentTableEntry then skips the
// whole entry, so the table's later entries are still walked.

// The primary key's name and the CONSTRAINT name are not used for primary
// keys.
tableKeyConstraint[SQLTable *table, const std::string *constraintName]
    : T_PRIMARY T_KEY ( objectName )? OPENPAREN tablePKey[table] CLOSEPAREN ( 'USING' 'INDEX' )?
    | foreignKey[table, constraintName]
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

tablePKey[SQLTable *table]
    : tablePKeyEntry[table] ( COMMA tablePKeyEntry[table] )*
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

tablePKeyEntry[SQLTable *table]
    : name=qualifiedObjectName { kp_setPrimaryKeyColumn(table, $name.start); }
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// The driver links the key: a one-column reference lives on its field, the
// others become a foreign key of the table. A later ON UPDATE or ON DELETE
// wins over an earlier one.
foreignKey[SQLTable *table, const std::string *constraintName]
@init { KpForeignKeyClause clause; }
    : foreignWord=T_FOREIGN T_KEY ( keyName=objectName { clause.keyName = kp_nodeText($keyName.start); } )?
      OPENPAREN local=idList CLOSEPAREN { clause.localColumns = $local.names; }
      'REFERENCES' target=qualifiedObjectName { clause.targetParts = $target.parts; }
      ( OPENPAREN foreign=idList CLOSEPAREN { clause.targetColumns = $foreign.names; } )?
      ( ON_UPDATE onUpdate=referenceActionType { clause.updateAction = $onUpdate.code; }
      | ON_DELETE onDelete=referenceActionType { clause.deleteAction = $onDelete.code; }
      | isDeferrable=deferrable { clause.deferrable = $isDeferrable.value; }
      | isDeferred=initiallyDeferred { clause.initiallyDeferred = $isDeferred.value; }
      )*
      { kp_addTableForeignKey(RECOGNIZER, table, constraintName, $foreignWord, clause); }
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// UNIQUE makes a unique constraint, the other forms an index (typed by the
// kind word; MySQL's SPATIAL arrives as a FULLTEXT node that keeps its text).
// The name may be the word PRIMARY; the USING method is ignored. Included
// columns and a filter become properties of the index once it is added.
tableIndex[SQLTable *table, const std::string *constraintName]
@init { std::unique_ptr<SQLIndex> index; }
    : 'UNIQUE' { index = kp_newUniqueConstraint(); } ( 'INDEX' | T_KEY )? tableIndexBody[table, index.release()]
    | nonUniqueIndex[table]
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// Also what MySQL's ALTER TABLE ... ADD INDEX adds.
nonUniqueIndex[SQLTable *table]
@init { std::unique_ptr<SQLIndex> index; }
    : ( 'FULL' 'TEXT' { index = kp_newTableIndex("FULL TEXT"); } ( 'INDEX' | T_KEY )?
      | kind='FULLTEXT' { index = kp_newKindWordIndex($kind); } ( 'INDEX' | T_KEY )?
      | 'CLUSTERED' { index = kp_newClusteredIndex(); } ( 'INDEX' | T_KEY )?
      | ( 'INDEX' | T_KEY ) { index = kp_newTableIndex(NULL); }
      )
      tableIndexBody[table, index.release()]
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// Takes ownership of the index it is given.
tableIndexBody[SQLTable *table, SQLIndex *newIndex]
@init { std::unique_ptr<SQLIndex> index(newIndex); SQLIndex *added = NULL; }
    : ( primary=T_PRIMARY { kp_setIndexName(index.get(), $primary); }
      | name=objectName { kp_setIndexName(index.get(), $name.start); }
      )?
      ( 'USING' objectName )?
      OPENPAREN indexEntry[index.get()] ( COMMA indexEntry[index.get()] )* CLOSEPAREN
      { added = kp_addTableIndex(table, std::move(index)); }
      ( indexClause[added] )*
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// A column with its prefix length, or with a name in parentheses; or an
// expression, named by its text.
indexEntry[SQLIndex *index]
@init { pANTLR3_BASE_TREE prefixSize = NULL; pANTLR3_BASE_TREE innerName = NULL; }
    : column=objectName
      ( OPENPAREN ( size=fieldSize { prefixSize = $size.start; } | inner=objectName { innerName = $inner.start; } )
        CLOSEPAREN
      )?
      ( indexEntryOptions )*
      { kp_addIndexEntry(index, $column.start, prefixSize, innerName); }
    | expression=INDEX_EXPRESSION ( indexEntryOptions )*
      { kp_addIndexExpressionEntry(index, $expression); }
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
    }

// Sort order, collation, null ordering and operator classes do not reach
// the model.
indexEntryOptions
    : 'COLLATE' qualifiedObjectName
    | 'ASC'
    | 'DESC'
    | 'NULLS' ( 'FIRST' | 'LAST' )
    | STRING ( '.' objectName )?
    ;

// INCLUDE (columns) and a partial index's WHERE, after the column list.
indexClause[SQLIndex *index]
    : STRING OPENPAREN included=idList CLOSEPAREN { kp_setIndexIncludedColumns(index, $included.names); }
    | where='WHERE' { kp_setIndexFilterFromToken(index, $where); }
    ;

// ALTER TABLE ... ADD PRIMARY KEY hands the whole column list to the table;
// ADD UNIQUE makes an index of type UNIQUE, whose entries are read as in a
// table definition. Deferrability is matched only.
alterPrimaryKey[SQLTable *table]
@init { pANTLR3_BASE_TREE uniqueName = NULL; SQLIndex *unique = NULL; }
    : T_PRIMARY T_KEY ( objectName )? OPENPAREN keyColumns=idList CLOSEPAREN ( deferrableOptions[NULL] )?
      { kp_setPrimaryKeyColumns(table, $keyColumns.names); }
    | 'UNIQUE' ( 'INDEX' | T_KEY )? ( name=objectName { uniqueName = $name.start; } )?
      OPENPAREN { unique = kp_addUniqueKey(table, uniqueName); }
      indexEntry[unique] ( COMMA indexEntry[unique] )* CLOSEPAREN ( deferrableOptions[NULL] )?
    ;
