// The services of the two sample documents: requests, responses and a negative response of
// each, decoded, recognised and encoded.
#include "codec/CodecTestSupport.h"

namespace {

using namespace Korvel;
using codec_test::Bytes;
using codec_test::Hex;
using codec_test::Param;
using codec_test::ReadSample;

class SampleCodec : public ::testing::Test {
protected:
    void Load(const char* name) {
        ecu_ = ReadSample(name);
        ASSERT_NE(ecu_, nullptr);
        codec_ = CreateCodec(*ecu_);
        ASSERT_NE(codec_, nullptr);
    }

    // Recognises and decodes; the decode must be clean.
    DecodedMessage DecodeClean(const std::string& hex) {
        const std::vector<uint8_t> data = Bytes(hex);
        DecodedMessage decoded;
        EXPECT_TRUE(codec_->DecodeAny(data.data(), data.size(), decoded))
            << hex << ": problem " << CodecProblemText(decoded.problem);
        return decoded;
    }

    DecodedMessage DecodeAs(const std::string& instance, uint32_t kind, const std::string& hex) {
        const std::vector<uint8_t> data = Bytes(hex);
        DecodedMessage decoded;
        codec_->Decode(codec_->FindInstance(instance.c_str()), kind, data.data(), data.size(), decoded);
        return decoded;
    }

    std::string Encode(const std::string& instance, uint32_t kind, const std::vector<EncodeValue>& values) {
        ByteBuffer message;
        CodecError error;
        EXPECT_TRUE(codec_->Encode(codec_->FindInstance(instance.c_str()), kind, values, message, error))
            << error.message;
        return Hex(message);
    }

    std::unique_ptr<IEcu> ecu_;
    std::unique_ptr<ICodec> codec_;
};

TEST_F(SampleCodec, UdsEngineSpeedResponseDecodesToRpm) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("62 01 00 0B B8");
    EXPECT_STREQ(decoded.instanceId, "ReadDataByIdentifier_EngineSpeed");
    EXPECT_EQ(decoded.messageKind, MessageKindPosResponse);
    EXPECT_EQ(decoded.matchCount, 1u);
    EXPECT_EQ(decoded.constBits, 24u);
    ASSERT_EQ(decoded.params.size(), 3u);
    const DecodedParam& speed = Param(decoded, "EngineSpeed");
    EXPECT_EQ(speed.rawKind, CodecValueKind::Unsigned);
    EXPECT_EQ(speed.unsignedValue, 3000u);
    EXPECT_EQ(speed.physicalKind, CodecValueKind::Real);
    EXPECT_DOUBLE_EQ(speed.physical, 750.0);
    EXPECT_STREQ(speed.unit, "rpm");
    EXPECT_EQ(Param(decoded, "DataIdentifier").unsignedValue, 0x0100u);
}

TEST_F(SampleCodec, UdsFormulaOffsetAndNonAsciiUnit) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("62 01 05 5A");
    EXPECT_STREQ(decoded.instanceId, "ReadDataByIdentifier_CoolantTemperature");
    const DecodedParam& temperature = Param(decoded, "CoolantTemperature");
    EXPECT_DOUBLE_EQ(temperature.physical, 50.0);
    EXPECT_STREQ(temperature.unit,
                 "\xC2\xB0"
                 "C");
}

TEST_F(SampleCodec, UdsValueTableGivesTheEntrysText) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("62 01 20 02 00");
    const DecodedParam& status = Param(decoded, "MilStatus");
    EXPECT_EQ(status.physicalKind, CodecValueKind::Text);
    EXPECT_STREQ(status.tableText,
                 "Blinking \xE2\x80\x93 Z\xC3\xBC"
                 "ndaussetzer");
    const DecodedParam& reserved = Param(decoded, "Reserved");
    EXPECT_EQ(reserved.rawKind, CodecValueKind::Bytes);
    EXPECT_EQ(Hex(reserved.bytes), "00");
}

TEST_F(SampleCodec, UdsRequestsAreRecognisedByTheirIdentifiers) {
    Load("uds_ecu.xml");
    EXPECT_STREQ(DecodeClean("22 F1 90").instanceId, "ReadDataByIdentifier_VIN");
    EXPECT_STREQ(DecodeClean("10 03").instanceId, "DiagnosticSessionControl_Extended");
    EXPECT_STREQ(DecodeClean("10 01").instanceId, "DiagnosticSessionControl_Default");
    const DecodedMessage key = DecodeClean("27 02 11 22 33 44");
    EXPECT_STREQ(key.instanceId, "SecurityAccess_SendKey");
    EXPECT_EQ(key.messageKind, MessageKindRequest);
    EXPECT_EQ(Hex(Param(key, "Key").bytes), "11 22 33 44");
}

