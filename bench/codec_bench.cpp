// zekl_codec_bench: speed of the message codec.
//
// - Decode: a typical positive response of 10 parameters (constants, formulas, a signed value,
//   value tables, bit fields), decoded by ICodec::Decode into one kept result, against a
//   straightforward loop over the IParam getters that does the same work (place the bits, check
//   the constants, apply the formula or look the value up in the table), side by side in one
//   run on one core. Both see the same 256 messages in turn; their values are compared.
// - Recognition: ICodec::Recognise among 50,000 instances generated in memory (requests and
//   responses of three service shapes, and negative responses). The median is taken over
//   batches of 16 messages, each batch timed as a whole and divided by 16, so that the clock's
//   own cost does not pass for recognition time.
//
// Targets: decode at least 2 million messages per second and at least 10 times the getter
// loop; recognition median at most 1 us. --check makes a FAIL the exit status 1.
#include <ZeKL/ZeKL.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace Korvel;

double Seconds(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

struct Options {
    bool check = false;
    bool quick = false;
    uint32_t instances = 50000;
};

bool ParseOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--check") {
            options.check = true;
        } else if (arg == "--quick") {
            options.quick = true;
        } else if (arg == "--instances" && i + 1 < argc) {
            options.instances = static_cast<uint32_t>(std::strtoul(argv[++i], nullptr, 10));
        } else {
            return false;
        }
    }
    return options.instances > 0;
}

// ---------------------------------------------------------------------------------------------
// The typical response

const char* const kResponseInstance = "ReadDataByIdentifier_EngineStatus";

void AddTable(IEcu& ecu, const char* id, const std::vector<const char*>& texts) {
    IConversionContainer* conversions = ecu.GetConversionContainer();
    conversions->AddConversion(id, static_cast<uint32_t>(ConversionKind::ValueTable), 1.0, 0.0);
    IConversion* conversion = conversions->GetConversion(id);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        conversion->AddTextTableElement(std::to_string(i).c_str(), texts[i]);
    }
}

std::unique_ptr<IEcu> TypicalEcu() {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    IConversionContainer* conversions = ecu->GetConversionContainer();
    const uint32_t formula = static_cast<uint32_t>(ConversionKind::Formula);
    conversions->AddConversion("EngineSpeed_Formula", formula, 0.25, 0.0);
    conversions->AddConversion("Temperature_Formula", formula, 1.0, -40.0);
    conversions->AddConversion("Torque_Formula", formula, 0.1, 0.0);
    conversions->AddConversion("Voltage_Formula", formula, 0.1, 0.0);
    conversions->AddConversion("Odometer_Formula", formula, 0.1, 0.0);
    AddTable(*ecu, "Gear_ValueTable", {"Park", "Reverse", "Neutral", "Drive", "Sport", "Manual"});
    AddTable(*ecu, "Mode_ValueTable", {"Off", "Eco", "Normal", "Dynamic"});
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    IInstance* instance = instances->GetInstance(instances->AddInstance(kResponseInstance));
    IRequest* request = instance->CreateRequest();
    request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
    request->AddParam("DataIdentifier", 8, 16, "0x4711", "unsigned", "", "XID CONST MOTOROLA", "");
    IPosResponse* response = instance->CreatePosResponse();
    response->AddParam("SID", 0, 8, "0x62", "unsigned", "", "SID CONST", "");
    response->AddParam("DataIdentifier", 8, 16, "0x4711", "unsigned", "", "XID CONST MOTOROLA", "");
    response->AddParam("EngineSpeed", 24, 16, "", "unsigned", "rpm", "MOTOROLA", "EngineSpeed_Formula");
    response->AddParam("CoolantTemperature", 40, 8, "", "unsigned", "degC", "", "Temperature_Formula");
    response->AddParam("Torque", 48, 16, "", "signed", "Nm", "MOTOROLA", "Torque_Formula");
    response->AddParam("Gear", 64, 8, "", "unsigned", "", "", "Gear_ValueTable");
    response->AddParam("BatteryVoltage", 72, 8, "", "unsigned", "V", "", "Voltage_Formula");
    response->AddParam("StatusBits", 80, 4, "", "unsigned", "", "", "");
    response->AddParam("DriveMode", 84, 4, "", "unsigned", "", "", "Mode_ValueTable");
    response->AddParam("Odometer", 88, 32, "", "unsigned", "km", "MOTOROLA", "Odometer_Formula");
    return ecu;
}

