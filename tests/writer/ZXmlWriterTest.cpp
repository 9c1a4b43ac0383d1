#include "writer/ZXmlWriter.h"

#include "WriterTestModels.h"
#include "model/ZNotSupportedItem.h"
#include "writer/ZWriterConfig.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <streambuf>

namespace Korvel {
namespace {

// Runs one whole write as the front does: declaration when the name is not empty, the ECU,
// then closing everything.
std::string Write(const IEcu& ecu, const char* encoding) {
    std::ostringstream out;
    ZWriterConfig config;
    {
        ZXmlWriter writer(out, encoding, config);
        if (writer.IsReady()) {
            writer.WriteDeclaration(encoding);
        }
        ecu.Accept(writer);
        writer.CloseAll();
    }
    return out.str();
}

std::unique_ptr<IEcu> EcuWithNrcText(const char* text) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x7F}, text);
    return ecu;
}

std::unique_ptr<IEcu> EcuWithConversion(double factor, double offset) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetConversionContainer()->AddConversion("C_Formula", 1u, factor, offset);
    return ecu;
}

std::string ConversionLine(double factor, double offset) {
    const std::string document = Write(*EcuWithConversion(factor, offset), "utf-8");
    const std::size_t begin = document.find(" <CONVERSION");
    return document.substr(begin, document.find('\n', begin) - begin);
}

// A stream buffer that accepts `capacity` bytes and then refuses everything.
class FailingBuffer : public std::streambuf {
public:
    explicit FailingBuffer(std::size_t capacity) : m_capacity(capacity) {}
    std::string text;

protected:
    int_type overflow(int_type ch) override {
        if (text.size() >= m_capacity) {
            return traits_type::eof();
        }
        text.push_back(traits_type::to_char_type(ch));
        return ch;
    }

private:
    std::size_t m_capacity;
};

TEST(XmlWriter_Document, EmptyEcuGivesExactlyFiveLines) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    EXPECT_EQ(Write(*ecu, "utf-8"), WriterTest::EmptyDocument("UDS", "utf-8"));
    ecu->SetProtocol(ProtocolKwp);
    EXPECT_EQ(Write(*ecu, "Windows-1252"), WriterTest::EmptyDocument("KWP", "Windows-1252"));
}

TEST(XmlWriter_Document, WritesTheSampleModelByteForByte) {
    EXPECT_EQ(Write(*WriterTest::MakeSampleEcu(), "utf-8"), WriterTest::SampleDocumentUtf8());
}

TEST(XmlWriter_Document, EmptyEncodingNameWritesNoDeclaration) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    const std::string document = Write(*ecu, "");
    EXPECT_EQ(document,
              "<ECU protocol=\"UDS\">\n <NEGATIVE_RESPONSE_CODES>\n </NEGATIVE_RESPONSE_CODES>\n</ECU>\n");
    EXPECT_EQ(Write(*ecu, nullptr), document);
}

TEST(XmlWriter_Document, IsReadyOnlyWithAnEncodingName) {
    std::ostringstream out;
    ZWriterConfig config;
    EXPECT_TRUE(ZXmlWriter(out, "utf-8", config).IsReady());
    EXPECT_TRUE(ZXmlWriter(out, "anything", config).IsReady());
    EXPECT_FALSE(ZXmlWriter(out, "", config).IsReady());
    EXPECT_FALSE(ZXmlWriter(out, nullptr, config).IsReady());
    EXPECT_EQ(out.str(), "");
}

TEST(XmlWriter_Document, UnknownEncodingNameStandsInTheDeclaration) {
    const std::string document = Write(*GetFactory().CreateEcu(), "latin-9");
    EXPECT_EQ(document.rfind("<?xml version=\"1.0\" encoding=\"latin-9\"?>\n", 0), 0u);
}

TEST(XmlWriter_Document, ProtocolOtherThanKwpIsWrittenAsUds) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->SetProtocol(7);
    EXPECT_NE(Write(*ecu, "utf-8").find("<ECU protocol=\"UDS\">\n"), std::string::npos);
}

TEST(XmlWriter_Document, LinesEndWithLineFeedOnly) {
    const std::string document = Write(*WriterTest::MakeSampleEcu(), "utf-8");
    EXPECT_EQ(document.find('\r'), std::string::npos);
    EXPECT_EQ(document.back(), '\n');
}

