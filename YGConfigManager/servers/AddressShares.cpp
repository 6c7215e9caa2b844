// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/AddressShares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

namespace {

constexpr std::string_view work = "share server addresses";

std::string addressOf(const AddressItem& item) {
    return text::format("%@:%@", item.host(), item.port());
}

std::vector<std::string_view> itemsOf(std::string_view addrs) {
    std::vector<std::string_view> items;
    forEachItem(addrs, [&](std::string_view item) { items.push_back(item); });
    return items;
}

/// Shares, each address once.
class Shares {
public:
    explicit Shares(std::uint64_t ofNumbers) : ofNumbers_(ofNumbers) {}

    /// Which share the address has, with so many numbers more.
    std::size_t add(std::string_view address, std::uint64_t numbers) {
        const std::size_t* const known = places_.find(address);
        const std::size_t place = known ? *known : list.size();
        if (!known) {
            places_.set(address, place);
            list.push_back({std::string(address), 0, ofNumbers_});
        }
        list[place].numbers += numbers;
        return place;
    }

    std::size_t placeOf(std::string_view address) const { return *places_.find(address); }

    std::vector<AddressShare> list;

private:
    std::uint64_t ofNumbers_;
    RecordMap<std::size_t> places_;
};

/// The plain choice with its shares. The text must outlive it.
struct PlainChoice {
    explicit PlainChoice(std::string_view addrs) {
        for (const std::string_view item : itemsOf(addrs))
            choice.add(AddressItem(item));
        for (std::size_t i = 0; i < choice.items().size(); ++i)
            places.push_back(shares.add(addressOf(choice.items()[i]), choice.numbersFor(i)));
    }

    std::size_t draw(RandomSource& random) const {
        return places[static_cast<std::size_t>(&choice.draw(random) - choice.items().data())];
    }

    AddressChoice choice;
    Shares shares{AddressChoice::randomNumbers};
    std::vector<std::size_t> places;  ///< which share each item has
};

/// The same of the weighted one.
struct WeightedChoice {
    explicit WeightedChoice(std::string_view addrs) : choice(itemsOf(addrs)) {
        choice.forEachAnswer([this](std::string_view answer, std::uint64_t numbers) {
            shares.add(answer, numbers);
        });
    }

    std::size_t draw(RandomSource& random) const { return shares.placeOf(choice.draw(random)); }

    HostChoice choice;
    Shares shares{HostChoice::randomNumbers};
};

template <class Use>
auto withChoice(std::string_view addrs, AddressRule rule, Use&& use) {
    return rule == AddressRule::plain ? use(PlainChoice(addrs)) : use(WeightedChoice(addrs));
}

/// The share of all other addresses.
double chanceOfOthers(const AddressShare& share) {
    return static_cast<double>(share.ofNumbers - share.numbers) /
           static_cast<double>(share.ofNumbers);
}

/// The least number of hits that `choices` with this chance do not exceed in 99 of 100 cases, from
/// the terms of the distribution: each follows from the one beside it, and their sum is known to be
/// 1, so it is enough to begin at the greatest with any number. Takes time in proportion to the
/// deviation.
std::uint64_t binomialQuantile(std::uint64_t choices, double chance, double others) {
    constexpr double smallest = 1e-18;  // of the greatest; what is left out adds nothing
    const double odds = chance / others;
    const auto all = static_cast<double>(choices);
    const auto mode = std::min(choices, static_cast<std::uint64_t>((all + 1) * chance));
    const auto next = [&](std::uint64_t hits, double term) {
        return term * odds * static_cast<double>(choices - hits) / static_cast<double>(hits + 1);
    };
    double upTo = 1;
    double term = 1;
    for (std::uint64_t hits = mode; hits > 0 && term > smallest; --hits) {
        term *= static_cast<double>(hits) / (odds * static_cast<double>(choices - hits + 1));
        upTo += term;
    }
    double sum = upTo;
    term = 1;
    for (std::uint64_t hits = mode; hits < choices && term > smallest; ++hits)
        sum += term = next(hits, term);
    std::uint64_t hits = mode;
    term = 1;
    for (; hits < choices && upTo < 0.99 * sum; ++hits)
        upTo += term = next(hits, term);
    return hits;
}

}  // namespace

std::vector<AddressShare> addressShares(OptionalText addrs, AddressRule rule) {
    return guarded(work, [&] {
        return withChoice(*addrs, rule, [](auto&& made) { return std::move(made.shares.list); });
    });
}

std::string withoutAddress(OptionalText addrs, OptionalText address) {
    return guarded(work, [&] {
        std::string kept;
        bool isFirst = true;
        forEachItem(*addrs, [&](std::string_view text) {
            const AddressItem item(text);
            if ((item.isOffered() ? addressOf(item) : std::string(text)) == *address)
                return;
            if (!std::exchange(isFirst, false))
                kept += ';';
            kept += text;
        });
        return kept;
    });
}

double chanceOfAnother(const std::vector<AddressShare>& before,
                       const std::vector<AddressShare>& after) {
    return guarded(work, [&] {
        RecordMap<double> others;
        for (const AddressShare& share : after)
            others.set(share.address, chanceOfOthers(share));
        double sum = 0;
        for (const AddressShare& share : before) {
            const double* const other = others.find(share.address);
            sum += share.chance() * (other ? *other : 1);
        }
        return sum;
    });
}

double chanceOfMove(const std::vector<AddressShare>& shares, std::uint64_t reloads) {
    double sum = 0;
    for (const AddressShare& share : shares) {
        // 1 - chance^reloads, without losing digits of a chance near 1.
        if (reloads > 0 && share.numbers > 0)
            sum -= share.chance() *
                   std::expm1(static_cast<double>(reloads) * std::log1p(-chanceOfOthers(share)));
    }
    return sum;
}

std::uint64_t worstLoad(const AddressShare& share, std::uint64_t choices) {
    if (share.numbers == 0)
        return 0;
    if (share.numbers >= share.ofNumbers)
        return choices;
    const double others = chanceOfOthers(share);
    const double variance = static_cast<double>(choices) * share.chance() * others;
    if (variance <= 1e7)
        return binomialQuantile(choices, share.chance(), others);
    // The expansion of Cornish and Fisher up to the skewness; the next term is below one thousandth
    // of a client, and the half is that of the step.
    constexpr long double normal = 2.3263478740408411L;  // the quantile of the normal distribution
    const long double mean = static_cast<long double>(choices) *
                             (static_cast<long double>(share.numbers) / share.ofNumbers);
    const long double skewness = (others - share.chance()) * (normal * normal - 1) / 6;
    return static_cast<std::uint64_t>(
        std::ceil(mean + normal * std::sqrt(variance) + skewness - 0.5L));
}

FleetDraws drawFleet(OptionalText addrs, AddressRule rule, std::uint64_t clients,
                     std::uint64_t reloads, RandomSource& random) {
    return guarded(work, [&] {
        return withChoice(*addrs, rule, [&](const auto& choice) {
            FleetDraws draws;
            draws.loads.resize(choice.shares.list.size());
            if (draws.loads.empty())
                return draws;
            for (std::uint64_t client = 0; client < clients; ++client) {
                const std::size_t first = choice.draw(random);
                std::size_t last = first;
                for (std::uint64_t reload = 0; reload < reloads; ++reload) {
                    const std::size_t next = choice.draw(random);
                    draws.moves += next != last;
                    last = next;
                }
                ++draws.loads[last];
                draws.movedClients += last != first;
            }
            return draws;
        });
    });
}

}  // namespace yg
