#include <ZeKL/ReportCollector.h>
#include <ZeKL/ZeKL.h>

#include "DebugCapture.h"
#include "reader/ZKLReportingHandler.h"

#include <gtest/gtest.h>

#include <string>

using Korvel::ReportCollector;
using Korvel::ZKLReportingHandler;
using ReaderTest::DebugCapture;

namespace {

// Keeps the emitted lines instead of writing them to the debug output.
class RedirectingCollector : public ReportCollector {
public:
    using ReportCollector::ReportCollector;
    void Output(const std::string& levelName, const std::string& message) override {
        lines.push_back(levelName + "|" + message);
    }
    std::vector<std::string> lines;
};

}  // namespace

TEST(ReportCollector_LevelNames, AreTheFiveNamesAndEmptyOtherwise) {
    EXPECT_STREQ(Korvel::ReportLevelName(1), "FATAL");
    EXPECT_STREQ(Korvel::ReportLevelName(2), "ERROR");
    EXPECT_STREQ(Korvel::ReportLevelName(3), "WARN");
    EXPECT_STREQ(Korvel::ReportLevelName(4), "INFO");
    EXPECT_STREQ(Korvel::ReportLevelName(5), "DEBUG");
    EXPECT_STREQ(Korvel::ReportLevelName(0), "");
    EXPECT_STREQ(Korvel::ReportLevelName(6), "");
    EXPECT_STREQ(Korvel::ReportLevelName(-1), "");
}

TEST(ReportCollector_Debug, NeverStoresOrEmitsWhateverTheLevel) {
    DebugCapture capture;
    ReportCollector sink(100);
    sink.Debug("trace");
    EXPECT_TRUE(capture.Lines().empty());
    EXPECT_TRUE(sink.GetMessages().empty());
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_EQ(sink.GetErrorCount(), 0u);
}

TEST(ReportCollector_Report, Level5IsEmittedOnlyWhenReportLevelIsAtLeast5) {
    DebugCapture capture;
    ReportCollector sink(4);
    sink.Report(5, "detail");
    EXPECT_TRUE(capture.Lines().empty());
    sink.SetReportLevel(5);
    sink.Report(5, "detail");
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_EQ(capture.Lines()[0], "DEBUG: detail\n");
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_EQ(sink.GetErrorCount(), 0u);
}

TEST(ReportCollector_Report, WarningAboveReportLevelIsNeitherStoredNorEmitted) {
    DebugCapture capture;
    ReportCollector sink(2);
    sink.Report(3, "careful");
    EXPECT_TRUE(capture.Lines().empty());
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_TRUE(sink.GetMessages().empty());
}

TEST(ReportCollector_Report, WarningAtReportLevel3IsStoredAndEmitted) {
    DebugCapture capture;
    ReportCollector sink(3);
    sink.Report(3, "careful");
    ASSERT_EQ(sink.GetWarnings().size(), 1u);
    EXPECT_EQ(sink.GetWarnings()[0], "careful");
    EXPECT_EQ(sink.GetWarningCount(), 1u);
    EXPECT_EQ(sink.GetErrorCount(), 0u);
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_EQ(capture.Lines()[0], "WARN: careful\n");
}

TEST(ReportCollector_Report, LevelOutsideTheNamesIsEmittedWithEmptyNameAndNotStored) {
    DebugCapture capture;
    ReportCollector sink(2);
    sink.Report(0, "odd");
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_EQ(capture.Lines()[0], ": odd\n");
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_EQ(sink.GetErrorCount(), 0u);
    ASSERT_EQ(sink.GetMessages().size(), 1u);
    EXPECT_EQ(sink.GetMessages()[0].level, 0);
}

TEST(ReportCollector_Report, ErrorsAndFatalsShareTheErrorListInArrivalOrder) {
    RedirectingCollector sink(5);
    sink.Error("first");
    sink.Fatal("second");
    sink.Warn("third");
    sink.Info("fourth");
    ASSERT_EQ(sink.GetErrors().size(), 2u);
    EXPECT_EQ(sink.GetErrors()[0], "first");
    EXPECT_EQ(sink.GetErrors()[1], "second");
    EXPECT_EQ(sink.GetErrorCount(), 2u);
    EXPECT_EQ(sink.GetWarningCount(), 1u);
    ASSERT_EQ(sink.GetMessages().size(), 4u);
    EXPECT_EQ(sink.GetMessages()[0].level, 2);
    EXPECT_EQ(sink.GetMessages()[1].level, 1);
    EXPECT_EQ(sink.GetMessages()[2].level, 3);
    EXPECT_EQ(sink.GetMessages()[3].level, 4);
    EXPECT_EQ(sink.GetMessages()[3].text, "fourth");
}

