#include "codec/CodecPlan.h"

#include "codec/CodecMessages.h"
#include "model/ModelUtils.h"

#include <ZeKL/IEcu.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <unordered_map>

namespace Korvel {

namespace Msg = CodecMessages;

// ---------------------------------------------------------------------------------------------
// Text pool and table lookups

const char* ZTextPool::Keep(const char* text) {
    return texts_.insert(std::string(text != nullptr ? text : "")).first->c_str();
}

const TablePlan::Entry* TablePlan::FindIntegerSorted(int64_t value) const {
    const auto it = std::lower_bound(integers.begin(), integers.end(), value,
                                     [](const IntegerKey& key, int64_t v) { return key.value < v; });
    return it != integers.end() && it->value == value ? &entries[it->entry] : nullptr;
}

const TablePlan::Entry* TablePlan::FindReal(double value) const {
    const auto it = std::lower_bound(reals.begin(), reals.end(), value,
                                     [](const RealKey& key, double v) { return key.value < v; });
    return it != reals.end() && it->value == value ? &entries[it->entry] : nullptr;
}

const TablePlan::Entry* TablePlan::FindText(const char* text, std::size_t length) const {
    for (const Entry& entry : entries) {
        if (std::strlen(entry.value) == length && std::memcmp(entry.value, text, length) == 0) {
            return &entry;
        }
    }
    return nullptr;
}

const TablePlan::Entry* TablePlan::FindByText(const std::string& text) const {
    for (const Entry& entry : entries) {
        if (text == entry.text) {
            return &entry;
        }
    }
    return nullptr;
}

const MessagePlan* CodecPlan::Message(uint32_t instance, uint32_t kind) const {
    if (instance >= instances.size() || kind < MessageKindRequest || kind > MessageKindNegResponse) {
        return nullptr;
    }
    const uint32_t index = instances[instance].messages[kind - 1];
    return index == kNoMessage ? nullptr : &messages[index];
}

namespace {

// ---------------------------------------------------------------------------------------------
// Building

// A value text counts as a number when it starts like one; the library's number rules would
// read any text without digits as 0, which would make every such table entry match raw 0.
bool StartsLikeNumber(const char* text) {
    if (*text == '-') {
        ++text;
    }
    return *text >= '0' && *text <= '9';
}

FieldKind KindOf(ParamDataType type) {
    switch (type) {
        case ParamDataType::Unsigned:
            return FieldKind::Unsigned;
        case ParamDataType::Signed:
            return FieldKind::Signed;
        case ParamDataType::Bcd:
            return FieldKind::Bcd;
        case ParamDataType::Fp:
            return FieldKind::Float;
        case ParamDataType::Double:
            return FieldKind::Double;
        case ParamDataType::None:
            return FieldKind::Bytes;
        case ParamDataType::Ascii:
            return FieldKind::Ascii;
        case ParamDataType::Utf8:
            return FieldKind::Utf8;
        case ParamDataType::Ucs2:
            return FieldKind::Ucs2;
        case ParamDataType::Undefined:
            break;
    }
    return FieldKind::Invalid;
}

bool IsByteString(FieldKind kind) {
    return kind == FieldKind::Bytes || kind == FieldKind::Ascii || kind == FieldKind::Utf8 ||
           kind == FieldKind::Ucs2;
}

bool IsNumber(FieldKind kind) {
    return kind == FieldKind::Unsigned || kind == FieldKind::Signed || kind == FieldKind::Bcd ||
           kind == FieldKind::Float || kind == FieldKind::Double;
}

void SetProblem(ParamPlan& param, ParamNotes& notes, CodecProblem problem, const char* detail) {
    if (param.descriptionProblem == CodecProblem::None) {
        param.descriptionProblem = problem;
        notes.problemDetail = detail;
    }
}

bool HasLayoutProblem(const ParamPlan& param) {
    return param.descriptionProblem == CodecProblem::BadLayout ||
           param.descriptionProblem == CodecProblem::UnknownType;
}

class PlanBuilder {
public:
    PlanBuilder(const IEcu& ecu, CodecPlan& plan) : ecu_(ecu), plan_(plan) {}

