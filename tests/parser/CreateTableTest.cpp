// CREATE TABLE: table names and options, column options, default and check
// texts, references, type texts, the types the walker does not take,
// duplicate columns and recovery inside a table.
#include "ParserTestSupport.h"
#include "TableBuilder.h"

#include <utility>

namespace {

const SQLTable *table(const ParseResult &result, const std::string &name)
{
    for (const auto &item : result.container->tables()) {
        if (item->getName() == name) {
            return item.get();
        }
    }
    return nullptr;
}

std::vector<std::string> fieldNames(const SQLTable &table)
{
    std::vector<std::string> names;
    for (const auto &field : table.fields()) {
        names.push_back(field->getName());
    }
    return names;
}

// Parses one column definition and returns the table built for it.
ParseResult column(const std::string &definition)
{
    return parse("CREATE TABLE t (" + definition + ");");
}

const SQLField &onlyField(const ParseResult &result)
{
    const SQLTable *built = table(result, "t");
    if (built == nullptr || built->fields().empty()) {
        static const std::unique_ptr<SQLField> none = SQLField::fieldWithName("<no field>", "");
        ADD_FAILURE() << "no column built";
        return *none;
    }
    return *built->fields().front();
}

TEST(CreateTable, OnlyATwoPartNameSetsSchemaAndBaseName)
{
    const ParseResult result = parse("CREATE TABLE plain (a INT);\n"
                                     "CREATE TABLE IF NOT EXISTS sales.orders (a INT);\n"
                                     "CREATE OR REPLACE TEMPORARY TABLE db.sales.lines ();\n");
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_EQ(result.container->tables().size(), 3u);
    const SQLTable &plain = *result.container->tables()[0];
    EXPECT_EQ(plain.getName(), "plain");
    EXPECT_FALSE(plain.getSchemaName());
    const SQLTable &orders = *result.container->tables()[1];
    EXPECT_EQ(orders.getName(), "orders");
    EXPECT_EQ(orders.getSchemaName(), std::optional<std::string>("sales"));
    EXPECT_EQ(orders.getBaseName(), std::optional<std::string>("orders"));
    // Three parts: made under the first part, nothing more; the empty
    // column list still gives a table.
    const SQLTable &lines = *result.container->tables()[2];
    EXPECT_EQ(lines.getName(), "db");
    EXPECT_FALSE(lines.getSchemaName());
    EXPECT_FALSE(lines.getBaseName());
    EXPECT_TRUE(lines.fields().empty());
}

TEST(CreateTable, KeptOptionsStayInTheTreeAndTheOthersLeaveNothing)
{
    EXPECT_EQ(tree("CREATE TEMPORARY TABLE t (a INT) ENGINE=InnoDB DEFAULT CHARSET=utf8 ROW_FORMAT=DYNAMIC, "
                   "CHECKSUM=1 WITH (fillfactor=70, toast.autovacuum_enabled=false) WITHOUT OIDS UNION=(a,b) "
                   "MAX_ROWS = 9;"),
              "CREATE TABLE t ( a INT ) ENGINE = InnoDB DEFAULT CHARSET = utf8 ;");
}

TEST(CreateTable, OptionsSeparatedByCommasOrBlanksBuildTheSameTable)
{
    for (const char *separator : {" ", ", ", " ,\n "}) {
        const std::string sep = separator;
        const ParseResult result = parse("CREATE TABLE t (a INT) ENGINE=MyISAM" + sep + "COMMENT='x'" + sep +
                                         "AUTO_INCREMENT=7" + sep + "CHARACTER SET latin1" + sep +
                                         "COLLATE = latin1_bin" + sep + "TYPE=Aria;");
        ASSERT_TRUE(result.container);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << separator;
        const SQLTable *built = table(result, "t");
        ASSERT_NE(built, nullptr);
        EXPECT_EQ(built->getTableType(), std::optional<std::string>("Aria"));  // the last engine wins
        EXPECT_EQ(built->getPropertyAsString("table_character_set"), std::optional<std::string>("latin1"));
        EXPECT_EQ(built->getPropertyAsString("table_collation"), std::optional<std::string>("latin1_bin"));
        EXPECT_EQ(built->getPropertyAsString("comment"), std::optional<std::string>("x"));
        EXPECT_EQ(built->getProperties().size(), 3u);
    }
}

TEST(CreateTable, EqualsIsRequiredAfterEngineAndCommentButNotAfterCharacterSet)
{
    EXPECT_EQ(parse("CREATE TABLE t (a INT) DEFAULT CHARACTER SET utf8;").records, std::vector<std::string>{});
    for (const char *option : {"ENGINE InnoDB", "COMMENT 'x'", "AUTO_INCREMENT 5"}) {
        const ParseResult result = parse(std::string("CREATE TABLE t (a INT) ") + option + ";\nCREATE TABLE u (b INT);");
        ASSERT_TRUE(result.container);
        EXPECT_FALSE(result.records.empty()) << option;
        EXPECT_NE(table(result, "t"), nullptr) << option;
        EXPECT_NE(table(result, "u"), nullptr) << option;
    }
}

TEST(Columns, DefaultAndCheckKeepTheExactSourceTextOnTheirToken)
{
    EXPECT_EQ(tree("CREATE TABLE t (a INT DEFAULT (now() + 1) CHECK (a > 0) NOT NULL);"),
              "CREATE TABLE t ( a INT DEFAULT CHECK NOT NULL ) ;");
    const std::pair<const char *, const char *> defaults[] = {
        {"DEFAULT 'abc'::character varying", "'abc'::character varying"},
        {"DEFAULT (now() +  1)", "(now() +  1)"},
        {"DEFAULT ( /* start */ 1 -- one\n )", "( /* start */ 1 -- one\n )"},
        {"DEFAULT nextval('s.seq'::regclass)", "nextval('s.seq'::regclass)"},
        {"DEFAULT 'caf\xC3\xA9 \xF0\x9F\x98\x80'", "'caf\xC3\xA9 \xF0\x9F\x98\x80'"},
        {"DEFAULT -1.5", "-1.5"},
        {"DEFAULT b'101'", "b'101'"},
        {"DEFAULT CURRENT_TIMESTAMP(3)", "CURRENT_TIMESTAMP(3)"},
        {"DEFAULT CAST(GETDATE() AS DATE)", "CAST(GETDATE() AS DATE)"},
        {"DEFAULT NULL", "NULL"},
        {"CONSTRAINT df DEFAULT ((0))", "((0))"},
    };
    for (const auto &[option, text] : defaults) {
        const ParseResult result = column(std::string("a INT ") + option);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << option;
        EXPECT_EQ(onlyField(result).getDefaultValue(), std::optional<std::string>(text)) << option;
    }
    const ParseResult checked = column("a INT CHECK (  a IN (1, 2) /* small */ AND\n a::text <> 'x' ) "
                                       "CONSTRAINT c2 CHECK (a NOT LIKE '%z' OR a BETWEEN -1 AND 0.5)");
    EXPECT_EQ(checked.records, std::vector<std::string>{});
    const auto &checks = onlyField(checked).checkConstraints();
    ASSERT_EQ(checks.size(), 2u);
    EXPECT_EQ(checks[0]->getName(), "cons_check");
    EXPECT_EQ(checks[0]->getCheckConstraintExpression(), "a IN (1, 2) /* small */ AND\n a::text <> 'x'");
    EXPECT_EQ(checks[1]->getName(), "c2");
    EXPECT_EQ(checks[1]->getCheckConstraintExpression(), "a NOT LIKE '%z' OR a BETWEEN -1 AND 0.5");
}

TEST(Columns, IdentityAndNamedNotNullAreMatchedButNotApplied)
{
    EXPECT_FALSE(onlyField(column("a INT IDENTITY")).isAutoIncrement());
    EXPECT_FALSE(onlyField(column("a INT IDENTITY (1, 1)")).isAutoIncrement());
    EXPECT_TRUE(onlyField(column("a INT AUTOINCREMENT")).isAutoIncrement());
    EXPECT_TRUE(onlyField(column("a INT AUTO_INCREMENT")).isAutoIncrement());
    EXPECT_FALSE(onlyField(column("a INT CONSTRAINT nn NOT NULL")).isNotNull());
    EXPECT_TRUE(onlyField(column("a INT NOT NULL")).isNotNull());
    EXPECT_TRUE(onlyField(column("a INT NULL NOT NULL NOT NULL")).isNotNull());
    EXPECT_FALSE(onlyField(column("a INT NULL")).isNotNull());
    // Named keys, with their index options, do apply.
    EXPECT_TRUE(onlyField(column("a INT CONSTRAINT pk PRIMARY KEY NONCLUSTERED WITH FILLFACTOR = 80")).isPrimaryKey());
    EXPECT_TRUE(onlyField(column("a INT CONSTRAINT u UNIQUE CLUSTERED")).getPropertyAsBoolean("unique"));
}

TEST(Columns, OptionsApplyInAnyOrderAndNumber)
{
    const ParseResult result = column("a VARCHAR(10) BINARY COLLATE latin1_bin ZEROFILL COMMENT 'c' UNSIGNED "
                                      "ENABLE CHARSET latin1 UNIQUE PRIMARY KEY DEFAULT 'x' DEFAULT 'y'");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    const SQLField &field = onlyField(result);
    EXPECT_EQ(field.getType(), "VARCHAR ( 10 )");
    EXPECT_TRUE(field.isPrimaryKey());
    EXPECT_EQ(field.getDefaultValue(), std::optional<std::string>("'y'"));
    for (const char *flag : {"binary", "zerofill", "unsigned", "unique"}) {
        EXPECT_TRUE(field.getPropertyAsBoolean(flag)) << flag;
    }
    EXPECT_EQ(field.getPropertyAsString("field_collation"), std::optional<std::string>("latin1_bin"));
    EXPECT_EQ(field.getPropertyAsString("field_character_set"), std::optional<std::string>("latin1"));
    EXPECT_FALSE(onlyField(column("a TEXT UNICODE")).getPropertyAsBoolean("binary"));
}

TEST(Columns, OnUpdateStoresTheValueAsRendered)
{
    const std::pair<const char *, const char *> cases[] = {
        {"ON UPDATE CURRENT_TIMESTAMP", "CURRENT_TIMESTAMP"},
        {"ON UPDATE current_timestamp()", "current_timestamp ( )"},
        {"ON UPDATE NOW()", "NOW ( )"},
        {"ON UPDATE LOCALTIMESTAMP", "LOCALTIMESTAMP"},
    };
    for (const auto &[option, text] : cases) {
        const ParseResult result = column(std::string("a TIMESTAMP ") + option);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << option;
        EXPECT_EQ(onlyField(result).getPropertyAsString("onUpdateFieldValue"), std::optional<std::string>(text));
    }
    EXPECT_FALSE(column("a TIMESTAMP ON UPDATE NOW").records.empty());  // NOW needs its parentheses
}

TEST(References, ActionsDeferrabilityAndTargetsReachTheField)
{
    const std::pair<const char *, int> actions[] = {
        {"CASCADE", 1}, {"RESTRICT", 2}, {"SET NULL", 3}, {"NO ACTION", 4}, {"NO_ACTION", 4}, {"SET DEFAULT", 5},
    };
    for (const auto &[action, code] : actions) {
        const ParseResult result = column(std::string("a INT REFERENCES o (id) ON DELETE ") + action);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << action;
        EXPECT_EQ(onlyField(result).getDeleteAction(), code) << action;
    }
    const ParseResult result = column("a INT REFERENCES s.o MATCH FULL ON DELETE CASCADE ON UPDATE SET NULL "
                                      "ON DELETE RESTRICT DEFERRABLE INITIALLY DEFERRED NOT NULL");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    const SQLField &field = onlyField(result);
    ASSERT_NE(field.getReferences(), nullptr);
    EXPECT_EQ(field.getReferences()->table, "s.o");
    EXPECT_FALSE(field.getReferences()->field);
    EXPECT_EQ(field.getDeleteAction(), 2);  // the later ON DELETE wins
    EXPECT_EQ(field.getUpdateAction(), 3);
    EXPECT_TRUE(field.isDeferrable());
    EXPECT_TRUE(field.isInitiallyDeferred());
    EXPECT_TRUE(field.isNotNull());
    EXPECT_FALSE(onlyField(column("a INT REFERENCES o NOT DEFERRABLE INITIALLY IMMEDIATE")).isDeferrable());
    // Named, with or without FOREIGN KEY; the constraint name is not kept.
    for (const char *named : {"CONSTRAINT fk FOREIGN KEY REFERENCES o (x, y)", "CONSTRAINT fk REFERENCES o (x)"}) {
        const ParseResult namedResult = column(std::string("a INT ") + named);
        const SQLField &target = onlyField(namedResult);
        ASSERT_NE(target.getReferences(), nullptr) << named;
        EXPECT_EQ(target.getReferences()->field, std::optional<std::string>("x"));
        EXPECT_FALSE(target.getReferences()->referenceId);
    }
    EXPECT_EQ(tree("CREATE TABLE t (a INT REFERENCES o (id) MATCH SIMPLE ON UPDATE SET NULL ON DELETE NO ACTION);"),
              "CREATE TABLE t ( a INT REFERENCES o ( id ) ON_UPDATE SET NULL ON_DELETE NO ACTION ) ;");
}

TEST(DataTypes, TypeTextKeepsTheCaseAndNormalisesBlanks)
{
    const std::pair<const char *, const char *> types[] = {
        {"int(11)", "int ( 11 )"},
        {"VARCHAR2(20 BYTE)", "VARCHAR2 ( 20 BYTE )"},
        {"NVARCHAR(MAX)", "NVARCHAR ( MAX )"},
        {"character  varying(40)", "character varying ( 40 )"},
        {"NATIONAL CHAR VARYING (10)", "NATIONAL CHAR VARYING ( 10 )"},
        {"NUMBER(*,2)", "NUMBER ( * , 2 )"},
        {"DECIMAL( 10 ,2 )", "DECIMAL ( 10 , 2 )"},
        {"double precision(8,3)", "double precision ( 8 , 3 )"},
        {"TIMESTAMP(6) WITH TIME ZONE", "TIMESTAMP ( 6 ) WITH TIME ZONE"},
        {"timestamp with local time zone", "timestamp with local time zone"},
        {"TIME WITH TIMEZONE", "TIME WITH TIMEZONE"},
        {"YEAR(4)", "YEAR ( 4 )"},
        {"INTERVAL YEAR(2)", "INTERVAL YEAR ( 2 )"},
        {"INTERVAL SECOND(2, 3)", "INTERVAL SECOND ( 2 , 3 )"},
        {"BIT VARYING(3)", "BIT VARYING ( 3 )"},
        {"ENUM('a', \"b\")", "ENUM ( 'a' , \"b\" )"},
        {"LONG RAW", "LONG RAW"},
        {"datetime(6)", "datetime ( 6 )"},
        {"public.mood", "public . mood"},
        {"\"int\"", "\"int\""},
        {"CURSOR", "CURSOR"},
        // Short ASCII words are narrowed in place (a word up to 64 units, 63
        // after a blank); longer or non-ASCII ones are converted.
        {"[int]", "int"},
        {"ÉNUM_tÿpe(3)", "ÉNUM_tÿpe ( 3 )"},
        {"t222222222222222222222222222222222222222222222222222222222222222(2)", "t222222222222222222222222222222222222222222222222222222222222222 ( 2 )"},
        {"t2222222222222222222222222222222222222222222222222222222222222222(2)", "t2222222222222222222222222222222222222222222222222222222222222222 ( 2 )"},
        {"ENUM('aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa', 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa')", "ENUM ( 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa' , 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa' )"},
    };
    for (const auto &[source, text] : types) {
        const ParseResult result = column(std::string("a ") + source);
        EXPECT_EQ(result.records, std::vector<std::string>{}) << source;
        EXPECT_EQ(onlyField(result).getType(), text) << source;
    }
}

TEST(DataTypes, MalformedTypesAreRecognitionErrors)
{
    for (const char *type : {"ENUM(1,2)", "TINYTEXT(x)", "TIMESTAMP(6,2)", "BIT VARYING", "VARCHAR(abc)"}) {
        const ParseResult result = parse(std::string("CREATE TABLE t (a ") + type + ");\nCREATE TABLE u (b INT);");
        ASSERT_TRUE(result.container) << type;
        EXPECT_FALSE(result.records.empty()) << type;
        EXPECT_NE(table(result, "u"), nullptr) << type;
    }
}

// SQLite: a column may go without a type; it keeps its options and the
// columns after it are read. A length may follow any type word.
TEST(DataTypes, ColumnsWithoutATypeKeepTheirOptions)
{
    const ParseResult result = parse("CREATE TABLE s (v NOT NULL, w, x DEFAULT 0, y UNIQUE, z REFERENCES s (v), check,\n"
                                     "  c text(65535) NOT NULL, CHECK (x > 0));");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_NE(table(result, "s"), nullptr);
    const SQLTable &s = *table(result, "s");
    EXPECT_EQ(fieldNames(s), (std::vector<std::string>{"v", "w", "x", "y", "z", "check", "c"}));
    EXPECT_EQ(s.fields()[0]->getType(), "");
    EXPECT_TRUE(s.fields()[0]->isNotNull());
    EXPECT_EQ(s.fields()[2]->getDefaultValue(), std::optional<std::string>("0"));
    EXPECT_NE(s.fields()[4]->getReferences(), nullptr);
    EXPECT_EQ(s.fields()[6]->getType(), "text ( 65535 )");
    EXPECT_TRUE(s.fields()[6]->isNotNull());
    EXPECT_EQ(s.checkConstraints().size(), 1u);
}

TEST(DataTypes, TypesTheWalkerDoesNotTakeLeaveOnlyTheirColumnOut)
{
    const ParseResult result = parse("CREATE TABLE t (a INT, b VARBIT(8) NOT NULL, c INTERVAL, d INTERVAL(3), "
                                     "e INTERVAL DAY(3) TO SECOND(2) DEFAULT NULL, f INTERVAL YEAR TO MONTH, g DATE);\n"
                                     "CREATE TABLE u (h INT);");
    ASSERT_TRUE(result.container);
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_NE(table(result, "t"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "t")), (std::vector<std::string>{"a", "c", "d", "e", "f", "g"}));
    EXPECT_EQ(table(result, "t")->fields()[3]->getType(), "INTERVAL DAY ( 3 ) TO SECOND ( 2 )");
    EXPECT_EQ(table(result, "t")->fields()[3]->getDefaultValue(), std::optional<std::string>("NULL"));
    EXPECT_NE(table(result, "u"), nullptr);
    // A reference on such a column has no field to go to.
    EXPECT_EQ(parse("CREATE TABLE t (b VARBIT REFERENCES o (x));").records,
              std::vector<std::string>{"[1:25] local field not found when linking to o(x)"});
}

