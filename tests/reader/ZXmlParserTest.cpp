#include "reader/ReaderLimits.h"
#include "reader/ReaderMessages.h"
#include "reader/ZKLXmlParserUtilsFactory.h"
#include "reader/ZXmlElement.h"
#include "reader/ZXmlElementHandler.h"
#include "reader/ZXmlParser.h"

#include "DebugCapture.h"

#include <ZeKL/ReportCollector.h>

#include <gtest/gtest.h>

#include <xercesc/framework/MemBufInputSource.hpp>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

using namespace Korvel;
using ReaderTest::DebugCapture;
namespace Msg = Korvel::ReaderMessages;

namespace {

// Records the calls it receives in one shared event list.
class FakeHandler : public ZXmlElementHandler {
public:
    FakeHandler(const XMLCh* tag, std::vector<std::string>& events, bool givesRecords = true)
        : ZXmlElementHandler(tag), events_(events), givesRecords_(givesRecords) {}

    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override {
        std::string event = "open " + Platform::Utf16ToUtf8(tag);
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
            event += " " + Platform::Utf16ToUtf8(attributes.getName(i)) + "=" +
                     Platform::Utf16ToUtf8(attributes.getValue(i));
        }
        events_.push_back(event);
        if (givesRecords_) {
            current_ = std::make_shared<ZXmlElement>(Platform::Utf16ToUtf8(tag));
        }
    }
    void EndElement(const XMLCh* tag) override { events_.push_back("close " + Platform::Utf16ToUtf8(tag)); }
    void SetText(const XMLCh* chars, XMLSize_t length) override {
        ZXmlElementHandler::SetText(chars, length);
        events_.push_back("text " + Platform::Utf16ToUtf8(GetTagName()) + " [" +
                          Platform::Utf16ToUtf8(chars, length) + "]");
    }
    std::shared_ptr<IXmlElement> GetCurrentElement() const override { return current_; }
    // Makes the handler hand out a record even for elements it never opened.
    void GiveRecord() { current_ = std::make_shared<ZXmlElement>("given"); }

private:
    std::vector<std::string>& events_;
    bool givesRecords_;
    std::shared_ptr<IXmlElement> current_;
};

class ZXmlParserTest : public ::testing::Test {
protected:
    ZXmlParserTest() : parser(std::make_shared<ZKLXmlParserUtilsFactory>()) {
        parser.SetReporting(sink);
        a = std::make_shared<FakeHandler>(u"A", events);
        b = std::make_shared<FakeHandler>(u"B", events);
        parser.RegisterHandler(a);
        parser.RegisterHandler(b);
    }

    bool Parse(const std::string& text, const char* encoding = "") {
        return parser.ParseMemory(text.data(), static_cast<uint32_t>(text.size()), encoding);
    }

    std::vector<std::string> MessagesOfLevel(int32_t level) const {
        std::vector<std::string> texts;
        for (const ReadMessage& message : sink->GetMessages()) {
            if (message.level == level) {
                texts.push_back(message.text);
            }
        }
        return texts;
    }

    // Exactly one FATAL message, and it starts with `prefix`.
    ::testing::AssertionResult OneFatalStartingWith(const std::string& prefix) const {
        const std::vector<std::string> fatals = MessagesOfLevel(ReportLevelFatal);
        if (fatals.size() != 1) {
            return ::testing::AssertionFailure() << fatals.size() << " FATAL messages";
        }
        if (fatals[0].rfind(prefix, 0) != 0) {
            return ::testing::AssertionFailure() << "the FATAL message is: " << fatals[0];
        }
        return ::testing::AssertionSuccess();
    }

    static std::string Nested(unsigned depth) {
        std::string text;
        for (unsigned i = 0; i < depth; ++i) {
            text += "<X>";
        }
        for (unsigned i = 0; i < depth; ++i) {
            text += "</X>";
        }
        return text;
    }

    std::shared_ptr<ReportCollector> sink = std::make_shared<ReportCollector>(ReportLevelDebug);
    std::vector<std::string> events;
    ZXmlParser parser;
    std::shared_ptr<FakeHandler> a;
    std::shared_ptr<FakeHandler> b;
};

std::string Repeat(const std::string& piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

std::string TempFile(const std::string& name, const std::string& content) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

}  // namespace

