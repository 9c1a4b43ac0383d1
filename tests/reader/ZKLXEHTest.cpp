#include "reader/handlers/ZKLXEH.h"
#include "reader/handlers/ZKLXEHParameter.h"
#include "reader/handlers/ZKLXEHRequest.h"

#include "ReaderFixture.h"
#include "model/ZModelBuilder.h"
#include "model/ZNotSupportedItem.h"
#include "model/ZRequest.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

using namespace Korvel;
using ReaderTest::FakeAttributes;

namespace {

class ProbeHandler : public ZKLXEH {
public:
    explicit ProbeHandler(const ZKLXEHContext& context)
        : ZKLXEH(u"PROBE", KLTag::Map, ReaderMessages::kMapTexts, context) {}
    void StartElement(const XMLCh*, xercesc::AttributeList&) override { CountOpen(); }
    void EndElement(const XMLCh*) override { CountClose(); }
    using ZKLXEH::AddElement;
    using ZKLXEH::AddEmptyElement;
    using ZKLXEH::TopAs;
    using ZKLXEH::TopItem;
};

// The eight attributes of a parameter, values in the order id, bitPos, bitLen, value, type, unit,
// semantics, convId.
void AddParameterAttributes(FakeAttributes& attributes, const std::array<const XMLCh*, 8>& values) {
    static const XMLCh* const kNames[8] = {u"id",   u"bitPos", u"bitLen",    u"value",
                                           u"type", u"unit",   u"semantics", u"convId"};
    for (std::size_t index = 0; index < values.size(); ++index) {
        attributes.Add(kNames[index], values[index]);
    }
}

class ZKLXEHTest : public ::testing::Test {
protected:
    ReaderTest::HandlerSetup setup;
    std::shared_ptr<ReportCollector>& sink = setup.sink;
    ZModelBuilder& builder = setup.builder;
    ZKLXmlElementStack& stack = setup.stack;
    ZKLXEHContext& context = setup.context;
};

}  // namespace

TEST_F(ZKLXEHTest, CurrentElement_IsNullBeforeTheFirstRecord) {
    ProbeHandler handler(context);
    EXPECT_EQ(handler.GetCurrentElement(), nullptr);
}

TEST_F(ZKLXEHTest, AddElement_MakesARecordNamedByTheTagThatRefersToTheItem) {
    ProbeHandler handler(context);
    handler.AddElement(u"PROBE", builder.Ecu());
    auto* record = dynamic_cast<ZKLXmlElement*>(handler.GetCurrentElement().get());
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->GetName(), "PROBE");
    EXPECT_EQ(record->GetModelItem(), static_cast<ZModelItem*>(builder.Ecu()));
}

// A record holds the item alone; the handler finds it on top with its own type, and a record
// of another item, or an empty one, gives none.
TEST_F(ZKLXEHTest, TopAs_FindsTheItemOnTopWithItsOwnTypeOnly) {
    ZInstance* instance = builder.AddInstance("I");
    ZConversion* conversion = builder.AddConversion("C", 1.0, 0.0);
    ASSERT_NE(instance, nullptr);
    ASSERT_NE(conversion, nullptr);
    ProbeHandler handler(context);
    EXPECT_EQ(handler.TopItem(), nullptr);
    EXPECT_EQ(handler.TopAs<ZInstance>(), nullptr);
    // Pushes the handler's last record and gives what the handler then finds on top.
    const auto onTop = [&]() {
        stack.Push(handler.GetCurrentElement());
        const std::pair<ZInstance*, ZConversion*> found{handler.TopAs<ZInstance>(),
                                                        handler.TopAs<ZConversion>()};
        stack.Pop();
        return found;
    };
    using Found = std::pair<ZInstance*, ZConversion*>;

    handler.AddElement(u"PROBE", instance);
    EXPECT_EQ(onTop(), Found(instance, nullptr));
    // The record is reused for the next element of its name.
    handler.AddElement(u"PROBE", conversion);
    EXPECT_EQ(onTop(), Found(nullptr, conversion));
    handler.AddEmptyElement(u"PROBE");
    EXPECT_EQ(onTop(), Found(nullptr, nullptr));
    stack.Push(handler.GetCurrentElement());
    EXPECT_EQ(handler.TopItem(), ZNotSupportedItem::GetInstance());
    stack.Pop();
}

