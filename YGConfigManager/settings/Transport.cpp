// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Transport.h"

#include <mutex>
#include <utility>

namespace yg {

namespace {

struct InstalledTransport {
    std::mutex mutex;
    Transport transport;
};

// Never destroyed: a completion may start a request while the process ends.
InstalledTransport& installedTransport() {
    static InstalledTransport& installed = *new InstalledTransport;
    return installed;
}

Transport currentTransport() {
    InstalledTransport& installed = installedTransport();
    const std::lock_guard lock(installed.mutex);
    return installed.transport;
}

}  // namespace

void startGet(std::string url, net::GetCompletion completion) {
    if (const Transport transport = currentTransport())
        transport(std::move(url), std::move(completion));
    else
        net::get(std::move(url), std::move(completion));
}

Transport setTransport(Transport transport) {
    InstalledTransport& installed = installedTransport();
    const std::lock_guard lock(installed.mutex);
    return std::exchange(installed.transport, std::move(transport));
}

}  // namespace yg
