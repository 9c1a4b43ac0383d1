#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <string>

namespace {

const char* const kUdsWithoutTable =
    "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"UDS\"/>";
const char* const kKwpWithoutTable =
    "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><ECU protocol=\"KWP\"/>";

}  // namespace

TEST(CreateXmlForEmptyEcu, ProtocolTwoOrMoreGivesEmptyText) {
    const char* text = CreateXmlForEmptyEcu(2, 1);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
    text = CreateXmlForEmptyEcu(7, 0);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
}

TEST(CreateXmlForEmptyEcu, EmptyTextForHighProtocolIsNotTheSharedString) {
    const char* document = CreateXmlForEmptyEcu(0, 0);
    const char* empty = CreateXmlForEmptyEcu(2, 0);
    EXPECT_NE(document, empty);
    // The shared string still holds the previous document.
    EXPECT_STREQ(document, kUdsWithoutTable);
}

TEST(CreateXmlForEmptyEcu, NegativeProtocolGivesUdsDocument) {
    EXPECT_STREQ(CreateXmlForEmptyEcu(-1, 0), kUdsWithoutTable);
    EXPECT_STREQ(CreateXmlForEmptyEcu(-2147483647 - 1, 0), kUdsWithoutTable);
}

TEST(CreateXmlForEmptyEcu, ProtocolOneGivesKwpDocument) {
    EXPECT_STREQ(CreateXmlForEmptyEcu(1, 0), kKwpWithoutTable);
}

TEST(CreateXmlForEmptyEcu, UdsWithoutTableIsSixtySixCharacters) {
    EXPECT_EQ(std::string(CreateXmlForEmptyEcu(0, 0)).size(), 66u);
}

TEST(CreateXmlForEmptyEcu, AnyNonZeroFlagAddsTheTable) {
    const std::string withTable = CreateXmlForEmptyEcu(0, 1);
    EXPECT_EQ(CreateXmlForEmptyEcu(0, -5), withTable);
    EXPECT_EQ(withTable, Korvel::GetDataModelUtils().CreateXmlForEmptyEcu(0, true));
    EXPECT_NE(withTable.find("<NEGATIVE_RESPONSE_CODES>\r\n"), std::string::npos);
}

TEST(CreateXmlForEmptyEcu, CallsShareOnePointerAndReplaceTheText) {
    const char* first = CreateXmlForEmptyEcu(1, 0);
    EXPECT_STREQ(first, kKwpWithoutTable);
    const char* second = CreateXmlForEmptyEcu(0, 1);
    EXPECT_EQ(first, second);
    EXPECT_EQ(std::string(first), Korvel::GetDataModelUtils().CreateXmlForEmptyEcu(0, true));
    const char* third = CreateXmlForEmptyEcu(1, 1);
    EXPECT_EQ(first, third);
    EXPECT_EQ(std::string(first), Korvel::GetDataModelUtils().CreateXmlForEmptyEcu(1, true));
}
