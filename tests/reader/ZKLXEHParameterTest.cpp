#include "reader/handlers/ZKLXEHParameter.h"

#include "ReaderFixture.h"

#include <gtest/gtest.h>

using namespace Korvel;
using ReaderTest::Read;
using ReaderTest::Warning;

namespace {

std::string InRequest(const std::string& parameters) {
    return "<ECU><INSTANCE id=\"i\"><REQUEST>" + parameters + "</REQUEST></INSTANCE></ECU>";
}

const IRequest* RequestOf(const IEcu& ecu) {
    return ecu.GetInstanceContainer()->GetInstance(0u)->GetRequest();
}

std::string Missing(const std::string& id, const std::string& names) {
    return "ERROR: OpenTag >> PARAMETER element: Not all required attributes of param with id='" + id +
           "' are available! Invalid or missing attribute(s): " + names;
}

}  // namespace

TEST(ZKLXEHParameter_Open, AddsAParameterWithItsEightValues) {
    auto result = Read(InRequest(
        "<PARAMETER id=\"Speed\" bitPos=\"8\" bitLen=\"16\" type=\"unsigned\" unit=\"km/h\" value=\"12\" "
        "semantics=\"XID MOTOROLA\" convId=\"conv\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IParam* param = RequestOf(*result->ecu)->GetParam("Speed");
    ASSERT_NE(param, nullptr);
    EXPECT_EQ(param->GetBitPos(), 8u);
    EXPECT_EQ(param->GetBitLength(), 16u);
    EXPECT_EQ(param->GetDataType(), ParamDataType::Unsigned);
    EXPECT_STREQ(param->GetUnit(), "km/h");
    EXPECT_STREQ(param->GetValue(), "12");
    EXPECT_STREQ(param->GetSemantics(), "XID MOTOROLA");
    EXPECT_STREQ(param->GetConvId(), "conv");
}

// The texts of one parameter are narrowed together: long texts, non-ASCII texts between ASCII
// ones and a short parameter after a long one must each keep exactly their own text.
TEST(ZKLXEHParameter_Open, LongAndNonAsciiTextsKeepTheirOwnValues) {
    const std::string longValue(5000, 'A');
    auto result =
        Read(InRequest("<PARAMETER id=\"Temp\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\xC2\xB0"
                       "C\" value=\"" +
                       longValue +
                       "\" semantics=\"\" convId=\"Conv_\xCE\xA9\"/>"
                       "<PARAMETER id=\"p\" bitPos=\"8\" bitLen=\"4\" type=\"ascii\" unit=\"\xC2\xB5s\" "
                       "value=\"x\" semantics=\"XID\" "
                       "convId=\"\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    const IParam* first = RequestOf(*result->ecu)->GetParam("Temp");
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(first->GetUnit(),
                 "\xC2\xB0"
                 "C");
    EXPECT_EQ(std::string(first->GetValue()), longValue);
    EXPECT_STREQ(first->GetSemantics(), "");
    EXPECT_STREQ(first->GetConvId(), "Conv_\xCE\xA9");
    const IParam* second = RequestOf(*result->ecu)->GetParam("p");
    ASSERT_NE(second, nullptr);
    EXPECT_STREQ(second->GetUnit(), "\xC2\xB5s");
    EXPECT_STREQ(second->GetValue(), "x");
    EXPECT_STREQ(second->GetSemantics(), "XID");
    EXPECT_STREQ(second->GetConvId(), "");
    EXPECT_STREQ(second->GetDataTypeName(), "ascii");
}

TEST(ZKLXEHParameter_Open, BitPosZeroIsAccepted) {
    auto result = Read(InRequest(
        "<PARAMETER id=\"p\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    EXPECT_TRUE(result->Faults().empty()) << result->AllMessages();
    EXPECT_EQ(RequestOf(*result->ecu)->GetCount(), 1u);
}

TEST(ZKLXEHParameter_Open, NegativeBitPosIsRefused) {
    auto result = Read(InRequest(
        "<PARAMETER id=\"p\" bitPos=\"-1\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{Missing("p", "bitPos "), Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(RequestOf(*result->ecu)->GetCount(), 0u);
}

TEST(ZKLXEHParameter_Open, EmptyBitLenIsNamedAndBitPosZeroToo) {
    auto result = Read(InRequest(
        "<PARAMETER id=\"p\" bitPos=\"0\" bitLen=\"\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>"
        "<PARAMETER id=\"q\" bitPos=\"3\" bitLen=\"\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>"));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{Missing("p", "bitPos bitLen "), Warning("PARAMETER"),
                                            Missing("q", "bitLen "), Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHParameter_Open, BitPosZeroIsNamedWithAMissingUnit) {
    auto result =
        Read(InRequest("<PARAMETER id=\"p\" bitPos=\"0\" bitLen=\"8\" type=\"none\" value=\"\" "
                       "semantics=\"\" convId=\"\"/>"));
    const std::vector<std::string> expected{Missing("p", "bitPos unit "), Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHParameter_Open, EveryMissingAttributeIsNamedInOrder) {
    auto result = Read(InRequest("<PARAMETER/>"));
    const std::vector<std::string> expected{Missing("", "id bitPos bitLen value type unit semantics convId "),
                                            Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(result->Texts(ReportLevelError)[0].rfind(ReaderMessages::kParameterMissingBegin, 0), 0u);
}

// Names that share a first letter, a prefix or the whole name with a longer tail are other
// attributes: none of them counts, and the first of each real name counts.
TEST(ZKLXEHParameter_Open, NearNamesAreOtherAttributes) {
    auto result = Read(InRequest(
        "<PARAMETER i=\"x\" ids=\"x\" bit=\"1\" bitP=\"1\" bitPosition=\"1\" bitLength=\"1\" v=\"x\" "
        "values=\"x\" typ=\"x\" units=\"x\" semantic=\"x\" convid=\"x\" c=\"x\" b=\"1\"/>"
        "<PARAMETER bitLen=\"4\" convId=\"c\" semantics=\"\" unit=\"u\" type=\"unsigned\" value=\"v\" "
        "bitPos=\"2\" id=\"real\"/>"));
    ASSERT_FALSE(result->Faults().empty());
    EXPECT_EQ(result->Faults()[0], Missing("", "id bitPos bitLen value type unit semantics convId "));
    ASSERT_NE(result->ecu, nullptr);
    const IParam* param = RequestOf(*result->ecu)->GetParam("real");
    ASSERT_NE(param, nullptr);
    EXPECT_EQ(param->GetBitPos(), 2u);
    EXPECT_EQ(param->GetBitLength(), 4u);
    EXPECT_STREQ(param->GetConvId(), "c");
    EXPECT_STREQ(param->GetUnit(), "u");
    EXPECT_STREQ(param->GetValue(), "v");
}

TEST(ZKLXEHParameter_Open, UsedIdIsRefused) {
    const std::string param =
        "<PARAMETER id=\"p\" bitPos=\"1\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" semantics=\"\" "
        "convId=\"\"/>";
    auto result = Read(InRequest(param + param));
    ASSERT_NE(result->ecu, nullptr);
    const std::vector<std::string> expected{
        "ERROR: OpenTag >> PARAMETER element: Couldn't add IParam with id='p', because the ID is already "
        "used!",
        Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
    EXPECT_EQ(RequestOf(*result->ecu)->GetCount(), 1u);
}

TEST(ZKLXEHParameter_Open, OutsideAMessageIsRefused) {
    auto result = Read(
        "<ECU><INSTANCE id=\"i\"><PARAMETER id=\"p\" bitPos=\"1\" bitLen=\"8\" type=\"none\" unit=\"\" "
        "value=\"\" "
        "semantics=\"\" convId=\"\"/></INSTANCE></ECU>");
    const std::vector<std::string> expected{
        "FATAL: OpenTag >> PARAMETER element: The top element on the XmlElement stack dose not reference a "
        "IMessage "
        "item!",
        Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHParameter_Open, AtTheDocumentRootOnlyTheEmptyRecordIsReported) {
    auto result = Read("<PARAMETER id=\"p\"/>");
    const std::vector<std::string> expected{Warning("PARAMETER")};
    EXPECT_EQ(result->Faults(), expected);
}

TEST(ZKLXEHParameter_Trace, OpenCloseAndCountTexts) {
    auto result = Read(InRequest("<X><PARAMETER/></X>"));
    const std::vector<std::string> expected{
        "ERROR: CloseTag >> PARAMETER element: Different count of open and close tags found!"};
    EXPECT_EQ(result->Faults(), expected);
    auto traced =
        Read(InRequest("<PARAMETER id=\"p\" bitPos=\"1\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"\" "
                       "semantics=\"\" convId=\"\"/>"));
    const std::vector<std::string> debug = traced->Texts(ReportLevelDebug);
    EXPECT_NE(std::find(debug.begin(), debug.end(), "OpenTag >> PARAMETER element"), debug.end());
    EXPECT_NE(std::find(debug.begin(), debug.end(), "CloseTag >> PARAMETER element"), debug.end());
}
