#include "model/ZModelArena.h"

#include "model/ZEcu.h"
#include "model/ZInstance.h"
#include "model/ZMessage.h"
#include "model/ZModelBuilder.h"
#include "model/ZParam.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
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

std::size_t Rounded(std::size_t size) {
    return (size + 7) / 8 * 8;
}

TEST(ModelArena, ANewArenaHoldsNoMemory) {
    ZModelArena arena(50 * kMiB);
    EXPECT_EQ(arena.ChunkCount(), 0u);
    EXPECT_EQ(arena.ChunkBytes(), 0u);
    EXPECT_EQ(arena.UsedBytes(), 0u);
}

TEST(ModelArena, BlocksComeFromAChunkOneAfterTheOtherWithoutHeaders) {
    ZModelArena arena(64 * kKiB);
    std::vector<char*> blocks;
    std::size_t expected = 0;
    for (std::size_t size = 1; size <= 300; ++size) {
        auto* block = static_cast<char*>(arena.Allocate(size));
        ASSERT_TRUE(Aligned(block)) << size;
        if (!blocks.empty()) {
            EXPECT_EQ(block, blocks.back() + Rounded(size - 1)) << size;
        }
        std::memset(block, static_cast<int>(size & 0x7f), size);
        blocks.push_back(block);
        expected += Rounded(size);
    }
    EXPECT_EQ(arena.ChunkCount(), 1u);
    EXPECT_EQ(arena.ChunkBytes(), 64 * kKiB);
    EXPECT_EQ(arena.UsedBytes(), expected);
    for (std::size_t size = 1; size <= 300; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            ASSERT_EQ(blocks[size - 1][at], static_cast<char>(size & 0x7f)) << size;
        }
    }
}

TEST(ModelArena, SmallBlocksGivenBackServeTheNextOfTheirSize) {
    ZModelArena arena;
    void* a = arena.Allocate(40);
    void* b = arena.Allocate(40);
    arena.Deallocate(a, 40);
    arena.Deallocate(b, 40);
    const std::size_t used = arena.UsedBytes();
    EXPECT_EQ(arena.Allocate(33), b);
    EXPECT_EQ(arena.Allocate(40), a);
    EXPECT_EQ(arena.UsedBytes(), used);
    EXPECT_NE(arena.Allocate(40), a);
}

TEST(ModelArena, BlocksAboveTheRecycledSizeStayGiven) {
    ZModelArena arena;
    void* big = arena.Allocate(ZModelArena::kLargestRecycled + 8);
    arena.Deallocate(big, ZModelArena::kLargestRecycled + 8);
    EXPECT_NE(arena.Allocate(ZModelArena::kLargestRecycled + 8), big);
}

TEST(ModelArena, ItemBlocksGivenBackWithALowerSizeServeThatSize) {
    ZModelArena arena;
    void* item = arena.AllocateItem(100);
    arena.ReleaseItem(item, 64);
    EXPECT_EQ(arena.AllocateItem(64), item);
}

TEST(ModelArena, ItemBlocksOfAnySizeComeFromChunks) {
    ZModelArena arena;
    void* item = arena.AllocateItem(ZModelArena::kLargestBlock * 3);
    std::memset(item, 'i', ZModelArena::kLargestBlock * 3);
    EXPECT_EQ(arena.LargeBytes(), 0u);
    EXPECT_GE(arena.ChunkBytes(), ZModelArena::kLargestBlock * 3);
    arena.ReleaseItem(item, ZModelArena::kLargestBlock * 3);
}

TEST(ModelArena, LargeBlocksAreMappingsOfTheirOwnAndGoBackWhenGivenBack) {
    ZModelArena arena;
    const std::size_t size = ZModelArena::kLargestBlock + 1;
    auto* block = static_cast<char*>(arena.Allocate(size));
    std::memset(block, 'l', size);
    EXPECT_EQ(arena.UsedBytes(), 0u);
    EXPECT_EQ(arena.LargeBytes(), 20 * kKiB);
    arena.Deallocate(block, size);
    EXPECT_EQ(arena.LargeBytes(), 0u);
}

