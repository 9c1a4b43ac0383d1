// The eight exported entry points of the library.
#pragma once

#include <ZeKL/IDataModelUtils.h>
#include <ZeKL/IFactory.h>
#include <ZeKL/IKLReader.h>
#include <ZeKL/IKLWriter.h>

namespace Korvel {
// Writes 3, 0, 0, 0.
ZEKL_API void GetVersion(uint32_t& major, uint32_t& minor, uint32_t& patch, uint32_t& build);
// "3.0.1" (the numeric form deliberately reports patch 0).
ZEKL_API const char* GetVersionString();
// Process-wide singletons, built on first use.
ZEKL_API IDataModelUtils& GetDataModelUtils();
ZEKL_API IKLReader& GetKLReader();
ZEKL_API IKLWriter& GetKLWriter();
ZEKL_API IFactory& GetFactory();
}  // namespace Korvel

extern "C" {
// Text of an empty document: protocol 1 KWP, other values below 2 UDS (negative values too),
// 2 or more an empty text. The text stays valid until the next call; not thread-safe.
ZEKL_API const char* CreateXmlForEmptyEcu(int32_t protocol, int32_t withNrcTable);
// True when one of the first 5 lines of the file holds "<ECU"; false when unreadable.
ZEKL_API bool IsKorvelFile(const char* path);
}
