// Binds the generic frame to the reader: owns the frame, the ECU the handlers build, and
// the tag counts of the parse, and gives the parse summary.
#pragma once

#include "reader/IKLXmlParserExt.h"
#include "reader/ZKLXmlElementStack.h"
#include "reader/ZKLXmlParserUtilsFactory.h"
#include "reader/ZXmlParser.h"
#include "reader/handlers/TagCounts.h"

#include "model/ZModelBuilder.h"

#include <cstddef>

namespace Korvel {

class ZKLXmlParser : public IKLXmlParserExt {
public:
    // Starts with a new, empty ECU that the parse builds with the model builder.
    ZKLXmlParser();
    ~ZKLXmlParser() override;
    ZKLXmlParser(const ZKLXmlParser&) = delete;
    ZKLXmlParser& operator=(const ZKLXmlParser&) = delete;

    // False at once when the inner frame is missing.
    bool ParseFile(const char* path, const char* encoding) override;
    bool ParseMemory(const char* data, uint32_t length, const char* encoding) override;
    void RegisterHandler(const std::shared_ptr<IXmlElementHandler>& handler) override;
    void SetReporting(std::shared_ptr<IReporting> reporting) override;
    ZKLXmlElementStack* GetElementStack() const override;
    IEcu* GetEcu() const override;
    std::unique_ptr<IEcu> TakeEcu() override;
    bool GetParseCounts(uint32_t& errors, uint32_t& warnings) const override;
    std::string GetParseSummary() const override;

    TagCounts& GetTagCounts() { return tagCounts_; }
    ZModelBuilder& Builder() { return builder_; }
    // The inner frame, or null when it could not be built.
    ZXmlParser* GetXmlParser() const { return parser_.get(); }

private:
    std::shared_ptr<ZKLXmlParserUtilsFactory> utilsFactory_;
    std::unique_ptr<ZXmlParser> parser_;
    ZModelBuilder builder_;
    TagCounts tagCounts_;
};

}  // namespace Korvel
