// Keys, indexes and foreign keys of a table definition, CREATE INDEX and
// CREATE SEQUENCE: what reaches the model and what is only consumed. The
// golden cases keys-* cover foreign-key naming, unknown columns and the
// resolution of references after the parse.
#include "ParserTestSupport.h"

namespace {

// name/prefix pairs of an index's entries, "a(10)" for a prefix of 10.
std::vector<std::string> entryTexts(const SQLIndex &index)
{
    std::vector<std::string> texts;
    for (const auto &entry : index.entries()) {
        texts.push_back(entry->getName() + (entry->getPrefixSize() ? "[" + *entry->getPrefixSize() + "]" : ""));
    }
    return texts;
}

using Names = std::vector<std::string>;

} // namespace

TEST(TableKeys, PrimaryKeyFlagsItsColumnsAndDropsNameAndStateOptions)
{
    const ParseResult result = parse(
        "CREATE TABLE t (a INT, b INT, c INT, PRIMARY KEY pk_name (a, b) DEFERRABLE INITIALLY DEFERRED ENABLE);\n"
        "CREATE TABLE s (a INT, b INT, CONSTRAINT PK_s PRIMARY KEY CLUSTERED (b));\n"
        "CREATE TABLE m (a INT, PRIMARY KEY (missing));\n");
    EXPECT_EQ(result.records, Names{});
    EXPECT_EQ(primaryKeyNames(tableNamed(result, "t")), (Names{"a", "b"}));
    EXPECT_TRUE(tableNamed(result, "t").indexes().empty());
    EXPECT_EQ(primaryKeyNames(tableNamed(result, "s")), Names{"b"});
    EXPECT_EQ(primaryKeyNames(tableNamed(result, "m")), Names{});
    EXPECT_EQ(tree("CREATE TABLE t (a INT, PRIMARY KEY pk (a) NOT DEFERRABLE USING INDEX TABLESPACE x RELY);"),
              "CREATE TABLE t ( a INT , PRIMARY KEY pk ( a ) ) ;");
}

// A sort order on a primary-key column is reported, except in SQL Server's
// CLUSTERED / NONCLUSTERED form, whose generated scripts write one on every key
// column; either way the key keeps its columns.
TEST(TableKeys, SortOrderOnKeyColumnsIsReportedUnlessClustered)
{
    const ParseResult clustered = parse(
        "CREATE TABLE s (a INT, b INT, CONSTRAINT PK_s PRIMARY KEY CLUSTERED (a ASC, b DESC));\n"
        "CREATE TABLE n (a INT, PRIMARY KEY NONCLUSTERED (a DESC));\n"
        "ALTER TABLE s ADD CONSTRAINT UQ_s UNIQUE NONCLUSTERED (b ASC);\n");
    EXPECT_EQ(clustered.records, Names{});
    EXPECT_EQ(primaryKeyNames(tableNamed(clustered, "s")), (Names{"a", "b"}));
    EXPECT_EQ(primaryKeyNames(tableNamed(clustered, "n")), Names{"a"});

    // ADD UNIQUE reads its entries as an index does: a sort order is no error there.
    const ParseResult plain = parse("CREATE TABLE p (a INT, b INT, PRIMARY KEY (a, b DESC));\n"
                                    "ALTER TABLE p ADD CONSTRAINT u UNIQUE (a ASC);\n");
    ASSERT_EQ(plain.records.size(), 2u);
    EXPECT_NE(plain.records[0].find("[1:48]"), std::string::npos) << plain.records[0];
    EXPECT_EQ(primaryKeyNames(tableNamed(plain, "p")), (Names{"a", "b"}));
    ASSERT_EQ(tableNamed(plain, "p").indexes().size(), 1u);
    EXPECT_EQ(tableNamed(plain, "p").indexes()[0]->getFieldName(), std::optional<std::string>("a"));
}

// A primary-key column takes no prefix length; a broken key entry is
// reported and the table keeps its other entries, later ones included.
TEST(TableKeys, BrokenKeyEntriesAreReportedAndTheTableKeepsTheRest)
{
    const ParseResult result = parse("CREATE TABLE t (a INT, PRIMARY KEY (a(10)));\n"
                                     "CREATE TABLE u (a INT, UNIQUE KEY (a, ), b INT, KEY k (a) USING FOO, c INT);\n"
                                     "CREATE TABLE v (x INT);");
    EXPECT_FALSE(result.records.empty());
    EXPECT_EQ(tableNamed(result, "t").fields().size(), 1u);
    EXPECT_EQ(tableNamed(result, "u").fields().size(), 3u);
    EXPECT_EQ(tableNamed(result, "v").fields().size(), 1u);
}

