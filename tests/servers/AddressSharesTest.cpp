// SPDX-License-Identifier: MIT
//
// The shares of addresses, held against the choices themselves, and what follows from them for a
// fleet.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/text/Format.h"

#include "servers/ScriptedRandomSource.h"

namespace yg {

// Google Test prints them and looks them up by their type.
bool operator==(const AddressShare& left, const AddressShare& right) {
    return left.address == right.address && left.numbers == right.numbers &&
           left.ofNumbers == right.ofNumbers;
}
void PrintTo(const AddressShare& share, std::ostream* out) {
    *out << share.address << ' ' << share.numbers << " of " << share.ofNumbers;
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::ScriptedRandomSource;

constexpr std::uint64_t uniformNumbers = 0x1'0000'0000;
constexpr std::uint64_t legacyNumbers = std::uint64_t{RAND_MAX} + 1;
constexpr AddressRule bothRules[] = {AddressRule::plain, AddressRule::weighted};

std::vector<std::string> itemsOf(std::string_view addrs) {
    std::vector<std::string> items;
    forEachItem(addrs, [&](std::string_view item) { items.emplace_back(item); });
    return items;
}

/// A fixed series of numbers, each as likely as the others.
class SeededRandomSource final : public RandomSource {
public:
    std::uint32_t uniform() override { return static_cast<std::uint32_t>(engine_()); }
    int legacy() override { return static_cast<int>(engine_() % legacyNumbers); }

private:
    std::mt19937_64 engine_{20};
};

std::string chosen(std::string_view addrs, AddressRule rule, RandomSource& random) {
    const std::vector<std::string> items = itemsOf(addrs);
    return rule == AddressRule::plain ? chooseAddress(&items, random)
                                      : chooseHostByPercent(&items, random);
}

/// A list of up to twelve items with hosts and weights that repeat, some of them odd.
std::string anyAddrs(std::mt19937& engine) {
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(engine() % bound); };
    std::string addrs;
    for (unsigned i = 0, count = 1 + below(12); i < count; ++i) {
        if (i > 0)
            addrs += ';';
        const std::string host = text::format("h%d", below(9));
        switch (below(8)) {
            case 0:
                break;
            case 1:
                addrs += host;
                break;
            case 2:
                addrs += host + ":80";
                break;
            case 3:
                addrs += text::format("-%d:%@:80", below(30), host);
                break;
            default:
                addrs += text::format("%d:%@:%d", below(60), host, 80 + below(2));
        }
    }
    return addrs;
}

TEST(RemaindersBelow, CountsThem) {
    for (std::uint64_t count = 0; count < 40; ++count) {
        for (std::uint64_t divisor = 1; divisor < 50; ++divisor) {
            for (std::uint64_t bound = 0; bound < 52; ++bound) {
                std::uint64_t counted = 0;
                for (std::uint64_t number = 0; number < count; ++number)
                    counted += number % divisor < bound;
                ASSERT_EQ(remaindersBelow(bound, divisor, count), counted)
                    << bound << ' ' << divisor << ' ' << count;
            }
        }
    }
}

TEST(PlainShares, AreEqualButForTheRemainder) {
    EXPECT_THAT(addressShares("40:a:1;b:2;x;;9:c:3:4"),
                ElementsAre(AddressShare{"a:1", 1431655766, uniformNumbers},
                            AddressShare{"b:2", 1431655765, uniformNumbers},
                            AddressShare{"c:3", 1431655765, uniformNumbers}));
    EXPECT_THAT(addressShares("99:a:1"),
                ElementsAre(AddressShare{"a:1", uniformNumbers, uniformNumbers}));
}

TEST(PlainShares, OfAnAddressThatIsThereTwiceAddUp) {
    EXPECT_THAT(addressShares("a:1;b:2;9:a:1;a:2"),
                ElementsAre(AddressShare{"a:1", uniformNumbers / 2, uniformNumbers},
                            AddressShare{"b:2", uniformNumbers / 4, uniformNumbers},
                            AddressShare{"a:2", uniformNumbers / 4, uniformNumbers}));
}

TEST(PlainShares, OfNothingUsableAreNone) {
    EXPECT_THAT(addressShares(nullptr), IsEmpty());
    EXPECT_THAT(addressShares(""), IsEmpty());
    EXPECT_THAT(addressShares("a;b;"), IsEmpty());
}

// The number behind the last one of an item's remainder leads to the next item.
TEST(PlainShares, EndWhereTheNumbersEnd) {
    for (std::uint32_t count = 2; count < 60; ++count) {
        std::string addrs = "h:0";
        for (std::uint32_t i = 1; i < count; ++i)
            addrs += text::format(";h:%d", i);
        const std::vector<AddressShare> shares = addressShares(addrs);
        ASSERT_EQ(shares.size(), count);
        for (std::uint32_t i = 0; i < count; ++i) {
            // The last of its numbers, and the first that would be too large.
            const std::uint64_t last = (shares[i].numbers - 1) * count + i;
            ASSERT_LT(last, uniformNumbers);
            ASSERT_GE(last + count, uniformNumbers);
            ScriptedRandomSource random({i, static_cast<std::uint32_t>(last)});
            EXPECT_EQ(chosen(addrs, AddressRule::plain, random), shares[i].address);
            EXPECT_EQ(chosen(addrs, AddressRule::plain, random), shares[i].address);
        }
    }
}

TEST(WeightedShares, OfOneHostOrOfNoWeightAreCertain) {
    const auto shares = [](std::string_view addrs) {
        return addressShares(addrs, AddressRule::weighted);
    };
    EXPECT_THAT(shares("100:a:80"), ElementsAre(AddressShare{"a", legacyNumbers, legacyNumbers}));
    EXPECT_THAT(shares("9:80"), ElementsAre(AddressShare{"80", legacyNumbers, legacyNumbers}));
    EXPECT_THAT(shares("0:a:80;b"),
                ElementsAre(AddressShare{"0:a:80", legacyNumbers, legacyNumbers}));
    EXPECT_THAT(shares(""), ElementsAre(AddressShare{"", legacyNumbers, legacyNumbers}));
}

// A whole cycle of remainders, drawn number by number; the numbers behind the last whole cycle lead
// to the first remainders.
TEST(WeightedShares, AreThoseOfEveryNumber) {
    std::mt19937 engine(1);
    std::size_t lists = 0;
    for (int i = 0; i < 300; ++i) {
        const std::string addrs = anyAddrs(engine);
        std::int64_t total = 0;
        for (const std::string& item : itemsOf(addrs)) {
            if (item.find(':') != std::string::npos)
                total += std::strtoll(item.c_str(), nullptr, 10);
        }
        if (total <= 0)
            continue;
        ++lists;
        const auto cycle = static_cast<std::uint64_t>(total);
        std::map<std::string, std::uint64_t> numbers;
        for (std::uint64_t number = 0; number < cycle; ++number) {
            ScriptedRandomSource random;
            random.legacyNumbers = {static_cast<int>(number)};
            numbers[chosen(addrs, AddressRule::weighted, random)] +=
                legacyNumbers / cycle + (number < legacyNumbers % cycle);
        }
        std::uint64_t all = 0;
        for (const AddressShare& share : addressShares(addrs, AddressRule::weighted)) {
            const auto found = numbers.find(share.address);
            EXPECT_EQ(share.numbers, found == numbers.end() ? 0 : found->second)
                << addrs << ' ' << share.address;
            all += share.numbers;
        }
        EXPECT_EQ(all, legacyNumbers) << addrs;
    }
    EXPECT_GT(lists, 200u);
}

/// The least statistic that chi-square with so many degrees of freedom exceeds with a chance of
/// about 10^-6, after Wilson and Hilferty.
double limitOf(double freedom) {
    const double step = 2 / (9 * freedom);
    return freedom * std::pow(1 - step + 4.7534 * std::sqrt(step), 3);
}

// Ten million numbers of a fixed series: the same in each run.
TEST(Shares, AgreeWithTenMillionChoices) {
    for (const AddressRule rule : bothRules) {
        const std::string addrs =
            "10:a:1;20:b:1;5:c:2;30:a:1;15:d:1;e:7;x;1:f:1;40:g:1;3:h:1;12:i:1;7:j:1";
        constexpr std::uint64_t clients = 5'000'000;
        SeededRandomSource random;
        const FleetDraws draws = drawFleet(addrs, rule, clients, 1, random);
        const std::vector<AddressShare> shares = addressShares(addrs, rule);
        ASSERT_EQ(draws.loads.size(), shares.size());
        EXPECT_EQ(std::accumulate(draws.loads.begin(), draws.loads.end(), std::uint64_t{0}),
                  clients);
        double statistic = 0;
        double freedom = -1;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            if (shares[i].numbers == 0) {
                EXPECT_EQ(draws.loads[i], 0u) << shares[i].address;
                continue;
            }
            const double expected = shares[i].chance() * clients;
            const double off = static_cast<double>(draws.loads[i]) - expected;
            statistic += off * off / expected;
            ++freedom;
        }
        EXPECT_GE(freedom, 1);
        EXPECT_LT(statistic, limitOf(freedom));
        EXPECT_EQ(draws.moves, draws.movedClients);
        // Within five deviations of what is expected.
        const double moved = chanceOfAnother(shares, shares);
        EXPECT_NEAR(static_cast<double>(draws.moves), moved * clients,
                    5 * std::sqrt(moved * (1 - moved) * clients));
    }
}

