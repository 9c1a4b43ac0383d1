#include "reader/ZXmlParser.h"

#include "platform/DebugOutput.h"
#include "platform/File.h"
#include "reader/ReaderLimits.h"
#include "reader/ReaderMessages.h"
#include "reader/ZFileInputSource.h"
#include "reader/ZXmlString.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLRecognizer.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace Korvel {

namespace Msg = ReaderMessages;

namespace {

using WideView = std::basic_string_view<XMLCh>;

// Thrown from a document callback to end a parse that must not go on; the reason has been
// reported before.
struct ParseAborted {};

const XMLByte kNoBytes[1] = {0};

// The encoding probe needs only the first few bytes of a file.
constexpr std::size_t kProbeBytes = 64;

uint32_t Clamped(XMLFileLoc value) {
    return value > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(value);
}

}  // namespace

// Tells the frame when the document declares a document type. Without one there are neither
// entities nor attribute defaults, so attribute values are never longer than the document
// bytes they come from, and the frame need not count them against the budget. An entity
// declaration ends the parse as soon as it is read, before anything can refer to it.
class ZXmlParser::DocTypeWatcher : public xercesc::SAXParser {
public:
    explicit DocTypeWatcher(ZXmlParser& owner) : owner_(owner) {}

    void doctypeDecl(const xercesc::DTDElementDecl& elemDecl, const XMLCh* const publicId,
                     const XMLCh* const systemId, const bool hasIntSubset, const bool hasExtSubset) override {
        owner_.docTypeSeen_ = true;
        xercesc::SAXParser::doctypeDecl(elemDecl, publicId, systemId, hasIntSubset, hasExtSubset);
        owner_.Mark();
    }

    // The events that reach no document handler callback still move the mark: white space,
    // comments and processing instructions before, between and after the elements, and the
    // XML declaration. Without them the root element would start where the declaration ends.
    void ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                             const bool cdataSection) override {
        xercesc::SAXParser::ignorableWhitespace(chars, length, cdataSection);
        owner_.Mark();
    }

    // An empty element's close tag follows at once at the same place and moves the mark then.
    void startElement(const xercesc::XMLElementDecl& elemDecl, const unsigned int urlId,
                      const XMLCh* const elemPrefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attrList,
                      const XMLSize_t attrCount, const bool isEmpty, const bool isRoot) override {
        owner_.emptyElement_ = isEmpty;
        xercesc::SAXParser::startElement(elemDecl, urlId, elemPrefix, attrList, attrCount, isEmpty, isRoot);
    }

    void docComment(const XMLCh* const comment) override {
        xercesc::SAXParser::docComment(comment);
        owner_.Mark();
    }

    void docPI(const XMLCh* const target, const XMLCh* const data) override {
        xercesc::SAXParser::docPI(target, data);
        owner_.Mark();
    }

    void XMLDecl(const XMLCh* const versionStr, const XMLCh* const encodingStr,
                 const XMLCh* const standaloneStr, const XMLCh* const actualEncStr) override {
        xercesc::SAXParser::XMLDecl(versionStr, encodingStr, standaloneStr, actualEncStr);
        owner_.Mark();
    }

    void entityDecl(const xercesc::DTDEntityDecl& entityDecl, const bool isPEDecl,
                    const bool /*isIgnored*/) override {
        owner_.RefuseEntity(entityDecl.getName(), isPEDecl);
    }

private:
    ZXmlParser& owner_;
};

ZXmlParser::ZXmlParser(std::shared_ptr<IXmlParserUtilsFactory> utilsFactory)
    : utilsFactory_(std::move(utilsFactory)) {
    try {
        if (utilsFactory_) {
            elementStack_ = utilsFactory_->CreateElementStack();
        }
        platform_ = AcquireXmlPlatform();
        initialized_ = true;
    } catch (const xercesc::XMLException& exception) {
        std::printf(Msg::kInitXmlException, Platform::Utf16ToUtf8(exception.getMessage()).c_str());
    } catch (...) {
        std::printf("%s", Msg::kInitUnexpected);
    }
}

ZXmlParser::~ZXmlParser() {
    if (utilsFactory_ && elementStack_ != nullptr) {
        utilsFactory_->DestroyElementStack(elementStack_);
    }
}

