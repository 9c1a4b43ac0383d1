#include "writer/ZKLWriterImpl.h"

#include "WriterTestFiles.h"
#include "WriterTestModels.h"
#include "writer/WriterMessages.h"
#include "writer/ZWriterConfig.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sstream>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace Korvel {
namespace {

namespace fs = std::filesystem;
using WriterTest::DebugRecorder;
using WriterTest::ReadFileBytes;
using WriterTest::TempFolder;

// A model whose write fails half-way: its second NRC text is no valid UTF-8.
std::unique_ptr<IEcu> MakeEcuThatFailsToWrite() {
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{0x99}, "broken \xC3");
    return ecu;
}

// A model of roughly `bytes` bytes of document.
std::unique_ptr<IEcu> MakeLargeEcu(std::size_t bytes) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    instances->AddInstance("Big");
    IRequest* request = instances->GetInstance(0u)->CreateRequest();
    for (std::size_t i = 0; i * 120 < bytes; ++i) {
        const std::string id = "Param" + std::to_string(i);
        request->AddParam(id.c_str(), static_cast<uint32_t>(i * 8), 8, "00", "unsigned", "", "", "");
    }
    return ecu;
}

TEST(KLWriter_Null, NullEncodingGivesZeroEverywhere) {
    ZKLWriterImpl writer;
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    ByteBuffer buffer{1, 2, 3};
    std::string text = "unchanged";
    EXPECT_EQ(writer.WriteToBuffer(*ecu, buffer, nullptr), 0u);
    EXPECT_EQ(writer.WriteToString(*ecu, text, nullptr), 0u);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(buffer, (ByteBuffer{1, 2, 3}));
}

TEST(KLWriter_Null, WriteToFileWithNullEncodingCreatesNoFile) {
    TempFolder folder;
    ZKLWriterImpl writer;
    const std::string target = folder.File("out.xml");
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), nullptr), 0u);
    EXPECT_TRUE(folder.Entries().empty());
}

TEST(KLWriter_Null, NullFileNameGivesZero) {
    DebugRecorder recorder;
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), nullptr, "utf-8"), 0u);
    EXPECT_TRUE(recorder.texts.empty());
}

TEST(KLWriter_String, EmptyEcuGivesTheLengthOfTheFiveLineDocument) {
    ZKLWriterImpl writer;
    std::string text = "old content";
    const std::string expected = WriterTest::EmptyDocument("UDS", "utf-8");
    EXPECT_EQ(writer.WriteToString(*GetFactory().CreateEcu(), text, "utf-8"), expected.size());
    EXPECT_EQ(text, expected);
}

TEST(KLWriter_String, EmptyEncodingNameGivesNoDeclaration) {
    ZKLWriterImpl writer;
    std::string text;
    const uint32_t length = writer.WriteToString(*GetFactory().CreateEcu(), text, "");
    EXPECT_EQ(text,
              "<ECU protocol=\"UDS\">\n <NEGATIVE_RESPONSE_CODES>\n </NEGATIVE_RESPONSE_CODES>\n</ECU>\n");
    EXPECT_EQ(length, text.size());
}

TEST(KLWriter_String, UnknownEncodingNameIsDeclaredAndTextsStayUtf8) {
    ZKLWriterImpl writer;
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->GetNrcContainer()->AddNrc(uint8_t{1}, "\xC3\xA4&");
    std::string text;
    ASSERT_NE(writer.WriteToString(*ecu, text, "cp850"), 0u);
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"cp850\"?>\n", 0), 0u);
    EXPECT_NE(text.find("text=\"\xC3\xA4&amp;\"/>"), std::string::npos);
}

TEST(KLWriter_String, WritesTheSampleDocument) {
    ZKLWriterImpl writer;
    std::string text;
    const std::string expected = WriterTest::SampleDocumentUtf8();
    EXPECT_EQ(writer.WriteToString(*WriterTest::MakeSampleEcu(), text, "utf-8"), expected.size());
    EXPECT_EQ(text, expected);
}

TEST(KLWriter_String, FailedWriteGivesZeroReportsAndKeepsTheText) {
    DebugRecorder recorder;
    ZKLWriterImpl writer;
    std::string text = "unchanged";
    EXPECT_EQ(writer.WriteToString(*MakeEcuThatFailsToWrite(), text, "utf-8"), 0u);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(recorder.texts, std::vector<std::string>{WriterMessages::kExceptionDuringWrite});
    EXPECT_STREQ(WriterMessages::kExceptionDuringWrite, "Exception during write!");
}

