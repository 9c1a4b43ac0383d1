#include "platform/File.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace Korvel::Platform {
namespace {

namespace fs = std::filesystem;

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "zekl-file-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string File(const std::string& name) const { return (path_ / name).string(); }
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(path_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    fs::path path_;
};

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteAll(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

mode_t KindOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info.st_mode & S_IFMT;
}

bool RunningAsRoot() {
    return ::geteuid() == 0;
}

// The id of a process that existed and has ended (reaped, so nothing holds it any more).
pid_t EndedProcessId() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

// A socket bound to a path in the folder; the path stays after the descriptor is closed.
void MakeSocketFile(const std::string& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0) << std::strerror(errno);
    ::close(fd);
}

// Writes beyond `limit` bytes fail with EFBIG, as on a full disk, while the object lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) {
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit limited = previous_;
        limited.rlim_cur = limit;
        active_ = ::setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    bool Active() const { return active_; }

private:
    rlimit previous_{};
    void (*handler_)(int) = SIG_DFL;
    bool active_ = false;
};

// ---------------------------------------------------------------------------------------------
// InputFile

TEST(InputFile_Open, RegularFileIsOpenWithItsSize) {
    TempFolder folder;
    const std::string path = folder.File("doc.xml");
    WriteAll(path, "<ECU/>\n");
    InputFile file;
    ASSERT_TRUE(file.Open(path.c_str())) << file.Reason();
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Refusal(), OpenRefusal::None);
    EXPECT_EQ(file.Size(), 7u);
    std::string bytes;
    ASSERT_TRUE(file.ReadUpTo(100, bytes));
    EXPECT_EQ(bytes, "<ECU/>\n");
    EXPECT_EQ(file.Position(), 7u);
}

TEST(InputFile_Open, FifoWithoutWriterIsRefusedAtOnce) {
    TempFolder folder;
    const std::string path = folder.File("fifo");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto started = std::chrono::steady_clock::now();
    InputFile file;
    EXPECT_FALSE(file.Open(path.c_str()));
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.Refusal(), OpenRefusal::NotRegularFile);
    EXPECT_EQ(file.Reason(), "not a regular file (a FIFO)");
}

TEST(InputFile_Open, FolderDeviceAndSocketAreRefusedByKind) {
    TempFolder folder;
    InputFile file;
    EXPECT_FALSE(file.Open(folder.File("").c_str()));
    EXPECT_EQ(file.Refusal(), OpenRefusal::NotRegularFile);
    EXPECT_EQ(file.Reason(), "not a regular file (a folder)");
    EXPECT_FALSE(file.Open("/dev/zero"));
    EXPECT_EQ(file.Refusal(), OpenRefusal::NotRegularFile);
    EXPECT_EQ(file.Reason(), "not a regular file (a character device)");
    const std::string socketPath = folder.File("socket");
    MakeSocketFile(socketPath);
    EXPECT_FALSE(file.Open(socketPath.c_str()));
    EXPECT_EQ(file.Refusal(), OpenRefusal::NotRegularFile);
    EXPECT_EQ(file.Reason(), "not a regular file (a socket)");
}

TEST(InputFile_Open, MissingFileGivesTheSystemsReason) {
    TempFolder folder;
    InputFile file;
    EXPECT_FALSE(file.Open(folder.File("missing.xml").c_str()));
    EXPECT_EQ(file.Refusal(), OpenRefusal::CannotOpen);
    EXPECT_EQ(file.Reason(), std::strerror(ENOENT));
}

TEST(InputFile_Open, NullAndEmptyPathsAreRefused) {
    InputFile file;
    EXPECT_FALSE(file.Open(nullptr));
    EXPECT_EQ(file.Refusal(), OpenRefusal::CannotOpen);
    EXPECT_FALSE(file.Open(""));
    EXPECT_EQ(file.Refusal(), OpenRefusal::CannotOpen);
}

