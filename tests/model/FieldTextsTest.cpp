// Columns share their (type, default) pair: equal pairs are held once, a
// change of either text leaves the other as it was, and a pair is freed with
// its last column.
#include "FieldTexts.h"

#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using SchemaModel::detail::sharedFieldTextsCount;

TEST(FieldTextsTest, EqualPairsAreSharedAndFreedWithTheLastColumn)
{
    const std::size_t before = sharedFieldTextsCount();
    {
        std::vector<std::unique_ptr<SQLField>> columns;
        for (int i = 0; i < 1000; ++i) {
            columns.push_back(SQLField::fieldWithName("c" + std::to_string(i), i % 2 == 0 ? "int" : "text"));
            if (i % 4 == 1)
                columns.back()->setDefaultValueFromParsedString("NULL");
        }
        // int; text; text DEFAULT NULL
        EXPECT_EQ(sharedFieldTextsCount(), before + 3);
        EXPECT_EQ(&columns[0]->getType(), &columns[2]->getType());
        EXPECT_EQ(columns[1]->getDefaultValue(), "NULL");
        EXPECT_FALSE(columns[3]->getDefaultValue());
        EXPECT_EQ(columns[3]->getType(), "text");

        // Changing one column's texts leaves the columns that shared them alone.
        columns[5]->setType("varchar(10)");
        EXPECT_EQ(columns[5]->getDefaultValue(), "NULL");
        EXPECT_EQ(columns[1]->getType(), "text");
        columns[0]->setDefaultValueFromParsedString("");
        EXPECT_EQ(columns[0]->getDefaultValue(), "");  // an empty default is still a default
        EXPECT_FALSE(columns[2]->getDefaultValue());
        EXPECT_EQ(columns[0]->getType(), "int");
        EXPECT_EQ(sharedFieldTextsCount(), before + 5);
        columns.resize(1);
        EXPECT_EQ(sharedFieldTextsCount(), before + 1);
    }
    EXPECT_EQ(sharedFieldTextsCount(), before);

    SQLField unnamed;
    EXPECT_EQ(unnamed.getType(), "");
    EXPECT_FALSE(unnamed.getDefaultValue());
    EXPECT_EQ(sharedFieldTextsCount(), before);
}

TEST(FieldTextsTest, ColumnsOfSeveralThreadsShareAndFreePairs)
{
    const std::size_t before = sharedFieldTextsCount();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int round = 0; round < 200; ++round) {
                std::vector<std::unique_ptr<SQLField>> columns;
                for (int i = 0; i < 50; ++i) {
                    columns.push_back(SQLField::fieldWithName("c", "type" + std::to_string((i + t) % 7)));
                    columns.back()->setDefaultValueFromParsedString(std::to_string(i % 3));
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(sharedFieldTextsCount(), before);
}

TEST(FieldTextsTest, ChecksAndAReferenceShareTheColumnsRareObject)
{
    auto field = SQLField::fieldWithName("a", "int");
    field->addCheckConstraint(SQLConstraint::constraint());
    field->setReferences("t", std::nullopt);
    field->setReferences("u", std::nullopt);
    EXPECT_EQ(field->checkConstraints().size(), 1u);
    EXPECT_EQ(field->getReferences()->table, "u");
    EXPECT_LE(sizeof(SQLField), 80u);
}

// A column's flags live beside its shared texts: setting either leaves the
// other as it was, and cardinalities need no reference.
TEST(FieldTextsTest, FlagsTextsAndCardinalitiesAreIndependent)
{
    auto field = SQLField::fieldWithName("a", "int", "0");
    field->setNotNull(true);
    field->setPrimaryKey(true);
    field->setType("bigint");
    field->setDefaultValueFromParsedString("1");
    EXPECT_TRUE(field->isNotNull());
    EXPECT_FALSE(field->isAutoIncrement());
    EXPECT_TRUE(field->isPrimaryKey());
    EXPECT_EQ(field->getType(), "bigint");
    EXPECT_EQ(field->getDefaultValue(), std::optional<std::string>("1"));
    field->setAutoIncrement(true);
    field->setNotNull(false);
    EXPECT_FALSE(field->isNotNull());
    EXPECT_TRUE(field->isAutoIncrement());
    EXPECT_TRUE(field->isPrimaryKey());
    EXPECT_EQ(field->getType(), "bigint");

    auto plain = SQLField::fieldWithName("b", "");
    plain->setNotNull(true);
    EXPECT_EQ(plain->getType(), "");
    EXPECT_TRUE(plain->isNotNull());
    EXPECT_EQ(plain->getSourceCardinality(), SQLCardinality::Unspecified);
    plain->setTargetCardinality(SQLCardinality::OneOrMore);
    EXPECT_EQ(plain->getSourceCardinality(), SQLCardinality::Unspecified);
    EXPECT_EQ(plain->getTargetCardinality(), SQLCardinality::OneOrMore);
    EXPECT_EQ(plain->getReferences(), nullptr);
    EXPECT_TRUE(plain->isNotNull());
}

// Freeing pairs moves others back along their probe runs: every pair left
// must still be found (shared by a new column of the same texts) and freed.
TEST(FieldTextsTest, PairsLeftAfterOthersAreFreedAreStillShared)
{
    const std::size_t before = sharedFieldTextsCount();
    {
        std::vector<std::unique_ptr<SQLField>> columns;
        for (int i = 0; i < 3000; ++i)
            columns.push_back(SQLField::fieldWithName("c", "t" + std::to_string(i), std::to_string(i % 5)));
        for (int i = 0; i < 3000; i += 3)
            columns[static_cast<std::size_t>(i)].reset();
        EXPECT_EQ(sharedFieldTextsCount(), before + 2000);
        for (int i = 0; i < 3000; ++i) {
            auto again = SQLField::fieldWithName("d", "t" + std::to_string(i), std::to_string(i % 5));
            const auto &kept = columns[static_cast<std::size_t>(i)];
            if (kept != nullptr) {
                EXPECT_EQ(&again->getType(), &kept->getType()) << i;
            }
            EXPECT_EQ(again->getDefaultValue(), std::to_string(i % 5));
        }
        EXPECT_EQ(sharedFieldTextsCount(), before + 2000);
        // The same type without a default, or with an empty one, is another pair.
        auto bare = SQLField::fieldWithName("e", "t1", std::nullopt);
        auto empty = SQLField::fieldWithName("f", "t1", std::string_view());
        EXPECT_NE(&bare->getType(), &columns[1]->getType());
        EXPECT_NE(&bare->getType(), &empty->getType());
        EXPECT_EQ(empty->getDefaultValue(), "");
        EXPECT_EQ(sharedFieldTextsCount(), before + 2002);
    }
    EXPECT_EQ(sharedFieldTextsCount(), before);
}