std::vector<std::vector<uint8_t>> TypicalMessages(uint32_t count) {
    std::mt19937 random(1234);
    std::vector<std::vector<uint8_t>> messages;
    for (uint32_t i = 0; i < count; ++i) {
        std::vector<uint8_t> m = {0x62, 0x47, 0x11};
        for (int b = 0; b < 5; ++b) {
            m.push_back(static_cast<uint8_t>(random()));
        }
        m.push_back(static_cast<uint8_t>(random() % 6));                             // gear
        m.push_back(static_cast<uint8_t>(random()));                                 // voltage
        m.push_back(static_cast<uint8_t>((random() % 4) << 4 | (random() & 0x0F)));  // mode, bits
        for (int b = 0; b < 4; ++b) {
            m.push_back(static_cast<uint8_t>(random()));
        }
        messages.push_back(std::move(m));
    }
    return messages;
}

// The same work through the model's getters, as a caller without the codec would write it.
struct NaiveValue {
    bool ok = false;
    bool isText = false;
    double physical = 0.0;
    const char* text = "";
};

void NaiveDecode(const IMessage& message, const uint8_t* data, std::size_t size,
                 std::vector<NaiveValue>& out) {
    const IDataModelUtils& utils = GetDataModelUtils();
    out.resize(message.GetCount());
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        const IParam* param = message.GetParam(static_cast<int>(i));
        NaiveValue& value = out[i];
        value = NaiveValue();
        const uint32_t bitPos = param->GetBitPos();
        const uint32_t bitLength = param->GetBitLength();
        const uint32_t first = bitPos / 8;
        const uint32_t offset = bitPos % 8;
        const uint32_t count = (offset + bitLength + 7) / 8;
        if (first + count > size || bitLength == 0 || bitLength > 64 || count > 8) {
            continue;
        }
        const bool motorola = param->IsMotorola();
        uint64_t raw = 0;
        for (uint32_t k = 0; k < count; ++k) {
            raw = (raw << 8) | data[first + (motorola ? k : count - 1 - k)];
        }
        raw >>= offset;
        if (bitLength < 64) {
            raw &= (uint64_t{1} << bitLength) - 1;
        }
        double number = static_cast<double>(raw);
        if (param->GetDataType() == ParamDataType::Signed && bitLength < 64 &&
            (raw >> (bitLength - 1)) != 0) {
            number = static_cast<double>(static_cast<int64_t>(raw) - (int64_t{1} << bitLength));
        }
        if (param->IsConst()) {
            const ByteBuffer image = param->GetValueImage();
            uint64_t expected = 0;
            for (std::size_t k = 0; k < image.size(); ++k) {
                expected = (expected << 8) | image[motorola ? k : image.size() - 1 - k];
            }
            if (expected != raw) {
                continue;
            }
        }
        const IConversion* conversion = param->GetConversion();
        if (conversion == nullptr) {
            value.physical = number;
            value.ok = true;
        } else if (conversion->HasTextTable()) {
            const ITextTable* table = conversion->GetTextTable();
            for (uint32_t e = 0; e < table->GetCount(); ++e) {
                const ITextTableElement* element = table->GetElement(e);
                uint32_t entry = 0;
                if (utils.ParseUInt32(element->GetValue(), entry) && entry == raw) {
                    value.text = element->GetText();
                    value.isText = true;
                    value.ok = true;
                    break;
                }
            }
        } else {
            value.physical = number * conversion->GetFactor() + conversion->GetOffset();
            value.ok = true;
        }
    }
}

bool SameValues(const DecodedMessage& decoded, const std::vector<NaiveValue>& naive) {
    if (decoded.params.size() != naive.size()) {
        return false;
    }
    for (std::size_t i = 0; i < naive.size(); ++i) {
        const DecodedParam& param = decoded.params[i];
        if (!naive[i].ok || param.problem != CodecProblem::None) {
            return false;
        }
        if (naive[i].isText ? std::strcmp(param.tableText, naive[i].text) != 0
                            : param.physical != naive[i].physical) {
            return false;
        }
    }
    return true;
}

volatile double gSink = 0.0;

struct DecodeFigures {
    double codecRate = 0.0;  // messages per second, best run
    double naiveRate = 0.0;
    bool same = false;
};