TEST(XmlWriter_Nrc, CodeIsAnUnsignedDecimalNumber) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{0xFF}, "max");
    ecu->GetNrcContainer()->AddNrc(uint8_t{0}, "zero");
    const std::string document = Write(*ecu, "utf-8");
    EXPECT_NE(document.find("\n  <MAP nrc=\"255\" text=\"max\"/>\n  <MAP nrc=\"0\" text=\"zero\"/>\n"),
              std::string::npos);
}

TEST(XmlWriter_Nrc, ItemsComeInInsertionOrder) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x31}, "b");
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x10}, "a");
    const std::string document = Write(*ecu, "utf-8");
    EXPECT_LT(document.find("nrc=\"49\""), document.find("nrc=\"16\""));
}

TEST(XmlWriter_Nrc, TextWithAmpersandIsEscaped) {
    EXPECT_NE(Write(*EcuWithNrcText("a & b"), "utf-8").find("text=\"a &amp; b\"/>"), std::string::npos);
}

TEST(XmlWriter_Nrc, TextIsEncodedByTheHelperOfTheEncodingName) {
    const char* text = "\xC3\xA4<";  // ä<
    EXPECT_NE(Write(*EcuWithNrcText(text), "utf-8").find("text=\"&#228;&lt;\"/>"), std::string::npos);
    EXPECT_NE(Write(*EcuWithNrcText(text), "Windows-1252").find("text=\"\xE4&lt;\"/>"), std::string::npos);
    EXPECT_NE(Write(*EcuWithNrcText(text), "iso-8859-1").find("text=\"\xE4&lt;\"/>"), std::string::npos);
    // Any other name, and a name that differs only in case, takes the base helper: UTF-8.
    EXPECT_NE(Write(*EcuWithNrcText(text), "latin-9").find("text=\"\xC3\xA4&lt;\"/>"), std::string::npos);
    EXPECT_NE(Write(*EcuWithNrcText(text), "UTF-8").find("text=\"\xC3\xA4&lt;\"/>"), std::string::npos);
    EXPECT_NE(Write(*EcuWithNrcText(text), "").find("text=\"\xC3\xA4&lt;\"/>"), std::string::npos);
}

TEST(XmlWriter_Nrc, InvalidUtf8TextFailsTheWriteNamingTheItem) {
    std::ostringstream out;
    ZWriterConfig config;
    ZXmlWriter writer(out, "utf-8", config);
    try {
        EcuWithNrcText("bad \xFF")->Accept(writer);
        ADD_FAILURE() << "the write did not fail";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the text of NRC 127 is not valid UTF-8");
    }
}

TEST(XmlWriter_Instance, MessagesWithoutParametersStillOpenAndClose) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("Empty");
    ecu->GetInstanceContainer()->GetInstance(0u)->CreateRequest();
    EXPECT_EQ(Write(*ecu, "utf-8"),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
              "<ECU protocol=\"UDS\">\n"
              " <NEGATIVE_RESPONSE_CODES>\n"
              " </NEGATIVE_RESPONSE_CODES>\n"
              " <INSTANCE id=\"Empty\">\n"
              "  <REQUEST>\n"
              "  </REQUEST>\n"
              " </INSTANCE>\n"
              "</ECU>\n");
}

TEST(XmlWriter_Instance, OnlyTheMessagesTheInstanceHasAreWritten) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("A");
    ecu->GetInstanceContainer()->GetInstance(0u)->CreateNegResponse();
    ecu->GetInstanceContainer()->AddInstance("B");
    EXPECT_EQ(Write(*ecu, ""),
              "<ECU protocol=\"UDS\">\n"
              " <NEGATIVE_RESPONSE_CODES>\n"
              " </NEGATIVE_RESPONSE_CODES>\n"
              " <INSTANCE id=\"A\">\n"
              "  <NEGATIVE_RESPONSE>\n"
              "  </NEGATIVE_RESPONSE>\n"
              " </INSTANCE>\n"
              " <INSTANCE id=\"B\">\n"
              " </INSTANCE>\n"
              "</ECU>\n");
}

TEST(XmlWriter_Instance, IdWithMarkupIsWrittenAsItStands) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("a&b\"c");
    EXPECT_NE(Write(*ecu, "utf-8").find(" <INSTANCE id=\"a&b\"c\">\n"), std::string::npos);
}

