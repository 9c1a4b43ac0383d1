// Double-dispatch visitor over the model: IModelItem::Accept calls the operation of the
// item's own kind.
#pragma once

#include <ZeKL/Types.h>

namespace Korvel {

class IModelItem;
class IEcu;
class INrcContainer;
class INrcItem;
class IConversionContainer;
class IConversion;
class ITextTable;
class ITextTableElement;
class IInstanceContainer;
class IInstance;
class IRequest;
class IPosResponse;
class INegResponse;
class IParam;

class ZEKL_API IConstModelItemVisitor {
public:
    virtual ~IConstModelItemVisitor();
    virtual void VisitEcu(const IEcu& ecu) = 0;
    virtual void VisitNrcContainer(const INrcContainer& nrcs) = 0;
    virtual void VisitNrcItem(const INrcItem& nrc) = 0;
    virtual void VisitConversionContainer(const IConversionContainer& conversions) = 0;
    virtual void VisitConversion(const IConversion& conversion) = 0;
    virtual void VisitTextTable(const ITextTable& table) = 0;
    virtual void VisitTextTableElement(const ITextTableElement& element) = 0;
    virtual void VisitInstanceContainer(const IInstanceContainer& instances) = 0;
    virtual void VisitInstance(const IInstance& instance) = 0;
    virtual void VisitRequest(const IRequest& request) = 0;
    virtual void VisitPosResponse(const IPosResponse& response) = 0;
    virtual void VisitNegResponse(const INegResponse& response) = 0;
    virtual void VisitParam(const IParam& param) = 0;
    // Last operation: the shared not-supported item.
    virtual void VisitNotSupported(const IModelItem& item) = 0;
};

}  // namespace Korvel
