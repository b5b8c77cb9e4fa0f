// CREATE VIEW: the view is made from its name, takes its column list, and
// is added to the container once its query has been read (see
// parser/ViewBuilder.cpp). The parser fails a view whose query it cannot
// read, so every view that reaches this rule is complete.

createView[SQLContainer *c]
@init { std::unique_ptr<SQLView> view; ANTLR3_MARKER queryStart = 0; }
    : ( viewModifier )* ( viewWord )? 'VIEW' ( 'IF' T_NOT 'EXISTS' )?
      name=qualifiedObjectName { view = kp_newView($name.parts); }
      ( options { greedy = true; } : OPENPAREN columns=idList CLOSEPAREN { kp_addViewColumns(view.get(), $columns.names); } )?
      ( viewOption )* 'AS' { queryStart = INDEX(); } ( ~SEMI )*
      { kp_setViewQuery(RECOGNIZER, view.get(), queryStart); kp_addView(c, std::move(view)); }
    ;

viewModifier
    : 'ALGORITHM' EQUALS ( 'UNDEFINED' | 'MERGE' | 'TEMPTABLE' )
    | 'DEFINER' EQUALS ( 'CURRENT_USER' ( OPENPAREN CLOSEPAREN )? | objectName ( '@' objectName )? )
    | 'SQL' 'SECURITY' ( 'DEFINER' | 'INVOKER' )
    | 'FORCE'
    | 'TEMP'
    | 'TEMPORARY'
    | { kp_isWordNode(LT(1), "NOFORCE") || kp_isWordNode(LT(1), "EDITIONABLE") || kp_isWordNode(LT(1), "NONEDITIONABLE")
        || kp_isWordNode(LT(1), "RECURSIVE") }?=> STRING
    ;

viewWord
    : { kp_isWordNode(LT(1), "MATERIALIZED") }?=> STRING
    ;

viewOption
    : ~( 'AS' | SEMI | '.' )
    ;
