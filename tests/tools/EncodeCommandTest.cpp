// zekl encode: the bytes of a message from values in their natural or raw form.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::ExamplePath;
using zekl_test::RunTool;

namespace {

const std::string kUds = ExamplePath("uds_ecu.xml");
const std::string kKwp = ExamplePath("kwp_ecu.xml");

}  // namespace

TEST(EncodeCommand, RequestWithOnlyConstantsNeedsNoValues) {
    const auto result = RunTool({"encode", kUds, "ReadDataByIdentifier_VIN"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "22 F1 90\n");
    EXPECT_TRUE(result.err.empty());
}

TEST(EncodeCommand, PhysicalValueGoesThroughTheFormula) {
    const auto result =
        RunTool({"encode", kUds, "ReadDataByIdentifier_EngineSpeed", "--response", "EngineSpeed=750"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "62 01 00 0B B8\n");
}

TEST(EncodeCommand, RawValueIsTakenAsItIs) {
    const auto result =
        RunTool({"encode", kUds, "ReadDataByIdentifier_EngineSpeed", "--response", "EngineSpeed=raw:0x0BB8"});
    EXPECT_EQ(result.out, "62 01 00 0B B8\n");
}

TEST(EncodeCommand, TableTextAndNegativeTemperature) {
    EXPECT_EQ(RunTool({"encode", kUds, "ReadDataByIdentifier_ActiveDiagnosticSession", "--response",
                       "ActiveSession=Programming session"})
                  .out,
              "62 F1 86 02\n");
    EXPECT_EQ(RunTool({"encode", kUds, "ReadDataByIdentifier_CoolantTemperature", "--response",
                       "CoolantTemperature=-40"})
                  .out,
              "62 01 05 00\n");
}

TEST(EncodeCommand, BytesAndTexts) {
    EXPECT_EQ(RunTool({"encode", kUds, "SecurityAccess_SendKey", "Key=11223344"}).out, "27 02 11 22 33 44\n");
    EXPECT_EQ(RunTool({"encode", kKwp, "ReadEcuIdentification_SparePartNumber", "--response",
                       "SparePartNumber=0281002"})
                  .out,
              "5A 87 30 32 38 31 30 30 32 00 00 00 00\n");
}

TEST(EncodeCommand, KwpIntelOrder) {
    const auto result = RunTool({"encode", kKwp, "ReadDataByLocalIdentifier_EngineData", "--response",
                                 "EngineSpeed=750", "IntakeAirTemperature=27", "EngineState=Running"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "61 01 B8 0B 64 02\n");
    EXPECT_EQ(RunTool({"encode", kKwp, "ReadMemoryByAddress_Calibration"}).out, "23 45 23 01 04\n");
}

TEST(EncodeCommand, NegativeResponseFillsItsConstants) {
    EXPECT_EQ(RunTool({"encode", kUds, "EcuReset_HardReset", "--negative", "NRC=0x22"}).out, "7F 11 22\n");
}

TEST(EncodeCommand, JsonGivesHexAndBytes) {
    const auto result = RunTool({"encode", kUds, "EcuReset_HardReset", "--json"});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["instance"], "EcuReset_HardReset");
    EXPECT_EQ(json["kind"], "request");
    EXPECT_EQ(json["hex"], "1101");
    EXPECT_EQ(json["bytes"], nlohmann::json::array({0x11, 0x01}));
}

TEST(EncodeCommand, MissingValueNamesTheParameterAndExitsOne) {
    const auto result = RunTool({"encode", kUds, "ReadDataByIdentifier_EngineSpeed", "--response"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(
        result.err,
        "zekl: cannot encode the response of 'ReadDataByIdentifier_EngineSpeed': parameter 'EngineSpeed': "
        "needs a value\n");
}

TEST(EncodeCommand, ValueOutOfRangeExitsOne) {
    const auto result =
        RunTool({"encode", kUds, "ReadDataByIdentifier_EngineSpeed", "--response", "EngineSpeed=20000"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "zekl: cannot encode the response of 'ReadDataByIdentifier_EngineSpeed': parameter "
              "'EngineSpeed': raw "
              "value 80000 does not fit 16 bits (unsigned)\n");
}

TEST(EncodeCommand, UnknownTableTextAndParameterExitOne) {
    EXPECT_EQ(RunTool({"encode", kUds, "ReadDataByIdentifier_MilStatus", "--response", "MilStatus=Purple"})
                  .exitCode,
              1);
    EXPECT_EQ(RunTool({"encode", kUds, "EcuReset_HardReset", "Speed=1"}).exitCode, 1);
}

TEST(EncodeCommand, UnknownInstanceOrMessageExitsOne) {
    EXPECT_EQ(RunTool({"encode", kUds, "NoSuchService"}).exitCode, 1);
    const auto noResponse = RunTool({"encode", kKwp, "TesterPresent", "--response", "X=1"});
    EXPECT_EQ(noResponse.exitCode, 1);
    const auto none = RunTool(
        {"encode", zekl_test::DataPath("missing_conversion.xml"), "ReadDataByIdentifier_OilLevel", "SID=1"});
    EXPECT_EQ(none.err,
              "zekl: cannot encode the request of 'ReadDataByIdentifier_OilLevel': instance "
              "'ReadDataByIdentifier_OilLevel' has no request\n");
}

TEST(EncodeCommand, UsageErrorsExitTwo) {
    EXPECT_EQ(RunTool({"encode"}).exitCode, 2);
    EXPECT_EQ(RunTool({"encode", kUds}).exitCode, 2);
    const auto noEquals = RunTool({"encode", kUds, "EcuReset_HardReset", "ResetType"});
    EXPECT_EQ(noEquals.exitCode, 2);
    EXPECT_EQ(noEquals.err, "zekl: encode: 'ResetType' is not NAME=VALUE (see 'zekl encode --help')\n");
    EXPECT_EQ(RunTool({"encode", kUds, "EcuReset_HardReset", "--response", "--negative"}).exitCode, 2);
}

TEST(EncodeCommand, DocumentFromStandardInput) {
    const auto result = zekl_test::RunToolWithInput(
        {"encode", "-", "ReadDataByIdentifier_EngineSpeed", "--response", "EngineSpeed=750"}, kUds);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "62 01 00 0B B8\n");
}

TEST(EncodeCommand, MissingInstanceIsNamed) {
    EXPECT_EQ(RunTool({"encode", kUds}).err,
              "zekl: encode: missing argument INSTANCE (see 'zekl encode --help')\n");
}
