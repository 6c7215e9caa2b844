// SPDX-License-Identifier: MIT
//
// GLib's own locks are none that the thread sanitizer sees, so it must not look at what GLib does.

extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0\n";
}
