# SPDX-License-Identifier: MIT
# Reads one line "mangled TAB demangled" for each exported function and writes for each a function whose
# argument is a pointer to such a one, its object in front. The compiler knows what it returns.
#
#   awk -v namespaces='yg yg::xml' -f abi-signatures.awk
BEGIN {
    FS = "\t"
    count = split(namespaces, name, " ")
    for (i = 1; i <= count; i++)
        is_namespace[name[i]] = 1
}

# Where the text's last part, from which on no bracket is open, is preceded by "::"; 0 when nowhere.
function lastColons(text,   i, depth, character) {
    for (i = length(text); i > 1; i--) {
        character = substr(text, i, 1)
        if (character ~ /[>)]/)
            depth++
        else if (character ~ /[<(]/)
            depth--
        else if (depth == 0 && substr(text, i - 1, 2) == "::")
            return i - 1
    }
    return 0
}

# The arguments as values of their types.
function values(list,   i, depth, character, start, text) {
    start = 1
    for (i = 1; i <= length(list) + 1; i++) {
        character = substr(list, i, 1)
        if (character ~ /[<(]/)
            depth++
        else if (character ~ /[>)]/)
            depth--
        if ((character == "," && depth == 0) || i > length(list)) {
            if (i > start)
                text = text (text == "" ? "" : ", ") "of<" substr(list, start, i - start) ">()"
            start = i + 1
        }
    }
    return text
}

{
    text = $2
    gsub(/\[abi:cxx11\]/, "", text)
    if (!match(text, /\)( const)?( &&?)?$/))
        next
    suffix = substr(text, RSTART + 1)
    depth = 0
    for (i = RSTART; i > 0; i--) {
        character = substr(text, i, 1)
        depth += (character == ")") - (character == "(")
        if (depth == 0)
            break
    }
    arguments = substr(text, i + 1, RSTART - i - 1)
    text = substr(text, 1, i - 1)
    colons = lastColons(text)
    scope = substr(text, 1, colons - 1)
    called = substr(text, colons + 2)
    # Constructors and destructors answer nothing.
    if (called == substr(scope, lastColons(scope) + (lastColons(scope) ? 2 : 1)) || called ~ /^~/)
        next
    types = arguments == "" ? "" : ", " arguments
    if (scope in is_namespace) {
        # A friend's operator is found by its arguments alone.
        call = (called ~ /^operator/ ? "" : scope "::") called
    } else {
        object = scope suffix
        if (object !~ /&$/)
            object = object "&"
        call = "of<" object ">()." called
        types = ", " object types
    }
    sub(/^, /, "", types); printf "YG_EXPORT void abi_%s(decltype(%s(%s)) (*)(%s)) {}\n", $1, call, values(arguments), types
}
