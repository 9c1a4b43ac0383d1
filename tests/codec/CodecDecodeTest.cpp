// Decoding by type, conversion and constant, and the problems a decode reports, on small
// descriptions built in memory.
#include "codec/CodecTestSupport.h"

#include <cmath>

namespace {

using namespace Korvel;
using codec_test::Bytes;
using codec_test::EcuWith;
using codec_test::Hex;
using codec_test::Param;
using codec_test::ParamSpec;

// A decoded message with the codec it points into (its ids, units and texts live there).
struct Decoded {
    std::unique_ptr<ICodec> codec;
    DecodedMessage message;
};

Decoded DecodeWith(const IEcu& ecu, const std::string& hex) {
    Decoded decoded;
    decoded.codec = CreateCodec(ecu);
    const std::vector<uint8_t> data = Bytes(hex);
    decoded.codec->Decode(0, MessageKindRequest, data.data(), data.size(), decoded.message);
    return decoded;
}

const DecodedParam& Param(const Decoded& decoded, const std::string& id) {
    return codec_test::Param(decoded.message, id);
}

void AddTable(IEcu& ecu, const char* id, const std::vector<std::pair<const char*, const char*>>& entries) {
    IConversionContainer* conversions = ecu.GetConversionContainer();
    conversions->AddConversion(id, static_cast<uint32_t>(ConversionKind::Formula), 1.0, 0.0);
    for (const auto& entry : entries) {
        conversions->GetConversion(id)->AddTextTableElement(entry.first, entry.second);
    }
}

TEST(CodecDecode_Bcd, BadDigitIsReportedWithTheBitsAsHex) {
    const auto ecu = EcuWith({{"Date", 0, 16, "bcd", "MOTOROLA"}});
    const Decoded decoded = DecodeWith(*ecu, "12 3A");
    const DecodedParam& date = Param(decoded, "Date");
    EXPECT_EQ(date.problem, CodecProblem::BadBcdDigit);
    EXPECT_EQ(date.rawKind, CodecValueKind::Bytes);
    EXPECT_EQ(Hex(date.bytes), "12 3A");
    EXPECT_EQ(decoded.message.errorCount, 1u);
}

TEST(CodecDecode_Bcd, GoodDigitsGiveTheDecimalNumberAndItsFormula) {
    const auto ecu = EcuWith({{"Count", 0, 16, "bcd", "MOTOROLA", "", "Count_Formula", "pcs"}});
    ecu->GetConversionContainer()->AddConversion("Count_Formula", 1, 2.0, 1.0);
    const Decoded decoded = DecodeWith(*ecu, "09 87");
    const DecodedParam& count = Param(decoded, "Count");
    EXPECT_EQ(count.unsignedValue, 987u);
    EXPECT_DOUBLE_EQ(count.physical, 1975.0);
    EXPECT_STREQ(count.unit, "pcs");
}

TEST(CodecDecode_Signed, FormulaAppliesToTheSignedValue) {
    const auto ecu = EcuWith({{"T", 0, 8, "signed", "", "", "T_Formula", "degC"}});
    ecu->GetConversionContainer()->AddConversion("T_Formula", 1, 0.5, 10.0);
    const Decoded decoded = DecodeWith(*ecu, "F6");
    const DecodedParam& t = Param(decoded, "T");
    EXPECT_EQ(t.signedValue, -10);
    EXPECT_DOUBLE_EQ(t.physical, 5.0);
}

TEST(CodecDecode_Real, FloatAndDoubleRawValues) {
    const auto ecu = EcuWith({{"F", 0, 32, "fp", "MOTOROLA"}, {"D", 32, 64, "double", ""}});
    const Decoded decoded = DecodeWith(*ecu, "C0 20 00 00 00 00 00 00 00 00 F0 3F");
    EXPECT_DOUBLE_EQ(Param(decoded, "F").realValue, -2.5);
    EXPECT_DOUBLE_EQ(Param(decoded, "D").realValue, 1.0);
    EXPECT_DOUBLE_EQ(Param(decoded, "D").physical, 1.0);
}

TEST(CodecDecode_Text, AsciiPaddingIsCutAndUcs2BecomesUtf8) {
    const auto ecu = EcuWith({{"A", 0, 48, "ascii", ""}, {"U", 48, 48, "ucs2", "MOTOROLA"}});
    const Decoded decoded = DecodeWith(*ecu, "48 69 00 00 00 00  00 C4 D8 3D DE 00");
    EXPECT_EQ(Param(decoded, "A").text, "Hi");
    EXPECT_EQ(Hex(Param(decoded, "A").bytes), "48 69 00 00 00 00");
    // U+00C4 and the pair D83D DE00 (U+1F600).
    EXPECT_EQ(Param(decoded, "U").text, "\xC3\x84\xF0\x9F\x98\x80");
}

TEST(CodecDecode_Text, UnpairedSurrogateBecomesTheReplacementCharacter) {
    const auto ecu = EcuWith({{"U", 0, 32, "ucs2", ""}});
    EXPECT_EQ(Param(DecodeWith(*ecu, "3D D8 41 00"), "U").text,
              "\xEF\xBF\xBD"
              "A");
}

TEST(CodecDecode_Type, UndefinedReadsAsUnsignedLikeTheModel) {
    const auto ecu = EcuWith({{"P", 0, 8, "undefined", ""}});
    const Decoded decoded = DecodeWith(*ecu, "2A");
    const DecodedParam& p = Param(decoded, "P");
    EXPECT_EQ(p.type, ParamDataType::Unsigned);
    EXPECT_EQ(p.unsignedValue, 42u);
}

TEST(CodecDecode_Type, UnknownTypeNameIsAProblemOfTheParameter) {
    const auto ecu = EcuWith({{"P", 0, 8, "Unsigned", ""}, {"Q", 8, 8, "unsigned", ""}});
    const Decoded decoded = DecodeWith(*ecu, "2A 2B");
    EXPECT_EQ(Param(decoded, "P").problem, CodecProblem::UnknownType);
    EXPECT_EQ(Param(decoded, "P").rawKind, CodecValueKind::None);
    EXPECT_EQ(Param(decoded, "Q").unsignedValue, 0x2Bu);
}

TEST(CodecDecode_Layout, LengthsATypeCannotHaveAreBadLayout) {
    const auto ecu = EcuWith({{"F", 0, 16, "fp", ""},
                              {"D", 16, 32, "double", ""},
                              {"B", 48, 6, "bcd", ""},
                              {"U", 56, 8, "ucs2", ""},
                              {"N", 64, 72, "unsigned", ""},
                              {"S", 140, 72, "ascii", ""},
                              {"Z", 220, 0, "unsigned", ""}});
    const Decoded decoded = DecodeWith(*ecu, std::string(3 * 40, '0'));
    for (const char* id : {"F", "D", "B", "U", "N", "S", "Z"}) {
        EXPECT_EQ(Param(decoded, id).problem, CodecProblem::BadLayout) << id;
    }
}

TEST(CodecDecode_Layout, AFieldBeyondTheLargestMessageIsRefusedNotAllocated) {
    const auto ecu = EcuWith({{"Far", 0xFFFFFF00u, 200, "none", ""}});
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const std::vector<uint8_t> data = Bytes("00");
    DecodedMessage decoded;
    EXPECT_FALSE(codec->Decode(0, MessageKindRequest, data.data(), data.size(), decoded));
    EXPECT_EQ(Param(decoded, "Far").problem, CodecProblem::BadLayout);
    ByteBuffer message;
    CodecError error;
    EXPECT_FALSE(codec->Encode(0, MessageKindRequest, {EncodeValue::Text("Far", "00")}, message, error));
    EXPECT_EQ(error.problem, CodecProblem::BadLayout);
    EXPECT_TRUE(message.empty());
}

TEST(CodecDecode_Table, NumbersMatchWhateverTheirBase) {
    for (const char* value : {"1", "01", "0x01", "0x1"}) {
        const auto ecu = EcuWith({{"P", 0, 8, "unsigned", "", "", "P_ValueTable"}});
        AddTable(*ecu, "P_ValueTable", {{"0", "zero"}, {value, "one"}});
        EXPECT_STREQ(Param(DecodeWith(*ecu, "01"), "P").tableText, "one") << value;
    }
}

TEST(CodecDecode_Table, NegativeEntriesMatchSignedValues) {
    const auto ecu = EcuWith({{"P", 0, 8, "signed", "", "", "P_ValueTable"}});
    AddTable(*ecu, "P_ValueTable", {{"-1", "minus one"}, {"255", "never"}});
    EXPECT_STREQ(Param(DecodeWith(*ecu, "FF"), "P").tableText, "minus one");
}

TEST(CodecDecode_Table, TextEntriesMatchExactly) {
    // "n/a" starts like no number, so it never matches raw 0 as the number rules would read it.
    const auto ecu = EcuWith(
        {{"P", 0, 8, "unsigned", "", "", "P_ValueTable"}, {"T", 8, 16, "ascii", "", "", "P_ValueTable"}});
    AddTable(*ecu, "P_ValueTable", {{"n/a", "not available"}, {"OK", "fine"}, {"7", "seven"}});
    const Decoded zero = DecodeWith(*ecu, "00 4F 4B");
    EXPECT_EQ(Param(zero, "P").problem, CodecProblem::NoTableEntry);
    EXPECT_STREQ(Param(zero, "T").tableText, "fine");
    EXPECT_STREQ(Param(DecodeWith(*ecu, "07 4F 4B"), "P").tableText, "seven");
}

TEST(CodecDecode_Table, ValuesBeyond32BitsMatchByTheirDecimalText) {
    const auto ecu = EcuWith({{"P", 0, 40, "unsigned", "MOTOROLA", "", "P_ValueTable"}});
    AddTable(*ecu, "P_ValueTable", {{"4294967296", "two to the 32"}});
    EXPECT_STREQ(Param(DecodeWith(*ecu, "01 00 00 00 00"), "P").tableText, "two to the 32");
}

TEST(CodecDecode_Table, TableChosenByItsEntriesEvenWhenTheReaderSaidFormula) {
    // The reader stores every conversion as a formula; its entries make it a table.
    const auto ecu = EcuWith({{"P", 0, 8, "unsigned", "", "", "Mode"}});
    AddTable(*ecu, "Mode", {{"3", "three"}});
    EXPECT_STREQ(Param(DecodeWith(*ecu, "03"), "P").tableText, "three");
}

TEST(CodecDecode_Conversion, FormulaOnTextIsNotApplicable) {
    const auto ecu = EcuWith({{"P", 0, 16, "ascii", "", "", "P_Formula"}});
    ecu->GetConversionContainer()->AddConversion("P_Formula", 1, 2.0, 0.0);
    const Decoded decoded = DecodeWith(*ecu, "41 42");
    const DecodedParam& p = Param(decoded, "P");
    EXPECT_EQ(p.problem, CodecProblem::ConversionNotApplicable);
    EXPECT_EQ(p.text, "AB");
}

TEST(CodecDecode_Constant, ValueWithoutAnImageIsABadConstant) {
    const auto ecu = EcuWith({{"B", 0, 8, "bcd", "CONST", "12"}, {"U", 8, 4, "unsigned", "CONST", "0x1F"}});
    const Decoded decoded = DecodeWith(*ecu, "12 0F");
    EXPECT_EQ(Param(decoded, "B").problem, CodecProblem::BadConstant);
    EXPECT_EQ(Param(decoded, "U").problem, CodecProblem::BadConstant);
    EXPECT_EQ(Param(decoded, "B").unsignedValue, 12u);
}

TEST(CodecDecode_Constant, NegativeSignedConstantFitsItsBits) {
    const auto ecu = EcuWith({{"S", 4, 4, "signed", "CONST", "-2"}});
    const Decoded good = DecodeWith(*ecu, "E0");
    EXPECT_EQ(Param(good, "S").problem, CodecProblem::None);
    EXPECT_EQ(Param(good, "S").signedValue, -2);
    EXPECT_EQ(Param(DecodeWith(*ecu, "F0"), "S").problem, CodecProblem::ConstMismatch);
}

TEST(CodecDecode_Constant, LongConstantComparesItsBytes) {
    const auto ecu = EcuWith({{"Tag", 0, 80, "ascii", "CONST MOTOROLA", "ZeKL"}});
    EXPECT_EQ(Param(DecodeWith(*ecu, "5A 65 4B 4C 00 00 00 00 00 00"), "Tag").problem, CodecProblem::None);
    EXPECT_EQ(Param(DecodeWith(*ecu, "5A 65 4B 4D 00 00 00 00 00 00"), "Tag").problem,
              CodecProblem::ConstMismatch);
}

TEST(CodecDecode_Message, NoSuchMessageForABadInstanceOrKind) {
    const auto ecu = EcuWith({{"P", 0, 8, "unsigned", ""}});
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const std::vector<uint8_t> data = Bytes("01");
    DecodedMessage decoded;
    EXPECT_FALSE(codec->Decode(5, MessageKindRequest, data.data(), data.size(), decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::NoSuchMessage);
    EXPECT_FALSE(codec->Decode(0, MessageKindPosResponse, data.data(), data.size(), decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::NoSuchMessage);
    EXPECT_FALSE(codec->Decode(0, 7, data.data(), data.size(), decoded));
    EXPECT_FALSE(codec->Decode(0, MessageKindRequest, nullptr, 0, decoded));
    EXPECT_EQ(decoded.problem, CodecProblem::ShortData);
}

TEST(CodecDecode_Message, AnUndescribedNegativeResponseHasThePlainShape) {
    const auto ecu = EcuWith({{"SID", 0, 8, "unsigned", "SID CONST", "0x31"}});
    ecu->GetNrcContainer()->AddNrc(0x12, "Sub-function not supported");
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    EXPECT_FALSE(codec->HasMessage(0, MessageKindNegResponse));
    const std::vector<uint8_t> data = Bytes("7F 31 12");
    DecodedMessage decoded;
    EXPECT_TRUE(codec->Decode(0, MessageKindNegResponse, data.data(), data.size(), decoded));
    ASSERT_EQ(decoded.params.size(), 3u);
    EXPECT_STREQ(decoded.params[0].id, "SID_NR");
    EXPECT_STREQ(decoded.params[2].id, "NRC");
    EXPECT_EQ(decoded.params[2].unsignedValue, 0x12u);
    EXPECT_STREQ(decoded.nrcText, "Sub-function not supported");
    ByteBuffer encoded;
    CodecError error;
    ASSERT_TRUE(codec->Encode(0, MessageKindNegResponse, {EncodeValue::Text("NRC", "0x12")}, encoded, error))
        << error.message;
    EXPECT_EQ(Hex(encoded), "7F 31 12");
    const std::vector<uint8_t> wrong = Bytes("7E 31 12");
    EXPECT_FALSE(codec->Decode(0, MessageKindNegResponse, wrong.data(), wrong.size(), decoded));
    EXPECT_EQ(decoded.params[0].problem, CodecProblem::ConstMismatch);
}

TEST(CodecDecode_Message, ResultStorageIsReusedAcrossMessagesOfDifferentShapes) {
    const auto ecu = EcuWith({{"A", 0, 16, "ascii", ""}, {"B", 16, 8, "unsigned", ""}});
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    DecodedMessage decoded;
    const std::vector<uint8_t> full = Bytes("41 42 07");
    const std::vector<uint8_t> shorter = Bytes("41");
    ASSERT_TRUE(codec->Decode(0, MessageKindRequest, full.data(), full.size(), decoded));
    EXPECT_FALSE(codec->Decode(0, MessageKindRequest, shorter.data(), shorter.size(), decoded));
    // Nothing of the earlier message is left in the parameters that could not be read.
    EXPECT_TRUE(decoded.params[0].text.empty());
    EXPECT_EQ(decoded.params[1].rawKind, CodecValueKind::None);
    EXPECT_EQ(decoded.params[1].unsignedValue, 0u);
}

TEST(CodecSnapshot, EditingTheModelAfterwardsDoesNotChangeTheCodec) {
    auto ecu = EcuWith({{"P", 0, 8, "unsigned", "", "", "P_Formula", "V"}});
    ecu->GetConversionContainer()->AddConversion("P_Formula", 1, 0.5, 0.0);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    ecu->GetConversionContainer()->GetConversion("P_Formula")->SetFactor(100.0);
    ecu->GetInstanceContainer()->GetInstance("I")->GetRequest()->GetParam("P")->SetBitLength(16);
    ecu.reset();  // the codec keeps no reference to the model
    const std::vector<uint8_t> data = Bytes("0A");
    DecodedMessage decoded;
    ASSERT_TRUE(codec->Decode(0, MessageKindRequest, data.data(), data.size(), decoded));
    EXPECT_DOUBLE_EQ(decoded.params[0].physical, 5.0);
    EXPECT_STREQ(decoded.params[0].unit, "V");
    EXPECT_STREQ(codec->GetInstanceId(0), "I");
}

TEST(CodecLayout, BitOwnersShowFieldsGapsAndOverlaps) {
    const auto ecu = EcuWith(
        {{"A", 0, 8, "unsigned", ""}, {"B", 12, 8, "unsigned", "MOTOROLA"}, {"C", 20, 4, "unsigned", ""}});
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    MessageLayout layout;
    ASSERT_TRUE(codec->GetLayout(0, MessageKindRequest, layout));
    EXPECT_EQ(layout.length, 3u);
    ASSERT_EQ(layout.bitOwners.size(), 24u);
    ASSERT_EQ(layout.fields.size(), 3u);
    EXPECT_TRUE(layout.fields[1].motorola);
    // B (MOTOROLA, bit position 12, 8 bits) is the middle of bytes 1 and 2 read big-endian:
    // bits 0-3 of byte 1 and bits 4-7 of byte 2, where C (Intel, bit position 20) lies too.
    for (uint32_t bit = 0; bit < 8; ++bit) {
        EXPECT_EQ(layout.bitOwners[bit], 0) << bit;
        EXPECT_EQ(layout.bitOwners[8 + bit], bit < 4 ? 1 : LayoutBitFree) << bit;
        EXPECT_EQ(layout.bitOwners[16 + bit], bit < 4 ? LayoutBitFree : LayoutBitOverlap) << bit;
    }
    EXPECT_FALSE(codec->GetLayout(0, MessageKindPosResponse, layout));
    EXPECT_TRUE(layout.fields.empty());
}

}  // namespace
