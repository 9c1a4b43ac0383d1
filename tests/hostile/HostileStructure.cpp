// Documents shaped to hurt: deep nesting, huge values, NUL bytes, documents cut short.
#include "HostileSupport.h"

#include "reader/ReaderLimits.h"

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

const int kHostileDepth = 100000;

std::string Nested(const std::string& open, const std::string& close, int depth,
                   const std::string& inner = "") {
    std::string document;
    document.reserve(static_cast<std::size_t>(depth) * (open.size() + close.size()) + inner.size() + 64);
    for (int i = 0; i < depth; ++i) {
        document += open;
    }
    document += inner;
    for (int i = 0; i < depth; ++i) {
        document += close;
    }
    return document;
}

void ExpectRefusedWithReason(const ReadResult& result) {
    EXPECT_EQ(result.ecu, nullptr);
    EXPECT_GT(result.report.GetErrorCount(), 0u) << result.AllMessages();
}

}  // namespace

TEST(HostileStructure, HundredThousandNestedUnknownElementsAreRefused) {
    const std::string document = "<ECU protocol=\"UDS\">" + Nested("<X>", "</X>", kHostileDepth) + "</ECU>";
    ExpectRefusedWithReason(*ReadBytes(document));
}

TEST(HostileStructure, NestingUpToTheDepthLimitStillReads) {
    // The root counts as one level.
    const int inner = static_cast<int>(ReaderLimits::kMaxElementDepth) - 1;
    auto result = ReadBytes("<ECU protocol=\"KWP\">" + Nested("<X>", "</X>", inner) + "</ECU>");
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_EQ(result->ecu->GetProtocol(), ProtocolKwp);
}

TEST(HostileStructure, NestingOneLevelBeyondTheDepthLimitIsRefusedWithAFatalMessage) {
    const int inner = static_cast<int>(ReaderLimits::kMaxElementDepth);
    auto result = ReadBytes("<ECU protocol=\"KWP\">" + Nested("<X>", "</X>", inner) + "</ECU>");
    EXPECT_EQ(result->ecu, nullptr);
    EXPECT_TRUE(result->HasFatal()) << result->AllMessages();
}

TEST(HostileStructure, HundredThousandNestedRootElementsAreRefused) {
    ExpectRefusedWithReason(*ReadBytes(Nested("<ECU>", "</ECU>", kHostileDepth)));
}

TEST(HostileStructure, HundredThousandNestedKnownElementsAreRefused) {
    const std::string document =
        "<ECU>" + Nested("<INSTANCE id=\"a\"><REQUEST>", "</REQUEST></INSTANCE>", kHostileDepth / 2) +
        "</ECU>";
    ExpectRefusedWithReason(*ReadBytes(document));
}

TEST(HostileStructure, HundredThousandUnclosedElementsAreRefused) {
    std::string document = "<ECU>";
    for (int i = 0; i < kHostileDepth; ++i) {
        document += "<MAP nrc=\"1\" text=\"t\">";
    }
    ExpectRefusedWithReason(*ReadBytes(document));
}

TEST(HostileStructure, TenMegabyteAttributeValueIsKeptWhole) {
    const std::string huge(10u * 1024u * 1024u, 'A');
    const std::string document = "<ECU><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\" text=\"" + huge +
                                 "\"/></NEGATIVE_RESPONSE_CODES><INSTANCE id=\"" + huge + "\"/></ECU>";
    auto result = ReadBytes(document);
    // Nothing limits the length of a text, and nothing is cut off.
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    ASSERT_NE(result->ecu->GetNrcContainer()->GetNrc(uint8_t{16}), nullptr);
    EXPECT_EQ(result->ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(), huge);
    EXPECT_NE(result->ecu->GetInstanceContainer()->GetInstance(huge.c_str()), nullptr);
}

TEST(HostileStructure, TenMegabyteUnknownAttributeAndTagNameDoNotHurt) {
    const std::string huge(10u * 1024u * 1024u, 'b');
    auto attribute = ReadBytes("<ECU protocol=\"KWP\" junk=\"" + huge + "\"><INSTANCE id=\"x\"/></ECU>");
    ASSERT_NE(attribute->ecu, nullptr) << attribute->AllMessages();
    EXPECT_EQ(attribute->ecu->GetProtocol(), ProtocolKwp);

    auto tag = ReadBytes("<ECU><" + huge + "/><INSTANCE id=\"x\"/></ECU>");
    ASSERT_NE(tag->ecu, nullptr) << tag->AllMessages();
    EXPECT_NE(tag->ecu->GetInstanceContainer()->GetInstance("x"), nullptr);
}

TEST(HostileStructure, TenMegabyteOfCharacterDataBetweenElementsIsIgnored) {
    const std::string huge(10u * 1024u * 1024u, 'c');
    auto result = ReadBytes("<ECU>" + huge + "<INSTANCE id=\"x\">" + huge + "</INSTANCE></ECU>");
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_NE(result->ecu->GetInstanceContainer()->GetInstance("x"), nullptr);
}

TEST(HostileStructure, ManyAttributesOnOneElementDoNotHurt) {
    std::string document = "<ECU";
    for (int i = 0; i < 20000; ++i) {
        document += " a" + std::to_string(i) + "=\"v\"";
    }
    document += " protocol=\"KWP\"/>";
    auto result = ReadBytes(document);
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_EQ(result->ecu->GetProtocol(), ProtocolKwp);
}

