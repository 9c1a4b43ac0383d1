#include "model/ZMessage.h"

#include "model/ZNegResponse.h"
#include "model/ZPosResponse.h"
#include "model/ZRequest.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

uint32_t AddSimple(IMessage& message, const char* id, const char* semantics = "") {
    return message.AddParam(id, 0, 8, "", "unsigned", "", semantics, "");
}

std::vector<std::string> IdsByIndex(const IMessage& message) {
    std::vector<std::string> ids;
    for (int i = 0; i < static_cast<int>(message.GetCount()); ++i) {
        ids.emplace_back(message.GetParam(i)->GetId());
    }
    return ids;
}

class CountingCallback : public IParamCallback {
public:
    std::vector<IParam*> seen;
    void OnParam(IParam* param) override { seen.push_back(param); }
};

TEST(Message_Kind, IsFixedByTheMessageClass) {
    EXPECT_EQ(ZRequest().GetMessageKind(), MessageKindRequest);
    EXPECT_EQ(ZPosResponse().GetMessageKind(), MessageKindPosResponse);
    EXPECT_EQ(ZNegResponse().GetMessageKind(), MessageKindNegResponse);
}

TEST(Message_AddParam, RefusesASecondParameterWithTheSameId) {
    ZRequest request;
    EXPECT_EQ(AddSimple(request, "A"), 0u);
    EXPECT_EQ(AddSimple(request, "A"), InvalidIndex);
    EXPECT_EQ(request.GetCount(), 1u);
}

TEST(Message_AddParam, KeepsInsertionOrderNotIdOrBitOrder) {
    ZRequest request;
    request.AddParam("z", 16, 8, "", "unsigned", "", "", "");
    request.AddParam("a", 0, 8, "", "unsigned", "", "", "");
    request.AddParam("m", 8, 8, "", "unsigned", "", "", "");
    EXPECT_EQ(IdsByIndex(request), (std::vector<std::string>{"z", "a", "m"}));
}

TEST(Message_AddParam, TakesAllThreeForms) {
    ZPosResponse response;
    ZParam prototype("copy", 8, 16, "0x1234", "unsigned", "rpm", "MOTOROLA", "conv");
    EXPECT_EQ(response.AddParam(prototype), 0u);
    EXPECT_EQ(
        response.AddParam("typed", 0, 8, "7F", ParamDataType::None, "", SemanticsSid | SemanticsConst, ""),
        1u);
    EXPECT_EQ(response.AddParam("text", 24, 8, "1", "signed", "u", "GAP", "c"), 2u);
    EXPECT_EQ(response.AddParam(prototype), InvalidIndex);

    const IParam* copy = response.GetParam("copy");
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, &prototype);
    EXPECT_STREQ(copy->GetUnit(), "rpm");
    EXPECT_EQ(copy->GetBitLength(), 16u);
    EXPECT_FALSE(prototype.HasParent());

    const IParam* typed = response.GetParam("typed");
    EXPECT_STREQ(typed->GetDataTypeName(), "none");
    EXPECT_STREQ(typed->GetSemantics(), "SID CONST");

    const IParam* text = response.GetParam("text");
    EXPECT_STREQ(text->GetDataTypeName(), "signed");
    EXPECT_STREQ(text->GetConvId(), "c");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(response.GetParam(i)->GetParent(), static_cast<IModelItem*>(&response));
    }
}

