// zekl check: every message of a read, and the exit status it gives.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"

using zekl_test::DataPath;
using zekl_test::ExamplePath;
using zekl_test::Lines;
using zekl_test::RunTool;

namespace {

const char* const kMissingBitLen =
    "ERROR: OpenTag >> PARAMETER element: Not all required attributes of param with id='Broken' are "
    "available! Invalid or missing attribute(s): bitLen \n";
const char* const kEmptyParameterElement =
    "WARN: WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item could be "
    "created for the current 'PARAMETER' XML element!\n";

// The broken parameter is the second of its request, on line 8, indented by three blanks.
std::string AtBrokenParameter(const std::string& path, const char* rest) {
    return path + ":8:4: " + rest;
}

bool HasLine(const std::string& text, const std::string& line) {
    for (const std::string& each : Lines(text)) {
        if (each == line) {
            return true;
        }
    }
    return false;
}

}  // namespace

TEST(CheckCommand, ExamplesReadWithoutMessages) {
    for (const char* name : {"uds_ecu.xml", "kwp_ecu.xml"}) {
        const std::string path = ExamplePath(name);
        const auto result = RunTool({"check", path, "--level", "5"});
        EXPECT_EQ(result.exitCode, 0) << name << result.err;
        EXPECT_TRUE(result.err.empty()) << result.err;
        // At DEBUG level only the reader's open/close traces may appear, never a fault; each
        // is placed at its element, and the last line says the document is clean.
        const std::vector<std::string> lines = Lines(result.out);
        ASSERT_GT(lines.size(), 2u);
        for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
            EXPECT_EQ(lines[i].rfind(path + ":", 0), 0u) << lines[i];
            EXPECT_NE(lines[i].find(": DEBUG: "), std::string::npos) << name << ": " << lines[i];
        }
        EXPECT_EQ(lines[0], path + ":2:1: DEBUG: OpenTag >> ECU element");
        EXPECT_EQ(lines.back(), path + ": clean: no FATAL, ERROR or WARN message");
    }
}

TEST(CheckCommand, ACleanDocumentPrintsOneLine) {
    const std::string path = ExamplePath("uds_ecu.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, path + ": clean: no FATAL, ERROR or WARN message\n");
}

TEST(CheckCommand, DefaultLevelPrintsErrorsAndWarningsInOrder) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out,
              AtBrokenParameter(path, kMissingBitLen) + AtBrokenParameter(path, kEmptyParameterElement));
    EXPECT_EQ(Lines(result.err).size(), 1u);
    EXPECT_EQ(result.err.rfind("zekl: '" + path + "' has 1 ERROR/FATAL message(s): OpenTag >> PARAMETER", 0),
              0u)
        << result.err;
}

TEST(CheckCommand, LevelTwoLeavesOutWarnings) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"check", "--level", "2", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, AtBrokenParameter(path, kMissingBitLen));
}

TEST(CheckCommand, LevelOneHidesErrorsButStillFails) {
    const auto result = RunTool({"check", "--level=1", DataPath("missing_parameter_attribute.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty()) << result.out;
}

TEST(CheckCommand, LevelNamesAreAccepted) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto byName = RunTool({"check", "--level", "ERROR", path});
    EXPECT_EQ(byName.exitCode, 1);
    EXPECT_EQ(byName.out, AtBrokenParameter(path, kMissingBitLen));
}

TEST(CheckCommand, LevelNamesIgnoreLetterCase) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    for (const char* level : {"error", "Error", "2"}) {
        const auto result = RunTool({"check", "--level", level, path});
        EXPECT_EQ(result.exitCode, 1) << level;
        EXPECT_EQ(result.out, AtBrokenParameter(path, kMissingBitLen)) << level;
    }
    for (const char* level : {"warn", "WARNING", "-l3"}) {
        const auto result =
            level[0] == '-' ? RunTool({"check", level, path}) : RunTool({"check", "--level", level, path});
        EXPECT_EQ(result.out,
                  AtBrokenParameter(path, kMissingBitLen) + AtBrokenParameter(path, kEmptyParameterElement))
            << level;
    }
    const std::string unknown = DataPath("unknown_element.xml");
    EXPECT_EQ(RunTool({"check", "--level", "info", unknown}).out,
              unknown + ":5:2: INFO: ZXmlParser::startElement >> Unknown tag 'VARIANT'\n" + unknown +
                  ": clean: no FATAL, ERROR or WARN message\n");
}

TEST(CheckCommand, JsonListsTheMessagesWithTheirLevels) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"check", path, "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["file"], path);
    EXPECT_EQ(json["read"], true);
    EXPECT_TRUE(json["reason"].is_null());
    EXPECT_EQ(json["errors"], 1);
    EXPECT_EQ(json["warnings"], 1);
    ASSERT_EQ(json["messages"].size(), 2u);
    EXPECT_EQ(json["messages"][0]["level"], "ERROR");
    EXPECT_EQ(json["messages"][0]["text"].get<std::string>() + "\n", std::string(kMissingBitLen).substr(7));
    EXPECT_EQ(json["messages"][1]["level"], "WARN");
    EXPECT_EQ(json["clean"], false);
    for (const nlohmann::json& message : json["messages"]) {
        EXPECT_EQ(message["line"], 8);
        EXPECT_EQ(message["column"], 4);
        EXPECT_EQ(message["path"],
                  (nlohmann::json{
                      {"instance", "EcuReset_HardReset"}, {"message", "REQUEST"}, {"parameter", "Broken"}}));
    }
    // The error line still goes to standard error.
    EXPECT_EQ(zekl_test::Lines(result.err).size(), 1u);
}