TEST(ModelArena, TheFirstChunkHoldsWhatTheModelIsExpectedToTake) {
    const auto firstChunk = [](std::size_t expected) {
        ZModelArena arena(expected);
        arena.Allocate(8);
        return arena.ChunkBytes();
    };
    EXPECT_EQ(firstChunk(0), ZModelArena::kSmallestChunk);
    EXPECT_EQ(firstChunk(1000), ZModelArena::kSmallestChunk);
    EXPECT_EQ(firstChunk(10 * kKiB), 12 * kKiB);
    EXPECT_EQ(firstChunk(300 * kKiB), 300 * kKiB);
    EXPECT_EQ(firstChunk(200 * kMiB), ZModelArena::kLargestChunk);
}

TEST(ModelArena, PastTheEstimateChunksDoubleUpToTheLargest) {
    ZModelArena arena;
    std::size_t handedOut = 0;
    while (handedOut < 16 * kMiB) {
        arena.Allocate(1000);
        handedOut += 1000;
    }
    // 4, 4, 8, 16 ... 1024 kB, then 2 MB chunks: not one chunk per page.
    EXPECT_LE(arena.ChunkCount(), 20u);
    EXPECT_GE(arena.ChunkBytes(), handedOut);
    EXPECT_LE(arena.ChunkBytes(), handedOut + ZModelArena::kLargestChunk);
}

TEST(ModelArena, AModelOfTheEstimatedSizeTakesLittleMoreThanItUses) {
    ZModelArena arena(10 * kMiB);
    while (arena.UsedBytes() < 10 * kMiB - 200) {
        arena.Allocate(100);
    }
    EXPECT_LE(arena.ChunkBytes(), 10 * kMiB + ZModelArena::kLargestChunk);
}

TEST(ModelAllocator, AllocatorsAreEqualWhenTheyDrawOnTheSameArena) {
    static_assert(!ZModelAllocator<int>::is_always_equal::value, "blocks belong to one arena");
    ZModelArena one;
    ZModelArena other;
    EXPECT_EQ(ZModelAllocator<int>(&one), ZModelAllocator<char>(&one));
    EXPECT_NE(ZModelAllocator<int>(&one), ZModelAllocator<int>(&other));
    EXPECT_NE(ZModelAllocator<int>(&one), ZModelAllocator<int>());
    EXPECT_EQ(ZModelAllocator<int>(), ZModelAllocator<int>(nullptr));
}

TEST(ModelAllocator, ListsGrowInTheirArenaAndCopiesGoToTheHeap) {
    ZModelArena arena;
    ZModelVector<uint64_t> numbers{ZModelAllocator<uint64_t>(&arena)};
    for (uint64_t n = 0; n < 1000; ++n) {
        numbers.push_back(n);
    }
    EXPECT_GE(arena.UsedBytes(), 1000 * sizeof(uint64_t));
    const ZModelVector<uint64_t> copy(numbers);
    EXPECT_EQ(copy.get_allocator().Arena(), nullptr);
    EXPECT_EQ(copy, numbers);
    // A list past the largest chunk block lives in a mapping of its own.
    for (uint64_t n = 1000; n < 5000; ++n) {
        numbers.push_back(n);
    }
    EXPECT_GT(arena.LargeBytes(), 0u);
    for (uint64_t n = 0; n < 5000; ++n) {
        ASSERT_EQ(numbers[n], n);
    }
    numbers = ZModelVector<uint64_t>(ZModelAllocator<uint64_t>(&arena));
    EXPECT_EQ(arena.LargeBytes(), 0u);
}

TEST(ModelAllocator, RefusesCountsBeyondTheAddressSpace) {
    ZModelAllocator<uint64_t> allocator;
    EXPECT_THROW(static_cast<void>(allocator.allocate(SIZE_MAX / 4)), std::bad_array_new_length);
}

