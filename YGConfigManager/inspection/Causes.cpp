// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Causes.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Split.h"

namespace yg {

namespace {

using Index = std::size_t;

/// What a format defines, or refers to.
bool has(const FormatInfo& format, Naming kind, bool defines) {
    for (const ElementInfo* element : elementsOf(format)) {
        for (const AttributeInfo& attribute : element->attributes) {
            if (attribute.names == kind && attribute.defines == defines)
                return true;
        }
    }
    return false;
}

/// What follows when one file is missing or cannot be read.
constexpr std::pair<std::string_view, std::string_view> followsFromFile[] = {
    {"soft-optimize-dropped", "config/custompage_template.xml"},
    {"no-templates", "soft_optimize/custompage_template.xml"},
};

/// What follows when any file of a format cannot be read.
constexpr std::pair<std::string_view, std::string_view> followsFromFormat[] = {
    {"unused-image-file", "palette"},    {"missing-in-other-theme", "palette"},
    {"name-in-one-theme", "palette"},    {"server-type-in-some-files", "servers"},
    {"server-in-some-files", "servers"}, {"wildcard-without-pattern", "magic_panels"},
};

/// What an element or an object in JSON lacks, by the finding about it; "" for other findings.
std::string_view lackedBy(const Finding& finding) {
    constexpr std::pair<std::string_view, std::string_view> members[] = {
        {"list-without-digest", "md5Value"},
        {"url-without-key", "urlKey"},
        {"url-without-value", "urlValue"},
    };
    if (finding.rule.name == "missing-attribute" || finding.rule.name == "incomplete-contrast-pair")
        return finding.value;
    const auto* const row = std::ranges::find(
        members, finding.rule.name, &std::pair<std::string_view, std::string_view>::first);
    return row == std::end(members) ? std::string_view() : row->second;
}

/// Whether a name that is not read probably stands for another one: "url" for "urlValue".
bool standsFor(std::string_view unknown, std::string_view name) {
    const std::string known[] = {std::string(name)};
    return (!unknown.empty() && name.find(unknown) != std::string_view::npos) ||
           !text::nearest(unknown, known).empty();
}

/// The member's own name: of "urlConfigList[2].urlKey" the last.
std::string_view lastOf(std::string_view path) {
    return path.substr(path.rfind('.') + 1);
}

/// What files of one kind are compared by: that one lacks something may follow from what it drops.
bool isAboutDifference(std::string_view rule) {
    constexpr std::string_view rules[] = {"missing-in-other-theme", "name-in-one-theme",
                                          "server-in-some-files", "missing-in-user-copy",
                                          "lost-by-delivery"};
    return std::ranges::find(rules, rule) != std::end(rules);
}

bool losesServerGroup(std::string_view rule) {
    return rule == "server-group-without-type" || rule == "server-type-never-loaded" ||
           rule == "second-server-group";
}

/// What host.json gives for wildcards is lost, or is under another name.
bool losesWildcards(std::string_view rule) {
    return rule == "host-member-of-wrong-type" || rule == "unused-mapping";
}

/// What stands between quotes in a text of JSON.
std::set<std::string, std::less<>> quotedIn(std::string_view text) {
    std::set<std::string, std::less<>> all;
    for (std::size_t at = text.find('"'); at != std::string_view::npos;) {
        const std::size_t end = text.find('"', at + 1);
        if (end == std::string_view::npos)
            break;
        all.emplace(text.substr(at + 1, end - at - 1));
        at = end;
    }
    return all;
}

bool isAboutUnreadableFile(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    return rule == "unreadable-file" || rule == "unreadable-url-list" || rule == "wrong-encoding" ||
           rule == "lookalike-character" || rule == "html-in-place-of-file";
}

/// It is there under its name, but not for all that ask for it.
bool isAboutElementName(const Finding& finding) {
    return finding.rule.name == "style-element-name" ||
           finding.rule.name == "unexpected-element-name";
}

/// What could be the cause of another finding.
class Causes {
public:
    Causes(const std::vector<Found>& found, const Loaded& loaded, Suggestions& suggestions)
        : found_(found), loaded_(loaded), suggestions_(suggestions) {
        for (const FormatInfo* format : formats()) {
            for (const ElementInfo* element : elementsOf(*format)) {
                for (const AttributeInfo& attribute : element->attributes) {
                    if (attribute.defines)
                        definingAttributes_.insert(attribute.name);
                }
            }
        }
        for (Index at = 0; at < found.size(); ++at) {
            note(at);
            if (isReference(found[at].finding))
                ++references_[{found[at].finding.rule.name, found[at].finding.value}];
        }
    }