    void Build() {
        BuildNrcTexts();
        const IInstanceContainer* instances = ecu_.GetInstanceContainer();
        const uint32_t count = instances != nullptr ? instances->GetCount() : 0;
        plan_.instances.reserve(count);
        for (uint32_t i = 0; i < count; ++i) {
            const IInstance* instance = instances->GetInstance(i);
            if (instance != nullptr) {
                BuildInstance(*instance);
            }
        }
        BuildPlainNegative();
    }

private:
    void BuildNrcTexts() {
        const INrcContainer* nrcs = ecu_.GetNrcContainer();
        const uint32_t count = nrcs != nullptr ? nrcs->GetCount() : 0;
        for (uint32_t i = 0; i < count; ++i) {
            const INrcItem* item = nrcs->GetNrc(i);
            if (item != nullptr && plan_.nrcTexts[item->GetCode()] == nullptr) {
                plan_.nrcTexts[item->GetCode()] = plan_.pool.Keep(item->GetText());
            }
        }
    }

    void BuildInstance(const IInstance& instance) {
        const uint32_t index = static_cast<uint32_t>(plan_.instances.size());
        InstancePlan entry;
        entry.id = plan_.pool.Keep(instance.GetId());
        plan_.instanceIndex.emplace(entry.id, index);
        const IMessage* messages[3] = {instance.GetRequest(), instance.GetPosResponse(),
                                       instance.GetNegResponse()};
        for (uint32_t kind = MessageKindRequest; kind <= MessageKindNegResponse; ++kind) {
            if (messages[kind - 1] != nullptr) {
                entry.messages[kind - 1] = BuildMessage(*messages[kind - 1], index, kind);
            }
        }
        FindRequestSid(entry);
        plan_.instances.push_back(entry);
    }

    // The request's SID parameter (the first whose semantics say SID) gives the SID that the
    // instance's negative responses repeat, when it is one constant byte at the start.
    void FindRequestSid(InstancePlan& entry) {
        if (entry.messages[0] == kNoMessage) {
            return;
        }
        const MessagePlan& request = plan_.messages[entry.messages[0]];
        for (uint32_t i = 0; i < request.paramCount; ++i) {
            const uint32_t at = request.firstParam + i;
            if (!sidFlags_[at]) {
                continue;
            }
            const ParamPlan& sid = plan_.params[at];
            if (sid.BitPos() == 0 && sid.place.bitLength == 8 && sid.constUsable && !sid.wide) {
                entry.hasRequestSid = true;
                entry.requestSid = static_cast<uint8_t>(sid.constValue);
            }
            return;
        }
    }

    uint32_t BuildMessage(const IMessage& message, uint32_t instance, uint32_t kind) {
        MessagePlan plan;
        plan.instance = instance;
        plan.kind = kind;
        plan.firstParam = static_cast<uint32_t>(plan_.params.size());
        const uint32_t count = message.GetCount();
        for (uint32_t i = 0; i < count; ++i) {
            const IParam* param = message.GetParam(static_cast<int>(i));
            if (param == nullptr) {
                continue;
            }
            ParamNotes notes;
            plan_.params.push_back(BuildParam(*param, notes));
            plan_.notes.push_back(notes);
            sidFlags_.push_back(param->IsSid());
        }
        plan.paramCount = static_cast<uint32_t>(plan_.params.size()) - plan.firstParam;
        return AddMessage(plan);
    }

