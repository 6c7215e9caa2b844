// SPDX-License-Identifier: MIT
//
// The two choices of an address.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/Format.h"

#include "servers/ScriptedRandomSource.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using yg::testing::ScriptedRandomSource;
using Items = std::vector<std::string>;

std::string chooseNew(const Items& items, ScriptedRandomSource& random) {
    return chooseAddress(&items, random);
}

std::string choose(const Items& items, ScriptedRandomSource& random) {
    return chooseHostByPercent(&items, random);
}

TEST(AddressItem, IsCutAtEveryColon) {
    const auto parts = [](std::string_view item) {
        const AddressItem cut(item);
        return Items{std::string(cut.part(0)), std::string(cut.part(1)), std::string(cut.part(2)),
                     std::to_string(cut.count())};
    };
    EXPECT_THAT(parts(""), ElementsAre("", "", "", "1"));
    EXPECT_THAT(parts("a"), ElementsAre("a", "", "", "1"));
    EXPECT_THAT(parts(":"), ElementsAre("", "", "", "2"));
    EXPECT_THAT(parts("a:b"), ElementsAre("a", "b", "", "2"));
    EXPECT_THAT(parts("1:a:b"), ElementsAre("1", "a", "b", "3"));
    EXPECT_THAT(parts("1:a:b:c:"), ElementsAre("1", "a", "b", "5"));
}

// ---- The uniform choice ----------------------------------------------------------------------

TEST(UniformChoice, OfNothingUsableIsEmpty) {
    ScriptedRandomSource random;
    EXPECT_EQ(chooseAddress(nullptr, random), "");
    EXPECT_EQ(chooseNew({}, random), "");
    EXPECT_EQ(chooseNew({"", "abc"}, random), "");
}

TEST(UniformChoice, OfOneItemDrawsNoRandomNumber) {
    ScriptedRandomSource random;
    EXPECT_EQ(chooseNew({"10.0.0.1:80"}, random), "10.0.0.1:80");
    EXPECT_EQ(chooseNew({"", "abc", "10.0.0.1:80", ""}, random), "10.0.0.1:80");
}

TEST(UniformChoice, OfTwoWeightedItemsGivesEachHalfOfTheTime) {
    const Items items{"30:10.0.0.1:80", "70:10.0.0.2:81"};
    // Every second number leads to the first one, whatever the weights.
    ScriptedRandomSource random({0, 1, 2, 3, 0xFFFFFFFE, 0xFFFFFFFF});
    EXPECT_EQ(chooseNew(items, random), "10.0.0.1:80");
    EXPECT_EQ(chooseNew(items, random), "10.0.0.2:81");
    EXPECT_EQ(chooseNew(items, random), "10.0.0.1:80");
    EXPECT_EQ(chooseNew(items, random), "10.0.0.2:81");
    EXPECT_EQ(chooseNew(items, random), "10.0.0.1:80");
    EXPECT_EQ(chooseNew(items, random), "10.0.0.2:81");
    EXPECT_TRUE(random.uniformNumbers.empty());
}

TEST(UniformChoice, TakesSecondAndThirdOfFourParts) {
    ScriptedRandomSource random;
    EXPECT_EQ(chooseNew({"1:2:3:4"}, random), "2:3");
}

TEST(UniformChoice, CountsUsableItemsOnly) {
    const Items items{"a", "b:1", "", "9:c:2", ":", "d:3:"};
    ScriptedRandomSource random({0, 1, 2, 3, 4});
    EXPECT_EQ(chooseNew(items, random), "b:1");
    EXPECT_EQ(chooseNew(items, random), "c:2");
    EXPECT_EQ(chooseNew(items, random), ":");
    EXPECT_EQ(chooseNew(items, random), "3:");
    EXPECT_EQ(chooseNew(items, random), "b:1");
}

TEST(UniformChoice, TakesTheNumberModuloTheCount) {
    const Items items{"a:0", "a:1", "a:2"};
    ScriptedRandomSource random({5, 4294967295u, 4294967294u});
    EXPECT_EQ(chooseNew(items, random), "a:2");
    EXPECT_EQ(chooseNew(items, random), "a:0");
    EXPECT_EQ(chooseNew(items, random), "a:2");
}

