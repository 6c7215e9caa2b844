// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/PageChecks.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

namespace {

using NameSet = std::unordered_set<std::string_view>;

/// What pages place by references is placed again and again: records in all pages that are looked
/// at, and names of a page that are compared for a suggestion, for so many findings.
constexpr std::size_t maxRecords = 1'000'000;
constexpr std::size_t maxNamesToCompare = 4096;
constexpr std::size_t maxSuggestions = 64;

/// The panels and elements of a page or of a panel, in the order of the document, and their names.
struct Content {
    std::vector<const PanelConfigInfo*> panels;
    std::vector<const ElementConfigInfo*> elements;
    NameSet panelNames;
    NameSet uuids;
    bool hasSlot = false;

    /// False when there is more than `room` records, and not all are here.
    bool add(const PanelList& list, std::size_t& room) {
        std::vector<const PanelConfigInfo*> pending;
        const auto push = [&](const PanelList& children) {
            for (std::size_t at = children.size(); at > 0; --at)
                pending.push_back(children[at - 1].get());
        };
        push(list);
        while (!pending.empty()) {
            const PanelConfigInfo& panel = *pending.back();
            pending.pop_back();
            if (room <= panel.paneElements()->size())
                return false;
            room -= 1 + panel.paneElements()->size();
            panels.push_back(&panel);
            hasSlot = hasSlot || panel.isMagicPanels();
            if (panel.panelName())
                panelNames.insert(*panel.panelName());
            for (const auto& element : *panel.paneElements()) {
                elements.push_back(element.get());
                if (element->elementUuid())
                    uuids.insert(*element->elementUuid());
            }
            push(*panel.panePanes());
        }
        return true;
    }
};

/// A name that an attribute refers to, or a part of it.
struct Reference {
    const Rule* rule;  ///< what is wrong when there is nothing of the name
    const void* record;
    std::string_view attribute;
    std::string_view name;
    std::size_t offset;
    const NameSet* within;  ///< the names of its page
};

void forEachReference(const StyleConfigInfo* style, const Content& content, auto visit) {
    const auto whole = [&](const Rule& rule, const void* record, std::string_view attribute,
                           const std::optional<std::string>& name) {
        if (name && !name->empty())
            visit(Reference{&rule, record, attribute, *name, 0, &content.panelNames});
    };
    const auto list = [&](const void* record, std::string_view attribute,
                          const ElementConfigInfo::Names& names) {
        if (!names)
            return;
        std::size_t offset = 0;
        for (const std::string& name : *names) {
            if (!name.empty())
                visit(Reference{&"unknown-dispatch-element"_rule, record, attribute, name, offset,
                                &content.uuids});
            offset += name.size() + 1;
        }
    };
    if (style)
        whole("unknown-focus"_rule, style, "focus", style->styleFucus());
    for (const PanelConfigInfo* const panel : content.panels)
        whole("unknown-expand-panel"_rule, panel, "switch_expand_panel",
              panel->switchExpandPanelName());
    for (const ElementConfigInfo* const element : content.elements) {
        list(element, "event_dispatch_dest", element->eventDispathDestArray());
        list(element, "event_dispatch_src", element->eventDispathSrcArray());
    }
}

std::vector<RelatedPlace> at(const std::optional<Place>& place, std::string_view meaning) {
    return place ? std::vector<RelatedPlace>{{*place, meaning}} : std::vector<RelatedPlace>();
}

class PagesCheck {
public:
    PagesCheck(const Loaded& loaded, Gathering& findings) : loaded_(loaded), findings_(findings) {}

