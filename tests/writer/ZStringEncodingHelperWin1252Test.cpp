#include "writer/ZStringEncodingHelperWin1252.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

std::string Encode(const char* text) {
    ZStringEncodingHelperWin1252 helper;
    std::string out;
    helper.Encode(text, out);
    return out;
}

TEST(StringEncodingHelper_Win1252, WritesLettersAsSingleBytes) {
    EXPECT_EQ(Encode("\xC3\xA4"), "\xE4");      // ä
    EXPECT_EQ(Encode("\xC3\x89"), "\xC9");      // É
    EXPECT_EQ(Encode("\xC3\x88"), "\xC8");      // È
    EXPECT_EQ(Encode("\xE2\x82\xAC"), "\x80");  // €
    EXPECT_EQ(Encode("\xE2\x84\xA2"), "\x99");  // ™
}

TEST(StringEncodingHelper_Win1252, EscapesOnlyTheMarkupCharacters) {
    EXPECT_EQ(Encode("a<b&c\"d"), "a&lt;b&amp;c&quot;d");
    EXPECT_EQ(Encode("M\xC3\xBC"
                     "ller & S\xC3\xB6hne"),
              "M\xFCller &amp; S\xF6hne");
}

TEST(StringEncodingHelper_Win1252, WritesAQuestionMarkForACharacterTheCodePageLacks) {
    EXPECT_EQ(Encode("\xE2\x86\x92"), "?");          // →
    EXPECT_EQ(Encode("a\xCE\xA9z"), "a?z");          // Ω
    EXPECT_EQ(Encode("x\xF0\x9F\x98\x80y"), "x?y");  // one character outside the BMP
}

}  // namespace
}  // namespace Korvel