TEST_F(SampleCodec, UdsSessionResponseDecodesTableAndTimings) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("50 03 00 32 01 F4");
    EXPECT_STREQ(decoded.instanceId, "DiagnosticSessionControl_Extended");
    EXPECT_STREQ(Param(decoded, "SessionType").tableText, "Extended diagnostic session");
    EXPECT_DOUBLE_EQ(Param(decoded, "P2ServerMax").physical, 50.0);
    EXPECT_DOUBLE_EQ(Param(decoded, "P2StarServerMax").physical, 5000.0);
}

TEST_F(SampleCodec, UdsVinIsAsciiText) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("62 F1 90 57 30 4C 30 30 30 30 34 33 4D 42 35 34 31 33 32 36");
    const DecodedParam& vin = Param(decoded, "VIN");
    EXPECT_EQ(vin.rawKind, CodecValueKind::Text);
    EXPECT_EQ(vin.text, "W0L000043MB541326");
}

TEST_F(SampleCodec, UdsNegativeResponseCarriesTheNrcText) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded = DecodeClean("7F 22 31");
    EXPECT_EQ(decoded.messageKind, MessageKindNegResponse);
    EXPECT_STREQ(decoded.instanceId, "ReadDataByIdentifier_EngineSpeed");
    EXPECT_EQ(decoded.matchCount, 6u);  // six instances read data by identifier
    EXPECT_TRUE(decoded.hasNrc);
    EXPECT_EQ(decoded.requestSid, 0x22);
    EXPECT_EQ(decoded.nrc, 0x31);
    EXPECT_STREQ(decoded.nrcText, "Request out of range");
    EXPECT_EQ(Param(decoded, "SIDRQ").unsignedValue, 0x22u);
}