// Texts laid out as a parameter keeps them go in under the same rules as AddParam.
TEST(Message_AddLaidOutParam, AddsInOrderRefusesAUsedIdAndSetsTheParent) {
    ZRequest request;
    const auto add = [&request](const std::string& id, uint32_t bitPos) {
        std::string bytes;
        const ZParam::PackedTexts texts = ZParam::LayOut({"c", "", "7", "unsigned", "", id.c_str()}, bytes);
        return request.AddParam(nullptr, texts, bitPos, 8);
    };
    EXPECT_EQ(AddSimple(request, "first"), 0u);
    EXPECT_EQ(add("second", 8), 1u);
    EXPECT_EQ(add("first", 16), InvalidIndex);
    EXPECT_EQ(add("second", 16), InvalidIndex);
    EXPECT_EQ(add("third", 16), 2u);
    EXPECT_EQ(request.GetCount(), 3u);
    const IParam* second = request.GetParam("second");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second, request.GetParam(1));
    EXPECT_STREQ(second->GetValue(), "7");
    EXPECT_STREQ(second->GetConvId(), "c");
    EXPECT_STREQ(second->GetSemantics(), "");
    EXPECT_STREQ(second->GetDataTypeName(), "unsigned");
    EXPECT_EQ(second->GetBitPos(), 8u);
    EXPECT_EQ(second->GetParent(), static_cast<const IModelItem*>(static_cast<const IMessage*>(&request)));
    EXPECT_EQ(IdsByIndex(request), (std::vector<std::string>{"first", "second", "third"}));
}

TEST(Message_GetParam, GivesNullForNegativeOrTooLargeIndexesAndUnknownIds) {
    ZRequest request;
    AddSimple(request, "A");
    const ZRequest& constRequest = request;
    EXPECT_EQ(request.GetParam(-1), nullptr);
    EXPECT_EQ(constRequest.GetParam(-1), nullptr);
    EXPECT_EQ(request.GetParam(1), nullptr);
    EXPECT_EQ(constRequest.GetParam(1), nullptr);
    EXPECT_EQ(request.GetParam("B"), nullptr);
    EXPECT_EQ(constRequest.GetParam("B"), nullptr);
    EXPECT_EQ(constRequest.GetParam(0), request.GetParam(0));
    EXPECT_EQ(constRequest.GetParam("A"), request.GetParam("A"));
}

TEST(Message_EmptyId, IsAValidKey) {
    ZRequest request;
    EXPECT_EQ(AddSimple(request, ""), 0u);
    EXPECT_NE(request.GetParam(""), nullptr);
    EXPECT_EQ(AddSimple(request, ""), InvalidIndex);
}

// ReplaceParam deliberately leaves the new id out of the map; callers call ReindexParams after
// their replacements.
TEST(Message_ReplaceParam, FindsTheNewIdOnlyAfterReindexParams) {
    ZRequest request;
    AddSimple(request, "old");
    AddSimple(request, "other");
    ZParam replacement("new", 4, 4, "", "unsigned", "", "", "");
    EXPECT_TRUE(request.ReplaceParam(0, replacement));
    EXPECT_STREQ(request.GetParam(0)->GetId(), "new");
    EXPECT_NE(request.GetParam(0), &replacement);
    EXPECT_EQ(request.GetParam(0)->GetParent(), static_cast<IModelItem*>(&request));
    EXPECT_EQ(request.GetParam("new"), nullptr);
    EXPECT_EQ(request.GetParam("old"), nullptr);
    EXPECT_NE(request.GetParam("other"), nullptr);
    request.ReindexParams();
    EXPECT_EQ(request.GetParam("new"), request.GetParam(0));
    EXPECT_EQ(request.GetParam("other"), request.GetParam(1));
}

TEST(Message_ReplaceParam, FailsAtOrBeyondTheCount) {
    ZRequest request;
    ZParam replacement("new", 4, 4, "", "unsigned", "", "", "");
    EXPECT_FALSE(request.ReplaceParam(0, replacement));
    AddSimple(request, "A");
    EXPECT_FALSE(request.ReplaceParam(1, replacement));
    EXPECT_STREQ(request.GetParam(0)->GetId(), "A");
}

TEST(Message_ReplaceParam, AcceptsTheParameterItReplaces) {
    ZRequest request;
    AddSimple(request, "A");
    EXPECT_TRUE(request.ReplaceParam(0, *request.GetParam(0)));
    EXPECT_STREQ(request.GetParam(0)->GetId(), "A");
}

TEST(Message_ReindexParams, MapsARepeatedIdToItsLastPosition) {
    ZRequest request;
    AddSimple(request, "A");
    AddSimple(request, "B");
    AddSimple(request, "C");
    ZParam duplicate("A", 0, 8, "", "unsigned", "", "", "");
    request.ReplaceParam(2, duplicate);
    request.ReindexParams();
    EXPECT_EQ(request.GetParam("A"), request.GetParam(2));
    EXPECT_EQ(request.GetParam("C"), nullptr);
    EXPECT_EQ(request.GetParam("B"), request.GetParam(1));
}

