#include "platform/DebugOutput.h"

#include <ZeKL/DebugOutput.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

struct Recorder {
    std::vector<std::string> texts;
};

void Record(const char* text, void* context) {
    static_cast<Recorder*>(context)->texts.emplace_back(text);
}

void OtherSink(const char*, void*) {}

// Restores the silent default whatever the test did.
class DebugOutputTest : public ::testing::Test {
protected:
    void TearDown() override { SetDebugOutputSink(nullptr, nullptr); }
};

TEST_F(DebugOutputTest, InstalledSinkReceivesEveryText) {
    Recorder recorder;
    SetDebugOutputSink(&Record, &recorder);
    Platform::DebugOutput("ERROR: first\n");
    Platform::DebugOutput(std::string("WARN: second\n"));
    EXPECT_EQ(recorder.texts, (std::vector<std::string>{"ERROR: first\n", "WARN: second\n"}));
}

TEST_F(DebugOutputTest, NullTextIsIgnored) {
    Recorder recorder;
    SetDebugOutputSink(&Record, &recorder);
    Platform::DebugOutput(static_cast<const char*>(nullptr));
    EXPECT_TRUE(recorder.texts.empty());
}

TEST_F(DebugOutputTest, SetReturnsPreviousSink) {
    EXPECT_EQ(SetDebugOutputSink(&OtherSink, nullptr), nullptr);
    EXPECT_EQ(SetDebugOutputSink(nullptr, nullptr), &OtherSink);
    EXPECT_EQ(SetDebugOutputSink(nullptr, nullptr), nullptr);
}

TEST_F(DebugOutputTest, RemovedSinkReceivesNothing) {
    Recorder recorder;
    SetDebugOutputSink(&Record, &recorder);
    SetDebugOutputSink(nullptr, nullptr);
    Platform::DebugOutput("dropped\n");
    EXPECT_TRUE(recorder.texts.empty());
}

TEST_F(DebugOutputTest, DefaultIsSilentAndDoesNotFail) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Platform::DebugOutput("nobody listens\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace Korvel
