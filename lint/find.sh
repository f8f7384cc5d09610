# shellcheck shell=bash
# Finds the files to check and the tools to check them with. Source it in the top folder.

# Only this version of clang-format checks formatting, since versions differ.
clang_format_version=14

find_clang_format() {
  local candidate
  for candidate in "clang-format-$clang_format_version" clang-format; do
    if command -v "$candidate" >/dev/null && "$candidate" --version | grep -q "version $clang_format_version\\."; then
      printf '%s\n' "$candidate"
      return
    fi
  done
  printf '%s\n' "there is no clang-format $clang_format_version here; no other version will do" >&2
  printf '%s\n' "Debian 12 has it; elsewhere: pip install clang-format==$clang_format_version.0.6" >&2
  return 1
}

# Finds the newest version of an LLVM tool.
find_llvm_tool() {
  local candidate newest
  newest=$(compgen -c "$1-" | sed -n "s/^$1-\([0-9]*\)\$/\1/p" | sort -n | tail -n 1)
  for candidate in ${newest:+"$1-$newest"} "$1" /opt/homebrew/opt/llvm/bin/"$1" /usr/local/opt/llvm/bin/"$1"; do
    if command -v "$candidate"; then
      return
    fi
  done
  printf '%s was not found\n' "$1" >&2
  return 1
}

# Null-terminated paths of files in the source folders; takes find's conditions.
sources() {
  local folder folders=()
  for folder in src tools tests bench packaging lint cmake dev.d; do
    [ ! -d "$folder" ] || folders+=("$folder")
  done
  find "${folders[@]}" -type f \( "$@" \) -print0
}

cpp_sources() { sources -name '*.cpp' -o -name '*.h'; }
qml_sources() { sources -name '*.qml'; }

# Shell scripts, by their name or their first line.
shell_sources() {
  local script
  printf '%s\0' dev .ci/run
  sources -name '*.sh'
  # shellcheck disable=SC2016
  sources ! -name '*.*' | while IFS= read -r -d '' script; do
    ! head -n 1 "$script" | LC_ALL=C grep -qaE '^#!.*\b(ba)?sh$' || printf '%s\0' "$script"
  done
}
