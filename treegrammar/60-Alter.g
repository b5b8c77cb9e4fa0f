// ALTER TABLE applies added constraints (CHECK, FOREIGN KEY, PRIMARY KEY,
// UNIQUE, SQL Server's DEFAULT ... FOR) to a table that an earlier statement
// built; every other
// clause arrives as an IGNORED_NODE and changes nothing. The table is
// looked up for each ADD; a missing one is recorded each time and the
// constraint is walked without it.

// The name after CONSTRAINT carries over to the later clauses of the
// statement that do not name their own.
alterTableInstruction[SQLContainer *c]
@init {
    std::optional<std::string> constraintName;
    const std::vector<std::string> *nameParts = NULL;
    SQLTable *table = NULL;
}
    : tableWord='TABLE' ( 'ONLY' )?
      ( name=qualifiedObjectName { nameParts = $name.parts; }
      | errorNode
      )
      ( ( 'ADD' { table = kp_alterTargetTable(RECOGNIZER, c, nameParts, $tableWord); }
          ( addedConstraint[table, &constraintName]
          | OPENPAREN addedConstraint[table, &constraintName] ( COMMA addedConstraint[table, &constraintName] )*
            CLOSEPAREN
          )
        | 'CONSTRAINT' { table = kp_alterTargetTable(RECOGNIZER, c, nameParts, $tableWord); }
          cn=qualifiedObjectName { kp_takeConstraintName(&constraintName, $cn.parts); }
          addedConstraintBody[table, &constraintName]  // SQL Server: ADD CONSTRAINT a ..., CONSTRAINT b ...
        | IGNORED_NODE
        | errorNode
        )
        ( COMMA )?
      )*
      SEMI
    ;

addedConstraint[SQLTable *table, std::optional<std::string> *constraintName]
    : ( 'CONSTRAINT' ( cn=qualifiedObjectName { kp_takeConstraintName(constraintName, $cn.parts); } )? )?
      addedConstraintBody[table, constraintName]
    ;

addedConstraintBody[SQLTable *table, std::optional<std::string> *constraintName]
    : ( checkConstraint[table, kp_currentConstraintName(constraintName)]
      | foreignKey[table, kp_currentConstraintName(constraintName)]
      | alterPrimaryKey[table]
      | defaultFor[table]
      )
    ;

// SQL Server's DEFAULT value FOR column: the column's default, as a column
// definition would set it.
defaultFor[SQLTable *table]
    : T_DEFAULT 'FOR' column=objectName { kp_setColumnDefaultFromToken(table, $column.start, $T_DEFAULT); }
    ;
