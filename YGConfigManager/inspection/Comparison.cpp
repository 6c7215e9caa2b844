// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Comparison.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "YGConfigManager/text/TextHash.h"

namespace yg {

namespace {

constexpr std::size_t nothing = static_cast<std::size_t>(-1);

/// How often panels are looked for that a page has in another place, one time within what the last
/// one has found.
constexpr std::size_t mostSearches = 8;

/// How many things are looked at to count the pages that show a panel.
constexpr std::size_t mostCounted = 4'000'000;

/// Something that is on both sides, or on one.
template <class Each>
struct Both {
    Each before;
    Each after;
};

struct Listed {
    Item item;
    std::uint32_t path;
};

bool isMatchedByContent(Subject subject) {
    return subject == Subject::panel || subject == Subject::element ||
           subject == Subject::serverEntry;
}

/// Whether its changes are listed once, however many pages or groups have it.
bool isSharedBetweenPages(Subject subject) {
    return subject == Subject::panel || subject == Subject::element || subject == Subject::event;
}

// ---- Matching ----

/// Pairs up what two lists have in common.
class Matching {
public:
    Matching(const std::vector<Item>& before, const std::vector<Item>& after)
        : lists_{&before, &after}, partners_{before.size(), after.size()} {
        // Most lists begin alike.
        std::size_t same = 0;
        while (same < std::min(before.size(), after.size()) && isSame(before[same], after[same]))
            pair(same, same), ++same;
        if (same == before.size() && same == after.size())
            return;
        const auto name = [](const Item& item) { return item.name; };
        match([&](const Item& item) { return std::tuple(name(item), item.thing->id); });
        match([&](const Item& item) { return std::tuple(name(item), item.thing->fieldsId); });
        match([&](const Item& item) { return std::tuple(name(item), 0U); });
        match([&](const Item& item) { return std::tuple(std::string_view(), item.thing->bodyId); },
              &isMatchedByContent);
    }

    /// The index of what an item is matched with; `nothing` for none.
    const std::vector<std::size_t>& ofBefore() const { return partners_.before.of; }
    const std::vector<std::size_t>& ofAfter() const { return partners_.after.of; }

private:
    struct Partners {
        Partners(std::size_t size) : of(size, nothing) {}
        std::vector<std::size_t> of;
    };

    static bool isSame(const Item& one, const Item& other) {
        return one.subject == other.subject && one.name == other.name &&
               one.thing->id == other.thing->id;
    }

    void pair(std::size_t before, std::size_t after) {
        partners_.before.of[before] = after;
        partners_.after.of[after] = before;
    }

    /// Pairs up, in their order, those of equal keys that have no partner.
    template <class KeyOf>
    void match(const KeyOf& keyOf, bool (*isAsked)(Subject) = nullptr) {
        const auto sorted = [&](const std::vector<Item>& items, const Partners& partners) {
            std::vector<std::tuple<Subject, decltype(keyOf(items[0])), std::size_t>> keys;
            for (std::size_t at = 0; at < items.size(); ++at) {
                if (partners.of[at] == nothing && (!isAsked || isAsked(items[at].subject)))
                    keys.emplace_back(items[at].subject, keyOf(items[at]), at);
            }
            std::ranges::sort(keys);
            return keys;
        };
        const auto before = sorted(*lists_.before, partners_.before);
        const auto after = sorted(*lists_.after, partners_.after);
        const auto key = [](const auto& of) { return std::tie(std::get<0>(of), std::get<1>(of)); };
        for (std::size_t i = 0, j = 0; i < before.size() && j < after.size();) {
            if (key(before[i]) < key(after[j]))
                ++i;
            else if (key(after[j]) < key(before[i]))
                ++j;
            else
                pair(std::get<2>(before[i++]), std::get<2>(after[j++]));
        }
    }

