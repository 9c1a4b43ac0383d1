#include "model/ZInstance.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(Instance_DefaultConstructor, HasAnEmptyIdAndNoMessages) {
    ZInstance instance;
    EXPECT_STREQ(instance.GetId(), "");
    EXPECT_FALSE(instance.HasRequest());
    EXPECT_FALSE(instance.HasPosResponse());
    EXPECT_FALSE(instance.HasNegResponse());
    EXPECT_EQ(instance.GetRequest(), nullptr);
    EXPECT_EQ(instance.GetPosResponse(), nullptr);
    EXPECT_EQ(instance.GetNegResponse(), nullptr);
}

// Through the model's own type the created messages keep their type; they are the instance's
// messages as the interface sees them, and a second call replaces the first message.
TEST(Instance_Create, GivesTheMessagesWithTheirOwnType) {
    ZInstance instance("a");
    ZRequest* request = instance.CreateRequest();
    ZPosResponse* posResponse = instance.CreatePosResponse();
    ZNegResponse* negResponse = instance.CreateNegResponse();
    EXPECT_EQ(static_cast<const IRequest*>(request), instance.GetRequest());
    EXPECT_EQ(static_cast<const IPosResponse*>(posResponse), instance.GetPosResponse());
    EXPECT_EQ(static_cast<const INegResponse*>(negResponse), instance.GetNegResponse());
    request->AddParam("p", 0, 8, "", "unsigned", "", "", "");
    IInstance& asInterface = instance;
    IRequest* fresh = asInterface.CreateRequest();
    EXPECT_EQ(fresh, instance.GetRequest());
    EXPECT_EQ(fresh->GetCount(), 0u);
}

TEST(Instance_SetId, ReplacesTheId) {
    ZInstance instance("a");
    EXPECT_STREQ(instance.GetId(), "a");
    instance.SetId("b");
    EXPECT_STREQ(instance.GetId(), "b");
    instance.SetId(nullptr);
    EXPECT_STREQ(instance.GetId(), "");
}

