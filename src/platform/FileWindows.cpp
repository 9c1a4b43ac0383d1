// The file component on Windows (see File.h): wide names, CreateFileW, ReplaceFileW.
#ifdef _WIN32

#include "platform/File.h"

#include "platform/FileDetail.h"
#include "platform/Transcode.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <system_error>

namespace Korvel::Platform {

using namespace FileDetail;

namespace {

static_assert(sizeof(XMLCh) == sizeof(wchar_t), "xerces' UTF-16 units are wide characters on Windows");

// Throws TranscodeError for a name that is not UTF-8.
std::wstring Wide(const std::string& path) {
    const WideString wide = Utf8ToUtf16(path);
    return std::wstring(reinterpret_cast<const wchar_t*>(wide.data()), wide.size());
}

std::string Narrow(const std::wstring& path) {
    return Utf16ToUtf8(reinterpret_cast<const XMLCh*>(path.data()), path.size());
}

std::string WindowsReason(DWORD code) {
    std::string text = std::system_category().message(static_cast<int>(code));
    while (!text.empty() &&
           (text.back() == '\n' || text.back() == '\r' || text.back() == ' ' || text.back() == '.')) {
        text.pop_back();
    }
    return text;
}

constexpr char kInvalidName[] = "the file name is not valid UTF-8";

bool ProcessIsGone(unsigned long processId) {
    HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
    if (process == nullptr) {
        return ::GetLastError() == ERROR_INVALID_PARAMETER;
    }
    const DWORD state = ::WaitForSingleObject(process, 0);
    ::CloseHandle(process);
    return state == WAIT_OBJECT_0;
}

void RemoveStaleTemporaries(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = folder + L".zekl-*.tmp";
    HANDLE search =
        ::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    const unsigned long self = ::GetCurrentProcessId();
    do {
        if ((found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
            continue;
        }
        const unsigned long processId = TemporaryNameProcess(Narrow(found.cFileName));
        if (processId != 0 && processId != self && ProcessIsGone(processId)) {
            ::DeleteFileW((folder + found.cFileName).c_str());
        }
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
}

// Why an existing target may not be replaced (empty when it may), and for a link the path of
// the file it points to.
std::string DescribeExisting(HANDLE existing, bool isLink, std::string& resolvedPath) {
    if (::GetFileType(existing) != FILE_TYPE_DISK) {
        return NotRegularReason("a device or a pipe");
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(existing, &info)) {
        return WindowsReason(::GetLastError());
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return NotRegularReason("a folder");
    }
    if (!isLink) {
        return std::string();
    }
    std::wstring resolved(MAX_PATH, L'\0');
    for (int attempt = 0; attempt < 2; ++attempt) {
        const DWORD length =
            ::GetFinalPathNameByHandleW(existing, &resolved[0], static_cast<DWORD>(resolved.size()),
                                        FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
        if (length == 0) {
            return WindowsReason(::GetLastError());
        }
        if (length < resolved.size()) {
            resolved.resize(length);
            resolvedPath = Narrow(resolved);
            return std::string();
        }
        resolved.resize(length + 1);
    }
    return WindowsReason(ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// InputFile

bool InputFile::IsOpen() const {
    return handle_ != nullptr;
}

void InputFile::Close() noexcept {
    if (handle_ != nullptr) {
        ::CloseHandle(handle_);
        handle_ = nullptr;
    }
}

bool InputFile::Open(const char* path) {
    Close();
    refusal_ = OpenRefusal::None;
    reason_.clear();
    size_ = 0;
    position_ = 0;
    if (path == nullptr || path[0] == '\0') {
        return Refuse(OpenRefusal::CannotOpen, kNoFileName);
    }
    std::wstring wide;
    try {
        wide = Wide(path);
    } catch (const TranscodeError&) {
        return Refuse(OpenRefusal::CannotOpen, kInvalidName);
    }
    HANDLE handle =
        ::CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = ::GetLastError();
        // Looked at again only to word the refusal: a folder cannot be opened this way.
        const DWORD attributes = ::GetFileAttributesW(wide.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a folder"));
        }
        return Refuse(OpenRefusal::CannotOpen, WindowsReason(error));
    }
    handle_ = handle;
    if (::GetFileType(handle) != FILE_TYPE_DISK) {
        return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a device or a pipe"));
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(handle, &info)) {
        return Refuse(OpenRefusal::CannotOpen, WindowsReason(::GetLastError()));
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a folder"));
    }
    size_ = (static_cast<uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
    return true;
}

bool InputFile::Read(void* buffer, std::size_t size, std::size_t& count) {
    count = 0;
    if (handle_ == nullptr) {
        reason_ = kNotOpen;
        return false;
    }
    DWORD done = 0;
    if (!::ReadFile(handle_, buffer, static_cast<DWORD>(std::min(size, kMaxTransfer)), &done, nullptr)) {
        reason_ = WindowsReason(::GetLastError());
        return false;
    }
    count = done;
    position_ += done;
    return true;
}

// ---------------------------------------------------------------------------------------------
// ReplacingFile

void ReplacingFile::Discard() noexcept {
    if (handle_ != nullptr) {
        ::CloseHandle(handle_);
        handle_ = nullptr;
    }
    if (!temporary_.empty()) {
        try {
            ::DeleteFileW(Wide(temporary_).c_str());
        } catch (...) {
            // The name was made from a valid one; it converts.
        }
        temporary_.clear();
    }
}

bool ReplacingFile::Open(const char* target) {
    Discard();
    reason_.clear();
    target_.clear();
    written_ = 0;
    targetExists_ = false;
    if (target == nullptr || target[0] == '\0') {
        return Fail(kNoFileName);
    }
    std::wstring wideTarget;
    try {
        wideTarget = Wide(target);
    } catch (const TranscodeError&) {
        return Fail(kInvalidName);
    }
    // What the name leads to, links followed: its kind, and where a link points.
    HANDLE existing = ::CreateFileW(wideTarget.c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    const DWORD openError = existing == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
    // The name itself, not followed: a link has the reparse-point attribute.
    const DWORD linkAttributes = ::GetFileAttributesW(wideTarget.c_str());
    const bool isLink =
        linkAttributes != INVALID_FILE_ATTRIBUTES && (linkAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (existing == INVALID_HANDLE_VALUE) {
        if (isLink) {
            return Fail(openError == ERROR_CANT_RESOLVE_FILENAME ? kLinkLoop : kDanglingLink);
        }
        if (openError != ERROR_FILE_NOT_FOUND) {
            return Fail(WindowsReason(openError));
        }
        target_ = target;
    } else {
        const std::string refusal = DescribeExisting(existing, isLink, target_);
        ::CloseHandle(existing);
        if (!refusal.empty()) {
            return Fail(refusal);
        }
        if (!isLink) {
            target_ = target;
        }
        targetExists_ = true;
    }
    const std::string folder = FolderOf(target_);
    const std::wstring wideFolder = Wide(folder);
    RemoveStaleTemporaries(wideFolder);
    DWORD error = ERROR_FILE_EXISTS;
    for (int attempt = 0; attempt < kTemporaryAttempts && handle_ == nullptr; ++attempt) {
        const std::string name = TemporaryName(::GetCurrentProcessId());
        HANDLE file = ::CreateFileW((wideFolder + Wide(name)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            handle_ = file;
            temporary_ = folder + name;
            break;
        }
        error = ::GetLastError();
        if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    if (handle_ == nullptr) {
        return Fail(WindowsReason(error));
    }
    return true;
}

bool ReplacingFile::Write(const char* data, std::size_t size) {
    if (handle_ == nullptr) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    while (size > 0) {
        DWORD done = 0;
        if (!::WriteFile(handle_, data, static_cast<DWORD>(std::min(size, kMaxTransfer)), &done, nullptr)) {
            return Fail(WindowsReason(::GetLastError()));
        }
        data += done;
        size -= done;
        written_ += done;
    }
    return true;
}

bool ReplacingFile::Commit() {
    if (handle_ == nullptr) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    if (!::FlushFileBuffers(handle_)) {
        return Fail(WindowsReason(::GetLastError()));
    }
    HANDLE file = handle_;
    handle_ = nullptr;
    if (!::CloseHandle(file)) {
        return Fail(WindowsReason(::GetLastError()));
    }
    const std::wstring from = Wide(temporary_);
    const std::wstring to = Wide(target_);
    // ReplaceFileW keeps the old file's attributes and security; when it fails the old file is
    // still there under its name. A file that did not exist is moved in place.
    const bool moved = targetExists_ ? ::ReplaceFileW(to.c_str(), from.c_str(), nullptr,
                                                      REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0
                                     : ::MoveFileExW(from.c_str(), to.c_str(),
                                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!moved) {
        return Fail(WindowsReason(::GetLastError()));
    }
    temporary_.clear();
    return true;
}

}  // namespace Korvel::Platform

#endif
