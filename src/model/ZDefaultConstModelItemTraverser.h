// A traverser whose every operation does nothing: a concrete traverser (the XML writer)
// overrides only the operations it needs.
#pragma once

// Every item interface is included, so that traversers built on this one see complete types.
#include <ZeKL/IConstModelItemTraverser.h>
#include <ZeKL/IConversion.h>
#include <ZeKL/IConversionContainer.h>
#include <ZeKL/IEcu.h>
#include <ZeKL/IInstance.h>
#include <ZeKL/IInstanceContainer.h>
#include <ZeKL/IMessage.h>
#include <ZeKL/INrcContainer.h>
#include <ZeKL/INrcItem.h>
#include <ZeKL/IParam.h>
#include <ZeKL/ITextTable.h>
#include <ZeKL/ITextTableElement.h>

namespace Korvel {

class ZDefaultConstModelItemTraverser : public IConstModelItemTraverser {
public:
    ZDefaultConstModelItemTraverser() = default;
    ~ZDefaultConstModelItemTraverser() override;

    void Traverse(const IModelItem& item) override;
    void TraverseEcu(const IEcu& item) override;
    void WalkEcu(const IEcu& item) override;
    void LeaveEcu(const IEcu& item) override;
    void TraverseNrcContainer(const INrcContainer& item) override;
    void WalkNrcContainer(const INrcContainer& item) override;
    void LeaveNrcContainer(const INrcContainer& item) override;
    void TraverseNrcItem(const INrcItem& item) override;
    void WalkNrcItem(const INrcItem& item) override;
    void LeaveNrcItem(const INrcItem& item) override;
    void TraverseConversionContainer(const IConversionContainer& item) override;
    void WalkConversionContainer(const IConversionContainer& item) override;
    void LeaveConversionContainer(const IConversionContainer& item) override;
    void TraverseConversion(const IConversion& item) override;
    void WalkConversion(const IConversion& item) override;
    void LeaveConversion(const IConversion& item) override;
    void TraverseTextTable(const ITextTable& item) override;
    void WalkTextTable(const ITextTable& item) override;
    void LeaveTextTable(const ITextTable& item) override;
    void TraverseTextTableElement(const ITextTableElement& item) override;
    void WalkTextTableElement(const ITextTableElement& item) override;
    void LeaveTextTableElement(const ITextTableElement& item) override;
    void TraverseInstanceContainer(const IInstanceContainer& item) override;
    void WalkInstanceContainer(const IInstanceContainer& item) override;
    void LeaveInstanceContainer(const IInstanceContainer& item) override;
    void TraverseInstance(const IInstance& item) override;
    void WalkInstance(const IInstance& item) override;
    void LeaveInstance(const IInstance& item) override;
    void TraverseRequest(const IRequest& item) override;
    void WalkRequest(const IRequest& item) override;
    void LeaveRequest(const IRequest& item) override;
    void TraversePosResponse(const IPosResponse& item) override;
    void WalkPosResponse(const IPosResponse& item) override;
    void LeavePosResponse(const IPosResponse& item) override;
    void TraverseNegResponse(const INegResponse& item) override;
    void WalkNegResponse(const INegResponse& item) override;
    void LeaveNegResponse(const INegResponse& item) override;
    void TraverseParam(const IParam& item) override;
    void WalkParam(const IParam& item) override;
    void LeaveParam(const IParam& item) override;
    void TraverseNotSupported(const IModelItem& item) override;
    void WalkNotSupported(const IModelItem& item) override;
    void LeaveNotSupported(const IModelItem& item) override;
};

}  // namespace Korvel
