// Where the codec puts a parameter's bits: hand-written messages for a representative set of
// types, byte orders, positions and lengths, and properties over generated layouts checked
// against a bit-by-bit reference of the rule.
#include "codec/CodecTestSupport.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <sstream>

namespace {

using namespace Korvel;
using codec_test::Bytes;
using codec_test::EcuWith;
using codec_test::Hex;
using codec_test::ParamSpec;

// The raw value of a decoded parameter as text: integers in decimal, reals with 9 digits,
// bytes in hex without blanks, texts as they are.
std::string RawText(const DecodedParam& param) {
    char buffer[64];
    switch (param.rawKind) {
        case CodecValueKind::Unsigned:
            return std::to_string(param.unsignedValue);
        case CodecValueKind::Signed:
            return std::to_string(param.signedValue);
        case CodecValueKind::Real:
            std::snprintf(buffer, sizeof(buffer), "%.9g", param.realValue);
            return buffer;
        case CodecValueKind::Bytes: {
            std::string hex = Hex(param.bytes);
            hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
            return hex;
        }
        case CodecValueKind::Text:
            return param.text;
        case CodecValueKind::None:
            break;
    }
    return "<none>";
}

struct HandCase {
    const char* type;
    bool motorola;
    uint32_t bitPos;
    uint32_t bitLen;
    const char* value;     // the raw value, as encode takes it and RawText gives it back
    const char* expected;  // the whole message, from byte 0
};

// Worked out by hand from the rule: take ceil((O + L) / 8) bytes from byte P / 8, read them in
// the byte order, shift right by O = P % 8, keep L bits.
const HandCase kHandCases[] = {
    {"unsigned", false, 0, 16, "4660", "34 12"},
    {"unsigned", true, 0, 16, "4660", "12 34"},
    {"unsigned", false, 4, 8, "171", "B0 0A"},
    {"unsigned", true, 4, 8, "171", "0A B0"},
    {"unsigned", false, 3, 1, "1", "08"},
    {"unsigned", true, 7, 2, "3", "01 80"},
    {"unsigned", false, 7, 2, "3", "80 01"},
    {"unsigned", false, 0, 64, "72623859790382856", "08 07 06 05 04 03 02 01"},
    {"unsigned", true, 0, 64, "72623859790382856", "01 02 03 04 05 06 07 08"},
    {"unsigned", true, 7, 64, "1", "00 00 00 00 00 00 00 00 80"},
    {"unsigned", false, 1, 64, "18446744073709551615", "FE FF FF FF FF FF FF FF 01"},
    {"unsigned", true, 13, 11, "2047", "00 FF E0"},
    {"signed", false, 0, 12, "-2", "FE 0F"},
    {"signed", true, 2, 12, "-2", "3F F8"},
    {"signed", true, 8, 8, "-128", "00 80"},
    {"signed", false, 0, 64, "-9223372036854775808", "00 00 00 00 00 00 00 80"},
    {"signed", true, 5, 3, "-4", "80"},
    {"bcd", true, 0, 16, "1234", "12 34"},
    {"bcd", false, 0, 16, "1234", "34 12"},
    {"bcd", true, 4, 4, "7", "70"},
    {"bcd", true, 2, 12, "905", "24 14"},
    {"fp", true, 0, 32, "1", "3F 80 00 00"},
    {"fp", false, 0, 32, "1", "00 00 80 3F"},
    {"fp", true, 1, 32, "1", "00 7F 00 00 00"},
    {"double", true, 0, 64, "1", "3F F0 00 00 00 00 00 00"},
    {"double", false, 0, 64, "-2", "00 00 00 00 00 00 00 C0"},
    {"double", false, 4, 64, "1", "00 00 00 00 00 00 00 FF 03"},
    {"none", true, 0, 24, "ABCDEF", "AB CD EF"},
    {"none", false, 0, 24, "ABCDEF", "EF CD AB"},
    {"none", false, 2, 4, "0A", "28"},
    {"none", true, 0, 72, "010203040506070809", "01 02 03 04 05 06 07 08 09"},
    {"none", false, 0, 72, "010203040506070809", "09 08 07 06 05 04 03 02 01"},
    {"ascii", true, 0, 24, "abc", "61 62 63"},
    {"ascii", false, 0, 24, "abc", "61 62 63"},
    {"ascii", false, 4, 16, "ab", "10 26 06"},
    {"ascii", true, 4, 16, "ab", "06 16 20"},
    {"ascii", false, 8, 72, "123456789", "00 31 32 33 34 35 36 37 38 39"},
    {"ucs2", true, 0, 32, "A\xC3\xA9", "00 41 00 E9"},
    {"ucs2", false, 0, 32, "A\xC3\xA9", "41 00 E9 00"},
    {"utf8", true, 0, 32, "\xC3\xA9", "C3 A9 00 00"},
    {"utf8", false, 16, 24, "\xE2\x82\xAC", "00 00 E2 82 AC"},
};

std::string CaseName(const HandCase& c) {
    std::ostringstream name;
    name << c.type << (c.motorola ? " MOTOROLA" : " Intel") << " at " << c.bitPos << ", " << c.bitLen
         << " bits";
    return name.str();
}

std::unique_ptr<ICodec> CodecFor(const HandCase& c) {
    const std::unique_ptr<IEcu> ecu =
        EcuWith({{"P", c.bitPos, c.bitLen, c.type, c.motorola ? "MOTOROLA" : ""}});
    return CreateCodec(*ecu);
}

TEST(CodecBits_HandWritten, EncodeGivesTheWorkedOutBytes) {
    for (const HandCase& c : kHandCases) {
        const std::unique_ptr<ICodec> codec = CodecFor(c);
        ByteBuffer message;
        CodecError error;
        ASSERT_TRUE(
            codec->Encode(0, MessageKindRequest, {EncodeValue::Text("P", c.value, true)}, message, error))
            << CaseName(c) << ": " << error.message;
        EXPECT_EQ(Hex(message), c.expected) << CaseName(c);
    }
}

TEST(CodecBits_HandWritten, DecodeGivesTheValueBack) {
    for (const HandCase& c : kHandCases) {
        const std::unique_ptr<ICodec> codec = CodecFor(c);
        const std::vector<uint8_t> data = Bytes(c.expected);
        DecodedMessage decoded;
        EXPECT_TRUE(codec->Decode(0, MessageKindRequest, data.data(), data.size(), decoded)) << CaseName(c);
        ASSERT_EQ(decoded.params.size(), 1u);
        EXPECT_EQ(RawText(decoded.params[0]), c.value) << CaseName(c);
        EXPECT_EQ(decoded.params[0].problem, CodecProblem::None) << CaseName(c);
    }
}

TEST(CodecBits_HandWritten, NoneOfMoreThan64BitsDecodesInItsByteOrder) {
    const std::unique_ptr<IEcu> ecu = EcuWith({{"P", 0, 72, "none", ""}});
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const std::vector<uint8_t> data = Bytes("01 02 03 04 05 06 07 08 09");
    DecodedMessage decoded;
    ASSERT_TRUE(codec->Decode(0, MessageKindRequest, data.data(), data.size(), decoded));
    EXPECT_EQ(Hex(decoded.params[0].bytes), "09 08 07 06 05 04 03 02 01");
}

// ---------------------------------------------------------------------------------------------
// Properties over generated layouts. The reference places each bit on its own: field bit k is
// bit O + k of the field's integer, which lies in the byte of that significance (counted from
// the first byte for Intel order, from the last for MOTOROLA).

uint64_t Low(uint32_t bits) {
    return bits >= 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1;
}

// Two's complement of `bits` bits, worked out apart from the codec's own helper.
int64_t AsSigned(uint64_t value, uint32_t bits) {
    if (bits < 64 && ((value >> (bits - 1)) & 1) != 0) {
        return -static_cast<int64_t>(((~value) & Low(bits)) + 1);
    }
    return static_cast<int64_t>(value);
}

struct RefPlace {
    uint32_t byte;
    uint32_t bit;
};

RefPlace ReferenceBit(uint32_t bitPos, uint32_t bitLen, bool motorola, uint32_t k) {
    const uint32_t offset = bitPos % 8;
    const uint32_t count = (offset + bitLen + 7) / 8;
    const uint32_t t = offset + k;
    const uint32_t significance = t / 8;
    const uint32_t byte = bitPos / 8 + (motorola ? count - 1 - significance : significance);
    return {byte, t % 8};
}

// Long byte strings sit on whole bytes, one after the other.
RefPlace ReferenceWideBit(uint32_t bitPos, uint32_t k) {
    return {bitPos / 8 + k / 8, k % 8};
}

struct GenField {
    std::string type;
    bool motorola = false;
    uint32_t bitPos = 0;
    uint32_t bitLen = 0;
    std::string value;  // raw, as encode takes it and RawText gives it back
};

class Generator {
public:
    explicit Generator(uint32_t seed) : random_(seed) {}

