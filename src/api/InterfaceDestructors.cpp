// Out-of-line destructors give every public interface one home for its vtable and type
// information, so both are exported from the library and dynamic_cast works across it.
#include <ZeKL/ZeKL.h>

namespace Korvel {

IModelItem::~IModelItem() = default;
IContainer::~IContainer() = default;
INrcItem::~INrcItem() = default;
INrcContainer::~INrcContainer() = default;
ITextTableElement::~ITextTableElement() = default;
ITextTable::~ITextTable() = default;
IConversion::~IConversion() = default;
IConversionContainer::~IConversionContainer() = default;
IParam::~IParam() = default;
IParamCallback::~IParamCallback() = default;
IMessage::~IMessage() = default;
IRequest::~IRequest() = default;
IPosResponse::~IPosResponse() = default;
INegResponse::~INegResponse() = default;
IInstance::~IInstance() = default;
IInstanceContainer::~IInstanceContainer() = default;
IEcu::~IEcu() = default;
IFactory::~IFactory() = default;
IDataModelUtils::~IDataModelUtils() = default;
IReporting::~IReporting() = default;
IKLReader::~IKLReader() = default;
IWriterConfig::~IWriterConfig() = default;
IKLWriter::~IKLWriter() = default;
IConstModelItemVisitor::~IConstModelItemVisitor() = default;
IConstModelItemTraverser::~IConstModelItemTraverser() = default;

}  // namespace Korvel
