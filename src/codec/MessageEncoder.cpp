#include "codec/MessageEncoder.h"

#include "codec/CodecMessages.h"
#include "codec/CodecText.h"
#include "model/ModelUtils.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace Korvel {

namespace Msg = CodecMessages;

namespace {

// A whole number with its sign kept apart, so that all of uint64 and int64 fit.
struct Integer {
    bool negative = false;
    uint64_t magnitude = 0;
};

// The bits a field receives: up to 64 as a number, a long field as its bytes in message order.
struct FieldBits {
    uint64_t narrow = 0;
    ByteBuffer wide;
};

class Failure {
public:
    Failure(CodecProblem problem, std::string detail) : problem_(problem), detail_(std::move(detail)) {}
    CodecProblem problem_;
    std::string detail_;
};

std::string Quote(const std::string& text) {
    return "'" + text + "'";
}

std::string NumberText(double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof(buffer), "%.17g", number);
    return buffer;
}

std::string ValueText(const EncodeValue& value) {
    return value.isNumber ? NumberText(value.number) : value.text;
}

std::string BitsText(const ParamPlan& param, const char* typeName) {
    return std::to_string(param.place.bitLength) + " bits (" + typeName + ")";
}

[[noreturn]] void Fail(CodecProblem problem, std::string detail) {
    throw Failure(problem, std::move(detail));
}

double PowerOfTwo(uint32_t exponent) {
    return std::ldexp(1.0, static_cast<int>(exponent));
}

uint64_t PowerOfTen(uint32_t exponent) {
    uint64_t value = 1;
    for (uint32_t i = 0; i < exponent; ++i) {
        value *= 10;
    }
    return value;
}

// A rounded real as an integer, when the field's type can hold it at all.
Integer RoundedInteger(double real, const ParamPlan& param) {
    const double rounded = std::round(real);
    const uint32_t bits = param.place.bitLength;
    bool fits = std::isfinite(rounded);
    if (fits && param.kind == FieldKind::Signed) {
        fits = rounded >= -PowerOfTwo(bits - 1) && rounded < PowerOfTwo(bits - 1);
    } else if (fits) {
        fits = rounded >= 0.0 && rounded < PowerOfTwo(bits);
    }
    if (!fits) {
        Fail(CodecProblem::OutOfRange,
             "raw value " + NumberText(real) + " " + Msg::kDoesNotFit +
                 BitsText(param, param.kind == FieldKind::Signed ? "signed" : "unsigned"));
    }
    Integer integer;
    integer.negative = rounded < 0;
    integer.magnitude = static_cast<uint64_t>(std::fabs(rounded));
    return integer;
}

// An integer value given as a number or a text. Physical values are rounded to the nearest
// integer; raw values must be whole.
Integer IntegerOf(const EncodeValue& value, const ParamPlan& param) {
    Integer integer;
    if (!value.isNumber && ParseWholeInteger(value.text, integer.negative, integer.magnitude)) {
        return integer;
    }
    double real = value.number;
    if (!value.isNumber && !ParseWholeReal(value.text, real)) {
        Fail(CodecProblem::BadValue, std::string(Msg::kNotANumber) + Quote(value.text));
    }
    if (value.raw && std::round(real) != real) {
        Fail(CodecProblem::BadValue, std::string(Msg::kNotAnInteger) + Quote(ValueText(value)));
    }
    return RoundedInteger(real, param);
}

double RealOf(const EncodeValue& value) {
    double real = value.number;
    if (!value.isNumber && !ParseWholeReal(value.text, real)) {
        Fail(CodecProblem::BadValue, std::string(Msg::kNotANumber) + Quote(value.text));
    }
    if (!std::isfinite(real)) {
        Fail(CodecProblem::BadValue, std::string(Msg::kNotANumber) + Quote(ValueText(value)));
    }
    return real;
}

std::string IntegerText(const Integer& integer) {
    return (integer.negative && integer.magnitude != 0 ? "-" : "") + std::to_string(integer.magnitude);
}

