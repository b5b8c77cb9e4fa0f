// Conditions and value expressions, matched as the parser left them (flat).
// They make no model calls; the rules that use them take their text from
// the node stream. The recursive rules guard their depth like the parser's.

boolean_expression
@init { KP_GUARD_TREE_NESTING(boolean_expression); }
    : boolean_expression_block ( ( 'AND' | 'OR' | '&&' | '||' ) boolean_expression_block )*
    ;

boolean_expression_block
@init { KP_GUARD_TREE_NESTING(boolean_expression_block); }
    : ( T_NOT | '!' )? boolean_expression_match
      ( ( EQUALS ( EQUALS )? | '==' | '<' | '>' | '%' | T_NOT 'IN' | 'IN' | 'IS' ( T_NOT )?
        | '<=' | '>=' | '<=>' | '<>' | '!=' | ( T_NOT )? comparisonWord
        )
        boolean_expression_match
      )*
    ;

comparisonWord
    : { kp_isWordNode(LT(1), "LIKE") || kp_isWordNode(LT(1), "ILIKE") || kp_isWordNode(LT(1), "BETWEEN")
        || kp_isWordNode(LT(1), "REGEXP") }?=> STRING
    ;

boolean_expression_match
@init { KP_GUARD_TREE_NESTING(boolean_expression_match); }
    : boolean_expression_value ( ( '+' | '-' | '*' | FORWARD_SLASH ) boolean_expression_match )?
    ;

boolean_expression_value
@init { KP_GUARD_TREE_NESTING(boolean_expression_value); }
    : ( specific_function_call
      | ( '@' )? qualifiedObjectName
        ( OPENPAREN ( boolean_expression_inner )? CLOSEPAREN ( '.' qualifiedObjectName )?
        | QUOTED_STRING  // a prefixed or typed literal: E'a\'b', DATE '2020-01-01'
        )?
      | numericValue
      | 'NULL'
      | T_TRUE
      | T_FALSE
      | 'CURRENT_TIMESTAMP'
      | 'LOCALTIME'
      | 'LOCALTIMESTAMP'
      | OPENPAREN boolean_expression_inner CLOSEPAREN
      )
      ( typeValueSpecifier )?
    ;

boolean_expression_inner
@init { KP_GUARD_TREE_NESTING(boolean_expression_inner); }
    : boolean_expression ( COMMA boolean_expression )*
    ;

specific_function_call
@init { KP_GUARD_TREE_NESTING(specific_function_call); }
    : ( 'SUBSTRING' | 'SUBSTRING_INDEX' ) OPENPAREN boolean_expression ( ( COMMA | 'FROM' | 'FOR' ) boolean_expression )* CLOSEPAREN
    | 'GROUP_CONCAT' OPENPAREN ( 'DISTINCT' )? boolean_expression ( COMMA boolean_expression )*
      ( 'SEPARATOR' QUOTED_STRING )? CLOSEPAREN
    | { kp_isWordNode(LT(1), "CAST") }?=> STRING OPENPAREN boolean_expression 'AS' fieldType CLOSEPAREN
    | 'CALL' objectName OPENPAREN ( boolean_expression ( COMMA boolean_expression )* )? CLOSEPAREN
    ;
