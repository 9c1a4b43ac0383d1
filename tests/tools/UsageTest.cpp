// How zekl answers being called wrongly, and its help texts.
#include <gtest/gtest.h>

#include "ToolRunner.h"

using zekl_test::Lines;
using zekl_test::RunTool;

namespace {

const std::vector<std::string> kCommands = {"version", "new",    "info",   "check", "show",
                                            "convert", "decode", "encode", "lint",  "diff"};

}  // namespace

TEST(Usage, NoArgumentsPrintsOverviewOnStderrAndExitsTwo) {
    const auto result = RunTool({});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_NE(result.err.find("Usage: zekl <command>"), std::string::npos);
}

TEST(Usage, HelpListsEveryCommandAndExitsZero) {
    for (const char* flag : {"--help", "-h", "help"}) {
        const auto result = RunTool({flag});
        EXPECT_EQ(result.exitCode, 0) << flag;
        EXPECT_TRUE(result.err.empty()) << flag;
        for (const std::string& command : kCommands) {
            EXPECT_NE(result.out.find("  " + command + " "), std::string::npos) << flag << " " << command;
        }
    }
}

TEST(Usage, EveryCommandHasItsOwnHelp) {
    for (const std::string& command : kCommands) {
        const auto result = RunTool({command, "--help"});
        EXPECT_EQ(result.exitCode, 0) << command;
        EXPECT_EQ(result.out.rfind("Usage: zekl " + command, 0), 0u) << result.out;
        EXPECT_TRUE(result.err.empty()) << command;
    }
}

TEST(Usage, HelpCommandGivesTheCommandsHelp) {
    EXPECT_EQ(RunTool({"help", "check"}).out, RunTool({"check", "--help"}).out);
}

TEST(Usage, HelpWinsOverMissingArguments) {
    const auto result = RunTool({"convert", "-h"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("--encoding"), std::string::npos);
}

TEST(Usage, UnknownCommandIsOneLineOnStderrAndExitsTwo) {
    const auto result = RunTool({"frobnicate", "x.xml"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: unknown command 'frobnicate' (see 'zekl --help')\n");
}

TEST(Usage, UnknownToolOptionExitsTwo) {
    const auto result = RunTool({"--frobnicate"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "zekl: unknown option '--frobnicate' (see 'zekl --help')\n");
}

TEST(Usage, UnknownCommandOptionNamesCommandAndOption) {
    const auto result = RunTool({"info", "--verbose", zekl_test::ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: info: unknown option '--verbose' (see 'zekl info --help')\n");
}

TEST(Usage, MissingArgumentIsNamed) {
    const auto info = RunTool({"info"});
    EXPECT_EQ(info.exitCode, 2);
    EXPECT_EQ(info.err, "zekl: info: missing argument FILE (see 'zekl info --help')\n");
    const auto convert = RunTool({"convert", zekl_test::ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(convert.exitCode, 2);
    EXPECT_EQ(convert.err, "zekl: convert: missing argument OUT (see 'zekl convert --help')\n");
}

TEST(Usage, SurplusArgumentIsRefused) {
    const auto result = RunTool({"show", "a.xml", "b.xml"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "zekl: show: unexpected argument 'b.xml' (see 'zekl show --help')\n");
}

TEST(Usage, OptionWithoutValueIsRefused) {
    const auto result = RunTool({"show", zekl_test::ExamplePath("uds_ecu.xml"), "--instance"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "zekl: show: option '--instance' needs a value (see 'zekl show --help')\n");
}

TEST(Usage, ErrorsAreSingleLines) {
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{"new"},
                                               {"new", "--protocol", "CAN"},
                                               {"check", "--level", "9", "x.xml"},
                                               {"convert", "a", "b", "c"}}) {
        const auto result = RunTool(args);
        EXPECT_EQ(result.exitCode, 2) << args[0];
        EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
        EXPECT_EQ(result.err.rfind("zekl: ", 0), 0u) << result.err;
    }
}

TEST(Usage, HelpOfAnUnknownCommandIsAUsageError) {
    const auto result = RunTool({"help", "frobnicate"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: unknown command 'frobnicate' (see 'zekl --help')\n");
}

TEST(Usage, HelpAloneIsTheOverview) {
    const auto result = RunTool({"help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, RunTool({"--help"}).out);
}

// Every command that reads a document says that '-' is standard input.
TEST(Usage, DocumentArgumentsOfferStandardInput) {
    for (const char* command : {"info", "check", "show", "convert", "decode", "encode", "lint", "diff"}) {
        const std::string help = RunTool({command, "--help"}).out;
        EXPECT_NE(help.find("the description document; '-' reads it from standard input"), std::string::npos)
            << command;
        EXPECT_NE(help.find("  -h, --help "), std::string::npos) << command;
    }
}

TEST(Usage, TheLastOfARepeatedOptionCounts) {
    const auto result = RunTool(
        {"check", "--level", "1", "--level", "2", zekl_test::DataPath("missing_parameter_attribute.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Lines(result.out).size(), 1u) << result.out;
    EXPECT_NE(result.out.find(":8:4: ERROR: "), std::string::npos) << result.out;
}

TEST(Usage, DoubleDashEndsTheOptions) {
    const auto result =
        RunTool({"encode", zekl_test::ExamplePath("uds_ecu.xml"), "--", "EcuReset_HardReset"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "11 01\n");
}

TEST(Usage, OptionValuesTakeEveryForm) {
    const std::string path = zekl_test::DataPath("missing_parameter_attribute.xml");
    const std::string expected = RunTool({"check", "--level", "2", path}).out;
    EXPECT_EQ(RunTool({"check", "--level=2", path}).out, expected);
    EXPECT_EQ(RunTool({"check", "-l", "2", path}).out, expected);
    EXPECT_EQ(RunTool({"check", "-l2", path}).out, expected);
    EXPECT_EQ(RunTool({"check", path, "-l", "error"}).out, expected);
}
