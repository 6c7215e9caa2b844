// SPDX-License-Identifier: MIT
#include "Theme.h"

#include <cmath>
#include <iostream>

#include "YGConfigManager/host/NotificationCenter.h"

namespace terminal {

namespace {

void drawWindow(const yg::YGPaletteLoad& palette) {
    // Components go from 0 to 1. A key without a colour is red, so that somebody notices.
    const yg::Color back = palette.getCustomColor("Window.background");
    std::cout << "window: " << std::lround(back.red * 255) << ' ' << std::lround(back.green * 255)
              << ' ' << std::lround(back.blue * 255) << '\n';
}

}  // namespace

std::string_view themeName(std::int8_t style) {
    return style == 0 ? "light" : "dark";
}

bool switchTheme(const std::shared_ptr<yg::YGPaletteLoad>& palette, MainLoop& loop) {
    drawWindow(*palette);

    // Each window observes the switch for as long as it keeps its token.
    const yg::NotificationCenter::Token window = yg::NotificationCenter::standard().addObserver(
        yg::YGUIOverallStyleDidChangeNotification, palette.get(),
        [&](const yg::Notification& notification) {
            drawWindow(*std::static_pointer_cast<yg::YGPaletteLoad>(notification.sender));
            loop.quit();
        });

    // Reads the other palette now; the notification comes later, out of the main loop.
    const std::int8_t before = palette->currentPaletteStyle();
    palette->reloadPaletteWithOtherStyle(before == 0 ? 1 : 0);
    if (palette->currentPaletteStyle() == before) {
        std::cerr << "The other theme cannot be read.\n";
        return false;
    }
    loop.run();
    std::cout << "theme: " << themeName(palette->currentPaletteStyle()) << '\n';
    return true;
}

}  // namespace terminal
