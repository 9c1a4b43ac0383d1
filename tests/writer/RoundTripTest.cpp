// Read, write, read, write: the two writes of every sample document are equal, and the
// documents in the writer's own layout come back byte for byte.
#include "WriterTestFiles.h"
#include "WriterTestModels.h"

#include <ZeKL/Exports.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace Korvel {
namespace {

namespace fs = std::filesystem;
using WriterTest::ReadFileBytes;

std::vector<fs::path> DocumentsIn(const fs::path& folder) {
    std::vector<fs::path> documents;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.is_regular_file() && entry.path().extension() == ".xml") {
            documents.push_back(entry.path());
        }
    }
    std::sort(documents.begin(), documents.end());
    return documents;
}

fs::path WriterSamples() {
    return fs::path(ZEKL_TEST_DATA_DIR) / "writer";
}

// Every sample of this folder and every document under examples/.
std::vector<fs::path> AllSamples() {
    std::vector<fs::path> documents = DocumentsIn(WriterSamples());
    for (const auto& entry : fs::recursive_directory_iterator(ZEKL_EXAMPLES_DIR, fs::directory_options{})) {
        if (entry.is_regular_file() && entry.path().extension() == ".xml") {
            documents.push_back(entry.path());
        }
    }
    return documents;
}

// The encoding named in the document's declaration ("" without one).
std::string DeclaredEncoding(const std::string& document) {
    const std::string key = "encoding=\"";
    const std::size_t declarationEnd = document.find("?>");
    const std::size_t begin = document.find(key);
    if (declarationEnd == std::string::npos || begin == std::string::npos || begin > declarationEnd) {
        return std::string();
    }
    const std::size_t valueBegin = begin + key.size();
    return document.substr(valueBegin, document.find('"', valueBegin) - valueBegin);
}

std::string WriteText(const IEcu& ecu, const std::string& encoding) {
    std::string text;
    EXPECT_NE(GetKLWriter().WriteToString(ecu, text, encoding.c_str()), 0u);
    return text;
}

TEST(RoundTrip_Samples, TheWriterSamplesAreThere) {
    EXPECT_GE(DocumentsIn(WriterSamples()).size(), 3u);
}

TEST(RoundTrip_Samples, ReadWriteReadWriteGivesTwoIdenticalWrites) {
    for (const fs::path& path : AllSamples()) {
        SCOPED_TRACE(path.string());
        const std::string encoding = DeclaredEncoding(ReadFileBytes(path.string()));
        std::unique_ptr<IEcu> first = GetKLReader().ReadFile(path.string().c_str(), "");
        ASSERT_NE(first, nullptr);
        const std::string firstWrite = WriteText(*first, encoding);
        std::unique_ptr<IEcu> second = GetKLReader().ReadText(firstWrite, "");
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(WriteText(*second, encoding), firstWrite);
    }
}

TEST(RoundTrip_Samples, WriterSamplesAreWrittenBackByteForByte) {
    // A sample in the writer's own layout must come back unchanged; a sample with a file
    // "<name>.expected" beside it must come back as that file.
    for (const fs::path& path : DocumentsIn(WriterSamples())) {
        SCOPED_TRACE(path.string());
        const std::string original = ReadFileBytes(path.string());
        const fs::path expectedPath = path.string() + ".expected";
        const std::string expected =
            fs::exists(expectedPath) ? ReadFileBytes(expectedPath.string()) : original;
        std::unique_ptr<IEcu> ecu = GetKLReader().ReadFile(path.string().c_str(), "");
        ASSERT_NE(ecu, nullptr);
        EXPECT_EQ(WriteText(*ecu, DeclaredEncoding(original)), expected);
    }
}

TEST(RoundTrip_Samples, FileWritesOfTheSamplesAreStable) {
    WriterTest::TempFolder folder;
    const std::string firstFile = folder.File("first.xml");
    const std::string secondFile = folder.File("second.xml");
    for (const fs::path& path : AllSamples()) {
        SCOPED_TRACE(path.string());
        const std::string encoding = DeclaredEncoding(ReadFileBytes(path.string()));
        std::unique_ptr<IEcu> first = GetKLReader().ReadFile(path.string().c_str(), "");
        ASSERT_NE(first, nullptr);
        const uint32_t length = GetKLWriter().WriteToFile(*first, firstFile.c_str(), encoding.c_str());
        ASSERT_NE(length, 0u);
        std::unique_ptr<IEcu> second = GetKLReader().ReadFile(firstFile.c_str(), "");
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(GetKLWriter().WriteToFile(*second, secondFile.c_str(), encoding.c_str()), length);
        EXPECT_EQ(ReadFileBytes(secondFile), ReadFileBytes(firstFile));
        EXPECT_EQ(ReadFileBytes(firstFile), WriteText(*first, encoding));
    }
}

