// Plain columns read in one pass: an import with the direct reading gives
// the same model and records (texts and positions) as one that reads every
// column through the grammar, on the forms it reads, on the forms it leaves
// to the grammar, around broken entries and on generated tables; and the
// reading does take the common columns of each dialect.
#include "ParserTestSupport.h"
#include "PlainColumnReading.h"
#include "PlainColumns.h"

#include <random>

namespace {

std::string importJson(const std::string &sql, bool plain)
{
    return ::importJson(sql, [plain](SQLParserC &driver) { driver.setReadsPlainColumns(plain); });
}

void expectSameImport(const std::string &sql)
{
    EXPECT_EQ(importJson(sql, true), importJson(sql, false)) << sql;
}

// How many plain columns an import of the script read directly.
unsigned long plainColumnsRead(const std::string &sql)
{
    const unsigned long before = kp_plainColumnsTaken();
    SQLParser parser;
    parser.parseString(sql);
    return kp_plainColumnsTaken() - before;
}

// How many CREATE TABLE statements an import of the script read whole.
unsigned long plainTablesRead(const std::string &sql)
{
    const unsigned long before = kp_plainTablesTaken();
    SQLParser parser;
    parser.parseString(sql);
    return kp_plainTablesTaken() - before;
}

// How many CREATE TABLE statements an import of the script read whole
// ahead from the text, without the token window.
unsigned long plainTablesReadAhead(const std::string &sql)
{
    const unsigned long before = kp_plainTablesReadAhead();
    SQLParser parser;
    parser.parseString(sql);
    return kp_plainTablesReadAhead() - before;
}

} // namespace

TEST(PlainColumns, TheCommonColumnsOfEachDialectAreReadDirectly)
{
    EXPECT_EQ(plainColumnsRead("CREATE TABLE `t` (\n  `id` int(11) unsigned NOT NULL AUTO_INCREMENT,\n"
                               "  `n` varchar(255) CHARACTER SET utf8mb4 COLLATE utf8mb4_bin DEFAULT NULL COMMENT 'x',\n"
                               "  `s` enum('a','b') NOT NULL DEFAULT 'a',\n"
                               "  `u` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP(3),\n"
                               "  PRIMARY KEY (`id`)\n) ENGINE=InnoDB;"),
              4u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE public.t (\n    id integer DEFAULT nextval('public.t_id_seq'::regclass) NOT NULL,\n"
                               "    name character varying(100) COLLATE pg_catalog.\"default\",\n"
                               "    at timestamp without time zone DEFAULT now(),\n    price numeric(10,2) DEFAULT 0.0\n);"),
              4u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE \"HR\".\"T\" (\"ID\" NUMBER(10,0) NOT NULL ENABLE, \"N\" VARCHAR2(20 BYTE),"
                               " \"D\" DATE DEFAULT SYSDATE, \"F\" DOUBLE PRECISION);"),
              4u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE [dbo].[t] ([id] [int] NOT NULL, [n] [nvarchar](max) NULL, [b] [bit] NULL);"), 3u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT, v, w NOT NULL DEFAULT -1,"
                               " p INTEGER REFERENCES t (id) ON DELETE CASCADE);"),
              4u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE \"T\" (\"N\" NUMBER(*,2), CONSTRAINT \"C\" CHECK (\"N\" > 0) ENABLE);"), 1u);
    EXPECT_EQ(plainColumnsRead("CREATE TABLE t (a int CHECK (a > 0), b int CONSTRAINT b_ck CHECK (b < 3) CONSTRAINT nn"
                               " NOT NULL, c int CONSTRAINT c_pk PRIMARY KEY);"),
              3u);
}

