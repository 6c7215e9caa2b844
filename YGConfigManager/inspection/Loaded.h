// SPDX-License-Identifier: MIT
//
// Everything that an inspection has loaded, for its checks. Internal. Throws std::bad_alloc.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/formats/Format.h"
#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/InspectionHost.h"
#include "YGConfigManager/inspection/SourceFiles.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"

namespace yg {

/// The folders of the storage below the root: what is shipped, and the user's copies, which count
/// instead.
inline constexpr std::string_view shippedFolder = "storage";
inline constexpr std::string_view userFolder = "user";

/// The files of the layout.
inline constexpr std::string_view mainStyleFile = "config/custompage_template.xml";
inline constexpr std::string_view layoutFiles[] = {mainStyleFile,
                                                   "config/tab_styles.xml",
                                                   "config/magic_panels.xml",
                                                   "base_optimize/reuse_panels.xml",
                                                   "soft_optimize/custompage_template.xml",
                                                   "soft_optimize/magic_panels.xml"};

/// A page that can be shown.
struct Page {
    enum class Source { style, tab, custom };
    std::string name;
    Source source;
    std::shared_ptr<const StyleConfigInfo> style;  ///< never null
};

/// One palette file that was read.
struct LoadedPalette {
    std::string file;  ///< below the root
    std::int8_t style;
    std::shared_ptr<YGPaletteLoad> palette;  ///< never null
};

/// One server file that was read.
struct LoadedServers {
    std::string file;                            ///< below the root
    std::shared_ptr<YGServerCfgLoader> servers;  ///< never null
    std::string right = {};                      ///< of its users: "free" or "l2"
    bool isGray = false;                         ///< its users belong to the grey release
};

struct Loaded {
    explicit Loaded(std::shared_ptr<InspectionHost> ofRoot)
        : host(std::move(ofRoot)), files(host->root()) {}

    std::shared_ptr<InspectionHost> host;
    SourceFiles files;
    std::shared_ptr<YGStyleConfigLoad> layout;  ///< never null
    std::vector<PageTemplate> templates;        ///< of the layout
    std::vector<Page> pages;
    std::shared_ptr<YGEventLoader> events;
    std::vector<LoadedPalette> palettes;
    std::vector<LoadedServers> servers;
    std::vector<std::string> settingsFiles;    ///< below the root
    std::vector<std::string> webPageFiles;     ///< below the root
    std::vector<std::string> requestUrlFiles;  ///< below the root
};

/// The format of a file below the root; null for a file that no loader reads.
const FormatInfo* formatOf(const Loaded& loaded, std::string_view file);

/// The description of an element of this name in another one; null where there is none.
const ElementInfo* infoIn(const ElementInfo& info, std::string_view name);

/// The description of the last of some elements, each in the one before, the root first; null where
/// the format has no such element.
const ElementInfo* infoOf(const FormatInfo& format, std::span<const xml::Element> elements);

/// Throws std::bad_alloc if a loader, or a look-up by one, lacked memory. They end their exceptions
/// themselves, so that what they give may be null or lack something.
void throwIfOutOfMemory(const InspectionHost& host, const Gathering& findings);

/// Loads the root of the host, which this thread uses, and reports to `findings`. The loaders keep
/// it, so it must outlive them.
Loaded load(std::shared_ptr<InspectionHost> host, Gathering& findings);

}  // namespace yg
