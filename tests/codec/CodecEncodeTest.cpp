// Encoding values: natural and raw forms, constants and gaps, and every failure naming its
// parameter with the message left as it was.
#include "codec/CodecTestSupport.h"

namespace {

using namespace Korvel;
using codec_test::EcuWith;
using codec_test::Hex;
using codec_test::ParamSpec;

struct Encoded {
    bool ok = false;
    std::string hex;
    CodecError error;
};

Encoded EncodeWith(const IEcu& ecu, const std::vector<EncodeValue>& values, ByteBuffer start = {}) {
    const std::unique_ptr<ICodec> codec = CreateCodec(ecu);
    Encoded result;
    result.ok = codec->Encode(0, MessageKindRequest, values, start, result.error);
    result.hex = Hex(start);
    return result;
}

std::unique_ptr<IEcu> SpeedEcu(double factor = 0.25, double offset = 0.0) {
    auto ecu = EcuWith({{"SID", 0, 8, "unsigned", "SID CONST", "0x2E"},
                        {"Speed", 8, 16, "unsigned", "MOTOROLA", "", "Speed_Formula", "rpm"},
                        {"Pad", 24, 8, "none", "GAP", "FF"}});
    ecu->GetConversionContainer()->AddConversion("Speed_Formula", 1, factor, offset);
    return ecu;
}

TEST(CodecEncode_Formula, PhysicalValueIsRoundedToTheNearestRaw) {
    const auto ecu = SpeedEcu();
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "750.1")}).hex, "2E 0B B8 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "750.2")}).hex, "2E 0B B9 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Number("Speed", 0.0)}).hex, "2E 00 00 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "raw", true)}).error.problem,
              CodecProblem::BadValue);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "3000", true)}).hex, "2E 0B B8 00");
}

TEST(CodecEncode_Formula, OutOfRangeNamesTheParameter) {
    const auto ecu = SpeedEcu();
    const Encoded result = EncodeWith(*ecu, {EncodeValue::Text("Speed", "20000")});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(result.error.paramId, "Speed");
    EXPECT_EQ(result.error.message, "parameter 'Speed': raw value 80000 does not fit 16 bits (unsigned)");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "-1")}).error.problem, CodecProblem::OutOfRange);
}

TEST(CodecEncode_Formula, FactorZeroCannotBeInverted) {
    const auto ecu = SpeedEcu(0.0, 5.0);
    const Encoded result = EncodeWith(*ecu, {EncodeValue::Text("Speed", "5")});
    EXPECT_EQ(result.error.problem, CodecProblem::FactorZero);
    EXPECT_EQ(result.error.message,
              "parameter 'Speed': has a formula with factor 0, which cannot be inverted");
}

TEST(CodecEncode_Values, NumberTextsMustBeNumbersToTheirEnd) {
    const auto ecu = SpeedEcu(1.0);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "12abc")}).error.problem, CodecProblem::BadValue);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "")}).error.problem, CodecProblem::BadValue);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "0x10", true)}).hex, "2E 00 10 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "010", true)}).hex, "2E 00 08 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "1.5", true)}).error.problem,
              CodecProblem::BadValue);
}

TEST(CodecEncode_Message, MissingValueNamesTheParameter) {
    const auto ecu = SpeedEcu();
    const Encoded result = EncodeWith(*ecu, {});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error.problem, CodecProblem::MissingValue);
    EXPECT_EQ(result.error.message, "parameter 'Speed': needs a value");
    EXPECT_TRUE(result.hex.empty());
}

TEST(CodecEncode_Message, UnknownAndDuplicateValuesAreRefused) {
    const auto ecu = SpeedEcu();
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Sped", "1")}).error.message,
              "parameter 'Sped': is not a parameter of the message");
    EXPECT_EQ(
        EncodeWith(*ecu, {EncodeValue::Text("Speed", "1"), EncodeValue::Text("Speed", "2")}).error.problem,
        CodecProblem::DuplicateValue);
}

TEST(CodecEncode_Message, FailureLeavesTheGivenBytesAlone) {
    const auto ecu = SpeedEcu();
    const Encoded result = EncodeWith(*ecu, {EncodeValue::Text("Speed", "1e9")}, {0xAA, 0xBB});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.hex, "AA BB");
}

TEST(CodecEncode_Message, BitsOutsideTheParametersKeepTheirValues) {
    const auto ecu = EcuWith({{"A", 4, 8, "unsigned", "MOTOROLA"}, {"B", 20, 3, "unsigned", ""}});
    const Encoded result =
        EncodeWith(*ecu, {EncodeValue::Text("A", "0", true), EncodeValue::Text("B", "0", true)},
                   {0xFF, 0xFF, 0xFF, 0x5A});
    ASSERT_TRUE(result.ok) << result.error.message;
    // A clears the low nibble of byte 0 and the high nibble of byte 1, B bits 4-6 of byte 2.
    EXPECT_EQ(result.hex, "F0 0F 8F 5A");
}

TEST(CodecEncode_Constants, FillThemselvesAndMayBeOverridden) {
    const auto ecu = SpeedEcu(1.0);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "1")}).hex, "2E 00 01 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "1"), EncodeValue::Text("SID", "0x2F")}).hex,
              "2F 00 01 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Speed", "1"), EncodeValue::Text("Pad", "FF")}).hex,
              "2E 00 01 FF");
}