// The numbers of one series, once drawn for the fleet, once for choices one by one.
TEST(DrawnFleet, ChoosesAsTheChoicesDo) {
    std::mt19937 engine(2);
    for (int i = 0; i < 100; ++i) {
        const std::string addrs = anyAddrs(engine);
        for (const AddressRule rule : bothRules) {
            const std::vector<AddressShare> shares = addressShares(addrs, rule);
            SeededRandomSource random;
            const FleetDraws draws = drawFleet(addrs, rule, 50, 2, random);
            if (shares.empty()) {
                EXPECT_THAT(draws.loads, IsEmpty());
                continue;
            }
            SeededRandomSource again;
            std::map<std::string, std::uint64_t> loads;
            std::uint64_t moves = 0;
            std::uint64_t moved = 0;
            for (int client = 0; client < 50; ++client) {
                const std::string first = chosen(addrs, rule, again);
                const std::string second = chosen(addrs, rule, again);
                const std::string third = chosen(addrs, rule, again);
                ++loads[third];
                moves += (second != first) + (third != second);
                moved += third != first;
            }
            for (std::size_t at = 0; at < shares.size(); ++at)
                EXPECT_EQ(draws.loads[at], loads[shares[at].address]) << addrs;
            EXPECT_EQ(draws.moves, moves) << addrs;
            EXPECT_EQ(draws.movedClients, moved) << addrs;
        }
    }
}