xercesc::InputSource* ZXmlParser::resolveEntity(const XMLCh* const /*publicId*/,
                                                const XMLCh* const systemId) {
    // The XML library adopts the returned source.
    auto* source = new xercesc::MemBufInputSource(kNoBytes, 0, Msg::kMemorySystemId, false);
    if (systemId != nullptr) {
        source->setSystemId(systemId);
    }
    return source;
}

void ZXmlParser::RegisterHandler(const std::shared_ptr<IXmlElementHandler>& handler) {
    if (!handler || handler->GetTagName() == nullptr) {
        return;
    }
    if (handlers_.emplace(Platform::WideString(handler->GetTagName()), handler).second) {
        RebuildTagTable();
    }
}

void ZXmlParser::SetReporting(std::shared_ptr<IReporting> reporting) {
    reporting_ = std::move(reporting);
}

void ZXmlParser::ClearReporting() {
    reporting_.reset();
}

bool ZXmlParser::WantsLevel(int32_t level) const {
    return reporting_ && level <= reporting_->GetReportLevel();
}

void ZXmlParser::ReportError(const std::string& text, XmlPosition position) {
    if (!reporting_) {
        Platform::DebugOutput(Msg::kFallbackError + text + Msg::kLineEnd);
    } else if (position.line != 0) {
        ReportPlaced(ReportLevelError, text, position);
    } else {
        reporting_->Error(text);
    }
}

void ZXmlParser::ReportFatal(const std::string& text, XmlPosition position) {
    if (!reporting_) {
        Platform::DebugOutput(Msg::kFallbackFatal + text + Msg::kLineEnd);
    } else if (position.line != 0) {
        ReportPlaced(ReportLevelFatal, text, position);
    } else {
        reporting_->Fatal(text);
    }
}

void ZXmlParser::ReportPlaced(int32_t level, const std::string& text, XmlPosition position) {
    ReportPlace place;
    place.line = position.line;
    place.column = position.column;
    reporting_->ReportAt(level, text, place);
}

XmlPosition ZXmlParser::LocatorPosition() const {
    if (locator_ == nullptr) {
        return XmlPosition{};
    }
    return XmlPosition{Clamped(locator_->getLineNumber()), Clamped(locator_->getColumnNumber())};
}

void ZXmlParser::SetFatalError(const std::string& text) {
    errorSeen_ = true;
    lastError_ = text;
    ReportFatal(text);
}

void ZXmlParser::HandleXmlException(const xercesc::XMLException& exception) {
    errorSeen_ = true;
    lastError_ = Platform::Utf16ToUtf8(exception.getMessage());
    ReportFatal(Msg::kXmlExceptionWhileParsing + lastError_);
}

template <typename Body>
bool ZXmlParser::Guarded(Body&& body) {
    try {
        return body();
    } catch (const xercesc::XMLException& exception) {
        HandleXmlException(exception);
    } catch (...) {
        SetFatalError(Msg::kUnexpectedException);
    }
    return false;
}

bool ZXmlParser::CheckArguments(bool isNull, bool isEmpty, const char* nullText, const char* emptyText,
                                const char* encoding) {
    if (isNull) {
        ReportError(nullText);
    } else if (isEmpty) {
        ReportError(emptyText);
    }
    if (isNull || isEmpty || encoding == nullptr) {
        SetFatalError(Msg::kArgumentsInvalid);
        return false;
    }
    return true;
}

bool ZXmlParser::ParseFile(const char* path, const char* encoding) {
    succeeded_ = false;
    // A null path is refused without being read; an empty one is reported as such.
    if (!CheckArguments(path == nullptr, path != nullptr && path[0] == '\0', Msg::kFileNameNull,
                        Msg::kFileNameEmpty, encoding)) {
        return false;
    }
    return Guarded([&]() {
        // The file is opened once, without blocking, and read through that handle: a folder, a
        // FIFO or a device is refused before anything reads it (see platform/File.h), and the
        // XML library never opens the path itself (it loses memory when it fails to).
        Platform::InputFile file;
        if (!file.Open(path)) {
            if (file.Refusal() == Platform::OpenRefusal::NotRegularFile) {
                SetFatalError(Msg::kNoRegularFileBegin + std::string(path) + Msg::kNoRegularFileEnd);
            } else {
                SetFatalError(Msg::kCannotOpenFileBegin + std::string(path) + Msg::kCannotOpenFileEnd);
            }
            return false;
        }
        const ZXmlString widePath(path);
        ZFileInputSource source(file, widePath.Wide());
        if (encoding[0] != '\0') {
            source.setEncoding(ZXmlString(encoding).Wide());
        }
        return ParseWithBudget(source, file.Size());
    });
}