TEST(Columns, KeywordsServeAsNames)
{
    const ParseResult result = parse("CREATE TABLE date (type INT, comment TEXT, year YEAR, minute INT, check INT, "
                                     "date DATE, zone INT, text TEXT);");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_NE(table(result, "date"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "date")),
              (std::vector<std::string>{"type", "comment", "year", "minute", "check", "date", "zone", "text"}));
}

// Keywords that start a clause elsewhere name columns in a table's element
// list, and the key, index and reference lists that name them keep them.
TEST(Columns, ClauseKeywordsNameColumnsWhereNoElementStartsWithThem)
{
    const ParseResult result = parse(
        "CREATE TABLE kv (id INT, key TEXT NOT NULL, sort INT, max INT, index INT, fulltext TEXT, desc INT,\n"
        "  asc INT, column INT, partition INT, temporary INT, cascade INT, restrict INT, interval INT,\n"
        "  without INT, second INT, full INT,\n"
        "  PRIMARY KEY (id, key), KEY k (sort), INDEX (max, desc), FULLTEXT KEY (fulltext),\n"
        "  FOREIGN KEY (key) REFERENCES kv (index));\n"
        "CREATE TABLE k2 (key varchar(10), index int(11) NOT NULL, full text, FULL TEXT ft (full));");
    EXPECT_EQ(result.records, std::vector<std::string>{});
    ASSERT_NE(table(result, "kv"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "kv")),
              (std::vector<std::string>{"id", "key", "sort", "max", "index", "fulltext", "desc", "asc", "column",
                                        "partition", "temporary", "cascade", "restrict", "interval", "without",
                                        "second", "full"}));
    const SQLTable &kv = *table(result, "kv");
    EXPECT_TRUE(kv.fields()[1]->isPrimaryKey());
    ASSERT_EQ(kv.indexes().size(), 3u);
    EXPECT_EQ(kv.indexes()[1]->entries()[1]->getName(), "desc");
    ASSERT_NE(kv.fields()[1]->getReferences(), nullptr);
    EXPECT_EQ(kv.fields()[1]->getReferences()->field, std::optional<std::string>("index"));
    ASSERT_NE(table(result, "k2"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "k2")), (std::vector<std::string>{"key", "index", "full"}));
    EXPECT_EQ(table(result, "k2")->indexes().size(), 1u);
}

