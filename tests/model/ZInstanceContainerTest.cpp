#include "model/ZInstanceContainer.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(InstanceContainer_AddInstance, RefusesAUsedIdAndKeepsTheCount) {
    ZInstanceContainer instances;
    EXPECT_EQ(instances.AddInstance("ReadData"), 0u);
    EXPECT_EQ(instances.AddInstance("ReadData"), InvalidIndex);
    EXPECT_EQ(instances.GetCount(), 1u);
}

TEST(InstanceContainer_Keys, AreCaseSensitiveAndMayBeEmpty) {
    ZInstanceContainer instances;
    EXPECT_EQ(instances.AddInstance("A"), 0u);
    EXPECT_EQ(instances.AddInstance("a"), 1u);
    EXPECT_EQ(instances.AddInstance(""), 2u);
    EXPECT_TRUE(instances.Contains("A"));
    EXPECT_TRUE(instances.Contains(""));
    EXPECT_FALSE(instances.Contains("b"));
    EXPECT_STREQ(instances.GetInstance("a")->GetId(), "a");
}

TEST(InstanceContainer_AddInstance, CopiesTheGivenInstanceDeep) {
    ZInstance prototype("x");
    prototype.CreateRequest()->AddParam("p", 0, 8, "", "none", "", "", "");
    ZInstanceContainer instances;
    EXPECT_EQ(instances.AddInstance(prototype), 0u);
    IInstance* stored = instances.GetInstance(0u);
    EXPECT_NE(stored, &prototype);
    EXPECT_EQ(stored->GetParent(), static_cast<IModelItem*>(&instances));
    EXPECT_NE(stored->GetRequest(), prototype.GetRequest());
    EXPECT_EQ(stored->GetRequest()->GetParam("p")->GetRoot(), static_cast<IModelItem*>(&instances));
    EXPECT_FALSE(prototype.HasParent());
}

TEST(InstanceContainer_AddInstance, WithMessagesCopiesThoseGiven) {
    ZRequest request;
    request.AddParam("p", 0, 8, "", "none", "", "", "");
    ZPosResponse pos;
    ZInstanceContainer instances;
    EXPECT_EQ(instances.AddInstance("x", &request, &pos, nullptr), 0u);
    EXPECT_EQ(instances.AddInstance("x", &request, &pos, nullptr), InvalidIndex);
    const IInstance* stored = instances.GetInstance("x");
    EXPECT_TRUE(stored->HasRequest());
    EXPECT_TRUE(stored->HasPosResponse());
    EXPECT_FALSE(stored->HasNegResponse());
    EXPECT_EQ(stored->GetRequest()->GetCount(), 1u);
}

TEST(InstanceContainer_GetInstance, GivesNullAtTheCountAndForUnknownIds) {
    ZInstanceContainer instances;
    instances.AddInstance("a");
    instances.AddInstance("b");
    const ZInstanceContainer& constInstances = instances;
    EXPECT_EQ(instances.GetInstance(2u), nullptr);
    EXPECT_EQ(constInstances.GetInstance(2u), nullptr);
    EXPECT_STREQ(instances.GetInstance(1u)->GetId(), "b");
    EXPECT_EQ(instances.GetInstance("c"), nullptr);
    EXPECT_EQ(constInstances.GetInstance("c"), nullptr);
    EXPECT_EQ(constInstances.GetInstance(1u), instances.GetInstance(1u));
    EXPECT_EQ(constInstances.GetInstance("a"), instances.GetInstance("a"));
    // By index the model's own type comes back, the same object the interface gives.
    ZInstance* typed = instances.GetInstance(0u);
    IInstanceContainer& asInterface = instances;
    EXPECT_EQ(static_cast<IInstance*>(typed), asInterface.GetInstance(0u));
    const ZRequest* created = typed->CreateRequest();
    EXPECT_EQ(created, instances.GetInstance("a")->GetRequest());
}

TEST(InstanceContainer_Clear, FreesTheIdsForANewAddAtIndexZero) {
    ZInstanceContainer instances;
    instances.AddInstance("a");
    instances.AddInstance("b");
    instances.Clear();
    EXPECT_EQ(instances.GetCount(), 0u);
    EXPECT_EQ(instances.AddInstance("b"), 0u);
}

TEST(InstanceContainer_Assign, ToItselfChangesNothing) {
    ZInstanceContainer instances;
    instances.AddInstance("a");
    IInstance* before = instances.GetInstance(0u);
    instances.Assign(instances);
    EXPECT_EQ(instances.GetCount(), 1u);
    EXPECT_EQ(instances.GetInstance(0u), before);
}

TEST(InstanceContainer_Assign, CopiesByIndex) {
    ZInstanceContainer source;
    source.AddInstance("z");
    source.AddInstance("a");
    ZInstanceContainer target;
    target.AddInstance("old");
    target.Assign(source);
    ASSERT_EQ(target.GetCount(), 2u);
    EXPECT_STREQ(target.GetInstance(0u)->GetId(), "z");
    EXPECT_STREQ(target.GetInstance(1u)->GetId(), "a");
    EXPECT_FALSE(target.Contains("old"));
}

TEST(InstanceContainer_Accept, ReachesTheInstanceContainerOperation) {
    ZInstanceContainer instances;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(instances), "InstanceContainer");
}

}  // namespace
}  // namespace Korvel
