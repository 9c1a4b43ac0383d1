// A message of a service instance: an ordered set of parameters keyed by id.
#pragma once

#include <ZeKL/IContainer.h>
#include <ZeKL/IParam.h>

namespace Korvel {

// Callback of IMessage::ForParam.
class ZEKL_API IParamCallback {
public:
    virtual void OnParam(IParam* param) = 0;
    virtual ~IParamCallback();
};

class ZEKL_API IMessage : public virtual IContainer {
public:
    // MessageKindRequest, MessageKindPosResponse or MessageKindNegResponse.
    virtual uint32_t GetMessageKind() const = 0;
    // Adds a copy; its position, or InvalidIndex when the id is present.
    virtual uint32_t AddParam(const IParam& param) = 0;
    virtual uint32_t AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value,
                              ParamDataType type, const char* unit, SemanticsFlags semantics,
                              const char* convId) = 0;
    virtual uint32_t AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value,
                              const char* typeName, const char* unit, const char* semantics,
                              const char* convId) = 0;
    // Replaces the parameter at index; false when out of range. The new id is found by id
    // only after ReindexParams.
    virtual bool ReplaceParam(uint32_t index, const IParam& param) = 0;
    // Calls the callback with the parameter at index; false when out of range.
    virtual bool ForParam(uint32_t index, IParamCallback& callback) = 0;
    // Parameter with id, or null.
    virtual const IParam* GetParam(const char* id) const = 0;
    virtual IParam* GetParam(const char* id) = 0;
    // Parameter at position, or null.
    virtual const IParam* GetParam(int index) const = 0;
    virtual IParam* GetParam(int index) = 0;
    // Rebuilds the id-to-position map; a repeated id maps to its last position.
    virtual void ReindexParams() = 0;
    ~IMessage() override;
};

class ZEKL_API IRequest : public virtual IMessage {
public:
    // First parameter whose semantics contain "SID", or null.
    virtual IParam* GetSidParam() = 0;
    ~IRequest() override;
};

class ZEKL_API IPosResponse : public virtual IMessage {
public:
    // First parameter whose semantics contain "SID", or null.
    virtual IParam* GetSidParam() = 0;
    ~IPosResponse() override;
};

class INrcContainer;

class ZEKL_API INegResponse : public virtual IMessage {
public:
    // The one SID_NR parameter (0x7F) that every negative response shares.
    virtual const IParam* GetSidNrParam() = 0;
    // SID parameter of the owning instance's request, or null.
    virtual IParam* GetRequestSidParam() = 0;
    // The NRC table of the ECU at the root. Throws std::bad_cast when the root is no ECU.
    virtual INrcContainer* GetNrcContainer() = 0;
    ~INegResponse() override;
};

}  // namespace Korvel
