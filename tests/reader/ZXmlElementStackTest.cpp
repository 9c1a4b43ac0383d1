#include "reader/ZKLXmlElementStack.h"
#include "reader/ZKLXmlParserUtilsFactory.h"

#include "model/ZNotSupportedItem.h"

#include <gtest/gtest.h>

using namespace Korvel;

TEST(ZXmlElementStack_PushPop, TopIsTheLastPushedRecord) {
    ZXmlElementStack stack;
    EXPECT_TRUE(stack.IsEmpty());
    auto first = std::make_shared<ZXmlElement>("first");
    auto second = std::make_shared<ZXmlElement>("second");
    stack.Push(first);
    stack.Push(second);
    EXPECT_FALSE(stack.IsEmpty());
    EXPECT_EQ(stack.Top(), second.get());
    stack.Pop();
    EXPECT_EQ(stack.Top(), first.get());
    stack.Pop();
    EXPECT_TRUE(stack.IsEmpty());
}

TEST(ZXmlElementStack_Empty, TopIsNullAndPopDoesNothing) {
    ZXmlElementStack stack;
    EXPECT_EQ(stack.Top(), nullptr);
    stack.Pop();
    EXPECT_TRUE(stack.IsEmpty());
    EXPECT_EQ(stack.GetSize(), 0u);
}

TEST(ZXmlElementStack_Ownership, KeepsARecordAliveWhileItIsOnTheStack) {
    ZXmlElementStack stack;
    std::weak_ptr<ZXmlElement> watch;
    {
        auto record = std::make_shared<ZXmlElement>("open");
        watch = record;
        stack.Push(record);
    }
    EXPECT_FALSE(watch.expired());
    stack.Pop();
    EXPECT_TRUE(watch.expired());
}

TEST(ZKLXmlElementStack_TopKLElement, IsNullForOtherRecordsAndForAnEmptyStack) {
    ZKLXmlElementStack stack;
    EXPECT_EQ(stack.TopKLElement(), nullptr);
    stack.Push(std::make_shared<ZXmlElement>("plain"));
    EXPECT_EQ(stack.TopKLElement(), nullptr);
    auto record = std::make_shared<ZKLXmlElement>("ECU");
    stack.Push(record);
    EXPECT_EQ(stack.TopKLElement(), record.get());
}

TEST(ZKLXmlElement_Construction, AnEmptyRecordRefersToTheSharedNotSupportedItem) {
    ZKLXmlElement empty("MAP");
    EXPECT_STREQ(empty.GetName(), "MAP");
    EXPECT_STREQ(empty.GetValue(), "");
    EXPECT_EQ(empty.GetModelItem(), ZNotSupportedItem::GetInstance());
    ZKLXmlElement nullItem("MAP", nullptr);
    EXPECT_EQ(nullItem.GetModelItem(), ZNotSupportedItem::GetInstance());
    empty.SetValue("v");
    empty.SetName(nullptr);
    EXPECT_STREQ(empty.GetValue(), "v");
    EXPECT_STREQ(empty.GetName(), "");
}

TEST(ZKLXmlParserUtilsFactory_Stack, MakesTheReadersStackAndDestroysIt) {
    ZKLXmlParserUtilsFactory factory;
    IXmlElementStack* stack = factory.CreateElementStack();
    EXPECT_NE(dynamic_cast<ZKLXmlElementStack*>(stack), nullptr);
    factory.DestroyElementStack(stack);
    EXPECT_EQ(stack, nullptr);
}
