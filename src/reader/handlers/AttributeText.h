// Number readings of attribute values, straight from the XML library's UTF-16 text: integers
// as the C library's atol reads them and floating-point numbers as atof does.
#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include <cstdint>

namespace Korvel::AttributeText {

// Leading blanks skipped, an optional sign, decimal digits up to the first other character;
// no digits give 0. Values beyond the 32-bit range saturate as atol does with a 32-bit long.
int32_t Atol(const XMLCh* text);

// Leading blanks skipped, then the longest decimal or hexadecimal floating-point number
// (decimal point "." whatever the locale, exponent allowed, "inf" and "nan" accepted);
// text that is no number gives 0.0.
double Atof(const XMLCh* text);

}  // namespace Korvel::AttributeText
