# SPDX-License-Identifier: MIT
# Prints, for each line, "> " with the line and the words that fish completes at its "<TAB>", which
# is the line's end.
#
#   fish --no-config drive.fish SCRIPT LINE…
source $argv[1]
for line in $argv[2..]
    printf '> %s\n' $line
    complete -C (string replace '<TAB>' '' -- $line) | string replace -r '\t.*' ''
end
exit 0
