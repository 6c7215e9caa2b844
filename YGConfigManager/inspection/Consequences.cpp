// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Consequences.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "YGConfigManager/inspection/Suggestions.h"

namespace yg {

namespace {

using Index = std::size_t;

/// The attributes that define names, in whatever format.
const std::set<std::string_view>& definingAttributes() {
    static const std::set<std::string_view> names = [] {
        std::set<std::string_view> all;
        for (const FormatInfo* format : formats()) {
            for (const ElementInfo* element : elementsOf(*format)) {
                for (const AttributeInfo& attribute : element->attributes) {
                    if (attribute.defines)
                        all.insert(attribute.name);
                }
            }
        }
        return all;
    }();
    return names;
}

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

/// What follows when no file of a format can be read.
constexpr std::pair<std::string_view, std::string_view> followsFromFormat[] = {
    {"soft-optimize-dropped", "styles"},
    {"no-templates", "styles"},
};

bool isAboutUnreadableFile(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    return rule == "missing-file" || (rule.starts_with("unreadable-") &&
                                      rule != "unreadable-image" && rule != "unreadable-setting");
}

/// What could be the cause of another finding.
class Causes {
public:
    Causes(const std::vector<Found>& found, const Loaded& loaded) : found_(found), loaded_(loaded) {
        for (Index at = 0; at < found.size(); ++at)
            note(at);
    }

    std::optional<Index> of(Index at) const {
        const Finding& finding = found_[at].finding;
        for (const auto& [rule, format] : followsFromFormat) {
            const auto cause = unreadable_.find(formatNamed(format));
            if (rule == finding.rule.name && cause != unreadable_.end())
                return cause->second;
        }
        const Naming kind = kindNamedBy(finding);
        if (kind == Naming::nothing)
            return std::nullopt;
        const bool isUnused = finding.rule.name.starts_with("unused-");
        if (!isUnused) {
            const auto lost = lostNames_.find(finding.value);
            if (lost != lostNames_.end() && lost->second != at)
                return lost->second;
        }
        for (const auto& [format, cause] : unreadable_) {
            if (cause != at && has(*format, kind, !isUnused))
                return cause;
        }
        return std::nullopt;
    }

private:
    void note(Index at) {
        const Finding& finding = found_[at].finding;
        const std::string file = loaded_.files.nameOf(finding.place.file);
        if (isAboutUnreadableFile(finding)) {
            if (const FormatInfo* const format = formatOf(loaded_, file))
                unreadable_.try_emplace(format, at);
            return;
        }
        if (finding.rule.handling != Handling::dropped || !finding.attribute.empty() ||
            finding.element.empty() || finding.element.starts_with('#') ||
            finding.extent.begin.line == 0)
            return;
        const auto around = loaded_.files.file(file).elementsAt(finding.extent.begin);
        if (!around.empty())
            noteLost(around.back(), at);
    }

    /// Everything in a dropped element is lost with it.
    void noteLost(const xml::Element& element, Index at) {
        for (const xml::Attribute attribute : element.attributes()) {
            if (definingAttributes().contains(attribute.name))
                lostNames_.try_emplace(std::string(attribute.value), at);
        }
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                noteLost(xml::Element(child), at);
        }
    }

    const std::vector<Found>& found_;
    const Loaded& loaded_;
    std::map<std::string, Index, std::less<>> lostNames_;
    std::map<const FormatInfo*, Index> unreadable_;  ///< the first finding of each format
};

}  // namespace

std::vector<Cause> withConsequences(std::vector<Found> found, const Loaded& loaded) {
    std::vector<std::optional<Index>> causes;
    {
        const Causes known(found, loaded);
        for (Index at = 0; at < found.size(); ++at)
            causes.push_back(known.of(at));
    }
    std::vector<Cause> all;
    std::vector<Index> placeOf(found.size());
    for (Index at = 0; at < found.size(); ++at) {
        placeOf[at] = all.size();
        if (!causes[at])
            all.push_back({std::move(found[at])});
    }
    for (Index at = 0; at < found.size(); ++at) {
        // A cause is never a consequence itself.
        if (causes[at])
            all[placeOf[*causes[at]]].consequences.push_back(std::move(found[at]));
    }
    return all;
}

}  // namespace yg
