#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks what each folder of the library may include.
#
#   layers.sh SOURCE-ROOT PUBLIC-HEADER…      (headers as paths from the root)
#
# Prints one line for each include that breaks a rule; answers 1 when there is one.
set -euo pipefail

cd "$1"
shift

# Each folder with the folders below it, from the bottom up. No subsystem includes another.
ground='text files process'
middle="$ground xml host diagnostics records"
folders="
process
text
files       text
xml         $ground
host        $ground
diagnostics $ground xml host
records     $ground xml host diagnostics
graphics    $ground host
net         $ground host
layout      $middle
events      $middle
servers     $middle net
palette     $middle graphics
settings    $middle net
formats     $middle graphics net layout events servers palette settings
inspection  $middle graphics net layout events servers palette settings formats
"

# How the names of a library's headers begin, with the places that may include them. A dash:
# any source. No public header includes any of them.
libraries='
pugixml     xml
libxml      xml
curl        net
openssl     net
zlib        net graphics
fontconfig  graphics
hb          graphics
harfbuzz    graphics
png         graphics
jpeglib     graphics
jerror      graphics
turbojpeg   graphics
nlohmann    -
unicode     text
CLI         ygconfig
httplib     ygconfig
'

sources=$(find YGConfigManager ygconfig -name '*.h' -o -name '*.cpp' | sort)
[ -n "$sources" ] || { echo "there are no sources to check"; exit 1; }

export folders libraries public="$*"
# shellcheck disable=SC2016
xargs -d '\n' awk <<<"$sources" '
BEGIN {
    rows = split(ENVIRON["folders"], row, "\n")
    for (i = 1; i <= rows; i++) {
        words = split(row[i], word, " ")
        for (j = 1; j <= words; j++)
            may[word[1], word[j]] = 1
    }
    rows = split(ENVIRON["libraries"], row, "\n")
    for (i = 1; i <= rows; i++) {
        if (split(row[i], word, " ") > 1) {
            places[word[1]] = row[i]
            sub(/^[^ ]+ +/, "", places[word[1]])
        }
    }
    rows = split(ENVIRON["public"], row, " ")
    for (i = 1; i <= rows; i++)
        public[row[i]] = 1
    if (rows == 0)
        complain("no public headers were given")
}

function complain(rule) {
    print (FILENAME == "" ? "" : FILENAME ":" FNR ": ") rule
    broken = 1
}

# The folder of the library that a path lies in: "." for the files beside the folders, the tool
# itself for its own.
function folder(path,   part) {
    if (path ~ /^ygconfig\//)
        return "ygconfig"
    return split(path, part, "/") > 2 ? part[2] : "."
}

FNR == 1 {
    here = folder(FILENAME)
    in_library = here != "ygconfig"
    if (in_library && here != "." && !((here, here) in may))
        complain("the folder has no layer yet; add it to layers.sh")
}

/^[ \t]*#[ \t]*include[ \t]*[<"]/ {
    match($0, /[<"][^>"]*/)
    quoted = substr($0, RSTART, 1) == "\""
    name = substr($0, RSTART + 1, RLENGTH - 1)
    own = name ~ /^(YGConfigManager|ygconfig)\//

    if (own != quoted)
        complain("own headers are included from the root and in quotes, others are not: " name)
    if (own && in_library) {
        there = folder(name)
        if (there != "." && !((here, there) in may))
            complain(here " may not include " there ": " name)
    }
    if (own && (FILENAME in public) && !(name in public))
        complain("a public header includes an internal one: " name)
    for (library in places) {
        if (own || name !~ ("^" library "([-./]|$)"))
            continue
        if (places[library] != "-" && index(" " places[library] " ", " " here " ") == 0)
            complain("only " places[library] " may include " name)
        if (FILENAME in public)
            complain("a public header includes a library: " name)
    }
}

END { exit broken }' || exit 1