TEST(PlainColumns, TheCommonTablesOfEachDialectAreReadWhole)
{
    EXPECT_EQ(plainTablesRead("CREATE TABLE `t` (\n  `id` int(11) NOT NULL AUTO_INCREMENT,\n  `n` varchar(9) DEFAULT NULL,\n"
                              "  PRIMARY KEY (`id`),\n  UNIQUE KEY `u` (`n`),\n  KEY `k` (`n`, `id`)\n)"
                              " ENGINE=InnoDB AUTO_INCREMENT=3 DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_unicode_ci;"),
              1u);
    EXPECT_EQ(plainTablesRead("CREATE TABLE public.t (\n    id integer NOT NULL,\n    v text DEFAULT ''::text\n);\n"
                              "CREATE TABLE IF NOT EXISTS \"s\" (\"id\" INTEGER PRIMARY KEY, p INT REFERENCES \"s\" (\"id\"));\n"
                              "CREATE TABLE \"HR\".\"T\" (\"ID\" NUMBER(10,0), CONSTRAINT \"C\" CHECK (\"ID\" > 0) ENABLE);\n"
                              "CREATE TABLE `f` (`id` int, `s` int, CONSTRAINT `f_s` FOREIGN KEY (`s`) REFERENCES `s` (`id`)"
                              " ON DELETE CASCADE);"),
              4u);
    // Named keys of PostgreSQL and Oracle, MySQL's quoted collation.
    EXPECT_EQ(plainTablesRead("CREATE TABLE public.t (\n    id integer NOT NULL,\n    CONSTRAINT t_pkey PRIMARY KEY (id),\n"
                              "    CONSTRAINT t_u UNIQUE (id)\n);\n"
                              "CREATE TABLE \"HR\".\"T\" (\"ID\" NUMBER(10,0), CONSTRAINT \"T_PK\" PRIMARY KEY (\"ID\") ENABLE);\n"
                              "CREATE TABLE `m` (`id` int) CHARACTER SET `utf8` COLLATE `utf8_bin`;"),
              3u);
    // SQL Server's tables as its tools write them, ended by GO lines or ";".
    EXPECT_EQ(plainTablesRead("SET ANSI_NULLS ON\nGO\nCREATE TABLE [dbo].[T](\n\t[ID] [int] IDENTITY(1,1) NOT NULL,\n"
                              "\t[N] [nvarchar](50) NULL,\n\t[D] [decimal](18, 2) NOT NULL,\n CONSTRAINT [PK_T] PRIMARY KEY"
                              " CLUSTERED \n(\n\t[ID] ASC\n)WITH (PAD_INDEX = OFF, STATISTICS_NORECOMPUTE = OFF, FILLFACTOR = 90,"
                              " ALLOW_ROW_LOCKS = ON) ON [PRIMARY]\n) ON [PRIMARY] TEXTIMAGE_ON [PRIMARY]\nGO\n"
                              "CREATE TABLE u (a int IDENTITY PRIMARY KEY NONCLUSTERED, b int,"
                              " PRIMARY KEY NONCLUSTERED (b DESC, a) ON PRIMARY);"),
              2u);
    // The grammar's: another statement kind, a table option or entry not read here, no terminator.
    EXPECT_EQ(plainTablesRead("CREATE TEMPORARY TABLE t (a int);\nCREATE TABLE t (a int) ROW_FORMAT=DYNAMIC;\n"
                              "CREATE TABLE t (a int, FOREIGN KEY (a) REFERENCES u (id) MATCH FULL);\nCREATE TABLE t (a int)"),
              0u);
}

TEST(PlainColumns, ReadColumnsMakeTheGrammarsModel)
{
    for (const char *sql : {
             // Types: sizes, precisions, multi-word and bracketed types, choices.
             "CREATE TABLE t (a int(11), b decimal(10,2), c double precision(8,3), d char varying(3),"
             " e nchar(2 char), f varchar(max), g timestamp(6) with local time zone, h time without time zone,"
             " i year(4), j set('x', 'y'), k enum('a'), l [varchar](20), m \"geometry\"(4326), n serial, o timestamptz);",
             // Options in any order, repeated and overriding one another.
             "CREATE TABLE t (a int NULL NOT NULL DEFAULT 1 DEFAULT 2 COMMENT 'one' COMMENT 'it''s'"
             " CHARSET latin1 CHARACTER SET utf8 COLLATE \"C\" COLLATE x.y ZEROFILL UNSIGNED UNIQUE PRIMARY KEY);",
             // Default values: signs, fractions, casts, operators, calls with nested and listed arguments.
             "CREATE TABLE t (a int DEFAULT -1, b int DEFAULT - 1.5, c int DEFAULT 1 -1, d real DEFAULT .5,"
             " e text DEFAULT 'a' || 'b', f text DEFAULT 'x'::character varying, g int DEFAULT (1),"
             " h date DEFAULT current_date + 30, i text DEFAULT f(g(1), 'a,b', (2)), j text DEFAULT \"x\","
             " k timestamp DEFAULT CURRENT_TIMESTAMP(3), l bool DEFAULT TRUE, m int DEFAULT +2 * 3 % 4 / 5);",
             // Keywords as names and as called functions, typed and prefixed literals.
             "CREATE TABLE t (type int DEFAULT now(), date date DEFAULT DATE '2020-01-01', b text DEFAULT E'a\\'b',"
             " comment text, c int DEFAULT user, value int, d timestamp DEFAULT now() ON UPDATE CURRENT_TIMESTAMP);",
             // Comments and line ends between the tokens of a column.
             "CREATE TABLE t (a /* x */ int -- y\n NOT /* z */ NULL\n DEFAULT /* w */ 1 /* v */, b\n text);",
             // Duplicate names are renamed and reported at the name.
             "CREATE TABLE t (a int, a text, A int NOT NULL);\nCREATE TABLE u (\"a\" int,\n  `a` int);",
             // Column checks and named column constraints: only a CHECK keeps the name, a named NOT NULL
             // does not make the column not null, an empty check adds nothing.
             "CREATE TABLE p (id int);\nCREATE TABLE t (a int CHECK (a > 0) CHECK (a < 9), b int CONSTRAINT b_ck"
             " CHECK (b IN (1, 2)) CONSTRAINT b_nn NOT NULL, c int CONSTRAINT c_pk PRIMARY KEY CONSTRAINT c_u UNIQUE,"
             " d int CONSTRAINT d_df DEFAULT 7 CONSTRAINT d_fk FOREIGN KEY REFERENCES p (id) ON DELETE CASCADE,"
             " e int CONSTRAINT e_r REFERENCES p CHECK (), f int CHECK (f <> 'x' AND g(f, 2) >= 1) ENABLE);",
         }) {
        expectSameImport(sql);
    }
}

