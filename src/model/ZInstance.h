// A diagnostic service instance: an id and up to three messages, each owned by the instance.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZModelMemory.h"
#include "model/ZNegResponse.h"
#include "model/ZPosResponse.h"
#include "model/ZRequest.h"

#include <ZeKL/IInstance.h>

#include <memory>
#include <string>

namespace Korvel {

class ZInstance : public ZModelItem, public IInstance {
public:
    ZInstance();
    explicit ZInstance(const char* id);
    // Copies the messages that are not null.
    ZInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
              const INegResponse* negResponse);
    // Deep copies: the id and every present message.
    ZInstance(const ZInstance& other);
    explicit ZInstance(const IInstance& other);
    ZInstance& operator=(const ZInstance&) = delete;
    ~ZInstance() override;

    void Clear() override;
    void SetId(const char* id) override;
    const char* GetId() const override;
    // The created message with its own type; callers through IInstance see the interface.
    ZRequest* CreateRequest() override;
    bool HasRequest() const override;
    const IRequest* GetRequest() const override;
    IRequest* GetRequest() override;
    void SetRequest(const IRequest& request) override;
    ZPosResponse* CreatePosResponse() override;
    bool HasPosResponse() const override;
    const IPosResponse* GetPosResponse() const override;
    IPosResponse* GetPosResponse() override;
    void SetPosResponse(const IPosResponse& response) override;
    ZNegResponse* CreateNegResponse() override;
    bool HasNegResponse() const override;
    const INegResponse* GetNegResponse() const override;
    INegResponse* GetNegResponse() override;
    void SetNegResponse(const INegResponse& response) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    void CopyMessagesOf(const IInstance& other);

    std::unique_ptr<ZRequest> m_request;
    std::unique_ptr<ZPosResponse> m_posResponse;
    std::unique_ptr<ZNegResponse> m_negResponse;
    ZModelString m_id;
};

}  // namespace Korvel
