// Column-level REFERENCES: the reference is stored on the field, then each
// action and deferrability clause is applied in the order written (a later
// ON UPDATE or ON DELETE wins). Without a field the reference is reported.

references[SQLField *field]
@init { std::vector<std::string> *foreignColumns = NULL; }
    : referencesWord='REFERENCES' target=qualifiedObjectName
      ( OPENPAREN columns=idList CLOSEPAREN { foreignColumns = $columns.names; } )?
      { kp_setFieldReference(RECOGNIZER, field, $target.parts, foreignColumns, $referencesWord); }
      ( ON_UPDATE onUpdate=referenceActionType { kp_setUpdateAction(field, $onUpdate.code); }
      | ON_DELETE onDelete=referenceActionType { kp_setDeleteAction(field, $onDelete.code); }
      | isDeferrable=deferrable { kp_setDeferrable(field, $isDeferrable.value); }
      | isDeferred=initiallyDeferred { kp_setInitiallyDeferred(field, $isDeferred.value); }
      )*
    ;

// The action code: 1 CASCADE, 2 RESTRICT, 3 SET NULL, 4 NO ACTION, 5 SET DEFAULT.
referenceActionType returns [int code = 0]
    : 'NO_ACTION' { $code = SQLNoAction; }
    | T_NO 'ACTION' { $code = SQLNoAction; }
    | 'RESTRICT' { $code = SQLRestrict; }
    | 'SET' T_DEFAULT { $code = SQLSetDefault; }
    | 'SET' 'NULL' { $code = SQLSetNull; }
    | 'CASCADE' { $code = SQLCascade; }
    ;

// A nil target makes the options no-ops.
deferrableOptions[SQLReferentialActions *target]
    : ( isDeferrable=deferrable { kp_setDeferrable(target, $isDeferrable.value); }
      | isDeferred=initiallyDeferred { kp_setInitiallyDeferred(target, $isDeferred.value); }
      )+
    ;

deferrable returns [bool value = false]
    : 'DEFERRABLE' { $value = true; }
    | T_NOT 'DEFERRABLE' { $value = false; }
    ;

initiallyDeferred returns [bool value = false]
    : 'INITIALLY' 'DEFERRED' { $value = true; }
    | 'INITIALLY' 'IMMEDIATE' { $value = false; }
    ;

// The names in text order.
idList returns [std::vector<std::string> *names]
@init { $names = kp_newNameList(RECOGNIZER); }
    : first=objectName { $names->push_back(kp_nodeText($first.start)); }
      ( COMMA next=objectName { $names->push_back(kp_nodeText($next.start)); } )*
    ;
