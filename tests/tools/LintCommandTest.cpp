// zekl lint: findings as compilers print them, JSON, and the exit status by severity.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::Lines;
using zekl_test::RunTool;

namespace {

const char* const kKwpCodes =
    "0x11, 0x12, 0x21, 0x22, 0x23, 0x31, 0x33, 0x35, 0x36, 0x37, 0x50, 0x51, 0x52, 0x53, 0x71, 0x72, 0x74, "
    "0x75, "
    "0x76, 0x77, 0x78, 0x79, 0x80";

// The UDS sample with one more conversion that nothing uses: a warning and nothing else.
std::string WithUnusedConversion(const zekl_test::TempDir& dir) {
    std::string text = zekl_test::ReadBytes(ExamplePath("uds_ecu.xml"));
    const std::size_t end = text.find("</ECU>");
    text.insert(end, " <CONVERSION id=\"Spare_Formula\" factor=\"2\" offset=\"0\"/>\n");
    const std::string path = dir.Path("unused.xml");
    zekl_test::WriteBytes(path, text);
    return path;
}

}  // namespace

TEST(LintCommand, SamplesAreClean) {
    for (const char* name : {"uds_ecu.xml", "kwp_ecu.xml"}) {
        const std::string path = ExamplePath(name);
        const auto result = RunTool({"lint", path});
        EXPECT_EQ(result.exitCode, 0) << result.out;
        EXPECT_EQ(result.out, path + ": clean: no findings\n");
        EXPECT_TRUE(result.err.empty());
    }
}

TEST(LintCommand, FindingsArePrintedInDocumentOrderWithPlaceAndRule) {
    const std::string path = DataPath("lint_overlap_and_hole.xml");
    const auto result = RunTool({"lint", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.empty()) << result.err;
    EXPECT_EQ(
        result.out,
        path + ":3:2: info: the NRC table lacks 23 of the 24 KWP standard codes: " + kKwpCodes +
            " [nrc-standard]\n" + path +
            ":9:4: error: ReadDataByLocalIdentifier_Speed/REQUEST/LocalIdentifier: bits 4 to 7 are also in "
            "'SID' (bits 0 to 7) [overlap]\n" +
            path +
            ":13:4: warning: ReadDataByLocalIdentifier_Speed/RESPONSE/Speed: bits 8 to 15 before it are in "
            "no "
            "parameter (mark them with a GAP parameter) [hole]\n" +
            path + ": 1 error, 1 warning, 1 info\n");
}

TEST(LintCommand, SeverityDecidesTheExitStatusButEveryFindingIsPrinted) {
    zekl_test::TempDir dir;
    const std::string path = WithUnusedConversion(dir);
    const std::string finding =
        path +
        ":255:2: warning: conversion Spare_Formula: no parameter uses the conversion [conversion-unused]\n";
    const auto byDefault = RunTool({"lint", path});
    EXPECT_EQ(byDefault.exitCode, 0);
    EXPECT_EQ(byDefault.out, finding + path + ": 0 errors, 1 warning, 0 infos\n");
    EXPECT_EQ(RunTool({"lint", path, "--severity", "error"}).exitCode, 0);
    EXPECT_EQ(RunTool({"lint", path, "--severity", "warning"}).exitCode, 1);
    EXPECT_EQ(RunTool({"lint", path, "--severity=info"}).exitCode, 1);
    EXPECT_EQ(RunTool({"lint", "-s", "warning", path}).exitCode, 1);
}

TEST(LintCommand, JsonHasEveryFindingWithItsFields) {
    const std::string path = DataPath("lint_overlap_and_hole.xml");
    const auto result = RunTool({"lint", path, "--json", "--severity", "info"});
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["file"], path);
    EXPECT_EQ(json["read"], true);
    EXPECT_EQ(json["severity"], "info");
    EXPECT_EQ(json["failed"], true);
    EXPECT_EQ(json["counts"]["error"], 1);
    EXPECT_EQ(json["counts"]["warning"], 1);
    EXPECT_EQ(json["counts"]["info"], 1);
    ASSERT_EQ(json["findings"].size(), 3u);
    const nlohmann::json& overlap = json["findings"][1];
    EXPECT_EQ(overlap["rule"], "overlap");
    EXPECT_EQ(overlap["severity"], "error");
    EXPECT_EQ(overlap["line"], 9);
    EXPECT_EQ(overlap["column"], 4);
    EXPECT_EQ(overlap["path"], (nlohmann::json{{"instance", "ReadDataByLocalIdentifier_Speed"},
                                               {"message", "REQUEST"},
                                               {"parameter", "LocalIdentifier"}}));
    EXPECT_EQ(overlap["text"], "bits 4 to 7 are also in 'SID' (bits 0 to 7)");
    EXPECT_EQ(json["findings"][0]["path"], nlohmann::json::object());
}

TEST(LintCommand, JsonOfACleanDocument) {
    const auto result = RunTool({"lint", "--json", ExamplePath("kwp_ecu.xml")});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["failed"], false);
    EXPECT_EQ(json["findings"], nlohmann::json::array());
}

TEST(LintCommand, ReadErrorsAreFindingsOfTheRuleRead) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"lint", path});
    EXPECT_EQ(result.exitCode, 1);
    // After the NRC table's info (the table is empty), at the parameter the reader refused;
    // then the empty negative response.
    ASSERT_EQ(Lines(result.out).size(), 4u);
    EXPECT_EQ(
        Lines(result.out)[1],
        path +
            ":8:4: error: EcuReset_HardReset/REQUEST/Broken: OpenTag >> PARAMETER element: Not all required "
            "attributes of param with id='Broken' are available! Invalid or missing attribute(s): bitLen  "
            "[read]");
}

TEST(LintCommand, ARefusedDocumentPrintsWhyAndFails) {
    const std::string path = DataPath("malformed.xml");
    const auto result = RunTool({"lint", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Lines(result.out)[0],
              path + ":11:1: error: unterminated end tag 'INSTANCE' [Line 11, Column 1] [read]");
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': the document was refused\n");
    const auto json = RunTool({"lint", path, "--json"});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(json.out)["read"], false);
}

TEST(LintCommand, FilesThatAreNoDocumentsAreRefusedBeforeReading) {
    const std::string missing = DataPath("no_such_file.xml");
    const auto result = RunTool({"lint", missing});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + missing + "': No such file or directory\n");
    const auto other = RunTool({"lint", DataPath("not_a_description.xml")});
    EXPECT_EQ(other.exitCode, 1);
    EXPECT_NE(other.err.find("not a diagnostic description document"), std::string::npos);
}

TEST(LintCommand, UsageErrors) {
    const auto severity = RunTool({"lint", "--severity", "fatal", ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(severity.exitCode, 2);
    EXPECT_EQ(severity.err,
              "zekl: lint: invalid severity 'fatal' (use error, warning or info) (see 'zekl lint --help')\n");
    EXPECT_EQ(RunTool({"lint"}).exitCode, 2);
    EXPECT_EQ(RunTool({"lint", "a.xml", "b.xml"}).exitCode, 2);
    EXPECT_EQ(RunTool({"lint", "a.xml", "--severity"}).exitCode, 2);
}
