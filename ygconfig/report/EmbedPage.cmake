# SPDX-License-Identifier: MIT
# Writes a C++ source with the page around the model: page.html, in which the styles and the scripts
# are put, and a policy that allows these and nothing else.
#
#   cmake -D FOLDER=… -D SCRIPTS="a.js;b.js" -D OUTPUT=… -P EmbedPage.cmake

# The SHA-256 of a text in base64, which CMake has only as hexadecimal digits.
function(base64_digest result text)
  string(SHA256 digits "${text}")
  set(letters "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  # 32 bytes are ten groups of three and one of two, which a zero byte completes.
  string(APPEND digits "00")
  set(base64 "")
  foreach(begin RANGE 0 65 6)
    string(SUBSTRING "${digits}" ${begin} 6 group)
    foreach(shift 18 12 6 0)
      math(EXPR index "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING "${letters}" ${index} 1 letter)
      string(APPEND base64 "${letter}")
    endforeach()
  endforeach()
  string(REGEX REPLACE "A$" "=" base64 "${base64}")
  set(${result} "sha256-${base64}" PARENT_SCOPE)
endfunction()

function(read_joined result)
  set(joined "")
  foreach(name IN LISTS ARGN)
    file(READ "${FOLDER}/${name}" text)
    string(APPEND joined "${text}\n")
  endforeach()
  set(${result} "${joined}" PARENT_SCOPE)
endfunction()

# page(KIND CONNECT SCRIPT…) sets KINDBefore and KINDBehind.
function(page kind connect)
  read_joined(script ${ARGN})
  set(script "\n${script}")
  file(READ "${FOLDER}/page.css" styles)
  set(styles "\n${styles}")
  base64_digest(script_digest "${script}")
  base64_digest(style_digest "${styles}")
  set(policy "default-src 'none'; script-src '${script_digest}'; style-src '${style_digest}'; \
img-src data:; connect-src ${connect}; base-uri 'none'; form-action 'none'")
  file(READ "${FOLDER}/page.html" html)
  string(REPLACE "{{policy}}" "${policy}" html "${html}")
  string(REPLACE "{{styles}}" "${styles}" html "${html}")
  string(REPLACE "{{script}}" "${script}" html "${html}")
  string(FIND "${html}" "{{model}}" at)
  math(EXPR behind "${at} + 9")
  string(SUBSTRING "${html}" 0 ${at} before)
  string(SUBSTRING "${html}" ${behind} -1 behind)
  set(${kind}Before "${before}" PARENT_SCOPE)
  set(${kind}Behind "${behind}" PARENT_SCOPE)
endfunction()

# A literal in pieces, for compilers need not take more than 65536 characters in one.
function(literal result text)
  set(written "")
  string(LENGTH "${text}" length)
  set(begin 0)
  while(begin LESS length)
    string(SUBSTRING "${text}" ${begin} 12000 piece)
    # It ends with a line, never within a character.
    string(FIND "${piece}" "\n" end REVERSE)
    if(end GREATER 0)
      math(EXPR end "${end} + 1")
      string(SUBSTRING "${piece}" 0 ${end} piece)
    endif()
    string(APPEND written "    R\"page(${piece})page\",\n")
    string(LENGTH "${piece}" size)
    math(EXPR begin "${begin} + ${size}")
  endwhile()
  set(${result} "${written}" PARENT_SCOPE)
endfunction()

page(file "'none'" ${SCRIPTS})
page(live "'self'" ${SCRIPTS} live.js)
set(source "// Written by EmbedPage.cmake from the files of page/.\n\
#include \"ygconfig/report/PageText.h\"\n\nnamespace yg::tool {\n\n")
foreach(part fileBefore fileBehind liveBefore liveBehind)
  literal(pieces "${${part}}")
  string(APPEND source "const PageText ${part}{\n${pieces}};\n\n")
endforeach()
string(APPEND source "}  // namespace yg::tool\n")
file(WRITE "${OUTPUT}" "${source}")