TEST(XmlWriter_Instance, LastInstanceIsClosedBeforeTheFirstConversion) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("I");
    ecu->GetInstanceContainer()->GetInstance(0u)->CreatePosResponse();
    ecu->GetConversionContainer()->AddConversion("C", 1u, 2.0, 0.0);
    EXPECT_NE(Write(*ecu, "utf-8")
                  .find("  <RESPONSE>\n"
                        "  </RESPONSE>\n"
                        " </INSTANCE>\n"
                        " <CONVERSION id=\"C\" factor=\"2.0000000000000000\" "
                        "offset=\"0.0000000000000000\"/>\n"
                        "</ECU>\n"),
              std::string::npos);
}

TEST(XmlWriter_Param, ValuesAreWrittenAsStoredWithoutEscaping) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("I");
    IRequest* request = ecu->GetInstanceContainer()->GetInstance(0u)->CreateRequest();
    request->AddParam("a<b", 4294967295u, 12, "x&y", "ascii", "\xC3\xA4m", "SID", "conv'1");
    EXPECT_NE(Write(*ecu, "utf-8")
                  .find("\n   <PARAMETER id=\"a<b\" bitPos=\"4294967295\" bitLen=\"12\" "
                        "type=\"ascii\" unit=\"\xC3\xA4m\" value=\"x&y\" semantics=\"SID\" "
                        "convId=\"conv'1\"/>\n  </REQUEST>\n"),
              std::string::npos);
}

TEST(XmlWriter_Param, TypeNameIsWrittenAsStored) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("I");
    IRequest* request = ecu->GetInstanceContainer()->GetInstance(0u)->CreateRequest();
    request->AddParam("p", 0, 8, "", "no such type", "", "", "");
    EXPECT_NE(Write(*ecu, "utf-8").find("type=\"no such type\""), std::string::npos);
}

TEST(XmlWriter_Conversion, FactorAndOffsetHaveSixteenDecimals) {
    EXPECT_EQ(ConversionLine(1.0, -0.5),
              " <CONVERSION id=\"C_Formula\" factor=\"1.0000000000000000\" offset=\"-0.5000000000000000\"/>");
    EXPECT_EQ(ConversionLine(0.1, 1e20),
              " <CONVERSION id=\"C_Formula\" factor=\"0.1000000000000000\" "
              "offset=\"100000000000000000000.0000000000000000\"/>");
}

TEST(XmlWriter_Conversion, NumbersMatchPrintfFixedNotation) {
    const double values[] = {0.0,   -0.0,    1.0 / 3.0,  2.0 / 3.0,  123456.789, -1e-17,
                             5e-17, 1.5e-16, 0.00390625, 1e15 + 0.3, -273.15,    1.7976931348623157e308};
    for (double value : values) {
        char expected[512];
        std::snprintf(expected, sizeof expected, "%.16f", value);
        EXPECT_EQ(ConversionLine(value, 0.0), std::string(" <CONVERSION id=\"C_Formula\" factor=\"") +
                                                  expected + "\" offset=\"0.0000000000000000\"/>")
            << value;
    }
}

TEST(XmlWriter_Conversion, TextTableMapsEndWithABlankBeforeTheSlash) {
    std::unique_ptr<ITextTable> table = GetFactory().CreateTextTable();
    table->AddElement("2", "two & more");
    table->AddElement("10", "ten");
    table->AddElement("1",
                      "\xC3\xBC"
                      "ber");
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetConversionContainer()->AddConversion("T_ValueTable", 2u, *table);
    // The container's copy holds the entries in value order; only the texts are encoded.
    EXPECT_NE(Write(*ecu, "utf-8")
                  .find(" <CONVERSION id=\"T_ValueTable\" factor=\"1.0000000000000000\" "
                        "offset=\"0.0000000000000000\">\n"
                        "  <MAP val=\"1\" text=\"&#252;ber\" />\n"
                        "  <MAP val=\"10\" text=\"ten\" />\n"
                        "  <MAP val=\"2\" text=\"two &amp; more\" />\n"
                        " </CONVERSION>\n"
                        "</ECU>\n"),
              std::string::npos);
}

TEST(XmlWriter_Conversion, TextTableValueIsWrittenAsStored) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetConversionContainer()->AddConversion("T", 2u, 1.0, 0.0);
    ecu->GetConversionContainer()->GetConversion(0u)->AddTextTableElement("<\xC3\xA4>", "t");
    EXPECT_NE(Write(*ecu, "utf-8").find("  <MAP val=\"<\xC3\xA4>\" text=\"t\" />\n"), std::string::npos);
}

