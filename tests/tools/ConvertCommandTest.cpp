// zekl convert: read and write back, keeping or changing the encoding.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>

#include "ToolRunner.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::ReadBytes;
using zekl_test::RunTool;
using zekl_test::TempDir;
using zekl_test::WriteBytes;

TEST(ConvertCommand, UdsExampleComesBackByteForByte) {
    TempDir dir;
    const std::string out = dir.Path("uds.xml");
    const std::string original = ReadBytes(ExamplePath("uds_ecu.xml"));
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
    EXPECT_EQ(ReadBytes(out), original);
    EXPECT_EQ(result.out, "wrote '" + out + "': " + std::to_string(original.size()) + " bytes, utf-8\n");
}

TEST(ConvertCommand, KwpExampleKeepsItsWindows1252Bytes) {
    TempDir dir;
    const std::string out = dir.Path("kwp.xml");
    const auto result = RunTool({"convert", ExamplePath("kwp_ecu.xml"), out});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadBytes(out), ReadBytes(ExamplePath("kwp_ecu.xml")));
    EXPECT_NE(result.out.find(" bytes, Windows-1252\n"), std::string::npos) << result.out;
}

TEST(ConvertCommand, EncodingOptionReencodesTheTexts) {
    TempDir dir;
    const std::string utf8 = dir.Path("kwp-utf8.xml");
    const auto toUtf8 = RunTool({"convert", ExamplePath("kwp_ecu.xml"), utf8, "--encoding", "utf-8"});
    ASSERT_EQ(toUtf8.exitCode, 0) << toUtf8.err;
    const std::string text = ReadBytes(utf8);
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"KWP\">\n", 0), 0u);
    // The dash stays a character of its own in UTF-8, the umlaut becomes a reference.
    EXPECT_NE(text.find("text=\"Drehzahl zu hoch \xE2\x80\x93 bitte pr&#252;fen\" />"), std::string::npos);

    const std::string back = dir.Path("kwp-1252.xml");
    const auto toWindows = RunTool({"convert", utf8, back, "--encoding=windows-1252"});
    ASSERT_EQ(toWindows.exitCode, 0) << toWindows.err;
    EXPECT_EQ(ReadBytes(back), ReadBytes(ExamplePath("kwp_ecu.xml")));
}

TEST(ConvertCommand, Latin1NameIsWrittenIntoTheDeclaration) {
    TempDir dir;
    const std::string out = dir.Path("latin1.xml");
    ASSERT_EQ(RunTool({"convert", ExamplePath("kwp_ecu.xml"), out, "-e", "ISO-8859-1"}).exitCode, 0);
    const std::string text = ReadBytes(out);
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n", 0), 0u);
    // The same helper writes both names, so only the declaration differs.
    const std::string original = ReadBytes(ExamplePath("kwp_ecu.xml"));
    EXPECT_EQ(text.substr(text.find('\n')), original.substr(original.find('\n')));
}

TEST(ConvertCommand, DocumentWithoutDeclarationBecomesUtf8) {
    TempDir dir;
    const std::string out = dir.Path("converted.xml");
    ASSERT_EQ(RunTool({"convert", DataPath("no_declaration.xml"), out}).exitCode, 0);
    EXPECT_EQ(ReadBytes(out),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
              "<ECU protocol=\"KWP\">\n"
              " <NEGATIVE_RESPONSE_CODES>\n"
              "  <MAP nrc=\"16\" text=\"General reject\"/>\n"
              " </NEGATIVE_RESPONSE_CODES>\n"
              "</ECU>\n");
}

