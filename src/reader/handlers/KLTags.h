// The tag names of the document, as the XML library delivers them.
#pragma once

#include <xercesc/util/XercesDefs.hpp>

namespace Korvel::KLTags {

inline constexpr XMLCh kEcu[] = u"ECU";
inline constexpr XMLCh kNegativeResponseCodes[] = u"NEGATIVE_RESPONSE_CODES";
inline constexpr XMLCh kMap[] = u"MAP";
inline constexpr XMLCh kInstance[] = u"INSTANCE";
inline constexpr XMLCh kRequest[] = u"REQUEST";
inline constexpr XMLCh kResponse[] = u"RESPONSE";
inline constexpr XMLCh kNegativeResponse[] = u"NEGATIVE_RESPONSE";
inline constexpr XMLCh kConversion[] = u"CONVERSION";
inline constexpr XMLCh kParameter[] = u"PARAMETER";

}  // namespace Korvel::KLTags