uint64_t IntegerBits(const Integer& integer, const ParamPlan& param) {
    const uint32_t bits = param.place.bitLength;
    switch (param.kind) {
        case FieldKind::Signed: {
            const uint64_t limit = uint64_t{1} << (bits - 1);  // magnitude of the smallest value
            const bool fits = integer.negative ? integer.magnitude <= limit : integer.magnitude < limit;
            if (!fits) {
                Fail(CodecProblem::OutOfRange,
                     IntegerText(integer) + " " + Msg::kDoesNotFit + BitsText(param, "signed"));
            }
            const uint64_t twos = integer.negative ? 0 - integer.magnitude : integer.magnitude;
            return twos & LowBits(bits);
        }
        case FieldKind::Bcd: {
            const uint32_t digits = bits / 4;
            if ((integer.negative && integer.magnitude != 0) ||
                (digits < 20 && integer.magnitude >= PowerOfTen(digits))) {
                Fail(CodecProblem::OutOfRange,
                     IntegerText(integer) + " " + Msg::kDoesNotFit + BitsText(param, "bcd"));
            }
            uint64_t packed = 0;
            uint64_t rest = integer.magnitude;
            for (uint32_t i = 0; i < digits && rest != 0; ++i) {
                packed |= (rest % 10) << (4 * i);
                rest /= 10;
            }
            return packed;
        }
        default:
            if ((integer.negative && integer.magnitude != 0) || integer.magnitude > LowBits(bits)) {
                Fail(CodecProblem::OutOfRange,
                     IntegerText(integer) + " " + Msg::kDoesNotFit + BitsText(param, "unsigned"));
            }
            return integer.magnitude;
    }
}

uint64_t RealBits(double real, const ParamPlan& param) {
    if (param.kind == FieldKind::Float) {
        if (std::fabs(real) > FLT_MAX) {
            Fail(CodecProblem::OutOfRange, NumberText(real) + " " + Msg::kDoesNotFit + BitsText(param, "fp"));
        }
        const float single = static_cast<float>(real);
        uint32_t word = 0;
        std::memcpy(&word, &single, sizeof(word));
        return word;
    }
    uint64_t word = 0;
    std::memcpy(&word, &real, sizeof(word));
    return word;
}

// Bytes for a byte-string field, given in the order they are read (texts as sent, `none`
// most significant first); shorter ones get zeros at the end, as the description's values do.
FieldBits BytesBits(ByteBuffer bytes, const ParamPlan& param, bool mostSignificantFirst,
                    const char* typeName) {
    const uint32_t count = (param.place.bitLength + 7) / 8;
    if (bytes.size() > count) {
        Fail(CodecProblem::OutOfRange,
             std::to_string(bytes.size()) + " bytes " + Msg::kDoesNotFit + BitsText(param, typeName));
    }
    bytes.resize(count, 0);
    FieldBits field;
    if (param.wide) {
        // Long texts are sent as they are; a long `none` field follows its byte order.
        field.wide = std::move(bytes);
        if (param.kind == FieldKind::Bytes && !param.place.motorola) {
            std::reverse(field.wide.begin(), field.wide.end());
        }
        return field;
    }
    uint64_t value = 0;
    if (mostSignificantFirst) {
        for (uint8_t byte : bytes) {
            value = (value << 8) | byte;
        }
    } else {
        for (std::size_t i = bytes.size(); i-- > 0;) {
            value = (value << 8) | bytes[i];
        }
    }
    if (param.place.bitLength < 64 && (value >> param.place.bitLength) != 0) {
        Fail(CodecProblem::OutOfRange,
             std::string("the bytes ") + Msg::kDoesNotFit + BitsText(param, typeName));
    }
    field.narrow = value;
    return field;
}

