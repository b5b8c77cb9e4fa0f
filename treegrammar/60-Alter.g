// ALTER TABLE applies added constraints (CHECK, FOREIGN KEY, PRIMARY KEY,
// UNIQUE) to a table that an earlier statement built; every other
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
        | IGNORED_NODE
        | errorNode
        )
        ( COMMA )?
      )*
      SEMI
    ;

addedConstraint[SQLTable *table, std::optional<std::string> *constraintName]
    : ( 'CONSTRAINT' ( cn=qualifiedObjectName { kp_takeConstraintName(constraintName, $cn.parts); } )? )?
      ( checkConstraint[table, kp_currentConstraintName(constraintName)]
      | foreignKey[table, kp_currentConstraintName(constraintName)]
      | alterPrimaryKey[table]
      )
    ;
