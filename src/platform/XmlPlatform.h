// Once-per-process initialisation of xerces-c, shared by the reader and the writer.
#pragma once

#include <memory>

namespace Korvel {

// Constructing calls XMLPlatformUtils::Initialize, destroying calls Terminate.
class ZXmlPlatformInitializer {
public:
    ZXmlPlatformInitializer();
    ~ZXmlPlatformInitializer();
    ZXmlPlatformInitializer(const ZXmlPlatformInitializer&) = delete;
    ZXmlPlatformInitializer& operator=(const ZXmlPlatformInitializer&) = delete;
};

// The process-wide initialiser, created on first use; every holder keeps the platform up.
// Throws what XMLPlatformUtils::Initialize throws (an XMLException) when it fails.
std::shared_ptr<ZXmlPlatformInitializer> AcquireXmlPlatform();

}  // namespace Korvel
