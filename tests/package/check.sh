#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# One check of the package; its variables come from CMakeLists.txt beside it.
#
#   check.sh install       lays the package down and moves it to where the next three look
#   check.sh headers       each installed header compiles alone, without the source tree
#   check.sh find_package  the example host builds against it with CMake and runs
#   check.sh pkg_config    the example host builds against it with a bare compiler and runs
#   check.sh abi           programs linked to the released version run with it
#   check.sh sbom          the list of what it consists of is whole and true
#   check.sh subproject    a project that adds this one gets the library and nothing else
#   check.sh static        the vcpkg port builds the static library, and the example host links it
#   check.sh recipes       the files of other package managers agree with the sources
set -euo pipefail

here=$BUILD/tests/package
prefix=$here/prefix
work=$here/$1
rm -rf "$work"
mkdir -p "$work"

fail() {
    printf '%s\n' "$1" >&2
    exit 1
}

# A folder beside the build: sources have the same relative paths from there, by which the compiler
# cache knows what the build has compiled.
build_beside() {
    beside=$BUILD-$1
    trap 'rm -rf "$beside"' EXIT
    rm -rf "$beside"
    export CCACHE_BASEDIR=$SOURCE CCACHE_NOHASHDIR=1
}

# Runs the example host on a layout of one page with one magic slot.
run_host() {
    mkdir -p "$work/root/config" "$work/root/soft_optimize"
    cat >"$work/root/config/custompage_template.xml" <<'XML'
<styles default_style="quote">
    <style name="quote"><panel name="list"/><magic_panels name="chart"/></style>
</styles>
XML
    cat >"$work/root/config/magic_panels.xml" <<'XML'
<magic>
    <magic_panels name="chart">
        <magic_panel name="trend"><panel name="trend_view"/></magic_panel>
        <magic_panel name="kline"><panel name="kline_view"/></magic_panel>
    </magic_panels>
</magic>
XML
    echo '<styles/>' >"$work/root/soft_optimize/custompage_template.xml"

    { "$1" "$work/root" && "$1" "$work/root" quote-kline; } | tee "$work/output"
    diff - "$work/output" <<END
YGConfigManager $VERSION
pages: 1
commands: 0
quote servers: 0
web pages: 0
request URLs: 0
quote
    list
    trend_view
YGConfigManager $VERSION
quote-kline
    list
    kline_view
END
}

# The installed tool finds what serves its pages: it prints its address and ends in order.
serve_preview() {
    mkdir -p "$work/empty/config"
    timeout 20 "$prefix/bin/ygconfig" preview --root "$work/empty" >"$work/address" &
    local server=$!
    for _ in $(seq 100); do
        [ ! -s "$work/address" ] || break
        sleep 0.1
    done
    kill -INT "$server" 2>/dev/null || true
    wait "$server" || fail "the preview of the installed tool does not end in order"
    grep -F 'http://127.0.0.1:' "$work/address" >/dev/null ||
        fail "the installed tool shows no preview"
}

install() {
    rm -rf "$prefix"
    "$CMAKE" --install "$BUILD" --prefix "$work/first" >/dev/null
    mv "$work/first" "$prefix"
    (cd "$prefix" && find . ! -type d | sort)
    local library=libYGConfigManager.so.${VERSION%.*}
    # docs/abi.md says why it has two numbers.
    LC_ALL=C readelf -d "$(find "$prefix" -name "libYGConfigManager.so.$VERSION")" |
        grep -F "soname: [$library]" >/dev/null || fail "the library's SONAME is not $library"
    # libcurl is opened at the first request, which packaging tools have to be able to see.
    local elf
    # It also fails at a kind of note that it does not know.
    elf=$(LC_ALL=C readelf -W -d -n -p .note.dlopen \
        "$(find "$prefix" -name "libYGConfigManager.so.$VERSION")" || true)
    ! grep -E 'NEEDED.*(curl|ssl|crypto)' <<<"$elf" || fail "the library is linked with libcurl"
    # The address sanitizer puts something between the notes.
    if [[ $CXXFLAGS != *-fsanitize=* ]]; then
        # A number, or the name that newer versions have for it.
        grep -E '^ *FDO +0x[0-9a-f]+.*(0x407c0c0a|FDO_DLOPEN)' <<<"$elf" >/dev/null ||
            fail "no note says what the library opens"
        grep -F '[{"soname":["libcurl.so.4"],"feature":"http","description":"HTTP requests and downloads of request URLs","priority":"required"}]' \
            <<<"$elf" >/dev/null || fail "the note does not name libcurl"
    fi
    if [ -e "$prefix/bin/ygconfig" ]; then
        "$prefix/bin/ygconfig" --help >/dev/null
        serve_preview
        local file
        for file in man/man1/ygconfig.1 man/man1/ygconfig-lint.1 bash-completion/completions/ygconfig \
            zsh/site-functions/_ygconfig fish/vendor_completions.d/ygconfig.fish; do
            [ -f "$prefix/share/$file" ] || fail "share/$file is not installed"
        done
    fi
}

headers() {
    local header count=0
    while IFS= read -r header; do
        echo "#include \"$header\"" >"$work/alone.cpp"
        # shellcheck disable=SC2086
        $CXX $CXXFLAGS -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
            -I "$prefix/include" "$work/alone.cpp" || fail "$header does not stand alone"
        count=$((count + 1))
    done < <(cd "$prefix/include" && find YGConfigManager -name '*.h')
    [ "$count" -gt 0 ] || fail "no header was installed"
}