    void check() {
        if (const auto& groups = loaded_.layout->magicPanelInfos()) {
            for (const auto& [group, members] : *groups) {
                for (const auto& [name, panel] : *members)
                    read(shared_, panel);
            }
        }
        if (const auto& panels = loaded_.layout->reusePanelInfos()) {
            for (const auto& [name, panel] : *panels)
                read(shared_, panel);
        }
        const auto isTab = [](const Page& page) { return page.source == Page::Source::tab; };
        const auto isAny = [](const Page&) { return true; };
        const auto noteMissing = [&](const Page& page, const Content& content) {
            forEachReference(page.style.get(), content, [&](const Reference& reference) {
                if (!isThere(reference, page))
                    note(reference, &page, content.hasSlot);
            });
        };
        forEachPage(isTab, [&](const Page&, const Content& content) {
            tabUuids_.insert(content.uuids.begin(), content.uuids.end());
        });
        // What a page refers to is on it or on a tab, so most pages are gone through once.
        forEachPage(isAny, [&](const Page& page, const Content& content) {
            panelNames_.insert(content.panelNames.begin(), content.panelNames.end());
            checkTwice(page, content);
            if (isTab(page))
                return;
            pageUuids_.insert(content.uuids.begin(), content.uuids.end());
            noteMissing(page, content);
        });
        forEachPage(isTab, noteMissing);
        if (!unresolved_.empty())
            forEachPage(isAny, [&](const Page& page, const Content& content) {
                forEachReference(page.style.get(), content, [&](const Reference& reference) {
                    if (names_.contains(reference.name) && isThere(reference, page))
                        noteFound(reference);
                });
            });
        forEachReference(nullptr, shared_, [&](const Reference& reference) {
            if (!reference.within->contains(reference.name) && !isOnAnyPage(reference))
                note(reference, nullptr, false);
        });
        if (isWhole_)
            report();
    }

private:
    /// The place of a name that is not there.
    struct Key {
        std::string_view file;  ///< lives as long as the element
        std::size_t attribute;  ///< where it begins
        std::size_t offset;

        friend auto operator<=>(const Key&, const Key&) = default;  // NOLINT(*-nullptr)
    };
    struct Unresolved {
        const Rule* rule;
        xml::Element element;
        std::string_view attribute;
        std::string name;
        std::string page;  ///< one that has nothing of the name; "" for a panel on no page
        std::optional<Place> pagePlace;
        std::optional<std::string> suggestion;
        bool isFoundElsewhere = false;
        bool canBeSwappedIn = false;
    };

    void read(Content& content, const std::shared_ptr<PanelConfigInfo>& panel) {
        isWhole_ = content.add({panel}, room_) && isWhole_;
    }

    void forEachPage(const auto& isWanted, const auto& visit) {
        std::size_t room = maxRecords;
        for (const Page& page : loaded_.pages) {
            if (!isWanted(page))
                continue;
            Content content;
            if (!content.add(*page.style->stylePanes(), room)) {
                isWhole_ = false;
                return;
            }
            visit(page, content);
        }
    }

    bool isOnAnyPage(const Reference& reference) const {
        if (reference.rule != &"unknown-dispatch-element"_rule)
            return panelNames_.contains(reference.name);
        return pageUuids_.contains(reference.name) || tabUuids_.contains(reference.name);
    }

    /// A tab is shown inside a page, so that the elements of both meet.
    bool isThere(const Reference& reference, const Page& page) const {
        if (reference.within->contains(reference.name))
            return true;
        if (reference.rule != &"unknown-dispatch-element"_rule)
            return false;
        return tabUuids_.contains(reference.name) ||
               (page.source == Page::Source::tab && pageUuids_.contains(reference.name));
    }

    /// Absent for what a pattern gave, which is in no file.
    std::optional<Key> keyOf(const Reference& reference, const xml::Element& element) const {
        const auto point = element.attributePoint(reference.attribute);
        if (!point || point->file.empty())
            return std::nullopt;
        return Key{point->file, point->offset, reference.offset};
    }

    void note(const Reference& reference, const Page* page, bool hasSlot) {
        const xml::Element element = findings_.originOf(reference.record);
        const auto key = keyOf(reference, element);
        if (!key)
            return;
        const auto [found, isNew] = unresolved_.try_emplace(*key);
        Unresolved& unresolved = found->second;
        if (hasSlot && !unresolved.canBeSwappedIn)
            unresolved.canBeSwappedIn =
                (reference.rule == &"unknown-dispatch-element"_rule ? shared_.uuids
                                                                    : shared_.panelNames)
                    .contains(reference.name);
        if (!isNew)
            return;
        unresolved.rule = reference.rule;
        unresolved.element = element;
        unresolved.attribute = reference.attribute;
        unresolved.name = reference.name;
        unresolved.suggestion = nearest(reference);
        names_.insert(reference.name);
        if (page) {
            unresolved.page = page->name;
            const xml::Element style = findings_.originOf(page->style.get());
            if (reference.record != page->style.get())
                unresolved.pagePlace = style.tagPlace();
        }
    }

    std::optional<std::string> nearest(const Reference& reference) {
        if (suggestions_ == maxSuggestions || reference.within->size() > maxNamesToCompare)
            return std::nullopt;
        ++suggestions_;
        std::vector<std::string> names(reference.within->begin(), reference.within->end());
        std::ranges::sort(names);
        const std::string meant = text::nearest(reference.name, names);
        return meant.empty() ? std::nullopt : std::optional(meant);
    }

