#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# One check of the package; its variables come from CMakeLists.txt beside it.
#
#   check.sh install       lays the package down and moves it to where the next three look
#   check.sh headers       each installed header compiles alone, without the source tree
#   check.sh find_package  the example host builds against it with CMake and runs
#   check.sh pkg_config    the example host builds against it with a bare compiler and runs
#   check.sh subproject    a project that adds this one gets the library and nothing else
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

    "$1" "$work/root" quote-kline | tee "$work/output"
    diff - "$work/output" <<END
YGConfigManager $VERSION
quote
    list
    trend_view
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
    # The layout of public classes may differ in every minor version.
    LC_ALL=C readelf -d "$(find "$prefix" -name "libYGConfigManager.so.$VERSION")" |
        grep -F "soname: [$library]" >/dev/null || fail "the library's SONAME is not $library"
    # libcurl is opened at the first request, which packaging tools have to be able to see.
    local elf
    # It also fails at a kind of note that it does not know.
    elf=$(LC_ALL=C readelf -W -d -n -p .note.dlopen \
        "$(find "$prefix" -name "libYGConfigManager.so.$VERSION")" || true)
    ! grep -E 'NEEDED.*(curl|ssl|crypto)' <<<"$elf" || fail "the library is linked with libcurl"
    grep -E '^ *FDO +0x[0-9a-f]+.*0x407c0c0a' <<<"$elf" >/dev/null ||
        fail "no note says what the library opens"
    grep -F '[{"soname":["libcurl.so.4"],"feature":"http","description":"HTTP requests and downloads of request URLs","priority":"required"}]' \
        <<<"$elf" >/dev/null || fail "the note does not name libcurl"
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
    flags=$(pkg-config --cflags --libs YGConfigManager)
    # shellcheck disable=SC2086
    $CXX $CXXFLAGS -std=c++20 "$SOURCE/examples/host/main.cpp" -o "$work/host" $flags
    LD_LIBRARY_PATH=$libdir run_host "$work/host"
}

subproject() {
    "$CMAKE" -S "$SOURCE/tests/package/subproject" -B "$work/build" -DYG_SOURCE="$SOURCE" \
        -DCMAKE_BUILD_TYPE=Release -DYG_WARNINGS_AS_ERRORS="$WERROR" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)"
    "$CMAKE" --build "$work/build"
    run_host "$work/build/host"
}

"$1"