    std::optional<Index> of(Index at) const {
        const Finding& finding = found_[at].finding;
        const std::string_view rule = finding.rule.name;
        if (rule == "lost-by-delivery" && unreadDelivery_)
            return unreadDelivery_;
        if (const std::string_view lacking = lackedBy(finding); !lacking.empty())
            return misspelt(finding, lacking);
        if (rule == "server-type-in-some-files" || rule == "lost-by-delivery") {
            if (const auto cause = lostGroup(finding))
                return cause;
        }
        if (isAboutDifference(rule)) {
            if (const auto cause = lostAlike(finding, at))
                return cause;
        }
        if (const auto cause = unbuilt(finding))
            return cause;
        if (rule == "unreadable-image")
            return unreadImage(finding, at);
        for (const auto& [follows, file] : followsFromFile) {
            const auto cause = withoutContent_.find(file);
            if (rule == follows && cause != withoutContent_.end())
                return cause->second;
        }
        for (const auto& [follows, format] : followsFromFormat) {
            const auto cause = unreadable_.find(formatNamed(format));
            if (rule == follows && cause != unreadable_.end())
                return cause->second;
        }
        if (rule == "misplaced-panel" || rule == "misplaced-magic-panels")
            return causeAt(misnamed_, around(finding, 1));
        // The slots follow from the group, and that from what was dropped of it.
        if (rule == "empty-magic-group")
            return finding.related.empty()
                       ? causeAt(slots_, {fileOf(finding.extent), finding.extent.begin})
                       : causeAt(emptied_, around(finding, 0));
        if (rule == "unknown-page") {
            for (const RelatedPlace& related : finding.related) {
                if (const auto cause = causeInSlot(related.place))
                    return cause;
            }
        }
        const Naming kind = kindNamedBy(finding);
        // What a palette names is in the same file.
        if (kind == Naming::nothing || kind == Naming::color || kind == Naming::font)
            return isReference(finding) ? lostAlike(finding, at) : std::nullopt;
        return rule.starts_with("unused-") ? unreadUseOf(kind) : lostOrUnread(finding, at, kind);
    }

private:
    using Spot = std::pair<std::string, TextPoint>;  ///< a file and where an element begins in it

    static std::optional<Index> causeAt(const std::map<Spot, Index>& causes, const Spot& spot) {
        const auto found = causes.find(spot);
        return found == causes.end() ? std::nullopt : std::optional(found->second);
    }

    /// The folder is missing, the path leads out of it, or another palette names the same file.
    std::optional<Index> unreadImage(const Finding& finding, Index at) const {
        if (imageFolder_)
            return imageFolder_;
        if (const auto cause = causeAt(outside_, {fileOf(finding.place), finding.place.begin}))
            return cause;
        const auto same = unreadImages_.find(finding.value);
        return same == unreadImages_.end() || same->second == at ? std::nullopt
                                                                 : std::optional(same->second);
    }

    std::string fileOf(const Place& place) const { return loaded_.files.nameOf(place.file); }

    /// Why a page cannot be built with this slot.
    std::optional<Index> causeInSlot(const Place& slot) const {
        const std::string file = fileOf(slot);
        if (const auto cause = causeAt(slots_, {file, slot.begin}))
            return cause;
        const auto around = loaded_.files.file(file).elementsAt(slot.begin);
        const auto group = around.empty() ? std::nullopt : around.back().attribute("name");
        const auto lost = group && around.back().name() == "magic_panels" ? lostNames_.find(*group)
                                                                          : lostNames_.end();
        return lost == lostNames_.end() ? std::nullopt : std::optional(lost->second);
    }

