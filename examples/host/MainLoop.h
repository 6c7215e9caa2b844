// SPDX-License-Identifier: MIT
//
// The application's main loop, GLib's here, which runs the library's tasks for the main thread.
#pragma once

#include <glib.h>

namespace terminal {

/// Made on the main thread, and there as long as anything waits for a notification or an outcome.
class MainLoop {
public:
    MainLoop();
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    ~MainLoop();

    /// Runs until quit() is called, which tasks and observers may do.
    void run() { g_main_loop_run(loop_); }
    void quit() { g_main_loop_quit(loop_); }

private:
    GMainLoop* const loop_;
};

}  // namespace terminal
