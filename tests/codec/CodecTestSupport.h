// Building small descriptions in memory for the codec's tests, and reading the samples.
#pragma once

#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace codec_test {

// One parameter as the document writes it.
struct ParamSpec {
    std::string id;
    uint32_t bitPos;
    uint32_t bitLen;
    std::string type;
    std::string semantics = "";
    std::string value = "";
    std::string convId = "";
    std::string unit = "";
};

// An ECU with one instance "I" whose request (or other message) holds the parameters.
inline std::unique_ptr<Korvel::IEcu> EcuWith(const std::vector<ParamSpec>& params,
                                             uint32_t kind = Korvel::MessageKindRequest) {
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetFactory().CreateEcu();
    ecu->GetInstanceContainer()->AddInstance("I");
    Korvel::IInstance* instance = ecu->GetInstanceContainer()->GetInstance("I");
    Korvel::IMessage* message = nullptr;
    if (kind == Korvel::MessageKindRequest) {
        message = instance->CreateRequest();
    } else if (kind == Korvel::MessageKindPosResponse) {
        message = instance->CreatePosResponse();
    } else {
        message = instance->CreateNegResponse();
    }
    for (const ParamSpec& p : params) {
        message->AddParam(p.id.c_str(), p.bitPos, p.bitLen, p.value.c_str(), p.type.c_str(), p.unit.c_str(),
                          p.semantics.c_str(), p.convId.c_str());
    }
    return ecu;
}

inline std::unique_ptr<Korvel::IEcu> ReadSample(const std::string& name) {
    const std::string path = std::string(ZEKL_EXAMPLES_DIR) + "/" + name;
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadFile(path.c_str(), "");
    EXPECT_NE(ecu, nullptr) << path;
    return ecu;
}

inline std::vector<uint8_t> Bytes(const std::string& hex) {
    std::vector<uint8_t> bytes;
    std::string digits;
    for (char c : hex) {
        if (c != ' ') {
            digits += c;
        }
    }
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

inline std::string Hex(const std::vector<uint8_t>& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i != 0) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0xF];
    }
    return text;
}

// The decoded parameter with that id; fails the test when there is none.
inline const Korvel::DecodedParam& Param(const Korvel::DecodedMessage& message, const std::string& id) {
    for (const Korvel::DecodedParam& param : message.params) {
        if (id == param.id) {
            return param;
        }
    }
    ADD_FAILURE() << "no decoded parameter " << id;
    static const Korvel::DecodedParam none;
    return none;
}

}  // namespace codec_test
