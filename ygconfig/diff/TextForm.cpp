// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ygconfig/diff/DiffReport.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::size_t mostNames = 3;     // of things to which the same happens
constexpr std::size_t mostPlaces = 20;   // of one page or file
constexpr std::size_t widestValue = 48;  // in columns

const ChangeSide& sideOf(const Change& change) {
    return change.after ? *change.after : *change.before;
}

std::string counted(std::size_t count, std::string_view one, std::string_view several) {
    return std::to_string(count).append(" ").append(count == 1 ? one : several);
}

std::string pluralOf(Subject subject) {
    std::string plural(nameOf(subject));
    if (plural.ends_with("entry"))
        plural.replace(plural.size() - 1, 1, "ie");
    return plural += plural.ends_with("address") ? "es" : "s";
}

/// A value in one line, cut when it is long.
std::string shown(const std::optional<std::string>& value) {
    if (!value)
        return "none";
    const std::vector<std::string> lines = folded(printable(*value), widestValue, 0);
    const std::string text = lines.empty() ? "" : lines.front();
    return text.empty() ? "\"\"" : lines.size() > 1 ? text + "…" : text;
}

std::string shown(const NamedThing& thing) {
    std::string text(nameOf(thing.subject));
    return thing.name.empty() ? "a " + text + " without a name"
                              : text.append(" ").append(printable(thing.name));
}

std::string shown(const Place& place) {
    if (place.file.empty())
        return "an unknown place";
    std::string text = printable(place.file);
    if (place.begin.line != 0)
        text.append(":")
            .append(std::to_string(place.begin.line))
            .append(":")
            .append(std::to_string(place.begin.column));
    return text;
}

/// What happens to some things of one kind.
struct Effect {
    enum class Kind {
        becomesSubstitute,
        isSubstituteNoMore,
        gone,
        lost,
        isNew,
        gained,
        moved,
        changed
    };

    friend auto operator<=>(const Effect&, const Effect&) = default;  // NOLINT(*-nullptr)

    Kind kind;
    Subject subject;
};

/// The changes of one page, file or table.
struct Group {
    std::string heading;
    std::vector<const Change*> changes;
};

class TextForm {
public:
    TextForm(const Difference& difference, const Paint& paint, Output& output)
        : difference_(difference), paint_(paint), output_(output) {
        std::map<std::string, std::size_t> known;
        for (const Change& change : difference.changes()) {
            const std::string heading = headingOf(change);
            const auto [found, isNew] = known.try_emplace(heading, groups_.size());
            if (isNew)
                groups_.push_back({heading, {}});
            groups_[found->second].changes.push_back(&change);
        }
        // Pages are what people look for; then comes what pages are made of.
        std::ranges::stable_sort(groups_, {}, [&](const Group& group) {
            const auto path = difference_.pathOf(sideOf(*group.changes.front()));
            const Subject subject = path.empty() ? Subject::root : path.front().subject;
            const bool isPage = subject == Subject::page || subject == Subject::tabPage;
            return isPage ? Subject::root : subject;
        });
    }

    void write() {
        for (const Group& group : groups_)
            writeEffects(group);
        if (!groups_.empty())
            output_.add("\n");
        for (const Group& group : groups_)
            writePlaces(group);
        add(summary());
    }

private:
    void add(std::string_view line, std::size_t indent = 0, std::size_t further = 2) {
        const std::size_t width = std::max<std::size_t>(paint_.columns(), indent + 20) - indent;
        for (const std::string& part : folded(line, width, further))
            output_.add(std::string(indent, ' ') + part + "\n");
    }

    // ---- Groups ----

    /// How many names of its path lead to the page, the file or the table that a change is in.
    static std::size_t depthOfGroup(const std::vector<NamedThing>& path) {
        return path.size() > 1 && path[1].subject == Subject::magicPanel ? 2 : 1;
    }

    static std::string headingOf(const std::vector<NamedThing>& path) {
        if (path.empty())
            return "the root";
        switch (path.front().subject) {
            case Subject::command:
            case Subject::pageTemplate:
            case Subject::wildcardList:
                return "the table of " + pluralOf(path.front().subject);
            case Subject::palette:
                return "the " + printable(path.front().name);
            case Subject::serverFile:
            case Subject::settingsFile:
            case Subject::webPageFile:
            case Subject::requestUrlFile:
                return printable(path.front().name);
            default:
                break;
        }
        std::string heading = shown(path.front());
        if (depthOfGroup(path) == 2)
            heading = shown(path[1]) + " of " + heading;
        return heading;
    }

    std::string headingOf(const Change& change) const {
        return headingOf(difference_.pathOf(sideOf(change)));
    }

