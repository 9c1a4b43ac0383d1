#include "model/ZPosResponse.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(PosResponse_Accept, ReachesThePositiveResponseOperation) {
    ZPosResponse response;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(response), "PosResponse");
    EXPECT_EQ(visitor.lastItem, static_cast<const IPosResponse*>(&response));
}

TEST(PosResponse_Copy, KeepsTheKind) {
    ZPosResponse response;
    response.AddParam("a", 0, 8, "", "none", "", "", "");
    ZPosResponse copy(response);
    EXPECT_EQ(copy.GetMessageKind(), MessageKindPosResponse);
    EXPECT_EQ(copy.GetCount(), 1u);
}

}  // namespace
}  // namespace Korvel
