// SPDX-License-Identifier: MIT
#include "YGConfigManager/formats/Formats.h"

#include <algorithm>

namespace yg {

std::span<const FormatInfo* const> formats() {
    static constexpr const FormatInfo* all[] = {
        &stylesFormat,  &magicPanelsFormat, &reusePanelsFormat, &eventsFormat,      &paletteFormat,
        &serversFormat, &settingsFormat,    &webPagesFormat,    &requestUrlsFormat, &hostFormat,
    };
    return all;
}

const FormatInfo* formatNamed(OptionalText id) {
    const auto found = std::ranges::find_if(
        formats(), [&](const FormatInfo* format) { return id && format->id == *id; });
    return found == formats().end() ? nullptr : *found;
}

std::vector<const ElementInfo*> elementsOf(const FormatInfo& format) {
    std::vector<const ElementInfo*> elements{&format.root};
    for (std::size_t at = 0; at < elements.size(); ++at) {
        for (const ElementInfo* child : elements[at]->content) {
            if (std::ranges::find(elements, child) == elements.end())
                elements.push_back(child);
        }
    }
    return elements;
}

}  // namespace yg
