// Every message of a read carries the place it concerns: the line and column where the element
// starts, and the path of the item (instance, message, parameter, conversion, entry, NRC).
#include "ReaderFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using ReaderTest::Read;

namespace {

struct Placed {
    int32_t level;
    uint32_t line;
    uint32_t column;
    std::string path;
    std::string text;
};

std::vector<Placed> PlacedMessages(const ReaderTest::ReadResult& result,
                                   int32_t worst = Korvel::ReportLevelWarn) {
    std::vector<Placed> placed;
    for (const Korvel::ReadMessage& message : result.sink.GetMessages()) {
        if (message.level <= worst) {
            placed.push_back(Placed{message.level, message.line, message.column,
                                    Korvel::ItemPathText(message.path), message.text});
        }
    }
    return placed;
}

const Korvel::ReadMessage& FirstError(const ReaderTest::ReadResult& result) {
    for (const Korvel::ReadMessage& message : result.sink.GetMessages()) {
        if (message.level == Korvel::ReportLevelError) {
            return message;
        }
    }
    static const Korvel::ReadMessage none{0, "no error"};
    return none;
}

const char* const kEmptyParameter =
    "WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item could be created "
    "for "
    "the current 'PARAMETER' XML element!";

// A sink written before places existed: it implements Report only.
class ReportOnlySink : public Korvel::IReporting {
public:
    void Debug(const std::string&) override {}
    void Info(const std::string& message) override { Report(Korvel::ReportLevelInfo, message); }
    void Warn(const std::string& message) override { Report(Korvel::ReportLevelWarn, message); }
    void Error(const std::string& message) override { Report(Korvel::ReportLevelError, message); }
    void Fatal(const std::string& message) override { Report(Korvel::ReportLevelFatal, message); }
    void Report(int32_t level, const std::string& message) override {
        if (level <= level_) {
            lines.push_back(std::to_string(level) + "|" + message);
        }
    }
    void SetReportLevel(int32_t level) override { level_ = level; }
    int32_t GetReportLevel() const override { return level_; }
    uint32_t GetWarningCount() const override { return 0; }
    uint32_t GetErrorCount() const override { return 0; }
    const std::vector<std::string>& GetWarnings() const override { return none_; }
    const std::vector<std::string>& GetErrors() const override { return none_; }
    void Output(const std::string&, const std::string&) override {}

    std::vector<std::string> lines;

private:
    int32_t level_ = Korvel::ReportLevelWarn;
    std::vector<std::string> none_;
};

// A collector that sees every message in its own Report, as a derived sink may.
class CountingCollector : public Korvel::ReportCollector {
public:
    using ReportCollector::ReportCollector;
    void Report(int32_t level, const std::string& message) override {
        ++seen;
        ReportCollector::Report(level, message);
    }
    void Output(const std::string&, const std::string&) override {}
    int seen = 0;
};

}  // namespace

TEST(ReportPlace_Parameter, MissingAttributeIsPlacedAtTheParameterWithItsPath) {
    const auto result = Read(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<ECU protocol=\"UDS\">\n"
        " <INSTANCE id=\"EcuReset_HardReset\">\n"
        "  <REQUEST>\n"
        "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x11\" "
        "semantics=\"SID CONST\" convId=\"\"/>\n"
        "   <PARAMETER id=\"Broken\" bitPos=\"8\" type=\"unsigned\" unit=\"\" value=\"0x01\" semantics=\"XID "
        "CONST\" "
        "convId=\"\"/>\n"
        "  </REQUEST>\n"
        " </INSTANCE>\n"
        "</ECU>\n");
    const std::vector<Placed> placed = PlacedMessages(*result);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].level, Korvel::ReportLevelError);
    EXPECT_EQ(placed[0].line, 6u);
    EXPECT_EQ(placed[0].column, 4u);
    EXPECT_EQ(placed[0].path, "EcuReset_HardReset/REQUEST/Broken");
    // The text itself is the reader's, unchanged by the place.
    EXPECT_EQ(
        placed[0].text,
        "OpenTag >> PARAMETER element: Not all required attributes of param with id='Broken' are available! "
        "Invalid or missing attribute(s): bitLen ");
    EXPECT_EQ(placed[1].level, Korvel::ReportLevelWarn);
    EXPECT_EQ(placed[1].line, 6u);
    EXPECT_EQ(placed[1].column, 4u);
    EXPECT_EQ(placed[1].path, "EcuReset_HardReset/REQUEST/Broken");
    EXPECT_EQ(placed[1].text, kEmptyParameter);
    const Korvel::ItemPath& path = FirstError(*result).path;
    EXPECT_EQ(path.instance, "EcuReset_HardReset");
    EXPECT_EQ(path.message, "REQUEST");
    EXPECT_EQ(path.parameter, "Broken");
    EXPECT_TRUE(path.conversion.empty());
}