    Both<const std::vector<Item>*> lists_;
    Both<Partners> partners_;
};

/// Which of some numbers, all different, form the longest ascending sequence.
std::vector<bool> longestAscending(const std::vector<std::size_t>& numbers) {
    std::vector<std::size_t> ends;  // by length less one: the index with the least last number
    std::vector<std::size_t> previous(numbers.size(), nothing);
    for (std::size_t at = 0; at < numbers.size(); ++at) {
        const auto place = std::ranges::lower_bound(
            ends, numbers[at], {}, [&](std::size_t index) { return numbers[index]; });
        if (place != ends.begin())
            previous[at] = place[-1];
        if (place == ends.end())
            ends.push_back(at);
        else
            *place = at;
    }
    std::vector<bool> isIn(numbers.size());
    for (std::size_t at = ends.empty() ? nothing : ends.back(); at != nothing; at = previous[at])
        isIn[at] = true;
    return isIn;
}

// ---- Comparing ----

class Comparison {
public:
    Comparison(const Things& before, const Things& after, Paths& paths)
        : things_{&before, &after}, paths_(paths) {}

    std::vector<Change> changes() {
        const Item root{Subject::root, "", nullptr};
        compareAll({{root.subject, root.name, &things_.before->root()}, Paths::top},
                   {{root.subject, root.name, &things_.after->root()}, Paths::top});
        countPages();
        return std::move(changes_);
    }

private:
    using Pair = Both<Listed>;

    // ---- What is compared ----

    void compareAll(const Listed& before, const Listed& after) {
        std::vector<Pair> containers{{before, after}};
        while (!containers.empty()) {
            const Pair pair = containers.back();
            containers.pop_back();
            std::vector<Pair> found;
            compareContainer(pair, found);
            // The first found is compared first.
            containers.insert(containers.end(), found.rbegin(), found.rend());
        }
    }

    /// Compares a pair and all in it, but the pages, which are added to `pages`.
    void compareContainer(const Pair& pair, std::vector<Pair>& pages) {
        container_ = pair.after.path;
        const Subject subject = pair.after.item.subject;
        const bool isDefinition = subject == Subject::reusePanel || subject == Subject::magicPanel;
        definition_ = isDefinition ? pair.after.item.thing->definition : "";
        std::vector<Pair> open{pair};
        Both<std::vector<Listed>> left;
        for (std::size_t search = 0; !open.empty(); ++search) {
            std::vector<Pair> next;
            while (!open.empty()) {
                const Pair each = open.back();
                open.pop_back();
                next.clear();
                compare(each, next, left);
                std::ranges::reverse(next);
                for (const Pair& found : next)
                    (hasPanels(found.after.item.subject) ? pages : open).push_back(found);
            }
            find(left, search + 1 < mostSearches, open);
            left = {};
        }
        std::ranges::reverse(pages);
    }

    /// Compares two things without what is in them. Adds what else is to be compared to `next`, and
    /// panels and elements without a partner to `left`.
    void compare(const Pair& pair, std::vector<Pair>& next, Both<std::vector<Listed>>& left) {
        const Thing& before = *pair.before.item.thing;
        const Thing& after = *pair.after.item.thing;
        if (before.fieldsId != after.fieldsId || before.id != after.id)
            compareFields(pair);
        // The lists of things of one kind stand in one order.
        for (std::size_t at = 0; at < std::min(before.lists.size(), after.lists.size()); ++at)
            compareLists(pair, before.lists[at], after.lists[at], next, left);
    }

    void compareFields(const Pair& pair) {
        const Thing& before = *pair.before.item.thing;
        const Thing& after = *pair.after.item.thing;
        const std::vector<ThingField> ofBefore = fieldsOf(before);
        const std::vector<ThingField> ofAfter = fieldsOf(after);
        for (std::size_t at = 0; at < std::min(ofBefore.size(), ofAfter.size()); ++at) {
            if (ofBefore[at].value == ofAfter[at].value)
                continue;
            ChangeSide was{ofBefore[at].value, things_.before->placeOf(before, ofBefore[at]),
                           pair.before.path};
            ChangeSide is{ofAfter[at].value, things_.after->placeOf(after, ofAfter[at]),
                          pair.after.path};
            add({ChangeKind::changed, pair.after.item.subject, std::string(ofAfter[at].name),
                 std::move(was), std::move(is)});
        }
    }

