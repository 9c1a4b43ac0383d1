#include "model/ZModelMemory.h"

#include "model/ZEcu.h"
#include "model/ZInstance.h"
#include "model/ZMessage.h"
#include "model/ZParam.h"
#include "platform/PageMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define ZEKL_TEST_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEKL_TEST_ADDRESS_SANITIZER 1
#endif
#endif

namespace Korvel {
namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;

bool Aligned(const void* block) {
    return reinterpret_cast<std::uintptr_t>(block) % kModelAlignment == 0;
}

TEST(ZModelMemory, WithoutAScopeBlocksComeFromTheHeap) {
    ASSERT_EQ(ZModelMemory::Current(), nullptr);
    ZModelMemory memory(0);
    void* block = ModelAllocate(100);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(Aligned(block));
    std::memset(block, 'x', 100);
    ModelFree(block);
    EXPECT_EQ(memory.UsedBytes(), 0u);
    EXPECT_EQ(memory.ChunkCount(), 0u);
    ModelFree(nullptr);
}

TEST(ZModelMemory, InAScopeBlocksComeFromTheChunksOneAfterTheOther) {
    ZModelMemory memory(0);
    std::vector<char*> blocks;
    {
        const ZModelMemory::Scope scope(&memory);
        EXPECT_EQ(ZModelMemory::Current(), &memory);
        for (std::size_t size = 1; size <= 300; ++size) {
            auto* block = static_cast<char*>(ModelAllocate(size));
            ASSERT_TRUE(Aligned(block)) << size;
            std::memset(block, static_cast<int>(size & 0x7f), size);
            blocks.push_back(block);
        }
    }
    EXPECT_EQ(ZModelMemory::Current(), nullptr);
    EXPECT_EQ(memory.ChunkCount(), 1u);
    EXPECT_EQ(memory.ChunkBytes(), ZModelMemory::kSmallChunk);
    // Each block holds its size rounded up to 8 bytes, plus an 8-byte header.
    std::size_t expected = 0;
    for (std::size_t size = 1; size <= 300; ++size) {
        expected += 8 + (size + 7) / 8 * 8;
    }
    EXPECT_EQ(memory.UsedBytes(), expected);
    // No block overlaps the next: each still holds what was written into it.
    for (std::size_t size = 1; size <= 300; ++size) {
        const char* block = blocks[size - 1];
        for (std::size_t at = 0; at < size; ++at) {
            ASSERT_EQ(block[at], static_cast<char>(size & 0x7f)) << size;
        }
    }
    for (char* block : blocks) {
        ModelFree(block);
    }
    // Blocks freed after the read are not reused.
    EXPECT_EQ(memory.UsedBytes(), expected);
    const ZModelMemory::Scope scope(&memory);
    void* block = ModelAllocate(100);
    EXPECT_EQ(memory.UsedBytes(), expected + 8 + 104);
    EXPECT_TRUE(std::find(blocks.begin(), blocks.end(), block) == blocks.end());
}

TEST(ZModelMemory, BlocksFreedDuringTheReadServeTheNextOfTheirSize) {
    ZModelMemory memory(0);
    const ZModelMemory::Scope scope(&memory);
    void* first = ModelAllocate(30);
    void* second = ModelAllocate(32);
    const std::size_t used = memory.UsedBytes();
    ModelFree(first);
    ModelFree(second);
    // Last freed, first reused; any size that rounds to the same 8 bytes fits.
    void* again = ModelAllocate(25);
    EXPECT_EQ(again, second);
    std::memset(again, 'a', 25);
    EXPECT_EQ(ModelAllocate(32), first);
    EXPECT_EQ(memory.UsedBytes(), used);
    // Other sizes are not served from those blocks.
    void* other = ModelAllocate(40);
    EXPECT_NE(other, first);
    EXPECT_GT(memory.UsedBytes(), used);
}

TEST(ZModelMemory, OnlyBlocksOfTheNewestChunkUpToALimitAreReused) {
    ZModelMemory memory(0);
    const ZModelMemory::Scope scope(&memory);
    void* old = ModelAllocate(64);
    // Fill the first chunk so that the next block opens a second one.
    while (memory.ChunkCount() == 1) {
        ModelAllocate(ZModelMemory::kLargestBlock);
    }
    const std::size_t used = memory.UsedBytes();
    ModelFree(old);
    EXPECT_NE(ModelAllocate(64), old);
    void* large = ModelAllocate(ZModelMemory::kLargestRecycled + 8);
    ModelFree(large);
    EXPECT_NE(ModelAllocate(ZModelMemory::kLargestRecycled + 8), large);
    void* empty = ModelAllocate(0);
    ModelFree(empty);
    EXPECT_NE(ModelAllocate(0), empty);
    EXPECT_GT(memory.UsedBytes(), used);
    // A block of another memory is never taken for one of this memory.
    ZModelMemory other(0);
    void* foreign = nullptr;
    {
        const ZModelMemory::Scope otherScope(&other);
        foreign = ModelAllocate(64);
    }
    EXPECT_FALSE(memory.Recycle(foreign, 64));
    ModelFree(foreign);
    EXPECT_NE(ModelAllocate(64), foreign);
}

TEST(ZModelMemory, ScopesNestAndANullScopePutsTheMemoryAside) {
    ZModelMemory outer(0);
    ZModelMemory inner(0);
    const ZModelMemory::Scope first(&outer);
    {
        const ZModelMemory::Scope second(&inner);
        EXPECT_EQ(ZModelMemory::Current(), &inner);
        {
            const ZModelMemory::Scope aside(nullptr);
            EXPECT_EQ(ZModelMemory::Current(), nullptr);
            void* heap = ModelAllocate(64);
            ModelFree(heap);
        }
        EXPECT_EQ(ZModelMemory::Current(), &inner);
        ModelFree(ModelAllocate(64));
    }
    EXPECT_EQ(ZModelMemory::Current(), &outer);
    EXPECT_EQ(outer.UsedBytes(), 0u);
    EXPECT_EQ(inner.UsedBytes(), 72u);
}

TEST(ZModelMemory, LargeBlocksComeFromTheHeapEvenInAScope) {
    ZModelMemory memory(0);
    const ZModelMemory::Scope scope(&memory);
    void* largest = ModelAllocate(ZModelMemory::kLargestBlock);
    const std::size_t used = memory.UsedBytes();
    EXPECT_EQ(used, 8 + ZModelMemory::kLargestBlock);
    void* larger = ModelAllocate(ZModelMemory::kLargestBlock + 1);
    EXPECT_EQ(memory.UsedBytes(), used);
    std::memset(larger, 0, ZModelMemory::kLargestBlock + 1);
    ModelFree(larger);
    ModelFree(largest);
}

TEST(ZModelMemory, TheFirstChunkHoldsWhatTheModelIsExpectedToTake) {
    const auto firstChunk = [](std::size_t expected) {
        ZModelMemory memory(expected);
        const ZModelMemory::Scope scope(&memory);
        ModelFree(ModelAllocate(8));
        return memory.ChunkBytes();
    };
    EXPECT_EQ(firstChunk(0), ZModelMemory::kSmallChunk);
    EXPECT_EQ(firstChunk(1000), ZModelMemory::kSmallChunk);
    EXPECT_EQ(firstChunk(300 * kKiB), 320 * kKiB);
    EXPECT_EQ(firstChunk(1 * kMiB), 1 * kMiB);
    // Three quarters of a huge page and more get a whole one; more than one is never a chunk.
    EXPECT_EQ(firstChunk(3 * kMiB / 2), Platform::kHugePageSize);
    EXPECT_EQ(firstChunk(1900 * kKiB), Platform::kHugePageSize);
    EXPECT_EQ(firstChunk(200 * kMiB), Platform::kHugePageSize);
}

TEST(ZModelMemory, PastTheEstimateChunksDoubleUpToAHugePage) {
    ZModelMemory memory(0);
    const ZModelMemory::Scope scope(&memory);
    std::size_t handedOut = 0;
    while (handedOut < 16 * kMiB) {
        ModelAllocate(1000);
        handedOut += 1008;
    }
    // 64 kB, 64 kB, 128 kB, ... 1 MB, then 2 MB chunks: not one chunk per 64 kB.
    EXPECT_LE(memory.ChunkCount(), 14u);
    EXPECT_GE(memory.ChunkBytes(), handedOut);
    EXPECT_LE(memory.ChunkBytes(), handedOut + Platform::kHugePageSize + ZModelMemory::kSmallChunk);
}

TEST(ZModelMemory, AModelOfTheEstimatedSizeTakesLittleMoreThanItUses) {
    ZModelMemory memory(10 * kMiB);
    const ZModelMemory::Scope scope(&memory);
    while (memory.UsedBytes() < 10 * kMiB - 200) {
        ModelAllocate(100);
    }
    EXPECT_LE(memory.ChunkBytes(), 10 * kMiB + ZModelMemory::kSmallChunk);
}

TEST(ZModelMemory, AllocatorListsMayGrowInsideAndOutsideTheScope) {
    ZModelMemory memory(0);
    ZModelVector<uint64_t> numbers;
    ZModelString text;
    {
        const ZModelMemory::Scope scope(&memory);
        for (uint64_t n = 0; n < 1000; ++n) {
            numbers.push_back(n);
        }
        text.assign(500, 't');
    }
    const std::size_t used = memory.UsedBytes();
    EXPECT_GT(used, 1000 * sizeof(uint64_t));
    // Growing after the read moves the list to the heap; the chunk's block stays behind.
    for (uint64_t n = 1000; n < 5000; ++n) {
        numbers.push_back(n);
    }
    text.append(5000, 'u');
    EXPECT_EQ(memory.UsedBytes(), used);
    for (uint64_t n = 0; n < 5000; ++n) {
        ASSERT_EQ(numbers[n], n);
    }
    EXPECT_EQ(text.size(), 5500u);
    EXPECT_EQ(text[499], 't');
    EXPECT_EQ(text[500], 'u');
}

TEST(ZModelMemory, AllocatorRefusesCountsBeyondTheAddressSpace) {
    ZModelAllocator<uint64_t> allocator;
    EXPECT_THROW(static_cast<void>(allocator.allocate(SIZE_MAX / 4)), std::bad_array_new_length);
}

TEST(ZModelMemory, ItemsBuiltInAScopeLiveInTheMemory) {
    ZModelMemory memory(0);
    std::unique_ptr<ZInstance> instance;
    {
        const ZModelMemory::Scope scope(&memory);
        instance = std::make_unique<ZInstance>("ReadDataByIdentifier_WithALongIdentifier");
        ZRequest* request = instance->CreateRequest();
        request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
        request->AddParam("DID", 8, 16, "0xF190", "unsigned", "", "XID CONST MOTOROLA", "");
    }
    const std::size_t used = memory.UsedBytes();
    EXPECT_GT(used, sizeof(ZInstance) + 2 * sizeof(ZParam));
    // Changes after the read take heap memory, and both kinds of memory mix in one item.
    IRequest* request = instance->GetRequest();
    request->AddParam("Extra", 24, 8, "", "unsigned", "", "", "");
    request->GetParam("SID")->SetValue("0x2E");
    EXPECT_EQ(memory.UsedBytes(), used);
    EXPECT_STREQ(instance->GetId(), "ReadDataByIdentifier_WithALongIdentifier");
    EXPECT_STREQ(request->GetParam("SID")->GetValue(), "0x2E");
    EXPECT_EQ(request->GetCount(), 3u);
    std::unique_ptr<IInstance> copy(new ZInstance(*instance));
    instance.reset();
    EXPECT_STREQ(copy->GetRequest()->GetParam("DID")->GetValue(), "0xF190");
}

TEST(ZModelMemory, AnEcuIsNeverInModelMemoryAndKeepsOneMemory) {
    ZModelMemory other(0);
    const ZModelMemory::Scope scope(&other);
    auto ecu = std::make_unique<ZEcu>();
    EXPECT_EQ(other.UsedBytes(), 0u);
    ZModelMemory& memory = ecu->ModelMemory(5 * kMiB);
    EXPECT_EQ(&ecu->ModelMemory(0), &memory);
    {
        const ZModelMemory::Scope reading(&memory);
        ecu->GetInstanceContainer()->AddInstance("Instance");
    }
    EXPECT_GT(memory.UsedBytes(), 0u);
    EXPECT_EQ(other.UsedBytes(), 0u);
    // The items go before the memory they live in.
    ecu.reset();
}

#ifdef ZEKL_TEST_ADDRESS_SANITIZER
TEST(ZModelMemoryDeathTest, TheSanitizerSeesAUseAfterFreeInAChunk) {
    const auto useAfterFree = [] {
        ZModelMemory memory(0);
        const ZModelMemory::Scope scope(&memory);
        auto* block = static_cast<volatile char*>(ModelAllocate(32));
        block[0] = 'x';
        ModelFree(const_cast<char*>(block));
        block[1] = 'y';
    };
    EXPECT_DEATH(useAfterFree(), "use-after-poison");
}

TEST(ZModelMemoryDeathTest, TheSanitizerSeesAnOverrunInAChunk) {
    const auto overrun = [] {
        ZModelMemory memory(0);
        const ZModelMemory::Scope scope(&memory);
        auto* block = static_cast<volatile char*>(ModelAllocate(24));
        ModelAllocate(24);
        block[24] = 'x';
    };
    EXPECT_DEATH(overrun(), "use-after-poison");
}
#endif

}  // namespace
}  // namespace Korvel