// A parameter goes into the message of the record on top, in the builder's arena, with its
// texts narrowed as they are; the same id again is refused.
TEST_F(ZKLXEHTest, Parameter_IsAddedToTheMessageOnTopInTheArena) {
    FakeAttributes attributes;
    AddParameterAttributes(attributes,
                           {u"Temp", u"8", u"16", u"0x0A", u"unsigned", u"\u00B0C", u"XID", u"Conv_\u03A9"});
    ProbeHandler probe(context);
    ZKLXEHParameter parameters(context);
    ZInstance* instance = builder.AddInstance("I");
    ZMessage* request = builder.CreateMessage(*instance, MessageKindRequest);
    probe.AddElement(u"PROBE", request);
    stack.Push(probe.GetCurrentElement());
    parameters.StartElement(u"PARAMETER", attributes);
    parameters.EndElement(u"PARAMETER");
    parameters.StartElement(u"PARAMETER", attributes);
    parameters.EndElement(u"PARAMETER");
    stack.Pop();
    ASSERT_EQ(request->GetCount(), 1u);
    const auto* param = static_cast<const ZParam*>(request->GetParam("Temp"));
    ASSERT_NE(param, nullptr);
    EXPECT_EQ(param->Arena(), builder.Ecu()->ModelArena());
    EXPECT_EQ(param->GetBitPos(), 8u);
    EXPECT_EQ(param->GetBitLength(), 16u);
    EXPECT_STREQ(param->GetValue(), "0x0A");
    EXPECT_STREQ(param->GetDataTypeName(), "unsigned");
    EXPECT_STREQ(param->GetUnit(),
                 "\xC2\xB0"
                 "C");
    EXPECT_STREQ(param->GetSemantics(), "XID");
    EXPECT_STREQ(param->GetConvId(), "Conv_\xCE\xA9");
    std::size_t refusals = 0;
    for (const auto& message : sink->GetMessages()) {
        refusals +=
            message.text.find("Temp") != std::string::npos && message.level == ReportLevelError ? 1 : 0;
    }
    EXPECT_EQ(refusals, 1u);
}

// A parameter whose record on top is no message is refused with the fatal text.
TEST_F(ZKLXEHTest, Parameter_OnAnItemThatIsNoMessageIsRefused) {
    FakeAttributes attributes;
    AddParameterAttributes(attributes, {u"p", u"0", u"8", u"1", u"unsigned", u"", u"", u""});
    ProbeHandler probe(context);
    ZKLXEHParameter parameters(context);
    probe.AddElement(u"PROBE", builder.AddInstance("I"));
    stack.Push(probe.GetCurrentElement());
    parameters.StartElement(u"PARAMETER", attributes);
    stack.Pop();
    EXPECT_EQ(sink->GetMessages()[1].level, ReportLevelFatal);
    EXPECT_EQ(sink->GetMessages()[1].text, ReaderMessages::kParameterNoMessage);
}

// The request of the instance on top is made by the builder, and its parameters follow.
TEST_F(ZKLXEHTest, Request_IsMadeForTheInstanceOnTop) {
    ZInstance* instance = builder.AddInstance("I");
    ASSERT_NE(instance, nullptr);
    ProbeHandler probe(context);
    ZKLXEHRequest requests(context);
    ZKLXEHParameter parameters(context);
    FakeAttributes none;
    FakeAttributes attributes;
    AddParameterAttributes(attributes, {u"p", u"0", u"8", u"1", u"unsigned", u"", u"", u""});

    probe.AddElement(u"PROBE", instance);
    stack.Push(probe.GetCurrentElement());
    requests.StartElement(u"REQUEST", none);
    stack.Push(requests.GetCurrentElement());
    parameters.StartElement(u"PARAMETER", attributes);
    parameters.EndElement(u"PARAMETER");
    ASSERT_NE(instance->GetRequest(), nullptr);
    EXPECT_EQ(static_cast<ZRequest*>(instance->GetRequest())->Arena(), builder.Ecu()->ModelArena());
    ASSERT_EQ(instance->GetRequest()->GetCount(), 1u);
    EXPECT_STREQ(instance->GetRequest()->GetParam("p")->GetValue(), "1");
}

TEST_F(ZKLXEHTest, HasCurrentElement_AnswersLikeTheRecordItself) {
    ProbeHandler handler(context);
    EXPECT_FALSE(handler.HasCurrentElement());
    handler.AddEmptyElement(u"PROBE");
    EXPECT_TRUE(handler.HasCurrentElement());
    EXPECT_NE(handler.GetCurrentElement(), nullptr);
}