TEST(ModelArena_Items, ItemsMadeInAnArenaLiveThereAndChangesGoToTheHeap) {
    ZModelArena arena;
    ZItemPtr<ZInstance> instance =
        MakeItemWithPack<ZInstance>(&arena, {"ReadDataByIdentifier_WithALongIdentifier"});
    EXPECT_EQ(instance->Arena(), &arena);
    ZMessage* request = instance->CreateMessage(MessageKindRequest, &arena);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->Arena(), &arena);
    EXPECT_EQ(request->ListArena(), &arena);
    request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
    const std::size_t used = arena.UsedBytes();
    // The caller's adds and changes take heap memory; both kinds of memory mix in one message.
    const auto* sid = static_cast<ZParam*>(request->GetParam("SID"));
    EXPECT_EQ(sid->Arena(), nullptr);
    request->GetParam("SID")->SetValue("0x2E");
    EXPECT_STREQ(request->GetParam("SID")->GetValue(), "0x2E");
    EXPECT_STREQ(instance->GetId(), "ReadDataByIdentifier_WithALongIdentifier");
    EXPECT_EQ(arena.UsedBytes(), used);
    const ZInstance copy(*instance);
    EXPECT_EQ(copy.Arena(), nullptr);
    instance.reset();
    EXPECT_STREQ(copy.GetRequest()->GetParam("SID")->GetValue(), "0x2E");
}

// A message made again and again in one instance (a document that repeats REQUEST) takes the
// block of the one it replaces.
TEST(ModelArena_Items, AReplacedMessageGivesItsBlockToTheNext) {
    ZModelArena arena;
    ZItemPtr<ZInstance> instance = MakeItemWithPack<ZInstance>(&arena, {"I"});
    instance->CreateMessage(MessageKindRequest, &arena);
    const std::size_t used = arena.UsedBytes();
    for (int round = 0; round < 1000; ++round) {
        instance->CreateMessage(MessageKindRequest, &arena);
    }
    EXPECT_EQ(arena.UsedBytes(), used);
}

TEST(ModelArena_Items, TheBuildersEcuOwnsTheArenaAndIsOnTheHeap) {
    ZModelBuilder builder;
    ZEcu* ecu = builder.Ecu();
    ASSERT_NE(ecu, nullptr);
    ASSERT_NE(ecu->ModelArena(), nullptr);
    EXPECT_EQ(ecu->Arena(), nullptr);
    ZInstance* instance = builder.AddInstance("Instance");
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->Arena(), ecu->ModelArena());
    EXPECT_EQ(ecu->GetInstanceContainer()->ListArena(), ecu->ModelArena());
    EXPECT_EQ(builder.AddInstance("Instance"), nullptr);
    // The items go before the arena they live in.
    std::unique_ptr<ZEcu> taken = builder.TakeEcu();
    EXPECT_EQ(builder.Ecu(), nullptr);
    taken.reset();
}

TEST(ModelArena_Items, AnEcuOfTheCallerHasNoArena) {
    ZEcu ecu;
    EXPECT_EQ(ecu.ModelArena(), nullptr);
    ecu.GetInstanceContainer()->AddInstance("Instance");
    EXPECT_EQ(ecu.GetInstanceContainer()->GetInstance(0u)->Arena(), nullptr);
}

#ifdef ZEKL_TEST_ADDRESS_SANITIZER
TEST(ModelArenaDeathTest, TheSanitizerSeesAUseAfterFreeInAChunk) {
    const auto useAfterFree = [] {
        ZModelArena arena;
        auto* block = static_cast<volatile char*>(arena.Allocate(32));
        block[0] = 'x';
        arena.Deallocate(const_cast<char*>(block), 32);
        block[1] = 'y';
    };
    EXPECT_DEATH(useAfterFree(), "use-after-poison");
}

// Blocks lie one after the other without headers, so an overrun is seen where it reaches memory
// no block holds: here the free rest of the chunk.
TEST(ModelArenaDeathTest, TheSanitizerSeesAnOverrunInAChunk) {
    const auto overrun = [] {
        ZModelArena arena;
        auto* block = static_cast<volatile char*>(arena.Allocate(24));
        block[24] = 'x';
    };
    EXPECT_DEATH(overrun(), "use-after-poison");
}
#endif

}  // namespace
}  // namespace Korvel