    uint32_t AddMessage(MessagePlan& plan) {
        plan.firstCheck = static_cast<uint32_t>(plan_.checks.size());
        for (uint32_t i = 0; i < plan.paramCount; ++i) {
            const ParamPlan& param = plan_.params[plan.firstParam + i];
            plan.length = std::max(plan.length, param.endByte);  // 0 for a field that has no place
            if (param.isConst && param.constUsable) {
                ConstCheck check;
                check.place = param.place;
                check.endByte = param.endByte;
                check.wide = param.wide;
                check.expected = param.constValue;
                check.bytesAt = static_cast<uint32_t>(param.constValue);
                plan_.checks.push_back(check);
                plan.constBits += param.place.bitLength;
            }
        }
        plan.checkCount = static_cast<uint32_t>(plan_.checks.size()) - plan.firstCheck;
        plan_.messages.push_back(plan);
        return static_cast<uint32_t>(plan_.messages.size() - 1);
    }

    ParamPlan BuildParam(const IParam& source, ParamNotes& notes) {
        ParamPlan param;
        param.id = plan_.pool.Keep(source.GetId());
        param.unit = plan_.pool.Keep(source.GetUnit());
        notes.valueText = plan_.pool.Keep(source.GetValue());
        notes.convId = plan_.pool.Keep(source.GetConvId());
        param.type = ModelUtils().DataTypeFromName(source.GetDataTypeName());
        param.kind = KindOf(param.type);
        param.isConst = source.IsConst();
        param.isGap = source.IsGap();
        param.place = MakeFieldPlace(source.GetBitPos(), source.GetBitLength(), source.IsMotorola());
        PlaceParam(param, notes, source.GetBitPos());
        if (!HasLayoutProblem(param)) {
            ReadConstant(source, param, notes);
            ReadConversion(param, notes);
        }
        return param;
    }

