// The writer front with a configuration of the caller's own (CreateConfig and the WriteToString
// and WriteToFile overloads that take it), beside the process-wide one.
#include "writer/ZKLWriterImpl.h"

#include "WriterTestFiles.h"
#include "WriterTestModels.h"
#include "writer/WriterMessages.h"
#include "writer/ZWriterConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace Korvel {
namespace {

const char* const kUnit =
    "\xC2\xB0"
    "C";  // °C

// The sample with a unit that only survives a Windows-1252 write when every value is converted.
std::unique_ptr<IEcu> EcuWithDegrees() {
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ecu->GetInstanceContainer()->GetInstance(0u)->GetPosResponse()->GetParam(1)->SetUnit(kUnit);
    return ecu;
}

// Restores the process-wide switches when a test ends.
class GlobalSwitches {
public:
    GlobalSwitches()
        : all_(ZWriterConfig::Instance().GetEncodeAllValues()),
          refuse_(ZWriterConfig::Instance().GetRefuseUncarriedCharacters()) {}
    ~GlobalSwitches() {
        ZWriterConfig::Instance().SetEncodeAllValues(all_);
        ZWriterConfig::Instance().SetRefuseUncarriedCharacters(refuse_);
    }

private:
    bool all_;
    bool refuse_;
};

TEST(KLWriter_OwnConfig, CreateConfigGivesANewConfigurationWithTheDefaults) {
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> first = writer.CreateConfig();
    const std::unique_ptr<IWriterConfig> second = writer.CreateConfig();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first.get(), second.get());
    EXPECT_NE(first.get(), &writer.GetConfig());
    EXPECT_EQ(first->GetSetting(), 0u);
    EXPECT_FALSE(first->GetEncodeAllValues());
    EXPECT_FALSE(first->GetRefuseUncarriedCharacters());
    first->SetEncodeAllValues(true);
    EXPECT_FALSE(second->GetEncodeAllValues());
    EXPECT_FALSE(writer.GetConfig().GetEncodeAllValues());
}

TEST(KLWriter_OwnConfig, DefaultConfigurationWritesTheDescribedDocument) {
    ZKLWriterImpl writer;
    std::string text;
    std::string error = "stale";
    const std::string expected = WriterTest::SampleDocumentUtf8();
    EXPECT_EQ(
        writer.WriteToString(*WriterTest::MakeSampleEcu(), text, "utf-8", *writer.CreateConfig(), error),
        expected.size());
    EXPECT_EQ(text, expected);
    EXPECT_TRUE(error.empty());
}

TEST(KLWriter_OwnConfig, StringWriteConvertsEveryValue) {
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
    std::string before;
    writer.WriteToString(*EcuWithDegrees(), before, "Windows-1252");
    EXPECT_NE(before.find("unit=\"\xC2\xB0"
                          "C\""),
              std::string::npos);
    config->SetEncodeAllValues(true);
    std::string text;
    std::string error;
    EXPECT_NE(writer.WriteToString(*EcuWithDegrees(), text, "Windows-1252", *config, error), 0u);
    EXPECT_NE(text.find("unit=\"\xB0"
                        "C\""),
              std::string::npos)
        << text;
}

TEST(KLWriter_OwnConfig, RefusedCharacterLeavesTheTextAndNamesTheItem) {
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
    config->SetEncodeAllValues(true);
    config->SetRefuseUncarriedCharacters(true);
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ecu->GetInstanceContainer()->GetInstance(0u)->GetPosResponse()->GetParam(1)->SetUnit("\xCE\xA9");
    std::string text = "unchanged";
    std::string error;
    WriterTest::DebugRecorder recorder;
    EXPECT_EQ(writer.WriteToString(*ecu, text, "Windows-1252", *config, error), 0u);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(error,
              "the unit of parameter 'Temp' in the response of instance 'ReadTemperature' holds '\xCE\xA9' "
              "(U+03A9), which Windows-1252 cannot carry");
    EXPECT_EQ(recorder.texts, std::vector<std::string>{WriterMessages::kExceptionDuringWrite});
}

