#include "model/ZContainerBase.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

// An item that records, when it is destroyed, its name and how many items its container
// still showed at that moment.
struct ProbeLog {
    std::vector<std::string> destroyed;
    std::vector<uint32_t> countSeen;
};

class ProbeContainer;

class ProbeItem : public ZModelItem {
public:
    ProbeItem(std::string name, ProbeLog* log) : m_name(std::move(name)), m_log(log) {}
    ProbeItem(const ProbeItem& other)
        : IModelItem(), ZModelItem(), m_name(other.m_name), m_log(other.m_log) {}
    ~ProbeItem() override;
    void Accept(IConstModelItemVisitor&) const override {}
    void Accept(IConstModelItemVisitor&) override {}
    const std::string& Name() const { return m_name; }

private:
    std::string m_name;
    ProbeLog* m_log;
};

class ProbeContainer : public ZContainerBase<std::string, ProbeItem> {
public:
    void Accept(IConstModelItemVisitor&) const override {}
    void Accept(IConstModelItemVisitor&) override {}
    using ZContainerBase::ItemAt;
};

ProbeItem::~ProbeItem() {
    if (m_log == nullptr) {
        return;
    }
    m_log->destroyed.push_back(m_name);
    if (const auto* container = dynamic_cast<const ProbeContainer*>(GetParent())) {
        m_log->countSeen.push_back(container->GetCount());
    }
}

TEST(ContainerBase_AddItem, CopiesThePrototypeAndSetsTheParent) {
    ProbeContainer container;
    ProbeItem prototype("a", nullptr);
    EXPECT_EQ(container.AddItem("a", prototype), 0u);
    EXPECT_EQ(container.AddItem("b", prototype), 1u);
    EXPECT_EQ(container.AddItem("a", prototype), InvalidIndex);
    EXPECT_EQ(container.GetCount(), 2u);
    EXPECT_NE(container.ItemAt(0), &prototype);
    EXPECT_EQ(container.ItemAt(0)->GetParent(), static_cast<IModelItem*>(&container));
    EXPECT_FALSE(prototype.HasParent());
    EXPECT_EQ(container.ItemAt(2), nullptr);
}

TEST(ContainerBase_Lookups, FindIndexesAndKeys) {
    ProbeContainer container;
    ProbeItem prototype("x", nullptr);
    container.AddItem("b", prototype);
    container.AddItem("a", prototype);
    EXPECT_TRUE(container.Contains("a"));
    EXPECT_FALSE(container.Contains("A"));
    uint32_t index = 42;
    EXPECT_TRUE(container.GetIndex("a", index));
    EXPECT_EQ(index, 1u);
    EXPECT_FALSE(container.GetIndex("c", index));
    EXPECT_EQ(index, 1u);
    std::string key = "unchanged";
    EXPECT_TRUE(container.GetKey(0, key));
    EXPECT_EQ(key, "b");
    EXPECT_FALSE(container.GetKey(2, key));
    EXPECT_EQ(key, "b");
}

// Clear empties the container before any item goes, then destroys the items in index order.
TEST(ContainerBase_Clear, EmptiesTheContainerBeforeDestroyingItemsInIndexOrder) {
    ProbeLog log;
    {
        ProbeContainer container;
        container.AddItem("z", ProbeItem("first", &log));
        container.AddItem("a", ProbeItem("second", &log));
        container.AddItem("m", ProbeItem("third", &log));
        log.destroyed.clear();
        log.countSeen.clear();
        container.Clear();
        EXPECT_EQ(log.destroyed, (std::vector<std::string>{"first", "second", "third"}));
        EXPECT_EQ(log.countSeen, (std::vector<uint32_t>{0, 0, 0}));
        EXPECT_FALSE(container.Contains("z"));
        EXPECT_EQ(container.AddItem("z", ProbeItem("again", nullptr)), 0u);
    }
}

TEST(ContainerBase_Destruction, DestroysEveryItem) {
    ProbeLog log;
    {
        ProbeContainer container;
        container.AddItem("a", ProbeItem("one", &log));
        container.AddItem("b", ProbeItem("two", &log));
        log.destroyed.clear();
    }
    EXPECT_EQ(log.destroyed.size(), 2u);
}

}  // namespace
}  // namespace Korvel
