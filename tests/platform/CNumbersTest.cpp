#include "platform/CNumbers.h"

#include "common/GermanLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace Korvel::Platform {
namespace {

// Texts of every form the C library's reading takes, and text around them.
const std::vector<std::string>& Samples() {
    static const std::vector<std::string> samples{"0.5",
                                                  "  0.5",
                                                  "\t\n-0.25",
                                                  "+1.5e3",
                                                  "1e-3",
                                                  ".5",
                                                  "5.",
                                                  "1.5abc",
                                                  "0x1.8p1",
                                                  "0X1P-2",
                                                  "-0x10",
                                                  "1e400",
                                                  "-1e400",
                                                  "1e-400",
                                                  "4.9e-324",
                                                  "inf",
                                                  "-INF",
                                                  "infinity",
                                                  "nan",
                                                  "NAN(123)",
                                                  "",
                                                  "abc",
                                                  "-",
                                                  "1,5",
                                                  "0.1234567890123456789",
                                                  "3.4028235e38",
                                                  "3.5e38",
                                                  "1e-46",
                                                  "  +.e5",
                                                  "0x",
                                                  "1e+"};
    return samples;
}

void ExpectSameAsTheCLibrary(const std::string& text) {
    char* expectedEnd = nullptr;
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &expectedEnd);
    const double parsed = StrToDouble(text.c_str(), &end);
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(parsed)) << text;
    } else {
        EXPECT_EQ(std::memcmp(&parsed, &expected, sizeof parsed), 0) << text << ": " << parsed;
    }
    EXPECT_EQ(end - text.c_str(), expectedEnd - text.c_str()) << text;

    const float expectedFloat = std::strtof(text.c_str(), &expectedEnd);
    const float parsedFloat = StrToFloat(text.c_str(), &end);
    if (std::isnan(expectedFloat)) {
        EXPECT_TRUE(std::isnan(parsedFloat)) << text;
    } else {
        EXPECT_EQ(std::memcmp(&parsedFloat, &expectedFloat, sizeof parsedFloat), 0) << text;
    }
    EXPECT_EQ(end - text.c_str(), expectedEnd - text.c_str()) << text;
}

TEST(CNumbers, ReadsEveryTextAsTheCLibraryDoesInTheCLocale) {
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    for (const std::string& text : Samples()) {
        ExpectSameAsTheCLibrary(text);
    }
}

TEST(CNumbers, GermanLocaleChangesNothing) {
    // What the "C" locale gives, taken before the locale changes.
    std::vector<double> expected;
    std::vector<long> consumed;
    for (const std::string& text : Samples()) {
        char* end = nullptr;
        expected.push_back(std::strtod(text.c_str(), &end));
        consumed.push_back(static_cast<long>(end - text.c_str()));
    }
    TestSupport::GermanLocale german;
    ZEKL_REQUIRE_GERMAN_LOCALE(german);
    // The C library itself now reads the point as the end of the number.
    EXPECT_EQ(std::strtod("0.5", nullptr), 0.0);
    for (std::size_t index = 0; index < Samples().size(); ++index) {
        const std::string& text = Samples()[index];
        char* end = nullptr;
        const double parsed = StrToDouble(text.c_str(), &end);
        if (std::isnan(expected[index])) {
            EXPECT_TRUE(std::isnan(parsed)) << text;
        } else {
            EXPECT_EQ(parsed, expected[index]) << text;
        }
        EXPECT_EQ(end - text.c_str(), consumed[index]) << text;
    }
    EXPECT_EQ(StrToFloat("0.5", nullptr), 0.5f);
    EXPECT_EQ(StrToFloat("1,5", nullptr), 1.0f);
}

}  // namespace
}  // namespace Korvel::Platform
