#include "platform/XmlPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <gtest/gtest.h>

namespace Korvel {
namespace {

TEST(XmlPlatform, AcquireReturnsTheOneProcessWideInitializer) {
    const std::shared_ptr<ZXmlPlatformInitializer> first = AcquireXmlPlatform();
    const std::shared_ptr<ZXmlPlatformInitializer> second = AcquireXmlPlatform();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first.get(), second.get());
}

TEST(XmlPlatform, StaticKeepsAShareAfterHoldersRelease) {
    std::weak_ptr<ZXmlPlatformInitializer> weak;
    {
        const std::shared_ptr<ZXmlPlatformInitializer> held = AcquireXmlPlatform();
        weak = held;
        EXPECT_GE(held.use_count(), 2);
    }
    EXPECT_FALSE(weak.expired());
}

TEST(XmlPlatform, PlatformIsUsableWhileHeld) {
    const std::shared_ptr<ZXmlPlatformInitializer> held = AcquireXmlPlatform();
    EXPECT_NE(xercesc::XMLPlatformUtils::fgTransService, nullptr);
    EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
}

TEST(XmlPlatform, ExtraInitializerNestsWithTheSharedOne) {
    const std::shared_ptr<ZXmlPlatformInitializer> shared = AcquireXmlPlatform();
    {
        // xerces counts Initialize and Terminate, so a second initialiser must not tear
        // down the platform the shared one still holds.
        ZXmlPlatformInitializer extra;
    }
    EXPECT_NE(xercesc::XMLPlatformUtils::fgTransService, nullptr);
}

}  // namespace
}  // namespace Korvel