bool ZXmlParser::ParseMemory(const char* data, uint32_t length, const char* encoding) {
    succeeded_ = false;
    // Null data is refused without being read; a zero length counts as empty data.
    if (!CheckArguments(data == nullptr, data != nullptr && (length == 0 || data[0] == '\0'),
                        Msg::kStreamNull, Msg::kStreamEmpty, encoding)) {
        return false;
    }
    return Guarded([&]() {
        xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(data), length,
                                          Msg::kMemorySystemId, false);
        if (encoding[0] != '\0') {
            source.setEncoding(ZXmlString(encoding).Wide());
        }
        return ParseWithBudget(source, length);
    });
}

bool ZXmlParser::ParseText(const char* text) {
    succeeded_ = false;
    if (!initialized_) {
        SetFatalError(Msg::kNotInitialized);
        return false;
    }
    if (text == nullptr) {
        ReportError(Msg::kStreamNull);
        SetFatalError(Msg::kArgumentsInvalid);
        return false;
    }
    return Guarded([&]() {
        // The terminating zero byte goes to the XML library too, as it always has.
        const std::size_t length = std::strlen(text) + 1;
        xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text), length, Msg::kTextSystemId,
                                          false);
        return ParseWithBudget(source, length);
    });
}

void ZXmlParser::ResetParseState() {
    succeeded_ = false;
    lastError_.clear();
    errorSeen_ = false;
    depth_ = 0;
    textSpent_ = 0;
    docTypeSeen_ = false;
    skipping_ = false;
    skippedTag_.clear();
    currentHandler_ = nullptr;
    locator_ = nullptr;
    // A document that starts with its root element has it at the very beginning.
    mark_ = XmlPosition{1, 1};
    emptyElement_ = false;
    starts_.clear();
    if (elementStack_ != nullptr) {
        while (!elementStack_->IsEmpty()) {
            elementStack_->Pop();
        }
    }
}

bool ZXmlParser::ParseWithBudget(const xercesc::InputSource& source, uint64_t documentBytes) {
    textBudget_ = documentBytes;
    const bool result = Parse(source);
    textBudget_ = 0;
    return result;
}

bool ZXmlParser::Parse(const xercesc::InputSource& source) {
    ResetParseState();
    if (!initialized_) {
        SetFatalError(Msg::kNotInitialized);
        return false;
    }
    Guarded([&]() {
        // Declared before the parser, which keeps a pointer to it.
        xercesc::SecurityManager securityManager;
        securityManager.setEntityExpansionLimit(ReaderLimits::kEntityExpansionLimit);
        DocTypeWatcher parser(*this);
        parser.setDocumentHandler(this);
        parser.setErrorHandler(this);
        // The parser reports the document type declaration only with a DTD handler installed;
        // the handler's own callbacks do nothing.
        parser.setDTDHandler(this);
        // Hardening: nothing outside the named document is loaded, and entity expansion is
        // bounded. Documents without a document type declaration are read unchanged.
        parser.setEntityResolver(this);
        parser.setLoadExternalDTD(false);
        parser.setDisableDefaultEntityResolution(true);
        parser.setSecurityManager(&securityManager);
        try {
            parser.parse(source);
        } catch (const ParseAborted&) {
            // Reported where the parse was stopped.
        } catch (const xercesc::SAXParseException& exception) {
            fatalError(exception);
        }
        return true;
    });
    locator_ = nullptr;
    currentHandler_ = nullptr;
    if (!errorSeen_) {
        succeeded_ = true;
    }
    return succeeded_;
}

