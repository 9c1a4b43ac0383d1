#include "reader/handlers/ZKLXEHMessage.h"
#include "reader/handlers/ZKLXEHNegativeResponse.h"
#include "reader/handlers/ZKLXEHRequest.h"
#include "reader/handlers/ZKLXEHResponse.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;
using ReaderTest::Warning;

namespace {

std::string Param(const std::string& id) {
    return "<PARAMETER id=\"" + id +
           "\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"22\" semantics=\"SID\" "
           "convId=\"\"/>";
}

}  // namespace

TEST(ZKLXEHMessage_Open, MakesTheThreeMessagesOfTheInstance) {
    auto result =
        Read("<ECU><INSTANCE id=\"a\"><REQUEST>" + Param("r") + "</REQUEST><RESPONSE>" + Param("p") +
             "</RESPONSE><NEGATIVE_RESPONSE>" + Param("n") + "</NEGATIVE_RESPONSE></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IInstance* instance = result->ecu->GetInstanceContainer()->GetInstance(0u);
    ASSERT_NE(instance->GetRequest(), nullptr);
    ASSERT_NE(instance->GetPosResponse(), nullptr);
    ASSERT_NE(instance->GetNegResponse(), nullptr);
    EXPECT_NE(instance->GetRequest()->GetParam("r"), nullptr);
    EXPECT_NE(instance->GetPosResponse()->GetParam("p"), nullptr);
    EXPECT_NE(instance->GetNegResponse()->GetParam("n"), nullptr);
}

TEST(ZKLXEHMessage_Open, ASecondRequestReplacesTheFirstWithItsParameters) {
    auto result = Read("<ECU><INSTANCE id=\"a\"><REQUEST>" + Param("one") + Param("two") +
                       "</REQUEST><REQUEST>" + Param("three") + "</REQUEST></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const IRequest* request = result->ecu->GetInstanceContainer()->GetInstance(0u)->GetRequest();
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->GetCount(), 1u);
    EXPECT_NE(request->GetParam("three"), nullptr);
    EXPECT_EQ(request->GetParam("one"), nullptr);
}

TEST(ZKLXEHMessage_Open, RequestUnderTheEcuIsRefused) {
    auto result = Read("<ECU><REQUEST/></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "FATAL: OpenTag >> REQUEST element: The top element on the XmlElement stack does not reference an "
        "IInstance "
        "item!",
        Warning("REQUEST")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHMessage_Open, ResponseUnderTheEcuIsRefusedWithItsOwnSpelling) {
    auto result = Read("<ECU><RESPONSE/></ECU>");
    const std::vector<std::string> expected{
        "FATAL: OpenTag >> RESPONSE element: The top element on the XmlElement stack dose not reference an "
        "IInstance "
        "item!",
        Warning("RESPONSE")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(result->Texts(ReportLevelFatal)[0], ReaderMessages::kResponseNoInstance);
}

TEST(ZKLXEHMessage_Open, NegativeResponseUnderTheEcuIsRefused) {
    auto result = Read("<ECU><NEGATIVE_RESPONSE/></ECU>");
    const std::vector<std::string> expected{
        "FATAL: OpenTag >> NEGATIVE_RESPONSE element: The top element on the XmlElement stack does not "
        "reference an "
        "IInstance item!",
        Warning("NEGATIVE_RESPONSE")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHMessage_Open, AtTheDocumentRootOnlyTheEmptyRecordIsReported) {
    auto result = Read("<REQUEST/>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{Warning("REQUEST")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHMessage_Trace, NegativeResponseCloseTextEndsInALineFeed) {
    auto result = Read("<ECU><INSTANCE id=\"a\"><REQUEST/><RESPONSE/><NEGATIVE_RESPONSE/></INSTANCE></ECU>");
    const std::vector<std::string> texts = result->Texts(ReportLevelDebug);
    const std::vector<std::string> expected{"OpenTag >> ECU element",
                                            "OpenTag >> INSTANCE element",
                                            "OpenTag >> REQUEST element",
                                            "CloseTag >> REQUEST element",
                                            "OpenTag >> RESPONSE element",
                                            "CloseTag >> RESPONSE element",
                                            "OpenTag >> NEGATIVE_RESPONSE element",
                                            "CloseTag >> NEGATIVE_RESPONSE element\n",
                                            "CloseTag >> INSTANCE element",
                                            "CloseTag >> ECU element"};
    EXPECT_EQ(texts, expected);
}

TEST(ZKLXEHMessage_Counts, CloseWithoutOpenIsReportedForEachTag) {
    auto result =
        Read("<ECU><INSTANCE id=\"a\"><X><REQUEST/><RESPONSE/><NEGATIVE_RESPONSE/></X></INSTANCE></ECU>");
    const std::vector<std::string> expected{
        "CloseTag >> REQUEST element: Different count of open and close tags found!",
        "CloseTag >> RESPONSE element: Different count of open and close tags found!",
        "CloseTag >> NEGATIVE_RESPONSE element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Texts(ReportLevelError), expected);
}
