// REFERENCES clauses with their referential actions and deferrability,
// shared by column-level references and table-level foreign keys. ON UPDATE
// and ON DELETE become the imaginary nodes ON_UPDATE and ON_DELETE before
// their action words; MATCH leaves nothing.

references
    : 'REFERENCES' listColumnName ( '.' listColumnName )? ( OPENPAREN idList CLOSEPAREN )?
      ( referencesAction )? ( deferrableOptions )*
    ;

referencesAction
    : ( matchActionPart | referenceActionPart )+
    ;

matchActionPart
    : 'MATCH' ( 'FULL' | 'PARTIAL' | 'SIMPLE' ) ->
    ;

referenceActionPart
    : 'ON' 'UPDATE' triggerAction -> ON_UPDATE triggerAction
    | 'ON' 'DELETE' triggerAction -> ON_DELETE triggerAction
    ;

// NO_ACTION is the single token the lexer makes of NO_ACTION written with
// an underscore.
triggerAction
    : 'NO_ACTION'
    | T_NO 'ACTION'
    | 'RESTRICT'
    | 'SET' T_DEFAULT
    | 'SET' 'NULL'
    | 'CASCADE'
    ;

deferrableOptions
    : 'DEFERRABLE'
    | T_NOT 'DEFERRABLE'
    | 'INITIALLY' ( 'IMMEDIATE' | 'DEFERRED' )
    ;

idList
    : listColumnName ( COMMA listColumnName )*
    ;