TEST_F(ZXmlParserTest, Parse_WellFormedDocumentSucceedsWithoutMessages) {
    EXPECT_TRUE(Parse("<A x=\"1\"><B/></A>"));
    EXPECT_TRUE(parser.Succeeded());
    EXPECT_TRUE(sink->GetMessages().empty());
    const std::vector<std::string> expected{"open A x=1", "open B", "close B", "close A"};
    EXPECT_EQ(events, expected);
    EXPECT_TRUE(parser.GetElementStack()->IsEmpty());
}

TEST_F(ZXmlParserTest, Warning_IsReportedAtErrorLevelWithoutFailingTheParse) {
    EXPECT_TRUE(Parse("<!DOCTYPE A [<!ATTLIST A x CDATA #IMPLIED x CDATA #IMPLIED>]><A/>"));
    ASSERT_EQ(sink->GetMessages().size(), 1u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelError);
    EXPECT_EQ(sink->GetMessages()[0].text,
              "attribute 'x' has already been declared for element 'A' [Line 1, Column 44]");
    EXPECT_EQ(sink->GetErrorCount(), 1u);
}

TEST_F(ZXmlParserTest, FatalError_CarriesLineAndColumnAndFailsTheParse) {
    EXPECT_FALSE(Parse("<A>\n<B>\n <C></B>"));
    const std::vector<std::string> fatals = MessagesOfLevel(ReportLevelFatal);
    ASSERT_EQ(fatals.size(), 1u);
    EXPECT_EQ(fatals[0], "expected end of tag 'C' [Line 3, Column 7]");
    EXPECT_EQ(parser.GetLastError(), "expected end of tag 'C'");
    EXPECT_FALSE(parser.Succeeded());
}

TEST_F(ZXmlParserTest, Encoding_EmptyArgumentLeavesTheDeclarationInForce) {
    const std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><A t=\"\xE9\"/>";
    EXPECT_TRUE(Parse(latin1, ""));
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0], "open A t=\xC3\xA9");
}

TEST_F(ZXmlParserTest, Encoding_NonEmptyArgumentOverridesTheDeclaration) {
    const std::string utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><A t=\"\xE9\"/>";
    EXPECT_FALSE(Parse(utf8, ""));
    events.clear();
    EXPECT_TRUE(Parse(utf8, "ISO-8859-1"));
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0], "open A t=\xC3\xA9");
}

TEST_F(ZXmlParserTest, ParseFile_EmptyNameGivesTwoMessagesAndFails) {
    EXPECT_FALSE(parser.ParseFile("", ""));
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelError);
    EXPECT_EQ(sink->GetMessages()[0].text, "The passed filename name is empty!");
    EXPECT_EQ(sink->GetMessages()[1].level, ReportLevelFatal);
    EXPECT_EQ(sink->GetMessages()[1].text, "The passed arguments are not valid!\n");
    EXPECT_EQ(sink->GetMessages()[1].text, Msg::kArgumentsInvalid);
}

TEST_F(ZXmlParserTest, ParseFile_NullNameIsRefusedWithoutBeingRead) {
    EXPECT_FALSE(parser.ParseFile(nullptr, ""));
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelError);
    EXPECT_EQ(sink->GetMessages()[0].text, "The passed filename is not valid (NULL)!");
    EXPECT_EQ(sink->GetMessages()[1].text, "The passed arguments are not valid!\n");
}

TEST_F(ZXmlParserTest, ParseFile_NullEncodingIsRefused) {
    EXPECT_FALSE(parser.ParseFile("some.xml", nullptr));
    ASSERT_EQ(sink->GetMessages().size(), 1u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelFatal);
    EXPECT_EQ(sink->GetMessages()[0].text, Msg::kArgumentsInvalid);
}

TEST_F(ZXmlParserTest, ParseFile_MissingFileIsAFatalError) {
    EXPECT_FALSE(parser.ParseFile("/nonexistent/dir/missing.xml", ""));
    EXPECT_FALSE(MessagesOfLevel(ReportLevelFatal).empty());
}