// Ends the parse from inside a document callback: the document must not be read further.
void ZXmlParser::Abort(const std::string& reason) {
    errorSeen_ = true;
    lastError_ = reason;
    std::string text = reason;
    const XmlPosition position = LocatorPosition();
    if (locator_ != nullptr) {
        text += Msg::kLinePrefix + std::to_string(locator_->getLineNumber()) + Msg::kColumnPrefix +
                std::to_string(locator_->getColumnNumber()) + Msg::kPositionEnd;
    }
    ReportFatal(text, position);
    throw ParseAborted{};
}

void ZXmlParser::SpendText(uint64_t units) {
    textSpent_ += units;
    if (textBudget_ != 0 && textSpent_ > textBudget_) {
        Abort(Msg::kExpansionLimitBegin + std::to_string(textBudget_) + Msg::kExpansionLimitEnd);
    }
}

void ZXmlParser::RefuseEntity(const XMLCh* name, bool parameter) {
    const std::string text = name != nullptr ? Platform::Utf16ToUtf8(name) : std::string();
    Abort((parameter ? Msg::kParameterEntityBegin : Msg::kEntityBegin) + text + Msg::kEntityEnd);
}

void ZXmlParser::startElement(const XMLCh* const name, xercesc::AttributeList& attributes) {
    if (++depth_ > ReaderLimits::kMaxElementDepth) {
        Abort(Msg::kDepthLimitBegin + std::to_string(ReaderLimits::kMaxElementDepth) + Msg::kDepthLimitEnd);
    }
    if (textBudget_ != 0 && docTypeSeen_) {
        uint64_t units = 0;
        const XMLSize_t count = attributes.getLength();
        for (XMLSize_t index = 0; index < count; ++index) {
            if (const XMLCh* value = attributes.getValue(index)) {
                units += std::char_traits<XMLCh>::length(value);
            }
        }
        SpendText(units);
    }
    const XmlPosition start = mark_;
    starts_.push_back(start);
    StartKnownElement(name, attributes, start);
    if (!emptyElement_) {
        Mark();
    }
}

void ZXmlParser::StartKnownElement(const XMLCh* name, xercesc::AttributeList& attributes, XmlPosition start) {
    if (skipping_) {
        return;
    }
    IXmlElementHandler* handler = FindHandler(name);
    if (handler == nullptr) {
        skippedTag_.assign(name);
        skipping_ = true;
        if (WantsLevel(ReportLevelInfo)) {
            ReportPlaced(
                ReportLevelInfo,
                Msg::kUnknownTagBegin + Platform::Utf16ToUtf8(name, skippedTag_.size()) + Msg::kUnknownTagEnd,
                start);
        }
        return;
    }
    currentHandler_ = handler;
    handler->StartElement(name, attributes);
    std::shared_ptr<IXmlElement> element = handler->GetCurrentElement();
    const IXmlElement* record = element.get();
    if (element && elementStack_ != nullptr) {
        elementStack_->Push(std::move(element));
    }
    if (observer_ != nullptr) {
        observer_->ElementStarted(name, attributes, record, start);
    }
}

// A known element nested in an unknown one receives its close tag though its open tag was
// skipped; the tag handlers detect this with their open and close counts.
void ZXmlParser::endElement(const XMLCh* const name) {
    if (depth_ > 0) {
        --depth_;
    }
    EndKnownElement(name);
    // The handler's messages of the close tag have the element's start as their place.
    if (!starts_.empty()) {
        starts_.pop_back();
    }
    Mark();
}

void ZXmlParser::EndKnownElement(const XMLCh* name) {
    if (skipping_ && WideView(name) == WideView(skippedTag_)) {
        skipping_ = false;
        skippedTag_.clear();
        return;
    }
    if (IXmlElementHandler* handler = FindHandler(name)) {
        handler->EndElement(name);
        if (handler->HasCurrentElement() && elementStack_ != nullptr) {
            elementStack_->Pop();
        }
    }
    currentHandler_ = nullptr;
}

void ZXmlParser::RebuildTagTable() {
    lastEntry_ = nullptr;
    tagTable_.clear();
    tagTable_.reserve(handlers_.size());
    for (const auto& entry : handlers_) {
        tagTable_.push_back(TagEntry{entry.first.c_str(), entry.first.size(), entry.second.get()});
    }
}

