#include "codec/MessageDecoder.h"

#include "codec/CodecText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Korvel {

namespace {

bool IsLayoutProblem(CodecProblem problem) {
    return problem == CodecProblem::BadLayout || problem == CodecProblem::UnknownType;
}

void Note(DecodedParam& out, CodecProblem problem) {
    if (out.problem == CodecProblem::None) {
        out.problem = problem;
    }
}

// The field's value as `count` bytes in the given order.
void LayOut(uint64_t raw, uint32_t count, bool mostSignificantFirst, ByteBuffer& bytes) {
    bytes.resize(count);
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t significance = mostSignificantFirst ? count - 1 - i : i;
        bytes[i] = static_cast<uint8_t>(significance < 8 ? raw >> (8 * significance) : 0);
    }
}

void TextWithoutPadding(const ByteBuffer& bytes, std::string& text) {
    std::size_t length = bytes.size();
    while (length > 0 && bytes[length - 1] == 0) {
        --length;
    }
    text.assign(reinterpret_cast<const char*>(bytes.data()), length);
}

void Ucs2Text(const ByteBuffer& bytes, bool bigEndian, std::string& text) {
    std::size_t units = bytes.size() / 2;
    while (units > 0 && bytes[2 * units - 1] == 0 && bytes[2 * units - 2] == 0) {
        --units;
    }
    text.clear();
    AppendUtf16AsUtf8(bytes.data(), units, bigEndian, text);
}

void ReadText(const ParamPlan& param, DecodedParam& out) {
    out.rawKind = CodecValueKind::Text;
    if (param.kind == FieldKind::Ucs2) {
        Ucs2Text(out.bytes, param.place.motorola, out.text);
    } else {
        TextWithoutPadding(out.bytes, out.text);
    }
}

// Packed BCD, high nibble first; false at the first nibble above 9.
bool BcdValue(uint64_t raw, uint32_t bits, uint64_t& value) {
    value = 0;
    for (uint32_t nibble = bits / 4; nibble-- > 0;) {
        const uint64_t digit = (raw >> (4 * nibble)) & 0xF;
        if (digit > 9) {
            return false;
        }
        value = value * 10 + digit;
    }
    return true;
}

void DecodeNarrow(const ParamPlan& param, const uint8_t* data, DecodedParam& out) {
    const uint64_t raw = ExtractBits(data, param.place);
    const uint32_t bits = param.place.bitLength;
    if (param.isConst && param.constUsable && raw != param.constValue) {
        Note(out, CodecProblem::ConstMismatch);
    }
    switch (param.kind) {
        case FieldKind::Unsigned:
            out.rawKind = CodecValueKind::Unsigned;
            out.unsignedValue = raw;
            break;
        case FieldKind::Signed:
            out.rawKind = CodecValueKind::Signed;
            out.signedValue = SignExtend(raw, bits);
            break;
        case FieldKind::Bcd:
            if (BcdValue(raw, bits, out.unsignedValue)) {
                out.rawKind = CodecValueKind::Unsigned;
            } else {
                // The bits as hex, so that the bad digit can be seen.
                out.unsignedValue = raw;
                out.rawKind = CodecValueKind::Bytes;
                LayOut(raw, (bits + 7) / 8, true, out.bytes);
                Note(out, CodecProblem::BadBcdDigit);
            }
            break;
        case FieldKind::Float: {
            const uint32_t word = static_cast<uint32_t>(raw);
            float value = 0.0f;
            std::memcpy(&value, &word, sizeof(value));
            out.rawKind = CodecValueKind::Real;
            out.realValue = value;
            break;
        }
        case FieldKind::Double: {
            double value = 0.0;
            std::memcpy(&value, &raw, sizeof(value));
            out.rawKind = CodecValueKind::Real;
            out.realValue = value;
            break;
        }
        case FieldKind::Bytes:
            out.rawKind = CodecValueKind::Bytes;
            out.unsignedValue = raw;
            LayOut(raw, (bits + 7) / 8, true, out.bytes);
            break;
        case FieldKind::Ascii:
        case FieldKind::Utf8:
        case FieldKind::Ucs2:
            LayOut(raw, (bits + 7) / 8, param.place.motorola, out.bytes);
            ReadText(param, out);
            break;
        case FieldKind::Invalid:
            break;
    }
}

void DecodeWide(const CodecPlan& plan, const ParamPlan& param, const uint8_t* data, DecodedParam& out) {
    const uint8_t* field = data + param.place.byteIndex;
    const uint32_t count = param.place.byteCount;
    if (param.isConst && param.constUsable &&
        std::memcmp(field, plan.constBytes.data() + param.constValue, count) != 0) {
        Note(out, CodecProblem::ConstMismatch);
    }
    out.bytes.assign(field, field + count);
    if (param.kind == FieldKind::Bytes) {
        out.rawKind = CodecValueKind::Bytes;
        if (!param.place.motorola) {
            std::reverse(out.bytes.begin(), out.bytes.end());
        }
        return;
    }
    ReadText(param, out);
}

