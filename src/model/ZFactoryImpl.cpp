#include "model/ZFactoryImpl.h"

#include "model/ZConversion.h"
#include "model/ZConversionContainer.h"
#include "model/ZEcu.h"
#include "model/ZInstance.h"
#include "model/ZInstanceContainer.h"
#include "model/ZNegResponse.h"
#include "model/ZNrcContainer.h"
#include "model/ZPosResponse.h"
#include "model/ZRequest.h"
#include "model/ZTextTable.h"

#include "model/ModelUtils.h"

namespace Korvel {

ZFactoryImpl::~ZFactoryImpl() = default;

std::unique_ptr<IEcu> ZFactoryImpl::CreateEcu() {
    return std::make_unique<ZEcu>();
}

std::unique_ptr<INrcContainer> ZFactoryImpl::CreateNrcContainer() {
    return std::make_unique<ZNrcContainer>();
}

std::unique_ptr<IConversionContainer> ZFactoryImpl::CreateConversionContainer() {
    return std::make_unique<ZConversionContainer>();
}

std::unique_ptr<IInstanceContainer> ZFactoryImpl::CreateInstanceContainer() {
    return std::make_unique<ZInstanceContainer>();
}

std::unique_ptr<IInstance> ZFactoryImpl::CreateInstance() {
    return std::make_unique<ZInstance>();
}

std::unique_ptr<IRequest> ZFactoryImpl::CreateRequest() {
    return std::make_unique<ZRequest>();
}

std::unique_ptr<INegResponse> ZFactoryImpl::CreateNegResponse() {
    return std::make_unique<ZNegResponse>();
}

std::unique_ptr<IPosResponse> ZFactoryImpl::CreatePosResponse() {
    return std::make_unique<ZPosResponse>();
}

std::unique_ptr<IConversion> ZFactoryImpl::CreateConversion() {
    return std::make_unique<ZConversion>();
}

std::unique_ptr<ITextTable> ZFactoryImpl::CreateTextTable() {
    return std::make_unique<ZTextTable>();
}

std::string ZFactoryImpl::CreateEmptyKwpDocument(bool withNrcTable) {
    return ModelUtils().CreateXmlForEmptyEcu(ProtocolKwp, withNrcTable);
}

std::string ZFactoryImpl::CreateEmptyUdsDocument(bool withNrcTable) {
    return ModelUtils().CreateXmlForEmptyEcu(ProtocolUds, withNrcTable);
}

}  // namespace Korvel
