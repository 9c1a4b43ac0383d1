#include "writer/ZXmlWriter.h"

#include "writer/WriterMessages.h"
#include "writer/ZStringEncodingHelperLatin1.h"
#include "writer/ZStringEncodingHelperUtf8.h"

#include <ZeKL/IEcu.h>

#include <charconv>
#include <cstdio>
#include <ios>
#include <stdexcept>

namespace Korvel {

namespace {

std::unique_ptr<ZStringEncodingHelper> MakeEncodingHelper(const std::string& encoding) {
    if (encoding == "utf-8") {
        return std::make_unique<ZStringEncodingHelperUtf8>();
    }
    if (encoding == "Windows-1252") {
        return std::make_unique<ZStringEncodingHelperWin1252>();
    }
    if (encoding == "iso-8859-1") {
        return std::make_unique<ZStringEncodingHelperLatin1>();
    }
    return std::make_unique<ZStringEncodingHelper>();
}

// "'Ω' (U+03A9)"; a control character only by its number.
std::string CharacterName(char32_t c) {
    char number[16];
    std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(c));
    if (c < 0xA0) {
        return number;
    }
    std::string utf8;
    if (c < 0x800) {
        utf8 += static_cast<char>(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            utf8 += static_cast<char>(0xE0 | (c >> 12));
        } else {
            utf8 += static_cast<char>(0xF0 | (c >> 18));
            utf8 += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        }
        utf8 += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    }
    utf8 += static_cast<char>(0x80 | (c & 0x3F));
    return "'" + utf8 + "' (" + number + ")";
}

// Fixed indents of the lines that do not follow the closing stack.
constexpr std::size_t kConversionIndent = 1;
constexpr std::size_t kMapIndent = 2;
constexpr std::size_t kParamIndent = 3;

// Depths the sections close to before they open a new element.
constexpr std::size_t kSectionDepth = 1;
constexpr std::size_t kMessageDepth = 2;

}  // namespace

ZXmlWriter::ZXmlWriter(std::ostream& out, const char* encoding, const IWriterConfig& config)
    : m_out(out),
      m_encoding(encoding != nullptr ? encoding : ""),
      m_helper(MakeEncodingHelper(m_encoding)),
      m_config(config),
      m_encodeAllValues(config.GetEncodeAllValues()),
      m_refuseUncarried(config.GetRefuseUncarriedCharacters()) {
    m_line.reserve(256);
}

ZXmlWriter::~ZXmlWriter() {
    try {
        CloseAll();
    } catch (...) {
        // A destructor must not throw; the front closes explicitly and sees the failure there.
    }
}

// --- visitor: each kind goes on to its own traversal operation ---

void ZXmlWriter::VisitEcu(const IEcu& ecu) {
    TraverseEcu(ecu);
}
void ZXmlWriter::VisitNrcContainer(const INrcContainer& nrcs) {
    TraverseNrcContainer(nrcs);
}
void ZXmlWriter::VisitNrcItem(const INrcItem& nrc) {
    TraverseNrcItem(nrc);
}
void ZXmlWriter::VisitConversionContainer(const IConversionContainer& conversions) {
    TraverseConversionContainer(conversions);
}
void ZXmlWriter::VisitConversion(const IConversion& conversion) {
    TraverseConversion(conversion);
}
void ZXmlWriter::VisitTextTable(const ITextTable& table) {
    TraverseTextTable(table);
}
void ZXmlWriter::VisitTextTableElement(const ITextTableElement& element) {
    TraverseTextTableElement(element);
}
void ZXmlWriter::VisitInstanceContainer(const IInstanceContainer& instances) {
    TraverseInstanceContainer(instances);
}
void ZXmlWriter::VisitInstance(const IInstance& instance) {
    TraverseInstance(instance);
}
void ZXmlWriter::VisitRequest(const IRequest& request) {
    TraverseRequest(request);
}
void ZXmlWriter::VisitPosResponse(const IPosResponse& response) {
    TraversePosResponse(response);
}
void ZXmlWriter::VisitNegResponse(const INegResponse& response) {
    TraverseNegResponse(response);
}
void ZXmlWriter::VisitParam(const IParam& param) {
    TraverseParam(param);
}
void ZXmlWriter::VisitNotSupported(const IModelItem& item) {
    TraverseNotSupported(item);
}