find_package() {
    "$CMAKE" -S "$SOURCE/examples/host" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix"
    "$CMAKE" --build "$work/build"
    run_host "$work/build/host"
}

pkg_config() {
    local libdir flags
    libdir=$(dirname "$(find "$prefix" -name YGConfigManager.pc)")/..
    export PKG_CONFIG_PATH=$libdir/pkgconfig
    [ "$(pkg-config --modversion YGConfigManager)" = "$VERSION" ] || fail "wrong version"
    flags=$(pkg-config --cflags --libs YGConfigManager glib-2.0)
    # shellcheck disable=SC2086
    $CXX $CXXFLAGS -std=c++20 "$SOURCE"/examples/host/*.cpp -o "$work/host" $flags
    LD_LIBRARY_PATH=$libdir run_host "$work/host"
}

abi() {
    local status=0 copy=$work/copy
    "$SOURCE/scripts/abi" --check "$prefix" || return

    # The check itself: a record that gains a field, and a function that is gone.
    cp -r "$prefix" "$copy"
    sed -i 's/^struct Finding {$/&\n    int added = 0;/' \
        "$copy/include/YGConfigManager/diagnostics/DiagnosticsSink.h"
    "$SOURCE/scripts/abi" --check "$copy" >"$work/output" 2>&1 || status=$?
    [ "$status" = 1 ] || fail "a record with one more field is accepted"
    grep -F "'int added'" "$work/output" >/dev/null || fail "the added field is not named"
    rm -r "$copy"
}

sbom() {
    command -v dpkg-query >/dev/null || { echo 'skipped: the packages of other systems are unknown'; exit 77; }
    SOURCE_DATE_EPOCH=1700000000 "$SOURCE/scripts/sbom" "$prefix" >"$work/sbom.json"
    python3 "$SOURCE/tests/package/check_sbom.py" "$work/sbom.json" "$prefix"
}

static() {
    local static=$work/prefix flags
    build_beside static
    "$CMAKE" -DPORT="$SOURCE/packaging/vcpkg/ygconfigmanager" -DWORK="$beside" -DPREFIX="$static" \
        -DGENERATOR="$CMAKE_GENERATOR" -DCOMPILER="$CXX" -DWERROR="$WERROR" \
        -P "$SOURCE/tests/package/vcpkg.cmake"
    [ -f "$static/lib/libYGConfigManager.a" ] || fail "the archive is not installed"
    [ -z "$(find "$static" -name '*.so*' -o -name ygconfig)" ] || fail "more than the archive is installed"

    "$CMAKE" -S "$SOURCE/examples/host" -B "$work/host" -DCMAKE_PREFIX_PATH="$static"
    "$CMAKE" --build "$work/host"
    run_host "$work/host/host"
    ! readelf -d "$work/host/host" | grep -F libYGConfigManager || fail "the host wants a shared library"

    export PKG_CONFIG_PATH=$static/lib/pkgconfig
    flags=$(pkg-config --cflags --libs YGConfigManager glib-2.0)
    # shellcheck disable=SC2086
    $CXX $CXXFLAGS -std=c++20 "$SOURCE"/examples/host/*.cpp -o "$work/by_pkg_config" $flags
    run_host "$work/by_pkg_config"
}

recipes() {
    local port=$SOURCE/packaging/vcpkg/ygconfigmanager recipe=$SOURCE/packaging/conan/conanfile.py file
    [ "$(python3 -c 'import json, sys; print(json.load(open(sys.argv[1]))["version"])' "$port/vcpkg.json")" \
        = "$VERSION" ] || fail "vcpkg.json has another version"
    PYTHONPYCACHEPREFIX=$work python3 -m py_compile "$recipe"
    # Both turn the same things off, which CMakeLists.txt knows.
    diff <(grep -o 'YG_[A-Z_]*' "$port/portfile.cmake" | sort -u) \
        <(grep -o '"YG_[A-Z_]*' "$recipe" | tr -d '"' | sort -u)
    while read -r file; do
        grep -F "option($file " "$SOURCE/CMakeLists.txt" >/dev/null || fail "$file is no option"
    done < <(grep -o 'YG_[A-Z_]*' "$port/portfile.cmake" | sort -u)
    # The recipe takes along what it is built and installed from.
    while read -r file; do
        [ -e "$SOURCE/$file" ] || fail "the recipe takes along $file, which is not there"
    done < <(sed -n '/def export_sources/,/copy(/p' "$recipe" | grep -o '"[A-Za-z.]*[/"]' | tr -d '"/')
}

subproject() {
    build_beside subproject
    "$CMAKE" -S "$SOURCE/tests/package/subproject" -B "$beside" -DYG_SOURCE="$SOURCE" \
        -DCMAKE_BUILD_TYPE=Release -DYG_WARNINGS_AS_ERRORS="$WERROR" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)"
    "$CMAKE" --build "$beside"
    run_host "$beside/host"
    # The same by FetchContent, of sources that are there; nothing is compiled another time.
    "$CMAKE" -S "$SOURCE/tests/package/subproject" -B "$beside" -DBY_FETCHCONTENT=ON \
        -DFETCHCONTENT_FULLY_DISCONNECTED=ON -DFETCHCONTENT_SOURCE_DIR_YGCONFIGMANAGER="$SOURCE"
    "$CMAKE" --build "$beside"
    run_host "$beside/host"
}

"$1"
