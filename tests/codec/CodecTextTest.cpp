// The codec's text helpers: UTF-16 to and from UTF-8, decimal digits, strict number reading.
#include "codec/CodecText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

using namespace Korvel;

std::string Utf8Of(const std::vector<uint8_t>& bytes, bool bigEndian) {
    std::string text;
    AppendUtf16AsUtf8(bytes.data(), bytes.size() / 2, bigEndian, text);
    return text;
}

TEST(CodecText_Utf16, UnitsOfEveryWidthBecomeUtf8) {
    EXPECT_EQ(Utf8Of({0x00, 0x41, 0x00, 0xE4, 0x20, 0xAC}, true), "A\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(Utf8Of({0x41, 0x00, 0xE4, 0x00}, false), "A\xC3\xA4");
    EXPECT_EQ(Utf8Of({0xD8, 0x3D, 0xDE, 0x00}, true), "\xF0\x9F\x98\x80");
}

TEST(CodecText_Utf16, LoneSurrogatesAreReplaced) {
    EXPECT_EQ(Utf8Of({0xDE, 0x00}, true), "\xEF\xBF\xBD");
    EXPECT_EQ(Utf8Of({0xD8, 0x3D}, true), "\xEF\xBF\xBD");
}

TEST(CodecText_Utf8, RoundTripsAndRefusesBadBytes) {
    std::vector<uint16_t> units;
    ASSERT_TRUE(Utf8ToUtf16("A\xC3\xA4\xF0\x9F\x98\x80", units));
    EXPECT_EQ(units, (std::vector<uint16_t>{0x41, 0xE4, 0xD83D, 0xDE00}));
    EXPECT_FALSE(Utf8ToUtf16("\xC3", units));              // cut short
    EXPECT_FALSE(Utf8ToUtf16("\xC0\x80", units));          // overlong
    EXPECT_FALSE(Utf8ToUtf16("\xED\xA0\x80", units));      // a surrogate
    EXPECT_FALSE(Utf8ToUtf16("\xF4\x90\x80\x80", units));  // beyond U+10FFFF
    EXPECT_FALSE(Utf8ToUtf16("\x80", units));
}

TEST(CodecText_Decimal, ExtremesOfBothKinds) {
    char buffer[24];
    EXPECT_EQ(std::string(buffer, FormatDecimal(std::numeric_limits<int64_t>::min(), buffer)),
              "-9223372036854775808");
    EXPECT_EQ(std::string(buffer, FormatDecimal(0, buffer)), "0");
    EXPECT_EQ(std::string(buffer, FormatUnsignedDecimal(std::numeric_limits<uint64_t>::max(), buffer)),
              "18446744073709551615");
}

TEST(CodecText_Numbers, WholeIntegersWithTheLibrarysBases) {
    bool negative = false;
    uint64_t magnitude = 0;
    ASSERT_TRUE(ParseWholeInteger("0x1F", negative, magnitude));
    EXPECT_EQ(magnitude, 31u);
    ASSERT_TRUE(ParseWholeInteger("017", negative, magnitude));
    EXPECT_EQ(magnitude, 15u);
    ASSERT_TRUE(ParseWholeInteger("-5", negative, magnitude));
    EXPECT_TRUE(negative);
    EXPECT_EQ(magnitude, 5u);
    ASSERT_TRUE(ParseWholeInteger("18446744073709551615", negative, magnitude));
    EXPECT_FALSE(ParseWholeInteger("18446744073709551616", negative, magnitude));
    for (const char* bad : {"", "-", "12abc", " 1", "1 ", "+1", "0x", "08", "abc"}) {
        EXPECT_FALSE(ParseWholeInteger(bad, negative, magnitude)) << bad;
    }
}

TEST(CodecText_Numbers, WholeFiniteReals) {
    double value = 0.0;
    ASSERT_TRUE(ParseWholeReal("-2.5e3", value));
    EXPECT_DOUBLE_EQ(value, -2500.0);
    ASSERT_TRUE(ParseWholeReal(".5", value));
    EXPECT_DOUBLE_EQ(value, 0.5);
    for (const char* bad : {"", "nan", "inf", "1e999", "1.5x", " 1", "-"}) {
        EXPECT_FALSE(ParseWholeReal(bad, value)) << bad;
    }
}

}  // namespace
