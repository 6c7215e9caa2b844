// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/HttpGet.h"

#include <atomic>
#include <memory>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/net/HttpGetService.h"

namespace yg::net {

namespace {

HttpGetOptions& processOptions() {
    static HttpGetOptions& options = *new HttpGetOptions;
    return options;
}

/// The service of one process. Never destroyed, since threads may ask until the very end.
struct ProcessService {
    explicit ProcessService(ProcessService* parent) : before(parent) {}

    const pid_t process = ::getpid();
    /// That of the process which this one was forked from. Its thread is not here, and its locks
    /// may be held for ever, so it is kept and never touched.
    ProcessService* const before;
    HttpGetService service{processOptions()};
};

std::atomic<ProcessService*> current = nullptr;
std::atomic<bool> hasEnded = false;

/// The service of this process, made afresh in the child of a fork.
HttpGetService& serviceOfProcess() {
    ProcessService* known = current;
    while (known == nullptr || known->process != ::getpid()) {
        auto made = std::make_unique<ProcessService>(known);
        if (current.compare_exchange_strong(known, made.get())) {
            known = made.release();
        }
    }
    return known->service;
}

/// Ends the thread with the static objects. The service is made first: what its libraries do at the
/// end of the process is registered then, and so happens when the thread is gone. The other way
/// round OpenSSL frees what the thread uses.
class End {
public:
    End() { serviceOfProcess(); }
    ~End() {
        hasEnded = true;
        ProcessService* const last = current;
        if (last->process == ::getpid()) {
            last->service.stop();
        }
    }
    End(const End&) = delete;
    End& operator=(const End&) = delete;
};

}  // namespace

void get(std::string url, GetCompletion completion) noexcept {
    try {
        static const End end;
        if (!hasEnded) {
            serviceOfProcess().get(std::move(url), std::move(completion));
        }
    } catch (...) {
        // Nothing was given away yet.
        refuse(completion);
    }
}

void setProcessOptions(HttpGetOptions options) {
    processOptions() = std::move(options);
}

}  // namespace yg::net
