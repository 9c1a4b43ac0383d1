// The negative response code table of an ECU: entries in order of addition, keyed by code.
#pragma once

#include "model/ZContainerBase.h"
#include "model/ZNrcItem.h"

#include <ZeKL/INrcContainer.h>

namespace Korvel {

class ZNrcContainer : public ZContainerBase<uint8_t, ZNrcItem>, public INrcContainer {
public:
    // With an arena, the list and index are kept there.
    explicit ZNrcContainer(ZModelArena* arena = nullptr);
    ZNrcContainer(const ZNrcContainer& other);
    ZNrcContainer& operator=(const ZNrcContainer&) = delete;
    ~ZNrcContainer() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::NrcContainer; }
    ZItemKind Kind() const override { return ZItemKind::NrcContainer; }

    // Clears this table, then adds copies of the other's entries by index. There is
    // deliberately no check for self-assignment: given itself, the table ends up empty, and
    // the ECU's SetNrcContainer keeps that behaviour.
    void Assign(const INrcContainer& other);

    bool Contains(uint8_t code) const override;
    uint32_t AddNrc(const INrcItem& item) override;
    uint32_t AddNrc(uint8_t code, const char* text) override;
    bool SetNrc(uint32_t index, const INrcItem& item) override;
    bool SetNrc(uint32_t index, uint8_t code, const char* text) override;
    const INrcItem* GetNrc(uint32_t index) const override;
    INrcItem* GetNrc(uint32_t index) override;
    const INrcItem* GetNrc(uint8_t code) const override;
    INrcItem* GetNrc(uint8_t code) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
