// SPDX-License-Identifier: MIT
//
// Tasks for the application's main thread.
//
// NOTHING ARRIVES UNLESS THE APPLICATION DRAINS THE QUEUE: the library has no loop of its own.
// Either the application calls runPendingMainTasks() from its loop (setMainQueueWakeUp() says
// when), or it brings a queue of its own with Host::mainQueue().
//
// A loop that the application has drains the default queue with three lines at its start:
//
//   GLib     yg::setMainQueueWakeUp([] {
//                g_idle_add_full(G_PRIORITY_DEFAULT, [](gpointer) -> gboolean {
//                    yg::runPendingMainTasks(); return G_SOURCE_REMOVE; }, nullptr, nullptr); });
//
//   Qt       yg::setMainQueueWakeUp([] {
//                QMetaObject::invokeMethod(qApp, [] { yg::runPendingMainTasks(); },
//                                          Qt::QueuedConnection); });
//
//   libuv    static uv_async_t drain;
//            uv_async_init(loop, &drain, [](uv_async_t*) { yg::runPendingMainTasks(); });
//            yg::setMainQueueWakeUp([] { uv_async_send(&drain); });
//
//   Apple    yg::setMainQueueWakeUp([] {
//                dispatch_async_f(dispatch_get_main_queue(), nullptr,
//                                 [](void*) { yg::runPendingMainTasks(); }); });
//
// Before the loop goes, setMainQueueWakeUp({}) takes the line back.
//
// Posting is safe from any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/Callables.h"

namespace yg {

/// A queue of tasks that run later, on the main thread, first in, first out.
///
/// An application that has a loop of its own brings an implementation; three lines are enough for
/// the usual loops. Choose the loop's "post", never its "invoke": the latter may run the task at
/// once.
class YG_EXPORT MainQueue {
public:
    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue();

    /// Takes `task` to run it once on the main thread. Called on any thread. Never runs it inside
    /// the call, on whichever thread that is: the caller may hold a lock that the task takes.
    virtual void post(std::function<void()> task) = 0;
};

/// The process's queue that runPendingMainTasks() drains; never null.
YG_EXPORT std::shared_ptr<MainQueue> defaultMainQueue() noexcept;

/// Runs the tasks that wait in the default queue, oldest first, and answers how many this call ran.
/// The application calls it on its main thread. Tasks posted meanwhile, by the tasks themselves
/// too, wait for the next call, so that the call always ends. A task that throws is logged and the
/// others still run; each task is destroyed before the next one runs. A task may call this again (a
/// nested loop does): the inner call goes on where the outer one stands.
YG_EXPORT std::size_t runPendingMainTasks() noexcept;

/// Has `wakeUp` called whenever the default queue needs draining: for the first task that is posted
/// after a drain has begun, on the posting thread, and at once when tasks wait already. It should
/// only nudge the loop (write to a pipe, post an event) and must not drain by itself. Empty: nobody
/// is woken any more; a call that another thread has begun may still be under way then. Without
/// memory for it the one before stays, which is logged.
YG_EXPORT void setMainQueueWakeUp(std::function<void()> wakeUp) noexcept;
template <CapturesWhatCannotBeCopied Task>
void setMainQueueWakeUp(Task&&) = delete;  // capture a shared_ptr

/// Posts `task` to the queue of the current host (Host::mainQueue), as the library does. An empty
/// task is ignored. A queue that throws, as the default one does when memory does not suffice,
/// costs the task, which is logged; nothing is thrown. True when the queue has taken the task.
YG_EXPORT bool postToMainQueue(std::function<void()> task) noexcept;
template <CapturesWhatCannotBeCopied Task>
bool postToMainQueue(Task&&) = delete;  // capture a shared_ptr

}  // namespace yg
