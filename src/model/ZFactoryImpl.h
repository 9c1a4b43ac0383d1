// Creates empty model items as caller-owned objects, and the texts of empty documents.
#pragma once

#include <ZeKL/IFactory.h>

namespace Korvel {

class ZFactoryImpl : public IFactory {
public:
    ZFactoryImpl() = default;
    ~ZFactoryImpl() override;

    std::unique_ptr<IEcu> CreateEcu() override;
    std::unique_ptr<INrcContainer> CreateNrcContainer() override;
    std::unique_ptr<IConversionContainer> CreateConversionContainer() override;
    std::unique_ptr<IInstanceContainer> CreateInstanceContainer() override;
    std::unique_ptr<IInstance> CreateInstance() override;
    std::unique_ptr<IRequest> CreateRequest() override;
    std::unique_ptr<INegResponse> CreateNegResponse() override;
    std::unique_ptr<IPosResponse> CreatePosResponse() override;
    std::unique_ptr<IConversion> CreateConversion() override;
    std::unique_ptr<ITextTable> CreateTextTable() override;
    std::string CreateEmptyKwpDocument(bool withNrcTable) override;
    std::string CreateEmptyUdsDocument(bool withNrcTable) override;
};

}  // namespace Korvel
