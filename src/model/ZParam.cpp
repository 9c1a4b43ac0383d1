#include "model/ZParam.h"

#include <ZeKL/IConstModelItemVisitor.h>
#include <ZeKL/IEcu.h>
#include "model/ModelUtils.h"
#include "model/TextOrEmpty.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Korvel {

namespace {

// The texts of another parameter in slot order.
std::array<const char*, ZParam::kSlotCount> TextsOf(const IParam& param) {
    return {param.GetConvId(),       param.GetSemantics(), param.GetValue(),
            param.GetDataTypeName(), param.GetUnit(),      param.GetId()};
}

}  // namespace

ZParam::PackedTexts ZParam::LayOut(const std::array<const char*, kSlotCount>& texts, std::string& bytes) {
    PackedTexts packed{nullptr, 0, {}};
    bytes.clear();
    for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
        packed.starts[slot] = static_cast<uint32_t>(bytes.size());
        bytes.append(TextOrEmpty(texts[slot])).push_back('\0');
        if (bytes.size() > UINT32_MAX) {
            throw std::length_error("texts of one item exceed 4 GiB");
        }
    }
    packed.bytes = bytes.data();
    packed.size = bytes.size();
    return packed;
}

ZItemPtr<ZParam> ZParam::Make(ZModelArena* arena, const PackedTexts& texts, uint32_t bitPos,
                              uint32_t bitLen) {
    if (texts.size > UINT32_MAX) {
        throw std::length_error("texts of one item exceed 4 GiB");
    }
    return MakeItemWithTexts<ZParam>(arena, texts.size, texts, bitPos, bitLen);
}

ZItemPtr<ZParam> ZParam::Make(ZModelArena* arena, const IParam& other) {
    std::string bytes;
    return Make(arena, LayOut(TextsOf(other), bytes), other.GetBitPos(), other.GetBitLength());
}

ZParam::ZParam(char* storage, const PackedTexts& texts, uint32_t bitPos, uint32_t bitLen)
    : m_texts(texts.bytes, texts.size, texts.starts, storage), m_bitPos(bitPos), m_bitLen(bitLen) {}

ZParam::ZParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value, const char* typeName,
               const char* unit, const char* semantics, const char* convId)
    : m_texts({convId, semantics, value, typeName, unit, id}, nullptr), m_bitPos(bitPos), m_bitLen(bitLen) {}

ZParam::ZParam(const char* id, uint32_t bitPos, uint32_t bitLen, const char* value, ParamDataType type,
               const char* unit, SemanticsFlags semantics, const char* convId)
    : ZParam(id, bitPos, bitLen, value, ModelUtils().DataTypeToName(type).c_str(), unit,
             ModelUtils().SemanticsToString(semantics).c_str(), convId) {}

ZParam::ZParam(const ZParam& other)
    : IModelItem(),
      ZModelItem(),
      IParam(),
      m_texts(other.m_texts),
      m_bitPos(other.m_bitPos),
      m_bitLen(other.m_bitLen) {}

ZParam::ZParam(const IParam& other)
    : m_texts(TextsOf(other), nullptr), m_bitPos(other.GetBitPos()), m_bitLen(other.GetBitLength()) {}

ZParam::~ZParam() = default;

void ZParam::Assign(const IParam& other) {
    if (&other == this) {
        return;
    }
    m_bitLen = other.GetBitLength();
    m_bitPos = other.GetBitPos();
    m_texts.Assign(TextsOf(other));
}

const char* ZParam::GetId() const {
    return m_texts.Get(kId);
}

void ZParam::SetId(const char* id) {
    m_texts.Set(kId, id);
}

void ZParam::SetBitPos(uint32_t bitPos) {
    m_bitPos = bitPos;
}

uint32_t ZParam::GetBitPos() const {
    return m_bitPos;
}

// Parameters are addressed by whole bytes: the bit offset inside the first byte is reported as
// 0 on purpose, even for positions that are not a multiple of 8.
bool ZParam::GetBytePosition(uint32_t& byteIndex, uint32_t& bitOffset, uint32_t& bitLength) const {
    byteIndex = m_bitPos / 8;
    bitOffset = 0;
    bitLength = m_bitLen;
    return true;
}

uint32_t ZParam::GetByteLength() const {
    // Computed wide so that the largest bit lengths do not wrap around.
    return static_cast<uint32_t>((static_cast<uint64_t>(m_bitLen) + 7) / 8);
}