TEST(CheckCommand, JsonOfARefusedDocumentSaysWhy) {
    const auto result = RunTool({"check", DataPath("malformed.xml"), "--json", "--level", "1"});
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["read"], false);
    EXPECT_NE(json["reason"].get<std::string>().find("[Line 11, Column "), std::string::npos);
    ASSERT_EQ(json["messages"].size(), 1u);
    EXPECT_EQ(json["messages"][0]["level"], "FATAL");
    EXPECT_EQ(json["messages"][0]["line"], 11);
    EXPECT_EQ(json["messages"][0]["path"], nlohmann::json::object());
}

TEST(CheckCommand, JsonOfACleanDocument) {
    const auto result = RunTool({"check", "--json", ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["errors"], 0);
    EXPECT_EQ(json["clean"], true);
    EXPECT_EQ(json["messages"], nlohmann::json::array());
}

TEST(CheckCommand, ReadsStandardInput) {
    const auto result = zekl_test::RunToolWithInput({"check", "-"}, DataPath("nrc_out_of_range.xml"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(result.out,
                        "-:4:3: ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the "
                        "configured value ('300') is to big!"))
        << result.out;
    EXPECT_EQ(result.err.rfind("zekl: standard input has 1 ERROR/FATAL message(s): ", 0), 0u) << result.err;
}

TEST(CheckCommand, UnknownElementIsInfoAndNoFailure) {
    const std::string path = DataPath("unknown_element.xml");
    const std::string clean = path + ": clean: no FATAL, ERROR or WARN message\n";
    const auto quiet = RunTool({"check", path});
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_EQ(quiet.out, clean);
    const auto info = RunTool({"check", path, "--level", "4"});
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_EQ(info.out, path + ":5:2: INFO: ZXmlParser::startElement >> Unknown tag 'VARIANT'\n" + clean);
}

TEST(CheckCommand, DuplicateInstanceIsAnError) {
    const std::string path = DataPath("duplicate_instance.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(
        result.out, path + ":12:2: ERROR: OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with "
                           "id='TesterPresent'!"))
        << result.out;
}

TEST(CheckCommand, NrcOutOfRangeIsReported) {
    const std::string path = DataPath("nrc_out_of_range.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(
        result.out, path +
                        ":4:3: ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the "
                        "configured value ('300') is to big!"))
        << result.out;
}

TEST(CheckCommand, MalformedDocumentIsFatalWithPosition) {
    const std::string path = DataPath("malformed.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    // The place is where the XML library stopped, the same as the text's own.
    EXPECT_TRUE(
        HasLine(result.out, path + ":11:1: FATAL: unterminated end tag 'INSTANCE' [Line 11, Column 1]"))
        << result.out;
    EXPECT_EQ(result.err.rfind("zekl: cannot read '" + path + "': ", 0), 0u) << result.err;
    EXPECT_EQ(Lines(result.err).size(), 1u);
}

TEST(CheckCommand, EveryPrintedMessageIsOneLine) {
    const std::string path = DataPath("duplicate_instance.xml");
    const auto result = RunTool({"check", path, "--level", "5"});
    ASSERT_FALSE(result.out.empty());
    for (const std::string& line : Lines(result.out)) {
        // "PATH:LINE:COLUMN: LEVEL: text"
        ASSERT_EQ(line.rfind(path + ":", 0), 0u) << line;
        const std::size_t afterLine = line.find(':', path.size() + 1);
        const std::size_t afterColumn = line.find(": ", afterLine + 1);
        ASSERT_NE(afterColumn, std::string::npos) << line;
        EXPECT_GT(std::stoul(line.substr(path.size() + 1, afterLine - path.size() - 1)), 0ul) << line;
        const std::string rest = line.substr(afterColumn + 2);
        const bool known = rest.rfind("FATAL: ", 0) == 0 || rest.rfind("ERROR: ", 0) == 0 ||
                           rest.rfind("WARN: ", 0) == 0 || rest.rfind("INFO: ", 0) == 0 ||
                           rest.rfind("DEBUG: ", 0) == 0;
        EXPECT_TRUE(known) << "'" << line << "'";
    }
}

TEST(CheckCommand, MissingFileExitsOne) {
    const std::string path = DataPath("no_such_file.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': No such file or directory\n");
}

TEST(CheckCommand, InvalidLevelIsAUsageError) {
    for (const std::string level : {"0", "6", "abc", ""}) {
        const auto result = RunTool({"check", "--level", level, ExamplePath("uds_ecu.xml")});
        EXPECT_EQ(result.exitCode, 2) << level;
        EXPECT_EQ(result.err,
                  "zekl: check: invalid level '" + level + "' (use 1 to 5) (see 'zekl check --help')\n");
        EXPECT_TRUE(result.out.empty());
    }
}

TEST(CheckCommand, FifoIsRefusedWithoutWaitingForAWriter) {
    zekl_test::TempDir dir;
    const std::string path = dir.Path("fifo.xml");
    zekl_test::MakeFifo(path);
    const auto result = RunTool({"check", path}, 20);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(result.err, "zekl: cannot read '" + path + "': not a regular file (a FIFO)\n");
}
