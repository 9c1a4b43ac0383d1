#include "reader/ZFileInputSource.h"

#include "platform/XmlPlatform.h"
#include "reader/ZKLReaderImpl.h"
#include "reader/ZKLXmlParser.h"
#include "reader/ZXmlString.h"

#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <xercesc/util/BinInputStream.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

// A FIFO nobody writes to would block an ordinary open for reading: the reader must refuse it
// without waiting for a writer.
class FifoFile : public ::testing::Test {
protected:
    void SetUp() override {
        path_ =
            (std::filesystem::temp_directory_path() / ("zekl_fifo_" + std::to_string(::getpid()))).string();
        std::remove(path_.c_str());
        ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    }
    void TearDown() override { std::remove(path_.c_str()); }
    std::string path_;
};

TEST_F(FifoFile, ReadFile_RefusesAFifoWithAFatalMessage) {
    Korvel::ReportCollector messages(Korvel::ReportLevelDebug);
    EXPECT_EQ(Korvel::GetKLReader().ReadFile(path_.c_str(), "", messages), nullptr);
    ASSERT_FALSE(messages.GetErrors().empty());
    EXPECT_EQ(messages.GetErrors().back(), "The passed filename names no regular file: '" + path_ + "'!");
}

TEST_F(FifoFile, IsKorvelFile_AnswersFalseForAFifo) {
    std::string version;
    std::string encoding;
    EXPECT_FALSE(Korvel::GetKLReader().IsKorvelFile(path_.c_str(), version, encoding));
    EXPECT_FALSE(::IsKorvelFile(path_.c_str()));
}

TEST_F(FifoFile, GetFileEncoding_AnswersFalseForAFifo) {
    std::string encoding = "untouched";
    EXPECT_FALSE(Korvel::GetKLReader().GetFileEncoding(path_.c_str(), encoding));
    EXPECT_EQ(encoding, "untouched");
}

TEST(FileInput, DeviceIsRefusedByEveryEntry) {
    Korvel::ReportCollector messages(Korvel::ReportLevelDebug);
    EXPECT_EQ(Korvel::GetKLReader().ReadFile("/dev/zero", "", messages), nullptr);
    ASSERT_EQ(messages.GetErrors().size(), 1u);
    EXPECT_EQ(messages.GetErrors()[0], "The passed filename names no regular file: '/dev/zero'!");
    EXPECT_FALSE(::IsKorvelFile("/dev/zero"));
    EXPECT_FALSE(::IsKorvelFile(nullptr));
    std::string encoding = "untouched";
    EXPECT_FALSE(Korvel::GetKLReader().GetFileEncoding("/dev/zero", encoding));
    EXPECT_EQ(encoding, "untouched");
}

}  // namespace

namespace {

TEST(ReadFile, MissingFileIsRefusedWithAFatalMessageNamingIt) {
    Korvel::ReportCollector messages(Korvel::ReportLevelDebug);
    const std::string path = "/nonexistent-folder/missing.xml";
    EXPECT_EQ(Korvel::GetKLReader().ReadFile(path.c_str(), "", messages), nullptr);
    ASSERT_EQ(messages.GetErrors().size(), 1u);
    EXPECT_EQ(messages.GetErrors()[0], "The passed file could not be opened: '" + path + "'!");
    ASSERT_EQ(messages.GetMessages().size(), 1u);
    EXPECT_EQ(messages.GetMessages()[0].level, Korvel::ReportLevelFatal);
}

TEST(ReadFile, MissingFileGivesNullWithTheReadersOwnSink) {
    EXPECT_EQ(Korvel::GetKLReader().ReadFile("/nonexistent-folder/missing.xml", ""), nullptr);
}

}  // namespace

namespace {

// The parser reads the file through the handle that was opened and checked, not by its name: a
// file put in its place after the open is not what gets read.
TEST(FileInput, ParserReadsTheOpenedFileEvenWhenTheNameIsTakenOver) {
    const std::string path = ::testing::TempDir() + "zekl_swapped.xml";
    const std::string other = ::testing::TempDir() + "zekl_swapped_other.xml";
    {
        std::ofstream(path, std::ios::binary) << "<ECU protocol=\"KWP\"/>";
        std::ofstream(other, std::ios::binary) << "<ECU protocol=\"UDS\"/>";
    }
    Korvel::Platform::InputFile file;
    ASSERT_TRUE(file.Open(path.c_str()));
    ASSERT_EQ(std::rename(other.c_str(), path.c_str()), 0);

    Korvel::ZKLXmlParser parser;
    Korvel::ZKLReaderImpl::RegisterHandlers(parser, nullptr);
    ASSERT_NE(parser.GetXmlParser(), nullptr);
    const Korvel::ZXmlString systemId(path.c_str());
    Korvel::ZFileInputSource source(file, systemId.Wide());
    EXPECT_TRUE(parser.GetXmlParser()->Parse(source));
    std::unique_ptr<Korvel::IEcu> ecu = parser.TakeEcu();
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(ecu->GetProtocol(), Korvel::ProtocolKwp);
    std::remove(path.c_str());
}

TEST(FileInput, StreamReportsItsPositionAndEndsAtTheEndOfTheFile) {
    const std::string path = ::testing::TempDir() + "zekl_stream.xml";
    std::ofstream(path, std::ios::binary) << "0123456789";
    Korvel::Platform::InputFile file;
    ASSERT_TRUE(file.Open(path.c_str()));
    const Korvel::ZXmlString systemId(path.c_str());
    Korvel::ZFileInputSource source(file, systemId.Wide());
    std::unique_ptr<xercesc::BinInputStream> stream(source.makeStream());
    ASSERT_NE(stream, nullptr);
    XMLByte bytes[8] = {};
    EXPECT_EQ(stream->readBytes(bytes, 4), 4u);
    EXPECT_EQ(stream->curPos(), 4u);
    EXPECT_EQ(stream->readBytes(bytes, 8), 6u);
    EXPECT_EQ(stream->readBytes(bytes, 8), 0u);
    EXPECT_EQ(stream->curPos(), 10u);
    EXPECT_EQ(stream->getContentType(), nullptr);
    std::remove(path.c_str());
}

}  // namespace
