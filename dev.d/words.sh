# shellcheck shell=bash
# The commands of ./dev: help texts and argument checks. Sourced by ./dev.

commands=(run demo test build soak lint lint-macos format bench package shots fuzz setup try-in)

# The first line is the command with its arguments. The list of all commands shows what precedes the empty line.
help_of() {
  case $1 in
    run) cat <<'HELP'
run [--json] [--home DIR] [--root DIR] [--layout KIND]
  open Vesk; without a display, or with an option: print a scan report of your home folder

  --json      print one JSON object
  --home DIR  the home folder to scan
  --root DIR  the folder that stands for "/"
  --layout macos|linux  look where programs of that system keep their things
HELP
      ;;
    demo) cat <<'HELP'
demo [--layout KIND] [--folder DIR]
  open Vesk on a made-up home that is deleted afterwards

  --layout macos|linux  which system the home is one of; macos unless linux is asked for
  --folder DIR  keep the made-up home there
HELP
      ;;
    test) cat <<'HELP'
test [PRESET] [CTEST OPTIONS]
  build and run every test; PRESET is release (default), debug, asan or tsan

  CTEST OPTIONS: -R, -E, -L and -LE with an expression, -j N, -I LIST, --repeat MODE:N, --timeout SECONDS, -V, -VV,
  -Q, --rerun-failed, --stop-on-failure, --schedule-random, --progress
HELP
      ;;
    build) cat <<'HELP'
build [PRESET]
  build everything; the programs are in build/release/bin/

  PRESET is release (default), debug, asan or tsan.
HELP
      ;;
    soak) cat <<'HELP'
soak
  run the long tests: faults, kills, races, fuzzing (about an hour; Linux only)
HELP
      ;;
    lint) cat <<'HELP'
lint
  check formatting, code, QML, scripts and include directions
HELP
      ;;
    lint-macos) cat <<'HELP'
lint-macos [--without-tests] [--qt ROOT]
  compile all that a Mac compiles, look for symbols that are nowhere, try the rules of Vesk.app (on Linux)

  --without-tests  leave out the tests, and compile several sources at once
  --qt ROOT        also compile the window's side with the Qt headers below ROOT, such as a newer Debian's
HELP
      ;;
    format) cat <<'HELP'
format
  format all C++ sources
HELP
      ;;
    bench) cat <<'HELP'
bench [OPTIONS]
  compare Vesk with other tools (--quick takes under two minutes)

  --quick         only the main figures
  --pairs N       run N pairs for each comparison
  --only SECTION  run only this section (repeatable)
  --ahead         give the runs real-time priority (as root, on Linux)
  --no-cold       do not drop the machine's caches
HELP
      ;;
    package) cat <<'HELP'
package
  build and check the package: a .deb, or a disk image on macOS
HELP
      ;;
    shots) cat <<'HELP'
shots [FOLDER]
  render every view in every state to PNG files (in build/shots)
HELP
      ;;
    fuzz) cat <<'HELP'
fuzz [RUNS [TARGET...]]
  fuzz every parser of untrusted bytes (20,000 runs each; Linux only)

  TARGET is a folder in tests/fuzz/corpus.
HELP
      ;;
    setup) cat <<'HELP'
setup
  install the packages that the commands need
HELP
      ;;
    try-in) cat <<'HELP'
try-in [OPTIONS] RELEASE...
  run, test and lint the committed state in fresh Debian roots: bookworm, trixie, sid (as root or with sudo)

  --as USER    root or newcomer, an ordinary user with sudo; both by default
  --only WHAT  run, test or lint (repeatable)
  --private    put the sources in the user's home folder, which nobody else can enter
  --space      put the sources in a path with a space
  --small-shm  give /dev/shm 64 MB, as in a container
HELP
      ;;
    *) return 1 ;;
  esac
}

usage() {
  local command
  echo "Usage: ./dev COMMAND, or ./dev COMMAND --help"
  echo
  for command in "${commands[@]}"; do
    help_of "$command" | sed '/^$/,$d; s/^/  /'
  done
}

refuse() {
  { echo "Usage: ./dev $(help_of "$1")"; echo; } >&2
  fail "$2"
}

# takes COMMAND SWITCHES OPTIONS MOST WORDS...: fails on an unknown argument. SWITCHES stand alone, OPTIONS take a
# value, MOST is how many other arguments there may be.
takes() {
  local command=$1 switches=" $2 " options=" $3 " most=$4
  shift 4
  while [ $# -gt 0 ]; do
    if [[ $1 == -* && $switches == *" $1 "* ]] || [[ $1 =~ ^-j[0-9]+$ && $options == *" -j "* ]]; then
      shift
    elif [[ $1 == -* && $options == *" $1 "* ]]; then
      [ $# -gt 1 ] || refuse "$command" "$1 needs a value"
      shift 2
    elif [[ $1 != -* && $most -gt 0 ]]; then
      most=$((most - 1))
      shift
    else
      refuse "$command" "unknown argument \"$1\""
    fi
  done
}

is_preset() {
  case $1 in
    release | debug | asan | tsan) ;;
    *) return 1 ;;
  esac
}

is_fuzz_target() { [[ $1 != */* && -n $1 && -d tests/fuzz/corpus/$1 ]]; }

# check_words COMMAND WORDS...: runs before anything is installed or built.
check_words() {
  local command=$1 word
  shift
  for word in "$@"; do
    if [ "$word" = --help ] || [ "$word" = -h ]; then
      echo "Usage: ./dev $(help_of "$command")"
      exit 0
    fi
  done
  case $command in
    run) takes run --json "--home --root --layout" 0 "$@" ;;
    demo) takes demo "" "--folder --layout" 0 "$@" ;;
    lint-macos) takes lint-macos --without-tests --qt 0 "$@" ;;
    bench) takes bench "--quick --ahead --no-cold" "--pairs --only" 0 "$@" ;;
    shots) takes shots "" "" 1 "$@" ;;
    build)
      takes build "" "" 1 "$@"
      is_preset "${1:-release}" || refuse build "there is no preset \"$1\""
      ;;
    test)
      if [ $# -gt 0 ] && [[ $1 != -* ]]; then
        is_preset "$1" || refuse test "there is no preset \"$1\""
        shift
      fi
      takes test "-V -VV -Q --verbose --rerun-failed --stop-on-failure --schedule-random --progress" \
        "-R -E -L -LE -j -I --tests-regex --exclude-regex --label-regex --parallel --repeat --timeout" 0 "$@"
      ;;
    fuzz)
      [[ ${1:-1} =~ ^[0-9]+$ ]] || refuse fuzz "\"$1\" is not a number of runs"
      [ $# -eq 0 ] || shift
      for word in "$@"; do
        is_fuzz_target "$word" || refuse fuzz "there is no target \"$word\""
      done
      ;;
    try-in) check_try_in "$@" ;;
    *) takes "$command" "" "" 0 "$@" ;;
  esac
}

check_try_in() {
  local releases=0
  while [ $# -gt 0 ]; do
    case $1 in
      --private | --space | --small-shm) shift ;;
      --as | --only)
        case $1=${2:-} in
          --as=root | --as=newcomer | --only=run | --only=test | --only=lint) shift 2 ;;
          *) refuse try-in "invalid value for $1: \"${2:-}\"" ;;
        esac
        ;;
      bookworm | trixie | sid)
        releases=$((releases + 1))
        shift
        ;;
      *) refuse try-in "unknown argument \"$1\"" ;;
    esac
  done
  [ $releases -gt 0 ] || refuse try-in "name a release"
}