// A document has about a dozen tags, and elements come in runs of the same tag (parameters of
// a message, entries of a table): the entry found last is tried first, then the few others in
// turn, which is cheaper than a search through the map by whole names.
IXmlElementHandler* ZXmlParser::FindHandler(const XMLCh* name) {
    const auto matches = [name](const TagEntry& entry) {
        for (std::size_t index = 0; index < entry.length; ++index) {
            if (name[index] != entry.tag[index]) {
                return false;
            }
        }
        return name[entry.length] == 0;
    };
    if (lastEntry_ != nullptr && matches(*lastEntry_)) {
        return lastEntry_->handler;
    }
    for (const TagEntry& entry : tagTable_) {
        if (entry.tag[0] == name[0] && matches(entry)) {
            lastEntry_ = &entry;
            return entry.handler;
        }
    }
    return nullptr;
}

// Text after a close tag finds no current handler and is dropped; text inside an unknown
// element reaches the handler of the last known open tag. Callers rely on both.
void ZXmlParser::characters(const XMLCh* const chars, const XMLSize_t length) {
    SpendText(length);
    Mark();
    if (currentHandler_) {
        currentHandler_->SetText(chars, length);
    }
}

void ZXmlParser::setDocumentLocator(const xercesc::Locator* const locator) {
    locator_ = locator;
}

std::string ZXmlParser::WithPosition(const xercesc::SAXParseException& exception,
                                     std::string& message) const {
    message = Platform::Utf16ToUtf8(exception.getMessage());
    return message + Msg::kLinePrefix + std::to_string(exception.getLineNumber()) + Msg::kColumnPrefix +
           std::to_string(exception.getColumnNumber()) + Msg::kPositionEnd;
}

// A warning does not fail the parse, yet it is reported at ERROR level; callers count it as
// an error message.
void ZXmlParser::warning(const xercesc::SAXParseException& exception) {
    std::string message;
    ReportError(WithPosition(exception, message), PositionOf(exception));
}

XmlPosition ZXmlParser::PositionOf(const xercesc::SAXParseException& exception) {
    return XmlPosition{Clamped(exception.getLineNumber()), Clamped(exception.getColumnNumber())};
}

void ZXmlParser::error(const xercesc::SAXParseException& exception) {
    ReportParseError(exception, ReportLevelError);
}

void ZXmlParser::fatalError(const xercesc::SAXParseException& exception) {
    ReportParseError(exception, ReportLevelFatal);
}

// Either ends the parse as failed, with the message as its last error.
void ZXmlParser::ReportParseError(const xercesc::SAXParseException& exception, int32_t level) {
    std::string message;
    const std::string text = WithPosition(exception, message);
    errorSeen_ = true;
    lastError_ = std::move(message);
    if (level == ReportLevelFatal) {
        ReportFatal(text, PositionOf(exception));
    } else {
        ReportError(text, PositionOf(exception));
    }
}

bool ZXmlParser::ProbeFileEncoding(const char* path, std::string& encoding) {
    if (path == nullptr) {
        return false;
    }
    try {
        std::string bytes;
        std::string reason;
        if (!Platform::ReadFilePrefix(path, kProbeBytes, bytes, reason)) {
            return false;
        }
        const auto count = static_cast<XMLSize_t>(bytes.size());
        const std::shared_ptr<ZXmlPlatformInitializer> platform = AcquireXmlPlatform();
        const xercesc::XMLRecognizer::Encodings probed =
            xercesc::XMLRecognizer::basicEncodingProbe(reinterpret_cast<const XMLByte*>(bytes.data()), count);
        encoding = Platform::Utf16ToUtf8(xercesc::XMLRecognizer::nameForEncoding(probed));
        return true;
    } catch (const xercesc::XMLException& exception) {
        Platform::DebugOutput(Msg::kProbeXmlExceptionBegin + std::string(path) +
                              Msg::kProbeXmlExceptionMiddle + Platform::Utf16ToUtf8(exception.getMessage()) +
                              Msg::kLineEnd);
    } catch (...) {
        Platform::DebugOutput(Msg::kProbeUnexpectedBegin + std::string(path) + Msg::kProbeUnexpectedEnd);
    }
    return false;
}

}  // namespace Korvel
