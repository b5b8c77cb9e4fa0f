// Data types, matched token by token as the parser left them. They make no
// model calls: the column rule renders the matched run as the type text.
//
// One form the parser accepts is not taken here: VARBIT. It is matched (so
// that the rest of the table is still read) and reported as not accepted;
// the column rule then builds no column.

data_type returns [bool accepted = true]
    : char_string_type
    | national_char_string_type
    | bits=bit_string_type { $accepted = $bits.accepted; }
    | num_type
    | datetime_type
    | interval_type
    | binary_type
    | misc_types
    ;

char_string_type
    : T_CHARACTER ( T_VARYING )? ( type_size )?
    | T_CHAR ( T_VARYING )? ( type_size )?
    | 'VARCHAR' ( type_size )?
    | 'VARCHAR2' ( type_size )?
    | 'BLOB' ( type_size | blobSubType )?
    | 'RAW' ( type_size )?
    | 'TINYBLOB' ( type_size )?
    | 'MEDIUMBLOB' ( type_size )?
    | 'LONGBLOB' ( type_size )?
    | 'NVARCHAR2' ( type_size )?
    | 'NVARCHAR' ( type_size )?
    | text_type ( type_size )?
    ;

blobSubType
    : { kp_isWordNode(LT(1), "SUB_TYPE") }?=> STRING ( INT | SIGNED_INT | STRING | 'TEXT' )
      ( { kp_isWordNode(LT(1), "SEGMENT") }?=> STRING STRING INT )?
    ;

text_type
    : 'TINYTEXT'
    | 'TEXT'
    | 'MEDIUMTEXT'
    | 'LONGTEXT'
    ;

national_char_string_type
    : 'NATIONAL' ( T_CHARACTER | T_CHAR ) ( T_VARYING )? ( type_size )?
    | 'NCHAR' ( T_VARYING )? ( type_size )?
    ;

type_size
    : OPENPAREN ( length | 'MAX' ) ( T_CHAR | 'BYTE' )? CLOSEPAREN
    ;

length
    : unsigned_integer
    ;

type_precision
    : OPENPAREN precision ( COMMA scale )? CLOSEPAREN
    ;

// MAX: SQL Server's (max) after a bracketed type name, [varbinary] (max).
precision
    : unsigned_integer
    | '*'
    | 'MAX'
    ;

scale
    : unsigned_integer
    | '*'
    ;

bit_string_type returns [bool accepted = true]
    : 'BIT' ( type_size )?
    | 'BIT' T_VARYING type_size
    | typeWord='VARBIT' ( type_size )? { $accepted = false; kp_traceRejectedType(RECOGNIZER, $typeWord); }
    ;

num_type
    : exact_num_type
    | approximate_num_type
    ;

exact_num_type
    : ( 'NUMERIC' | 'DECIMAL' | 'DEC' | 'INTEGER' | 'INT' | 'SMALLINT' | 'NUMBER' | 'MEDIUMINT'
      | 'LONGINT' | 'LONG' | 'TINYINT' | 'BIGINT' )
      ( type_precision )?
    ;

approximate_num_type
    : 'FLOAT' ( type_precision )?
    | 'REAL' ( type_precision )?
    | 'DOUBLE' ( 'PRECISION' )? ( type_precision )?
    ;

datetime_type
    : 'DATE' ( type_size )?
    | 'TIME' ( OPENPAREN time_precision CLOSEPAREN )? ( timezone_option )?
    | 'TIMESTAMP' ( OPENPAREN timestamp_precision CLOSEPAREN )? ( timezone_option )?
    ;

time_precision
    : time_frac_seconds_prec
    ;

timestamp_precision
    : time_frac_seconds_prec
    ;

time_frac_seconds_prec
    : unsigned_integer
    ;

timezone_option
    : ( T_WITH | 'WITHOUT' ) ( 'LOCAL' )? ( 'TIME' 'ZONE' | 'TIMEZONE' )
    ;

// Every interval form is taken: INTERVAL alone, PostgreSQL's interval(3),
// and a qualifier with or without its TO part (DAY(2) TO SECOND(6)). The
// parser's TO token is not the 'to' of interval_qualifier.
interval_type
    : 'INTERVAL' ( interval_qualifier ( 'TO' end_field )? | type_size )?
    ;

interval_qualifier
    : second_dateTime
    | non_second_dateTime ( 'to' end_field )?
    ;

single_datetime_field
    : non_second_dateTime
    | second_dateTime
    ;

non_second_dateTime
    : non_second_datetime_field ( OPENPAREN interval_leading_fieldprec CLOSEPAREN )?
    ;

second_dateTime
    : 'SECOND' ( OPENPAREN interval_leading_fieldprec ( COMMA interval_frac_seconds_prec )? CLOSEPAREN )?
    ;

end_field
    : non_second_datetime_field
    | 'SECOND' ( OPENPAREN interval_frac_seconds_prec CLOSEPAREN )?
    ;

start_field
    : non_second_datetime_field
    ;

interval_leading_fieldprec
    : unsigned_integer
    ;

interval_frac_seconds_prec
    : unsigned_integer
    ;

binary_type
    : 'VARBINARY' ( type_size )?
    | 'BINARY' ( type_size )?
    ;

misc_types
    : 'TABLE'
    | non_second_dateTime
    ;

char_set_spec
    : STRING
    ;

integer
    : unsigned_integer
    | signed_integer
    ;

unsigned_integer
    : INT
    ;

signed_integer
    : '-' INT
    | SIGNED_INT
    ;
