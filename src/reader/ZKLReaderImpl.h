// The reader front: every read builds a fresh parser assembly (parser, element stack, one
// handler per tag, a reporting sink), runs it once and throws it away, so the reader itself
// holds no state.
#pragma once

#include "reader/IXmlElementObserver.h"

#include <ZeKL/IKLReader.h>

#include <functional>

namespace Korvel {

class ZKLXmlParser;

class ZKLReaderImpl : public IKLReader {
public:
    ZKLReaderImpl();
    ~ZKLReaderImpl() override;

    std::unique_ptr<IEcu> ReadFile(const char* path, const char* encoding) override;
    std::unique_ptr<IEcu> ReadMemory(const char* data, uint32_t length, const char* encoding) override;
    std::unique_ptr<IEcu> ReadText(const std::string& text, const char* encoding) override;
    bool IsKorvelFile(const char* path) override;
    bool IsKorvelText(const std::string& text) override;
    bool IsKorvelFile(const char* path, std::string& version, std::string& encoding) override;
    bool IsKorvelText(const std::string& text, std::string& version, std::string& encoding) override;
    bool GetFileEncoding(const char* path, std::string& encoding) override;
    std::unique_ptr<IEcu> ReadFile(const char* path, const char* encoding, IReporting& reporting) override;
    std::unique_ptr<IEcu> ReadMemory(const char* data, uint32_t length, const char* encoding,
                                     IReporting& reporting) override;
    std::unique_ptr<IEcu> ReadText(const std::string& text, const char* encoding,
                                   IReporting& reporting) override;

    // The nine tag handlers of the document, registered with the parser in the reader's
    // order ("ECU" ... "PARAMETER") and sharing its stack, ECU, counts and sink.
    static void RegisterHandlers(ZKLXmlParser& parser, const std::shared_ptr<IReporting>& reporting);

    // Reads `length` bytes at `data` (ReadText's path). A length beyond what a memory read
    // takes (ReaderLimits::kMaxDocumentBytes) is refused with a FATAL message and gives null.
    static std::unique_ptr<IEcu> ReadBytes(const std::shared_ptr<IReporting>& reporting, const char* data,
                                           uint64_t length, const char* encoding,
                                           IXmlElementObserver* observer = nullptr);

    // ReadFile and ReadText with the caller's sink and an empty encoding, telling `observer` of
    // every known element with its position (see IXmlElementObserver).
    static std::unique_ptr<IEcu> ReadFileObserved(const char* path, IReporting& reporting,
                                                  IXmlElementObserver& observer);
    static std::unique_ptr<IEcu> ReadTextObserved(const std::string& text, IReporting& reporting,
                                                  IXmlElementObserver& observer);

private:
    using ParseCall = std::function<bool(ZKLXmlParser&)>;
    static std::unique_ptr<IEcu> Read(const std::shared_ptr<IReporting>& reporting, const ParseCall& parse);
    static std::unique_ptr<IEcu> ReadTextWith(const std::shared_ptr<IReporting>& reporting,
                                              const std::string& text, const char* encoding);
};

}  // namespace Korvel