    /// Whether the page or the file itself came or went.
    bool isWhole(const Change& change) const {
        const auto path = difference_.pathOf(sideOf(change));
        const bool isTable = !path.empty() && (path.front().subject == Subject::command ||
                                               path.front().subject == Subject::pageTemplate ||
                                               path.front().subject == Subject::wildcardList);
        return !isTable && path.size() == depthOfGroup(path);
    }

    // ---- Effects ----

    Effect effectOf(const Change& change) const {
        using enum Effect::Kind;
        switch (change.kind) {
            case ChangeKind::added:
                return {isWhole(change) ? isNew : gained, change.subject};
            case ChangeKind::removed:
                return {isWhole(change) ? gone : lost, change.subject};
            case ChangeKind::moved:
                return {moved, change.subject};
            case ChangeKind::changed:
                break;
        }
        if (isSubstitute(change, change.after))
            return {becomesSubstitute, change.subject};
        if (isSubstitute(change, change.before))
            return {isSubstituteNoMore, change.subject};
        return {Effect::Kind::changed, change.subject};
    }

    /// Whether a key has no colour or font of its own.
    static bool isSubstitute(const Change& change, const std::optional<ChangeSide>& side) {
        return (change.subject == Subject::colorKey && side->value == missingColor) ||
               (change.subject == Subject::fontKey && side->value == missingFont);
    }

    static std::string_view substituteOf(Subject subject) {
        return subject == Subject::colorKey ? "red" : "the system font";
    }

    /// "loses 2 elements", to be followed by their names.
    static std::string phrase(const Effect& effect, std::size_t count) {
        std::string things = counted(count, nameOf(effect.subject), pluralOf(effect.subject));
        const bool isOne = count == 1;
        switch (effect.kind) {
            case Effect::Kind::becomesSubstitute:
                return things.append(isOne ? " becomes " : " become ")
                    .append(substituteOf(effect.subject));
            case Effect::Kind::isSubstituteNoMore:
                return things.append(isOne ? " is" : " are")
                    .append(" no longer ")
                    .append(substituteOf(effect.subject));
            case Effect::Kind::gone:
                return "is gone";
            case Effect::Kind::lost:
                if (effect.subject == Subject::colorKey || effect.subject == Subject::fontKey)
                    return "loses " + things + (isOne ? ", which becomes " : ", which become ") +
                           std::string(substituteOf(effect.subject));
                return "loses " + things;
            case Effect::Kind::isNew:
                return "is new";
            case Effect::Kind::gained:
                return "gains " + things;
            case Effect::Kind::moved:
                return "moves " + things;
            case Effect::Kind::changed:
                return "changes " + things;
        }
        return "";
    }

    void writeEffects(const Group& group) {
        std::map<Effect, std::vector<const Change*>> effects;
        std::size_t shownIn = 1;
        for (const Change* const change : group.changes) {
            effects[effectOf(*change)].push_back(change);
            shownIn = std::max(shownIn, change->shownIn);
        }
        std::string line;
        for (const auto& [effect, changes] : effects) {
            if (effect.kind > Effect::Kind::isSubstituteNoMore)
                line += (line.empty() ? " " : "; ") + described(effect, changes, "");
            else
                add(described(effect, changes, " in " + group.heading));
        }
        if (line.empty())
            return;
        add(paint_(Tone::heading, group.heading) + showing(*group.changes.front(), shownIn) + line);
    }

    /// Where else a group's changes show: " (on 16 pages)".
    std::string showing(const Change& change, std::size_t shownIn) const {
        if (shownIn < 2)
            return "";
        if (change.subject == Subject::event)
            return " (in " + std::to_string(shownIn) + " groups)";
        const auto path = difference_.pathOf(sideOf(change));
        const bool isPage =
            path.front().subject == Subject::page || path.front().subject == Subject::tabPage;
        return isPage ? " (and " + counted(shownIn - 1, "other page", "other pages") + ")"
                      : " (on " + std::to_string(shownIn) + " pages)";
    }