DecodeFigures MeasureDecode(const Options& options) {
    const std::unique_ptr<IEcu> ecu = TypicalEcu();
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const IMessage& response = *ecu->GetInstanceContainer()->GetInstance(kResponseInstance)->GetPosResponse();
    const uint32_t instance = codec->FindInstance(kResponseInstance);
    const std::vector<std::vector<uint8_t>> messages = TypicalMessages(256);

    DecodeFigures figures;
    DecodedMessage decoded;
    std::vector<NaiveValue> naive;
    figures.same = true;
    for (const auto& m : messages) {
        const bool clean = codec->Decode(instance, MessageKindPosResponse, m.data(), m.size(), decoded);
        NaiveDecode(response, m.data(), m.size(), naive);
        figures.same = figures.same && clean && SameValues(decoded, naive);
    }

    const uint32_t codecCount = options.quick ? 200000 : 4000000;
    const uint32_t naiveCount = codecCount / 20;
    const int runs = options.quick ? 2 : 7;
    for (int run = 0; run < runs; ++run) {
        double sum = 0.0;
        Clock::time_point start = Clock::now();
        for (uint32_t i = 0; i < codecCount; ++i) {
            const auto& m = messages[i & 255];
            codec->Decode(instance, MessageKindPosResponse, m.data(), m.size(), decoded);
            sum += decoded.params[2].physical;
        }
        Clock::time_point end = Clock::now();
        figures.codecRate = std::max(figures.codecRate, codecCount / Seconds(start, end));

        start = Clock::now();
        for (uint32_t i = 0; i < naiveCount; ++i) {
            const auto& m = messages[i & 255];
            NaiveDecode(response, m.data(), m.size(), naive);
            sum += naive[2].physical;
        }
        end = Clock::now();
        figures.naiveRate = std::max(figures.naiveRate, naiveCount / Seconds(start, end));
        gSink = sum;
    }
    return figures;
}

// ---------------------------------------------------------------------------------------------
// Recognition among many instances

// Three shapes of service, their identifiers numbered through: reading data by identifier
// (22 DID), routine control (31 01 RID) and input-output control (2F DID 03 state).
std::unique_ptr<IEcu> ManyInstances(uint32_t count) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    char id[48];
    char value[16];
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t shape = i % 10 < 6 ? 0 : (i % 10 < 8 ? 1 : 2);
        std::snprintf(value, sizeof(value), "0x%04X", i & 0xFFFF);
        std::snprintf(id, sizeof(id), "%s_%05u", shape == 0 ? "Read" : (shape == 1 ? "Routine" : "Control"),
                      i);
        IInstance* instance = instances->GetInstance(instances->AddInstance(id));
        IRequest* request = instance->CreateRequest();
        IPosResponse* response = instance->CreatePosResponse();
        const char* sid = shape == 0 ? "0x22" : (shape == 1 ? "0x31" : "0x2F");
        const char* positive = shape == 0 ? "0x62" : (shape == 1 ? "0x71" : "0x6F");
        request->AddParam("SID", 0, 8, sid, "unsigned", "", "SID CONST", "");
        response->AddParam("SID", 0, 8, positive, "unsigned", "", "SID CONST", "");
        uint32_t at = 8;
        if (shape == 1) {
            request->AddParam("Sub", 8, 8, "1", "unsigned", "", "CONST", "");
            response->AddParam("Sub", 8, 8, "1", "unsigned", "", "CONST", "");
            at = 16;
        }
        request->AddParam("Identifier", at, 16, value, "unsigned", "", "XID CONST MOTOROLA", "");
        response->AddParam("Identifier", at, 16, value, "unsigned", "", "XID CONST MOTOROLA", "");
        if (shape == 2) {
            request->AddParam("Control", 24, 8, "3", "unsigned", "", "CONST", "");
            request->AddParam("State", 32, 8, "", "unsigned", "", "", "");
        }
        response->AddParam("Value", at + 16, 16, "", "unsigned", "", "MOTOROLA", "");
        INegResponse* negative = instance->CreateNegResponse();
        negative->AddParam("SID_NR", 0, 8, "0x7F", "unsigned", "", "SID_NR CONST", "");
        negative->AddParam("SIDRQ", 8, 8, sid, "unsigned", "", "CONST", "");
        negative->AddParam("NRC", 16, 8, "", "unsigned", "", "", "");
    }
    return ecu;
}

struct RecognitionFigures {
    double buildSeconds = 0.0;
    double medianMicros = 0.0;
    double p99Micros = 0.0;
    double decodeAnyRate = 0.0;
    uint32_t wrong = 0;  // messages recognised as another instance than they were made from
};