TEST(RoundTrip_Model, WrittenModelReadsBackEqual) {
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    for (const char* encoding : {"utf-8", "Windows-1252", "iso-8859-1"}) {
        SCOPED_TRACE(encoding);
        const std::string text = WriteText(*ecu, encoding);
        std::unique_ptr<IEcu> back = GetKLReader().ReadText(text, "");
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->GetProtocol(), ProtocolKwp);
        ASSERT_EQ(back->GetNrcContainer()->GetCount(), 2u);
        EXPECT_STREQ(back->GetNrcContainer()->GetNrc(1u)->GetText(), "conditionsNotCorrect & more");
        ASSERT_EQ(back->GetInstanceContainer()->GetCount(), 2u);
        const IInstance* read = back->GetInstanceContainer()->GetInstance(0u);
        ASSERT_NE(read->GetPosResponse(), nullptr);
        EXPECT_EQ(read->GetPosResponse()->GetCount(), 3u);
        EXPECT_STREQ(read->GetPosResponse()->GetParam(1)->GetUnit(), "degC");
        IConversionContainer* conversions = back->GetConversionContainer();
        ASSERT_EQ(conversions->GetCount(), 2u);
        EXPECT_EQ(conversions->GetConversion(0u)->GetFactor(), 0.5);
        EXPECT_EQ(conversions->GetConversion(0u)->GetOffset(), -40.0);
        ASSERT_EQ(conversions->GetConversion(1u)->GetTextTableSize(), 2u);
        EXPECT_STREQ(conversions->GetConversion(1u)->GetTextTableElement(1u)->GetText(), "on");
        EXPECT_EQ(WriteText(*back, encoding), text);
    }
}

TEST(RoundTrip_Model, LettersComeBackInEveryEncoding) {
    const char* text = "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F \xE2\x82\xAC <&> \xC3\x88";  // äöüß € <&> È
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{1}, text);
    for (const char* encoding : {"utf-8", "Windows-1252", "other", ""}) {
        SCOPED_TRACE(encoding);
        // A name the XML parser does not know is overridden by the bytes' real encoding.
        const char* readAs = std::string(encoding) == "other" ? "UTF-8" : "";
        std::unique_ptr<IEcu> back = GetKLReader().ReadText(WriteText(*ecu, encoding), readAs);
        ASSERT_NE(back, nullptr);
        ASSERT_EQ(back->GetNrcContainer()->GetCount(), 1u);
        EXPECT_STREQ(back->GetNrcContainer()->GetNrc(0u)->GetText(), text);
    }
}

TEST(RoundTrip_Quirks, CapitalEAcuteComesBackAsEGraveFromUtf8Documents) {
    // É is written as the reference of È on purpose; reading it gives È, which is then
    // written as a plain letter. The two writes differ exactly there.
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{1}, "\xC3\x89t\xC3\xA9");  // Été
    const std::string first = WriteText(*ecu, "utf-8");
    EXPECT_NE(first.find("text=\"&#200;t&#233;\""), std::string::npos);
    std::unique_ptr<IEcu> back = GetKLReader().ReadText(first, "");
    ASSERT_NE(back, nullptr);
    EXPECT_STREQ(back->GetNrcContainer()->GetNrc(0u)->GetText(), "\xC3\x88t\xC3\xA9");  // Èté
    EXPECT_NE(WriteText(*back, "utf-8").find("text=\"\xC3\x88t&#233;\""), std::string::npos);
}

TEST(RoundTrip_Quirks, EcuWithoutProtocolIsWrittenAsUds) {
    std::unique_ptr<IEcu> ecu = GetKLReader().ReadText("<?xml version=\"1.0\"?><ECU></ECU>", "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(WriteText(*ecu, "utf-8"), WriterTest::EmptyDocument("UDS", "utf-8"));
}

TEST(RoundTrip_Quirks, EveryReadInstanceIsWrittenWithANegativeResponse) {
    std::unique_ptr<IEcu> ecu =
        GetKLReader().ReadText("<ECU protocol=\"KWP\"><INSTANCE id=\"I\"><REQUEST/></INSTANCE></ECU>", "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(WriteText(*ecu, ""),
              "<ECU protocol=\"KWP\">\n"
              " <NEGATIVE_RESPONSE_CODES>\n"
              " </NEGATIVE_RESPONSE_CODES>\n"
              " <INSTANCE id=\"I\">\n"
              "  <REQUEST>\n"
              "  </REQUEST>\n"
              "  <NEGATIVE_RESPONSE>\n"
              "  </NEGATIVE_RESPONSE>\n"
              " </INSTANCE>\n"
              "</ECU>\n");
}

TEST(RoundTrip_Quirks, EmptyDocumentsOfTheFactoryAreWrittenInTheWritersLayout) {
    for (bool withTable : {false, true}) {
        std::unique_ptr<IEcu> ecu =
            GetKLReader().ReadText(GetFactory().CreateEmptyKwpDocument(withTable), "");
        ASSERT_NE(ecu, nullptr);
        const std::string text = WriteText(*ecu, "utf-8");
        EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"KWP\">\n", 0), 0u);
        std::unique_ptr<IEcu> back = GetKLReader().ReadText(text, "");
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->GetNrcContainer()->GetCount(), ecu->GetNrcContainer()->GetCount());
        EXPECT_EQ(WriteText(*back, "utf-8"), text);
    }
}

}  // namespace
}  // namespace Korvel