    uint64_t Next() { return random_(); }
    uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }

    // A valid length for the type: `index` picks among them.
    static std::vector<uint32_t> Lengths(const std::string& type) {
        std::vector<uint32_t> lengths;
        for (uint32_t length = 1; length <= 64; ++length) {
            const bool valid = type == "unsigned" || type == "signed" || type == "none" ||
                               (type == "bcd" && length % 4 == 0) || (type == "fp" && length == 32) ||
                               (type == "double" && length == 64) ||
                               ((type == "ascii" || type == "utf8") && length % 8 == 0) ||
                               (type == "ucs2" && length % 16 == 0);
            if (valid) {
                lengths.push_back(length);
            }
        }
        return lengths;
    }

    std::string Value(const std::string& type, uint32_t bits) {
        const uint64_t random = Next();
        if (type == "unsigned") {
            return std::to_string(random & Low(bits));
        }
        if (type == "signed") {
            return std::to_string(AsSigned(random & Low(bits), bits));
        }
        if (type == "bcd") {
            std::string digits;
            for (uint32_t i = 0; i < bits / 4; ++i) {
                digits += static_cast<char>('0' + Below(10));
            }
            return std::to_string(std::stoull(digits));
        }
        if (type == "fp") {
            float value = 0.0f;
            do {
                const uint32_t word = static_cast<uint32_t>(random >> Below(32));
                std::memcpy(&value, &word, sizeof(value));
            } while (!std::isfinite(value));
            char buffer[64];
            std::snprintf(buffer, sizeof(buffer), "%.9g", value);
            return buffer;
        }
        if (type == "double") {
            // Nine significant digits, so that the text reads back exactly as RawText prints it.
            char buffer[64];
            std::snprintf(buffer, sizeof(buffer), "%.9g",
                          static_cast<double>(static_cast<int64_t>(random)) / 1e6);
            return buffer;
        }
        if (type == "none") {
            const uint32_t count = (bits + 7) / 8;
            std::vector<uint8_t> bytes(count);
            for (uint8_t& byte : bytes) {
                byte = static_cast<uint8_t>(Below(256));
            }
            if (bits % 8 != 0) {
                bytes[0] &= static_cast<uint8_t>((1u << (bits % 8)) - 1);
            }
            std::string hex = Hex(bytes);
            hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
            return hex;
        }
        // Texts of printable ASCII, ending in a letter so that no padding is cut.
        const uint32_t unitBytes = type == "ucs2" ? 2 : 1;
        const uint32_t count = bits / 8 / unitBytes;
        std::string text;
        for (uint32_t i = 0; i < count; ++i) {
            text += static_cast<char>(i + 1 == count ? 'a' + Below(26) : 0x20 + Below(95));
        }
        return text;
    }

private:
    std::mt19937_64 random_;
};

