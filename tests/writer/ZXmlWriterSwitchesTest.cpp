// The writer configuration's switches: every attribute value through the encoding helper, and
// a refused write for a character the output encoding cannot carry, naming the item.
#include "writer/ZXmlWriter.h"

#include "WriterTestModels.h"
#include "writer/ZWriterConfig.h"

#include <ZeKL/ReportCollector.h>

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace Korvel {
namespace {

const char* const kDegree = "\xC2\xB0";  // °, which every output encoding carries
const char* const kOmega = "\xCE\xA9";   // Ω, which code page 1252 lacks
const char* const kEnDash = "\xE2\x80\x93";

std::string Write(const IEcu& ecu, const char* encoding, bool all, bool refuse) {
    ZWriterConfig config;
    config.SetEncodeAllValues(all);
    config.SetRefuseUncarriedCharacters(refuse);
    std::ostringstream out;
    ZXmlWriter writer(out, encoding, config);
    writer.WriteDeclaration(encoding);
    ecu.Accept(writer);
    writer.CloseAll();
    return out.str();
}

// The text of the exception a refused write throws; empty when the write succeeded.
std::string Refusal(const IEcu& ecu, const char* encoding) {
    try {
        Write(ecu, encoding, true, true);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return std::string();
}

// One instance "Read" with one response parameter whose attributes are the given texts.
std::unique_ptr<IEcu> EcuWithParam(const std::string& id, const std::string& unit, const std::string& value,
                                   const std::string& convId) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("Read");
    IPosResponse* response = ecu->GetInstanceContainer()->GetInstance(0u)->CreatePosResponse();
    response->AddParam(id.c_str(), 0, 8, value.c_str(), "unsigned", unit.c_str(), "", convId.c_str());
    return ecu;
}

std::unique_ptr<IEcu> EcuWithTable(const std::string& id, const std::string& value, const std::string& text) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetConversionContainer()->AddConversion(id.c_str(),
                                                 static_cast<uint32_t>(ConversionKind::ValueTable), 1.0, 0.0);
    ecu->GetConversionContainer()->GetConversion(0u)->AddTextTableElement(value.c_str(), text.c_str());
    return ecu;
}

TEST(XmlWriter_Switches, OffByDefaultAndTheSampleIsWrittenAsDescribed) {
    ZWriterConfig config;
    EXPECT_FALSE(config.GetEncodeAllValues());
    EXPECT_FALSE(config.GetRefuseUncarriedCharacters());
    EXPECT_EQ(Write(*WriterTest::MakeSampleEcu(), "utf-8", false, false), WriterTest::SampleDocumentUtf8());
}

TEST(XmlWriter_Switches, ByDefaultOnlyTheMapTextsAreEncoded) {
    const auto ecu = EcuWithParam("A&B", std::string(kDegree) + "C", "<1>", "");
    const std::string document = Write(*ecu, "Windows-1252", false, false);
    EXPECT_NE(document.find("id=\"A&B\" "), std::string::npos) << document;
    EXPECT_NE(document.find("unit=\"\xC2\xB0"
                            "C\" value=\"<1>\""),
              std::string::npos)
        << document;
}

TEST(XmlWriter_Switches, AllValuesAreEscapedAndConverted) {
    const auto ecu = EcuWithParam("A&B", std::string(kDegree) + "C", "<1>", "Conv\"1");
    const std::string document = Write(*ecu, "Windows-1252", true, false);
    EXPECT_NE(document.find("<PARAMETER id=\"A&amp;B\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" "
                            "unit=\"\xB0"
                            "C\" value=\"&lt;1&gt;\" semantics=\"\" convId=\"Conv&quot;1\"/>"),
              std::string::npos)
        << document;
}

TEST(XmlWriter_Switches, AllValuesCoverIdsAndTableValues) {
    std::unique_ptr<IEcu> ecu = EcuWithTable("T'1", "a<b", "x");
    ecu->GetInstanceContainer()->AddInstance("I&J");
    const std::string document = Write(*ecu, "utf-8", true, false);
    EXPECT_NE(document.find("<INSTANCE id=\"I&amp;J\">"), std::string::npos) << document;
    EXPECT_NE(document.find("<CONVERSION id=\"T&apos;1\" "), std::string::npos) << document;
    EXPECT_NE(document.find("<MAP val=\"a&lt;b\" text=\"x\" />"), std::string::npos) << document;
}

TEST(XmlWriter_Switches, Utf8OutputKeepsTheLettersAsReferences) {
    const auto ecu = EcuWithParam("Z\xC3\xBCndung", "", "", "");
    EXPECT_NE(Write(*ecu, "utf-8", true, false).find("id=\"Z&#252;ndung\""), std::string::npos);
}

TEST(XmlWriter_Switches, WithoutRefusalAMissingCharacterBecomesAQuestionMark) {
    const auto ecu = EcuWithParam("P", std::string(kOmega), "", "");
    EXPECT_NE(Write(*ecu, "Windows-1252", true, false).find("unit=\"?\""), std::string::npos);
}

TEST(XmlWriter_Switches, RefusalNamesTheParameterItsMessageAndInstance) {
    const auto ecu = EcuWithParam("Resistance", std::string("k") + kOmega, "", "");
    EXPECT_EQ(
        Refusal(*ecu, "Windows-1252"),
        "the unit of parameter 'Resistance' in the response of instance 'Read' holds '\xCE\xA9' (U+03A9), "
        "which Windows-1252 cannot carry");
}

TEST(XmlWriter_Switches, RefusalNamesEveryKindOfItem) {
    std::unique_ptr<IEcu> nrc = GetFactory().CreateEcu();
    nrc->GetNrcContainer()->AddNrc(uint8_t{0x31}, kOmega);
    EXPECT_EQ(Refusal(*nrc, "Windows-1252"),
              "the text of NRC 49 holds '\xCE\xA9' (U+03A9), which Windows-1252 cannot carry");
    EXPECT_EQ(
        Refusal(*EcuWithTable("T", "1", kOmega), "Windows-1252"),
        "the text of entry '1' of conversion 'T' holds '\xCE\xA9' (U+03A9), which Windows-1252 cannot carry");
    EXPECT_EQ(Refusal(*EcuWithTable(std::string("T") + kOmega, "1", "x"), "Windows-1252"),
              "the id of conversion 'T\xCE\xA9' holds '\xCE\xA9' (U+03A9), which Windows-1252 cannot carry");
    std::unique_ptr<IEcu> instance = GetFactory().CreateEcu();
    instance->GetInstanceContainer()->AddInstance(kOmega);
    EXPECT_EQ(Refusal(*instance, "Windows-1252"),
              "the id of instance '\xCE\xA9' holds '\xCE\xA9' (U+03A9), which Windows-1252 cannot carry");
}

TEST(XmlWriter_Switches, RefusalWithoutAllValuesChecksOnlyTheMapTexts) {
    const auto ecu = EcuWithParam("P", kOmega, "", "");
    ZWriterConfig config;
    config.SetRefuseUncarriedCharacters(true);
    std::ostringstream out;
    ZXmlWriter writer(out, "Windows-1252", config);
    EXPECT_NO_THROW(ecu->Accept(writer));
    std::unique_ptr<IEcu> nrc = GetFactory().CreateEcu();
    nrc->GetNrcContainer()->AddNrc(uint8_t{0x31}, kOmega);
    EXPECT_THROW(nrc->Accept(writer), std::runtime_error);
}

TEST(XmlWriter_Switches, Latin1CarriesOnlyItsOwnRange) {
    // "iso-8859-1" is written with code page 1252's bytes, but a reader of that name takes
    // 0x80 to 0x9F for control characters: the dash would not come back.
    EXPECT_EQ(Refusal(*EcuWithParam("P", kEnDash, "", ""), "iso-8859-1"),
              "the unit of parameter 'P' in the response of instance 'Read' holds '\xE2\x80\x93' (U+2013), "
              "which iso-8859-1 cannot carry");
    EXPECT_EQ(Refusal(*EcuWithParam("P", kEnDash, "", ""), "Windows-1252"), "");
    EXPECT_EQ(Refusal(*EcuWithParam("P", std::string(kDegree) + "\xC3\xBF", "", ""), "iso-8859-1"), "");
}

TEST(XmlWriter_Switches, Utf8CarriesEverything) {
    EXPECT_EQ(Refusal(*EcuWithParam("P", std::string(kOmega) + "\xF0\x9F\x98\x80", "", ""), "utf-8"), "");
}

TEST(XmlWriter_Switches, CharactersBeyondTheBasicPlaneAreNamedWhole) {
    EXPECT_EQ(
        Refusal(*EcuWithParam("P", "\xF0\x9F\x98\x80", "", ""), "Windows-1252"),
        "the unit of parameter 'P' in the response of instance 'Read' holds '\xF0\x9F\x98\x80' (U+1F600), "
        "which Windows-1252 cannot carry");
}

TEST(XmlWriter_Switches, InvalidUtf8IsNamedWithItsItem) {
    const auto ecu = EcuWithParam("P", "bad \xFF", "", "");
    try {
        Write(*ecu, "utf-8", true, false);
        ADD_FAILURE() << "the write did not fail";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(),
                     "the unit of parameter 'P' in the response of instance 'Read' is not valid UTF-8");
    }
}

