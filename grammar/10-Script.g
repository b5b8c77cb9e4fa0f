// Script structure: a script is a list of statements, each dispatched by its
// first token. Statements the model does not hold are consumed up to their
// SEMI and leave nothing (or one IGNORED_NODE) in the tree.

schema
    : ( schemaEntry )+ EOF!
    ;

schemaEntry
    : objectNotComment
    | otherObject
    | comment
    | strayStatementStart
    ;

objectNotComment
    : createObject
    | commentOn
    | alterInstruction
    | insertStatement
    | dropStatement
    ;

otherObject
options { k = 1; }
    : SEMI
    | { kp_isDollarBlock(RECOGNIZER) }?=> dollarBlock ->
    | unknownObjectBlock ->
    | delimiter
    | sourceInstruction ->
    | anonymousProcedure ->
    ;

// DO $$ ... $$; (PostgreSQL): an anonymous block, skipped like a routine.
dollarBlock
    : STRING { kp_skipRoutine(RECOGNIZER) }?
    ;

// A token that can open no statement (a stray END or "/"). It is reported as
// a failed prediction at that token and becomes an ERROR_NODE, so that the
// statement loop goes on with the rest of the script instead of ending there.
strayStatementStart
    : t=( T_END | FORWARD_SLASH ) { kp_raiseNoViableAlternative(RECOGNIZER, $t); }
    ;

otherObjectFirst
    : ~( SEMI | ML_COMMENT | SL_COMMENT | T_ALTER | T_DECLARE | FORWARD_SLASH | T_BEGIN
       | T_END | T_DELIMITER | 'CREATE' | 'INSERT' | 'DROP' | 'SOURCE' | 'COMMENT' )
    ;

unknownObjectBlock
    : otherObjectFirst ( ~SEMI )* SEMI
    ;

// The statement terminator never changes: DELIMITER keeps only the slashes
// and ENDs that directly follow it.
delimiter
    : T_DELIMITER ( options { greedy = true; } : FORWARD_SLASH | T_END )*
    ;

// SOURCE file: the rest of the line, SEMI or not. Included files are not read.
sourceInstruction
    : 'SOURCE' { consumeUntilToken(INPUT, NEWLINE); }
    ;

// Anonymous blocks are skipped whole, nested blocks balanced. A transaction
// start (BEGIN; BEGIN TRANSACTION;) is a statement of its own, not a block.
anonymousProcedure
options { k = 1; }
    : T_DECLARE ( ~T_BEGIN )* T_BEGIN inner_block T_END ( objectName )? SEMI ( options { greedy = true; } : FORWARD_SLASH )?
    | ( T_BEGIN ( transactionWord )* SEMI )=> T_BEGIN ( transactionWord )* SEMI
    | begin_end_block ( objectName )? SEMI ( options { greedy = true; } : FORWARD_SLASH )?
    ;

transactionWord
    : 'DEFERRED'
    | 'IMMEDIATE'
    | { kp_isWord(LT(1), "TRANSACTION") || kp_isWord(LT(1), "WORK") || kp_isWord(LT(1), "TRAN")
        || kp_isWord(LT(1), "EXCLUSIVE") }?=> STRING
    ;

// Skips a block body up to its closing END. BEGIN ... END and CASE ... END
// nest; END IF, END LOOP, END REPEAT and END WHILE close constructs that do
// not open a level here, so they are plain tokens. The helper balances the
// nested blocks without recursion and builds no tree. The loop after it
// never runs (the helper stops at END or the end of input); it tells the
// decisions that predict a block that its body may hold any token.
inner_block
    : { kp_skipBlockBody(RECOGNIZER); } ( ~T_END )*
    ;

// A whole block, BEGIN to its END.
begin_end_block
    : T_BEGIN inner_block T_END
    ;

insertStatement
    : 'INSERT' ( ~SEMI )* SEMI
    ;

dropStatement
    : 'DROP' ( ~SEMI )* SEMI
    ;

// Comments are on the hidden channel, so the parser meets them only when a
// token source hands them over on the default channel.
comment
    : ML_COMMENT -> ^( COMMENT_NODE ML_COMMENT )
    | SL_COMMENT -> ^( COMMENT_NODE SL_COMMENT )
    ;

