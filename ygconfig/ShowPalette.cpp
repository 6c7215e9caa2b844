// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/PaletteView.h"

namespace yg::tool {

Answer showPalette(const Session& session) {
    const auto light = YGPaletteLoad::initWithPaletteStyle(0);
    const auto dark = YGPaletteLoad::initWithPaletteStyle(1);
    if (!light && !dark)
        return {"", ExitCode::noAnswer, "ygconfig: no palette can be loaded"};
    return {PaletteView(light.get(), dark.get(), session.colour).palettes()};
}

}  // namespace yg::tool