TEST(KLWriter_OwnConfig, RefusedFileWriteKeepsTheOldFile) {
    WriterTest::TempFolder folder;
    const std::string path = folder.File("doc.xml");
    WriterTest::WriteFileBytes(path, "the old document");
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
    config->SetRefuseUncarriedCharacters(true);
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x31}, "\xE2\x80\x93");
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*ecu, path.c_str(), "iso-8859-1", *config, error), 0u);
    EXPECT_EQ(error, "the text of NRC 49 holds '\xE2\x80\x93' (U+2013), which iso-8859-1 cannot carry");
    EXPECT_EQ(WriterTest::ReadFileBytes(path), "the old document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(KLWriter_OwnConfig, FileWriteWithTheConfiguration) {
    WriterTest::TempFolder folder;
    const std::string path = folder.File("doc.xml");
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
    config->SetEncodeAllValues(true);
    std::string error;
    const uint32_t written =
        writer.WriteToFile(*EcuWithDegrees(), path.c_str(), "Windows-1252", *config, error);
    EXPECT_TRUE(error.empty()) << error;
    const std::string text = WriterTest::ReadFileBytes(path);
    EXPECT_EQ(written, text.size());
    EXPECT_NE(text.find("unit=\"\xB0"
                        "C\""),
              std::string::npos);
}

TEST(KLWriter_OwnConfig, NullArgumentsAreNamed) {
    ZKLWriterImpl writer;
    const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
    std::string text = "unchanged";
    std::string error;
    EXPECT_EQ(writer.WriteToString(*WriterTest::MakeSampleEcu(), text, nullptr, *config, error), 0u);
    EXPECT_EQ(error, WriterMessages::kNoEncoding);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), nullptr, "utf-8", *config, error), 0u);
    EXPECT_EQ(error, WriterMessages::kNoFileName);
}

TEST(KLWriter_OwnConfig, OverflowIsNamedInTheStringForm) {
    const std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ZKLWriterImpl writer(std::string(WriterTest::SampleDocumentUtf8()).size() - 1);
    std::string text;
    std::string error;
    WriterTest::DebugRecorder recorder;
    EXPECT_EQ(writer.WriteToString(*ecu, text, "utf-8", *writer.CreateConfig(), error), 0u);
    EXPECT_EQ(error, WriterMessages::kDocumentTooLong);
    EXPECT_EQ(recorder.texts, std::vector<std::string>{WriterMessages::kByteLengthOverflow});
}

TEST(KLWriter_OwnConfig, OwnConfigurationIgnoresTheProcessWideOne) {
    GlobalSwitches restore;
    ZKLWriterImpl writer;
    writer.GetConfig().SetEncodeAllValues(true);
    std::string text;
    std::string error;
    writer.WriteToString(*EcuWithDegrees(), text, "Windows-1252", *writer.CreateConfig(), error);
    EXPECT_NE(text.find("unit=\"\xC2\xB0"
                        "C\""),
              std::string::npos);
}

TEST(KLWriter_OwnConfig, ProcessWideSwitchesReachTheShortForms) {
    GlobalSwitches restore;
    ZKLWriterImpl writer;
    writer.GetConfig().SetEncodeAllValues(true);
    std::string text;
    writer.WriteToString(*EcuWithDegrees(), text, "Windows-1252");
    EXPECT_NE(text.find("unit=\"\xB0"
                        "C\""),
              std::string::npos);
    ByteBuffer buffer;
    writer.WriteToBuffer(*EcuWithDegrees(), buffer, "Windows-1252");
    EXPECT_EQ(std::string(buffer.begin(), buffer.end()), text);
    writer.GetConfig().SetEncodeAllValues(false);
    writer.WriteToString(*EcuWithDegrees(), text, "Windows-1252");
    EXPECT_NE(text.find("unit=\"\xC2\xB0"
                        "C\""),
              std::string::npos);
}

// Threads that write at once, each with its own settings, each get the document of theirs,
// while another thread keeps changing the process-wide configuration.
TEST(KLWriter_OwnConfig, ConcurrentWritersKeepTheirOwnSettings) {
    GlobalSwitches restore;
    ZKLWriterImpl writer;
    const std::unique_ptr<IEcu> ecu = EcuWithDegrees();
    std::string expected[2];
    for (int all = 0; all < 2; ++all) {
        const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
        config->SetEncodeAllValues(all == 1);
        std::string error;
        ASSERT_NE(writer.WriteToString(*ecu, expected[all], "Windows-1252", *config, error), 0u);
    }
    ASSERT_NE(expected[0], expected[1]);
    std::atomic<bool> stop{false};
    std::thread toggler([&] {
        bool on = false;
        while (!stop) {
            writer.GetConfig().SetEncodeAllValues(on = !on);
        }
    });
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            const std::unique_ptr<IWriterConfig> config = writer.CreateConfig();
            config->SetEncodeAllValues(t % 2 == 1);
            for (int i = 0; i < 200; ++i) {
                std::string text;
                std::string error;
                writer.WriteToString(*ecu, text, "Windows-1252", *config, error);
                wrong += text == expected[t % 2] ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    stop = true;
    toggler.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace Korvel
