// SPDX-License-Identifier: MIT
#include "ygconfig/files/PageFaults.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "YGConfigManager/host/YGFrameComFun.h"

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view reasons[] = {"argument-count", "slot-left", "broken-pattern",
                                        "expansion-limit"};

/// A name may have thousands of parts.
constexpr std::size_t mostFaults = 10;

std::string templateOf(const std::string& page) {
    return page.substr(0, page.find('-'));
}

std::vector<xml::Element> slotsOf(const YGStyleConfigLoad& loader, const std::string& page) {
    std::vector<xml::Element> slots;
    // A name without arguments gives the template as it stands.
    YGStyleConfigLoad::recursiveSearchNodeWithNodeName(
        "magic_panels", loader.createXMLElementWithStyleName(templateOf(page)), slots);
    return slots;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

/// What may stand for the slot of a group: its members, and what their wildcard lists hold.
std::vector<std::string> argumentsFor(const YGStyleConfigLoad& loader, const std::string& group) {
    const auto* members =
        loader.magicPanelInfos() ? loader.magicPanelInfos()->find(group) : nullptr;
    if (!members)
        return {};
    std::vector<std::string> names = namesIn(**members);
    if (const auto lists = YGFrameComFun::getMappingDicForKey("模版通配")) {
        for (const auto& [key, values] : *lists) {
            if ((*members)->contains(key))
                names.insert(names.end(), values.begin(), values.end());
        }
    }
    return names;
}

/// Of a slot that stays.
std::string noMember(const YGStyleConfigLoad& loader, std::span<const xml::Element> slots,
                     const TextPoint& place, const std::string& argument) {
    const auto slot = std::ranges::find_if(slots, [&](const xml::Element& each) {
        const auto at = each.place();
        return at && at->begin == place;
    });
    const std::string group(slot == slots.end() ? "" : slot->attribute("name").value_or(""));
    return "magic panels " + inQuotes(group) + " have no member " + inQuotes(argument) +
           nearestOf(argument, argumentsFor(loader, group));
}

/// `missing`: without this file there are no templates; "" when there are.
std::string noStyle(const YGStyleConfigLoad& loader, const std::string& name,
                    const std::string& missing) {
    const std::vector<std::string> known =
        loader.styleInfos() ? namesIn(*loader.styleInfos()) : std::vector<std::string>();
    const std::string source = templateOf(name);
    const std::string whole = nearestOf(name, known);
    if (source == name || (!whole.empty() && missing.empty()))
        return "ygconfig: no style " + inQuotes(name) + whole;
    const std::string page = "ygconfig: page " + inQuotes(name) + ": no template";
    return missing.empty() ? page + ' ' + inQuotes(source) + nearestOf(source, known)
                           : page + "s without " + printable(missing);
}

}  // namespace

void PageFaults::report(const Finding& finding) {
    // Limits are reported while loading, too.
    if (faults_.size() < mostFaults &&
        std::ranges::find(reasons, finding.rule.name) != std::end(reasons) &&
        (finding.rule.name != "expansion-limit" || finding.value == name_))
        faults_.push_back({&finding.rule, finding.extent.begin, finding.value});
    if (finding.rule.name == "no-templates")
        missing_ = finding.place.file;
    other_.report(finding);
}

std::string PageFaults::complaint(const YGStyleConfigLoad& loader, bool isFound) const {
    if (faults_.empty())
        return isFound ? "" : noStyle(loader, name_, missing_);
    const std::vector<Fault> faults = faults_;  // Looking for the slots may report more.
    const std::vector<xml::Element> slots = slotsOf(loader, name_);
    const std::string start = "ygconfig: page " + inQuotes(name_) + ": ";
    std::string lines;
    for (const Fault& fault : faults) {
        const std::string_view rule = fault.rule->name;
        std::string reason;
        if (rule == "argument-count")
            reason = "template " + inQuotes(templateOf(name_)) + " has " +
                     counted(slots.size(), "slot") + ", the name has " +
                     counted(static_cast<std::size_t>(std::ranges::count(name_, '-')), "part") +
                     " for them";
        else if (rule == "slot-left")
            reason = noMember(loader, slots, fault.place, fault.value);
        else
            reason = fault.rule->meaning;
        addLine(lines, start + reason);
    }
    return lines;
}

}  // namespace yg::tool
