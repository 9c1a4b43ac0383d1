#include <ZeKL/Exports.h>

#include <gtest/gtest.h>

#include <fstream>

TEST(GetKLReader_Singleton, IsTheObjectThePlainIsKorvelFileUses) {
    // The plain export runs first here and builds the shared reader.
    EXPECT_FALSE(IsKorvelFile("/nonexistent/file.xml"));
    Korvel::IKLReader& first = Korvel::GetKLReader();
    Korvel::IKLReader& second = Korvel::GetKLReader();
    EXPECT_EQ(&first, &second);
}

TEST(GetKLReader_IsKorvelFile, AnswersForReadableAndUnreadablePaths) {
    const std::string path = ::testing::TempDir() + "plain_export.xml";
    std::ofstream(path) << "<?xml version=\"1.0\"?>\n<ECU/>\n";
    EXPECT_TRUE(IsKorvelFile(path.c_str()));
    EXPECT_FALSE(IsKorvelFile(nullptr));
    EXPECT_FALSE(IsKorvelFile(""));
}
