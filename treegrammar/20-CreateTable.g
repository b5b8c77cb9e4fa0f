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
      ( OPENPAREN ( subsequentTableEntry[c, table] ( COMMA subsequentTableEntry[c, table] )* )?
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
      ( OPENPAREN ( subsequentTableEntry[c, table] ( COMMA subsequentTableEntry[c, table] )* )? CLOSEPAREN )?
    ;

// PostgreSQL's INHERITS (parent, ...): the parents' columns come first, in
// the parents' order, then the table's own; a column the table declares
// with a parent's name stands where the parent has it.
inheritsClause[SQLContainer *c, SQLTable *table]
@init { std::vector<std::string> inherited; }
    : STRING OPENPAREN
      first=qualifiedObjectName { kp_inheritColumns(c, table, $first.parts, "inherits", &inherited); }
      ( COMMA next=qualifiedObjectName { kp_inheritColumns(c, table, $next.parts, "inherits", &inherited); } )*
      CLOSEPAREN
    ;

// PostgreSQL's LIKE parent [INCLUDING | EXCLUDING what ...] in the element
// list: the parent's columns are copied where the entry stands.
likeParent[SQLContainer *c, SQLTable *table]
@init { std::string options; }
    : ^( STRING parent=qualifiedObjectName ( w=likeOptionWord { options += kp_nodeText($w.start) + " "; } )* )
      { kp_copyLikeColumns(c, table, $parent.parts, options); }
    ;

likeOptionWord
    : 'INCLUDING' | STRING | 'ALL' | T_DEFAULT | 'COMMENT'
    ;

tableName
    : objectName
    ;

// An entry that does not fit its pattern is skipped to its end. A column's
// name reaches the walker as a STRING (see the parser's columnName), so
// CHECK always starts a check constraint here.
subsequentTableEntry[SQLContainer *c, SQLTable *table]
@init { std::string constraintName; ANTLR3_MARKER entryStart = INDEX(); }
    : ( 'CONSTRAINT' cn=objectName { constraintName = kp_nodeText($cn.start); }
        ( checkConstraint[table, &constraintName]
        | tableKeyConstraint[table, &constraintName]
        | tableIndex[table, &constraintName]
        | IGNORED_NODE
        | errorNode
        )
      | checkConstraint[table, NULL]
      | tableKeyConstraint[table, NULL]
      | tableIndex[table, NULL]
      | IGNORED_NODE  // an exclusion constraint, a period
      ) ( errorNode )*
    | likeParent[c, table]
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

tableComment[SQLTable *table]
    : 'COMMENT' EQUALS value=( STRING | QUOTED_STRING ) { kp_setCommentFromNode(table, $value); }
    ;