TEST(ConvertCommand, ConvertsInPlace) {
    TempDir dir;
    const std::string path = dir.Path("in-place.xml");
    WriteBytes(path, ReadBytes(ExamplePath("uds_ecu.xml")));
    const auto result = RunTool({"convert", path, path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadBytes(path), ReadBytes(ExamplePath("uds_ecu.xml")));
}

TEST(ConvertCommand, RefusedDocumentLeavesTheOutputAlone) {
    TempDir dir;
    const std::string out = dir.Path("existing.xml");
    WriteBytes(out, "keep me");
    const std::string in = DataPath("malformed.xml");
    const auto result = RunTool({"convert", in, out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err.rfind("zekl: cannot read '" + in + "': ", 0), 0u) << result.err;
    EXPECT_EQ(ReadBytes(out), "keep me");
}

TEST(ConvertCommand, MissingInputCreatesNoOutput) {
    TempDir dir;
    const std::string out = dir.Path("never.xml");
    const auto result = RunTool({"convert", DataPath("no_such_file.xml"), out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_FALSE(zekl_test::FileExists(out));
}

TEST(ConvertCommand, DroppedElementsAreWarnedAbout) {
    TempDir dir;
    const std::string out = dir.Path("partial.xml");
    const auto result = RunTool({"convert", DataPath("missing_parameter_attribute.xml"), out});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.err.find("zekl: warning: '"), std::string::npos) << result.err;
    const std::string text = ReadBytes(out);
    EXPECT_NE(text.find("id=\"SID\""), std::string::npos);
    EXPECT_EQ(text.find("id=\"Broken\""), std::string::npos);
}

TEST(ConvertCommand, UnwritableOutputExitsOneWithTheCause) {
    const std::string out = "/nonexistent-zekl-dir/out.xml";
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot write '" + out + "': No such file or directory\n");
}

TEST(ConvertCommand, FullDiskNamesTheCause) {
    TempDir dir;
    const std::string out = dir.Path("out.xml");
    WriteBytes(out, "keep me");
    // The shell's file size limit (in blocks of 1 KiB) stands for a full disk: writes fail with
    // EFBIG; SIGXFSZ is ignored so that the write fails instead of killing the tool.
    const std::string command = "trap '' XFSZ; ulimit -f 2; exec timeout -s KILL 60 '" +
                                std::string(ZEKL_TOOL) + "' convert '" + ExamplePath("uds_ecu.xml") + "' '" +
                                out + "' 2>'" + dir.Path("err") + "' >/dev/null";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
    EXPECT_EQ(ReadBytes(dir.Path("err")), "zekl: cannot write '" + out + "': " + std::strerror(EFBIG) + "\n");
    EXPECT_EQ(ReadBytes(out), "keep me");
}

// Before, the output was replaced by whatever it was: a FIFO, a device node (as root even
// /dev/null), or a dangling link all became regular files.
TEST(ConvertCommand, FifoOutputIsRefusedAndStays) {
    TempDir dir;
    const std::string out = dir.Path("fifo.xml");
    zekl_test::MakeFifo(out);
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot write '" + out + "': not a regular file (a FIFO)\n");
    EXPECT_EQ(zekl_test::FileKind(out), static_cast<unsigned>(S_IFIFO));
}

TEST(ConvertCommand, DeviceNodeOutputIsRefusedAndStays) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may make a device node; FifoOutputIsRefusedAndStays covers the rest";
    }
    TempDir dir;
    const std::string out = dir.Path("null");
    // The device of /dev/null, made in a scratch folder: the real one is never at risk.
    ASSERT_EQ(::mknod(out.c_str(), S_IFCHR | 0666, makedev(1, 3)), 0) << std::strerror(errno);
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot write '" + out + "': not a regular file (a character device)\n");
    EXPECT_EQ(zekl_test::FileKind(out), static_cast<unsigned>(S_IFCHR));
}

TEST(ConvertCommand, DanglingLinkOutputIsRefusedAndStays) {
    TempDir dir;
    const std::string out = dir.Path("link.xml");
    const std::string missing = dir.Path("missing.xml");
    std::filesystem::create_symlink(missing, out);
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot write '" + out +
                              "': a symbolic link to nothing (what it points to does not exist)\n");
    EXPECT_EQ(zekl_test::FileKind(out), static_cast<unsigned>(S_IFLNK));
    EXPECT_FALSE(zekl_test::FileExists(missing));
}

TEST(ConvertCommand, LinkOutputIsWrittenThroughAndStaysALink) {
    TempDir dir;
    const std::string out = dir.Path("link.xml");
    const std::string real = dir.Path("real.xml");
    WriteBytes(real, "old");
    std::filesystem::create_symlink(real, out);
    const auto result = RunTool({"convert", ExamplePath("uds_ecu.xml"), out}, 20);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(zekl_test::FileKind(out), static_cast<unsigned>(S_IFLNK));
    EXPECT_EQ(ReadBytes(real), ReadBytes(ExamplePath("uds_ecu.xml")));
}

TEST(ConvertCommand, FifoInputIsRefusedWithoutWaitingForAWriter) {
    TempDir dir;
    const std::string in = dir.Path("fifo.xml");
    zekl_test::MakeFifo(in);
    const auto result = RunTool({"convert", in, dir.Path("out.xml")}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot read '" + in + "': not a regular file (a FIFO)\n");
    EXPECT_FALSE(zekl_test::FileExists(dir.Path("out.xml")));
}

TEST(ConvertCommand, UnknownEncodingIsAUsageError) {
    TempDir dir;
    const auto result =
        RunTool({"convert", ExamplePath("uds_ecu.xml"), dir.Path("x.xml"), "--encoding", "utf-16"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(
        result.err,
        "zekl: convert: unknown encoding 'utf-16' (use utf-8, Windows-1252 or iso-8859-1) (see 'zekl convert "
        "--help')\n");
    EXPECT_FALSE(zekl_test::FileExists(dir.Path("x.xml")));
}
