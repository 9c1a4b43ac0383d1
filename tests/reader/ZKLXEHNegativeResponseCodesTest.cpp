#include "reader/handlers/ZKLXEHNegativeResponseCodes.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;

TEST(ZKLXEHNegativeResponseCodes_Open, StandsForTheEcusNrcTable) {
    auto result = Read(
        "<ECU><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\" text=\"generalReject\"/><MAP nrc=\"17\" text=\"\"/>"
        "</NEGATIVE_RESPONSE_CODES></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const INrcContainer* nrcs = result->ecu->GetNrcContainer();
    ASSERT_EQ(nrcs->GetCount(), 2u);
    ASSERT_NE(nrcs->GetNrc(uint8_t{16}), nullptr);
    EXPECT_STREQ(nrcs->GetNrc(uint8_t{16})->GetText(), "generalReject");
    EXPECT_STREQ(nrcs->GetNrc(uint8_t{17})->GetText(), "");
}

TEST(ZKLXEHNegativeResponseCodes_Trace, OpenAndCloseTexts) {
    auto result = Read("<ECU><NEGATIVE_RESPONSE_CODES/></ECU>");
    const std::vector<std::string> expected{
        "OpenTag >> ECU element", "OpenTag >> NEGATIVE_RESPONSE_CODES element",
        "CloseTag >> NEGATIVE_RESPONSE_CODES element", "CloseTag >> ECU element"};
    EXPECT_EQ(result->Texts(ReportLevelDebug), expected);
}

TEST(ZKLXEHNegativeResponseCodes_Counts, CloseWithoutOpenIsReported) {
    auto result = Read("<ECU><X><NEGATIVE_RESPONSE_CODES/></X></ECU>");
    const std::vector<std::string> expected{
        "CloseTag >> NEGATIVE_RESPONSE_CODES element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Texts(ReportLevelError), expected);
}
