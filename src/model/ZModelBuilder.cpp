#include "model/ZModelBuilder.h"

#include "model/TextOrEmpty.h"

namespace Korvel {

ZModelBuilder::ZModelBuilder() : m_ecu(std::make_unique<ZEcu>(std::make_unique<ZModelArena>())) {}

ZModelBuilder::~ZModelBuilder() = default;

void ZModelBuilder::ExpectBytes(std::size_t bytes) {
    if (ZModelArena* arena = Arena()) {
        arena->ExpectBytes(bytes);
    }
}

std::unique_ptr<ZEcu> ZModelBuilder::TakeEcu() {
    return std::move(m_ecu);
}

ZInstance* ZModelBuilder::AddInstance(const char* id) {
    id = TextOrEmpty(id);
    ZInstanceContainer& instances = *m_ecu->GetInstanceContainer();
    const uint32_t index =
        instances.EmplaceMade(KeyText(id), [&]() { return MakeItemWithPack<ZInstance>(Arena(), {id}); });
    return Added(instances, index);
}

ZMessage* ZModelBuilder::CreateMessage(ZInstance& instance, uint32_t kind) {
    return instance.CreateMessage(kind, Arena());
}

ZParam* ZModelBuilder::AddParam(ZMessage& message, const ZParam::PackedTexts& texts, uint32_t bitPos,
                                uint32_t bitLen) {
    return Added(message, message.AddParam(Arena(), texts, bitPos, bitLen));
}

ZConversion* ZModelBuilder::AddConversion(const char* id, double factor, double offset) {
    id = TextOrEmpty(id);
    ZConversionContainer& conversions = m_ecu->Conversions();
    const uint32_t index = conversions.EmplaceMade(KeyText(id), [&]() {
        return MakeItemWithPack<ZConversion>(Arena(), {id}, static_cast<uint32_t>(ConversionKind::Formula),
                                             factor, offset, Arena());
    });
    return Added(conversions, index);
}

ZTextTableElement* ZModelBuilder::AddTextTableElement(ZConversion& conversion, const char* value,
                                                      const char* text) {
    value = TextOrEmpty(value);
    ZTextTable& table = conversion.Table();
    const uint32_t index = table.EmplaceMade(KeyText(value), [&]() {
        return MakeItemWithPack<ZTextTableElement>(Arena(), {value, text});
    });
    return Added(table, index);
}

ZNrcItem* ZModelBuilder::AddNrc(uint8_t code, const char* text) {
    ZNrcContainer& nrcs = m_ecu->Nrcs();
    const uint32_t index =
        nrcs.EmplaceMade(code, [&]() { return MakeItemWithPack<ZNrcItem>(Arena(), {text}, code); });
    return Added(nrcs, index);
}

}  // namespace Korvel
