#include "platform/XmlPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>

namespace Korvel {

ZXmlPlatformInitializer::ZXmlPlatformInitializer() {
    xercesc::XMLPlatformUtils::Initialize();
}

ZXmlPlatformInitializer::~ZXmlPlatformInitializer() {
    xercesc::XMLPlatformUtils::Terminate();
}

// The static keeps one share for the life of the process, so the platform is initialised
// once and torn down only after the last holder (a transcoder set, a reader) has let go.
// A failed initialisation leaves the static unset and the next call tries again.
std::shared_ptr<ZXmlPlatformInitializer> AcquireXmlPlatform() {
    static const std::shared_ptr<ZXmlPlatformInitializer> platform =
        std::make_shared<ZXmlPlatformInitializer>();
    return platform;
}

}  // namespace Korvel
