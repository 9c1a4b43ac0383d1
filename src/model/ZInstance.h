// A diagnostic service instance: an id and up to three messages, each owned by the instance.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZNegResponse.h"
#include "model/ZPosResponse.h"
#include "model/ZRequest.h"
#include "model/ZTextPack.h"

#include <ZeKL/IInstance.h>

#include <memory>
#include <string>

namespace Korvel {

class ZInstance : public ZModelItem, public IInstance {
public:
    // The texts the item keeps, in their order.
    using TextList = std::array<const char*, 1>;

    ZInstance();
    explicit ZInstance(const char* id);
    // The constructor of every instance made with MakeItemWithPack: its id in `storage`.
    ZInstance(char* storage, const TextList& id);
    // Copies the messages that are not null.
    ZInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
              const INegResponse* negResponse);
    // Deep copies: the id and every present message.
    ZInstance(const ZInstance& other);
    explicit ZInstance(const IInstance& other);
    ZInstance& operator=(const ZInstance&) = delete;
    ~ZInstance() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::Instance; }
    ZItemKind Kind() const override { return ZItemKind::Instance; }
    std::size_t BlockBytes() const override { return sizeof(ZInstance) + m_id.StorageBytes(); }

    // Makes the message of `kind` (request, positive or negative response) in `arena`, in
    // place of the one there was; the model builder's way (CreateRequest makes it on the heap).
    ZMessage* CreateMessage(uint32_t kind, ZModelArena* arena);

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

    ZItemPtr<ZRequest> m_request;
    ZItemPtr<ZPosResponse> m_posResponse;
    ZItemPtr<ZNegResponse> m_negResponse;
    ZTextPack<1> m_id;
};

}  // namespace Korvel
