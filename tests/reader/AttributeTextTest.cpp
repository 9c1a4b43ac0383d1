#include "reader/handlers/AttributeText.h"

#include "common/GermanLocale.h"

#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>

#include <cmath>

using Korvel::AttributeText::Atof;
using Korvel::AttributeText::Atol;

TEST(AttributeText_Atol, ReadsLikeTheCLibrary) {
    EXPECT_EQ(Atol(u"42"), 42);
    EXPECT_EQ(Atol(u"  \t-17xyz"), -17);
    EXPECT_EQ(Atol(u"+5"), 5);
    EXPECT_EQ(Atol(u"0x21"), 0);
    EXPECT_EQ(Atol(u"abc"), 0);
    EXPECT_EQ(Atol(u""), 0);
    EXPECT_EQ(Atol(u"- 5"), 0);
    EXPECT_EQ(Atol(nullptr), 0);
}

TEST(AttributeText_Atol, SaturatesBeyondThe32BitRange) {
    EXPECT_EQ(Atol(u"2147483647"), 2147483647);
    EXPECT_EQ(Atol(u"2147483648"), 2147483647);
    EXPECT_EQ(Atol(u"99999999999999999999999"), 2147483647);
    EXPECT_EQ(Atol(u"-2147483648"), -2147483647 - 1);
    EXPECT_EQ(Atol(u"-99999999999999999999"), -2147483647 - 1);
}

TEST(AttributeText_Atof, ReadsLikeTheCLibrary) {
    EXPECT_DOUBLE_EQ(Atof(u"1e-3"), 0.001);
    EXPECT_DOUBLE_EQ(Atof(u"1,5"), 1.0);
    EXPECT_DOUBLE_EQ(Atof(u"abc"), 0.0);
    EXPECT_DOUBLE_EQ(Atof(u"  -2.5"), -2.5);
    EXPECT_DOUBLE_EQ(Atof(u"+.5"), 0.5);
    EXPECT_DOUBLE_EQ(Atof(u"0x10"), 16.0);
    EXPECT_DOUBLE_EQ(Atof(u"+-1"), 0.0);
    EXPECT_DOUBLE_EQ(Atof(u"3.25\u00e9"), 3.25);
    EXPECT_TRUE(std::isinf(Atof(u"1e999")));
    EXPECT_DOUBLE_EQ(Atof(nullptr), 0.0);
}

// Hexadecimal numbers and values beyond the range of a double take the C library's path; a
// German locale (decimal comma) must not cut them at the point.
TEST(AttributeText_Atof, ReadsAPointUnderAGermanLocale) {
    Korvel::TestSupport::GermanLocale german;
    ZEKL_REQUIRE_GERMAN_LOCALE(german);
    EXPECT_DOUBLE_EQ(Atof(u"0.5"), 0.5);
    EXPECT_DOUBLE_EQ(Atof(u"0x1.8p1"), 3.0);
    EXPECT_DOUBLE_EQ(Atof(u"-0x1.4p0"), -1.25);
    EXPECT_TRUE(std::isinf(Atof(u"1.5e999")));
    EXPECT_DOUBLE_EQ(Atof(u"1,5"), 1.0);
}

TEST(AttributeText_Atof, ConversionFactorsReadTheSameUnderAGermanLocale) {
    Korvel::TestSupport::GermanLocale german;
    ZEKL_REQUIRE_GERMAN_LOCALE(german);
    const std::string document =
        "<ECU protocol=\"UDS\">"
        "<CONVERSION id=\"A_Formula\" factor=\"0.5\" offset=\"-40.25\"/>"
        "<CONVERSION id=\"B_Formula\" factor=\"0x1.8p1\" offset=\"1.5e999\"/>"
        "</ECU>";
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadText(document, "");
    ASSERT_NE(ecu, nullptr);
    const Korvel::IConversion* a = ecu->GetConversionContainer()->GetConversion("A_Formula");
    const Korvel::IConversion* b = ecu->GetConversionContainer()->GetConversion("B_Formula");
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(a->GetFactor(), 0.5);
    EXPECT_EQ(a->GetOffset(), -40.25);
    EXPECT_EQ(b->GetFactor(), 3.0);
    EXPECT_TRUE(std::isinf(b->GetOffset()));
}