TEST(PlainColumns, WholeTablesMakeTheGrammarsModel)
{
    for (const char *sql : {
             // Keys, indexes, checks and options of a plain table, in the order written.
             "CREATE TABLE IF NOT EXISTS db.s.t (id int, b int, c text,\n PRIMARY KEY (id, b), UNIQUE KEY u (c),"
             " UNIQUE INDEX (b), KEY kb (b, c), INDEX (c), CONSTRAINT ck CHECK (b > 0 AND (c <> 'x')) ENABLE NOVALIDATE,"
             " CHECK (id > 0), CHECK ( /* only a comment */ ),\n) ENGINE=InnoDB, AUTO_INCREMENT=5 DEFAULT CHARSET=utf8"
             " CHARACTER SET = 'latin1' COLLATE=utf8_bin DEFAULT COLLATE x COMMENT='it''s';",
             // A key before its column, an unknown key column, duplicate index names.
             "CREATE TABLE t (PRIMARY KEY (id), id int, KEY kx (nope), KEY kx (id), KEY kx (id), UNIQUE (id));",
             // Column references with actions and deferral.
             "CREATE TABLE p (id int);\nCREATE TABLE c (a int REFERENCES p (id) ON DELETE CASCADE ON UPDATE SET NULL"
             " DEFERRABLE INITIALLY DEFERRED NOT NULL, b int REFERENCES s.p, d int REFERENCES p (id, x) ON DELETE"
             " NO ACTION ON UPDATE SET DEFAULT NOT DEFERRABLE INITIALLY IMMEDIATE, e int REFERENCES p ON DELETE RESTRICT);",
             // Table foreign keys: named, unnamed, several columns, actions and deferral, unknown columns.
             "CREATE TABLE p (id int, kk int);\nCREATE TABLE c (a int, b int, d int, CONSTRAINT fk_c FOREIGN KEY (a) REFERENCES p"
             " (id) ON UPDATE CASCADE ON UPDATE RESTRICT DEFERRABLE INITIALLY DEFERRED ENABLE, FOREIGN KEY fk2 (a, b)"
             " REFERENCES s.p (id, kk) ON DELETE SET NULL, CONSTRAINT \"\" FOREIGN KEY named (b) REFERENCES p,"
             " FOREIGN KEY (zz) REFERENCES p (id), FOREIGN KEY (d) REFERENCES q (x) NOT DEFERRABLE);",
             // Named keys and indexes: a CONSTRAINT name names neither; the states after them leave nothing.
             "CREATE TABLE t (a int, b int, CONSTRAINT pk PRIMARY KEY (a, b) ENABLE, CONSTRAINT uq UNIQUE (b)"
             " DEFERRABLE INITIALLY DEFERRED, CONSTRAINT \"u2\" UNIQUE KEY k2 (a) NOT DEFERRABLE, CONSTRAINT i INDEX ix (b),"
             " UNIQUE (a, b) DISABLE NOVALIDATE, KEY (b) INITIALLY IMMEDIATE);",
             "CREATE TABLE \"T\" (\"ID\" NUMBER(10,0), CONSTRAINT \"T_PK\" PRIMARY KEY (\"ID\") ENABLE);\n"
             "CREATE TABLE u (a int, PRIMARY KEY pk_u (a)) CHARACTER SET `utf8` COLLATE `utf8_bin`;\n"
             "CREATE TABLE v (a int) COLLATE \"C\";\nCREATE TABLE w (a int) DEFAULT COLLATE='x';",
             // Entries and options left to the grammar.
             "CREATE TABLE t (a int, KEY k (a(10)), KEY (a DESC), PRIMARY KEY (a) USING BTREE) ROW_FORMAT=DYNAMIC;",
             "CREATE TABLE t (a int, CONSTRAINT pk PRIMARY KEY CLUSTERED (a), CONSTRAINT c a int, CONSTRAINT x);",
             "CREATE TABLE t (a int, PRIMARY KEY (a) USING INDEX TABLESPACE x, UNIQUE (a) NOT ENFORCED);",
             "CREATE TABLE t (a int, key int, index varchar(3), KEY e ('a'), CONSTRAINT u UNIQUE (a), FOREIGN KEY (a)"
             " REFERENCES p (id)) ENGINE = MEMORY COLLATE = a.b;",
             "CREATE TABLE t (a int REFERENCES p (id) ON UPDATE CURRENT_TIMESTAMP, b int REFERENCES p MATCH FULL);",
             "CREATE TEMPORARY TABLE t (a int); CREATE TABLE t AS SELECT 1; CREATE TABLE t (a int) AUTO_INCREMENT=1, 2;",
             // Each statement is read into the room the last one left: a poorer
             // entry in the place of a richer one, after a reading that failed
             // half-way, keeps nothing of them.
             "CREATE TABLE p (id int);\nCREATE TABLE a (x int REFERENCES p (id) ON DELETE CASCADE DEFAULT 1"
             " COMMENT 'c' CHECK (x > 0), CONSTRAINT n CHECK (x < 9), FOREIGN KEY f (x) REFERENCES p (id)"
             " DEFERRABLE, UNIQUE KEY u (x), KEY k (x)) ENGINE=InnoDB COMMENT='t';\n"
             "CREATE TABLE b (y int, z int, w int, v int, u int);\n"
             "CREATE TABLE c (y int DEFAULT 2 NOT NULL, z int, KEY k (y(10)));\n"
             "CREATE TABLE d (q int, r int, s int, t int, o int);",
             // SQL Server's identity columns, clustered keys, index options and
             // file groups, and the forms of them left to the grammar (a sort
             // order without a clustering word is reported there).
             "CREATE TABLE [dbo].[T] ([ID] [int] IDENTITY(1,1) NOT NULL, [N] [nvarchar](50) NULL, CONSTRAINT [PK_T]"
             " PRIMARY KEY CLUSTERED ([ID] ASC, [N] DESC) WITH (PAD_INDEX = OFF, FILLFACTOR = 80, X = ON) ON [PRIMARY])"
             " ON [PRIMARY] TEXTIMAGE_ON [PRIMARY]\nGO\nCREATE TABLE u (a int IDENTITY(-5, -1) PRIMARY KEY CLUSTERED,"
             " b int IDENTITY, PRIMARY KEY NONCLUSTERED pk (b) ENABLE WITH (ONLINE = ON) ON fg) FILESTREAM_ON fs;",
             "CREATE TABLE t (a int, PRIMARY KEY (a ASC));\nCREATE TABLE t (a int IDENTITY(1), b int IDENTITY (1, 2, 3));\n"
             "CREATE TABLE t (a int IDENTITY(- 1, 1) NOT NULL, PRIMARY KEY CLUSTERED HASH (a));\n"
             "CREATE TABLE t (a int, PRIMARY KEY CLUSTERED (a) WITH (DATA_COMPRESSION = PAGE ON PARTITIONS (1)));\n"
             "CREATE TABLE t (a int, PRIMARY KEY (a) WITH (BUCKET_COUNT = (10)) ON ps (a)) ON ps(a);\n"
             "CREATE TABLE t (a int) ON COMMIT PRESERVE ROWS;\nCREATE TABLE t (a int) ON [PRIMARY] (x);\n"
             "CREATE TABLE t (a int PRIMARY KEY CLUSTERED WITH (FILLFACTOR = 1), b int) ON x.y TEXTIMAGE_ON;",
             // Unique constraints and indexes take sort orders and storage too.
             "CREATE TABLE t (a int UNIQUE NONCLUSTERED, b int, CONSTRAINT [UQ] UNIQUE NONCLUSTERED ([a] ASC, b DESC)"
             " WITH (PAD_INDEX = OFF) ON [PRIMARY], UNIQUE CLUSTERED KEY k (b), KEY (a DESC) ON fg, INDEX i (b ASC));\n"
             "CREATE TABLE t (a int UNIQUE CLUSTERED HASH, b int, UNIQUE NONCLUSTERED HASH (a), UNIQUE (a) INCLUDE (b),"
             " UNIQUE (a DESC NULLS FIRST), KEY (a ASC DESC), UNIQUE NULLS NOT DISTINCT (b));",
             // Records of the lexer and of later statements keep their order.
             "CREATE TABLE a (id INT);\nDECLARE v INT;\nCREATE TABLE b (x INT, x INT);\nDECLARE w INT;\n"
             "ALTER TABLE b ADD PRIMARY KEY (x);",
         }) {
        expectSameImport(sql);
    }
}

