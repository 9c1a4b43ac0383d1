// Writes one ECU model as a diagnostic description document on a narrow output stream. It is
// both the visitor the model items call back and the traversal that walks their children.
// One writer serves one write.
#pragma once

#include "model/ZDefaultConstModelItemTraverser.h"
#include "writer/ZStringEncodingHelper.h"

#include <ZeKL/IConstModelItemVisitor.h>
#include <ZeKL/IWriterConfig.h>

#include <deque>
#include <memory>
#include <ostream>
#include <string>

namespace Korvel {

class ZXmlWriter : public ZDefaultConstModelItemTraverser, public IConstModelItemVisitor {
public:
    // Chooses the encoding helper from `encoding` (null counts as empty): "utf-8" the UTF-8
    // helper, "Windows-1252" the code page 1252 helper, "iso-8859-1" its Latin-1 form (the
    // same bytes), any other name the base helper. Names are compared exactly. The switches of
    // `config` are read here, once per write.
    ZXmlWriter(std::ostream& out, const char* encoding, const IWriterConfig& config);
    // Closes whatever is still open; a stream failure at this point is swallowed, so callers
    // that need to know call CloseAll first.
    ~ZXmlWriter() override;
    ZXmlWriter(const ZXmlWriter&) = delete;
    ZXmlWriter& operator=(const ZXmlWriter&) = delete;

    void VisitEcu(const IEcu& ecu) override;
    void VisitNrcContainer(const INrcContainer& nrcs) override;
    void VisitNrcItem(const INrcItem& nrc) override;
    void VisitConversionContainer(const IConversionContainer& conversions) override;
    void VisitConversion(const IConversion& conversion) override;
    void VisitTextTable(const ITextTable& table) override;
    void VisitTextTableElement(const ITextTableElement& element) override;
    void VisitInstanceContainer(const IInstanceContainer& instances) override;
    void VisitInstance(const IInstance& instance) override;
    void VisitRequest(const IRequest& request) override;
    void VisitPosResponse(const IPosResponse& response) override;
    void VisitNegResponse(const INegResponse& response) override;
    void VisitParam(const IParam& param) override;
    void VisitNotSupported(const IModelItem& item) override;

    void Traverse(const IModelItem& item) override;
    void TraverseEcu(const IEcu& item) override;
    void WalkEcu(const IEcu& item) override;
    void TraverseNrcContainer(const INrcContainer& item) override;
    void WalkNrcContainer(const INrcContainer& item) override;
    void TraverseNrcItem(const INrcItem& item) override;
    void TraverseConversionContainer(const IConversionContainer& item) override;
    void WalkConversionContainer(const IConversionContainer& item) override;
    void TraverseConversion(const IConversion& item) override;
    void WalkConversion(const IConversion& item) override;
    void TraverseTextTable(const ITextTable& item) override;
    void WalkTextTable(const ITextTable& item) override;
    void TraverseTextTableElement(const ITextTableElement& item) override;
    void TraverseInstanceContainer(const IInstanceContainer& item) override;
    void WalkInstanceContainer(const IInstanceContainer& item) override;
    void TraverseInstance(const IInstance& item) override;
    void WalkInstance(const IInstance& item) override;
    void TraverseRequest(const IRequest& item) override;
    void WalkRequest(const IRequest& item) override;
    void TraversePosResponse(const IPosResponse& item) override;
    void WalkPosResponse(const IPosResponse& item) override;
    void TraverseNegResponse(const INegResponse& item) override;
    void WalkNegResponse(const INegResponse& item) override;
    void TraverseParam(const IParam& item) override;

    // True when the encoding name is not empty (a declaration can be written).
    virtual bool IsReady() const;
    // Writes the XML declaration line naming `encoding`.
    virtual void WriteDeclaration(const char* encoding);
    // Writes the closing tags of every open element.
    virtual void CloseAll();
    // Escapes `text` and converts it to the output encoding.
    virtual void EncodeValue(const char* text, std::string& out) const;

    const IWriterConfig& GetConfig() const { return m_config; }

private:
    // The item whose line is being built, so that a value it cannot write names its owner.
    enum class ItemKind { None, Nrc, Conversion, TableEntry, Instance, Param };
    struct Item {
        ItemKind kind = ItemKind::None;
        const char* id = "";  // the value for a table entry
        uint32_t code = 0;    // the code of an NRC
    };

    void CloseToDepth(std::size_t depth);
    // Starts the line buffer with `indent` blanks.
    void BeginLine(std::size_t indent);
    // Ends the buffered line and writes it with one insertion.
    void EndLine();
    // Writes an opening tag whose closing tag stays open for the element's children.
    void WriteOpeningLine(const char* openTag, const char* closeTag);
    void WriteMessage(const char* openTag, const char* closeTag);
    void WalkMessage(const IMessage& message);
    // Appends a string literal without measuring it.
    template <std::size_t N>
    void AppendLiteral(const char (&text)[N]) {
        m_line.append(text, N - 1);
    }
    void AppendText(const char* text);
    // An attribute value: through the encoding helper when the configuration says every value
    // goes there, else as stored.
    void AppendValue(const char* text, const char* attribute);
    // A value through the encoding helper. Throws, naming the item and `attribute`, when the
    // text is not UTF-8 or holds a character the encoding cannot carry and the configuration
    // refuses those.
    void AppendEncoded(const char* text, const char* attribute);
    // "the unit of parameter 'X' in the response of instance 'Y'".
    std::string Describe(const char* attribute) const;
    void AppendUnsigned(uint32_t value);
    void AppendFixed(double value);

    std::ostream& m_out;
    std::string m_encoding;
    std::unique_ptr<ZStringEncodingHelper> m_helper;
    const IWriterConfig& m_config;
    const bool m_encodeAllValues;
    const bool m_refuseUncarried;
    Item m_item;
    // Owners of the item being written; they point into the model, valid during the write.
    const char* m_instanceId = "";
    const char* m_messageName = "";
    const char* m_conversionId = "";
    // Closing tags of the open elements, outermost first; its size is the current depth.
    std::deque<std::string> m_closing;
    std::string m_line;
    std::string m_encoded;
};

}  // namespace Korvel