TEST(KLWriter_Buffer, BufferIsEmptiedAndFilledWithTheDocument) {
    ZKLWriterImpl writer;
    ByteBuffer buffer(1000, 0xAA);
    const std::string expected = WriterTest::SampleDocumentUtf8();
    EXPECT_EQ(writer.WriteToBuffer(*WriterTest::MakeSampleEcu(), buffer, "utf-8"), expected.size());
    EXPECT_EQ(std::string(buffer.begin(), buffer.end()), expected);
}

TEST(KLWriter_Buffer, FailedWriteLeavesAnEmptyBuffer) {
    DebugRecorder recorder;
    ZKLWriterImpl writer;
    ByteBuffer buffer{1, 2, 3};
    EXPECT_EQ(writer.WriteToBuffer(*MakeEcuThatFailsToWrite(), buffer, "utf-8"), 0u);
    EXPECT_TRUE(buffer.empty());
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

// A document longer than a result can count is refused in every form, with the fixed text; a
// writer with a low limit stands in for one of more than 4 GiB.
TEST(KLWriter_Overflow, ALongerDocumentIsRefusedInEveryForm) {
    const std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    const std::size_t length = std::string(WriterTest::SampleDocumentUtf8()).size();
    ZKLWriterImpl writer(length - 1);
    TempFolder folder;
    const std::string path = folder.File("kept.xml");
    WriterTest::WriteFileBytes(path, "the old document");
    DebugRecorder recorder;
    ByteBuffer buffer{1, 2, 3};
    EXPECT_EQ(writer.WriteToBuffer(*ecu, buffer, "utf-8"), 0u);
    EXPECT_TRUE(buffer.empty());
    std::string text = "before";
    EXPECT_EQ(writer.WriteToString(*ecu, text, "utf-8"), 0u);
    EXPECT_EQ(text, "before");
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*ecu, path.c_str(), "utf-8", error), 0u);
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(ReadFileBytes(path), "the old document");
    EXPECT_EQ(recorder.texts, std::vector<std::string>(3, "Byte Length overflow!"));
    // At the limit itself the document is written.
    ZKLWriterImpl exact(length);
    EXPECT_EQ(exact.WriteToString(*ecu, text, "utf-8"), length);
}

TEST(KLWriter_File, FileStringAndBufferOfOneModelAreIdentical) {
    TempFolder folder;
    ZKLWriterImpl writer;
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    for (const char* encoding : {"utf-8", "Windows-1252", "iso-8859-1", "", "other"}) {
        std::string text;
        ByteBuffer buffer;
        const std::string target = folder.File("doc.xml");
        const uint32_t stringLength = writer.WriteToString(*ecu, text, encoding);
        const uint32_t bufferLength = writer.WriteToBuffer(*ecu, buffer, encoding);
        const uint32_t fileLength = writer.WriteToFile(*ecu, target.c_str(), encoding);
        EXPECT_NE(stringLength, 0u) << encoding;
        EXPECT_EQ(bufferLength, stringLength) << encoding;
        EXPECT_EQ(fileLength, stringLength) << encoding;
        EXPECT_EQ(std::string(buffer.begin(), buffer.end()), text) << encoding;
        EXPECT_EQ(ReadFileBytes(target), text) << encoding;
    }
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(KLWriter_File, ReplacesAnExistingFile) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, std::string(100000, 'x'));
    ZKLWriterImpl writer;
    const uint32_t length = writer.WriteToFile(*GetFactory().CreateEcu(), target.c_str(), "utf-8");
    EXPECT_EQ(length, WriterTest::EmptyDocument("UDS", "utf-8").size());
    EXPECT_EQ(ReadFileBytes(target), WriterTest::EmptyDocument("UDS", "utf-8"));
}

TEST(KLWriter_File, WritesLargeDocumentsCompletely) {
    TempFolder folder;
    const std::string target = folder.File("big.xml");
    std::unique_ptr<IEcu> ecu = MakeLargeEcu(5u << 20);
    ZKLWriterImpl writer;
    std::string text;
    const uint32_t length = writer.WriteToString(*ecu, text, "utf-8");
    ASSERT_GT(length, 4u << 20);
    EXPECT_EQ(writer.WriteToFile(*ecu, target.c_str(), "utf-8"), length);
    EXPECT_TRUE(ReadFileBytes(target) == text);
}

