#include "model/ZDataModelUtilsImpl.h"

#include "common/GermanLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace Korvel {
namespace {

class DataModelUtils : public ::testing::Test {
protected:
    ZDataModelUtilsImpl utils;

    static ByteBuffer Bytes(std::initializer_list<uint8_t> bytes) { return ByteBuffer(bytes); }

    static std::size_t CountOccurrences(const std::string& text, const std::string& word) {
        std::size_t count = 0;
        for (std::size_t pos = text.find(word); pos != std::string::npos; pos = text.find(word, pos + 1)) {
            ++count;
        }
        return count;
    }
};

// ---- hex strings -------------------------------------------------------------------------

TEST_F(DataModelUtils, IsHexString_AcceptsDigitsOfBothCases) {
    EXPECT_TRUE(utils.IsHexString("0123456789abcdefABCDEF"));
    EXPECT_TRUE(utils.IsHexString(std::string("a")));
}

TEST_F(DataModelUtils, IsHexString_RefusesNullEmptyAndOtherCharacters) {
    EXPECT_FALSE(utils.IsHexString(static_cast<const char*>(nullptr)));
    EXPECT_FALSE(utils.IsHexString(""));
    EXPECT_FALSE(utils.IsHexString(std::string()));
    EXPECT_FALSE(utils.IsHexString("12 34"));
    EXPECT_FALSE(utils.IsHexString("0x12"));
    EXPECT_FALSE(utils.IsHexString("g"));
}

TEST_F(DataModelUtils, HexStringToBytes_ReadsPrefixedPiecesAndPadsShortOnes) {
    ByteBuffer out;
    ASSERT_TRUE(utils.HexStringToBytes(out, "0x12 0x3"));
    EXPECT_EQ(out, Bytes({0x12, 0x03}));
}

TEST_F(DataModelUtils, HexStringToBytes_PutsZeroBeforeOddLengthText) {
    ByteBuffer out;
    ASSERT_TRUE(utils.HexStringToBytes(out, "ABC"));
    EXPECT_EQ(out, Bytes({0x0A, 0xBC}));
}

TEST_F(DataModelUtils, HexStringToBytes_ReadsSingleDigitPiecesAsBytes) {
    ByteBuffer out;
    ASSERT_TRUE(utils.HexStringToBytes(out, std::string("1 2 3")));
    EXPECT_EQ(out, Bytes({0x01, 0x02, 0x03}));
}

TEST_F(DataModelUtils, HexStringToBytes_FailsForPieceLongerThanTwoAndLeavesOutputAlone) {
    ByteBuffer out = Bytes({0x55});
    EXPECT_FALSE(utils.HexStringToBytes(out, "123 4"));
    EXPECT_FALSE(utils.HexStringToBytes(out, "1 234"));
    EXPECT_EQ(out, Bytes({0x55}));
}

TEST_F(DataModelUtils, HexStringToBytes_FailsForEmptyNullAndBarePrefix) {
    ByteBuffer out = Bytes({0x55});
    EXPECT_FALSE(utils.HexStringToBytes(out, ""));
    EXPECT_FALSE(utils.HexStringToBytes(out, std::string()));
    EXPECT_FALSE(utils.HexStringToBytes(out, static_cast<const char*>(nullptr)));
    EXPECT_FALSE(utils.HexStringToBytes(out, "0x"));
    EXPECT_EQ(out, Bytes({0x55}));
}

TEST_F(DataModelUtils, HexStringToBytes_RemovesPrefixRepeatedly) {
    ByteBuffer out;
    // Removing the inner "0x" leaves another one that is removed as well.
    ASSERT_TRUE(utils.HexStringToBytes(out, "00xx12"));
    EXPECT_EQ(out, Bytes({0x12}));
    ASSERT_TRUE(utils.HexStringToBytes(out, "0x120x34"));
    EXPECT_EQ(out, Bytes({0x12, 0x34}));
}

TEST_F(DataModelUtils, HexStringToBytes_KeepsUpperCasePrefixWhichThenFails) {
    ByteBuffer out;
    EXPECT_FALSE(utils.HexStringToBytes(out, "0X12"));
}

TEST_F(DataModelUtils, HexStringToBytes_SingleBlankSeparatedPieceKeepsBlankAndFails) {
    ByteBuffer out;
    // A trailing blank yields one piece only, so the text stays as it was.
    EXPECT_FALSE(utils.HexStringToBytes(out, "12 "));
}

TEST_F(DataModelUtils, HexStringToBytes_ReplacesPreviousContent) {
    ByteBuffer out = Bytes({1, 2, 3, 4});
    ASSERT_TRUE(utils.HexStringToBytes(out, "ff"));
    EXPECT_EQ(out, Bytes({0xFF}));
}

// ---- data type names ----------------------------------------------------------------------

TEST_F(DataModelUtils, DataTypeFromName_LooksAtFirstTwoCharactersOnly) {
    EXPECT_EQ(utils.DataTypeFromName("ascii"), ParamDataType::Ascii);
    EXPECT_EQ(utils.DataTypeFromName("bcd"), ParamDataType::Bcd);
    EXPECT_EQ(utils.DataTypeFromName("double"), ParamDataType::Double);
    EXPECT_EQ(utils.DataTypeFromName("fp"), ParamDataType::Fp);
    EXPECT_EQ(utils.DataTypeFromName("float"), ParamDataType::Fp);
    EXPECT_EQ(utils.DataTypeFromName("none"), ParamDataType::None);
    EXPECT_EQ(utils.DataTypeFromName("signed"), ParamDataType::Signed);
    EXPECT_EQ(utils.DataTypeFromName("ucs2"), ParamDataType::Ucs2);
    EXPECT_EQ(utils.DataTypeFromName("unsigned"), ParamDataType::Unsigned);
    EXPECT_EQ(utils.DataTypeFromName("utf8"), ParamDataType::Utf8);
    EXPECT_EQ(utils.DataTypeFromName("sausage"), ParamDataType::Signed);
}

TEST_F(DataModelUtils, DataTypeFromName_ReadsUndefinedAsUnsigned) {
    EXPECT_EQ(utils.DataTypeFromName("undefined"), ParamDataType::Unsigned);
}

TEST_F(DataModelUtils, DataTypeFromName_GivesUndefinedForUnknownNames) {
    EXPECT_EQ(utils.DataTypeFromName("Unsigned"), ParamDataType::Undefined);
    EXPECT_EQ(utils.DataTypeFromName(""), ParamDataType::Undefined);
    EXPECT_EQ(utils.DataTypeFromName(nullptr), ParamDataType::Undefined);
    EXPECT_EQ(utils.DataTypeFromName("u"), ParamDataType::Undefined);
    EXPECT_EQ(utils.DataTypeFromName("ux"), ParamDataType::Undefined);
    EXPECT_EQ(utils.DataTypeFromName("xml"), ParamDataType::Undefined);
}

TEST_F(DataModelUtils, DataTypeToName_NamesEveryType) {
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Undefined), "undefined");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::None), "none");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Unsigned), "unsigned");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Signed), "signed");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Bcd), "bcd");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Fp), "fp");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Double), "double");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Ascii), "ascii");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Ucs2), "ucs2");
    EXPECT_EQ(utils.DataTypeToName(ParamDataType::Utf8), "utf8");
}

