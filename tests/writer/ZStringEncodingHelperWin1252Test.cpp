#include "writer/ZStringEncodingHelperWin1252.h"

#include "writer/ZStringEncodingHelperLatin1.h"

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

TEST(StringEncodingHelper_Win1252, FirstUncarriedNamesTheFirstCharacterTheCodePageLacks) {
    ZStringEncodingHelperWin1252 helper;
    EXPECT_EQ(helper.FirstUncarried("plain <ascii>"), 0u);
    EXPECT_EQ(helper.FirstUncarried("\xC3\xA4 \xE2\x82\xAC \xE2\x80\x93"), 0u);  // ä € –
    EXPECT_EQ(helper.FirstUncarried("a \xCE\xA9 \xE2\x88\x9E"), 0x03A9u);        // Ω before ∞
    EXPECT_EQ(helper.FirstUncarried("\xF0\x9F\x98\x80"), 0x1F600u);              // a pair, whole
    EXPECT_EQ(helper.FirstUncarried(nullptr), 0u);
    EXPECT_THROW(helper.FirstUncarried("bad \xC3"), Platform::TranscodeError);
}

TEST(StringEncodingHelper_Latin1, CarriesOnlyTheLatin1RangeButWritesTheSameBytes) {
    ZStringEncodingHelperLatin1 latin1;
    EXPECT_EQ(latin1.FirstUncarried("\xC3\xA4\xC2\xA0\xC3\xBF"), 0u);  // ä, no-break space, ÿ
    EXPECT_EQ(latin1.FirstUncarried("x \xE2\x82\xAC"), 0x20ACu);       // €
    EXPECT_EQ(latin1.FirstUncarried("\xC2\x96"), 0x96u);               // a C1 control
    std::string out;
    latin1.Encode("\xC3\xA4 \xE2\x82\xAC", out);
    EXPECT_EQ(out, Encode("\xC3\xA4 \xE2\x82\xAC"));
}

TEST(StringEncodingHelper_Win1252, WritesAQuestionMarkForACharacterTheCodePageLacks) {
    EXPECT_EQ(Encode("\xE2\x86\x92"), "?");          // →
    EXPECT_EQ(Encode("a\xCE\xA9z"), "a?z");          // Ω
    EXPECT_EQ(Encode("x\xF0\x9F\x98\x80y"), "x?y");  // one character outside the BMP
}

}  // namespace
}  // namespace Korvel