TEST(TableKeys, IndexFormsKindsNamesAndEntries)
{
    const ParseResult result = parse(
        "CREATE TABLE t (a VARCHAR(20), b INT, k TEXT,\n"
        "  UNIQUE KEY uk (a(10) DESC, b),\n"
        "  KEY PRIMARY (a),\n"
        "  INDEX USING BTREE (a COLLATE \"C\" ASC NULLS LAST),\n"
        "  FULL TEXT ft (k), FULLTEXT KEY (k), CLUSTERED INDEX cx (b),\n"
        "  CONSTRAINT ignored INDEX i (a(10), lower(k)) USING HASH,\n"
        "  KEY i (b));\n");
    EXPECT_EQ(result.records, Names{});
    const auto &indexes = tableNamed(result, "t").indexes();
    ASSERT_EQ(indexes.size(), 8u);

    const SQLIndex &unique = *indexes[0];
    EXPECT_TRUE(unique.isConstraint());
    EXPECT_EQ(unique.getName(), "uk");
    EXPECT_FALSE(unique.getIndexType());
    EXPECT_TRUE(unique.getPropertyAsBoolean("collapseUnique"));
    EXPECT_FALSE(unique.hasProperty("collapseSimpleIndex"));
    EXPECT_EQ(entryTexts(unique), (Names{"a[10]", "b"}));
    EXPECT_EQ(unique.getFieldName(), std::optional<std::string>("b"));

    EXPECT_EQ(indexes[1]->getName(), "PRIMARY");
    EXPECT_FALSE(indexes[2]->hasName());
    EXPECT_EQ(entryTexts(*indexes[2]), Names{"a"});
    const std::optional<std::string> types[] = {std::nullopt, std::nullopt, "FULL TEXT", "FULLTEXT", "CLUSTERED"};
    for (size_t i = 1; i < 6; ++i) {
        EXPECT_FALSE(indexes[i]->isConstraint()) << i;
        EXPECT_EQ(indexes[i]->getIndexType(), types[i - 1]) << i;
        EXPECT_TRUE(indexes[i]->getPropertyAsBoolean("collapseSimpleIndex")) << i;
    }
    // A name in the parentheses makes "column(name)" without a prefix; the
    // index's field name ends as the last entry's. A taken name is renamed.
    EXPECT_EQ(entryTexts(*indexes[6]), (Names{"a[10]", "lower(k)"}));
    EXPECT_EQ(indexes[6]->getFieldName(), std::optional<std::string>("lower(k)"));
    EXPECT_EQ(indexes[6]->getName(), "i");
    EXPECT_EQ(indexes[7]->getName(), "i_1");
}

TEST(TableKeys, ReferentialActionsDeferrabilityAndTheLastClauseWins)
{
    const ParseResult result = parse(
        "CREATE TABLE p (id INT, a INT, b INT);\n"
        "CREATE TABLE c (x INT, y INT, z INT, w INT,\n"
        "  FOREIGN KEY (x) REFERENCES p (id) MATCH FULL ON DELETE SET NULL ON UPDATE NO ACTION,\n"
        "  FOREIGN KEY (y) REFERENCES p (id) ON DELETE CASCADE ON DELETE RESTRICT ON UPDATE NO_ACTION,\n"
        "  FOREIGN KEY (z) REFERENCES p (id) ON UPDATE SET DEFAULT DEFERRABLE INITIALLY DEFERRED,\n"
        "  FOREIGN KEY (w) REFERENCES p);\n");
    EXPECT_EQ(result.records, Names{});
    const SQLTable &child = tableNamed(result, "c");
    const SQLFieldReference *x = child.getFieldByName("x")->getReferences();
    const SQLFieldReference *y = child.getFieldByName("y")->getReferences();
    const SQLFieldReference *z = child.getFieldByName("z")->getReferences();
    const SQLFieldReference *w = child.getFieldByName("w")->getReferences();
    ASSERT_TRUE(x && y && z && w);
    EXPECT_EQ(std::make_pair(x->onDelete, x->onUpdate), std::make_pair(3, 4));
    EXPECT_EQ(std::make_pair(y->onDelete, y->onUpdate), std::make_pair(2, 4));
    EXPECT_EQ(std::make_pair(z->onDelete, z->onUpdate), std::make_pair(0, 5));
    EXPECT_TRUE(z->deferrable && z->initiallyDeferred);
    EXPECT_FALSE(x->deferrable || x->initiallyDeferred);
    // One column and no target list: a reference on the field, to the key.
    EXPECT_EQ(w->table, "p");
    EXPECT_FALSE(w->field);
    EXPECT_TRUE(child.foreignKeys().empty());
    EXPECT_EQ(tree("CREATE TABLE c (x INT, FOREIGN KEY (x) REFERENCES t (y) MATCH FULL ON DELETE CASCADE "
                   "ON UPDATE SET NULL);"),
              "CREATE TABLE c ( x INT , FOREIGN KEY ( x ) REFERENCES t ( y ) ON_DELETE CASCADE ON_UPDATE SET NULL ) ;");
}

