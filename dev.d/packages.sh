# shellcheck shell=bash
# Installs what commands need: `setup GROUP...`. Sourced by ./dev, which has the package lists.

on_macos() { [ "$(uname -s)" = Darwin ]; }

say() { printf '%s\n' "$*"; }

fail() {
  printf './dev: %s\n' "$*" >&2
  exit 1
}

# Which of the named packages (patterns allowed) are installed, one per line.
installed_packages() {
  # dpkg-query fails if a package is unknown, but still lists the others.
  dpkg-query --show --showformat='${binary:Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
    sed -n 's/^\([^ :]*\)[^ ]* installed$/\1/p' || true
}

apt_knows() { apt-cache show "$1" >/dev/null 2>&1; }

# The version of an LLVM package: the newest NAME-VERSION installed, otherwise the newest that apt knows.
newest_version() {
  local versions
  versions=$(installed_packages "$1-[0-9]*" | sed -n "s/^$1-\([0-9]*\)\$/\1/p")
  [ -n "$versions" ] || versions=$(apt-cache pkgnames "$1-" 2>/dev/null | sed -n "s/^$1-\([0-9]*\)\$/\1/p")
  # Before apt's first update it knows none. This one is then missing, which triggers the update.
  printf '%s\n' "${versions:-14}" | sort -n | tail -n 1
}

# The packages to install for these entries, one per line. For "a|b", only a will do if apt knows a.
missing_debian_packages() {
  local entry name names installed optional
  # shellcheck disable=SC2046 # names have no spaces
  installed=$'\n'$(installed_packages $(printf '%s\n' "$@" | tr '|' '\n'))$'\n'
  for entry in $(printf '%s\n' "$@" | sort -u); do
    names=${entry%|}
    optional=no
    [ "$names" = "$entry" ] || optional=yes
    if [ "$names" = "${names#*|}" ] && [ $optional = no ]; then
      [[ $installed == *$'\n'$names$'\n'* ]] || say "$names"
      continue
    fi
    for name in ${names//|/ }; do
      if [[ $installed == *$'\n'$name$'\n'* ]]; then
        continue 2
      elif apt_knows "$name"; then
        say "$name"
        continue 2
      fi
    done
    [ $optional = yes ] || say "$name"
  done
}

missing_homebrew_packages() {
  local prefix package
  prefix=$(brew --prefix)
  for package in "$@"; do
    [ -e "$prefix/opt/$package" ] || say "$package"
  done
}

setup() {
  if on_macos; then
    setup_on_macos "$@"
  elif command -v dpkg-query >/dev/null; then
    setup_on_debian "$@"
  else
    say "./dev installs packages only on Debian and macOS. Please install what Debian calls:" \
      "$(packages_of debian_packages "$@")" >&2
  fi
}

# packages_of LIST GROUP...
packages_of() {
  local list=$1 group
  shift
  for group in "$@"; do
    "$list" "$group"
  done | tr '\n' ' '
}

setup_on_macos() {
  local missing=()
  command -v brew >/dev/null || fail "please install Homebrew first: https://brew.sh"
  # shellcheck disable=SC2046,SC2207 # names have no spaces
  missing=($(missing_homebrew_packages $(packages_of homebrew_packages "$@")))
  [ ${#missing[@]} -eq 0 ] || brew install "${missing[@]}"
}

setup_on_debian() {
  local missing=() as_root=() by_hand="As root:"
  # shellcheck disable=SC2046,SC2207
  missing=($(missing_debian_packages $(packages_of debian_packages "$@")))
  [ ${#missing[@]} -gt 0 ] || return 0

  if [ "$(id -u)" -ne 0 ] && command -v sudo >/dev/null; then
    as_root=(sudo)
    by_hand="By hand: sudo"
  fi
  if [ "$(id -u)" -eq 0 ] || [ ${#as_root[@]} -gt 0 ]; then
    # sudo passes no variables on, so the command sets this one itself.
    as_root+=(env DEBIAN_FRONTEND=noninteractive)
    "${as_root[@]}" apt-get update ||
      say "./dev: apt could not read all of its sources. Continuing anyway." >&2
    # Now apt may know more names than before.
    # shellcheck disable=SC2046,SC2207
    missing=($(missing_debian_packages $(packages_of debian_packages "$@")))
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}" && return
  fi
  fail "packages are missing. $by_hand apt-get install --no-install-recommends ${missing[*]}"
}
