// SPDX-License-Identifier: MIT
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/text/TextHash.h"

namespace yg::text {
namespace {

constexpr std::uint64_t first = 0x0123456789ABCDEF;
constexpr std::uint64_t second = 0x8E51D3F60B27A94C;

template <std::size_t size>
std::string textOf(const std::array<std::uint64_t, size>& words) {
    std::string text(sizeof words, '\0');
    std::memcpy(text.data(), words.data(), sizeof words);
    return text;
}

std::size_t differentHashes(const TextHash& hash, const std::vector<std::string>& texts) {
    std::set<std::uint32_t> hashes;
    for (const std::string& text : texts)
        hashes.insert(hash(text));
    return hashes.size();
}

TEST(TextHash, DependsOnEachBitOfATextAndOnItsLength) {
    const TextHash hash(first, second);
    for (std::size_t size = 0; size < 70; ++size) {
        const std::string text(size, 'a');
        EXPECT_EQ(hash(text), hash(std::string(text)));
        EXPECT_NE(hash(text), hash(text + 'a'));
        for (std::size_t bit = 0; bit < size * 8; ++bit) {
            std::string other = text;
            other[bit / 8] = static_cast<char>(other[bit / 8] ^ (1 << bit % 8));
            EXPECT_NE(hash(text), hash(other)) << size << ' ' << bit;
        }
    }
}

TEST(TextHash, DependsOnEachBitOfTheKey) {
    for (const std::string text : {"", "a", "name", "a name of more than sixteen bytes"}) {
        const std::uint32_t hash = TextHash(first, second)(text);
        for (int bit = 0; bit < 64; ++bit) {
            EXPECT_NE(TextHash(first ^ std::uint64_t{1} << bit, second)(text), hash);
            EXPECT_NE(TextHash(first, second ^ std::uint64_t{1} << bit)(text), hash);
        }
    }
}

// Whoever knows the key can make a factor 0. A guess that misses by one bit is worth nothing: the
// same texts are distinguished. Of 10,000 random hashes about 0.01 are equal to another one.
TEST(TextHash, TextsMadeForOneKeyDoNotCollideUnderAnother) {
    std::vector<std::string> shortOnes;
    std::vector<std::string> longOnes;
    for (std::uint64_t i = 0; i < 10'000; ++i) {
        shortOnes.push_back(textOf<2>({i, second}));
        longOnes.push_back(textOf<4>({i, second, 0, 0}));
    }
    EXPECT_EQ(differentHashes(TextHash(first, second), shortOnes), 1u);
    EXPECT_EQ(differentHashes(TextHash(first, second), longOnes), 1u);
    for (const TextHash& other :
         {TextHash(second, first), TextHash(first, second ^ 1), TextHash(~first, second ^ 0xFF),
          TextHash(first, second ^ std::uint64_t{1} << 63),
          TextHash(0x9E3779B97F4A7C15, 0xD1B54A32D192ED03)}) {
        EXPECT_GT(differentHashes(other, shortOnes), 9990u);
        EXPECT_GT(differentHashes(other, longOnes), 9990u);
    }
}

TEST(TextHash, OfTheProcessStaysTheSame) {
    EXPECT_EQ(TextHash::ofProcess()("name"), TextHash::ofProcess()("name"));
}

/// Two hashes of the process as text, so that they are equal by chance once in 2 to the power
/// of 64.
std::string processKey() {
    return std::to_string(TextHash::ofProcess()("one")) + ' ' +
           std::to_string(TextHash::ofProcess()("another"));
}

// The child begins this test from the start, and finds in the environment what its parent has.
TEST(TextHash, EachProcessHasAnother) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ::setenv("YG_KEY_OF_THE_PARENT", processKey().c_str(), 0);
    EXPECT_EXIT(std::exit(std::getenv("YG_KEY_OF_THE_PARENT") == processKey() ? 1 : 0),
                ::testing::ExitedWithCode(0), "");
    ::unsetenv("YG_KEY_OF_THE_PARENT");
}

}  // namespace
}  // namespace yg::text