TEST_F(DataModelUtils, DataTypeToName_GivesEmptyTextForUnknownValue) {
    EXPECT_EQ(utils.DataTypeToName(static_cast<ParamDataType>(9)), "");
    EXPECT_EQ(utils.DataTypeToName(static_cast<ParamDataType>(-2)), "");
}

TEST_F(DataModelUtils, TypeClasses_SortTypesAsDocumented) {
    for (int32_t value = -1; value <= 9; ++value) {
        const auto type = static_cast<ParamDataType>(value);
        EXPECT_EQ(utils.IsTextType(type), value == 6 || value == 7 || value == 8) << value;
        EXPECT_EQ(utils.IsNumericType(type), value == 1 || value == 2 || value == 4 || value == 5) << value;
        EXPECT_EQ(utils.IsNoneType(type), value == 0) << value;
    }
}

// ---- conversion names ---------------------------------------------------------------------

TEST_F(DataModelUtils, MakeConversionName_AppendsSuffixOfKind) {
    EXPECT_EQ(utils.MakeConversionName("Temp", ConversionKind::ValueTable), "Temp_ValueTable");
    EXPECT_EQ(utils.MakeConversionName("Temp", ConversionKind::Formula), "Temp_Formula");
    EXPECT_EQ(utils.MakeConversionName("Temp", ConversionKind::Neither), "Temp");
    EXPECT_EQ(utils.MakeConversionName("Temp", ConversionKind::NotSet), "Temp");
    EXPECT_EQ(utils.MakeConversionName(nullptr, ConversionKind::Formula), "_Formula");
}

TEST_F(DataModelUtils, ConversionKindFromName_PrefersValueTableSuffixAnywhere) {
    EXPECT_EQ(utils.ConversionKindFromName("x_Formula_ValueTable"), ConversionKind::ValueTable);
    EXPECT_EQ(utils.ConversionKindFromName("a_ValueTable_b"), ConversionKind::ValueTable);
    EXPECT_EQ(utils.ConversionKindFromName("x_Formula"), ConversionKind::Formula);
    EXPECT_EQ(utils.ConversionKindFromName("x_formula"), ConversionKind::Neither);
    EXPECT_EQ(utils.ConversionKindFromName(""), ConversionKind::Neither);
    EXPECT_EQ(utils.ConversionKindFromName(nullptr), ConversionKind::Neither);
}

TEST_F(DataModelUtils, StripConversionSuffix_CutsAtFirstValueTableElseFormula) {
    EXPECT_EQ(utils.StripConversionSuffix("x_Formula_ValueTable"), "x_Formula");
    EXPECT_EQ(utils.StripConversionSuffix("x_ValueTable_Formula"), "x");
    EXPECT_EQ(utils.StripConversionSuffix("speed_Formula"), "speed");
    EXPECT_EQ(utils.StripConversionSuffix("plain"), "plain");
    EXPECT_EQ(utils.StripConversionSuffix(nullptr), "");
}

// ---- protocol names -----------------------------------------------------------------------

