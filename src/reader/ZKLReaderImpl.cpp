#include "reader/ZKLReaderImpl.h"

#include "platform/File.h"
#include "reader/ReaderLimits.h"
#include "reader/ReaderMessages.h"
#include "reader/ZKLReportingHandler.h"
#include "reader/ZKLXmlParser.h"
#include "reader/handlers/ZKLXEHConversion.h"
#include "reader/handlers/ZKLXEHEcu.h"
#include "reader/handlers/ZKLXEHInstance.h"
#include "reader/handlers/ZKLXEHMap.h"
#include "reader/handlers/ZKLXEHNegativeResponse.h"
#include "reader/handlers/ZKLXEHNegativeResponseCodes.h"
#include "reader/handlers/ZKLXEHParameter.h"
#include "reader/handlers/ZKLXEHRequest.h"
#include "reader/handlers/ZKLXEHResponse.h"

namespace Korvel {

namespace {

constexpr char kFormatVersion[] = "1.0";
constexpr char kEcuMarker[] = "<ECU";
constexpr int kTestedLines = 5;

// The caller's sink, shared with the parser assembly without being owned by it.
std::shared_ptr<IReporting> Borrow(IReporting& reporting) {
    return std::shared_ptr<IReporting>(&reporting, [](IReporting*) {});
}

bool FindQuoted(const std::string& text, std::size_t from, std::size_t before, const char* key, char quote,
                std::string& value) {
    const std::size_t keyAt = text.find(key, from);
    if (keyAt == std::string::npos || keyAt >= before) {
        return false;
    }
    const std::size_t start = keyAt + std::char_traits<char>::length(key);
    const std::size_t end = text.find(quote, start);
    if (end == std::string::npos) {
        return false;
    }
    value = text.substr(start, end - start);
    return true;
}

// The encoding of the first XML declaration of the text: the double-quoted form wins over
// the single-quoted one. The output is left alone when there is none.
void FindDeclaredEncoding(const std::string& text, std::string& encoding) {
    const std::size_t open = text.find("<?");
    if (open == std::string::npos) {
        return;
    }
    const std::size_t close = text.find("?>", open + 2);
    if (close == std::string::npos) {
        return;
    }
    if (!FindQuoted(text, open, close, "encoding=\"", '"', encoding)) {
        FindQuoted(text, open, close, "encoding='", '\'', encoding);
    }
}

}  // namespace

ZKLReaderImpl::ZKLReaderImpl() = default;

ZKLReaderImpl::~ZKLReaderImpl() = default;

void ZKLReaderImpl::RegisterHandlers(ZKLXmlParser& parser, const std::shared_ptr<IReporting>& reporting) {
    ZKLXEHContext context;
    context.builder = &parser.Builder();
    context.elementStack = parser.GetElementStack();
    context.parser = &parser;
    context.reporting = reporting;
    context.tagCounts = &parser.GetTagCounts();
    parser.RegisterHandler(std::make_shared<ZKLXEHEcu>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHNegativeResponseCodes>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHMap>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHInstance>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHRequest>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHResponse>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHNegativeResponse>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHConversion>(context));
    parser.RegisterHandler(std::make_shared<ZKLXEHParameter>(context));
}

std::unique_ptr<IEcu> ZKLReaderImpl::Read(const std::shared_ptr<IReporting>& reporting,
                                          const ParseCall& parse) {
    try {
        ZKLXmlParser parser;
        parser.SetReporting(reporting);
        RegisterHandlers(parser, reporting);
        if (!parse(parser)) {
            return nullptr;
        }
        return parser.TakeEcu();
    } catch (...) {
        // Nothing leaves the reader; a read that throws has no result.
        return nullptr;
    }
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadFile(const char* path, const char* encoding) {
    return Read(std::make_shared<ZKLReportingHandler>(),
                [&](ZKLXmlParser& parser) { return parser.ParseFile(path, encoding); });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadMemory(const char* data, uint32_t length, const char* encoding) {
    return Read(std::make_shared<ZKLReportingHandler>(),
                [&](ZKLXmlParser& parser) { return parser.ParseMemory(data, length, encoding); });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadText(const std::string& text, const char* encoding) {
    return ReadTextWith(std::make_shared<ZKLReportingHandler>(), text, encoding);
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadFile(const char* path, const char* encoding, IReporting& reporting) {
    return Read(Borrow(reporting), [&](ZKLXmlParser& parser) { return parser.ParseFile(path, encoding); });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadMemory(const char* data, uint32_t length, const char* encoding,
                                                IReporting& reporting) {
    return Read(Borrow(reporting),
                [&](ZKLXmlParser& parser) { return parser.ParseMemory(data, length, encoding); });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadText(const std::string& text, const char* encoding,
                                              IReporting& reporting) {
    return ReadTextWith(Borrow(reporting), text, encoding);
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadTextWith(const std::shared_ptr<IReporting>& reporting,
                                                  const std::string& text, const char* encoding) {
    return ReadBytes(reporting, text.c_str(), text.size(), encoding);
}

// A memory read takes a 32-bit length: a longer text is refused rather than read cut short.
std::unique_ptr<IEcu> ZKLReaderImpl::ReadBytes(const std::shared_ptr<IReporting>& reporting, const char* data,
                                               uint64_t length, const char* encoding,
                                               IXmlElementObserver* observer) {
    if (length > ReaderLimits::kMaxDocumentBytes) {
        const std::string reason =
            ReaderMessages::kTextTooLongBegin + std::to_string(length) + ReaderMessages::kTextTooLongEnd;
        return Read(reporting, [&](ZKLXmlParser& parser) {
            if (ZXmlParser* frame = parser.GetXmlParser()) {
                frame->SetFatalError(reason);
            }
            return false;
        });
    }
    return Read(reporting, [&](ZKLXmlParser& parser) {
        if (ZXmlParser* frame = parser.GetXmlParser()) {
            frame->SetElementObserver(observer);
        }
        return parser.ParseMemory(data, static_cast<uint32_t>(length), encoding);
    });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadFileObserved(const char* path, IReporting& reporting,
                                                      IXmlElementObserver& observer) {
    return Read(Borrow(reporting), [&](ZKLXmlParser& parser) {
        if (ZXmlParser* frame = parser.GetXmlParser()) {
            frame->SetElementObserver(&observer);
        }
        return parser.ParseFile(path, "");
    });
}

std::unique_ptr<IEcu> ZKLReaderImpl::ReadTextObserved(const std::string& text, IReporting& reporting,
                                                      IXmlElementObserver& observer) {
    return ReadBytes(Borrow(reporting), text.c_str(), text.size(), "", &observer);
}

bool ZKLReaderImpl::IsKorvelFile(const char* path) {
    std::string version;
    std::string encoding;
    return IsKorvelFile(path, version, encoding);
}

bool ZKLReaderImpl::IsKorvelText(const std::string& text) {
    std::string version;
    std::string encoding;
    return IsKorvelText(text, version, encoding);
}

// Looks at no more than the first 5 lines, within the first kDocumentTestBytes of the file
// (see ReaderLimits.h), and does not parse: any "<ECU" there counts.
bool ZKLReaderImpl::IsKorvelFile(const char* path, std::string& version, std::string& encoding) {
    try {
        std::string prefix;
        std::string reason;
        if (!Platform::ReadFilePrefix(path, ReaderLimits::kDocumentTestBytes, prefix, reason)) {
            return false;
        }
        std::size_t lineStart = 0;
        for (int lineNumber = 0; lineNumber < kTestedLines && lineStart < prefix.size(); ++lineNumber) {
            std::size_t lineEnd = prefix.find('\n', lineStart);
            if (lineEnd == std::string::npos) {
                lineEnd = prefix.size();
            }
            const std::string line = prefix.substr(lineStart, lineEnd - lineStart);
            FindDeclaredEncoding(line, encoding);
            if (line.find(kEcuMarker) != std::string::npos) {
                version = kFormatVersion;
                return true;
            }
            lineStart = lineEnd + 1;
        }
    } catch (...) {
        // An unreadable file is no document.
    }
    return false;
}

bool ZKLReaderImpl::IsKorvelText(const std::string& text, std::string& version, std::string& encoding) {
    try {
        FindDeclaredEncoding(text, encoding);
        if (text.find(kEcuMarker) != std::string::npos) {
            version = kFormatVersion;
            return true;
        }
    } catch (...) {
        // Only allocation can fail here; the text then counts as no document.
    }
    return false;
}

bool ZKLReaderImpl::GetFileEncoding(const char* path, std::string& encoding) {
    if (path == nullptr) {
        return false;
    }
    return ZXmlParser::ProbeFileEncoding(path, encoding);
}

}  // namespace Korvel