TEST(KLWriter_File, FailedWriteKeepsTheExistingFileAndLeavesNoTemporaryFile) {
    DebugRecorder recorder;
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*MakeEcuThatFailsToWrite(), target.c_str(), "utf-8"), 0u);
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

TEST(KLWriter_File, MissingFolderGivesZeroAndReports) {
    DebugRecorder recorder;
    TempFolder folder;
    const std::string target = folder.File("missing/doc.xml");
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8"), 0u);
    EXPECT_FALSE(fs::exists(target));
    EXPECT_TRUE(folder.Entries().empty());
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

TEST(KLWriter_File, EmptyFileNameGivesZero) {
    DebugRecorder recorder;
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), "", "utf-8"), 0u);
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

TEST(KLWriter_File, TargetThatIsAFolderStaysAsItWas) {
    DebugRecorder recorder;
    TempFolder folder;
    const std::string target = folder.File("sub");
    fs::create_directory(target);
    WriterTest::WriteFileBytes(target + "/inside.txt", "kept");
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8"), 0u);
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(ReadFileBytes(target + "/inside.txt"), "kept");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"sub"});
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

#ifndef _WIN32
TEST(KLWriter_File, ReadOnlyFolderKeepsTheExistingFile) {
    if (WriterTest::RunningAsRoot()) {
        GTEST_SKIP() << "root may write into read-only folders";
    }
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    fs::permissions(folder.Path(), fs::perms::owner_read | fs::perms::owner_exec);
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8"), 0u);
    fs::permissions(folder.Path(), fs::perms::owner_all);
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(KLWriter_File, ReadOnlyFileIsNotReplaced) {
    if (WriterTest::RunningAsRoot()) {
        GTEST_SKIP() << "root may write read-only files";
    }
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    ZKLWriterImpl writer;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8"), 0u);
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

// Runs `body` with the file size limit set to `limit` bytes: writes beyond it fail as on a
// full disk (EFBIG), for root as for anybody.
template <typename Body>
void WithFileSizeLimit(rlim_t limit, Body body) {
    rlimit previous{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &previous), 0);
    auto* previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = previous;
    limited.rlim_cur = limit;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    body();
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);
}

TEST(KLWriter_File, DiskFullHalfWayKeepsTheExistingFile) {
    DebugRecorder recorder;
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    std::unique_ptr<IEcu> ecu = MakeLargeEcu(3u << 20);
    ZKLWriterImpl writer;
    uint32_t length = 1;
    WithFileSizeLimit(64 * 1024, [&] { length = writer.WriteToFile(*ecu, target.c_str(), "utf-8"); });
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
    EXPECT_EQ(recorder.texts, std::vector<std::string>{"Exception during write!"});
}

TEST(KLWriter_File, DiskFullAtTheLastBufferKeepsTheExistingFile) {
    // The document fits the write buffer, so the failure only shows when it is flushed.
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    ZKLWriterImpl writer;
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    uint32_t length = 1;
    WithFileSizeLimit(100, [&] { length = writer.WriteToFile(*ecu, target.c_str(), "utf-8"); });
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(KLWriter_File, ExistingFileKeepsItsPermissions) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    ZKLWriterImpl writer;
    ASSERT_NE(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8"), 0u);
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST(KLWriter_File, NewFileGetsTheUsualPermissions) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    const mode_t mask = ::umask(022);
    ZKLWriterImpl writer;
    const uint32_t length = writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8");
    ::umask(mask);
    ASSERT_NE(length, 0u);
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0644u);
}

TEST(KLWriter_File, SymbolicLinkIsWrittenThrough) {
    TempFolder folder;
    const std::string real = folder.File("real.xml");
    const std::string link = folder.File("link.xml");
    WriterTest::WriteFileBytes(real, "previous document");
    fs::create_symlink(real, link);
    ZKLWriterImpl writer;
    ASSERT_NE(writer.WriteToFile(*WriterTest::MakeSampleEcu(), link.c_str(), "utf-8"), 0u);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ReadFileBytes(real), WriterTest::SampleDocumentUtf8());
}
// ---- WriteToFile with the reason of a failure -------------------------------------------