    /// Where the element begins that the finding is in, or one so many levels above.
    Spot around(const Finding& finding, std::size_t above) const {
        const std::string file = fileOf(finding.extent);
        const auto elements = loaded_.files.file(file).elementsAt(finding.extent.begin);
        if (elements.size() <= above)
            return {};
        const xml::Element& element = elements[elements.size() - 1 - above];
        return {file, element.place().value_or(Place()).begin};
    }

    std::optional<Index> lost(const Finding& finding, Index at) const {
        return isReference(finding) ? lostName(finding.value, at) : std::nullopt;
    }

    /// Of a server or an item also by what stands behind its type or section: "1/East".
    std::optional<Index> lostName(std::string_view name, Index at) const {
        for (const std::string_view each : {name, name.substr(name.find('/') + 1)}) {
            const auto lost = lostNames_.find(each);
            if (lost != lostNames_.end() && lost->second != at)
                return lost->second;
        }
        return std::nullopt;
    }

    /// In a file of the same format.
    std::optional<Index> lostAlike(const Finding& finding, Index at) const {
        const auto cause = lostName(finding.value, at);
        const bool isAlike = cause && formatOf(loaded_, fileOf(finding.place)) ==
                                          formatOf(loaded_, fileOf(found_[*cause].finding.place));
        return isAlike ? cause : std::nullopt;
    }

    /// What the element or object has in place of something that it lacks.
    std::optional<Index> misspelt(const Finding& finding, std::string_view lacking) const {
        const auto unknown = unknown_.find(placeOfOwner(finding));
        if (unknown == unknown_.end())
            return std::nullopt;
        for (const Index each : unknown->second) {
            if (standsFor(lastOf(found_[each].finding.attribute), lacking))
                return each;
        }
        return std::nullopt;
    }

    /// A server type is missing in a file that drops a group.
    std::optional<Index> lostGroup(const Finding& finding) const {
        if (const auto own = lostGroups_.find(finding.place.file); own != lostGroups_.end())
            return own->second;
        for (const RelatedPlace& related : finding.related) {
            const auto lost = lostGroups_.find(related.place.file);
            if (lost != lostGroups_.end())
                return lost->second;
        }
        return std::nullopt;
    }

    /// Of a page that its template could not build, which the finding names: members of groups and
    /// wildcards may be lost.
    std::optional<Index> unbuilt(const Finding& finding) const {
        if (finding.rule.name != "unknown-page" || finding.related.empty())
            return std::nullopt;
        const auto groups = unreadable_.find(formatNamed("magic_panels"));
        if (groups != unreadable_.end())
            return groups->second;
        const auto host = withoutContent_.find("host.json");
        if (host != withoutContent_.end())
            return host->second;
        return wildcards_.contains(finding.value) ? wildcardsLost_ : std::nullopt;
    }

    /// Where the element of an attribute stands; in JSON the path of the object.
    std::string placeOfOwner(const Finding& finding) const {
        std::string owner = finding.place.file + '\n';
        if (finding.element.empty()) {
            // "urlConfigList[2]" is the object itself.
            const std::string& path = finding.attribute;
            const std::size_t end = path.ends_with(']') ? path.size() : path.rfind('.');
            return owner.append(path, 0, end == std::string::npos ? 0 : end);
        }
        const auto around = loaded_.files.file(loaded_.files.nameOf(finding.place.file))
                                .elementsAt(finding.place.begin);
        if (around.empty())
            return owner;
        const TextPoint point = around.back().place().value_or(Place()).begin;
        return owner + std::to_string(point.line) + ':' + std::to_string(point.column);
    }

    std::optional<Index> lostOrUnread(const Finding& finding, Index at, Naming kind) const {
        if (const auto cause = lost(finding, at))
            return cause;
        if (const auto cause = nameless(at, kind))
            return cause;
        // Panels and elements are those of one page, which was read.
        const bool isOfPage = kind == Naming::panel || kind == Naming::element;
        for (const auto& [format, cause] : unreadable_) {
            if (has(*format, kind, true) && !(isOfPage && format == formatNamed("styles")))
                return cause;
        }
        for (const auto& [format, cause] : missing_) {
            if (has(*format, kind, true) && !isOfPage)
                return cause;
        }
        return std::nullopt;
    }

