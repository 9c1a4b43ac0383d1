// Arbitrary bytes into the reader: it must give null or a model, never crash, hang or leak,
// and every text of a model it gives is valid UTF-8.
#include "ModelTexts.h"

#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

bool IsValidUtf8(const char* text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    while (*bytes != 0) {
        const unsigned char lead = *bytes;
        int extra = 0;
        uint32_t codePoint = 0;
        if (lead < 0x80) {
            ++bytes;
            continue;
        }
        if (lead >= 0xC2 && lead <= 0xDF) {
            extra = 1;
            codePoint = lead & 0x1Fu;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            extra = 2;
            codePoint = lead & 0x0Fu;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            extra = 3;
            codePoint = lead & 0x07u;
        } else {
            return false;
        }
        for (int k = 1; k <= extra; ++k) {
            if ((bytes[k] & 0xC0u) != 0x80u) {
                return false;
            }
            codePoint = (codePoint << 6) | (bytes[k] & 0x3Fu);
        }
        if ((extra == 2 && codePoint < 0x800) || (extra == 3 && codePoint < 0x10000) ||
            codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
            return false;
        }
        bytes += extra + 1;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace Korvel;
    if (size > 0xFFFFFFFFu) {
        return 0;
    }
    const char* text = reinterpret_cast<const char*>(data);
    ReportCollector report(ReportLevelError);
    std::unique_ptr<IEcu> ecu = GetKLReader().ReadMemory(text, static_cast<uint32_t>(size), "", report);
    if (ecu) {
        HostileTest::VisitTexts(*ecu, [](const char* value, HostileTest::TextKind) {
            if (value == nullptr || !IsValidUtf8(value)) {
                std::fprintf(stderr, "model text is null or not UTF-8\n");
                std::abort();
            }
        });
    } else if (report.GetErrorCount() == 0) {
        std::fprintf(stderr, "refused without a reported error\n");
        std::abort();
    }
    const std::string asText(text, size);
    std::string version;
    std::string encoding;
    const bool korvel = GetKLReader().IsKorvelText(asText, version, encoding);
    if (korvel != (asText.find("<ECU") != std::string::npos)) {
        std::abort();
    }
    return 0;
}
