#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

using SchemaModel::namesEqualIgnoringCase;
using SchemaModel::splitQualifiedName;
using SchemaModel::trim;

TEST(TrimTest, RemovesEachKindOfIdentifierQuote)
{
    EXPECT_EQ(trim("\"Name\""), "Name");
    EXPECT_EQ(trim("`Name`"), "Name");
    EXPECT_EQ(trim("'Name'"), "Name");
    EXPECT_EQ(trim("[Name]"), "Name");
    EXPECT_EQ(trim("\"\""), "");
}

TEST(TrimTest, UndoublesOnlyTheEnclosingQuoteKind)
{
    EXPECT_EQ(trim("\"a\"\"b\""), "a\"b");
    EXPECT_EQ(trim("`a``b`"), "a`b");
    EXPECT_EQ(trim("'it''s'"), "it's");
    EXPECT_EQ(trim("[a]]b]"), "a]b");
    EXPECT_EQ(trim("\"a``b''c\""), "a``b''c");
    EXPECT_EQ(trim("\"\"\"\""), "\"");
}

TEST(TrimTest, StripsWhiteSpaceOutsideAndInsideQuotes)
{
    EXPECT_EQ(trim(" \t\r\n\v\fname\f\v\n\r\t "), "name");
    EXPECT_EQ(trim("  \" spaced name \"  "), "spaced name");
    EXPECT_EQ(trim("two words"), "two words");
    EXPECT_EQ(trim(" \t "), "");
}

TEST(TrimTest, LeavesUnbalancedOrCompoundQuotingAlone)
{
    EXPECT_EQ(trim("\"abc"), "\"abc");
    EXPECT_EQ(trim("abc`"), "abc`");
    EXPECT_EQ(trim("\"abc`"), "\"abc`");
    EXPECT_EQ(trim("[abc"), "[abc");
    EXPECT_EQ(trim("\""), "\"");
    EXPECT_EQ(trim("\"s\".\"t\""), "\"s\".\"t\"");
    EXPECT_EQ(trim("[s].[t]"), "[s].[t]");
    EXPECT_EQ(trim("MixedCase"), "MixedCase");
}

TEST(TrimTest, ObjectNamesAreSetTrimmed)
{
    // Names are set through a shortcut for the names trim keeps or only
    // unquotes; every kind must end as trim leaves it.
    const char *const names[] = {"plain",   "  padded\t", "\"quoted\"",  "` spaced `", "[bracketed]",
                                 "'it''s'", "\"a\"\"b\"",    "\"s\".\"t\"",  "\"abc",       "abc`",
                                 "\"",      "",           " \t ",        "\"\"",         "[a]]b]"};
    SQLField field;
    for (const char *name : names) {
        field.setName(name);
        EXPECT_EQ(field.getName(), trim(name)) << name;
    }
}

TEST(NamesEqualIgnoringCaseTest, FoldsAsciiAndUnicode)
{
    EXPECT_TRUE(namesEqualIgnoringCase("Customer", "CUSTOMER"));
    EXPECT_TRUE(namesEqualIgnoringCase("ÄRGER", "ärger"));
    EXPECT_TRUE(namesEqualIgnoringCase("STRASSE", "straße"));
    EXPECT_TRUE(namesEqualIgnoringCase("ΣΊΣΥΦΟΣ", "σίσυφος"));
    EXPECT_FALSE(namesEqualIgnoringCase("a", "ab"));
    EXPECT_FALSE(namesEqualIgnoringCase("a_1", "a_2"));
    EXPECT_FALSE(namesEqualIgnoringCase("é", "e"));
}

TEST(SplitQualifiedNameTest, SplitsAtLastDotOutsideQuotes)
{
    auto plain = splitQualifiedName("t");
    EXPECT_FALSE(plain.schema);
    EXPECT_EQ(plain.name, "t");

    auto quoted = splitQualifiedName("\"my.schema\".\"my.table\"");
    EXPECT_EQ(quoted.schema, "my.schema");
    EXPECT_EQ(quoted.name, "my.table");

    auto bracketed = splitQualifiedName("[a]].b].[c]");
    EXPECT_EQ(bracketed.schema, "a].b");
    EXPECT_EQ(bracketed.name, "c");

    auto threeParts = splitQualifiedName("db.s.t");
    EXPECT_EQ(threeParts.schema, "db.s");
    EXPECT_EQ(threeParts.name, "t");
}

TEST(SQLObjectTest, NameAndProperties)
{
    SQLIndex object;
    object.setName(" `idx` ");
    EXPECT_EQ(object.getName(), "idx");
    EXPECT_TRUE(object.hasName());
    object.setName("``");
    EXPECT_FALSE(object.hasName());

    object.setProperty("table_collation", "utf8_bin");
    object.setPropertyAsBoolean("unique", true);
    EXPECT_EQ(object.getPropertyAsString("table_collation"), "utf8_bin");
    EXPECT_TRUE(object.getPropertyAsBoolean("unique"));
    // A value of the other kind reads as absent.
    EXPECT_FALSE(object.getPropertyAsBoolean("table_collation"));
    EXPECT_FALSE(object.getPropertyAsString("unique"));
    EXPECT_FALSE(object.getPropertyAsBoolean("missing"));

    object.setProperty("unique", "yes");
    EXPECT_FALSE(object.getPropertyAsBoolean("unique"));
    EXPECT_EQ(object.getProperties().size(), 2u);
}
