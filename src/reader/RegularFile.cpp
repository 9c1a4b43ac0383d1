#include "reader/RegularFile.h"

#include <filesystem>
#include <system_error>

namespace Korvel {

bool IsRegularFile(const char* path) {
    if (path == nullptr) {
        return false;
    }
    try {
        std::error_code error;
        return std::filesystem::is_regular_file(std::filesystem::u8path(path), error);
    } catch (...) {
        return false;
    }
}

}  // namespace Korvel