const TablePlan::Entry* LookUp(const TablePlan& table, const DecodedParam& out) {
    const TablePlan::Entry* entry = nullptr;
    char digits[24];
    std::size_t length = 0;
    switch (out.rawKind) {
        case CodecValueKind::Unsigned:
        case CodecValueKind::Bytes:
            entry = table.FindUnsigned(out.unsignedValue);
            if (entry == nullptr && table.hasTextEntries) {
                length = FormatUnsignedDecimal(out.unsignedValue, digits);
                entry = table.FindText(digits, length);
            }
            break;
        case CodecValueKind::Signed:
            entry = table.FindInteger(out.signedValue);
            if (entry == nullptr && table.hasTextEntries) {
                length = FormatDecimal(out.signedValue, digits);
                entry = table.FindText(digits, length);
            }
            break;
        case CodecValueKind::Real:
            entry = table.FindReal(out.realValue);
            break;
        case CodecValueKind::Text:
            entry = table.FindText(out.text.data(), out.text.size());
            break;
        case CodecValueKind::None:
            break;
    }
    return entry;
}

double NumberOf(const DecodedParam& out) {
    switch (out.rawKind) {
        case CodecValueKind::Unsigned:
            return static_cast<double>(out.unsignedValue);
        case CodecValueKind::Signed:
            return static_cast<double>(out.signedValue);
        case CodecValueKind::Real:
            return out.realValue;
        default:
            return 0.0;
    }
}

bool IsNumeric(CodecValueKind kind) {
    return kind == CodecValueKind::Unsigned || kind == CodecValueKind::Signed || kind == CodecValueKind::Real;
}

void Convert(const CodecPlan& plan, const ParamPlan& param, DecodedParam& out) {
    switch (param.conversion) {
        case ConversionUse::None:
            if (IsNumeric(out.rawKind)) {
                out.physicalKind = CodecValueKind::Real;
                out.physical = NumberOf(out);
            }
            break;
        case ConversionUse::Formula:
            if (IsNumeric(out.rawKind)) {
                out.physicalKind = CodecValueKind::Real;
                const FormulaPlan& formula = plan.formulas[param.conversionIndex];
                out.physical = NumberOf(out) * formula.factor + formula.offset;
            }
            break;
        case ConversionUse::Table:
            if (out.rawKind != CodecValueKind::None) {
                const TablePlan::Entry* entry = LookUp(plan.tables[param.conversionIndex], out);
                if (entry != nullptr) {
                    out.physicalKind = CodecValueKind::Text;
                    out.tableText = entry->text;
                } else {
                    Note(out, CodecProblem::NoTableEntry);
                }
            }
            break;
        case ConversionUse::Missing:
            if (IsNumeric(out.rawKind)) {
                out.physicalKind = CodecValueKind::Real;
                out.physical = NumberOf(out);
            }
            Note(out, CodecProblem::UnknownConversion);
            break;
    }
}

// An integer field of up to 64 bits without a description problem, by far the most common
// kind, in one straight piece.
void DecodePlainInteger(const CodecPlan& plan, const ParamPlan& param, const uint8_t* data,
                        DecodedParam& out) {
    const uint64_t raw = ExtractBits(data, param.place);
    const ConversionUse conversion = param.conversion;
    const uint32_t index = param.conversionIndex;
    if (param.isConst && raw != param.constValue) {
        out.problem = CodecProblem::ConstMismatch;
    }
    double number = 0.0;
    if (param.kind == FieldKind::Unsigned) {
        out.rawKind = CodecValueKind::Unsigned;
        out.unsignedValue = raw;
        number = static_cast<double>(raw);
    } else {
        const int64_t value = SignExtend(raw, param.place.bitLength);
        out.rawKind = CodecValueKind::Signed;
        out.signedValue = value;
        number = static_cast<double>(value);
    }
    switch (conversion) {
        case ConversionUse::None:
            out.physicalKind = CodecValueKind::Real;
            out.physical = number;
            break;
        case ConversionUse::Formula: {
            const FormulaPlan& formula = plan.formulas[index];
            out.physicalKind = CodecValueKind::Real;
            out.physical = number * formula.factor + formula.offset;
            break;
        }
        case ConversionUse::Table: {
            const TablePlan::Entry* entry = LookUp(plan.tables[index], out);
            if (entry != nullptr) {
                out.physicalKind = CodecValueKind::Text;
                out.tableText = entry->text;
            } else {
                Note(out, CodecProblem::NoTableEntry);
            }
            break;
        }
        case ConversionUse::Missing:
            out.physicalKind = CodecValueKind::Real;
            out.physical = number;
            Note(out, CodecProblem::UnknownConversion);
            break;
    }
}

