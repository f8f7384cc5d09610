# shellcheck shell=bash
# The commands of ./dev: what each is for and the words it takes. To be sourced by ./dev.

commands=(run demo test build soak lint lint-macos format bench package shots fuzz setup try-in)

# The first line is the command with its words; the list of all commands shows what stands before the empty line.
help_of() {
  case $1 in
    run) cat <<'HELP'
run [--json] [--home DIR] [--root DIR]
  open Vesk; without a display, or with an option: print what a scan of this home finds

  --json      as one JSON object
  --home DIR  the home folder to look into
  --root DIR  the folder that stands for "/"
HELP
      ;;
    demo) cat <<'HELP'
demo [--folder DIR]
  open Vesk over a made-up home that is removed afterwards

  --folder DIR  keep the made-up home there
HELP
      ;;
    test) cat <<'HELP'
test [PRESET] [CTEST OPTIONS]
  build and run every test; PRESET is release (default), debug, asan or tsan

  Of ctest's options: -R, -E, -L and -LE with an expression, -j N, -I LIST, --repeat MODE:N, --timeout SECONDS, -V, -VV,
  -Q, --rerun-failed, --stop-on-failure, --schedule-random, --progress
HELP
      ;;
    build) cat <<'HELP'
build [PRESET]
  build everything; the programs lie in build/release/bin/

  PRESET is release (default), debug, asan or tsan.
HELP
      ;;
    soak) cat <<'HELP'
soak
  all that takes too long for every test run: faults, kills, races, fuzzing (an hour or so; on Linux)
HELP
      ;;
    lint) cat <<'HELP'
lint
  check formatting, code, QML, scripts and the direction of includes
HELP
      ;;
    lint-macos) cat <<'HELP'
lint-macos [--without-tests] [--qt ROOT]
  compile all that a Mac compiles, look for symbols that are nowhere, try the rules of Vesk.app (on Linux)

  --without-tests  leave the tests to a Mac: they take as long as all the rest
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
  measure Vesk beside other tools (--quick takes under two minutes)

  --quick         the main figures alone
  --pairs N       so many pairs of runs for each comparison
  --only SECTION  run only this section (may be repeated)
  --ahead         have the scheduler put the runs before all others (as root, on Linux)
  --no-cold       leave the caches of the machine alone
HELP
      ;;
    package) cat <<'HELP'
package
  build and check what people install: a Debian package, or a disk image on macOS
HELP
      ;;
    shots) cat <<'HELP'
shots [FOLDER]
  draw every view in every state into PNG files (in build/shots)
HELP
      ;;
    fuzz) cat <<'HELP'
fuzz [RUNS [TARGET...]]
  feed every reader of foreign bytes with made-up ones (20,000 each; on Linux)

  TARGET is a folder in tests/fuzz/corpus.
HELP
      ;;
    setup) cat <<'HELP'
setup
  install all packages that any command needs
HELP
      ;;
    try-in) cat <<'HELP'
try-in [OPTIONS] RELEASE...
  run, test and lint what is committed in fresh roots of Debian: bookworm, trixie, sid (as root or with sudo)

  --as USER    root or newcomer, an ordinary user with sudo; both by default
  --only WHAT  run, test or lint (may be repeated)
  --private    the sources lie below the user's home folder, which nobody else may enter
  --space      the sources lie in a path with a space
  --small-shm  /dev/shm has 64 MB, as in a container
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

# takes COMMAND SWITCHES OPTIONS MOST WORDS...: ends ./dev for a word that the command does not know. SWITCHES stand
# alone, OPTIONS are followed by a value, MOST is how many words may stand without either.
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
      refuse "$command" "$command does not know \"$1\""
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

# check_words COMMAND WORDS...: before anything is installed or built.
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
    run) takes run --json "--home --root" 0 "$@" ;;
    demo) takes demo "" --folder 0 "$@" ;;
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
      [[ ${1:-1} =~ ^[0-9]+$ ]] || refuse fuzz "\"$1\" is no number of runs"
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
          *) refuse try-in "$1 does not know \"${2:-}\"" ;;
        esac
        ;;
      bookworm | trixie | sid)
        releases=$((releases + 1))
        shift
        ;;
      *) refuse try-in "try-in does not know \"$1\"" ;;
    esac
  done
  [ $releases -gt 0 ] || refuse try-in "which release?"
}
