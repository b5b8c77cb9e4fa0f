// ALTER TABLE applies added constraints (CHECK, FOREIGN KEY, PRIMARY KEY,
// UNIQUE, SQL Server's DEFAULT ... FOR) to a table that an earlier statement
// built; every other
// clause arrives as an IGNORED_NODE and changes nothing. The table is
// looked up for each ADD; a missing one is recorded each time and the
// constraint is walked without it.

// The name after CONSTRAINT carries over to the later ADD clauses of the
// statement that do not name their own. An unnamed constraint in SQL
// Server's list after one ADD stays unnamed.
alterTableInstruction[SQLContainer *c]
@init {
    std::optional<std::string> constraintName;
    std::optional<std::string> unnamed;
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
          | nonUniqueIndex[table]  // MySQL's ADD FULLTEXT or SPATIAL
          )
        | 'CONSTRAINT' { table = kp_alterTargetTable(RECOGNIZER, c, nameParts, $tableWord); }
          cn=qualifiedObjectName { kp_takeConstraintName(&constraintName, $cn.parts); }
          addedConstraintBody[table, &constraintName]  // SQL Server: ADD CONSTRAINT a ..., CONSTRAINT b ...
        | { table = kp_alterTargetTable(RECOGNIZER, c, nameParts, $tableWord); }
          addedConstraintBody[table, &unnamed]  // SQL Server: ADD CONSTRAINT a ..., CHECK (...)
        | IGNORED_NODE
        | errorNode
        )
        ( COMMA )?
      )*
      SEMI
    ;

// A word after CONSTRAINT is its name, even when it could start the clause.
addedConstraint[SQLTable *table, std::optional<std::string> *constraintName]
    : ( 'CONSTRAINT'
        ( options { greedy = true; } : cn=qualifiedObjectName { kp_takeConstraintName(constraintName, $cn.parts); } )?
      )?
      ( addedConstraintBody[table, constraintName]
      | IGNORED_NODE  // PostgreSQL's EXCLUDE
      )
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
