// Root of one diagnostic description: the protocol and the three collections, held by value.
#pragma once

#include "model/ZConversionContainer.h"
#include "model/ZInstanceContainer.h"
#include "model/ZModelItem.h"
#include "model/ZModelMemory.h"
#include "model/ZNrcContainer.h"

#include <ZeKL/IEcu.h>

#include <cstddef>
#include <memory>
#include <string>

namespace Korvel {

class ZEcu : public ZModelItem, public IEcu {
public:
    // Version "1.0", protocol UDS, three empty containers whose parent is the ECU.
    ZEcu();
    ZEcu(const ZEcu&) = delete;
    ZEcu& operator=(const ZEcu&) = delete;
    // Destroys the NRC table, the instances, the conversions and the version, in this order,
    // and then the model memory they were read into.
    ~ZEcu() override;

    // The ECU holds the memory of its model, so it never lives in such memory itself.
    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void operator delete(void* block) noexcept { ::operator delete(block); }

    // The memory a read builds this model in (see ZModelMemory.h), made on the first call with
    // room for `expectedBytes`; later calls give the same memory.
    ZModelMemory& ModelMemory(std::size_t expectedBytes);

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
    // Declaration order is construction order; destruction runs the other way, so the memory
    // goes after every item in it.
    std::unique_ptr<ZModelMemory> m_memory;
    std::string m_version;
    ZConversionContainer m_conversions;
    ZInstanceContainer m_instances;
    ZNrcContainer m_nrcs;
    uint32_t m_protocol;
};

}  // namespace Korvel
