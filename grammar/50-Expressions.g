// Conditions and value expressions, shared by DEFAULT values, CHECK
// constraints, table options and (later) views and procedures. The
// recursive rules guard their nesting depth: input nested deeper than a
// parse may go becomes a recognition error instead of a stack overflow.
//
// Beyond the classic forms, values may carry PostgreSQL casts, numbers may
// be signed or decimal, and LIKE / BETWEEN compare like the other operators:
// real CHECK constraints use them all.

boolean_expression
@init { KP_GUARD_NESTING(boolean_expression); }
    : boolean_expression_block ( ( 'AND' | 'OR' | '&&' | '||' ) boolean_expression_block )*
    ;

boolean_expression_block
@init { KP_GUARD_NESTING(boolean_expression_block); }
    : ( T_NOT | '!' )? boolean_expression_match
      ( ( EQUALS ( EQUALS )? | '==' | '<' | '>' | '%' | T_NOT 'IN' | 'IN' | 'IS' ( T_NOT )?
        | '<=' | '>=' | '<=>' | '<>' | '!=' | ( T_NOT )? comparisonWord
        )
        boolean_expression_match
      )*
    ;

// LIKE, ILIKE, BETWEEN and REGEXP are plain words to the lexer.
comparisonWord
    : { kp_isWord(LT(1), "LIKE") || kp_isWord(LT(1), "ILIKE") || kp_isWord(LT(1), "BETWEEN")
        || kp_isWord(LT(1), "REGEXP") }?=> STRING
    ;

boolean_expression_match
@init { KP_GUARD_NESTING(boolean_expression_match); }
    : boolean_expression_value ( ( '+' | '-' | '*' | FORWARD_SLASH ) boolean_expression_match )?
    ;

boolean_expression_value
@init { KP_GUARD_NESTING(boolean_expression_value); }
    : ( specific_function_call
      | ( '@' )? qualifiedObjectName
        ( OPENPAREN ( boolean_expression_inner )? CLOSEPAREN ( '.' qualifiedObjectName )?
        | QUOTED_STRING  // a prefixed or typed literal: E'a\'b', DATE '2020-01-01'
        )?
      | numericValue
      | dollarQuotedString
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

// The inside of parentheses: an argument or value list, or a condition.
boolean_expression_inner
@init { KP_GUARD_NESTING(boolean_expression_inner); }
    : boolean_expression ( COMMA boolean_expression )*
    ;

// Built-in functions whose arguments are not a plain list.
specific_function_call
@init { KP_GUARD_NESTING(specific_function_call); }
    : ( 'SUBSTRING' | 'SUBSTRING_INDEX' ) OPENPAREN boolean_expression ( ( COMMA | 'FROM' | 'FOR' ) boolean_expression )* CLOSEPAREN
    | 'GROUP_CONCAT' OPENPAREN ( 'DISTINCT' )? boolean_expression ( COMMA boolean_expression )*
      ( 'SEPARATOR' QUOTED_STRING )? CLOSEPAREN
    | { kp_isWord(LT(1), "CAST") }?=> STRING OPENPAREN boolean_expression 'AS' fieldType CLOSEPAREN
    | 'CALL' objectName OPENPAREN ( boolean_expression ( COMMA boolean_expression )* )? CLOSEPAREN
    ;

// PostgreSQL's dollar-quoted string, $$text$$ or $tag$text$tag$: the helper
// checks that the quote closes and then consumes it whole (as a predicate,
// which is always true then, so that it also runs while a decision tries the
// tokens ahead). Only its first token stays in the tree.
dollarQuotedString
    : { kp_dollarQuoteAhead(RECOGNIZER) }?=> SYMBOL { kp_skipDollarQuote(RECOGNIZER) }?
    ;
