#include "lint/ZLintReader.h"

#include "lint/ZLinter.h"
#include "model/ZConversion.h"
#include "model/ZItemPath.h"
#include "model/ZNrcItem.h"
#include "model/ZParam.h"
#include "platform/CNumbers.h"
#include "platform/Transcode.h"
#include "reader/ZKLReaderImpl.h"
#include "reader/ZKLXmlElement.h"

#include <ZeKL/ReportCollector.h>

#include <algorithm>
#include <cmath>

namespace Korvel {

namespace {

bool IsXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Blanks, an optional sign and decimal digits, then blanks: the whole text is what atol reads.
bool IsWholeInteger(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && IsXmlSpace(text[at])) {
        ++at;
    }
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        ++at;
    }
    const std::size_t digits = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
        ++at;
    }
    if (at == digits) {
        return false;
    }
    while (at < text.size() && IsXmlSpace(text[at])) {
        ++at;
    }
    return at == text.size();
}

// The whole text (blanks around it aside) is one finite number as atof reads it.
bool IsWholeReal(const std::string& text) {
    char* end = nullptr;
    const double value = Platform::StrToDouble(text.c_str(), &end);
    if (end == text.c_str() || !std::isfinite(value)) {
        return false;
    }
    while (IsXmlSpace(*end)) {
        ++end;
    }
    return *end == '\0';
}

std::string AttributeText(const xercesc::AttributeList& attributes, const char16_t* name) {
    const XMLCh* value = attributes.getValue(name);
    return value != nullptr ? Platform::Utf16ToUtf8(value) : std::string();
}

bool HasAttribute(const xercesc::AttributeList& attributes, const char16_t* name) {
    const XMLCh* value = attributes.getValue(name);
    return value != nullptr && value[0] != 0;
}

}  // namespace

void ZLintReader::ElementStarted(const XMLCh* /*name*/, const xercesc::AttributeList& attributes,
                                 const IXmlElement* record, XmlPosition start) {
    const auto* element = dynamic_cast<const ZKLXmlElement*>(record);
    ZModelItem* item = element != nullptr ? element->GetModelItem() : nullptr;
    // A refused element has the shared not-supported item; a handler that appended nothing
    // left its previous record, whose item was recorded with its own element before.
    if (item == nullptr || !item->IsSupported() || !positions_.Record(item, start)) {
        return;
    }
    ItemPath path;
    if (auto* param = item->As<ZParam>()) {
        AddItemPath(item, path);
        CheckInteger(attributes, u"bitPos", param->GetBitPos(), path, start);
        CheckInteger(attributes, u"bitLen", param->GetBitLength(), path, start);
    } else if (auto* conversion = item->As<ZConversion>()) {
        AddItemPath(item, path);
        CheckReal(attributes, u"factor", conversion->GetFactor(), path, start);
        CheckReal(attributes, u"offset", conversion->GetOffset(), path, start);
    } else if (auto* nrc = item->As<ZNrcItem>()) {
        AddItemPath(item, path);
        CheckInteger(attributes, u"nrc", nrc->GetCode(), path, start);
    }
}

void ZLintReader::CheckInteger(const xercesc::AttributeList& attributes, const char16_t* name, int64_t readAs,
                               const ItemPath& path, XmlPosition start) {
    if (!HasAttribute(attributes, name)) {
        return;
    }
    const std::string text = AttributeText(attributes, name);
    if (!IsWholeInteger(text)) {
        numberFindings_.push_back(ZLinter::Make(ZRule::NumberText, path,
                                                Platform::Utf16ToUtf8(name) + " '" + text +
                                                    "' is not a decimal number; it reads as " +
                                                    std::to_string(readAs),
                                                start));
    }
}

void ZLintReader::CheckReal(const xercesc::AttributeList& attributes, const char16_t* name, double readAs,
                            const ItemPath& path, XmlPosition start) {
    if (!HasAttribute(attributes, name)) {
        return;
    }
    const std::string text = AttributeText(attributes, name);
    if (!IsWholeReal(text)) {
        numberFindings_.push_back(ZLinter::Make(ZRule::NumberText, path,
                                                Platform::Utf16ToUtf8(name) + " '" + text +
                                                    "' is not a number; it reads as " +
                                                    Platform::ShortestDoubleText(readAs),
                                                start));
    }
}

template <typename ReadCall>
bool ZLintReader::Lint(ReadCall&& read, std::vector<LintFinding>& findings) {
    findings.clear();
    ReportCollector collector(ReportLevelError);
    std::unique_ptr<IEcu> ecu = read(collector);
    for (const ReadMessage& message : collector.GetMessages()) {
        if (message.level == ReportLevelFatal || message.level == ReportLevelError) {
            findings.push_back(ZLinter::Make(ZRule::Read, message.path, message.text,
                                             XmlPosition{message.line, message.column}));
        }
    }
    if (!ecu) {
        return false;
    }
    findings.insert(findings.end(), numberFindings_.begin(), numberFindings_.end());
    ZLinter(*ecu, &positions_, findings).Run();
    // Document order; at one place the order of the rules.
    std::stable_sort(findings.begin(), findings.end(), [](const LintFinding& a, const LintFinding& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    return true;
}

bool ZLintReader::LintFile(const char* path, std::vector<LintFinding>& findings) {
    return Lint(
        [&](IReporting& reporting) { return ZKLReaderImpl::ReadFileObserved(path, reporting, *this); },
        findings);
}

bool ZLintReader::LintText(const std::string& text, std::vector<LintFinding>& findings) {
    return Lint(
        [&](IReporting& reporting) { return ZKLReaderImpl::ReadTextObserved(text, reporting, *this); },
        findings);
}

}  // namespace Korvel