// Every type word with every kind of parenthesised size, read or left.
TEST(PlainColumns, EveryTypeWordWithEverySizeMakesTheGrammarsModel)
{
    const char *words[] = {"int", "integer", "numeric", "decimal", "dec", "number", "float", "real", "double",
                           "double precision", "varchar", "varchar2", "nvarchar", "raw", "text", "tinytext", "blob",
                           "bit", "date", "binary", "varbinary", "char", "character", "char varying", "nchar",
                           "nchar varying", "time", "timestamp", "year", "month", "enum", "set", "serial",
                           "\"geometry\"", "[int]", "long", "interval", "national char", "pg_catalog.int4"};
    const char *sizes[] = {"", "(1)", "(1, 2)", "(1, 2, 3)", "(max)", "(*)", "(*, 2)", "(1 char)", "(1 byte)",
                           "()", "('a')", "('a', 'b')", "(a)", "(-1)", " with time zone", " without local time zone",
                           " varying(2)", " precision (3)"};
    std::string sql = "CREATE TABLE u (id int);\n";
    int column = 0;
    for (const char *word : words) {
        for (const char *size : sizes) {
            sql += "CREATE TABLE t" + std::to_string(column) + " (c" + std::to_string(column) + " " + word + size +
                   " NOT NULL, d int);\n";
            ++column;
        }
    }
    expectSameImport(sql);
}