TEST(ReportPlace_Parameter, UsedIdIsPlacedAtTheSecondParameter) {
    const auto result = Read(
        "<ECU>\n"
        "<INSTANCE id=\"I\"><RESPONSE>\n"
        "<PARAMETER id=\"P\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>"
        "\t<PARAMETER id=\"P\" bitPos=\"8\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>\n"
        "</RESPONSE></INSTANCE></ECU>");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelError);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].line, 3u);
    // The first parameter's element is 93 characters long, then a tab.
    EXPECT_EQ(placed[0].column, 95u);
    EXPECT_EQ(placed[0].path, "I/RESPONSE/P");
}

TEST(ReportPlace_Instance, UsedIdIsPlacedAtTheSecondInstance) {
    const auto result = Read(
        "<?xml version=\"1.0\"?>\n"
        "<ECU>\n"
        "  <INSTANCE id=\"TesterPresent\"/>\n"
        "\n"
        "      <INSTANCE id=\"TesterPresent\"/>\n"
        "</ECU>\n");
    const std::vector<Placed> placed = PlacedMessages(*result);
    // The refusal, the empty record's warning, and at the close tag the missing instance.
    ASSERT_EQ(placed.size(), 3u);
    EXPECT_EQ(placed[0].text,
              "OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with id='TesterPresent'!");
    for (const Placed& each : placed) {
        EXPECT_EQ(each.line, 5u) << each.text;
        EXPECT_EQ(each.column, 7u) << each.text;
    }
    EXPECT_EQ(placed[0].path, "TesterPresent");
    EXPECT_EQ(placed[1].path, "TesterPresent");
}

TEST(ReportPlace_Instance, ElementsWithoutSpaceBetweenThem) {
    // After an empty element, after a close tag and after an open tag, with nothing between.
    const auto result = Read(
        "<ECU><INSTANCE id=\"a\"/><INSTANCE id=\"a\"/><INSTANCE id=\"b\"></INSTANCE><INSTANCE id=\"b\">"
        "<REQUEST><PARAMETER id=\"p\"/></REQUEST></INSTANCE></ECU>");
    std::vector<std::string> places;
    for (const Placed& each : PlacedMessages(*result, Korvel::ReportLevelError)) {
        places.push_back(std::string(Korvel::ReportLevelName(each.level)) + " " + std::to_string(each.line) +
                         ":" + std::to_string(each.column) + " " + each.path);
    }
    // The second "a" and its close; the second "b", the request and the parameter inside it,
    // which find no item of their kind, and the close of "b".
    const std::vector<std::string> expected = {"ERROR 1:24 a",       "FATAL 1:24 ", "ERROR 1:70 b",
                                               "FATAL 1:87 REQUEST", "FATAL 1:96 ", "FATAL 1:70 "};
    EXPECT_EQ(places, expected);
}

TEST(ReportPlace_Message, RequestOutsideAnInstanceNamesItsMessage) {
    const auto result = Read("<ECU>\n <REQUEST>\n </REQUEST>\n</ECU>");
    const std::vector<Placed> placed = PlacedMessages(*result);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].level, Korvel::ReportLevelFatal);
    EXPECT_EQ(placed[0].line, 2u);
    EXPECT_EQ(placed[0].column, 2u);
    EXPECT_EQ(placed[0].path, "REQUEST");
}

