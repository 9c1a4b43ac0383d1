// File helpers shared by the writer tests.
#pragma once

#include <ZeKL/DebugOutput.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#ifndef _WIN32
#include <unistd.h>

#include <cstdlib>
#endif

namespace Korvel::WriterTest {

// A fresh folder for one test, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "zekl-writer-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::string File(const char* name) const { return (m_path / name).string(); }
    // Names of the entries of the folder, sorted.
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};

inline std::string ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

// Records the library's debug output while it lives.
class DebugRecorder {
public:
    DebugRecorder() { m_previous = SetDebugOutputSink(&Record, this); }
    ~DebugRecorder() { SetDebugOutputSink(m_previous, nullptr); }
    DebugRecorder(const DebugRecorder&) = delete;
    DebugRecorder& operator=(const DebugRecorder&) = delete;

    std::vector<std::string> texts;

private:
    static void Record(const char* text, void* context) {
        static_cast<DebugRecorder*>(context)->texts.emplace_back(text);
    }
    DebugOutputSink m_previous = nullptr;
};

inline bool RunningAsRoot() {
#ifdef _WIN32
    return false;
#else
    return ::geteuid() == 0;
#endif
}

}  // namespace Korvel::WriterTest
