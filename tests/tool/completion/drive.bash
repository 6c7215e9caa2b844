# SPDX-License-Identifier: MIT
# Prints, for each line, "> " with the line and what bash completes at its "<TAB>": the words that
# the shell makes of what is inserted, or "<files>" and "<folders>".
#
#   bash drive.bash SCRIPT LINE…
source "$1"
shift
compopt() {
    case $2 in
        default) echo '<files>' ;;
        dirnames) echo '<folders>' ;;
    esac
}
for line; do
    printf '> %s\n' "$line"
    before=${line%%'<TAB>'*}
    COMP_LINE=$before${line#*'<TAB>'}
    COMP_POINT=${#before}
    _ygconfig
    # A line of these tests opens a quote in its last word only, and no other quote there.
    open=''
    case ${before##* } in
        *\'*) open=\' ;;
        *\"*) open=\" ;;
    esac
    for reply in "${COMPREPLY[@]}"; do
        eval "printf '%s\n' $open$reply$open"
    done
done