TEST_F(DataModelUtils, ProtocolFromName_IsKwpOnlyForTextContainingKwp) {
    EXPECT_EQ(utils.ProtocolFromName("KWP"), ProtocolKwp);
    EXPECT_EQ(utils.ProtocolFromName("xKWP2000"), ProtocolKwp);
    EXPECT_EQ(utils.ProtocolFromName("kwp"), ProtocolUds);
    EXPECT_EQ(utils.ProtocolFromName("uds"), ProtocolUds);
    EXPECT_EQ(utils.ProtocolFromName("UDS"), ProtocolUds);
    EXPECT_EQ(utils.ProtocolFromName(nullptr), ProtocolUds);
}

TEST_F(DataModelUtils, ProtocolToName_GivesUdsForEveryValueButOne) {
    EXPECT_EQ(utils.ProtocolToName(1), "KWP");
    EXPECT_EQ(utils.ProtocolToName(0), "UDS");
    EXPECT_EQ(utils.ProtocolToName(2), "UDS");
    EXPECT_EQ(utils.ProtocolToName(0xFFFFFFFFu), "UDS");
}

// ---- semantics ----------------------------------------------------------------------------

TEST_F(DataModelUtils, SemanticsFromString_FindsEachWordIndependently) {
    EXPECT_EQ(utils.SemanticsFromString("SID CONST MOTOROLA"), 13u);
    EXPECT_EQ(utils.SemanticsFromString("GAP,XID"), SemanticsGap | SemanticsXid);
    EXPECT_EQ(utils.SemanticsFromString("SID_NR"), SemanticsSid);
    EXPECT_EQ(utils.SemanticsFromString("sid"), 0u);
    EXPECT_EQ(utils.SemanticsFromString(""), 0u);
    EXPECT_EQ(utils.SemanticsFromString(nullptr), 0u);
}

TEST_F(DataModelUtils, SemanticsToString_WritesWordsInFixedOrderWithoutTrailingBlank) {
    EXPECT_EQ(utils.SemanticsToString(13), "SID CONST MOTOROLA");
    EXPECT_EQ(utils.SemanticsToString(31), "SID XID CONST MOTOROLA GAP");
    EXPECT_EQ(utils.SemanticsToString(SemanticsGap), "GAP");
    EXPECT_EQ(utils.SemanticsToString(SemanticsXid), "XID");
    EXPECT_EQ(utils.SemanticsToString(0), "");
    EXPECT_EQ(utils.SemanticsToString(0xFFFFFFE0u), "");
}

TEST_F(DataModelUtils, SemanticsBitTests_ReadOneBitEach) {
    EXPECT_TRUE(utils.IsSid(1));
    EXPECT_TRUE(utils.IsXid(2));
    EXPECT_TRUE(utils.IsConst(4));
    EXPECT_TRUE(utils.IsMotorola(8));
    EXPECT_TRUE(utils.IsGap(16));
    EXPECT_FALSE(utils.IsSid(30));
    EXPECT_FALSE(utils.IsXid(29));
    EXPECT_FALSE(utils.IsConst(27));
    EXPECT_FALSE(utils.IsMotorola(23));
    EXPECT_FALSE(utils.IsGap(15));
}

TEST_F(DataModelUtils, SemanticsWordTests_AreCaseSensitiveSubstringSearches) {
    EXPECT_TRUE(utils.HasSid("xSIDx"));
    EXPECT_TRUE(utils.HasXid("XID"));
    EXPECT_TRUE(utils.HasConst("NOCONSTANT"));
    EXPECT_TRUE(utils.HasMotorola("A MOTOROLA"));
    EXPECT_TRUE(utils.HasGap("GAP"));
    EXPECT_FALSE(utils.HasMotorola("motorola"));
    EXPECT_FALSE(utils.HasConst("Const"));
    EXPECT_FALSE(utils.HasGap(nullptr));
    EXPECT_FALSE(utils.HasSid(nullptr));
    EXPECT_FALSE(utils.HasXid(""));
}

// ---- number parsing -----------------------------------------------------------------------

TEST_F(DataModelUtils, ParseInt32_DetectsBaseAndIgnoresTrailingText) {
    int32_t value = 0;
    ASSERT_TRUE(utils.ParseInt32("0x1F", value));
    EXPECT_EQ(value, 31);
    ASSERT_TRUE(utils.ParseInt32("017", value));
    EXPECT_EQ(value, 15);
    ASSERT_TRUE(utils.ParseInt32("-42", value));
    EXPECT_EQ(value, -42);
    ASSERT_TRUE(utils.ParseInt32("12abc", value));
    EXPECT_EQ(value, 12);
}

TEST_F(DataModelUtils, ParseInt32_ChecksRange) {
    int32_t value = 7;
    ASSERT_TRUE(utils.ParseInt32("2147483647", value));
    EXPECT_EQ(value, 2147483647);
    ASSERT_TRUE(utils.ParseInt32("-2147483648", value));
    EXPECT_EQ(value, std::numeric_limits<int32_t>::min());
    value = 7;
    EXPECT_FALSE(utils.ParseInt32("2147483648", value));
    EXPECT_FALSE(utils.ParseInt32("-2147483649", value));
    EXPECT_FALSE(utils.ParseInt32("0x80000000", value));
    EXPECT_FALSE(utils.ParseInt32("99999999999999999999999", value));
    EXPECT_EQ(value, 7);
}