TEST(KLWriter_FileError, SuccessEmptiesTheErrorAndWritesAsTheShortForm) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    ZKLWriterImpl writer;
    std::string error = "stale";
    const uint32_t length = writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8", error);
    EXPECT_EQ(length, std::string(WriterTest::SampleDocumentUtf8()).size());
    EXPECT_TRUE(error.empty()) << error;
    EXPECT_EQ(ReadFileBytes(target), WriterTest::SampleDocumentUtf8());
}

TEST(KLWriter_FileError, MissingFolderGivesTheSystemsReasonAndTheDebugText) {
    DebugRecorder recorder;
    TempFolder folder;
    ZKLWriterImpl writer;
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), folder.File("missing/doc.xml").c_str(),
                                 "utf-8", error),
              0u);
    EXPECT_EQ(error, std::strerror(ENOENT));
    EXPECT_EQ(recorder.texts, std::vector<std::string>{WriterMessages::kExceptionDuringWrite});
    EXPECT_TRUE(folder.Entries().empty());
}

TEST(KLWriter_FileError, DiskFullGivesTheSystemsReasonAndKeepsTheFile) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriterTest::WriteFileBytes(target, "previous document");
    std::unique_ptr<IEcu> ecu = MakeLargeEcu(3u << 20);
    ZKLWriterImpl writer;
    std::string error;
    uint32_t length = 1;
    WithFileSizeLimit(64 * 1024, [&] { length = writer.WriteToFile(*ecu, target.c_str(), "utf-8", error); });
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(error, std::strerror(EFBIG));
    EXPECT_EQ(ReadFileBytes(target), "previous document");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(KLWriter_FileError, FifoTargetIsRefusedNamingWhatItIs) {
    TempFolder folder;
    const std::string target = folder.File("fifo");
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    ZKLWriterImpl writer;
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*WriterTest::MakeSampleEcu(), target.c_str(), "utf-8", error), 0u);
    EXPECT_EQ(error, "not a regular file (a FIFO)");
    EXPECT_TRUE(fs::is_fifo(target));
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"fifo"});
}

TEST(KLWriter_FileError, ModelThatCannotBeWrittenGivesTheConversionsReason) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    ZKLWriterImpl writer;
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*MakeEcuThatFailsToWrite(), target.c_str(), "utf-8", error), 0u);
    EXPECT_EQ(error, "the text of NRC 153 is not valid UTF-8");
    EXPECT_TRUE(folder.Entries().empty());
}

TEST(KLWriter_FileError, NullArgumentsAreNamed) {
    DebugRecorder recorder;
    ZKLWriterImpl writer;
    std::unique_ptr<IEcu> ecu = WriterTest::MakeSampleEcu();
    std::string error;
    EXPECT_EQ(writer.WriteToFile(*ecu, nullptr, "utf-8", error), 0u);
    EXPECT_EQ(error, WriterMessages::kNoFileName);
    EXPECT_EQ(writer.WriteToFile(*ecu, "x.xml", nullptr, error), 0u);
    EXPECT_EQ(error, WriterMessages::kNoEncoding);
    EXPECT_FALSE(fs::exists("x.xml"));
    // As in the short form, arguments that are null give 0 without a debug text.
    EXPECT_TRUE(recorder.texts.empty());
}
#endif

TEST(KLWriter_Document, FailingStreamMakesWriteDocumentThrow) {
    struct RefusingBuffer : std::streambuf {
        int_type overflow(int_type) override { return traits_type::eof(); }
    } refusing;
    std::ostream out(&refusing);
    ZWriterConfig config;
    EXPECT_ANY_THROW(ZKLWriterImpl::WriteDocument(*WriterTest::MakeSampleEcu(), out, "utf-8", config));
}

TEST(KLWriter_Config, GetConfigGivesTheOneProcessWideConfiguration) {
    ZKLWriterImpl first;
    ZKLWriterImpl second;
    EXPECT_EQ(&first.GetConfig(), &second.GetConfig());
    EXPECT_EQ(&first.GetConfig(), &ZWriterConfig::Instance());
    const uint32_t previous = first.GetConfig().GetSetting();
    first.GetConfig().SetSetting(42);
    EXPECT_EQ(second.GetConfig().GetSetting(), 42u);
    // The setting changes nothing in the output.
    std::string withSetting;
    second.WriteToString(*WriterTest::MakeSampleEcu(), withSetting, "utf-8");
    EXPECT_EQ(withSetting, WriterTest::SampleDocumentUtf8());
    first.GetConfig().SetSetting(previous);
}

}  // namespace
}  // namespace Korvel