TEST(InputFile_Open, SymbolicLinkToARegularFileIsFollowed) {
    TempFolder folder;
    WriteAll(folder.File("real.xml"), "text");
    fs::create_symlink(folder.File("real.xml"), folder.File("link.xml"));
    InputFile file;
    ASSERT_TRUE(file.Open(folder.File("link.xml").c_str()));
    EXPECT_EQ(file.Size(), 4u);
}

TEST(InputFile_Open, DescriptorIsNotInheritedByPrograms) {
    TempFolder folder;
    WriteAll(folder.File("doc.xml"), "x");
    InputFile file;
    ASSERT_TRUE(file.Open(folder.File("doc.xml").c_str()));
    // The only descriptor this test opened on the file.
    bool found = false;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry.path(), error) == fs::path(folder.File("doc.xml"))) {
            const int fd = std::stoi(entry.path().filename().string());
            EXPECT_NE(::fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
            found = true;
        }
    }
    EXPECT_TRUE(found);
}

TEST(InputFile_Read, ReadUpToStopsAtTheLimit) {
    TempFolder folder;
    const std::string path = folder.File("long.txt");
    WriteAll(path, std::string(300000, 'a'));
    InputFile file;
    ASSERT_TRUE(file.Open(path.c_str()));
    std::string bytes;
    ASSERT_TRUE(file.ReadUpTo(100000, bytes));
    EXPECT_EQ(bytes.size(), 100000u);
    EXPECT_EQ(file.Position(), 100000u);
    ASSERT_TRUE(file.ReadUpTo(500000, bytes));
    EXPECT_EQ(bytes.size(), 300000u);
}

TEST(InputFile_Read, ClosedFileCannotBeRead) {
    InputFile file;
    char byte = 0;
    std::size_t count = 1;
    EXPECT_FALSE(file.Read(&byte, 1, count));
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(file.Reason().empty());
}

TEST(ReadFilePrefix, GivesAtMostTheLimitAndRefusesWhatInputFileRefuses) {
    TempFolder folder;
    const std::string path = folder.File("doc.xml");
    WriteAll(path, "0123456789");
    std::string bytes;
    std::string reason;
    ASSERT_TRUE(ReadFilePrefix(path.c_str(), 4, bytes, reason));
    EXPECT_EQ(bytes, "0123");
    bytes.clear();
    EXPECT_FALSE(ReadFilePrefix("/dev/zero", 4, bytes, reason));
    EXPECT_EQ(reason, "not a regular file (a character device)");
    EXPECT_TRUE(bytes.empty());
}

// ---------------------------------------------------------------------------------------------
// ReplacingFile

TEST(ReplacingFile_Commit, CreatesANewFile) {
    TempFolder folder;
    const std::string target = folder.File("new.xml");
    std::string reason;
    ASSERT_TRUE(ReplaceFileContents(target.c_str(), "text", 4, reason)) << reason;
    EXPECT_EQ(ReadAll(target), "text");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"new.xml"});
}

TEST(ReplacingFile_Commit, TargetIsReplacedOnlyByTheCommit) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    ReplacingFile file;
    ASSERT_TRUE(file.Open(target.c_str())) << file.Reason();
    ASSERT_TRUE(file.Write("new document", 12));
    EXPECT_EQ(ReadAll(target), "old");
    EXPECT_EQ(file.BytesWritten(), 12u);
    ASSERT_TRUE(file.Commit()) << file.Reason();
    EXPECT_EQ(ReadAll(target), "new document");
    EXPECT_TRUE(file.TemporaryPath().empty());
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(ReplacingFile_Open, TemporaryFileIsHiddenBesideTheTargetAndNamedAfterTheProcess) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    ReplacingFile first;
    ReplacingFile second;
    ASSERT_TRUE(first.Open(target.c_str()));
    ASSERT_TRUE(second.Open(target.c_str()));
    const std::string prefix = ".zekl-" + std::to_string(::getpid()) + "-";
    // ".zekl-<pid>-" then 16 lower-case hex digits then ".tmp".
    const auto matches = [&prefix](const std::string& name) {
        if (name.size() != prefix.size() + 16 + 4 || name.compare(0, prefix.size(), prefix) != 0 ||
            name.compare(name.size() - 4, 4, ".tmp") != 0) {
            return false;
        }
        return std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end() - 4,
                           [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
    };
    for (const ReplacingFile* file : {&first, &second}) {
        const fs::path temporary(file->TemporaryPath());
        EXPECT_EQ(temporary.parent_path(), fs::path(folder.File("")).parent_path());
        EXPECT_TRUE(matches(temporary.filename().string())) << temporary;
        EXPECT_EQ(KindOf(temporary.string()), static_cast<mode_t>(S_IFREG));
    }
    EXPECT_NE(first.TemporaryPath(), second.TemporaryPath());
}