TEST(UniformChoice, LeavesTextsAsTheyStand) {
    ScriptedRandomSource random;
    EXPECT_EQ(chooseNew({" 10.0.0.1 : 80 "}, random), " 10.0.0.1 : 80 ");
    EXPECT_EQ(chooseNew({"主机:端口"}, random), "主机:端口");
    EXPECT_EQ(chooseNew({"100:[fe80::1]:80"}, random), "[fe80:");
}

/// The chi-square statistic of the counts against equal chances.
template <std::size_t size>
double chiSquare(const std::array<int, size>& counts, int draws) {
    const double expected = static_cast<double>(draws) / size;
    double sum = 0;
    for (const int count : counts)
        sum += (count - expected) * (count - expected) / expected;
    return sum;
}

// The statistic of ten addresses has nine degrees of freedom. Above 65 it comes with probability
// 1.4e-10, so in 10,000 runs of this test a false alarm has a chance of one in 700,000. The bias of
// the modulo adds nothing that counts: with ten addresses six of them have one number more among
// 429,496,729. Chances in the proportion of the weights would give about 40,000, an address that
// comes a tenth more often than it should about 110.
TEST(UniformChoice, OfTheSystemsNumbersIsUniform) {
    constexpr int addresses = 10;
    constexpr int draws = 100'000;
    Items items;
    for (int i = 0; i < addresses; ++i)
        items.push_back(text::format("%d:10.0.0.1:%d", 10 * i, i));
    std::array<int, addresses> counts{};
    for (int i = 0; i < draws; ++i)
        ++counts[static_cast<std::size_t>(YGServerAddrListTag::changeIpByPercentNew(&items).back() -
                                          '0')];
    EXPECT_LT(chiSquare(counts, draws), 65.0);
}

// Two draws in a row as one of 25 pairs: 24 degrees of freedom, above 100 with probability 3.0e-11.
TEST(UniformChoice, OfTheSystemsNumbersDoesNotDependOnTheOneBefore) {
    constexpr int draws = 100'000;
    Items items;
    for (int i = 0; i < 5; ++i)
        items.push_back(text::format("10.0.0.1:%d", i));
    std::array<int, 25> counts{};
    for (int i = 0; i < draws; ++i) {
        const auto first = static_cast<std::size_t>(
            YGServerAddrListTag::changeIpByPercentNew(&items).back() - '0');
        const auto second = static_cast<std::size_t>(
            YGServerAddrListTag::changeIpByPercentNew(&items).back() - '0');
        ++counts[first * 5 + second];
    }
    EXPECT_LT(chiSquare(counts, draws), 100.0);
}

// Forty equal numbers of 32 bits come by chance once in 2 to the power of 1248.
TEST(UniformChoice, DrawsOtherNumbersOnEachThread) {
    const auto draw = [](std::vector<std::uint32_t>& numbers) {
        for (int i = 0; i < 40; ++i)
            numbers.push_back(systemRandomSource().uniform());
    };
    std::vector<std::uint32_t> here;
    std::vector<std::uint32_t> there;
    std::thread thread([&] { draw(there); });
    draw(here);
    thread.join();
    EXPECT_NE(here, there);
}

// ---- The choice by weight --------------------------------------------------------------------

TEST(WeightedChoice, OfNothingIsEmpty) {
    ScriptedRandomSource random;
    EXPECT_EQ(chooseHostByPercent(nullptr, random), "");
    EXPECT_EQ(choose({}, random), "");
}

TEST(WeightedChoice, TakesThePortOfTwoPartsForTheHost) {
    ScriptedRandomSource random;
    for (const int number : {0, 9, 10, 2147483647}) {
        random.legacyNumbers.push_back(number);
        EXPECT_EQ(choose({"10.0.0.1:80"}, random), "80");
    }
}

TEST(WeightedChoice, WithoutWeightAnswersTheFirstItemAsItStands) {
    ScriptedRandomSource random;
    EXPECT_EQ(choose({"0:10.0.0.1:80", "abc:10.0.0.2:81"}, random), "0:10.0.0.1:80");
    EXPECT_EQ(choose({"host"}, random), "host");
    EXPECT_EQ(choose({"", "host"}, random), "");
    EXPECT_EQ(choose({"5:a:1", "-5:b:1"}, random), "5:a:1");
}

TEST(WeightedChoice, OfOneHostIsThatHost) {
    ScriptedRandomSource random;
    for (const int number : {0, 99, 100, 2147483647}) {
        random.legacyNumbers.push_back(number);
        EXPECT_EQ(choose({"100:10.0.0.1:80"}, random), "10.0.0.1");
    }
}