TEST(CodecEncode_Constants, AConstantWithoutAnImageCannotFillItself) {
    const auto ecu = EcuWith({{"B", 0, 8, "bcd", "CONST", "12"}});
    const Encoded result = EncodeWith(*ecu, {});
    EXPECT_EQ(result.error.problem, CodecProblem::BadConstant);
    EXPECT_EQ(result.error.message, "parameter 'B': has a CONST value without a fitting byte image: '12'");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("B", "12", true)}).hex, "12");
}

TEST(CodecEncode_Table, TextGivesTheEntrysValue) {
    auto ecu = EcuWith({{"Mode", 0, 8, "unsigned", "", "", "Mode_ValueTable"}});
    IConversionContainer* conversions = ecu->GetConversionContainer();
    conversions->AddConversion("Mode_ValueTable", 2, 1.0, 0.0);
    conversions->GetConversion("Mode_ValueTable")->AddTextTableElement("0x10", "sixteen");
    conversions->GetConversion("Mode_ValueTable")->AddTextTableElement("x", "not a number");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Mode", "sixteen")}).hex, "10");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Mode", "seventeen")}).error.message,
              "parameter 'Mode': has no table entry with the text 'seventeen'");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Mode", "not a number")}).error.problem,
              CodecProblem::BadValue);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Number("Mode", 16)}).error.problem, CodecProblem::BadValue);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("Mode", "17", true)}).hex, "11");
}

TEST(CodecEncode_Types, SignedRangeIsTwosComplementOfTheLength) {
    const auto ecu = EcuWith({{"S", 0, 4, "signed", ""}});
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("S", "-8", true)}).hex, "08");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("S", "7", true)}).hex, "07");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("S", "8", true)}).error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("S", "-9", true)}).error.problem, CodecProblem::OutOfRange);
}

TEST(CodecEncode_Types, BcdDigitsMustFit) {
    const auto ecu = EcuWith({{"B", 0, 8, "bcd", ""}});
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("B", "99")}).hex, "99");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("B", "100")}).error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("B", "-1")}).error.problem, CodecProblem::OutOfRange);
}

TEST(CodecEncode_Types, TextsAndBytesMustFitAndBeOfTheirForm) {
    const auto ecu =
        EcuWith({{"A", 0, 24, "ascii", ""}, {"N", 24, 16, "none", ""}, {"U", 40, 32, "ucs2", ""}});
    const auto encode = [&](const std::string& a, const std::string& n, const std::string& u) {
        return EncodeWith(*ecu,
                          {EncodeValue::Text("A", a), EncodeValue::Text("N", n), EncodeValue::Text("U", u)});
    };
    EXPECT_EQ(encode("ab", "12", "\xC3\xA4").hex, "61 62 00 00 12 E4 00 00 00");
    EXPECT_EQ(encode("abcd", "12", "a").error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(encode("abc", "123456", "a").error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(encode("abc", "XY", "a").error.message, "parameter 'N': is not hex bytes: 'XY'");
    EXPECT_EQ(encode("abc", "12", "\xFF").error.problem, CodecProblem::BadValue);
    EXPECT_EQ(encode("abc", "12", "abc").error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Number("A", 1), EncodeValue::Text("N", "1"),
                                EncodeValue::Text("U", "")})
                  .error.problem,
              CodecProblem::BadValue);
}

TEST(CodecEncode_Types, RealsAndTheirLimits) {
    const auto ecu = EcuWith({{"F", 0, 32, "fp", "MOTOROLA"}});
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("F", "-2.5")}).hex, "C0 20 00 00");
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("F", "1e39")}).error.problem, CodecProblem::OutOfRange);
    EXPECT_EQ(EncodeWith(*ecu, {EncodeValue::Text("F", "nan")}).error.problem, CodecProblem::BadValue);
}

TEST(CodecEncode_Message, NoSuchMessage) {
    const auto ecu = SpeedEcu();
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    ByteBuffer message;
    CodecError error;
    EXPECT_FALSE(codec->Encode(0, MessageKindPosResponse, {}, message, error));
    EXPECT_EQ(error.problem, CodecProblem::NoSuchMessage);
    EXPECT_FALSE(codec->Encode(9, MessageKindRequest, {}, message, error));
    EXPECT_EQ(error.problem, CodecProblem::NoSuchMessage);
}

TEST(CodecProblems, EveryProblemHasAText) {
    for (uint32_t value = 1; value <= static_cast<uint32_t>(CodecProblem::Failure); ++value) {
        EXPECT_STRNE(CodecProblemText(static_cast<CodecProblem>(value)), "") << value;
    }
    EXPECT_STREQ(CodecProblemText(CodecProblem::None), "");
    EXPECT_STREQ(CodecProblemText(static_cast<CodecProblem>(999)), "");
    EXPECT_STREQ(CodecProblemText(CodecProblem::ConstMismatch), "constant mismatch");
    EXPECT_TRUE(IsCodecWarning(CodecProblem::UnknownConversion));
    EXPECT_FALSE(IsCodecWarning(CodecProblem::NoTableEntry));
}

}  // namespace
