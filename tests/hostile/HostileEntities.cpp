// Entity and DTD attacks: a description received from outside must neither blow up in memory
// nor pull local files into the model.
#include "HostileSupport.h"

#include <numeric>

using namespace Korvel;
using namespace Korvel::HostileTest;

namespace {

const char* const kSecret = "SECRET_FROM_LOCAL_FILE";

std::string NestedEntityDeclarations(int levels, int fanOut) {
    std::string declarations = " <!ENTITY lol0 \"lol\">\n";
    for (int level = 1; level <= levels; ++level) {
        declarations += " <!ENTITY lol" + std::to_string(level) + " \"";
        for (int i = 0; i < fanOut; ++i) {
            declarations += "&lol" + std::to_string(level - 1) + ";";
        }
        declarations += "\">\n";
    }
    return declarations;
}

std::string FileUrl(const std::filesystem::path& path) {
    return "file://" + path.string();
}

// The secret as it would look to each kind of reference: markup for a content reference, a
// plain text for an attribute default.
void WriteSecretFiles(const ScratchFolder& folder) {
    WriteWholeFile(folder / "secret.xml", std::string("<INSTANCE id=\"") + kSecret +
                                              "\"/><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\" text=\"" +
                                              kSecret + "\"/></NEGATIVE_RESPONSE_CODES>");
    WriteWholeFile(folder / "secret.txt", kSecret);
    WriteWholeFile(folder / "evil.dtd", std::string("<!ENTITY secret \"") + kSecret +
                                            "\">\n"
                                            "<!ATTLIST INSTANCE id CDATA \"" +
                                            kSecret +
                                            "\">\n"
                                            "<!ATTLIST MAP text CDATA \"" +
                                            kSecret + "\">\n");
}

// A document that declares an entity is refused at the declaration, with a FATAL message.
void ExpectRefusedWithAFatalMessage(const ReadResult& result, const char* what = "") {
    EXPECT_EQ(result.ecu, nullptr) << what;
    EXPECT_TRUE(result.HasFatal()) << what << "\n" << result.AllMessages();
}

// A document that only names an external DTD reads, and the DTD is never loaded.
void ExpectReadWithoutTheSecret(const ReadResult& result, const char* what) {
    ASSERT_NE(result.ecu, nullptr) << what << "\n" << result.AllMessages();
    EXPECT_FALSE(ModelMentions(*result.ecu, kSecret)) << what << "\n" << result.AllMessages();
}

// A scratch folder holding the local files an attack would pull in.
class HostileEntitiesWithSecrets : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.Valid());
        WriteSecretFiles(folder);
    }
    ScratchFolder folder;
};

}  // namespace

TEST(HostileEntities, BillionLaughsInAnAttributeIsRefusedWithAFatalMessage) {
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n" +
                                 NestedEntityDeclarations(9, 10) +
                                 "]>\n<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES>"
                                 "<MAP nrc=\"16\" text=\"&lol9;\"/></NEGATIVE_RESPONSE_CODES></ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document));
}

TEST(HostileEntities, BillionLaughsInContentIsRefusedWithAFatalMessage) {
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n" +
                                 NestedEntityDeclarations(9, 10) + "]>\n<ECU protocol=\"UDS\">&lol9;</ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document));
}

TEST(HostileEntities, BillionLaughsThroughTheFileReaderIsRefused) {
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    WriteWholeFile(folder / "laughs.xml", "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n" +
                                              NestedEntityDeclarations(9, 10) +
                                              "]>\n<ECU><INSTANCE id=\"&lol9;\"/></ECU>\n");
    ExpectRefusedWithAFatalMessage(*ReadPath((folder / "laughs.xml").string()));
}

TEST(HostileEntities, ManyReferencesToOneLargeEntityNeverMultiplyTheDocumentInMemory) {
    // One flat entity referenced a few thousand times: no nesting, yet 20 MB of text from a
    // document of 30 kB, which the XML library would build before the element is reported.
    const std::string payload(10000, 'x');
    std::string references;
    for (int i = 0; i < 2000; ++i) {
        references += "&big;";
    }
    const std::string document =
        "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY big \"" + payload +
        "\">\n]>\n<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\" text=\"" + references +
        "\"/></NEGATIVE_RESPONSE_CODES></ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document));
}

TEST(HostileEntities, BillionLaughsInAnAttributeDefaultIsRefusedWithAFatalMessage) {
    // The references of an attribute default expand while the declaration is read, before
    // any element uses it.
    const std::string document =
        "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n" + NestedEntityDeclarations(9, 10) +
        " <!ATTLIST INSTANCE id CDATA \"&lol9;\">\n]>\n<ECU protocol=\"UDS\"><INSTANCE/></ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document));
}