FieldBits TextBits(const std::string& text, const ParamPlan& param) {
    if (param.kind == FieldKind::Bytes) {
        ByteBuffer bytes;
        if (!ModelUtils().HexStringToBytes(bytes, text)) {
            Fail(CodecProblem::BadValue, std::string(Msg::kNotHex) + Quote(text));
        }
        return BytesBits(std::move(bytes), param, true, "none");
    }
    if (param.kind == FieldKind::Ucs2) {
        std::vector<uint16_t> units;
        if (!Utf8ToUtf16(text, units)) {
            Fail(CodecProblem::BadValue, Msg::kNotUtf8);
        }
        ByteBuffer bytes;
        for (uint16_t unit : units) {
            const uint8_t high = static_cast<uint8_t>(unit >> 8);
            const uint8_t low = static_cast<uint8_t>(unit & 0xFF);
            bytes.push_back(param.place.motorola ? high : low);
            bytes.push_back(param.place.motorola ? low : high);
        }
        return BytesBits(std::move(bytes), param, param.place.motorola, "ucs2");
    }
    const char* typeName = param.kind == FieldKind::Ascii ? "ascii" : "utf8";
    return BytesBits(ByteBuffer(text.begin(), text.end()), param, param.place.motorola, typeName);
}

bool IsTextKind(FieldKind kind) {
    return kind == FieldKind::Bytes || kind == FieldKind::Ascii || kind == FieldKind::Utf8 ||
           kind == FieldKind::Ucs2;
}

// The raw (coded) form of a value: the number or text the field holds.
FieldBits RawBits(const EncodeValue& value, const ParamPlan& param) {
    FieldBits field;
    if (IsTextKind(param.kind)) {
        if (value.isNumber) {
            Fail(CodecProblem::BadValue, Msg::kNumberForText);
        }
        return TextBits(value.text, param);
    }
    if (param.kind == FieldKind::Float || param.kind == FieldKind::Double) {
        field.narrow = RealBits(RealOf(value), param);
    } else {
        field.narrow = IntegerBits(IntegerOf(value, param), param);
    }
    return field;
}

FieldBits TableBits(const CodecPlan& plan, const EncodeValue& value, const ParamPlan& param) {
    if (value.isNumber) {
        Fail(CodecProblem::BadValue, std::string(Msg::kTextForNumber) + ValueText(value));
    }
    const TablePlan::Entry* entry = plan.tables[param.conversionIndex].FindByText(value.text);
    if (entry == nullptr) {
        Fail(CodecProblem::NoTableText, std::string(Msg::kNoTableText) + Quote(value.text));
    }
    FieldBits field;
    if (IsTextKind(param.kind) && !(param.kind == FieldKind::Bytes && entry->isInteger)) {
        return TextBits(entry->value, param);
    }
    if (param.kind == FieldKind::Float || param.kind == FieldKind::Double) {
        if (!entry->isReal) {
            Fail(CodecProblem::BadValue, std::string(Msg::kTableValueNotNumber) + Quote(entry->value));
        }
        field.narrow = RealBits(entry->real, param);
        return field;
    }
    if (!entry->isInteger) {
        Fail(CodecProblem::BadValue, std::string(Msg::kTableValueNotNumber) + Quote(entry->value));
    }
    Integer integer;
    integer.negative = entry->integer < 0;
    integer.magnitude =
        integer.negative ? 0 - static_cast<uint64_t>(entry->integer) : static_cast<uint64_t>(entry->integer);
    if (param.kind == FieldKind::Bytes) {
        if (integer.negative || integer.magnitude > LowBits(param.place.bitLength)) {
            Fail(CodecProblem::OutOfRange,
                 IntegerText(integer) + " " + Msg::kDoesNotFit + BitsText(param, "none"));
        }
        field.narrow = integer.magnitude;
        return field;
    }
    field.narrow = IntegerBits(integer, param);
    return field;
}

FieldBits FormulaBits(const CodecPlan& plan, const EncodeValue& value, const ParamPlan& param) {
    const double physical = RealOf(value);
    const FormulaPlan& formula = plan.formulas[param.conversionIndex];
    if (formula.factor == 0.0) {
        Fail(CodecProblem::FactorZero, Msg::kFactorZero);
    }
    const double raw = (physical - formula.offset) / formula.factor;
    FieldBits field;
    if (param.kind == FieldKind::Float || param.kind == FieldKind::Double) {
        if (!std::isfinite(raw)) {
            Fail(CodecProblem::OutOfRange,
                 NumberText(raw) + " " + Msg::kDoesNotFit + BitsText(param, "real"));
        }
        field.narrow = RealBits(raw, param);
    } else {
        field.narrow = IntegerBits(RoundedInteger(raw, param), param);
    }
    return field;
}

