// A diagnostic service instance with its request, positive and negative response.
#pragma once

#include <ZeKL/IMessage.h>

namespace Korvel {

class ZEKL_API IInstance : public virtual IModelItem {
public:
    // Destroys the three messages; the id stays.
    virtual void Clear() = 0;
    virtual void SetId(const char* id) = 0;
    virtual const char* GetId() const = 0;
    // Replaces any request by a new empty one and returns it.
    virtual IRequest* CreateRequest() = 0;
    virtual bool HasRequest() const = 0;
    // Request, or null.
    virtual const IRequest* GetRequest() const = 0;
    virtual IRequest* GetRequest() = 0;
    // Stores a deep copy (nothing happens for the request already held).
    virtual void SetRequest(const IRequest& request) = 0;
    virtual IPosResponse* CreatePosResponse() = 0;
    virtual bool HasPosResponse() const = 0;
    virtual const IPosResponse* GetPosResponse() const = 0;
    virtual IPosResponse* GetPosResponse() = 0;
    virtual void SetPosResponse(const IPosResponse& response) = 0;
    virtual INegResponse* CreateNegResponse() = 0;
    virtual bool HasNegResponse() const = 0;
    virtual const INegResponse* GetNegResponse() const = 0;
    virtual INegResponse* GetNegResponse() = 0;
    virtual void SetNegResponse(const INegResponse& response) = 0;
    ~IInstance() override;
};

}  // namespace Korvel
