#include "reader/ZKLXmlParser.h"

#include "reader/ReaderMessages.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace Korvel {

namespace Msg = ReaderMessages;

namespace {

// A model takes up to about twice the bytes of its document (1.7 to 1.9 times for documents of
// the format); the estimate sizes the arena's chunks.
constexpr std::size_t kModelBytesPerDocumentByte = 2;

// 0 when the size cannot be had: the parse then reports why.
std::size_t FileSize(const char* path) noexcept {
    try {
        std::error_code error;
        const std::uintmax_t size =
            path != nullptr ? std::filesystem::file_size(std::filesystem::u8path(path), error) : 0;
        return error || size > SIZE_MAX / kModelBytesPerDocumentByte ? 0 : static_cast<std::size_t>(size);
    } catch (...) {
        return 0;
    }
}

}  // namespace

ZKLXmlParser::ZKLXmlParser() : utilsFactory_(std::make_shared<ZKLXmlParserUtilsFactory>()) {
    try {
        parser_ = std::make_unique<ZXmlParser>(utilsFactory_);
    } catch (...) {
        parser_.reset();
    }
}

ZKLXmlParser::~ZKLXmlParser() = default;

bool ZKLXmlParser::ParseFile(const char* path, const char* encoding) {
    if (!parser_) {
        return false;
    }
    tagCounts_.Reset();
    builder_.ExpectBytes(FileSize(path) * kModelBytesPerDocumentByte);
    return parser_->ParseFile(path, encoding);
}

bool ZKLXmlParser::ParseMemory(const char* data, uint32_t length, const char* encoding) {
    if (!parser_) {
        return false;
    }
    tagCounts_.Reset();
    builder_.ExpectBytes(std::size_t{length} * kModelBytesPerDocumentByte);
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
    return builder_.Ecu();
}

std::unique_ptr<IEcu> ZKLXmlParser::TakeEcu() {
    return builder_.TakeEcu();
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
