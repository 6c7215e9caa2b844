#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks what the formatter leaves open, in all sources of the folders:
#
#   style.sh SOURCE-ROOT FOLDER…
#
# - A body of one line has no braces, unless another body of the same if and else needs them.
# - A pointer is a condition as it stands: `!= nullptr` is for where a bool is wanted.
#
# Prints each line that breaks a rule; answers 1 when there is one.
set -euo pipefail

cd "$1"
shift

sources=$(find "$@" -name '*.h' -o -name '*.cpp' | sort)
[ -n "$sources" ] || { echo "there are no sources to check"; exit 1; }

# shellcheck disable=SC2016
xargs -d '\n' awk <<<"$sources" '
function depth(line) {
    match(line, /^ */)
    return RLENGTH
}
function fault(number, what) {
    print FILENAME ":" number ": " what
    found = 1
}
FNR == 1 { head = body = "" }
{
    if (head ~ /^ *(if|for|while) .*\{$/ && body ~ /;$/ && body !~ /^ *(\/\/|EXPECT_|ASSERT_)/ && $0 ~ /^ *}$/ &&
        depth(head) == depth($0) && depth(body) == depth($0) + 4)
        fault(FNR - 2, "braces around one line")
    head = body
    body = $0
}
/(EXPECT_|ASSERT_|require\(|add\()/ { next }
/== nullptr|!= nullptr[^;}]/ { fault(FNR, "a comparison with nullptr as a condition") }
END { exit found }
'
