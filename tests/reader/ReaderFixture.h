// Helpers of the reader tests: reading a document through the reader front with a recording
// sink, picking messages by level, and a hand-made attribute list.
#pragma once

#include "reader/ZKLReaderImpl.h"
#include "reader/handlers/ZKLXEH.h"

#include <ZeKL/ZeKL.h>

#include <xercesc/sax/AttributeList.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReaderTest {

struct ReadResult {
    std::unique_ptr<Korvel::IEcu> ecu;
    Korvel::ReportCollector sink{Korvel::ReportLevelDebug};

    // Texts of the messages of one level, in arrival order.
    std::vector<std::string> Texts(int32_t level) const {
        std::vector<std::string> texts;
        for (const Korvel::ReadMessage& message : sink.GetMessages()) {
            if (message.level == level) {
                texts.push_back(message.text);
            }
        }
        return texts;
    }
    // Every FATAL, ERROR and WARN message as "LEVEL: text", in arrival order.
    std::vector<std::string> Faults() const {
        std::vector<std::string> texts;
        for (const Korvel::ReadMessage& message : sink.GetMessages()) {
            if (message.level <= Korvel::ReportLevelWarn) {
                texts.push_back(std::string(Korvel::ReportLevelName(message.level)) + ": " + message.text);
            }
        }
        return texts;
    }
    std::string AllMessages() const {
        std::string all;
        for (const Korvel::ReadMessage& message : sink.GetMessages()) {
            all += std::string(Korvel::ReportLevelName(message.level)) + ": " + message.text + "\n";
        }
        return all;
    }
};

inline std::unique_ptr<ReadResult> Read(const std::string& document) {
    auto result = std::make_unique<ReadResult>();
    Korvel::ZKLReaderImpl reader;
    result->ecu = reader.ReadText(document, "", result->sink);
    return result;
}

// What a tag handler is given in a read: a model builder, an element stack and a recording
// sink, for tests that drive one handler directly.
struct HandlerSetup {
    HandlerSetup() {
        context.builder = &builder;
        context.elementStack = &stack;
        context.reporting = sink;
    }
    std::shared_ptr<Korvel::ReportCollector> sink =
        std::make_shared<Korvel::ReportCollector>(Korvel::ReportLevelDebug);
    Korvel::ZModelBuilder builder;
    Korvel::ZKLXmlElementStack stack;
    Korvel::ZKLXEHContext context;
};

inline std::string Warning(const std::string& tag) {
    return "WARN: WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item "
           "could be "
           "created for the current '" +
           tag + "' XML element!";
}

// An attribute list built by hand; a null name stands for an attribute whose name cannot be
// fetched.
class FakeAttributes : public xercesc::AttributeList {
public:
    void Add(const XMLCh* name, const XMLCh* value) { entries_.emplace_back(name, value); }
    XMLSize_t getLength() const override { return entries_.size(); }
    const XMLCh* getName(const XMLSize_t index) const override {
        return index < entries_.size() ? entries_[index].first : nullptr;
    }
    const XMLCh* getType(const XMLSize_t) const override { return u"CDATA"; }
    const XMLCh* getValue(const XMLSize_t index) const override {
        return index < entries_.size() ? entries_[index].second : nullptr;
    }
    const XMLCh* getType(const XMLCh* const) const override { return u"CDATA"; }
    const XMLCh* getValue(const XMLCh* const name) const override {
        for (const auto& entry : entries_) {
            if (entry.first != nullptr && std::u16string_view(entry.first) == std::u16string_view(name)) {
                return entry.second;
            }
        }
        return nullptr;
    }
    const XMLCh* getValue(const char* const) const override { return nullptr; }

private:
    std::vector<std::pair<const XMLCh*, const XMLCh*>> entries_;
};

}  // namespace ReaderTest