TEST(Instance_Create, MakesEmptyMessagesOwnedByTheInstance) {
    ZInstance instance("x");
    IRequest* request = instance.CreateRequest();
    IPosResponse* pos = instance.CreatePosResponse();
    INegResponse* neg = instance.CreateNegResponse();
    EXPECT_TRUE(instance.HasRequest());
    EXPECT_TRUE(instance.HasPosResponse());
    EXPECT_TRUE(instance.HasNegResponse());
    EXPECT_EQ(instance.GetRequest(), request);
    EXPECT_EQ(instance.GetPosResponse(), pos);
    EXPECT_EQ(instance.GetNegResponse(), neg);
    EXPECT_EQ(request->GetCount(), 0u);
    EXPECT_EQ(request->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_EQ(pos->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_EQ(neg->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_EQ(request->GetMessageKind(), MessageKindRequest);
    EXPECT_EQ(pos->GetMessageKind(), MessageKindPosResponse);
    EXPECT_EQ(neg->GetMessageKind(), MessageKindNegResponse);
}

TEST(Instance_ConstAndNonConstGetters, Agree) {
    ZInstance instance("x");
    instance.CreateRequest();
    instance.CreatePosResponse();
    instance.CreateNegResponse();
    const ZInstance& constInstance = instance;
    EXPECT_EQ(constInstance.GetRequest(), instance.GetRequest());
    EXPECT_EQ(constInstance.GetPosResponse(), instance.GetPosResponse());
    EXPECT_EQ(constInstance.GetNegResponse(), instance.GetNegResponse());
}

TEST(Instance_CreateRequest, DiscardsTheOldRequestAndItsParameters) {
    ZInstance instance("x");
    instance.CreateRequest()->AddParam("a", 0, 8, "", "none", "", "", "");
    IRequest* fresh = instance.CreateRequest();
    EXPECT_EQ(fresh->GetCount(), 0u);
    EXPECT_EQ(instance.GetRequest(), fresh);
}

TEST(Instance_SetRequest, WithItsOwnRequestChangesNothing) {
    ZInstance instance("x");
    IRequest* request = instance.CreateRequest();
    request->AddParam("a", 0, 8, "", "none", "", "", "");
    instance.SetRequest(*request);
    EXPECT_EQ(instance.GetRequest(), request);
    EXPECT_EQ(request->GetCount(), 1u);
}

TEST(Instance_Setters, StoreDeepCopiesWithTheInstanceAsParent) {
    ZRequest request;
    request.AddParam("a", 0, 8, "", "none", "", "", "");
    ZPosResponse pos;
    pos.AddParam("b", 0, 8, "", "none", "", "", "");
    ZNegResponse neg;
    neg.AddParam("c", 0, 8, "", "none", "", "", "");
    ZInstance instance("x");
    instance.CreateRequest();
    instance.SetRequest(request);
    instance.SetPosResponse(pos);
    instance.SetNegResponse(neg);
    EXPECT_NE(instance.GetRequest(), &request);
    EXPECT_NE(instance.GetRequest()->GetParam("a"), nullptr);
    EXPECT_NE(instance.GetPosResponse()->GetParam("b"), nullptr);
    EXPECT_NE(instance.GetNegResponse()->GetParam("c"), nullptr);
    EXPECT_NE(instance.GetRequest()->GetParam("a"), request.GetParam("a"));
    EXPECT_EQ(instance.GetRequest()->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_EQ(instance.GetPosResponse()->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_EQ(instance.GetNegResponse()->GetParent(), static_cast<IModelItem*>(&instance));
    EXPECT_FALSE(request.HasParent());
}

TEST(Instance_SetRequest, AcceptsTheRequestOfAnotherInstance) {
    ZInstance source("s");
    source.CreateRequest()->AddParam("a", 0, 8, "", "none", "", "", "");
    ZInstance target("t");
    target.SetRequest(*source.GetRequest());
    EXPECT_NE(target.GetRequest(), source.GetRequest());
    EXPECT_EQ(target.GetRequest()->GetCount(), 1u);
}

TEST(Instance_Clear, RemovesTheMessagesButKeepsTheId) {
    ZInstance instance("x");
    instance.CreateRequest();
    instance.CreatePosResponse();
    instance.CreateNegResponse();
    instance.Clear();
    EXPECT_FALSE(instance.HasRequest());
    EXPECT_FALSE(instance.HasPosResponse());
    EXPECT_FALSE(instance.HasNegResponse());
    EXPECT_STREQ(instance.GetId(), "x");
}

TEST(Instance_FullConstructor, CopiesTheMessagesGivenAndSkipsNull) {
    ZRequest request;
    request.AddParam("a", 0, 8, "", "none", "", "", "");
    ZNegResponse neg;
    ZInstance instance("x", &request, nullptr, &neg);
    EXPECT_STREQ(instance.GetId(), "x");
    EXPECT_TRUE(instance.HasRequest());
    EXPECT_FALSE(instance.HasPosResponse());
    EXPECT_TRUE(instance.HasNegResponse());
    EXPECT_EQ(instance.GetRequest()->GetCount(), 1u);
}

TEST(Instance_Copy, CopiesTheIdAndEveryPresentMessage) {
    ZInstance source("x");
    source.CreateRequest()->AddParam("a", 0, 8, "", "none", "", "", "");
    source.CreateNegResponse();
    ZInstance copy(source);
    ZInstance fromInterface(static_cast<const IInstance&>(source));
    for (const ZInstance* instance : {&copy, &fromInterface}) {
        EXPECT_STREQ(instance->GetId(), "x");
        ASSERT_TRUE(instance->HasRequest());
        EXPECT_FALSE(instance->HasPosResponse());
        EXPECT_TRUE(instance->HasNegResponse());
        EXPECT_NE(instance->GetRequest(), source.GetRequest());
        EXPECT_EQ(instance->GetRequest()->GetCount(), 1u);
        EXPECT_EQ(instance->GetRequest()->GetParent(), static_cast<const IModelItem*>(instance));
        EXPECT_FALSE(instance->HasParent());
    }
}

TEST(Instance_Accept, ReachesTheInstanceOperation) {
    ZInstance instance("x");
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(instance), "Instance");
}

}  // namespace
}  // namespace Korvel
