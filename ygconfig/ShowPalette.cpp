// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/PaletteView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showPalette(const Session& session) {
    UnreadableFiles unreadable;
    const auto light = YGPaletteLoad::initWithPaletteStyle(0, &unreadable);
    const auto dark = YGPaletteLoad::initWithPaletteStyle(1, &unreadable);
    if (!light && !dark) {
        std::string complaint = unreadable.complaint();
        complaint += complaint.empty() ? "" : "\n";
        return {"", ExitCode::noAnswer, complaint + "ygconfig: no palette can be loaded"};
    }
    return {PaletteView(light.get(), dark.get(), session.colour).palettes(), ExitCode::answer,
            unreadable.complaint()};
}

}  // namespace yg::tool