RecognitionFigures MeasureRecognition(const Options& options) {
    RecognitionFigures figures;
    const std::unique_ptr<IEcu> ecu = ManyInstances(options.instances);
    Clock::time_point start = Clock::now();
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    figures.buildSeconds = Seconds(start, Clock::now());

    // Requests and responses of random instances, encoded by the codec, and every tenth a
    // negative response.
    std::mt19937 random(99);
    const uint32_t count = 4096;
    std::vector<std::vector<uint8_t>> messages;
    std::vector<uint32_t> expected;
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t instance = random() % options.instances;
        ByteBuffer bytes;
        CodecError error;
        if (i % 10 == 9) {
            bytes = {0x7F, 0x22, 0x31};
            codec->Encode(instance, MessageKindNegResponse, {EncodeValue::Text("NRC", "0x31")}, bytes, error);
            expected.push_back(InvalidIndex);  // any instance with that request SID
        } else {
            const uint32_t kind = i % 2 == 0 ? MessageKindRequest : MessageKindPosResponse;
            std::vector<EncodeValue> values;
            if (kind == MessageKindPosResponse) {
                values.push_back(EncodeValue::Text("Value", "0x1234"));
            } else if (std::strncmp(codec->GetInstanceId(instance), "Control", 7) == 0) {
                values.push_back(EncodeValue::Text("State", "1"));
            }
            codec->Encode(instance, kind, values, bytes, error);
            expected.push_back(instance);
        }
        messages.push_back(bytes);
    }

    Recognition recognition;
    for (uint32_t i = 0; i < count; ++i) {
        codec->Recognise(messages[i].data(), messages[i].size(), recognition);
        if (!recognition.recognised ||
            (expected[i] != InvalidIndex && recognition.instanceIndex != expected[i])) {
            ++figures.wrong;
        }
    }

    const uint32_t batch = 16;
    const uint32_t batches = options.quick ? 2000 : 40000;
    std::vector<double> perMessage;
    perMessage.reserve(batches);
    uint32_t sink = 0;
    for (uint32_t b = 0; b < batches; ++b) {
        const uint32_t base = (b * batch) % count;
        const Clock::time_point from = Clock::now();
        for (uint32_t k = 0; k < batch; ++k) {
            const auto& m = messages[(base + k) % count];
            codec->Recognise(m.data(), m.size(), recognition);
            sink += recognition.instanceIndex;
        }
        perMessage.push_back(Seconds(from, Clock::now()) * 1e6 / batch);
    }
    gSink = sink;
    std::sort(perMessage.begin(), perMessage.end());
    figures.medianMicros = perMessage[perMessage.size() / 2];
    figures.p99Micros = perMessage[perMessage.size() * 99 / 100];

    DecodedMessage decoded;
    const uint32_t decodes = options.quick ? 100000 : 2000000;
    start = Clock::now();
    for (uint32_t i = 0; i < decodes; ++i) {
        const auto& m = messages[i % count];
        codec->DecodeAny(m.data(), m.size(), decoded);
    }
    figures.decodeAnyRate = decodes / Seconds(start, Clock::now());
    return figures;
}

bool Report(bool pass, const std::string& text) {
    std::printf("%s  %s\n", pass ? "PASS" : "FAIL", text.c_str());
    return pass;
}

std::string Format(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), format, value);
    return buffer;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!ParseOptions(argc, argv, options)) {
        std::fprintf(stderr, "usage: zekl_codec_bench [--check] [--quick] [--instances N]\n");
        return 2;
    }
    std::printf("zekl_codec_bench: ZeKL %s, one thread%s\n", GetVersionString(),
                options.quick ? ", quick" : "");

    const DecodeFigures decode = MeasureDecode(options);
    const double ratio = decode.naiveRate > 0 ? decode.codecRate / decode.naiveRate : 0.0;
    std::printf(
        "decode 10-parameter response: codec %.2f M msg/s (%.0f ns each), IParam getter loop %.3f M msg/s "
        "(%.0f ns each), %.1fx\n",
        decode.codecRate / 1e6, 1e9 / decode.codecRate, decode.naiveRate / 1e6, 1e9 / decode.naiveRate,
        ratio);

    const RecognitionFigures recognition = MeasureRecognition(options);
    std::printf(
        "recognise among %u instances: median %.3f us, 99th percentile %.3f us (batches of 16); codec built "
        "in %.0f ms; recognise and decode %.2f M msg/s\n",
        options.instances, recognition.medianMicros, recognition.p99Micros, recognition.buildSeconds * 1e3,
        recognition.decodeAnyRate / 1e6);

    bool ok = true;
    ok &= Report(decode.same, "codec and getter loop give the same values for all 256 messages");
    ok &= Report(recognition.wrong == 0, "every generated message is recognised as its instance (" +
                                             std::to_string(recognition.wrong) + " wrong)");
    bool speed = true;
    speed &= Report(decode.codecRate >= 2e6, "decode at least 2 million messages per second (" +
                                                 Format("%.2f", decode.codecRate / 1e6) + " M)");
    speed &=
        Report(ratio >= 10.0, "decode at least 10x the IParam getter loop (" + Format("%.1f", ratio) + "x)");
    speed &= Report(recognition.medianMicros <= 1.0, "recognise among " + std::to_string(options.instances) +
                                                         " instances in at most 1 us median (" +
                                                         Format("%.3f", recognition.medianMicros) + " us)");
    if (options.quick) {
        std::printf(
            "info  quick run: the speed targets are meaningful only in a full run on a quiet machine\n");
    }
    return options.check && !(ok && speed) ? 1 : 0;
}
