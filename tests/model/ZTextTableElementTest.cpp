#include "model/ZTextTableElement.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <string>

namespace Korvel {
namespace {

TEST(TextTableElement_Constructor, KeepsValueAndTextExactly) {
    ZTextTableElement element("01", "on");
    EXPECT_STREQ(element.GetValue(), "01");
    EXPECT_STREQ(element.GetText(), "on");
}

TEST(TextTableElement_Setters, ChangeOneTextAndKeepTheOther) {
    ZTextTableElement element("1", "on");
    element.SetText("an");
    EXPECT_STREQ(element.GetValue(), "1");
    EXPECT_STREQ(element.GetText(), "an");
    element.SetValue("");
    EXPECT_STREQ(element.GetValue(), "");
    EXPECT_STREQ(element.GetText(), "an");
    element.SetText("");
    EXPECT_STREQ(element.GetText(), "");
}

TEST(TextTableElement_Setters, AcceptTheirOwnTextAsArgument) {
    ZTextTableElement element("value", "text");
    element.SetText(element.GetValue());
    EXPECT_STREQ(element.GetText(), "value");
    element.SetValue(element.GetText() + 2);
    EXPECT_STREQ(element.GetValue(), "lue");
}

TEST(TextTableElement_Setters, ReadNullAsEmpty) {
    ZTextTableElement element(nullptr, nullptr);
    EXPECT_STREQ(element.GetValue(), "");
    EXPECT_STREQ(element.GetText(), "");
}

TEST(TextTableElement_Assign, CopiesBothTextsAndIgnoresItself) {
    ZTextTableElement source("7", "seven");
    ZTextTableElement target("1", "one");
    target.Assign(source);
    EXPECT_STREQ(target.GetValue(), "7");
    EXPECT_STREQ(target.GetText(), "seven");
    target.Assign(target);
    EXPECT_STREQ(target.GetValue(), "7");
    EXPECT_STREQ(target.GetText(), "seven");
}

TEST(TextTableElement_Copy, StartsDetached) {
    ZTextTableElement parent("p", "p");
    ZTextTableElement source("7", "seven");
    source.SetParent(&parent);
    ZTextTableElement copy(source);
    ZTextTableElement fromInterface(static_cast<const ITextTableElement&>(source));
    EXPECT_FALSE(copy.HasParent());
    EXPECT_FALSE(fromInterface.HasParent());
    EXPECT_STREQ(fromInterface.GetText(), "seven");
    EXPECT_STREQ(copy.GetValue(), "7");
}

TEST(TextTableElement_Accept, ReachesTheEntryOperation) {
    ZTextTableElement element("1", "x");
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(element), "TextTableElement");
}

}  // namespace
}  // namespace Korvel