TEST(Message_ReindexParams, FollowsIdsChangedInPlace) {
    ZRequest request;
    AddSimple(request, "A");
    request.GetParam(0)->SetId("renamed");
    EXPECT_NE(request.GetParam("A"), nullptr);
    EXPECT_EQ(request.GetParam("renamed"), nullptr);
    request.ReindexParams();
    EXPECT_EQ(request.GetParam("A"), nullptr);
    EXPECT_NE(request.GetParam("renamed"), nullptr);
}

TEST(Message_ForParam, CallsTheCallbackWithTheParameterAtTheIndex) {
    ZRequest request;
    AddSimple(request, "A");
    AddSimple(request, "B");
    CountingCallback callback;
    EXPECT_TRUE(request.ForParam(1, callback));
    EXPECT_FALSE(request.ForParam(2, callback));
    ASSERT_EQ(callback.seen.size(), 1u);
    EXPECT_EQ(callback.seen[0], request.GetParam(1));
}

TEST(Message_FindParamBySemantics, GivesTheFirstParameterHoldingEveryBit) {
    ZRequest request;
    AddSimple(request, "plain", "");
    AddSimple(request, "sid", "SID");
    AddSimple(request, "sidConst", "SID CONST");
    EXPECT_STREQ(request.FindParamBySemantics(SemanticsSid)->GetId(), "sid");
    EXPECT_STREQ(request.FindParamBySemantics(SemanticsSid | SemanticsConst)->GetId(), "sidConst");
    EXPECT_EQ(request.FindParamBySemantics(SemanticsGap), nullptr);
}

TEST(Message_GetSidParam, IsNullWithoutSidAndTheFirstOfTwo) {
    ZRequest request;
    AddSimple(request, "a", "CONST");
    EXPECT_EQ(request.GetSidParam(), nullptr);
    AddSimple(request, "first", "SID CONST");
    AddSimple(request, "second", "SID");
    EXPECT_STREQ(request.GetSidParam()->GetId(), "first");

    ZPosResponse response;
    EXPECT_EQ(response.GetSidParam(), nullptr);
    AddSimple(response, "sid", "MOTOROLA SID");
    EXPECT_STREQ(response.GetSidParam()->GetId(), "sid");
}

TEST(Message_Assign, AddsTheOthersParametersWithoutClearingAndCopiesTheKind) {
    ZRequest target;
    AddSimple(target, "A");
    target.GetParam(0)->SetUnit("target");
    ZPosResponse source;
    AddSimple(source, "B");
    AddSimple(source, "A");
    target.Assign(source);
    EXPECT_EQ(IdsByIndex(target), (std::vector<std::string>{"A", "B"}));
    EXPECT_STREQ(target.GetParam("A")->GetUnit(), "target");
    EXPECT_EQ(target.GetMessageKind(), MessageKindPosResponse);
    target.Assign(target);
    EXPECT_EQ(target.GetCount(), 2u);
}

TEST(Message_Copy, CopiesEveryParameterDeep) {
    ZRequest source;
    AddSimple(source, "A");
    AddSimple(source, "B");
    ZRequest copy(source);
    ZRequest fromInterface(static_cast<const IRequest&>(source));
    for (const ZRequest* message : {&copy, &fromInterface}) {
        EXPECT_EQ(IdsByIndex(*message), (std::vector<std::string>{"A", "B"}));
        EXPECT_NE(message->GetParam(0), source.GetParam(0));
        EXPECT_EQ(message->GetParam(0)->GetParent(), static_cast<const IModelItem*>(message));
        EXPECT_FALSE(message->HasParent());
    }
}

TEST(Message_Clear, RemovesTheParameters) {
    ZNegResponse response;
    AddSimple(response, "A");
    response.Clear();
    EXPECT_EQ(response.GetCount(), 0u);
    EXPECT_EQ(AddSimple(response, "A"), 0u);
}

}  // namespace
}  // namespace Korvel
