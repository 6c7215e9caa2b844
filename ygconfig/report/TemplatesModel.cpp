// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ygconfig/report/LayoutModel.h"

namespace yg::tool {

namespace {

using Numbers = LayoutRecords::Numbers;

/// Of the pages that are built for the report, about the bytes of their XML and of their records.
constexpr std::size_t mostBytes = std::size_t{4} * 1024 * 1024;
/// The arguments of a slot with which pages are built.
constexpr std::size_t mostArguments = 100;

template <class Record>
std::size_t bytesOf(const Record& record) {
    std::size_t bytes = sizeof record;
    forEachField(record, [&](std::string_view, const auto& field) {
        if constexpr (requires { field->append(""); })
            bytes += field ? field->size() : 0;
    });
    return bytes;
}

/// Of a page with all that it holds.
std::size_t bytesOf(const PanelList& panels) {
    std::size_t bytes = 0;
    std::vector<const PanelList*> pending{&panels};
    while (!pending.empty()) {
        const PanelList& list = *pending.back();
        pending.pop_back();
        for (const auto& panel : list) {
            bytes += bytesOf(*panel);
            for (const auto& element : *panel->paneElements())
                bytes += bytesOf(*element);
            pending.push_back(panel->panePanes().get());
        }
    }
    return bytes;
}

struct Argument {
    std::string text;
    bool isMember;
};

/// What pages' names may give for the slots of each group: members, then values of lists.
class Arguments {
public:
    explicit Arguments(const YGStyleConfigLoad& loader) : loader_(loader) {}

    struct OfGroup {
        std::vector<Argument> list;  ///< never empty
        bool isOpen = false;         ///< the list has a text that stands for any
        std::size_t largest = 0;     ///< about the bytes of the XML of the largest member
    };

    const OfGroup& of(const TemplateSignature::Slot& slot) {
        const auto [found, isNew] = byGroup_.try_emplace(slot.group);
        OfGroup& made = found->second;
        if (!isNew)
            return made;
        std::set<std::string> members;
        if (slot.group) {
            for (const SlotMember& member : loader_.slotMembers(*slot.group)) {
                members.insert(member.name);
                made.largest = std::max(made.largest, member.size);
            }
        }
        for (const std::string& argument : *slot.arguments)
            made.list.push_back({argument, members.contains(argument)});
        std::stable_partition(made.list.begin(), made.list.end(),
                              [](const Argument& each) { return each.isMember; });
        made.isOpen = made.list.empty();
        if (made.isOpen)
            made.list.push_back({"", false});
        return made;
    }

private:
    const YGStyleConfigLoad& loader_;
    std::map<std::optional<std::string>, OfGroup> byGroup_;
};

/// A template with the pages that were built of it.
struct Built {
    const TemplateSignature* signature;
    std::size_t size = 0;  ///< about the bytes of the XML of a page
    std::vector<const Arguments::OfGroup*> slots = {};
    std::shared_ptr<const StyleConfigInfo> first = nullptr;  ///< with the first argument everywhere
    /// For each slot the pages in which it has another argument: the second, the third …
    std::vector<std::vector<std::shared_ptr<const StyleConfigInfo>>> others = {};
};

class Building {
public:
    Building(const YGStyleConfigLoad& loader, const std::vector<TemplateSignature>& signatures)
        : loader_(loader), arguments_(loader) {
        const std::vector<PageTemplate> templates = loader.templates();
        for (std::size_t at = 0; at < signatures.size(); ++at) {
            Built& built = templates_.emplace_back(Built{&signatures[at]});
            built.size = at < templates.size() ? templates[at].size : 0;
            for (const auto& slot : signatures[at].slots) {
                built.slots.push_back(&arguments_.of(slot));
                built.size += built.slots.back()->largest;
            }
            built.others.resize(built.slots.size());
        }
    }

    /// First a page of each template, then one with each second argument, and so on.
    void build() {
        for (Built& built : templates_)
            built.first = page(built, 0, 0);
        for (std::size_t row = 1; row < mostArguments; ++row) {
            for (Built& built : templates_) {
                for (std::size_t slot = 0; slot < built.slots.size(); ++slot) {
                    if (row < built.slots[slot]->list.size() && !isFull())
                        built.others[slot].push_back(page(built, slot, row));
                }
            }
        }
    }

    const std::vector<Built>& templates() const { return templates_; }

private:
    bool isFull() const { return bytes_ >= mostBytes; }

    /// Null when the library does not build it, or the report has no room for it.
    std::shared_ptr<const StyleConfigInfo> page(const Built& built, std::size_t slot,
                                                std::size_t row) {
        if (isFull() || built.size > mostBytes - bytes_)
            return nullptr;
        std::string name = built.signature->name;
        for (std::size_t at = 0; at < built.slots.size(); ++at)
            name.append("-").append(built.slots[at]->list[at == slot ? row : 0].text);
        // A stored page of this name is not made of the template.
        const auto& stored = loader_.styleInfos();
        const bool isStored = stored && stored->contains(name);
        std::shared_ptr<const StyleConfigInfo> page;
        if (!isStored)
            page = loader_.loadStyleConfigInfoWithName(name);
        else if (const xml::Element element = loader_.createXMLElementWithStyleName(name))
            page = loader_.parseStyleConfig(element);
        bytes_ += std::max(built.size, page ? bytesOf(*page->stylePanes()) : 0);
        return page;
    }