TEST(WithoutAddress, LeavesOutItsItems) {
    EXPECT_EQ(withoutAddress("40:a:1;b:2;a:1;9:a:1:x;a:2", "a:1"), "b:2;a:2");
    EXPECT_EQ(withoutAddress("a;b:2;;", "a"), "b:2;;");
    EXPECT_EQ(withoutAddress("a:1;;b", ""), "a:1;b");
    EXPECT_EQ(withoutAddress("a:1;b:2", "40:a:1"), "a:1;b:2");
    EXPECT_EQ(withoutAddress("a:1", "a:1"), "");
    EXPECT_EQ(withoutAddress(nullptr, nullptr), "");
}

TEST(ChanceOfAnother, IsThatOfTwoChoices) {
    const std::vector<AddressShare> before{{"a", 1, 2}, {"b", 1, 4}, {"c", 1, 4}};
    const std::vector<AddressShare> after{{"c", 1, 2}, {"b", 1, 2}};
    EXPECT_DOUBLE_EQ(chanceOfAnother(before, before), 0.625);
    EXPECT_DOUBLE_EQ(chanceOfAnother(before, after), 0.75);
    EXPECT_DOUBLE_EQ(chanceOfAnother(before, {}), 1);
    EXPECT_DOUBLE_EQ(chanceOfAnother({}, after), 0);
    // 1 less the squares would have no digit that counts.
    const std::vector<AddressShare> nearlyCertain{{"a", uniformNumbers - 1, uniformNumbers},
                                                  {"b", 1, uniformNumbers}};
    EXPECT_DOUBLE_EQ(chanceOfAnother(nearlyCertain, nearlyCertain),
                     2.0 * 4294967295.0 / 18446744073709551616.0);
}