    std::string described(const Effect& effect, const std::vector<const Change*>& changes,
                          std::string_view where) {
        // A thing with several changed fields is one thing.
        std::vector<std::pair<std::string, std::string>> names;
        std::set<std::uint32_t> known;
        for (const Change* const change : changes) {
            const auto path = difference_.pathOf(sideOf(*change));
            if (!known.insert(sideOf(*change).path).second) {
                if (names.size() == known.size())
                    names.back().second += ", " + changed(*change);
                continue;
            }
            if (names.size() <= mostNames)
                names.emplace_back(
                    path.empty() || path.back().name.empty() ? "" : printable(path.back().name),
                    changed(*change));
        }
        const std::size_t count = known.size();
        const bool isOfItself = effect.kind == Effect::Kind::changed && isWhole(*changes.front());
        std::string text = paint_(toneOf(effect), isOfItself ? "changes" : phrase(effect, count));
        text += where;
        if (effect.kind == Effect::Kind::gone || effect.kind == Effect::Kind::isNew)
            return text;
        std::string list;
        for (std::size_t at = 0; at < std::min(count, mostNames); ++at) {
            const auto& [name, what] = names[at];
            if (name.empty() && what.empty())
                continue;
            list += list.empty() ? "" : ", ";
            if (isOfItself)
                list += what;
            else if (effect.kind == Effect::Kind::changed && !what.empty())
                list.append(name).append(" (").append(what).append(")");
            else
                list += name;
        }
        if (count > mostNames)
            list += " and " + std::to_string(count - mostNames) + " more";
        return list.empty() ? text : text + (isOfItself ? " " : ": ") + list;
    }

    /// "vertical false → true".
    static std::string changed(const Change& change) {
        if (change.kind != ChangeKind::changed)
            return "";
        return change.field + " " + shown(change.before->value) + " → " +
               shown(change.after->value);
    }

    static Tone toneOf(const Effect& effect) {
        switch (effect.kind) {
            case Effect::Kind::becomesSubstitute:
            case Effect::Kind::gone:
            case Effect::Kind::lost:
                return Tone::error;
            case Effect::Kind::isNew:
            case Effect::Kind::gained:
                return Tone::info;
            default:
                return Tone::warning;
        }
    }

    // ---- Places ----

    void writePlaces(const Group& group) {
        add(paint_(Tone::heading, group.heading));
        for (std::size_t at = 0; at < std::min(group.changes.size(), mostPlaces); ++at)
            writePlace(*group.changes[at]);
        if (group.changes.size() > mostPlaces)
            add(paint_(Tone::quiet, "and " + std::to_string(group.changes.size() - mostPlaces) +
                                        " more, which --format json lists"),
                2);
        output_.add("\n");
    }

    void writePlace(const Change& change) {
        const auto path = difference_.pathOf(sideOf(change));
        std::string line(1, "+-~>"[static_cast<std::size_t>(change.kind)]);
        line = paint_(toneOf(effectOf(change)), line) + " ";
        line += path.empty() ? "the root" : shown(path.back());
        if (change.kind == ChangeKind::changed)
            line += ": " + changed(change);
        const std::string within = aroundOf(path);
        if (change.kind == ChangeKind::moved && change.before->value)
            line += ": from position " + *change.before->value + " to " + *change.after->value;
        else if (change.kind == ChangeKind::moved)
            line += ": from " + quotedAround(difference_.pathOf(*change.before)) + " to " +
                    quotedAround(path);
        else if (!within.empty())
            line += ", in " + within;
        add(line, 2, 4);
        add(paint_(Tone::quiet, placesOf(change)), 6);
    }

    static std::string quotedAround(const std::vector<NamedThing>& path) {
        const std::string around = aroundOf(path);
        return around.empty() ? "the page itself" : around;
    }

    /// What is between the page or the file and the thing: "page / body".
    static std::string aroundOf(const std::vector<NamedThing>& path) {
        std::string around;
        const std::size_t depth = path.empty() ? 0 : depthOfGroup(path);
        constexpr std::size_t most = 4;
        for (std::size_t at = depth; at + 1 < path.size(); ++at) {
            if (at >= depth + 1 && path.size() - 1 - at > most)
                continue;
            around += around.empty() ? "" : " / ";
            around += shown(path[at]);
        }
        return around;
    }

    static std::string placesOf(const Change& change) {
        if (!change.before)
            return "new " + shown(change.after->place);
        if (!change.after)
            return "old " + shown(change.before->place);
        const std::string before = shown(change.before->place);
        const std::string after = shown(change.after->place);
        return before == after ? "old and new " + before : "old " + before + ", new " + after;
    }

    std::string summary() const {
        std::string text;
        for (const ChangeKind kind :
             {ChangeKind::added, ChangeKind::removed, ChangeKind::changed, ChangeKind::moved}) {
            if (const std::size_t count = countOf(difference_, kind))
                text.append(text.empty() ? "" : ", ")
                    .append(std::to_string(count))
                    .append(" ")
                    .append(nameOf(kind));
        }
        return text.empty() ? "no difference" : text;
    }

    const Difference& difference_;
    const Paint& paint_;
    Output& output_;
    std::vector<Group> groups_;
};

}  // namespace

void writeText(const Difference& difference, const Paint& paint, Output& output) {
    TextForm(difference, paint, output).write();
}

}  // namespace yg::tool