    /// A definition without a name may be the one that is named. A reference to a name that is
    /// nearly right more likely is a slip, unless there are several of it.
    std::optional<Index> nameless(Index at, Naming kind) const {
        const Finding& finding = found_[at].finding;
        const auto known = references_.find({finding.rule.name, finding.value});
        const bool isNamedAgain = known != references_.end() && known->second > 1;
        std::vector<Naming> kinds{kind};
        if (finding.rule.name == "unknown-page")
            kinds = {Naming::magicPanel, Naming::magicGroup, Naming::style};
        for (const Naming each : kinds) {
            const auto cause = nameless_.find(each);
            if (cause != nameless_.end() && (isNamedAgain || !suggestions_.nearestName(found_[at])))
                return cause->second;
        }
        return std::nullopt;
    }

    std::optional<Index> unreadUseOf(Naming kind) const {
        for (const auto* const causes : {&unreadable_, &missing_}) {
            for (const auto& [format, cause] : *causes) {
                if (has(*format, kind, false))
                    return cause;
            }
        }
        return std::nullopt;
    }

    void note(Index at) {
        const Finding& finding = found_[at].finding;
        const std::string file = loaded_.files.nameOf(finding.place.file);
        if (finding.rule.name == "html-in-place-of-file" ||
            finding.rule.name.ends_with("-root-name"))
            unreadDelivery_ = at;
        const std::string_view rule = finding.rule.name;
        if (rule == "unknown-attribute" || rule == "unknown-member" ||
            rule == "member-of-wrong-type")
            unknown_[placeOfOwner(finding)].push_back(at);
        if (rule == "missing-image-folder")
            imageFolder_ = at;
        if (rule == "unreadable-image" && !finding.value.empty())
            unreadImages_.try_emplace(finding.value, at);
        if (rule == "image-outside-folder")
            outside_.try_emplace({file, finding.place.begin}, at);
        if (losesServerGroup(rule))
            lostGroups_.try_emplace(finding.place.file, at);
        if (file == "host.json" && losesWildcards(rule) && !wildcardsLost_) {
            wildcardsLost_ = at;
            wildcards_ = quotedIn(loaded_.files.file(file).text());
        }
        // Another name than the one that is asked for.
        if (rule == "name-with-blanks" && found_[at].suggestion)
            lostNames_.try_emplace(*found_[at].suggestion, at);
        const FormatInfo* const format = formatOf(loaded_, file);
        if (rule == "missing-file") {
            withoutContent_.try_emplace(file, at);
            // Of several files of a format the others may have what is asked for.
            if (format && format->files.size() == 1)
                missing_.try_emplace(format, at);
            return;
        }
        if (isAboutUnreadableFile(finding)) {
            withoutContent_.try_emplace(file, at);
            if (format)
                unreadable_.try_emplace(format, at);
            return;
        }
        noteLayout(at, file);
        const bool isUnreachable = rule == "unreachable-command" || isAboutElementName(finding);
        // What names something itself defines nothing.
        const bool isDropped =
            finding.rule.handling == Handling::dropped && kindNamedBy(finding) == Naming::nothing;
        if ((!isDropped && !isUnreachable) || finding.element.empty() ||
            finding.element.starts_with('#') || finding.extent.begin.line == 0)
            return;
        const auto around = loaded_.files.file(file).elementsAt(finding.extent.begin);
        // Otherwise only a part of it is dropped.
        const bool isWhole = !around.empty() &&
                             around.back().place().value_or(Place()).begin == finding.extent.begin;
        if (around.empty() || (isDropped && !isWhole))
            return;
        noteMisspelt(around.back(), at);
        noteLost(around.back(), at);
        const ElementInfo* const info = format ? infoOf(*format, around) : nullptr;
        for (const AttributeInfo& row :
             info ? info->attributes : std::span<const AttributeInfo>()) {
            const bool isOfPage = row.names == Naming::panel || row.names == Naming::element;
            if (row.defines && !isOfPage && around.back().attribute(row.name).value_or("").empty())
                nameless_.try_emplace(row.names, at);
        }
    }