TEST(XmlWriter_Conversion, EachConversionClosesThePreviousTextTable) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    IConversionContainer* conversions = ecu->GetConversionContainer();
    conversions->AddConversion("A", 2u, 1.0, 0.0);
    conversions->GetConversion(0u)->AddTextTableElement("0", "zero");
    conversions->AddConversion("B", 1u, 3.0, 4.0);
    EXPECT_NE(Write(*ecu, "").find("  <MAP val=\"0\" text=\"zero\" />\n"
                                   " </CONVERSION>\n"
                                   " <CONVERSION id=\"B\" factor=\"3.0000000000000000\" "
                                   "offset=\"4.0000000000000000\"/>\n"
                                   "</ECU>\n"),
              std::string::npos);
}

TEST(XmlWriter_Closing, DestructorClosesWhatIsStillOpen) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("I");
    ecu->GetInstanceContainer()->GetInstance(0u)->CreateRequest();
    std::ostringstream out;
    ZWriterConfig config;
    {
        ZXmlWriter writer(out, "", config);
        ecu->Accept(writer);
        EXPECT_EQ(out.str().find("</ECU>"), std::string::npos);
    }
    EXPECT_NE(out.str().find("  <REQUEST>\n  </REQUEST>\n </INSTANCE>\n</ECU>\n"), std::string::npos);
}

TEST(XmlWriter_Closing, CloseAllLeavesNothingForTheDestructor) {
    std::ostringstream out;
    ZWriterConfig config;
    {
        ZXmlWriter writer(out, "", config);
        GetFactory().CreateEcu()->Accept(writer);
        writer.CloseAll();
        writer.CloseAll();
    }
    EXPECT_EQ(out.str(),
              "<ECU protocol=\"UDS\">\n <NEGATIVE_RESPONSE_CODES>\n </NEGATIVE_RESPONSE_CODES>\n</ECU>\n");
}

TEST(XmlWriter_Closing, FailingStreamStopsTheWriteWithAnException) {
    FailingBuffer buffer(40);
    std::ostream out(&buffer);
    ZWriterConfig config;
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    {
        ZXmlWriter writer(out, "utf-8", config);
        writer.WriteDeclaration("utf-8");
        EXPECT_THROW(ecu->Accept(writer), std::ios_base::failure);
    }  // the destructor must swallow the failure of its own closing
    EXPECT_EQ(buffer.text.size(), 40u);
}

TEST(XmlWriter_Visitor, NotSupportedItemWritesNothing) {
    std::ostringstream out;
    ZWriterConfig config;
    ZXmlWriter writer(out, "utf-8", config);
    const ZNotSupportedItem& item = *ZNotSupportedItem::GetInstance();
    item.Accept(writer);
    writer.Traverse(item);
    writer.CloseAll();
    EXPECT_EQ(out.str(), "");
}

TEST(XmlWriter_Visitor, TraverseDispatchesByTheItemsKind) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    std::ostringstream out;
    ZWriterConfig config;
    {
        ZXmlWriter writer(out, "", config);
        writer.Traverse(*ecu);
    }
    EXPECT_EQ(out.str(),
              "<ECU protocol=\"UDS\">\n <NEGATIVE_RESPONSE_CODES>\n </NEGATIVE_RESPONSE_CODES>\n</ECU>\n");
}

TEST(XmlWriter_Visitor, KeepsTheConfigurationItWasGiven) {
    std::ostringstream out;
    ZWriterConfig config;
    ZXmlWriter writer(out, "utf-8", config);
    EXPECT_EQ(&writer.GetConfig(), &config);
}

TEST(XmlWriter_Visitor, EncodeValueUsesTheChosenHelper) {
    std::ostringstream out;
    ZWriterConfig config;
    std::string encoded;
    ZXmlWriter(out, "utf-8", config).EncodeValue("\xC3\x89&", encoded);
    EXPECT_EQ(encoded, "&#200;&amp;");
    ZXmlWriter(out, "Windows-1252", config).EncodeValue("\xC3\x89", encoded);
    EXPECT_EQ(encoded, "\xC9");
}

}  // namespace
}  // namespace Korvel
