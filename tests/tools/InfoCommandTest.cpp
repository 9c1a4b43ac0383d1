// zekl info: protocol, declared encoding and item counts.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::RunTool;

TEST(InfoCommand, DescribesTheUdsExample) {
    const std::string path = ExamplePath("uds_ecu.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.err.empty()) << result.err;
    EXPECT_EQ(result.out, "file:        " + path +
                              "\n"
                              "protocol:    UDS\n"
                              "encoding:    utf-8\n"
                              "NRCs:        40\n"
                              "instances:   12\n"
                              "conversions: 7\n"
                              "parameters:  98\n"
                              "messages:    0 errors, 0 warnings\n");
}

TEST(InfoCommand, DescribesTheKwpExample) {
    const std::string path = ExamplePath("kwp_ecu.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "file:        " + path +
                              "\n"
                              "protocol:    KWP\n"
                              "encoding:    Windows-1252\n"
                              "NRCs:        24\n"
                              "instances:   6\n"
                              "conversions: 3\n"
                              "parameters:  47\n"
                              "messages:    0 errors, 0 warnings\n");
}

TEST(InfoCommand, DocumentWithoutDeclarationSaysSo) {
    const auto result = RunTool({"info", DataPath("no_declaration.xml")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("encoding:    (none declared)\n"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("NRCs:        1\n"), std::string::npos) << result.out;
}

// The counts leave out what the read dropped: the tool says so and exits 1.
TEST(InfoCommand, ReadErrorsGiveAWarningAndExitOne) {
    const std::string path = DataPath("duplicate_instance.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.out.find("instances:   1\n"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("messages:    2 errors, "), std::string::npos) << result.out;
    EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u) << result.err;
    EXPECT_EQ(result.err.rfind(
                  "zekl: warning: '" + path + "' has 2 ERROR/FATAL message(s): OpenTag >> INSTANCE", 0),
              0u)
        << result.err;
}

TEST(InfoCommand, MessagesBelowErrorExitZero) {
    const auto result = RunTool({"info", DataPath("unknown_element.xml")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
}

TEST(InfoCommand, JsonHoldsTheSameFacts) {
    const std::string path = ExamplePath("kwp_ecu.xml");
    const auto result = RunTool({"info", path, "--json"});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json, nlohmann::json({{"file", path},
                                    {"protocol", "KWP"},
                                    {"encoding", "Windows-1252"},
                                    {"nrcs", 24},
                                    {"instances", 6},
                                    {"conversions", 3},
                                    {"parameters", 47},
                                    {"errors", 0},
                                    {"warnings", 0}}));
}

TEST(InfoCommand, JsonOfADocumentWithErrorsAndNoDeclaration) {
    const auto faulty = RunTool({"info", "--json", DataPath("duplicate_instance.xml")});
    EXPECT_EQ(faulty.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(faulty.out)["errors"], 2);
    const auto bare = RunTool({"info", "--json", DataPath("no_declaration.xml")});
    EXPECT_TRUE(nlohmann::json::parse(bare.out)["encoding"].is_null());
}

TEST(InfoCommand, ReadsStandardInput) {
    const auto result = zekl_test::RunToolWithInput({"info", "-"}, ExamplePath("uds_ecu.xml"));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out,
              "file:        -\n"
              "protocol:    UDS\n"
              "encoding:    utf-8\n"
              "NRCs:        40\n"
              "instances:   12\n"
              "conversions: 7\n"
              "parameters:  98\n"
              "messages:    0 errors, 0 warnings\n");
}

TEST(InfoCommand, MalformedStandardInputIsNamed) {
    const auto result = zekl_test::RunToolWithInput({"info", "-"}, DataPath("malformed.xml"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err.rfind("zekl: cannot read standard input: ", 0), 0u) << result.err;
    EXPECT_NE(result.err.find("[Line 11, Column "), std::string::npos) << result.err;
}

TEST(InfoCommand, MissingFileExitsOneNamingIt) {
    const std::string path = DataPath("no_such_file.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': No such file or directory\n");
}

TEST(InfoCommand, MalformedDocumentGivesTheParsersFirstError) {
    const std::string path = DataPath("malformed.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err.rfind("zekl: cannot read '" + path + "': ", 0), 0u) << result.err;
    EXPECT_NE(result.err.find("[Line 11, Column "), std::string::npos) << result.err;
    EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u) << result.err;
}

TEST(InfoCommand, OtherXmlIsRefused) {
    const std::string path = DataPath("not_a_description.xml");
    const auto result = RunTool({"info", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "zekl: cannot read '" + path +
                  "': not a diagnostic description document (no <ECU element in its first 5 lines)\n");
}

TEST(InfoCommand, DirectoryIsRefused) {
    const auto result = RunTool({"info", ZEKL_EXAMPLES_DIR});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("zekl: cannot read '", 0), 0u) << result.err;
}

// The tool's own check that the file can be opened used to open it for reading, which waits
// for a writer when the file is a FIFO: the command never ended.
TEST(InfoCommand, FifoIsRefusedWithoutWaitingForAWriter) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("fifo.xml");
    zekl_test::MakeFifo(path);
    const auto result = RunTool({"info", path}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': not a regular file (a FIFO)\n");
}

TEST(InfoCommand, DeviceIsRefusedNamingWhatItIs) {
    const auto result = RunTool({"info", "/dev/zero"}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot read '/dev/zero': not a regular file (a character device)\n");
}

// An endless stream on standard input is refused from its head, not read until memory ends.
TEST(InfoCommand, EndlessStandardInputIsRefusedAtOnce) {
    const auto result = zekl_test::RunToolWithInput({"info", "-"}, "/dev/zero", 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(
        result.err,
        "zekl: cannot read standard input: not a diagnostic description document (no <ECU element in its "
        "first 5 lines)\n");
}

// Standard input counts as a description by the same rule as a file: <ECU in its first five lines.
TEST(InfoCommand, StandardInputFollowsTheRuleOfFiles) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("late.xml");
    zekl_test::WriteBytes(
        path, "<?xml version=\"1.0\"?>\n<!-- 1 -->\n<!-- 2 -->\n<!-- 3 -->\n<!-- 4 -->\n<ECU/>\n");
    const auto file = RunTool({"info", path});
    const auto input = zekl_test::RunToolWithInput({"info", "-"}, path);
    EXPECT_EQ(file.exitCode, 1);
    EXPECT_EQ(input.exitCode, 1);
    EXPECT_NE(input.err.find("not a diagnostic description document"), std::string::npos) << input.err;
}