TEST_F(ZKLXEHTest, AddEmptyElement_WarnsAndRefersToTheNotSupportedItem) {
    ProbeHandler handler(context);
    handler.AddEmptyElement(u"PROBE");
    ASSERT_EQ(sink->GetMessages().size(), 1u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelWarn);
    EXPECT_EQ(
        sink->GetMessages()[0].text,
        "WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item could be "
        "created for the current 'PROBE' XML element!");
    auto* record = dynamic_cast<ZKLXmlElement*>(handler.GetCurrentElement().get());
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetModelItem(), ZNotSupportedItem::GetInstance());
    EXPECT_FALSE(record->GetModelItem()->IsSupported());
}

TEST_F(ZKLXEHTest, CurrentElement_StaysTheLastRecordAfterItsElementClosed) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    handler.StartElement(u"PROBE", attributes);
    handler.AddEmptyElement(u"PROBE");
    const std::shared_ptr<IXmlElement> first = handler.GetCurrentElement();
    handler.EndElement(u"PROBE");
    EXPECT_EQ(handler.GetCurrentElement(), first);
}

TEST_F(ZKLXEHTest, Counts_DifferentOpenAndCloseCountsAreReportedAtErrorLevel) {
    ProbeHandler handler(context);
    handler.EndElement(u"PROBE");
    ASSERT_EQ(sink->GetMessages().size(), 2u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelDebug);
    EXPECT_EQ(sink->GetMessages()[0].text, "CloseTag >> MAP element");
    EXPECT_EQ(sink->GetMessages()[1].level, ReportLevelError);
    EXPECT_EQ(sink->GetMessages()[1].text,
              "CloseTag >> MAP element: Different count of open and close tags found!");
    EXPECT_EQ(handler.GetCounts().open, 0u);
    EXPECT_EQ(handler.GetCounts().close, 1u);
}

TEST_F(ZKLXEHTest, Counts_AreSharedThroughTheContext) {
    TagCounts counts;
    context.tagCounts = &counts;
    ProbeHandler handler(context);
    FakeAttributes attributes;
    handler.StartElement(u"PROBE", attributes);
    EXPECT_EQ(counts[KLTag::Map].open, 1u);
    EXPECT_EQ(counts[KLTag::Ecu].open, 0u);
}

TEST_F(ZKLXEHTest, TryGetByteValue_SkipsLeadingBlanks) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"nrc", u"  12  ");
    uint8_t value = 0;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 0, value));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(sink->GetMessages().empty());
}

TEST_F(ZKLXEHTest, TryGetByteValue_NegativeIsReportedAsTooSmallAndLeavesTheByte) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"a", u"x");
    attributes.Add(u"nrc", u"-1");
    uint8_t value = 7;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 1, value));
    EXPECT_EQ(value, 7);
    ASSERT_EQ(sink->GetMessages().size(), 1u);
    EXPECT_EQ(sink->GetMessages()[0].level, ReportLevelError);
    EXPECT_EQ(
        sink->GetMessages()[0].text,
        "TryGetValue >> Couldn't convert attribute #1 to BYTE, because the the configured value ('-1') is to "
        "small!");
}

TEST_F(ZKLXEHTest, TryGetByteValue_256IsReportedAsTooBig) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"nrc", u"256");
    uint8_t value = 7;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 0, value));
    EXPECT_EQ(value, 7);
    ASSERT_EQ(sink->GetMessages().size(), 1u);
    EXPECT_EQ(sink->GetMessages()[0].text,
              "TryGetValue >> Couldn't convert attribute #0 to BYTE, because the the configured value "
              "('256') is to "
              "big!");
}

TEST_F(ZKLXEHTest, TryGetByteValue_AbsentOrEmptyValueIsFalse) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"nrc", u"");
    uint8_t value = 7;
    EXPECT_FALSE(handler.TryGetByteValue(attributes, 0, value));
    EXPECT_FALSE(handler.TryGetByteValue(attributes, 5, value));
    EXPECT_EQ(value, 7);
}

TEST_F(ZKLXEHTest, TryGetByteValue_ReadsLikeAtol) {
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"a", u"0x7F");
    attributes.Add(u"b", u"+255abc");
    attributes.Add(u"c", u"abc");
    uint8_t value = 9;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 0, value));
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 1, value));
    EXPECT_EQ(value, 255);
    value = 9;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 2, value));
    EXPECT_EQ(value, 0);
}

TEST_F(ZKLXEHTest, NoSink_EveryHelperRunsWithoutReporting) {
    context.reporting.reset();
    ProbeHandler handler(context);
    FakeAttributes attributes;
    attributes.Add(u"nrc", u"300");
    uint8_t value = 0;
    EXPECT_TRUE(handler.TryGetByteValue(attributes, 0, value));
    handler.AddEmptyElement(u"PROBE");
    handler.EndElement(u"PROBE");
    EXPECT_NE(handler.GetCurrentElement(), nullptr);
}