    void noteFound(const Reference& reference) {
        const auto key = keyOf(reference, findings_.originOf(reference.record));
        const auto found = key ? unresolved_.find(*key) : unresolved_.end();
        if (found != unresolved_.end())
            found->second.isFoundElsewhere = true;
    }

    void report() {
        for (auto& [key, unresolved] : unresolved_) {
            const bool isElement = unresolved.rule == &"unknown-dispatch-element"_rule;
            const std::string what = isElement ? "element" : "panel";
            const std::string where =
                unresolved.page.empty() ? "any page" : "page '" + unresolved.page + "'";
            const std::string named =
                (isElement ? "has the uuid '" : "is named '") + unresolved.name + "'";
            const bool isPartly = unresolved.isFoundElsewhere || unresolved.canBeSwappedIn;
            Details details;
            details.message =
                text::format("%@ '%@' %@: no %@ of %@ has this %@.", what, unresolved.name,
                             isPartly ? "is not on each page that shows this" : "does not exist",
                             what, where, isElement ? "uuid" : "name");
            if (!isPartly)
                details.suggestion = std::move(unresolved.suggestion);
            details.related = at(unresolved.pagePlace, "the page");
            const Rule& rule = isPartly ? "missing-on-some-pages"_rule : *unresolved.rule;
            findings_.onPart(rule, unresolved.element, unresolved.attribute, key.offset,
                             unresolved.name.size(), std::move(details));
        }
    }

    /// What may stand on a page once.
    void checkTwice(const Page& page, const Content& content) {
        const bool isEachOnce = content.uuids.size() == content.elements.size();
        std::unordered_map<std::string_view, const ElementConfigInfo*> byUuid;
        const ElementConfigInfo* responder = nullptr;
        for (const ElementConfigInfo* const element : content.elements) {
            const std::optional<std::string>& uuid = element->elementUuid();
            if (!isEachOnce && uuid && !uuid->empty()) {
                const auto [first, isNew] = byUuid.try_emplace(*uuid, element);
                if (!isNew)
                    reportTwice("duplicate-uuid"_rule, "uuid", first->second, element,
                                "uuid '" + *uuid + "' stands twice on page '" + page.name + "'");
            }
            if (!element->isFristReponder())
                continue;
            if (responder)
                reportTwice("second-first-responder"_rule, "is_first_responder", responder, element,
                            "is_first_responder is true above as well on page '" + page.name + "'");
            else
                responder = element;
        }
    }

    void reportTwice(const Rule& rule, std::string_view attribute, const ElementConfigInfo* first,
                     const ElementConfigInfo* second, std::string message) {
        if (!twice_.emplace(&rule, second).second)
            return;
        const xml::Element earlier = findings_.originOf(first);
        xml::Element later = findings_.originOf(second);
        if (!later.place())  // a pattern gave it
            later = earlier;
        const bool isSame = later.place() == earlier.place();
        Details details;
        details.message = std::move(message) + (isSame ? ": this is shown twice." : ".");
        if (!isSame)
            details.related = at(earlier.attributePlace(attribute), "the earlier one");
        findings_.onAttribute(rule, later, attribute, std::move(details));
    }

    const Loaded& loaded_;
    Gathering& findings_;
    std::size_t room_ = maxRecords;
    bool isWhole_ = true;  ///< all pages were looked at
    Content shared_;       ///< all members and reuse panels, shown or not
    NameSet panelNames_;   ///< of all pages
    NameSet pageUuids_;
    NameSet tabUuids_;
    std::map<Key, Unresolved> unresolved_;
    NameSet names_;  ///< of these
    std::size_t suggestions_ = 0;
    std::set<std::pair<const Rule*, const ElementConfigInfo*>> twice_;
};

// ---- Sizes ----

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("+-.0123456789") == std::string_view::npos;
}