TEST_F(DataModelUtils, ParseInt32_FailsForNullAndEmpty) {
    int32_t value = 7;
    EXPECT_FALSE(utils.ParseInt32(nullptr, value));
    EXPECT_FALSE(utils.ParseInt32("", value));
    EXPECT_EQ(value, 7);
}

TEST_F(DataModelUtils, ParseUInt32_AcceptsFullUnsignedRange) {
    uint32_t value = 0;
    ASSERT_TRUE(utils.ParseUInt32("4294967295", value));
    EXPECT_EQ(value, 4294967295u);
    ASSERT_TRUE(utils.ParseUInt32("0xFFFFFFFF", value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    ASSERT_TRUE(utils.ParseUInt32("010", value));
    EXPECT_EQ(value, 8u);
    ASSERT_TRUE(utils.ParseUInt32("5 apples", value));
    EXPECT_EQ(value, 5u);
}

TEST_F(DataModelUtils, ParseUInt32_RefusesMinusNullEmptyAndOverflow) {
    uint32_t value = 7;
    EXPECT_FALSE(utils.ParseUInt32("-1", value));
    EXPECT_FALSE(utils.ParseUInt32("-0", value));
    EXPECT_FALSE(utils.ParseUInt32(" -1", value));
    EXPECT_FALSE(utils.ParseUInt32("4294967296", value));
    EXPECT_FALSE(utils.ParseUInt32("0x100000000", value));
    EXPECT_FALSE(utils.ParseUInt32("18446744073709551616", value));
    EXPECT_FALSE(utils.ParseUInt32(nullptr, value));
    EXPECT_FALSE(utils.ParseUInt32("", value));
    EXPECT_EQ(value, 7u);
}

TEST_F(DataModelUtils, ParseFloatAndDouble_SucceedWithZeroForNonNumbers) {
    double d = 1;
    float f = 1;
    ASSERT_TRUE(utils.ParseDouble("abc", d));
    EXPECT_EQ(d, 0.0);
    ASSERT_TRUE(utils.ParseFloat("abc", f));
    EXPECT_EQ(f, 0.0f);
    ASSERT_TRUE(utils.ParseDouble("2.5e3xyz", d));
    EXPECT_EQ(d, 2500.0);
    ASSERT_TRUE(utils.ParseFloat("-1.25", f));
    EXPECT_EQ(f, -1.25f);
}

TEST_F(DataModelUtils, ParseFloatAndDouble_FailForNullAndEmpty) {
    double d = 1;
    float f = 1;
    EXPECT_FALSE(utils.ParseDouble(nullptr, d));
    EXPECT_FALSE(utils.ParseDouble("", d));
    EXPECT_FALSE(utils.ParseFloat(nullptr, f));
    EXPECT_FALSE(utils.ParseFloat("", f));
    EXPECT_EQ(d, 1.0);
    EXPECT_EQ(f, 1.0f);
}

// A program that sets a German locale (decimal comma) for its own output reads the same
// numbers: the documents always use a point.
TEST_F(DataModelUtils, ParseFloatAndDouble_ReadAPointUnderAGermanLocale) {
    TestSupport::GermanLocale german;
    ZEKL_REQUIRE_GERMAN_LOCALE(german);
    double d = 0;
    float f = 0;
    ASSERT_TRUE(utils.ParseDouble("0.5", d));
    EXPECT_EQ(d, 0.5);
    ASSERT_TRUE(utils.ParseFloat("-1.25", f));
    EXPECT_EQ(f, -1.25f);
    ASSERT_TRUE(utils.ParseDouble("0x1.8p1", d));
    EXPECT_EQ(d, 3.0);
    // A comma is no decimal point of the format, whatever the locale says.
    ASSERT_TRUE(utils.ParseDouble("1,5", d));
    EXPECT_EQ(d, 1.0);
    ByteBuffer buffer;
    ASSERT_TRUE(utils.ValueToBytes("0.5", ParamDataType::Double, 8, buffer));
    EXPECT_EQ(buffer, Bytes({0x3F, 0xE0, 0, 0, 0, 0, 0, 0}));
    ByteBuffer single;
    ASSERT_TRUE(utils.ValueToBytes("2.5", ParamDataType::Fp, 4, single));
    EXPECT_EQ(single, Bytes({0x40, 0x20, 0, 0}));
}

// ---- byte images --------------------------------------------------------------------------

TEST_F(DataModelUtils, DoubleToBytes_WritesBigEndianIeeeImage) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.DoubleToBytes(1.0, buffer));
    EXPECT_EQ(buffer, Bytes({0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(DataModelUtils, FloatToBytes_WritesBigEndianIeeeImageAndNeverShrinks) {
    ByteBuffer buffer(6, 0xAA);
    ASSERT_TRUE(utils.FloatToBytes(1.0f, buffer));
    EXPECT_EQ(buffer, Bytes({0x3F, 0x80, 0, 0, 0xAA, 0xAA}));
}

TEST_F(DataModelUtils, UInt32ToBytes_WritesLowBytesBigEndianAtFront) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.UInt32ToBytes(0x12345678u, buffer, 4));
    EXPECT_EQ(buffer, Bytes({0x12, 0x34, 0x56, 0x78}));
    ByteBuffer longer(4, 0xAA);
    ASSERT_TRUE(utils.UInt32ToBytes(0x12345678u, longer, 2));
    EXPECT_EQ(longer, Bytes({0x56, 0x78, 0xAA, 0xAA}));
}

TEST_F(DataModelUtils, Int32ToBytes_WritesTwosComplementTruncated) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.Int32ToBytes(-2, buffer, 3));
    EXPECT_EQ(buffer, Bytes({0xFF, 0xFF, 0xFE}));
}

