// The sample documents under examples/: read cleanly, round-trip byte for byte, and hold
// what the documentation says they hold.
#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>

#include "ToolRunner.h"

using zekl_test::ExamplePath;
using zekl_test::ReadBytes;

namespace {

struct Example {
    const char* name;
    const char* encoding;
    uint32_t protocol;
};

const Example kExamples[] = {{"uds_ecu.xml", "utf-8", Korvel::ProtocolUds},
                             {"kwp_ecu.xml", "Windows-1252", Korvel::ProtocolKwp}};

std::unique_ptr<Korvel::IEcu> Read(const std::string& path, Korvel::ReportCollector& collector) {
    return Korvel::GetKLReader().ReadFile(path.c_str(), "", collector);
}

}  // namespace

TEST(Examples, ReadWithoutAnyFaultMessage) {
    for (const Example& example : kExamples) {
        Korvel::ReportCollector collector(Korvel::ReportLevelInfo);
        auto ecu = Read(ExamplePath(example.name), collector);
        ASSERT_NE(ecu, nullptr) << example.name;
        EXPECT_TRUE(collector.GetMessages().empty())
            << example.name << ": " << collector.GetMessages()[0].text;
        EXPECT_EQ(ecu->GetProtocol(), example.protocol);
    }
}

TEST(Examples, DeclareTheirEncoding) {
    for (const Example& example : kExamples) {
        std::string version;
        std::string encoding;
        EXPECT_TRUE(Korvel::GetKLReader().IsKorvelFile(ExamplePath(example.name).c_str(), version, encoding));
        EXPECT_EQ(encoding, example.encoding);
    }
}

TEST(Examples, WriteBackByteForByte) {
    for (const Example& example : kExamples) {
        Korvel::ReportCollector collector;
        auto ecu = Read(ExamplePath(example.name), collector);
        ASSERT_NE(ecu, nullptr) << example.name;
        std::string written;
        ASSERT_NE(Korvel::GetKLWriter().WriteToString(*ecu, written, example.encoding), 0u);
        EXPECT_EQ(written, ReadBytes(ExamplePath(example.name))) << example.name;
    }
}

TEST(Examples, CarryTheFullDefaultNrcTables) {
    for (const Example& example : kExamples) {
        Korvel::ReportCollector collector;
        auto ecu = Read(ExamplePath(example.name), collector);
        ASSERT_NE(ecu, nullptr);
        auto defaults = Korvel::GetKLReader().ReadText(
            CreateXmlForEmptyEcu(static_cast<int32_t>(example.protocol), 1), "", collector);
        ASSERT_NE(defaults, nullptr);
        const Korvel::INrcContainer& expected = *defaults->GetNrcContainer();
        const Korvel::INrcContainer& actual = *ecu->GetNrcContainer();
        ASSERT_EQ(actual.GetCount(), expected.GetCount()) << example.name;
        EXPECT_EQ(actual.GetCount(), example.protocol == Korvel::ProtocolUds ? 40u : 24u);
        for (uint32_t i = 0; i < expected.GetCount(); ++i) {
            EXPECT_EQ(actual.GetNrc(i)->GetCode(), expected.GetNrc(i)->GetCode());
            EXPECT_STREQ(actual.GetNrc(i)->GetText(), expected.GetNrc(i)->GetText());
        }
    }
}

TEST(Examples, ConversionIdsNameTheirKind) {
    const Korvel::IDataModelUtils& utils = Korvel::GetDataModelUtils();
    for (const Example& example : kExamples) {
        Korvel::ReportCollector collector;
        auto ecu = Read(ExamplePath(example.name), collector);
        ASSERT_NE(ecu, nullptr);
        const Korvel::IConversionContainer& conversions = *ecu->GetConversionContainer();
        for (uint32_t i = 0; i < conversions.GetCount(); ++i) {
            const Korvel::IConversion* conversion = conversions.GetConversion(i);
            EXPECT_EQ(static_cast<uint32_t>(utils.ConversionKindFromName(conversion->GetId())),
                      conversion->GetType())
                << conversion->GetId();
        }
    }
}

TEST(Examples, EveryConversionReferenceResolves) {
    for (const Example& example : kExamples) {
        Korvel::ReportCollector collector;
        auto ecu = Read(ExamplePath(example.name), collector);
        ASSERT_NE(ecu, nullptr);
        Korvel::IInstanceContainer& instances = *ecu->GetInstanceContainer();
        for (uint32_t i = 0; i < instances.GetCount(); ++i) {
            Korvel::IInstance& instance = *instances.GetInstance(i);
            const Korvel::IMessage* messages[] = {instance.GetRequest(), instance.GetPosResponse(),
                                                  instance.GetNegResponse()};
            for (const Korvel::IMessage* message : messages) {
                for (uint32_t p = 0; message != nullptr && p < message->GetCount(); ++p) {
                    const Korvel::IParam* param = message->GetParam(static_cast<int>(p));
                    if (param->GetConvId()[0] != '\0') {
                        EXPECT_NE(param->GetConversion(), nullptr)
                            << instance.GetId() << "/" << param->GetId();
                    }
                }
            }
        }
    }
}

TEST(Examples, KwpTextTableHoldsItsGermanTextInUtf8) {
    Korvel::ReportCollector collector;
    auto ecu = Read(ExamplePath("kwp_ecu.xml"), collector);
    ASSERT_NE(ecu, nullptr);
    const Korvel::IConversion* table = ecu->GetConversionContainer()->GetConversion("EngineState_ValueTable");
    ASSERT_NE(table, nullptr);
    ASSERT_TRUE(table->HasTextTable());
    EXPECT_STREQ(table->GetTextTable()->GetElement("3")->GetText(),
                 "Drehzahl zu hoch \xE2\x80\x93 bitte pr\xC3\xBC"
                 "fen");
}

TEST(Examples, UdsTextsUseReferencesAndEscapes) {
    Korvel::ReportCollector collector;
    auto ecu = Read(ExamplePath("uds_ecu.xml"), collector);
    ASSERT_NE(ecu, nullptr);
    const Korvel::IConversion* table = ecu->GetConversionContainer()->GetConversion("MilStatus_ValueTable");
    ASSERT_NE(table, nullptr);
    EXPECT_STREQ(table->GetTextTable()->GetElement("2")->GetText(),
                 "Blinking \xE2\x80\x93 Z\xC3\xBCndaussetzer");
    EXPECT_STREQ(table->GetTextTable()->GetElement("3")->GetText(), "On & blinking");
}
