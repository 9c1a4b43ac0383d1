#include "model/ZInstance.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

namespace {

// A deep copy of a message, taken before the old one goes, so that the source may be anything.
template <typename Message, typename Interface>
ZItemPtr<Message> CopyMessage(const Interface& source, IModelItem* parent) {
    ZItemPtr<Message> copy;
    if (const auto* same = dynamic_cast<const Message*>(&source)) {
        copy = MakeItem<Message>(nullptr, *same);
    } else {
        copy = MakeItem<Message>(nullptr, source);
    }
    copy->SetParent(parent);
    return copy;
}

// The old message goes first, as a new one built from nothing needs nothing of it.
template <typename Message>
Message* CreateMessageIn(ZItemPtr<Message>& slot, IModelItem* parent, ZModelArena* arena) {
    slot.reset();
    slot = MakeItem<Message>(arena, arena);
    slot->SetParent(parent);
    return slot.get();
}

}  // namespace

ZInstance::ZInstance() = default;

ZInstance::ZInstance(const char* id) : ZInstance(nullptr, {id}) {}

ZInstance::ZInstance(char* storage, const TextList& id) : m_id(id, storage) {}

ZInstance::ZInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
                     const INegResponse* negResponse)
    : ZInstance(id) {
    if (request != nullptr) {
        SetRequest(*request);
    }
    if (posResponse != nullptr) {
        SetPosResponse(*posResponse);
    }
    if (negResponse != nullptr) {
        SetNegResponse(*negResponse);
    }
}

ZInstance::ZInstance(const ZInstance& other) : IModelItem(), ZModelItem(), IInstance(), m_id(other.m_id) {
    CopyMessagesOf(other);
}

ZInstance::ZInstance(const IInstance& other) : ZInstance(other.GetId()) {
    CopyMessagesOf(other);
}

ZInstance::~ZInstance() = default;

void ZInstance::CopyMessagesOf(const IInstance& other) {
    if (const IRequest* request = other.GetRequest()) {
        SetRequest(*request);
    }
    if (const IPosResponse* response = other.GetPosResponse()) {
        SetPosResponse(*response);
    }
    if (const INegResponse* response = other.GetNegResponse()) {
        SetNegResponse(*response);
    }
}

void ZInstance::Clear() {
    m_negResponse.reset();
    m_posResponse.reset();
    m_request.reset();
}

void ZInstance::SetId(const char* id) {
    m_id.Set(0, id);
}

const char* ZInstance::GetId() const {
    return m_id.Get(0);
}

ZMessage* ZInstance::CreateMessage(uint32_t kind, ZModelArena* arena) {
    switch (kind) {
        case MessageKindRequest:
            return CreateMessageIn(m_request, this, arena);
        case MessageKindPosResponse:
            return CreateMessageIn(m_posResponse, this, arena);
        case MessageKindNegResponse:
            return CreateMessageIn(m_negResponse, this, arena);
        default:
            return nullptr;
    }
}

ZRequest* ZInstance::CreateRequest() {
    return CreateMessageIn(m_request, this, nullptr);
}

bool ZInstance::HasRequest() const {
    return m_request != nullptr;
}

const IRequest* ZInstance::GetRequest() const {
    return m_request.get();
}

IRequest* ZInstance::GetRequest() {
    return m_request.get();
}

void ZInstance::SetRequest(const IRequest& request) {
    if (&request == static_cast<const IRequest*>(m_request.get())) {
        return;
    }
    m_request = CopyMessage<ZRequest>(request, this);
}

ZPosResponse* ZInstance::CreatePosResponse() {
    return CreateMessageIn(m_posResponse, this, nullptr);
}

bool ZInstance::HasPosResponse() const {
    return m_posResponse != nullptr;
}

const IPosResponse* ZInstance::GetPosResponse() const {
    return m_posResponse.get();
}

IPosResponse* ZInstance::GetPosResponse() {
    return m_posResponse.get();
}

void ZInstance::SetPosResponse(const IPosResponse& response) {
    if (&response == static_cast<const IPosResponse*>(m_posResponse.get())) {
        return;
    }
    m_posResponse = CopyMessage<ZPosResponse>(response, this);
}

ZNegResponse* ZInstance::CreateNegResponse() {
    return CreateMessageIn(m_negResponse, this, nullptr);
}

bool ZInstance::HasNegResponse() const {
    return m_negResponse != nullptr;
}

const INegResponse* ZInstance::GetNegResponse() const {
    return m_negResponse.get();
}

INegResponse* ZInstance::GetNegResponse() {
    return m_negResponse.get();
}

void ZInstance::SetNegResponse(const INegResponse& response) {
    if (&response == static_cast<const INegResponse*>(m_negResponse.get())) {
        return;
    }
    m_negResponse = CopyMessage<ZNegResponse>(response, this);
}

void ZInstance::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitInstance(*this);
}

void ZInstance::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitInstance(*this);
}

}  // namespace Korvel
