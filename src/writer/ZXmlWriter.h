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
    // helper, "Windows-1252" and "iso-8859-1" the code page 1252 helper, any other name the
    // base helper. Names are compared exactly.
    ZXmlWriter(std::ostream& out, const char* encoding, IWriterConfig& config);
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

    IWriterConfig& GetConfig() const { return m_config; }

private:
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
    void AppendEncoded(const char* text);
    void AppendUnsigned(uint32_t value);
    void AppendFixed(double value);

    std::ostream& m_out;
    std::string m_encoding;
    std::unique_ptr<ZStringEncodingHelper> m_helper;
    IWriterConfig& m_config;
    // Closing tags of the open elements, outermost first; its size is the current depth.
    std::deque<std::string> m_closing;
    std::string m_line;
    std::string m_encoded;
};

}  // namespace Korvel