TEST_F(DataModelUtils, IntegerToBytes_RefusesCountZeroAndAboveFour) {
    ByteBuffer buffer = Bytes({1});
    EXPECT_FALSE(utils.UInt32ToBytes(1, buffer, 0));
    EXPECT_FALSE(utils.Int32ToBytes(1, buffer, 0));
    EXPECT_FALSE(utils.UInt32ToBytes(1, buffer, 5));
    EXPECT_FALSE(utils.Int32ToBytes(1, buffer, 8));
    EXPECT_EQ(buffer, Bytes({1}));
}

TEST_F(DataModelUtils, BytesToDoubleAndFloat_NeedExactSizes) {
    double d = 0;
    float f = 0;
    ASSERT_TRUE(utils.BytesToDouble(Bytes({0x3F, 0xF0, 0, 0, 0, 0, 0, 0}), d));
    EXPECT_EQ(d, 1.0);
    ASSERT_TRUE(utils.BytesToFloat(Bytes({0xC0, 0x20, 0, 0}), f));
    EXPECT_EQ(f, -2.5f);
    EXPECT_FALSE(utils.BytesToDouble(Bytes({0x3F, 0xF0, 0, 0}), d));
    EXPECT_FALSE(utils.BytesToFloat(Bytes({0, 0, 0, 0, 0}), f));
    EXPECT_FALSE(utils.BytesToFloat(ByteBuffer(), f));
}

TEST_F(DataModelUtils, BytesToDouble_RoundTripsDoubleToBytes) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.DoubleToBytes(-123.456, buffer));
    double d = 0;
    ASSERT_TRUE(utils.BytesToDouble(buffer, d));
    EXPECT_EQ(d, -123.456);
}

TEST_F(DataModelUtils, BytesToUInt32_ReadsOneToFourBytesBigEndian) {
    uint32_t value = 0;
    ASSERT_TRUE(utils.BytesToUInt32(Bytes({0xAB}), value));
    EXPECT_EQ(value, 0xABu);
    ASSERT_TRUE(utils.BytesToUInt32(Bytes({0x12, 0x34, 0x56}), value));
    EXPECT_EQ(value, 0x123456u);
    ASSERT_TRUE(utils.BytesToUInt32(Bytes({0xFF, 0xFF, 0xFF, 0xFF}), value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_FALSE(utils.BytesToUInt32(ByteBuffer(), value));
    EXPECT_FALSE(utils.BytesToUInt32(ByteBuffer(5, 0), value));
}

TEST_F(DataModelUtils, BytesToInt32_SignExtendsFromImageWidth) {
    int32_t value = 0;
    ASSERT_TRUE(utils.BytesToInt32(Bytes({0xFF, 0xFE}), value));
    EXPECT_EQ(value, -2);
    ASSERT_TRUE(utils.BytesToInt32(Bytes({0x80}), value));
    EXPECT_EQ(value, -128);
    ASSERT_TRUE(utils.BytesToInt32(Bytes({0x7F, 0xFF}), value));
    EXPECT_EQ(value, 32767);
    value = 9;
    EXPECT_FALSE(utils.BytesToInt32(ByteBuffer(5, 0xFF), value));
    EXPECT_FALSE(utils.BytesToInt32(ByteBuffer(), value));
    EXPECT_EQ(value, 9);
}

TEST_F(DataModelUtils, TextToBytes_CopiesCharactersToFrontAndGrows) {
    ByteBuffer buffer = Bytes({1, 2, 3, 4, 5});
    ASSERT_TRUE(utils.TextToBytes("ab", buffer));
    EXPECT_EQ(buffer, Bytes({'a', 'b', 3, 4, 5}));
    ByteBuffer small = Bytes({9});
    ASSERT_TRUE(utils.TextToBytes("xyz", small));
    EXPECT_EQ(small, Bytes({'x', 'y', 'z'}));
}

TEST_F(DataModelUtils, TextToBytes_AppendsZeroForEmptyTextAndFailsForNull) {
    ByteBuffer buffer = Bytes({7});
    ASSERT_TRUE(utils.TextToBytes("", buffer));
    EXPECT_EQ(buffer, Bytes({7, 0}));
    EXPECT_FALSE(utils.TextToBytes(nullptr, buffer));
    EXPECT_EQ(buffer, Bytes({7, 0}));
}

// ---- ValueToBytes -------------------------------------------------------------------------

TEST_F(DataModelUtils, ValueToBytes_UnsignedChecksFitOfByteLength) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.ValueToBytes("255", ParamDataType::Unsigned, 1, buffer));
    EXPECT_EQ(buffer, Bytes({0xFF}));
    ByteBuffer other;
    EXPECT_FALSE(utils.ValueToBytes("256", ParamDataType::Unsigned, 1, other));
    EXPECT_FALSE(utils.ValueToBytes("65536", ParamDataType::Unsigned, 2, other));
    EXPECT_FALSE(utils.ValueToBytes("16777216", ParamDataType::Unsigned, 3, other));
    EXPECT_FALSE(utils.ValueToBytes("-1", ParamDataType::Unsigned, 4, other));
    ASSERT_TRUE(utils.ValueToBytes("0x123456", ParamDataType::Unsigned, 3, other));
    EXPECT_EQ(other, Bytes({0x12, 0x34, 0x56}));
    ByteBuffer wide;
    ASSERT_TRUE(utils.ValueToBytes("4294967295", ParamDataType::Unsigned, 4, wide));
    EXPECT_EQ(wide, Bytes({0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(DataModelUtils, ValueToBytes_UnsignedRefusesLengthsBeyondFourBytes) {
    ByteBuffer buffer;
    EXPECT_FALSE(utils.ValueToBytes("1", ParamDataType::Unsigned, 5, buffer));
}

TEST_F(DataModelUtils, ValueToBytes_SignedChecksUpperBoundOnly) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.ValueToBytes("-5", ParamDataType::Signed, 1, buffer));
    EXPECT_EQ(buffer, Bytes({0xFB}));
    ByteBuffer other;
    EXPECT_FALSE(utils.ValueToBytes("200", ParamDataType::Signed, 1, other));
    EXPECT_FALSE(utils.ValueToBytes("32768", ParamDataType::Signed, 2, other));
    EXPECT_FALSE(utils.ValueToBytes("8388608", ParamDataType::Signed, 3, other));
    EXPECT_FALSE(utils.ValueToBytes("1", ParamDataType::Signed, 5, other));
    ByteBuffer low;
    ASSERT_TRUE(utils.ValueToBytes("-1000", ParamDataType::Signed, 1, low));
    EXPECT_EQ(low, Bytes({0x18}));
    ByteBuffer full;
    ASSERT_TRUE(utils.ValueToBytes("2147483647", ParamDataType::Signed, 4, full));
    EXPECT_EQ(full, Bytes({0x7F, 0xFF, 0xFF, 0xFF}));
}

TEST_F(DataModelUtils, ValueToBytes_NoneReadsHexAndGrowsToLength) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.ValueToBytes("0x12 0x34", ParamDataType::None, 4, buffer));
    EXPECT_EQ(buffer, Bytes({0x12, 0x34, 0, 0}));
    ByteBuffer longer;
    ASSERT_TRUE(utils.ValueToBytes("112233", ParamDataType::None, 1, longer));
    EXPECT_EQ(longer, Bytes({0x11, 0x22, 0x33}));
    ByteBuffer bad = Bytes({5});
    EXPECT_FALSE(utils.ValueToBytes("xyz", ParamDataType::None, 1, bad));
    EXPECT_EQ(bad, Bytes({5}));
}

