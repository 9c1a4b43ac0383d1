// Traversal of the model in three steps per item kind: handle the item, walk its children,
// leave it. A concrete traverser (the XML writer) overrides what it needs; the default
// implementation does nothing.
#pragma once

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

class ZEKL_API IConstModelItemTraverser {
public:
    virtual ~IConstModelItemTraverser();
    // Dispatches to the operations of the item's kind.
    virtual void Traverse(const IModelItem& item) = 0;
    virtual void TraverseEcu(const IEcu& item) = 0;
    virtual void WalkEcu(const IEcu& item) = 0;
    virtual void LeaveEcu(const IEcu& item) = 0;
    virtual void TraverseNrcContainer(const INrcContainer& item) = 0;
    virtual void WalkNrcContainer(const INrcContainer& item) = 0;
    virtual void LeaveNrcContainer(const INrcContainer& item) = 0;
    virtual void TraverseNrcItem(const INrcItem& item) = 0;
    virtual void WalkNrcItem(const INrcItem& item) = 0;
    virtual void LeaveNrcItem(const INrcItem& item) = 0;
    virtual void TraverseConversionContainer(const IConversionContainer& item) = 0;
    virtual void WalkConversionContainer(const IConversionContainer& item) = 0;
    virtual void LeaveConversionContainer(const IConversionContainer& item) = 0;
    virtual void TraverseConversion(const IConversion& item) = 0;
    virtual void WalkConversion(const IConversion& item) = 0;
    virtual void LeaveConversion(const IConversion& item) = 0;
    virtual void TraverseTextTable(const ITextTable& item) = 0;
    virtual void WalkTextTable(const ITextTable& item) = 0;
    virtual void LeaveTextTable(const ITextTable& item) = 0;
    virtual void TraverseTextTableElement(const ITextTableElement& item) = 0;
    virtual void WalkTextTableElement(const ITextTableElement& item) = 0;
    virtual void LeaveTextTableElement(const ITextTableElement& item) = 0;
    virtual void TraverseInstanceContainer(const IInstanceContainer& item) = 0;
    virtual void WalkInstanceContainer(const IInstanceContainer& item) = 0;
    virtual void LeaveInstanceContainer(const IInstanceContainer& item) = 0;
    virtual void TraverseInstance(const IInstance& item) = 0;
    virtual void WalkInstance(const IInstance& item) = 0;
    virtual void LeaveInstance(const IInstance& item) = 0;
    virtual void TraverseRequest(const IRequest& item) = 0;
    virtual void WalkRequest(const IRequest& item) = 0;
    virtual void LeaveRequest(const IRequest& item) = 0;
    virtual void TraversePosResponse(const IPosResponse& item) = 0;
    virtual void WalkPosResponse(const IPosResponse& item) = 0;
    virtual void LeavePosResponse(const IPosResponse& item) = 0;
    virtual void TraverseNegResponse(const INegResponse& item) = 0;
    virtual void WalkNegResponse(const INegResponse& item) = 0;
    virtual void LeaveNegResponse(const INegResponse& item) = 0;
    virtual void TraverseParam(const IParam& item) = 0;
    virtual void WalkParam(const IParam& item) = 0;
    virtual void LeaveParam(const IParam& item) = 0;
    virtual void TraverseNotSupported(const IModelItem& item) = 0;
    virtual void WalkNotSupported(const IModelItem& item) = 0;
    virtual void LeaveNotSupported(const IModelItem& item) = 0;
};

}  // namespace Korvel