// --- traversal ---

void ZXmlWriter::Traverse(const IModelItem& item) {
    item.Accept(*this);
}

void ZXmlWriter::TraverseEcu(const IEcu& item) {
    m_line.clear();
    AppendLiteral("<ECU protocol=\"");
    m_line += item.GetProtocol() == ProtocolKwp ? "KWP" : "UDS";
    AppendLiteral("\">");
    WriteOpeningLine(nullptr, "</ECU>");
    WalkEcu(item);
}

void ZXmlWriter::WalkEcu(const IEcu& item) {
    item.GetNrcContainer()->Accept(*this);
    item.GetInstanceContainer()->Accept(*this);
    item.GetConversionContainer()->Accept(*this);
}

void ZXmlWriter::TraverseNrcContainer(const INrcContainer& item) {
    // Written also when the table is empty.
    WriteOpeningLine("<NEGATIVE_RESPONSE_CODES>", "</NEGATIVE_RESPONSE_CODES>");
    WalkNrcContainer(item);
}

void ZXmlWriter::WalkNrcContainer(const INrcContainer& item) {
    const uint32_t count = item.GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        if (const INrcItem* nrc = item.GetNrc(i)) {
            nrc->Accept(*this);
        }
    }
}

void ZXmlWriter::TraverseNrcItem(const INrcItem& item) {
    m_item = {ItemKind::Nrc, "", item.GetCode()};
    BeginLine(kMapIndent);
    AppendLiteral("<MAP nrc=\"");
    AppendUnsigned(item.GetCode());
    AppendLiteral("\" text=\"");
    AppendEncoded(item.GetText(), "text");
    // No blank before "/>" here, unlike the text-table maps: both forms are kept as they are
    // because existing documents and the tools comparing them hold exactly these.
    AppendLiteral("\"/>");
    EndLine();
}

void ZXmlWriter::TraverseConversionContainer(const IConversionContainer& item) {
    WalkConversionContainer(item);
}

void ZXmlWriter::WalkConversionContainer(const IConversionContainer& item) {
    const uint32_t count = item.GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        if (const IConversion* conversion = item.GetConversion(i)) {
            conversion->Accept(*this);
        }
    }
}

void ZXmlWriter::TraverseConversion(const IConversion& item) {
    CloseToDepth(kSectionDepth);
    const bool hasTable = item.HasTextTable();
    m_conversionId = item.GetId();
    m_item = {ItemKind::Conversion, m_conversionId};
    BeginLine(kConversionIndent);
    AppendLiteral("<CONVERSION id=\"");
    AppendValue(m_conversionId, "id");
    AppendLiteral("\" factor=\"");
    AppendFixed(item.GetFactor());
    AppendLiteral("\" offset=\"");
    AppendFixed(item.GetOffset());
    m_line += hasTable ? "\">" : "\"/>";
    if (hasTable) {
        m_closing.emplace_back("</CONVERSION>");
    }
    EndLine();
    WalkConversion(item);
}

void ZXmlWriter::WalkConversion(const IConversion& item) {
    if (const ITextTable* table = item.GetTextTable()) {
        table->Accept(*this);
    }
}

void ZXmlWriter::TraverseTextTable(const ITextTable& item) {
    WalkTextTable(item);
}

void ZXmlWriter::WalkTextTable(const ITextTable& item) {
    const uint32_t count = item.GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        if (const ITextTableElement* element = item.GetElement(i)) {
            element->Accept(*this);
        }
    }
}

void ZXmlWriter::TraverseTextTableElement(const ITextTableElement& item) {
    m_item = {ItemKind::TableEntry, item.GetValue()};
    BeginLine(kMapIndent);
    AppendLiteral("<MAP val=\"");
    AppendValue(item.GetValue(), "val");
    AppendLiteral("\" text=\"");
    AppendEncoded(item.GetText(), "text");
    AppendLiteral("\" />");
    EndLine();
}

