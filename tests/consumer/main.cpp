// Checks that the installed package is complete: the umbrella header compiles, the library
// links and loads, and its entry points work together (empty document -> reader -> writer).
#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace {

int failures = 0;

void Check(bool ok, const char* what) {
    std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
    if (!ok) {
        ++failures;
    }
}

}  // namespace

int main() {
    uint32_t major = 0, minor = 0, patch = 0, build = 0;
    Korvel::GetVersion(major, minor, patch, build);
    Check(major == 3 && minor == 0 && patch == 0 && build == 0, "GetVersion gives 3.0.0.0");
    Check(std::strcmp(Korvel::GetVersionString(), "3.0.1") == 0, "GetVersionString gives 3.0.1");

    Korvel::ByteBuffer bytes;
    Check(Korvel::GetDataModelUtils().HexStringToBytes(bytes, "0x12 0x3") && bytes.size() == 2 &&
              bytes[0] == 0x12 && bytes[1] == 0x03,
          "GetDataModelUtils reads a hex text");

    const std::string kwp = CreateXmlForEmptyEcu(Korvel::ProtocolKwp, 1);
    Check(kwp.find("<ECU protocol=\"KWP\">") != std::string::npos,
          "CreateXmlForEmptyEcu gives a KWP document");

    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadText(kwp, "");
    Check(ecu != nullptr, "GetKLReader reads the empty document");
    if (ecu) {
        Check(ecu->GetProtocol() == Korvel::ProtocolKwp, "the ECU is a KWP ECU");
        Check(ecu->GetNrcContainer()->GetCount() == 24, "the ECU holds the 24 KWP codes");
        std::string written;
        Check(Korvel::GetKLWriter().WriteToString(*ecu, written, "utf-8") > 0 &&
                  written.find("General reject") != std::string::npos,
              "GetKLWriter writes the ECU");

        std::unique_ptr<Korvel::IWriterConfig> config = Korvel::GetKLWriter().CreateConfig();
        config->SetEncodeAllValues(true);
        config->SetRefuseUncarriedCharacters(true);
        ecu->GetConversionContainer()->AddConversion("T_Formula", 1u, 1.0, 0.0);
        std::string error;
        Check(Korvel::GetKLWriter().WriteToString(*ecu, written, "Windows-1252", *config, error) > 0 &&
                  error.empty(),
              "a writer configuration of one's own writes the ECU");
        ecu->GetNrcContainer()->AddNrc(uint8_t{0x99}, "\xCE\xA9");
        Check(Korvel::GetKLWriter().WriteToString(*ecu, written, "Windows-1252", *config, error) == 0 &&
                  error.find("U+03A9") != std::string::npos,
              "it refuses a character Windows-1252 lacks, naming it");

        Korvel::IInstanceContainer* instances = ecu->GetInstanceContainer();
        Korvel::IInstance* instance = instances->GetInstance(instances->AddInstance("TesterPresent"));
        instance->CreateRequest()->AddParam("SID", 0, 8, "0x3E", "unsigned", "", "SID CONST", "");
        std::unique_ptr<Korvel::ICodec> codec = Korvel::CreateCodec(*ecu);
        const uint8_t negative[] = {0x7F, 0x3E, 0x10};
        Korvel::DecodedMessage decoded;
        Check(codec != nullptr && codec->DecodeAny(negative, sizeof(negative), decoded) &&
                  std::strcmp(decoded.nrcText, "General reject") == 0,
              "CreateCodec decodes a negative response with the NRC's text");
    }

    std::unique_ptr<Korvel::IEcu> fresh = Korvel::GetFactory().CreateEcu();
    Check(fresh != nullptr && fresh->GetNrcContainer()->GetCount() == 0, "GetFactory creates an empty ECU");
    Check(!IsKorvelFile("/nonexistent/zekl-consumer.xml"), "IsKorvelFile is false for a missing file");

    std::printf("%s: %d check(s) failed\n", failures == 0 ? "consumer passed" : "consumer FAILED", failures);
    return failures == 0 ? 0 : 1;
}
