// Root of one diagnostic description: the protocol and the three collections, held by value.
#pragma once

#include "model/ZConversionContainer.h"
#include "model/ZInstanceContainer.h"
#include "model/ZModelArena.h"
#include "model/ZModelItem.h"
#include "model/ZNrcContainer.h"

#include <ZeKL/IEcu.h>

#include <cstddef>
#include <memory>
#include <string>

namespace Korvel {

class ZEcu : public ZModelItem, public IEcu {
public:
    // Version "1.0", protocol UDS, three empty containers whose parent is the ECU. With an
    // arena (the model builder's), the ECU owns it and the containers keep their lists there.
    explicit ZEcu(std::unique_ptr<ZModelArena> arena = nullptr);
    ZEcu(const ZEcu&) = delete;
    ZEcu& operator=(const ZEcu&) = delete;
    // Destroys the NRC table, the instances, the conversions and the version, in this order,
    // and then the arena they were built in.
    ~ZEcu() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::Ecu; }
    ZItemKind Kind() const override { return ZItemKind::Ecu; }

    // The containers with their own types.
    ZConversionContainer& Conversions() { return m_conversions; }
    ZNrcContainer& Nrcs() { return m_nrcs; }

    // The arena of the model; null for an ECU built by the caller.
    ZModelArena* ModelArena() const { return m_arena.get(); }

    const char* GetFormatVersion() const override;
    uint32_t GetProtocol() const override;
    void SetProtocol(uint32_t protocol) override;
    void SetNrcContainer(const INrcContainer& nrcs) override;
    const INrcContainer* GetNrcContainer() const override;
    INrcContainer* GetNrcContainer() override;
    void SetInstanceContainer(const IInstanceContainer& instances) override;
    const IInstanceContainer* GetInstanceContainer() const override;
    // The container with its own type; callers through IEcu see the interface.
    ZInstanceContainer* GetInstanceContainer() override;
    void SetConversionContainer(const IConversionContainer& conversions) override;
    const IConversionContainer* GetConversionContainer() const override;
    IConversionContainer* GetConversionContainer() override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    // Declaration order is construction order; destruction runs the other way, so the arena
    // goes after every item in it.
    std::unique_ptr<ZModelArena> m_arena;
    std::string m_version;
    ZConversionContainer m_conversions;
    ZInstanceContainer m_instances;
    ZNrcContainer m_nrcs;
    uint32_t m_protocol;
};

}  // namespace Korvel
