// The conversions of an ECU, in order of addition, keyed by conversion id.
#pragma once

#include "model/ZContainerBase.h"
#include "model/ZConversion.h"
#include "model/ZTextIndex.h"

#include <ZeKL/IConversionContainer.h>

#include <string>

namespace Korvel {

class ZConversionContainer : public ZContainerBase<std::string, ZConversion, ZTextIndex>,
                             public IConversionContainer {
public:
    // With an arena, the list and index are kept there.
    explicit ZConversionContainer(ZModelArena* arena = nullptr);
    ZConversionContainer(const ZConversionContainer& other);
    ZConversionContainer& operator=(const ZConversionContainer&) = delete;
    ~ZConversionContainer() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::ConversionContainer; }
    ZItemKind Kind() const override { return ZItemKind::ConversionContainer; }

    // Clears this container and adds copies of the other's conversions by index;
    // self-assignment changes nothing.
    void Assign(const IConversionContainer& other);

    // The conversion with an id, or null (a const lookup the interface lacks).
    const IConversion* FindConversion(const char* id) const;

    using ZContainerBase::Contains;
    bool Contains(const char* id) const override;
    const IConversion* GetConversion(uint32_t index) const override;
    IConversion* GetConversion(uint32_t index) override;
    IConversion* GetConversion(const char* id) override;
    uint32_t AddConversion(const IConversion& conversion) override;
    uint32_t AddConversion(const char* id, uint32_t type, double factor, double offset) override;
    uint32_t AddConversion(const char* id, uint32_t type, const ITextTable& table) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
