#include "reader/ZKLXmlParser.h"

#include "reader/ZKLReaderImpl.h"

#include <ZeKL/ReportCollector.h>

#include <gtest/gtest.h>

using namespace Korvel;

namespace {

bool ParseText(ZKLXmlParser& parser, const std::string& text) {
    return parser.ParseMemory(text.data(), static_cast<uint32_t>(text.size()), "");
}

}  // namespace

TEST(ZKLXmlParser_Ecu, StartsEmptyAndIsHandedOverByTakeEcu) {
    ZKLXmlParser parser;
    ASSERT_NE(parser.GetEcu(), nullptr);
    EXPECT_EQ(parser.GetEcu()->GetInstanceContainer()->GetCount(), 0u);
    IEcu* ecu = parser.GetEcu();
    std::unique_ptr<IEcu> taken = parser.TakeEcu();
    EXPECT_EQ(taken.get(), ecu);
    EXPECT_EQ(parser.GetEcu(), nullptr);
    EXPECT_EQ(parser.TakeEcu(), nullptr);
}

TEST(ZKLXmlParser_Stack, IsTheReadersStack) {
    ZKLXmlParser parser;
    EXPECT_NE(parser.GetElementStack(), nullptr);
    EXPECT_NE(parser.GetXmlParser(), nullptr);
}

TEST(ZKLXmlParser_Summary, FailedParseShowsTheErrorCountTwice) {
    ZKLXmlParser parser;
    auto sink = std::make_shared<ReportCollector>(ReportLevelDebug);
    sink->Error("before");
    for (int i = 0; i < 7; ++i) {
        sink->Warn("warning");
    }
    parser.SetReporting(sink);
    EXPECT_FALSE(parser.ParseMemory("", 1, ""));  // adds one ERROR and one FATAL
    EXPECT_EQ(sink->GetErrorCount(), 3u);
    EXPECT_EQ(sink->GetWarningCount(), 7u);
    EXPECT_EQ(parser.GetParseSummary(), "Parsing result: failed3 errors, 3warnigns\n");
    uint32_t errors = 0;
    uint32_t warnings = 0;
    EXPECT_FALSE(parser.GetParseCounts(errors, warnings));
    EXPECT_EQ(errors, 3u);
    EXPECT_EQ(warnings, 3u);
}

TEST(ZKLXmlParser_Summary, SuccessWithoutSinkLeavesTheCountsOut) {
    ZKLXmlParser parser;
    EXPECT_TRUE(ParseText(parser, "<ECU/>"));
    EXPECT_EQ(parser.GetParseSummary(), "Parsing result: success\n");
    uint32_t errors = 11;
    uint32_t warnings = 12;
    EXPECT_TRUE(parser.GetParseCounts(errors, warnings));
    EXPECT_EQ(errors, 11u);
    EXPECT_EQ(warnings, 12u);
}

TEST(ZKLXmlParser_Summary, SuccessWithSink) {
    ZKLXmlParser parser;
    auto sink = std::make_shared<ReportCollector>(ReportLevelError);
    parser.SetReporting(sink);
    EXPECT_TRUE(ParseText(parser, "<ECU/>"));
    EXPECT_EQ(parser.GetParseSummary(), "Parsing result: success0 errors, 0warnigns\n");
}

TEST(ZKLXmlParser_Handlers, FillTheParsersEcu) {
    ZKLXmlParser parser;
    auto sink = std::make_shared<ReportCollector>(ReportLevelError);
    parser.SetReporting(sink);
    ZKLReaderImpl::RegisterHandlers(parser, sink);
    EXPECT_TRUE(ParseText(parser, "<ECU protocol=\"KWP\"><INSTANCE id=\"a\"/></ECU>"));
    EXPECT_EQ(parser.GetEcu()->GetProtocol(), ProtocolKwp);
    EXPECT_EQ(parser.GetEcu()->GetInstanceContainer()->GetCount(), 1u);
    EXPECT_EQ(parser.GetTagCounts()[KLTag::Instance].open, 1u);
    EXPECT_EQ(parser.GetTagCounts()[KLTag::Instance].close, 1u);
}
