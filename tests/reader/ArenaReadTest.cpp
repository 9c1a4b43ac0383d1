// A read builds its model in the arena of the ECU it returns (model/ZModelArena.h); the
// caller's code that runs during a read builds on the heap as always.
#include "reader/ZKLReaderImpl.h"

#include "model/ZEcu.h"
#include "model/ZModelArena.h"

#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Korvel;

namespace {

std::string SampleDocument() {
    std::ifstream in(std::string(ZEKL_EXAMPLES_DIR) + "/uds_ecu.xml", std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The arena of a model that the reader returned (the reader's ECU is the library's own).
const ZModelArena& ArenaOf(IEcu& ecu) {
    const ZModelArena* arena = static_cast<ZEcu&>(ecu).ModelArena();
    EXPECT_NE(arena, nullptr);
    static const ZModelArena none;
    return arena != nullptr ? *arena : none;
}

// A sink of the caller that builds an item of its own for each message, which it keeps beyond
// the model.
class BuildingSink : public ReportCollector {
public:
    BuildingSink() : ReportCollector(ReportLevelDebug) {}
    void Report(int32_t level, const std::string& message) override {
        kept.push_back(GetFactory().CreateInstance());
        kept.back()->SetId("built by the caller's sink, with an id longer than any short text");
        ReportCollector::Report(level, message);
    }
    std::vector<std::unique_ptr<IInstance>> kept;
};

const char kFaultyDocument[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<ECU protocol=\"UDS\">\n"
    " <INSTANCE id=\"Read\">\n"
    "  <REQUEST>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x22\" "
    "semantics=\"SID CONST\" convId=\"\"/>\n"
    "   <PARAMETER id=\"NoLength\" bitPos=\"8\" type=\"unsigned\" unit=\"\" value=\"\" semantics=\"\" "
    "convId=\"\"/>\n"
    "   <UNKNOWN/>\n"
    "  </REQUEST>\n"
    " </INSTANCE>\n"
    "</ECU>\n";

}  // namespace

TEST(ZKLReaderImpl_Arena, ARead_BuildsTheModelInItsOwnMemory) {
    const std::string text = SampleDocument();
    ASSERT_FALSE(text.empty());
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(text, "");
    ASSERT_NE(ecu, nullptr);
    // Every parameter, message and instance is in it: more than the document's size.
    EXPECT_GT(ArenaOf(*ecu).UsedBytes(), text.size());
    const auto* instance =
        static_cast<const ZModelItem*>(static_cast<ZEcu&>(*ecu).GetInstanceContainer()->GetInstance(0u));
    EXPECT_EQ(instance->Arena(), &ArenaOf(*ecu));
}

TEST(ZKLReaderImpl_Arena, AFileRead_BuildsTheModelInItsOwnMemory) {
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu =
        reader.ReadFile((std::string(ZEKL_EXAMPLES_DIR) + "/kwp_ecu.xml").c_str(), "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_GT(ArenaOf(*ecu).UsedBytes(), 0u);
}

TEST(ZKLReaderImpl_Arena, WhatTheCallersSinkBuilds_IsOnTheHeapAndOutlivesTheModel) {
    BuildingSink sink;
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(kFaultyDocument, "", sink);
    ASSERT_NE(ecu, nullptr);
    ASSERT_FALSE(sink.kept.empty());
    for (const auto& instance : sink.kept) {
        EXPECT_EQ(dynamic_cast<ZModelItem&>(*instance).Arena(), nullptr);
    }
    // What the sink built outlives the model.
    ecu.reset();
    for (const auto& instance : sink.kept) {
        EXPECT_STREQ(instance->GetId(), "built by the caller's sink, with an id longer than any short text");
    }
}

TEST(ZKLReaderImpl_Arena, AReadModel_CanBeChangedCopiedAndWrittenAfterTheRead) {
    const std::string text = SampleDocument();
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(text, "");
    ASSERT_NE(ecu, nullptr);
    IInstanceContainer* instances = ecu->GetInstanceContainer();
    ASSERT_GT(instances->GetCount(), 1u);

    // A copy of a read instance, made after the read, lives on the heap and outlives the model.
    std::unique_ptr<IInstance> copy = GetFactory().CreateInstance();
    IInstance* first = instances->GetInstance(0u);
    copy->SetId(first->GetId());
    copy->SetRequest(*first->GetRequest());
    const std::string firstId = first->GetId();

    // Replace, change and add parameters of read messages; empty a container and fill it again.
    IRequest* request = first->GetRequest();
    const uint32_t count = request->GetCount();
    request->AddParam("Added", 64, 8, "0x01", "unsigned", "", "", "");
    request->GetParam(0)->SetId("Renamed");
    request->ReindexParams();
    EXPECT_NE(request->GetParam("Renamed"), nullptr);
    EXPECT_EQ(request->GetCount(), count + 1);
    std::unique_ptr<IInstanceContainer> saved = GetFactory().CreateInstanceContainer();
    for (uint32_t index = 0; index < instances->GetCount(); ++index) {
        saved->AddInstance(*instances->GetInstance(index));
    }
    instances->Clear();
    EXPECT_EQ(instances->GetCount(), 0u);
    ecu->SetInstanceContainer(*saved);

    std::string written;
    ASSERT_GT(GetKLWriter().WriteToString(*ecu, written, "utf-8"), 0u);
    EXPECT_NE(written.find("id=\"Renamed\""), std::string::npos);
    EXPECT_NE(written.find("id=\"Added\""), std::string::npos);

    ecu.reset();
    EXPECT_EQ(copy->GetId(), firstId);
    EXPECT_EQ(copy->GetRequest()->GetCount(), count);
}

TEST(ZKLReaderImpl_Arena, AReadOfALargeDocument_TakesItsMemoryInFewChunks) {
    // A document of some 2.5 MB: its model takes chunks of the largest size, not thousands of
    // small ones.
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"UDS\">\n";
    for (int instance = 0; instance < 2000; ++instance) {
        text += " <INSTANCE id=\"Instance_" + std::to_string(instance) + "\">\n  <REQUEST>\n";
        for (int param = 0; param < 10; ++param) {
            text += "   <PARAMETER id=\"Param_" + std::to_string(param) + "\" bitPos=\"" +
                    std::to_string(param * 8) +
                    "\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" semantics=\"\" convId=\"\"/>\n";
        }
        text += "  </REQUEST>\n </INSTANCE>\n";
    }
    text += "</ECU>\n";
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(text, "");
    ASSERT_NE(ecu, nullptr);
    ASSERT_EQ(ecu->GetInstanceContainer()->GetCount(), 2000u);
    const ZModelArena& arena = ArenaOf(*ecu);
    EXPECT_GT(arena.UsedBytes(), text.size());
    EXPECT_LE(arena.ChunkCount(), arena.ChunkBytes() / ZModelArena::kLargestChunk + 2);
    EXPECT_LE(arena.ChunkBytes(), arena.UsedBytes() + ZModelArena::kLargestChunk);
}

TEST(ZKLReaderImpl_Arena, MessagesThatLaterElementsReplace_DoNotPileUp) {
    // One instance whose request is given 20,000 times: each replaces the one before, and the
    // memory of the replaced one serves the next.
    std::string text =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ECU protocol=\"UDS\">\n <INSTANCE id=\"Once\">\n";
    for (int request = 0; request < 20000; ++request) {
        text +=
            "  <REQUEST><PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" "
            "value=\"0x22\" semantics=\"SID CONST\" convId=\"\"/></REQUEST>\n";
    }
    text += " </INSTANCE>\n</ECU>\n";
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(text, "");
    ASSERT_NE(ecu, nullptr);
    ASSERT_EQ(ecu->GetInstanceContainer()->GetCount(), 1u);
    EXPECT_EQ(ecu->GetInstanceContainer()->GetInstance(0u)->GetRequest()->GetCount(), 1u);
    EXPECT_LT(ArenaOf(*ecu).UsedBytes(), std::size_t{64} << 10);
}

// A small document's model takes a page or a few, not a chunk sized for large documents: the
// arena holds at most 16 KiB more than the model uses.
TEST(ZKLReaderImpl_Arena, ASmallDocument_TakesLittleMemory) {
    ZKLReaderImpl reader;
    std::unique_ptr<IEcu> ecu = reader.ReadText(kFaultyDocument, "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(ArenaOf(*ecu).ChunkBytes(), std::size_t{4} << 10);
    // The empty UDS document with its NRC table: some 2 KB.
    const std::string text = GetFactory().CreateEmptyUdsDocument(true);
    ASSERT_GT(text.size(), 1500u);
    ecu = reader.ReadText(text, "");
    ASSERT_NE(ecu, nullptr);
    EXPECT_EQ(ecu->GetNrcContainer()->GetCount(), 40u);
    EXPECT_LE(ArenaOf(*ecu).ChunkBytes(), ArenaOf(*ecu).UsedBytes() + (std::size_t{16} << 10));
}
