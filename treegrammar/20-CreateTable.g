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
      ( OPENPAREN ( tableEntry[table] ( COMMA subsequentTableEntry[table] )* )?
        ( CLOSEPAREN ( tableOption[table] )? )?
      | errorNode
      )
    ;

tableName
    : objectName
    ;

// A column whose tree does not fit is skipped to its end, as in
// subsequentTableEntry.
tableEntry[SQLTable *table]
@init { ANTLR3_MARKER entryStart = INDEX(); }
    : fieldBlock[table] ( errorNode )*
    | ( errorNode )+
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        PREPORTERROR();
        kp_skipToTableEntryEndInTree(RECOGNIZER, entryStart);
        kp_forgetRecognitionError(RECOGNIZER);
    }

// A key or index entry that does not fit its pattern is skipped to its end.
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
    | fieldBlock[table] ( errorNode )*
    | ( errorNode )+
    ;
    catch [ANTLR3_RECOGNITION_EXCEPTION] {
        PREPORTERROR();
        kp_skipToTableEntryEndInTree(RECOGNIZER, entryStart);
        kp_forgetRecognitionError(RECOGNIZER);
    }

tableOption[SQLTable *table]
@init { pANTLR3_BASE_TREE collation = NULL; }
    : ( ( 'TYPE' | 'ENGINE' ) EQUALS engine=STRING { kp_setTableType(table, $engine); }
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
