#include "model/ZParam.h"

#include "model/RecordingVisitor.h"
#include "model/ZNrcItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <memory>
#include <string>
#include <typeinfo>

namespace Korvel {
namespace {

ZParam MakeParam(const char* value, const char* type, uint32_t bitLen, const char* semantics) {
    return ZParam("P", 0, bitLen, value, type, "", semantics, "");
}

TEST(Param_TextConstructor, KeepsEveryAttribute) {
    ZParam param("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    EXPECT_STREQ(param.GetId(), "Speed");
    EXPECT_EQ(param.GetBitPos(), 16u);
    EXPECT_EQ(param.GetBitLength(), 8u);
    EXPECT_STREQ(param.GetValue(), "0x12");
    EXPECT_STREQ(param.GetDataTypeName(), "unsigned");
    EXPECT_STREQ(param.GetUnit(), "km/h");
    EXPECT_STREQ(param.GetSemantics(), "CONST");
    EXPECT_STREQ(param.GetConvId(), "Speed_Formula");
    EXPECT_FALSE(param.HasParent());
}

TEST(Param_TypedConstructor, StoresTypeAndFlagsAsTheirTexts) {
    ZParam param("SID", 0, 8, "10", ParamDataType::None, "", SemanticsSid | SemanticsConst, "");
    EXPECT_STREQ(param.GetDataTypeName(), "none");
    EXPECT_STREQ(param.GetSemantics(), "SID CONST");
    EXPECT_EQ(param.GetDataType(), ParamDataType::None);
}

TEST(Param_Setters, ChangeOneAttributeEach) {
    ZParam param("a", 1, 2, "v", "ascii", "u", "s", "c");
    param.SetId("b");
    param.SetBitPos(3);
    param.SetBitLength(4);
    param.SetValue("w");
    param.SetDataTypeName("signed");
    param.SetUnit("");
    param.SetSemantics("GAP");
    param.SetConvId("d");
    EXPECT_STREQ(param.GetId(), "b");
    EXPECT_EQ(param.GetBitPos(), 3u);
    EXPECT_EQ(param.GetBitLength(), 4u);
    EXPECT_STREQ(param.GetValue(), "w");
    EXPECT_STREQ(param.GetDataTypeName(), "signed");
    EXPECT_STREQ(param.GetUnit(), "");
    EXPECT_STREQ(param.GetSemantics(), "GAP");
    EXPECT_STREQ(param.GetConvId(), "d");
}

TEST(Param_Setters, AcceptTextsOfTheSameParameter) {
    ZParam param("identifier", 0, 8, "value", "unsigned", "unit", "", "");
    param.SetUnit(param.GetId());
    param.SetId(param.GetValue());
    EXPECT_STREQ(param.GetUnit(), "identifier");
    EXPECT_STREQ(param.GetId(), "value");
}

TEST(Param_Setters, ReadNullAsEmpty) {
    ZParam param(nullptr, 0, 8, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_STREQ(param.GetId(), "");
    EXPECT_STREQ(param.GetValue(), "");
    param.SetUnit("x");
    param.SetUnit(nullptr);
    EXPECT_STREQ(param.GetUnit(), "");
}

TEST(Param_Assign, CopiesEveryAttributeButNotTheParent) {
    ZNrcItem parent(1, "p");
    ZParam source("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    source.SetParent(&parent);
    ZParam target("x", 0, 0, "", "", "", "", "");
    target.Assign(source);
    EXPECT_STREQ(target.GetId(), "Speed");
    EXPECT_EQ(target.GetBitPos(), 16u);
    EXPECT_EQ(target.GetBitLength(), 8u);
    EXPECT_STREQ(target.GetValue(), "0x12");
    EXPECT_STREQ(target.GetDataTypeName(), "unsigned");
    EXPECT_STREQ(target.GetUnit(), "km/h");
    EXPECT_STREQ(target.GetSemantics(), "CONST");
    EXPECT_STREQ(target.GetConvId(), "Speed_Formula");
    EXPECT_FALSE(target.HasParent());
    target.Assign(target);
    EXPECT_STREQ(target.GetId(), "Speed");
}

TEST(Param_Copy, CopiesEveryAttributeDetached) {
    ZNrcItem parent(1, "p");
    ZParam source("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    source.SetParent(&parent);
    ZParam copy(source);
    ZParam fromInterface(static_cast<const IParam&>(source));
    for (const ZParam* p : {&copy, &fromInterface}) {
        EXPECT_STREQ(p->GetId(), "Speed");
        EXPECT_STREQ(p->GetUnit(), "km/h");
        EXPECT_STREQ(p->GetConvId(), "Speed_Formula");
        EXPECT_EQ(p->GetBitPos(), 16u);
        EXPECT_FALSE(p->HasParent());
    }
}

// Parameters are addressed by whole bytes: the bit offset is 0 on purpose, never the remainder.
TEST(Param_GetBytePosition, ReportsBitOffsetZeroForAnUnalignedPosition) {
    ZParam param("P", 12, 4, "", "unsigned", "", "", "");
    uint32_t byteIndex = 99, bitOffset = 99, bitLength = 99;
    EXPECT_TRUE(param.GetBytePosition(byteIndex, bitOffset, bitLength));
    EXPECT_EQ(byteIndex, 1u);
    EXPECT_EQ(bitOffset, 0u);
    EXPECT_EQ(bitLength, 4u);
    EXPECT_EQ(param.GetByteLength(), 1u);
}

TEST(Param_GetByteLength, RoundsBitsUpToBytes) {
    ZParam param("P", 0, 0, "", "unsigned", "", "", "");
    EXPECT_EQ(param.GetByteLength(), 0u);
    param.SetBitLength(1);
    EXPECT_EQ(param.GetByteLength(), 1u);
    param.SetBitLength(9);
    EXPECT_EQ(param.GetByteLength(), 2u);
    param.SetBitLength(0xFFFFFFFFu);
    EXPECT_EQ(param.GetByteLength(), 0x20000000u);
}

TEST(Param_BitLengthZero, GivesAnEmptyValueImage) {
    ZParam param = MakeParam("1", "unsigned", 0, "");
    EXPECT_EQ(param.GetByteLength(), 0u);
    EXPECT_TRUE(param.GetValueImage().empty());
    EXPECT_TRUE(param.GetValueBytes().empty());
}

// The type name is read by its first letters only, so the word float is Fp, while the name
// itself is kept as written.
TEST(Param_DataTypeName, FloatReadsAsFpAndIsKeptAsWritten) {
    ZParam param = MakeParam("1.5", "float", 32, "");
    EXPECT_EQ(param.GetDataType(), ParamDataType::Fp);
    EXPECT_EQ(param.GetCodedDataType(), ParamDataType::Fp);
    EXPECT_STREQ(param.GetDataTypeName(), "float");
}

TEST(Param_DataTypeName, UnknownNamesGiveUndefined) {
    ZParam param = MakeParam("", "Unsigned", 8, "");
    EXPECT_EQ(param.GetDataType(), ParamDataType::Undefined);
    param.SetDataTypeName("");
    EXPECT_EQ(param.GetDataType(), ParamDataType::Undefined);
}

TEST(Param_SetDataType, StoresTheNameOrTheEmptyText) {
    ZParam param = MakeParam("", "x", 8, "");
    param.SetDataType(ParamDataType::Double);
    EXPECT_STREQ(param.GetDataTypeName(), "double");
    param.SetDataType(static_cast<ParamDataType>(9));
    EXPECT_STREQ(param.GetDataTypeName(), "");
}

TEST(Param_Semantics, FindsWordsInsideLongerWords) {
    ZParam param = MakeParam("", "none", 8, "SID_NR CONST");
    EXPECT_TRUE(param.IsSid());
    EXPECT_TRUE(param.IsConst());
    EXPECT_FALSE(param.IsMotorola());
    EXPECT_FALSE(param.IsGap());
    EXPECT_FALSE(param.IsXid());
    EXPECT_EQ(param.GetSemanticsFlags(), 5u);
    param.SetSemanticsFlags(5);
    EXPECT_STREQ(param.GetSemantics(), "SID CONST");
}

TEST(Param_Semantics, AllFiveWordsAreRecognised) {
    ZParam param = MakeParam("", "none", 8, "GAP XID MOTOROLA");
    EXPECT_TRUE(param.IsGap());
    EXPECT_TRUE(param.IsXid());
    EXPECT_TRUE(param.IsMotorola());
    EXPECT_EQ(param.GetSemanticsFlags(), SemanticsGap | SemanticsXid | SemanticsMotorola);
}

TEST(Param_ValueImage, ReversesTheBytesOfAnIntelParameter) {
    ZParam param = MakeParam("0x1234", "unsigned", 16, "");
    EXPECT_EQ(param.GetValueBytes(), (ByteBuffer{0x12, 0x34}));
    EXPECT_EQ(param.GetValueImage(), (ByteBuffer{0x34, 0x12}));
}

TEST(Param_ValueImage, KeepsTheOrderOfAMotorolaParameter) {
    ZParam param = MakeParam("0x1234", "unsigned", 16, "MOTOROLA");
    EXPECT_EQ(param.GetValueImage(), (ByteBuffer{0x12, 0x34}));
}

TEST(Param_ValueImage, IsEmptyForAValueThatDoesNotFit) {
    ZParam param = MakeParam("256", "unsigned", 8, "");
    EXPECT_TRUE(param.GetValueBytes().empty());
    EXPECT_TRUE(param.GetValueImage().empty());
    param.SetDataTypeName("bcd");
    param.SetValue("12");
    EXPECT_TRUE(param.GetValueImage().empty());
}

TEST(Param_ValueImage, FollowsTheValueAfterItChanges) {
    ZParam param = MakeParam("1", "unsigned", 8, "");
    EXPECT_EQ(param.GetValueBytes(), (ByteBuffer{0x01}));
    param.SetValue("2");
    EXPECT_EQ(param.GetValueBytes(), (ByteBuffer{0x02}));
}

TEST(Param_Conversion, IsNoneWithoutParent) {
    ZParam param("P", 0, 8, "", "unsigned", "", "", "Speed_Formula");
    EXPECT_EQ(param.GetConversion(), nullptr);
    EXPECT_EQ(param.GetConversionKind(), 0u);
    EXPECT_EQ(param.GetPhysicalDataType(), ParamDataType::Unsigned);
}

// The root is cast to an ECU as a reference: a parameter under anything else is a caller error.
TEST(Param_Conversion, ThrowsBadCastWhenTheRootIsNoEcu) {
    ZNrcItem notAnEcu(1, "x");
    ZParam param("P", 0, 8, "", "unsigned", "", "", "");
    param.SetParent(&notAnEcu);
    EXPECT_THROW(param.GetConversion(), std::bad_cast);
    EXPECT_THROW(param.GetConversionKind(), std::bad_cast);
    EXPECT_THROW(param.GetPhysicalDataType(), std::bad_cast);
}

TEST(Param_Accept, ReachesTheParameterOperation) {
    ZParam param = MakeParam("", "none", 8, "");
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(param), "Param");
    EXPECT_EQ(visitor.lastItem, static_cast<const IParam*>(&param));
}

}  // namespace
}  // namespace Korvel

namespace Korvel {
namespace {

// Type names are read by their first two letters only, so "undefined" reads back as
// Unsigned; documents written by older tools rely on this short-cut, so it is kept.
TEST(Param_DataTypeName, UndefinedReadsBackAsUnsigned) {
    ZParam param("P", 0, 8, "", "undefined", "", "", "");
    EXPECT_EQ(param.GetDataType(), ParamDataType::Unsigned);
    param.SetDataType(ParamDataType::Undefined);
    EXPECT_STREQ(param.GetDataTypeName(), "undefined");
    EXPECT_EQ(param.GetDataType(), ParamDataType::Unsigned);
}

// GetCodedDataType goes through the virtual GetDataType, so a derived parameter that refines
// the type is seen by both.
TEST(Param_GetCodedDataType, UsesTheVirtualGetDataType) {
    struct BcdParam : ZParam {
        BcdParam() : ZParam("P", 0, 8, "", "unsigned", "", "", "") {}
        ParamDataType GetDataType() const override { return ParamDataType::Bcd; }
    } param;
    EXPECT_EQ(param.GetCodedDataType(), ParamDataType::Bcd);
}

// Signed values have no lower bound by byte length: the low byte is written.
TEST(Param_ValueBytes, WritesTheLowByteOfALargeNegativeSignedValue) {
    ZParam param("P", 0, 8, "-1000", "signed", "", "", "");
    EXPECT_EQ(param.GetValueBytes(), (ByteBuffer{0x18}));
}

TEST(Param_ValueBytes, PadsAsciiWithZeroBytesAndReversesForIntel) {
    ZParam param("P", 0, 40, "abc", "ascii", "", "MOTOROLA", "");
    EXPECT_EQ(param.GetValueImage(), (ByteBuffer{'a', 'b', 'c', 0, 0}));
    param.SetSemantics("");
    EXPECT_EQ(param.GetValueImage(), (ByteBuffer{0, 0, 'c', 'b', 'a'}));
}

TEST(Param_ValueBytes, ReadsNoneValuesAsHexText) {
    ZParam param("P", 0, 24, "0x12 0x3", "none", "", "MOTOROLA", "");
    EXPECT_EQ(param.GetValueBytes(), (ByteBuffer{0x12, 0x03, 0x00}));
}

TEST(Param_MakeCompact, KeepsEveryAttributeAsTheTextConstructorDoes) {
    const std::unique_ptr<ZParam> param =
        ZParam::MakeCompact("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    ASSERT_NE(param, nullptr);
    EXPECT_STREQ(param->GetId(), "Speed");
    EXPECT_EQ(param->GetBitPos(), 16u);
    EXPECT_EQ(param->GetBitLength(), 8u);
    EXPECT_STREQ(param->GetValue(), "0x12");
    EXPECT_STREQ(param->GetDataTypeName(), "unsigned");
    EXPECT_STREQ(param->GetUnit(), "km/h");
    EXPECT_STREQ(param->GetSemantics(), "CONST");
    EXPECT_STREQ(param->GetConvId(), "Speed_Formula");
}

TEST(Param_MakeCompact, ReadsNullTextsAsEmpty) {
    const std::unique_ptr<ZParam> param =
        ZParam::MakeCompact(nullptr, 0, 8, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_STREQ(param->GetId(), "");
    EXPECT_STREQ(param->GetValue(), "");
    EXPECT_STREQ(param->GetConvId(), "");
}

TEST(Param_MakeCompact, TakesChangesAlsoFromItsOwnTexts) {
    std::unique_ptr<ZParam> param = ZParam::MakeCompact("A", 0, 8, "0x01", "unsigned", "rpm", "", "conv");
    param->SetUnit(param->GetConvId());
    param->SetId("a much longer identifier than the one the parameter was built with");
    EXPECT_STREQ(param->GetUnit(), "conv");
    EXPECT_STREQ(param->GetId(), "a much longer identifier than the one the parameter was built with");
    EXPECT_STREQ(param->GetValue(), "0x01");
    const ZParam copy(*param);
    param.reset();
    EXPECT_STREQ(copy.GetUnit(), "conv");
    EXPECT_STREQ(copy.GetDataTypeName(), "unsigned");
}

TEST(Param_MakeCompact, IsDestroyedThroughItsInterface) {
    std::unique_ptr<IParam> param(ZParam::MakeCompact("A", 0, 8, "1", "unsigned", "", "", "").release());
    EXPECT_STREQ(param->GetValue(), "1");
    param.reset();
    SUCCEED();
}

// Lays the six texts out as a parameter keeps them: back to back, each with its zero.
struct Laid {
    std::string bytes;
    ZParam::PackedTexts texts{nullptr, 0, {}};
};

Laid LayOut(const char* id, const char* value, const char* type, const char* unit, const char* semantics,
            const char* convId) {
    Laid laid;
    const char* inOrder[ZParam::kSlotCount] = {convId, semantics, value, type, unit, id};
    for (std::size_t slot = 0; slot < ZParam::kSlotCount; ++slot) {
        laid.texts.starts[slot] = static_cast<uint32_t>(laid.bytes.size());
        laid.bytes.append(inOrder[slot]).push_back('\0');
    }
    laid.texts.bytes = laid.bytes.data();
    laid.texts.size = laid.bytes.size();
    return laid;
}

TEST(Param_MakePacked, KeepsEveryTextAsMakeCompactDoes) {
    const Laid laid = LayOut("Temp", "0x0A", "unsigned",
                             "\xC2\xB0"
                             "C",
                             "XID MOTOROLA", "Conv_\xCE\xA9");
    EXPECT_EQ(laid.texts.Length(ZParam::kId), 4u);
    EXPECT_EQ(laid.texts.Length(ZParam::kUnit), 3u);
    const std::unique_ptr<ZParam> packed = ZParam::MakePacked(laid.texts, 24, 12);
    const std::unique_ptr<ZParam> compact = ZParam::MakeCompact("Temp", 24, 12, "0x0A", "unsigned",
                                                                "\xC2\xB0"
                                                                "C",
                                                                "XID MOTOROLA", "Conv_\xCE\xA9");
    ASSERT_NE(packed, nullptr);
    EXPECT_STREQ(packed->GetId(), compact->GetId());
    EXPECT_STREQ(packed->GetValue(), compact->GetValue());
    EXPECT_STREQ(packed->GetDataTypeName(), compact->GetDataTypeName());
    EXPECT_STREQ(packed->GetUnit(), compact->GetUnit());
    EXPECT_STREQ(packed->GetSemantics(), compact->GetSemantics());
    EXPECT_STREQ(packed->GetConvId(), compact->GetConvId());
    EXPECT_EQ(packed->GetBitPos(), 24u);
    EXPECT_EQ(packed->GetBitLength(), 12u);
    EXPECT_EQ(packed->GetSemanticsFlags(), compact->GetSemanticsFlags());
}

// The parameter keeps its own copy: the caller's buffer is reused for the next parameter.
TEST(Param_MakePacked, KeepsItsOwnCopyOfTheTexts) {
    Laid laid = LayOut("A", "1", "unsigned", "", "", "conv");
    const std::unique_ptr<ZParam> param = ZParam::MakePacked(laid.texts, 0, 8);
    std::fill(laid.bytes.begin(), laid.bytes.end(), 'x');
    EXPECT_STREQ(param->GetId(), "A");
    EXPECT_STREQ(param->GetConvId(), "conv");
    EXPECT_STREQ(param->GetUnit(), "");
    param->SetValue("2");
    const ZParam copy(*param);
    EXPECT_STREQ(copy.GetValue(), "2");
    EXPECT_STREQ(copy.GetId(), "A");
}

TEST(Param_MakePacked, AllEmptyTextsReadAsEmpty) {
    const Laid laid = LayOut("", "", "", "", "", "");
    EXPECT_EQ(laid.texts.size, 6u);
    const std::unique_ptr<ZParam> param = ZParam::MakePacked(laid.texts, 0, 0);
    EXPECT_STREQ(param->GetId(), "");
    EXPECT_STREQ(param->GetConvId(), "");
    const ZParam copy(*param);
    EXPECT_STREQ(copy.GetSemantics(), "");
}

}  // namespace
}  // namespace Korvel
