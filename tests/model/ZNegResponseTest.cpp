#include "model/ZNegResponse.h"

#include "model/RecordingVisitor.h"
#include "model/ZInstance.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace Korvel {
namespace {

TEST(NegResponse_GetSidNrParam, IsOneSharedParameterForEveryResponse) {
    ZNegResponse first;
    ZNegResponse second;
    const IParam* sidNr = first.GetSidNrParam();
    ASSERT_NE(sidNr, nullptr);
    EXPECT_EQ(second.GetSidNrParam(), sidNr);
    EXPECT_STREQ(sidNr->GetId(), "SID_NR");
    EXPECT_EQ(sidNr->GetBitPos(), 7u);
    EXPECT_EQ(sidNr->GetBitLength(), 8u);
    EXPECT_STREQ(sidNr->GetValue(), "7F");
    EXPECT_STREQ(sidNr->GetDataTypeName(), "none");
    EXPECT_STREQ(sidNr->GetUnit(), "");
    EXPECT_STREQ(sidNr->GetSemantics(), "SID CONST MOTOROLA");
    EXPECT_STREQ(sidNr->GetConvId(), "");
    EXPECT_EQ(sidNr->GetByteLength(), 1u);
    EXPECT_TRUE(sidNr->IsMotorola());
    EXPECT_TRUE(sidNr->IsConst());
    EXPECT_TRUE(sidNr->IsSid());
    EXPECT_EQ(sidNr->GetValueImage(), (ByteBuffer{0x7F}));
}

TEST(NegResponse_GetSidNrParam, IsNotOneOfTheMessagesParameters) {
    ZNegResponse response;
    EXPECT_EQ(response.GetCount(), 0u);
    EXPECT_EQ(response.GetParam("SID_NR"), nullptr);
}

TEST(NegResponse_GetRequestSidParam, IsNullWithoutAnOwningInstance) {
    ZNegResponse response;
    EXPECT_EQ(response.GetRequestSidParam(), nullptr);
    ZNegResponse notAnInstance;
    response.SetParent(&notAnInstance);
    EXPECT_EQ(response.GetRequestSidParam(), nullptr);
}

TEST(NegResponse_GetRequestSidParam, IsNullWhenTheInstanceHasNoRequest) {
    ZInstance instance("x");
    INegResponse* response = instance.CreateNegResponse();
    EXPECT_EQ(response->GetRequestSidParam(), nullptr);
}

TEST(NegResponse_GetRequestSidParam, GivesTheSidParameterOfTheRequest) {
    ZInstance instance("x");
    IRequest* request = instance.CreateRequest();
    request->AddParam("data", 8, 8, "", "unsigned", "", "", "");
    request->AddParam("sid", 0, 8, "22", "none", "", "SID CONST", "");
    INegResponse* response = instance.CreateNegResponse();
    EXPECT_EQ(response->GetRequestSidParam(), request->GetParam("sid"));
}

// The root is cast to an ECU as a reference on purpose: outside an ECU this is a caller error.
TEST(NegResponse_GetNrcContainer, ThrowsBadCastWithoutAnEcuAtTheRoot) {
    ZNegResponse detached;
    EXPECT_THROW(detached.GetNrcContainer(), std::bad_cast);
    ZInstance instance("x");
    INegResponse* response = instance.CreateNegResponse();
    EXPECT_THROW(response->GetNrcContainer(), std::bad_cast);
}

TEST(NegResponse_Accept, ReachesTheNegativeResponseOperation) {
    ZNegResponse response;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(response), "NegResponse");
    EXPECT_EQ(visitor.lastItem, static_cast<const INegResponse*>(&response));
}

}  // namespace
}  // namespace Korvel
