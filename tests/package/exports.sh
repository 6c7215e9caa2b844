#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks that each linker that is installed exports the library's own names and no others.
#
#   exports.sh COMPILER VERSION-SCRIPT OBJECT-FILE…
set -euo pipefail

compiler=$1
script=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

tried=0
for linker in bfd gold lld; do
    command -v "ld.$linker" >/dev/null || continue
    tried=$((tried + 1))
    "$compiler" -shared -nostdlib -fuse-ld="$linker" -Wl,--version-script="$script" "$@" \
        -o "$work/$linker.so" 2>"$work/errors" || { cat "$work/errors"; exit 1; }
    nm -DC --defined-only "$work/$linker.so" | grep -v ' A YGConfigManager_' | cut -d ' ' -f 3- |
        sed 's/@.*//' | LC_ALL=C sort >"$work/$linker"
    if grep -Ev '^((vtable|VTT|typeinfo|typeinfo name) for )?yg::|^YGConfigManagerVersion' "$work/$linker"; then
        echo "ld.$linker exports what is not the library's own"
        exit 1
    fi
    for name in 'vtable for yg::Host' 'typeinfo for yg::DiagnosticsSink' 'yg::Inspection::open('; do
        grep -F "$name" "$work/$linker" >/dev/null || { echo "ld.$linker does not export $name"; exit 1; }
    done
    # The version's two names are in no folder, and so not among these objects.
    if [ -e "$work/first" ]; then
        diff "$work/first" "$work/$linker" || { echo "ld.$linker exports other names"; exit 1; }
    fi
    cp "$work/$linker" "$work/first"
done
[ "$tried" -gt 0 ] || { echo "no linker was found by its name"; exit 1; }
