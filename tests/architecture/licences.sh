#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks that each file says whose it is and under which licence it may be used.
#
#   licences.sh SOURCE-ROOT
set -uo pipefail

command -v reuse >/dev/null || { echo 'skipped: reuse is not installed'; exit 77; }
cd "$1" || exit
found=$(reuse lint 2>&1) || { printf '%s\n' "$found"; exit 1; }
