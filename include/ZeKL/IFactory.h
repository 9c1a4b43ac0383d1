// Creates model items as caller-owned objects, and the empty documents.
#pragma once

#include <ZeKL/IEcu.h>

#include <memory>
#include <string>

namespace Korvel {

class ZEKL_API IFactory {
public:
    virtual ~IFactory();
    // An empty ECU: version "1.0", protocol UDS.
    virtual std::unique_ptr<IEcu> CreateEcu() = 0;
    virtual std::unique_ptr<INrcContainer> CreateNrcContainer() = 0;
    virtual std::unique_ptr<IConversionContainer> CreateConversionContainer() = 0;
    virtual std::unique_ptr<IInstanceContainer> CreateInstanceContainer() = 0;
    virtual std::unique_ptr<IInstance> CreateInstance() = 0;
    virtual std::unique_ptr<IRequest> CreateRequest() = 0;
    virtual std::unique_ptr<INegResponse> CreateNegResponse() = 0;
    virtual std::unique_ptr<IPosResponse> CreatePosResponse() = 0;
    // Empty id, type 0xFFFFFFFF, factor 0.0, offset 0.0.
    virtual std::unique_ptr<IConversion> CreateConversion() = 0;
    virtual std::unique_ptr<ITextTable> CreateTextTable() = 0;
    // Text of an empty KWP document, optionally with the default NRC table.
    virtual std::string CreateEmptyKwpDocument(bool withNrcTable) = 0;
    // Text of an empty UDS document, optionally with the default NRC table.
    virtual std::string CreateEmptyUdsDocument(bool withNrcTable) = 0;
};

}  // namespace Korvel
