// Bytes that are not valid in the encoding a document declares (or the caller names). The
// reader refuses the document with a FATAL message, or reads each byte as the character the
// encoding gives it: each case below states which.
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

void ExpectRefused(const ReadResult& result, const std::string& what) {
    EXPECT_EQ(result.ecu, nullptr) << what;
    EXPECT_TRUE(result.HasFatal()) << what;
}

// The model holds `text` in the NRC text and the instance id, as UTF-8.
void ExpectReadAs(const ReadResult& result, const std::string& text, const std::string& what) {
    ASSERT_NE(result.ecu, nullptr) << what << ": " << result.AllMessages();
    ASSERT_NE(result.ecu->GetNrcContainer()->GetNrc(uint8_t{16}), nullptr) << what;
    EXPECT_EQ(result.ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(), text) << what;
    EXPECT_NE(result.ecu->GetInstanceContainer()->GetInstance(text.c_str()), nullptr) << what;
    for (const std::string& kept : CollectTexts(*result.ecu)) {
        EXPECT_TRUE(IsValidUtf8(kept)) << what;
    }
}

std::string Utf8(char32_t code) {
    std::string bytes;
    if (code < 0x80) {
        bytes += static_cast<char>(code);
    } else if (code < 0x800) {
        bytes += static_cast<char>(0xC0 | (code >> 6));
        bytes += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        bytes += static_cast<char>(0xE0 | (code >> 12));
        bytes += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        bytes += static_cast<char>(0x80 | (code & 0x3F));
    }
    return bytes;
}

// Code page 1252's characters of the bytes 0x80 to 0x9F; the five bytes it leaves undefined
// read as the control characters of the same number.
constexpr char32_t kWindows1252High[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                           0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t Windows1252(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? kWindows1252High[byte - 0x80] : byte;
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

TEST(HostileEncodings, Utf8OdditiesAreRefused) {
    // Overlong forms, encoded surrogates, code points above U+10FFFF, the non-characters
    // U+FFFE and U+FFFF.
    for (const std::string odd : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xED\xBF\xBF",
                                  "\xF4\x90\x80\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        ExpectRefused(*ReadBytes(DocumentWithText("utf-8", "a" + odd + "b")), Hex(odd));
        ExpectRefused(*ReadBytes(DocumentWithText("utf-8", "a" + odd + "b"), "UTF-8"), Hex(odd));
    }
}

TEST(HostileEncodings, Windows1252BytesWithoutACharacterReadAsTheControlCharactersOfTheirNumber) {
    for (const std::string odd : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
        const std::string expected = "a" + Utf8(static_cast<unsigned char>(odd[0])) + "b";
        ExpectReadAs(*ReadBytes(DocumentWithText("Windows-1252", "a" + odd + "b")), expected, Hex(odd));
        ExpectReadAs(*ReadBytes(DocumentWithText("Windows-1252", "a" + odd + "b"), "Windows-1252"), expected,
                     Hex(odd));
    }
}

TEST(HostileEncodings, Windows1252HighBytesReadAsTheirCharacters) {
    auto result = ReadBytes(DocumentWithText("Windows-1252", "\x80\xE4\xC9"));
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_STREQ(result->ecu->GetNrcContainer()->GetNrc(uint8_t{16})->GetText(),
                 "\xE2\x82\xAC\xC3\xA4\xC3\x89");
}

// Every byte from 0x80 up: the single-byte encodings read each as its character, UTF-8 and
// US-ASCII refuse the document.
TEST(HostileEncodings, EveryByteAfterTheAsciiRangeReadsAsItsCharacterOrIsRefused) {
    std::string high;
    std::string asWindows1252;
    std::string asLatin1;
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        high += static_cast<char>(byte);
        asWindows1252 += Utf8(Windows1252(static_cast<unsigned char>(byte)));
        asLatin1 += Utf8(static_cast<char32_t>(byte));
    }
    ExpectReadAs(*ReadBytes(DocumentWithText("Windows-1252", high)), asWindows1252, "Windows-1252");
    ExpectReadAs(*ReadBytes(DocumentWithText("utf-8", high), "Windows-1252"), asWindows1252, "Windows-1252");
    ExpectReadAs(*ReadBytes(DocumentWithText("iso-8859-1", high)), asLatin1, "iso-8859-1");
    ExpectReadAs(*ReadBytes(DocumentWithText("utf-8", high), "iso-8859-1"), asLatin1, "iso-8859-1");
    for (const char* encoding : {"utf-8", "US-ASCII"}) {
        ExpectRefused(*ReadBytes(DocumentWithText(encoding, high)), encoding);
        ExpectRefused(*ReadBytes(DocumentWithText("utf-8", high), encoding), encoding);
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

TEST(HostileEncodings, BrokenUtf16IsRefused) {
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
        ExpectRefused(*ReadBytes(document), Hex(unit));
        ExpectRefused(*ReadBytes(document, "UTF-16"), Hex(unit));
    }
    // Odd byte count: the end tag loses half of its last character.
    const std::string cut = valid.substr(0, valid.rfind(std::string(">\0", 2)) + 1);
    auto result = ReadBytes(cut);
    EXPECT_EQ(result->ecu, nullptr);
    EXPECT_GT(result->report.GetErrorCount(), 0u);
    // A half character after the complete document is not part of it: the document reads.
    ExpectReadAs(*ReadBytes(valid.substr(0, valid.size() - 1)), "abc", "odd length after the end");
}

// A declaration of UTF-16 over single bytes is overruled by the bytes themselves (the XML
// library detects the encoding from the first bytes); UTF-16 named by the caller is refused.
TEST(HostileEncodings, DeclaredUtf16OverSingleBytesReadsTheBytesAndNamedUtf16IsRefused) {
    ExpectReadAs(*ReadBytes(DocumentWithText("UTF-16", "abc")), "abc", "UTF-16 declared, bytes of UTF-8");
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

TEST(HostileEncodings, WideEncodingsDeclaredOverSingleBytesAreRefused) {
    for (const char* encoding : {"UTF-32", "UCS-4", "UTF-16BE", "UTF-16LE", "EBCDIC-CP-US", "IBM1140"}) {
        ExpectRefused(*ReadBytes(DocumentWithText(encoding, "abc\xE4")), encoding);
        ExpectRefused(*ReadBytes(DocumentWithText("utf-8", "abc"), encoding), encoding);
    }
}
