// zekl new: the library's empty documents, on standard output or in a file.
#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>

#include "ToolRunner.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

using zekl_test::ReadBytes;
using zekl_test::RunTool;
using zekl_test::TempDir;

namespace {

std::string LibraryDocument(int32_t protocol, bool withTable) {
    return CreateXmlForEmptyEcu(protocol, withTable ? 1 : 0);
}

size_t Count(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t pos = text.find(part); pos != std::string::npos; pos = text.find(part, pos + 1)) {
        ++count;
    }
    return count;
}

}  // namespace

TEST(NewCommand, PrintsTheEmptyUdsDocumentByteForByte) {
    const auto result = RunTool({"new", "--protocol", "UDS"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.err.empty());
    EXPECT_EQ(result.out, LibraryDocument(0, false));
    EXPECT_EQ(result.out, "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"UDS\"/>");
}

TEST(NewCommand, KwpWithTableKeepsCrLfAndAllCodes) {
    const auto result = RunTool({"new", "--protocol", "KWP", "--nrc-table"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, LibraryDocument(1, true));
    EXPECT_EQ(Count(result.out, "<MAP nrc="), 24u);
    EXPECT_EQ(Count(result.out, "\r\n"), Count(result.out, "\n"));
    EXPECT_EQ(result.out.substr(result.out.size() - 6), "</ECU>");
}

TEST(NewCommand, UdsTableHasFortyCodes) {
    const auto result = RunTool({"new", "--nrc-table", "--protocol", "UDS"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Count(result.out, "<MAP nrc="), 40u);
}

TEST(NewCommand, ProtocolNameIgnoresLetterCase) {
    EXPECT_EQ(RunTool({"new", "--protocol=kwp"}).out, LibraryDocument(1, false));
    EXPECT_EQ(RunTool({"new", "-p", "Uds"}).out, LibraryDocument(0, false));
}

TEST(NewCommand, OutputOptionWritesTheFileAndPrintsNothing) {
    TempDir dir;
    const std::string path = dir.Path("new.xml");
    const auto result = RunTool({"new", "--protocol", "KWP", "--nrc-table", "-o", path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(ReadBytes(path), LibraryDocument(1, true));
    EXPECT_FALSE(zekl_test::FileExists(path + ".zekl-tmp"));
}

TEST(NewCommand, WrittenDocumentReadsBackWithItsTable) {
    TempDir dir;
    const std::string path = dir.Path("kwp.xml");
    ASSERT_EQ(RunTool({"new", "--protocol", "KWP", "--nrc-table", "--output", path}).exitCode, 0);
    const auto info = RunTool({"info", path});
    EXPECT_EQ(info.exitCode, 0) << info.err;
    EXPECT_NE(info.out.find("protocol:    KWP\n"), std::string::npos) << info.out;
    EXPECT_NE(info.out.find("NRCs:        24\n"), std::string::npos) << info.out;
}

TEST(NewCommand, MissingProtocolIsAUsageError) {
    const auto result = RunTool({"new"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: new: missing option --protocol UDS|KWP (see 'zekl new --help')\n");
}

TEST(NewCommand, UnknownProtocolIsAUsageError) {
    const auto result = RunTool({"new", "--protocol", "CAN"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "zekl: new: unknown protocol 'CAN' (use UDS or KWP) (see 'zekl new --help')\n");
}

TEST(NewCommand, UnwritableOutputExitsOneNamingTheFile) {
    const std::string path = "/nonexistent-zekl-dir/new.xml";
    const auto result = RunTool({"new", "--protocol", "UDS", "-o", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("zekl: cannot write '" + path + "': ", 0), 0u) << result.err;
    EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u);
}

// The output used to go through the fixed name OUT.zekl-tmp, opened with fopen: a link planted
// under that name made the tool overwrite whatever the link pointed to.
TEST(NewCommand, LinkPlantedBesideTheOutputIsNotFollowed) {
    TempDir dir;
    const std::string path = dir.Path("new.xml");
    const std::string victim = dir.Path("victim.txt");
    zekl_test::WriteBytes(victim, "precious");
    std::filesystem::create_symlink(victim, path + ".zekl-tmp");
    const auto result = RunTool({"new", "--protocol", "UDS", "-o", path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadBytes(victim), "precious");
    EXPECT_EQ(ReadBytes(path), LibraryDocument(0, false));
    EXPECT_EQ(zekl_test::FileKind(path + ".zekl-tmp"), static_cast<unsigned>(S_IFLNK));
    EXPECT_EQ(zekl_test::FileKind(path), static_cast<unsigned>(S_IFREG));
}

TEST(NewCommand, ExistingOutputIsReplacedKeepingItsMode) {
    TempDir dir;
    const std::string path = dir.Path("new.xml");
    zekl_test::WriteBytes(path, "old");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const auto result = RunTool({"new", "--protocol", "KWP", "-o", path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadBytes(path), LibraryDocument(1, false));
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST(NewCommand, FifoOutputIsRefusedAndStays) {
    TempDir dir;
    const std::string path = dir.Path("fifo.xml");
    zekl_test::MakeFifo(path);
    const auto result = RunTool({"new", "--protocol", "UDS", "-o", path}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot write '" + path + "': not a regular file (a FIFO)\n");
    EXPECT_EQ(zekl_test::FileKind(path), static_cast<unsigned>(S_IFIFO));
}
