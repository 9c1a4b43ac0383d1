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
        const auto result = RunTool({"check", ExamplePath(name), "--level", "5"});
        EXPECT_EQ(result.exitCode, 0) << name << result.err;
        EXPECT_TRUE(result.err.empty()) << result.err;
        // At DEBUG level only the reader's open/close traces may appear, never a fault.
        for (const std::string& line : Lines(result.out)) {
            EXPECT_EQ(line.rfind("DEBUG: ", 0), 0u) << name << ": " << line;
        }
    }
}

TEST(CheckCommand, DefaultLevelPrintsErrorsAndWarningsInOrder) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, std::string(kMissingBitLen) + kEmptyParameterElement);
    EXPECT_EQ(Lines(result.err).size(), 1u);
    EXPECT_EQ(result.err.rfind("zekl: '" + path + "' has 1 ERROR/FATAL message(s): OpenTag >> PARAMETER", 0),
              0u)
        << result.err;
}

TEST(CheckCommand, LevelTwoLeavesOutWarnings) {
    const auto result = RunTool({"check", "--level", "2", DataPath("missing_parameter_attribute.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, kMissingBitLen);
}

TEST(CheckCommand, LevelOneHidesErrorsButStillFails) {
    const auto result = RunTool({"check", "--level=1", DataPath("missing_parameter_attribute.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.empty()) << result.out;
}

TEST(CheckCommand, LevelNamesAreAccepted) {
    const auto byName = RunTool({"check", "--level", "ERROR", DataPath("missing_parameter_attribute.xml")});
    EXPECT_EQ(byName.exitCode, 1);
    EXPECT_EQ(byName.out, kMissingBitLen);
}

TEST(CheckCommand, LevelNamesIgnoreLetterCase) {
    const std::string path = DataPath("missing_parameter_attribute.xml");
    for (const char* level : {"error", "Error", "2"}) {
        const auto result = RunTool({"check", "--level", level, path});
        EXPECT_EQ(result.exitCode, 1) << level;
        EXPECT_EQ(result.out, kMissingBitLen) << level;
    }
    for (const char* level : {"warn", "WARNING", "-l3"}) {
        const auto result =
            level[0] == '-' ? RunTool({"check", level, path}) : RunTool({"check", "--level", level, path});
        EXPECT_EQ(result.out, std::string(kMissingBitLen) + kEmptyParameterElement) << level;
    }
    EXPECT_EQ(RunTool({"check", "--level", "info", DataPath("unknown_element.xml")}).out,
              "INFO: ZXmlParser::startElement >> Unknown tag 'VARIANT'\n");
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
}

TEST(CheckCommand, JsonOfACleanDocument) {
    const auto result = RunTool({"check", "--json", ExamplePath("uds_ecu.xml")});
    EXPECT_EQ(result.exitCode, 0);
    const nlohmann::json json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["errors"], 0);
    EXPECT_EQ(json["messages"], nlohmann::json::array());
}

TEST(CheckCommand, ReadsStandardInput) {
    const auto result = zekl_test::RunToolWithInput({"check", "-"}, DataPath("nrc_out_of_range.xml"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(result.out,
                        "ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the "
                        "configured value ('300') is to big!"))
        << result.out;
    EXPECT_EQ(result.err.rfind("zekl: standard input has 1 ERROR/FATAL message(s): ", 0), 0u) << result.err;
}

TEST(CheckCommand, UnknownElementIsInfoAndNoFailure) {
    const std::string path = DataPath("unknown_element.xml");
    const auto quiet = RunTool({"check", path});
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_TRUE(quiet.out.empty()) << quiet.out;
    const auto info = RunTool({"check", path, "--level", "4"});
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_EQ(info.out, "INFO: ZXmlParser::startElement >> Unknown tag 'VARIANT'\n");
}

TEST(CheckCommand, DuplicateInstanceIsAnError) {
    const auto result = RunTool({"check", DataPath("duplicate_instance.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(result.out,
                        "ERROR: OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with "
                        "id='TesterPresent'!"))
        << result.out;
}

TEST(CheckCommand, NrcOutOfRangeIsReported) {
    const auto result = RunTool({"check", DataPath("nrc_out_of_range.xml")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(HasLine(result.out,
                        "ERROR: TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the "
                        "configured value ('300') is to big!"))
        << result.out;
}

TEST(CheckCommand, MalformedDocumentIsFatalWithPosition) {
    const std::string path = DataPath("malformed.xml");
    const auto result = RunTool({"check", path});
    EXPECT_EQ(result.exitCode, 1);
    bool fatal = false;
    for (const std::string& line : Lines(result.out)) {
        fatal =
            fatal || (line.rfind("FATAL: ", 0) == 0 && line.find("[Line 11, Column ") != std::string::npos);
    }
    EXPECT_TRUE(fatal) << result.out;
    EXPECT_EQ(result.err.rfind("zekl: cannot read '" + path + "': ", 0), 0u) << result.err;
    EXPECT_EQ(Lines(result.err).size(), 1u);
}

TEST(CheckCommand, EveryPrintedMessageIsOneLine) {
    const auto result = RunTool({"check", DataPath("duplicate_instance.xml"), "--level", "5"});
    for (const std::string& line : Lines(result.out)) {
        const bool known = line.rfind("FATAL: ", 0) == 0 || line.rfind("ERROR: ", 0) == 0 ||
                           line.rfind("WARN: ", 0) == 0 || line.rfind("INFO: ", 0) == 0 ||
                           line.rfind("DEBUG: ", 0) == 0;
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
