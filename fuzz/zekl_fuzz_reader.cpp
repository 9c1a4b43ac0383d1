// Arbitrary bytes into the reader: it must give null or a model, never crash, hang or leak,
// and every text of a model it gives is valid UTF-8.
#include "ModelTexts.h"
#include "Utf8Check.h"

#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <cstdlib>
#include <string>

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
            if (value == nullptr || !HostileTest::IsValidUtf8(value)) {
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