TEST_F(ZXmlParserTest, ParseFile_ReadsAFile) {
    const std::string path = TempFile("zxmlparser_file.xml", "<A><B/></A>");
    EXPECT_TRUE(parser.ParseFile(path.c_str(), ""));
    EXPECT_EQ(events.size(), 4u);
}

TEST_F(ZXmlParserTest, ParseMemory_EmptyTextGivesTwoMessagesAndFails) {
    const char empty[] = "";
    EXPECT_FALSE(parser.ParseMemory(empty, 1, ""));
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelError);
    EXPECT_EQ(sink->GetMessages()[0].text, "The passed stream name is empty!");
    EXPECT_EQ(sink->GetMessages()[1].level, ReportLevelFatal);
    EXPECT_EQ(sink->GetMessages()[1].text, "The passed arguments are not valid!\n");
}

TEST_F(ZXmlParserTest, ParseMemory_NullDataIsRefusedWithoutBeingRead) {
    EXPECT_FALSE(parser.ParseMemory(nullptr, 10, ""));
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].text, "The passed ipStream is not valid (NULL)!");
    EXPECT_EQ(sink->GetMessages()[1].text, "The passed arguments are not valid!\n");
}

TEST_F(ZXmlParserTest, ParseMemory_ZeroLengthCountsAsEmpty) {
    EXPECT_FALSE(parser.ParseMemory("<A/>", 0, ""));
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].text, Msg::kStreamEmpty);
}

TEST_F(ZXmlParserTest, ParseText_HandsTheTerminatingZeroToTheParserAndSucceeds) {
    EXPECT_TRUE(parser.ParseText("<A/>"));
    EXPECT_TRUE(sink->GetMessages().empty());
    EXPECT_FALSE(parser.ParseText(nullptr));
}

TEST_F(ZXmlParserTest, MalformedInput_GivesFalseAndAFatalMessage) {
    const std::vector<std::string> documents{
        "<A>",                                                            // unclosed
        "<A></B>",                                                        // mismatched
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><A t=\"\xFF\xFE\"/>",  // bad bytes for the encoding
        std::string("<A>\0</A>", 8),                                      // NUL byte
        "   ",                                                            // no element
        "<A/><B/>",                                                       // two roots
    };
    for (const std::string& document : documents) {
        sink = std::make_shared<ReportCollector>(ReportLevelDebug);
        parser.SetReporting(sink);
        EXPECT_FALSE(Parse(document)) << document;
        EXPECT_FALSE(MessagesOfLevel(ReportLevelFatal).empty()) << document;
    }
}

TEST_F(ZXmlParserTest, NoSink_ErrorsGoToTheDebugOutput) {
    DebugCapture capture;
    parser.ClearReporting();
    EXPECT_FALSE(parser.ParseFile("", ""));
    ASSERT_EQ(capture.Lines().size(), 2u);
    EXPECT_EQ(capture.Lines()[0], "ERROR: The passed filename name is empty!\n");
    EXPECT_EQ(capture.Lines()[1], "FATAL ERROR: The passed arguments are not valid!\n\n");
}

TEST_F(ZXmlParserTest, UnknownElement_InnerOpenTagsAreSkippedButCloseTagsArrive) {
    EXPECT_TRUE(Parse("<A><U><B x=\"1\"/></U></A>"));
    const std::vector<std::string> expected{"open A", "close B", "close A"};
    EXPECT_EQ(events, expected);
    const std::vector<std::string> infos = MessagesOfLevel(ReportLevelInfo);
    ASSERT_EQ(infos.size(), 1u);
    EXPECT_EQ(infos[0], "ZXmlParser::startElement >> Unknown tag 'U'");
}

TEST_F(ZXmlParserTest, UnknownElement_IsNotReportedBelowInfoLevel) {
    sink->SetReportLevel(ReportLevelWarn);
    EXPECT_TRUE(Parse("<A><U/></A>"));
    EXPECT_TRUE(sink->GetMessages().empty());
}

TEST_F(ZXmlParserTest, UnknownElement_NestedUnknownCloseDoesNotEndTheSkipping) {
    EXPECT_TRUE(Parse("<A><U><V><B/></V><B/></U><B/></A>"));
    // Only U's close ends the skipping; V's close finds no handler; B's opens inside U are
    // skipped, their closes arrive.
    const std::vector<std::string> expected{"open A", "close B", "close B", "open B", "close B", "close A"};
    EXPECT_EQ(events, expected);
    EXPECT_EQ(MessagesOfLevel(ReportLevelInfo).size(), 1u);
}

