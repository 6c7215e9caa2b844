# bash completion of ygconfig. Made by scripts/describe.

declare -gA _ygconfig_below=(
    ['ygconfig']='dump settings servers show command event color font image web-page request-url choose lint check-delivery explain diff report preview simulate names'
    ['ygconfig dump']='layout style events palette servers settings web-pages request-urls'
    ['ygconfig settings']='get set'
    ['ygconfig servers']='deliver'
    ['ygconfig dump layout']=''
    ['ygconfig dump style']=''
    ['ygconfig show']='layout style events palette servers settings web-pages request-urls'
    ['ygconfig show layout']=''
    ['ygconfig show style']=''
    ['ygconfig dump events']=''
    ['ygconfig show events']=''
    ['ygconfig command']=''
    ['ygconfig event']=''
    ['ygconfig dump palette']=''
    ['ygconfig show palette']=''
    ['ygconfig color']=''
    ['ygconfig font']=''
    ['ygconfig image']=''
    ['ygconfig dump servers']=''
    ['ygconfig show servers']=''
    ['ygconfig servers deliver']=''
    ['ygconfig settings get']=''
    ['ygconfig settings set']=''
    ['ygconfig dump settings']=''
    ['ygconfig show settings']=''
    ['ygconfig web-page']=''
    ['ygconfig dump web-pages']=''
    ['ygconfig show web-pages']=''
    ['ygconfig dump request-urls']=''
    ['ygconfig show request-urls']=''
    ['ygconfig request-url']=''
    ['ygconfig choose']=''
    ['ygconfig lint']=''
    ['ygconfig check-delivery']='servers web-page request-urls'
    ['ygconfig check-delivery servers']=''
    ['ygconfig check-delivery web-page']=''
    ['ygconfig check-delivery request-urls']=''
    ['ygconfig explain']='style panel element event command color font image server setting web-page url'
    ['ygconfig explain style']=''
    ['ygconfig explain panel']=''
    ['ygconfig explain element']=''
    ['ygconfig explain event']=''
    ['ygconfig explain command']=''
    ['ygconfig explain color']=''
    ['ygconfig explain font']=''
    ['ygconfig explain image']=''
    ['ygconfig explain server']=''
    ['ygconfig explain setting']=''
    ['ygconfig explain web-page']=''
    ['ygconfig explain url']=''
    ['ygconfig diff']=''
    ['ygconfig report']=''
    ['ygconfig preview']=''
    ['ygconfig simulate']='servers'
    ['ygconfig simulate servers']=''
    ['ygconfig names']=''
)

