#include "writer/ZKLWriterImpl.h"

#include <ZeKL/Exports.h>

namespace Korvel {

IKLWriter& GetKLWriter() {
    static ZKLWriterImpl writer;
    return writer;
}

}  // namespace Korvel
