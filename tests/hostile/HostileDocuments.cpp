// Documents of the format carry no DTD: the parser hardening must leave them reading exactly
// as before, predefined entities and character references included.
#include "HostileSupport.h"

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

void ExpectSampleModel(const IEcu& ecu) {
    EXPECT_EQ(ecu.GetProtocol(), ProtocolUds);
    const INrcContainer* nrcs = ecu.GetNrcContainer();
    ASSERT_EQ(nrcs->GetCount(), 2u);
    ASSERT_NE(nrcs->GetNrc(uint8_t{16}), nullptr);
    EXPECT_STREQ(nrcs->GetNrc(uint8_t{16})->GetText(), "General reject");
    ASSERT_NE(nrcs->GetNrc(uint8_t{17}), nullptr);
    EXPECT_STREQ(nrcs->GetNrc(uint8_t{17})->GetText(),
                 "Service & more <x> \xC3\xA4 \xC3\x9C"
                 "ber");

    const IInstance* instance = ecu.GetInstanceContainer()->GetInstance("ReadVin");
    ASSERT_NE(instance, nullptr);
    ASSERT_NE(instance->GetRequest(), nullptr);
    ASSERT_EQ(instance->GetRequest()->GetCount(), 2u);
    const IParam* did = instance->GetRequest()->GetParam("DID");
    ASSERT_NE(did, nullptr);
    EXPECT_EQ(did->GetBitPos(), 8u);
    EXPECT_EQ(did->GetBitLength(), 16u);
    EXPECT_STREQ(did->GetValue(), "61840");
    EXPECT_EQ(did->GetDataType(), ParamDataType::Unsigned);
    EXPECT_TRUE(did->IsMotorola());
    ASSERT_NE(instance->GetPosResponse(), nullptr);
    EXPECT_EQ(instance->GetPosResponse()->GetCount(), 3u);
    ASSERT_NE(instance->GetNegResponse(), nullptr);

    const IConversionContainer* conversions = ecu.GetConversionContainer();
    ASSERT_EQ(conversions->GetCount(), 2u);
    const IConversion* formula = conversions->GetConversion(0u);
    ASSERT_NE(formula, nullptr);
    EXPECT_STREQ(formula->GetId(), "Speed_Formula");
    EXPECT_DOUBLE_EQ(formula->GetFactor(), 0.5);
    EXPECT_DOUBLE_EQ(formula->GetOffset(), -40.0);
    const IConversion* table = conversions->GetConversion(1u);
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->GetTextTableSize(), 2u);
    EXPECT_STREQ(table->GetTextTableElement(1u)->GetText(), "on");
}

}  // namespace

TEST(HostileDocuments, DocumentWithoutDtdReadsFromMemoryWithEveryValue) {
    auto result = ReadBytes(SampleDocument());
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_EQ(result->report.GetErrorCount(), 0u) << result->AllMessages();
    ExpectSampleModel(*result->ecu);
}

TEST(HostileDocuments, DocumentWithoutDtdReadsFromAFileWithEveryValue) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    WriteWholeFile(folder / "sample.xml", SampleDocument());
    auto result = ReadPath((folder / "sample.xml").string());
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_EQ(result->report.GetErrorCount(), 0u) << result->AllMessages();
    ExpectSampleModel(*result->ecu);
}

TEST(HostileDocuments, DocumentWithoutDeclarationReadsAsUtf8) {
    const std::string& sample = SampleDocument();
    auto result = ReadBytes(sample.substr(sample.find("<ECU")));
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    ExpectSampleModel(*result->ecu);
}

TEST(HostileDocuments, EveryExampleDocumentReadsWithoutError) {
    const std::filesystem::path examples(ZEKL_EXAMPLES_DIR);
    std::error_code error;
    int documents = 0;
    for (const auto& entry : std::filesystem::directory_iterator(examples, error)) {
        if (entry.path().extension() != ".xml") {
            continue;
        }
        ++documents;
        auto result = ReadPath(entry.path().string());
        EXPECT_NE(result->ecu, nullptr) << entry.path() << "\n" << result->AllMessages();
        if (result->ecu) {
            for (const std::string& text : CollectTexts(*result->ecu)) {
                EXPECT_TRUE(IsValidUtf8(text)) << entry.path();
            }
        }
    }
    if (documents == 0) {
        GTEST_SKIP() << "no example documents in " << examples;
    }
}
