// SPDX-License-Identifier: MIT
//
// The layout read the way the library reads it, step for step, but over another library's own tree:
// what the library's reading is measured against. Records and attribute tables are the library's.
#pragma once

#include <memory>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "benchmarks/SkeletonGenerator.h"

namespace yg::benchmarks {

/// What a load gives.
struct PeerLayout {
    std::shared_ptr<StyleMap> styleInfos;
    std::shared_ptr<StyleMap> tabStyleInfos;
    std::shared_ptr<MagicPanelMap> magicPanelInfos;
    std::shared_ptr<PanelMap> reusePanelInfos;
    std::shared_ptr<void> templateTree;
    std::shared_ptr<void> magicTree;
};

/// Over libxml2's tree, as xmlReadMemory makes it.
PeerLayout loadWithLibxml2(const Skeleton& skeleton);

/// Over pugixml's tree, as its own lenient parser makes it.
PeerLayout loadWithPugixml(const Skeleton& skeleton);

}  // namespace yg::benchmarks
