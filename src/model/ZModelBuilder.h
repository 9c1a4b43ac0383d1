// The one way a model is built element by element, the reader's way. The builder owns a new
// ECU with an arena until the ECU is taken, and makes every item in that arena through the
// same constructors that make the items a caller adds (which live on the heap): a model reads
// the same whoever built it.
//
// Every Add returns the new item, or null when its key is already taken in its container (the
// item is then not made). Items are handed out with their own types; the builder never casts.
#pragma once

#include "model/ZConversion.h"
#include "model/ZEcu.h"
#include "model/ZInstance.h"
#include "model/ZMessage.h"
#include "model/ZNrcItem.h"
#include "model/ZParam.h"
#include "model/ZTextTableElement.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Korvel {

class ZModelBuilder {
public:
    // An empty ECU (version "1.0", protocol UDS) with an arena of its own.
    ZModelBuilder();
    ~ZModelBuilder();
    ZModelBuilder(const ZModelBuilder&) = delete;
    ZModelBuilder& operator=(const ZModelBuilder&) = delete;

    // What the model is expected to take, so that the arena takes chunks of a fitting size.
    void ExpectBytes(std::size_t bytes);

    // The ECU being built; null once it was taken.
    ZEcu* Ecu() const { return m_ecu.get(); }
    // Hands the ECU (and with it the arena) to the caller; the builder then builds nothing.
    std::unique_ptr<ZEcu> TakeEcu();

    ZInstance* AddInstance(const char* id);
    // A new, empty message of `kind` (MessageKindRequest ...) in place of the instance's
    // message of that kind; null for another kind.
    ZMessage* CreateMessage(ZInstance& instance, uint32_t kind);
    ZParam* AddParam(ZMessage& message, const ZParam::PackedTexts& texts, uint32_t bitPos, uint32_t bitLen);
    // A formula conversion.
    ZConversion* AddConversion(const char* id, double factor, double offset);
    ZTextTableElement* AddTextTableElement(ZConversion& conversion, const char* value, const char* text);
    ZNrcItem* AddNrc(uint8_t code, const char* text);

private:
    // The item at the index a container's add gave, or null for InvalidIndex.
    template <typename Container>
    static auto* Added(Container& container, uint32_t index) {
        return index != InvalidIndex ? container.ItemAt(index) : nullptr;
    }

    ZModelArena* Arena() const { return m_ecu != nullptr ? m_ecu->ModelArena() : nullptr; }

    std::unique_ptr<ZEcu> m_ecu;
};

}  // namespace Korvel
