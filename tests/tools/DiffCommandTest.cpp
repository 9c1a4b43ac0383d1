// zekl diff: the summary grouped by instance, JSON, --order, and the exit status a CI job uses.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::RunTool;

namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// The UDS sample with changes of every part: an NRC text, a conversion's factor, a table
// entry, a parameter's length, an added parameter and a removed instance.
std::string Changed(const zekl_test::TempDir& dir) {
    std::string text = zekl_test::ReadBytes(ExamplePath("uds_ecu.xml"));
    text = Replaced(text, "<MAP nrc=\"16\" text=\"General reject\"/>", "<MAP nrc=\"16\" text=\"Reject\"/>");
    text = Replaced(text, "id=\"EngineSpeed_Formula\" factor=\"0.2500000000000000\"",
                    "id=\"EngineSpeed_Formula\" factor=\"0.5\"");
    text = Replaced(text, "<MAP val=\"3\" text=\"On &amp; blinking\" />",
                    "<MAP val=\"3\" text=\"On and blinking\" />");
    text = Replaced(text, "<PARAMETER id=\"CoolantTemperature\" bitPos=\"24\" bitLen=\"8\"",
                    "<PARAMETER id=\"CoolantTemperature\" bitPos=\"24\" bitLen=\"16\"");
    text = Replaced(text, "convId=\"EngineSpeed_Formula\"/>\n  </RESPONSE>",
                    "convId=\"EngineSpeed_Formula\"/>\n   <PARAMETER id=\"Load\" bitPos=\"40\" bitLen=\"8\" "
                    "type=\"unsigned\" unit=\"%\" value=\"\" semantics=\"\" convId=\"\"/>\n  </RESPONSE>");
    const std::size_t begin = text.find(" <INSTANCE id=\"ReadDataByIdentifier_VIN\">");
    const std::size_t end = text.find(" </INSTANCE>\n", begin) + 13;
    text.erase(begin, end - begin);
    const std::string path = dir.Path("changed.xml");
    zekl_test::WriteBytes(path, text);
    return path;
}

// The UDS sample with its first two instances swapped and written in another form: single
// quotes in the declaration, other indentation, another attribute order, numbers and values
// written otherwise. Another order, the same meaning.
std::string Reordered(const zekl_test::TempDir& dir) {
    std::string text = zekl_test::ReadBytes(ExamplePath("uds_ecu.xml"));
    const std::size_t first = text.find(" <INSTANCE id=\"DiagnosticSessionControl_Default\">");
    const std::size_t second = text.find(" <INSTANCE id=\"DiagnosticSessionControl_Extended\">");
    const std::size_t end = text.find(" </INSTANCE>\n", second) + 13;
    const std::string block = text.substr(first, second - first);
    text.erase(first, second - first);
    text.insert(end - block.size(), block);
    text = Replaced(text, "<?xml version=\"1.0\" encoding=\"utf-8\"?>",
                    "<?xml version='1.0' encoding='UTF-8'?>\n");
    text = Replaced(text, " <INSTANCE id=\"EcuReset_HardReset\">", "\t<INSTANCE  id='EcuReset_HardReset' >");
    text = Replaced(text, "factor=\"0.2500000000000000\" offset=\"0.0000000000000000\"",
                    "offset=\"0\" factor=\".25\"");
    text = Replaced(text, "value=\"0x0100\" semantics=\"XID CONST MOTOROLA\"",
                    "value=\"256\" semantics=\"CONST XID MOTOROLA\"");
    const std::string path = dir.Path("reordered.xml");
    zekl_test::WriteBytes(path, text);
    return path;
}

}  // namespace

