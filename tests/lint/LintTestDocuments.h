// Documents for the lint tests: a description that lints clean, built from small pieces, so
// that each test changes one thing and sees exactly the finding that change makes.
#pragma once

#include <ZeKL/ZeKL.h>

#include <string>
#include <utility>
#include <vector>

namespace LintTest {

struct P {
    std::string id;
    int bitPos;
    int bitLen;
    std::string type = "unsigned";
    std::string value = "";
    std::string semantics = "";
    std::string convId = "";
};

inline std::string ParamXml(const P& p) {
    return "   <PARAMETER id=\"" + p.id + "\" bitPos=\"" + std::to_string(p.bitPos) + "\" bitLen=\"" +
           std::to_string(p.bitLen) + "\" type=\"" + p.type + "\" unit=\"\" value=\"" + p.value +
           "\" semantics=\"" + p.semantics + "\" convId=\"" + p.convId + "\"/>\n";
}

inline std::string MessageXml(const char* tag, const std::vector<P>& params) {
    std::string xml = std::string("  <") + tag + ">\n";
    for (const P& p : params) {
        xml += ParamXml(p);
    }
    return xml + "  </" + tag + ">\n";
}

struct Instance {
    std::string id;
    std::vector<P> request;
    std::vector<P> response;
    std::vector<P> negative;
    bool hasRequest = true;
    bool hasResponse = true;
};

inline std::string InstanceXml(const Instance& instance) {
    std::string xml = " <INSTANCE id=\"" + instance.id + "\">\n";
    if (instance.hasRequest) {
        xml += MessageXml("REQUEST", instance.request);
    }
    if (instance.hasResponse) {
        xml += MessageXml("RESPONSE", instance.response);
    }
    xml += MessageXml("NEGATIVE_RESPONSE", instance.negative);
    return xml + " </INSTANCE>\n";
}

inline std::vector<P> NegativeResponse(const std::string& sid) {
    return {P{"SID_NR", 0, 8, "unsigned", "0x7F", "SID_NR CONST"}, P{"SIDRQ", 8, 8, "unsigned", sid, "CONST"},
            P{"NRC", 16, 8}};
}

// A ReadDataByIdentifier instance that is right in every respect: SID 0x22, its DID, the answer
// 0x62 with the DID and one data parameter using `convId`, and the negative response.
inline Instance ReadDid(const std::string& id, const std::string& did, const std::string& convId) {
    Instance instance;
    instance.id = id;
    instance.request = {P{"SID", 0, 8, "unsigned", "0x22", "SID CONST"},
                        P{"DataIdentifier", 8, 16, "unsigned", did, "XID CONST MOTOROLA"}};
    instance.response = {P{"SID", 0, 8, "unsigned", "0x62", "SID CONST"},
                         P{"DataIdentifier", 8, 16, "unsigned", did, "XID CONST MOTOROLA"},
                         P{"Data", 24, 16, "unsigned", "", "MOTOROLA", convId}};
    instance.negative = NegativeResponse("0x22");
    return instance;
}

// The protocol's whole default NRC table, as the library writes it.
inline std::string NrcTableXml(uint32_t protocol) {
    const std::string empty = CreateXmlForEmptyEcu(static_cast<int32_t>(protocol), 1);
    const std::size_t begin = empty.find("<NEGATIVE_RESPONSE_CODES>");
    const std::size_t end = empty.find("</NEGATIVE_RESPONSE_CODES>");
    std::string table = empty.substr(begin, end - begin) + "</NEGATIVE_RESPONSE_CODES>\n";
    // One line end, not CR LF, like the rest of the test documents.
    std::string lines;
    for (char c : table) {
        if (c != '\r') {
            lines += c;
        }
    }
    return " " + lines;
}

struct Document {
    std::string protocol = "UDS";
    std::string nrcTable = NrcTableXml(Korvel::ProtocolUds);
    std::vector<Instance> instances = {
        ReadDid("ReadDataByIdentifier_EngineSpeed", "0x0100", "EngineSpeed_Formula"),
        ReadDid("ReadDataByIdentifier_Mode", "0x0101", "Mode_ValueTable")};
    std::vector<std::string> conversions = {
        " <CONVERSION id=\"EngineSpeed_Formula\" factor=\"0.25\" offset=\"0\"/>\n",
        " <CONVERSION id=\"Mode_ValueTable\" factor=\"1\" offset=\"0\">\n"
        "  <MAP val=\"1\" text=\"Normal\" />\n"
        "  <MAP val=\"2\" text=\"Sport\" />\n"
        " </CONVERSION>\n"};

    std::string Xml() const {
        std::string xml =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"" + protocol + "\">\n" + nrcTable;
        for (const Instance& instance : instances) {
            xml += InstanceXml(instance);
        }
        for (const std::string& conversion : conversions) {
            xml += conversion;
        }
        return xml + "</ECU>\n";
    }
};

// Line and column (from 1) of the first `needle` in the text, at or after `after`.
inline std::pair<uint32_t, uint32_t> PlaceOf(const std::string& text, const std::string& needle,
                                             const std::string& after = std::string()) {
    const std::size_t from = after.empty() ? 0 : text.find(after);
    const std::size_t at = text.find(needle, from == std::string::npos ? 0 : from);
    if (at == std::string::npos) {
        return {0, 0};
    }
    uint32_t line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < at; ++i) {
        if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    return {line, static_cast<uint32_t>(at - lineStart + 1)};
}

}  // namespace LintTest
