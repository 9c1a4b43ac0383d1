// Paths that are no readable document, and targets that cannot be written: the reader gives
// null or false, the writer 0, and an existing document survives a failed write untouched.
#include "HostileSupport.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

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

mode_t KindOf(const std::filesystem::path& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) {
        return 0;
    }
    return info.st_mode & S_IFMT;
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

// A target that is no regular file is never replaced by one: before, the rename put a regular
// file in place of a FIFO, a device node (as root, /dev/null itself) or a dangling link.
TEST(HostileFiles, WriteOverAFifoFailsAndLeavesTheFifo) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "fifo.xml";
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    std::string error;
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8", error), 0u);
    EXPECT_EQ(error, "not a regular file (a FIFO)");
    EXPECT_EQ(KindOf(target), static_cast<mode_t>(S_IFIFO));
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"fifo.xml"});
}

TEST(HostileFiles, WriteOverADeviceNodeFailsAndLeavesTheDevice) {
    if (!RunningAsRoot()) {
        GTEST_SKIP()
            << "only root may make a device node (and replace one); the FIFO case runs for everybody";
    }
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    // /dev/null's device, made in the scratch folder so that a failure cannot harm the real one.
    const std::filesystem::path target = folder / "null";
    ASSERT_EQ(::mknod(target.c_str(), S_IFCHR | 0666, makedev(1, 3)), 0) << std::strerror(errno);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(KindOf(target), static_cast<mode_t>(S_IFCHR));
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"null"});
}

TEST(HostileFiles, WriteThroughADanglingLinkFailsAndLeavesTheLink) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path link = folder / "link.xml";
    std::filesystem::create_symlink(folder / "missing.xml", link);
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, link.string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(KindOf(link), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"link.xml"});
}

TEST(HostileFiles, WriteThroughALinkLoopFailsAndLeavesTheLinks) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = ReadSample();
    ASSERT_NE(ecu, nullptr);
    std::filesystem::create_symlink(folder / "b.xml", folder / "a.xml");
    std::filesystem::create_symlink(folder / "a.xml", folder / "b.xml");
    EXPECT_EQ(GetKLWriter().WriteToFile(*ecu, (folder / "a.xml").string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(KindOf(folder / "a.xml"), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(KindOf(folder / "b.xml"), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(FolderEntries(folder.Path()), (std::vector<std::string>{"a.xml", "b.xml"}));
}

// A write killed before its end leaves its temporary file; the next write to the folder
// removes it once its process is gone.
TEST(HostileFiles, TemporaryFileOfAKilledWriteIsRemovedByTheNextWrite) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    auto ecu = BigEcu();
    ASSERT_NE(ecu, nullptr);
    const std::filesystem::path target = folder / "doc.xml";
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Killed in the middle of the write: past the file size limit, SIGXFSZ's default action
        // ends the process at once, as a crash would (without a core file).
        std::signal(SIGXFSZ, SIG_DFL);
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        rlimit limited{};
        ::getrlimit(RLIMIT_FSIZE, &limited);
        limited.rlim_cur = 4096;
        ::setrlimit(RLIMIT_FSIZE, &limited);
        GetKLWriter().WriteToFile(*ecu, target.string().c_str(), "utf-8");
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    const std::vector<std::string> left = FolderEntries(folder.Path());
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].rfind(".zekl-" + std::to_string(child) + "-", 0), 0u) << left[0];

    auto small = ReadSample();
    ASSERT_NE(small, nullptr);
    EXPECT_GT(GetKLWriter().WriteToFile(*small, target.string().c_str(), "utf-8"), 0u);
    EXPECT_EQ(FolderEntries(folder.Path()), std::vector<std::string>{"doc.xml"});
}