TEST_F(SampleCodec, NegativeResponseToAnUnknownServiceIsNotRecognisedButKeepsItsNrc) {
    Load("uds_ecu.xml");
    const std::vector<uint8_t> data = Bytes("7F 99 11");
    DecodedMessage decoded;
    EXPECT_FALSE(codec_->DecodeAny(data.data(), data.size(), decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::NotRecognised);
    EXPECT_EQ(decoded.messageKind, MessageKindNegResponse);
    EXPECT_TRUE(decoded.hasNrc);
    EXPECT_STREQ(decoded.nrcText, "Service not supported");
}

TEST_F(SampleCodec, KwpEngineDataIsIntelOrder) {
    Load("kwp_ecu.xml");
    const DecodedMessage decoded = DecodeClean("61 01 B8 0B 64 02");
    EXPECT_STREQ(decoded.instanceId, "ReadDataByLocalIdentifier_EngineData");
    EXPECT_DOUBLE_EQ(Param(decoded, "EngineSpeed").physical, 750.0);
    EXPECT_DOUBLE_EQ(Param(decoded, "IntakeAirTemperature").physical, 27.0);
    EXPECT_STREQ(Param(decoded, "EngineState").tableText, "Running");
}

TEST_F(SampleCodec, KwpIntelConstantsMatchTheirReversedImage) {
    Load("kwp_ecu.xml");
    const DecodedMessage decoded = DecodeClean("23 45 23 01 04");
    EXPECT_STREQ(decoded.instanceId, "ReadMemoryByAddress_Calibration");
    EXPECT_EQ(Param(decoded, "MemoryAddress").unsignedValue, 0x012345u);
    EXPECT_EQ(decoded.constBits, 40u);
}

TEST_F(SampleCodec, KwpNegativeResponseUsesTheKwpTable) {
    Load("kwp_ecu.xml");
    const DecodedMessage decoded = DecodeClean("7F 1A 78");
    EXPECT_STREQ(decoded.instanceId, "ReadEcuIdentification_SparePartNumber");
    EXPECT_STREQ(decoded.nrcText, "Request correctly received - response pending");
}

// Every message of every instance of both samples: encoded with a value for each parameter
// that needs one, then recognised as itself and decoded clean; and a negative response for
// every instance with a request SID.
void CheckEveryService(const char* sample) {
    const std::unique_ptr<IEcu> ecu = ReadSample(sample);
    ASSERT_NE(ecu, nullptr);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const IInstanceContainer* instances = ecu->GetInstanceContainer();
    uint32_t checked = 0;
    for (uint32_t i = 0; i < instances->GetCount(); ++i) {
        const IInstance* instance = instances->GetInstance(i);
        const IMessage* messages[] = {instance->GetRequest(), instance->GetPosResponse()};
        const uint32_t kinds[] = {MessageKindRequest, MessageKindPosResponse};
        for (int m = 0; m < 2; ++m) {
            if (messages[m] == nullptr) {
                continue;
            }
            std::vector<EncodeValue> values;
            for (uint32_t p = 0; p < messages[m]->GetCount(); ++p) {
                const IParam* param = messages[m]->GetParam(static_cast<int>(p));
                if (param->IsConst() || param->IsGap()) {
                    continue;
                }
                const ParamDataType type = param->GetDataType();
                const bool text = type == ParamDataType::Ascii || type == ParamDataType::None;
                values.push_back(EncodeValue::Text(
                    param->GetId(), type == ParamDataType::None ? "5A" : (text ? "Z" : "1"), true));
            }
            ByteBuffer bytes;
            CodecError error;
            ASSERT_TRUE(codec->Encode(i, kinds[m], values, bytes, error))
                << instance->GetId() << ": " << error.message;
            DecodedMessage decoded;
            EXPECT_TRUE(codec->DecodeAny(bytes.data(), bytes.size(), decoded))
                << sample << " " << instance->GetId() << " " << Hex(bytes);
            EXPECT_STREQ(decoded.instanceId, instance->GetId()) << Hex(bytes);
            EXPECT_EQ(decoded.messageKind, kinds[m]) << Hex(bytes);
            EXPECT_EQ(decoded.matchCount, 1u) << Hex(bytes);
            ++checked;
        }
        const IParam* sid = instance->GetRequest() != nullptr
                                ? const_cast<IInstance*>(instance)->GetRequest()->GetSidParam()
                                : nullptr;
        if (sid == nullptr) {
            continue;
        }
        std::vector<uint8_t> negative = {0x7F, sid->GetValueImage()[0], 0x22};
        DecodedMessage decoded;
        EXPECT_TRUE(codec->DecodeAny(negative.data(), negative.size(), decoded)) << Hex(negative);
        EXPECT_EQ(decoded.messageKind, MessageKindNegResponse);
        // The first instance whose request has that SID answers for all of them.
        uint32_t first = 0;
        while (
            first < i &&
            (instances->GetInstance(first)->GetRequest() == nullptr ||
             const_cast<IInstance*>(instances->GetInstance(first))->GetRequest()->GetSidParam() == nullptr ||
             const_cast<IInstance*>(instances->GetInstance(first))
                     ->GetRequest()
                     ->GetSidParam()
                     ->GetValueImage() != sid->GetValueImage())) {
            ++first;
        }
        EXPECT_EQ(decoded.instanceIndex, first) << instance->GetId();
        EXPECT_EQ(decoded.requestSid, sid->GetValueImage()[0]);
        EXPECT_STRNE(decoded.nrcText, "");
        DecodedMessage own;
        EXPECT_TRUE(codec->Decode(i, MessageKindNegResponse, negative.data(), negative.size(), own))
            << instance->GetId();
        EXPECT_EQ(own.nrc, 0x22);
        ++checked;
    }
    EXPECT_GE(checked, 2 * instances->GetCount());
}

TEST(SampleServices, EveryUdsServiceEncodesRecognisesAndDecodes) {
    CheckEveryService("uds_ecu.xml");
}

TEST(SampleServices, EveryKwpServiceEncodesRecognisesAndDecodes) {
    CheckEveryService("kwp_ecu.xml");
}

TEST_F(SampleCodec, EncodeFillsConstantsAndConvertsPhysicalValues) {
    Load("uds_ecu.xml");
    EXPECT_EQ(Encode("ReadDataByIdentifier_EngineSpeed", MessageKindPosResponse,
                     {EncodeValue::Text("EngineSpeed", "750")}),
              "62 01 00 0B B8");
    EXPECT_EQ(Encode("ReadDataByIdentifier_EngineSpeed", MessageKindRequest, {}), "22 01 00");
    EXPECT_EQ(Encode("ReadDataByIdentifier_CoolantTemperature", MessageKindPosResponse,
                     {EncodeValue::Number("CoolantTemperature", 50.0)}),
              "62 01 05 5A");
    EXPECT_EQ(Encode("ReadDataByIdentifier_MilStatus", MessageKindPosResponse,
                     {EncodeValue::Text("MilStatus", "On")}),
              "62 01 20 01 00");
    EXPECT_EQ(Encode("ReadDataByIdentifier_EngineSpeed", MessageKindNegResponse,
                     {EncodeValue::Text("NRC", "0x31", true)}),
              "7F 22 31");
}

TEST_F(SampleCodec, EncodeOfAKwpIntelFormula) {
    Load("kwp_ecu.xml");
    EXPECT_EQ(
        Encode("ReadDataByLocalIdentifier_EngineData", MessageKindPosResponse,
               {EncodeValue::Text("EngineSpeed", "750"), EncodeValue::Text("IntakeAirTemperature", "27"),
                EncodeValue::Text("EngineState", "Running")}),
        "61 01 B8 0B 64 02");
}

// Problems found on the samples.

TEST_F(SampleCodec, ShortDataNamesTheMessageAndTheParameter) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded =
        DecodeAs("ReadDataByIdentifier_EngineSpeed", MessageKindPosResponse, "62 01 00 0B");
    EXPECT_EQ(decoded.problem, CodecProblem::ShortData);
    EXPECT_EQ(Param(decoded, "EngineSpeed").problem, CodecProblem::BeyondData);
    EXPECT_EQ(Param(decoded, "EngineSpeed").rawKind, CodecValueKind::None);
    EXPECT_EQ(Param(decoded, "DataIdentifier").problem, CodecProblem::None);
    EXPECT_EQ(decoded.errorCount, 2u);
    EXPECT_FALSE(decoded.IsClean());
}

