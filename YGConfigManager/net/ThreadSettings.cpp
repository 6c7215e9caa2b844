// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/ThreadSettings.h"

#include <ctime>
#include <initializer_list>
#include <pthread.h>

namespace yg::net {

namespace {

sigset_t allButFaults() {
    sigset_t signals;
    sigfillset(&signals);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        sigdelset(&signals, fault);
    return signals;
}

void schedule(int policy) {
    const sched_param ordinary{};
    pthread_setschedparam(pthread_self(), policy, &ordinary);
}

/// TLS writes to a server that has gone; what that left behind would end the process.
void dropBrokenPipe() {
    sigset_t waiting;
    if (sigpending(&waiting) == 0 && sigismember(&waiting, SIGPIPE) == 1) {
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        const timespec none{};
        sigtimedwait(&brokenPipe, nullptr, &none);
    }
}

}  // namespace

ThreadSettings ThreadSettings::ofThisThread() noexcept {
    ThreadSettings settings;
    sigemptyset(&settings.blocked);
    pthread_sigmask(SIG_SETMASK, nullptr, &settings.blocked);
    sched_param ignored{};
    int policy = SCHED_OTHER;
    pthread_getschedparam(pthread_self(), &policy, &ignored);
    settings.policy = policy == SCHED_BATCH || policy == SCHED_IDLE ? policy : SCHED_OTHER;
    return settings;
}

SignalsBlocked::SignalsBlocked() noexcept {
    const sigset_t signals = allButFaults();
    pthread_sigmask(SIG_SETMASK, &signals, &before_);
}

SignalsBlocked::~SignalsBlocked() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void scheduleAsBatch() noexcept {
    schedule(SCHED_BATCH);
}

AsApplication::AsApplication(const ThreadSettings& settings) noexcept {
    schedule(settings.policy);
    if (sigismember(&settings.blocked, SIGPIPE) == 0)
        dropBrokenPipe();
    pthread_sigmask(SIG_SETMASK, &settings.blocked, nullptr);
}

AsApplication::~AsApplication() {
    const sigset_t signals = allButFaults();
    pthread_sigmask(SIG_SETMASK, &signals, nullptr);
    schedule(SCHED_BATCH);
}

}  // namespace yg::net