    void compareLists(const Pair& pair, const ItemList& before, const ItemList& after,
                      std::vector<Pair>& next, Both<std::vector<Listed>>& left) {
        if (before.isAbsent != after.isAbsent)
            compareAbsence(pair, before, after);
        const Matching matching(before.items, after.items);
        std::vector<Both<std::size_t>> pairs;
        for (std::size_t at = 0; at < before.items.size(); ++at) {
            const Item& item = before.items[at];
            if (matching.ofBefore()[at] == nothing) {
                if (before.isComplete)
                    leave(item, pair.before.path, left.before, ChangeKind::removed);
                continue;
            }
            pairs.push_back({at, matching.ofBefore()[at]});
            const Item& other = after.items[pairs.back().after];
            if (item.thing->id != other.thing->id && isToBeCompared(item, other))
                next.push_back({listed(item, pair.before.path), listed(other, pair.after.path)});
        }
        for (std::size_t at = 0; at < after.items.size(); ++at) {
            if (matching.ofAfter()[at] == nothing && after.isComplete)
                leave(after.items[at], pair.after.path, left.after, ChangeKind::added);
        }
        if (before.isOrdered)
            compareOrder(pair, before.items, after.items, pairs);
    }

    void compareAbsence(const Pair& pair, const ItemList& before, const ItemList& after) {
        const auto side = [](const Things& things, const Listed& listed, const ItemList& list) {
            return ChangeSide{list.isAbsent ? std::nullopt : std::optional<std::string>("present"),
                              things.placeOf(*listed.item.thing), listed.path};
        };
        add({ChangeKind::changed, pair.after.item.subject, std::string(before.field),
             side(*things_.before, pair.before, before), side(*things_.after, pair.after, after)});
    }

    Listed listed(const Item& item, std::uint32_t above) {
        return {item, paths_.add(above, item.subject, item.name)};
    }

    /// What has no partner where it is listed.
    void leave(const Item& item, std::uint32_t above, std::vector<Listed>& left, ChangeKind kind) {
        const Listed each = listed(item, above);
        if (item.subject == Subject::panel || item.subject == Subject::element)
            left.push_back(each);
        else
            addOneSided(kind, each);
    }

    /// A panel that pages share is compared where it is defined, or else once.
    bool isToBeCompared(const Item& one, const Item& other) {
        const Thing& before = *one.thing;
        const Thing& after = *other.thing;
        if (one.subject != Subject::panel)
            return true;
        if (!before.definition.empty() && before.definition == after.definition)
            return false;
        return !before.isShared || !after.isShared || compared_.insert({&before, &after}).second;
    }

    // ---- Order ----

    /// Of those that stand in another order the fewest count as moved. Which ones must not depend
    /// on which side is the old one.
    void compareOrder(const Pair& pair, const std::vector<Item>& before,
                      const std::vector<Item>& after, const std::vector<Both<std::size_t>>& pairs) {
        if (std::ranges::is_sorted(pairs, {}, &Both<std::size_t>::after))
            return;
        const auto keyOf = [&](const Both<std::size_t>& each) {
            const Item& one = before[each.before];
            const Item& other = after[each.after];
            return std::tuple(std::min(one.name, other.name), std::max(one.name, other.name),
                              std::min(one.thing->order, other.thing->order),
                              std::max(one.thing->order, other.thing->order));
        };
        std::vector<std::size_t> byAfter(pairs.size());
        for (std::size_t at = 0; at < pairs.size(); ++at)
            byAfter[at] = at;
        std::ranges::sort(byAfter, {}, [&](std::size_t at) { return pairs[at].after; });
        bool isTurned = false;
        for (std::size_t at = 0; at < pairs.size(); ++at) {
            const auto one = keyOf(pairs[at]);
            const auto other = keyOf(pairs[byAfter[at]]);
            if (one == other)
                continue;
            isTurned = other < one;
            break;
        }
        std::vector<std::size_t> numbers;
        for (std::size_t at = 0; at < pairs.size(); ++at)
            numbers.push_back(isTurned ? pairs[byAfter[at]].before : pairs[at].after);
        const std::vector<bool> stays = longestAscending(numbers);
        std::vector<std::size_t> moved;
        for (std::size_t at = 0; at < pairs.size(); ++at) {
            if (!stays[at])
                moved.push_back(isTurned ? byAfter[at] : at);
        }
        std::ranges::sort(moved);
        for (const std::size_t at : moved) {
            const auto side = [&](const Things& things, const Listed& list, const Item& item,
                                  std::size_t index) {
                return ChangeSide{std::to_string(index + 1), things.placeOf(*item.thing),
                                  paths_.add(list.path, item.subject, item.name)};
            };
            const Both<std::size_t>& each = pairs[at];
            add({ChangeKind::moved, after[each.after].subject, "",
                 side(*things_.before, pair.before, before[each.before], each.before),
                 side(*things_.after, pair.after, after[each.after], each.after)});
        }
    }