void ZXmlWriter::TraverseInstanceContainer(const IInstanceContainer& item) {
    WalkInstanceContainer(item);
}

void ZXmlWriter::WalkInstanceContainer(const IInstanceContainer& item) {
    const uint32_t count = item.GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        if (const IInstance* instance = item.GetInstance(i)) {
            instance->Accept(*this);
        }
    }
}

void ZXmlWriter::TraverseInstance(const IInstance& item) {
    CloseToDepth(kSectionDepth);
    m_instanceId = item.GetId();
    m_item = {ItemKind::Instance, m_instanceId};
    m_line.clear();
    AppendLiteral("<INSTANCE id=\"");
    AppendValue(m_instanceId, "id");
    AppendLiteral("\">");
    WriteOpeningLine(nullptr, "</INSTANCE>");
    WalkInstance(item);
}

void ZXmlWriter::WalkInstance(const IInstance& item) {
    if (item.HasRequest()) {
        if (const IRequest* request = item.GetRequest()) {
            request->Accept(*this);
        }
    }
    if (item.HasPosResponse()) {
        if (const IPosResponse* response = item.GetPosResponse()) {
            response->Accept(*this);
        }
    }
    if (item.HasNegResponse()) {
        if (const INegResponse* response = item.GetNegResponse()) {
            response->Accept(*this);
        }
    }
}

void ZXmlWriter::TraverseRequest(const IRequest& item) {
    m_messageName = "request";
    WriteMessage("<REQUEST>", "</REQUEST>");
    WalkRequest(item);
}

void ZXmlWriter::WalkRequest(const IRequest& item) {
    WalkMessage(item);
}

void ZXmlWriter::TraversePosResponse(const IPosResponse& item) {
    m_messageName = "response";
    WriteMessage("<RESPONSE>", "</RESPONSE>");
    WalkPosResponse(item);
}

void ZXmlWriter::WalkPosResponse(const IPosResponse& item) {
    WalkMessage(item);
}

void ZXmlWriter::TraverseNegResponse(const INegResponse& item) {
    m_messageName = "negative response";
    WriteMessage("<NEGATIVE_RESPONSE>", "</NEGATIVE_RESPONSE>");
    WalkNegResponse(item);
}

void ZXmlWriter::WalkNegResponse(const INegResponse& item) {
    WalkMessage(item);
}

void ZXmlWriter::TraverseParam(const IParam& item) {
    m_item = {ItemKind::Param, item.GetId()};
    BeginLine(kParamIndent);
    AppendLiteral("<PARAMETER id=\"");
    AppendValue(item.GetId(), "id");
    AppendLiteral("\" bitPos=\"");
    AppendUnsigned(item.GetBitPos());
    AppendLiteral("\" bitLen=\"");
    AppendUnsigned(item.GetBitLength());
    AppendLiteral("\" type=\"");
    AppendValue(item.GetDataTypeName(), "type");
    AppendLiteral("\" unit=\"");
    AppendValue(item.GetUnit(), "unit");
    AppendLiteral("\" value=\"");
    AppendValue(item.GetValue(), "value");
    AppendLiteral("\" semantics=\"");
    AppendValue(item.GetSemantics(), "semantics");
    AppendLiteral("\" convId=\"");
    AppendValue(item.GetConvId(), "convId");
    AppendLiteral("\"/>");
    EndLine();
}

// --- document frame ---

bool ZXmlWriter::IsReady() const {
    return !m_encoding.empty();
}

void ZXmlWriter::WriteDeclaration(const char* encoding) {
    m_line.clear();
    AppendLiteral("<?xml version=\"1.0\" encoding=\"");
    AppendText(encoding);
    AppendLiteral("\"?>");
    EndLine();
}

void ZXmlWriter::CloseAll() {
    CloseToDepth(0);
}

