#include "reader/ZKLXmlParser.h"

#include "reader/ReaderMessages.h"

#include <ZeKL/Exports.h>

#include <utility>

namespace Korvel {

namespace Msg = ReaderMessages;

ZKLXmlParser::ZKLXmlParser() : utilsFactory_(std::make_shared<ZKLXmlParserUtilsFactory>()) {
    try {
        parser_ = std::make_unique<ZXmlParser>(utilsFactory_);
    } catch (...) {
        parser_.reset();
    }
    ecu_ = GetFactory().CreateEcu();
}

ZKLXmlParser::~ZKLXmlParser() = default;

bool ZKLXmlParser::ParseFile(const char* path, const char* encoding) {
    if (!parser_) {
        return false;
    }
    tagCounts_.Reset();
    return parser_->ParseFile(path, encoding);
}

bool ZKLXmlParser::ParseMemory(const char* data, uint32_t length, const char* encoding) {
    if (!parser_) {
        return false;
    }
    tagCounts_.Reset();
    return parser_->ParseMemory(data, length, encoding);
}

void ZKLXmlParser::RegisterHandler(const std::shared_ptr<IXmlElementHandler>& handler) {
    if (parser_) {
        parser_->RegisterHandler(handler);
    }
}

void ZKLXmlParser::SetReporting(std::shared_ptr<IReporting> reporting) {
    if (parser_) {
        parser_->SetReporting(std::move(reporting));
    }
}

ZKLXmlElementStack* ZKLXmlParser::GetElementStack() const {
    return parser_ ? dynamic_cast<ZKLXmlElementStack*>(parser_->GetElementStack()) : nullptr;
}

IEcu* ZKLXmlParser::GetEcu() const {
    return ecu_.get();
}

std::unique_ptr<IEcu> ZKLXmlParser::TakeEcu() {
    return std::move(ecu_);
}

// Both outputs deliberately receive the error count; callers of the summary have always
// read it so.
bool ZKLXmlParser::GetParseCounts(uint32_t& errors, uint32_t& warnings) const {
    if (!parser_) {
        return false;
    }
    if (const std::shared_ptr<IReporting>& reporting = parser_->GetReporting()) {
        errors = reporting->GetErrorCount();
        warnings = reporting->GetErrorCount();
    }
    return parser_->Succeeded();
}

// "failed3 errors, 3warnigns": no blank after the result word nor before "warnigns", and
// the error count twice, exactly as callers parse it.
std::string ZKLXmlParser::GetParseSummary() const {
    if (!parser_) {
        return std::string(Msg::kSummaryNoParser);
    }
    std::string summary = Msg::kSummaryBegin;
    summary += parser_->Succeeded() ? Msg::kSummarySuccess : Msg::kSummaryFailed;
    if (const std::shared_ptr<IReporting>& reporting = parser_->GetReporting()) {
        const std::string count = std::to_string(reporting->GetErrorCount());
        summary.append(count).append(Msg::kSummaryErrors).append(count).append(Msg::kSummaryWarnings);
    }
    summary += Msg::kLineEnd;
    return summary;
}

}  // namespace Korvel