TEST(XmlWriter_Switches, TheConfigurationIsReadWhenTheWriterIsMade) {
    ZWriterConfig config;
    config.SetEncodeAllValues(true);
    std::ostringstream out;
    ZXmlWriter writer(out, "utf-8", config);
    config.SetEncodeAllValues(false);
    EcuWithParam("A&B", "", "", "")->Accept(writer);
    EXPECT_NE(out.str().find("id=\"A&amp;B\""), std::string::npos) << out.str();
}

// Every attribute with non-ASCII text, written as Windows-1252 and read again: nothing changed.
TEST(XmlWriter_Switches, Windows1252DocumentReadsBackWithEveryText) {
    std::unique_ptr<IEcu> ecu = EcuWithTable(
        "Stra\xC3\x9F"
        "e_ValueTable",
        "\xC3\xA9t\xC3\xA9", "gr\xC3\xBCn");
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x10}, "F\xC3\xA4hrt \xE2\x82\xAC");
    ecu->GetInstanceContainer()->AddInstance("Lesen_\xC3\x84");
    IRequest* request = ecu->GetInstanceContainer()->GetInstance(0u)->CreateRequest();
    request->AddParam("Temp\xC3\xA9", 0, 8, "\xC2\xB1", "unsigned",
                      "\xC2\xB0"
                      "C",
                      "",
                      "Stra\xC3\x9F"
                      "e_ValueTable");
    const std::string document = Write(*ecu, "Windows-1252", true, true);
    ReportCollector collector;
    std::unique_ptr<IEcu> back = GetKLReader().ReadText(document, "", collector);
    ASSERT_NE(back, nullptr) << document;
    EXPECT_EQ(collector.GetErrorCount(), 0u);
    EXPECT_STREQ(back->GetNrcContainer()->GetNrc(0u)->GetText(), "F\xC3\xA4hrt \xE2\x82\xAC");
    const IConversion* conversion = back->GetConversionContainer()->GetConversion(0u);
    EXPECT_STREQ(conversion->GetId(),
                 "Stra\xC3\x9F"
                 "e_ValueTable");
    EXPECT_STREQ(conversion->GetTextTable()->GetElement(0u)->GetValue(), "\xC3\xA9t\xC3\xA9");
    IInstance* instance = back->GetInstanceContainer()->GetInstance(0u);
    EXPECT_STREQ(instance->GetId(), "Lesen_\xC3\x84");
    const IParam* param = instance->GetRequest()->GetParam(0);
    EXPECT_STREQ(param->GetId(), "Temp\xC3\xA9");
    EXPECT_STREQ(param->GetValue(), "\xC2\xB1");
    EXPECT_STREQ(param->GetUnit(),
                 "\xC2\xB0"
                 "C");
    EXPECT_STREQ(param->GetConvId(),
                 "Stra\xC3\x9F"
                 "e_ValueTable");
}

}  // namespace
}  // namespace Korvel
