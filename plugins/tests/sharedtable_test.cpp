#include "scene/sharedtable.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using Table = Bundled::SharedTable<std::string>;
using VlAttribute::Hash;

std::uint32_t acquire(Table& table, std::uint64_t content, const std::string& value) {
    return table.acquire(Hash{content, 0}, [&value] { return value; });
}

TEST(SharedTable, equalContentSharesASlotAndIsMadeOnce) {
    Table table;
    const std::uint32_t slot = acquire(table, 1, "first");
    EXPECT_EQ(
        table.acquire(Hash{1, 0}, []() -> std::string { throw std::logic_error("made twice"); }),
        slot);
    EXPECT_EQ(table.size(), 1u);
}

TEST(SharedTable, dropsAValueWithItsLastUserOnly) {
    Table table;
    const std::uint32_t slot = acquire(table, 1, "value");
    acquire(table, 1, "value");
    table.release(slot);
    EXPECT_EQ(table[slot], "value");
    EXPECT_EQ(table.getDropCount(), 0u);
    table.release(slot);
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(table.getDropCount(), 1u);
}

TEST(SharedTable, reusedSlotHasANewSerial) {
    Table table;
    const std::uint32_t slot = acquire(table, 1, "old");
    const std::uint64_t serial = table.getSerial(slot);
    table.release(slot);
    ASSERT_EQ(acquire(table, 2, "new"), slot);
    EXPECT_NE(table.getSerial(slot), serial);
}

TEST(SharedTable, valueThatCannotBeMadeLeavesNoTrace) {
    Table table;
    EXPECT_THROW(table.acquire(Hash{1, 0}, []() -> std::string { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(table[acquire(table, 1, "now")], "now");
}

TEST(SharedTable, releasingNothingIsAllowed) {
    Table table;
    table.release(Table::kNone);
    EXPECT_EQ(table.getDropCount(), 0u);
}

} // namespace
