// The codec's compiled form of a description: per message the fields with their place, kind,
// conversion and constant taken out of the model once, so that decoding a message touches
// only these flat records. Texts (ids, units, table texts) live in the plan's own pool and
// results point into it.
#pragma once

#include "codec/BitField.h"

#include <ZeKL/CodecTypes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Korvel {

// How the bits of a field are read.
enum class FieldKind : uint8_t { Unsigned, Signed, Bcd, Float, Double, Bytes, Ascii, Utf8, Ucs2, Invalid };

enum class ConversionUse : uint8_t { None, Formula, Table, Missing };

// The largest message the codec places fields in; a description that puts a field further
// away is refused for that field rather than making encode allocate gigabytes.
constexpr uint32_t kMaxMessageBytes = 1u << 20;

// A value table, ready for lookups by number and by text.
struct TablePlan {
    struct Entry {
        const char* value = "";
        const char* text = "";
        bool isInteger = false;  // starts like a number and reads by ParseUInt32 / ParseInt32
        bool isReal = false;     // starts like a number (read by ParseDouble)
        int64_t integer = 0;
        double real = 0.0;
    };
    struct IntegerKey {
        int64_t value;
        uint32_t entry;
    };
    struct RealKey {
        double value;
        uint32_t entry;
    };
    std::vector<Entry> entries;        // in the table's order
    std::vector<IntegerKey> integers;  // sorted by value; equal values keep the table's order
    std::vector<RealKey> reals;        // the same for real numbers
    bool hasTextEntries = false;       // an entry that is not an integer
    // Most tables number a few states from 0 or 1: their integer entries are also found by
    // index, from `denseBase` on (-1 where no entry has the value).
    int64_t denseBase = 0;
    std::vector<int32_t> dense;

    // The entry for an integer raw value, or null.
    const Entry* FindInteger(int64_t value) const {
        if (!dense.empty()) {
            const uint64_t at = static_cast<uint64_t>(value) - static_cast<uint64_t>(denseBase);
            if (at >= dense.size() || dense[at] < 0) {
                return nullptr;
            }
            return &entries[static_cast<std::size_t>(dense[at])];
        }
        return FindIntegerSorted(value);
    }
    const Entry* FindUnsigned(uint64_t value) const {
        if (value > static_cast<uint64_t>(INT64_MAX)) {
            return nullptr;
        }
        return FindInteger(static_cast<int64_t>(value));
    }
    const Entry* FindIntegerSorted(int64_t value) const;
    const Entry* FindReal(double value) const;
    // Exact text comparison over all entries (text parameters, and integers by their decimal
    // text when no entry matched numerically).
    const Entry* FindText(const char* text, std::size_t length) const;
    // The first entry, in table order, with that text; null when none.
    const Entry* FindByText(const std::string& text) const;
};

// What decoding one parameter needs, in one cache line: a description of tens of thousands
// of messages is read at random, so a decode should touch as few lines as it can.
struct ParamPlan {
    FieldPlace place;
    uint32_t endByte = 0;  // one past the field's last byte; 0 for a field that has no place
    ParamDataType type = ParamDataType::Undefined;
    CodecProblem descriptionProblem = CodecProblem::None;
    FieldKind kind = FieldKind::Invalid;
    ConversionUse conversion = ConversionUse::None;
    bool wide = false;  // more than 64 bits: a byte string on whole bytes
    bool isConst = false;
    bool constUsable = false;
    bool isGap = false;
    uint32_t conversionIndex = 0;  // into the plan's formulas or tables, by `conversion`
    // Expected bits of a CONST field up to 64 bits; for a wide one, where its expected bytes
    // start in the plan's `constBytes`.
    uint64_t constValue = 0;
    const char* id = "";
    const char* unit = "";

    uint32_t BitPos() const { return place.BitPos(); }
};
static_assert(sizeof(ParamPlan) <= 64, "a parameter's plan fits one cache line");

// What only messages and encoding need, beside each parameter.
struct ParamNotes {
    const char* valueText = "";  // the description's value text
    const char* convId = "";
    const char* problemDetail = "";  // what makes the description problem
};

struct FormulaPlan {
    double factor = 1.0;
    double offset = 0.0;
};

// A check of one constant, as recognition runs it.
struct ConstCheck {
    FieldPlace place;
    uint32_t endByte = 0;
    bool wide = false;
    uint64_t expected = 0;
    uint32_t bytesAt = 0;
};

struct MessagePlan {
    uint32_t instance = 0;
    uint32_t kind = 0;
    uint32_t firstParam = 0;
    uint32_t paramCount = 0;
    uint32_t length = 0;  // bytes the parameters cover
    uint32_t firstCheck = 0;
    uint32_t checkCount = 0;
    uint32_t constBits = 0;  // bits of usable constants
};

constexpr uint32_t kNoMessage = 0xFFFFFFFFu;

struct InstancePlan {
    const char* id = "";
    // Message plans by kind (request, positive response, negative response); kNoMessage when absent.
    std::array<uint32_t, 3> messages{{kNoMessage, kNoMessage, kNoMessage}};
    bool hasRequestSid = false;
    uint8_t requestSid = 0;
};

// Texts the plan keeps; each is stored once, and its address stays valid.
class ZTextPool {
public:
    const char* Keep(const char* text);

private:
    std::unordered_set<std::string> texts_;
};

struct CodecPlan {
    std::vector<InstancePlan> instances;
    std::vector<MessagePlan> messages;
    std::vector<ParamPlan> params;
    std::vector<ParamNotes> notes;  // one per parameter, same index
    std::vector<FormulaPlan> formulas;
    std::vector<ConstCheck> checks;
    std::vector<uint8_t> constBytes;
    std::vector<TablePlan> tables;
    std::array<const char*, 256> nrcTexts{};  // null where the ECU has no such code
    std::unordered_map<std::string, uint32_t> instanceIndex;
    uint32_t plainNegative = kNoMessage;  // the 7F, SID, NRC shape for instances without one
    ZTextPool pool;

    const MessagePlan* Message(uint32_t instance, uint32_t kind) const;
};

class IEcu;

// Builds the plan of every message of the ECU's description.
void BuildCodecPlan(const IEcu& ecu, CodecPlan& plan);

}  // namespace Korvel
