#include "platform/CNumbers.h"

#include <charconv>
#include <clocale>
#include <cstdlib>

#ifdef _WIN32
#include <locale.h>
#elif defined(__APPLE__)
#include <xlocale.h>
#else
#include <locale.h>
#include <stdlib.h>
#endif

namespace Korvel::Platform {

namespace {

#ifdef _WIN32
using CLocale = _locale_t;
CLocale MakeCLocale() {
    return _create_locale(LC_ALL, "C");
}
#else
using CLocale = locale_t;
CLocale MakeCLocale() {
    return newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
}
#endif

// Made once and kept for the life of the process. Null only when the system had no memory for
// it; the process locale's reading is then the best there is.
CLocale TheCLocale() {
    static const CLocale locale = MakeCLocale();
    return locale;
}

}  // namespace

double StrToDouble(const char* text, char** end) {
    const CLocale locale = TheCLocale();
    if (!locale) {
        return std::strtod(text, end);
    }
#ifdef _WIN32
    return _strtod_l(text, end, locale);
#else
    return strtod_l(text, end, locale);
#endif
}

float StrToFloat(const char* text, char** end) {
    const CLocale locale = TheCLocale();
    if (!locale) {
        return std::strtof(text, end);
    }
#if defined(_MSC_VER)
    return _strtof_l(text, end, locale);
#elif defined(_WIN32)
    // MinGW declares no _strtof_l; the double is rounded to float once more, which differs from
    // a direct reading only for texts halfway between two floats.
    return static_cast<float>(_strtod_l(text, end, locale));
#else
    return strtof_l(text, end, locale);
#endif
}

std::string ShortestDoubleText(double value) {
    char text[64];
    const std::to_chars_result result = std::to_chars(text, text + sizeof(text), value);
    return std::string(text, result.ptr);
}

}  // namespace Korvel::Platform
