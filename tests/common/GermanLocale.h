// Runs a test under a German locale, whose decimal point is a comma, to show that the library
// reads numbers the same whatever locale the calling program has set.
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace Korvel::TestSupport {

// Sets LC_ALL to de_DE.UTF-8 for its lifetime and back to "C" after.
class GermanLocale {
public:
    GermanLocale() {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                active_ = true;
                break;
            }
        }
    }
    ~GermanLocale() { std::setlocale(LC_ALL, "C"); }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

    bool Active() const { return active_; }

private:
    bool active_ = false;
};

}  // namespace Korvel::TestSupport

// Ends the test when the German locale is missing: a skip on a developer's machine, a failure
// in CI (CI=true), where .ci/run generates the locale and its absence is a broken set-up.
#define ZEKL_REQUIRE_GERMAN_LOCALE(locale)                                                           \
    do {                                                                                             \
        if (!(locale).Active()) {                                                                    \
            if (std::getenv("CI") != nullptr) {                                                      \
                FAIL() << "the locale de_DE.UTF-8 is missing (generate it: locale-gen de_DE.UTF-8)"; \
            }                                                                                        \
            GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed (locale-gen de_DE.UTF-8)";      \
        }                                                                                            \
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");                                         \
    } while (false)
