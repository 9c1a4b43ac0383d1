#include "writer/ZSafeFileOutput.h"

#include "WriterTestFiles.h"

#include <gtest/gtest.h>

#include <system_error>

namespace Korvel {
namespace {

namespace fs = std::filesystem;
using WriterTest::ReadFileBytes;
using WriterTest::TempFolder;

TEST(SafeFileOutput_Commit, ReplacesTheTargetOnlyWhenCommitted) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "old");
    ZSafeFileOutput output(target);
    output.Stream() << "new document\n";
    output.Stream().flush();
    EXPECT_EQ(ReadFileBytes(target), "old");
    EXPECT_EQ(folder.Entries().size(), 2u);
    output.Commit();
    EXPECT_EQ(ReadFileBytes(target), "new document\n");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_TRUE(output.TemporaryPath().empty());
}

TEST(SafeFileOutput_Commit, CreatesANewFile) {
    TempFolder folder;
    const std::string target = folder.File("new.xml");
    {
        ZSafeFileOutput output(target);
        output.Stream() << "text";
        output.Commit();
    }
    EXPECT_EQ(ReadFileBytes(target), "text");
}

TEST(SafeFileOutput_Commit, WritesBytesUnchanged) {
    TempFolder folder;
    const std::string target = folder.File("bytes.bin");
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes.push_back(static_cast<char>(i));
    }
    bytes += "\r\n\n\r";
    ZSafeFileOutput output(target);
    output.Stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    output.Commit();
    EXPECT_EQ(ReadFileBytes(target), bytes);
}

TEST(SafeFileOutput_Discard, TemporaryFileSitsBesideTheTargetAndGoesWithoutCommit) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "old");
    {
        ZSafeFileOutput output(target);
        EXPECT_EQ(fs::path(output.TemporaryPath()).parent_path(), folder.Path());
        EXPECT_TRUE(fs::exists(output.TemporaryPath()));
        output.Stream() << std::string(3u << 20, 'y');
    }
    EXPECT_EQ(ReadFileBytes(target), "old");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(SafeFileOutput_Discard, AFailedCommitRemovesTheTemporaryFile) {
    TempFolder folder;
    const std::string target = folder.File("dir");
    fs::create_directory(target);
    WriterTest::WriteFileBytes(target + "/keep", "x");
    ZSafeFileOutput output(target);
    output.Stream() << "text";
    EXPECT_THROW(output.Commit(), std::system_error);
    EXPECT_TRUE(output.TemporaryPath().empty());
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"dir"});
    EXPECT_EQ(ReadFileBytes(target + "/keep"), "x");
}

TEST(SafeFileOutput_Open, MissingFolderThrows) {
    TempFolder folder;
    EXPECT_THROW(ZSafeFileOutput(folder.File("no/such/file.xml")), std::system_error);
    EXPECT_TRUE(folder.Entries().empty());
}

TEST(SafeFileOutput_Open, EmptyNameThrows) {
    EXPECT_THROW(ZSafeFileOutput(""), std::invalid_argument);
}

TEST(SafeFileOutput_Count, CountsBufferedAndWrittenBytes) {
    TempFolder folder;
    ZSafeFileOutput output(folder.File("count.txt"));
    EXPECT_EQ(output.BytesWritten(), 0u);
    output.Stream() << "12345";
    EXPECT_EQ(output.BytesWritten(), 5u);
    output.Stream() << std::string(2u << 20, 'z');
    EXPECT_EQ(output.BytesWritten(), 5u + (2u << 20));
    output.Commit();
    EXPECT_EQ(fs::file_size(folder.File("count.txt")), 5u + (2u << 20));
}

TEST(SafeFileOutput_Open, TwoOutputsOnOneTargetUseTwoTemporaryFiles) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    ZSafeFileOutput first(target);
    ZSafeFileOutput second(target);
    EXPECT_NE(first.TemporaryPath(), second.TemporaryPath());
    first.Stream() << "first";
    second.Stream() << "second";
    first.Commit();
    second.Commit();
    EXPECT_EQ(ReadFileBytes(target), "second");
}

}  // namespace
}  // namespace Korvel
