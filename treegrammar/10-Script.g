// Statement dispatch. Only CREATE and ALTER reach the model. Every
// ERROR_NODE left by the parser's recovery becomes one record, wherever it
// stands in the tree, before the walk; the rules pass over error nodes.

schema[SQLContainer *c]
@init { kp_reportErrorNodes(RECOGNIZER); }
    : ( schemaEntry[c] )*
    ;

schemaEntry[SQLContainer *c]
    : createObject[c]
    | commentOn[c]
    | alterInstruction[c]
    | otherObject
    | insertStatement
    | dropStatement
    | comment
    | errorNode
    ;

errorNode
    : ^( ERROR_NODE ( . )* )
    ;

// The comment goes to the table or column when it is in the model by now;
// otherwise it is dropped (it may belong to a view or a later table).
commentOn[SQLContainer *c]
    : ^( 'COMMENT' 'TABLE' table=qualifiedObjectName is='IS' ) { kp_commentOnTable(c, $table.parts, $is); }
    | ^( 'COMMENT' 'COLUMN' column=qualifiedObjectName is='IS' ) { kp_commentOnColumn(c, $column.parts, $is); }
    ;

otherObject
    : SEMI
    | IGNORED_NODE
    | PSQL_NODE
    | delimiter
    | otherObjectFirst ( ~SEMI )* SEMI
    ;

otherObjectFirst
    : ~( SEMI | ML_COMMENT | SL_COMMENT | T_ALTER | T_DECLARE | FORWARD_SLASH | T_BEGIN | T_END
       | T_DELIMITER | 'CREATE' | 'INSERT' | 'DROP' | 'SOURCE' | ERROR_NODE | COMMENT_NODE
       | IGNORED_NODE | PSQL_NODE | VIEWSELECT_NODE | ON_UPDATE | ON_DELETE | CREATE_TRIGGER_NODE )
    ;

delimiter
    : T_DELIMITER ( options { greedy = true; } : FORWARD_SLASH | T_END )*
    ;

insertStatement
    : 'INSERT' ( ~SEMI )* SEMI
    ;

dropStatement
    : 'DROP' ( ~SEMI )* SEMI
    ;

comment
    : ^( COMMENT_NODE ( ML_COMMENT | SL_COMMENT )? )
    ;

createObject[SQLContainer *c]
    : 'CREATE' ( 'OR' 'REPLACE' )?
      ( ( createTable[c] | createIndex[c] | createSequence[c] | createView[c] ) SEMI
      | PSQL_NODE
      | CREATE_TRIGGER_NODE
      | IGNORED_NODE
      )
    ;

alterInstruction[SQLContainer *c]
    : T_ALTER ( 'IGNORE' )?
      ( alterTableInstruction[c]
      | IGNORED_NODE
      | errorNode
      )
    ;
