// Walks every text a model holds, telling for each whether the writer escapes it. Shared by
// the hostile-input tests and the fuzz targets (no test framework here).
#pragma once

#include <ZeKL/ZeKL.h>

#include <functional>
#include <string>

namespace Korvel::HostileTest {

// Only the texts of the two kinds of MAP pass through the writer's escaping; every other text
// is written as the model holds it.
enum class TextKind { Verbatim, Escaped };

using TextVisitor = std::function<void(const char* text, TextKind kind)>;

inline void VisitMessageTexts(const IMessage* message, const TextVisitor& visit) {
    if (message == nullptr) {
        return;
    }
    for (int i = 0; i < static_cast<int>(message->GetCount()); ++i) {
        const IParam* param = message->GetParam(i);
        if (param == nullptr) {
            continue;
        }
        visit(param->GetId(), TextKind::Verbatim);
        visit(param->GetDataTypeName(), TextKind::Verbatim);
        visit(param->GetUnit(), TextKind::Verbatim);
        visit(param->GetValue(), TextKind::Verbatim);
        visit(param->GetSemantics(), TextKind::Verbatim);
        visit(param->GetConvId(), TextKind::Verbatim);
    }
}

inline void VisitTexts(const IEcu& ecu, const TextVisitor& visit) {
    const INrcContainer* nrcs = ecu.GetNrcContainer();
    for (uint32_t i = 0; nrcs != nullptr && i < nrcs->GetCount(); ++i) {
        if (const INrcItem* nrc = nrcs->GetNrc(i)) {
            visit(nrc->GetText(), TextKind::Escaped);
        }
    }
    const IInstanceContainer* instances = ecu.GetInstanceContainer();
    for (uint32_t i = 0; instances != nullptr && i < instances->GetCount(); ++i) {
        if (const IInstance* instance = instances->GetInstance(i)) {
            visit(instance->GetId(), TextKind::Verbatim);
            VisitMessageTexts(instance->GetRequest(), visit);
            VisitMessageTexts(instance->GetPosResponse(), visit);
            VisitMessageTexts(instance->GetNegResponse(), visit);
        }
    }
    const IConversionContainer* conversions = ecu.GetConversionContainer();
    for (uint32_t i = 0; conversions != nullptr && i < conversions->GetCount(); ++i) {
        const IConversion* conversion = conversions->GetConversion(i);
        if (conversion == nullptr) {
            continue;
        }
        visit(conversion->GetId(), TextKind::Verbatim);
        for (uint32_t j = 0; j < conversion->GetTextTableSize(); ++j) {
            if (const ITextTableElement* element = conversion->GetTextTableElement(j)) {
                visit(element->GetValue(), TextKind::Verbatim);
                visit(element->GetText(), TextKind::Escaped);
            }
        }
    }
}

// True when writing the model gives a document that reads back: no text holds a control
// character (attribute normalisation would change it), no verbatim text holds markup, and no
// escaped text holds "&#" (the escaping keeps it as the start of a reference on purpose).
inline bool WritesReadableDocument(const IEcu& ecu) {
    bool writable = true;
    VisitTexts(ecu, [&writable](const char* text, TextKind kind) {
        const std::string value = text != nullptr ? text : "";
        for (unsigned char c : value) {
            if (c < 0x20) {
                writable = false;
            }
        }
        if (kind == TextKind::Verbatim && value.find_first_of("<&\"") != std::string::npos) {
            writable = false;
        }
        if (kind == TextKind::Escaped && value.find("&#") != std::string::npos) {
            writable = false;
        }
    });
    return writable;
}

}  // namespace Korvel::HostileTest