TEST(ChanceOfMove, GrowsWithTheReloads) {
    const std::vector<AddressShare> shares{{"a", 3, 4}, {"b", 1, 4}, {"c", 0, 4}};
    EXPECT_EQ(chanceOfMove(shares, 0), 0);
    EXPECT_DOUBLE_EQ(chanceOfMove(shares, 1), chanceOfAnother(shares, shares));
    EXPECT_DOUBLE_EQ(chanceOfMove(shares, 2), 0.75 * (1 - 0.5625) + 0.25 * (1 - 0.0625));
    EXPECT_DOUBLE_EQ(chanceOfMove(shares, UINT64_MAX), 1);
    EXPECT_EQ(chanceOfMove({{"a", 4, 4}}, UINT64_MAX), 0);
    EXPECT_EQ(chanceOfMove({}, 1), 0);
}

/// From the chances of all numbers of hits, added up client by client.
std::uint64_t worstOfAll(const AddressShare& share, std::uint64_t choices) {
    std::vector<long double> chances{1};
    const long double chance = static_cast<long double>(share.numbers) / share.ofNumbers;
    for (std::uint64_t i = 0; i < choices; ++i) {
        chances.push_back(0);
        for (std::size_t hits = chances.size() - 1; hits > 0; --hits)
            chances[hits] = chances[hits] * (1 - chance) + chances[hits - 1] * chance;
        chances[0] *= 1 - chance;
    }
    long double upTo = chances[0];
    std::uint64_t hits = 0;
    while (upTo < 0.99L)
        upTo += chances[++hits];
    return hits;
}

TEST(WorstLoad, IsThatOfTheExactDistribution) {
    for (std::uint64_t choices = 0; choices < 90; ++choices) {
        for (std::uint64_t numbers = 1; numbers < 97; ++numbers) {
            const AddressShare share{"a", numbers, 97};
            ASSERT_EQ(worstLoad(share, choices), worstOfAll(share, choices))
                << choices << ' ' << numbers;
        }
    }
    for (const unsigned numbers : {1U, 10U, 500U, 990U, 999U}) {
        const AddressShare share{"a", numbers, 1000};
        EXPECT_EQ(worstLoad(share, 1500), worstOfAll(share, 1500)) << numbers;
    }
}

/// From the chance of each number of hits, worked out by itself.
std::uint64_t worstByGamma(const AddressShare& share, std::uint64_t choices) {
    const long double all = choices;
    const long double chance = static_cast<long double>(share.numbers) / share.ofNumbers;
    const auto chanceOf = [&](long double hits) {
        return std::exp(std::lgamma(all + 1) - std::lgamma(hits + 1) - std::lgamma(all - hits + 1) +
                        hits * std::log(chance) + (all - hits) * std::log1p(-chance));
    };
    const long double deviation = std::sqrt(all * chance * (1 - chance));
    // Down from ten deviations, above which there is nothing, to the quantile.
    std::uint64_t hits =
        std::min(choices, static_cast<std::uint64_t>(all * chance + 10 * deviation + 10));
    long double above = 0;
    while (hits > 0 && (above += chanceOf(hits)) <= 0.01L)
        --hits;
    return hits;
}

TEST(WorstLoad, IsAtMostOneOffForLargeFleets) {
    for (const unsigned numbers : {1U, 70U, 333U, 500U, 930U, 999U}) {
        const AddressShare share{"a", numbers, 1000};
        const double variance = share.chance() * (1 - share.chance());
        // On both sides of where the method changes.
        for (const double size : {9.9e6, 1.01e7}) {
            const auto choices = static_cast<std::uint64_t>(size / variance);
            const std::uint64_t exact = worstByGamma(share, choices);
            EXPECT_LE(worstLoad(share, choices), exact + (size > 1e7)) << numbers << ' ' << size;
            EXPECT_GE(worstLoad(share, choices), exact - (size > 1e7)) << numbers << ' ' << size;
        }
    }
}

TEST(WorstLoad, OfAThousandMillionClientsNeedsNoDraws) {
    // The mean and 2.326 deviations of 15811.
    EXPECT_NEAR(static_cast<double>(worstLoad({"a", 1, 2}, 1'000'000'000)), 500'036'783, 1);
    EXPECT_EQ(worstLoad({"a", 1, 1}, 1'000'000'000'000'000'000), 1'000'000'000'000'000'000u);
    EXPECT_EQ(worstLoad({"a", 0, 2}, 1'000'000'000'000'000'000), 0u);
    EXPECT_NEAR(static_cast<double>(worstLoad({"a", 1, 2}, 1'000'000'000'000'000'000)) - 5e17,
                2.3263478740408411 * 5e8, 64);
}

}  // namespace
}  // namespace yg
