#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when SECURITY.md names a test that there is not.
#   security.sh SECURITY.md FOLDER-OF-TESTS
set -uo pipefail

page=$1
tests=$2
missing=0
named=0
while read -r folder name; do
    named=$((named + 1))
    suite=${name%%.*}
    grep -rqE "^TEST(_F|_P)?\(${suite}, ${name#*.}\)" "$tests/$folder" || {
        printf 'SECURITY.md names a test that there is not: %s: %s\n' "$folder" "$name" >&2
        missing=1
    }
done < <(tr '\n' ' ' <"$page" | tr -s ' ' | grep -oE '[a-z]+: [A-Z][A-Za-z]+\.[A-Z][A-Za-z0-9]+' | tr -d ':' | sort -u)
[ "$named" -gt 20 ] || {
    printf 'SECURITY.md names only %d tests\n' "$named" >&2
    missing=1
}
exit $missing
