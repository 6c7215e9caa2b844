// SPDX-License-Identifier: MIT
//
// The default main queue drained by a loop that real applications have: GLib's.
#include <string>
#include <thread>
#include <vector>

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/MainQueue.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

gboolean drain(gpointer) {
    yg::runPendingMainTasks();
    return G_SOURCE_REMOVE;
}

TEST(MainLoop, GlibRunsTasksLaterOnItsThread) {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    yg::setMainQueueWakeUp([] { g_idle_add_full(G_PRIORITY_DEFAULT, drain, nullptr, nullptr); });

    std::vector<std::string> ran;
    std::thread::id ranOn;
    yg::postToMainQueue([&] {
        ran.push_back("from the main thread");
        yg::postToMainQueue([&] { ran.push_back("from a task"); });
    });
    EXPECT_THAT(ran, IsEmpty());
    std::thread poster([&] {
        yg::postToMainQueue([&] {
            ran.push_back("from another thread");
            ranOn = std::this_thread::get_id();
            // Behind the task that the first one posts.
            yg::postToMainQueue([loop] { g_main_loop_quit(loop); });
        });
    });
    poster.join();
    EXPECT_THAT(ran, IsEmpty());
    g_main_loop_run(loop);

    EXPECT_THAT(ran, ElementsAre("from the main thread", "from another thread", "from a task"));
    EXPECT_EQ(ranOn, std::this_thread::get_id());

    // Once more while the loop runs already.
    std::thread late([loop] { yg::postToMainQueue([loop] { g_main_loop_quit(loop); }); });
    g_main_loop_run(loop);
    late.join();

    yg::setMainQueueWakeUp({});
    g_main_loop_unref(loop);
}

}  // namespace
