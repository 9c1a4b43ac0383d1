#include "model/ZConversion.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

std::vector<std::string> TableValues(const IConversion& conversion) {
    std::vector<std::string> values;
    for (uint32_t i = 0; i < conversion.GetTextTableSize(); ++i) {
        values.emplace_back(conversion.GetTextTableElement(i)->GetValue());
    }
    return values;
}

// A conversion built without arguments has factor 0.0 on purpose; only the table constructor
// sets 1.0. Both defaults are relied upon by callers.
TEST(Conversion_DefaultConstructor, HasKindNotSetAndFactorZero) {
    ZConversion conversion;
    EXPECT_STREQ(conversion.GetId(), "");
    EXPECT_EQ(conversion.GetType(), 0xFFFFFFFFu);
    EXPECT_EQ(conversion.GetFactor(), 0.0);
    EXPECT_EQ(conversion.GetOffset(), 0.0);
    EXPECT_FALSE(conversion.HasTextTable());
    EXPECT_EQ(conversion.GetTextTable(), nullptr);
    EXPECT_EQ(static_cast<const ZConversion&>(conversion).GetTextTable(), nullptr);
    EXPECT_EQ(conversion.GetTextTableSize(), 0u);
}

TEST(Conversion_FormulaConstructor, KeepsItsArguments) {
    ZConversion conversion("Speed_Formula", 1, 0.5, -40.0);
    EXPECT_STREQ(conversion.GetId(), "Speed_Formula");
    EXPECT_EQ(conversion.GetType(), 1u);
    EXPECT_EQ(conversion.GetFactor(), 0.5);
    EXPECT_EQ(conversion.GetOffset(), -40.0);
    EXPECT_FALSE(conversion.HasTextTable());
}

TEST(Conversion_TableConstructor, HasFactorOneEvenWithAnEmptyTable) {
    ZTextTable empty;
    ZConversion conversion("State_ValueTable", 2, empty);
    EXPECT_EQ(conversion.GetFactor(), 1.0);
    EXPECT_EQ(conversion.GetOffset(), 0.0);
    EXPECT_EQ(conversion.GetType(), 2u);
    EXPECT_FALSE(conversion.HasTextTable());
    EXPECT_EQ(conversion.GetTextTable(), nullptr);
}

TEST(Conversion_TableConstructor, CopiesTheTableSorted) {
    ZTextTable table;
    table.AddElement("2", "two");
    table.AddElement("10", "ten");
    table.AddElement("1", "one");
    ZConversion conversion("State_ValueTable", 2, table);
    EXPECT_EQ(TableValues(conversion), (std::vector<std::string>{"1", "10", "2"}));
    EXPECT_EQ(conversion.GetTextTable()->GetParent(), static_cast<IModelItem*>(&conversion));
    EXPECT_EQ(table.GetCount(), 3u);
}

TEST(Conversion_AddTextTableElement, RefusesAPresentValueButNotAnotherSpelling) {
    ZConversion conversion;
    EXPECT_EQ(conversion.AddTextTableElement("1", "on"), 0u);
    EXPECT_EQ(conversion.AddTextTableElement("1", "off"), InvalidIndex);
    EXPECT_EQ(conversion.AddTextTableElement("01", "off"), 1u);
    EXPECT_TRUE(conversion.HasTextTable());
    EXPECT_EQ(conversion.GetTextTableSize(), 2u);
    EXPECT_STREQ(conversion.GetTextTableElement(0u)->GetText(), "on");
    EXPECT_EQ(conversion.GetTextTableElement(2u), nullptr);
}

TEST(Conversion_GetTextTable, GivesTheOwnTableWithTheConversionAsParent) {
    ZConversion conversion;
    conversion.AddTextTableElement("1", "on");
    ITextTable* table = conversion.GetTextTable();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->GetParent(), static_cast<IModelItem*>(&conversion));
    EXPECT_EQ(static_cast<const ZConversion&>(conversion).GetTextTable(), table);
    EXPECT_EQ(table->GetElement(0u)->GetRoot(), static_cast<IModelItem*>(&conversion));
    EXPECT_EQ(static_cast<const ZConversion&>(conversion).GetTextTableElement(0u),
              conversion.GetTextTableElement(0u));
}

TEST(Conversion_Setters, StoreTheirValues) {
    ZConversion conversion;
    conversion.SetId("x_Formula");
    conversion.SetType(7);
    conversion.SetFactor(2.5);
    conversion.SetOffset(-1.25);
    EXPECT_STREQ(conversion.GetId(), "x_Formula");
    EXPECT_EQ(conversion.GetType(), 7u);
    EXPECT_EQ(conversion.GetFactor(), 2.5);
    EXPECT_EQ(conversion.GetOffset(), -1.25);
    conversion.SetId(nullptr);
    EXPECT_STREQ(conversion.GetId(), "");
}

TEST(Conversion_SetTextTable, WithItsOwnTableSortsTheSameEntries) {
    ZConversion conversion;
    conversion.AddTextTableElement("2", "two");
    conversion.AddTextTableElement("10", "ten");
    conversion.AddTextTableElement("1", "one");
    conversion.SetTextTable(*conversion.GetTextTable());
    EXPECT_EQ(TableValues(conversion), (std::vector<std::string>{"1", "10", "2"}));
    EXPECT_EQ(conversion.GetTextTable()->GetParent(), static_cast<IModelItem*>(&conversion));
}

// The given table is first gathered by index, so an entry it reaches by index only is kept,
// unlike in a plain table copy.
TEST(Conversion_SetTextTable, KeepsEntriesTheSourceReachesByIndexOnly) {
    ZTextTable source;
    source.AddElement("1", "one");
    source.AddElement("2", "two");
    source.SetElement(0, "7", "x");
    ZConversion conversion;
    conversion.AddTextTableElement("9", "nine");
    conversion.SetTextTable(source);
    EXPECT_EQ(TableValues(conversion), (std::vector<std::string>{"2", "7"}));
}

TEST(Conversion_Copy, CopiesEverythingWithTheTableSorted) {
    ZConversion parent;
    ZConversion source("State_ValueTable", 2, 3.0, 4.0);
    source.SetParent(&parent);
    source.AddTextTableElement("b", "B");
    source.AddTextTableElement("a", "A");
    ZConversion copy(source);
    ZConversion fromInterface(static_cast<const IConversion&>(source));
    for (const ZConversion* c : {&copy, &fromInterface}) {
        EXPECT_STREQ(c->GetId(), "State_ValueTable");
        EXPECT_EQ(c->GetType(), 2u);
        EXPECT_EQ(c->GetFactor(), 3.0);
        EXPECT_EQ(c->GetOffset(), 4.0);
        EXPECT_EQ(TableValues(*c), (std::vector<std::string>{"a", "b"}));
        EXPECT_FALSE(c->HasParent());
        EXPECT_EQ(c->GetTextTable()->GetParent(), static_cast<const IModelItem*>(c));
    }
}

TEST(Conversion_Accept, ReachesTheConversionOperation) {
    ZConversion conversion;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(conversion), "Conversion");
}

}  // namespace
}  // namespace Korvel
