// The per-table name index on its own: positions across growth, several
// items of one folded name, renames, unnamed items and Unicode folding, for
// short lists (searched in place) and long ones (hashed).
#include "NameLookup.h"

#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <string>

using SchemaModel::detail::NameIndex;

namespace {

struct Fields {
    // `padding` unrelated names first: 40 of them make the index hash.
    explicit Fields(int padding = 0)
    {
        for (int i = 0; i < padding; ++i)
            add("padding" + std::to_string(i));
    }

    NameIndex<SQLField> index;
    NameIndex<SQLField>::Items items;

    SQLField *add(std::string_view name)
    {
        items.push_back(SQLField::fieldWithName(name, "int"));
        index.added(items, *items.back());
        return items.back().get();
    }
    SQLField *find(std::string_view name) { return index.find(items, name); }
};

const int paddings[] = {0, 40};

} // namespace

TEST(NameIndexTest, FindsEveryNameWhileTheListGrowsPastTheScanLimitAndTheSlots)
{
    // Every third item is unnamed: it takes a position but no slot.
    Fields fields;
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i) {
        fields.add(i % 3 == 0 ? "" : "Column_" + std::to_string(i));
        for (int j = 1; i < 40 && j <= i; ++j) {
            if (j % 3 != 0) {
                ASSERT_EQ(fields.find("COLUMN_" + std::to_string(j)), fields.items[j].get()) << i << " " << j;
            }
        }
    }
    for (int i = 1; i < count; ++i) {
        if (i % 3 != 0) {
            ASSERT_EQ(fields.find("column_" + std::to_string(i)), fields.items[i].get()) << i;
        }
    }
    EXPECT_EQ(fields.find("column_" + std::to_string(count)), nullptr);
    EXPECT_EQ(fields.find("column_3"), nullptr);
    EXPECT_EQ(fields.find(""), nullptr);
}

TEST(NameIndexTest, SeveralItemsOfOneFoldedNamePreferExactThenFirst)
{
    for (const int padding : paddings) {
        SCOPED_TRACE(padding);
        Fields fields(padding);
        SQLField *lower = fields.add("dup");
        fields.add("other");
        SQLField *upper = fields.add("DUP");
        SQLField *mixed = fields.add("Dup");
        SQLField *second = fields.add("DUP");
        EXPECT_EQ(fields.find("dup"), lower);
        EXPECT_EQ(fields.find("DUP"), upper);
        EXPECT_NE(fields.find("DUP"), second);
        EXPECT_EQ(fields.find("Dup"), mixed);
        EXPECT_EQ(fields.find("dUP"), lower);

        // Ten thousand items of one name cost one slot and stay quick to add.
        for (int i = 0; i < 10000; ++i)
            fields.add(i % 2 == 0 ? "same" : "SAME");
        EXPECT_EQ(fields.find("SAME"), fields.items[padding + 6].get());
        EXPECT_EQ(fields.find("Same"), fields.items[padding + 5].get());
    }
}

TEST(NameIndexTest, RenamesAndReorderingAreFollowed)
{
    Fields fields;
    for (int i = 0; i < 100; ++i)
        fields.add("n" + std::to_string(i));
    SQLField *moved = fields.items[40].get();
    moved->setName("N7");  // now shares its folded name with n7, after it
    EXPECT_EQ(fields.find("n40"), nullptr);
    EXPECT_EQ(fields.find("N7"), moved);
    EXPECT_EQ(fields.find("n7"), fields.items[7].get());
    fields.items[7]->setName("gone");
    EXPECT_EQ(fields.find("n7"), moved);

    std::swap(fields.items[0], fields.items[99]);
    fields.index.reordered(fields.items);
    EXPECT_EQ(fields.find("n0"), fields.items[99].get());
    EXPECT_EQ(fields.find("N99"), fields.items[0].get());
    // Added after a rename, before any look-up: the index catches up.
    fields.items[1]->setName("n1b");
    SQLField *late = fields.add("late");
    EXPECT_EQ(fields.find("LATE"), late);
    EXPECT_EQ(fields.find("n1B"), fields.items[1].get());
}

TEST(NameIndexTest, FoldsUnicodeNamesLikeTheNameComparison)
{
    for (const int padding : paddings) {
        SCOPED_TRACE(padding);
        Fields fields(padding);
        SQLField *strasse = fields.add("Straße");
        SQLField *kelvin = fields.add("\u212Aey");  // KELVIN SIGN folds to ASCII k
        SQLField *greek = fields.add("ΣΊΣΥΦΟΣ");
        SQLField *mass = fields.add("Maß");  // ends in a letter that folds to two
        SQLField *ohm = fields.add("\u2126m");  // OHM SIGN folds to a Greek omega
        EXPECT_EQ(fields.find("STRASSE"), strasse);
        EXPECT_EQ(fields.find("strasse"), strasse);
        EXPECT_EQ(fields.find("key"), kelvin);
        EXPECT_EQ(fields.find("KEY"), kelvin);
        EXPECT_EQ(fields.find("σίσυφος"), greek);
        EXPECT_EQ(fields.find("σίσυφοσ"), greek);
        EXPECT_EQ(fields.find("MASS"), mass);
        EXPECT_EQ(fields.find("mass"), mass);
        EXPECT_EQ(fields.find("MAS"), nullptr);
        EXPECT_EQ(fields.find("ωM"), ohm);
        EXPECT_EQ(fields.find("ωN"), nullptr);

        auto clash = SQLField::fieldWithName("KEY", "int");
        EXPECT_TRUE(fields.index.makeUnique(fields.items, *clash));
        EXPECT_EQ(clash->getName(), "KEY_1");
        auto longer = SQLField::fieldWithName("STRASSE", "int");  // more bytes than its clash
        EXPECT_TRUE(fields.index.makeUnique(fields.items, *longer));
        EXPECT_EQ(longer->getName(), "STRASSE_1");
        auto free = SQLField::fieldWithName("keys", "int");
        EXPECT_FALSE(fields.index.makeUnique(fields.items, *free));
    }
}
