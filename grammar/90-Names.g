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

// A column's name where a keyword may stand for it: in a table's element
// list, where the word cannot start anything else (see
// kp_keywordColumnAhead). The name's token becomes a STRING: to the tree
// walker a column always starts with a STRING or QUOTED_STRING.
columnName
    : objectName { kp_retypeAsName($objectName.start); }
    | { kp_keywordColumnAhead(RECOGNIZER) }?=> columnKeyword
    ;

// A column in a list of key, index or reference columns, where every entry
// starts with a name.
listColumnName
    : objectName
    | columnKeyword
    ;

// Keywords that are not names everywhere (each starts a clause somewhere)
// but that real schemas use as column names. The words that start a table
// element (CONSTRAINT, PRIMARY, FOREIGN, UNIQUE) and the query words stay
// reserved.
columnKeyword
@after { kp_retypeAsName(retval.start); }
    : ( T_KEY | 'INDEX' | 'FULLTEXT' | 'CLUSTERED' | 'NONCLUSTERED' | 'FULL' | 'SORT' | 'NOSORT'
      | 'MAX' | 'ASC' | 'DESC' | 'COLUMN' | 'ENABLE' | 'DISABLE' | 'PARTITION' | 'SUBPARTITION'
      | 'TEMPORARY' | 'TEMP' | 'CASCADE' | 'RESTRICT' | 'INTERVAL' | 'WITHOUT' | 'NONE' | 'SECOND'
      | 'ONLY' | 'REVERSE' | 'LOGGING' | 'NOLOGGING' | 'COMPRESS' | 'PRECISION' | 'NULLS' | 'OUT'
      | 'RETURN' | 'RETURNS' | 'REPEAT' | 'LOOP' | 'UNTIL' | 'CALL' | 'SEPARATOR' | 'RAW' | 'LONG'
      | 'DOUBLE' | 'NATIONAL' | 'IMMEDIATE' | 'ONLINE' | 'PARALLEL' | 'VALIDATE' | 'NOVALIDATE'
      | 'RELY' | 'FILLFACTOR' | 'SUBSTRING' | 'CONCURRENTLY' | 'GIST' | 'GIN' | 'LOCALTIME'
      | 'LOCALTIMESTAMP' | 'PREPARE' | 'REJECT'
      )
    ;

// A table's or view's name where only a name can stand (after CREATE TABLE,
// VIEW, REFERENCES, ALTER TABLE, COMMENT ON): the column keywords name
// tables too (CREATE TABLE key (...), REFERENCES sort (id)).
anyQualifiedName
    : listColumnName ( '.' listColumnName )*
    ;

procedure_name
    : qualifiedObjectName
    ;

non_second_datetime_field
    : 'YEAR' | 'MONTH' | 'DAY' | 'HOUR' | 'MINUTE'
    ;
