#include "reader/ReaderLimits.h"
#include "reader/ReaderMessages.h"
#include "reader/ZKLReaderImpl.h"
#include "reader/ZKLXmlParser.h"

#include "DebugCapture.h"
#include "ReaderFixture.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

using namespace Korvel;
using ReaderTest::DebugCapture;

namespace {

std::string TempFile(const std::string& name, const std::string& content) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

bool HasFatal(const ReportCollector& sink) {
    for (const ReadMessage& message : sink.GetMessages()) {
        if (message.level == ReportLevelFatal) {
            return true;
        }
    }
    return false;
}

const char kDocument[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<ECU protocol=\"KWP\">\n"
    " <NEGATIVE_RESPONSE_CODES>\n"
    "  <MAP nrc=\"16\" text=\"generalReject\"/>\n"
    " </NEGATIVE_RESPONSE_CODES>\n"
    " <INSTANCE id=\"Read\">\n"
    "  <REQUEST>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"22\" semantics=\"SID "
    "CONST\" "
    "convId=\"\"/>\n"
    "  </REQUEST>\n"
    " </INSTANCE>\n"
    " <CONVERSION id=\"c\" factor=\"1.0\" offset=\"0.0\">\n"
    "  <MAP val=\"0\" text=\"off\" />\n"
    " </CONVERSION>\n"
    "</ECU>\n";

}  // namespace

TEST(ZKLReaderImpl_Read, TextGivesTheWholeModel) {
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(kDocument, "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(ecu->GetProtocol(), ProtocolKwp);
    EXPECT_EQ(ecu->GetNrcContainer()->GetCount(), 1u);
    ASSERT_EQ(ecu->GetInstanceContainer()->GetCount(), 1u);
    const IInstance* instance = ecu->GetInstanceContainer()->GetInstance(0u);
    EXPECT_EQ(instance->GetRequest()->GetCount(), 1u);
    EXPECT_TRUE(instance->HasNegResponse());
    const IConversion* conversion = ecu->GetConversionContainer()->GetConversion(0u);
    ASSERT_NE(conversion, nullptr);
    EXPECT_EQ(conversion->GetType(), static_cast<uint32_t>(ConversionKind::ValueTable));
}

TEST(ZKLReaderImpl_Read, FileAndMemoryGiveTheSameModel) {
    ZKLReaderImpl reader;
    const std::string path = TempFile("reader_doc.xml", kDocument);
    std::unique_ptr<IEcu> fromFile = reader.ReadFile(path.c_str(), "");
    std::unique_ptr<IEcu> fromMemory = reader.ReadMemory(kDocument, sizeof kDocument - 1, "");
    ASSERT_NE(fromFile, nullptr);
    ASSERT_NE(fromMemory, nullptr);
    EXPECT_EQ(fromFile->GetInstanceContainer()->GetCount(), fromMemory->GetInstanceContainer()->GetCount());
    EXPECT_EQ(fromFile->GetProtocol(), fromMemory->GetProtocol());
}

TEST(ZKLReaderImpl_Read, SampleDocumentsAreReadWithoutFaults) {
    ZKLReaderImpl reader;
    for (const char* name : {"/uds_ecu.xml", "/kwp_ecu.xml"}) {
        ReportCollector sink(ReportLevelWarn);
        const std::string path = std::string(ZEKL_EXAMPLES_DIR) + name;
        std::unique_ptr<IEcu> ecu = reader.ReadFile(path.c_str(), "", sink);
        ASSERT_NE(ecu, nullptr) << path;
        EXPECT_EQ(sink.GetErrorCount(), 0u) << path;
        EXPECT_EQ(sink.GetWarningCount(), 0u) << path;
        EXPECT_GT(ecu->GetInstanceContainer()->GetCount(), 0u) << path;
    }
}

TEST(ZKLReaderImpl_Read, OwnSinkHandlesOnlyErrorsAndFatals) {
    ZKLReaderImpl reader;
    DebugCapture capture;
    std::unique_ptr<IEcu> ecu = reader.ReadText("<ECU><UNKNOWN/><INSTANCE/></ECU>", "");
    ASSERT_NE(ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> INSTANCE element: Couldn't create a DiagServiceInstance for current element "
        "because no ID "
        "is configured!\n",
        "FATAL: CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain an "
        "IInstance "
        "item!\n"};
    EXPECT_EQ(capture.Lines(), expected);
}

TEST(ZKLReaderImpl_Read, CallersSinkReceivesMessagesByItsOwnLevel) {
    ZKLReaderImpl reader;
    ReportCollector sink(ReportLevelInfo);
    std::unique_ptr<IEcu> ecu = reader.ReadText("<ECU><UNKNOWN/></ECU>", "", sink);
    ASSERT_NE(ecu, nullptr);
    ASSERT_EQ(sink.GetMessages().size(), 1u);
    EXPECT_EQ(sink.GetMessages()[0].level, ReportLevelInfo);
    EXPECT_EQ(sink.GetMessages()[0].text, "ZXmlParser::startElement >> Unknown tag 'UNKNOWN'");
}

TEST(ZKLReaderImpl_Read, FaultyElementsDoNotFailTheRead) {
    ZKLReaderImpl reader;
    ReportCollector sink;
    std::unique_ptr<IEcu> ecu =
        reader.ReadText("<ECU><INSTANCE id=\"a\"/><INSTANCE id=\"a\"/><REQUEST/></ECU>", "", sink);
    ASSERT_NE(ecu, nullptr);
    EXPECT_GT(sink.GetErrorCount(), 0u);
    EXPECT_EQ(ecu->GetInstanceContainer()->GetCount(), 1u);
}

TEST(ZKLReaderImpl_Read, MalformedInputGivesNullAndAFatalMessage) {
    ZKLReaderImpl reader;
    const std::vector<std::string> documents{
        "<ECU>",
        "<ECU><INSTANCE id=\"a\"></ECU>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ECU protocol=\"\xC3\x28\"/>",
        std::string("<ECU>\0</ECU>", 12),
        std::string("\0\0\0\0", 4),
        "",
        "not xml at all",
        "<ECU/>trailing<",
    };
    for (const std::string& document : documents) {
        ReportCollector sink;
        EXPECT_EQ(reader.ReadText(document, "", sink), nullptr) << document;
        EXPECT_TRUE(HasFatal(sink)) << document;
    }
}

TEST(ZKLReaderImpl_Read, MissingOrBadFileGivesNullAndAFatalMessage) {
    ZKLReaderImpl reader;
    for (const char* path : {"/nonexistent/dir/ecu.xml", "", "/"}) {
        ReportCollector sink;
        EXPECT_EQ(reader.ReadFile(path, "", sink), nullptr) << path;
        EXPECT_TRUE(HasFatal(sink)) << path;
    }
    ReportCollector sink;
    EXPECT_EQ(reader.ReadFile(nullptr, "", sink), nullptr);
    EXPECT_EQ(reader.ReadFile("x.xml", nullptr, sink), nullptr);
    EXPECT_EQ(reader.ReadMemory(nullptr, 5, "", sink), nullptr);
    EXPECT_EQ(reader.ReadMemory("<ECU/>", 6, nullptr, sink), nullptr);
    EXPECT_TRUE(HasFatal(sink));
}

TEST(ZKLReaderImpl_Read, UnknownEncodingGivesNull) {
    ZKLReaderImpl reader;
    ReportCollector sink;
    EXPECT_EQ(reader.ReadText("<ECU/>", "no-such-encoding", sink), nullptr);
    EXPECT_TRUE(HasFatal(sink));
}

TEST(ZKLReaderImpl_Read, EncodingArgumentOverridesTheDeclaration) {
    ZKLReaderImpl reader;
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ECU><NEGATIVE_RESPONSE_CODES><MAP nrc=\"1\" "
        "text=\"\xE9\"/>"
        "</NEGATIVE_RESPONSE_CODES></ECU>";
    EXPECT_EQ(reader.ReadText(document, ""), nullptr);
    std::unique_ptr<IEcu> ecu = reader.ReadText(document, "ISO-8859-1");
    ASSERT_NE(ecu, nullptr);
    EXPECT_STREQ(ecu->GetNrcContainer()->GetNrc(uint8_t{1})->GetText(), "\xC3\xA9");
}

// A memory read takes a 32-bit length. Reading a text of more than 4 GiB would cut its length
// to the low 32 bits and read only that much; it is refused instead. The length is handed in
// separately here, as ReadText hands in the string's size: a real text that long costs 4 GiB
// and, on a machine whose page faults are dear, 15 seconds to fill
// (ZKLReaderImpl_ReadText.TextBeyond4GiBIsRefused runs it when ZEKL_LARGE_MEMORY_TESTS is set).
TEST(ZKLReaderImpl_ReadText, LengthBeyond32BitsIsRefusedWithAFatalMessage) {
    const std::string text = "<ECU protocol=\"UDS\"/>";
    const uint64_t length = (uint64_t{1} << 32) + text.size();
    ReportCollector sink(ReportLevelDebug);
    std::unique_ptr<IEcu> ecu = ZKLReaderImpl::ReadBytes(
        std::shared_ptr<IReporting>(&sink, [](IReporting*) {}), text.c_str(), length, "");
    EXPECT_EQ(ecu, nullptr);
    ASSERT_EQ(sink.GetMessages().size(), 1u);
    EXPECT_EQ(sink.GetMessages()[0].level, ReportLevelFatal);
    EXPECT_EQ(sink.GetMessages()[0].text,
              "The passed text is too long to be read: 4294967317 bytes, at most 4294967295 can be!");
}

TEST(ZKLReaderImpl_ReadText, LengthWithinTheLimitIsRead) {
    const std::string text = "<ECU protocol=\"KWP\"/>";
    ReportCollector sink(ReportLevelWarn);
    std::unique_ptr<IEcu> ecu = ZKLReaderImpl::ReadBytes(
        std::shared_ptr<IReporting>(&sink, [](IReporting*) {}), text.c_str(), text.size(), "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(ecu->GetProtocol(), ProtocolKwp);
    EXPECT_TRUE(sink.GetMessages().empty());
    static_assert(ReaderLimits::kMaxDocumentBytes == 0xFFFFFFFFu, "a memory read takes 32 bits");
}

TEST(ZKLReaderImpl_ReadText, TextBeyond4GiBIsRefused) {
    if (std::getenv("ZEKL_LARGE_MEMORY_TESTS") == nullptr) {
        GTEST_SKIP() << "needs 4 GiB of memory and some 15 s; set ZEKL_LARGE_MEMORY_TESTS=1 to run it";
    }
    // Cut to 32 bits, the length would name the valid document at its start.
    const std::string document = "<ECU protocol=\"UDS\"/>";
    std::string text = document;
    text.resize((std::size_t{1} << 32) + document.size(), ' ');
    ZKLReaderImpl reader;
    ReportCollector sink(ReportLevelDebug);
    EXPECT_EQ(reader.ReadText(text, "", sink), nullptr);
    ASSERT_EQ(sink.GetMessages().size(), 1u);
    EXPECT_EQ(sink.GetMessages()[0].level, ReportLevelFatal);
    EXPECT_EQ(sink.GetMessages()[0].text, std::string(ReaderMessages::kTextTooLongBegin) +
                                              std::to_string(text.size()) + ReaderMessages::kTextTooLongEnd);
    DebugCapture capture;
    EXPECT_EQ(reader.ReadText(text, ""), nullptr);
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_NE(capture.Lines()[0].find(ReaderMessages::kTextTooLongBegin), std::string::npos);
}

TEST(ZKLReaderImpl_IsKorvelFile, LooksAtTheFirstFiveLinesOnly) {
    ZKLReaderImpl reader;
    const std::string onLine5 = TempFile("korvel5.xml", "1\n2\n3\n4\n<ECU/>\n");
    const std::string onLine6 = TempFile("korvel6.xml", "1\n2\n3\n4\n5\n<ECU/>\n");
    EXPECT_TRUE(reader.IsKorvelFile(onLine5.c_str()));
    EXPECT_FALSE(reader.IsKorvelFile(onLine6.c_str()));
    EXPECT_TRUE(reader.IsKorvelText("1\n2\n3\n4\n5\n<ECU/>\n"));
}

// A file of one line of 200 MB (sparse: no disk space) whose "<ECU" stands 100 MB in. Looking
// for the end of its first line would read it whole.
class HugeOneLineFile : public ::testing::Test {
protected:
    static constexpr off_t kSize = off_t{200} << 20;
    void TearDown() override { std::remove(path_.c_str()); }
    std::string Make(const std::string& name, off_t markerAt) {
        path_ = ::testing::TempDir() + name;
        std::ofstream(path_, std::ios::binary | std::ios::trunc)
            << "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
        EXPECT_EQ(::truncate(path_.c_str(), kSize), 0);
        std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(markerAt);
        file << "<ECU protocol=\"UDS\">";
        return path_;
    }
    std::string path_;
};

TEST_F(HugeOneLineFile, IsKorvelFile_LooksNoFurtherThanTheFirst64KiB) {
    const std::string path = Make("huge_one_line.xml", off_t{100} << 20);
    ZKLReaderImpl reader;
    std::string version;
    std::string encoding;
    const auto started = std::chrono::steady_clock::now();
    EXPECT_FALSE(reader.IsKorvelFile(path.c_str(), version, encoding));
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2));
    EXPECT_TRUE(version.empty());
}

TEST_F(HugeOneLineFile, IsKorvelFile_FindsTheMarkerWithinTheBound) {
    const std::string path = Make("huge_marker_early.xml", ReaderLimits::kDocumentTestBytes - 30);
    ZKLReaderImpl reader;
    std::string version;
    std::string encoding;
    EXPECT_TRUE(reader.IsKorvelFile(path.c_str(), version, encoding));
    EXPECT_EQ(version, "1.0");
    EXPECT_EQ(encoding, "utf-8");
}

TEST(ZKLReaderImpl_IsKorvelFile, MarkerOnTheSecondLineBeyondTheBoundIsNotSeen) {
    ZKLReaderImpl reader;
    const std::string path = TempFile("korvel_long_first_line.xml",
                                      std::string(ReaderLimits::kDocumentTestBytes, ' ') + "\n<ECU/>\n");
    EXPECT_FALSE(reader.IsKorvelFile(path.c_str()));
    const std::string shorter =
        TempFile("korvel_shorter_first_line.xml",
                 std::string(ReaderLimits::kDocumentTestBytes - 8, ' ') + "\n<ECU/>\n");
    EXPECT_TRUE(reader.IsKorvelFile(shorter.c_str()));
}

TEST(ZKLReaderImpl_IsKorvelFile, EmptyLinesCountAndALastLineWithoutLineEndIsRead) {
    ZKLReaderImpl reader;
    EXPECT_TRUE(reader.IsKorvelFile(TempFile("korvel_blank_lines.xml", "\n\n\n\n<ECU").c_str()));
    EXPECT_FALSE(reader.IsKorvelFile(TempFile("korvel_blank_lines6.xml", "\n\n\n\n\n<ECU").c_str()));
    EXPECT_FALSE(reader.IsKorvelFile(TempFile("korvel_empty.xml", "").c_str()));
}

TEST(ZKLReaderImpl_IsKorvelFile, AcceptsAnyTextHoldingTheMarker) {
    ZKLReaderImpl reader;
    const std::string longer = TempFile("korvel_longer.xml", "<ECUS/>");
    const std::string comment =
        TempFile("korvel_comment.xml", "<?xml version=\"1.0\"?>\n<!-- <ECU -->\n<X/>");
    EXPECT_TRUE(reader.IsKorvelFile(longer.c_str()));
    EXPECT_TRUE(reader.IsKorvelFile(comment.c_str()));
    EXPECT_FALSE(reader.IsKorvelText("<ecu/>"));
}

TEST(ZKLReaderImpl_IsKorvelFile, GivesVersionAndDeclaredEncoding) {
    ZKLReaderImpl reader;
    const std::string path = TempFile(
        "korvel_decl.xml", "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n<ECU protocol=\"UDS\">\n");
    std::string version;
    std::string encoding;
    EXPECT_TRUE(reader.IsKorvelFile(path.c_str(), version, encoding));
    EXPECT_EQ(version, "1.0");
    EXPECT_EQ(encoding, "Windows-1252");
}

TEST(ZKLReaderImpl_IsKorvelFile, UnreadablePathIsFalseWithOutputsUntouched) {
    ZKLReaderImpl reader;
    std::string version = "v";
    std::string encoding = "e";
    EXPECT_FALSE(reader.IsKorvelFile("/nonexistent/file.xml", version, encoding));
    EXPECT_FALSE(reader.IsKorvelFile(nullptr, version, encoding));
    EXPECT_FALSE(reader.IsKorvelFile("/"));
    EXPECT_EQ(version, "v");
    EXPECT_EQ(encoding, "e");
}

TEST(ZKLReaderImpl_IsKorvelText, DoubleQuotedEncodingWinsOverSingleQuoted) {
    ZKLReaderImpl reader;
    std::string version;
    std::string encoding;
    EXPECT_TRUE(reader.IsKorvelText("<?xml encoding='latin1' encoding=\"UTF-8\"?><ECU/>", version, encoding));
    EXPECT_EQ(encoding, "UTF-8");
    EXPECT_EQ(version, "1.0");
    encoding.clear();
    EXPECT_TRUE(reader.IsKorvelText("<?xml version='1.0' encoding='latin1'?><ECU/>", version, encoding));
    EXPECT_EQ(encoding, "latin1");
}

TEST(ZKLReaderImpl_IsKorvelText, EncodingOutsideTheDeclarationIsIgnored) {
    ZKLReaderImpl reader;
    std::string version = "v";
    std::string encoding = "e";
    EXPECT_FALSE(reader.IsKorvelText("<?xml version=\"1.0\"?><X encoding=\"UTF-8\"/>", version, encoding));
    EXPECT_EQ(encoding, "e");
    EXPECT_EQ(version, "v");
    EXPECT_FALSE(reader.IsKorvelText(""));
}

TEST(ZKLReaderImpl_GetFileEncoding, NullPathIsFalseWithOutputUntouched) {
    ZKLReaderImpl reader;
    std::string encoding = "untouched";
    EXPECT_FALSE(reader.GetFileEncoding(nullptr, encoding));
    EXPECT_FALSE(reader.GetFileEncoding("/nonexistent/file.xml", encoding));
    EXPECT_EQ(encoding, "untouched");
}

TEST(ZKLReaderImpl_GetFileEncoding, RecognisesTheFirstBytes) {
    ZKLReaderImpl reader;
    const std::string path = TempFile("encoding_probe.xml", kDocument);
    std::string encoding;
    EXPECT_TRUE(reader.GetFileEncoding(path.c_str(), encoding));
    EXPECT_EQ(encoding, "UTF-8");
}

TEST(ZKLReaderImpl_NoSink, HandlersRunEveryPathWithoutReporting) {
    ZKLXmlParser parser;
    ZKLReaderImpl::RegisterHandlers(parser, nullptr);
    DebugCapture capture;
    const std::string document =
        "<ECU><INSTANCE/><INSTANCE id=\"a\"/><INSTANCE id=\"a\"><REQUEST><PARAMETER/></REQUEST></INSTANCE>"
        "<REQUEST/><CONVERSION id=\"c\"/><CONVERSION id=\"d\" factor=\"1\" offset=\"0\"><MAP val=\"1\" "
        "text=\"a\"/>"
        "<MAP val=\"1\" text=\"a\"/><MAP val=\"\" text=\"\"/><MAP/></CONVERSION><NEGATIVE_RESPONSE_CODES>"
        "<MAP nrc=\"300\" text=\"\"/><MAP nrc=\"0\" text=\"\"/><MAP val=\"1\" "
        "text=\"\"/></NEGATIVE_RESPONSE_CODES>"
        "<X><PARAMETER/></X></ECU>";
    EXPECT_TRUE(parser.ParseMemory(document.data(), static_cast<uint32_t>(document.size()), ""));
    EXPECT_TRUE(capture.Lines().empty());
    EXPECT_EQ(parser.GetEcu()->GetInstanceContainer()->GetCount(), 1u);
}

TEST(ZKLReaderImpl_Hardening, EntityExpansionBombGivesNullAndAFatalMessage) {
    std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY lol \"lol\">\n";
    std::string previous = "lol";
    for (int level = 1; level <= 9; ++level) {
        const std::string name = "lol" + std::to_string(level);
        document += " <!ENTITY " + name + " \"";
        for (int i = 0; i < 10; ++i) {
            document += "&" + previous + ";";
        }
        document += "\">\n";
        previous = name;
    }
    document += "]>\n<ECU protocol=\"&lol9;\"><INSTANCE id=\"&lol9;\"/></ECU>\n";
    ZKLReaderImpl reader;
    ReportCollector sink;
    EXPECT_EQ(reader.ReadText(document, "", sink), nullptr);
    EXPECT_TRUE(HasFatal(sink));
}

TEST(ZKLReaderImpl_Hardening, DeepNestingGivesNullAndAFatalMessage) {
    std::string document = "<ECU>";
    for (int i = 0; i < 100000; ++i) {
        document += "<INSTANCE id=\"a\">";
    }
    ZKLReaderImpl reader;
    ReportCollector sink;
    EXPECT_EQ(reader.ReadText(document, "", sink), nullptr);
    ASSERT_TRUE(HasFatal(sink));
    EXPECT_NE(sink.GetErrors().back().find("deeper than 1000 levels"), std::string::npos);
}
