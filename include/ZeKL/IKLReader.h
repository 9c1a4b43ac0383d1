// Reads diagnostic description documents into ECU models.
#pragma once

#include <ZeKL/IEcu.h>
#include <ZeKL/IReporting.h>

#include <memory>
#include <string>

namespace Korvel {

class ZEKL_API IKLReader {
public:
    virtual ~IKLReader();
    // A new ECU owned by the caller, or null when the document is refused. An empty
    // encoding lets the document's declaration decide; it must not be null.
    virtual std::unique_ptr<IEcu> ReadFile(const char* path, const char* encoding) = 0;
    virtual std::unique_ptr<IEcu> ReadMemory(const char* data, uint32_t length, const char* encoding) = 0;
    virtual std::unique_ptr<IEcu> ReadText(const std::string& text, const char* encoding) = 0;
    // True when one of the first 5 lines holds "<ECU"; false when the file cannot be read.
    virtual bool IsKorvelFile(const char* path) = 0;
    // True when the text holds "<ECU".
    virtual bool IsKorvelText(const std::string& text) = 0;
    // As above, also giving the format version ("1.0") and the declared encoding.
    virtual bool IsKorvelFile(const char* path, std::string& version, std::string& encoding) = 0;
    virtual bool IsKorvelText(const std::string& text, std::string& version, std::string& encoding) = 0;
    // Encoding recognised from the file's first bytes; false for null or unreadable paths.
    virtual bool GetFileEncoding(const char* path, std::string& encoding) = 0;

    // Additions: the same reads with the caller's reporting sink, which receives every
    // message of the read and decides by its own report level what it keeps (for example a
    // ReportCollector). Null on failure, as above.
    virtual std::unique_ptr<IEcu> ReadFile(const char* path, const char* encoding, IReporting& reporting) = 0;
    virtual std::unique_ptr<IEcu> ReadMemory(const char* data, uint32_t length, const char* encoding,
                                             IReporting& reporting) = 0;
    virtual std::unique_ptr<IEcu> ReadText(const std::string& text, const char* encoding,
                                           IReporting& reporting) = 0;
};

}  // namespace Korvel
