// SPDX-License-Identifier: MIT
//
// The first program of README.md and of docs/start.md.
#include <iostream>

#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

int main() {
    const auto opened = yg::StandAloneHost::open("examples/terminal");
    if (!opened) {
        std::cerr << opened.error << '\n';
        return 1;
    }
    yg::setHost(opened.host);  // or a host of your own

    yg::YGStyleConfigLoad layout;
    layout.initWithStyleConfigPath("examples/terminal/config/custompage_template.xml",
                                   "examples/terminal/config/tab_styles.xml",
                                   "examples/terminal/config/magic_panels.xml");
    if (const auto page = layout.loadStyleConfigInfoWithName("quote-kline-depth"))
        for (const auto& panel : *page->stylePanes())
            std::cout << panel->panelName().value_or("(no name)") << '\n';
}
