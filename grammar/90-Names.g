// Names. Keywords are not reserved: the words of keywordName may name
// tables, columns and the rest, so that columns called date, type or comment
// parse. Words outside the list must be quoted to serve as names. The rule
// keywordName is generated from lexer/keywords.txt (the words marked "name")
// and appended to this grammar and the tree walker's.

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

qualifiedObjectName
    : objectName ( '.' objectName )*
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