TEST(WeightedChoice, OfOneHostTwiceIsThatHost) {
    ScriptedRandomSource random;
    for (int number = 0; number < 200; ++number) {
        random.legacyNumbers.push_back(number);
        EXPECT_EQ(choose({"50:h:1", "50:h:2"}, random), "h");
    }
}

TEST(WeightedChoice, KeepsTheLastTotalOfAHost) {
    // a has 10 first and 30 in the end, so it qualifies for every number.
    ScriptedRandomSource random;
    for (int number = 0; number < 30; ++number) {
        random.legacyNumbers.push_back(number);
        const std::string host = choose({"10:a:1", "10:b:1", "10:a:2"}, random);
        EXPECT_TRUE(number < 20 || host == "a") << number << host;
    }
}

/// The answer worked out from running totals and the order in which a hash map is gone through.
std::string expectedHost(const std::vector<std::pair<std::string, std::uint64_t>>& runningTotals,
                         std::uint64_t drawn) {
    std::unordered_map<std::string_view, std::uint64_t> map;
    for (const auto& [host, total] : runningTotals)
        map[host] = total;
    for (const auto& [host, total] : map) {
        if (total > drawn)
            return std::string(host);
    }
    return "";
}

// Often the map begins with the host that came last, which qualifies for every number. So several
// lists are tried, and at least one of them has to answer with more than one host.
TEST(WeightedChoice, TakesTheFirstInHashOrderWhoseRunningTotalIsGreater) {
    std::size_t mostAnswers = 0;
    for (int list = 0; list < 40; ++list) {
        Items items{"", "alone"};
        std::vector<std::pair<std::string, std::uint64_t>> totals{{"alone", 0}};
        std::uint64_t total = 0;
        for (int i = 0; i < 20; ++i) {
            const std::string host = text::format("host%d", list * 20 + i);
            items.push_back(text::format("%d:%@:80", 1 + i % 3, host));
            total += static_cast<std::uint64_t>(1 + i % 3);
            totals.emplace_back(host, total);
        }
        std::set<std::string> answers;
        ScriptedRandomSource random;
        for (int number = 0; number < 100; ++number) {
            random.legacyNumbers.push_back(number);
            const std::string answer = choose(items, random);
            EXPECT_EQ(answer, expectedHost(totals, static_cast<std::uint64_t>(number) % total))
                << list << ' ' << number;
            answers.insert(answer);
        }
        mostAnswers = std::max(mostAnswers, answers.size());
    }
    EXPECT_GE(mostAnswers, 2u);
}

// In the order of the input the first host would be chosen for every number below its weight.
TEST(WeightedChoice, DoesNotGoInTheOrderOfTheInput) {
    Items items;
    for (int i = 0; i < 50; ++i)
        items.push_back(text::format("10:host%d:80", i));
    ScriptedRandomSource random;
    random.legacyNumbers = {0};
    EXPECT_NE(choose(items, random), "host0");
}

// Weights 50 and 50: the host that the map happens to give first has more than half of the numbers
// below its total, the other one never or seldom.
TEST(WeightedChoice, ChancesAreNotThePercentages) {
    ScriptedRandomSource random;
    std::unordered_map<std::string, int> counts;
    for (int number = 0; number < 100; ++number) {
        random.legacyNumbers.push_back(number);
        ++counts[choose({"50:a:1", "50:b:1"}, random)];
    }
    const bool bComesFirst = expectedHost({{"a", 50}, {"b", 100}}, 0) == "b";
    EXPECT_EQ(counts["b"], bComesFirst ? 100 : 50);
}

TEST(WeightedChoice, ReadsWeightsAsLeadingNumbers) {
    // 12, 0 and 5 give totals 12, 12 and 17.
    const Items items{" 12abc:a:1", "x9:b:1", "+5:c:1"};
    ScriptedRandomSource random;
    for (int number = 0; number < 17; ++number) {
        random.legacyNumbers.push_back(number);
        EXPECT_EQ(choose(items, random), expectedHost({{"a", 12}, {"b", 12}, {"c", 17}},
                                                      static_cast<std::uint64_t>(number)));
    }
}