FieldBits ValueBits(const CodecPlan& plan, const EncodeValue& value, const ParamPlan& param) {
    if (!value.raw && param.conversion == ConversionUse::Table) {
        return TableBits(plan, value, param);
    }
    if (!value.raw && param.conversion == ConversionUse::Formula) {
        return FormulaBits(plan, value, param);
    }
    return RawBits(value, param);
}

FieldBits ConstantBits(const CodecPlan& plan, const ParamPlan& param) {
    FieldBits field;
    if (param.wide) {
        const uint8_t* bytes = plan.constBytes.data() + param.constValue;
        field.wide.assign(bytes, bytes + param.place.byteCount);
    } else {
        field.narrow = param.constValue;
    }
    return field;
}

void Write(const ParamPlan& param, const FieldBits& field, ByteBuffer& message) {
    if (param.wide) {
        std::copy(field.wide.begin(), field.wide.end(), message.begin() + param.place.byteIndex);
    } else {
        InsertBits(message.data(), param.place, field.narrow);
    }
}

void CheckPlaced(const ParamPlan& param, const ParamNotes& notes) {
    if (param.descriptionProblem == CodecProblem::BadLayout) {
        Fail(param.descriptionProblem, std::string(Msg::kBadLayout) + notes.problemDetail);
    }
    if (param.descriptionProblem == CodecProblem::UnknownType) {
        Fail(param.descriptionProblem, Msg::kUnknownType);
    }
}

void EncodeParam(const CodecPlan& plan, const ParamPlan& param, const ParamNotes& notes,
                 const EncodeValue* value, ByteBuffer& message) {
    CheckPlaced(param, notes);
    if (value != nullptr) {
        Write(param, ValueBits(plan, *value, param), message);
        return;
    }
    if (param.isConst) {
        if (!param.constUsable) {
            Fail(CodecProblem::BadConstant, std::string(Msg::kBadConstant) + Quote(notes.valueText));
        }
        Write(param, ConstantBits(plan, param), message);
        return;
    }
    if (param.isGap) {
        FieldBits zero;
        zero.wide.assign(param.wide ? param.place.byteCount : 0, 0);
        Write(param, zero, message);
        return;
    }
    Fail(CodecProblem::MissingValue, Msg::kNeedsValue);
}

void SetError(CodecError& error, CodecProblem problem, const std::string& paramId,
              const std::string& detail) {
    error.problem = problem;
    error.paramId = paramId;
    error.message = paramId.empty() ? detail : "parameter " + Quote(paramId) + ": " + detail;
}

}  // namespace

bool EncodeMessage(const CodecPlan& plan, const MessagePlan& message, const std::vector<EncodeValue>& values,
                   ByteBuffer& out, CodecError& error) {
    const ParamPlan* params = plan.params.data() + message.firstParam;
    std::vector<const EncodeValue*> given(message.paramCount, nullptr);
    for (const EncodeValue& value : values) {
        uint32_t at = 0;
        while (at < message.paramCount && value.id != params[at].id) {
            ++at;
        }
        if (at == message.paramCount) {
            SetError(error, CodecProblem::UnknownParameter, value.id, Msg::kNoSuchParameter);
            return false;
        }
        if (given[at] != nullptr) {
            SetError(error, CodecProblem::DuplicateValue, value.id, Msg::kGivenTwice);
            return false;
        }
        given[at] = &value;
    }
    ByteBuffer bytes = out;
    if (bytes.size() < message.length) {
        bytes.resize(message.length, 0);
    }
    for (uint32_t i = 0; i < message.paramCount; ++i) {
        try {
            EncodeParam(plan, params[i], plan.notes[message.firstParam + i], given[i], bytes);
        } catch (const Failure& failure) {
            SetError(error, failure.problem_, params[i].id, failure.detail_);
            return false;
        }
    }
    out.swap(bytes);
    error = CodecError();
    return true;
}

}  // namespace Korvel
