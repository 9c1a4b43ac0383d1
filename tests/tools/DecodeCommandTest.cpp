// zekl decode: recognising and decoding messages given as arguments and as a trace, with
// their exit status.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::Cells;
using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::Lines;
using zekl_test::Row;
using zekl_test::RunTool;
using zekl_test::RunToolWithInput;

namespace {

using Cells_ = std::vector<std::string>;

const std::string kUds = ExamplePath("uds_ecu.xml");

}  // namespace

TEST(DecodeCommand, RecognisesAResponseAndPrintsRawAndPhysicalValues) {
    const auto result = RunTool({"decode", kUds, "62 01 00 0B B8"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 5u) << result.out;
    EXPECT_EQ(lines[0], "62 01 00 0B B8: ReadDataByIdentifier_EngineSpeed response");
    EXPECT_EQ(Cells(lines[1]), (Cells_{"PARAMETER", "BYTE.BIT", "LEN", "RAW", "PHYSICAL"}));
    EXPECT_EQ(Row(result.out, "SID"), (Cells_{"SID", "0.0", "8", "0x62", "98"}));
    EXPECT_EQ(Row(result.out, "DataIdentifier"), (Cells_{"DataIdentifier", "1.0", "16", "0x0100", "256"}));
    EXPECT_EQ(Row(result.out, "EngineSpeed"), (Cells_{"EngineSpeed", "3.0", "16", "0x0BB8", "750 rpm"}));
}

TEST(DecodeCommand, HexWithoutBlanksAndSeveralMessages) {
    const auto result = RunTool({"decode", kUds, "6201055A", "0x50 0x01 0x00 0x32 0x01 0xF4"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_NE(result.out.find("62 01 05 5A: ReadDataByIdentifier_CoolantTemperature response\n"),
              std::string::npos);
    EXPECT_EQ(Row(result.out, "CoolantTemperature"), (Cells_{"CoolantTemperature", "3.0", "8", "0x5A",
                                                             "50 \xC2\xB0"
                                                             "C"}));
    EXPECT_NE(result.out.find("\n\n50 01 00 32 01 F4: DiagnosticSessionControl_Default response\n"),
              std::string::npos);
    EXPECT_EQ(Row(result.out, "SessionType"), (Cells_{"SessionType", "1.0", "8", "0x01", "Default session"}));
}

TEST(DecodeCommand, NegativeResponsePrintsTheNrcAndItsText) {
    const auto result = RunTool({"decode", kUds, "7F 22 31"});
    EXPECT_EQ(result.exitCode, 0);
    const auto lines = Lines(result.out);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(
        lines[0],
        "7F 22 31: ReadDataByIdentifier_EngineSpeed negative response (6 instances have request SID 0x22; "
        "the first is shown)");
    EXPECT_EQ(lines[1], "NRC 0x31 Request out of range");
    EXPECT_EQ(Row(result.out, "NRC"), (Cells_{"NRC", "2.0", "8", "0x31", "49"}));
}

TEST(DecodeCommand, ProblemsAreListedAndExitOne) {
    const auto result = RunTool({"decode", kUds, "62 01 20 07 00"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Row(result.out, "MilStatus"), (Cells_{"MilStatus", "3.0", "8", "0x07", "-", "no table entry"}));
    EXPECT_NE(result.out.find("problem: parameter 'MilStatus': no table entry\n"), std::string::npos);
}

TEST(DecodeCommand, TrailingDataIsAProblem) {
    const auto result = RunTool({"decode", kUds, "62 01 00 0B B8 00"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.out.find("problem: trailing data (6 bytes, the message has 5)\n"), std::string::npos);
}

TEST(DecodeCommand, UnrecognisedMessageExitsOne) {
    const auto result = RunTool({"decode", kUds, "22 99 99"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "22 99 99: not recognised\n");
}

TEST(DecodeCommand, GivenInstanceShowsWhyAMessageDoesNotMatch) {
    const auto result = RunTool(
        {"decode", kUds, "--instance", "ReadDataByIdentifier_EngineSpeed", "--response", "62 01 05 0B B8"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Lines(result.out)[0], "62 01 05 0B B8: ReadDataByIdentifier_EngineSpeed response");
    EXPECT_EQ(Row(result.out, "DataIdentifier"),
              (Cells_{"DataIdentifier", "1.0", "16", "0x0105", "261", "constant mismatch"}));
    EXPECT_NE(result.out.find("problem: parameter 'DataIdentifier': constant mismatch\n"), std::string::npos);
}

TEST(DecodeCommand, GivenInstanceRequestIsTheDefault) {
    const auto result = RunTool({"decode", kUds, "--instance", "ReadDataByIdentifier_VIN", "22 F1 90"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Lines(result.out)[0], "22 F1 90: ReadDataByIdentifier_VIN request");
}

TEST(DecodeCommand, GivenInstanceNegativeResponse) {
    const auto result =
        RunTool({"decode", kUds, "--instance", "EcuReset_HardReset", "--negative", "7F 11 22"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Lines(result.out)[0], "7F 11 22: EcuReset_HardReset negative response");
    EXPECT_EQ(Lines(result.out)[1], "NRC 0x22 Conditions not correct");
}

TEST(DecodeCommand, TraceFromStandardInputDecodesEveryLine) {
    const auto result = RunToolWithInput({"decode", kUds, "-"}, DataPath("uds_trace.txt"));
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_TRUE(result.err.empty()) << result.err;
    std::vector<std::string> headings;
    for (const std::string& line : Lines(result.out)) {
        if (line.find(": ") != std::string::npos && line.find("  ") == std::string::npos) {
            headings.push_back(line);
        }
    }
    ASSERT_EQ(headings.size(), 10u) << result.out;
    EXPECT_EQ(headings[0], "10 03: DiagnosticSessionControl_Extended request");
    EXPECT_EQ(headings[7], "62 01 20 02 00: ReadDataByIdentifier_MilStatus response");
    EXPECT_EQ(headings[8], "2E 02 00 0C 80: WriteDataByIdentifier_IdleSpeedSetpoint request");
    EXPECT_EQ(headings[9], "7F 2E 22: WriteDataByIdentifier_IdleSpeedSetpoint negative response");
}

TEST(DecodeCommand, TraceWithFaultsExitsOneAndDecodesTheRest) {
    const auto result = RunToolWithInput({"decode", kUds, "-", "--json"}, DataPath("uds_trace_faults.txt"));
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    ASSERT_TRUE(json.is_array());
    ASSERT_EQ(json.size(), 5u);
    EXPECT_EQ(json[0]["problem"], "trailing data");
    EXPECT_EQ(json[0]["clean"], false);
    EXPECT_EQ(json[1]["params"][2]["problem"], "no table entry");
    EXPECT_EQ(json[2]["recognised"], false);
    EXPECT_TRUE(json[2]["instance"].is_null());
    EXPECT_EQ(json[3]["clean"], true);
    EXPECT_EQ(json[3]["kind"], "negative");
    EXPECT_EQ(json[3]["nrc"], 0x31);
    EXPECT_EQ(json[3]["nrcText"], "Request out of range");
    EXPECT_EQ(json[4]["input"], "not hex");
    EXPECT_EQ(json[4]["error"], "line 6 of standard input: not a hex digit: 'n'");
}

TEST(DecodeCommand, JsonGivesTypedValues) {
    const auto result = RunTool({"decode", kUds, "--json", "62 01 00 0B B8",
                                 "62 F1 90 57 30 4C 30 30 30 30 34 33 4D 42 35 34 31 33 32 36"});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    ASSERT_EQ(json.size(), 2u);
    const nlohmann::json& speed = json[0];
    EXPECT_EQ(speed["instance"], "ReadDataByIdentifier_EngineSpeed");
    EXPECT_EQ(speed["kind"], "response");
    EXPECT_EQ(speed["recognised"], true);
    EXPECT_EQ(speed["matches"], 1);
    EXPECT_EQ(speed["params"][2]["id"], "EngineSpeed");
    EXPECT_EQ(speed["params"][2]["raw"], 3000);
    EXPECT_EQ(speed["params"][2]["physical"], 750.0);
    EXPECT_EQ(speed["params"][2]["unit"], "rpm");
    EXPECT_EQ(speed["params"][2]["byte"], 3);
    EXPECT_EQ(json[1]["params"][2]["raw"], "W0L000043MB541326");
    EXPECT_TRUE(json[1]["params"][2]["physical"].is_null());
}

TEST(DecodeCommand, ALongTraceDecodesInOneCall) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("trace.txt");
    std::string trace;
    for (int i = 0; i < 3000; ++i) {
        trace += i % 3 == 0 ? "22 01 00\n" : (i % 3 == 1 ? "62 01 00 0B B8\n" : "7F 22 78\n");
    }
    zekl_test::WriteBytes(path, trace);
    const auto result = RunToolWithInput({"decode", kUds, "--json", "-"}, path);
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    ASSERT_EQ(json.size(), 3000u);
    EXPECT_EQ(json[2999]["nrcText"], "Request correctly received - response pending");
}

TEST(DecodeCommand, UsageErrorsExitTwo) {
    EXPECT_EQ(RunTool({"decode"}).exitCode, 2);
    EXPECT_EQ(RunTool({"decode", kUds}).exitCode, 2);
    const auto badHex = RunTool({"decode", kUds, "62 0G"});
    EXPECT_EQ(badHex.exitCode, 2);
    EXPECT_EQ(badHex.err, "zekl: decode: HEX '62 0G': not a hex digit: 'G' (see 'zekl decode --help')\n");
    EXPECT_EQ(RunTool({"decode", kUds, "621"}).exitCode, 2);
    EXPECT_EQ(RunTool({"decode", kUds, "--response", "62"}).exitCode, 2);
    EXPECT_EQ(RunTool({"decode", kUds, "--instance", "X", "--response", "--negative", "62"}).exitCode, 2);
}

TEST(DecodeCommand, UnknownInstanceOrMissingMessageExitsOne) {
    const auto unknown = RunTool({"decode", kUds, "--instance", "NoSuchService", "22"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err,
              "zekl: no instance 'NoSuchService' in '" + kUds + "' (see 'zekl show " + kUds + "')\n");
    const auto noResponse = RunTool(
        {"decode", DataPath("missing_conversion.xml"), "--instance", "ReadDataByIdentifier_OilLevel", "22"});
    EXPECT_EQ(noResponse.exitCode, 1);
    EXPECT_EQ(noResponse.err, "zekl: instance 'ReadDataByIdentifier_OilLevel' has no request\n");
}

TEST(DecodeCommand, UnknownConversionIsOnlyAWarning) {
    const auto result = RunTool({"decode", DataPath("missing_conversion.xml"), "62 00 00 2A"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(Row(result.out, "OilLevel"),
              (Cells_{"OilLevel", "3.0", "8", "0x2A", "42 mm", "unknown conversion"}));
    EXPECT_NE(result.out.find("warning: parameter 'OilLevel': unknown conversion\n"), std::string::npos);
}

TEST(DecodeCommand, RefusedDocumentExitsOne) {
    const auto result = RunTool({"decode", DataPath("malformed.xml"), "62"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(Lines(result.err).size(), 1u);
}

TEST(DecodeCommand, KwpSample) {
    const auto result = RunTool({"decode", ExamplePath("kwp_ecu.xml"), "61 01 B8 0B 64 02", "7F 21 12"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(Row(result.out, "IntakeAirTemperature"),
              (Cells_{"IntakeAirTemperature", "4.0", "8", "0x64", "27 degC"}));
    EXPECT_EQ(Row(result.out, "EngineState"), (Cells_{"EngineState", "5.0", "8", "0x02", "Running"}));
    EXPECT_NE(result.out.find("NRC 0x12 Sub-function not supported - invalid format\n"), std::string::npos);
}

TEST(DecodeCommand, DocumentFromStandardInput) {
    const auto result = RunToolWithInput({"decode", "-", "62 01 00 0B B8"}, kUds);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Row(result.out, "EngineSpeed"), (Cells_{"EngineSpeed", "3.0", "16", "0x0BB8", "750 rpm"}));
}

TEST(DecodeCommand, StandardInputCannotBeBothDocumentAndTrace) {
    const auto result = RunToolWithInput({"decode", "-", "-"}, kUds);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err,
              "zekl: decode: standard input cannot hold both the document and the messages (see 'zekl decode "
              "--help')\n");
}

TEST(DecodeCommand, UsageMessagesNameTheOptions) {
    EXPECT_EQ(RunTool({"decode", kUds, "--response", "62"}).err,
              "zekl: decode: --response needs --instance (see 'zekl decode --help')\n");
    EXPECT_EQ(RunTool({"decode", kUds, "-i", "X", "--response", "--negative", "62"}).err,
              "zekl: decode: --response and --negative exclude each other (see 'zekl decode --help')\n");
    EXPECT_EQ(RunTool({"decode", kUds}).err,
              "zekl: decode: missing argument HEX (see 'zekl decode --help')\n");
}