TEST(ReportPlace_Map, ValueUsedTwiceIsPlacedByCharactersNotBytes) {
    // "ü" is two bytes in UTF-8 and one character: columns count characters.
    const auto result = Read(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<ECU>\n"
        " <CONVERSION id=\"S_ValueTable\" factor=\"1\" offset=\"0\">\n"
        "  <MAP val=\"1\" text=\"Z\xC3\xBCndung\"/><MAP val=\"1\" text=\"x\"/>\n"
        " </CONVERSION>\n"
        "</ECU>\n");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelError);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].line, 4u);
    EXPECT_EQ(placed[0].column, 32u);
    EXPECT_EQ(placed[0].path, "conversion S_ValueTable/entry 1");
    const Korvel::ItemPath& path = FirstError(*result).path;
    EXPECT_EQ(path.conversion, "S_ValueTable");
    EXPECT_EQ(path.entry, "1");
}

TEST(ReportPlace_Map, NrcUsedTwiceNamesTheCode) {
    const auto result = Read(
        "<ECU>\r\n"
        " <NEGATIVE_RESPONSE_CODES>\r\n"
        "  <MAP nrc=\"16\" text=\"General reject\"/>\r\n"
        "  <MAP nrc=\"16\" text=\"Again\"/>\r\n"
        " </NEGATIVE_RESPONSE_CODES>\r\n"
        "</ECU>\r\n");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelError);
    ASSERT_EQ(placed.size(), 1u);
    // CR LF ends one line.
    EXPECT_EQ(placed[0].line, 4u);
    EXPECT_EQ(placed[0].column, 3u);
    EXPECT_EQ(placed[0].path, "nrc 16");
}

TEST(ReportPlace_Conversion, MissingAttributesNameTheConversion) {
    const auto result = Read("<ECU>\n\n\n    <CONVERSION id=\"K_Formula\" factor=\"1\"/>\n</ECU>");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelError);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].line, 4u);
    EXPECT_EQ(placed[0].column, 5u);
    EXPECT_EQ(placed[0].path, "conversion K_Formula");
}

TEST(ReportPlace_Frame, UnknownElementAfterTheProlog) {
    // The declaration, a comment, a processing instruction and blank lines come before the root:
    // the root's place is its own "<", not where the declaration ends.
    const auto result = Read(
        "<?xml version=\"1.0\"?>\n"
        "<!-- a description -->\n"
        "<?generator x?>\n"
        "\n"
        "   <ECU><VARIANT/>\n"
        "</ECU>\n");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelInfo);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].text, "ZXmlParser::startElement >> Unknown tag 'VARIANT'");
    EXPECT_EQ(placed[0].line, 5u);
    EXPECT_EQ(placed[0].column, 9u);
    EXPECT_EQ(placed[0].path, "");
    // The root itself: its open trace is at its "<" after the blanks.
    bool rootSeen = false;
    for (const Korvel::ReadMessage& message : result->sink.GetMessages()) {
        if (message.text == "OpenTag >> ECU element") {
            rootSeen = true;
            EXPECT_EQ(message.line, 5u);
            EXPECT_EQ(message.column, 4u);
        }
    }
    EXPECT_TRUE(rootSeen);
}

TEST(ReportPlace_Frame, CloseTagMessagesHaveTheElementsStart) {
    // The parameter inside an unknown element receives its close tag only: the count message of
    // its close tag is placed where the parameter starts.
    const auto result = Read(
        "<ECU>\n"
        "  <VARIANT>\n"
        "    <PARAMETER id=\"x\"/>\n"
        "  </VARIANT>\n"
        "</ECU>\n");
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelError);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].text, "CloseTag >> PARAMETER element: Different count of open and close tags found!");
    EXPECT_EQ(placed[0].line, 3u);
    EXPECT_EQ(placed[0].column, 5u);
}

TEST(ReportPlace_Frame, ParseErrorHasTheXmlLibrarysPosition) {
    const auto result = Read("<ECU>\n <INSTANCE id=\"a\">\n </ECU>\n");
    EXPECT_EQ(result->ecu, nullptr);
    const std::vector<Placed> placed = PlacedMessages(*result, Korvel::ReportLevelFatal);
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].line, 3u);
    EXPECT_NE(placed[0].column, 0u);
    EXPECT_NE(placed[0].text.find("[Line 3, Column " + std::to_string(placed[0].column) + "]"),
              std::string::npos)
        << placed[0].text;
}