TEST_F(ZXmlParserTest, UnknownElement_KnownCloseWithoutOpenNeverPopsAnEmptyStack) {
    b->GiveRecord();
    EXPECT_TRUE(Parse("<U><B/><B/></U>"));
    EXPECT_TRUE(parser.GetElementStack()->IsEmpty());
    const std::vector<std::string> expected{"close B", "close B"};
    EXPECT_EQ(events, expected);
}

TEST_F(ZXmlParserTest, Text_SplitAroundAnEntityKeepsOnlyTheLastPiece) {
    EXPECT_TRUE(Parse("<A>ab&amp;cd</A>"));
    EXPECT_EQ(Platform::Utf16ToUtf8(a->GetText()), "&cd");
}

TEST_F(ZXmlParserTest, Text_InsideAnUnknownFirstChildReachesTheKnownParent) {
    EXPECT_TRUE(Parse("<A><U>inner</U></A>"));
    EXPECT_EQ(Platform::Utf16ToUtf8(a->GetText()), "inner");
}

TEST_F(ZXmlParserTest, Text_AfterACloseTagIsDropped) {
    EXPECT_TRUE(Parse("<A><B/>tail</A>"));
    for (const std::string& event : events) {
        EXPECT_EQ(event.find("tail"), std::string::npos) << event;
    }
}

TEST_F(ZXmlParserTest, Registry_FirstHandlerForATagStays) {
    std::vector<std::string> otherEvents;
    parser.RegisterHandler(std::make_shared<FakeHandler>(u"A", otherEvents));
    EXPECT_TRUE(Parse("<A/>"));
    EXPECT_EQ(events.size(), 2u);
    EXPECT_TRUE(otherEvents.empty());
}

TEST_F(ZXmlParserTest, Registry_LookupIsCaseSensitive) {
    EXPECT_TRUE(Parse("<a/>"));
    EXPECT_TRUE(events.empty());
}

TEST_F(ZXmlParserTest, Stack_HandlerRecordsArePushedAndPopped) {
    std::vector<std::string> seen;
    EXPECT_TRUE(Parse("<A><B/></A>"));
    EXPECT_TRUE(parser.GetElementStack()->IsEmpty());
    auto noRecords = std::make_shared<FakeHandler>(u"C", seen, false);
    parser.RegisterHandler(noRecords);
    EXPECT_TRUE(Parse("<C><A/></C>"));
    EXPECT_TRUE(parser.GetElementStack()->IsEmpty());
}

namespace {

std::string LaughsDocument() {
    std::string document = "<?xml version=\"1.0\"?><!DOCTYPE A [<!ENTITY l0 \"ha\">";
    for (int level = 1; level <= 9; ++level) {
        document += "<!ENTITY l" + std::to_string(level) + " \"" +
                    Repeat("&l" + std::to_string(level - 1) + ";", 10) + "\">";
    }
    return document + "]><A>&l9;</A>";
}

}  // namespace

TEST_F(ZXmlParserTest, Hardening_EntityExpansionBombEndsAsAFatalError) {
    EXPECT_FALSE(Parse(LaughsDocument()));
    EXPECT_EQ(MessagesOfLevel(ReportLevelFatal).size(), 1u);
}

TEST_F(ZXmlParserTest, Hardening_EntityDeclarationsAreRefusedWithoutATextBudget) {
    // A source of unknown size has no text budget; the first declaration stops it all the same.
    const std::string document = LaughsDocument();
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                                      "laughs");
    EXPECT_FALSE(parser.Parse(source));
    const std::vector<std::string> fatals = MessagesOfLevel(ReportLevelFatal);
    ASSERT_EQ(fatals.size(), 1u);
    EXPECT_EQ(fatals[0],
              "The document declares the entity 'l0'; entity declarations are refused! [Line 1, Column 52]");
    EXPECT_EQ(parser.GetLastError(),
              "The document declares the entity 'l0'; entity declarations are refused!");
    EXPECT_TRUE(events.empty());
}

