// Recognising which message some bytes are: constants, ranking, negative responses, and the
// index that keeps a large description from being scanned.
#include "codec/CodecTestSupport.h"

#include "codec/CodecPlan.h"
#include "codec/ZRecognitionIndex.h"

#include <cstdio>

namespace {

using namespace Korvel;
using codec_test::Bytes;

// Adds an instance with a request and a positive response built from parameter specs.
void AddService(IEcu& ecu, const char* id, const std::vector<codec_test::ParamSpec>& request,
                const std::vector<codec_test::ParamSpec>& response = {}) {
    IInstanceContainer* instances = ecu.GetInstanceContainer();
    const uint32_t index = instances->AddInstance(id);
    IInstance* instance = instances->GetInstance(index);
    const auto fill = [](IMessage* message, const std::vector<codec_test::ParamSpec>& params) {
        for (const auto& p : params) {
            message->AddParam(p.id.c_str(), p.bitPos, p.bitLen, p.value.c_str(), p.type.c_str(),
                              p.unit.c_str(), p.semantics.c_str(), p.convId.c_str());
        }
    };
    if (!request.empty()) {
        fill(instance->CreateRequest(), request);
    }
    if (!response.empty()) {
        fill(instance->CreatePosResponse(), response);
    }
}

Recognition RecogniseHex(const ICodec& codec, const std::string& hex) {
    const std::vector<uint8_t> data = Bytes(hex);
    Recognition recognition;
    codec.Recognise(data.data(), data.size(), recognition);
    return recognition;
}

class Recognise : public ::testing::Test {
protected:
    void SetUp() override {
        ecu_ = GetFactory().CreateEcu();
        // Any identifier: only the SID is constant.
        AddService(*ecu_, "AnyIdentifier",
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x22"}, {"DID", 8, 16, "unsigned", "MOTOROLA"}});
        AddService(*ecu_, "Identifier0100",
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x22"},
                    {"DID", 8, 16, "unsigned", "CONST MOTOROLA", "0x0100"}},
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x62"},
                    {"DID", 8, 16, "unsigned", "CONST MOTOROLA", "0x0100"},
                    {"Value", 24, 8, "unsigned"}});
        AddService(*ecu_, "RoutineShort",
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x31"}, {"Sub", 8, 8, "unsigned", "CONST", "1"}});
        AddService(*ecu_, "RoutineLong",
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x31"},
                    {"Sub", 8, 8, "unsigned", "CONST", "1"},
                    {"Arg", 16, 8, "unsigned"}});
        AddService(*ecu_, "RoutineTwin",
                   {{"SID", 0, 8, "unsigned", "SID CONST", "0x31"},
                    {"Sub", 8, 8, "unsigned", "CONST", "1"},
                    {"Arg", 16, 8, "unsigned"}});
        // Constants that cover no whole first byte: found without the prefix index.
        AddService(*ecu_, "Nibbles", {{"High", 4, 4, "unsigned", "CONST", "0xA"}, {"Low", 0, 4, "unsigned"}});
        AddService(*ecu_, "NoConstants", {{"Data", 0, 16, "unsigned"}});
        // Two constants on the same bits with different values: no data can match both.
        AddService(*ecu_, "Conflict",
                   {{"A", 0, 8, "unsigned", "CONST", "0x55"}, {"B", 0, 8, "unsigned", "CONST", "0x56"}});
        ecu_->GetNrcContainer()->AddNrc(0x31, "Request out of range");
        codec_ = CreateCodec(*ecu_);
    }

    std::unique_ptr<IEcu> ecu_;
    std::unique_ptr<ICodec> codec_;
};

TEST_F(Recognise, MoreConstantBitsWin) {
    const Recognition exact = RecogniseHex(*codec_, "22 01 00");
    EXPECT_TRUE(exact.recognised);
    EXPECT_STREQ(exact.instanceId, "Identifier0100");
    EXPECT_EQ(exact.constBits, 24u);
    EXPECT_EQ(exact.matchCount, 1u);
    const Recognition other = RecogniseHex(*codec_, "22 01 01");
    EXPECT_STREQ(other.instanceId, "AnyIdentifier");
    EXPECT_EQ(other.constBits, 8u);
}

TEST_F(Recognise, EqualConstantsPreferTheLengthOfTheData) {
    EXPECT_STREQ(RecogniseHex(*codec_, "31 01").instanceId, "RoutineShort");
    const Recognition longer = RecogniseHex(*codec_, "31 01 07");
    EXPECT_STREQ(longer.instanceId, "RoutineLong");
    EXPECT_EQ(longer.matchCount, 2u);  // RoutineTwin is as good
    const Recognition trailing = RecogniseHex(*codec_, "31 01 07 08");
    EXPECT_STREQ(trailing.instanceId, "RoutineShort");
    EXPECT_EQ(trailing.matchCount, 3u);
}

TEST_F(Recognise, ResponsesAreRecognisedAsResponses) {
    const Recognition response = RecogniseHex(*codec_, "62 01 00 2A");
    EXPECT_STREQ(response.instanceId, "Identifier0100");
    EXPECT_EQ(response.messageKind, MessageKindPosResponse);
}

