#!/usr/bin/env bash
# Formats every C++ source ("fix"), or lists those that are not formatted ("check").
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. lint/find.sh

clang_format=$(find_clang_format)
case $1 in
  fix) cpp_sources | xargs -0 "$clang_format" -i ;;
  check) cpp_sources | xargs -0 "$clang_format" --dry-run -Werror ;;
esac
