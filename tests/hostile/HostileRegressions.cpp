// Every input that once broke the reader or the round trip (kept in tests/data/hostile) must
// now give null or a model, and a model that the format can carry must write stably.
#include "HostileSupport.h"
#include "RoundTrip.h"

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

std::vector<std::filesystem::path> RegressionInputs() {
    std::vector<std::filesystem::path> inputs;
    std::error_code error;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(ZEKL_TEST_DATA_DIR) / "hostile", error)) {
        if (entry.is_regular_file() && entry.path().filename().string().front() != '.') {
            inputs.push_back(entry.path());
        }
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

}  // namespace

TEST(HostileRegressions, EveryKeptInputGivesNullOrAValidModel) {
    const auto inputs = RegressionInputs();
    ASSERT_FALSE(inputs.empty());
    for (const auto& path : inputs) {
        const std::string bytes = ReadWholeFile(path);
        auto fromMemory = ReadBytes(bytes);
        if (fromMemory->ecu) {
            for (const std::string& text : CollectTexts(*fromMemory->ecu)) {
                EXPECT_TRUE(IsValidUtf8(text)) << path;
            }
        } else {
            EXPECT_GT(fromMemory->report.GetErrorCount(), 0u) << path;
        }
        auto fromFile = ReadPath(path.string());
        EXPECT_EQ(fromFile->ecu != nullptr, fromMemory->ecu != nullptr) << path;
    }
}

TEST(HostileRegressions, EveryKeptInputThatReadsWritesStably) {
    for (const auto& path : RegressionInputs()) {
        const std::string bytes = ReadWholeFile(path);
        const RoundTripResult result = CheckRoundTrip(bytes.data(), static_cast<uint32_t>(bytes.size()));
        EXPECT_TRUE(result.outcome == RoundTripOutcome::NotRead ||
                    result.outcome == RoundTripOutcome::NotWritable ||
                    result.outcome == RoundTripOutcome::Stable)
            << path << ": " << OutcomeName(result.outcome) << "\nsecond:\n"
            << result.second << "\nthird:\n"
            << result.third;
    }
}

TEST(HostileRegressions, SampleDocumentWritesStably) {
    const std::string& sample = SampleDocument();
    const RoundTripResult result = CheckRoundTrip(sample.data(), static_cast<uint32_t>(sample.size()));
    EXPECT_EQ(result.outcome, RoundTripOutcome::Stable) << OutcomeName(result.outcome) << "\n"
                                                        << result.second;
    for (const char* encoding : {"Windows-1252", "iso-8859-1", ""}) {
        const RoundTripResult other =
            CheckRoundTrip(sample.data(), static_cast<uint32_t>(sample.size()), encoding);
        EXPECT_EQ(other.outcome, RoundTripOutcome::Stable) << encoding << ": " << OutcomeName(other.outcome);
    }
}
