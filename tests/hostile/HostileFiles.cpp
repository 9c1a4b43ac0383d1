// Paths that are no readable document, and targets that cannot be written: the reader gives
// null or false, the writer 0, and an existing document survives a failed write untouched.
#include "HostileSupport.h"

#include <csignal>

#include <sys/resource.h>

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

std::unique_ptr<IEcu> ReadSample() {
    auto result = ReadBytes(SampleDocument());
    return std::move(result->ecu);
}

// An ECU whose document is far larger than the small one written first.
std::unique_ptr<IEcu> BigEcu() {
    std::string document = "<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES>";
    const std::string text(200, 't');
    for (int code = 0; code < 256; ++code) {
        document += "<MAP nrc=\"" + std::to_string(code) + "\" text=\"" + text + "\"/>";
    }
    document += "</NEGATIVE_RESPONSE_CODES>";
    for (int i = 0; i < 500; ++i) {
        document += "<INSTANCE id=\"Instance_" + std::to_string(i) + std::string(100, 'i') + "\"/>";
    }
    document += "</ECU>";
    auto result = ReadBytes(document);
    return std::move(result->ecu);
}

std::vector<std::string> FolderEntries(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Limits the size of any file this process writes, as a full device would; writes beyond it
// fail with EFBIG instead of raising SIGXFSZ.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        previousHandler_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit limited = previous_;
        limited.rlim_cur = bytes;
        active_ = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    bool Active() const { return active_; }

private:
    rlimit previous_{};
    void (*previousHandler_)(int) = SIG_DFL;
    bool active_ = false;
};

}  // namespace

TEST(HostileFiles, FolderGivenAsDocumentIsRefused) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    const std::string path = folder.Path().string();
    auto result = ReadPath(path);
    EXPECT_EQ(result->ecu, nullptr);
    EXPECT_GT(result->report.GetErrorCount(), 0u);
    EXPECT_FALSE(GetKLReader().IsKorvelFile(path.c_str()));
    EXPECT_FALSE(::IsKorvelFile(path.c_str()));
    std::string version;
    std::string encoding;
    EXPECT_FALSE(GetKLReader().IsKorvelFile(path.c_str(), version, encoding));
    std::string probed = "unchanged";
    EXPECT_FALSE(GetKLReader().GetFileEncoding(path.c_str(), probed));
}

TEST(HostileFiles, MissingFileIsRefused) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    const std::string path = (folder / "missing.xml").string();
    auto result = ReadPath(path);
    EXPECT_EQ(result->ecu, nullptr);
    EXPECT_GT(result->report.GetErrorCount(), 0u);
    EXPECT_FALSE(GetKLReader().IsKorvelFile(path.c_str()));
    std::string probed;
    EXPECT_FALSE(GetKLReader().GetFileEncoding(path.c_str(), probed));
}

TEST(HostileFiles, EmptyFileAndDevNullAreRefused) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    WriteWholeFile(folder / "empty.xml", "");
    for (const std::string& path : {(folder / "empty.xml").string(), std::string("/dev/null")}) {
        auto result = ReadPath(path);
        EXPECT_EQ(result->ecu, nullptr) << path;
        EXPECT_GT(result->report.GetErrorCount(), 0u) << path;
        EXPECT_FALSE(GetKLReader().IsKorvelFile(path.c_str())) << path;
    }
}

TEST(HostileFiles, UnreadableFileIsRefused) {
    if (RunningAsRoot()) {
        GTEST_SKIP() << "running as root: a file without read permission is still readable";
    }
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    const std::filesystem::path path = folder / "locked.xml";
    WriteWholeFile(path, SampleDocument());
    std::filesystem::permissions(path, std::filesystem::perms::none);
    auto result = ReadPath(path.string());
    EXPECT_EQ(result->ecu, nullptr);
    EXPECT_GT(result->report.GetErrorCount(), 0u);
    EXPECT_FALSE(GetKLReader().IsKorvelFile(path.string().c_str()));
    EXPECT_FALSE(::IsKorvelFile(path.string().c_str()));
    std::string probed;
    EXPECT_FALSE(GetKLReader().GetFileEncoding(path.string().c_str(), probed));
}

TEST(HostileFiles, WriteBelowTheFullDeviceFails) {
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, "/dev/full/x.xml", "utf-8"), 0u);
}

TEST(HostileFiles, WriteIntoAMissingFolderFailsAndCreatesNothing) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "no-such-folder" / "out.xml";
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8"), 0u);
    EXPECT_FALSE(std::filesystem::exists(target.parent_path()));
    EXPECT_TRUE(FolderEntries(folder.Path()).empty());
}

TEST(HostileFiles, WriteOverAFolderFailsAndLeavesTheFolder) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "taken";
    std::filesystem::create_directory(target);
    WriteWholeFile(target / "inside.txt", "kept");
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8"), 0u);
    ASSERT_TRUE(std::filesystem::is_directory(target));
    EXPECT_EQ(ReadWholeFile(target / "inside.txt"), "kept");
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"taken"});
}

TEST(HostileFiles, WriteIntoAReadOnlyFolderFailsAndKeepsTheDocument) {
    if (RunningAsRoot()) {
        GTEST_SKIP() << "running as root: a folder without write permission is still writable";
    }
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "doc.xml";
    WriteWholeFile(target, "existing document");
    std::filesystem::permissions(folder.Path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(ReadWholeFile(target), "existing document");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"doc.xml"});
}

TEST(HostileFiles, WriteThatRunsOutOfSpaceFailsAndKeepsTheDocument) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = BigEcu();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "doc.xml";
    auto small = ReadSample();
    ASSERT_NE(small, nullptr);
    const uint32_t written = GetKLWriter().WriteToFile(*small, target.string().c_str(), "utf-8");
    ASSERT_GT(written, 0u);
    const std::string before = ReadWholeFile(target);
    ASSERT_EQ(before.size(), written);

    uint32_t result = 1;
    {
        // The device is full once a file passes 16 kB: the big document cannot be written.
        FileSizeLimit limit(16 * 1024);
        ASSERT_TRUE(limit.Active());
        result = GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8");
    }
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(ReadWholeFile(target), before);
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"doc.xml"});

    // With room again the same write succeeds and replaces the document.
    const uint32_t replaced = GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8");
    EXPECT_GT(replaced, 16u * 1024u);
    EXPECT_EQ(ReadWholeFile(target).size(), replaced);
}

TEST(HostileFiles, WriteWithNullOrEmptyNameFails) {
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, nullptr, "utf-8"), 0u);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, "", "utf-8"), 0u);
}