// One message with tens of thousands of parameters, every id given twice: each first one is
// kept and found by its id, each repeat is refused.
TEST(HostileStructure, HugeMessageKeepsEveryIdOnceAndFindsEachOne) {
    const int count = 30000;
    std::string document = "<ECU><INSTANCE id=\"i\"><REQUEST>";
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < count; ++i) {
            document += "<PARAMETER id=\"P" + std::to_string(i) + "\" bitPos=\"" + std::to_string(pass) +
                        "\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" semantics=\"\" convId=\"\"/>";
        }
    }
    document += "</REQUEST></INSTANCE></ECU>";
    auto result = ReadBytes(document);
    ASSERT_NE(result->ecu, nullptr) << result->report.GetErrorCount();
    const IRequest* request = result->ecu->GetInstanceContainer()->GetInstance(0u)->GetRequest();
    ASSERT_EQ(request->GetCount(), static_cast<uint32_t>(count));
    EXPECT_GE(result->report.GetErrorCount(), static_cast<uint32_t>(count));
    for (int i = 0; i < count; ++i) {
        const IParam* param = request->GetParam(("P" + std::to_string(i)).c_str());
        ASSERT_NE(param, nullptr) << i;
        ASSERT_EQ(param, request->GetParam(i));
        ASSERT_EQ(param->GetBitPos(), 0u);
    }
}

TEST(HostileStructure, RepeatedAttributeIsRefused) {
    ExpectRefusedWithReason(*ReadBytes("<ECU><INSTANCE id=\"a\" id=\"b\"/></ECU>"));
}

TEST(HostileStructure, NulByteFirstIsRefusedAsEmptyData) {
    const std::string document = std::string(1, '\0') + SampleDocument();
    auto result = ReadBytes(document);
    ExpectRefusedWithReason(*result);
}

TEST(HostileStructure, NulByteInsideTheDocumentIsRefused) {
    const std::string& sample = SampleDocument();
    for (const char* anchor : {"General", "ReadVin", "<REQUEST>", " bitLen", "</ECU>"}) {
        const std::size_t at = sample.find(anchor);
        ASSERT_NE(at, std::string::npos);
        std::string document = sample;
        document.insert(at + 1, 1, '\0');
        auto result = ReadBytes(document);
        EXPECT_EQ(result->ecu, nullptr) << "NUL after the first character of " << anchor;
        EXPECT_GT(result->report.GetErrorCount(), 0u) << anchor;
    }
}

TEST(HostileStructure, NulBytesAfterTheDocumentAreIgnored) {
    // A trailing zero is what a caller holding a C string may pass along with it: the XML
    // library stops at the first zero after the document.
    for (std::size_t count : {1u, 2u, 1000u}) {
        auto result = ReadBytes(SampleDocument() + std::string(count, '\0'));
        ASSERT_NE(result->ecu, nullptr) << count << "\n" << result->AllMessages();
        EXPECT_NE(result->ecu->GetInstanceContainer()->GetInstance("ReadVin"), nullptr);
        EXPECT_EQ(result->report.GetErrorCount(), 0u);
    }
}

TEST(HostileStructure, NulBytesInATextAreRefused) {
    std::string text = SampleDocument();
    text[text.find("Vin") + 1] = '\0';
    auto result = std::make_unique<ReadResult>();
    result->ecu = GetKLReader().ReadText(text, "", result->report);
    ExpectRefusedWithReason(*result);
}

TEST(HostileStructure, SampleCutAtEveryByteGivesNullOrAModel) {
    const std::string& sample = SampleDocument();
    const std::size_t complete = sample.rfind("</ECU>") + std::string("</ECU>").size();
    for (std::size_t length = 0; length <= sample.size(); ++length) {
        // A copy of exactly the prefix, so that the sanitizers see any read past its end.
        const std::vector<char> prefix(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(length));
        ReportCollector report;
        auto ecu = GetKLReader().ReadMemory(prefix.empty() ? "" : prefix.data(),
                                            static_cast<uint32_t>(length), "", report);
        if (length < complete) {
            EXPECT_EQ(ecu, nullptr) << "prefix of " << length << " bytes";
            EXPECT_GT(report.GetErrorCount(), 0u) << "prefix of " << length << " bytes";
        } else {
            EXPECT_NE(ecu, nullptr) << "prefix of " << length << " bytes";
        }
    }
}

TEST(HostileStructure, SampleCutAtEveryByteFromAFileGivesNullOrAModel) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    const std::string& sample = SampleDocument();
    const std::size_t complete = sample.rfind("</ECU>") + std::string("</ECU>").size();
    const std::filesystem::path path = folder / "cut.xml";
    // Every seventh cut is enough for the file path: the memory test above takes every byte.
    for (std::size_t length = 0; length <= sample.size(); length += 7) {
        WriteWholeFile(path, sample.substr(0, length));
        auto result = ReadPath(path.string());
        EXPECT_EQ(result->ecu != nullptr, length >= complete) << "prefix of " << length << " bytes";
    }
}

TEST(HostileStructure, ZeroLengthAndNullDataAreRefusedWithoutBeingRead) {
    // A zero-length allocation: reading even its first byte would be out of bounds.
    const std::unique_ptr<char[]> empty(new char[0]);
    ReportCollector report;
    EXPECT_EQ(GetKLReader().ReadMemory(empty.get(), 0, "", report), nullptr);
    EXPECT_GT(report.GetErrorCount(), 0u);
    ReportCollector nullReport;
    EXPECT_EQ(GetKLReader().ReadMemory(nullptr, 100, "", nullReport), nullptr);
    EXPECT_GT(nullReport.GetErrorCount(), 0u);
    ReportCollector nullEncoding;
    EXPECT_EQ(GetKLReader().ReadMemory(SampleDocument().data(),
                                       static_cast<uint32_t>(SampleDocument().size()), nullptr, nullEncoding),
              nullptr);
}
