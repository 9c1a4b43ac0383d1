#include "reader/handlers/ZKLXEH.h"
#include "reader/handlers/ZKLXEHParameter.h"
#include "reader/handlers/ZKLXEHRequest.h"

#include "ReaderFixture.h"
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
    using ZKLXEH::AddConversionElement;
    using ZKLXEH::AddElement;
    using ZKLXEH::AddEmptyElement;
    using ZKLXEH::AddInstanceElement;
    using ZKLXEH::AddMessageElement;
    using ZKLXEH::TopConversion;
    using ZKLXEH::TopInstance;
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
    ZKLXEHTest() {
        context.reporting = sink;
        context.elementStack = &stack;
    }
    std::shared_ptr<ReportCollector> sink = std::make_shared<ReportCollector>(ReportLevelDebug);
    ZKLXmlElementStack stack;
    ZKLXEHContext context;
};

}  // namespace

TEST_F(ZKLXEHTest, CurrentElement_IsNullBeforeTheFirstRecord) {
    ProbeHandler handler(context);
    EXPECT_EQ(handler.GetCurrentElement(), nullptr);
}

TEST_F(ZKLXEHTest, AddElement_MakesARecordNamedByTheTagThatRefersToTheItem) {
    ProbeHandler handler(context);
    auto ecu = GetFactory().CreateEcu();
    handler.AddElement(u"PROBE", ecu.get());
    auto* record = dynamic_cast<ZKLXmlElement*>(handler.GetCurrentElement().get());
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->GetName(), "PROBE");
    EXPECT_EQ(record->GetModelItem(), static_cast<IModelItem*>(ecu.get()));
}

// Instance and conversion records carry their typed item; a plain record holding the same item
// gives the same answer through a cast, and a record of another item gives none.
TEST_F(ZKLXEHTest, TopInstanceAndConversion_AreFoundThroughTypedAndPlainRecordsAlike) {
    auto ecu = GetFactory().CreateEcu();
    IInstance* instance =
        ecu->GetInstanceContainer()->GetInstance(ecu->GetInstanceContainer()->AddInstance("I"));
    IConversionContainer* conversions = ecu->GetConversionContainer();
    IConversion* conversion = conversions->GetConversion(
        conversions->AddConversion("C", static_cast<uint32_t>(ConversionKind::Formula), 1.0, 0.0));
    ASSERT_NE(instance, nullptr);
    ASSERT_NE(conversion, nullptr);
    ProbeHandler handler(context);
    EXPECT_EQ(handler.TopInstance(), nullptr);
    EXPECT_EQ(handler.TopConversion(), nullptr);
    // Pushes the handler's last record and gives what the handler then finds on top.
    const auto onTop = [&]() {
        stack.Push(handler.GetCurrentElement());
        const std::pair<IInstance*, IConversion*> found{handler.TopInstance(), handler.TopConversion()};
        stack.Pop();
        return found;
    };
    using Found = std::pair<IInstance*, IConversion*>;

    handler.AddInstanceElement(u"PROBE", instance);
    EXPECT_EQ(onTop(), Found(instance, nullptr));
    // The record is reused for the next element of its name and forgets the typed item.
    handler.AddConversionElement(u"PROBE", conversion);
    EXPECT_EQ(onTop(), Found(nullptr, conversion));
    handler.AddElement(u"PROBE", instance);
    EXPECT_EQ(onTop(), Found(instance, nullptr));
    handler.AddElement(u"PROBE", conversion);
    EXPECT_EQ(onTop(), Found(nullptr, conversion));
    handler.AddEmptyElement(u"PROBE");
    EXPECT_EQ(onTop(), Found(nullptr, nullptr));
}

// A parameter goes into the message of the record on top whether the record has the message
// with its own type (the direct path) or only through its interface, with the same texts.
TEST_F(ZKLXEHTest, Parameter_IsAddedAlikeThroughTheTypedAndTheInterfaceRecord) {
    FakeAttributes attributes;
    AddParameterAttributes(attributes,
                           {u"Temp", u"8", u"16", u"0x0A", u"unsigned", u"\u00B0C", u"XID", u"Conv_\u03A9"});
    ProbeHandler probe(context);
    ZKLXEHParameter parameters(context);
    ZRequest typed;
    ZRequest plain;
    for (ZRequest* request : {&typed, &plain}) {
        probe.AddMessageElement(u"PROBE", request, request == &typed ? request : nullptr);
        stack.Push(probe.GetCurrentElement());
        parameters.StartElement(u"PARAMETER", attributes);
        parameters.EndElement(u"PARAMETER");
        // The same id again is refused on both paths.
        parameters.StartElement(u"PARAMETER", attributes);
        parameters.EndElement(u"PARAMETER");
        stack.Pop();
        ASSERT_EQ(request->GetCount(), 1u);
        const IParam* param = request->GetParam("Temp");
        ASSERT_NE(param, nullptr);
        EXPECT_EQ(param->GetBitPos(), 8u);
        EXPECT_EQ(param->GetBitLength(), 16u);
        EXPECT_STREQ(param->GetValue(), "0x0A");
        EXPECT_STREQ(param->GetDataTypeName(), "unsigned");
        EXPECT_STREQ(param->GetUnit(),
                     "\xC2\xB0"
                     "C");
        EXPECT_STREQ(param->GetSemantics(), "XID");
        EXPECT_STREQ(param->GetConvId(), "Conv_\xCE\xA9");
    }
    size_t refusals = 0;
    for (const auto& message : sink->GetMessages()) {
        refusals +=
            message.text.find("Temp") != std::string::npos && message.level == ReportLevelError ? 1 : 0;
    }
    EXPECT_EQ(refusals, 2u);
}

// An instance record without the model's own type (as another implementation would give) still
// gets its request, through the interface, and the request's parameters go in the same way.
TEST_F(ZKLXEHTest, Request_IsMadeThroughTheInterfaceForAPlainInstanceRecord) {
    auto ecu = GetFactory().CreateEcu();
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    IInstance* instance = instances->GetInstance(instances->AddInstance("I"));
    ASSERT_NE(instance, nullptr);
    ProbeHandler probe(context);
    ZKLXEHRequest requests(context);
    ZKLXEHParameter parameters(context);
    FakeAttributes none;
    FakeAttributes attributes;
    AddParameterAttributes(attributes, {u"p", u"0", u"8", u"1", u"unsigned", u"", u"", u""});

    probe.AddInstanceElement(u"PROBE", instance);
    stack.Push(probe.GetCurrentElement());
    requests.StartElement(u"REQUEST", none);
    stack.Push(requests.GetCurrentElement());
    parameters.StartElement(u"PARAMETER", attributes);
    parameters.EndElement(u"PARAMETER");
    ASSERT_NE(instance->GetRequest(), nullptr);
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