TEST_F(ZXmlParserTest, Hardening_ParameterEntityDeclarationsAreRefused) {
    EXPECT_FALSE(Parse("<!DOCTYPE A [<!ENTITY % p \"<!ELEMENT A ANY>\"> %p; %p;]><A/>"));
    EXPECT_TRUE(OneFatalStartingWith(
        "The document declares the parameter entity 'p'; entity declarations are refused!"));
    EXPECT_TRUE(events.empty());
}

TEST_F(ZXmlParserTest, Hardening_NestedEntitiesInAnAttributeDefaultNeverExpand) {
    // The XML library expands the references of an attribute default while it reads the
    // declaration and counts none of them against its expansion limit.
    std::string declarations = "<!ENTITY a \"x\">";
    std::string previous = "a";
    for (const char* name : {"b", "c", "d", "e", "f", "g", "h", "i"}) {
        declarations += "<!ENTITY " + std::string(name) + " \"" + Repeat("&" + previous + ";", 10) + "\">";
        previous = name;
    }
    EXPECT_FALSE(Parse("<!DOCTYPE A [" + declarations + "<!ATTLIST A t CDATA \"&i;\">]><A/>"));
    EXPECT_EQ(MessagesOfLevel(ReportLevelFatal).size(), 1u);
    EXPECT_TRUE(events.empty());
}

TEST_F(ZXmlParserTest, Hardening_ExternalGeneralEntityIsRefusedUnread) {
    const std::string secret = TempFile("zxmlparser_secret.txt", "SECRET");
    EXPECT_FALSE(Parse("<!DOCTYPE A [<!ENTITY e SYSTEM \"file://" + secret + "\">]><A>x&e;</A>"));
    EXPECT_TRUE(events.empty());
    for (const ReadMessage& message : sink->GetMessages()) {
        EXPECT_EQ(message.text.find("SECRET"), std::string::npos) << message.text;
    }
}

TEST_F(ZXmlParserTest, Hardening_ExternalParameterEntityAndDtdAreNotLoaded) {
    const std::string dtd = TempFile("zxmlparser_bad.dtd", "<!ATTLIST A t CDATA \"SECRET\">");
    EXPECT_TRUE(Parse("<!DOCTYPE A SYSTEM \"" + dtd + "\"><A/>"));
    EXPECT_TRUE(Parse("<!DOCTYPE A SYSTEM \"http://127.0.0.1:9/none.dtd\"><A/>"));
    EXPECT_TRUE(sink->GetMessages().empty());
}

TEST_F(ZXmlParserTest, Hardening_NestingUpToTheLimitIsRead) {
    EXPECT_TRUE(Parse(Nested(ReaderLimits::kMaxElementDepth)));
    EXPECT_TRUE(MessagesOfLevel(ReportLevelFatal).empty());
}

TEST_F(ZXmlParserTest, Hardening_NestingBeyondTheLimitStopsTheRead) {
    EXPECT_FALSE(Parse(Nested(ReaderLimits::kMaxElementDepth + 1)));
    EXPECT_TRUE(
        OneFatalStartingWith("The document nests elements deeper than 1000 levels! [Line 1, Column "));
}

TEST_F(ZXmlParserTest, Hardening_HundredThousandLevelsEndQuickly) {
    EXPECT_FALSE(Parse(Nested(100000)));
    EXPECT_EQ(MessagesOfLevel(ReportLevelFatal).size(), 1u);
}

TEST_F(ZXmlParserTest, Hardening_DepthLimitAppliesToKnownElementsToo) {
    std::string document;
    for (unsigned i = 0; i <= ReaderLimits::kMaxElementDepth; ++i) {
        document += "<A>";
    }
    EXPECT_FALSE(Parse(document));
    EXPECT_EQ(events.size(), ReaderLimits::kMaxElementDepth);
}

