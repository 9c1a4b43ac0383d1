#include "model/ZTextTable.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

std::vector<std::string> ValuesByIndex(const ITextTable& table) {
    std::vector<std::string> values;
    for (uint32_t i = 0; i < table.GetCount(); ++i) {
        values.emplace_back(table.GetElement(i)->GetValue());
    }
    return values;
}

TEST(TextTable_AddElement, RefusesAValueThatIsPresent) {
    ZTextTable table;
    EXPECT_EQ(table.AddElement("1", "on"), 0u);
    EXPECT_EQ(table.AddElement("1", "off"), InvalidIndex);
    EXPECT_EQ(table.AddElement("01", "off"), 1u);
    EXPECT_EQ(table.GetCount(), 2u);
    EXPECT_STREQ(table.GetElement("1")->GetText(), "on");
}

TEST(TextTable_Keys, AreCaseSensitiveAndMayBeEmpty) {
    ZTextTable table;
    EXPECT_EQ(table.AddElement("A", "upper"), 0u);
    EXPECT_EQ(table.AddElement("a", "lower"), 1u);
    EXPECT_EQ(table.AddElement("", "empty"), 2u);
    EXPECT_STREQ(table.GetElement("A")->GetText(), "upper");
    EXPECT_STREQ(table.GetElement("a")->GetText(), "lower");
    EXPECT_STREQ(table.GetElement("")->GetText(), "empty");
    EXPECT_TRUE(table.Contains(""));
    EXPECT_TRUE(table.Contains(std::string("a")));
}

TEST(TextTable_AddElement, CopiesTheGivenEntry) {
    ZTextTable table;
    ZTextTableElement prototype("1", "on");
    EXPECT_EQ(table.AddElement(prototype), 0u);
    EXPECT_NE(table.GetElement(0u), &prototype);
    EXPECT_EQ(table.GetElement(0u)->GetParent(), static_cast<IModelItem*>(&table));
    EXPECT_FALSE(prototype.HasParent());
}

TEST(TextTable_GetElement, GivesNullOutOfRangeAndForUnknownValues) {
    ZTextTable table;
    table.AddElement("1", "on");
    const ZTextTable& constTable = table;
    EXPECT_EQ(table.GetElement(1u), nullptr);
    EXPECT_EQ(constTable.GetElement(1u), nullptr);
    EXPECT_EQ(table.GetElement("2"), nullptr);
    EXPECT_EQ(constTable.GetElement("2"), nullptr);
    EXPECT_EQ(constTable.GetElement(0u), table.GetElement(0u));
    EXPECT_EQ(constTable.GetElement("1"), table.GetElement("1"));
}

TEST(TextTable_AddElements, AppendsOnlyNewValuesInTheOtherTablesIndexOrder) {
    ZTextTable table;
    table.AddElement("1", "one");
    table.AddElement("3", "three");
    ZTextTable other;
    other.AddElement("5", "five");
    other.AddElement("3", "drei");
    other.AddElement("2", "two");
    table.AddElements(other);
    EXPECT_EQ(ValuesByIndex(table), (std::vector<std::string>{"1", "3", "5", "2"}));
    EXPECT_STREQ(table.GetElement("3")->GetText(), "three");
}

TEST(TextTable_AddElements, FromItselfChangesNothing) {
    ZTextTable table;
    table.AddElement("1", "one");
    table.AddElement("2", "two");
    table.AddElements(table);
    EXPECT_EQ(table.GetCount(), 2u);
}

// Like the NRC table, a replaced entry is deliberately kept out of the value map.
TEST(TextTable_SetElement, LeavesTheNewValueUnindexed) {
    ZTextTable table;
    table.AddElement("1", "one");
    table.AddElement("2", "two");
    EXPECT_TRUE(table.SetElement(0, "7", "x"));
    EXPECT_STREQ(table.GetElement(0u)->GetValue(), "7");
    EXPECT_STREQ(table.GetElement(0u)->GetText(), "x");
    EXPECT_EQ(table.GetElement("7"), nullptr);
    EXPECT_EQ(table.GetElement("1"), nullptr);
    EXPECT_EQ(table.GetElement(0u)->GetParent(), static_cast<IModelItem*>(&table));
    EXPECT_EQ(table.AddElement("7", "again"), 2u);
}

