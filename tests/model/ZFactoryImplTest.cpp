#include "model/ZFactoryImpl.h"

#include <ZeKL/Exports.h>

#include <gtest/gtest.h>

#include <string>

namespace Korvel {
namespace {

TEST(Factory_GetFactory, GivesTheSameObjectTwice) {
    EXPECT_EQ(&GetFactory(), &GetFactory());
}

TEST(Factory_CreateEcu, GivesIndependentEmptyEcus) {
    auto first = GetFactory().CreateEcu();
    auto second = GetFactory().CreateEcu();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first.get(), second.get());
    EXPECT_STREQ(first->GetFormatVersion(), "1.0");
    EXPECT_EQ(first->GetProtocol(), ProtocolUds);
    EXPECT_EQ(first->GetInstanceContainer()->GetCount(), 0u);
    second->GetInstanceContainer()->AddInstance("kept");
    first.reset();
    EXPECT_NE(second->GetInstanceContainer()->GetInstance("kept"), nullptr);
}

TEST(Factory_CreateConversion, HasKindNotSetAndFactorZero) {
    auto conversion = GetFactory().CreateConversion();
    EXPECT_EQ(conversion->GetType(), 0xFFFFFFFFu);
    EXPECT_EQ(conversion->GetFactor(), 0.0);
    EXPECT_EQ(conversion->GetOffset(), 0.0);
    EXPECT_STREQ(conversion->GetId(), "");
    EXPECT_FALSE(conversion->HasTextTable());
}

TEST(Factory_Create, GivesDetachedEmptyItemsOfEachKind) {
    IFactory& factory = GetFactory();
    auto nrcs = factory.CreateNrcContainer();
    auto conversions = factory.CreateConversionContainer();
    auto instances = factory.CreateInstanceContainer();
    auto instance = factory.CreateInstance();
    auto request = factory.CreateRequest();
    auto neg = factory.CreateNegResponse();
    auto pos = factory.CreatePosResponse();
    auto table = factory.CreateTextTable();
    EXPECT_EQ(nrcs->GetCount(), 0u);
    EXPECT_EQ(conversions->GetCount(), 0u);
    EXPECT_EQ(instances->GetCount(), 0u);
    EXPECT_STREQ(instance->GetId(), "");
    EXPECT_FALSE(instance->HasRequest());
    EXPECT_EQ(request->GetMessageKind(), MessageKindRequest);
    EXPECT_EQ(neg->GetMessageKind(), MessageKindNegResponse);
    EXPECT_EQ(pos->GetMessageKind(), MessageKindPosResponse);
    EXPECT_EQ(table->GetCount(), 0u);
    for (const IModelItem* item :
         {static_cast<const IModelItem*>(nrcs.get()), static_cast<const IModelItem*>(conversions.get()),
          static_cast<const IModelItem*>(instances.get()), static_cast<const IModelItem*>(instance.get()),
          static_cast<const IModelItem*>(request.get()), static_cast<const IModelItem*>(neg.get()),
          static_cast<const IModelItem*>(pos.get()), static_cast<const IModelItem*>(table.get())}) {
        EXPECT_FALSE(item->HasParent());
        EXPECT_TRUE(item->IsSupported());
    }
}

TEST(Factory_CreateEmptyUdsDocument, WithoutTableHoldsTheEmptyEcuElement) {
    const std::string document = GetFactory().CreateEmptyUdsDocument(false);
    EXPECT_EQ(document, GetDataModelUtils().CreateXmlForEmptyEcu(ProtocolUds, false));
    EXPECT_NE(document.find("<ECU protocol=\"UDS\"/>"), std::string::npos);
}

TEST(Factory_CreateEmptyKwpDocument, WithTableHoldsTheKwpDefaultTable) {
    const std::string document = GetFactory().CreateEmptyKwpDocument(true);
    EXPECT_EQ(document, GetDataModelUtils().CreateXmlForEmptyEcu(ProtocolKwp, true));
    EXPECT_NE(document.find("<ECU protocol=\"KWP\">"), std::string::npos);
    EXPECT_NE(document.find("<MAP nrc=\"16\" text=\"General reject\"/>"), std::string::npos);
    EXPECT_NE(document.find("<MAP nrc=\"128\" text=\"Service not supported in active session\"/>"),
              std::string::npos);
    EXPECT_EQ(document.find("Vehicle speed to low"), std::string::npos);
}

TEST(Factory_CreateEmptyDocuments, FollowTheProtocolAndTheFlag) {
    EXPECT_NE(GetFactory().CreateEmptyKwpDocument(false).find("<ECU protocol=\"KWP\"/>"), std::string::npos);
    const std::string uds = GetFactory().CreateEmptyUdsDocument(true);
    EXPECT_NE(uds.find("<ECU protocol=\"UDS\">"), std::string::npos);
    EXPECT_NE(uds.find("Vehicle speed to low"), std::string::npos);
}

}  // namespace
}  // namespace Korvel
