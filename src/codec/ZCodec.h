// The message codec of one description: its compiled plan, the recognition index, and the
// operations of ICodec on them.
#pragma once

#include "codec/CodecPlan.h"
#include "codec/ZRecognitionIndex.h"

#include <ZeKL/ICodec.h>

#include <array>

namespace Korvel {

class ZCodec : public ICodec {
public:
    // Compiles the plan of every message of the ECU (a snapshot; the model is not kept).
    explicit ZCodec(const IEcu& ecu);
    ~ZCodec() override;
    ZCodec(const ZCodec&) = delete;
    ZCodec& operator=(const ZCodec&) = delete;

    uint32_t GetInstanceCount() const override;
    const char* GetInstanceId(uint32_t index) const override;
    uint32_t FindInstance(const char* id) const override;
    bool HasMessage(uint32_t instance, uint32_t messageKind) const override;
    bool Recognise(const uint8_t* data, std::size_t size, Recognition& out) const override;
    bool Decode(uint32_t instance, uint32_t messageKind, const uint8_t* data, std::size_t size,
                DecodedMessage& out) const override;
    bool DecodeAny(const uint8_t* data, std::size_t size, DecodedMessage& out) const override;
    bool Encode(uint32_t instance, uint32_t messageKind, const std::vector<EncodeValue>& values,
                ByteBuffer& message, CodecError& error) const override;
    bool GetLayout(uint32_t instance, uint32_t messageKind, MessageLayout& out) const override;

    const CodecPlan& Plan() const { return plan_; }

private:
    // The plan a message of that kind is decoded with: the described one, or for a negative
    // response of an instance that describes none (or has an empty one), the plain 7F, SID,
    // NRC shape.
    const MessagePlan* DecodingPlan(uint32_t instance, uint32_t messageKind) const;
    bool RecogniseMessage(const uint8_t* data, std::size_t size, Recognition& out) const;
    void FillInstance(uint32_t instance, DecodedMessage& out) const;
    static void EmptyResult(DecodedMessage& out, std::size_t size, uint32_t messageKind);
    static void Fail(DecodedMessage& out, CodecProblem problem);

    CodecPlan plan_;
    ZRecognitionIndex index_;
    // Per request SID: the first instance whose request has it, and how many have it.
    std::array<uint32_t, 256> negativeFirst_{};
    std::array<uint32_t, 256> negativeCount_{};
};

}  // namespace Korvel