// A word that starts a table element stays reserved there: UNIQUE INT could
// be a column or the start of a unique key, and CONSTRAINT names a
// constraint. Such entries are reported and the columns after them read.
TEST(Columns, WordsThatStartATableElementStayReserved)
{
    for (const char *word : {"unique", "constraint", "primary", "foreign"}) {
        const ParseResult result = parse(std::string("CREATE TABLE t (a INT, ") + word + " INT, b INT);");
        EXPECT_FALSE(result.records.empty()) << word;
        ASSERT_NE(table(result, "t"), nullptr) << word;
        EXPECT_EQ(fieldNames(*table(result, "t")), (std::vector<std::string>{"a", "b"})) << word;
    }
}

TEST(Columns, DuplicateNamesAreKeptRenamedAndReportedAtTheSecondName)
{
    const ParseResult result = parse("CREATE TABLE t (\n  id INT,\n  name TEXT,\n    ID CHAR(2) NOT NULL\n);");
    ASSERT_NE(table(result, "t"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "t")), (std::vector<std::string>{"id", "name", "ID_1"}));
    EXPECT_TRUE(table(result, "t")->fields()[2]->isNotNull());
    EXPECT_EQ(result.records,
              std::vector<std::string>{"[4:4] Duplicate field 'ID' has been renamed to 'ID_1' in table 't'"});

    // The record names the column as the model holds it: unquoted, blanks
    // trimmed, doubled quotes single.
    const ParseResult quoted = parse(R"(CREATE TABLE q ("a""b" INT, " a""b " INT, `c` INT, c INT);)");
    ASSERT_NE(table(quoted, "q"), nullptr);
    EXPECT_EQ(fieldNames(*table(quoted, "q")), (std::vector<std::string>{"a\"b", "a\"b_1", "c", "c_1"}));
    EXPECT_EQ(quoted.records,
              (std::vector<std::string>{"[1:28] Duplicate field 'a\"b' has been renamed to 'a\"b_1' in table 'q'",
                                        "[1:51] Duplicate field 'c' has been renamed to 'c_1' in table 'q'"}));
}

