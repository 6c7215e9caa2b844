// SPDX-License-Identifier: MIT
#include "MainLoop.h"

#include "YGConfigManager/host/MainQueue.h"

namespace terminal {

namespace {

gboolean drain(gpointer) {
    yg::runPendingMainTasks();
    return G_SOURCE_REMOVE;
}

}  // namespace

MainLoop::MainLoop() : loop_(g_main_loop_new(nullptr, FALSE)) {
    // Called on the thread that posts, which may be any. It only tells the loop that there is
    // something to do; the loop does it later, on its own thread.
    yg::setMainQueueWakeUp([] { g_idle_add_full(G_PRIORITY_DEFAULT, drain, nullptr, nullptr); });
}

MainLoop::~MainLoop() {
    yg::setMainQueueWakeUp({});
    g_main_loop_unref(loop_);
}

}  // namespace terminal
