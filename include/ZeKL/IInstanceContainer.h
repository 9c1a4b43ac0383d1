// The service instances of an ECU, keyed by instance id.
#pragma once

#include <ZeKL/IContainer.h>
#include <ZeKL/IInstance.h>

namespace Korvel {

// Note: GetInstance has an index overload (uint32_t) and an id overload (const char*);
// pass GetInstance(0u) for the first instance.
class ZEKL_API IInstanceContainer : public virtual IContainer {
public:
    virtual bool Contains(const char* id) const = 0;
    // Instance with id, or null.
    virtual const IInstance* GetInstance(const char* id) const = 0;
    virtual IInstance* GetInstance(const char* id) = 0;
    // Instance at index, or null.
    virtual const IInstance* GetInstance(uint32_t index) const = 0;
    virtual IInstance* GetInstance(uint32_t index) = 0;
    // Adds a deep copy; its index, or InvalidIndex when the id is present.
    virtual uint32_t AddInstance(const IInstance& instance) = 0;
    virtual uint32_t AddInstance(const char* id) = 0;
    // Adds an instance with copies of the given messages (each may be null).
    virtual uint32_t AddInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
                                 const INegResponse* negResponse) = 0;
    ~IInstanceContainer() override;
};

}  // namespace Korvel
