// Base of every tag handler of the document: the collaborators each handler is given, the
// record of the element it opened last, the open and close counts of its tag, and the helpers
// all handlers share.
#pragma once

#include "reader/ReaderMessages.h"
#include "reader/ZKLXmlElement.h"
#include "reader/ZKLXmlElementStack.h"
#include "reader/ZXmlElementHandler.h"
#include "reader/handlers/TagCounts.h"

#include "model/ZModelBuilder.h"

#include <ZeKL/IReporting.h>

#include <memory>
#include <string>
#include <string_view>

namespace Korvel {

class ZKLXmlParser;

// What every handler of one parse is given.
struct ZKLXEHContext {
    ZModelBuilder* builder = nullptr;            // builds the ECU of the read; not owned
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

    // Calls `visit(index, name)` for each attribute whose name can be had, in order; an
    // attribute without a name is reported with the text `nameFailedBegin`, its index and "!".
    template <typename Visit>
    void ForEachNamedAttribute(const xercesc::AttributeList& attributes, const char* nameFailedBegin,
                               Visit&& visit) {
        const XMLSize_t count = attributes.getLength();
        for (XMLSize_t index = 0; index < count; ++index) {
            const XMLCh* name = attributes.getName(index);
            if (name == nullptr) {
                if (Wants(ReportLevelError)) {
                    Report(ReportLevelError,
                           nameFailedBegin + std::to_string(index) + ReaderMessages::kNameFailedEnd);
                }
                continue;
            }
            visit(index, std::basic_string_view<XMLCh>(name));
        }
    }

protected:
    // Appends a record for the element and its item.
    void AddElement(const XMLCh* tag, ZModelItem* item);
    // Reports that the element yields no item and appends a record without one, so that open
    // and close tags still pair up on the stack.
    void AddEmptyElement(const XMLCh* tag);

    // The open text at DEBUG level and the open count.
    void CountOpen();
    // The close text at DEBUG level, the close count, and the count text when they differ.
    void CountClose();

    bool Wants(int32_t level) const { return reporting_ && level <= reporting_->GetReportLevel(); }
    // Every message goes to the sink with its place: where the element starts, and the path of
    // the item it concerns (the item on top of the stack, with what the element names itself).
    void Report(int32_t level, const std::string& message) const;
    // Reports a fixed text, built only when the sink takes the level.
    void ReportText(int32_t level, const char* text) const;

    // What the element being opened names of its own item, for the paths of its messages while
    // its item is not (or never) on the stack: the field it fills and the attribute's text,
    // which lives as long as the open tag. A handler names it in its StartElement, inside an
    // OwnScope that forgets it when StartElement ends.
    enum class OwnField : uint8_t { None, Instance, Message, Parameter, Conversion, Entry, Nrc };
    void NameOwn(OwnField field, const XMLCh* text = nullptr, uint8_t code = 0) {
        own_ = Own{field, text, code};
    }
    class OwnScope {
    public:
        explicit OwnScope(ZKLXEH& handler) : handler_(handler) {}
        ~OwnScope() { handler_.own_ = Own{}; }
        OwnScope(const OwnScope&) = delete;
        OwnScope& operator=(const OwnScope&) = delete;

    private:
        ZKLXEH& handler_;
    };

    // The model item of the record on top of the stack (the not-supported item for an empty
    // record or a record of another kind); null when the stack is empty.
    ZModelItem* TopItem() const;
    // The same item as its own type T, or null when it is none.
    template <typename T>
    T* TopAs() const {
        ZModelItem* top = TopItem();
        return top != nullptr ? top->As<T>() : nullptr;
    }

    // The builder of the read and its ECU; null without a builder.
    ZModelBuilder* Builder() const { return builder_; }
    ZEcu* Ecu() const { return builder_ != nullptr ? builder_->Ecu() : nullptr; }
    ZKLXmlElementStack* ElementStack() const { return elementStack_; }
    ZKLXmlParser* Parser() const { return parser_; }
    // The handler's tag as UTF-8.
    const std::string& NarrowTag() const { return narrowTag_; }

private:
    const std::string& NarrowTagOf(const XMLCh* tag);
    ReportPlace PlaceOfMessage() const;

    std::shared_ptr<IReporting> reporting_;
    // Only the last record is kept: it is all GetCurrentElement can hand out; the stack holds
    // the records of the open elements.
    std::shared_ptr<ZKLXmlElement> current_;
    ZModelBuilder* builder_;
    ZKLXmlElementStack* elementStack_;
    ZKLXmlParser* parser_;
    TagCounts ownCounts_;
    TagCounts* tagCounts_;
    KLTag countSlot_;
    const ReaderMessages::TagTexts& texts_;
    std::string narrowTag_;
    std::string otherTag_;
    struct Own {
        OwnField field = OwnField::None;
        const XMLCh* text = nullptr;
        uint8_t code = 0;
    };
    Own own_;
};

}  // namespace Korvel
