#include "model/ZNrcContainer.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(NrcContainer_AddNrc, ReturnsIndexThenInvalidIndexForAUsedCode) {
    ZNrcContainer table;
    EXPECT_EQ(table.AddNrc(16, "General reject"), 0u);
    EXPECT_EQ(table.AddNrc(16, "Other"), InvalidIndex);
    EXPECT_EQ(table.GetCount(), 1u);
    EXPECT_STREQ(table.GetNrc(uint8_t{16})->GetText(), "General reject");
}

TEST(NrcContainer_AddNrc, TreatsCodeZeroAndCode255AsOrdinaryCodes) {
    ZNrcContainer table;
    EXPECT_EQ(table.AddNrc(0, "zero"), 0u);
    EXPECT_EQ(table.AddNrc(255, "max"), 1u);
    EXPECT_TRUE(table.Contains(0));
    EXPECT_TRUE(table.Contains(255));
    EXPECT_STREQ(table.GetNrc(uint8_t{0})->GetText(), "zero");
    EXPECT_STREQ(table.GetNrc(uint8_t{255})->GetText(), "max");
}

TEST(NrcContainer_AddNrc, CopiesTheGivenEntry) {
    ZNrcContainer table;
    ZNrcItem prototype(0x22, "Conditions not correct");
    EXPECT_EQ(table.AddNrc(prototype), 0u);
    prototype.SetText("changed");
    EXPECT_NE(table.GetNrc(0u), &prototype);
    EXPECT_STREQ(table.GetNrc(0u)->GetText(), "Conditions not correct");
    EXPECT_FALSE(prototype.HasParent());
    EXPECT_EQ(table.AddNrc(prototype), InvalidIndex);
}

TEST(NrcContainer_Order, KeepsAdditionOrderByIndexAndFindsEachByCode) {
    ZNrcContainer table;
    table.AddNrc(0x31, "a");
    table.AddNrc(0x10, "b");
    table.AddNrc(0x22, "c");
    EXPECT_EQ(table.GetNrc(0u)->GetCode(), 0x31);
    EXPECT_EQ(table.GetNrc(1u)->GetCode(), 0x10);
    EXPECT_EQ(table.GetNrc(2u)->GetCode(), 0x22);
    EXPECT_STREQ(table.GetNrc(uint8_t{0x31})->GetText(), "a");
    EXPECT_STREQ(table.GetNrc(uint8_t{0x10})->GetText(), "b");
    EXPECT_STREQ(table.GetNrc(uint8_t{0x22})->GetText(), "c");
    uint32_t index = 99;
    EXPECT_TRUE(table.GetIndex(0x22, index));
    EXPECT_EQ(index, 2u);
    uint8_t key = 0;
    EXPECT_TRUE(table.GetKey(1, key));
    EXPECT_EQ(key, 0x10);
}

TEST(NrcContainer_GetIndex, LeavesTheOutputUntouchedForAnUnknownCode) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    uint32_t index = 77;
    EXPECT_FALSE(table.GetIndex(2, index));
    EXPECT_EQ(index, 77u);
    uint8_t key = 9;
    EXPECT_FALSE(table.GetKey(1, key));
    EXPECT_EQ(key, 9);
}

TEST(NrcContainer_GetNrc, GivesNullOutOfRangeAndForUnknownCodes) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    EXPECT_EQ(table.GetNrc(1u), nullptr);
    EXPECT_EQ(table.GetNrc(0xFFFFFFFFu), nullptr);
    EXPECT_EQ(table.GetNrc(uint8_t{2}), nullptr);
    const ZNrcContainer& constTable = table;
    EXPECT_EQ(constTable.GetNrc(1u), nullptr);
    EXPECT_EQ(constTable.GetNrc(uint8_t{2}), nullptr);
}

TEST(NrcContainer_ConstAndNonConstGetters, Agree) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    table.AddNrc(2, "b");
    const ZNrcContainer& constTable = table;
    EXPECT_EQ(constTable.GetNrc(1u), table.GetNrc(1u));
    EXPECT_EQ(constTable.GetNrc(uint8_t{1}), table.GetNrc(uint8_t{1}));
}

// The replacing entry is deliberately left out of the code map: it is reached by index only,
// neither old nor new code finds it, and a later AddNrc with the new code makes a second entry.
TEST(NrcContainer_SetNrc, LeavesTheNewCodeOutOfTheMap) {
    ZNrcContainer table;
    table.AddNrc(0x10, "General reject");
    EXPECT_TRUE(table.SetNrc(0, 0x12, "x"));
    EXPECT_EQ(table.GetNrc(0u)->GetCode(), 0x12);
    EXPECT_STREQ(table.GetNrc(0u)->GetText(), "x");
    EXPECT_FALSE(table.Contains(0x10));
    EXPECT_FALSE(table.Contains(0x12));
    EXPECT_EQ(table.GetNrc(uint8_t{0x12}), nullptr);
    EXPECT_EQ(table.AddNrc(0x12, "again"), 1u);
    EXPECT_EQ(table.GetCount(), 2u);
    EXPECT_EQ(table.GetNrc(0u)->GetCode(), table.GetNrc(1u)->GetCode());
}

