// One bit-placed, typed parameter of a diagnostic message. Every attribute is kept as the
// text of the document; typed views are computed from it on each call.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZTextPack.h"

#include <ZeKL/IParam.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace Korvel {

class ZParam : public ZModelItem, public IParam {
public:
    // The order in which a parameter keeps its six texts.
    enum Slot { kConvId, kSemantics, kValue, kTypeName, kUnit, kId, kSlotCount };

    // The six texts back to back, each followed by a zero, in slot order: text `i` begins at
    // `starts[i]`, and `size` counts the bytes of all of them with their zeros.
    struct PackedTexts {
        const char* bytes;
        std::size_t size;
        std::array<uint32_t, kSlotCount> starts;
        // The length of one text, without its zero.
        std::size_t Length(Slot slot) const {
            const std::size_t end = slot + 1 < kSlotCount ? starts[slot + 1] : size;
            return end - starts[slot] - 1;
        }
    };

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::Param; }

    // Every parameter of a message is made here: in `arena` (null: on the heap), its texts in
    // the same block. The reader's texts come laid out already; other texts are laid out first.
    static ZItemPtr<ZParam> Make(ZModelArena* arena, const PackedTexts& texts, uint32_t bitPos,
                                 uint32_t bitLen);
    static ZItemPtr<ZParam> Make(ZModelArena* arena, const IParam& other);

    // The constructor of every parameter: keeps the texts in `storage` (texts.size bytes) or,
    // with null storage, in a heap block of its own.
    ZParam(char* storage, const PackedTexts& texts, uint32_t bitPos, uint32_t bitLen);
    // The same parameter from separate texts (a heap block holds them).
    ZParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value, const char* typeName,
           const char* unit, const char* semantics, const char* convId);
    // The type and the flags are stored as their texts.
    ZParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value, ParamDataType type,
           const char* unit, SemanticsFlags semantics, const char* convId);
    ZParam(const ZParam& other);
    // Same as Assign.
    explicit ZParam(const IParam& other);
    ZParam& operator=(const ZParam&) = delete;
    ~ZParam() override;

    ZItemKind Kind() const override { return ZItemKind::Param; }
    std::size_t BlockBytes() const override { return sizeof(ZParam) + m_texts.StorageBytes(); }

    // Texts laid out as a parameter keeps them, in `bytes` (which must outlive the result).
    static PackedTexts LayOut(const std::array<const char*, kSlotCount>& texts, std::string& bytes);

    void Assign(const IParam& other) override;
    const char* GetId() const override;
    void SetId(const char* id) override;
    void SetBitPos(uint32_t bitPos) override;
    uint32_t GetBitPos() const override;
    bool GetBytePosition(uint32_t& byteIndex, uint32_t& bitOffset, uint32_t& bitLength) const override;
    uint32_t GetByteLength() const override;
    uint32_t GetBitLength() const override;
    void SetBitLength(uint32_t bitLength) override;
    const char* GetDataTypeName() const override;
    ParamDataType GetDataType() const override;
    ParamDataType GetCodedDataType() const override;
    ParamDataType GetPhysicalDataType() const override;
    void SetDataTypeName(const char* name) override;
    void SetDataType(ParamDataType type) override;
    const char* GetUnit() const override;
    void SetUnit(const char* unit) override;
    const char* GetValue() const override;
    ByteBuffer GetValueImage() const override;
    ByteBuffer GetValueBytes() const override;
    void SetValue(const char* value) override;
    SemanticsFlags GetSemanticsFlags() const override;
    const char* GetSemantics() const override;
    void SetSemanticsFlags(SemanticsFlags flags) override;
    void SetSemantics(const char* semantics) override;
    bool IsMotorola() const override;
    bool IsConst() const override;
    bool IsGap() const override;
    bool IsSid() const override;
    bool IsXid() const override;
    const char* GetConvId() const override;
    void SetConvId(const char* convId) override;
    uint32_t GetConversionKind() const override;
    const IConversion* GetConversion() const override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    // One block holds the six texts; getters point into it until the next change.
    using Pack = ZTextPack<kSlotCount>;

    Pack m_texts;
    uint32_t m_bitPos;
    uint32_t m_bitLen;
};

}  // namespace Korvel
