#include "model/ZTextIndex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>

namespace Korvel {
namespace {

constexpr uint32_t kAbsent = UINT32_MAX;

uint32_t At(const ZTextIndex& index, std::string_view key) {
    const uint32_t* found = index.Find(key);
    return found != nullptr ? *found : kAbsent;
}

TEST(TextIndex_Empty, FindsNothingAndErasesNothing) {
    ZTextIndex index;
    EXPECT_EQ(index.Find("a"), nullptr);
    EXPECT_EQ(index.Find(""), nullptr);
    EXPECT_FALSE(index.Erase("a"));
    std::string key = "unchanged";
    EXPECT_FALSE(index.KeyOf(0, key));
    EXPECT_EQ(key, "unchanged");
    EXPECT_EQ(index.Size(), 0u);
}

TEST(TextIndex_Insert, MapsNewKeysAndRefusesAKeyAlreadyMapped) {
    ZTextIndex index;
    EXPECT_TRUE(index.Insert("SID", 0));
    EXPECT_TRUE(index.Insert("DID", 1));
    EXPECT_TRUE(index.Insert("", 2));
    EXPECT_FALSE(index.Insert("SID", 7));
    EXPECT_EQ(At(index, "SID"), 0u);
    EXPECT_EQ(At(index, "DID"), 1u);
    EXPECT_EQ(At(index, ""), 2u);
    EXPECT_EQ(index.Find("sid"), nullptr);
    EXPECT_EQ(index.Find("SI"), nullptr);
    EXPECT_EQ(index.Find("SIDX"), nullptr);
    EXPECT_EQ(index.Size(), 3u);
}

TEST(TextIndex_Insert, KeysAreWholeTextsIncludingZeroBytesAndNonAscii) {
    ZTextIndex index;
    const std::string withZero("a\0b", 3);
    EXPECT_TRUE(index.Insert(withZero, 0));
    EXPECT_TRUE(index.Insert("a", 1));
    EXPECT_TRUE(
        index.Insert("Temperatur_\xC2\xB0"
                     "C",
                     2));
    EXPECT_EQ(At(index, withZero), 0u);
    EXPECT_EQ(At(index, "a"), 1u);
    EXPECT_EQ(At(index,
                 "Temperatur_\xC2\xB0"
                 "C"),
              2u);
}

TEST(TextIndex_Assign, AddsOrReplacesThePosition) {
    ZTextIndex index;
    index.Assign("x", 3);
    index.Assign("x", 5);
    EXPECT_EQ(At(index, "x"), 5u);
    EXPECT_EQ(index.Size(), 1u);
}

TEST(TextIndex_Erase, RemovesOnlyThatKeyAndTheKeyCanComeBack) {
    ZTextIndex index;
    index.Insert("a", 0);
    index.Insert("b", 1);
    EXPECT_TRUE(index.Erase("a"));
    EXPECT_FALSE(index.Erase("a"));
    EXPECT_EQ(index.Find("a"), nullptr);
    EXPECT_EQ(At(index, "b"), 1u);
    EXPECT_TRUE(index.Insert("a", 4));
    EXPECT_EQ(At(index, "a"), 4u);
    EXPECT_EQ(index.Size(), 2u);
}

TEST(TextIndex_KeyOf, FindsTheKeyOfAPosition) {
    ZTextIndex index;
    index.Insert("first", 0);
    index.Insert("second", 1);
    std::string key;
    EXPECT_TRUE(index.KeyOf(1, key));
    EXPECT_EQ(key, "second");
    index.Erase("second");
    key = "kept";
    EXPECT_FALSE(index.KeyOf(1, key));
    EXPECT_EQ(key, "kept");
}

TEST(TextIndex_ClearAndSwap, ClearEmptiesAndSwapExchangesContents) {
    ZTextIndex one;
    ZTextIndex two;
    one.Insert("a", 0);
    two.Insert("b", 9);
    two.Insert("c", 8);
    one.Swap(two);
    EXPECT_EQ(At(one, "b"), 9u);
    EXPECT_EQ(one.Find("a"), nullptr);
    EXPECT_EQ(At(two, "a"), 0u);
    one.Clear();
    EXPECT_EQ(one.Size(), 0u);
    EXPECT_EQ(one.Find("b"), nullptr);
    EXPECT_TRUE(one.Insert("b", 1));
}

// Many inserts and erases in random order, checked against an ordered map: the table grows,
// reuses erased slots and rebuilds itself without losing or inventing a key.
TEST(TextIndex_Churn, AgreesWithAMapThroughGrowthAndErasures) {
    ZTextIndex index;
    std::map<std::string, uint32_t> expected;
    std::mt19937 random(12345);
    for (uint32_t step = 0; step < 20000; ++step) {
        const std::string key = "P" + std::to_string(random() % 3000);
        switch (random() % 3) {
            case 0:
                EXPECT_EQ(index.Insert(key, step), expected.emplace(key, step).second);
                break;
            case 1:
                EXPECT_EQ(index.Erase(key), expected.erase(key) == 1);
                break;
            default:
                index.Assign(key, step);
                expected[key] = step;
                break;
        }
    }
    EXPECT_EQ(index.Size(), expected.size());
    for (uint32_t n = 0; n < 3000; ++n) {
        const std::string key = "P" + std::to_string(n);
        const auto found = expected.find(key);
        if (found == expected.end()) {
            EXPECT_EQ(index.Find(key), nullptr) << key;
        } else {
            EXPECT_EQ(At(index, key), found->second) << key;
        }
    }
}

// Inserting and erasing one key over and over must not let the table or its key bytes grow.
TEST(TextIndex_Churn, RepeatedEraseAndInsertStaysSmall) {
    ZTextIndex index;
    index.Insert("stay", 0);
    for (uint32_t step = 0; step < 100000; ++step) {
        ASSERT_TRUE(index.Insert("come-and-go", step));
        ASSERT_TRUE(index.Erase("come-and-go"));
    }
    EXPECT_EQ(index.Size(), 1u);
    EXPECT_EQ(At(index, "stay"), 0u);
    EXPECT_LE(index.SlotCount(), 8u);
    EXPECT_LT(index.KeyBytes(), 1024u);
}

// The same in the hashed table: erased keys' bytes are dropped by a rebuild.
TEST(TextIndex_Churn, RepeatedEraseAndInsertInTheTableStaysSmall) {
    ZTextIndex index;
    for (uint32_t n = 0; n < 20; ++n) {
        index.Insert("stay-" + std::to_string(n), n);
    }
    ASSERT_TRUE(index.IsHashed());
    for (uint32_t step = 0; step < 100000; ++step) {
        ASSERT_TRUE(index.Insert("come-and-go-" + std::to_string(step % 7), step));
        ASSERT_TRUE(index.Erase("come-and-go-" + std::to_string(step % 7)));
    }
    EXPECT_EQ(index.Size(), 20u);
    EXPECT_LE(index.SlotCount(), 64u);
    EXPECT_LT(index.KeyBytes(), 2048u);
    for (uint32_t n = 0; n < 20; ++n) {
        EXPECT_EQ(At(index, "stay-" + std::to_string(n)), n);
    }
}

TEST(TextIndex_Growth, KeepsAtLeastOneSlotInFourFree) {
    ZTextIndex index;
    for (uint32_t n = 0; n < 1000; ++n) {
        index.Insert(std::to_string(n), n);
        if (index.IsHashed()) {
            ASSERT_LE(index.Size() * 4, index.SlotCount() * 3);
        }
    }
    EXPECT_EQ(index.SlotCount(), 2048u);
}

// Up to kListLimit keys live in a plain list; one more turns it into a hash table.
TEST(TextIndex_Modes, TheListBecomesATableWithEveryKeyKept) {
    constexpr auto kLimit = static_cast<uint32_t>(ZTextIndex::kListLimit);
    ZTextIndex index;
    for (uint32_t n = 0; n < kLimit; ++n) {
        ASSERT_TRUE(index.Insert("K" + std::to_string(n), n));
    }
    EXPECT_FALSE(index.IsHashed());
    EXPECT_TRUE(index.Erase("K3"));
    EXPECT_TRUE(index.Insert("K3", 30));
    EXPECT_FALSE(index.IsHashed());
    EXPECT_FALSE(index.Insert("K" + std::to_string(kLimit - 1), 99));
    ASSERT_TRUE(index.Insert("K" + std::to_string(kLimit), kLimit));
    EXPECT_TRUE(index.IsHashed());
    EXPECT_EQ(index.Size(), kLimit + 1);
    for (uint32_t n = 0; n <= kLimit; ++n) {
        EXPECT_EQ(At(index, "K" + std::to_string(n)), n == 3 ? 30u : n);
    }
    std::string key;
    EXPECT_TRUE(index.KeyOf(30, key));
    EXPECT_EQ(key, "K3");
    index.Clear();
    EXPECT_FALSE(index.IsHashed());
}

TEST(TextIndex_Hash, IsStableWithinAProcessAndNeverAStateTag) {
    EXPECT_EQ(ZTextIndex::Hash("PARAM_1"), ZTextIndex::Hash("PARAM_1"));
    EXPECT_NE(ZTextIndex::Hash("PARAM_1"), ZTextIndex::Hash("PARAM_2"));
    for (int n = 0; n < 1000; ++n) {
        EXPECT_GT(ZTextIndex::Hash(std::to_string(n)), 1u);
    }
}

}  // namespace
}  // namespace Korvel
