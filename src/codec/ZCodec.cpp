#include "codec/ZCodec.h"

#include "codec/CodecMessages.h"
#include "codec/MessageDecoder.h"
#include "codec/MessageEncoder.h"

#include <algorithm>
#include <cstdint>

namespace Korvel {

namespace Msg = CodecMessages;

// The interface's one out-of-line member gives it a home for its vtable in the library.
ICodec::~ICodec() = default;

ZCodec::ZCodec(const IEcu& ecu) {
    BuildCodecPlan(ecu, plan_);
    index_.Build(plan_);
    negativeFirst_.fill(InvalidIndex);
    for (uint32_t i = 0; i < plan_.instances.size(); ++i) {
        const InstancePlan& instance = plan_.instances[i];
        if (!instance.hasRequestSid) {
            continue;
        }
        if (negativeCount_[instance.requestSid]++ == 0) {
            negativeFirst_[instance.requestSid] = i;
        }
    }
}

ZCodec::~ZCodec() = default;

uint32_t ZCodec::GetInstanceCount() const {
    return static_cast<uint32_t>(plan_.instances.size());
}

const char* ZCodec::GetInstanceId(uint32_t index) const {
    return index < plan_.instances.size() ? plan_.instances[index].id : "";
}

uint32_t ZCodec::FindInstance(const char* id) const {
    if (id == nullptr) {
        return InvalidIndex;
    }
    try {
        const auto found = plan_.instanceIndex.find(id);
        return found != plan_.instanceIndex.end() ? found->second : InvalidIndex;
    } catch (...) {
        return InvalidIndex;
    }
}

bool ZCodec::HasMessage(uint32_t instance, uint32_t messageKind) const {
    return plan_.Message(instance, messageKind) != nullptr;
}

const MessagePlan* ZCodec::DecodingPlan(uint32_t instance, uint32_t messageKind) const {
    const MessagePlan* message = plan_.Message(instance, messageKind);
    // An empty negative response element says that the instance has one, not what it holds.
    const bool undescribed = message == nullptr || message->paramCount == 0;
    if (undescribed && instance < plan_.instances.size() && messageKind == MessageKindNegResponse) {
        message = &plan_.messages[plan_.plainNegative];
    }
    return message;
}

bool ZCodec::RecogniseMessage(const uint8_t* data, std::size_t size, Recognition& out) const {
    out = Recognition();
    if (data == nullptr || size == 0) {
        return false;
    }
    const bool negativeShape = size >= 3 && data[0] == 0x7F;
    if (negativeShape && negativeCount_[data[1]] != 0) {
        const uint32_t instance = negativeFirst_[data[1]];
        out.recognised = true;
        out.instanceIndex = instance;
        out.instanceId = plan_.instances[instance].id;
        out.messageKind = MessageKindNegResponse;
        out.constBits = 16;  // 7F and the request's SID
        out.matchCount = negativeCount_[data[1]];
        return true;
    }
    // The best match: most constant bits, then a length equal to the data's, then the first in
    // the description (message plans are numbered in document order, requests first).
    const ZRecognitionIndex::Candidate* best = nullptr;
    uint32_t equal = 0;
    index_.ForCandidates(data, size, [&](const ZRecognitionIndex::Candidate& candidate) {
        if (!candidate.prefixIsAll &&
            !ConstantsMatch(plan_, candidate.firstCheck, candidate.checkCount, data, size)) {
            return;
        }
        const bool exact = candidate.length == size;
        const bool bestExact = best != nullptr && best->length == size;
        const bool better = best == nullptr || candidate.constBits > best->constBits ||
                            (candidate.constBits == best->constBits && exact && !bestExact);
        if (better) {
            best = &candidate;
            equal = 1;
        } else if (candidate.constBits == best->constBits && exact == bestExact) {
            ++equal;
            if (candidate.message < best->message) {
                best = &candidate;
            }
        }
    });
    if (best == nullptr) {
        out.messageKind = negativeShape ? MessageKindNegResponse : 0;
        return false;
    }
    out.recognised = true;
    out.instanceIndex = best->instance;
    out.instanceId = best->instanceId;
    out.messageKind = best->kind;
    out.constBits = best->constBits;
    out.matchCount = equal;
    return true;
}

bool ZCodec::Recognise(const uint8_t* data, std::size_t size, Recognition& out) const {
    try {
        return RecogniseMessage(data, size, out);
    } catch (...) {
        out = Recognition();
        return false;
    }
}

void ZCodec::FillInstance(uint32_t instance, DecodedMessage& out) const {
    out.instanceIndex = instance < plan_.instances.size() ? instance : InvalidIndex;
    out.instanceId = instance < plan_.instances.size() ? plan_.instances[instance].id : "";
    out.constBits = 0;
    out.matchCount = 0;
}

void ZCodec::EmptyResult(DecodedMessage& out, std::size_t size, uint32_t messageKind) {
    // Dropping the parameters may not allocate: after a failed allocation there is nothing to
    // spare, so they are simply destroyed then.
    try {
        ResizeKeepingStorage(out, 0);
    } catch (...) {
        out.params.clear();
    }
    out.messageKind = messageKind;
    out.length = 0;
    out.dataLength = static_cast<uint32_t>(size > UINT32_MAX ? UINT32_MAX : size);
    out.problem = CodecProblem::None;
    out.errorCount = 0;
    out.warningCount = 0;
    out.hasNrc = false;
    out.requestSid = 0;
    out.nrc = 0;
    out.nrcText = "";
}

void ZCodec::Fail(DecodedMessage& out, CodecProblem problem) {
    out.problem = problem;
    ++out.errorCount;
}

bool ZCodec::Decode(uint32_t instance, uint32_t messageKind, const uint8_t* data, std::size_t size,
                    DecodedMessage& out) const {
    static const uint8_t kNoData = 0;
    if (data == nullptr) {
        data = &kNoData;
        size = 0;
    }
    try {
        const MessagePlan* message = DecodingPlan(instance, messageKind);
        if (message == nullptr) {
            EmptyResult(out, size, messageKind);
            FillInstance(instance, out);
            Fail(out, CodecProblem::NoSuchMessage);
            return false;
        }
        DecodeMessage(plan_, *message, data, size, out);
        FillInstance(instance, out);
        return out.IsClean();
    } catch (...) {
        EmptyResult(out, size, messageKind);
        Fail(out, CodecProblem::Failure);
        return false;
    }
}

bool ZCodec::DecodeAny(const uint8_t* data, std::size_t size, DecodedMessage& out) const {
    static const uint8_t kNoData = 0;
    if (data == nullptr) {
        data = &kNoData;
        size = 0;
    }
    try {
        Recognition recognition;
        if (RecogniseMessage(data, size, recognition)) {
            Decode(recognition.instanceIndex, recognition.messageKind, data, size, out);
            out.constBits = recognition.constBits;
            out.matchCount = recognition.matchCount;
            return out.IsClean();
        }
        if (recognition.messageKind == MessageKindNegResponse) {
            // A negative response to a service the description does not know: its shape still
            // gives the SID and the NRC.
            DecodeMessage(plan_, plan_.messages[plan_.plainNegative], data, size, out);
        } else {
            EmptyResult(out, size, 0);
        }
        FillInstance(InvalidIndex, out);
        if (out.problem == CodecProblem::ShortData || out.problem == CodecProblem::TrailingData) {
            --out.errorCount;  // replaced by NotRecognised below
        }
        Fail(out, CodecProblem::NotRecognised);
        return false;
    } catch (...) {
        EmptyResult(out, size, 0);
        Fail(out, CodecProblem::Failure);
        return false;
    }
}

bool ZCodec::Encode(uint32_t instance, uint32_t messageKind, const std::vector<EncodeValue>& values,
                    ByteBuffer& message, CodecError& error) const {
    try {
        const MessagePlan* plan = DecodingPlan(instance, messageKind);
        if (plan == nullptr) {
            error = CodecError();
            error.problem = CodecProblem::NoSuchMessage;
            error.message = Msg::kNoMessage;
            return false;
        }
        if (plan == &plan_.messages[plan_.plainNegative] && plan_.instances[instance].hasRequestSid) {
            // The plain shape is shared, so its request SID cannot be a constant of its own; the
            // instance's request gives it unless a value is given.
            bool given = false;
            for (const EncodeValue& value : values) {
                given = given || value.id == "SIDRQ";
            }
            if (!given) {
                std::vector<EncodeValue> withSid = values;
                withSid.push_back(
                    EncodeValue::Text("SIDRQ", std::to_string(plan_.instances[instance].requestSid), true));
                return EncodeMessage(plan_, *plan, withSid, message, error);
            }
        }
        return EncodeMessage(plan_, *plan, values, message, error);
    } catch (...) {
        try {
            error = CodecError();
            error.problem = CodecProblem::Failure;
            error.message = Msg::kOutOfMemory;
        } catch (...) {
            error.problem = CodecProblem::Failure;
        }
        return false;
    }
}

bool ZCodec::GetLayout(uint32_t instance, uint32_t messageKind, MessageLayout& out) const {
    try {
        out = MessageLayout();
        const MessagePlan* message = plan_.Message(instance, messageKind);
        if (message == nullptr) {
            return false;
        }
        out.length = message->length;
        out.bitOwners.assign(static_cast<std::size_t>(message->length) * 8, LayoutBitFree);
        for (uint32_t i = 0; i < message->paramCount; ++i) {
            const ParamPlan& param = plan_.params[message->firstParam + i];
            LayoutField field;
            field.id = param.id;
            field.bitPos = param.BitPos();
            field.bitLength = param.place.bitLength;
            field.type = param.type;
            field.motorola = param.place.motorola;
            field.isConst = param.isConst;
            field.isGap = param.isGap;
            field.problem = param.descriptionProblem;
            out.fields.push_back(field);
            if (param.endByte == 0) {
                continue;  // a field without a place
            }
            const int32_t owner = static_cast<int32_t>(i);
            const auto claim = [&](uint32_t bit) {
                int32_t& cell = out.bitOwners[bit];
                cell = cell == LayoutBitFree ? owner : LayoutBitOverlap;
            };
            if (param.place.bitLength > 64) {
                for (uint32_t bit = 0; bit < param.place.bitLength; ++bit) {
                    claim(param.BitPos() + bit);
                }
                continue;
            }
            // The same byte walk as insertion: bit j of byte i holds field bit shift + j.
            const int32_t length = static_cast<int32_t>(param.place.bitLength);
            for (uint32_t b = 0; b < param.place.byteCount; ++b) {
                const int32_t shift = ByteShift(param.place, b);
                for (int32_t j = 0; j < 8; ++j) {
                    if (shift + j >= 0 && shift + j < length) {
                        claim((param.place.byteIndex + b) * 8 + static_cast<uint32_t>(j));
                    }
                }
            }
        }
        return true;
    } catch (...) {
        out = MessageLayout();
        return false;
    }
}

}  // namespace Korvel