TEST(ReportPlace_Frame, ArgumentErrorsHaveNoPlace) {
    Korvel::ReportCollector sink(Korvel::ReportLevelError);
    Korvel::ZKLReaderImpl reader;
    EXPECT_EQ(reader.ReadFile(nullptr, "", sink), nullptr);
    ASSERT_FALSE(sink.GetMessages().empty());
    for (const Korvel::ReadMessage& message : sink.GetMessages()) {
        EXPECT_EQ(message.line, 0u);
        EXPECT_EQ(message.column, 0u);
        EXPECT_TRUE(message.path.IsEmpty());
    }
}

TEST(ReportPlace_Sink, ASinkWithoutPlacesReceivesTheSameTextsThroughReport) {
    ReportOnlySink sink;
    Korvel::ZKLReaderImpl reader;
    ASSERT_NE(reader.ReadText("<ECU>\n<INSTANCE id=\"a\"/><INSTANCE id=\"a\"/></ECU>", "", sink), nullptr);
    ASSERT_EQ(sink.lines.size(), 3u);
    EXPECT_EQ(sink.lines[0], "2|OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with id='a'!");
    EXPECT_EQ(
        sink.lines[1],
        "3|WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item could be "
        "created for the current 'INSTANCE' XML element!");
    EXPECT_EQ(sink.lines[2],
              "1|CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain an "
              "IInstance "
              "item!");
}

TEST(ReportPlace_Collector, KeepsThePlaceOnlyForTheMessageItCameWith) {
    CountingCollector sink(Korvel::ReportLevelWarn);
    Korvel::ReportPlace place;
    place.line = 12;
    place.column = 4;
    place.path.instance = "I";
    sink.ReportAt(Korvel::ReportLevelError, "first", place);
    sink.Report(Korvel::ReportLevelError, "second");
    sink.ReportAt(Korvel::ReportLevelInfo, "filtered", place);
    EXPECT_EQ(sink.seen, 3);
    ASSERT_EQ(sink.GetMessages().size(), 2u);
    EXPECT_EQ(sink.GetMessages()[0].line, 12u);
    EXPECT_EQ(sink.GetMessages()[0].column, 4u);
    EXPECT_EQ(sink.GetMessages()[0].path.instance, "I");
    EXPECT_EQ(sink.GetMessages()[1].line, 0u);
    EXPECT_TRUE(sink.GetMessages()[1].path.IsEmpty());
    EXPECT_EQ(sink.GetErrorCount(), 2u);
}

TEST(ReportPlace_Collector, TheBoundOnKeptTextsHoldsWithPlaces) {
    CountingCollector sink(Korvel::ReportLevelError);
    Korvel::ReportPlace place;
    place.path.parameter = std::string(100, 'p');
    const uint32_t total = Korvel::ReportCollector::kMaxKeptMessages + 500;
    for (uint32_t i = 0; i < total; ++i) {
        place.line = i + 1;
        sink.ReportAt(Korvel::ReportLevelError, "message", place);
    }
    EXPECT_EQ(sink.GetErrorCount(), total);
    EXPECT_EQ(sink.GetLeftOutCount(), 500u);
    const auto& messages = sink.GetMessages();
    ASSERT_EQ(messages.size(), Korvel::ReportCollector::kMaxKeptMessages + 1);
    EXPECT_EQ(messages[Korvel::ReportCollector::kMaxKeptMessages - 1].line,
              Korvel::ReportCollector::kMaxKeptMessages);
    // The line that says how many were left out concerns no place.
    EXPECT_EQ(messages.back().line, 0u);
    EXPECT_TRUE(messages.back().path.IsEmpty());
}

TEST(ItemPathText, JoinsTheFieldsThatAreSet) {
    Korvel::ItemPath path;
    EXPECT_EQ(Korvel::ItemPathText(path), "");
    path.instance = "I";
    EXPECT_EQ(Korvel::ItemPathText(path), "I");
    path.message = "RESPONSE";
    path.parameter = "P";
    EXPECT_EQ(Korvel::ItemPathText(path), "I/RESPONSE/P");
    Korvel::ItemPath conversion;
    conversion.conversion = "C_ValueTable";
    conversion.entry = "3";
    EXPECT_EQ(Korvel::ItemPathText(conversion), "conversion C_ValueTable/entry 3");
    Korvel::ItemPath nrc;
    nrc.nrc = "16";
    EXPECT_EQ(Korvel::ItemPathText(nrc), "nrc 16");
}
