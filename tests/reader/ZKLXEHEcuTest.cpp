#include "reader/handlers/ZKLXEHEcu.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;

namespace {

uint32_t ProtocolOf(const std::string& attribute) {
    auto result = Read("<ECU" + attribute + "/>");
    EXPECT_NE(result->ecu, nullptr) << result->AllMessages();
    return result->ecu ? result->ecu->GetProtocol() : 0xFFFFFFFFu;
}

}  // namespace

TEST(ZKLXEHEcu_Protocol, TextContainingKwpSelectsKwp) {
    EXPECT_EQ(ProtocolOf(" protocol=\"KWP\""), ProtocolKwp);
    EXPECT_EQ(ProtocolOf(" protocol=\"xxKWP2000\""), ProtocolKwp);
}

TEST(ZKLXEHEcu_Protocol, AnyOtherTextOrNoneSelectsUds) {
    EXPECT_EQ(ProtocolOf(" protocol=\"UDS\""), ProtocolUds);
    EXPECT_EQ(ProtocolOf(" protocol=\"uds\""), ProtocolUds);
    EXPECT_EQ(ProtocolOf(" protocol=\"kwp\""), ProtocolUds);
    EXPECT_EQ(ProtocolOf(" protocol=\"\""), ProtocolUds);
    EXPECT_EQ(ProtocolOf(""), ProtocolUds);
}

TEST(ZKLXEHEcu_Trace, OpenAndCloseTextsAreDebugMessages) {
    auto result = Read("<ECU/>");
    const std::vector<std::string> expected{"OpenTag >> ECU element", "CloseTag >> ECU element"};
    EXPECT_EQ(result->Texts(ReportLevelDebug), expected);
    EXPECT_TRUE(result->Faults().empty());
}

TEST(ZKLXEHEcu_Counts, CloseWithoutOpenInsideAnUnknownElementIsReported) {
    auto result = Read("<ROOT><ECU/></ROOT>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "CloseTag >> ECU element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Texts(ReportLevelError), expected);
}
