// SPDX-License-Identifier: MIT
//
// What the parts of the style loader share: the names in layout files under which things are
// defined and referred to, beside the attributes of records. Internal.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <tuple>

#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/records/Entry.h"

namespace yg {

/// The one attribute of an entry that gives a name; the text lives as long as its tree.
template <const AttributeInfo& info>
struct Named {
    std::optional<std::string_view> name;
};

template <const AttributeInfo& info>
struct Description<Named<info>> {
    static constexpr std::tuple fields{Field{"name", &Named<info>::name, &Named<info>::name, info}};
};

/// Of the root of a style file, but not of the tab file.
inline constexpr AttributeInfo defaultStyle{
    .name = "default_style", .sentence = "The page that is shown first.", .names = Naming::style};

/// Of a group in a magic panel file, "magic_panels".
inline constexpr AttributeInfo magicGroup{
    .name = "name",
    .sentence = "The name of the group, by which slots choose it.",
    .names = Naming::magicGroup,
    .defines = true,
    .isRequired = true};

/// Of a member of a group, "magic_panel".
inline constexpr AttributeInfo magicMember{
    .name = "name",
    .sentence = "The name of the member, by which custom pages choose it.",
    .names = Naming::magicPanel,
    .defines = true,
    .isRequired = true};

/// Of a slot in a style or a panel, "magic_panels".
inline constexpr AttributeInfo magicSlot{
    .name = "name",
    .sentence = "The group of magic panels whose first member is shown here.",
    .names = Naming::magicGroup,
    .isRequired = true};

/// Of a definition in the reuse panel file, "reuse_panel", beside the attributes of its panel.
inline constexpr AttributeInfo reuseDefinition{
    .name = "name",
    .sentence = "The name of the panel, by which references choose it.",
    .names = Naming::reusePanel,
    .defines = true,
    .isRequired = true};

/// Of a reference in a panel, "reuse_panel".
inline constexpr AttributeInfo reuseReference{.name = "name",
                                              .sentence = "The reuse panel that is shown here.",
                                              .names = Naming::reusePanel,
                                              .isRequired = true};

/// The name that an entry gives.
template <const AttributeInfo& info>
std::optional<std::string_view> nameIn(Entry& entry) {
    Named<info> named;
    entry.read(named);
    return named.name;
}

/// A panel from the attributes of its element, in whatever file; never null. `member` and `group`
/// are the magic panel around it and its group, "" for none.
std::shared_ptr<PanelConfigInfo> readPanel(Entry& entry, std::string_view member = {},
                                           std::string_view group = {});

/// Notes what an entry defines, and reports that it replaces an earlier definition.
inline void noteDefinition(Entry& entry, std::string_view name, RecordMap<xml::Element>& places,
                           const Rule& inSameFile, const Rule& inOtherFile) {
    if (const auto earlier = entry.define(name, places)) {
        const bool isSame = earlier->file == entry.element().place().value_or(Place()).file;
        entry.report(isSame ? inSameFile : inOtherFile, "name", name, earlier);
    }
}

}  // namespace yg