TEST(PlainColumns, FormsLeftToTheGrammarMakeTheSameModel)
{
    for (const char *sql : {
             "CREATE TABLE t (a int ARRAY[3], b int[], c varchar(10) BINARY, d int CHECK (d > 0), e int REFERENCES u(id),"
             " f int CONSTRAINT c NOT NULL, g int GENERATED ALWAYS AS (1) STORED, h int IDENTITY(1,1), i long raw,"
             " j interval day to second, k varbit, l bit varying(3), m int DEFAULT ON NULL 1, n int NOT FOR REPLICATION);",
             "CREATE TABLE t (a int DEFAULT ARRAY['a'], b int DEFAULT CAST(1 AS int), c text DEFAULT E'x',"
             " d int DEFAULT $$x$$, e int DEFAULT interval '1 day', f int ON UPDATE NOW(), g int AS (a + 1));",
             // Keywords as names, and names that start other entries.
             "CREATE TABLE t (date date, type int, comment text, key int, spatial int, like int, exclude int, period int);",
             // A trailing comma, doubled commas, an entry after a run.
             "CREATE TABLE t (a int, b int,);\nCREATE TABLE u (a int,, b int, PRIMARY KEY (a), c int, UNIQUE (c));",
         }) {
        expectSameImport(sql);
    }
}

TEST(PlainColumns, BrokenEntriesAroundPlainColumnsKeepTheirRecords)
{
    for (const char *sql : {
             "CREATE TABLE t (a int, b int DEFAULT, c int, d int NOT, e int);",
             "CREATE TABLE t (a int, b int DEFAULT f(1, c int, d int);",
             "CREATE TABLE t (a int, b varchar(10\nCREATE TABLE u (x int);",
             "CREATE TABLE t (a int,\nb int\nCREATE TABLE u (x int);",
             "CREATE TABLE t (a int, b int",
             "CREATE TABLE t (a int, b int DEFAULT 'x",
             "CREATE TABLE (a int, b int);\nCREATE TABLE t (a int; b int);",
             "CREATE TABLE t (a int, b int)\nGO\nCREATE TABLE u (a int)\n/\n",
         }) {
        expectSameImport(sql);
    }
}

