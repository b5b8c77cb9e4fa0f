// Names, matched as the parser left them. keywordName is generated (see
// grammar/90-Names.g).

nonKeyWordObjectName
    : STRING
    | QUOTED_STRING
    ;

objectName
    : nonKeyWordObjectName
    | keywordName
    ;

triggerName
    : nonKeyWordObjectName
    ;

// The dotted parts of a name, in source order.
qualifiedObjectName returns [std::vector<std::string> *parts]
@init { $parts = kp_newNameList(RECOGNIZER); }
    : first=objectName { kp_appendNamePart($parts, $first.start); }
      ( '.' next=objectName { kp_appendNamePart($parts, $next.start); } )*
    ;

qualifiedColumnName
    : fieldName ( '.' fieldName ( '.' fieldName )? )?
    ;

fieldName
    : objectName
    ;

procedure_name
    : qualifiedObjectName
    ;

non_second_datetime_field
    : 'YEAR' | 'MONTH' | 'DAY' | 'HOUR' | 'MINUTE'
    ;
