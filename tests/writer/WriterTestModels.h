// Models and helpers shared by the writer tests.
#pragma once

#include <ZeKL/Exports.h>

#include <memory>
#include <string>

namespace Korvel::WriterTest {

// A small but complete KWP description: two NRCs, two instances (one with parameters in all
// three messages, one with empty messages), a formula and a text-table conversion.
inline std::unique_ptr<IEcu> MakeSampleEcu() {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    ecu->SetProtocol(ProtocolKwp);

    INrcContainer* nrcs = ecu->GetNrcContainer();
    nrcs->AddNrc(uint8_t{0x10}, "generalReject");
    nrcs->AddNrc(uint8_t{0x22}, "conditionsNotCorrect & more");

    IInstanceContainer* instances = ecu->GetInstanceContainer();
    instances->AddInstance("ReadTemperature");
    IInstance* read = instances->GetInstance(0u);
    IRequest* request = read->CreateRequest();
    request->AddParam("SID", 0, 8, "22", "unsigned", "", "SID CONST", "");
    request->AddParam("DID", 8, 16, "F40D", "none", "", "CONST MOTOROLA", "");
    IPosResponse* response = read->CreatePosResponse();
    response->AddParam("SID", 0, 8, "62", "unsigned", "", "SID CONST", "");
    response->AddParam("Temp", 24, 8, "", "unsigned", "degC", "", "Temp_Formula");
    response->AddParam("State", 32, 8, "", "unsigned", "", "", "State_ValueTable");
    INegResponse* negative = read->CreateNegResponse();
    negative->AddParam("NRC", 16, 8, "", "unsigned", "", "", "");

    instances->AddInstance("Reset");
    IInstance* reset = instances->GetInstance(1u);
    reset->CreateRequest();
    reset->CreatePosResponse();
    reset->CreateNegResponse();

    IConversionContainer* conversions = ecu->GetConversionContainer();
    conversions->AddConversion("Temp_Formula", static_cast<uint32_t>(ConversionKind::Formula), 0.5, -40.0);
    std::unique_ptr<ITextTable> table = GetFactory().CreateTextTable();
    table->AddElement("1", "on");
    table->AddElement("0", "off");
    conversions->AddConversion("State_ValueTable", static_cast<uint32_t>(ConversionKind::ValueTable), *table);
    return ecu;
}

// The document of MakeSampleEcu written with the encoding name "utf-8".
inline const char* SampleDocumentUtf8() {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<ECU protocol=\"KWP\">\n"
           " <NEGATIVE_RESPONSE_CODES>\n"
           "  <MAP nrc=\"16\" text=\"generalReject\"/>\n"
           "  <MAP nrc=\"34\" text=\"conditionsNotCorrect &amp; more\"/>\n"
           " </NEGATIVE_RESPONSE_CODES>\n"
           " <INSTANCE id=\"ReadTemperature\">\n"
           "  <REQUEST>\n"
           "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"22\" "
           "semantics=\"SID CONST\" convId=\"\"/>\n"
           "   <PARAMETER id=\"DID\" bitPos=\"8\" bitLen=\"16\" type=\"none\" unit=\"\" value=\"F40D\" "
           "semantics=\"CONST MOTOROLA\" convId=\"\"/>\n"
           "  </REQUEST>\n"
           "  <RESPONSE>\n"
           "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"62\" "
           "semantics=\"SID CONST\" convId=\"\"/>\n"
           "   <PARAMETER id=\"Temp\" bitPos=\"24\" bitLen=\"8\" type=\"unsigned\" unit=\"degC\" value=\"\" "
           "semantics=\"\" convId=\"Temp_Formula\"/>\n"
           "   <PARAMETER id=\"State\" bitPos=\"32\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" "
           "semantics=\"\" convId=\"State_ValueTable\"/>\n"
           "  </RESPONSE>\n"
           "  <NEGATIVE_RESPONSE>\n"
           "   <PARAMETER id=\"NRC\" bitPos=\"16\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" "
           "semantics=\"\" convId=\"\"/>\n"
           "  </NEGATIVE_RESPONSE>\n"
           " </INSTANCE>\n"
           " <INSTANCE id=\"Reset\">\n"
           "  <REQUEST>\n"
           "  </REQUEST>\n"
           "  <RESPONSE>\n"
           "  </RESPONSE>\n"
           "  <NEGATIVE_RESPONSE>\n"
           "  </NEGATIVE_RESPONSE>\n"
           " </INSTANCE>\n"
           " <CONVERSION id=\"Temp_Formula\" factor=\"0.5000000000000000\" "
           "offset=\"-40.0000000000000000\"/>\n"
           " <CONVERSION id=\"State_ValueTable\" factor=\"1.0000000000000000\" "
           "offset=\"0.0000000000000000\">\n"
           "  <MAP val=\"0\" text=\"off\" />\n"
           "  <MAP val=\"1\" text=\"on\" />\n"
           " </CONVERSION>\n"
           "</ECU>\n";
}

// The document of an ECU without NRCs, instances and conversions.
inline std::string EmptyDocument(const char* protocol, const char* encoding) {
    return std::string("<?xml version=\"1.0\" encoding=\"") + encoding +
           "\"?>\n"
           "<ECU protocol=\"" +
           protocol +
           "\">\n"
           " <NEGATIVE_RESPONSE_CODES>\n"
           " </NEGATIVE_RESPONSE_CODES>\n"
           "</ECU>\n";
}

}  // namespace Korvel::WriterTest