    // ---- Panels and elements that are elsewhere in the page ----

    /// One that was left over, or is in such a panel.
    struct Left {
        Item item;
        std::uint32_t path;
        std::size_t depth;
        std::size_t end = 0;  ///< behind the last that is in it
        bool isFound = false;
    };

    using AllLeft = std::vector<Left>;

    /// All that is in panels, in document order; what is in a panel that pages share is not looked
    /// at.
    AllLeft allIn(const std::vector<Listed>& left) {
        struct Step {
            std::size_t at;
            std::size_t list = 0;
            std::size_t item = 0;
        };
        AllLeft all;
        for (const Listed& top : left) {
            all.push_back({top.item, top.path, 0});
            std::vector<Step> steps{{all.size() - 1}};
            while (!steps.empty()) {
                Step& step = steps.back();
                const Left& panel = all[step.at];
                const Thing& thing = *panel.item.thing;
                if (step.list == thing.lists.size() || !thing.definition.empty()) {
                    all[step.at].end = all.size();
                    steps.pop_back();
                } else if (step.item == thing.lists[step.list].items.size()) {
                    ++step.list;
                    step.item = 0;
                } else {
                    const Item& item = thing.lists[step.list].items[step.item++];
                    const std::uint32_t path = paths_.add(panel.path, item.subject, item.name);
                    all.push_back({item, path, panel.depth + 1});
                    steps.push_back({all.size() - 1});
                }
            }
        }
        return all;
    }

    static void take(AllLeft& all, std::size_t at) {
        for (std::size_t inside = at; inside < all[at].end; ++inside)
            all[inside].isFound = true;
    }

    /// Lists what has moved, what came and what went. Pairs that are not the same are added to
    /// `open`.
    void find(const Both<std::vector<Listed>>& left, bool isAgain, std::vector<Pair>& open) {
        Both<AllLeft> all{allIn(left.before), allIn(left.after)};
        const auto byContent = [](const Left& each) {
            return std::tuple(each.item.subject, each.item.name, each.item.thing->id);
        };
        // The largest first: of what is equal none is inside of another. Then what was paired with
        // something that went with its panel.
        for (int time = 0; time < 2; ++time) {
            auto same = paired(all, byContent, [](const Left& each) { return !each.isFound; });
            std::ranges::stable_sort(same, [&](const auto& one, const auto& other) {
                return all.before[one.before].item.thing->size >
                       all.before[other.before].item.thing->size;
            });
            for (const Both<std::size_t>& each : same)
                takeBoth(all, each);
        }
        if (isAgain) {
            const auto byName = [](const Left& each) {
                return std::tuple(each.item.subject, each.item.name, 0U);
            };
            auto named = paired(all, byName, [](const Left& each) {
                return !each.isFound && hasOwnName(each.item);
            });
            // The outermost first, whichever side is the old one.
            std::ranges::stable_sort(named, {}, [&](const Both<std::size_t>& each) {
                const Left& one = all.before[each.before];
                return std::tuple(one.depth + all.after[each.after].depth,
                                  std::min(each.before, each.after),
                                  std::max(each.before, each.after), one.item.name);
            });
            for (const Both<std::size_t>& each : named) {
                const Left& one = all.before[each.before];
                const Left& other = all.after[each.after];
                if (takeBoth(all, each) && one.item.thing->id != other.item.thing->id &&
                    isToBeCompared(one.item, other.item))
                    open.push_back({{one.item, one.path}, {other.item, other.path}});
            }
            std::ranges::reverse(open);
        }
        for (const Left& each : all.before) {
            if (!each.isFound)
                addOneSided(ChangeKind::removed, {each.item, each.path});
        }
        for (const Left& each : all.after) {
            if (!each.isFound)
                addOneSided(ChangeKind::added, {each.item, each.path});
        }
    }

