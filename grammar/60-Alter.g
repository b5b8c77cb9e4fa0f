// ALTER statements. Only ALTER TABLE reaches the model; other object kinds
// are consumed and leave one IGNORED_NODE.

alterInstruction
    : T_ALTER ( 'IGNORE' )?
      ( alterUnsupportedObject
      | unknown_Alter
      )
    ;

// Object kinds that the model does not hold.
alterUnsupportedObject
    : ( 'FUNCTION' | 'SEQUENCE' | 'USER' | 'VIEW' | 'INDEX' | 'TRIGGER' | 'DATABASE' | 'SCHEMA'
      | T_TABLESPACE | 'TYPE' | 'EXTENSION' | T_DEFAULT )
      skipToSemi SEMI -> IGNORED_NODE
    ;

unknown_Alter
    : unknownAlterObject -> IGNORED_NODE
    ;

unknownAlterObject
@init { pANTLR3_COMMON_TOKEN first = LT(1); }
    : ~( 'TABLE' | 'PROCEDURE' | 'FUNCTION' | 'SEQUENCE' | 'USER' | 'VIEW' | 'INDEX' | 'TRIGGER'
         | 'DATABASE' | 'SCHEMA' | T_TABLESPACE | 'TYPE' | 'EXTENSION' | T_DEFAULT | 'IGNORE' | SEMI )
      ( ~SEMI )* SEMI
      { kp_logUnknownObjectType(RECOGNIZER, first, "ALTER"); }
    ;
