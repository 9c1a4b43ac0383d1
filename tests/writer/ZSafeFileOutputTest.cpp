#include "writer/ZSafeFileOutput.h"

#include "FailingAllocation.h"
#include "WriterTestFiles.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <new>
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
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "old");
    ZSafeFileOutput output(target);
    output.Stream() << "text";
    // The target becomes something that must not be replaced while the document is written.
    ASSERT_EQ(::unlink(target.c_str()), 0);
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    try {
        output.Commit();
        ADD_FAILURE() << "the commit replaced a FIFO";
    } catch (const FileWriteError& error) {
        EXPECT_STREQ(error.what(), "not a regular file (a FIFO)");
    }
    EXPECT_TRUE(output.TemporaryPath().empty());
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_TRUE(fs::is_fifo(target));
}

TEST(SafeFileOutput_Open, FolderTargetIsRefusedAndStays) {
    TempFolder folder;
    const std::string target = folder.File("dir");
    fs::create_directory(target);
    WriterTest::WriteFileBytes(target + "/keep", "x");
    try {
        ZSafeFileOutput output(target);
        ADD_FAILURE() << "a folder was accepted as target";
    } catch (const FileWriteError& error) {
        EXPECT_STREQ(error.what(), "not a regular file (a folder)");
    }
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"dir"});
    EXPECT_EQ(ReadFileBytes(target + "/keep"), "x");
}

TEST(SafeFileOutput_Open, MissingFolderThrowsTheSystemsReason) {
    TempFolder folder;
    try {
        ZSafeFileOutput output(folder.File("no/such/file.xml"));
        ADD_FAILURE() << "a file in a missing folder was opened";
    } catch (const FileWriteError& error) {
        EXPECT_STREQ(error.what(), std::strerror(ENOENT));
    }
    EXPECT_TRUE(folder.Entries().empty());
}

// The number of descriptors this process has open.
std::size_t OpenDescriptors() {
    std::size_t count = 0;
    for (auto it = fs::directory_iterator("/proc/self/fd"); it != fs::directory_iterator(); ++it) {
        ++count;
    }
    return count;
}

TEST(SafeFileOutput_Open, NoMemoryForTheBufferLeavesNoDescriptorAndNoFile) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "old");
    const std::size_t descriptors = OpenDescriptors();
    const std::size_t refusedBefore = WriterTest::FailingAllocation::Refused();
    {
        // Only the output's buffer (1 MB) is that large.
        WriterTest::FailingAllocation noLargeBlocks(512 * 1024);
        EXPECT_THROW(ZSafeFileOutput output(target), std::bad_alloc);
    }
    EXPECT_GT(WriterTest::FailingAllocation::Refused(), refusedBefore);
    EXPECT_EQ(OpenDescriptors(), descriptors);
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_EQ(ReadFileBytes(target), "old");
}

TEST(SafeFileOutput_Write, FailedWriteThrowsTheDocumentedErrorWithTheSystemsReason) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "old");
    ZSafeFileOutput output(target);
    rlimit previous{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &previous), 0);
    auto* previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = previous;
    limited.rlim_cur = 1000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    std::string caught;
    try {
        output.Stream() << std::string(3u << 20, 'x');
    } catch (const FileWriteError& error) {
        caught = error.what();
    } catch (const std::exception& other) {
        caught = std::string("another exception: ") + other.what();
    }
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);
    EXPECT_EQ(caught, std::strerror(EFBIG));
    EXPECT_TRUE(output.TemporaryPath().empty());
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_EQ(ReadFileBytes(target), "old");
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
