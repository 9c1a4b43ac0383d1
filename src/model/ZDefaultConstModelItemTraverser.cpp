#include "model/ZDefaultConstModelItemTraverser.h"

namespace Korvel {

ZDefaultConstModelItemTraverser::~ZDefaultConstModelItemTraverser() = default;

void ZDefaultConstModelItemTraverser::Traverse(const IModelItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseEcu(const IEcu& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkEcu(const IEcu& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveEcu(const IEcu& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseNrcContainer(const INrcContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkNrcContainer(const INrcContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveNrcContainer(const INrcContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseNrcItem(const INrcItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkNrcItem(const INrcItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveNrcItem(const INrcItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseConversionContainer(const IConversionContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkConversionContainer(const IConversionContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveConversionContainer(const IConversionContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseConversion(const IConversion& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkConversion(const IConversion& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveConversion(const IConversion& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseTextTable(const ITextTable& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkTextTable(const ITextTable& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveTextTable(const ITextTable& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseTextTableElement(const ITextTableElement& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkTextTableElement(const ITextTableElement& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveTextTableElement(const ITextTableElement& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseInstanceContainer(const IInstanceContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkInstanceContainer(const IInstanceContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveInstanceContainer(const IInstanceContainer& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseInstance(const IInstance& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkInstance(const IInstance& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveInstance(const IInstance& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseRequest(const IRequest& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkRequest(const IRequest& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveRequest(const IRequest& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraversePosResponse(const IPosResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkPosResponse(const IPosResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeavePosResponse(const IPosResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseNegResponse(const INegResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkNegResponse(const INegResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveNegResponse(const INegResponse& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseParam(const IParam& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkParam(const IParam& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveParam(const IParam& /*item*/) {}
void ZDefaultConstModelItemTraverser::TraverseNotSupported(const IModelItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::WalkNotSupported(const IModelItem& /*item*/) {}
void ZDefaultConstModelItemTraverser::LeaveNotSupported(const IModelItem& /*item*/) {}

}  // namespace Korvel
