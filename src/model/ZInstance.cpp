#include "model/ZInstance.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

namespace {

// A deep copy of a message, taken before the old one goes, so that the source may be anything.
template <typename Message, typename Interface>
std::unique_ptr<Message> CopyMessage(const Interface& source, IModelItem* parent) {
    std::unique_ptr<Message> copy;
    if (const auto* same = dynamic_cast<const Message*>(&source)) {
        copy = std::make_unique<Message>(*same);
    } else {
        copy = std::make_unique<Message>(source);
    }
    copy->SetParent(parent);
    return copy;
}

template <typename Message>
Message* CreateMessage(std::unique_ptr<Message>& slot, IModelItem* parent) {
    slot.reset();
    slot = std::make_unique<Message>();
    slot->SetParent(parent);
    return slot.get();
}

}  // namespace

ZInstance::ZInstance() = default;

ZInstance::ZInstance(const char* id) : m_id(TextOrEmpty(id)) {}

ZInstance::ZInstance(const char* id, const IRequest* request, const IPosResponse* posResponse,
                     const INegResponse* negResponse)
    : m_id(TextOrEmpty(id)) {
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

ZInstance::ZInstance(const IInstance& other) : m_id(other.GetId()) {
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
    m_id = TextOrEmpty(id);
}

const char* ZInstance::GetId() const {
    return m_id.c_str();
}

ZRequest* ZInstance::CreateRequest() {
    return CreateMessage(m_request, this);
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
    return CreateMessage(m_posResponse, this);
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
    return CreateMessage(m_negResponse, this);
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