TEST_F(DataModelUtils, ValueToBytes_FpAndDoubleWriteFixedSizeImages) {
    ByteBuffer fp;
    ASSERT_TRUE(utils.ValueToBytes("1", ParamDataType::Fp, 1, fp));
    EXPECT_EQ(fp, Bytes({0x3F, 0x80, 0, 0}));
    ByteBuffer dbl;
    ASSERT_TRUE(utils.ValueToBytes("1", ParamDataType::Double, 2, dbl));
    EXPECT_EQ(dbl, Bytes({0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(utils.ValueToBytes("", ParamDataType::Fp, 4, fp));
    EXPECT_FALSE(utils.ValueToBytes("", ParamDataType::Double, 8, dbl));
}

TEST_F(DataModelUtils, ValueToBytes_AsciiPadsWithZerosAndRefusesLongerText) {
    ByteBuffer buffer;
    ASSERT_TRUE(utils.ValueToBytes("abc", ParamDataType::Ascii, 5, buffer));
    EXPECT_EQ(buffer, Bytes({'a', 'b', 'c', 0, 0}));
    ByteBuffer other;
    EXPECT_FALSE(utils.ValueToBytes("abcdef", ParamDataType::Ascii, 5, other));
    EXPECT_TRUE(other.empty());
}

TEST_F(DataModelUtils, ValueToBytes_FailsForZeroLengthAndUnsupportedTypes) {
    ByteBuffer buffer;
    EXPECT_FALSE(utils.ValueToBytes("1", ParamDataType::Unsigned, 0, buffer));
    EXPECT_FALSE(utils.ValueToBytes("12", ParamDataType::Bcd, 1, buffer));
    EXPECT_FALSE(utils.ValueToBytes("0", ParamDataType::Bcd, 4, buffer));
    EXPECT_FALSE(utils.ValueToBytes("a", ParamDataType::Ucs2, 4, buffer));
    EXPECT_FALSE(utils.ValueToBytes("a", ParamDataType::Utf8, 4, buffer));
    EXPECT_FALSE(utils.ValueToBytes("1", ParamDataType::Undefined, 4, buffer));
    EXPECT_FALSE(utils.ValueToBytes("1", static_cast<ParamDataType>(42), 4, buffer));
    EXPECT_TRUE(buffer.empty());
}

// ---- ValueToUInt32 ------------------------------------------------------------------------

TEST_F(DataModelUtils, ValueToUInt32_NoneReadsHexInMotorolaOrIntelOrder) {
    uint32_t value = 0;
    ASSERT_TRUE(utils.ValueToUInt32("12 34", ParamDataType::None, true, value));
    EXPECT_EQ(value, 0x1234u);
    ASSERT_TRUE(utils.ValueToUInt32("12 34", ParamDataType::None, false, value));
    EXPECT_EQ(value, 0x3412u);
    value = 7;
    EXPECT_FALSE(utils.ValueToUInt32("1122334455", ParamDataType::None, true, value));
    EXPECT_FALSE(utils.ValueToUInt32("zz", ParamDataType::None, true, value));
    EXPECT_EQ(value, 7u);
}

TEST_F(DataModelUtils, ValueToUInt32_SignedUsesUnsignedRule) {
    uint32_t value = 0;
    ASSERT_TRUE(utils.ValueToUInt32("0x10", ParamDataType::Signed, false, value));
    EXPECT_EQ(value, 16u);
    ASSERT_TRUE(utils.ValueToUInt32("4294967295", ParamDataType::Unsigned, false, value));
    EXPECT_EQ(value, 4294967295u);
    EXPECT_FALSE(utils.ValueToUInt32("-1", ParamDataType::Signed, false, value));
}

TEST_F(DataModelUtils, ValueToUInt32_TruncatesFloatingValuesTowardZero) {
    uint32_t value = 0;
    ASSERT_TRUE(utils.ValueToUInt32("3.9", ParamDataType::Fp, false, value));
    EXPECT_EQ(value, 3u);
    ASSERT_TRUE(utils.ValueToUInt32("4294967295.5", ParamDataType::Double, false, value));
    EXPECT_EQ(value, 4294967295u);
    ASSERT_TRUE(utils.ValueToUInt32("-0.5", ParamDataType::Double, false, value));
    EXPECT_EQ(value, 0u);
    EXPECT_FALSE(utils.ValueToUInt32("", ParamDataType::Fp, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("", ParamDataType::Double, false, value));
}

TEST_F(DataModelUtils, ValueToUInt32_FailsForFloatingValuesOutsideUnsignedRange) {
    uint32_t value = 7;
    EXPECT_FALSE(utils.ValueToUInt32("1e30", ParamDataType::Fp, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("4294967296", ParamDataType::Double, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("-1", ParamDataType::Double, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("nan", ParamDataType::Double, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("inf", ParamDataType::Fp, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("1e400", ParamDataType::Double, false, value));
    EXPECT_EQ(value, 7u);
}

TEST_F(DataModelUtils, ValueToUInt32_FailsForOtherTypes) {
    uint32_t value = 0;
    EXPECT_FALSE(utils.ValueToUInt32("1", ParamDataType::Bcd, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("1", ParamDataType::Ascii, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("1", ParamDataType::Ucs2, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("1", ParamDataType::Utf8, false, value));
    EXPECT_FALSE(utils.ValueToUInt32("1", ParamDataType::Undefined, false, value));
}

// ---- SplitString --------------------------------------------------------------------------

TEST_F(DataModelUtils, SplitString_KeepsEmptyInnerPiecesAndDropsTrailingOne) {
    EXPECT_EQ(utils.SplitString("a,,b,", ','), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(utils.SplitString(",a", ','), (std::vector<std::string>{"", "a"}));
    EXPECT_EQ(utils.SplitString("abc", ','), (std::vector<std::string>{"abc"}));
}

TEST_F(DataModelUtils, SplitString_GivesWholeTextWhenNoPieceResults) {
    EXPECT_EQ(utils.SplitString("", ','), (std::vector<std::string>{""}));
    EXPECT_EQ(utils.SplitString(",", ','), (std::vector<std::string>{""}));
}

// ---- empty documents ----------------------------------------------------------------------

TEST_F(DataModelUtils, CreateXmlForEmptyEcu_UdsWithoutTableIsSixtySixCharacters) {
    const std::string xml = utils.CreateXmlForEmptyEcu(0, false);
    EXPECT_EQ(xml, "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"UDS\"/>");
    EXPECT_EQ(xml.size(), 66u);
}

TEST_F(DataModelUtils, CreateXmlForEmptyEcu_KwpWithoutTable) {
    EXPECT_EQ(utils.CreateXmlForEmptyEcu(1, false),
              "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"KWP\"/>");
}

TEST_F(DataModelUtils, CreateXmlForEmptyEcu_KwpTableHasTwentyFourCodesAndCrLfLines) {
    const std::string xml = utils.CreateXmlForEmptyEcu(1, true);
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"KWP\">\r\n"
        "<NEGATIVE_RESPONSE_CODES>\r\n"
        "  <MAP nrc=\"16\" text=\"General reject\"/>\r\n"
        "  <MAP nrc=\"17\" text=\"Service not supported\"/>\r\n"
        "  <MAP nrc=\"18\" text=\"Sub-function not supported - invalid format\"/>\r\n";
    const std::string tail =
        "  <MAP nrc=\"121\" text=\"Incorrect Byte count during block transfer\"/>\r\n"
        "  <MAP nrc=\"128\" text=\"Service not supported in active session\"/>\r\n"
        "</NEGATIVE_RESPONSE_CODES>\r\n"
        "</ECU>";
    EXPECT_EQ(xml.substr(0, head.size()), head);
    ASSERT_GE(xml.size(), tail.size());
    EXPECT_EQ(xml.substr(xml.size() - tail.size()), tail);
    EXPECT_EQ(CountOccurrences(xml, "<MAP "), 24u);
    EXPECT_EQ(CountOccurrences(xml, "\r\n"), 27u);
    EXPECT_EQ(CountOccurrences(xml, "\n"), 27u);
    EXPECT_NE(xml.find("  <MAP nrc=\"51\" text=\"Security access denied - security access requested\"/>\r\n"),
              std::string::npos);
}

TEST_F(DataModelUtils, CreateXmlForEmptyEcu_UdsTableIsExactByteForByte) {
    const std::string expected =
        "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"UDS\">\r\n"
        "<NEGATIVE_RESPONSE_CODES>\r\n"
        "  <MAP nrc=\"16\" text=\"General reject\"/>\r\n"
        "  <MAP nrc=\"17\" text=\"Service not supported\"/>\r\n"
        "  <MAP nrc=\"18\" text=\"Sub-function not supported\"/>\r\n"
        "  <MAP nrc=\"19\" text=\"Incorrect Message Length or Invalid Format\"/>\r\n"
        "  <MAP nrc=\"20\" text=\"Response too long\"/>\r\n"
        "  <MAP nrc=\"33\" text=\"Busy - repeat request\"/>\r\n"
        "  <MAP nrc=\"34\" text=\"Conditions not correct\"/>\r\n"
        "  <MAP nrc=\"36\" text=\"Request Sequence Error\"/>\r\n"
        "  <MAP nrc=\"37\" text=\"No response from subnet component\"/>\r\n"
        "  <MAP nrc=\"38\" text=\"Failure prevents execution of requested action\"/>\r\n"
        "  <MAP nrc=\"49\" text=\"Request out of range\"/>\r\n"
        "  <MAP nrc=\"51\" text=\"Security access denied\"/>\r\n"
        "  <MAP nrc=\"53\" text=\"Invalid key\"/>\r\n"
        "  <MAP nrc=\"54\" text=\"Exceed number of attempts\"/>\r\n"
        "  <MAP nrc=\"55\" text=\"Required time delay not expired\"/>\r\n"
        "  <MAP nrc=\"112\" text=\"Upload Download not accepted\"/>\r\n"
        "  <MAP nrc=\"113\" text=\"Transfer suspended\"/>\r\n"
        "  <MAP nrc=\"114\" text=\"General Programming Failure\"/>\r\n"
        "  <MAP nrc=\"115\" text=\"Wrong Block Sequence Counter\"/>\r\n"
        "  <MAP nrc=\"120\" text=\"Request correctly received - response pending\"/>\r\n"
        "  <MAP nrc=\"126\" text=\"Sub-function not supported in active session\"/>\r\n"
        "  <MAP nrc=\"127\" text=\"Service not supported in active session\"/>\r\n"
        "  <MAP nrc=\"129\" text=\"RPM too high\"/>\r\n"
        "  <MAP nrc=\"130\" text=\"RPM too low\"/>\r\n"
        "  <MAP nrc=\"131\" text=\"Engine is running\"/>\r\n"
        "  <MAP nrc=\"132\" text=\"Engine is not running\"/>\r\n"
        "  <MAP nrc=\"133\" text=\"Engine Run time too low\"/>\r\n"
        "  <MAP nrc=\"134\" text=\"Temperature too high\"/>\r\n"
        "  <MAP nrc=\"135\" text=\"Temperature too low\"/>\r\n"
        "  <MAP nrc=\"136\" text=\"Vehicle speed too high\"/>\r\n"
        "  <MAP nrc=\"137\" text=\"Vehicle speed to low\"/>\r\n"
        "  <MAP nrc=\"138\" text=\"Throttle/Pedal too high\"/>\r\n"
        "  <MAP nrc=\"139\" text=\"Throttle/Pedal too low\"/>\r\n"
        "  <MAP nrc=\"140\" text=\"Transmission range not in neutral\"/>\r\n"
        "  <MAP nrc=\"141\" text=\"Transmission range not in gear\"/>\r\n"
        "  <MAP nrc=\"143\" text=\"Brake Switch(es) not closed\"/>\r\n"
        "  <MAP nrc=\"144\" text=\"Shifter level not in park\"/>\r\n"
        "  <MAP nrc=\"145\" text=\"Torque converter clutch locked\"/>\r\n"
        "  <MAP nrc=\"146\" text=\"Voltage too high\"/>\r\n"
        "  <MAP nrc=\"147\" text=\"Voltage too low\"/>\r\n"
        "</NEGATIVE_RESPONSE_CODES>\r\n"
        "</ECU>";
    EXPECT_EQ(utils.CreateXmlForEmptyEcu(0, true), expected);
    EXPECT_EQ(CountOccurrences(expected, "<MAP "), 40u);
}

TEST_F(DataModelUtils, CreateXmlForEmptyEcu_AnyProtocolButOneIsUds) {
    EXPECT_EQ(utils.CreateXmlForEmptyEcu(2, true), utils.CreateXmlForEmptyEcu(0, true));
    EXPECT_EQ(utils.CreateXmlForEmptyEcu(0xFFFFFFFFu, false), utils.CreateXmlForEmptyEcu(0, false));
}

}  // namespace
}  // namespace Korvel
