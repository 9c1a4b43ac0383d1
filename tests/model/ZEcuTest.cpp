#include "model/ZEcu.h"

#include "model/RecordingVisitor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Korvel {
namespace {

TEST(Ecu_New, HasVersionUdsAndThreeEmptyContainersOwnedByIt) {
    ZEcu ecu;
    EXPECT_STREQ(ecu.GetFormatVersion(), "1.0");
    EXPECT_EQ(ecu.GetProtocol(), ProtocolUds);
    EXPECT_EQ(ecu.GetRoot(), static_cast<IModelItem*>(&ecu));
    EXPECT_FALSE(ecu.HasParent());
    EXPECT_EQ(ecu.GetNrcContainer()->GetCount(), 0u);
    EXPECT_EQ(ecu.GetInstanceContainer()->GetCount(), 0u);
    EXPECT_EQ(ecu.GetConversionContainer()->GetCount(), 0u);
    EXPECT_EQ(ecu.GetNrcContainer()->GetParent(), static_cast<IModelItem*>(&ecu));
    EXPECT_EQ(ecu.GetInstanceContainer()->GetParent(), static_cast<IModelItem*>(&ecu));
    EXPECT_EQ(ecu.GetConversionContainer()->GetParent(), static_cast<IModelItem*>(&ecu));
}

TEST(Ecu_ConstAndNonConstGetters, Agree) {
    ZEcu ecu;
    const ZEcu& constEcu = ecu;
    EXPECT_EQ(constEcu.GetNrcContainer(), ecu.GetNrcContainer());
    EXPECT_EQ(constEcu.GetInstanceContainer(), ecu.GetInstanceContainer());
    EXPECT_EQ(constEcu.GetConversionContainer(), ecu.GetConversionContainer());
    EXPECT_EQ(constEcu.GetRoot(), ecu.GetRoot());
}

TEST(Ecu_SetProtocol, StoresAnyValue) {
    ZEcu ecu;
    ecu.SetProtocol(ProtocolKwp);
    EXPECT_EQ(ecu.GetProtocol(), ProtocolKwp);
    ecu.SetProtocol(7);
    EXPECT_EQ(ecu.GetProtocol(), 7u);
}

TEST(Ecu_Items, HaveTheEcuAsRoot) {
    ZEcu ecu;
    ecu.GetNrcContainer()->AddNrc(16, "General reject");
    ecu.GetConversionContainer()->AddConversion("c_Formula", 1, 1.0, 0.0);
    ecu.GetConversionContainer()->GetConversion(0u)->AddTextTableElement("1", "x");
    ecu.GetInstanceContainer()->AddInstance("i");
    IInstance* instance = ecu.GetInstanceContainer()->GetInstance(0u);
    instance->CreateRequest()->AddParam("p", 0, 8, "", "none", "", "", "");
    IModelItem* root = &ecu;
    EXPECT_EQ(ecu.GetNrcContainer()->GetNrc(0u)->GetRoot(), root);
    EXPECT_EQ(ecu.GetNrcContainer()->GetNrc(0u)->GetParent(),
              static_cast<IModelItem*>(ecu.GetNrcContainer()));
    EXPECT_EQ(ecu.GetConversionContainer()->GetConversion(0u)->GetTextTableElement(0u)->GetRoot(), root);
    EXPECT_EQ(instance->GetParent(), static_cast<IModelItem*>(ecu.GetInstanceContainer()));
    EXPECT_EQ(instance->GetRequest()->GetParam(0)->GetRoot(), root);
    const IParam* constParam = instance->GetRequest()->GetParam(0);
    EXPECT_EQ(constParam->GetRoot(), root);
}

// The NRC table is cleared before it is read, so given its own table the ECU ends up with an
// empty one; this is kept because callers have always seen it so.
TEST(Ecu_SetNrcContainer, WithItsOwnTableEmptiesIt) {
    ZEcu ecu;
    ecu.GetNrcContainer()->AddNrc(16, "General reject");
    ecu.SetNrcContainer(*ecu.GetNrcContainer());
    EXPECT_EQ(ecu.GetNrcContainer()->GetCount(), 0u);
    EXPECT_EQ(ecu.GetNrcContainer()->GetParent(), static_cast<IModelItem*>(&ecu));
}

TEST(Ecu_SetInstanceAndConversionContainer, WithItsOwnContainersChangeNothing) {
    ZEcu ecu;
    ecu.GetInstanceContainer()->AddInstance("i");
    ecu.GetConversionContainer()->AddConversion("c", 1, 1.0, 0.0);
    IInstance* instance = ecu.GetInstanceContainer()->GetInstance(0u);
    IConversion* conversion = ecu.GetConversionContainer()->GetConversion(0u);
    ecu.SetInstanceContainer(*ecu.GetInstanceContainer());
    ecu.SetConversionContainer(*ecu.GetConversionContainer());
    EXPECT_EQ(ecu.GetInstanceContainer()->GetInstance(0u), instance);
    EXPECT_EQ(ecu.GetConversionContainer()->GetConversion(0u), conversion);
}

TEST(Ecu_SetConversionContainer, CopiesInOrderWithTheEcuAsRoot) {
    ZConversionContainer other;
    other.AddConversion("z_Formula", 1, 2.0, 0.0);
    other.AddConversion("a_ValueTable", 2, 1.0, 0.0);
    ZEcu ecu;
    IConversionContainer* member = ecu.GetConversionContainer();
    ecu.GetConversionContainer()->AddConversion("old", 1, 1.0, 0.0);
    ecu.SetConversionContainer(other);
    EXPECT_EQ(ecu.GetConversionContainer(), member);
    ASSERT_EQ(member->GetCount(), 2u);
    EXPECT_STREQ(member->GetConversion(0u)->GetId(), "z_Formula");
    EXPECT_STREQ(member->GetConversion(1u)->GetId(), "a_ValueTable");
    EXPECT_TRUE(member->Contains("z_Formula"));
    EXPECT_TRUE(member->Contains("a_ValueTable"));
    EXPECT_FALSE(member->Contains("old"));
    EXPECT_NE(member->GetConversion(0u), other.GetConversion(0u));
    EXPECT_EQ(member->GetConversion(0u)->GetRoot(), static_cast<IModelItem*>(&ecu));
    EXPECT_EQ(member->GetParent(), static_cast<IModelItem*>(&ecu));
}

TEST(Ecu_SetInstanceContainer, CopiesDeepWithTheEcuAsRoot) {
    ZInstanceContainer other;
    other.AddInstance("i");
    other.GetInstance(0u)->CreateRequest()->AddParam("p", 0, 8, "", "none", "", "", "");
    ZEcu ecu;
    ecu.SetInstanceContainer(other);
    const IParam* param = ecu.GetInstanceContainer()->GetInstance("i")->GetRequest()->GetParam("p");
    ASSERT_NE(param, nullptr);
    EXPECT_NE(param, other.GetInstance(0u)->GetRequest()->GetParam("p"));
    EXPECT_EQ(param->GetRoot(), static_cast<const IModelItem*>(&ecu));
}

TEST(Ecu_SetNrcContainer, CopiesTheOtherTableByIndex) {
    ZNrcContainer other;
    other.AddNrc(0x31, "a");
    other.AddNrc(0x10, "b");
    ZEcu ecu;
    ecu.SetNrcContainer(other);
    ASSERT_EQ(ecu.GetNrcContainer()->GetCount(), 2u);
    EXPECT_EQ(ecu.GetNrcContainer()->GetNrc(0u)->GetCode(), 0x31);
    EXPECT_EQ(ecu.GetNrcContainer()->GetNrc(0u)->GetRoot(), static_cast<IModelItem*>(&ecu));
}

// Parameters look their conversion up through the ECU at the root of their tree.
class EcuWithParams : public ::testing::Test {
protected:
    void SetUp() override {
        ecu.GetConversionContainer()->AddConversion("Speed_Formula", 1, 0.5, 0.0);
        ecu.GetConversionContainer()->AddConversion("State_ValueTable", 1, 1.0, 0.0);
        IConversion* table = ecu.GetConversionContainer()->GetConversion("State_ValueTable");
        table->SetType(2);
        table->AddTextTableElement("0", "off");
        ecu.GetInstanceContainer()->AddInstance("i");
        request = ecu.GetInstanceContainer()->GetInstance(0u)->CreateRequest();
        request->AddParam("formula", 0, 8, "", "unsigned", "", "", "Speed_Formula");
        request->AddParam("table", 8, 8, "", "unsigned", "", "", "State_ValueTable");
        request->AddParam("unknown", 16, 8, "", "signed", "", "", "Nothing");
        request->AddParam("none", 24, 8, "", "signed", "", "", "");
    }
    ZEcu ecu;
    IRequest* request = nullptr;
};

TEST_F(EcuWithParams, FormulaConversionMakesThePhysicalTypeDouble) {
    const IParam* param = request->GetParam("formula");
    EXPECT_EQ(param->GetConversion(), ecu.GetConversionContainer()->GetConversion("Speed_Formula"));
    EXPECT_EQ(param->GetConversionKind(), 1u);
    EXPECT_EQ(param->GetPhysicalDataType(), ParamDataType::Double);
    EXPECT_EQ(param->GetCodedDataType(), ParamDataType::Unsigned);
}

TEST_F(EcuWithParams, TextTableConversionMakesThePhysicalTypeAscii) {
    const IParam* param = request->GetParam("table");
    EXPECT_EQ(param->GetConversionKind(), 2u);
    EXPECT_EQ(param->GetPhysicalDataType(), ParamDataType::Ascii);
}

TEST_F(EcuWithParams, UnknownConversionGivesKindMinusOneAndKeepsTheType) {
    const IParam* param = request->GetParam("unknown");
    EXPECT_EQ(param->GetConversion(), nullptr);
    EXPECT_EQ(param->GetConversionKind(), 0xFFFFFFFFu);
    EXPECT_EQ(param->GetPhysicalDataType(), ParamDataType::Signed);
}

TEST_F(EcuWithParams, EmptyConversionIdFindsNothing) {
    const IParam* param = request->GetParam("none");
    EXPECT_EQ(param->GetConversion(), nullptr);
    EXPECT_EQ(param->GetConversionKind(), 0xFFFFFFFFu);
    EXPECT_EQ(param->GetPhysicalDataType(), ParamDataType::Signed);
}

TEST_F(EcuWithParams, NegativeResponseReachesTheNrcTableOfTheRoot) {
    INegResponse* response = ecu.GetInstanceContainer()->GetInstance(0u)->CreateNegResponse();
    EXPECT_EQ(response->GetNrcContainer(), ecu.GetNrcContainer());
}

// Deleting an ECU destroys every item it holds; the sanitizer run checks nothing leaks.
TEST(Ecu_Ownership, DeletingTheEcuDestroysTheWholeTree) {
    auto ecu = std::make_unique<ZEcu>();
    for (int i = 0; i < 20; ++i) {
        const std::string id = "instance_with_a_long_identifier_" + std::to_string(i);
        ecu->GetInstanceContainer()->AddInstance(id.c_str());
        IInstance* instance = ecu->GetInstanceContainer()->GetInstance(id.c_str());
        for (IMessage* message : {static_cast<IMessage*>(instance->CreateRequest()),
                                  static_cast<IMessage*>(instance->CreatePosResponse()),
                                  static_cast<IMessage*>(instance->CreateNegResponse())}) {
            message->AddParam("parameter_with_a_long_identifier", 0, 8, "0x12", "unsigned", "km/h",
                              "SID CONST", "conversion_with_a_long_identifier_Formula");
        }
        ecu->GetConversionContainer()->AddConversion(id.c_str(), 2, 1.0, 0.0);
        ecu->GetConversionContainer()
            ->GetConversion(id.c_str())
            ->AddTextTableElement("1", "a long text value");
        ecu->GetNrcContainer()->AddNrc(static_cast<uint8_t>(i), "a long negative response text");
    }
    ecu->GetInstanceContainer()->GetInstance(3u)->CreateRequest();
    ecu->GetNrcContainer()->SetNrc(0, 1, "replaced with a long text");
    std::unique_ptr<IEcu> owner(ecu.release());
    EXPECT_EQ(owner->GetInstanceContainer()->GetCount(), 20u);
    owner.reset();
}

TEST(Ecu_Accept, ReachesTheEcuOperation) {
    ZEcu ecu;
    test::RecordingVisitor visitor;
    EXPECT_EQ(visitor.AcceptBoth(ecu), "Ecu");
    EXPECT_EQ(visitor.lastItem, static_cast<const IEcu*>(&ecu));
}

}  // namespace
}  // namespace Korvel