uint32_t ZParam::GetBitLength() const {
    return m_bitLen;
}

void ZParam::SetBitLength(uint32_t bitLength) {
    m_bitLen = bitLength;
}

const char* ZParam::GetDataTypeName() const {
    return m_texts.Get(kTypeName);
}

ParamDataType ZParam::GetDataType() const {
    return ModelUtils().DataTypeFromName(GetDataTypeName());
}

ParamDataType ZParam::GetCodedDataType() const {
    return GetDataType();
}

ParamDataType ZParam::GetPhysicalDataType() const {
    switch (GetConversionKind()) {
        case static_cast<uint32_t>(ConversionKind::Formula):
            return ParamDataType::Double;
        case static_cast<uint32_t>(ConversionKind::ValueTable):
            return ParamDataType::Ascii;
        default:
            return GetDataType();
    }
}

void ZParam::SetDataTypeName(const char* name) {
    m_texts.Set(kTypeName, name);
}

void ZParam::SetDataType(ParamDataType type) {
    m_texts.Set(kTypeName, ModelUtils().DataTypeToName(type).c_str());
}

const char* ZParam::GetUnit() const {
    return m_texts.Get(kUnit);
}

void ZParam::SetUnit(const char* unit) {
    m_texts.Set(kUnit, unit);
}

const char* ZParam::GetValue() const {
    return m_texts.Get(kValue);
}

// Transmission order: Motorola parameters keep the big-endian image, all others are Intel.
ByteBuffer ZParam::GetValueImage() const {
    ByteBuffer bytes = GetValueBytes();
    if (!IsMotorola()) {
        std::reverse(bytes.begin(), bytes.end());
    }
    return bytes;
}

ByteBuffer ZParam::GetValueBytes() const {
    ByteBuffer bytes;
    ModelUtils().ValueToBytes(GetValue(), GetDataType(), GetByteLength(), bytes);
    return bytes;
}

void ZParam::SetValue(const char* value) {
    m_texts.Set(kValue, value);
}

SemanticsFlags ZParam::GetSemanticsFlags() const {
    return ModelUtils().SemanticsFromString(GetSemantics());
}

const char* ZParam::GetSemantics() const {
    return m_texts.Get(kSemantics);
}

void ZParam::SetSemanticsFlags(SemanticsFlags flags) {
    m_texts.Set(kSemantics, ModelUtils().SemanticsToString(flags).c_str());
}

void ZParam::SetSemantics(const char* semantics) {
    m_texts.Set(kSemantics, semantics);
}

bool ZParam::IsMotorola() const {
    return ModelUtils().HasMotorola(GetSemantics());
}

bool ZParam::IsConst() const {
    return ModelUtils().HasConst(GetSemantics());
}

bool ZParam::IsGap() const {
    return ModelUtils().HasGap(GetSemantics());
}

bool ZParam::IsSid() const {
    return ModelUtils().HasSid(GetSemantics());
}

bool ZParam::IsXid() const {
    return ModelUtils().HasXid(GetSemantics());
}

const char* ZParam::GetConvId() const {
    return m_texts.Get(kConvId);
}

void ZParam::SetConvId(const char* convId) {
    m_texts.Set(kConvId, convId);
}

uint32_t ZParam::GetConversionKind() const {
    if (!HasParent()) {
        return static_cast<uint32_t>(ConversionKind::Neither);
    }
    const IConversion* conversion = GetConversion();
    if (conversion == nullptr) {
        return static_cast<uint32_t>(ConversionKind::NotSet);
    }
    return conversion->GetType();
}

// The root is cast to an ECU as a reference on purpose: a parameter in a tree without an ECU
// at its root is a caller error, reported with std::bad_cast.
const IConversion* ZParam::GetConversion() const {
    if (!HasParent()) {
        return nullptr;
    }
    const IEcu& ecu = dynamic_cast<const IEcu&>(*GetRoot());
    const IConversionContainer* conversions = ecu.GetConversionContainer();
    if (conversions == nullptr) {
        return nullptr;
    }
    // The id lookup of the container interface is non-const only; it changes nothing.
    return const_cast<IConversionContainer*>(conversions)->GetConversion(GetConvId());
}

void ZParam::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitParam(*this);
}

void ZParam::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitParam(*this);
}

}  // namespace Korvel
