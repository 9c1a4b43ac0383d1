#include "platform/PageMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace Korvel {
namespace {

bool AllZero(const char* data, std::size_t size) {
    for (std::size_t at = 0; at < size; ++at) {
        if (data[at] != 0) {
            return false;
        }
    }
    return true;
}

TEST(PageMemory, MappedPagesAreZeroedAndWritable) {
    constexpr std::size_t kSize = std::size_t{256} << 10;
    auto* block = static_cast<char*>(Platform::MapPages(kSize));
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(AllZero(block, kSize));
    std::memset(block, 'x', kSize);
    EXPECT_EQ(block[kSize - 1], 'x');
    Platform::UnmapPages(block, kSize);
}

TEST(PageMemory, EmptyOrImpossibleSizesGetNoBlock) {
    EXPECT_EQ(Platform::MapPages(0), nullptr);
    EXPECT_EQ(Platform::MapPages(std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(Platform::MapPages(std::numeric_limits<std::size_t>::max() - 100), nullptr);
    Platform::UnmapPages(nullptr, 0);
    Platform::UnmapPages(nullptr, 4096);
}

TEST(PageMemory, PrefaultedPagesKeepTheirContent) {
    constexpr std::size_t kSize = std::size_t{1} << 20;
    auto* block = static_cast<char*>(Platform::MapPages(kSize));
    ASSERT_NE(block, nullptr);
    block[5000] = 'k';
    // Off page boundaries on both ends: the pages holding the range are prefaulted.
    Platform::PrefaultPages(block + 100, kSize / 2 + 333);
    EXPECT_EQ(block[5000], 'k');
    EXPECT_TRUE(AllZero(block + 5001, kSize - 5001));
    std::memset(block, 'y', kSize);
    EXPECT_EQ(block[kSize / 2], 'y');
    Platform::PrefaultPages(block, kSize);
    EXPECT_EQ(block[kSize - 1], 'y');
    Platform::PrefaultPages(nullptr, 0);
    Platform::PrefaultPages(block, 0);
    Platform::UnmapPages(block, kSize);
}

TEST(PageMemory, PrefaultingAHeapBlockKeepsItsContent) {
    std::string text(std::size_t{3} << 20, 'h');
    Platform::PrefaultPages(&text[7], text.size() - 7);
    EXPECT_EQ(text[0], 'h');
    EXPECT_EQ(text.back(), 'h');
}

}  // namespace
}  // namespace Korvel