// COMMENT ON TABLE t IS '...' and COMMENT ON COLUMN t.c IS '...'
// (PostgreSQL, Oracle) become ^( 'COMMENT' kind name 'IS' ), the value's
// source text riding on the IS token; COMMENT ON any other object (and any
// other statement that starts with COMMENT) is consumed and leaves nothing.
commentOn
    : 'COMMENT'
      ( 'ON'
        ( kind=( 'TABLE' | 'COLUMN' ) name=anyQualifiedName is='IS' value=commentValue
          { setCustomStringValueOnToken(RECOGNIZER, $is, $value.start, $value.stop); }
          SEMI -> ^( 'COMMENT' $kind $name $is )
        | commentOnOtherFirst skipToSemi SEMI -> IGNORED_NODE
        | SEMI -> IGNORED_NODE
        )
      | commentOtherFirst skipToSemi SEMI -> IGNORED_NODE
      | SEMI -> IGNORED_NODE
      )
    ;

commentOnOtherFirst
    : ~( 'TABLE' | 'COLUMN' | SEMI )
    ;

commentOtherFirst
    : ~( 'ON' | SEMI )
    ;

// NULL removes the comment; E'...' is PostgreSQL's escape string.
commentValue
    : QUOTED_STRING
    | STRING QUOTED_STRING
    | 'NULL'
    | dollarQuotedString
    ;

createObject
    : 'CREATE'
      ( options { k = 1; } : { kp_isKeyword(LT(2), "REPLACE") && kp_routineKind(RECOGNIZER) == 0 }?=> 'OR' 'REPLACE' )?
      ( ( viewStart )=> createView SEMI
      | { kp_routineKind(RECOGNIZER) != 0 }?=> createRoutine
      | { kp_tableKindAhead(RECOGNIZER) }?=> tableKind! createTable SEMI
      | ( 'TEMPORARY'! )? ( createTable | createIndex | createUnsupportedObject | createSequence ) SEMI
      | unknown_createObject
      )
    ;

// The words of a temporary or unlogged table (GLOBAL TEMPORARY, LOCAL TEMP,
// TEMP, PRIVATE TEMPORARY, UNLOGGED): kp_tableKindAhead has checked them and
// the TABLE after them. Such a table is built as a plain table.
tableKind
    : ( 'GLOBAL' | 'LOCAL' | 'TEMPORARY' | 'TEMP' | STRING )+
    ;

// Procedures, functions, packages, type bodies, events, aggregates, rules and
// triggers of every dialect: the helper finds where the routine ends (its
// terminator, the END of its body, its closing dollar tag) and consumes it
// whole after its first word. Nothing of it stays in the tree. The helper is
// called as a predicate (always true) so that it also runs when an enclosing
// decision tries the statement ahead, where actions are not run.
createRoutine
    : { kp_routineKind(RECOGNIZER) == 2 }?=> routineFirstWord { kp_skipRoutine(RECOGNIZER) }? -> CREATE_TRIGGER_NODE
    | routineFirstWord { kp_skipRoutine(RECOGNIZER) }? -> PSQL_NODE
    ;

routineFirstWord
    : 'PROCEDURE' | 'FUNCTION' | 'TRIGGER' | 'DEFINER' | 'TYPE' | 'CONSTRAINT' | 'OR' | T_ALTER | STRING
    ;

// Object kinds the model does not hold but that are known words.
createUnsupportedObject
    : ( 'USER' | 'EXTENSION' ) skipToSemi -> IGNORED_NODE
    ;

// Every token up to the next SEMI, which is left for the caller.
skipToSemi
    : ( ~SEMI )*
    ;

unknown_createObject
    : unknownCreateObject -> IGNORED_NODE
    ;

// CREATE followed by words the grammar does not know: consumed. When the
// words end in TABLE (CREATE VIRTUAL TABLE, CREATE FOREIGN TABLE), the lost
// table leaves a record.
unknownCreateObject
@init { pANTLR3_COMMON_TOKEN first = LT(1); kp_reportUnknownTableKind(RECOGNIZER); }
    : ~( 'PROCEDURE' | 'VIEW' | 'USER' | 'UNIQUE' | 'FUNCTION' | 'INDEX' | 'TABLE' | 'SEQUENCE'
         | 'OR' | 'ALGORITHM' | 'DEFINER' | 'SQL' | 'TEMPORARY' | 'TRIGGER' | 'EXTENSION'
         | 'CLUSTERED' | 'NONCLUSTERED' | 'FULLTEXT' | SEMI )
      ( ~SEMI )* SEMI
      { kp_logUnknownObjectType(RECOGNIZER, first, "CREATE"); }
    ;
