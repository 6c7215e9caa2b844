#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks that nothing of the library is destroyed with the process or with a thread, since threads
# may use it to the very end. What registers a destructor refers to __cxa_atexit or the like.
#
#   endings.sh OBJECT-FILE…
#
# Prints one line for each file that does; answers 1 when there is one.
set -uo pipefail

[ $# -gt 50 ] || { echo "endings: only $# object files were given"; exit 1; }
found=$(nm --print-file-name --undefined-only "$@" |
    grep -E ' (__cxa_(thread_)?atexit(_impl)?|atexit|on_exit)$')
# The one that has to end the network's thread.
others=$(grep -v '/net/HttpGet\.cpp\.o:' <<<"$found")
[ "$found" != "$others" ] || { echo "endings: not even the one is found that is there"; exit 1; }
[ -z "$others" ] || { printf 'destroyed at the end, make it Immortal: %s\n' "$others"; exit 1; }