TEST(TextTable_SetElement, FailsOutOfRange) {
    ZTextTable table;
    table.AddElement("1", "one");
    ZTextTableElement element("2", "two");
    EXPECT_FALSE(table.SetElement(1, element));
    EXPECT_FALSE(table.SetElement(1, "2", "two"));
    EXPECT_STREQ(table.GetElement(0u)->GetValue(), "1");
}

TEST(TextTable_SetElement, AcceptsTheEntryItReplaces) {
    ZTextTable table;
    table.AddElement("1", "one");
    EXPECT_TRUE(table.SetElement(0, *table.GetElement(0u)));
    EXPECT_STREQ(table.GetElement(0u)->GetText(), "one");
}

TEST(TextTable_CopyElement, CopiesTheEntryAtAnIndex) {
    ZTextTable table;
    table.AddElement("1", "one");
    ZTextTableElement out("", "");
    EXPECT_TRUE(table.CopyElement(0, out));
    EXPECT_STREQ(out.GetValue(), "1");
    EXPECT_STREQ(out.GetText(), "one");
    EXPECT_FALSE(out.HasParent());
    EXPECT_FALSE(table.CopyElement(1, out));
    EXPECT_STREQ(out.GetValue(), "1");
}

// Copies walk the value map: they come out sorted by value text, whatever the source order.
TEST(TextTable_Copy, SortsTheEntriesByValueText) {
    ZTextTable table;
    table.AddElement("2", "two");
    table.AddElement("10", "ten");
    table.AddElement("1", "one");
    ZTextTable copy(table);
    EXPECT_EQ(ValuesByIndex(copy), (std::vector<std::string>{"1", "10", "2"}));
    EXPECT_FALSE(copy.HasParent());
    EXPECT_STREQ(copy.GetElement("10")->GetText(), "ten");
}

// Entries reached by index only are not in the map, so copies leave them out.
TEST(TextTable_Copy, DropsEntriesReachableByIndexOnly) {
    ZTextTable table;
    table.AddElement("1", "one");
    table.AddElement("2", "two");
    table.SetElement(0, "7", "x");
    ZTextTable copy(table);
    EXPECT_EQ(ValuesByIndex(copy), (std::vector<std::string>{"2"}));
}

TEST(TextTable_Assign, ToItselfChangesNothing) {
    ZTextTable table;
    table.AddElement("2", "two");
    table.AddElement("1", "one");
    table.Assign(table);
    EXPECT_EQ(ValuesByIndex(table), (std::vector<std::string>{"2", "1"}));
}

TEST(TextTable_Assign, ReplacesTheContentAndKeepsTheOwnParent) {
    ZTextTableElement parent("p", "p");
    ZTextTable target;
    target.SetParent(&parent);
    target.AddElement("9", "nine");
    ZTextTable source;
    source.AddElement("b", "B");
    source.AddElement("a", "A");
    target.Assign(source);
    EXPECT_EQ(ValuesByIndex(target), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(target.GetParent(), static_cast<IModelItem*>(&parent));
}

TEST(TextTable_Clear, EmptiesTheTableAndFreesItsValues) {
    ZTextTable table;
    table.AddElement("1", "one");
    table.Clear();
    EXPECT_EQ(table.GetCount(), 0u);
    EXPECT_EQ(table.GetElement("1"), nullptr);
    EXPECT_EQ(table.AddElement("1", "again"), 0u);
}

TEST(TextTable_Keys, CompareByteWise) {
    ZTextTable table;
    table.AddElement("\xC3\xA4", "a umlaut");
    table.AddElement("z", "z");
    table.AddElement("Z", "Z");
    ZTextTable copy(table);
    EXPECT_EQ(ValuesByIndex(copy), (std::vector<std::string>{"Z", "z", "\xC3\xA4"}));
}

TEST(TextTable_Accept, ReachesTheTextTableOperation) {
    ZTextTable table;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(table), "TextTable");
}

}  // namespace
}  // namespace Korvel
