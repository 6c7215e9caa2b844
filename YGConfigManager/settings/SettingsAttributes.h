// SPDX-License-Identifier: MIT
//
// The attributes of settings and of web pages. Internal.
#pragma once

#include <optional>
#include <string_view>
#include <tuple>

#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

/// What stands beside an item's text; the texts here live as long as their tree.
struct SettingsItem {
    std::optional<std::string_view> description;
};
struct WebPage {
    std::optional<std::string_view> key;
};

template <>
struct Description<SettingsItem> {
    static constexpr std::tuple fields{
        Field{"description", &SettingsItem::description, &SettingsItem::description,
              AttributeInfo{.name = "description",
                            .sentence = "What the item is for; for people, it changes nothing."}}};
};

template <>
struct Description<WebPage> {
    static constexpr std::tuple fields{
        Field{"key", &WebPage::key, &WebPage::key,
              AttributeInfo{.name = "key",
                            .sentence = "The name by which the terminal asks for the address; "
                                        "without an apostrophe.",
                            .names = Naming::webPage,
                            .defines = true,
                            .isRequired = true}}};
};

}  // namespace yg
