#include "reader/handlers/ZKLXEHInstance.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;
using ReaderTest::Warning;

namespace {

const char kParam[] =
    " bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"22\" semantics=\"SID\" convId=\"\"/>";

}  // namespace

TEST(ZKLXEHInstance_Open, AddsTheInstanceById) {
    auto result = Read("<ECU><INSTANCE id=\"ReadId\"/><INSTANCE id=\"Write\"></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IInstanceContainer* instances = result->ecu->GetInstanceContainer();
    ASSERT_EQ(instances->GetCount(), 2u);
    EXPECT_STREQ(instances->GetInstance(0u)->GetId(), "ReadId");
    EXPECT_STREQ(instances->GetInstance(1u)->GetId(), "Write");
}

TEST(ZKLXEHInstance_Open, MissingIdIsRefused) {
    for (const char* document : {"<ECU><INSTANCE/></ECU>", "<ECU><INSTANCE id=\"\"/></ECU>"}) {
        auto result = Read(document);
        ASSERT_NE(result->ecu, nullptr);
        const std::vector<std::string> expected{
            "ERROR: OpenTag >> INSTANCE element: Couldn't create a DiagServiceInstance for current element "
            "because "
            "no ID is configured!",
            Warning("INSTANCE"),
            "FATAL: CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain "
            "an "
            "IInstance item!"};
        EXPECT_EQ(result->Faults(), expected) << document;
        EXPECT_EQ(result->ecu->GetInstanceContainer()->GetCount(), 0u);
    }
}

TEST(ZKLXEHInstance_Open, UsedIdIsRefusedAndItsChildrenFindNoInstance) {
    auto result = Read(
        "<ECU><INSTANCE id=\"a\"><REQUEST/></INSTANCE>"
        "<INSTANCE id=\"a\"><REQUEST><PARAMETER id=\"p\"" +
        std::string(kParam) + "</REQUEST></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with id='a'!",
        Warning("INSTANCE"),
        "FATAL: OpenTag >> REQUEST element: The top element on the XmlElement stack does not reference an "
        "IInstance "
        "item!",
        Warning("REQUEST"),
        "FATAL: OpenTag >> PARAMETER element: The top element on the XmlElement stack dose not reference a "
        "IMessage "
        "item!",
        Warning("PARAMETER"),
        "FATAL: CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain an "
        "IInstance "
        "item!"};
    EXPECT_EQ(result->Faults(), expected);
    const IInstance* first = result->ecu->GetInstanceContainer()->GetInstance(0u);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetRequest()->GetCount(), 0u);
}

TEST(ZKLXEHInstance_Close, GivesAnInstanceWithoutNegativeResponseAnEmptyOne) {
    auto result = Read("<ECU><INSTANCE id=\"a\"><REQUEST/></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const IInstance* instance = result->ecu->GetInstanceContainer()->GetInstance(0u);
    ASSERT_NE(instance, nullptr);
    EXPECT_TRUE(instance->HasRequest());
    EXPECT_FALSE(instance->HasPosResponse());
    ASSERT_TRUE(instance->HasNegResponse());
    EXPECT_EQ(instance->GetNegResponse()->GetCount(), 0u);
}

TEST(ZKLXEHInstance_Close, KeepsANegativeResponseThatWasRead) {
    auto result = Read("<ECU><INSTANCE id=\"a\"><NEGATIVE_RESPONSE><PARAMETER id=\"n\"" +
                       std::string(kParam) + "</NEGATIVE_RESPONSE></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const IInstance* instance = result->ecu->GetInstanceContainer()->GetInstance(0u);
    ASSERT_TRUE(instance->HasNegResponse());
    EXPECT_EQ(instance->GetNegResponse()->GetCount(), 1u);
}

TEST(ZKLXEHInstance_Close, CloseWithoutOpenIsReportedTwice) {
    auto result = Read("<ECU><X><INSTANCE id=\"a\"/></X></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: CloseTag >> INSTANCE element: Different count of open and close tags found!",
        "FATAL: CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain an "
        "IInstance "
        "item!"};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHInstance_Trace, OpenAndCloseTexts) {
    auto result = Read("<ECU><INSTANCE id=\"a\"/></ECU>");
    const std::vector<std::string> expected{"OpenTag >> ECU element", "OpenTag >> INSTANCE element",
                                            "CloseTag >> INSTANCE element", "CloseTag >> ECU element"};
    EXPECT_EQ(result->Texts(ReportLevelDebug), expected);
}