TEST(ReportCollector_Output, IsVirtualSoADerivedSinkRedirectsEveryLine) {
    DebugCapture capture;
    RedirectingCollector sink(5);
    sink.Fatal("f");
    sink.Info("i");
    sink.Report(5, "d");
    EXPECT_TRUE(capture.Lines().empty());
    ASSERT_EQ(sink.lines.size(), 3u);
    EXPECT_EQ(sink.lines[0], "FATAL|f");
    EXPECT_EQ(sink.lines[1], "INFO|i");
    EXPECT_EQ(sink.lines[2], "DEBUG|d");
}

TEST(ReportCollector_SetReportLevel, AppliesToTheFollowingMessages) {
    RedirectingCollector sink(1);
    sink.Error("dropped");
    sink.SetReportLevel(2);
    EXPECT_EQ(sink.GetReportLevel(), 2);
    sink.Error("kept");
    ASSERT_EQ(sink.GetErrors().size(), 1u);
    EXPECT_EQ(sink.GetErrors()[0], "kept");
}

TEST(ReportCollector_Construction, DefaultsToReportLevelError) {
    ReportCollector sink;
    EXPECT_EQ(sink.GetReportLevel(), 2);
}

TEST(ZKLReportingHandler_Construction, StartsWithReportLevel2AndEmptyLists) {
    DebugCapture capture;
    ZKLReportingHandler sink;
    EXPECT_EQ(sink.GetReportLevel(), 2);
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_EQ(sink.GetErrorCount(), 0u);
    sink.Warn("hidden");
    sink.Error("shown");
    EXPECT_EQ(sink.GetWarningCount(), 0u);
    EXPECT_EQ(sink.GetErrorCount(), 1u);
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_EQ(capture.Lines()[0], "ERROR: shown\n");
}

// Beyond the first kMaxKeptMessages texts only the counts grow; each list ends with one line
// that says how many were left out, and every message still reaches Output.
TEST(ReportCollector_Bound, KeepsTheFirstTextsAndCountsTheRestExactly) {
    RedirectingCollector sink(Korvel::ReportLevelDebug);
    const uint32_t kept = ReportCollector::kMaxKeptMessages;
    for (uint32_t index = 0; index < kept; ++index) {
        sink.Report(Korvel::ReportLevelWarn, "warning " + std::to_string(index));
    }
    EXPECT_EQ(sink.GetLeftOutCount(), 0u);
    EXPECT_EQ(sink.GetMessages().size(), kept);
    sink.Report(Korvel::ReportLevelWarn, "one more warning");
    sink.Report(Korvel::ReportLevelError, "an error");
    sink.Report(Korvel::ReportLevelInfo, "some info");
    EXPECT_EQ(sink.GetWarningCount(), kept + 1);
    EXPECT_EQ(sink.GetErrorCount(), 1u);
    EXPECT_EQ(sink.GetLeftOutCount(), 3u);
    EXPECT_EQ(sink.lines.size(), kept + 3u);
    const auto& messages = sink.GetMessages();
    ASSERT_EQ(messages.size(), kept + 1u);
    EXPECT_EQ(messages[kept - 1].text, "warning " + std::to_string(kept - 1));
    EXPECT_EQ(messages.back().level, Korvel::ReportLevelError);
    EXPECT_EQ(messages.back().text, "... 3 more message(s) left out: only the first 10000 are kept");
    ASSERT_EQ(sink.GetWarnings().size(), kept + 1u);
    EXPECT_EQ(sink.GetWarnings().back(), "... 1 more message(s) left out: only the first 10000 are kept");
    ASSERT_EQ(sink.GetErrors().size(), 1u);
    EXPECT_EQ(sink.GetErrors().back(), "... 1 more message(s) left out: only the first 10000 are kept");
    // Later messages update the one line instead of adding lines.
    sink.Report(Korvel::ReportLevelFatal, "fatal");
    ASSERT_EQ(sink.GetMessages().size(), kept + 1u);
    EXPECT_EQ(sink.GetMessages().back().level, Korvel::ReportLevelFatal);
    EXPECT_EQ(sink.GetMessages().back().text,
              "... 4 more message(s) left out: only the first 10000 are kept");
    EXPECT_EQ(sink.GetErrors().back(), "... 2 more message(s) left out: only the first 10000 are kept");
    EXPECT_EQ(sink.GetErrorCount(), 2u);
}

// A document of 100,000 elements that each give messages: the reader's read keeps no more
// texts than the bound, in the caller's collector and in its own sink alike.
TEST(ReportCollector_Bound, AHostileReadKeepsBoundedTexts) {
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"UDS\">\n";
    for (int index = 0; index < 100000; ++index) {
        text += "<INSTANCE/>\n";
    }
    text += "</ECU>\n";
    ReportCollector sink(Korvel::ReportLevelWarn);
    const auto ecu = Korvel::GetKLReader().ReadText(text, "", sink);
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(sink.GetErrorCount(), 200000u);
    EXPECT_EQ(sink.GetWarningCount(), 100000u);
    EXPECT_EQ(sink.GetMessages().size(), ReportCollector::kMaxKeptMessages + 1u);
    EXPECT_EQ(sink.GetLeftOutCount(), 300000u - ReportCollector::kMaxKeptMessages);
}