TEST(ReplacingFile_Discard, UncommittedTemporaryFileGoesAndTheTargetStays) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    {
        ReplacingFile file;
        ASSERT_TRUE(file.Open(target.c_str()));
        ASSERT_TRUE(file.Write("partial", 7));
    }
    EXPECT_EQ(ReadAll(target), "old");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(ReplacingFile_Open, ReplacedFileKeepsItsModeAndOwner) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    // Only root may give a file to another user; anybody else keeps the owner trivially.
    const uid_t owner = RunningAsRoot() ? 4321 : ::geteuid();
    const gid_t group = RunningAsRoot() ? 8765 : ::getegid();
    if (RunningAsRoot()) {
        ASSERT_EQ(::chown(target.c_str(), owner, group), 0);
        ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    }
    std::string reason;
    ASSERT_TRUE(ReplaceFileContents(target.c_str(), "new", 3, reason)) << reason;
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    EXPECT_EQ(info.st_uid, owner);
    EXPECT_EQ(info.st_gid, group);
    EXPECT_EQ(ReadAll(target), "new");
}

TEST(ReplacingFile_Open, NewFileGetsTheModeTheUmaskGives) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    const mode_t mask = ::umask(027);
    std::string reason;
    const bool written = ReplaceFileContents(target.c_str(), "new", 3, reason);
    ::umask(mask);
    ASSERT_TRUE(written) << reason;
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST(ReplacingFile_Open, SymbolicLinkStaysAndTheFileItPointsToIsReplaced) {
    TempFolder folder;
    fs::create_directory(folder.File("real"));
    const std::string real = folder.File("real/doc.xml");
    const std::string link = folder.File("link.xml");
    WriteAll(real, "old");
    // A relative link, resolved from the link's own folder.
    fs::create_symlink("real/doc.xml", link);
    ReplacingFile file;
    ASSERT_TRUE(file.Open(link.c_str())) << file.Reason();
    EXPECT_EQ(fs::path(file.TemporaryPath()).parent_path(), fs::canonical(folder.File("real")));
    ASSERT_TRUE(file.Write("new", 3));
    ASSERT_TRUE(file.Commit()) << file.Reason();
    EXPECT_EQ(KindOf(link), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(fs::read_symlink(link), fs::path("real/doc.xml"));
    EXPECT_EQ(ReadAll(real), "new");
    EXPECT_EQ(folder.Entries(), (std::vector<std::string>{"link.xml", "real"}));
}

TEST(ReplacingFile_Open, FifoTargetIsRefusedAndStays) {
    TempFolder folder;
    const std::string target = folder.File("fifo");
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(target.c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "not a regular file (a FIFO)");
    EXPECT_EQ(KindOf(target), static_cast<mode_t>(S_IFIFO));
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"fifo"});
}

TEST(ReplacingFile_Open, FifoBehindASymbolicLinkIsRefused) {
    TempFolder folder;
    ASSERT_EQ(::mkfifo(folder.File("fifo").c_str(), 0600), 0);
    fs::create_symlink(folder.File("fifo"), folder.File("link"));
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(folder.File("link").c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "not a regular file (a FIFO)");
    EXPECT_EQ(KindOf(folder.File("fifo")), static_cast<mode_t>(S_IFIFO));
    EXPECT_EQ(KindOf(folder.File("link")), static_cast<mode_t>(S_IFLNK));
}