    void PlaceParam(ParamPlan& param, ParamNotes& notes, uint32_t bitPos) {
        const uint32_t length = param.place.bitLength;
        const uint64_t endBit = static_cast<uint64_t>(bitPos) + length;
        if (length == 0) {
            SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutZeroLength);
            return;
        }
        if ((endBit + 7) / 8 > kMaxMessageBytes) {
            SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutTooFar);
            return;
        }
        param.endByte = static_cast<uint32_t>((endBit + 7) / 8);
        if (param.kind == FieldKind::Invalid) {
            SetProblem(param, notes, CodecProblem::UnknownType, Msg::kUnknownType);
            return;
        }
        if (length > 64) {
            if (!IsByteString(param.kind)) {
                SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutLongNumber);
                return;
            }
            if (param.place.bitOffset != 0 || length % 8 != 0) {
                SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutUnaligned);
                return;
            }
            param.wide = true;
        }
        switch (param.kind) {
            case FieldKind::Float:
                if (length != 32) {
                    SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutFp);
                }
                break;
            case FieldKind::Double:
                if (length != 64) {
                    SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutDouble);
                }
                break;
            case FieldKind::Bcd:
                if (length % 4 != 0) {
                    SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutBcd);
                }
                break;
            case FieldKind::Ucs2:
                if (length % 16 != 0) {
                    SetProblem(param, notes, CodecProblem::BadLayout, Msg::kLayoutUcs2);
                }
                break;
            default:
                break;
        }
    }

    // The expected bits of a CONST parameter are its value's image in transmission order, read
    // back by the field's own rule so that decode and the model's image agree byte for byte.
    void ReadConstant(const IParam& source, ParamPlan& param, ParamNotes& notes) {
        if (!param.isConst) {
            return;
        }
        const ByteBuffer image = source.GetValueImage();
        const uint32_t byteLength = (param.place.bitLength + 7) / 8;
        if (image.empty() || image.size() != byteLength) {
            SetProblem(param, notes, CodecProblem::BadConstant, Msg::kBadConstant);
            return;
        }
        if (param.wide) {
            param.constValue = plan_.constBytes.size();
            plan_.constBytes.insert(plan_.constBytes.end(), image.begin(), image.end());
            param.constUsable = true;
            return;
        }
        uint64_t value = 0;
        if (param.place.motorola) {
            for (uint8_t byte : image) {
                value = (value << 8) | byte;
            }
        } else {
            for (std::size_t i = image.size(); i-- > 0;) {
                value = (value << 8) | image[i];
            }
        }
        const uint32_t bits = param.place.bitLength;
        if (bits < 64 && (value >> bits) != 0) {
            // A negative signed value fills its whole image with ones; it fits when it is the
            // sign extension of its low L bits.
            const uint32_t imageBits = 8 * byteLength;
            const bool fitsSigned = param.kind == FieldKind::Signed &&
                                    SignExtend(value, imageBits) == SignExtend(value & LowBits(bits), bits);
            if (!fitsSigned) {
                SetProblem(param, notes, CodecProblem::BadConstant, Msg::kBadConstant);
                return;
            }
            value &= LowBits(bits);
        }
        param.constValue = value;
        param.constUsable = true;
    }

    void ReadConversion(ParamPlan& param, ParamNotes& notes) {
        if (notes.convId[0] == '\0') {
            return;
        }
        const IConversionContainer* conversions = ecu_.GetConversionContainer();
        // The id lookup of the container interface is non-const only; it changes nothing.
        const IConversion* conversion =
            conversions != nullptr
                ? const_cast<IConversionContainer*>(conversions)->GetConversion(notes.convId)
                : nullptr;
        if (conversion == nullptr) {
            param.conversion = ConversionUse::Missing;
            return;
        }
        const bool table =
            conversion->HasTextTable() ||
            conversion->GetType() == static_cast<uint32_t>(ConversionKind::ValueTable) ||
            ModelUtils().ConversionKindFromName(conversion->GetId()) == ConversionKind::ValueTable;
        if (!table) {
            if (!IsNumber(param.kind)) {
                SetProblem(param, notes, CodecProblem::ConversionNotApplicable, "");
                return;
            }
            param.conversion = ConversionUse::Formula;
            param.conversionIndex = FormulaFor(*conversion);
            return;
        }
        if (param.wide && param.kind == FieldKind::Bytes) {
            SetProblem(param, notes, CodecProblem::ConversionNotApplicable, "");
            return;
        }
        param.conversion = ConversionUse::Table;
        param.conversionIndex = TableFor(*conversion);
    }

    uint32_t FormulaFor(const IConversion& conversion) {
        const auto known = formulas_.find(&conversion);
        if (known != formulas_.end()) {
            return known->second;
        }
        plan_.formulas.push_back({conversion.GetFactor(), conversion.GetOffset()});
        const uint32_t index = static_cast<uint32_t>(plan_.formulas.size() - 1);
        formulas_.emplace(&conversion, index);
        return index;
    }

    uint32_t TableFor(const IConversion& conversion) {
        const auto known = tables_.find(&conversion);
        if (known != tables_.end()) {
            return known->second;
        }
        TablePlan table;
        const uint32_t count = conversion.GetTextTableSize();
        for (uint32_t i = 0; i < count; ++i) {
            const ITextTableElement* element = conversion.GetTextTableElement(i);
            if (element == nullptr) {
                continue;
            }
            TablePlan::Entry entry;
            entry.value = plan_.pool.Keep(element->GetValue());
            entry.text = plan_.pool.Keep(element->GetText());
            ReadEntryNumber(entry);
            table.hasTextEntries = table.hasTextEntries || !entry.isInteger;
            table.entries.push_back(entry);
        }
        for (uint32_t i = 0; i < table.entries.size(); ++i) {
            const TablePlan::Entry& entry = table.entries[i];
            if (entry.isInteger) {
                table.integers.push_back({entry.integer, i});
            }
            if (entry.isReal) {
                table.reals.push_back({entry.real, i});
            }
        }
        std::stable_sort(
            table.integers.begin(), table.integers.end(),
            [](const TablePlan::IntegerKey& a, const TablePlan::IntegerKey& b) { return a.value < b.value; });
        std::stable_sort(
            table.reals.begin(), table.reals.end(),
            [](const TablePlan::RealKey& a, const TablePlan::RealKey& b) { return a.value < b.value; });
        MakeDense(table);
        plan_.tables.push_back(std::move(table));
        const uint32_t index = static_cast<uint32_t>(plan_.tables.size() - 1);
        tables_.emplace(&conversion, index);
        return index;
    }

    // A direct index when the integer values lie close together (at most 256 apart and at
    // least a quarter of the slots used); the first entry of a value wins, as in the sorted list.
    static void MakeDense(TablePlan& table) {
        if (table.integers.empty()) {
            return;
        }
        const int64_t low = table.integers.front().value;
        const int64_t high = table.integers.back().value;
        const uint64_t span = static_cast<uint64_t>(high) - static_cast<uint64_t>(low) + 1;
        if (span > 256 || span > 4 * table.integers.size()) {
            return;
        }
        table.denseBase = low;
        table.dense.assign(static_cast<std::size_t>(span), -1);
        for (const TablePlan::IntegerKey& key : table.integers) {
            int32_t& slot = table.dense[static_cast<std::size_t>(key.value - low)];
            if (slot < 0) {
                slot = static_cast<int32_t>(key.entry);
            }
        }
    }

    static void ReadEntryNumber(TablePlan::Entry& entry) {
        if (!StartsLikeNumber(entry.value)) {
            return;
        }
        const ZDataModelUtilsImpl& utils = ModelUtils();
        if (entry.value[0] == '-') {
            int32_t number = 0;
            if (utils.ParseInt32(entry.value, number)) {
                entry.isInteger = true;
                entry.integer = number;
            }
        } else {
            uint32_t number = 0;
            if (utils.ParseUInt32(entry.value, number)) {
                entry.isInteger = true;
                entry.integer = number;
            }
        }
        double real = 0.0;
        if (utils.ParseDouble(entry.value, real)) {
            entry.isReal = true;
            entry.real = real;
        }
    }

    // The shape every negative response has (7F, request SID, NRC), for instances that
    // describe none of their own.
    void BuildPlainNegative() {
        const char* const ids[3] = {"SID_NR", "SIDRQ", "NRC"};
        MessagePlan plan;
        plan.instance = kNoMessage;
        plan.kind = MessageKindNegResponse;
        plan.firstParam = static_cast<uint32_t>(plan_.params.size());
        for (uint32_t i = 0; i < 3; ++i) {
            ParamPlan param;
            ParamNotes notes;
            param.id = plan_.pool.Keep(ids[i]);
            param.unit = plan_.pool.Keep("");
            notes.valueText = plan_.pool.Keep(i == 0 ? "0x7F" : "");
            notes.convId = param.unit;
            param.type = ParamDataType::Unsigned;
            param.kind = FieldKind::Unsigned;
            param.place = MakeFieldPlace(8 * i, 8, true);
            param.endByte = i + 1;
            if (i == 0) {
                param.isConst = true;
                param.constUsable = true;
                param.constValue = 0x7F;
            }
            plan_.params.push_back(param);
            plan_.notes.push_back(notes);
            sidFlags_.push_back(i == 0);
        }
        plan.paramCount = 3;
        plan_.plainNegative = AddMessage(plan);
    }

    const IEcu& ecu_;
    CodecPlan& plan_;
    std::vector<bool> sidFlags_;  // per parameter of the plan: its semantics say SID
    std::unordered_map<const IConversion*, uint32_t> tables_;
    std::unordered_map<const IConversion*, uint32_t> formulas_;
};

}  // namespace

void BuildCodecPlan(const IEcu& ecu, CodecPlan& plan) {
    PlanBuilder(ecu, plan).Build();
}

}  // namespace Korvel
