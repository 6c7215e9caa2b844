// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Pages.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/PageNames.h"

namespace yg {

namespace {

/// As long as it lives, only what is about slots is taken from loaders.
class OnlyAboutSlots {
public:
    explicit OnlyAboutSlots(Gathering& findings) : findings_(findings) {
        findings_.takeOnlyAboutSlots(true);
    }
    ~OnlyAboutSlots() { findings_.takeOnlyAboutSlots(false); }
    OnlyAboutSlots(const OnlyAboutSlots&) = delete;
    OnlyAboutSlots& operator=(const OnlyAboutSlots&) = delete;

private:
    Gathering& findings_;
};

/// The value that stands for each wildcard list, and one that could break a pattern.
std::map<std::string, std::vector<std::string>, std::less<>> valuesToTry(const MappingDic& lists) {
    const auto isMarkup = [](std::string_view value) {
        return value.find_first_of("<>&'\"") != std::string_view::npos;
    };
    std::map<std::string, std::vector<std::string>, std::less<>> chosen;
    for (const auto& [key, values] : wildcardValues(lists)) {
        std::vector<std::string>& tried = chosen[std::string(key)];
        for (const std::string_view value : values) {
            if (tried.empty() || (tried.size() == 1 && isMarkup(value) != isMarkup(tried.front())))
                tried.emplace_back(value);
        }
    }
    return chosen;
}

class Builder {
public:
    Builder(Loaded& loaded, const MappingDic& lists)
        : loaded_(loaded), values_(valuesToTry(lists)) {
        std::size_t bytes = 0;
        for (const std::string_view name : layoutFiles)
            bytes += loaded.files.file(name).bytes().size();
        maxBytes_ = std::max(leastCustomPageBytes, bytes / customPageShare);
    }

    void build() {
        std::vector<std::pair<const PageTemplate*, std::vector<const Arguments*>>> templates;
        for (const PageTemplate& style : loaded_.templates) {
            std::vector<const Arguments*> slots;
            for (const auto& group : style.groups)
                slots.push_back(&argumentsFor(group));
            if (std::ranges::none_of(slots, &Arguments::empty))
                templates.emplace_back(&style, std::move(slots));
        }
        // First each member once, for all templates, then the other combinations.
        for (const auto& each : templates) {
            const PageTemplate& style = *each.first;
            const auto& slots = each.second;
            std::size_t most = 0;
            for (const Arguments* const slot : slots)
                most = std::max(most, slot->size());
            for (std::size_t row = 0; row < most && !isFull(); ++row)
                add(style, slots, [&](std::size_t at) { return row % slots[at]->size(); });
        }
        for (const auto& [style, slots] : templates) {
            std::vector<std::size_t> chosen(slots.size());
            bool isDone = pagesOf(slots) > maxPagesOfTemplate;
            while (!isDone && !isFull()) {
                add(*style, slots, [&](std::size_t at) { return chosen[at]; });
                std::size_t at = 0;
                while (at < chosen.size() && ++chosen[at] == slots[at]->size())
                    chosen[at++] = 0;
                isDone = at == chosen.size();
            }
        }
    }

private:
    using Arguments = std::vector<SlotMember>;

    const Arguments& argumentsFor(const std::optional<std::string>& group) {
        if (!group)
            return none_;
        const auto [found, isNew] = arguments_.try_emplace(*group);
        if (!isNew)
            return found->second;
        for (const SlotMember& member : loaded_.layout->slotMembers(*group)) {
            const auto values = values_.find(member.name);
            if (values != values_.end()) {
                for (const std::string& value : values->second)
                    found->second.push_back({value, member.size});
            } else if (member.name.find('-') == std::string::npos)
                found->second.push_back(member);
        }
        return found->second;
    }

    static std::size_t pagesOf(const std::vector<const Arguments*>& slots) {
        std::size_t pages = 1;
        for (const Arguments* const slot : slots) {
            pages *= slot->size();
            if (pages > maxPagesOfTemplate)
                break;
        }
        return pages;
    }

    bool isFull() const { return pages_ >= maxCustomPages || bytes_ >= maxBytes_; }

    void add(const PageTemplate& style, const std::vector<const Arguments*>& slots,
             const auto& choice) {
        std::string name = style.name;
        std::size_t size = style.size;
        for (std::size_t at = 0; at < slots.size(); ++at) {
            const SlotMember& member = (*slots[at])[choice(at)];
            name.append("-").append(member.name);
            size += member.size;
        }
        const auto& styles = loaded_.layout->styleInfos();
        if ((styles && styles->contains(name)) || !built_.insert(name).second)
            return;
        ++pages_;
        bytes_ += size;
        if (auto page = loaded_.layout->loadStyleConfigInfoWithName(name))
            loaded_.pages.push_back({std::move(name), Page::Source::custom, std::move(page)});
    }

    Loaded& loaded_;
    const Arguments none_;
    std::map<std::string, std::vector<std::string>, std::less<>> values_;
    std::map<std::string, Arguments, std::less<>> arguments_;
    std::set<std::string> built_;
    std::size_t pages_ = 0;
    std::size_t bytes_ = 0;
    std::size_t maxBytes_ = 0;
};

}  // namespace

std::map<std::string_view, std::vector<std::string_view>> wildcardValues(const MappingDic& lists) {
    std::map<std::string_view, std::vector<std::string_view>> counted;
    std::set<std::string_view> known;
    for (const auto& [key, values] : lists) {
        std::vector<std::string_view>& ofKey = counted[key];
        for (const std::string& value : values) {
            if (known.insert(value).second && value.find('-') == std::string::npos)
                ofKey.push_back(value);
        }
    }
    return counted;
}

void addCustomPages(Loaded& loaded, Gathering& findings) {
    const OnlyAboutSlots only(findings);
    const auto lists = loaded.host->getMappingDicForKey(wildcardMapping);
    Builder(loaded, lists ? *lists : MappingDic()).build();
}

}  // namespace yg
