#include "model/ZNotSupportedItem.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(NotSupportedItem_GetInstance, GivesOneSharedItem) {
    EXPECT_NE(ZNotSupportedItem::GetInstance(), nullptr);
    EXPECT_EQ(ZNotSupportedItem::GetInstance(), ZNotSupportedItem::GetInstance());
}

TEST(NotSupportedItem_Answers, AreThoseOfADetachedUnsupportedItem) {
    ZNotSupportedItem& item = *ZNotSupportedItem::GetInstance();
    const ZNotSupportedItem& constItem = item;
    EXPECT_FALSE(item.IsSupported());
    EXPECT_FALSE(item.HasParent());
    EXPECT_EQ(item.GetParent(), nullptr);
    EXPECT_EQ(constItem.GetParent(), nullptr);
    EXPECT_EQ(item.GetRoot(), static_cast<IModelItem*>(&item));
    EXPECT_EQ(constItem.GetRoot(), static_cast<const IModelItem*>(&item));
}

TEST(NotSupportedItem_Accept, ReachesTheUnsupportedItemOperation) {
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(*ZNotSupportedItem::GetInstance()), "NotSupported");
    EXPECT_EQ(visitor.lastItem, static_cast<const IModelItem*>(ZNotSupportedItem::GetInstance()));
}

}  // namespace
}  // namespace Korvel