TEST(ReplacingFile_Open, DeviceNodeTargetIsRefusedAndStays) {
    if (!RunningAsRoot()) {
        GTEST_SKIP() << "only root may make a device node (the FIFO and /dev/null cases run for everybody)";
    }
    TempFolder folder;
    const std::string target = folder.File("null");
    // The same device as /dev/null, made here so that a failure cannot harm the real one.
    ASSERT_EQ(::mknod(target.c_str(), S_IFCHR | 0666, makedev(1, 3)), 0) << std::strerror(errno);
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(target.c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "not a regular file (a character device)");
    EXPECT_EQ(KindOf(target), static_cast<mode_t>(S_IFCHR));
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"null"});
}

TEST(ReplacingFile_Open, DevNullIsRefusedWithoutTouchingIt) {
    struct stat before {};
    ASSERT_EQ(::stat("/dev/null", &before), 0);
    ReplacingFile file;
    EXPECT_FALSE(file.Open("/dev/null"));
    EXPECT_EQ(file.Reason(), "not a regular file (a character device)");
    EXPECT_TRUE(file.TemporaryPath().empty());
    struct stat after {};
    ASSERT_EQ(::stat("/dev/null", &after), 0);
    EXPECT_TRUE(S_ISCHR(after.st_mode));
    EXPECT_EQ(after.st_ino, before.st_ino);
}

TEST(ReplacingFile_Open, SocketAndFolderTargetsAreRefused) {
    TempFolder folder;
    MakeSocketFile(folder.File("socket"));
    fs::create_directory(folder.File("sub"));
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(folder.File("socket").c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "not a regular file (a socket)");
    EXPECT_FALSE(ReplaceFileContents(folder.File("sub").c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "not a regular file (a folder)");
    EXPECT_EQ(KindOf(folder.File("socket")), static_cast<mode_t>(S_IFSOCK));
    EXPECT_EQ(folder.Entries(), (std::vector<std::string>{"socket", "sub"}));
}

TEST(ReplacingFile_Open, DanglingLinkIsRefusedAndNothingIsCreated) {
    TempFolder folder;
    const std::string link = folder.File("link.xml");
    fs::create_symlink(folder.File("missing.xml"), link);
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(link.c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "a symbolic link to nothing (what it points to does not exist)");
    EXPECT_EQ(KindOf(link), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"link.xml"});
}

TEST(ReplacingFile_Open, LinkLoopIsRefusedAndStays) {
    TempFolder folder;
    fs::create_symlink(folder.File("b"), folder.File("a"));
    fs::create_symlink(folder.File("a"), folder.File("b"));
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(folder.File("a").c_str(), "new", 3, reason));
    EXPECT_EQ(reason, "a symbolic link loop");
    EXPECT_EQ(KindOf(folder.File("a")), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(KindOf(folder.File("b")), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(folder.Entries(), (std::vector<std::string>{"a", "b"}));
}

TEST(ReplacingFile_Open, MissingFolderGivesTheSystemsReason) {
    TempFolder folder;
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(folder.File("no/doc.xml").c_str(), "new", 3, reason));
    EXPECT_EQ(reason, std::strerror(ENOENT));
    EXPECT_TRUE(folder.Entries().empty());
}

TEST(ReplacingFile_Open, NullAndEmptyNamesAreRefused) {
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(nullptr, "x", 1, reason));
    EXPECT_EQ(reason, "no file name");
    EXPECT_FALSE(ReplaceFileContents("", "x", 1, reason));
    EXPECT_EQ(reason, "no file name");
}

