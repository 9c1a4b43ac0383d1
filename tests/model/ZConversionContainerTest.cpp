#include "model/ZConversionContainer.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

TEST(ConversionContainer_AddConversion, RefusesAUsedIdAndKeepsTheCount) {
    ZConversionContainer conversions;
    EXPECT_EQ(conversions.AddConversion("a_Formula", 1, 1.0, 0.0), 0u);
    EXPECT_EQ(conversions.AddConversion("a_Formula", 1, 2.0, 0.0), InvalidIndex);
    EXPECT_EQ(conversions.GetCount(), 1u);
    EXPECT_EQ(conversions.GetConversion("a_Formula")->GetFactor(), 1.0);
}

TEST(ConversionContainer_Keys, AreCaseSensitiveAndMayBeEmpty) {
    ZConversionContainer conversions;
    EXPECT_EQ(conversions.AddConversion("A", 0, 1.0, 0.0), 0u);
    EXPECT_EQ(conversions.AddConversion("a", 0, 2.0, 0.0), 1u);
    EXPECT_EQ(conversions.AddConversion("", 0, 3.0, 0.0), 2u);
    EXPECT_EQ(conversions.GetConversion("A")->GetFactor(), 1.0);
    EXPECT_EQ(conversions.GetConversion("a")->GetFactor(), 2.0);
    EXPECT_EQ(conversions.GetConversion("")->GetFactor(), 3.0);
    EXPECT_TRUE(conversions.Contains(""));
    EXPECT_FALSE(conversions.Contains("b"));
}

TEST(ConversionContainer_GetConversion, ByIndexGivesNullAtTheCountAndTheLastBelowIt) {
    ZConversionContainer conversions;
    conversions.AddConversion("x", 1, 1.0, 0.0);
    conversions.AddConversion("y", 1, 1.0, 0.0);
    EXPECT_EQ(conversions.GetConversion(2u), nullptr);
    EXPECT_STREQ(conversions.GetConversion(1u)->GetId(), "y");
    const ZConversionContainer& constConversions = conversions;
    EXPECT_EQ(constConversions.GetConversion(2u), nullptr);
    EXPECT_EQ(constConversions.GetConversion(1u), conversions.GetConversion(1u));
    EXPECT_EQ(constConversions.FindConversion("y"), conversions.GetConversion("y"));
    EXPECT_EQ(conversions.GetConversion("z"), nullptr);
}

TEST(ConversionContainer_AddConversion, CopiesTheGivenConversion) {
    ZConversionContainer conversions;
    ZConversion prototype("p_Formula", 1, 2.0, 3.0);
    EXPECT_EQ(conversions.AddConversion(prototype), 0u);
    IConversion* stored = conversions.GetConversion(0u);
    EXPECT_NE(stored, &prototype);
    EXPECT_EQ(stored->GetParent(), static_cast<IModelItem*>(&conversions));
    EXPECT_FALSE(prototype.HasParent());
    EXPECT_EQ(conversions.AddConversion(prototype), InvalidIndex);
}

// Every conversion an ECU holds is a copy, and copies sort the text table by value text.
TEST(ConversionContainer_AddConversion, StoresTheTextTableSortedByValueText) {
    ZConversion prototype("State_ValueTable", 2, 1.0, 0.0);
    prototype.AddTextTableElement("2", "two");
    prototype.AddTextTableElement("10", "ten");
    prototype.AddTextTableElement("1", "one");
    ZConversionContainer conversions;
    conversions.AddConversion(prototype);
    const IConversion* stored = conversions.GetConversion(0u);
    ASSERT_EQ(stored->GetTextTableSize(), 3u);
    EXPECT_STREQ(stored->GetTextTableElement(0u)->GetValue(), "1");
    EXPECT_STREQ(stored->GetTextTableElement(1u)->GetValue(), "10");
    EXPECT_STREQ(stored->GetTextTableElement(2u)->GetValue(), "2");
}

TEST(ConversionContainer_AddConversion, WithATableBuildsATableConversion) {
    ZTextTable table;
    table.AddElement("b", "B");
    table.AddElement("a", "A");
    ZConversionContainer conversions;
    EXPECT_EQ(conversions.AddConversion("t_ValueTable", 2, table), 0u);
    EXPECT_EQ(conversions.AddConversion("t_ValueTable", 2, table), InvalidIndex);
    const IConversion* stored = conversions.GetConversion(0u);
    EXPECT_EQ(stored->GetFactor(), 1.0);
    EXPECT_EQ(stored->GetOffset(), 0.0);
    EXPECT_STREQ(stored->GetTextTableElement(0u)->GetValue(), "a");
}

TEST(ConversionContainer_Clear, FreesTheIdsForANewAddAtIndexZero) {
    ZConversionContainer conversions;
    conversions.AddConversion("x", 1, 1.0, 0.0);
    conversions.AddConversion("y", 1, 1.0, 0.0);
    conversions.Clear();
    EXPECT_EQ(conversions.GetCount(), 0u);
    EXPECT_EQ(conversions.AddConversion("y", 1, 1.0, 0.0), 0u);
}

TEST(ConversionContainer_Assign, ToItselfChangesNothing) {
    ZConversionContainer conversions;
    conversions.AddConversion("x", 1, 1.0, 0.0);
    IConversion* before = conversions.GetConversion(0u);
    conversions.Assign(conversions);
    EXPECT_EQ(conversions.GetCount(), 1u);
    EXPECT_EQ(conversions.GetConversion(0u), before);
}

TEST(ConversionContainer_Assign, CopiesByIndex) {
    ZConversionContainer source;
    source.AddConversion("z", 1, 1.0, 0.0);
    source.AddConversion("a", 1, 2.0, 0.0);
    ZConversionContainer target;
    target.AddConversion("old", 1, 1.0, 0.0);
    target.Assign(source);
    ASSERT_EQ(target.GetCount(), 2u);
    EXPECT_STREQ(target.GetConversion(0u)->GetId(), "z");
    EXPECT_STREQ(target.GetConversion(1u)->GetId(), "a");
    EXPECT_FALSE(target.Contains("old"));
    EXPECT_NE(target.GetConversion(0u), source.GetConversion(0u));
}

TEST(ConversionContainer_Accept, ReachesTheConversionContainerOperation) {
    ZConversionContainer conversions;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(conversions), "ConversionContainer");
}

}  // namespace
}  // namespace Korvel
