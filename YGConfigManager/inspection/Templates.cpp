// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Templates.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>

#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/inspection/Pages.h"

namespace yg {

SlotArguments::SlotArguments(const YGStyleConfigLoad& loader)
    : loader_(loader),
      lists_(YGFrameComFun::getMappingDicForKey(wildcardMapping)),
      values_(lists_ ? wildcardValues(*lists_)
                     : std::map<std::string_view, std::vector<std::string_view>>()) {}

const SlotArguments::List& SlotArguments::of(const std::optional<std::string>& group) {
    const auto [known, isNew] = byGroup_.try_emplace(group);
    if (!isNew)
        return known->second;
    auto made = std::make_shared<std::vector<std::string>>();
    std::set<std::string> names;
    const auto add = [&](std::string_view argument) {
        if (names.insert(std::string(argument)).second)
            made->emplace_back(argument);
    };
    if (group) {
        for (const SlotMember& member : loader_.slotMembers(*group)) {
            if (member.name.find('-') == std::string::npos)
                add(member.name);
            const auto pattern = values_.find(member.name);
            if (pattern != values_.end())
                std::ranges::for_each(pattern->second, add);
        }
    }
    known->second = std::move(made);
    return known->second;
}

std::vector<TemplateSignature> signaturesOf(
    const YGStyleConfigLoad& loader, const std::function<RootPlace(const xml::Element&)>& placeOf,
    const std::optional<std::string>& name) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    SlotArguments arguments(loader);
    std::vector<TemplateSignature> signatures;
    for (const PageTemplate& made : loader.templates()) {
        if (name && made.name != *name)
            continue;
        TemplateSignature& signature = signatures.emplace_back();
        signature.name = made.name;
        signature.place = placeOf(made.element);
        signature.pages = 1;
        for (const auto& group : made.groups) {
            const TemplateSignature::Slot& slot =
                signature.slots.emplace_back(TemplateSignature::Slot{group, arguments.of(group)});
            const std::uint64_t count = slot.arguments->size();
            signature.pages =
                count != 0 && signature.pages > most / count ? most : signature.pages * count;
        }
    }
    return signatures;
}

}  // namespace yg
