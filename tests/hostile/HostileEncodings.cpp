// Bytes that are not valid in the encoding a document declares (or the caller names). The
// reader either refuses the document or gives a model whose texts are all valid UTF-8.
#include "HostileSupport.h"

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

std::string DocumentWithText(const std::string& encoding, const std::string& text) {
    std::string document = "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n";
    document += "<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\" text=\"" + text +
                "\"/></NEGATIVE_RESPONSE_CODES><INSTANCE id=\"" + text + "\"/></ECU>\n";
    return document;
}

// Little-endian UTF-16 of an ASCII text, with a byte order mark.
std::string Utf16Le(const std::string& ascii) {
    std::string bytes = "\xFF\xFE";
    for (char c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

void ExpectNullOrValidUtf8(const ReadResult& result, const std::string& what) {
    if (!result.ecu) {
        EXPECT_GT(result.report.GetErrorCount(), 0u) << what;
        return;
    }
    for (const std::string& text : CollectTexts(*result.ecu)) {
        EXPECT_TRUE(IsValidUtf8(text)) << what;
    }
}

std::string Hex(const std::string& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (unsigned char byte : bytes) {
        hex += digits[byte >> 4];
        hex += digits[byte & 0x0F];
        hex += ' ';
    }
    return hex;
}

}  // namespace

TEST(HostileEncodings, InvalidUtf8IsRefused) {
    for (const std::string bad : {"\xFF", "\xC3\x28", "\xE2\x82", "\xF8\x88\x80\x80\x80", "\x80"}) {
        auto declared = ReadBytes(DocumentWithText("utf-8", "a" + bad + "b"));
        EXPECT_EQ(declared->ecu, nullptr) << Hex(bad);
        EXPECT_TRUE(declared->HasFatal()) << Hex(bad);
        auto named = ReadBytes(DocumentWithText("utf-8", "a" + bad + "b"), "UTF-8");
        EXPECT_EQ(named->ecu, nullptr) << Hex(bad);
    }
}

TEST(HostileEncodings, Utf8OdditiesGiveNullOrValidUtf8) {
    // Overlong forms, encoded surrogates, code points above U+10FFFF.
    for (const std::string odd : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xED\xBF\xBF",
                                  "\xF4\x90\x80\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("utf-8", "a" + odd + "b")), Hex(odd));
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("utf-8", "a" + odd + "b"), "UTF-8"), Hex(odd));
    }
}

TEST(HostileEncodings, Windows1252BytesWithoutACharacterGiveNullOrValidUtf8) {
    for (const std::string odd : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("Windows-1252", "a" + odd + "b")), Hex(odd));
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("Windows-1252", "a" + odd + "b"), "Windows-1252"),
                              Hex(odd));
    }
}

TEST(HostileEncodings, Windows1252HighBytesReadAsTheirCharacters) {
    auto result = ReadBytes(DocumentWithText("Windows-1252", "\x80\xE4\xC9"));
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_STREQ(result->ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(),
                 "\xE2\x82\xAC\xC3\xA4\xC3\x89");
}

TEST(HostileEncodings, EveryByteAfterTheAsciiRangeGivesNullOrValidUtf8InTheSingleByteEncodings) {
    std::string high;
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        high += static_cast<char>(byte);
    }
    for (const char* encoding : {"Windows-1252", "iso-8859-1", "utf-8", "US-ASCII"}) {
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText(encoding, high)), encoding);
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("utf-8", high), encoding), encoding);
    }
}

TEST(HostileEncodings, ControlBytesAreRefusedInIso88591) {
    for (const std::string control : {"\x01", "\x08", "\x0B", "\x1F"}) {
        auto result = ReadBytes(DocumentWithText("iso-8859-1", "a" + control + "b"));
        EXPECT_EQ(result->ecu, nullptr) << Hex(control);
        EXPECT_TRUE(result->HasFatal()) << Hex(control);
    }
}

TEST(HostileEncodings, Iso88591HighBytesReadAsTheirCharacters) {
    auto result = ReadBytes(DocumentWithText("iso-8859-1", "\xE4\xDF"));
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_STREQ(result->ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(), "\xC3\xA4\xC3\x9F");
}

TEST(HostileEncodings, BrokenUtf16GivesNullOrValidUtf8) {
    const std::string valid = Utf16Le(DocumentWithText("UTF-16", "abc"));
    auto control = ReadBytes(valid);
    ASSERT_NE(control->ecu, nullptr) << control->AllMessages();
    EXPECT_STREQ(control->ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(), "abc");

    const std::size_t at = valid.find(std::string("b\0", 2));
    ASSERT_NE(at, std::string::npos);
    // Unpaired high surrogate, unpaired low surrogate, reversed pair, a non-character.
    for (const std::string& unit : {std::string("\x00\xD8", 2), std::string("\x00\xDC", 2),
                                    std::string("\x00\xDC\x00\xD8", 4), std::string("\xFF\xFF", 2)}) {
        std::string document = valid;
        document.replace(at, 2, unit);
        ExpectNullOrValidUtf8(*ReadBytes(document), Hex(unit));
        ExpectNullOrValidUtf8(*ReadBytes(document, "UTF-16"), Hex(unit));
    }
    // Odd byte count: the end tag loses half of its last character.
    const std::string cut = valid.substr(0, valid.rfind(std::string(">\0", 2)) + 1);
    ExpectNullOrValidUtf8(*ReadBytes(cut), "odd length");
    EXPECT_EQ(ReadBytes(cut)->ecu, nullptr);
    // A trailing half character after the complete document is ignored or refused, never a crash.
    ExpectNullOrValidUtf8(*ReadBytes(valid.substr(0, valid.size() - 1)), "odd length after the end");
}

TEST(HostileEncodings, DeclaredUtf16WithSingleByteContentIsRefused) {
    auto result = ReadBytes(DocumentWithText("UTF-16", "abc"));
    ExpectNullOrValidUtf8(*result, "UTF-16 declared, bytes of UTF-8");
    auto named = ReadBytes(DocumentWithText("utf-8", "abc"), "UTF-16");
    EXPECT_EQ(named->ecu, nullptr);
    EXPECT_GT(named->report.GetErrorCount(), 0u);
}

TEST(HostileEncodings, UnknownEncodingNamesAreRefused) {
    auto declared = ReadBytes(DocumentWithText("x-no-such-encoding", "abc"));
    EXPECT_EQ(declared->ecu, nullptr);
    EXPECT_TRUE(declared->HasFatal()) << declared->AllMessages();
    auto named = ReadBytes(DocumentWithText("utf-8", "abc"), "x-no-such-encoding");
    EXPECT_EQ(named->ecu, nullptr);
    EXPECT_GT(named->report.GetErrorCount(), 0u);
}

TEST(HostileEncodings, WideEncodingsDeclaredOverSingleBytesNeverCrash) {
    for (const char* encoding : {"UTF-32", "UCS-4", "UTF-16BE", "UTF-16LE", "EBCDIC-CP-US", "IBM1140"}) {
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText(encoding, "abc\xE4")), encoding);
        ExpectNullOrValidUtf8(*ReadBytes(DocumentWithText("utf-8", "abc"), encoding), encoding);
    }
}