    const YGStyleConfigLoad& loader_;
    Arguments arguments_;
    std::vector<Built> templates_;
    std::size_t bytes_ = 0;
};

/// The way to the panel that holds all that an argument of a slot changes. Absent when none changes
/// anything.
void join(std::optional<Numbers>& way, const std::optional<Numbers>& other) {
    if (!other)
        return;
    if (!way)
        way = other;
    else
        way->erase(std::ranges::mismatch(*way, *other).in1, way->end());
}

bool holds(const Numbers& outer, const Numbers& inner) {
    return std::ranges::mismatch(outer, inner).in1 == outer.end();
}

/// Whether no slot's arguments change what another one's change, so that each can be chosen apart.
bool areApart(const std::vector<std::optional<Numbers>>& ways) {
    for (std::size_t one = 0; one < ways.size(); ++one) {
        for (std::size_t other = 0; other < ways.size(); ++other) {
            if (one != other && ways[one] && ways[other] && holds(*ways[one], *ways[other]))
                return false;
        }
    }
    return true;
}

}  // namespace

struct TemplatePages::Content {
    struct Variant {
        const Argument* argument;
        Numbers panels;
    };
    struct Slot {
        std::optional<std::string> group;
        std::vector<Variant> variants;
        std::optional<Numbers> way;
        bool isOpen;
        std::size_t left;  ///< arguments with which no page was built
    };
    struct Template {
        const TemplateSignature* signature;
        std::shared_ptr<const StyleConfigInfo> first;
        std::optional<Numbers> panels;  ///< of the first page
        std::vector<Slot> slots;
        bool isApart = true;
    };

    std::vector<TemplateSignature> signatures;
    std::optional<Building> building;
    std::vector<Template> templates;
};

TemplatePages::TemplatePages(ModelSource& source, LayoutRecords& records)
    : source_(source), records_(records), content_(std::make_unique<Content>()) {
    content_->signatures = source.contents.templates();
    source.contents.asTerminal(RootContents::Storage::asUsed, [&] {
        content_->building.emplace(source.contents.layout(), content_->signatures);
        content_->building->build();
    });
    for (const Built& built : content_->building->templates()) {
        Content::Template& made = content_->templates.emplace_back();
        made.signature = built.signature;
        made.first = built.first;
        if (built.first)
            made.panels = records.numbersOfBuilt(*built.first->stylePanes());
        std::vector<std::optional<Numbers>> ways;
        for (std::size_t at = 0; at < built.slots.size(); ++at) {
            const std::vector<Argument>& arguments = built.slots[at]->list;
            Content::Slot& slot = made.slots.emplace_back();
            slot.group = built.signature->slots[at].group;
            slot.isOpen = built.slots[at]->isOpen;
            slot.variants.push_back({&arguments.front(), made.panels.value_or(Numbers())});
            for (std::size_t row = 1; made.panels && row <= built.others[at].size(); ++row) {
                const auto& page = built.others[at][row - 1];
                if (!page)
                    continue;
                slot.variants.push_back(
                    {&arguments[row], records.numbersOfBuilt(*page->stylePanes())});
                join(slot.way, records.difference(*made.panels, slot.variants.back().panels));
            }
            slot.left = arguments.size() - slot.variants.size();
            ways.push_back(slot.way);
        }
        made.isApart = areApart(ways);
    }
}

TemplatePages::~TemplatePages() = default;

void TemplatePages::write(JsonWriter& json) const {
    const auto writeVariant = [&](const Content::Slot& slot, const Content::Variant& variant) {
        json.object([&] {
            json.member("argument", variant.argument->text);
            json.member("isMember", variant.argument->isMember);
            if (slot.way && slot.way->empty())
                json.member("panels", variant.panels);
            else if (slot.way)
                json.member("panel", records_.panelAt(variant.panels, *slot.way));
        });
    };
    const auto writeSlot = [&](const Content::Slot& slot) {
        json.object([&] {
            if (slot.group)
                json.member("group", slot.group);
            json.member("isOpen", slot.isOpen);
            json.member("left", slot.left);
            if (slot.way)
                json.member("way", *slot.way);
            json.member("variants", [&] {
                json.list(slot.variants,
                          [&](const Content::Variant& variant) { writeVariant(slot, variant); });
            });
        });
    };
    json.list(content_->templates, [&](const Content::Template& each) {
        json.object([&] {
            json.member("name", each.signature->name);
            source_.places.writeAt(json, each.signature->place);
            json.member("pages", each.signature->pages);
            json.member("isApart", each.isApart);
            if (each.panels) {
                if (each.first->styleFucus())
                    json.member("focus", each.first->styleFucus());
                json.member("panels", *each.panels);
            }
            json.member("slots", [&] { json.list(each.slots, writeSlot); });
        });
    });
}

}  // namespace yg::tool
