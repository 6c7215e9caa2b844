// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/PageNames.h"

#include <algorithm>
#include <utility>

#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/layout/Walk.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"

namespace yg {

namespace {

/// A longer name is not a slip of the keyboard, and comparing takes the square of its length.
constexpr std::size_t longestGuess = 200;

/// Dashes of other kinds, full-width ones first, as "-".
std::string withPlainDashes(std::string name) {
    for (const char* const dash : {"－", "﹣", "‐", "‑", "‒", "–", "—", "―", "−"})
        name = text::replaceAll(name, dash, "-");
    return name;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string name = parts.front();
    for (std::size_t at = 1; at < parts.size(); ++at)
        name.append("-").append(parts[at]);
    return name;
}

std::string counted(std::size_t count, std::string_view thing) {
    return std::to_string(count).append(" ").append(thing).append(count == 1 ? "" : "s");
}

/// Narrows an answer about a whole name to the one part in which the suggestion differs.
void narrow(PageAnswer& answer, const std::string& name, const std::string& suggestion) {
    const std::vector<std::string> before = text::split(name, '-');
    const std::vector<std::string> after = text::split(suggestion, '-');
    std::size_t different = before.size();
    std::size_t offset = 0;
    for (std::size_t at = 0, begin = 0; at < before.size() && before.size() == after.size();
         begin += before[at++].size() + 1) {
        if (before[at] == after[at])
            continue;
        if (different != before.size()) {
            different = before.size();
            break;
        }
        different = at;
        offset = begin;
    }
    if (different == before.size() || before.size() == 1) {
        answer.offset = 0;
        answer.size = name.size();
        answer.details.suggestion = suggestion;
    } else {
        answer.offset = offset;
        answer.size = before[different].size();
        answer.details.suggestion = after[different];
    }
}

}  // namespace

bool Effort::spend(std::size_t cost) {
    const bool isGranted = cost <= left_;
    left_ = isGranted ? left_ - cost : 0;
    return isGranted;
}

std::string Effort::nearest(std::string_view word, std::span<const std::string> known) {
    // Comparing two words takes as long as looking at some dozen nodes.
    return word.size() <= longestGuess && spend(known.size() * 32) ? text::nearest(word, known)
                                                                   : "";
}

PageNames::PageNames(const Loaded& loaded, Gathering& findings, Effort& effort)
    : loaded_(loaded),
      findings_(findings),
      effort_(effort),
      wildcards_(loaded.host->getMappingDicForKey(wildcardMapping)) {
    if (!wildcards_)
        wildcards_ = std::make_shared<MappingDic>();
    for (const auto& [key, values] : *wildcards_)
        wildcardValues_ += values.size();
    if (const auto& styles = loaded.layout->styleInfos()) {
        for (const auto& [name, style] : *styles)
            storedNames_.push_back(name);
    }
}

PageNames::~PageNames() = default;

const PageAnswer& PageNames::look(const std::string& name) {
    const auto known = answers_.find(name);
    return known != answers_.end() ? known->second
                                   : answers_.emplace(name, answerFor(name)).first->second;
}

bool PageNames::isStored(const std::string& name) const {
    const auto& styles = loaded_.layout->styleInfos();
    return styles && styles->contains(name);
}

void PageNames::readTemplates() {
    if (std::exchange(hasTemplates_, true))
        return;
    for (const char* const folder : {"soft_optimize", "config"}) {
        const xml::Element root =
            loaded_.files.file(text::joinPath(folder, "custompage_template.xml"))
                .document()
                .document.root();
        // Without the optimized file the loader has no templates at all.
        if (!root)
            return;
        for (const xml::Element& style : root.elements())
            readTemplate(style);
    }
}

void PageNames::readTemplate(const xml::Element& style) {
    const auto name = style.attribute("name");
    if (style.name() != "style" || !name)
        return;
    if (templates_.try_emplace(std::string(*name), Template{style}).second)
        templateNames_.emplace_back(*name);
}

const PageNames::Template* PageNames::templateNamed(const std::string& name) {
    readTemplates();
    const auto found = templates_.find(name);
    if (found == templates_.end())
        return nullptr;
    Template& known = found->second;
    if (known.nodes == 0) {
        known.nodes = 1;
        forEachNodeBelow(known.style, [&](const xml::Node& node) {
            ++known.nodes;
            if (node.name() == "magic_panels" && node.isElement())
                known.slots.emplace_back(node);
        });
    }
    return &known;
}

/// Has the loader build a custom page of a template that is there, and answers what it reports;
/// absent when the effort does not suffice.
std::optional<std::vector<Finding>> PageNames::build(const std::string& name) {
    const Template& source = *templateNamed(text::split(name, '-').front());
    if (!effort_.spend(templates_.size() + source.nodes + wildcardValues_))
        return std::nullopt;
    xml::Element page;
    std::vector<Finding> reported =
        findings_.reportedBy([&] { page = loaded_.layout->createXMLElementWithStyleName(name); });
    std::size_t nodes = 0;
    if (page)
        forEachNodeBelow(page, [&](const xml::Node&) { ++nodes; });
    effort_.spend(nodes);
    return reported;
}

bool PageNames::isPage(const std::string& name) {
    if (isStored(name))
        return true;
    if (!templateNamed(text::split(name, '-').front()))
        return false;
    const auto reported = build(name);
    return reported && reported->empty();
}

PageAnswer PageNames::answerFor(const std::string& name) {
    PageAnswer answer;
    if (isStored(name))
        return answer;
    const std::string front = text::split(name, '-').front();
    const bool hasTemplate = templateNamed(front) != nullptr;
    if (hasTemplate) {
        const auto reported = build(name);
        return reported && !reported->empty() ? refused(name, *reported) : answer;
    }
    const auto& tabs = loaded_.layout->tabStyleInfos();
    if (tabs && tabs->contains(name)) {
        answer.kind = PageAnswer::Kind::tab;
        answer.details.message =
            quoted(name) + " is the name of a tab; looking up a page by its name finds no tabs.";
        answer.size = name.size();
        return answer;
    }
    if (front.size() == name.size()) {
        answer.details.message = "Page " + quoted(name) +
                                 " does not exist: no stored page, tab or template has this name.";
    } else {
        answer.size = front.size();
        answer.details.message = "Page " + quoted(name) +
                                 " does not exist: no page of this name is stored, and there is no "
                                 "template " +
                                 quoted(front) + " to build it from.";
    }
    return failed(name, std::move(answer));
}

/// Adds what was probably meant.
PageAnswer PageNames::failed(const std::string& name, PageAnswer answer) {
    answer.kind = PageAnswer::Kind::nothing;
    if (answer.size == 0)
        answer.size = name.size();
    const std::string suggestion = suggestionFor(name);
    if (suggestion.empty())
        return answer;
    if (suggestion == withPlainDashes(name)) {
        answer.details.message = "Page " + quoted(name) +
                                 " does not exist: only the plain \"-\" separates the parts of a "
                                 "custom page's name.";
        answer.details.related.clear();
    }
    narrow(answer, name, suggestion);
    return answer;
}

PageAnswer PageNames::refused(const std::string& name, const std::vector<Finding>& failures) {
    const std::vector<std::string> parts = text::split(name, '-');
    const Template& source = *templateNamed(parts.front());
    const Finding& first = failures.front();
    PageAnswer answer;
    const std::string page = "Page " + quoted(name) + " cannot be built";
    if (first.rule.name == "argument-count"_rule.name) {
        answer.details.message = page + ": template " + quoted(parts.front()) + " has " +
                                 counted(source.slots.size(), "slot") + ", and the name gives " +
                                 counted(parts.size() - 1, "argument") + ".";
        answer.details.related.push_back(
            {source.style.tagPlace().value_or(Place()), "the template"});
    } else if (first.rule.name == "slot-left"_rule.name) {
        std::size_t offset = parts.front().size() + 1;
        for (std::size_t at = 0; at < source.slots.size(); offset += parts[++at].size() + 1) {
            const xml::Element& slot = source.slots[at];
            if (slot.place() != first.place)
                continue;
            answer.offset = offset;
            answer.size = parts[at + 1].size();
            answer.details.message = page + " whole: group " +
                                     quoted(slot.attribute("name").value_or("")) +
                                     " has no member " + quoted(parts[at + 1]) +
                                     ", and no pattern of it serves this argument.";
            answer.details.related.push_back({first.place, "the slot"});
            break;
        }
    } else {
        answer.details.message = page + ": " + std::string(first.rule.meaning);
        answer.details.related.push_back({first.place, "what it is built from"});
    }
    return failed(name, std::move(answer));
}

/// What a page's name may give for a slot.
std::vector<std::string> PageNames::argumentsOf(const xml::Element& slot) {
    const auto& groups = loaded_.layout->magicPanelInfos();
    const auto groupName = slot.attribute("name");
    const auto* group = groups && groupName ? groups->find(*groupName) : nullptr;
    std::vector<std::string> names;
    if (!group || !effort_.spend((*group)->size()))
        return names;
    for (const auto& [name, panel] : **group) {
        const auto key = wildcards_->find(name);
        if (key != wildcards_->end() && effort_.spend(key->second.size()))
            names.insert(names.end(), key->second.begin(), key->second.end());
        else
            names.push_back(name);
    }
    return names;
}

/// The name of a custom page with the nearest template and arguments; "" when there is none.
std::string PageNames::repaired(const std::string& name) {
    std::vector<std::string> parts = text::split(withPlainDashes(name), '-');
    if (parts.size() < 2)
        return "";
    readTemplates();
    if (!templates_.contains(parts.front()))
        parts.front() = effort_.nearest(parts.front(), templateNames_);
    // A style whose name is empty is a template, too, but not one that anybody means.
    const Template* source = parts.front().empty() ? nullptr : templateNamed(parts.front());
    if (!source || source->slots.size() != parts.size() - 1)
        return "";
    for (std::size_t at = 1; at < parts.size(); ++at) {
        const std::vector<std::string> known = argumentsOf(source->slots[at - 1]);
        if (effort_.spend(known.size()) && std::ranges::find(known, parts[at]) == known.end())
            parts[at] = effort_.nearest(parts[at], known);
    }
    const std::string made = joined(parts);
    return isPage(made) ? made : "";
}

std::string PageNames::suggestionFor(const std::string& name) {
    std::string custom = repaired(name);
    if (!custom.empty())
        return custom;
    return effort_.nearest(name, storedNames_);
}

}  // namespace yg