    /// Elements without a uuid are named after their kind of view, which many have.
    static bool hasOwnName(const Item& item) {
        if (item.name.empty() || item.subject != Subject::element)
            return !item.name.empty();
        const auto fields = fieldsOf(*item.thing);
        return std::ranges::any_of(
            fields, [](const ThingField& field) { return field.isName && field.value; });
    }

    /// Those of equal keys, in their order.
    template <class KeyOf, class IsAsked>
    static std::vector<Both<std::size_t>> paired(const Both<AllLeft>& all, const KeyOf& keyOf,
                                                 const IsAsked& isAsked) {
        const auto sorted = [&](const AllLeft& list) {
            std::vector<std::pair<decltype(keyOf(list[0])), std::size_t>> keys;
            for (std::size_t at = 0; at < list.size(); ++at) {
                if (isAsked(list[at]))
                    keys.emplace_back(keyOf(list[at]), at);
            }
            std::ranges::sort(keys);
            return keys;
        };
        const auto before = sorted(all.before);
        const auto after = sorted(all.after);
        std::vector<Both<std::size_t>> pairs;
        for (std::size_t i = 0, j = 0; i < before.size() && j < after.size();) {
            if (before[i].first < after[j].first)
                ++i;
            else if (after[j].first < before[i].first)
                ++j;
            else
                pairs.push_back({before[i++].second, after[j++].second});
        }
        return pairs;
    }

    /// Lists a pair as moved unless one of them is found already.
    bool takeBoth(Both<AllLeft>& all, const Both<std::size_t>& pair) {
        const Left& one = all.before[pair.before];
        const Left& other = all.after[pair.after];
        if (one.isFound || other.isFound)
            return false;
        take(all.before, pair.before);
        take(all.after, pair.after);
        add({ChangeKind::moved, other.item.subject, "",
             ChangeSide{std::nullopt, things_.before->placeOf(*one.item.thing), one.path},
             ChangeSide{std::nullopt, things_.after->placeOf(*other.item.thing), other.path}});
        return true;
    }

    // ---- What is listed ----

    void addOneSided(ChangeKind kind, const Listed& listed) {
        const bool isAdded = kind == ChangeKind::added;
        ChangeSide side{std::nullopt,
                        (isAdded ? things_.after : things_.before)->placeOf(*listed.item.thing),
                        listed.path};
        Change change{kind, listed.item.subject, "", std::nullopt, std::nullopt};
        (isAdded ? change.after : change.before) = std::move(side);
        add(std::move(change));
    }

    /// A change in a panel, an element or an event at the same places is the same one. It is listed
    /// where the panel or the event is defined, else in a page that is stored.
    void add(Change change) {
        const std::size_t shown = definition_.empty() ? 1 : 0;
        change.shownIn = shown;
        const std::uint32_t home = homeOf(change);
        const std::string key = keyOf(change);
        const auto known = key.empty() ? known_.end() : known_.find(key);
        if (known == known_.end()) {
            if (!key.empty())
                known_.emplace(key, Known{changes_.size(), home});
            changes_.push_back(std::move(change));
            definitions_.push_back(definition_);
            return;
        }
        Change& first = changes_[known->second.index];
        const std::size_t shownIn =
            first.shownIn + (std::exchange(known->second.home, home) == home ? 0 : shown);
        if (std::pair(rankOf(change), pathsOf(change)) < std::pair(rankOf(first), pathsOf(first))) {
            first = std::move(change);
            definitions_[known->second.index] = definition_;
        }
        first.shownIn = shownIn;
    }

    static const ChangeSide& sideOf(const Change& change) {
        return change.after ? *change.after : *change.before;
    }

    /// What has the change: the event's group, the page of a panel.
    std::uint32_t homeOf(const Change& change) const {
        return change.subject == Subject::event ? paths_.above(sideOf(change).path) : container_;
    }

