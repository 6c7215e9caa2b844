// SPDX-License-Identifier: MIT
//
// Settings, web pages and request URLs as text for people.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "YGConfigManager/settings/YGHttpReqUrlModel.h"
#include "YGConfigManager/xml/Document.h"

#include "ygconfig/drawing/Paint.h"
#include "ygconfig/files/DroppedNodes.h"

namespace yg::tool {

/// Explains the words and signs of the trees; lines, each with its line feed.
inline constexpr std::string_view settingsLegend =
    "What the trees say:\n"
    "  ITEM  \"TEXT\"  WORDS    an item, its text and its description\n"
    "  skipped                an item or address behind another one of the same name or key, or\n"
    "                         what no name or key can ask for\n";

inline constexpr std::string_view urlsLegend =
    "What the lines say:\n"
    "  KEY  ADDRESS           in the order of the file\n"
    "  skipped                behind another one of the same key, or without a key to ask for\n"
    "  (no address)           its key gives none\n";

class SettingsView {
public:
    explicit SettingsView(const Paint& paint) : paint_(paint) {}

    /// A tree for each section. `shownPath` stands for the file.
    std::string settings(const xml::Document& file, const DroppedNodes& dropped,
                         std::string_view shownPath) const;

    /// A line for each address.
    std::string webPages(const xml::Document& file, const DroppedNodes& dropped,
                         std::string_view shownPath) const;

    /// The digest and a line for each address. Null: there is no list.
    std::string requestUrls(const std::shared_ptr<const YGHttpReqUrlModel>& list,
                            std::string_view shownPath) const;

private:
    const Paint paint_;
};

}  // namespace yg::tool
