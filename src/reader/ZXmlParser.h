// The generic half of the reader: runs the xerces-c SAX parser over a file, a memory buffer
// or a text, turns start tags, end tags and character data into calls on the handler
// registered for each tag, and every parse problem into a message on the reporting sink. It
// knows nothing of the document format.
#pragma once

#include "platform/Transcode.h"
#include "platform/XmlPlatform.h"
#include "reader/IXmlElementHandler.h"
#include "reader/IXmlElementObserver.h"
#include "reader/IXmlElementStack.h"
#include "reader/IXmlParser.h"
#include "reader/IXmlParserUtilsFactory.h"

#include <ZeKL/IReporting.h>

#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Korvel {

class ZXmlParser : public virtual IXmlParser, public xercesc::HandlerBase {
public:
    explicit ZXmlParser(std::shared_ptr<IXmlParserUtilsFactory> utilsFactory);
    ~ZXmlParser() override;
    ZXmlParser(const ZXmlParser&) = delete;
    ZXmlParser& operator=(const ZXmlParser&) = delete;

    // External entities and external document type definitions resolve to nothing: the
    // parser never opens anything but the named document (see ReaderLimits.h).
    xercesc::InputSource* resolveEntity(const XMLCh* const publicId, const XMLCh* const systemId) override;

    // Parses a zero-terminated text; the terminating zero is handed to the XML library too.
    bool ParseText(const char* text);
    // The first handler registered for a tag stays.
    void RegisterHandler(const std::shared_ptr<IXmlElementHandler>& handler);
    void SetReporting(std::shared_ptr<IReporting> reporting);
    void ClearReporting();
    bool Parse(const xercesc::InputSource& source);
    void SetFatalError(const std::string& text);
    void HandleXmlException(const xercesc::XMLException& exception);
    void ReportParseError(const xercesc::SAXParseException& exception, int32_t level);
    // Runs `body` and turns an exception it throws into the fatal message of its kind: the
    // frame's one catch chain. False when it threw.
    template <typename Body>
    bool Guarded(Body&& body);
    // The reader's argument checks: `subject` null or empty is reported with its text, and
    // either, or a null encoding, with the common text. False when the arguments are refused.
    bool CheckArguments(bool isNull, bool isEmpty, const char* nullText, const char* emptyText,
                        const char* encoding);

    bool ParseFile(const char* path, const char* encoding) override;
    bool ParseMemory(const char* data, uint32_t length, const char* encoding) override;

    // Document handler.
    void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override;
    void endElement(const XMLCh* const name) override;
    void characters(const XMLCh* const chars, const XMLSize_t length) override;
    void setDocumentLocator(const xercesc::Locator* const locator) override;

    // Error handler.
    void warning(const xercesc::SAXParseException& exception) override;
    void error(const xercesc::SAXParseException& exception) override;
    void fatalError(const xercesc::SAXParseException& exception) override;

    IXmlElementStack* GetElementStack() const { return elementStack_; }
    const std::shared_ptr<IReporting>& GetReporting() const { return reporting_; }
    bool Succeeded() const { return succeeded_; }
    bool IsInitialized() const { return initialized_; }
    // Raw message of the last error or fatal error of the last parse.
    const std::string& GetLastError() const { return lastError_; }

    // Where the innermost open element starts (the one whose handler runs); 0, 0 outside of
    // any element.
    XmlPosition ElementStart() const { return starts_.empty() ? XmlPosition{} : starts_.back(); }
    // Told of every known element after its handler ran; null for none. Not owned.
    void SetElementObserver(IXmlElementObserver* observer) { observer_ = observer; }

    // The encoding the XML library recognises from the first bytes of the file (its own
    // encoding names). False when the path is null or the file cannot be read.
    static bool ProbeFileEncoding(const char* path, std::string& encoding);

private:
    // The XML library's SAX parser, watching the document type declaration for this parser.
    class DocTypeWatcher;

    using HandlerMap = std::map<Platform::WideString, std::shared_ptr<IXmlElementHandler>, std::less<>>;

    bool WantsLevel(int32_t level) const;
    // The locator's position now: after the markup or text just read.
    XmlPosition LocatorPosition() const;
    // Every event moves the mark to where the next markup begins: an element starts where the
    // event before it ended.
    void Mark() { mark_ = LocatorPosition(); }
    void ReportPlaced(int32_t level, const std::string& text, XmlPosition position);
    // With a position (line not 0) the message goes to the sink with its place.
    void ReportError(const std::string& text, XmlPosition position = XmlPosition{});
    void ReportFatal(const std::string& text, XmlPosition position = XmlPosition{});
    static XmlPosition PositionOf(const xercesc::SAXParseException& exception);
    // The dispatch of an open and a close tag to the handler of the tag.
    void StartKnownElement(const XMLCh* name, xercesc::AttributeList& attributes, XmlPosition start);
    void EndKnownElement(const XMLCh* name);
    std::string WithPosition(const xercesc::SAXParseException& exception, std::string& message) const;
    [[noreturn]] void Abort(const std::string& reason);
    // Counts delivered text against the document's size (see ReaderLimits.h).
    void SpendText(uint64_t units);
    // Ends the parse at the first entity declaration (see ReaderLimits.h).
    [[noreturn]] void RefuseEntity(const XMLCh* name, bool parameter);
    bool ParseWithBudget(const xercesc::InputSource& source, uint64_t documentBytes);
    void ResetParseState();
    // The handler registered for the tag, or null.
    IXmlElementHandler* FindHandler(const XMLCh* name);
    void RebuildTagTable();

    std::shared_ptr<ZXmlPlatformInitializer> platform_;
    std::shared_ptr<IXmlParserUtilsFactory> utilsFactory_;
    HandlerMap handlers_;
    IXmlElementStack* elementStack_ = nullptr;
    std::shared_ptr<IReporting> reporting_;
    // Owned by handlers_.
    IXmlElementHandler* currentHandler_ = nullptr;
    // The tags of handlers_ (keys of the map) and their handlers, for the search by tag.
    struct TagEntry {
        const XMLCh* tag;
        std::size_t length;
        IXmlElementHandler* handler;
    };
    std::vector<TagEntry> tagTable_;
    const TagEntry* lastEntry_ = nullptr;  // the entry found last, or null
    bool docTypeSeen_ = false;
    Platform::WideString skippedTag_;
    bool skipping_ = false;
    bool succeeded_ = false;
    bool initialized_ = false;
    bool errorSeen_ = false;
    std::string lastError_;
    unsigned depth_ = 0;
    uint64_t textBudget_ = 0;  // 0: the document's size is unknown, no budget
    uint64_t textSpent_ = 0;
    const xercesc::Locator* locator_ = nullptr;
    XmlPosition mark_;
    bool emptyElement_ = false;  // the element being opened closes in its own tag
    // Start positions of the open elements, innermost last.
    std::vector<XmlPosition> starts_;
    IXmlElementObserver* observer_ = nullptr;
};

}  // namespace Korvel
