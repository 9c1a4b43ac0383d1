// edit_ecu IN OUT: loads a diagnostic description, adds a service instance that reads the
// engine oil temperature (request, positive and negative response, plus a formula
// conversion for the value), and saves the result.
#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

const char* const kInstanceId = "ReadDataByIdentifier_OilTemperature";
const char* const kConversionId = "OilTemperature_Formula";

// Every message that fails is printed with its level; a refused document names the reason.
std::unique_ptr<Korvel::IEcu> Load(const char* path) {
    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadFile(path, "", collector);
    for (const Korvel::ReadMessage& message : collector.GetMessages()) {
        std::fprintf(stderr, "%s: %s\n", Korvel::ReportLevelName(message.level), message.text.c_str());
    }
    return ecu;
}

bool AddOilTemperature(Korvel::IEcu& ecu) {
    Korvel::IConversionContainer& conversions = *ecu.GetConversionContainer();
    if (!conversions.Contains(kConversionId)) {
        // Raw byte 0..255 to -40..215 degrees Celsius.
        conversions.AddConversion(kConversionId, static_cast<uint32_t>(Korvel::ConversionKind::Formula), 1.0,
                                  -40.0);
    }

    // Build the instance detached through the factory, then add a copy of it to the ECU.
    std::unique_ptr<Korvel::IInstance> instance = Korvel::GetFactory().CreateInstance();
    instance->SetId(kInstanceId);

    Korvel::IRequest* request = instance->CreateRequest();
    request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
    request->AddParam("DataIdentifier", 8, 16, "0x0130", "unsigned", "", "XID CONST MOTOROLA", "");

    Korvel::IPosResponse* response = instance->CreatePosResponse();
    response->AddParam("SID", 0, 8, "0x62", "unsigned", "", "SID CONST", "");
    response->AddParam("DataIdentifier", 8, 16, "0x0130", "unsigned", "", "XID CONST MOTOROLA", "");
    response->AddParam("OilTemperature", 24, 8, "", Korvel::ParamDataType::Unsigned, "degC", 0,
                       kConversionId);

    Korvel::INegResponse* negative = instance->CreateNegResponse();
    negative->AddParam("SID_NR", 0, 8, "0x7F", "unsigned", "", "SID_NR CONST", "");
    negative->AddParam("SIDRQ", 8, 8, "0x22", "unsigned", "", "CONST", "");
    negative->AddParam("NRC", 16, 8, "", "unsigned", "", "", "");

    return ecu.GetInstanceContainer()->AddInstance(*instance) != Korvel::InvalidIndex;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: edit_ecu IN OUT\n");
        return 2;
    }
    std::unique_ptr<Korvel::IEcu> ecu = Load(argv[1]);
    if (!ecu) {
        std::fprintf(stderr, "edit_ecu: cannot read '%s'\n", argv[1]);
        return 1;
    }
    if (!AddOilTemperature(*ecu)) {
        std::fprintf(stderr, "edit_ecu: '%s' already has an instance '%s'\n", argv[1], kInstanceId);
        return 1;
    }

    // Keep the input's encoding when it names one the writer produces.
    std::string version;
    std::string encoding;
    Korvel::GetKLReader().IsKorvelFile(argv[1], version, encoding);
    if (encoding != "utf-8" && encoding != "Windows-1252" && encoding != "iso-8859-1") {
        encoding = "utf-8";
    }
    std::string error;
    if (Korvel::GetKLWriter().WriteToFile(*ecu, argv[2], encoding.c_str(), error) == 0) {
        std::fprintf(stderr, "edit_ecu: cannot write '%s': %s\n", argv[2], error.c_str());
        return 1;
    }
    const Korvel::IInstanceContainer& instances = *ecu->GetInstanceContainer();
    std::printf("%s: %u instances, %u conversions (added %s)\n", argv[2],
                static_cast<unsigned>(instances.GetCount()),
                static_cast<unsigned>(ecu->GetConversionContainer()->GetCount()), kInstanceId);
    return 0;
}
