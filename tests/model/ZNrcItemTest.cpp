#include "model/ZNrcItem.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <string>

namespace Korvel {
namespace {

TEST(NrcItem_Constructor, KeepsCodeAndText) {
    ZNrcItem item(16, "General reject");
    EXPECT_EQ(item.GetCode(), 16);
    EXPECT_STREQ(item.GetText(), "General reject");
}

TEST(NrcItem_SetText, StoresTheEmptyText) {
    ZNrcItem item(16, "General reject");
    item.SetText("");
    EXPECT_STREQ(item.GetText(), "");
}

TEST(NrcItem_SetText, ReadsNullAsEmpty) {
    ZNrcItem item(16, nullptr);
    EXPECT_STREQ(item.GetText(), "");
    item.SetText("x");
    item.SetText(nullptr);
    EXPECT_STREQ(item.GetText(), "");
}

TEST(NrcItem_SetCode, AcceptsTheWholeByteRange) {
    ZNrcItem item(0, "zero");
    EXPECT_EQ(item.GetCode(), 0);
    item.SetCode(255);
    EXPECT_EQ(item.GetCode(), 255);
}

TEST(NrcItem_Assign, CopiesCodeAndTextButNotTheParent) {
    ZNrcItem parent(1, "p");
    ZNrcItem source(0x22, "Conditions not correct");
    source.SetParent(&parent);
    ZNrcItem target(0x10, "x");
    target.Assign(source);
    EXPECT_EQ(target.GetCode(), 0x22);
    EXPECT_STREQ(target.GetText(), "Conditions not correct");
    EXPECT_FALSE(target.HasParent());
}

TEST(NrcItem_Assign, ToItselfChangesNothing) {
    ZNrcItem item(0x22, "text");
    item.Assign(item);
    EXPECT_EQ(item.GetCode(), 0x22);
    EXPECT_STREQ(item.GetText(), "text");
}

TEST(NrcItem_CopyFromInterface, CopiesDataAndStartsDetached) {
    ZNrcItem parent(1, "p");
    ZNrcItem source(0x31, "Request out of range");
    source.SetParent(&parent);
    const INrcItem& asInterface = source;
    ZNrcItem copy(asInterface);
    EXPECT_EQ(copy.GetCode(), 0x31);
    EXPECT_STREQ(copy.GetText(), "Request out of range");
    EXPECT_FALSE(copy.HasParent());
}

TEST(NrcItem_Accept, ReachesTheNrcItemOperation) {
    ZNrcItem item(1, "x");
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(item), "NrcItem");
    EXPECT_EQ(visitor.lastItem, static_cast<const INrcItem*>(&item));
}

}  // namespace
}  // namespace Korvel