    int rankOf(const Change& change) const {
        switch (paths_.namesOf(sideOf(change).path).front().subject) {
            case Subject::reusePanel:
            case Subject::magicGroup:
            case Subject::eventTemplate:
                return 0;
            case Subject::customPage:
                return 2;
            default:
                return 1;
        }
    }

    /// "" when it is always listed.
    static std::string keyOf(const Change& change) {
        std::string key;
        if (!isSharedBetweenPages(change.subject))
            return key;
        for (const auto& side : {change.before, change.after}) {
            if (side && side->place.begin.line == 0)
                return "";
            if (side)
                key.append(side->place.file)
                    .append(":")
                    .append(std::to_string(side->place.begin.line))
                    .append(":")
                    .append(std::to_string(side->place.begin.column));
            key += '|';
        }
        return key.append(nameOf(change.kind)).append(nameOf(change.subject)).append(change.field);
    }

    /// The paths of both sides, the lesser first.
    std::pair<std::string, std::string> pathsOf(const Change& change) const {
        std::pair<std::string, std::string> both;
        const auto text = [&](const ChangeSide& side) {
            std::string path;
            for (const NamedThing& name : paths_.namesOf(side.path))
                path.append(nameOf(name.subject)).append(" ").append(name.name).append("\n");
            return path;
        };
        if (change.before)
            both.first = text(*change.before);
        if (change.after)
            both.second = text(*change.after);
        if (both.second < both.first)
            std::swap(both.first, both.second);
        return both;
    }

    // ---- Pages that show a shared panel ----

    using Counts = std::unordered_map<std::string, std::size_t>;

    void countPages() {
        if (std::ranges::all_of(definitions_, &std::string::empty))
            return;
        const Counts before = pagesByDefinition(things_.before->root());
        const Counts after = pagesByDefinition(things_.after->root());
        const auto countIn = [](const Counts& counts, const std::string& definition) {
            const auto found = counts.find(definition);
            return found == counts.end() ? 0 : found->second;
        };
        for (std::size_t at = 0; at < changes_.size(); ++at) {
            if (!definitions_[at].empty())
                changes_[at].shownIn +=
                    std::max(countIn(before, definitions_[at]), countIn(after, definitions_[at]));
        }
    }

    /// How many stored pages show each of the shared panels.
    static Counts pagesByDefinition(const Thing& root) {
        Counts counts;
        std::unordered_map<const Thing*, std::size_t> seenIn;
        std::size_t page = 0;
        std::size_t counted = 0;
        for (const ItemList& list : root.lists) {
            for (const Item& item : list.items) {
                if (item.subject != Subject::page && item.subject != Subject::tabPage)
                    continue;
                ++page;
                std::vector<const Thing*> open{item.thing};
                while (!open.empty() && counted < mostCounted) {
                    const Thing& thing = *open.back();
                    open.pop_back();
                    ++counted;
                    if (thing.isShared && std::exchange(seenIn[&thing], page) == page)
                        continue;
                    if (!thing.definition.empty())
                        ++counts[thing.definition];
                    for (const ItemList& content : thing.lists) {
                        for (const Item& each : content.items)
                            open.push_back(each.thing);
                    }
                }
            }
        }
        return counts;
    }

    struct Known {
        std::size_t index;
        std::uint32_t home;  ///< of the last one
    };

    Both<const Things*> things_;
    Paths& paths_;
    std::vector<Change> changes_;
    std::vector<std::string> definitions_;  ///< of each change, what tells its panel; "" for none
    std::uint32_t container_ = Paths::top;  ///< what is compared now
    std::string definition_;                ///< its own, if pages share it
    std::unordered_map<std::string, Known> known_;
    std::set<std::pair<const Thing*, const Thing*>> compared_;
};

}  // namespace

std::vector<NamedThing> Paths::namesOf(std::uint32_t path) const {
    std::vector<NamedThing> names;
    for (; path != top; path = steps_[path - 1].above)
        names.push_back(steps_[path - 1].thing);
    std::ranges::reverse(names);
    return names;
}

std::vector<Change> changesBetween(const Things& before, const Things& after, Paths& paths) {
    return Comparison(before, after, paths).changes();
}

}  // namespace yg