TEST_F(SampleCodec, TrailingDataIsAMessageProblem) {
    Load("uds_ecu.xml");
    const std::vector<uint8_t> data = Bytes("62 01 00 0B B8 FF");
    DecodedMessage decoded;
    EXPECT_FALSE(codec_->DecodeAny(data.data(), data.size(), decoded));
    EXPECT_STREQ(decoded.instanceId, "ReadDataByIdentifier_EngineSpeed");
    EXPECT_EQ(decoded.problem, CodecProblem::TrailingData);
    EXPECT_EQ(decoded.errorCount, 1u);
    EXPECT_DOUBLE_EQ(Param(decoded, "EngineSpeed").physical, 750.0);
}

TEST_F(SampleCodec, ConstantMismatchWhenDecodedAsAnotherInstance) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded =
        DecodeAs("ReadDataByIdentifier_EngineSpeed", MessageKindPosResponse, "62 01 05 0B B8");
    EXPECT_EQ(Param(decoded, "DataIdentifier").problem, CodecProblem::ConstMismatch);
    EXPECT_EQ(Param(decoded, "DataIdentifier").unsignedValue, 0x0105u);
    EXPECT_EQ(Param(decoded, "SID").problem, CodecProblem::None);
    EXPECT_EQ(decoded.errorCount, 1u);
}

TEST_F(SampleCodec, TableMissIsAParameterProblem) {
    Load("uds_ecu.xml");
    const DecodedMessage decoded =
        DecodeAs("ReadDataByIdentifier_MilStatus", MessageKindPosResponse, "62 01 20 07 00");
    EXPECT_EQ(Param(decoded, "MilStatus").problem, CodecProblem::NoTableEntry);
    EXPECT_EQ(Param(decoded, "MilStatus").unsignedValue, 7u);
    EXPECT_EQ(Param(decoded, "MilStatus").physicalKind, CodecValueKind::None);
}

TEST_F(SampleCodec, UnrecognisedDataSaysSo) {
    Load("uds_ecu.xml");
    const std::vector<uint8_t> data = Bytes("22 99 99");
    DecodedMessage decoded;
    Recognition recognition;
    EXPECT_FALSE(codec_->Recognise(data.data(), data.size(), recognition));
    EXPECT_FALSE(recognition.recognised);
    EXPECT_FALSE(codec_->DecodeAny(data.data(), data.size(), decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::NotRecognised);
    EXPECT_TRUE(decoded.params.empty());
}

TEST(SampleCodecMissingConversion, UnknownConversionIsAWarningWithTheRawValue) {
    const std::string path = std::string(ZEKL_TEST_DATA_DIR) + "/tools/missing_conversion.xml";
    const std::unique_ptr<IEcu> ecu = GetKLReader().ReadFile(path.c_str(), "");
    ASSERT_NE(ecu, nullptr);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const std::vector<uint8_t> data = Bytes("62 00 00 2A");
    DecodedMessage decoded;
    EXPECT_TRUE(codec->DecodeAny(data.data(), data.size(), decoded));
    const DecodedParam& level = Param(decoded, "OilLevel");
    EXPECT_EQ(level.problem, CodecProblem::UnknownConversion);
    EXPECT_TRUE(IsCodecWarning(level.problem));
    EXPECT_EQ(level.unsignedValue, 42u);
    EXPECT_DOUBLE_EQ(level.physical, 42.0);
    EXPECT_EQ(decoded.warningCount, 1u);
    EXPECT_EQ(decoded.errorCount, 0u);
}

}  // namespace
