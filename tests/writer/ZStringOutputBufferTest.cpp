#include "writer/ZStringOutputBuffer.h"

#include <gtest/gtest.h>

#include <ostream>

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

}  // namespace
}  // namespace Korvel