TEST(DiffCommand, EqualDocumentsExitZero) {
    const std::string path = ExamplePath("uds_ecu.xml");
    const auto result = RunTool({"diff", path, path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "no differences\n");
    EXPECT_TRUE(result.err.empty());
}

TEST(DiffCommand, ChangesAreGroupedByInstance) {
    zekl_test::TempDir dir;
    const std::string changed = Changed(dir);
    const auto result = RunTool({"diff", ExamplePath("uds_ecu.xml"), changed});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.empty()) << result.err;
    EXPECT_EQ(result.out,
              "~ NRC 16 text: 'General reject' -> 'Reject'\n"
              "~ CONVERSION EngineSpeed_Formula factor: 0.25 -> 0.5\n"
              "~ CONVERSION MilStatus_ValueTable MAP 3 text: 'On & blinking' -> 'On and blinking'\n"
              "INSTANCE ReadDataByIdentifier_EngineSpeed\n"
              "  + RESPONSE/Load\n"
              "INSTANCE ReadDataByIdentifier_CoolantTemperature\n"
              "  ~ RESPONSE/CoolantTemperature bitLen: 8 -> 16\n"
              "- INSTANCE ReadDataByIdentifier_VIN\n"
              "6 differences\n");
    // The other way round, the same differences turned over.
    const auto back = RunTool({"diff", changed, ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(back.exitCode, 1);
    EXPECT_NE(back.out.find("~ NRC 16 text: 'Reject' -> 'General reject'\n"), std::string::npos);
    EXPECT_NE(back.out.find("+ INSTANCE ReadDataByIdentifier_VIN\n"), std::string::npos);
    EXPECT_NE(back.out.find("  - RESPONSE/Load\n"), std::string::npos);
}

TEST(DiffCommand, OrderAndFormOnlyAreEqualUnlessOrderIsAsked) {
    zekl_test::TempDir dir;
    const std::string reordered = Reordered(dir);
    const auto plain = RunTool({"diff", ExamplePath("uds_ecu.xml"), reordered});
    EXPECT_EQ(plain.exitCode, 0) << plain.out;
    EXPECT_EQ(plain.out, "no differences\n");
    const auto ordered = RunTool({"diff", "--order", ExamplePath("uds_ecu.xml"), reordered});
    EXPECT_EQ(ordered.exitCode, 1);
    EXPECT_EQ(ordered.out, "> INSTANCE DiagnosticSessionControl_Default position: 0 -> 1\n1 difference\n");
}

TEST(DiffCommand, JsonListsEachDifference) {
    zekl_test::TempDir dir;
    const auto result = RunTool({"diff", ExamplePath("uds_ecu.xml"), Changed(dir), "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["equal"], false);
    ASSERT_EQ(json["differences"].size(), 6u);
    const nlohmann::json& length = json["differences"][4];
    EXPECT_EQ(length["change"], "changed");
    EXPECT_EQ(length["item"], "parameter");
    EXPECT_EQ(length["path"], (nlohmann::json{{"instance", "ReadDataByIdentifier_CoolantTemperature"},
                                              {"message", "RESPONSE"},
                                              {"parameter", "CoolantTemperature"}}));
    EXPECT_EQ(length["attribute"], "bitLen");
    EXPECT_EQ(length["before"], "8");
    EXPECT_EQ(length["after"], "16");
    const nlohmann::json& removed = json["differences"][5];
    EXPECT_EQ(removed["change"], "removed");
    EXPECT_EQ(removed["path"], (nlohmann::json{{"instance", "ReadDataByIdentifier_VIN"}}));
    EXPECT_FALSE(removed.contains("attribute"));

    const auto equal = RunTool({"diff", "--json", ExamplePath("kwp_ecu.xml"), ExamplePath("kwp_ecu.xml")});
    EXPECT_EQ(equal.exitCode, 0);
    EXPECT_EQ(nlohmann::json::parse(equal.out)["equal"], true);
}

TEST(DiffCommand, DocumentsThatCannotBeReadExitTwo) {
    const std::string missing = DataPath("no_such_file.xml");
    const auto result = RunTool({"diff", ExamplePath("uds_ecu.xml"), missing});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + missing + "': No such file or directory\n");
    const auto malformed = RunTool({"diff", DataPath("malformed.xml"), ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(malformed.exitCode, 2);
}

TEST(DiffCommand, ReadErrorsAreNotedAndTheModelsCompared) {
    const auto result =
        RunTool({"diff", DataPath("duplicate_instance.xml"), DataPath("duplicate_instance.xml")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "no differences\n");
    // One note for each side, naming the file and the first error.
    const std::vector<std::string> notes = zekl_test::Lines(result.err);
    ASSERT_EQ(notes.size(), 2u) << result.err;
    for (const std::string& note : notes) {
        EXPECT_EQ(note.rfind(
                      "zekl: '" + DataPath("duplicate_instance.xml") + "' has 2 ERROR/FATAL message(s): ", 0),
                  0u)
            << note;
        EXPECT_NE(note.find("; compared as read (see 'zekl check')"), std::string::npos) << note;
    }
}

TEST(DiffCommand, UsageErrorsExitTwo) {
    const auto one = RunTool({"diff", ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(one.exitCode, 2);
    EXPECT_EQ(one.err, "zekl: diff: missing argument B (see 'zekl diff --help')\n");
    EXPECT_EQ(RunTool({"diff", "--sorted", "a", "b"}).exitCode, 2);
    EXPECT_EQ(RunTool({"diff", "a", "b", "c"}).exitCode, 2);
}
