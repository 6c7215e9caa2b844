// SPDX-License-Identifier: MIT
#include "ygconfig/Palette.h"

namespace yg::tool {

void declareNothing(CLI::App&, Arguments&) {}

void declarePalette(CLI::App& app, Arguments& arguments) {
    declareNumber(app, "--palette-style", "N", arguments.paletteStyle,
                  "the theme: 0 light, 1 dark; 0 if not given");
}

void declarePaletteKey(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "KEY", arguments.name, "an application key");
    declarePalette(app, arguments);
}

void declareImage(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name, "an image's name");
    declarePalette(app, arguments);
    declareNumber(app, "--group", "COUNT", arguments.groupCount, "how many pieces the image has");
    declareNumber(app, "--index", "I", arguments.indexInGroup, "the piece, from 0");
    declareNumber(app, "--width", "W", arguments.width, "scaled to this width, in points");
    declareNumber(app, "--height", "H", arguments.height, "scaled to this height, in points");
    declareText(app, "-o,--output", "FILE", arguments.output, "the PNG file to write");
}

std::shared_ptr<YGPaletteLoad> loadPalette(const Arguments& arguments) {
    return YGPaletteLoad::initWithPaletteStyle(arguments.paletteStyle.value_or(0));
}

}  // namespace yg::tool
