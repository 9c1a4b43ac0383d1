// zekl show: the instance list and one instance's parameter tables.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::Cells;
using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::Lines;
using zekl_test::Row;
using zekl_test::RunTool;

namespace {

using Cells_ = std::vector<std::string>;

// The table printed under `heading` ("REQUEST (3 parameters)" ...), up to the next blank line.
std::string Section(const std::string& text, const std::string& heading) {
    std::string section;
    bool inside = false;
    for (const std::string& line : Lines(text)) {
        if (!inside) {
            inside = line.rfind(heading, 0) == 0;
            continue;
        }
        if (line.empty()) {
            break;
        }
        section += line + "\n";
    }
    return section;
}

std::string ShowInstance(const std::string& document, const std::string& id) {
    const auto result = RunTool({"show", ExamplePath(document), "--instance", id});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
    return result.out;
}

}  // namespace

TEST(ShowCommand, ListsEveryInstanceInDocumentOrder) {
    const auto result = RunTool({"show", ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(result.exitCode, 0);
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 13u);
    EXPECT_EQ(Cells(lines[0]), (Cells_{"INSTANCE", "SID", "REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"}));
    EXPECT_EQ(Cells(lines[1]), (Cells_{"DiagnosticSessionControl_Default", "10", "2", "4", "3"}));
    EXPECT_EQ(Cells(lines[12]), (Cells_{"WriteDataByIdentifier_IdleSpeedSetpoint", "2E", "3", "2", "3"}));
}

TEST(ShowCommand, MarksAbsentMessagesWithADash) {
    const auto result = RunTool({"show", DataPath("missing_conversion.xml")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Row(result.out, "ReadDataByIdentifier_OilLevel"),
              (Cells_{"ReadDataByIdentifier_OilLevel", "-", "-", "2", "0"}));
}

TEST(ShowCommand, InstanceTablesShowPositionsTypesAndImages) {
    const std::string out = ShowInstance("uds_ecu.xml", "WriteDataByIdentifier_IdleSpeedSetpoint");
    EXPECT_EQ(Lines(out)[0], "INSTANCE WriteDataByIdentifier_IdleSpeedSetpoint");
    const std::string request = Section(out, "REQUEST (3 parameters)");
    EXPECT_EQ(Cells(Lines(request)[0]), (Cells_{"PARAMETER", "BYTE", "BIT", "LEN", "TYPE", "UNIT",
                                                "SEMANTICS", "CONVERSION", "VALUE", "IMAGE"}));
    EXPECT_EQ(Row(request, "SID"),
              (Cells_{"SID", "0", "0", "8", "unsigned", "-", "SID CONST", "-", "0x2E", "2E"}));
    EXPECT_EQ(Row(request, "DataIdentifier"), (Cells_{"DataIdentifier", "1", "8", "16", "unsigned", "-",
                                                      "XID CONST MOTOROLA", "-", "0x0200", "02 00"}));
    EXPECT_EQ(Row(request, "IdleSpeedSetpoint"),
              (Cells_{"IdleSpeedSetpoint", "3", "24", "16", "unsigned", "rpm", "MOTOROLA",
                      "formula EngineSpeed_Formula", "3200", "0C 80"}));
    const std::string negative = Section(out, "NEGATIVE_RESPONSE (3 parameters)");
    EXPECT_EQ(Row(negative, "SID_NR"),
              (Cells_{"SID_NR", "0", "0", "8", "unsigned", "-", "SID_NR CONST", "-", "0x7F", "7F"}));
    EXPECT_EQ(Row(negative, "NRC"), (Cells_{"NRC", "2", "16", "8", "unsigned", "-", "-", "-", "-", "-"}));
}

TEST(ShowCommand, IntelOrderImagesAreReversed) {
    const std::string request =
        Section(ShowInstance("kwp_ecu.xml", "ReadMemoryByAddress_Calibration"), "REQUEST (3 parameters)");
    EXPECT_EQ(Row(request, "MemoryAddress"), (Cells_{"MemoryAddress", "1", "8", "24", "unsigned", "-",
                                                     "CONST", "-", "0x012345", "45 23 01"}));
    EXPECT_EQ(Row(request, "MemorySize"),
              (Cells_{"MemorySize", "4", "32", "8", "unsigned", "-", "CONST", "-", "4", "04"}));
}

TEST(ShowCommand, TextTableConversionsAreNamedAsTables) {
    const std::string response = Section(ShowInstance("kwp_ecu.xml", "ReadDataByLocalIdentifier_EngineData"),
                                         "RESPONSE (5 parameters)");
    EXPECT_EQ(Row(response, "EngineState"), (Cells_{"EngineState", "5", "40", "8", "unsigned", "-", "-",
                                                    "table EngineState_ValueTable", "-", "-"}));
    EXPECT_EQ(Row(response, "EngineSpeed"), (Cells_{"EngineSpeed", "2", "16", "16", "unsigned", "rpm", "-",
                                                    "formula EngineSpeed_Formula", "-", "-"}));
}

TEST(ShowCommand, RawBytesParameterShowsItsHexValue) {
    const std::string response =
        Section(ShowInstance("uds_ecu.xml", "ReadDataByIdentifier_MilStatus"), "RESPONSE");
    EXPECT_EQ(Row(response, "Reserved"),
              (Cells_{"Reserved", "4", "32", "8", "none", "-", "GAP", "-", "00", "00"}));
}

TEST(ShowCommand, UnknownConversionIsMarkedMissing) {
    const auto result =
        RunTool({"show", DataPath("missing_conversion.xml"), "--instance", "ReadDataByIdentifier_OilLevel"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        Row(Section(result.out, "RESPONSE"), "OilLevel"),
        (Cells_{"OilLevel", "3", "24", "8", "unsigned", "mm", "-", "missing OilLevel_Formula", "-", "-"}));
}

TEST(ShowCommand, NonAsciiUnitsKeepColumnsAligned) {
    const std::string response =
        Section(ShowInstance("uds_ecu.xml", "ReadDataByIdentifier_CoolantTemperature"), "RESPONSE");
    const auto lines = Lines(response);
    ASSERT_EQ(lines.size(), 4u);
    // The SEMANTICS column starts at the same character position in every row, "°C" included.
    const auto semanticsColumn = [](const std::string& line) {
        size_t characters = 0;
        size_t cellsSeen = 0;
        for (size_t i = 0; i < line.size(); ++i) {
            if ((static_cast<unsigned char>(line[i]) & 0xC0) == 0x80) {
                continue;
            }
            if (i > 1 && line[i] != ' ' && line[i - 1] == ' ' && line[i - 2] == ' ' && ++cellsSeen == 6) {
                return characters;
            }
            ++characters;
        }
        return characters;
    };
    EXPECT_EQ(semanticsColumn(lines[0]), semanticsColumn(lines[3])) << response;
    EXPECT_EQ(Row(response, "CoolantTemperature")[5],
              "\xC2\xB0"
              "C");
}

TEST(ShowCommand, UnknownInstanceExitsOne) {
    const std::string path = ExamplePath("uds_ecu.xml");
    const auto result = RunTool({"show", path, "--instance", "NoSuchService"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err,
              "zekl: no instance 'NoSuchService' in '" + path + "' (see 'zekl show " + path + "')\n");
}

TEST(ShowCommand, RefusedDocumentExitsOne) {
    const auto result = RunTool({"show", DataPath("malformed.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(Lines(result.err).size(), 1u);
}

TEST(ShowCommand, FifoIsRefusedWithoutWaitingForAWriter) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("fifo.xml");
    zekl_test::MakeFifo(path);
    const auto result = RunTool({"show", path}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': not a regular file (a FIFO)\n");
}

TEST(ShowCommand, LayoutDrawsEveryBitOfEachMessage) {
    const auto result = RunTool(
        {"show", ExamplePath("uds_ecu.xml"), "--instance", "ReadDataByIdentifier_MilStatus", "--layout"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::string response = Section(result.out, "RESPONSE (5 bytes)");
    const auto lines = Lines(response);
    ASSERT_GE(lines.size(), 12u) << response;
    EXPECT_EQ(lines[0], "       7   6   5   4   3   2   1   0");
    EXPECT_EQ(lines[1], "     +---+---+---+---+---+---+---+---+");
    EXPECT_EQ(lines[2], "   0 | A | A | A | A | A | A | A | A |  A SID");
    EXPECT_EQ(lines[6], "   2 | B | B | B | B | B | B | B | B |  B DataIdentifier");
    EXPECT_EQ(lines[8], "   3 | C | C | C | C | C | C | C | C |  C MilStatus");
    EXPECT_EQ(lines[10], "   4 | D | D | D | D | D | D | D | D |  D Reserved");
    EXPECT_EQ(Row(response, "D"), (Cells_{"D", "Reserved", "bit 32, 8 bits, none, GAP"}));
    EXPECT_EQ(Row(response, "B"),
              (Cells_{"B", "DataIdentifier", "bit 8, 16 bits, unsigned, MOTOROLA, CONST"}));
}

TEST(ShowCommand, LayoutShowsGapsAndOverlaps) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("overlap.xml");
    zekl_test::WriteBytes(path,
                          "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                          "<ECU protocol=\"UDS\">\n"
                          " <INSTANCE id=\"Packed\">\n"
                          "  <REQUEST>\n"
                          "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" "
                          "value=\"0x31\" semantics=\"SID CONST\" convId=\"\"/>\n"
                          "   <PARAMETER id=\"Mode\" bitPos=\"12\" bitLen=\"8\" type=\"unsigned\" unit=\"\" "
                          "value=\"\" semantics=\"MOTOROLA\" convId=\"\"/>\n"
                          "   <PARAMETER id=\"Flag\" bitPos=\"20\" bitLen=\"2\" type=\"unsigned\" unit=\"\" "
                          "value=\"\" semantics=\"\" convId=\"\"/>\n"
                          "  </REQUEST>\n"
                          " </INSTANCE>\n"
                          "</ECU>\n");
    const auto result = RunTool({"show", path, "--instance", "Packed", "--layout"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(Section(result.out, "REQUEST (3 bytes)"));
    ASSERT_GE(lines.size(), 8u) << result.out;
    // Mode is the middle of bytes 1 and 2 read big-endian; Flag lies on bits 4-5 of byte 2.
    EXPECT_EQ(lines[4], "   1 |   |   |   |   | B | B | B | B |  B Mode");
    EXPECT_EQ(lines[6], "   2 | B | B | * | * |   |   |   |   |  B Mode");
    EXPECT_EQ(Row(Section(result.out, "REQUEST (3 bytes)"), "*"),
              (Cells_{"*", "(overlap)", "bits that more than one parameter covers"}));
}

TEST(ShowCommand, LayoutNeedsAnInstance) {
    const auto result = RunTool({"show", ExamplePath("uds_ecu.xml"), "--layout"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "zekl: show: --layout needs --instance (see 'zekl show --help')\n");
}

// What is shown lacks the elements the read dropped: the tool says so and exits 1.
TEST(ShowCommand, ReadErrorsGiveAWarningAndExitOne) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"show", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_FALSE(result.out.empty());
    EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
    EXPECT_EQ(result.err.rfind("zekl: warning: '" + path + "' has 1 ERROR/FATAL message(s): ", 0), 0u)
        << result.err;
    EXPECT_NE(result.err.find("; what is shown may lack what they concern (see 'zekl check')\n"),
              std::string::npos);
}

TEST(ShowCommand, JsonListsTheInstances) {
    const std::string path = DataPath("missing_conversion.xml");
    const auto result = RunTool({"show", path, "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["file"], path);
    const nlohmann::json& instances = json["instances"];
    ASSERT_TRUE(instances.is_array());
    bool found = false;
    for (const nlohmann::json& instance : instances) {
        if (instance["id"] == "ReadDataByIdentifier_OilLevel") {
            found = true;
            EXPECT_TRUE(instance["sid"].is_null());
            EXPECT_TRUE(instance["request"].is_null());
            EXPECT_EQ(instance["response"], 2);
            EXPECT_EQ(instance["negative"], 0);
        }
    }
    EXPECT_TRUE(found) << result.out;
}

TEST(ShowCommand, JsonListMatchesTheTable) {
    const auto text = RunTool({"show", ExamplePath("uds_ecu.xml")});
    const auto json = nlohmann::json::parse(RunTool({"show", ExamplePath("uds_ecu.xml"), "--json"}).out);
    const auto lines = Lines(text.out);
    ASSERT_EQ(json["instances"].size() + 1, lines.size());
    for (std::size_t i = 0; i < json["instances"].size(); ++i) {
        const nlohmann::json& instance = json["instances"][i];
        EXPECT_EQ(Cells(lines[i + 1]),
                  (Cells_{instance["id"].get<std::string>(), instance["sid"].get<std::string>(),
                          std::to_string(instance["request"].get<int>()),
                          std::to_string(instance["response"].get<int>()),
                          std::to_string(instance["negative"].get<int>())}));
    }
}

TEST(ShowCommand, JsonOfAnInstanceHasEachMessagesParameters) {
    const auto result = RunTool(
        {"show", ExamplePath("kwp_ecu.xml"), "--instance", "ReadDataByLocalIdentifier_EngineData", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["id"], "ReadDataByLocalIdentifier_EngineData");
    ASSERT_EQ(json["response"].size(), 5u);
    const nlohmann::json& state = json["response"][4];
    EXPECT_EQ(state, nlohmann::json({{"id", "EngineState"},
                                     {"byte", 5},
                                     {"bitPos", 40},
                                     {"bitLength", 8},
                                     {"type", "unsigned"},
                                     {"unit", ""},
                                     {"semantics", ""},
                                     {"conversion", {{"kind", "table"}, {"id", "EngineState_ValueTable"}}},
                                     {"value", ""},
                                     {"image", nullptr}}));
    const nlohmann::json& sid = json["request"][0];
    EXPECT_EQ(sid["value"], "0x21");
    EXPECT_EQ(sid["image"], "21");
    EXPECT_TRUE(sid["conversion"].is_null());
}

TEST(ShowCommand, JsonOfALayoutHasFieldsAndBits) {
    const auto result = RunTool({"show", ExamplePath("uds_ecu.xml"), "--instance",
                                 "ReadDataByIdentifier_MilStatus", "--layout", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const nlohmann::json json = nlohmann::json::parse(result.out);
    const nlohmann::json& response = json["response"];
    EXPECT_EQ(response["length"], 5);
    ASSERT_EQ(response["fields"].size(), 4u);
    EXPECT_EQ(response["fields"][3], nlohmann::json({{"key", "D"},
                                                     {"id", "Reserved"},
                                                     {"bitPos", 32},
                                                     {"bitLength", 8},
                                                     {"type", "none"},
                                                     {"motorola", false},
                                                     {"const", false},
                                                     {"gap", true},
                                                     {"problem", nullptr}}));
    ASSERT_EQ(response["bytes"].size(), 5u);
    EXPECT_EQ(response["bytes"][4], nlohmann::json::array({3, 3, 3, 3, 3, 3, 3, 3}));
    EXPECT_EQ(response["bytes"][1], nlohmann::json::array({1, 1, 1, 1, 1, 1, 1, 1}));
}

TEST(ShowCommand, JsonOfALayoutMarksFreeAndOverlappingBits) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("overlap.xml");
    zekl_test::WriteBytes(path,
                          "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                          "<ECU protocol=\"UDS\">\n"
                          " <INSTANCE id=\"Packed\">\n"
                          "  <REQUEST>\n"
                          "   <PARAMETER id=\"A\" bitPos=\"0\" bitLen=\"4\" type=\"unsigned\" unit=\"\" "
                          "value=\"\" semantics=\"\" convId=\"\"/>\n"
                          "   <PARAMETER id=\"B\" bitPos=\"2\" bitLen=\"4\" type=\"unsigned\" unit=\"\" "
                          "value=\"\" semantics=\"\" convId=\"\"/>\n"
                          "  </REQUEST>\n"
                          " </INSTANCE>\n"
                          "</ECU>\n");
    const auto json =
        nlohmann::json::parse(RunTool({"show", path, "--instance", "Packed", "--layout", "--json"}).out);
    EXPECT_EQ(json["request"]["bytes"][0], nlohmann::json::array({-1, -1, 1, 1, -2, -2, 0, 0}));
    EXPECT_TRUE(json["response"].is_null());
}

TEST(ShowCommand, ReadsStandardInput) {
    const auto result = zekl_test::RunToolWithInput(
        {"show", "-", "--instance", "ReadMemoryByAddress_Calibration"}, ExamplePath("kwp_ecu.xml"));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Row(Section(result.out, "REQUEST (3 parameters)"), "MemorySize"),
              (Cells_{"MemorySize", "4", "32", "8", "unsigned", "-", "CONST", "-", "4", "04"}));
}

TEST(ShowCommand, UnknownInstanceOnStandardInputNamesIt) {
    const auto result =
        zekl_test::RunToolWithInput({"show", "-", "--instance", "Nothing"}, ExamplePath("kwp_ecu.xml"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: no instance 'Nothing' in standard input (see 'zekl show -')\n");
}