TEST(CreateIndex, BuildsATypedIndexOnAnExistingTable)
{
    const ParseResult result = parse(
        "CREATE TABLE s.t (a TEXT, b INT);\n"
        "CREATE UNIQUE INDEX CONCURRENTLY s.i ON s.t USING GIN (a(10), b DESC NULLS LAST);\n"
        "CREATE CLUSTERED INDEX ix ON t (b) WITH (PAD_INDEX = OFF) ON [PRIMARY];\n"
        "CREATE INDEX j ON ONLY s.t USING btree (a text_pattern_ops) INCLUDE (b) WITH (fillfactor = 70) "
        "TABLESPACE fast WHERE (b > 0);\n"
        "CREATE INDEX k ON t (b) TABLESPACE users PCTFREE 10 STORAGE (INITIAL 64K NEXT 1M) NOLOGGING "
        "COMPUTE STATISTICS LOCAL PARALLEL 4;\n"
        "CREATE INDEX j ON t (b);\n");
    EXPECT_EQ(result.records, Names{});
    const auto &indexes = tableNamed(result, "t").indexes();
    ASSERT_EQ(indexes.size(), 5u);
    EXPECT_EQ(indexes[0]->getName(), "i");
    EXPECT_EQ(indexes[0]->getIndexType(), std::optional<std::string>("UNIQUE"));
    EXPECT_FALSE(indexes[0]->isConstraint());
    EXPECT_TRUE(indexes[0]->getPropertyAsBoolean("collapseSimpleIndex"));
    EXPECT_EQ(entryTexts(*indexes[0]), (Names{"a[10]", "b"}));
    EXPECT_EQ(indexes[1]->getIndexType(), std::optional<std::string>("CLUSTERED"));
    EXPECT_FALSE(indexes[2]->getIndexType());
    // Added as it is: a second index j keeps its name.
    EXPECT_EQ(indexes[4]->getName(), "j");
}

TEST(CreateIndex, AMissingTableDropsTheIndexSilentlyAndAMissingMethodIsReported)
{
    const ParseResult lost = parse("CREATE INDEX i ON t (a);\nCREATE TABLE t (a INT);\nCREATE INDEX j ON nope (a);\n");
    EXPECT_EQ(lost.records, Names{});
    EXPECT_TRUE(tableNamed(lost, "t").indexes().empty());

    const ParseResult rejected = parse("CREATE TABLE t (a INT);\nCREATE INDEX i ON t USING (a);\n"
                                       "CREATE TABLE u (b INT);");
    EXPECT_FALSE(rejected.records.empty());
    EXPECT_EQ(tableNamed(rejected, "u").fields().size(), 1u);
}

TEST(CreateSequence, EveryOptionParsesAndNothingReachesTheModel)
{
    const ParseResult result = parse(
        "CREATE SEQUENCE s;\n"
        "CREATE SEQUENCE s START WITH 10 INCREMENT BY 5 NOCACHE NO CYCLE OWNED BY t.id;\n"
        "CREATE TEMPORARY SEQUENCE IF NOT EXISTS public.s AS bigint START 1 INCREMENT -1 MINVALUE -100 "
        "MAXVALUE 100 CACHE 20 CYCLE OWNED BY NONE;\n"
        "CREATE SEQUENCE s NO MINVALUE NO MAXVALUE NO CACHE NOMINVALUE NOMAXVALUE NOCYCLE ORDER NOORDER "
        "INCREMENT 2;\n");
    EXPECT_EQ(result.records, Names{});
    EXPECT_TRUE(result.container->tables().empty());
    EXPECT_EQ(tree("CREATE SEQUENCE s START WITH 1;"), "CREATE SEQUENCE s START WITH 1 ;");
}