TEST_F(Recognise, SubByteConstantsAreFoundWithoutAPrefix) {
    const Recognition nibbles = RecogniseHex(*codec_, "A7");
    EXPECT_STREQ(nibbles.instanceId, "Nibbles");
    EXPECT_EQ(nibbles.constBits, 4u);
    EXPECT_FALSE(RecogniseHex(*codec_, "B7").recognised);
}

TEST_F(Recognise, ConflictingConstantsMatchNothing) {
    EXPECT_FALSE(RecogniseHex(*codec_, "55").recognised);
    EXPECT_FALSE(RecogniseHex(*codec_, "56").recognised);
}

TEST_F(Recognise, MessagesWithoutConstantsAreNeverRecognised) {
    EXPECT_FALSE(RecogniseHex(*codec_, "12 34").recognised);
}

TEST_F(Recognise, DataTooShortForAConstantDoesNotMatchIt) {
    const Recognition shortData = RecogniseHex(*codec_, "22 01");
    EXPECT_STREQ(shortData.instanceId, "AnyIdentifier");
    EXPECT_FALSE(RecogniseHex(*codec_, "").recognised);
}

TEST_F(Recognise, NegativeResponseGoesToTheFirstInstanceWithTheRequestSid) {
    const Recognition negative = RecogniseHex(*codec_, "7F 31 31");
    EXPECT_TRUE(negative.recognised);
    EXPECT_EQ(negative.messageKind, MessageKindNegResponse);
    EXPECT_STREQ(negative.instanceId, "RoutineShort");
    EXPECT_EQ(negative.matchCount, 3u);
    const Recognition unknown = RecogniseHex(*codec_, "7F 44 31");
    EXPECT_FALSE(unknown.recognised);
    EXPECT_EQ(unknown.messageKind, MessageKindNegResponse);
    EXPECT_FALSE(RecogniseHex(*codec_, "7F 31").recognised);  // too short for the shape
}

TEST_F(Recognise, NullDataIsNotRecognised) {
    Recognition recognition;
    EXPECT_FALSE(codec_->Recognise(nullptr, 5, recognition));
    DecodedMessage decoded;
    EXPECT_FALSE(codec_->DecodeAny(nullptr, 5, decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::NotRecognised);
}

// A description of `count` services reading data by identifier, each with its own DID.
std::unique_ptr<IEcu> ManyInstances(uint32_t count) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    char id[32];
    char did[16];
    for (uint32_t i = 0; i < count; ++i) {
        std::snprintf(id, sizeof(id), "Read_%05u", i);
        std::snprintf(did, sizeof(did), "0x%04X", i);
        IInstance* instance = instances->GetInstance(instances->AddInstance(id));
        IRequest* request = instance->CreateRequest();
        request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
        request->AddParam("DID", 8, 16, did, "unsigned", "", "XID CONST MOTOROLA", "");
        IPosResponse* response = instance->CreatePosResponse();
        response->AddParam("SID", 0, 8, "0x62", "unsigned", "", "SID CONST", "");
        response->AddParam("DID", 8, 16, did, "unsigned", "", "XID CONST MOTOROLA", "");
        response->AddParam("Value", 24, 16, "", "unsigned", "", "MOTOROLA", "");
    }
    return ecu;
}

TEST(RecogniseMany, FiftyThousandInstancesEachFindTheirOwn) {
    const std::unique_ptr<IEcu> ecu = ManyInstances(50000);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    ASSERT_EQ(codec->GetInstanceCount(), 50000u);
    for (uint32_t i : {0u, 1u, 4711u, 0xC34Fu}) {
        const uint8_t request[] = {0x22, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)};
        Recognition recognition;
        ASSERT_TRUE(codec->Recognise(request, sizeof(request), recognition));
        EXPECT_EQ(recognition.instanceIndex, i);
        EXPECT_EQ(recognition.messageKind, MessageKindRequest);
        EXPECT_EQ(recognition.matchCount, 1u);
        const uint8_t response[] = {0x62, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i), 0x12, 0x34};
        DecodedMessage decoded;
        ASSERT_TRUE(codec->DecodeAny(response, sizeof(response), decoded));
        EXPECT_EQ(decoded.instanceIndex, i);
        EXPECT_EQ(decoded.params[2].unsignedValue, 0x1234u);
    }
}

TEST(RecogniseMany, TheIndexOffersOneCandidateNotAllOfThem) {
    const std::unique_ptr<IEcu> ecu = ManyInstances(50000);
    CodecPlan plan;
    BuildCodecPlan(*ecu, plan);
    ZRecognitionIndex index;
    index.Build(plan);
    const uint8_t request[] = {0x22, 0x12, 0x34};
    uint32_t candidates = 0;
    uint32_t found = kNoMessage;
    index.ForCandidates(request, sizeof(request), [&](const ZRecognitionIndex::Candidate& candidate) {
        ++candidates;
        found = candidate.message;
    });
    EXPECT_EQ(candidates, 1u);
    ASSERT_NE(found, kNoMessage);
    EXPECT_EQ(plan.messages[found].instance, 0x1234u);
    uint64_t key = 0;
    EXPECT_EQ(ZRecognitionIndex::PrefixLength(plan, plan.messages[found], key), 3u);
    EXPECT_EQ(key, 0x221234u);
}

}  // namespace
