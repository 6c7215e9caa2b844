// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Transport.h"

#include <memory>
#include <mutex>
#include <utility>

#include "YGConfigManager/host/Immortal.h"

namespace yg {

namespace {

struct InstalledTransport {
    std::mutex mutex;
    std::shared_ptr<const Transport> transport;  // so that using it takes no memory
};

InstalledTransport& installedTransport() {
    static Immortal<InstalledTransport> installed;
    return *installed;
}

std::shared_ptr<const Transport> currentTransport() {
    InstalledTransport& installed = installedTransport();
    const std::lock_guard lock(installed.mutex);
    return installed.transport;
}

}  // namespace

void startGet(std::string url, net::GetCompletion completion) {
    if (const auto transport = currentTransport())
        (*transport)(std::move(url), std::move(completion));
    else
        net::get(std::move(url), std::move(completion));
}

Transport setTransport(Transport transport) {
    InstalledTransport& installed = installedTransport();
    auto next = transport ? std::make_shared<const Transport>(std::move(transport)) : nullptr;
    const std::lock_guard lock(installed.mutex);
    installed.transport.swap(next);
    return next ? *next : nullptr;
}

}  // namespace yg