TEST(ReplacingFile_Write, FullDiskGivesTheSystemsReasonAndKeepsTheTarget) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    std::string reason;
    bool written = true;
    {
        FileSizeLimit limit(1000);
        ASSERT_TRUE(limit.Active());
        const std::string big(5000, 'x');
        written = ReplaceFileContents(target.c_str(), big.data(), big.size(), reason);
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(reason, std::strerror(EFBIG));
    EXPECT_EQ(ReadAll(target), "old");
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(ReplacingFile_Commit, TargetSwappedForAFifoAfterOpenIsNotReplaced) {
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    ReplacingFile file;
    ASSERT_TRUE(file.Open(target.c_str()));
    ASSERT_TRUE(file.Write("new", 3));
    ASSERT_EQ(::unlink(target.c_str()), 0);
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(file.Reason(), "not a regular file (a FIFO)");
    EXPECT_TRUE(file.TemporaryPath().empty());
    EXPECT_EQ(KindOf(target), static_cast<mode_t>(S_IFIFO));
    EXPECT_EQ(folder.Entries(), std::vector<std::string>{"doc.xml"});
}

TEST(ReplacingFile_Write, WriteAfterAFailureKeepsTheFirstReason) {
    ReplacingFile file;
    EXPECT_FALSE(file.Open(""));
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_EQ(file.Reason(), "no file name");
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(file.Reason(), "no file name");
}

TEST(ReplacingFile_Open, StaleTemporariesOfEndedProcessesGoAndOthersStay) {
    TempFolder folder;
    const std::string ended = std::to_string(EndedProcessId());
    const std::string stale = ".zekl-" + ended + "-00000000deadbeef.tmp";
    // A live process (the test's parent), this process, and names of another form stay.
    const std::string live = ".zekl-" + std::to_string(::getppid()) + "-0123456789abcdef.tmp";
    const std::string own = ".zekl-" + std::to_string(::getpid()) + "-0123456789abcdef.tmp";
    const std::string other = ".zekl-" + ended + "-notahexname.tmp";
    const std::string otherSuffix = ".zekl-" + ended + "-0123456789abcdef.txt";
    for (const std::string& name : {stale, live, own, other, otherSuffix}) {
        WriteAll(folder.File(name), "partial");
    }
    // A stale name that is a folder is no temporary file of ours either.
    const std::string staleFolder = ".zekl-" + ended + "-00000000000000aa.tmp";
    fs::create_directory(folder.File(staleFolder));
    std::string reason;
    ASSERT_TRUE(ReplaceFileContents(folder.File("doc.xml").c_str(), "new", 3, reason)) << reason;
    std::vector<std::string> expected{"doc.xml", live, own, other, otherSuffix, staleFolder};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(folder.Entries(), expected);
}

TEST(ReplacingFile_Open, StaleTemporaryBesideALinksFileGoes) {
    TempFolder folder;
    fs::create_directory(folder.File("real"));
    WriteAll(folder.File("real/doc.xml"), "old");
    fs::create_symlink(folder.File("real/doc.xml"), folder.File("link.xml"));
    const std::string stale = ".zekl-" + std::to_string(EndedProcessId()) + "-00000000deadbeef.tmp";
    WriteAll(folder.File("real/" + stale), "partial");
    std::string reason;
    ASSERT_TRUE(ReplaceFileContents(folder.File("link.xml").c_str(), "new", 3, reason)) << reason;
    EXPECT_FALSE(fs::exists(folder.File("real/" + stale)));
    EXPECT_EQ(ReadAll(folder.File("real/doc.xml")), "new");
}

TEST(ReplacingFile_Open, ReadOnlyTargetIsNotReplaced) {
    if (RunningAsRoot()) {
        GTEST_SKIP() << "root may write read-only files";
    }
    TempFolder folder;
    const std::string target = folder.File("doc.xml");
    WriteAll(target, "old");
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    std::string reason;
    EXPECT_FALSE(ReplaceFileContents(target.c_str(), "new", 3, reason));
    EXPECT_EQ(reason, std::strerror(EACCES));
    EXPECT_EQ(ReadAll(target), "old");
}

}  // namespace
}  // namespace Korvel::Platform
