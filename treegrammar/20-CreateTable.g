// CREATE TABLE: the table is created and added to the container as soon as
// its name is read, so that whatever fails later leaves it with the columns
// read so far. ERROR_NODEs that the parser left in the column list or among
// the options become records and the walk goes on.

createTable[SQLContainer *c]
@init { SQLTable *table = NULL; }
    : 'TABLE' ( 'IF' T_NOT 'EXISTS' )?
      ( name=qualifiedObjectName { table = kp_beginTable(c, $name.parts); }
      | errorNode  // no name: the columns are walked without a table
      )
      ( OPENPAREN ( subsequentTableEntry[table] ( COMMA subsequentTableEntry[table] )* )?
        ( CLOSEPAREN ( tableOption[c, table] )? )?
      | partitionOfParent[c, table] ( tableOption[c, table] )?
      | errorNode
      )
    ;

// PostgreSQL's partition has its parent's columns; its own list holds
// constraints and column options.
partitionOfParent[SQLContainer *c, SQLTable *table]
    : 'PARTITION' 'OF'
      parent=qualifiedObjectName { kp_inheritColumns(c, table, $parent.parts, "partitionOf"); }
      ( OPENPAREN ( subsequentTableEntry[table] ( COMMA subsequentTableEntry[table] )* )? CLOSEPAREN )?
    ;

// PostgreSQL's INHERITS (parent, ...): the parents' columns that the table
// does not declare itself are added after its own.
inheritsClause[SQLContainer *c, SQLTable *table]
    : STRING OPENPAREN
      first=qualifiedObjectName { kp_inheritColumns(c, table, $first.parts, "inherits"); }
      ( COMMA next=qualifiedObjectName { kp_inheritColumns(c, table, $next.parts, "inherits"); } )*
      CLOSEPAREN
    ;

tableName
    : objectName
    ;

// An entry that does not fit its pattern is skipped to its end. A column's
// name reaches the walker as a STRING (see the parser's columnName), so
// CHECK always starts a check constraint here.
subsequentTableEntry[SQLTable *table]
@init { std::string constraintName; ANTLR3_MARKER entryStart = INDEX(); }
    : ( 'CONSTRAINT' cn=objectName { constraintName = kp_nodeText($cn.start); }
        ( checkConstraint[table, &constraintName]
        | tableKeyConstraint[table, &constraintName]
        | tableIndex[table, &constraintName]
        | errorNode
        )
      | checkConstraint[table, NULL]
      | tableKeyConstraint[table, NULL]
      | tableIndex[table, NULL]
      ) ( errorNode )*
    | IGNORED_NODE  // PostgreSQL's LIKE parent
    | { LA(1) != T_CHECK }?=> fieldBlock[table] ( errorNode )*
    | ( errorNode )+
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        PREPORTERROR();
        kp_skipToTableEntryEndInTree(RECOGNIZER, entryStart);
        kp_forgetRecognitionError(RECOGNIZER);
    }

tableOption[SQLContainer *c, SQLTable *table]
@init { pANTLR3_BASE_TREE collation = NULL; }
    : ( ( 'TYPE' | 'ENGINE' ) EQUALS engine=STRING { kp_setTableType(table, $engine); }
      | inheritsClause[c, table]
      | tableComment[table]
      | 'AUTO_INCREMENT' EQUALS fieldSize
      | ( T_DEFAULT )?
        ( ( T_CHARACTER 'SET' | 'CHARSET' ) ( EQUALS )? charset=( STRING | QUOTED_STRING )
          { kp_setTableProperty(table, "table_character_set", $charset); }
        | 'COLLATE' ( EQUALS )? { collation = LT(1); } boolean_expression_match
          { kp_setTableProperty(table, "table_collation", collation); }
        )
      | IGNORED_NODE
      | errorNode
      )+
    ;

// The comment is not kept.
tableComment[SQLTable *table]
    : 'COMMENT' EQUALS ( STRING | QUOTED_STRING )
    ;
