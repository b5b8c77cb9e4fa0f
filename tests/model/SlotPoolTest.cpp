// Columns and tables are cut from the model's slot blocks: side by side in
// the order made, and a block goes back to the system once its objects are
// all freed and no thread cuts from it any more, whichever thread frees them.
// Under AddressSanitizer each object is an allocation of its own and these
// tests have nothing to count.
#include "SlotPool.h"

#include <SchemaModel/SchemaModel.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

using SchemaModel::detail::slotBlockCount;

namespace {

std::vector<std::unique_ptr<SQLField>> makeColumns(int count)
{
    std::vector<std::unique_ptr<SQLField>> columns;
    columns.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        columns.push_back(SQLField::fieldWithName("c" + std::to_string(i), "int"));
    return columns;
}

// A column of another size than SQLField's.
struct WiderField : SQLField {
    char extra[40] = {};
};

} // namespace

TEST(SlotPoolTest, ColumnsLieSideBySideAndTheirBlocksGoBackWithThem)
{
    std::vector<std::unique_ptr<SQLField>> columns = makeColumns(1);
    const std::size_t start = slotBlockCount();
    if (start == 0)
        GTEST_SKIP() << "each column is an allocation of its own";
    // 50,000 columns of about 100 bytes: several blocks of 1 MiB.
    std::vector<std::unique_ptr<SQLField>> more = makeColumns(50000);
    EXPECT_GE(slotBlockCount(), start + 3);
    std::size_t adjacent = 0;
    for (std::size_t i = 1; i < more.size(); ++i) {
        const auto step = reinterpret_cast<std::uintptr_t>(more[i].get()) -
                          reinterpret_cast<std::uintptr_t>(more[i - 1].get());
        adjacent += step >= sizeof(SQLField) && step < sizeof(SQLField) + 16 ? 1 : 0;
    }
    EXPECT_GE(adjacent, more.size() - 10);  // all but the steps into a new block
    more.clear();
    columns.clear();
    // Only the block the thread cuts from now is left of them.
    EXPECT_LE(slotBlockCount(), start);
}

TEST(SlotPoolTest, TablesShareTheBlocksOfTheirColumns)
{
    std::vector<std::unique_ptr<SQLField>> probe = makeColumns(1);
    const std::size_t start = slotBlockCount();
    if (start == 0)
        GTEST_SKIP() << "each object is an allocation of its own";
    std::vector<std::unique_ptr<SQLTable>> tables;
    for (int i = 0; i < 10000; ++i) {
        tables.push_back(SQLTable::tableForImportWithName("t" + std::to_string(i)));
        tables.back()->addWithRenaming(SQLField::fieldWithName("id", "int"));
    }
    EXPECT_GE(slotBlockCount(), start + 2);  // 10,000 tables and columns: some 4 MB
    EXPECT_EQ(tables[9999]->fields().front()->getName(), "id");
    tables.clear();
    probe.clear();
    EXPECT_LE(slotBlockCount(), start);
}

TEST(SlotPoolTest, AnEndedThreadsBlocksGoWithTheLastOfItsColumnsFreedElsewhere)
{
    std::vector<std::unique_ptr<SQLField>> probe = makeColumns(1);
    if (slotBlockCount() == 0)
        GTEST_SKIP() << "each column is an allocation of its own";
    const std::size_t start = slotBlockCount();
    std::vector<std::vector<std::unique_ptr<SQLField>>> made(4);
    std::vector<std::thread> makers;
    for (auto &columns : made)
        makers.emplace_back([&columns] {
            // Each maker frees every other column it made itself, and leaves
            // the rest to the main thread.
            std::vector<std::unique_ptr<SQLField>> own = makeColumns(30000);
            for (std::size_t i = 0; i < own.size(); i += 2)
                columns.push_back(std::move(own[i]));
        });
    for (std::thread &maker : makers)
        maker.join();
    EXPECT_GE(slotBlockCount(), start + 4 * 2);  // the makers have ended; their columns hold their blocks
    for (const auto &columns : made)
        for (const auto &column : columns)
            EXPECT_EQ(column->getType(), "int");
    made.clear();
    EXPECT_EQ(slotBlockCount(), start);
}

TEST(SlotPoolTest, ASubclassOfAnotherSizeIsMadeAndFreedByTheGeneralAllocator)
{
    const std::size_t start = slotBlockCount();
    std::vector<std::unique_ptr<SQLField>> columns;
    for (int i = 0; i < 1000; ++i) {
        columns.push_back(std::make_unique<WiderField>());
        columns.back()->setName("w" + std::to_string(i));
    }
    EXPECT_EQ(slotBlockCount(), start);
    columns.clear();  // through SQLField's deallocation, with the subclass's size
    EXPECT_EQ(slotBlockCount(), start);
}