const char* const kTypes[] = {"unsigned", "signed", "bcd", "fp", "double", "none", "ascii", "utf8", "ucs2"};

// Encodes the fields over random bytes and checks both properties: every bit outside the
// fields keeps its value, and decoding gives every value back. Inside a field the bits must
// equal the reference's placement of the decoded raw bits.
void CheckLayout(const std::vector<GenField>& fields, Generator& random, const std::string& what) {
    std::vector<ParamSpec> specs;
    std::vector<EncodeValue> values;
    uint32_t endByte = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const GenField& f = fields[i];
        const std::string id = "F" + std::to_string(i);
        specs.push_back({id, f.bitPos, f.bitLen, f.type, f.motorola ? "MOTOROLA" : ""});
        values.push_back(EncodeValue::Text(id, f.value, true));
        endByte = std::max(endByte, (f.bitPos + f.bitLen + 7) / 8);
    }
    const std::unique_ptr<IEcu> ecu = EcuWith(specs);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    ByteBuffer before(endByte);
    for (uint8_t& byte : before) {
        byte = static_cast<uint8_t>(random.Below(256));
    }
    ByteBuffer message = before;
    CodecError error;
    ASSERT_TRUE(codec->Encode(0, MessageKindRequest, values, message, error))
        << what << ": " << error.message;
    ASSERT_EQ(message.size(), before.size()) << what;

    std::vector<bool> covered(8 * endByte, false);
    for (const GenField& f : fields) {
        for (uint32_t k = 0; k < f.bitLen; ++k) {
            const RefPlace place = f.bitLen > 64 ? ReferenceWideBit(f.bitPos, k)
                                                 : ReferenceBit(f.bitPos, f.bitLen, f.motorola, k);
            covered[8 * place.byte + place.bit] = true;
        }
    }
    for (uint32_t bit = 0; bit < covered.size(); ++bit) {
        if (!covered[bit]) {
            ASSERT_EQ((message[bit / 8] >> (bit % 8)) & 1, (before[bit / 8] >> (bit % 8)) & 1)
                << what << ": bit " << bit % 8 << " of byte " << bit / 8 << " outside the fields changed";
        }
    }

    DecodedMessage decoded;
    ASSERT_TRUE(codec->Decode(0, MessageKindRequest, message.data(), message.size(), decoded)) << what;
    ASSERT_EQ(decoded.params.size(), fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        EXPECT_EQ(RawText(decoded.params[i]), fields[i].value)
            << what << ": field " << i << " " << fields[i].type;
    }

    // The raw bits of unsigned fields sit where the reference puts them.
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const GenField& f = fields[i];
        if (f.type != "unsigned") {
            continue;
        }
        const uint64_t raw = decoded.params[i].unsignedValue;
        for (uint32_t k = 0; k < f.bitLen; ++k) {
            const RefPlace place = ReferenceBit(f.bitPos, f.bitLen, f.motorola, k);
            ASSERT_EQ((message[place.byte] >> place.bit) & 1, (raw >> k) & 1) << what << ": bit " << k;
        }
    }
}

