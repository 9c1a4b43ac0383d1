// Base of every tag handler of the document: the collaborators each handler is given, the
// record of the element it opened last, the open and close counts of its tag, and the helpers
// all handlers share.
#pragma once

#include "reader/ReaderMessages.h"
#include "reader/ZKLXmlElement.h"
#include "reader/ZKLXmlElementStack.h"
#include "reader/ZXmlElementHandler.h"
#include "reader/handlers/TagCounts.h"

#include <ZeKL/IConversion.h>
#include <ZeKL/IEcu.h>
#include <ZeKL/IInstance.h>
#include <ZeKL/IReporting.h>

#include <memory>
#include <string>

namespace Korvel {

class ZKLXmlParser;

// What every handler of one parse is given.
struct ZKLXEHContext {
    IEcu* ecu = nullptr;                         // the ECU being filled; not owned
    ZKLXmlElementStack* elementStack = nullptr;  // the parse's stack; not owned
    ZKLXmlParser* parser = nullptr;              // not owned
    std::shared_ptr<IReporting> reporting;       // may be empty: then nothing is reported
    TagCounts* tagCounts = nullptr;              // shared by all handlers; a private one when null
};

class ZKLXEH : public ZXmlElementHandler {
public:
    ZKLXEH(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
           const ZKLXEHContext& context);
    ~ZKLXEH() override;

    // The record appended last, also after its element closed; null before the first.
    std::shared_ptr<IXmlElement> GetCurrentElement() const override;
    bool HasCurrentElement() const override { return current_ != nullptr; }

    // Reads attribute `index` like atol into `value`. False when the value is absent or
    // empty. A value outside 0..255 is reported and the call still returns true with `value`
    // untouched: the attribute then counts as present with the byte's previous value, which
    // callers rely on.
    bool TryGetByteValue(const xercesc::AttributeList& attributes, XMLSize_t index, uint8_t& value);

    const TagCounts::Pair& GetCounts() const { return (*tagCounts_)[countSlot_]; }

protected:
    // Appends a record for the element and its item.
    void AddElement(const XMLCh* tag, IModelItem* item);
    // The same for a message, instance or conversion element; the record also keeps the
    // typed item.
    void AddMessageElement(const XMLCh* tag, IMessage* message, ZMessage* model = nullptr);
    void AddInstanceElement(const XMLCh* tag, IInstance* instance, ZInstance* model = nullptr);
    void AddConversionElement(const XMLCh* tag, IConversion* conversion);
    // Reports that the element yields no item and appends a record without one, so that open
    // and close tags still pair up on the stack.
    void AddEmptyElement(const XMLCh* tag);

    // The open text at DEBUG level and the open count.
    void CountOpen();
    // The close text at DEBUG level, the close count, and the count text when they differ.
    void CountClose();

    bool Wants(int32_t level) const { return reporting_ && level <= reporting_->GetReportLevel(); }
    void Report(int32_t level, const std::string& message) const;
    // Reports a fixed text, built only when the sink takes the level.
    void ReportText(int32_t level, const char* text) const;

    // The model item of the record on top of the stack (the not-supported item for an empty
    // record); null when the stack is empty.
    IModelItem* TopItem() const;
    // The message of the record on top of the stack when it was added by AddMessageElement;
    // null otherwise (then TopItem tells what is there).
    IMessage* TopMessage() const;
    // The same message or instance with its own type when the record has it; null otherwise.
    ZMessage* TopModelMessage() const;
    ZInstance* TopModelInstance() const;
    // The item of the record on top of the stack as an instance or a conversion; null when it
    // is none.
    IInstance* TopInstance() const;
    IConversion* TopConversion() const;

    IEcu* Ecu() const { return ecu_; }
    ZKLXmlElementStack* ElementStack() const { return elementStack_; }
    ZKLXmlParser* Parser() const { return parser_; }
    // The handler's tag as UTF-8.
    const std::string& NarrowTag() const { return narrowTag_; }

private:
    const std::string& NarrowTagOf(const XMLCh* tag);
    // The record on top of the stack when it is a record of this reader; null otherwise.
    const ZKLXmlElement* TopRecord() const;
    // One typed item of the top record (see ZKLXmlElement); null without a record.
    template <typename T>
    T* TopTyped(T* (ZKLXmlElement::*get)() const) const {
        const ZKLXmlElement* top = TopRecord();
        return top != nullptr ? (top->*get)() : nullptr;
    }

    std::shared_ptr<IReporting> reporting_;
    // Only the last record is kept: it is all GetCurrentElement can hand out; the stack holds
    // the records of the open elements.
    std::shared_ptr<ZKLXmlElement> current_;
    IEcu* ecu_;
    ZKLXmlElementStack* elementStack_;
    ZKLXmlParser* parser_;
    TagCounts ownCounts_;
    TagCounts* tagCounts_;
    KLTag countSlot_;
    const ReaderMessages::TagTexts& texts_;
    std::string narrowTag_;
    std::string otherTag_;
};

}  // namespace Korvel
