#include "model/ZDefaultConstModelItemTraverser.h"

#include "model/RecordingVisitor.h"
#include "model/ZEcu.h"
#include "model/ZNotSupportedItem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Korvel {
namespace {

// A traverser in the writer's manner: the visitor operations hand each item to the traverser
// operation of its kind, which records it and walks the children through Accept.
class WalkingTraverser : public ZDefaultConstModelItemTraverser, public IConstModelItemVisitor {
public:
    std::vector<std::string> seen;

    void VisitEcu(const IEcu& item) override { TraverseEcu(item); }
    void VisitNrcContainer(const INrcContainer& item) override { TraverseNrcContainer(item); }
    void VisitNrcItem(const INrcItem& item) override { seen.push_back(std::string("nrc:") + item.GetText()); }
    void VisitConversionContainer(const IConversionContainer& item) override {
        TraverseConversionContainer(item);
    }
    void VisitConversion(const IConversion& item) override { TraverseConversion(item); }
    void VisitTextTable(const ITextTable& /*item*/) override { seen.push_back("table"); }
    void VisitTextTableElement(const ITextTableElement& item) override {
        seen.push_back(std::string("entry:") + item.GetValue());
    }
    void VisitInstanceContainer(const IInstanceContainer& item) override { TraverseInstanceContainer(item); }
    void VisitInstance(const IInstance& item) override { TraverseInstance(item); }
    void VisitRequest(const IRequest& item) override {
        seen.push_back("request");
        WalkMessage(item);
    }
    void VisitPosResponse(const IPosResponse& item) override {
        seen.push_back("response");
        WalkMessage(item);
    }
    void VisitNegResponse(const INegResponse& item) override {
        seen.push_back("negative");
        WalkMessage(item);
    }
    void VisitParam(const IParam& item) override { seen.push_back(std::string("param:") + item.GetId()); }
    void VisitNotSupported(const IModelItem& /*item*/) override { seen.push_back("unsupported"); }

    void TraverseEcu(const IEcu& item) override {
        seen.push_back("ecu");
        WalkEcu(item);
    }
    void WalkEcu(const IEcu& item) override {
        item.GetNrcContainer()->Accept(*this);
        item.GetInstanceContainer()->Accept(*this);
        item.GetConversionContainer()->Accept(*this);
    }
    void TraverseNrcContainer(const INrcContainer& item) override {
        for (uint32_t i = 0; i < item.GetCount(); ++i) {
            item.GetNrc(i)->Accept(*this);
        }
    }
    void TraverseInstanceContainer(const IInstanceContainer& item) override {
        for (uint32_t i = 0; i < item.GetCount(); ++i) {
            item.GetInstance(i)->Accept(*this);
        }
    }
    void TraverseInstance(const IInstance& item) override {
        seen.push_back(std::string("instance:") + item.GetId());
        if (item.HasRequest()) {
            item.GetRequest()->Accept(*this);
        }
        if (item.HasPosResponse()) {
            item.GetPosResponse()->Accept(*this);
        }
        if (item.HasNegResponse()) {
            item.GetNegResponse()->Accept(*this);
        }
    }
    void TraverseConversionContainer(const IConversionContainer& item) override {
        for (uint32_t i = 0; i < item.GetCount(); ++i) {
            item.GetConversion(i)->Accept(*this);
        }
    }
    void TraverseConversion(const IConversion& item) override {
        seen.push_back(std::string("conversion:") + item.GetId());
        if (const ITextTable* table = item.GetTextTable()) {
            table->Accept(*this);
            for (uint32_t i = 0; i < table->GetCount(); ++i) {
                table->GetElement(i)->Accept(*this);
            }
        }
    }

private:
    void WalkMessage(const IMessage& message) {
        for (int i = 0; i < static_cast<int>(message.GetCount()); ++i) {
            message.GetParam(i)->Accept(*this);
        }
    }
};

// A traverser that is also a visitor, as the writer is, but overrides no traverser operation:
// the default operations visit nothing, so none of the model's items reaches the visitor.
class SilentTraverser : public ZDefaultConstModelItemTraverser, public test::RecordingVisitor {};

TEST(DefaultTraverser_Operations, VisitNothingOfTheModel) {
    ZEcu ecu;
    ecu.GetNrcContainer()->AddNrc(1, "a");
    ecu.GetInstanceContainer()->AddInstance("i");
    IInstance* instance = ecu.GetInstanceContainer()->GetInstance(0u);
    instance->CreateRequest()->AddParam("sid", 0, 8, "22", "none", "", "SID", "");
    ecu.GetConversionContainer()->AddConversion("c_ValueTable", 2, 1.0, 0.0);
    ecu.GetConversionContainer()->GetConversion(0u)->AddTextTableElement("1", "on");
    SilentTraverser traverser;
    IConstModelItemTraverser& base = traverser;
    base.Traverse(ecu);
    base.TraverseEcu(ecu);
    base.WalkEcu(ecu);
    base.LeaveEcu(ecu);
    base.TraverseNrcContainer(*ecu.GetNrcContainer());
    base.WalkNrcContainer(*ecu.GetNrcContainer());
    base.LeaveNrcContainer(*ecu.GetNrcContainer());
    base.TraverseInstanceContainer(*ecu.GetInstanceContainer());
    base.WalkInstanceContainer(*ecu.GetInstanceContainer());
    base.TraverseInstance(*instance);
    base.WalkInstance(*instance);
    base.TraverseRequest(*instance->GetRequest());
    base.WalkRequest(*instance->GetRequest());
    base.TraverseConversionContainer(*ecu.GetConversionContainer());
    base.WalkConversionContainer(*ecu.GetConversionContainer());
    base.TraverseConversion(*ecu.GetConversionContainer()->GetConversion(0u));
    base.WalkConversion(*ecu.GetConversionContainer()->GetConversion(0u));
    base.TraverseNotSupported(*ZNotSupportedItem::GetInstance());
    base.WalkNotSupported(*ZNotSupportedItem::GetInstance());
    base.LeaveNotSupported(*ZNotSupportedItem::GetInstance());
    EXPECT_TRUE(traverser.calls.empty());
    // The same object does record what is handed to it as a visitor.
    ecu.Accept(static_cast<IConstModelItemVisitor&>(traverser));
    EXPECT_EQ(traverser.calls, std::vector<std::string>{"Ecu"});
}

TEST(DefaultTraverser_Override, ReachesEveryItemOfAModelThroughAccept) {
    ZEcu ecu;
    ecu.GetNrcContainer()->AddNrc(16, "General reject");
    ecu.GetInstanceContainer()->AddInstance("i");
    IInstance* instance = ecu.GetInstanceContainer()->GetInstance(0u);
    instance->CreateRequest()->AddParam("sid", 0, 8, "22", "none", "", "SID", "");
    instance->CreatePosResponse()->AddParam("data", 8, 8, "", "unsigned", "", "", "");
    instance->CreateNegResponse();
    ecu.GetConversionContainer()->AddConversion("c_ValueTable", 2, 1.0, 0.0);
    ecu.GetConversionContainer()->GetConversion(0u)->AddTextTableElement("1", "on");
    WalkingTraverser walker;
    ecu.Accept(walker);
    ZNotSupportedItem::GetInstance()->Accept(walker);
    EXPECT_EQ(walker.seen,
              (std::vector<std::string>{"ecu", "nrc:General reject", "instance:i", "request", "param:sid",
                                        "response", "param:data", "negative", "conversion:c_ValueTable",
                                        "table", "entry:1", "unsupported"}));
}

}  // namespace
}  // namespace Korvel
