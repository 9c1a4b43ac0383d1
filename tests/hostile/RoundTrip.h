// The round-trip property: whatever the reader accepts, the writer writes, and after one
// round of reading and writing the document no longer changes.
#pragma once

#include "ModelTexts.h"

#include <string>

namespace Korvel::HostileTest {

enum class RoundTripOutcome {
    NotRead,       // the input is refused: nothing to check
    NotWritable,   // the model holds texts the format cannot carry verbatim (see WritesReadableDocument)
    Stable,        // the property holds
    WriteFailed,   // the writer gave 0 for a model the reader made
    RereadFailed,  // the reader refused a document the writer made
    Unstable,      // the second and third documents differ
};

struct RoundTripResult {
    RoundTripOutcome outcome = RoundTripOutcome::NotRead;
    std::string second;  // the document after one round
    std::string third;   // the document after two rounds
};

inline RoundTripResult CheckRoundTrip(const char* data, uint32_t size, const char* encoding = "utf-8") {
    RoundTripResult result;
    ReportCollector quiet(ReportLevelFatal);
    std::unique_ptr<IEcu> first = GetKLReader().ReadMemory(data, size, "", quiet);
    if (!first) {
        return result;
    }
    if (!WritesReadableDocument(*first)) {
        result.outcome = RoundTripOutcome::NotWritable;
        return result;
    }
    std::string firstText;
    if (GetKLWriter().WriteToString(*first, firstText, encoding) == 0) {
        result.outcome = RoundTripOutcome::WriteFailed;
        return result;
    }
    std::unique_ptr<IEcu> second = GetKLReader().ReadText(firstText, "", quiet);
    if (!second) {
        result.outcome = RoundTripOutcome::RereadFailed;
        result.second = firstText;
        return result;
    }
    if (GetKLWriter().WriteToString(*second, result.second, encoding) == 0) {
        result.outcome = RoundTripOutcome::WriteFailed;
        return result;
    }
    std::unique_ptr<IEcu> third = GetKLReader().ReadText(result.second, "", quiet);
    if (!third) {
        result.outcome = RoundTripOutcome::RereadFailed;
        return result;
    }
    if (GetKLWriter().WriteToString(*third, result.third, encoding) == 0) {
        result.outcome = RoundTripOutcome::WriteFailed;
        return result;
    }
    result.outcome = result.second == result.third ? RoundTripOutcome::Stable : RoundTripOutcome::Unstable;
    return result;
}

inline const char* OutcomeName(RoundTripOutcome outcome) {
    switch (outcome) {
        case RoundTripOutcome::NotRead:
            return "not read";
        case RoundTripOutcome::NotWritable:
            return "not writable";
        case RoundTripOutcome::Stable:
            return "stable";
        case RoundTripOutcome::WriteFailed:
            return "write failed";
        case RoundTripOutcome::RereadFailed:
            return "re-read failed";
        case RoundTripOutcome::Unstable:
            return "unstable";
    }
    return "?";
}

}  // namespace Korvel::HostileTest
