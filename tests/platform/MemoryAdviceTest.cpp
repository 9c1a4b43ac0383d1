#include "platform/MemoryAdvice.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace Korvel {
namespace {

TEST(MemoryAdvice, NullAndSmallBlocksAreLeftAlone) {
    Platform::AdviseLargeBlock(nullptr, 0);
    Platform::AdviseLargeBlock(nullptr, std::size_t{64} << 20);
    char small[100] = {'a'};
    Platform::AdviseLargeBlock(small, sizeof small);
    EXPECT_EQ(small[0], 'a');
}

TEST(MemoryAdvice, AdvisedBlockKeepsItsContentAndStaysUsable) {
    // A block that starts off any page boundary and spans several huge pages.
    std::string block(std::size_t{9} << 20, 'x');
    block[0] = 'a';
    block[block.size() - 1] = 'z';
    Platform::AdviseLargeBlock(&block[1], block.size() - 1);
    EXPECT_EQ(block[0], 'a');
    EXPECT_EQ(block[block.size() / 2], 'x');
    EXPECT_EQ(block[block.size() - 1], 'z');
    block.append(std::size_t{3} << 20, 'y');
    EXPECT_EQ(block.back(), 'y');
}

}  // namespace
}  // namespace Korvel