TEST(Recovery, ABrokenColumnIsLeftOutAndTheScriptGoesOn)
{
    const ParseResult result = parse("CREATE TABLE t (\n  a INT NOT NULL,\n  b INT DEFAULT 1 + 2 NOT NULL,\n"
                                     "  c INT FOO (1, (2)) BAR,\n  d DATE\n);\n"
                                     "CREATE TABLE u (e INT, , f INT);\n"
                                     "CREATE TABLE v (g INT;\n"
                                     "CREATE TABLE w (h INT CHECK (h > 0));\n");
    ASSERT_TRUE(result.container);
    ASSERT_EQ(result.container->tables().size(), 4u);
    const SQLTable &t = *table(result, "t");
    EXPECT_EQ(fieldNames(t), (std::vector<std::string>{"a", "b", "d"}));
    EXPECT_TRUE(t.fields()[0]->isNotNull());
    EXPECT_EQ(t.fields()[1]->getDefaultValue(), std::optional<std::string>("1 + 2"));
    EXPECT_TRUE(t.fields()[1]->isNotNull());
    EXPECT_EQ(fieldNames(*table(result, "u")), (std::vector<std::string>{"e", "f"}));
    EXPECT_EQ(fieldNames(*table(result, "v")), (std::vector<std::string>{"g"}));
    EXPECT_EQ(table(result, "w")->fields().front()->checkConstraints().size(), 1u);
    EXPECT_EQ(result.records,
              (std::vector<std::string>{
                  "[4:8] Parse Error: Mismatched Token Exception (2): found token 'FOO' near 'FOO' 1",
                  "[4:8] expected CLOSEPAREN ... ",
                  "[7:21] Parse Error: Extraneous Token Exception (9): found token ',' near ',' 2",
                  "[7:21] Extraneous input - expected COMMA",
                  "[8:21] Parse Error: Missing Token Exception (10): found token '<missing CLOSEPAREN>' near "
                  "'<missing CLOSEPAREN>' 3",
                  "[8:21] Missing (CLOSEPAREN)",
                  "[4:2] error field ERROR",
              }));
}

