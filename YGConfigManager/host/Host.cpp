// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Host.h"

#include <mutex>
#include <utility>

#include "YGConfigManager/host/StandAloneHost.h"

namespace yg {

namespace {

struct InstalledHost {
    std::mutex mutex;
    std::shared_ptr<Host> host;
};

// Never destroyed: threads that end after main() may still log.
InstalledHost& installedHost() {
    static InstalledHost& installed = *new InstalledHost;
    return installed;
}

const std::shared_ptr<Host>& defaultHost() {
    static const auto& host = *new std::shared_ptr<Host>(StandAloneHost::openOrDefaults("."));
    return host;
}

}  // namespace

Host::~Host() = default;

std::optional<std::string> Host::configServer() {
    return std::nullopt;
}

std::shared_ptr<MainQueue> Host::mainQueue() {
    return currentMainQueue();
}

std::shared_ptr<Host> setHost(std::shared_ptr<Host> host) {
    InstalledHost& installed = installedHost();
    const std::lock_guard lock(installed.mutex);
    return std::exchange(installed.host, std::move(host));
}

std::shared_ptr<Host> currentHost() {
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
