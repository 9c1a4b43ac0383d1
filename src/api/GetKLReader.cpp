#include "reader/ZKLReaderImpl.h"

#include <ZeKL/Exports.h>

namespace Korvel {

namespace {

// The one reader of the process, shared by GetKLReader and the plain IsKorvelFile export;
// whichever runs first builds it.
ZKLReaderImpl& Reader() {
    static ZKLReaderImpl reader;
    return reader;
}

}  // namespace

IKLReader& GetKLReader() {
    return Reader();
}

}  // namespace Korvel

extern "C" bool IsKorvelFile(const char* path) {
    try {
        return Korvel::Reader().IsKorvelFile(path);
    } catch (...) {
        return false;
    }
}
