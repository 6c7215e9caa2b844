// SPDX-License-Identifier: MIT
//
// The three scripts go the same way: they read the words of the line without expanding anything,
// find the command, and look up in tables what the word at the cursor may be. Names come from
// `ygconfig names`. The keys of the tables are "ygconfig lint" for a command, "ygconfig lint
// --rule" for the value of an option, "ygconfig event 2" for an operand, and "ygconfig diff each"
// for all operands when there may be any number.
#include <string>

#include "manual/Manual.h"

namespace yg::manual {

namespace {

using tool::CommandUsage;
using tool::OperandUsage;
using tool::OptionUsage;

std::string keyOf(const CommandUsage& usage) {
    return usage.command->words.empty() ? "ygconfig"
                                        : "ygconfig " + std::string(usage.command->words);
}

template <class Add>
void forEachValue(const Usages& usages, const Add& add) {
    for (const CommandUsage& usage : usages) {
        const std::string key = keyOf(usage) + ' ';
        for (const OptionUsage& option : usage.options) {
            for (const std::string& name : option.names) {
                if (!option.valueName.empty())
                    add(key + name, option.values);
            }
        }
        int number = 0;
        for (const OperandUsage& operand : usage.operands)
            add(key + (operand.isRepeated ? "each" : std::to_string(++number)), operand.values);
    }
}

/// Calls `add` with each word that may stand behind a command, and its help.
template <class Add>
void forEachBelow(const Usages& usages, const CommandUsage& usage, const Add& add) {
    for (const std::string& word : usage.below) {
        for (const CommandUsage& each : usages) {
            if (keyOf(each) == keyOf(usage) + ' ' + word)
                add(word, each.command->help);
        }
    }
}

template <class Add>
void forEachOption(const CommandUsage& usage, const Add& add) {
    for (const OptionUsage& option : usage.options) {
        for (const std::string& name : option.names)
            add(name, option.help);
    }
}

/// A text in single quotes, in which `quote` stands for one.
std::string quoted(std::string_view text, std::string_view quote) {
    std::string whole = "'";
    for (const char each : text)
        whole.append(each == '\'' ? quote : std::string_view(&each, 1));
    return whole + "'";
}

std::string inShell(std::string_view text) {
    return quoted(text, "'\\''");
}

std::string inFish(std::string_view text) {
    return quoted(text, "\\'");
}

constexpr std::string_view note = " completion of ygconfig. Made by scripts/describe.\n\n";

}  // namespace

std::string bashCompletion(const Usages& usages) {
    std::string script = "# bash" + std::string(note);
    std::string below = "declare -gA _ygconfig_below=(\n";
    std::string options = "declare -gA _ygconfig_options=(\n";
    for (const CommandUsage& usage : usages) {
        std::string words;
        forEachBelow(usages, usage, [&](const std::string& word, std::string_view) {
            words.append(words.empty() ? "" : " ").append(word);
        });
        std::string names;
        forEachOption(usage, [&](const std::string& name, std::string_view) {
            names.append(names.empty() ? "" : " ").append(name);
        });
        below += "    [" + inShell(keyOf(usage)) + "]=" + inShell(words) + "\n";
        options += "    [" + inShell(keyOf(usage)) + "]=" + inShell(names) + "\n";
    }
    script += below + ")\n\n" + options + ")\n\ndeclare -gA _ygconfig_values=(\n";
    forEachValue(usages, [&](const std::string& key, const std::string& values) {
        script += "    [" + inShell(key) + "]=" + inShell(values) + "\n";
    });
    return script + R"bash()

# Splits a line into words without their quotes; expands nothing. Sets `split`, `raw`, the last word
# as it was typed, and `quote`, the one that is open at its end.
_ygconfig_split() {
    local line=$1 word='' isWord='' each next i
    split=() raw='' quote=''
    for ((i = 0; i < ${#line}; i++)); do
        each=${line:i:1}
        if [[ ! $quote && $each == [[:blank:]] ]]; then
            [[ $isWord ]] && split+=("$word")
            word='' raw='' isWord=''
            continue
        fi
        isWord=1
        raw+=$each
        case $quote$each in
            \'\' | \"\") quote='' ;;
            \' | \") quote=$each ;;
            \\ | \"\\)
                ((i += 1))
                next=${line:i:1}
                raw+=$next
                [[ $quote && $next != [\"\\\$\`] ]] && word+=\\
                word+=$next
                ;;
            *) word+=$each ;;
        esac
    done
    split+=("$word")
}

_ygconfig() {
    local split raw quote
    _ygconfig_split "${COMP_LINE:0:COMP_POINT}"
    local words=("${split[@]}") typed=$raw open=$quote
    local current=$((${#words[@]} - 1))
    # The rest of the word at the cursor does not count, the words behind it may be a root.
    _ygconfig_split "x${COMP_LINE:COMP_POINT}"
    words+=("${split[@]:1}")

    local command=ygconfig option='' ended='' atOption='' atEnded='' word name i
    local operands=() common=()
    for ((i = 1; i < ${#words[@]}; i++)); do
        word=${words[i]}
        if ((i == current)); then
            atOption=$option atEnded=$ended option=''
        elif [[ $option ]]; then
            [[ $option == --root || $option == --right ]] && common+=("$option=$word")
            option=''
        elif [[ ! $ended && $word == -- ]]; then
            ended=1
        elif [[ ! $ended && $word == -?* ]]; then
            name=$command' '$word
            if [[ $word == --root=* || $word == --right=* ]]; then
                common+=("$word")
            elif [[ ${_ygconfig_values["$name"]+x} ]]; then
                option=$word
            fi
        elif ((i < current)); then
            name=$command' '$word
            if ((${#operands[@]} == 0)) && [[ ${_ygconfig_below["$name"]+x} ]]; then
                command=$name
            else
                operands+=("$word")
            fi
        fi
    done

    local cur=${words[current]} prefix='' key=none number=0 candidates=() values kinds
    if [[ $atOption ]]; then
        key=$command' '$atOption
    elif [[ ! $atEnded && $cur == --*=* ]]; then
        prefix=${cur%%=*}=
        key=$command' '${cur%%=*}
        cur=${cur#*=}
    elif [[ ! $atEnded && $cur == -* ]]; then
        read -ra candidates <<<"${_ygconfig_options["$command"]}"
    else
        ((${#operands[@]})) || read -ra candidates <<<"${_ygconfig_below["$command"]}"
        key=$command' '$((${#operands[@]} + 1))
        if [[ ! ${_ygconfig_values["$key"]+x} ]]; then
            key=$command' each'
            number=${#operands[@]}
        fi
    fi

    values=${_ygconfig_values["$key"]-}
    read -ra kinds <<<"${values#* }"
    COMPREPLY=()
    case $values in
        file) compopt -o default ;;
        folder) compopt -o dirnames ;;
        choice*) candidates+=("${kinds[@]}") ;;
        name*)
            if [[ ${kinds[number]-} ]]; then
                [[ $atOption$prefix ]] && operands=()
                common=("${common[@]/#--root=\~\//--root=$HOME/}")
                local names
                mapfile -t names < <("${words[0]/#\~\//$HOME/}" names "${kinds[number]}" \
                    "${common[@]}" -- "${operands[@]}" 2>/dev/null </dev/null)
                for name in "${names[@]}"; do
                    # It would be an option.
                    [[ $name == -* && ! $atOption$prefix$atEnded ]] || candidates+=("$name")
                done
            fi
            ;;
    esac

    # What readline replaces begins behind an open quote, or behind the last of these characters.
    local lead='' breaks='' reply
    [[ $COMP_WORDBREAKS == *:* ]] && breaks+=:
    [[ $COMP_WORDBREAKS == *=* ]] && breaks+='='
    if [[ $open ]]; then
        lead=${typed%%"$open"*}
    elif [[ $breaks ]]; then
        lead=${typed%"${typed##*[$breaks]}"}
    fi
    for name in "${candidates[@]}"; do
        [[ $name == "$cur"* ]] || continue
        reply=$prefix$name
        case $open in
            \') reply=${reply//\'/\'\\\'\'} ;;
            \")
                reply=${reply//\\/\\\\}
                reply=${reply//\"/\\\"}
                reply=${reply//\$/\\\$}
                reply=${reply//\`/\\\`}
                ;;
            *) printf -v reply %q "$reply" ;;
        esac
        COMPREPLY+=("${reply#"$lead"}")
    done
}

complete -F _ygconfig ygconfig
)bash";
}

std::string zshCompletion(const Usages& usages) {
    std::string script =
        "#compdef ygconfig\n# zsh" + std::string(note) + "local -A below optionNames values help\n";
    std::string below = "below=(\n";
    std::string options = "optionNames=(\n";
    std::string help = "help=(\n";
    for (const CommandUsage& usage : usages) {
        const std::string key = keyOf(usage);
        const auto add = [&](std::string& words) {
            return [&](const std::string& word, std::string_view text) {
                words.append(words.empty() ? "" : " ").append(word);
                help += "    " + inShell(key + ' ' + word) + ' ' + inShell(text) + "\n";
            };
        };
        std::string words;
        forEachBelow(usages, usage, add(words));
        std::string names;
        forEachOption(usage, add(names));
        below += "    " + inShell(key) + ' ' + inShell(words) + "\n";
        options += "    " + inShell(key) + ' ' + inShell(names) + "\n";
    }
    script += below + ")\n" + options + ")\n" + help + ")\nvalues=(\n";
    forEachValue(usages, [&](const std::string& key, const std::string& values) {
        script += "    " + inShell(key) + ' ' + inShell(values) + "\n";
    });
    return script + R"zsh()

local command=ygconfig option='' ended='' atOption='' atEnded='' word name i
local -a operands common
for ((i = 2; i <= $#words; i++)); do
    word=${(Q)words[i]}
    name="$command $word"
    if ((i == CURRENT)); then
        atOption=$option atEnded=$ended option=''
    elif [[ -n $option ]]; then
        [[ $option == --root || $option == --right ]] && common+=("$option=$word")
        option=''
    elif [[ -z $ended && $word == -- ]]; then
        ended=1
    elif [[ -z $ended && $word == -?* ]]; then
        if [[ $word == --root=* || $word == --right=* ]]; then
            common+=("$word")
        elif (($+values[$name])); then
            option=$word
        fi
    elif ((i < CURRENT)); then
        if (($#operands == 0 && $+below[$name])); then
            command=$name
        else
            operands+=("$word")
        fi
    fi
done

local cur=${(Q)PREFIX} prefix='' key='' number=1
local -a candidates shown kinds
if [[ -n $atOption ]]; then
    key="$command $atOption"
elif [[ -z $atEnded && $cur == --*=* ]]; then
    prefix=${cur%%=*}
    key="$command $prefix"
    compset -P '*='
elif [[ -z $atEnded && $cur == -* ]]; then
    candidates=(${=optionNames[$command]})
else
    (($#operands)) || candidates=(${=below[$command]})
    key="$command $(($#operands + 1))"
    if ((!$+values[$key])); then
        key="$command each"
        number=$(($#operands + 1))
    fi
fi
if (($#candidates)); then
    for word in $candidates; do
        name="$command $word"
        shown+=("${(r:16:)word} -- $help[$name]")
    done
    compadd -l -d shown -a candidates
fi

kinds=(${=values[$key]})
kinds=($kinds[2,-1])
case $values[$key] in
    file) _files ;;
    folder) _files -/ ;;
    choice*) compadd -a kinds ;;
    name*)
        [[ -n ${kinds[number]-} ]] || return 1
        [[ -n $atOption$prefix ]] && operands=()
        common=("${common[@]/#--root=\~\//--root=$HOME/}")
        local program=${(Q)words[1]}
        candidates=("${(@f)$("${program/#\~\//$HOME/}" names "$kinds[number]" \
            "${common[@]}" -- "${operands[@]}" 2>/dev/null </dev/null)}")
        # A name that begins so would be an option.
        [[ -n $atOption$prefix$atEnded ]] || candidates=("${(@)candidates:#-*}")
        candidates=("${(@)candidates:#}")
        compadd -a candidates
        ;;
esac
)zsh";
}

std::string fishCompletion(const Usages& usages) {
    std::string script = "# fish" + std::string(note);
    std::string below = "function __ygconfig_below\n    switch $argv[1]\n";
    std::string options = "function __ygconfig_options\n    switch $argv[1]\n";
    for (const CommandUsage& usage : usages) {
        const std::string row = "        case " + inFish(keyOf(usage)) + "\n";
        const auto add = [&](std::string& lines) {
            return [&](const std::string& word, std::string_view help) {
                lines += "            printf '%s\\t%s\\n' " + word + ' ' + inFish(help) + "\n";
            };
        };
        below += row;
        forEachBelow(usages, usage, add(below));
        options += row;
        forEachOption(usage, add(options));
    }
    const std::string end = "        case '*'\n            return 1\n    end\nend\n\n";
    script += below + end + options + end + "function __ygconfig_values\n    switch $argv[1]\n";
    forEachValue(usages, [&](const std::string& key, const std::string& values) {
        script += "        case " + inFish(key) + "\n            echo " + inFish(values) + "\n";
    });
    return script + end + R"fish(function __ygconfig_names
    set -l program (string replace -r -- '^~/' "$HOME/" $argv[1])
    command $program names $argv[2..] 2>/dev/null </dev/null
end

function __ygconfig_complete
    set -l words (commandline -op)
    set -l current (math (count (commandline -opc)) + 1)
    set -l cur (commandline -ct)
    # A new word at the cursor is not among the words yet.
    if test -z "$(commandline -t)"
        set words $words[1..(math $current - 1)] '' $words[$current..]
    end

    set -l command ygconfig
    set -l option ''
    set -l ended ''
    set -l atOption ''
    set -l atEnded ''
    set -l operands
    set -l common
    for i in (seq 2 (count $words))
        set -l word $words[$i]
        if test $i -eq $current
            set atOption $option
            set atEnded $ended
            set option ''
        else if test -n "$option"
            contains -- $option --root --right; and set -a common "$option=$word"
            set option ''
        else if test -z "$ended" -a "x$word" = x--
            set ended 1
        else if test -z "$ended"; and string match -qr '^-.' -- $word
            if string match -qr '^--(root|right)=' -- $word
                set -a common $word
            else if __ygconfig_values "$command $word" >/dev/null
                set option $word
            end
        else if test $i -lt $current
            if test (count $operands) -eq 0; and __ygconfig_below "$command $word" >/dev/null
                set command "$command $word"
            else
                set -a operands $word
            end
        end
    end

    set -l prefix ''
    set -l key
    set -l number 1
    if test -n "$atOption"
        set key "$command $atOption"
    else if test -z "$atEnded"; and string match -qr '^--[^=]*=' -- $cur
        set prefix (string replace -r '=.*' '=' -- $cur)
        set key "$command "(string replace -r '=.*' '' -- $cur)
        set cur (string replace -r '^[^=]*=' '' -- $cur)
    else if test -z "$atEnded"; and string match -q -- '-*' $cur
        __ygconfig_options $command
        return
    else
        test (count $operands) -eq 0; and __ygconfig_below $command
        set key "$command "(math (count $operands) + 1)
        if not __ygconfig_values $key >/dev/null
            set key "$command each"
            set number (math (count $operands) + 1)
        end
    end

    set -l values (string split ' ' -- (__ygconfig_values $key))
    set -l kinds $values[2..]
    switch "$values[1]"
        case file
            printf '%s\n' $prefix(__fish_complete_path $cur)
        case folder
            printf '%s\n' $prefix(__fish_complete_directories $cur '')
        case choice
            printf '%s\n' $prefix$kinds
        case name
            set -q kinds[$number]; or return
            test -n "$atOption$prefix"; and set operands
            set common (string replace -r -- '^--root=~/' "--root=$HOME/" $common)
            set -l names (__ygconfig_names $words[1] $kinds[$number] $common -- $operands)
            # A name that begins so would be an option.
            test -n "$atOption$prefix$atEnded"; or set names (string match -v -- '-*' $names)
            printf '%s\n' $prefix$names
    end
end

complete -c ygconfig -e
complete -c ygconfig -f -a '(__ygconfig_complete)'
)fish";
}

}  // namespace yg::manual
