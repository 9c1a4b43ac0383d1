#include "writer/ZWriterConfig.h"

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(WriterConfig_Setting, StartsAtZero) {
    ZWriterConfig config;
    EXPECT_EQ(config.GetSetting(), 0u);
}

TEST(WriterConfig_Setting, KeepsTheValueSet) {
    ZWriterConfig config;
    config.SetSetting(0xFFFFFFFFu);
    EXPECT_EQ(config.GetSetting(), 0xFFFFFFFFu);
    config.SetSetting(3);
    EXPECT_EQ(config.GetSetting(), 3u);
}

TEST(WriterConfig_Switches, StartOffAndKeepTheValueSet) {
    ZWriterConfig config;
    EXPECT_FALSE(config.GetEncodeAllValues());
    EXPECT_FALSE(config.GetRefuseUncarriedCharacters());
    config.SetEncodeAllValues(true);
    EXPECT_TRUE(config.GetEncodeAllValues());
    EXPECT_FALSE(config.GetRefuseUncarriedCharacters());
    config.SetRefuseUncarriedCharacters(true);
    config.SetEncodeAllValues(false);
    EXPECT_FALSE(config.GetEncodeAllValues());
    EXPECT_TRUE(config.GetRefuseUncarriedCharacters());
    EXPECT_EQ(config.GetSetting(), 0u);
}

TEST(WriterConfig_Instance, IsOneObjectForTheProcess) {
    EXPECT_EQ(&ZWriterConfig::Instance(), &ZWriterConfig::Instance());
}

}  // namespace
}  // namespace Korvel
