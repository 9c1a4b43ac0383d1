#include "writer/ZStringEncodingHelper.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

std::string Encode(const char* text) {
    ZStringEncodingHelper helper;
    std::string out = "left over";
    helper.Encode(text, out);
    return out;
}

TEST(StringEncodingHelper_Base, EscapesTheFiveMarkupCharacters) {
    EXPECT_EQ(Encode("a<b&c\"d"), "a&lt;b&amp;c&quot;d");
    EXPECT_EQ(Encode("x>y'z"), "x&gt;y&apos;z");
    EXPECT_EQ(Encode("<>&'\""), "&lt;&gt;&amp;&apos;&quot;");
}

TEST(StringEncodingHelper_Base, NullTextGivesAnEmptyResult) {
    EXPECT_EQ(Encode(nullptr), "");
    EXPECT_EQ(Encode(""), "");
}

TEST(StringEncodingHelper_Base, KeepsAnAmpersandThatOpensANumericReference) {
    EXPECT_EQ(Encode("&#228;"), "&#228;");
    EXPECT_EQ(Encode("a &#x41; b"), "a &#x41; b");
}

TEST(StringEncodingHelper_Base, EscapesANamedReferenceAgain) {
    EXPECT_EQ(Encode("&amp;"), "&amp;amp;");
    EXPECT_EQ(Encode("&lt;"), "&amp;lt;");
}

TEST(StringEncodingHelper_Base, EscapesATrailingAmpersand) {
    EXPECT_EQ(Encode("a&"), "a&amp;");
    EXPECT_EQ(Encode("&&#"), "&amp;&#");
}

TEST(StringEncodingHelper_Base, WritesLettersAsPlainUtf8) {
    EXPECT_EQ(Encode("\xC3\xA4"), "\xC3\xA4");                                    // ä
    EXPECT_EQ(Encode("\xE2\x82\xAC & \xC3\x89"), "\xE2\x82\xAC &amp; \xC3\x89");  // € & É
}

TEST(StringEncodingHelper_Base, KeepsNonAsciiTextAroundMarkup) {
    EXPECT_EQ(Encode("\xC3\xBC<\xF0\x9F\x98\x80>"), "\xC3\xBC&lt;\xF0\x9F\x98\x80&gt;");
    // An ampersand before a non-ASCII character is no numeric reference.
    EXPECT_EQ(Encode("&\xC3\xA4"), "&amp;\xC3\xA4");
    EXPECT_EQ(Encode("\xC3\xA4&#252;"), "\xC3\xA4&#252;");
}

TEST(StringEncodingHelper_Base, RefusesInvalidUtf8) {
    ZStringEncodingHelper helper;
    std::string out;
    EXPECT_THROW(helper.Encode("bad \xC3 byte", out), Platform::TranscodeError);
}

}  // namespace
}  // namespace Korvel
