// The text and byte-image rules of the data model utilities on arbitrary input: no crash, no
// UB, and the properties that hold whatever the input.
#include <ZeKL/ZeKL.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

namespace {

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void CheckHex(const Korvel::IDataModelUtils& utils, const std::string& text) {
    const Korvel::ByteBuffer sentinel{0xAA, 0xBB, 0xCC};
    Korvel::ByteBuffer fromString = sentinel;
    const bool stringOk = utils.HexStringToBytes(fromString, text);
    if (!stringOk) {
        Require(fromString == sentinel);
    }
    const bool isHex = utils.IsHexString(text);
    if (text.find('\0') == std::string::npos) {
        Korvel::ByteBuffer fromChars = sentinel;
        Require(utils.HexStringToBytes(fromChars, text.c_str()) == stringOk);
        Require(fromChars == fromString);
        Require(utils.IsHexString(text.c_str()) == isHex);
    }
    if (isHex && text.find("0x") == std::string::npos) {
        Require(stringOk);
        Require(fromString.size() == (text.size() + 1) / 2);
    }
}

void CheckNumbers(const Korvel::IDataModelUtils& utils, const std::string& text) {
    int32_t signedValue = 7;
    uint32_t unsignedValue = 7;
    double doubleValue = 7;
    float floatValue = 7;
    if (utils.ParseUInt32(text.c_str(), unsignedValue)) {
        Require(!text.empty() && text[0] != '-');
    } else {
        Require(unsignedValue == 7);
    }
    if (!utils.ParseInt32(text.c_str(), signedValue)) {
        Require(signedValue == 7);
    }
    Require(utils.ParseDouble(text.c_str(), doubleValue) == (text.c_str()[0] != '\0'));
    Require(utils.ParseFloat(text.c_str(), floatValue) == (text.c_str()[0] != '\0'));
}

void CheckImages(const Korvel::IDataModelUtils& utils, FuzzedDataProvider& provider) {
    const uint32_t value = provider.ConsumeIntegral<uint32_t>();
    const uint32_t count = provider.ConsumeIntegralInRange<uint32_t>(0, 6);
    Korvel::ByteBuffer image;
    const bool written = utils.UInt32ToBytes(value, image, count);
    Require(written == (count >= 1 && count <= 4));
    if (written) {
        Require(image.size() == count);
        uint32_t back = 0;
        Require(utils.BytesToUInt32(image, back));
        const uint32_t mask = count == 4 ? 0xFFFFFFFFu : ((1u << (8 * count)) - 1u);
        Require(back == (value & mask));
        int32_t signedBack = 0;
        Require(utils.BytesToInt32(image, signedBack));
        Korvel::ByteBuffer again;
        Require(utils.Int32ToBytes(signedBack, again, count));
        Require(again == image);
    }
    const std::string raw = provider.ConsumeRandomLengthString(16);
    const Korvel::ByteBuffer bytes(raw.begin(), raw.end());
    uint32_t u = 0;
    int32_t s = 0;
    double d = 0;
    float f = 0;
    Require(utils.BytesToUInt32(bytes, u) == (!bytes.empty() && bytes.size() <= 4));
    Require(utils.BytesToInt32(bytes, s) == (!bytes.empty() && bytes.size() <= 4));
    Require(utils.BytesToDouble(bytes, d) == (bytes.size() == 8));
    Require(utils.BytesToFloat(bytes, f) == (bytes.size() == 4));
    if (bytes.size() == 8) {
        Korvel::ByteBuffer again;
        Require(utils.DoubleToBytes(d, again));
        Require(again == bytes);
    }
}

void CheckValues(const Korvel::IDataModelUtils& utils, FuzzedDataProvider& provider,
                 const std::string& value) {
    const auto type = static_cast<Korvel::ParamDataType>(provider.ConsumeIntegralInRange<int32_t>(-2, 9));
    const uint32_t byteLength = provider.ConsumeIntegralInRange<uint32_t>(0, 12);
    Korvel::ByteBuffer buffer(provider.ConsumeIntegralInRange<size_t>(0, 10), 0x55);
    const bool ok = utils.ValueToBytes(value, type, byteLength, buffer);
    if (byteLength == 0 || type == Korvel::ParamDataType::Bcd || static_cast<int32_t>(type) > 6 ||
        static_cast<int32_t>(type) < 0) {
        Require(!ok);
    }
    if (ok && type == Korvel::ParamDataType::Ascii) {
        Require(buffer.size() >= byteLength);
    }
    uint32_t out = 0;
    (void)utils.ValueToUInt32(value, type, provider.ConsumeBool(), out);
}

void CheckNames(const Korvel::IDataModelUtils& utils, FuzzedDataProvider& provider, const std::string& text) {
    const char* name = text.c_str();
    (void)utils.DataTypeFromName(name);
    (void)utils.ProtocolFromName(name);
    (void)utils.HasMotorola(name);
    (void)utils.StripConversionSuffix(name);
    const Korvel::ConversionKind kind = utils.ConversionKindFromName(name);
    Require(kind == Korvel::ConversionKind::Neither || kind == Korvel::ConversionKind::Formula ||
            kind == Korvel::ConversionKind::ValueTable);
    const std::string plain(name);
    if (plain.find("_Formula") == std::string::npos && plain.find("_ValueTable") == std::string::npos) {
        for (auto made : {Korvel::ConversionKind::Formula, Korvel::ConversionKind::ValueTable}) {
            const std::string full = utils.MakeConversionName(name, made);
            Require(utils.ConversionKindFromName(full.c_str()) == made);
            Require(utils.StripConversionSuffix(full.c_str()) == plain);
        }
    }
    const Korvel::SemanticsFlags flags = utils.SemanticsFromString(name);
    Require(flags <= 31u);
    const Korvel::SemanticsFlags chosen = provider.ConsumeIntegral<uint32_t>() & 31u;
    const std::string words = utils.SemanticsToString(chosen);
    Require(utils.SemanticsFromString(words.c_str()) == chosen);

    const char separator = provider.ConsumeIntegral<char>();
    const std::vector<std::string> pieces = utils.SplitString(text, separator);
    Require(!pieces.empty());
    std::string joined;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        joined += (i == 0 ? "" : std::string(1, separator)) + pieces[i];
    }
    if (!text.empty() && text.back() == separator && !(pieces.size() == 1 && pieces[0] == text)) {
        joined += separator;
    }
    Require(joined == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Korvel::IDataModelUtils& utils = Korvel::GetDataModelUtils();
    FuzzedDataProvider provider(data, size);
    const std::string text = provider.ConsumeRandomLengthString(256);
    CheckHex(utils, text);
    CheckNumbers(utils, text);
    CheckValues(utils, provider, text);
    CheckNames(utils, provider, text);
    CheckImages(utils, provider);
    return 0;
}