TEST(CodecBits_Property, EveryTypeOrderAlignmentAndLengthRoundTrips) {
    Generator random(20240601);
    for (const char* type : kTypes) {
        for (bool motorola : {false, true}) {
            for (bool aligned : {true, false}) {
                for (uint32_t length : Generator::Lengths(type)) {
                    const uint32_t offset = aligned ? 0 : 1 + random.Below(7);
                    const uint32_t bitPos = 8 * random.Below(3) + offset;
                    GenField field{type, motorola, bitPos, length, random.Value(type, length)};
                    std::ostringstream what;
                    what << type << (motorola ? " MOTOROLA" : " Intel") << " at " << bitPos << ", " << length
                         << " bits = " << field.value;
                    CheckLayout({field}, random, what.str());
                    if (testing::Test::HasFatalFailure()) {
                        return;
                    }
                }
            }
        }
    }
}

TEST(CodecBits_Property, LongByteStringsOnWholeBytesRoundTrip) {
    Generator random(7);
    for (const char* type : {"none", "ascii", "utf8", "ucs2"}) {
        for (bool motorola : {false, true}) {
            for (uint32_t bytes : {9u, 10u, 16u, 33u}) {
                const uint32_t length = 8 * (std::string(type) == "ucs2" ? bytes / 2 * 2 : bytes);
                GenField field{type, motorola, 8 * random.Below(4), length, random.Value(type, length)};
                CheckLayout({field}, random, std::string(type) + " of " + std::to_string(length) + " bits");
            }
        }
    }
}

TEST(CodecBits_Property, GeneratedMultiFieldLayoutsRoundTripAndKeepOtherBits) {
    Generator random(42);
    for (int layout = 0; layout < 400; ++layout) {
        std::vector<GenField> fields;
        std::vector<bool> taken(8 * 64, false);
        uint32_t bitPos = random.Below(12);
        const uint32_t count = 1 + random.Below(6);
        for (uint32_t i = 0; i < count; ++i) {
            const std::string type = kTypes[random.Below(9)];
            const std::vector<uint32_t> lengths = Generator::Lengths(type);
            const uint32_t length = lengths[random.Below(static_cast<uint32_t>(lengths.size()))];
            const bool motorola = random.Below(2) == 1;
            // A MOTOROLA field that does not start on a byte reaches back into the byte
            // before its position's, so each field moves on until none of its bits is taken.
            const auto overlaps = [&](uint32_t at) {
                for (uint32_t k = 0; k < length; ++k) {
                    const RefPlace place = ReferenceBit(at, length, motorola, k);
                    if (taken[8 * place.byte + place.bit]) {
                        return true;
                    }
                }
                return false;
            };
            while (overlaps(bitPos)) {
                ++bitPos;
            }
            for (uint32_t k = 0; k < length; ++k) {
                const RefPlace place = ReferenceBit(bitPos, length, motorola, k);
                taken[8 * place.byte + place.bit] = true;
            }
            fields.push_back({type, motorola, bitPos, length, random.Value(type, length)});
            bitPos += length + random.Below(10);
        }
        CheckLayout(fields, random, "layout " + std::to_string(layout));
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

}  // namespace
