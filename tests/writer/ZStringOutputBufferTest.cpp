#include "writer/ZStringOutputBuffer.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace Korvel {
namespace {

TEST(StringOutputBuffer_Append, AppendsEverythingWrittenToTheString) {
    std::string text = "start:";
    ZStringOutputBuffer buffer(text);
    std::ostream out(&buffer);
    out << "line" << '\n';
    out.write("\0x", 2);
    out.put('!');
    EXPECT_TRUE(out.good());
    EXPECT_EQ(text, std::string("start:line\n\0x!", 14));
}

// The text's room is prefaulted step by step ahead of the writes; what is written stays exact
// across many steps, within the room given and beyond it.
TEST(StringOutputBuffer_Append, LongTextsStayExactWithinAndBeyondTheirRoom) {
    const std::size_t step = ZStringOutputBuffer::kPrefaultStep;
    std::string text;
    text.reserve(3 * step + 100);
    const char* block = text.data();
    ZStringOutputBuffer buffer(text);
    std::ostream out(&buffer);
    std::string expected;
    std::string line;
    for (int n = 0; expected.size() < 8 * step; ++n) {
        line = "line " + std::to_string(n) + std::string(static_cast<std::size_t>(n % 97), 'x') + '\n';
        out << line;
        expected += line;
        if (n % 5 == 0) {
            out.put('#');
            expected += '#';
        }
        if (expected.size() < 3 * step) {
            ASSERT_EQ(text.data(), block) << "the text moved within its room";
        }
    }
    EXPECT_TRUE(out.good());
    EXPECT_TRUE(text == expected);
}

TEST(StringOutputBuffer_Append, ABlockLargerThanAStepGoesInWhole) {
    std::string text = "x";
    text.reserve(5 * ZStringOutputBuffer::kPrefaultStep);
    ZStringOutputBuffer buffer(text);
    std::ostream out(&buffer);
    const std::string large(3 * ZStringOutputBuffer::kPrefaultStep + 7, 'L');
    out.write(large.data(), static_cast<std::streamsize>(large.size()));
    out.write(large.data(), static_cast<std::streamsize>(large.size()));
    EXPECT_TRUE(out.good());
    EXPECT_EQ(text.size(), 1 + 2 * large.size());
    EXPECT_EQ(text.substr(1, large.size()), large);
    EXPECT_EQ(text.back(), 'L');
}

}  // namespace
}  // namespace Korvel
