#include "model/ZMessage.h"

#include "model/ModelUtils.h"
#include "model/TextOrEmpty.h"

#include <string>

namespace Korvel {

namespace {

constexpr std::size_t kFirstCapacity = 4;

}  // namespace

ZMessage::ZMessage(uint32_t kind, ZModelArena* arena) : ZContainerBase(arena), m_kind(kind) {}

ZMessage::ZMessage(const ZMessage& other)
    : IModelItem(), IContainer(), IMessage(), ZContainerBase(), m_kind(other.m_kind) {
    AddParamsOf(other);
}

ZMessage::ZMessage(const IMessage& other) : m_kind(other.GetMessageKind()) {
    AddParamsOf(other);
}

ZMessage::~ZMessage() = default;

void ZMessage::AddParamsOf(const IMessage& other) {
    if (const auto* same = dynamic_cast<const ZMessage*>(&other)) {
        same->ForEachItem([this](const ZParam& param) { AddParam(param); });
        return;
    }
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count && index <= static_cast<uint32_t>(INT32_MAX); ++index) {
        if (const IParam* param = other.GetParam(static_cast<int>(index))) {
            AddParam(*param);
        }
    }
}

void ZMessage::Assign(const ZMessage& other) {
    if (&other == this) {
        return;
    }
    m_kind = other.m_kind;
    AddParamsOf(other);
}

IParam* ZMessage::FindParamBySemantics(SemanticsFlags flags) {
    const uint32_t count = GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        ZParam* param = ItemAt(index);
        if ((param->GetSemanticsFlags() & flags) == flags) {
            return param;
        }
    }
    return nullptr;
}

uint32_t ZMessage::GetMessageKind() const {
    return m_kind;
}

uint32_t ZMessage::AddParam(const IParam& param) {
    return EmplaceMade(KeyText(param.GetId()), [&]() { return ZParam::Make(nullptr, param); });
}

uint32_t ZMessage::AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value,
                            ParamDataType type, const char* unit, SemanticsFlags semantics,
                            const char* convId) {
    const ZDataModelUtilsImpl& utils = ModelUtils();
    return AddParam(id, bitPos, bitLen, value, utils.DataTypeToName(type).c_str(), unit,
                    utils.SemanticsToString(semantics).c_str(), convId);
}

uint32_t ZMessage::AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value,
                            const char* typeName, const char* unit, const char* semantics,
                            const char* convId) {
    std::string bytes;
    return AddParam(nullptr, ZParam::LayOut({convId, semantics, value, typeName, unit, id}, bytes), bitPos,
                    bitLen);
}

uint32_t ZMessage::AddParam(ZModelArena* arena, const ZParam::PackedTexts& texts, uint32_t bitPos,
                            uint32_t bitLen) {
    // Messages hold a few parameters each: room for four at the first spares the first
    // reallocations.
    if (GetCount() == 0) {
        ReserveItems(kFirstCapacity);
    }
    const std::string_view id(texts.bytes + texts.starts[ZParam::kId], texts.Length(ZParam::kId));
    return EmplaceMade(id, [&]() { return ZParam::Make(arena, texts, bitPos, bitLen); });
}

// The new parameter's id is deliberately not mapped here: callers replace several parameters
// and then call ReindexParams once, and until then the new id is not found by id.
bool ZMessage::ReplaceParam(uint32_t index, const IParam& param) {
    if (index >= GetCount()) {
        return false;
    }
    auto replacement = ZParam::Make(nullptr, param);
    KeyIndex().Erase(KeyText(ItemAt(index)->GetId()));
    ReplaceItemAt(index, std::move(replacement));
    return true;
}

bool ZMessage::ForParam(uint32_t index, IParamCallback& callback) {
    ZParam* param = ItemAt(index);
    if (param == nullptr) {
        return false;
    }
    callback.OnParam(param);
    return true;
}

const IParam* ZMessage::GetParam(const char* id) const {
    return FindItem(KeyText(id));
}

IParam* ZMessage::GetParam(const char* id) {
    return FindItem(KeyText(id));
}

const IParam* ZMessage::GetParam(int index) const {
    return index < 0 ? nullptr : ItemAt(static_cast<uint32_t>(index));
}

IParam* ZMessage::GetParam(int index) {
    return index < 0 ? nullptr : ItemAt(static_cast<uint32_t>(index));
}

// A repeated id ends up mapped to its last position.
void ZMessage::ReindexParams() {
    const uint32_t count = GetCount();
    if (count == 0) {
        return;
    }
    ZTextIndex& keys = KeyIndex();
    keys.Clear();
    for (uint32_t index = 0; index < count; ++index) {
        keys.Assign(KeyText(ItemAt(index)->GetId()), index);
    }
}

}  // namespace Korvel