std::string inWords(float number) {
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

/// What shares may add up to; those of thirds are written with two digits.
constexpr float mostShares = 1.005F;

class SizesCheck {
public:
    explicit SizesCheck(Gathering& findings) : findings_(findings) {}

    void checkStyle(const StyleConfigInfo& style) {
        checkShares(&style, *style.stylePanes());
        for (const auto& panel : *style.stylePanes())
            check(panel);
    }

    /// A panel with all below it, each once.
    void check(const std::shared_ptr<PanelConfigInfo>& top) {
        std::vector<const PanelConfigInfo*> pending{top.get()};
        while (!pending.empty()) {
            const PanelConfigInfo& panel = *pending.back();
            pending.pop_back();
            if (!checked_.insert(&panel).second)
                continue;
            checkBounds(panel);
            checkShares(&panel, *panel.panePanes());
            for (const auto& child : *panel.panePanes())
                pending.push_back(child.get());
        }
    }

private:
    /// A largest size of 0, the default, is none.
    void checkBounds(const PanelConfigInfo& panel) {
        const float least = panel.minSize();
        const float most = panel.maxSize();
        const float fixed = panel.fixSize();
        const bool areCrossed = most > 0 && least > most;
        const bool isOutside = fixed >= 0 && (fixed < least || (most > 0 && fixed > most));
        const bool isWithoutSpace =
            fixed < 0 && (panel.splitScale() < 0 || (panel.splitScale() == 0 && least <= 0));
        if (!areCrossed && !isOutside && !isWithoutSpace)
            return;
        const xml::Element element = findings_.originOf(&panel);
        if (areCrossed)
            findings_.onAttribute(
                "min-above-max"_rule, element, "min_size",
                {.message = "min_size " + inWords(least) + " is above max_size " + inWords(most) +
                            ", so no size meets both.",
                 .related = at(element.attributePlace("max_size"), "the largest size")});
        else if (isOutside) {
            const bool isBelow = fixed < least;
            findings_.onAttribute(
                "fixed-size-out-of-bounds"_rule, element, "fix_size",
                {.message = "fix_size " + inWords(fixed) +
                            (isBelow ? " is below min_size " + inWords(least)
                                     : " is above max_size " + inWords(most)) +
                            ".",
                 .related = at(element.attributePlace(isBelow ? "min_size" : "max_size"),
                               isBelow ? "the smallest size" : "the largest size")});
        }
        const auto share = element.attribute("split_scale");
        if (share && isNumber(*share) && isWithoutSpace)
            findings_.onAttribute(
                "share-without-space"_rule, element, "split_scale",
                {.message = "split_scale " + std::string(*share) + " gives the panel no space."});
    }

    /// Shares of the panels that are written here. Those that a slot or a reference brings are made
    /// for many places, and shares of 1 and more are weights.
    void checkShares(const void* around, const PanelList& children) {
        // Most shares are not too much, wherever their panels are written.
        float sum = 0;
        for (const auto& child : children) {
            if (child->fixSize() < 0 && child->splitScale() > 0 && child->splitScale() < 1)
                sum += child->splitScale();
        }
        if (sum <= mostShares)
            return;
        sum = 0;
        const xml::Element parent = findings_.originOf(around);
        xml::Element last;
        std::vector<xml::Element> others;
        for (const auto& child : children) {
            if (child->fixSize() >= 0)
                continue;
            const xml::Element element = findings_.originOf(child.get());
            if (!element || element.parent() != parent)
                continue;
            const auto share = element.attribute("split_scale");
            if (!share || child->splitScale() >= 1 || child->splitScale() < 0)
                return;
            sum += child->splitScale();
            if (last && others.size() < maxSuggestions)
                others.push_back(last);
            last = element;
        }
        if (sum <= mostShares)
            return;
        Details details{.message = "split_scale " +
                                   std::string(last.attribute("split_scale").value_or("")) +
                                   " makes the shares of this space add up to " + inWords(sum) +
                                   ", more than the whole."};
        for (const xml::Element& other : others)
            details.related.push_back({other.attributePlace("split_scale").value_or(Place()),
                                       "another share of the same space"});
        findings_.onAttribute("shares-above-whole"_rule, last, "split_scale", std::move(details));
    }

    Gathering& findings_;
    std::unordered_set<const PanelConfigInfo*> checked_;
};

}  // namespace

void checkPages(const Loaded& loaded, Gathering& findings) {
    PagesCheck(loaded, findings).check();
}

void checkPanelSizes(const Loaded& loaded, Gathering& findings) {
    SizesCheck sizes(findings);
    for (const Page& page : loaded.pages) {
        if (page.source != Page::Source::custom)
            sizes.checkStyle(*page.style);
    }
    if (const auto& groups = loaded.layout->magicPanelInfos()) {
        for (const auto& [group, members] : *groups) {
            for (const auto& [name, panel] : *members)
                sizes.check(panel);
        }
    }
    if (const auto& panels = loaded.layout->reusePanelInfos()) {
        for (const auto& [name, panel] : *panels)
            sizes.check(panel);
    }
}

}  // namespace yg
