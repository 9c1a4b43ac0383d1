#include "model/ZItemPath.h"

#include "model/ZConversion.h"
#include "model/ZInstance.h"
#include "model/ZMessage.h"
#include "model/ZNrcItem.h"
#include "model/ZParam.h"
#include "model/ZTextTableElement.h"

namespace Korvel {

const char* MessageElementName(uint32_t messageKind) {
    switch (messageKind) {
        case MessageKindRequest:
            return "REQUEST";
        case MessageKindPosResponse:
            return "RESPONSE";
        case MessageKindNegResponse:
            return "NEGATIVE_RESPONSE";
        default:
            return "";
    }
}

// Only paths of messages being reported are built, so the casts of the parent walk cost
// nothing on the reader's way.
void AddItemPath(const ZModelItem* item, ItemPath& path) {
    for (const ZModelItem* at = item; at != nullptr;) {
        auto* current = const_cast<ZModelItem*>(at);
        if (auto* param = current->As<ZParam>()) {
            path.parameter = param->GetId();
        } else if (auto* message = current->As<ZMessage>()) {
            path.message = MessageElementName(message->GetMessageKind());
        } else if (auto* instance = current->As<ZInstance>()) {
            path.instance = instance->GetId();
        } else if (auto* conversion = current->As<ZConversion>()) {
            path.conversion = conversion->GetId();
        } else if (auto* element = current->As<ZTextTableElement>()) {
            path.entry = element->GetValue();
        } else if (auto* nrc = current->As<ZNrcItem>()) {
            path.nrc = std::to_string(nrc->GetCode());
        }
        const IModelItem* parent = at->GetParent();
        at = parent != nullptr && parent != at ? dynamic_cast<const ZModelItem*>(parent) : nullptr;
    }
}

std::string ItemPathToText(const ItemPath& path) {
    std::string text;
    const auto add = [&text](const char* prefix, const std::string& part) {
        if (!text.empty()) {
            text += '/';
        }
        text.append(prefix).append(part);
    };
    if (!path.instance.empty()) {
        add("", path.instance);
    }
    if (!path.message.empty()) {
        add("", path.message);
    }
    if (!path.parameter.empty()) {
        add("", path.parameter);
    }
    if (!path.conversion.empty()) {
        add("conversion ", path.conversion);
    }
    if (!path.entry.empty()) {
        add("entry ", path.entry);
    }
    if (!path.nrc.empty()) {
        add("nrc ", path.nrc);
    }
    return text;
}

}  // namespace Korvel
