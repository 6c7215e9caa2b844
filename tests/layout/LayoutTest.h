// SPDX-License-Identifier: MIT
//
// What the tests of the layout share: a root folder with the six files of one layout, a host that
// knows it, and a loader.
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg::testing {

/// The files that make up a layout.
enum class LayoutFile { styles, tabs, magicPanels, softStyles, softMagicPanels, reusePanels };

inline constexpr LayoutFile allLayoutFiles[] = {
    LayoutFile::styles,          LayoutFile::tabs,
    LayoutFile::magicPanels,     LayoutFile::softStyles,
    LayoutFile::softMagicPanels, LayoutFile::reusePanels};

/// The file's place below the root folder.
inline std::string_view placeOf(LayoutFile file) {
    switch (file) {
        case LayoutFile::styles:
            return "config/styles.xml";
        case LayoutFile::tabs:
            return "config/tabs.xml";
        case LayoutFile::magicPanels:
            return "config/magic.xml";
        case LayoutFile::softStyles:
            return "soft/styles.xml";
        case LayoutFile::softMagicPanels:
            return "soft/magic.xml";
        case LayoutFile::reusePanels:
            return "base/reuse_panels.xml";
    }
    return "";
}

inline std::ostream& operator<<(std::ostream& out, LayoutFile file) {
    return out << placeOf(file);
}

/// The root element of a text.
inline xml::Element parsed(std::string_view text) {
    const xml::ParseResult result = xml::Document::parseText(text);
    EXPECT_TRUE(result) << result.error << " in " << text;
    return result.document.root();
}

/// What a map holds under a name; null also for an absent map.
template <class Value>
Value find(const std::shared_ptr<const RecordMap<Value>>& map, std::string_view name) {
    const Value* found = map ? map->find(name) : nullptr;
    return found ? *found : Value();
}

class LayoutTest : public ::testing::Test {
protected:
    /// The sink is the loader's.
    explicit LayoutTest(DiagnosticsSink* sink = nullptr) : loader(sink) {
        host->softOptimizeFolder = root.at("soft");
        host->baseOptimizeFolder = root.at("base");
    }

    std::string path(LayoutFile file) const { return root.at(placeOf(file)); }

    void write(LayoutFile file, std::string_view text) const { root.write(placeOf(file), text); }

    /// Fills the loader from the six files; those that the test has not written are missing.
    void load() { load(loader); }

    void load(YGStyleConfigLoad& into) const {
        into.initWithStyleConfigPath(path(LayoutFile::styles), path(LayoutFile::tabs),
                                     path(LayoutFile::magicPanels));
    }

    /// A main style; null when there is none of that name.
    std::shared_ptr<StyleConfigInfo> style(std::string_view name) const {
        return find(loader.styleInfos(), name);
    }

    std::shared_ptr<StyleConfigInfo> tabStyle(std::string_view name) const {
        return find(loader.tabStyleInfos(), name);
    }

    /// A member of a group of magic panels; null when there is none.
    std::shared_ptr<PanelConfigInfo> magicPanel(std::string_view group,
                                                std::string_view member) const {
        return find(find(loader.magicPanelInfos(), group), member);
    }

    const files::TemporaryFolder root;
    const ScopedHost<> host;
    YGStyleConfigLoad loader;
};

/// The names of panels, in order; an absent one counts as "(absent)".
inline std::vector<std::string> names(const std::shared_ptr<PanelList>& panels) {
    std::vector<std::string> found;
    for (const auto& panel : *panels)
        found.push_back(panel->panelName().value_or("(absent)"));
    return found;
}

inline std::vector<std::string> names(const std::shared_ptr<ElementList>& elements) {
    std::vector<std::string> found;
    for (const auto& element : *elements)
        found.push_back(element->elementName().value_or("(absent)"));
    return found;
}

/// The keys of a map of records, in order.
template <class Map>
std::vector<std::string> keys(const std::shared_ptr<Map>& map) {
    std::vector<std::string> found;
    for (const auto& entry : *map)
        found.push_back(entry.key);
    return found;
}

}  // namespace yg::testing