TEST(HostileEntities, InternalParameterEntityRepeatedInTheSubsetIsRefused) {
    std::string references;
    for (int i = 0; i < 2000; ++i) {
        references += "%p;";
    }
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY % p \"<!-- " +
                                 std::string(10000, 'x') + " -->\">\n" + references +
                                 "\n]>\n<ECU protocol=\"UDS\"/>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document));
}

TEST_F(HostileEntitiesWithSecrets, ExternalEntityInContentNeverBringsALocalFileIntoTheModel) {
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY ext SYSTEM \"" +
                                 FileUrl(folder / "secret.xml") +
                                 "\">\n]>\n<ECU protocol=\"UDS\">&ext;</ECU>\n";
    auto fromMemory = ReadBytes(document);
    ExpectRefusedWithAFatalMessage(*fromMemory, "memory, absolute URL");

    WriteWholeFile(folder / "doc.xml", document);
    auto fromFile = ReadPath((folder / "doc.xml").string());
    ExpectRefusedWithAFatalMessage(*fromFile, "file, absolute URL");

    // A relative system id resolves beside the document read from a file.
    WriteWholeFile(folder / "relative.xml",
                   "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY ext SYSTEM \"secret.xml\">\n]>\n"
                   "<ECU protocol=\"UDS\">&ext;</ECU>\n");
    auto relative = ReadPath((folder / "relative.xml").string());
    ExpectRefusedWithAFatalMessage(*relative, "file, relative system id");
}

TEST_F(HostileEntitiesWithSecrets, ExternalEntityInAnAttributeNeverBringsALocalFileIntoTheModel) {
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY ext SYSTEM \"" +
                                 FileUrl(folder / "secret.txt") +
                                 "\">\n]>\n<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES>"
                                 "<MAP nrc=\"16\" text=\"&ext;\"/></NEGATIVE_RESPONSE_CODES>"
                                 "<INSTANCE id=\"&ext;\"/></ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document), "attribute reference");
}

TEST_F(HostileEntitiesWithSecrets, ExternalParameterEntityIsNeverLoaded) {
    // Were the DTD loaded, its attribute defaults would give the instance and the NRC their
    // texts from the local file.
    const std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU [\n <!ENTITY % p SYSTEM \"" +
                                 FileUrl(folder / "evil.dtd") +
                                 "\">\n %p;\n]>\n<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES>"
                                 "<MAP nrc=\"16\"/></NEGATIVE_RESPONSE_CODES><INSTANCE/></ECU>\n";
    ExpectRefusedWithAFatalMessage(*ReadBytes(document), "parameter entity");
}

TEST_F(HostileEntitiesWithSecrets, ExternalDtdReferenceToALocalFileIsNeverLoaded) {
    const std::string body =
        "<ECU protocol=\"UDS\"><NEGATIVE_RESPONSE_CODES><MAP nrc=\"16\"/>"
        "</NEGATIVE_RESPONSE_CODES><INSTANCE/></ECU>\n";
    auto absolute = ReadBytes("<?xml version=\"1.0\"?>\n<!DOCTYPE ECU SYSTEM \"" +
                              FileUrl(folder / "evil.dtd") + "\">\n" + body);
    ExpectReadWithoutTheSecret(*absolute, "external DTD, absolute URL");

    WriteWholeFile(folder / "doc.xml",
                   "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU SYSTEM \"evil.dtd\">\n" + body);
    auto relative = ReadPath((folder / "doc.xml").string());
    ExpectReadWithoutTheSecret(*relative, "external DTD, relative");

    // An entity declared only in the external DTD must stay unknown.
    WriteWholeFile(folder / "entity.xml",
                   "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU SYSTEM \"evil.dtd\">\n"
                   "<ECU><INSTANCE id=\"&secret;\"/></ECU>\n");
    auto entity = ReadPath((folder / "entity.xml").string());
    ExpectReadWithoutTheSecret(*entity, "entity of the external DTD");
}

TEST(HostileEntities, ExternalDtdReferenceThatCannotBeFoundDoesNotStopADocumentWithoutEntities) {
    // Documents of the format carry no DTD, but one that names a DTD which is not there does not
    // fail on the missing file alone, since the reader never looks for it.
    ScratchFolder folder;
    ASSERT_TRUE(folder.Valid());
    WriteWholeFile(folder / "doc.xml",
                   "<?xml version=\"1.0\"?>\n<!DOCTYPE ECU SYSTEM \"no-such.dtd\">\n"
                   "<ECU protocol=\"KWP\"><INSTANCE id=\"A\"/></ECU>\n");
    auto result = ReadPath((folder / "doc.xml").string());
    ASSERT_NE(result->ecu, nullptr) << result->AllMessages();
    EXPECT_EQ(result->ecu->GetProtocol(), ProtocolKwp);
    EXPECT_NE(result->ecu->GetInstanceContainer()->GetInstance("A"), nullptr);
}
