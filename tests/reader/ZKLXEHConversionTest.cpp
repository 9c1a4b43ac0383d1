#include "reader/handlers/ZKLXEHConversion.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;
using ReaderTest::Warning;

namespace {

double FactorOf(const std::string& factor) {
    auto result = Read("<ECU><CONVERSION id=\"c\" factor=\"" + factor + "\" offset=\"0\"/></ECU>");
    EXPECT_NE(result->ecu, nullptr);
    const IConversion* conversion = result->ecu->GetConversionContainer()->GetConversion(0u);
    EXPECT_NE(conversion, nullptr) << result->AllMessages();
    return conversion != nullptr ? conversion->GetFactor() : -1.0;
}

}  // namespace

TEST(ZKLXEHConversion_Open, AddsALinearConversion) {
    auto result = Read("<ECU><CONVERSION id=\"c\" factor=\"0.5\" offset=\"-40\" extra=\"x\"/></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IConversion* conversion = result->ecu->GetConversionContainer()->GetConversion(0u);
    ASSERT_NE(conversion, nullptr);
    EXPECT_STREQ(conversion->GetId(), "c");
    EXPECT_EQ(conversion->GetType(), static_cast<uint32_t>(ConversionKind::Formula));
    EXPECT_DOUBLE_EQ(conversion->GetFactor(), 0.5);
    EXPECT_DOUBLE_EQ(conversion->GetOffset(), -40.0);
}

TEST(ZKLXEHConversion_Open, NumbersAreReadLikeAtof) {
    EXPECT_DOUBLE_EQ(FactorOf("1e-3"), 0.001);
    EXPECT_DOUBLE_EQ(FactorOf("1,5"), 1.0);
    EXPECT_DOUBLE_EQ(FactorOf("abc"), 0.0);
}

TEST(ZKLXEHConversion_Open, MissingOrEmptyAttributeIsRefused) {
    for (const char* document : {"<ECU><CONVERSION id=\"c\" factor=\"1\"/></ECU>",
                                 "<ECU><CONVERSION id=\"\" factor=\"1\" offset=\"0\"/></ECU>",
                                 "<ECU><CONVERSION id=\"c\" factor=\"\" offset=\"0\"/></ECU>"}) {
        auto result = Read(document);
        ASSERT_NE(result->ecu, nullptr);
        const std::vector<std::string> expected{
            "ERROR: OpenTag >> CONVERSION element: Couldn't create IConversion, because not all required "
            "attributes "
            "were available!",
            Warning("CONVERSION")};
        EXPECT_EQ(result->Faults(), expected) << document;
        EXPECT_EQ(result->ecu->GetConversionContainer()->GetCount(), 0u);
    }
}

TEST(ZKLXEHConversion_Open, UsedIdIsRefused) {
    auto result = Read(
        "<ECU><CONVERSION id=\"c\" factor=\"1\" offset=\"0\"/><CONVERSION id=\"c\" factor=\"2\" "
        "offset=\"0\"/></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> CONVERSION element: Couldn't add IConversion with id='c', because the ID is "
        "already used!",
        Warning("CONVERSION")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_DOUBLE_EQ(result->ecu->GetConversionContainer()->GetConversion(0u)->GetFactor(), 1.0);
}

TEST(ZKLXEHConversion_Open, UnnamedAttributeIsReportedAndSkipped) {
    ReaderTest::HandlerSetup setup;
    const auto& sink = setup.sink;
    ZEcu* ecu = setup.builder.Ecu();
    ZKLXEHConversion handler(setup.context);
    ReaderTest::FakeAttributes attributes;
    attributes.Add(u"id", u"c");
    attributes.Add(nullptr, u"x");
    attributes.Add(u"factor", u"2");
    attributes.Add(u"offset", u"1");
    handler.StartElement(u"CONVERSION", attributes);
    ASSERT_EQ(sink->GetErrors().size(), 1u);
    EXPECT_EQ(sink->GetErrors()[0], "OpenTag >> CONVERSION element: TryGetName failed for attribute #1!");
    EXPECT_EQ(ecu->GetConversionContainer()->GetCount(), 1u);
}

TEST(ZKLXEHConversion_Trace, OpenCloseAndCountTexts) {
    auto result = Read("<ECU><CONVERSION id=\"c\" factor=\"1\" offset=\"0\"/><X><CONVERSION/></X></ECU>");
    const std::vector<std::string> debug = result->Texts(ReportLevelDebug);
    EXPECT_NE(std::find(debug.begin(), debug.end(), "OpenTag >> CONVERSION element"), debug.end());
    EXPECT_NE(std::find(debug.begin(), debug.end(), "CloseTag >> CONVERSION element"), debug.end());
    const std::vector<std::string> expected{
        "ERROR: CloseTag >> CONVERSION element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Faults(), expected);
}