    void noteLayout(Index at, const std::string& file) {
        const Finding& finding = found_[at].finding;
        const std::string_view rule = finding.rule.name;
        if (rule == "soft-optimize-dropped")
            unreadable_.try_emplace(formatNamed("styles"), at);
        else if (isAboutElementName(finding))
            misnamed_.try_emplace({file, finding.extent.begin}, at);
        else if (rule == "member-without-panel" || rule == "missing-name")
            emptied_.try_emplace(around(finding, 1), at);
        if (rule == "unknown-magic-group" ||
            (rule == "missing-name" && finding.element == "magic_panels"))
            slots_.try_emplace({file, finding.extent.begin}, at);
        if (rule == "empty-magic-group") {
            for (const RelatedPlace& slot : finding.related)
                slots_.try_emplace({fileOf(slot.place), slot.place.begin}, at);
        }
        if (rule == "wildcard-in-two-lists")
            lostNames_.try_emplace(finding.value, at);
        if (rule == "wildcard-without-pattern") {
            const auto lists = loaded_.host->getMappingDicForKey(wildcardMapping);
            const auto list = lists ? lists->find(finding.value) : MappingDic::const_iterator();
            if (lists && list != lists->end()) {
                for (const std::string& value : list->second)
                    lostNames_.try_emplace(value, at);
            }
        }
    }

    /// The name of an element that is dropped may be in an attribute that is not read.
    void noteMisspelt(const xml::Element& element, Index at) {
        for (const xml::Attribute attribute : element.attributes()) {
            const auto [known, isNew] = seemsToDefine_.try_emplace(std::string(attribute.name));
            if (isNew) {
                const std::vector<std::string> names(definingAttributes_.begin(),
                                                     definingAttributes_.end());
                known->second = !text::nearest(attribute.name, names).empty();
            }
            if (known->second)
                noteNames(attribute.value, at);
        }
    }

    /// Servers have several names.
    void noteNames(std::string_view value, Index at) {
        lostNames_.try_emplace(std::string(value), at);
        for (std::string& part : text::split(value, ';'))
            lostNames_.try_emplace(std::move(part), at);
    }

    /// Everything in a dropped element is lost with it.
    void noteLost(const xml::Element& element, Index at) {
        for (const xml::Attribute attribute : element.attributes()) {
            if (definingAttributes_.contains(attribute.name))
                noteNames(attribute.value, at);
        }
        for (const xml::Element& child : element.elements())
            noteLost(child, at);
    }

    const std::vector<Found>& found_;
    const Loaded& loaded_;
    Suggestions& suggestions_;
    /// How many references there are to each name that is not there.
    std::map<std::pair<std::string_view, std::string_view>, std::size_t> references_;
    std::optional<Index> imageFolder_;
    std::map<std::string_view, Index> unreadImages_;  ///< the first of each path
    std::map<Spot, Index> outside_;                   ///< paths out of the image folder
    std::map<Spot, Index> misnamed_;                  ///< elements whose own names are wrong
    std::map<Spot, Index> slots_;                     ///< that show nothing
    std::map<Spot, Index> emptied_;                   ///< elements of which something is dropped
    std::map<Naming, Index> nameless_;  ///< definitions without a name, the first of each kind
    std::set<std::string_view> definingAttributes_;  ///< of whatever format
    std::map<std::string, bool> seemsToDefine_;      ///< whether a name is nearly one of these
    std::map<std::string, Index, std::less<>> lostNames_;
    std::map<std::string, Index, std::less<>> withoutContent_;  ///< by file
    // The first finding of each format.
    std::map<const FormatInfo*, Index> unreadable_;
    std::map<const FormatInfo*, Index> missing_;
    /// Attributes and members that do not count, by the element or object that has them.
    std::map<std::string, std::vector<Index>, std::less<>> unknown_;
    std::map<std::string, Index, std::less<>> lostGroups_;  ///< by path
    std::optional<Index> wildcardsLost_;
    std::set<std::string, std::less<>> wildcards_;  ///< that would be there
    std::optional<Index> unreadDelivery_;           ///< nothing of it is read
};

}  // namespace

CauseIndexes causesOf(const std::vector<Found>& found, const Loaded& loaded,
                      Suggestions& suggestions) {
    const Causes known(found, loaded, suggestions);
    CauseIndexes causes;
    for (Index at = 0; at < found.size(); ++at)
        causes.push_back(known.of(at));
    return causes;
}

}  // namespace yg
