// Data types of columns, variables and parameters across the dialects. Every
// rule here leaves its tokens flat in the enclosing list, parentheses and
// commas included: the walker renders them as the column's type text.

data_type
    : char_string_type
    | national_char_string_type
    | bit_string_type
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

// BLOB SUB_TYPE 1 and BLOB SUB_TYPE TEXT SEGMENT SIZE 80 (written by tools
// that move Firebird schemas to SQLite): the type text keeps the words.
blobSubType
    : { kp_isWord(LT(1), "SUB_TYPE") }?=> STRING ( INT | SIGNED_INT | STRING | 'TEXT' )
      ( { kp_isWord(LT(1), "SEGMENT") }?=> STRING STRING INT )?
    ;

// SQLite keeps a length written after any type word: text(65535).
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

// (255), (MAX), (20 CHAR), (20 BYTE)
type_size
    : OPENPAREN ( length | 'MAX' ) ( T_CHAR | 'BYTE' )? CLOSEPAREN
    ;

length
    : unsigned_integer
    ;

// (10), (10,2), Oracle's (*,2)
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

// BIT VARYING needs its size. The walker does not take VARBIT.
bit_string_type
    : 'BIT' ( type_size )?
    | 'BIT' T_VARYING type_size
    | 'VARBIT' ( type_size )?
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

// WITH TIME ZONE, WITHOUT TIME ZONE, WITH LOCAL TIME ZONE, WITH TIMEZONE
timezone_option
    : ( T_WITH | 'WITHOUT' ) ( 'LOCAL' )? ( 'TIME' 'ZONE' | 'TIMEZONE' )
    ;

// The walker takes an interval only with its qualifier and without TO.
interval_type
    : 'INTERVAL' ( interval_qualifier | type_size )?
    ;

interval_qualifier
    : second_dateTime
    | non_second_dateTime ( 'TO' end_field )?
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

// YEAR and YEAR(4) are column types of MySQL.
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
