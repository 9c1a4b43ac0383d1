#include "reader/handlers/ZKLXEHMap.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;
using ReaderTest::Warning;

namespace {

std::string InNrcTable(const std::string& maps) {
    return "<ECU><NEGATIVE_RESPONSE_CODES>" + maps + "</NEGATIVE_RESPONSE_CODES></ECU>";
}

std::string InConversion(const std::string& maps) {
    return "<ECU><CONVERSION id=\"c\" factor=\"1\" offset=\"0\">" + maps + "</CONVERSION></ECU>";
}

const char kMissing[] = "ERROR: OpenTag >> MAP element: Not all required attributes are available!";

}  // namespace

TEST(ZKLXEHMap_Nrc, HexTextReadsAsZero) {
    auto result = Read(InNrcTable("<MAP nrc=\"0x21\" text=\"busy\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const INrcItem* item = result->ecu->GetNrcContainer()->GetNrc(uint8_t{0});
    ASSERT_NE(item, nullptr);
    EXPECT_STREQ(item->GetText(), "busy");
}

TEST(ZKLXEHMap_Nrc, TooBigIsReportedAndAddedAsZero) {
    auto result = Read(InNrcTable("<MAP nrc=\"300\" text=\"big\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the configured value "
        "('300') is to "
        "big!"};
    EXPECT_EQ(result->Faults(), expected);
    const INrcItem* item = result->ecu->GetNrcContainer()->GetNrc(uint8_t{0});
    ASSERT_NE(item, nullptr);
    EXPECT_STREQ(item->GetText(), "big");
}

TEST(ZKLXEHMap_Nrc, TooSmallIsAddedAsZeroAndASecondOneIsAUsedCode) {
    auto result = Read(InNrcTable("<MAP text=\"a\" nrc=\"-5\"/><MAP nrc=\"-5\" text=\"b\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::string tooSmall0 =
        "ERROR: TryGetValue >> Couldn't convert attribute #1 to BYTE, because the the configured value "
        "('-5') is to "
        "small!";
    const std::string tooSmall1 =
        "ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the configured value "
        "('-5') is to "
        "small!";
    const std::vector<std::string> expected{
        tooSmall0, tooSmall1,
        std::string("ERROR: OpenTag >> MAP element: Couldn't add INrcItem with nrc='") + '\0' +
            "', because the NRC is already used!",
        Warning("MAP")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(result->ecu->GetNrcContainer()->GetCount(), 1u);
    EXPECT_STREQ(result->ecu->GetNrcContainer()->GetNrc(uint8_t{0})->GetText(), "a");
}

TEST(ZKLXEHMap_Nrc, UsedCodeShowsTheRawByte) {
    auto result = Read(InNrcTable("<MAP nrc=\"65\" text=\"a\"/><MAP nrc=\"65\" text=\"b\"/>"));
    const std::vector<std::string> errors = result->Texts(ReportLevelError);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0],
              "OpenTag >> MAP element: Couldn't add INrcItem with nrc='A', because the NRC is already used!");
}

TEST(ZKLXEHMap_Nrc, GoesToTheEcuTableWhateverTheParent) {
    auto result = Read(InConversion("<MAP nrc=\"18\" text=\"x\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    EXPECT_NE(result->ecu->GetNrcContainer()->GetNrc(uint8_t{18}), nullptr);
    const IConversion* conversion = result->ecu->GetConversionContainer()->GetConversion(0u);
    EXPECT_EQ(conversion->GetType(), static_cast<uint32_t>(ConversionKind::Formula));
}

TEST(ZKLXEHMap_Role, BothOrNeitherOrNoTextIsRefusedWithoutARecord) {
    for (const char* map : {"<MAP nrc=\"1\" val=\"1\" text=\"x\"/>", "<MAP text=\"x\"/>", "<MAP nrc=\"1\"/>",
                            "<MAP val=\"1\"/>"}) {
        auto result = Read(InConversion(map));
        ASSERT_NE(result->ecu, nullptr);
        const std::vector<std::string> expected{kMissing};
        EXPECT_EQ(result->Faults(), expected) << map;
        EXPECT_EQ(result->Texts(ReportLevelError)[0], ReaderMessages::kMapMissing);
    }
}

TEST(ZKLXEHMap_Role, RefusedMapLeavesTheFollowingElementsInPlace) {
    auto result = Read(
        "<ECU><CONVERSION id=\"c\" factor=\"1\" offset=\"0\"><MAP val=\"1\" text=\"one\"/><MAP text=\"x\"/>"
        "<MAP val=\"2\" text=\"two\"/></CONVERSION><INSTANCE id=\"i\"><REQUEST/></INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{kMissing};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(result->ecu->GetConversionContainer()->GetConversion(0u)->GetTextTableSize(), 2u);
    EXPECT_TRUE(result->ecu->GetInstanceContainer()->GetInstance(0u)->HasRequest());
}

TEST(ZKLXEHMap_TextTable, EntriesMakeTheConversionAValueTable) {
    auto result = Read(InConversion("<MAP val=\"0\" text=\"off\"/><MAP val=\"1\" text=\"on\" />"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IConversion* conversion = result->ecu->GetConversionContainer()->GetConversion(0u);
    EXPECT_EQ(conversion->GetType(), static_cast<uint32_t>(ConversionKind::ValueTable));
    ASSERT_EQ(conversion->GetTextTableSize(), 2u);
    EXPECT_STREQ(conversion->GetTextTableElement(1u)->GetText(), "on");
}

TEST(ZKLXEHMap_TextTable, UsedValueIsRefusedAndTheConversionStaysAValueTable) {
    auto result = Read(InConversion("<MAP val=\"1\" text=\"a\"/><MAP val=\"1\" text=\"b\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> The current processsed MAP (val='1', text='b') couldn't be added -> check if the "
        "value is "
        "unique!",
        Warning("MAP")};
    EXPECT_EQ(result->Faults(), expected);
    const IConversion* conversion = result->ecu->GetConversionContainer()->GetConversion(0u);
    EXPECT_EQ(conversion->GetType(), static_cast<uint32_t>(ConversionKind::ValueTable));
    EXPECT_EQ(conversion->GetTextTableSize(), 1u);
}

TEST(ZKLXEHMap_TextTable, EmptyValueIsADebugMessage) {
    auto result = Read(InConversion("<MAP val=\"\" text=\"a\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{Warning("MAP")};
    EXPECT_EQ(result->Faults(), expected);
    const std::vector<std::string> debug = result->Texts(ReportLevelDebug);
    EXPECT_NE(
        std::find(
            debug.begin(), debug.end(),
            "OpenTag >> MAP element: The 'val' attribute is empty so no TextTableElement could be created!"),
        debug.end());
    EXPECT_EQ(result->ecu->GetConversionContainer()->GetConversion(0u)->GetType(),
              static_cast<uint32_t>(ConversionKind::Formula));
}

TEST(ZKLXEHMap_TextTable, OutsideAConversionIsRefused) {
    auto result = Read(InNrcTable("<MAP val=\"1\" text=\"a\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "FATAL: OpenTag >> MAP element: The top element on the XmlElement stack dose not reference a "
        "IConversion item!",
        Warning("MAP")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHMap_TextTable, UnderARefusedConversionFindsTheNotSupportedItem) {
    auto result = Read("<ECU><CONVERSION id=\"c\"><MAP val=\"1\" text=\"a\"/></CONVERSION></ECU>");
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> CONVERSION element: Couldn't create IConversion, because not all required "
        "attributes "
        "were available!",
        Warning("CONVERSION"),
        "FATAL: OpenTag >> MAP element: The top element on the XmlElement stack dose not reference a "
        "IConversion item!",
        Warning("MAP")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHMap_Open, UnnamedAttributeIsReportedAndSkipped) {
    ReaderTest::HandlerSetup setup;
    const auto& sink = setup.sink;
    ZEcu* ecu = setup.builder.Ecu();
    ZKLXEHMap handler(setup.context);
    ReaderTest::FakeAttributes attributes;
    attributes.Add(nullptr, u"x");
    attributes.Add(u"nrc", u"5");
    attributes.Add(u"text", u"t");
    handler.StartElement(u"MAP", attributes);
    ASSERT_EQ(sink->GetErrors().size(), 1u);
    EXPECT_EQ(sink->GetErrors()[0], "OpenTag >> MAP element: TryGetName failed for attribute #0!");
    EXPECT_NE(ecu->GetNrcContainer()->GetNrc(uint8_t{5}), nullptr);
}

TEST(ZKLXEHMap_Trace, OpenCloseAndCountTexts) {
    auto result = Read(InNrcTable("<MAP nrc=\"1\" text=\"a\"/><X><MAP/></X>"));
    const std::vector<std::string> debug = result->Texts(ReportLevelDebug);
    EXPECT_NE(std::find(debug.begin(), debug.end(), "OpenTag >> MAP element"), debug.end());
    EXPECT_NE(std::find(debug.begin(), debug.end(), "CloseTag >> MAP element"), debug.end());
    const std::vector<std::string> expected{
        "ERROR: CloseTag >> MAP element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Faults(), expected);
}
