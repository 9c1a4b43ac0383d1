// Decoding into a result the caller keeps allocates nothing once the result has held a
// message of that shape. Counted through the global allocation functions of this program;
// the sanitizers bring their own, so the count is taken only in plain builds.
#include "codec/CodecTestSupport.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZEKL_TEST_OWN_ALLOCATOR 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEKL_TEST_OWN_ALLOCATOR 0
#endif
#endif
#ifndef ZEKL_TEST_OWN_ALLOCATOR
#define ZEKL_TEST_OWN_ALLOCATOR 1
#endif

namespace {
std::atomic<uint64_t> gAllocations{0};
}  // namespace

#if ZEKL_TEST_OWN_ALLOCATOR
void* operator new(std::size_t size) {
    ++gAllocations;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
// The library's sorts take their buffers through the non-throwing forms: they must pair with
// the deletes above, as every allocation of this program does.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++gAllocations;
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
#endif

namespace {

using namespace Korvel;
using codec_test::Bytes;
using codec_test::ReadSample;

TEST(CodecAllocation, DecodingAgainIntoTheSameResultAllocatesNothing) {
#if !ZEKL_TEST_OWN_ALLOCATOR
    GTEST_SKIP() << "the sanitizers own the allocation functions";
#else
    const std::unique_ptr<IEcu> ecu = ReadSample("uds_ecu.xml");
    ASSERT_NE(ecu, nullptr);
    const std::unique_ptr<ICodec> codec = CreateCodec(*ecu);
    const uint32_t speed = codec->FindInstance("ReadDataByIdentifier_EngineSpeed");
    const uint32_t vin = codec->FindInstance("ReadDataByIdentifier_VIN");
    const std::vector<uint8_t> speedData = Bytes("62 01 00 0B B8");
    const std::vector<uint8_t> vinData = Bytes("62 F1 90 57 30 4C 30 30 30 30 34 33 4D 42 35 34 31 33 32 36");
    const std::vector<uint8_t> tableData = Bytes("62 01 20 02 00");
    DecodedMessage decoded;
    const auto round = [&] {
        codec->Decode(speed, MessageKindPosResponse, speedData.data(), speedData.size(), decoded);
        codec->DecodeAny(speedData.data(), speedData.size(), decoded);
        codec->DecodeAny(tableData.data(), tableData.size(), decoded);
    };
    // The first decodes of each shape size the result and its spare list.
    ASSERT_TRUE(codec->Decode(vin, MessageKindPosResponse, vinData.data(), vinData.size(), decoded));
    round();
    round();
    const uint64_t before = gAllocations.load();
    for (int i = 0; i < 1000; ++i) {
        round();
    }
    const uint64_t after = gAllocations.load();
    EXPECT_EQ(after - before, 0u);
    EXPECT_DOUBLE_EQ(decoded.params[2].physical, 0.0);
    EXPECT_STREQ(decoded.params[2].tableText,
                 "Blinking \xE2\x80\x93 Z\xC3\xBC"
                 "ndaussetzer");
#endif
}

}  // namespace
