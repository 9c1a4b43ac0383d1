// Floating-point text read as the C library reads it in the "C" locale, whatever locale the
// process has set: a program that calls setlocale(LC_ALL, "de_DE.UTF-8") would otherwise read
// "0.5" as 0 (its decimal point is the comma). Documents always write a point.
#pragma once

#include <string>

namespace Korvel::Platform {

// The shortest text that reads back as the same double ("0.25", "-40", "1e-07"), with a point
// whatever the locale.
std::string ShortestDoubleText(double value);

// strtod and strtof of the "C" locale: leading blanks skipped, decimal and hexadecimal forms,
// "inf" and "nan", ±HUGE_VAL on overflow; `end` (may be null) receives the first character
// after the number.
double StrToDouble(const char* text, char** end);
float StrToFloat(const char* text, char** end);

}  // namespace Korvel::Platform
