#include "OutputFile.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zekl {

bool WriteFileReplacing(const std::string& path, const std::string& bytes, std::string& reason) {
    const std::string temporary = path + ".zekl-tmp";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) {
        reason = std::strerror(errno);
        return false;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int writeError = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        reason = std::strerror(written ? errno : writeError);
        std::remove(temporary.c_str());
        return false;
    }
#ifdef _WIN32
    std::remove(path.c_str());  // rename does not replace an existing file there
#endif
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        reason = std::strerror(errno);
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

}  // namespace zekl
