// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Consequences.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "YGConfigManager/inspection/Suggestions.h"

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
    {"server-in-some-files", "servers"},
};

bool isAboutUnreadableFile(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    return rule == "unreadable-file" || rule == "unreadable-url-list" || rule == "wrong-encoding" ||
           rule == "lookalike-character" || rule == "html-in-place-of-file";
}

/// What could be the cause of another finding.
class Causes {
public:
    Causes(const std::vector<Found>& found, const Loaded& loaded) : found_(found), loaded_(loaded) {
        for (const FormatInfo* format : formats()) {
            for (const ElementInfo* element : elementsOf(*format)) {
                for (const AttributeInfo& attribute : element->attributes) {
                    if (attribute.defines)
                        definingAttributes_.insert(attribute.name);
                }
            }
        }
        for (Index at = 0; at < found.size(); ++at)
            note(at);
    }

    std::optional<Index> of(Index at) const {
        const Finding& finding = found_[at].finding;
        const std::string_view rule = finding.rule.name;
        if (rule == "lost-by-delivery")
            return unreadDelivery_;
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
        const Naming kind = kindNamedBy(finding);
        // What a palette names is in the same file.
        if (kind == Naming::nothing || kind == Naming::color || kind == Naming::font)
            return lost(finding, at);
        return rule.starts_with("unused-") ? unreadUseOf(kind) : lostOrUnread(finding, at, kind);
    }

private:
    std::optional<Index> lost(const Finding& finding, Index at) const {
        const bool isReference = kindNamedBy(finding) != Naming::nothing &&
                                 finding.rule.handling == Handling::unresolved;
        const auto lost = isReference ? lostNames_.find(finding.value) : lostNames_.end();
        return lost != lostNames_.end() && lost->second != at ? std::optional(lost->second)
                                                              : std::nullopt;
    }

    std::optional<Index> lostOrUnread(const Finding& finding, Index at, Naming kind) const {
        if (const auto cause = lost(finding, at))
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
        const FormatInfo* const format = formatOf(loaded_, file);
        if (finding.rule.name == "missing-file") {
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
            if (definingAttributes_.contains(attribute.name))
                lostNames_.try_emplace(std::string(attribute.value), at);
        }
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                noteLost(xml::Element(child), at);
        }
    }

    const std::vector<Found>& found_;
    const Loaded& loaded_;
    std::set<std::string_view> definingAttributes_;  ///< of whatever format
    std::map<std::string, Index, std::less<>> lostNames_;
    std::map<std::string, Index, std::less<>> withoutContent_;  ///< by file
    // The first finding of each format.
    std::map<const FormatInfo*, Index> unreadable_;
    std::map<const FormatInfo*, Index> missing_;
    std::optional<Index> unreadDelivery_;  ///< nothing of it is read
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