TEST(ZXmlParser_EncodingProbe, NamesTheEncodingOfTheFirstBytes) {
    std::string encoding = "untouched";
    EXPECT_FALSE(ZXmlParser::ProbeFileEncoding(nullptr, encoding));
    EXPECT_FALSE(ZXmlParser::ProbeFileEncoding("/nonexistent/file.xml", encoding));
    EXPECT_EQ(encoding, "untouched");
    const std::string utf16 = TempFile("probe16.xml", std::string("\xFF\xFE<\0?\0x\0m\0l\0", 12));
    EXPECT_TRUE(ZXmlParser::ProbeFileEncoding(utf16.c_str(), encoding));
    EXPECT_EQ(encoding, "UTF-16 (LE)");
    const std::string utf8 = TempFile("probe8.xml", "<?xml version=\"1.0\"?><A/>");
    EXPECT_TRUE(ZXmlParser::ProbeFileEncoding(utf8.c_str(), encoding));
    EXPECT_EQ(encoding, "UTF-8");
}

TEST_F(ZXmlParserTest, Hardening_FlatEntityRepeatedInAnAttributeIsRefusedAtItsDeclaration) {
    const std::string references = Repeat("&big;", 200);
    const std::string document =
        "<!DOCTYPE A [<!ENTITY big \"" + std::string(1000, 'x') + "\">]><A t=\"" + references + "\"/>";
    EXPECT_FALSE(Parse(document));
    EXPECT_TRUE(
        OneFatalStartingWith("The document declares the entity 'big'; entity declarations are refused!"));
    EXPECT_TRUE(events.empty());
}

TEST_F(ZXmlParserTest, Hardening_AttributeDefaultsBeyondTheDocumentSizeReportTheBudget) {
    const std::string elements = Repeat("<B/>", 100);
    const std::string document =
        "<!DOCTYPE A [<!ATTLIST B t CDATA \"" + std::string(1000, 'x') + "\">]><A>" + elements + "</A>";
    EXPECT_FALSE(Parse(document));
    EXPECT_TRUE(OneFatalStartingWith("The document expands to more text than its " +
                                     std::to_string(document.size()) + " bytes hold! [Line 1, Column "));
}

TEST_F(ZXmlParserTest, Hardening_EntityUsedInContentIsRefusedToo) {
    const std::string references = Repeat("&big;", 200);
    EXPECT_FALSE(
        Parse("<!DOCTYPE A [<!ENTITY big \"" + std::string(1000, 'x') + "\">]><A>" + references + "</A>"));
    EXPECT_EQ(MessagesOfLevel(ReportLevelFatal).size(), 1u);
}

TEST_F(ZXmlParserTest, Hardening_PredefinedEntitiesAndCharacterReferencesAreRead) {
    EXPECT_TRUE(
        Parse("<!DOCTYPE A [<!ATTLIST A u CDATA \"&amp;&#x42;\">]><A t=\"&lt;&#65;&gt;\">&quot;&apos;</A>"));
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0].rfind("open A t=<A>", 0), 0u) << events[0];
    EXPECT_NE(events[0].find("u=&B"), std::string::npos) << events[0];
    EXPECT_TRUE(MessagesOfLevel(ReportLevelFatal).empty());
}

TEST_F(ZXmlParserTest, Hardening_TextBudgetAppliesToFiles) {
    const std::string elements = Repeat("<B/>", 200);
    const std::string path =
        TempFile("zxmlparser_expanding.xml", "<!DOCTYPE A [<!ATTLIST B t CDATA \"" + std::string(1000, 'x') +
                                                 "\">]><A>" + elements + "</A>");
    EXPECT_FALSE(parser.ParseFile(path.c_str(), ""));
    EXPECT_TRUE(OneFatalStartingWith("The document expands to more text than its "));
}

TEST_F(ZXmlParserTest, ParseFile_FolderIsRefusedWithAFatalMessage) {
    EXPECT_FALSE(parser.ParseFile("/", ""));
    const std::vector<std::string> fatals = MessagesOfLevel(ReportLevelFatal);
    ASSERT_EQ(fatals.size(), 1u);
    EXPECT_EQ(fatals[0], "The passed filename names no regular file: '/'!");
}

TEST_F(ZXmlParserTest, Text_WideCharactersOfTheDocumentAreWithinTheBudget) {
    // Two-, three- and four-byte UTF-8 characters, and UTF-16 with its two bytes per unit.
    EXPECT_TRUE(Parse("<A t=\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\">\xC3\xA9</A>"));
    const std::string utf16("\xFF\xFE<\0A\0 \0t\0=\0\"\0x\0\"\0/\0>\0", 22);
    EXPECT_TRUE(Parse(utf16));
}
