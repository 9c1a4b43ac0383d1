// zekl version: the tool's and the library's versions.
#include <ZeKL/ZeKL.h>
#include <gtest/gtest.h>

#include "ToolRunner.h"

using zekl_test::RunTool;

TEST(VersionCommand, PrintsTextAndNumericVersions) {
    const auto result = RunTool({"version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.err.empty());
    EXPECT_EQ(result.out, "zekl 3.0.1 (library 3.0.1, numeric 3.0.0.0)\n");
}

TEST(VersionCommand, AgreesWithTheLinkedLibrary) {
    uint32_t major = 0, minor = 0, patch = 0, build = 0;
    Korvel::GetVersion(major, minor, patch, build);
    const std::string numeric = std::to_string(major) + "." + std::to_string(minor) + "." +
                                std::to_string(patch) + "." + std::to_string(build);
    const auto result = RunTool({"version"});
    EXPECT_NE(
        result.out.find(std::string("(library ") + Korvel::GetVersionString() + ", numeric " + numeric + ")"),
        std::string::npos)
        << result.out;
}

TEST(VersionCommand, DoubleDashVersionIsTheSame) {
    EXPECT_EQ(RunTool({"--version"}).out, RunTool({"version"}).out);
}

TEST(VersionCommand, RefusesArguments) {
    const auto result = RunTool({"version", "extra"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.empty());
}
