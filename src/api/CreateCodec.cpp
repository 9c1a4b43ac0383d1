// The codec's exported entry points; the codec itself lives in src/codec/.
#include "codec/CodecMessages.h"
#include "codec/ZCodec.h"

#include <ZeKL/ICodec.h>

namespace Korvel {

std::unique_ptr<ICodec> CreateCodec(const IEcu& ecu) {
    try {
        return std::make_unique<ZCodec>(ecu);
    } catch (...) {
        return nullptr;
    }
}

const char* CodecProblemText(CodecProblem problem) {
    return CodecMessages::ProblemText(problem);
}

bool IsCodecWarning(CodecProblem problem) {
    return problem == CodecProblem::UnknownConversion;
}

}  // namespace Korvel