void ZXmlWriter::EncodeValue(const char* text, std::string& out) const {
    if (m_helper) {
        m_helper->Encode(text, out);
    } else {
        out = text != nullptr ? text : "";
    }
}

// --- lines ---

void ZXmlWriter::CloseToDepth(std::size_t depth) {
    while (m_closing.size() > depth) {
        BeginLine(m_closing.size() - 1);
        m_line += m_closing.back();
        // Remove the entry only once its line is out, so a failed write leaves it open.
        EndLine();
        m_closing.pop_back();
    }
}

void ZXmlWriter::BeginLine(std::size_t indent) {
    m_line.assign(indent, ' ');
}

void ZXmlWriter::EndLine() {
    // One insertion per line and no flush: the stream's buffer decides when bytes go out.
    m_line.push_back('\n');
    m_out.write(m_line.data(), static_cast<std::streamsize>(m_line.size()));
    if (!m_out) {
        throw std::ios_base::failure("line write failed");
    }
}

void ZXmlWriter::WriteOpeningLine(const char* openTag, const char* closeTag) {
    // The text is in m_line already unless given as `openTag`; the indent follows the depth
    // the element opens.
    if (openTag != nullptr) {
        m_line = openTag;
    }
    m_closing.emplace_back(closeTag);
    m_line.insert(0, m_closing.size() - 1, ' ');
    EndLine();
}

void ZXmlWriter::WriteMessage(const char* openTag, const char* closeTag) {
    CloseToDepth(kMessageDepth);
    WriteOpeningLine(openTag, closeTag);
}

void ZXmlWriter::WalkMessage(const IMessage& message) {
    const uint32_t count = message.GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        if (const IParam* param = message.GetParam(static_cast<int>(i))) {
            param->Accept(*this);
        }
    }
}

void ZXmlWriter::AppendText(const char* text) {
    if (text != nullptr) {
        m_line += text;
    }
}

void ZXmlWriter::AppendValue(const char* text, const char* attribute) {
    if (m_encodeAllValues) {
        AppendEncoded(text, attribute);
    } else {
        AppendText(text);
    }
}

void ZXmlWriter::AppendEncoded(const char* text, const char* attribute) {
    try {
        if (m_refuseUncarried) {
            if (const char32_t c = m_helper->FirstUncarried(text)) {
                throw std::runtime_error(Describe(attribute) + WriterMessages::kHolds + CharacterName(c) +
                                         WriterMessages::kWhich + m_encoding + WriterMessages::kCannotCarry);
            }
        }
        EncodeValue(text, m_encoded);
    } catch (const Platform::TranscodeError&) {
        throw std::runtime_error(Describe(attribute) + WriterMessages::kNotUtf8);
    }
    m_line += m_encoded;
}

std::string ZXmlWriter::Describe(const char* attribute) const {
    const std::string text = std::string("the ") + attribute + " of ";
    const auto quoted = [](const char* name) { return "'" + std::string(name != nullptr ? name : "") + "'"; };
    const std::string id = quoted(m_item.id);
    switch (m_item.kind) {
        case ItemKind::Nrc:
            return text + "NRC " + std::to_string(m_item.code);
        case ItemKind::Conversion:
            return text + "conversion " + id;
        case ItemKind::TableEntry:
            return text + "entry " + id + " of conversion " + quoted(m_conversionId);
        case ItemKind::Instance:
            return text + "instance " + id;
        case ItemKind::Param:
            return text + "parameter " + id + " in the " + m_messageName + " of instance " +
                   quoted(m_instanceId);
        case ItemKind::None:
            break;
    }
    return text + "the document";
}

void ZXmlWriter::AppendUnsigned(uint32_t value) {
    char digits[16];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    m_line.append(digits, result.ptr);
}

void ZXmlWriter::AppendFixed(double value) {
    // Fixed notation with 16 decimals, as printf's "%.16f" in the C locale; to_chars does
    // not depend on the process locale. The largest double needs 309 integer digits.
    char digits[400];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 16);
    m_line.append(digits, result.ptr);
}

}  // namespace Korvel
