#include "reader/RegularFile.h"

#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

// A FIFO nobody writes to would block any open for reading: the reader must refuse it
// without opening it.
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

TEST_F(FifoFile, RegularFile_FifoIsNoRegularFile) {
    EXPECT_FALSE(Korvel::IsRegularFile(path_.c_str()));
}

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

TEST(RegularFile, DeviceAndNullAreNoRegularFiles) {
    EXPECT_FALSE(Korvel::IsRegularFile("/dev/zero"));
    EXPECT_FALSE(Korvel::IsRegularFile(nullptr));
    EXPECT_FALSE(::IsKorvelFile("/dev/zero"));
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
