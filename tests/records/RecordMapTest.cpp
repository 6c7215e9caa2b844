// SPDX-License-Identifier: MIT
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/records/RecordMap.h"

namespace yg {
namespace {

using ::testing::ElementsAre;

template <class Value>
std::vector<std::string> keysOf(const RecordMap<Value>& map) {
    std::vector<std::string> keys;
    for (const auto& entry : map)
        keys.push_back(entry.key);
    return keys;
}

TEST(RecordMap, IsEmptyAtFirst) {
    const RecordMap<int> map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(map.find("a"), nullptr);
    EXPECT_FALSE(map.contains(""));
    EXPECT_EQ(map.longestSearch(), 0u);
    EXPECT_TRUE(map.begin() == map.end());
}

TEST(RecordMap, FindsExactlyTheKeysStored) {
    RecordMap<int> map;
    EXPECT_FALSE(map.set("a", 1));
    EXPECT_FALSE(map.set("", 2));
    EXPECT_FALSE(map.set("行情", 3));
    EXPECT_FALSE(map.set(std::string_view("a\0", 2), 4));
    EXPECT_EQ(map.size(), 4u);
    EXPECT_EQ(*map.find("a"), 1);
    EXPECT_EQ(*map.find(""), 2);
    EXPECT_EQ(*map.find("行情"), 3);
    EXPECT_EQ(*map.find(std::string_view("a\0", 2)), 4);
    EXPECT_EQ(map.find("A"), nullptr);
    EXPECT_EQ(map.find("a "), nullptr);
    EXPECT_TRUE(map.contains("a"));
    EXPECT_FALSE(map.contains("b"));
}

TEST(RecordMap, AKeyStoredAgainKeepsItsPlaceAndGetsTheNewValue) {
    RecordMap<std::string> map;
    map.set("b", "1");
    map.set("a", "2");
    EXPECT_TRUE(map.set("b", "3"));
    EXPECT_EQ(map.size(), 2u);
    EXPECT_EQ(*map.find("b"), "3");
    EXPECT_THAT(keysOf(map), ElementsAre("b", "a"));
}

TEST(RecordMap, KeepsTheOrderOfFirstStoringHoweverItGrows) {
    RecordMap<std::size_t> map;
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < 5000; ++i) {
        keys.push_back(std::to_string(i * 7919 % 5000));
        EXPECT_FALSE(map.set(keys.back(), i));
        map.set(keys[i / 2], i / 2);
    }
    EXPECT_EQ(keysOf(map), keys);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        ASSERT_NE(map.find(keys[i]), nullptr);
        EXPECT_EQ(*map.find(keys[i]), i);
    }
}

TEST(RecordMap, TellsKeysOfEveryLengthApart) {
    RecordMap<std::size_t> map;
    std::vector<std::string> keys;
    for (std::size_t size = 0; size < 70; ++size) {
        keys.emplace_back(size, 'a');
        for (std::size_t at = 0; at < size; ++at) {
            keys.emplace_back(size, 'a');
            keys.back()[at] = 'b';
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i)
        EXPECT_FALSE(map.set(keys[i], i));
    for (std::size_t i = 0; i < keys.size(); ++i)
        EXPECT_EQ(*map.find(keys[i]), i);
    EXPECT_EQ(map.find(std::string(70, 'a')), nullptr);
}

TEST(RecordMap, ACopyIsAMapOfItsOwn) {
    RecordMap<int> map;
    map.set("a", 1);
    RecordMap<int> copy = map;
    copy.set("a", 2);
    copy.set("b", 3);
    EXPECT_EQ(*map.find("a"), 1);
    EXPECT_FALSE(map.contains("b"));
    map = copy;
    EXPECT_EQ(*map.find("a"), 2);
    EXPECT_EQ(*map.find("b"), 3);
}

TEST(RecordMap, HoldsValuesThatCanOnlyBeMoved) {
    RecordMap<std::unique_ptr<int>> map;
    for (int i = 0; i < 100; ++i)
        map.set(std::to_string(i), std::make_unique<int>(i));
    const RecordMap<std::unique_ptr<int>> moved = std::move(map);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(**moved.find(std::to_string(i)), i);
}

TEST(RecordMap, AMapThatWasMovedFromMayBeFilledAgain) {
    RecordMap<int> map;
    map.set("a", 1);
    const RecordMap<int> moved = std::move(map);
    map = RecordMap<int>();
    EXPECT_FALSE(map.contains("a"));
    map.set("b", 2);
    EXPECT_EQ(*map.find("b"), 2);
    EXPECT_EQ(*moved.find("a"), 1);
}

const RecordMap<int> filledBeforeMain = [] {
    RecordMap<int> map;
    map.set("early", 1);
    return map;
}();

TEST(RecordMap, MayBeFilledBeforeMain) {
    ASSERT_NE(filledBeforeMain.find("early"), nullptr);
    EXPECT_EQ(*filledBeforeMain.find("early"), 1);
}

/// The bytes of words, one behind the other.
template <std::size_t size>
std::string textOf(const std::array<std::uint64_t, size>& words) {
    std::string text(sizeof words, '\0');
    std::memcpy(text.data(), words.data(), sizeof words);
    return text;
}

/// How far a search in a map of these keys goes. Of 20,000 keys with random hashes, more than 200
/// lie in a row with a probability below 2 to the power of -30.
std::size_t longestSearchOf(const std::vector<std::string>& keys) {
    RecordMap<bool> map;
    for (const std::string& key : keys)
        map.set(key, true);
    EXPECT_EQ(map.size(), keys.size());
    return map.longestSearch();
}
constexpr std::size_t farSearch = 200;
constexpr std::uint64_t manyKeys = 20'000;

TEST(RecordMap, SearchesAreShortForOrdinaryNames) {
    std::vector<std::string> numbered;
    std::vector<std::string> longer;
    std::vector<std::string> words;
    for (std::uint64_t i = 0; i < manyKeys; ++i) {
        numbered.push_back("page" + std::to_string(i));
        longer.push_back("a name of more than sixteen bytes " + std::to_string(i) + " with an end");
        words.push_back(textOf<1>({i << 48}));
    }
    EXPECT_LT(longestSearchOf(numbered), farSearch);
    EXPECT_LT(longestSearchOf(longer), farSearch);
    EXPECT_LT(longestSearchOf(words), farSearch);
}

// Names made for a hash with these constants once cost the square of their number.
TEST(RecordMap, SearchesAreShortForNamesThatCollideUnderFixedConstants) {
    constexpr std::uint64_t one = 0x2D358DCCAA6C78A5;
    constexpr std::uint64_t other = 0x8BB84B93962EACC9;
    std::vector<std::string> firstIsLost;
    std::vector<std::string> lastIsLost;
    std::vector<std::string> blockIsLost;
    for (std::uint64_t i = 0; i < manyKeys; ++i) {
        firstIsLost.push_back(textOf<2>({i, other}));
        lastIsLost.push_back(textOf<2>({one ^ 16, i}));
        blockIsLost.push_back(textOf<3>({i, other, 0}));
    }
    EXPECT_LT(longestSearchOf(firstIsLost), farSearch);
    EXPECT_LT(longestSearchOf(lastIsLost), farSearch);
    EXPECT_LT(longestSearchOf(blockIsLost), farSearch);
}

}  // namespace
}  // namespace yg
