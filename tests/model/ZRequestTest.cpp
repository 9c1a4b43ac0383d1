#include "model/ZRequest.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(Request_Accept, ReachesTheRequestOperation) {
    ZRequest request;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(request), "Request");
    EXPECT_EQ(visitor.lastItem, static_cast<const IRequest*>(&request));
}

TEST(Request_GetSidParam, FindsSidInsideALongerWord) {
    ZRequest request;
    request.AddParam("sid", 0, 8, "", "none", "", "SID_NR", "");
    EXPECT_STREQ(request.GetSidParam()->GetId(), "sid");
}

}  // namespace
}  // namespace Korvel
