// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Host.h"

#include <mutex>
#include <new>
#include <utility>

#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/StandAloneHost.h"

namespace yg {

namespace {

struct InstalledHost {
    std::mutex mutex;
    std::shared_ptr<Host> host;
};

InstalledHost& installedHost() {
    static Immortal<InstalledHost> installed;
    return *installed;
}

/// Without memory for it one without settings, which takes none; the next call tries again.
std::shared_ptr<Host> defaultHost() noexcept {
    static Immortal<StandAloneHost> withoutSettings(".");
    try {
        static Immortal<std::shared_ptr<Host>> host([] {
            auto made = StandAloneHost::openOrDefaults(".");
            return made ? made : throw std::bad_alloc();
        }());
        return *host;
    } catch (...) {
        return {std::shared_ptr<void>(), &*withoutSettings};
    }
}

}  // namespace

Host::~Host() = default;

std::optional<std::string> Host::configServer() {
    return std::nullopt;
}

std::shared_ptr<MainQueue> Host::mainQueue() {
    return currentMainQueue();
}

std::shared_ptr<Host> setHost(std::shared_ptr<Host> host) noexcept {
    InstalledHost& installed = installedHost();
    const std::lock_guard lock(installed.mutex);
    return std::exchange(installed.host, std::move(host));
}

std::shared_ptr<Host> currentHost() noexcept {
    {
        InstalledHost& installed = installedHost();
        const std::lock_guard lock(installed.mutex);
        if (installed.host != nullptr) {
            return installed.host;
        }
    }
    return defaultHost();
}

}  // namespace yg