// Random tables of plain and other columns, entries and breaks: the reading
// must agree with the grammar on every one.
TEST(PlainColumns, GeneratedTablesMakeTheGrammarsModel)
{
    const std::vector<std::string> names = {"a", "`b`", "\"C\"", "[d]", "a", "date", "e_1"};
    const std::vector<std::string> types = {"int", "int(11)", "varchar(255)", "decimal(10, 2)", "text", "",
                                            "timestamp with time zone", "character varying(9)", "enum('x','y')",
                                            "[int]", "serial", "double precision", "int[]", "bit varying(2)"};
    const std::vector<std::string> options = {
        "NOT NULL", "NULL", "DEFAULT NULL", "DEFAULT 0", "DEFAULT -1", "DEFAULT 'x'", "DEFAULT now()",
        "DEFAULT 'a'::text", "DEFAULT 1 + 2", "PRIMARY KEY", "AUTO_INCREMENT", "UNIQUE", "UNSIGNED",
        "COMMENT 'c'", "COLLATE \"C\"", "CHARACTER SET utf8", "ON UPDATE CURRENT_TIMESTAMP", "ENABLE",
        "CHECK (a > 0)", "REFERENCES u (id)", "DEFAULT", "NOT", "DEFAULT f(1,", "/* c */", "-- c\n",
        "REFERENCES u ON DELETE CASCADE", "REFERENCES u (id) DEFERRABLE", "REFERENCES",
        "CHECK ()", "CHECK (a <> 'x' OR f(a, 2) > 1)", "CONSTRAINT c CHECK (a IN (1, 2))", "CONSTRAINT nn NOT NULL",
        "CONSTRAINT pk PRIMARY KEY", "CONSTRAINT u UNIQUE", "CONSTRAINT d DEFAULT 5", "CONSTRAINT",
        "CONSTRAINT f FOREIGN KEY REFERENCES u (id)", "CONSTRAINT r REFERENCES u ON DELETE SET NULL",
        "IDENTITY(1,1)", "IDENTITY", "IDENTITY(1)", "PRIMARY KEY CLUSTERED", "PRIMARY KEY NONCLUSTERED HASH",
        "DEFAULT (0)", "DEFAULT ((1) + 2)", "DEFAULT ('')::text", "DEFAULT (getdate())", "DEFAULT (1, b int",
        "UNIQUE NONCLUSTERED", "UNIQUE CLUSTERED HASH"};
    const std::vector<std::string> entries = {"PRIMARY KEY (a)", "UNIQUE KEY uk (a)", "KEY (a)", "CONSTRAINT ck CHECK (1)",
                                              "", "FOREIGN KEY (a) REFERENCES u (id)", "INDEX i (a, `b`)",
                                              "CONSTRAINT fk FOREIGN KEY (a) REFERENCES u ON DELETE CASCADE",
                                              "CHECK (a > 0) ENABLE", "KEY kp (a(3))", "PRIMARY KEY (zz)",
                                              "CONSTRAINT pk PRIMARY KEY (a) ENABLE", "CONSTRAINT uq UNIQUE (a)",
                                              "UNIQUE (a) DEFERRABLE INITIALLY DEFERRED", "PRIMARY KEY pk (a, `b`)",
                                              "CONSTRAINT ix INDEX i (a) NOT DEFERRABLE",
                                              "CONSTRAINT [PK] PRIMARY KEY CLUSTERED ([a] ASC) WITH (PAD_INDEX = OFF) ON [PRIMARY]",
                                              "PRIMARY KEY NONCLUSTERED (a DESC, [d]) ON fg", "PRIMARY KEY (a DESC)",
                                              "PRIMARY KEY CLUSTERED (a) WITH (FILLFACTOR = 70, ONLINE = ON,",
                                              "PRIMARY KEY (a) WITH (X = (1)) ON PRIMARY",
                                              "CONSTRAINT [UQ] UNIQUE NONCLUSTERED ([a] ASC) WITH (PAD_INDEX = OFF) ON [PRIMARY]",
                                              "KEY k (a DESC, `b` ASC)", "UNIQUE CLUSTERED (a DESC) INCLUDE (b)"};
    const std::vector<std::string> tableOptions = {"", " ENGINE=InnoDB", " DEFAULT CHARSET=utf8", " COLLATE utf8_bin",
                                                   " COLLATE `utf8_bin`", " COLLATE='C'",
                                                   " AUTO_INCREMENT=3,", " COMMENT='t'", " ROW_FORMAT=COMPACT", "X",
                                                   " ON [PRIMARY]", " TEXTIMAGE_ON [PRIMARY]", " ON ps(a)", " ON COMMIT DROP"};
    std::mt19937 random(20261124);
    auto pick = [&random](const std::vector<std::string> &list) {
        return list[std::uniform_int_distribution<size_t>(0, list.size() - 1)(random)];
    };
    for (int script = 0; script < 600; ++script) {
        std::string sql = "CREATE TABLE u (id int);\nCREATE TABLE t (";
        const int count = std::uniform_int_distribution<int>(1, 6)(random);
        for (int i = 0; i < count; ++i) {
            if (i > 0) {
                sql += random() % 8 == 0 ? ",\n" : ", ";
            }
            if (random() % 6 == 0) {
                sql += pick(entries);
                continue;
            }
            sql += pick(names) + " " + pick(types);
            const int optionCount = std::uniform_int_distribution<int>(0, 3)(random);
            for (int o = 0; o < optionCount; ++o) {
                sql += " " + pick(options);
            }
        }
        sql += random() % 10 == 0 ? "\n" : ")" + pick(tableOptions) + pick(tableOptions) + ";\n";
        sql += "CREATE TABLE v (x int);";
        expectSameImport(sql);
    }
}