TEST(Recovery, ATableWithoutANameIsNotBuilt)
{
    const ParseResult result = parse("CREATE TABLE (a INT);\nCREATE TABLE u (b INT);");
    ASSERT_TRUE(result.container);
    ASSERT_EQ(result.container->tables().size(), 1u);
    EXPECT_EQ(result.container->tables()[0]->getName(), "u");
    EXPECT_EQ(result.records,
              (std::vector<std::string>{
                  "[1:13] Parse Error: No Viable Alternative Exception (3): found token '(' near '(' 1",
                  "[1:13] No Viable Alternative cannot match to any predicted input...",
                  "[1:13] error field ERROR",
              }));
}

} // namespace

TEST(Comments, TheWrittenValueBecomesTheCommentText)
{
    const std::pair<const char *, std::optional<std::string>> cases[] = {
        {"'plain'", "plain"},
        {" 'It''s' ", "It's"},
        {"\"say 'hi'\"", "say 'hi'"},
        {"E'escape\\n'", "escape\\n"},
        {"$$it's$$", "it's"},
        {"$t$a $$ b$t$", "a $$ b"},
        {"''", ""},
        {"'a''''b'", "a''b"},
        {"'''x'''", "'x'"},
        {"'x'''", "x'"},
        {"'x''y'", "x'y"},
        {"'it`s \"q\"'", "it`s \"q\""},
        {"`a``b`", "a`b"},
        {"word", "word"},
        {"NULL", std::nullopt},
        {"null", std::nullopt},
    };
    for (const auto &[written, expected] : cases) {
        EXPECT_EQ(kp_commentText(written), expected) << written;
    }
}

