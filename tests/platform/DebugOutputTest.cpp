#include "platform/DebugOutput.h"

#include <ZeKL/DebugOutput.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
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

// A sink that is running when another thread installs a new one: the install waits for it to
// return, so the old sink's context may be freed as soon as the install returns.
struct SlowSink {
    std::atomic<bool> entered{false};
    std::atomic<bool> replacedWhileRunning{false};
    std::atomic<bool>* replaced = nullptr;
};

void Slow(const char*, void* context) {
    auto* sink = static_cast<SlowSink*>(context);
    sink->entered = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    sink->replacedWhileRunning = sink->replaced->load();
}

TEST_F(DebugOutputTest, InstallingASinkWaitsForTheRunningCallOfTheOldOne) {
    std::atomic<bool> replaced{false};
    SlowSink slow;
    slow.replaced = &replaced;
    SetDebugOutputSink(&Slow, &slow);
    std::thread reporter([] { Platform::DebugOutput("from a read on another thread\n"); });
    while (!slow.entered) {
        std::this_thread::yield();
    }
    SetDebugOutputSink(&OtherSink, nullptr);
    replaced = true;
    reporter.join();
    EXPECT_FALSE(slow.replacedWhileRunning);
}

// Many threads report while the sink changes under them: every text reaches exactly one of
// the installed sinks, none is lost or torn (checked under the thread sanitizer too).
TEST_F(DebugOutputTest, ConcurrentReportsAndInstallsReachAnInstalledSink) {
    std::atomic<int> first{0};
    std::atomic<int> second{0};
    const auto count = [](const char*, void* context) { ++*static_cast<std::atomic<int>*>(context); };
    SetDebugOutputSink(count, &first);
    std::vector<std::thread> reporters;
    for (int thread = 0; thread < 4; ++thread) {
        reporters.emplace_back([] {
            for (int text = 0; text < 1000; ++text) {
                Platform::DebugOutput("line\n");
            }
        });
    }
    for (int swap = 0; swap < 200; ++swap) {
        SetDebugOutputSink(count, swap % 2 == 0 ? &second : &first);
    }
    for (std::thread& reporter : reporters) {
        reporter.join();
    }
    EXPECT_EQ(first + second, 4000);
}

}  // namespace
}  // namespace Korvel