declare -gA _ygconfig_options=(
    ['ygconfig']='-h --help --version --root --right --color'
    ['ygconfig dump']='-h --help --root --right --color'
    ['ygconfig settings']='-h --help --root --right --color'
    ['ygconfig servers']='-h --help --root --right --color'
    ['ygconfig dump layout']='-h --help --style --tab --magic --root --right --color'
    ['ygconfig dump style']='-h --help --style --tab --magic --root --right --color'
    ['ygconfig show']='-h --help --style --tab --magic --log --root --right --color'
    ['ygconfig show layout']='-h --help --style --tab --magic --log --root --right --color'
    ['ygconfig show style']='-h --help --style --tab --magic --log --root --right --color'
    ['ygconfig dump events']='-h --help --events --root --right --color'
    ['ygconfig show events']='-h --help --events --log --root --right --color'
    ['ygconfig command']='-h --help --events --root --right --color'
    ['ygconfig event']='-h --help --events --root --right --color'
    ['ygconfig dump palette']='-h --help --palette-style --root --right --color'
    ['ygconfig show palette']='-h --help --log --root --right --color'
    ['ygconfig color']='-h --help --palette-style --root --right --color'
    ['ygconfig font']='-h --help --palette-style --root --right --color'
    ['ygconfig image']='-h --help --palette-style --group --index --width --height -o --output --root --right --color'
    ['ygconfig dump servers']='-h --help --gray --root --right --color'
    ['ygconfig show servers']='-h --help --gray --log --root --right --color'
    ['ygconfig servers deliver']='-h --help --gray --root --right --color'
    ['ygconfig settings get']='-h --help --root --right --color'
    ['ygconfig settings set']='-h --help --description --readonly --root --right --color'
    ['ygconfig dump settings']='-h --help --root --right --color'
    ['ygconfig show settings']='-h --help --log --root --right --color'
    ['ygconfig web-page']='-h --help --replace --root --right --color'
    ['ygconfig dump web-pages']='-h --help --root --right --color'
    ['ygconfig show web-pages']='-h --help --log --root --right --color'
    ['ygconfig dump request-urls']='-h --help --root --right --color'
    ['ygconfig show request-urls']='-h --help --refresh --log --root --right --color'
    ['ygconfig request-url']='-h --help --refresh --root --right --color'
    ['ygconfig choose']='-h --help --weighted --root --right --color'
    ['ygconfig lint']='-h --help --format --fail-on --baseline --write-baseline --rules --rule --root --right --color'
    ['ygconfig check-delivery']='-h --help --root --right --color'
    ['ygconfig check-delivery servers']='-h --help --format --gray --root --right --color'
    ['ygconfig check-delivery web-page']='-h --help --format --table --root --right --color'
    ['ygconfig check-delivery request-urls']='-h --help --format --root --right --color'
    ['ygconfig explain']='-h --help --root --right --color'
    ['ygconfig explain style']='-h --help --format --templates --log --root --right --color'
    ['ygconfig explain panel']='-h --help --format --log --root --right --color'
    ['ygconfig explain element']='-h --help --format --log --root --right --color'
    ['ygconfig explain event']='-h --help --format --log --root --right --color'
    ['ygconfig explain command']='-h --help --format --log --root --right --color'
    ['ygconfig explain color']='-h --help --format --palette-style --log --root --right --color'
    ['ygconfig explain font']='-h --help --format --palette-style --log --root --right --color'
    ['ygconfig explain image']='-h --help --format --palette-style --log --root --right --color'
    ['ygconfig explain server']='-h --help --format --gray --log --root --right --color'
    ['ygconfig explain setting']='-h --help --format --log --root --right --color'
    ['ygconfig explain web-page']='-h --help --format --log --root --right --color'
    ['ygconfig explain url']='-h --help --format --log --root --right --color'
    ['ygconfig diff']='-h --help --git --format --root --right --color'
    ['ygconfig report']='-h --help -o --root --right --color'
    ['ygconfig preview']='-h --help --port --root --right --color'
    ['ygconfig simulate']='-h --help --root --right --color'
    ['ygconfig simulate servers']='-h --help --gray --clients --reloads --without --weighted --simulate --format --log --root --right --color'
    ['ygconfig names']='-h --help --root --right --color'
)

