#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

TEST(GetDataModelUtils, EveryCallReturnsTheSameObject) {
    Korvel::IDataModelUtils& first = Korvel::GetDataModelUtils();
    Korvel::IDataModelUtils& second = Korvel::GetDataModelUtils();
    EXPECT_EQ(&first, &second);
}

TEST(GetDataModelUtils, ObjectAppliesTheUtilityRules) {
    const Korvel::IDataModelUtils& utils = Korvel::GetDataModelUtils();
    EXPECT_EQ(utils.DataTypeFromName("undefined"), Korvel::ParamDataType::Unsigned);
    EXPECT_EQ(utils.SemanticsToString(13), "SID CONST MOTOROLA");
    Korvel::ByteBuffer bytes;
    ASSERT_TRUE(utils.HexStringToBytes(bytes, "0x12 0x3"));
    EXPECT_EQ(bytes, (Korvel::ByteBuffer{0x12, 0x03}));
}
