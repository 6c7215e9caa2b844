# SPDX-License-Identifier: MIT
# Prints, for each line, "> " with the line and the words that zsh completes at its "<TAB>", or
# "<files>" and "<folders>". What stands in for zsh's own functions takes the words that begin as
# what is typed; zsh quotes by itself what it inserts.
#
#   zsh -f drive.zsh SCRIPT LINE…
script=$1
shift
compadd() {
    local list=${@[-1]} name
    for name in "${(@P)list}"; do
        [[ $name == "${(Q)PREFIX}"* ]] && print -r -- "$name"
    done
}
compset() { PREFIX=${PREFIX#*=}; }
_files() { [[ $1 == -/ ]] && print '<folders>' || print '<files>'; }
_ygconfig() { source "$script"; }
for line; do
    print -r -- "> $line"
    before=${line%%'<TAB>'*}
    words=("${(@z)before}")
    [[ $before == *' ' ]] && words+=('')
    CURRENT=$#words
    # zsh takes off a quote that is open.
    PREFIX=${words[-1]#[\'\"]}
    words+=("${(@z)${line#*'<TAB>'}}")
    _ygconfig
done
exit 0
