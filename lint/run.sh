#!/usr/bin/env bash
# Every check that needs no run of Vesk. One line for each check; a failed one prints what and where below its line.
# Called by ./dev lint, which configures build/lint first.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
. lint/find.sh

builds=${VESK_BUILD_DIR:-$PWD/build}
build=$builds/lint
output=$(mktemp)
trap 'rm -f "$output"' EXIT
failed=0

# check NAME COMMAND...
check() {
  local name=$1 note started=$SECONDS
  shift
  if "$@" >"$output" 2>&1; then
    note=$(tail -n 1 "$output")
    printf 'ok      %-22s %3ds  %s\n' "$name" $((SECONDS - started)) "${note:0:100}"
  else
    failed=$((failed + 1))
    printf 'FAILED  %-22s %3ds\n' "$name" $((SECONDS - started))
    sed 's/^/        /' "$output"
  fi
}

formatting() { lint/format.sh check && echo "$(cpp_sources | tr -cd '\0' | wc -c) files"; }

tidy() {
  local clang_tidy
  clang_tidy=$(find_llvm_tool clang-tidy) && python3 lint/tidy.py "$clang_tidy" "$build"
}

scripts() { shell_sources | xargs -0 shellcheck --external-sources; }

# Has AutoMoc read everything anew, for it warns only when it reads a file. A Q_OBJECT that does not begin its line it
# overlooks without a word.
automoc() {
  local info targets=0 found
  found=$(cpp_sources | xargs -0 grep -nHE '^[^/]*[^/[:space:]].*\bQ_(OBJECT|GADGET|NAMESPACE)\b' | grep -v '#define') && {
    echo "not at the beginning of its line:"
    echo "$found"
    return 1
  }
  find "$build" -name ParseCache.txt -exec rm -f {} +
  while IFS= read -r info; do
    targets=$((targets + 1))
    found=$(cmake -E cmake_autogen "$info" Debug 2>&1) || { echo "$found"; return 1; }
    if grep -qi 'warning' <<<"$found"; then
      echo "$found"
      return 1
    fi
  done < <(find "$build" -name AutogenInfo.json)
  [ $targets -gt 0 ] || { echo "AutoMoc is at work nowhere"; return 1; }
  echo "$targets targets"
}

# qmllint leaves with success after mere warnings; here each is an error. The QML of the tests belongs to no module and
# uses types that the test program registers itself, which qmllint cannot know. In the folder of the release build, since
# it has the views' library built first, which is then not built twice.
qml() {
  local found
  found=$(cmake --build "$builds/release" --target all_qmllint 2>&1) || { echo "$found"; return 1; }
  if grep -qE '^(Warning|Error|Info):' <<<"$found"; then
    echo "$found"
    return 1
  fi
}

# A file of many lines is two things; this warns and does not fail.
long_files() {
  local most=400
  { cpp_sources; qml_sources; } | xargs -0 wc -l | awk -v most=$most '
    $2 != "total" && $1 > most { long = long " " $2 " (" $1 ")" }
    END { if (long) print "warning, over " most " lines:" long; }'
}

if not_judged=$(find_clang_format 2>&1 >/dev/null); then
  check "clang-format" formatting
else
  printf 'SKIPPED %-22s       %s\n' "clang-format" "$(head -n 1 <<<"$not_judged")"
fi
check "direction of includes" python3 lint/includes.py
check "promises and tests" python3 lint/promises.py
check "shellcheck" scripts
check "length of files" long_files
check "AutoMoc" automoc
check "qmllint" qml
check "clang-tidy" tidy

if [ "$failed" -gt 0 ]; then
  echo "lint: $failed of the checks failed"
  exit 1
fi
echo "lint: every check passed"