// A plain table is read ahead from the text only where the script-line
// filter would change nothing in it; elsewhere it is read from the token
// window, or by the grammar, and either way the model, the records and
// their places are those of the grammar.
TEST(PlainColumns, TablesAreReadAheadOnlyWhereNoLineDecisionApplies)
{
    struct Case {
        const char *sql;
        unsigned long readAhead;
    };
    // (The statement after a cut is one the reading leaves to the grammar.)
    const Case cases[] = {
        // Comments of every kind across lines.
        {"CREATE TABLE t (/* first\r\n   */ a int, // b\n b int /* c */ -- d\r);", 1},
        // Line ends of every kind and line comments inside, casts, signs and comparisons.
        {"CREATE TABLE t (\r\n  a int NOT NULL, -- first\r  b text DEFAULT 'x'::text,\n"
         "  c int DEFAULT -1, d numeric(*,2), CHECK (c >= 0 AND c <> 5 OR c != 7 OR c <= 9 OR c < d + 1)\r\n);",
         1},
        // A statement word opening a line inside the parentheses cuts nothing.
        {"CREATE TABLE t (a int,\nprint int,\ndeny int);", 1},
        // Table options on lines of their own.
        {"CREATE TABLE t (a int)\nENGINE=InnoDB\nDEFAULT CHARSET=utf8;", 1},
        // Batch separators: a GO line, a GO glued to the parenthesis, a "/" line.
        {"CREATE TABLE t (a int)\nGO\nCREATE TABLE u (b int) ROW_FORMAT=DYNAMIC;", 0},
        {"CREATE TABLE t (a int)GO\nCREATE TABLE u (b int) ROW_FORMAT=DYNAMIC;", 0},
        {"CREATE TABLE t (a int)\n/\nCREATE TABLE u (b int) ROW_FORMAT=DYNAMIC;", 0},
        {"CREATE TABLE t (a int,\nGO\n);", 0},
        // A statement word opening a line outside parentheses starts the next statement.
        {"CREATE TABLE t (a int)\nCREATE TABLE u (b int) ROW_FORMAT=DYNAMIC;", 0},
        {"CREATE TABLE t (a int)\nINSERT INTO t VALUES (1);", 0},
        {"CREATE TABLE t (a int)\nprint 'x';", 0},
        // DELIMITER lines, a "/" the fast path leaves to the generated lexer, an unended statement.
        {"CREATE TABLE t (a int)\nDELIMITER $$\nCREATE TABLE u (b int) ROW_FORMAT=DYNAMIC$$\nDELIMITER ;\n", 0},
        {"CREATE TABLE t (a int DEFAULT 4 / 2, b int);", 0},
        {"CREATE TABLE t (a int, b int)", 0},
        // After a routine, which the script-line filter runs to the next GO, "/" or DELIMITER line,
        // a table is read ahead (t, v), but not up to such a line (u).
        {"CREATE FUNCTION f() RETURNS trigger AS $$\nBEGIN\n  RETURN NEW;\nEND;\n$$ LANGUAGE plpgsql;\n"
         "CREATE TABLE t (a int DEFAULT f(),\n  b text);\nCREATE TABLE u (c int)\nGO\nCREATE TABLE v (d int);", 2},
        {"CREATE PROCEDURE p AS\nBEGIN\n  SELECT 1;\nEND;\nCREATE TABLE t (a int)\nCREATE TABLE u (b int)\nGO\n", 0},
        {"DELIMITER //\nCREATE PROCEDURE p() BEGIN SELECT 1; END//\nDELIMITER ;\nCREATE TABLE t (a int);", 1},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(plainTablesReadAhead(c.sql), c.readAhead) << c.sql;
        expectSameImport(c.sql);
    }
    // Read from the window instead: a token the lexer's fast path leaves.
    EXPECT_EQ(plainTablesRead("CREATE TABLE t (a int DEFAULT 4 / 2, b int);"), 1u);
}