// A dollar quote that never closes is no value: the column reports it, and
// the rest of the script is not swallowed by it.
TEST(Columns, AnUnclosedDollarQuoteDoesNotSwallowTheScript)
{
    const ParseResult result = parse("CREATE TABLE t (a text DEFAULT $$x, b INT);\nCREATE TABLE u (c INT);\n"
                                     "CREATE TABLE v (d money DEFAULT $1);");
    ASSERT_TRUE(result.container);
    EXPECT_FALSE(result.records.empty());
    ASSERT_NE(table(result, "u"), nullptr);
    EXPECT_EQ(fieldNames(*table(result, "u")), std::vector<std::string>{"c"});
    EXPECT_NE(table(result, "v"), nullptr);
}

// After ALTER TABLE the word ONLY is PostgreSQL's keyword (ALTER TABLE ONLY t),
// so a table called only is not reached there; other clause words name the
// target.
TEST(Alter, OnlyStaysAKeywordAfterAlterTable)
{
    const ParseResult result = parse("CREATE TABLE only (a INT);\nCREATE TABLE sort (a INT);\n"
                                     "ALTER TABLE ONLY sort ADD CONSTRAINT s_pk PRIMARY KEY (a);\n"
                                     "ALTER TABLE only ADD CONSTRAINT o_pk PRIMARY KEY (a);");
    ASSERT_TRUE(result.container);
    ASSERT_NE(table(result, "sort"), nullptr);
    EXPECT_TRUE(table(result, "sort")->fields()[0]->isPrimaryKey());
    ASSERT_NE(table(result, "only"), nullptr);
    EXPECT_FALSE(table(result, "only")->fields()[0]->isPrimaryKey());
    EXPECT_FALSE(result.records.empty());
}