TEST(NrcContainer_SetNrc, GivesTheNewEntryTheTableAsParent) {
    ZNrcContainer table;
    table.AddNrc(0x10, "a");
    ZNrcItem replacement(0x11, "b");
    EXPECT_TRUE(table.SetNrc(0, replacement));
    EXPECT_EQ(table.GetNrc(0u)->GetParent(), static_cast<IModelItem*>(&table));
    EXPECT_NE(table.GetNrc(0u), &replacement);
    EXPECT_FALSE(replacement.HasParent());
}

TEST(NrcContainer_SetNrc, FailsForAnIndexEqualToTheCount) {
    ZNrcContainer table;
    EXPECT_FALSE(table.SetNrc(0, 1, "x"));
    table.AddNrc(1, "a");
    EXPECT_FALSE(table.SetNrc(1, 2, "x"));
    EXPECT_EQ(table.GetCount(), 1u);
    EXPECT_STREQ(table.GetNrc(0u)->GetText(), "a");
}

// The key of an entry is found through the map; an entry that was already replaced has none, so
// it cannot be replaced a second time.
TEST(NrcContainer_SetNrc, FailsForAnEntryThatHasNoKeyAnyMore) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    EXPECT_TRUE(table.SetNrc(0, 2, "b"));
    EXPECT_FALSE(table.SetNrc(0, 3, "c"));
    EXPECT_EQ(table.GetNrc(0u)->GetCode(), 2);
}

TEST(NrcContainer_SetNrc, AcceptsTheEntryItReplaces) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    EXPECT_TRUE(table.SetNrc(0, *table.GetNrc(0u)));
    EXPECT_EQ(table.GetNrc(0u)->GetCode(), 1);
    EXPECT_STREQ(table.GetNrc(0u)->GetText(), "a");
}

TEST(NrcContainer_Clear, EmptiesTheTableAndFreesItsCodes) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    table.AddNrc(2, "b");
    table.Clear();
    EXPECT_EQ(table.GetCount(), 0u);
    EXPECT_FALSE(table.Contains(1));
    EXPECT_EQ(table.AddNrc(2, "again"), 0u);
}

TEST(NrcContainer_Items, HaveTheTableAsParentAndShareItsRoot) {
    ZNrcContainer table;
    ZNrcItem root(0, "root");
    table.SetParent(&root);
    table.AddNrc(1, "a");
    EXPECT_EQ(table.GetNrc(0u)->GetParent(), static_cast<IModelItem*>(&table));
    EXPECT_EQ(table.GetNrc(0u)->GetRoot(), static_cast<IModelItem*>(&root));
}

TEST(NrcContainer_Assign, CopiesByIndexAndKeepsTheOwnParent) {
    ZNrcItem parent(0, "parent");
    ZNrcContainer target;
    target.SetParent(&parent);
    target.AddNrc(9, "old");
    ZNrcContainer source;
    source.AddNrc(0x31, "a");
    source.AddNrc(0x10, "b");
    target.Assign(source);
    ASSERT_EQ(target.GetCount(), 2u);
    EXPECT_EQ(target.GetNrc(0u)->GetCode(), 0x31);
    EXPECT_EQ(target.GetNrc(1u)->GetCode(), 0x10);
    EXPECT_FALSE(target.Contains(9));
    EXPECT_EQ(target.GetParent(), static_cast<IModelItem*>(&parent));
    EXPECT_EQ(target.GetNrc(0u)->GetParent(), static_cast<IModelItem*>(&target));
}

// Assignment clears the table before reading the source; given itself it ends up empty. This
// is kept on purpose: the ECU's SetNrcContainer has always behaved so.
TEST(NrcContainer_Assign, ToItselfEmptiesTheTable) {
    ZNrcContainer table;
    table.AddNrc(1, "a");
    table.Assign(table);
    EXPECT_EQ(table.GetCount(), 0u);
}

TEST(NrcContainer_Assign, DropsDuplicateCodesOfTheSource) {
    ZNrcContainer source;
    source.AddNrc(1, "a");
    source.AddNrc(2, "b");
    source.SetNrc(1, 1, "dup");
    ZNrcContainer target;
    target.Assign(source);
    ASSERT_EQ(target.GetCount(), 1u);
    EXPECT_STREQ(target.GetNrc(0u)->GetText(), "a");
}

TEST(NrcContainer_Copy, CopiesEntriesDetached) {
    ZNrcContainer source;
    source.AddNrc(1, "a");
    ZNrcContainer copy(source);
    EXPECT_FALSE(copy.HasParent());
    ASSERT_EQ(copy.GetCount(), 1u);
    EXPECT_NE(copy.GetNrc(0u), source.GetNrc(0u));
    EXPECT_EQ(copy.GetNrc(0u)->GetParent(), static_cast<IModelItem*>(&copy));
}

TEST(NrcContainer_Accept, ReachesTheNrcTableOperation) {
    ZNrcContainer table;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(table), "NrcContainer");
    EXPECT_EQ(visitor.lastItem, static_cast<const INrcContainer*>(&table));
}

}  // namespace
}  // namespace Korvel