declare -gA _ygconfig_values=(
    ['ygconfig --root']='folder'
    ['ygconfig --right']=''
    ['ygconfig --color']='choice always never auto'
    ['ygconfig dump --root']='folder'
    ['ygconfig dump --right']=''
    ['ygconfig dump --color']='choice always never auto'
    ['ygconfig settings --root']='folder'
    ['ygconfig settings --right']=''
    ['ygconfig settings --color']='choice always never auto'
    ['ygconfig servers --root']='folder'
    ['ygconfig servers --right']=''
    ['ygconfig servers --color']='choice always never auto'
    ['ygconfig dump layout --style']='file'
    ['ygconfig dump layout --tab']='file'
    ['ygconfig dump layout --magic']='file'
    ['ygconfig dump layout --root']='folder'
    ['ygconfig dump layout --right']=''
    ['ygconfig dump layout --color']='choice always never auto'
    ['ygconfig dump style --style']='file'
    ['ygconfig dump style --tab']='file'
    ['ygconfig dump style --magic']='file'
    ['ygconfig dump style --root']='folder'
    ['ygconfig dump style --right']=''
    ['ygconfig dump style --color']='choice always never auto'
    ['ygconfig dump style 1']='name page'
    ['ygconfig show --style']='file'
    ['ygconfig show --tab']='file'
    ['ygconfig show --magic']='file'
    ['ygconfig show --root']='folder'
    ['ygconfig show --right']=''
    ['ygconfig show --color']='choice always never auto'
    ['ygconfig show layout --style']='file'
    ['ygconfig show layout --tab']='file'
    ['ygconfig show layout --magic']='file'
    ['ygconfig show layout --root']='folder'
    ['ygconfig show layout --right']=''
    ['ygconfig show layout --color']='choice always never auto'
    ['ygconfig show style --style']='file'
    ['ygconfig show style --tab']='file'
    ['ygconfig show style --magic']='file'
    ['ygconfig show style --root']='folder'
    ['ygconfig show style --right']=''
    ['ygconfig show style --color']='choice always never auto'
    ['ygconfig show style 1']='name page'
    ['ygconfig dump events --events']='file'
    ['ygconfig dump events --root']='folder'
    ['ygconfig dump events --right']=''
    ['ygconfig dump events --color']='choice always never auto'
    ['ygconfig show events --events']='file'
    ['ygconfig show events --root']='folder'
    ['ygconfig show events --right']=''
    ['ygconfig show events --color']='choice always never auto'
    ['ygconfig command --events']='file'
    ['ygconfig command --root']='folder'
    ['ygconfig command --right']=''
    ['ygconfig command --color']='choice always never auto'
    ['ygconfig command 1']='name command'
    ['ygconfig event --events']='file'
    ['ygconfig event --root']='folder'
    ['ygconfig event --right']=''
    ['ygconfig event --color']='choice always never auto'
    ['ygconfig event 1']='name event-group'
    ['ygconfig event 2']='name event'
    ['ygconfig dump palette --palette-style']=''
    ['ygconfig dump palette --root']='folder'
    ['ygconfig dump palette --right']=''
    ['ygconfig dump palette --color']='choice always never auto'
    ['ygconfig show palette --root']='folder'
    ['ygconfig show palette --right']=''
    ['ygconfig show palette --color']='choice always never auto'
    ['ygconfig color --palette-style']=''
    ['ygconfig color --root']='folder'
    ['ygconfig color --right']=''
    ['ygconfig color --color']='choice always never auto'
    ['ygconfig color 1']='name color-key'
    ['ygconfig font --palette-style']=''
    ['ygconfig font --root']='folder'
    ['ygconfig font --right']=''
    ['ygconfig font --color']='choice always never auto'
    ['ygconfig font 1']='name font-key'
    ['ygconfig image --palette-style']=''
    ['ygconfig image --group']=''
    ['ygconfig image --index']=''
    ['ygconfig image --width']=''
    ['ygconfig image --height']=''
    ['ygconfig image -o']='file'
    ['ygconfig image --output']='file'
    ['ygconfig image --root']='folder'
    ['ygconfig image --right']=''
    ['ygconfig image --color']='choice always never auto'
    ['ygconfig image 1']='name image'
    ['ygconfig dump servers --root']='folder'
    ['ygconfig dump servers --right']=''
    ['ygconfig dump servers --color']='choice always never auto'
    ['ygconfig show servers --root']='folder'
    ['ygconfig show servers --right']=''
    ['ygconfig show servers --color']='choice always never auto'
    ['ygconfig servers deliver --root']='folder'
    ['ygconfig servers deliver --right']=''
    ['ygconfig servers deliver --color']='choice always never auto'
    ['ygconfig servers deliver 1']='file'
    ['ygconfig servers deliver 2']=''
    ['ygconfig settings get --root']='folder'
    ['ygconfig settings get --right']=''
    ['ygconfig settings get --color']='choice always never auto'
    ['ygconfig settings get 1']='name settings-file'
    ['ygconfig settings get 2']='name settings-section'
    ['ygconfig settings get 3']='name settings-item'
    ['ygconfig settings set --description']=''
    ['ygconfig settings set --root']='folder'
    ['ygconfig settings set --right']=''
    ['ygconfig settings set --color']='choice always never auto'
    ['ygconfig settings set 1']='name settings-file'
    ['ygconfig settings set 2']='name settings-section'
    ['ygconfig settings set 3']='name settings-item'
    ['ygconfig settings set 4']=''
    ['ygconfig dump settings --root']='folder'
    ['ygconfig dump settings --right']=''
    ['ygconfig dump settings --color']='choice always never auto'
    ['ygconfig dump settings 1']='name settings-file'
    ['ygconfig show settings --root']='folder'
    ['ygconfig show settings --right']=''
    ['ygconfig show settings --color']='choice always never auto'
    ['ygconfig show settings 1']='name settings-file'
    ['ygconfig web-page --replace']='file'
    ['ygconfig web-page --root']='folder'
    ['ygconfig web-page --right']=''
    ['ygconfig web-page --color']='choice always never auto'
    ['ygconfig web-page 1']='name web-page-file'
    ['ygconfig web-page 2']='name web-page'
    ['ygconfig dump web-pages --root']='folder'
    ['ygconfig dump web-pages --right']=''
    ['ygconfig dump web-pages --color']='choice always never auto'
    ['ygconfig dump web-pages 1']='name web-page-file'
    ['ygconfig show web-pages --root']='folder'
    ['ygconfig show web-pages --right']=''
    ['ygconfig show web-pages --color']='choice always never auto'
    ['ygconfig show web-pages 1']='name web-page-file'
    ['ygconfig dump request-urls --root']='folder'
    ['ygconfig dump request-urls --right']=''
    ['ygconfig dump request-urls --color']='choice always never auto'
    ['ygconfig show request-urls --root']='folder'
    ['ygconfig show request-urls --right']=''
    ['ygconfig show request-urls --color']='choice always never auto'
    ['ygconfig request-url --root']='folder'
    ['ygconfig request-url --right']=''
    ['ygconfig request-url --color']='choice always never auto'
    ['ygconfig request-url 1']='name request-url'
    ['ygconfig choose --root']='folder'
    ['ygconfig choose --right']=''
    ['ygconfig choose --color']='choice always never auto'
    ['ygconfig choose each']=''
    ['ygconfig lint --format']='choice text json sarif github junit'
    ['ygconfig lint --fail-on']='choice error warning info never'
    ['ygconfig lint --baseline']='file'
    ['ygconfig lint --rule']='name rule'
    ['ygconfig lint --root']='folder'
    ['ygconfig lint --right']=''
    ['ygconfig lint --color']='choice always never auto'
    ['ygconfig check-delivery --root']='folder'
    ['ygconfig check-delivery --right']=''
    ['ygconfig check-delivery --color']='choice always never auto'
    ['ygconfig check-delivery servers --format']='choice text json sarif github junit'
    ['ygconfig check-delivery servers --root']='folder'
    ['ygconfig check-delivery servers --right']=''
    ['ygconfig check-delivery servers --color']='choice always never auto'
    ['ygconfig check-delivery servers 1']='file'
    ['ygconfig check-delivery web-page --format']='choice text json sarif github junit'
    ['ygconfig check-delivery web-page --table']='name web-page-file'
    ['ygconfig check-delivery web-page --root']='folder'
    ['ygconfig check-delivery web-page --right']=''
    ['ygconfig check-delivery web-page --color']='choice always never auto'
    ['ygconfig check-delivery web-page 1']='file'
    ['ygconfig check-delivery request-urls --format']='choice text json sarif github junit'
    ['ygconfig check-delivery request-urls --root']='folder'
    ['ygconfig check-delivery request-urls --right']=''
    ['ygconfig check-delivery request-urls --color']='choice always never auto'
    ['ygconfig check-delivery request-urls 1']='file'
    ['ygconfig explain --root']='folder'
    ['ygconfig explain --right']=''
    ['ygconfig explain --color']='choice always never auto'
    ['ygconfig explain style --format']='choice text json'
    ['ygconfig explain style --root']='folder'
    ['ygconfig explain style --right']=''
    ['ygconfig explain style --color']='choice always never auto'
    ['ygconfig explain style each']='name page'
    ['ygconfig explain panel --format']='choice text json'
    ['ygconfig explain panel --root']='folder'
    ['ygconfig explain panel --right']=''
    ['ygconfig explain panel --color']='choice always never auto'
    ['ygconfig explain panel each']='name page panel'
    ['ygconfig explain element --format']='choice text json'
    ['ygconfig explain element --root']='folder'
    ['ygconfig explain element --right']=''
    ['ygconfig explain element --color']='choice always never auto'
    ['ygconfig explain element each']='name page element'
    ['ygconfig explain event --format']='choice text json'
    ['ygconfig explain event --root']='folder'
    ['ygconfig explain event --right']=''
    ['ygconfig explain event --color']='choice always never auto'
    ['ygconfig explain event each']='name event-group event'
    ['ygconfig explain command --format']='choice text json'
    ['ygconfig explain command --root']='folder'
    ['ygconfig explain command --right']=''
    ['ygconfig explain command --color']='choice always never auto'
    ['ygconfig explain command each']='name command'
    ['ygconfig explain color --format']='choice text json'
    ['ygconfig explain color --palette-style']=''
    ['ygconfig explain color --root']='folder'
    ['ygconfig explain color --right']=''
    ['ygconfig explain color --color']='choice always never auto'
    ['ygconfig explain color each']='name color-key'
    ['ygconfig explain font --format']='choice text json'
    ['ygconfig explain font --palette-style']=''
    ['ygconfig explain font --root']='folder'
    ['ygconfig explain font --right']=''
    ['ygconfig explain font --color']='choice always never auto'
    ['ygconfig explain font each']='name font-key'
    ['ygconfig explain image --format']='choice text json'
    ['ygconfig explain image --palette-style']=''
    ['ygconfig explain image --root']='folder'
    ['ygconfig explain image --right']=''
    ['ygconfig explain image --color']='choice always never auto'
    ['ygconfig explain image each']='name image'
    ['ygconfig explain server --format']='choice text json'
    ['ygconfig explain server --root']='folder'
    ['ygconfig explain server --right']=''
    ['ygconfig explain server --color']='choice always never auto'
    ['ygconfig explain server each']='name server server'
    ['ygconfig explain setting --format']='choice text json'
    ['ygconfig explain setting --root']='folder'
    ['ygconfig explain setting --right']=''
    ['ygconfig explain setting --color']='choice always never auto'
    ['ygconfig explain setting each']='name settings-file settings-section settings-item'
    ['ygconfig explain web-page --format']='choice text json'
    ['ygconfig explain web-page --root']='folder'
    ['ygconfig explain web-page --right']=''
    ['ygconfig explain web-page --color']='choice always never auto'
    ['ygconfig explain web-page each']='name web-page-file web-page'
    ['ygconfig explain url --format']='choice text json'
    ['ygconfig explain url --root']='folder'
    ['ygconfig explain url --right']=''
    ['ygconfig explain url --color']='choice always never auto'
    ['ygconfig explain url each']='name request-url'
    ['ygconfig diff --format']='choice text json'
    ['ygconfig diff --root']='folder'
    ['ygconfig diff --right']=''
    ['ygconfig diff --color']='choice always never auto'
    ['ygconfig diff each']='folder'
    ['ygconfig report -o']='file'
    ['ygconfig report --root']='folder'
    ['ygconfig report --right']=''
    ['ygconfig report --color']='choice always never auto'
    ['ygconfig preview --port']=''
    ['ygconfig preview --root']='folder'
    ['ygconfig preview --right']=''
    ['ygconfig preview --color']='choice always never auto'
    ['ygconfig simulate --root']='folder'
    ['ygconfig simulate --right']=''
    ['ygconfig simulate --color']='choice always never auto'
    ['ygconfig simulate servers --clients']=''
    ['ygconfig simulate servers --reloads']=''
    ['ygconfig simulate servers --without']='name address'
    ['ygconfig simulate servers --format']='choice text json'
    ['ygconfig simulate servers --root']='folder'
    ['ygconfig simulate servers --right']=''
    ['ygconfig simulate servers --color']='choice always never auto'
    ['ygconfig names --root']='folder'
    ['ygconfig names --right']=''
    ['ygconfig names --color']='choice always never auto'
    ['ygconfig names 1']='choice page panel element template event-group event event-template command color-key font-key image server address settings-file settings-section settings-item web-page-file web-page request-url rule'
    ['ygconfig names each']=''
)

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
