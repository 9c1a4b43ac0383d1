// The eight exported entry points exist and the service getters hand out one object each.
#include <ZeKL/Exports.h>

#include <gtest/gtest.h>

#include <string>

namespace Korvel {
namespace {

TEST(Exports_Entries, AllEightExportsExist) {
    void (*getVersion)(uint32_t&, uint32_t&, uint32_t&, uint32_t&) = &GetVersion;
    const char* (*getVersionString)() = &GetVersionString;
    IDataModelUtils& (*getDataModelUtils)() = &GetDataModelUtils;
    IKLReader& (*getKLReader)() = &GetKLReader;
    IKLWriter& (*getKLWriter)() = &GetKLWriter;
    IFactory& (*getFactory)() = &GetFactory;
    const char* (*createXmlForEmptyEcu)(int32_t, int32_t) = &::CreateXmlForEmptyEcu;
    bool (*isKorvelFile)(const char*) = &::IsKorvelFile;
    EXPECT_NE(getVersion, nullptr);
    EXPECT_NE(getVersionString, nullptr);
    EXPECT_NE(getDataModelUtils, nullptr);
    EXPECT_NE(getKLReader, nullptr);
    EXPECT_NE(getKLWriter, nullptr);
    EXPECT_NE(getFactory, nullptr);
    EXPECT_NE(createXmlForEmptyEcu, nullptr);
    EXPECT_NE(isKorvelFile, nullptr);
}

TEST(Exports_Entries, VersionNumbersAndTextStayAsTheyAre) {
    uint32_t major = 9, minor = 9, patch = 9, build = 9;
    GetVersion(major, minor, patch, build);
    EXPECT_EQ(major, 3u);
    EXPECT_EQ(minor, 0u);
    EXPECT_EQ(patch, 0u);
    EXPECT_EQ(build, 0u);
    EXPECT_STREQ(GetVersionString(), "3.0.1");
}

TEST(Exports_Getters, EachGetterReturnsTheSameObjectOnEveryCall) {
    EXPECT_EQ(&GetKLWriter(), &GetKLWriter());
    EXPECT_EQ(&GetKLReader(), &GetKLReader());
    EXPECT_EQ(&GetFactory(), &GetFactory());
    EXPECT_EQ(&GetDataModelUtils(), &GetDataModelUtils());
}

TEST(Exports_Getters, WriterConfigIsSharedByEveryCall) {
    EXPECT_EQ(&GetKLWriter().GetConfig(), &GetKLWriter().GetConfig());
}

TEST(Exports_Getters, TheWriterSingletonWritesDocuments) {
    std::unique_ptr<IEcu> ecu = GetFactory().CreateEcu();
    std::string text;
    const uint32_t length = GetKLWriter().WriteToString(*ecu, text, "utf-8");
    EXPECT_EQ(
        text,
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"UDS\">\n <NEGATIVE_RESPONSE_CODES>\n"
        " </NEGATIVE_RESPONSE_CODES>\n</ECU>\n");
    EXPECT_EQ(length, text.size());
}

TEST(Exports_Entries, IsKorvelFileOnAnUnreadablePathIsFalse) {
    EXPECT_FALSE(::IsKorvelFile("/no/such/folder/file.xml"));
    EXPECT_FALSE(::IsKorvelFile(nullptr));
}

TEST(Exports_Entries, CreateXmlForEmptyEcuGivesTextsForKnownProtocolsOnly) {
    EXPECT_STREQ(::CreateXmlForEmptyEcu(2, 1), "");
    EXPECT_NE(std::string(::CreateXmlForEmptyEcu(1, 0)).find("<ECU protocol=\"KWP\"/>"), std::string::npos);
}

}  // namespace
}  // namespace Korvel
