// One bit-placed, typed parameter of a diagnostic message.
#pragma once

#include <ZeKL/IModelItem.h>

namespace Korvel {

class IConversion;

class ZEKL_API IParam : public virtual IModelItem {
public:
    // Copies every attribute (not the parent); self-assignment does nothing.
    virtual void Assign(const IParam& other) = 0;
    virtual const char* GetId() const = 0;
    virtual void SetId(const char* id) = 0;
    virtual void SetBitPos(uint32_t bitPos) = 0;
    virtual uint32_t GetBitPos() const = 0;
    // byteIndex = bitPos / 8, bitOffset always 0, bitLength as stored; always true.
    virtual bool GetBytePosition(uint32_t& byteIndex, uint32_t& bitOffset, uint32_t& bitLength) const = 0;
    // (bit length + 7) / 8.
    virtual uint32_t GetByteLength() const = 0;
    virtual uint32_t GetBitLength() const = 0;
    virtual void SetBitLength(uint32_t bitLength) = 0;
    virtual const char* GetDataTypeName() const = 0;
    // Type derived from the type name; Undefined when it names none.
    virtual ParamDataType GetDataType() const = 0;
    virtual ParamDataType GetCodedDataType() const = 0;
    // Double for a formula conversion, Ascii for a text table, else GetDataType().
    virtual ParamDataType GetPhysicalDataType() const = 0;
    virtual void SetDataTypeName(const char* name) = 0;
    // Stores the type's name (empty for an unknown value).
    virtual void SetDataType(ParamDataType type) = 0;
    virtual const char* GetUnit() const = 0;
    virtual void SetUnit(const char* unit) = 0;
    virtual const char* GetValue() const = 0;
    // Value bytes in transmission order (reversed unless MOTOROLA); empty on failure.
    virtual ByteBuffer GetValueImage() const = 0;
    // Value bytes big-endian; empty (or partial) on failure.
    virtual ByteBuffer GetValueBytes() const = 0;
    virtual void SetValue(const char* value) = 0;
    virtual SemanticsFlags GetSemanticsFlags() const = 0;
    virtual const char* GetSemantics() const = 0;
    // Stores the flags as their words.
    virtual void SetSemanticsFlags(SemanticsFlags flags) = 0;
    virtual void SetSemantics(const char* semantics) = 0;
    virtual bool IsMotorola() const = 0;
    virtual bool IsConst() const = 0;
    virtual bool IsGap() const = 0;
    virtual bool IsSid() const = 0;
    virtual bool IsXid() const = 0;
    virtual const char* GetConvId() const = 0;
    virtual void SetConvId(const char* convId) = 0;
    // 0 without parent, 0xFFFFFFFF when the conversion is not found, else its kind.
    // Throws std::bad_cast when the root is not an ECU.
    virtual uint32_t GetConversionKind() const = 0;
    // The ECU's conversion with the conversion id, or null. Throws std::bad_cast when the
    // parameter has a parent but its root is not an ECU.
    virtual const IConversion* GetConversion() const = 0;
    ~IParam() override;
};

}  // namespace Korvel
