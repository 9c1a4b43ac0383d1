// The service instances of an ECU, in order of addition, keyed by instance id.
#pragma once

#include "model/ZContainerBase.h"
#include "model/ZInstance.h"
#include "model/ZTextIndex.h"

#include <ZeKL/IInstanceContainer.h>

#include <string>

namespace Korvel {

class ZInstanceContainer : public ZContainerBase<std::string, ZInstance, ZTextIndex>,
                           public IInstanceContainer {
public:
    // With an arena, the list and index are kept there.
    explicit ZInstanceContainer(ZModelArena* arena = nullptr);
    ZInstanceContainer(const ZInstanceContainer& other);
    ZInstanceContainer& operator=(const ZInstanceContainer&) = delete;
    ~ZInstanceContainer() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::InstanceContainer; }
    ZItemKind Kind() const override { return ZItemKind::InstanceContainer; }

    // Clears this container and adds deep copies of the other's instances by index;
    // self-assignment changes nothing.
    void Assign(const IInstanceContainer& other);

    using ZContainerBase::Contains;
    bool Contains(const char* id) const override;
    const IInstance* GetInstance(const char* id) const override;
    IInstance* GetInstance(const char* id) override;
    const IInstance* GetInstance(uint32_t index) const override;
    // The instance with its own type; callers through IInstanceContainer see the interface.
    ZInstance* GetInstance(uint32_t index) override;
    uint32_t AddInstance(const IInstance& instance) override;
    uint32_t AddInstance(const char* id) override;
    uint32_t AddInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
                         const INegResponse* negResponse) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
