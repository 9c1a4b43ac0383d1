#include "model/ZModelItem.h"
#include "model/ZNrcContainer.h"
#include "model/ZNrcItem.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(ModelItem_NewItem, HasNoParentAndIsItsOwnRoot) {
    ZNrcItem item(1, "x");
    EXPECT_FALSE(item.HasParent());
    EXPECT_EQ(item.GetParent(), nullptr);
    EXPECT_EQ(static_cast<const ZNrcItem&>(item).GetParent(), nullptr);
    EXPECT_EQ(item.GetRoot(), static_cast<IModelItem*>(&item));
    EXPECT_EQ(static_cast<const ZNrcItem&>(item).GetRoot(), static_cast<const IModelItem*>(&item));
    EXPECT_TRUE(item.IsSupported());
}

TEST(ModelItem_SetParent, StoresThePointerAsGiven) {
    ZNrcItem parent(1, "p");
    ZNrcItem child(2, "c");
    child.SetParent(&parent);
    EXPECT_TRUE(child.HasParent());
    EXPECT_EQ(child.GetParent(), static_cast<IModelItem*>(&parent));
    EXPECT_EQ(child.GetRoot(), static_cast<IModelItem*>(&parent));
    child.SetParent(nullptr);
    EXPECT_FALSE(child.HasParent());
    EXPECT_EQ(child.GetRoot(), static_cast<IModelItem*>(&child));
}

TEST(ModelItem_ConstructorWithParent, StartsAttached) {
    ZNrcItem parent(1, "p");
    struct Probe : ZModelItem {
        explicit Probe(IModelItem* p) : ZModelItem(p) {}
        void Accept(IConstModelItemVisitor&) const override {}
        void Accept(IConstModelItemVisitor&) override {}
    } probe(&parent);
    EXPECT_EQ(probe.GetParent(), static_cast<IModelItem*>(&parent));
}

// An item that names itself as its parent ends the root walk instead of looping.
TEST(ModelItem_SelfParent, IsItsOwnRootWithoutLooping) {
    ZNrcItem item(1, "x");
    item.SetParent(&item);
    EXPECT_TRUE(item.HasParent());
    EXPECT_EQ(item.GetRoot(), static_cast<IModelItem*>(&item));
    EXPECT_EQ(static_cast<const ZNrcItem&>(item).GetRoot(), static_cast<const IModelItem*>(&item));

    ZNrcItem child(2, "y");
    child.SetParent(&item);
    EXPECT_EQ(child.GetRoot(), static_cast<IModelItem*>(&item));
    EXPECT_EQ(static_cast<const ZNrcItem&>(child).GetRoot(), static_cast<const IModelItem*>(&item));
}

TEST(ModelItem_Copy, StartsDetached) {
    ZNrcContainer table;
    table.AddNrc(5, "five");
    ZNrcItem copy(*static_cast<ZNrcItem*>(table.GetNrc(0u)));
    EXPECT_FALSE(copy.HasParent());
}

}  // namespace
}  // namespace Korvel