// Records of statements after tables read ahead stand where the grammar
// puts them: the lexer goes on from the right line and position.
TEST(PlainColumns, RecordsAfterTablesReadAheadKeepTheirPlaces)
{
    const std::string sql = "CREATE TABLE t (\r\n  a int,\r\n  a int -- again\r\n);\r\n"
                            "CREATE TABLE u (x int,, y int);\n"
                            "CREATE TABLE v (\ra varchar(9) DEFAULT 'it''s',\r  FOREIGN KEY (a) REFERENCES w (id)\r);\r"
                            "CREATE TABLE w (id int) junk;\n"
                            "CREATE TABLE z (a int /* two\r\nlines */); CREATE TABLE y (b int,, c int);\n";
    EXPECT_GE(plainTablesReadAhead(sql), 2u);
    expectSameImport(sql);
    const std::string json = importJson(sql, true);
    // The duplicate in t, the extra comma in u, the junk after w (a lone CR
    // ends a line), the extra comma in y after z and its comment of two lines.
    for (const char *place : {"[3:2] Duplicate", "[5:21] Extraneous", "[10:24] Extraneous", "[12:32] Extraneous"}) {
        EXPECT_NE(json.find(place), std::string::npos) << place << "\n" << json;
    }
}

// Random scripts of plain tables cut by the lines the filter decides on
// (GO, "/", DELIMITER, statement words), with every kind of line end.
TEST(PlainColumns, TablesAmongScriptLinesMakeTheGrammarsModel)
{
    const std::vector<std::string> pieces = {
        "CREATE TABLE t (a int, b varchar(9) DEFAULT 'x')", "CREATE TABLE u (id int PRIMARY KEY, n text NOT NULL)",
        "(c int)", ";", ";", "\n", "\r\n", "\r", " ", "GO", "\nGO\n", "\n/\n", "DELIMITER $$\n", "DELIMITER ;\n",
        "$$", "INSERT INTO t VALUES (1)", "SET x = 1", "ENGINE=InnoDB", "-- c\n", "/* c */", "IF", "BEGIN", "END",
        "CREATE TABLE v (\nx int,\nset int\n)", ")", "::", "-1", ">= 2", "CHECK (a > 0)", "'s'", "CREATE TABLE",
        "/* a\nb */", "/*\r\n*/", "// c\n", "CREATE FUNCTION f() AS $$ BEGIN RETURN 1; END $$;",
        "CREATE PROCEDURE p AS BEGIN SELECT 1; END",
    };
    std::mt19937 random(20261125);
    std::uniform_int_distribution<size_t> pick(0, pieces.size() - 1);
    for (int script = 0; script < 400; ++script) {
        std::string sql;
        for (int i = std::uniform_int_distribution<int>(1, 14)(random); i > 0; --i) {
            sql += pieces[pick(random)];
            sql += random() % 3 == 0 ? "\n" : " ";
        }
        expectSameImport(sql);
    }
}

// A wide table is read ahead in tokens reused entry by entry: columns,
// keys, checks and foreign keys far apart keep their names, texts and
// places.
TEST(PlainColumns, WideTablesReadAheadMakeTheGrammarsModel)
{
    std::string sql = "CREATE TABLE u (id int);\nCREATE TABLE wide (\n";
    for (int i = 0; i < 3000; ++i) {
        sql += "  c" + std::to_string(i) + " varchar(" + std::to_string(i % 90 + 1) + ") NOT NULL DEFAULT 'v" +
               std::to_string(i) + "' COMMENT 'c',\n";
        if (i % 500 == 0) {
            sql += "  c" + std::to_string(i / 2) + " int,\n";  // a duplicate, renamed with a record
            sql += "  CONSTRAINT ck" + std::to_string(i) + " CHECK (c" + std::to_string(i) + " <> 'x'),\n";
            sql += "  FOREIGN KEY (c" + std::to_string(i) + ") REFERENCES u (id),\n";
            sql += "  UNIQUE KEY uk" + std::to_string(i) + " (c" + std::to_string(i) + "),\n";
        }
    }
    sql += "  PRIMARY KEY (c0, c2999)\n) ENGINE=InnoDB COMMENT='wide';\n";
    EXPECT_EQ(plainTablesReadAhead(sql), 2u);
    expectSameImport(sql);
}

// A table read ahead holds the tokens of the entry at hand: an entry of
// hundreds of tokens, between short ones and in tables one after another,
// makes the grammar's model all the same.
TEST(PlainColumns, LongEntriesReadAheadMakeTheGrammarsModel)
{
    std::string check = "CHECK (a > 0";
    std::string longer = "CONSTRAINT c2 CHECK (b <> ''";
    for (int i = 0; i < 150; ++i) {
        check += " OR a = " + std::to_string(i);
        longer += " AND b <> 'v" + std::to_string(i) + "' AND b <> 'w'";
    }
    check += ")";
    longer += ")";
    std::string sql;
    for (int table = 0; table < 3; ++table) {
        sql += "CREATE TABLE t" + std::to_string(table) + " (a int NOT NULL, b varchar(10) DEFAULT 'x', " + check +
               ", c0 int, c1 int, " + longer + ", d int, " + check + ", e int);\n";
    }
    EXPECT_EQ(plainTablesReadAhead(sql), 3U);
    expectSameImport(sql);
}
