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

// The KWP sample's table text has a dash, which iso-8859-1 lacks (a reader of that name takes
// the byte 0x96 for a control character): the conversion is refused, naming the item.
TEST(ConvertCommand, Latin1RefusesTheDashItCannotCarry) {
    TempDir dir;
    const std::string out = dir.Path("latin1.xml");
    const auto result = RunTool({"convert", ExamplePath("kwp_ecu.xml"), out, "-e", "ISO-8859-1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err,
              "zekl: cannot write '" + out +
                  "': the text of entry '3' of conversion 'EngineState_ValueTable' holds '\xE2\x80\x93' "
                  "(U+2013), which iso-8859-1 cannot carry\n");
    EXPECT_FALSE(zekl_test::FileExists(out));
}

TEST(ConvertCommand, Latin1NameIsWrittenIntoTheDeclarationWhenForced) {
    TempDir dir;
    const std::string out = dir.Path("latin1.xml");
    ASSERT_EQ(RunTool({"convert", ExamplePath("kwp_ecu.xml"), out, "-e", "ISO-8859-1", "--force"}).exitCode,
              0);
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

// A read with ERROR messages dropped or changed something: the element of a parameter without
// its bitLen, the NRC 300 that does not fit a byte. Converting it would lose that silently.
TEST(ConvertCommand, ReadErrorsRefuseTheConversionNamingTheFirst) {
    TempDir dir;
    for (const char* name :
         {"missing_parameter_attribute.xml", "nrc_out_of_range.xml", "duplicate_instance.xml"}) {
        const std::string in = DataPath(name);
        const std::string out = dir.Path(name);
        zekl_test::WriteBytes(out, "keep me");
        const auto result = RunTool({"convert", in, out});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_TRUE(result.out.empty()) << result.out;
        EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u) << result.err;
        EXPECT_EQ(result.err.rfind("zekl: '" + in + "' has ", 0), 0u) << result.err;
        EXPECT_EQ(ReadBytes(out), "keep me") << name;
    }
    const auto nrc = RunTool({"convert", DataPath("nrc_out_of_range.xml"), dir.Path("nrc.xml")});
    EXPECT_NE(nrc.err.find("1 ERROR/FATAL message(s): TryGetValue >> Couldn't convert attribute #0 to BYTE, "
                           "because the the configured value ('300') is to big!"),
              std::string::npos)
        << nrc.err;
    EXPECT_NE(nrc.err.find("(--force converts it all the same)\n"), std::string::npos) << nrc.err;
}

TEST(ConvertCommand, ForceWritesWhatWasReadWithAWarning) {
    TempDir dir;
    const std::string out = dir.Path("partial.xml");
    const auto result = RunTool({"convert", DataPath("missing_parameter_attribute.xml"), out, "--force"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u) << result.err;
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

// The unit °C used to be written as UTF-8 bytes under a Windows-1252 declaration and read back
// as "Â°C". Every value now goes through the encoding: both samples come back as they were.
TEST(ConvertCommand, UdsSampleSurvivesWindows1252AndBack) {
    TempDir dir;
    const std::string cp1252 = dir.Path("uds-1252.xml");
    const std::string utf8 = dir.Path("uds-utf8.xml");
    ASSERT_EQ(RunTool({"convert", ExamplePath("uds_ecu.xml"), cp1252, "--encoding", "Windows-1252"}).exitCode,
              0);
    EXPECT_NE(ReadBytes(cp1252).find("unit=\"\xB0"
                                     "C\""),
              std::string::npos);
    const auto back = RunTool({"convert", cp1252, utf8, "--encoding", "utf-8"});
    ASSERT_EQ(back.exitCode, 0) << back.err;
    EXPECT_EQ(ReadBytes(utf8), ReadBytes(ExamplePath("uds_ecu.xml")));
}

TEST(ConvertCommand, KwpSampleSurvivesUtf8AndBack) {
    TempDir dir;
    const std::string utf8 = dir.Path("kwp-utf8.xml");
    const std::string cp1252 = dir.Path("kwp-1252.xml");
    const std::string utf8Again = dir.Path("kwp-utf8-again.xml");
    ASSERT_EQ(RunTool({"convert", ExamplePath("kwp_ecu.xml"), utf8, "-e", "utf8"}).exitCode, 0);
    ASSERT_EQ(RunTool({"convert", utf8, cp1252, "-e", "cp1252"}).exitCode, 0);
    EXPECT_EQ(ReadBytes(cp1252), ReadBytes(ExamplePath("kwp_ecu.xml")));
    ASSERT_EQ(RunTool({"convert", cp1252, utf8Again, "-e", "UTF-8"}).exitCode, 0);
    EXPECT_EQ(ReadBytes(utf8Again), ReadBytes(utf8));
}

namespace {

// A UDS document whose parameter has the given unit.
std::string DocumentWithUnit(const std::string& unit) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<ECU protocol=\"UDS\">\n"
           " <INSTANCE id=\"ReadResistance\">\n"
           "  <RESPONSE>\n"
           "   <PARAMETER id=\"Resistance\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"" +
           unit +
           "\" value=\"\" semantics=\"\" convId=\"\"/>\n"
           "  </RESPONSE>\n"
           " </INSTANCE>\n"
           "</ECU>\n";
}

}  // namespace

TEST(ConvertCommand, CharacterTheEncodingLacksIsRefusedNamingTheItem) {
    TempDir dir;
    const std::string in = dir.Path("ohm.xml");
    const std::string out = dir.Path("ohm-1252.xml");
    WriteBytes(in, DocumentWithUnit("k\xCE\xA9"));
    const auto result = RunTool({"convert", in, out, "--encoding", "windows-1252"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "zekl: cannot write '" + out +
                  "': the unit of parameter 'Resistance' in the response of instance 'ReadResistance' "
                  "holds '\xCE\xA9' (U+03A9), which Windows-1252 cannot carry\n");
    EXPECT_FALSE(zekl_test::FileExists(out));
}

TEST(ConvertCommand, ForceWritesAQuestionMarkForIt) {
    TempDir dir;
    const std::string in = dir.Path("ohm.xml");
    const std::string out = dir.Path("ohm-1252.xml");
    WriteBytes(in, DocumentWithUnit("k\xCE\xA9"));
    const auto result = RunTool({"convert", in, out, "--encoding", "windows-1252", "--force"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(ReadBytes(out).find("unit=\"k?\""), std::string::npos);
}

TEST(ConvertCommand, MarkupInAnyValueIsEscaped) {
    TempDir dir;
    const std::string in = dir.Path("amp.xml");
    const std::string out = dir.Path("amp-out.xml");
    WriteBytes(in, DocumentWithUnit("N&amp;m &lt;x&gt;"));
    ASSERT_EQ(RunTool({"convert", in, out}).exitCode, 0);
    EXPECT_NE(ReadBytes(out).find("unit=\"N&amp;m &lt;x&gt;\""), std::string::npos) << ReadBytes(out);
    const auto check = RunTool({"check", out});
    EXPECT_EQ(check.exitCode, 0) << check.out << check.err;
}

TEST(ConvertCommand, StandardInputToStandardOutput) {
    TempDir dir;
    const auto result =
        zekl_test::RunToolWithInput({"convert", "-", "-", "--encoding", "utf-8"}, ExamplePath("kwp_ecu.xml"));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
    WriteBytes(dir.Path("utf8.xml"), result.out);
    const auto back = RunTool({"convert", dir.Path("utf8.xml"), "-", "-e", "windows-1252"});
    EXPECT_EQ(back.exitCode, 0) << back.err;
    EXPECT_EQ(back.out, ReadBytes(ExamplePath("kwp_ecu.xml")));
}

TEST(ConvertCommand, StandardInputKeepsItsDeclaredEncoding) {
    TempDir dir;
    const std::string out = dir.Path("kwp.xml");
    const auto result = zekl_test::RunToolWithInput({"convert", "-", out}, ExamplePath("kwp_ecu.xml"));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadBytes(out), ReadBytes(ExamplePath("kwp_ecu.xml")));
    EXPECT_EQ(result.out,
              "wrote '" + out + "': " + std::to_string(ReadBytes(out).size()) + " bytes, Windows-1252\n");
}

TEST(ConvertCommand, RefusedStandardInputIsNamed) {
    const auto result = RunTool({"convert", "-", "-"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(
        result.err,
        "zekl: cannot read standard input: not a diagnostic description document (no <ECU element in its "
        "first 5 lines)\n");
}

// A factor with a decimal comma reads as 0 without a read message; writing it back would turn
// "0,25" into "0", so convert refuses it like a read error, naming the place and the item.
TEST(ConvertCommand, NumberReadOnlyInPartRefusesTheConversion) {
    TempDir dir;
    std::string text = ReadBytes(ExamplePath("uds_ecu.xml"));
    const std::string factor = "factor=\"0.2500000000000000\"";
    const std::size_t at = text.find(factor);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, factor.size(), "factor=\"0,25\"");
    const std::string in = dir.Path("comma.xml");
    const std::string out = dir.Path("out.xml");
    WriteBytes(in, text);
    WriteBytes(out, "keep me");
    const auto refused = RunTool({"convert", in, out});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(zekl_test::Lines(refused.err).size(), 1u) << refused.err;
    EXPECT_EQ(refused.err.rfind("zekl: " + in + ":", 0), 0u) << refused.err;
    EXPECT_NE(
        refused.err.find(": conversion EngineSpeed_Formula: factor '0,25' is not a number; it reads as 0"),
        std::string::npos)
        << refused.err;
    EXPECT_EQ(ReadBytes(out), "keep me");

    const auto forced = RunTool({"convert", in, out, "--force"});
    EXPECT_EQ(forced.exitCode, 0) << forced.err;
    EXPECT_EQ(forced.err.rfind("zekl: warning: " + in + ":", 0), 0u) << forced.err;
    EXPECT_NE(ReadBytes(out).find("id=\"EngineSpeed_Formula\""), std::string::npos);
}
