// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/HttpGet.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/net/HttpGetService.h"

namespace yg::net {

namespace {

/// Those of a test; null for the usual ones.
std::atomic<const HttpGetOptions*> processOptions = nullptr;

HttpGetOptions currentOptions() {
    const HttpGetOptions* const options = processOptions;
    return options ? *options : HttpGetOptions();
}

/// The service of one process. Never destroyed, since threads may ask until the very end.
struct ProcessService {
    explicit ProcessService(ProcessService* parent) : before(parent) {}

    const pid_t process = ::getpid();
    /// That of the process which this one was forked from. Its thread is not here, and its locks
    /// may be held for ever, so it is kept and never touched.
    ProcessService* const before;
    HttpGetService service{currentOptions()};
};

std::atomic<ProcessService*> current = nullptr;
std::atomic<bool> hasEnded = false;

/// Runs with the destructors of static objects.
void endService() noexcept {
    hasEnded = true;
    ProcessService* const last = current;
    if (last && last->process == ::getpid())
        last->service.stop();
}

/// The service of this process, made afresh in the child of a fork. Nothing here is ever locked or
/// half done, since a fork may come at any moment.
HttpGetService& serviceOfProcess() {
    ProcessService* known = current;
    while (!known || known->process != ::getpid()) {
        auto made = std::make_unique<ProcessService>(known);
        // Only now: what its libraries do at the end of the process is registered by then, and so
        // happens when the thread is gone. The other way round OpenSSL frees what the thread uses.
        if (std::atexit(&endService) != 0)
            throw std::bad_alloc();
        if (current.compare_exchange_strong(known, made.get()))
            known = made.release();
    }
    return known->service;
}

}  // namespace

void get(std::string url, GetCompletion completion) noexcept {
    try {
        if (!hasEnded)
            serviceOfProcess().get(std::move(url), std::move(completion));
    } catch (...) {
        // Nothing was given away yet.
        refuse(completion);
    }
}

void setProcessOptions(HttpGetOptions options) {
    processOptions = new HttpGetOptions(std::move(options));
}

}  // namespace yg::net
