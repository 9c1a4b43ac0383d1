#include "writer/ZStringEncodingHelperUtf8.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

std::string Encode(const char* text) {
    ZStringEncodingHelperUtf8 helper;
    std::string out;
    helper.Encode(text, out);
    return out;
}

TEST(StringEncodingHelper_Utf8, WritesTwelveLettersAsReferences) {
    EXPECT_EQ(Encode("\xC3\xA4"), "&#228;");       // ä
    EXPECT_EQ(Encode("\xC3\xA8"), "&#232;");       // è
    EXPECT_EQ(Encode("\xC3\xA9"), "&#233;");       // é
    EXPECT_EQ(Encode("\xC3\xB6"), "&#246;");       // ö
    EXPECT_EQ(Encode("\xC3\xBC"), "&#252;");       // ü
    EXPECT_EQ(Encode("\xC3\x9F"), "&#223;");       // ß
    EXPECT_EQ(Encode("\xC3\x84"), "&#196;");       // Ä
    EXPECT_EQ(Encode("\xC3\x96"), "&#214;");       // Ö
    EXPECT_EQ(Encode("\xC3\x9C"), "&#220;");       // Ü
    EXPECT_EQ(Encode("\xE2\x82\xAC"), "&#8364;");  // €
}

TEST(StringEncodingHelper_Utf8, WritesCapitalEAcuteAsTheReferenceOfEGrave) {
    EXPECT_EQ(Encode("\xC3\x89"), "&#200;");
}

TEST(StringEncodingHelper_Utf8, LeavesCapitalEGraveAsPlainUtf8) {
    const std::string out = Encode("\xC3\x88");
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(static_cast<unsigned char>(out[0]), 0xC3);
    EXPECT_EQ(static_cast<unsigned char>(out[1]), 0x88);
}

TEST(StringEncodingHelper_Utf8, KeepsOtherCharactersAsUtf8) {
    EXPECT_EQ(Encode("\xC3\xA0 \xC3\x85 \xE2\x84\xA2"), "\xC3\xA0 \xC3\x85 \xE2\x84\xA2");  // à Å ™
    EXPECT_EQ(Encode("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

TEST(StringEncodingHelper_Utf8, EscapesMarkupAndLettersInOneText) {
    EXPECT_EQ(Encode("Gr\xC3\xB6\xC3\x9F"
                     "e < 5 & \"x\""),
              "Gr&#246;&#223;e &lt; 5 &amp; &quot;x&quot;");
}

TEST(StringEncodingHelper_Utf8, InsertedReferencesAreNotEscapedAgain) {
    // The ampersands of the inserted references stay single.
    EXPECT_EQ(Encode("\xC3\xA4&"), "&#228;&amp;");
    EXPECT_EQ(Encode("&#228;\xC3\xA4"), "&#228;&#228;");
}

}  // namespace
}  // namespace Korvel
