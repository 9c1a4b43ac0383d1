// Common part of the three messages of a service instance: parameters in order of addition,
// keyed by parameter id.
#pragma once

#include "model/ZContainerBase.h"
#include "model/ZParam.h"
#include "model/ZTextIndex.h"

#include <ZeKL/IMessage.h>

#include <string>

namespace Korvel {

class ZMessage : public ZContainerBase<std::string, ZParam, ZTextIndex>, public virtual IMessage {
public:
    ZMessage& operator=(const ZMessage&) = delete;
    ~ZMessage() override;

    // Copies the kind, then adds copies of the other's parameters in order by the AddParam rule
    // (nothing is cleared first, so ids already present are skipped). Self-assignment changes
    // nothing.
    virtual void Assign(const ZMessage& other);
    // The first parameter, in order, whose flags hold every bit of `flags`; null when none.
    virtual IParam* FindParamBySemantics(SemanticsFlags flags);

    uint32_t GetMessageKind() const override;
    uint32_t AddParam(const IParam& param) override;
    uint32_t AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value, ParamDataType type,
                      const char* unit, SemanticsFlags semantics, const char* convId) override;
    uint32_t AddParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value,
                      const char* typeName, const char* unit, const char* semantics,
                      const char* convId) override;
    // Every add ends here: a parameter made in `arena` (null: on the heap) from texts laid out
    // as it keeps them, unless its id is taken.
    uint32_t AddParam(ZModelArena* arena, const ZParam::PackedTexts& texts, uint32_t bitPos, uint32_t bitLen);
    bool ReplaceParam(uint32_t index, const IParam& param) override;
    bool ForParam(uint32_t index, IParamCallback& callback) override;
    const IParam* GetParam(const char* id) const override;
    IParam* GetParam(const char* id) override;
    const IParam* GetParam(int index) const override;
    IParam* GetParam(int index) override;
    void ReindexParams() override;

    static constexpr bool IsKind(ZItemKind kind) {
        return kind == ZItemKind::Request || kind == ZItemKind::PosResponse || kind == ZItemKind::NegResponse;
    }

protected:
    // A message whose list and index are kept in `arena` (null: on the heap).
    ZMessage(uint32_t kind, ZModelArena* arena);
    // Deep copies: the kind and every parameter, in order.
    ZMessage(const ZMessage& other);
    explicit ZMessage(const IMessage& other);

private:
    void AddParamsOf(const IMessage& other);

    uint32_t m_kind;
};

}  // namespace Korvel