TEST(WeightedChoice, WrapsTotalsAroundWithoutSign) {
    // a's total is 10, b's 2 to the power of 64 less 10, which is T too.
    const Items items{"10:a:1", "-20:b:1"};
    const std::uint64_t wrapped = 0 - std::uint64_t{10};
    ScriptedRandomSource random;
    for (const int number : {0, 9, 10, 2147483647}) {
        random.legacyNumbers.push_back(number);
        EXPECT_EQ(choose(items, random),
                  expectedHost({{"a", 10}, {"b", wrapped}}, static_cast<std::uint64_t>(number)));
    }
}

TEST(WeightedChoice, AddsUpTheLargestWeights) {
    // Twice 2 to the power of 63 less 1, clamped once, then 2 more: the sum wraps to 0.
    const Items items{"9223372036854775807:a:1", "99999999999999999999:b:1", "2:c:1"};
    ScriptedRandomSource random;
    EXPECT_EQ(choose(items, random), "9223372036854775807:a:1");
}

/// A text of 16 bytes with the hash that all of these have in libstdc++: its last steps backwards.
std::string hostOfOneHash(std::uint64_t number) {
    constexpr std::uint64_t factor = 0xC6A4A7935BD1E995;
    constexpr std::uint64_t inverse = 0x5F7A0EA7E59B19BD;
    static_assert(factor * inverse == 1);
    const auto mixed = [](std::uint64_t word) { return word ^ (word >> 47); };
    const std::uint64_t begun =
        (0xC70F6907 ^ (16 * factor) ^ (mixed(number * factor) * factor)) * factor;
    const std::array<std::uint64_t, 2> words{number, mixed(begun * inverse) * inverse};
    std::string host(16, '\0');
    std::memcpy(host.data(), words.data(), sizeof words);
    return host;
}

// Looked up in the hash map one by one, they would take 10 to the power of 10 steps, each of which
// compares texts.
TEST(WeightedChoice, TakesTimeInProportionForHostsOfOneHash) {
    EXPECT_EQ(std::hash<std::string>()(hostOfOneHash(1)),
              std::hash<std::string>()(hostOfOneHash(2)));
    Items items;
    for (std::uint64_t i = 0; items.size() < 200'000; ++i) {
        std::string item = hostOfOneHash(i);
        if (item.find(':') == std::string::npos)
            items.push_back("1:" + std::move(item));
    }
    ScriptedRandomSource random;
    random.legacyNumbers = {0};
    EXPECT_EQ(choose(items, random).size(), 16u);
}

// The table ends when one bucket is full, so that the numbers of the hosts behind have no host.
TEST(WeightedChoice, HasAShareWithoutHostForHostsOfOneHash) {
    std::string addrs;
    for (std::uint64_t i = 0, count = 0; count < 100; ++i) {
        const std::string host = hostOfOneHash(i);
        if (host.find_first_of(":;") != std::string::npos)
            continue;
        addrs += (count++ == 0 ? "1:" : ";1:") + host;
    }
    const std::vector<AddressShare> shares = addressShares(addrs, AddressRule::weighted);
    ASSERT_EQ(shares.size(), 101u);
    EXPECT_EQ(shares.back().address, "");
    Items items;
    forEachItem(addrs, [&](std::string_view item) { items.emplace_back(item); });
    std::uint64_t without = 0;
    ScriptedRandomSource random;
    for (int number = 0; number < 100; ++number) {
        random.legacyNumbers = {number};
        without += choose(items, random).empty();
    }
    EXPECT_GT(without, 0u);
    // 48 numbers are left behind the last whole hundred, too few to reach these.
    EXPECT_EQ(shares.back().numbers, without * 21'474'836);
}

TEST(WeightedChoice, DrawsFromRand) {
    // Seeded here, never by the library: the same seed gives the same choices.
    Items items;
    for (int i = 0; i < 100; ++i)
        items.push_back(text::format("1:h%d:1", i));
    const auto series = [&] {
        std::srand(20);
        Items chosen;
        for (int i = 0; i < 50; ++i)
            chosen.push_back(YGServerAddrListTag::changeIpByPercent(&items));
        return chosen;
    };
    const Items first = series();
    EXPECT_EQ(series(), first);
    std::srand(20);
    std::vector<std::pair<std::string, std::uint64_t>> totals;
    for (std::uint64_t i = 0; i < 100; ++i)
        totals.emplace_back(text::format("h%d", i), i + 1);
    EXPECT_EQ(first.front(), expectedHost(totals, static_cast<std::uint64_t>(std::rand()) % 100));
}

}  // namespace
}  // namespace yg
