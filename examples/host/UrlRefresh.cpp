// SPDX-License-Identifier: MIT
#include "UrlRefresh.h"

#include <iostream>
#include <string_view>

namespace terminal {

namespace {

using Update = yg::YGHttpReqUrlMgr::Update;

std::string_view text(Update::Outcome outcome) {
    switch (outcome) {
        case Update::Outcome::newList:
            return "a new list";
        case Update::Outcome::sameDigest:
            return "the list that is there";
        case Update::Outcome::overtaken:
            return "overtaken by a later download";
        case Update::Outcome::failed:
            break;
    }
    return "nothing";
}

}  // namespace

bool refreshUrls(const std::shared_ptr<yg::YGHttpReqUrlMgr>& urls, MainLoop& loop) {
    Update::Outcome outcome = Update::Outcome::failed;
    urls->updateHttpReqUrls([&](const Update& update) {
        // On the main thread, whatever came. The old list stays unless this is a new one.
        outcome = update.outcome;
        std::cout << "download: " << text(update.outcome) << '\n';
        if (!update.reason.empty())
            std::cerr << update.reason << '\n';
        loop.quit();
    });
    loop.run();

    const auto list = urls->urlModel();
    if (list)
        std::cout << "digest: " << list->md5Value().value_or("(none)") << '\n';
    return outcome != Update::Outcome::failed;
}

}  // namespace terminal