void DecodeParam(const CodecPlan& plan, const ParamPlan& param, const uint8_t* data, std::size_t size,
                 DecodedParam& out) {
    // Read from the plan before the result is written: the compiler cannot tell that writing
    // the result leaves the plan alone, and would read it again after every write.
    const CodecProblem described = param.descriptionProblem;
    const uint32_t endByte = param.endByte;
    const FieldKind kind = param.kind;
    // Without a description problem a CONST field's constant is usable.
    const bool plainInteger = !param.wide && (kind == FieldKind::Unsigned || kind == FieldKind::Signed);
    out.id = param.id;
    out.unit = param.unit;
    out.bitPos = param.place.BitPos();
    out.bitLength = param.place.bitLength;
    out.type = param.type;
    out.rawKind = CodecValueKind::None;
    out.unsignedValue = 0;
    out.signedValue = 0;
    out.realValue = 0.0;
    out.bytes.clear();
    out.text.clear();
    out.physicalKind = CodecValueKind::None;
    out.physical = 0.0;
    out.tableText = "";
    out.problem = described;
    if (IsLayoutProblem(described)) {
        return;
    }
    if (endByte > size) {
        Note(out, CodecProblem::BeyondData);
        return;
    }
    if (plainInteger && described == CodecProblem::None) {
        DecodePlainInteger(plan, param, data, out);
        return;
    }
    if (param.wide) {
        DecodeWide(plan, param, data, out);
    } else {
        DecodeNarrow(param, data, out);
    }
    Convert(plan, param, out);
}

}  // namespace

// Parameters beyond the message's count go to the spare list and come back from it, with the
// buffers they have grown, instead of being destroyed and built again.
void ResizeKeepingStorage(DecodedMessage& out, std::size_t count) {
    std::vector<DecodedParam>& params = out.params;
    while (params.size() > count) {
        out.spareParams.push_back(std::move(params.back()));
        params.pop_back();
    }
    while (params.size() < count && !out.spareParams.empty()) {
        params.push_back(std::move(out.spareParams.back()));
        out.spareParams.pop_back();
    }
    params.resize(count);
}

void DecodeMessage(const CodecPlan& plan, const MessagePlan& message, const uint8_t* data, std::size_t size,
                   DecodedMessage& out) {
    out.messageKind = message.kind;
    ResizeKeepingStorage(out, message.paramCount);
    out.length = message.length;
    out.dataLength = static_cast<uint32_t>(size > UINT32_MAX ? UINT32_MAX : size);
    out.errorCount = 0;
    out.warningCount = 0;
    out.problem = CodecProblem::None;
    if (size < message.length) {
        out.problem = CodecProblem::ShortData;
    } else if (size > message.length) {
        out.problem = CodecProblem::TrailingData;
    }
    if (out.problem != CodecProblem::None) {
        ++out.errorCount;
    }
    const ParamPlan* params = plan.params.data() + message.firstParam;
    for (uint32_t i = 0; i < message.paramCount; ++i) {
        DecodedParam& param = out.params[i];
        DecodeParam(plan, params[i], data, size, param);
        if (param.problem == CodecProblem::UnknownConversion) {
            ++out.warningCount;
        } else if (param.problem != CodecProblem::None) {
            ++out.errorCount;
        }
    }
    out.hasNrc = message.kind == MessageKindNegResponse && size >= 3;
    out.requestSid = out.hasNrc ? data[1] : 0;
    out.nrc = out.hasNrc ? data[2] : 0;
    const char* text = out.hasNrc ? plan.nrcTexts[out.nrc] : nullptr;
    out.nrcText = text != nullptr ? text : "";
}

bool ConstantsMatch(const CodecPlan& plan, uint32_t firstCheck, uint32_t checkCount, const uint8_t* data,
                    std::size_t size) {
    const ConstCheck* checks = plan.checks.data() + firstCheck;
    for (uint32_t i = 0; i < checkCount; ++i) {
        const ConstCheck& check = checks[i];
        if (check.endByte > size) {
            return false;
        }
        if (check.wide) {
            if (std::memcmp(data + check.place.byteIndex, plan.constBytes.data() + check.bytesAt,
                            check.place.byteCount) != 0) {
                return false;
            }
        } else if (ExtractBits(data, check.place) != check.expected) {
            return false;
        }
    }
    return true;
}

}  // namespace Korvel
