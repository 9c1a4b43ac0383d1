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

// The six texts laid out as a parameter keeps them.
struct Laid {
    std::string bytes;
    ZParam::PackedTexts texts{nullptr, 0, {}};
};

Laid LayOut(const char* id, const char* value, const char* type, const char* unit, const char* semantics,
            const char* convId) {
    Laid laid;
    laid.texts = ZParam::LayOut({convId, semantics, value, type, unit, id}, laid.bytes);
    return laid;
}

void ExpectSameParam(const IParam& actual, const IParam& expected) {
    EXPECT_STREQ(actual.GetId(), expected.GetId());
    EXPECT_EQ(actual.GetBitPos(), expected.GetBitPos());
    EXPECT_EQ(actual.GetBitLength(), expected.GetBitLength());
    EXPECT_STREQ(actual.GetValue(), expected.GetValue());
    EXPECT_STREQ(actual.GetDataTypeName(), expected.GetDataTypeName());
    EXPECT_STREQ(actual.GetUnit(), expected.GetUnit());
    EXPECT_STREQ(actual.GetSemantics(), expected.GetSemantics());
    EXPECT_STREQ(actual.GetConvId(), expected.GetConvId());
}

TEST(Param_LayOut, PutsTheTextsBackToBackInSlotOrder) {
    const Laid laid = LayOut("Temp", "0x0A", "unsigned",
                             "\xC2\xB0"
                             "C",
                             "XID MOTOROLA", "Conv");
    EXPECT_EQ(laid.bytes, std::string("Conv\0XID MOTOROLA\0"
                                      "0x0A\0unsigned\0\xC2\xB0"
                                      "C\0Temp\0",
                                      41));
    EXPECT_EQ(laid.texts.Length(ZParam::kId), 4u);
    EXPECT_EQ(laid.texts.Length(ZParam::kUnit), 3u);
    EXPECT_EQ(laid.texts.starts[ZParam::kSemantics], 5u);
}

TEST(Param_Make, OnTheHeapKeepsEveryAttributeAsTheTextConstructorDoes) {
    const ZParam expected("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    const Laid laid = LayOut("Speed", "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    const ZItemPtr<ZParam> param = ZParam::Make(nullptr, laid.texts, 16, 8);
    ASSERT_NE(param, nullptr);
    ExpectSameParam(*param, expected);
    EXPECT_EQ(param->Arena(), nullptr);
}

TEST(Param_Make, InAnArenaKeepsItselfAndItsTextsInOneBlockThere) {
    ZModelArena arena;
    const Laid laid = LayOut("Temp", "0x0A", "unsigned", "C", "XID MOTOROLA", "Conv");
    const ZItemPtr<ZParam> param = ZParam::Make(&arena, laid.texts, 24, 12);
    ASSERT_NE(param, nullptr);
    EXPECT_EQ(param->Arena(), &arena);
    EXPECT_EQ(arena.UsedBytes(), (sizeof(ZParam) + laid.texts.size + 7) / 8 * 8);
    ExpectSameParam(*param, ZParam("Temp", 24, 12, "0x0A", "unsigned", "C", "XID MOTOROLA", "Conv"));
    EXPECT_EQ(param->GetSemanticsFlags(), SemanticsXid | SemanticsMotorola);
}

TEST(Param_Make, FromAnotherParamCopiesIt) {
    const ZParam source("Speed", 16, 8, "0x12", "unsigned", "km/h", "CONST", "Speed_Formula");
    ZModelArena arena;
    ExpectSameParam(*ZParam::Make(&arena, static_cast<const IParam&>(source)), source);
    ExpectSameParam(*ZParam::Make(nullptr, static_cast<const IParam&>(source)), source);
}

TEST(Param_Make, ReadsNullTextsAsEmpty) {
    std::string bytes;
    const ZParam::PackedTexts texts =
        ZParam::LayOut({nullptr, nullptr, nullptr, nullptr, nullptr, nullptr}, bytes);
    EXPECT_EQ(texts.size, 6u);
    const ZItemPtr<ZParam> param = ZParam::Make(nullptr, texts, 0, 8);
    EXPECT_STREQ(param->GetId(), "");
    EXPECT_STREQ(param->GetValue(), "");
    EXPECT_STREQ(param->GetConvId(), "");
    const ZParam copy(*param);
    EXPECT_STREQ(copy.GetSemantics(), "");
}

// A change takes the texts to a heap block of the parameter's own: the arena does not grow, and
// a new text may come from the parameter's own texts.
TEST(Param_Make, TakesChangesToTheHeapAlsoFromItsOwnTexts) {
    ZModelArena arena;
    const Laid laid = LayOut("A", "0x01", "unsigned", "rpm", "", "conv");
    ZItemPtr<ZParam> param = ZParam::Make(&arena, laid.texts, 0, 8);
    const std::size_t used = arena.UsedBytes();
    param->SetUnit(param->GetConvId());
    param->SetId("a much longer identifier than the one the parameter was built with");
    EXPECT_EQ(arena.UsedBytes(), used);
    EXPECT_STREQ(param->GetUnit(), "conv");
    EXPECT_STREQ(param->GetId(), "a much longer identifier than the one the parameter was built with");
    EXPECT_STREQ(param->GetValue(), "0x01");
    const ZParam copy(*param);
    param.reset();
    EXPECT_STREQ(copy.GetUnit(), "conv");
    EXPECT_STREQ(copy.GetDataTypeName(), "unsigned");
}

// The parameter keeps its own copy: the caller's buffer is reused for the next parameter.
TEST(Param_Make, KeepsItsOwnCopyOfTheTexts) {
    Laid laid = LayOut("A", "1", "unsigned", "", "", "conv");
    const ZItemPtr<ZParam> param = ZParam::Make(nullptr, laid.texts, 0, 8);
    std::fill(laid.bytes.begin(), laid.bytes.end(), 'x');
    EXPECT_STREQ(param->GetId(), "A");
    EXPECT_STREQ(param->GetConvId(), "conv");
    EXPECT_STREQ(param->GetUnit(), "");
}

}  // namespace
}  // namespace Korvel
