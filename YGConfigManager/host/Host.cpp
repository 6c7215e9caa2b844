// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Host.h"

#include <mutex>
#include <utility>

#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/process/ForkMutex.h"

namespace yg {

namespace {

struct Hosts {
    std::shared_ptr<Host> installed;
    std::shared_ptr<Host> standard;  // null until it is asked for
    StandAloneHost withoutSettings{"."};
};

constinit thread_local const std::shared_ptr<Host>* ofThread = nullptr;

constinit ForkMutex installing;
constinit ForkMutex making;

Hosts& hosts() {
    static Immortal<Hosts> all;
    return *all;
}

/// Made when the library is loaded: the child of a fork could not wait for another thread to do it.
[[maybe_unused]] const Hosts& made = hosts();

/// Without memory for it one without settings, which takes none; the next call tries again.
std::shared_ptr<Host> defaultHost() noexcept {
    Hosts& all = hosts();
    const std::lock_guard lock(making);
    if (!all.standard) {
        try {
            all.standard = StandAloneHost::openOrDefaults(".");
        } catch (...) {
            // Like an answer of null: the memory does not suffice.
        }
    }
    return all.standard ? all.standard
                        : std::shared_ptr<Host>(std::shared_ptr<void>(), &all.withoutSettings);
}

}  // namespace

Host::~Host() = default;

std::optional<std::string> Host::configServer() {
    return std::nullopt;
}

void Host::writeLogLine(LogChannel channel, LogSeverity /*severity*/, std::string_view message) {
    writeLog(channel, message);
}

std::shared_ptr<MainQueue> Host::mainQueue() {
    return defaultMainQueue();
}

std::shared_ptr<Host> setHost(std::shared_ptr<Host> host) noexcept {
    Hosts& all = hosts();
    const std::lock_guard lock(installing);
    return std::exchange(all.installed, std::move(host));
}

HostOfThread::HostOfThread(std::shared_ptr<Host> host) noexcept
    : outer_(ofThread), host_(std::move(host)) {
    ofThread = &host_;
}

HostOfThread::~HostOfThread() {
    ofThread = outer_;
}

bool HostOfThread::isThere() noexcept {
    return ofThread != nullptr;
}

std::shared_ptr<Host> currentHost() noexcept {
    if (ofThread)
        return *ofThread;
    {
        const Hosts& all = hosts();
        const std::lock_guard lock(installing);
        if (all.installed)
            return all.installed;
    }
    return defaultHost();
}

}  // namespace yg
