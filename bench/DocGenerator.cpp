#include "DocGenerator.h"

#include <ZeKL/ZeKL.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

namespace ZeKLBench {
namespace {

// splitmix64: tiny, fast and the same on every platform (the standard distributions are not).
class Rng {
public:
    explicit Rng(uint64_t seed) : state_(seed) {}
    uint64_t Next() {
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // Uniform enough in [0, n) for the small n used here.
    uint32_t Below(uint32_t n) { return static_cast<uint32_t>(Next() % n); }
    bool Chance(uint32_t percent) { return Below(100) < percent; }
    template <typename T, size_t N>
    const T& Pick(const T (&items)[N]) {
        return items[Below(static_cast<uint32_t>(N))];
    }

private:
    uint64_t state_;
};

struct Service {
    const char* name;
    unsigned sid;
    unsigned posSid;
    bool hasDid;
};

const Service kServices[] = {
    {"ReadDataByIdentifier", 0x22, 0x62, true},
    {"ReadDataByIdentifier", 0x22, 0x62, true},
    {"ReadDataByIdentifier", 0x22, 0x62, true},
    {"WriteDataByIdentifier", 0x2E, 0x6E, true},
    {"InputOutputControlByIdentifier", 0x2F, 0x6F, true},
    {"RoutineControl", 0x31, 0x71, true},
    {"ReadDTCInformation", 0x19, 0x59, false},
    {"SecurityAccess", 0x27, 0x67, false},
    {"DiagnosticSessionControl", 0x10, 0x50, false},
    {"ClearDiagnosticInformation", 0x14, 0x54, false},
};

const char* const kWords[] = {
    "EngineSpeed",    "VehicleSpeed",   "CoolantTemp",    "OilPressure",
    "BatteryVoltage", "ThrottlePos",    "FuelLevel",      "GearPosition",
    "DoorStatus",     "SeatHeating",    "WindowPosition", "LampStatus",
    "SoftwareVer",    "HardwareVer",    "SerialNumber",   "VIN",
    "OdometerValue",  "AmbientTemp",    "InjectorTime",   "BoostPressure",
    "LambdaSensor",   "KnockCounter",   "MisfireCounter", "ClutchState",
    "BrakePedal",     "SteeringAngle",  "YawRate",        "WheelSpeedFL",
    "WheelSpeedFR",   "AirbagState",    "CrashCounter",   "TyrePressure",
    "WiperMode",      "MirrorPosition", "HeadlampLevel",  "ChargeCurrent",
};

const char* const kUnits[] = {"",
                              "",
                              "",
                              "",
                              "rpm",
                              "km/h",
                              "\xC2\xB0"
                              "C",
                              "V",
                              "mV",
                              "A",
                              "%",
                              "s",
                              "ms",
                              "\xC2\xB5s",
                              "bar",
                              "kPa",
                              "Nm",
                              "l/h",
                              "\xCE\xA9",
                              "1/min"};

const char* const kSemantics[] = {
    "", "", "", "", "", "MOTOROLA", "MOTOROLA", "CONST", "GAP", "XID", "CONST MOTOROLA"};

// Free texts of NRCs and text tables: plain words, German, French and other non-ASCII texts,
// and the markup characters the writer escapes. None holds "&#" or an E with acute accent,
// whose written forms do not read back to the same text.
const char* const kTexts[] = {
    "Off",
    "On",
    "Not available",
    "Error",
    "Valid",
    "Invalid",
    "Initialising",
    "Signal not plausible",
    "Aus",
    "Ein",
    "\xC3\x9C"
    "bertemperatur",
    "\xC3\x96"
    "ldruck zu niedrig",
    "T\xC3\xBCr offen",
    "Stra\xC3\x9F"
    "e nass",
    "K\xC3\xBChlmittel < 10 %",
    "Spannung > 16 V",
    "Gang \"P\" eingelegt",
    "Driver's door",
    "Z\xC3\xBCndung & Motor aus",
    "R\xC3\xA9gime \xC3\xA9lev\xC3\xA9",
    "Temp\xC3\xA9rature moteur",
    "Kraftstoffqualit\xC3\xA4t schlecht",
    "Gr\xC3\xB6\xC3\x9F"
    "e unbekannt",
    "Vitesse <r\xC3\xA9gl\xC3\xA9"
    "e>",
    "Batterie schwach \xE2\x80\x93 laden",
    "\xE2\x82\xAC 12,50 Servicekosten",
    "\xCE\xA9-Sensor defekt",
    "\xC2\xB5"
    "C reset",
    "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x83\x86\xE3\x82\xAD\xE3\x82\xB9\xE3\x83\x88",
    "\xCE\x95\xCE\xBB\xCE\xBB\xCE\xB7\xCE\xBD\xCE\xB9\xCE\xBA\xCE\xAC",
    "Na\xC3\xAFve Einstellung",
    "\xC3\x84rger mit \xC3\x84nderung",
    "\xC3\x88"
    "tat inconnu",
    "Ladezustand 'kritisch'",
};

struct Nrc {
    unsigned code;
    std::string text;
};

// Manufacturer-specific codes with escaped and non-ASCII texts, after the protocol's own.
const Nrc kManufacturerNrcs[] = {
    {240, "Z\xC3\xBCndung aus & Motor l\xC3\xA4uft nicht"},
    {241, "Spannung < 9 V"},
    {242,
     "Temp\xC3\xA9rature > 120 \xC2\xB0"
     "C"},
    {243, "Fahrzeug nicht in \"P\""},
    {244,
     "Wegfahrsperre aktiv \xE2\x80\x93 Schl\xC3\xBC"
     "ssel pr\xC3\xBC"
     "fen"},
    {245, "Service's lock"},
};

// The UDS default table as the library gives it with a new document, then the codes above.
std::vector<Nrc> NrcTable() {
    std::vector<Nrc> table;
    const std::unique_ptr<Korvel::IEcu> empty = Korvel::GetKLReader().ReadText(
        CreateXmlForEmptyEcu(static_cast<int32_t>(Korvel::ProtocolUds), 1), "");
    if (empty != nullptr) {
        const Korvel::INrcContainer& nrcs = *empty->GetNrcContainer();
        for (uint32_t index = 0; index < nrcs.GetCount(); ++index) {
            table.push_back(Nrc{nrcs.GetNrc(index)->GetCode(), nrcs.GetNrc(index)->GetText()});
        }
    }
    table.insert(table.end(), std::begin(kManufacturerNrcs), std::end(kManufacturerNrcs));
    return table;
}

struct Factor {
    double factor;
    double offset;
};

const Factor kFormulas[] = {
    {0.1, 0.0},         {0.01, 0.0},         {0.001, 0.0},           {0.5, -40.0},  {0.25, 0.0},
    {1.0, -40.0},       {2.0, 0.0},          {0.125, 0.0},           {10.0, 0.0},   {0.05, -273.15},
    {1.0 / 255.0, 0.0}, {0.0078125, -128.0}, {100.0 / 65535.0, 0.0}, {0.75, -48.0}, {0.02, 1.5},
};

void AppendUInt(std::string& out, uint64_t value) {
    char digits[24];
    int n = 0;
    do {
        digits[n++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    while (n > 0) {
        out.push_back(digits[--n]);
    }
}

void AppendFixed16(std::string& out, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.16f", value);
    out += buffer;
}

void AppendHex(std::string& out, uint64_t value, int digits) {
    static const char kHex[] = "0123456789ABCDEF";
    for (int i = digits - 1; i >= 0; --i) {
        out.push_back(kHex[(value >> (4 * i)) & 0xF]);
    }
}

// The escaping of MAP texts as the writer does it for UTF-8 output: the five markup
// characters and twelve letters become references ("&" before "#" is kept as it is).
void AppendEscaped(std::string& out, const char* text) {
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    for (; *p != 0; ++p) {
        const unsigned char c = *p;
        switch (c) {
            case '&':
                out += p[1] == '#' ? "&" : "&amp;";
                continue;
            case '<':
                out += "&lt;";
                continue;
            case '>':
                out += "&gt;";
                continue;
            case '\'':
                out += "&apos;";
                continue;
            case '"':
                out += "&quot;";
                continue;
            default:
                break;
        }
        if (c == 0xC3 && p[1] != 0) {
            const char* ref = nullptr;
            switch (p[1]) {
                case 0xA4:
                    ref = "&#228;";
                    break;
                case 0xA8:
                    ref = "&#232;";
                    break;
                case 0xA9:
                    ref = "&#233;";
                    break;
                case 0xB6:
                    ref = "&#246;";
                    break;
                case 0xBC:
                    ref = "&#252;";
                    break;
                case 0x9F:
                    ref = "&#223;";
                    break;
                case 0x84:
                    ref = "&#196;";
                    break;
                case 0x89:
                    ref = "&#200;";
                    break;
                case 0x96:
                    ref = "&#214;";
                    break;
                case 0x9C:
                    ref = "&#220;";
                    break;
                default:
                    break;
            }
            if (ref != nullptr) {
                out += ref;
                ++p;
                continue;
            }
        }
        if (c == 0xE2 && p[1] == 0x82 && p[2] == 0xAC) {
            out += "&#8364;";
            p += 2;
            continue;
        }
        out.push_back(static_cast<char>(c));
    }
}

struct Param {
    std::string id;
    uint32_t bitPos;
    uint32_t bitLen;
    const char* type;
    const char* unit;
    std::string value;
    const char* semantics;
    std::string convId;
};

class Generator {
public:
    Generator(uint64_t seed, DocStats& stats) : rng_(seed), stats_(stats) {}

    bool Run(const std::string& path, uint64_t targetBytes, std::string& error) {
        FILE* file = std::fopen(path.c_str(), "wb");
        if (file == nullptr) {
            error = "cannot open '" + path + "' for writing: " + std::strerror(errno);
            return false;
        }
        std::string out;
        out.reserve(kFlushSize + 64 * 1024);
        out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"UDS\">\n";
        out += " <NEGATIVE_RESPONSE_CODES>\n";
        for (const Nrc& nrc : NrcTable()) {
            out += "  <MAP nrc=\"";
            AppendUInt(out, nrc.code);
            out += "\" text=\"";
            AppendEscaped(out, nrc.text.c_str());
            out += "\"/>\n";
            ++stats_.nrcs;
        }
        out += " </NEGATIVE_RESPONSE_CODES>\n";

        const std::string tail = "</ECU>\n";
        uint64_t flushed = 0;
        bool ok = true;
        // Conversions come after all instances in the document, so they collect apart.
        while (ok && flushed + out.size() + conversions_.size() + tail.size() < targetBytes) {
            if (conversionIds_.empty() || rng_.Chance(30)) {
                AddConversion();
            }
            AddInstance(out);
            if (out.size() >= kFlushSize) {
                ok = std::fwrite(out.data(), 1, out.size(), file) == out.size();
                flushed += out.size();
                out.clear();
            }
        }
        out += conversions_;
        out += tail;
        ok = ok && std::fwrite(out.data(), 1, out.size(), file) == out.size();
        flushed += out.size();
        ok = (std::fclose(file) == 0) && ok;
        if (!ok) {
            error = "writing '" + path + "' failed: " + std::strerror(errno);
            return false;
        }
        stats_.bytes = flushed;
        return true;
    }

private:
    static constexpr size_t kFlushSize = 1 << 20;

    void AddConversion() {
        const uint64_t number = conversionIds_.size();
        const bool table = rng_.Chance(40);
        std::string id = "CONV_";
        id += rng_.Pick(kWords);
        id += '_';
        AppendUInt(id, number);
        id += table ? "_ValueTable" : "_Formula";

        std::string& c = conversions_;
        c += " <CONVERSION id=\"";
        c += id;
        c += "\" factor=\"";
        if (table) {
            AppendFixed16(c, 1.0);
            c += "\" offset=\"";
            AppendFixed16(c, 0.0);
            c += "\">\n";
            // Values are written in byte order of their texts, the order in which a copied
            // table keeps them, so any copy of the model writes the same document.
            const uint32_t count = 2 + rng_.Below(15);
            std::vector<std::string> values;
            uint32_t value = rng_.Below(3);
            for (uint32_t i = 0; i < count; ++i) {
                std::string text;
                AppendUInt(text, value);
                values.push_back(text);
                value += 1 + rng_.Below(3);
            }
            std::sort(values.begin(), values.end());
            for (const std::string& v : values) {
                c += "  <MAP val=\"";
                c += v;
                c += "\" text=\"";
                AppendEscaped(c, rng_.Pick(kTexts));
                c += "\" />\n";
            }
            c += " </CONVERSION>\n";
            ++stats_.tableConversions;
            stats_.tableEntries += count;
        } else {
            const Factor& f = rng_.Pick(kFormulas);
            AppendFixed16(c, f.factor);
            c += "\" offset=\"";
            AppendFixed16(c, f.offset);
            c += "\"/>\n";
            ++stats_.formulaConversions;
        }
        conversionIds_.push_back(std::move(id));
    }

    void AddDataParams(std::vector<Param>& params, uint32_t total, uint32_t bitPos) {
        for (uint32_t k = static_cast<uint32_t>(params.size()); k < total; ++k) {
            Param p;
            p.id = rng_.Pick(kWords);
            p.id += '_';
            AppendUInt(p.id, k);
            p.unit = "";
            p.semantics = rng_.Pick(kSemantics);
            switch (rng_.Below(10)) {
                case 0:
                case 1:
                case 2:
                case 3: {
                    static const uint32_t kLens[] = {1, 2, 4, 8, 8, 16, 16, 24, 32};
                    p.type = "unsigned";
                    p.bitLen = rng_.Pick(kLens);
                    p.unit = rng_.Pick(kUnits);
                    if (rng_.Chance(50)) {
                        AppendUInt(p.value,
                                   rng_.Next() % (p.bitLen >= 32 ? 4294967296ull : (1ull << p.bitLen)));
                    }
                    if (rng_.Chance(45)) {
                        p.convId = conversionIds_[rng_.Below(static_cast<uint32_t>(conversionIds_.size()))];
                    }
                    break;
                }
                case 4: {
                    static const uint32_t kLens[] = {8, 16, 32};
                    p.type = "signed";
                    p.bitLen = rng_.Pick(kLens);
                    p.unit = rng_.Pick(kUnits);
                    if (rng_.Chance(50)) {
                        p.value = "-";
                        AppendUInt(p.value, rng_.Below(120));
                    }
                    if (rng_.Chance(30)) {
                        p.convId = conversionIds_[rng_.Below(static_cast<uint32_t>(conversionIds_.size()))];
                    }
                    break;
                }
                case 5: {
                    const uint32_t bytes = 1 + rng_.Below(6);
                    p.type = "none";
                    p.bitLen = 8 * bytes;
                    for (uint32_t b = 0; b < bytes; ++b) {
                        AppendHex(p.value, rng_.Below(256), 2);
                    }
                    break;
                }
                case 6:
                    p.type = "fp";
                    p.bitLen = 32;
                    p.unit = rng_.Pick(kUnits);
                    AppendUInt(p.value, rng_.Below(1000));
                    p.value += ".5";
                    break;
                case 7:
                    p.type = "double";
                    p.bitLen = 64;
                    p.unit = rng_.Pick(kUnits);
                    p.value = "0.00";
                    AppendUInt(p.value, 1 + rng_.Below(99));
                    break;
                case 8: {
                    const uint32_t chars = 4 + rng_.Below(14);
                    p.type = "ascii";
                    p.bitLen = 8 * chars;
                    if (rng_.Chance(40)) {
                        p.value = "WVW";
                        for (uint32_t i = 3; i < chars; ++i) {
                            p.value.push_back(static_cast<char>('A' + rng_.Below(26)));
                        }
                    }
                    break;
                }
                default:
                    p.type = "bcd";
                    p.bitLen = rng_.Chance(50) ? 8 : 16;
                    break;
            }
            p.bitPos = bitPos;
            bitPos += p.bitLen;
            params.push_back(std::move(p));
        }
    }

    static Param Fixed(const char* id, uint32_t bitPos, uint32_t bitLen, const char* type, uint64_t value,
                       const char* semantics, bool hex = false) {
        Param p{id, bitPos, bitLen, type, "", {}, semantics, {}};
        if (hex) {
            AppendHex(p.value, value, static_cast<int>(bitLen / 4));
        } else {
            AppendUInt(p.value, value);
        }
        return p;
    }

    void WriteMessage(std::string& out, const char* tag, const std::vector<Param>& params) {
        out += "  <";
        out += tag;
        out += ">\n";
        for (const Param& p : params) {
            out += "   <PARAMETER id=\"";
            out += p.id;
            out += "\" bitPos=\"";
            AppendUInt(out, p.bitPos);
            out += "\" bitLen=\"";
            AppendUInt(out, p.bitLen);
            out += "\" type=\"";
            out += p.type;
            out += "\" unit=\"";
            out += p.unit;
            out += "\" value=\"";
            out += p.value;
            out += "\" semantics=\"";
            out += p.semantics;
            out += "\" convId=\"";
            out += p.convId;
            out += "\"/>\n";
        }
        out += "  </";
        out += tag;
        out += ">\n";
        stats_.parameters += params.size();
    }

    void AddInstance(std::string& out) {
        const Service& service = rng_.Pick(kServices);
        const uint64_t number = stats_.instances++;
        const unsigned did = 0xF100u + rng_.Below(0x0E00);

        out += " <INSTANCE id=\"";
        out += service.name;
        out += '_';
        out += rng_.Pick(kWords);
        out += '_';
        AppendHex(out, number, 6);
        out += "\">\n";

        std::vector<Param> params;
        params.push_back(Fixed("SID", 0, 8, "unsigned", service.sid, "SID CONST"));
        uint32_t bitPos = 8;
        if (service.hasDid) {
            params.push_back(Fixed("DID", 8, 16, "none", did, "CONST MOTOROLA", true));
            bitPos = 24;
        }
        AddDataParams(params, 1 + rng_.Below(12), bitPos);
        WriteMessage(out, "REQUEST", params);

        if (rng_.Chance(90)) {
            params.clear();
            params.push_back(Fixed("SID", 0, 8, "unsigned", service.posSid, "SID CONST"));
            bitPos = 8;
            if (service.hasDid) {
                params.push_back(Fixed("DID", 8, 16, "none", did, "CONST MOTOROLA", true));
                bitPos = 24;
            }
            AddDataParams(params, 1 + rng_.Below(12), bitPos);
            WriteMessage(out, "RESPONSE", params);
        }

        params.clear();
        if (rng_.Chance(85)) {
            params.push_back(Fixed("SID_NR", 0, 8, "unsigned", 0x7F, "SID CONST"));
            params.push_back(Fixed("SIDRQ", 8, 8, "unsigned", service.sid, "XID CONST"));
            params.push_back(Fixed("NRC", 16, 8, "unsigned", 0, ""));
            params.back().value.clear();
        }
        WriteMessage(out, "NEGATIVE_RESPONSE", params);
        out += " </INSTANCE>\n";
    }

    Rng rng_;
    DocStats& stats_;
    std::string conversions_;
    std::vector<std::string> conversionIds_;
};

}  // namespace

bool GenerateDocument(const std::string& path, uint64_t targetBytes, uint64_t seed, DocStats& stats,
                      std::string& error) {
    stats = DocStats{};
    Generator generator(seed, stats);
    return generator.Run(path, targetBytes, error);
}

}  // namespace ZeKLBench
