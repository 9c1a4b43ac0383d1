#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <cstring>

TEST(Version, NumbersAreThreeZeroZeroZero) {
    uint32_t major = 9, minor = 9, patch = 9, build = 9;
    Korvel::GetVersion(major, minor, patch, build);
    EXPECT_EQ(major, 3u);
    EXPECT_EQ(minor, 0u);
    EXPECT_EQ(patch, 0u);
    EXPECT_EQ(build, 0u);
}

TEST(Version, TextCarriesPatchOneUnlikeTheNumbers) {
    EXPECT_STREQ(Korvel::GetVersionString(), "3.0.1");
    uint32_t major = 0, minor = 0, patch = 0, build = 0;
    Korvel::GetVersion(major, minor, patch, build);
    EXPECT_NE(std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(patch),
              Korvel::GetVersionString());
}

TEST(Version, TextIsOneConstantPointer) {
    EXPECT_EQ(Korvel::GetVersionString(), Korvel::GetVersionString());
}
