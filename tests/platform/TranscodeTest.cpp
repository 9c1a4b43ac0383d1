#include "platform/Transcode.h"

#include <gtest/gtest.h>

#include <string>

namespace Korvel::Platform {
namespace {

TEST(Transcode, Utf8ToUtf16ConvertsAsciiAndUmlauts) {
    const WideString wide = Utf8ToUtf16(std::string("A\xC3\xA4\xE2\x82\xAC"));
    EXPECT_EQ(wide, (WideString{u'A', 0x00E4, 0x20AC}));
}

TEST(Transcode, Utf8ToUtf16MakesSurrogatePairForCharacterOutsideBmp) {
    const WideString wide = Utf8ToUtf16(std::string("\xF0\x9F\x98\x80"));
    EXPECT_EQ(wide, (WideString{0xD83D, 0xDE00}));
}

TEST(Transcode, Utf8ToUtf16GivesEmptyTextForNullOrEmpty) {
    EXPECT_TRUE(Utf8ToUtf16(nullptr, 5).empty());
    EXPECT_TRUE(Utf8ToUtf16(std::string()).empty());
}

TEST(Transcode, Utf8ToUtf16KeepsEmbeddedZero) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(Utf8ToUtf16(text), (WideString{u'a', 0, u'b'}));
}

TEST(Transcode, Utf8ToUtf16ThrowsForInvalidUtf8) {
    EXPECT_THROW(Utf8ToUtf16(std::string("\xFF")), TranscodeError);
    EXPECT_THROW(Utf8ToUtf16(std::string("a\x80z")), TranscodeError);
    EXPECT_THROW(Utf8ToUtf16(std::string("ok\xC3")), TranscodeError);  // cut-off sequence
    EXPECT_THROW(Utf8ToUtf16(std::string("\xE4")), TranscodeError);    // a 1252 byte is not UTF-8
}

TEST(Transcode, Utf8ToUtf16HandlesTextLongerThanOneChunk) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "\xC3\xA4x";
    }
    const WideString wide = Utf8ToUtf16(text);
    ASSERT_EQ(wide.size(), 10000u);
    EXPECT_EQ(wide[0], 0x00E4);
    EXPECT_EQ(wide[9998], 0x00E4);
    EXPECT_EQ(wide[9999], u'x');
    EXPECT_EQ(Utf16ToUtf8(wide), text);
}

TEST(Transcode, Utf16ToUtf8RoundTripsUtf8ToUtf16) {
    const std::string text(
        "Temp \xC2\xB0"
        "C \xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(Utf16ToUtf8(Utf8ToUtf16(text)), text);
}

TEST(Transcode, Utf16ToUtf8ReplacesUnpairedSurrogates) {
    const WideString lone{u'a', 0xD800, u'b', 0xDC00};
    EXPECT_EQ(Utf16ToUtf8(lone), std::string("a\xEF\xBF\xBD"
                                             "b\xEF\xBF\xBD"));
    const WideString highAtEnd{u'a', 0xD83D};
    EXPECT_EQ(Utf16ToUtf8(highAtEnd), std::string("a\xEF\xBF\xBD"));
}

TEST(Transcode, Utf16ToUtf8GivesAsciiUnitsAsBytesUpToTheLastAsciiCharacter) {
    const WideString ascii{u'a', 0x7F, u' ', 0x01};
    EXPECT_EQ(Utf16ToUtf8(ascii), std::string("a\x7F \x01"));
    // One unit past ASCII anywhere in the text makes the whole text go through the transcoder.
    const WideString latin{u'a', 0x7F, 0x80};
    EXPECT_EQ(Utf16ToUtf8(latin), std::string("a\x7F\xC2\x80"));
    const WideString latinFirst{0xE9, u'a'};
    EXPECT_EQ(Utf16ToUtf8(latinFirst), std::string("\xC3\xA9"
                                                   "a"));
}

TEST(Transcode, Utf16ToUtf8KeepsEmbeddedZeroAndLongAsciiTexts) {
    const WideString zero{u'a', 0, u'b'};
    EXPECT_EQ(Utf16ToUtf8(zero), std::string("a\0b", 3));
    const WideString longText(5000, u'x');
    EXPECT_EQ(Utf16ToUtf8(longText), std::string(5000, 'x'));
}

TEST(Transcode, Utf16ToUtf8ReadsZeroTerminatedTextAndNull) {
    const XMLCh text[] = {u'h', u'i', 0};
    EXPECT_EQ(Utf16ToUtf8(text), "hi");
    EXPECT_EQ(Utf16ToUtf8(static_cast<const XMLCh*>(nullptr)), "");
}

TEST(Transcode, Utf16ToWindows1252MapsUmlautAndEuro) {
    const WideString wide{0x00E4, 0x20AC, u'Z'};
    EXPECT_EQ(Utf16ToWindows1252(wide), std::string("\xE4\x80Z"));
}

TEST(Transcode, Utf16ToWindows1252WritesQuestionMarkForMissingCharacters) {
    const WideString wide{u'a', 0x4E2D, u'b', 0x0100, u'c'};
    EXPECT_EQ(Utf16ToWindows1252(wide), "a?b?c");
}

TEST(Transcode, Utf16ToWindows1252WritesOneQuestionMarkPerCharacterOutsideBmp) {
    const WideString wide{u'x', 0xD83D, 0xDE00, u'y', 0xDC00};
    EXPECT_EQ(Utf16ToWindows1252(wide), "x?y?");
}

TEST(Transcode, Windows1252ToUtf16MapsUpperHalf) {
    const std::string bytes(
        "\x80\xE4\xDF"
        "a");
    EXPECT_EQ(Windows1252ToUtf16(bytes.data(), bytes.size()), (WideString{0x20AC, 0x00E4, 0x00DF, u'a'}));
}

TEST(Transcode, Windows1252RoundTripsEveryMappedCharacter) {
    std::string bytes;
    for (int c = 0x20; c < 0x100; ++c) {
        bytes.push_back(static_cast<char>(c));
    }
    const WideString wide = Windows1252ToUtf16(bytes.data(), bytes.size());
    ASSERT_EQ(wide.size(), bytes.size());
    const std::string back = Utf16ToWindows1252(wide);
    ASSERT_EQ(back.size(), bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        // Bytes without a character in the code page may come back as "?".
        if (back[i] != bytes[i]) {
            EXPECT_EQ(back[i], '?') << "byte " << i + 0x20;
        }
    }
    EXPECT_EQ(back.substr(0, 0x60), bytes.substr(0, 0x60));
}

TEST(Transcode, Windows1252ToUtf16GivesEmptyTextForEmptyInput) {
    EXPECT_TRUE(Windows1252ToUtf16("", 0).empty());
    EXPECT_TRUE(Windows1252ToUtf16(nullptr, 0).empty());
}

}  // namespace
}  // namespace Korvel::Platform
