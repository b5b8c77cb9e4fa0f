// CREATE VIEW, reached from createObject after CREATE [OR REPLACE]. The tree
// is flat: every token from the first modifier to the end of the query, in
// source order. The query itself is kept as a run of tokens and read by
// parser/ViewBuilder.cpp: a query that it cannot read fails the statement
// here, so that a broken view leaves a record and no view.

// What may stand between CREATE [OR REPLACE] and VIEW; createObject uses it
// as a syntactic predicate, so the words are only looked at when a view may
// follow.
viewStart
    : ( viewModifier )* ( viewWord )? 'VIEW'
    ;

createView
    : ( viewModifier )* ( viewWord )? 'VIEW' ( 'IF' T_NOT 'EXISTS' )? anyQualifiedName
      ( options { greedy = true; } : OPENPAREN idList CLOSEPAREN )? ( viewOption )* 'AS' q=viewQuery
      { kp_checkViewQuery(RECOGNIZER, $q.start, $q.stop); }
    ;

// MySQL's algorithm, definer and security; Oracle's FORCE and editioning;
// SQLite's and PostgreSQL's TEMP.
viewModifier
    : 'ALGORITHM' EQUALS ( 'UNDEFINED' | 'MERGE' | 'TEMPTABLE' )
    | 'DEFINER' EQUALS ( 'CURRENT_USER' ( OPENPAREN CLOSEPAREN )? | objectName ( '@' objectName )? )
    | 'SQL' 'SECURITY' ( 'DEFINER' | 'INVOKER' )
    | 'FORCE'
    | 'TEMP'
    | 'TEMPORARY'
    | { kp_isWord(LT(1), "NOFORCE") || kp_isWord(LT(1), "EDITIONABLE") || kp_isWord(LT(1), "NONEDITIONABLE")
        || kp_isWord(LT(1), "RECURSIVE") }?=> STRING
    ;

// A materialized view is a view to the model.
viewWord
    : { kp_isWord(LT(1), "MATERIALIZED") }?=> STRING
    ;

// Storage parameters, SCHEMABINDING, a materialized view's refresh and build
// clauses: whatever stands before AS.
viewOption
    : ~( 'AS' | SEMI | '.' )
    ;

viewQuery
    : ( ~SEMI )*
    ;
