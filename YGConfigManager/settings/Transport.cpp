// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Transport.h"

#include <memory>
#include <mutex>
#include <utility>

#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/process/ForkMutex.h"

namespace yg {

namespace {

using SharedTransport = std::shared_ptr<const Transport>;  // so that using it takes no memory

constinit ForkMutex installing;

SharedTransport& installedTransport() {
    static Immortal<SharedTransport> installed;
    return *installed;
}

/// Made when the library is loaded: the child of a fork could not wait for another thread to do it.
[[maybe_unused]] const SharedTransport& made = installedTransport();

SharedTransport currentTransport() {
    const std::lock_guard lock(installing);
    return installedTransport();
}

}  // namespace

void startGet(std::string url, net::GetCompletion completion) {
    if (const auto transport = currentTransport())
        (*transport)(std::move(url), std::move(completion));
    else
        net::get(std::move(url), std::move(completion));
}

Transport setTransport(Transport transport) {
    auto next = transport ? std::make_shared<const Transport>(std::move(transport)) : nullptr;
    {
        const std::lock_guard lock(installing);
        installedTransport().swap(next);
    }
    return next ? *next : nullptr;
}

}  // namespace yg
