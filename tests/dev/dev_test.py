#!/usr/bin/env python3
"""What ./dev installs, rejects, prints and builds, tested on a copy of it with stand-ins for apt, sudo, npm, CMake and
the like. Nothing is installed or built; only the stand-ins and a few simple tools can be called."""

import os
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
COPIED = ["CMakeLists.txt", "dev", "dev.d", "lint/find.sh", "lint/format.sh", "tests/fuzz/run", "tests/fuzz/corpus", "lint/macos/run.sh",
          "cmake/VeskTargets.cmake", "tests/summarise.py"]
TOOLS = ["bash", "basename", "cat", "cp", "cut", "dirname", "env", "find", "grep", "head", "install", "mkdir", "rm", "sed",
         "sh", "sort", "tail", "tar", "tee", "touch", "tr", "wc", "xargs"]
# What each stand-in does after it has logged its name and arguments. $WORLD is a folder with the state:
# "installed" and "known" list packages, "uid" holds the user's number, other files are switches.
STAND_INS = {
    "uname": "exec >/dev/stdout; case $1 in -s) echo Linux ;; *) echo Linux x86_64 ;; esac",
    "id": 'cat "$WORLD/uid"',
    "getconf": "echo 2",
    "dpkg-query": '''for pattern; do
  while read -r name; do
    case $name in $pattern) echo "$name installed" ;; esac
  done <"$WORLD/installed"
done''',
    "apt-cache": '''case $1 in
  show) grep -qxF "$2" "$WORLD/known" ;;
  pkgnames) grep "^$2" "$WORLD/known" ;;
esac''',
    "apt-get": '''echo "frontend=$DEBIAN_FRONTEND" >>"$WORLD/log"
case $1 in
  update)
    [ ! -e "$WORLD/known-after-update" ] || cat "$WORLD/known-after-update" >"$WORLD/known"
    if [ -e "$WORLD/broken-source" ]; then echo "E: The repository has no Release file" >&2; exit 100; fi ;;
  install) [ ! -e "$WORLD/install-fails" ] || exit 100 ;;
esac''',
    # Like sudo by default, it passes on nothing of the environment but the path.
    "sudo": 'exec env -i PATH="$PATH" WORLD="$WORLD" "$@"',
    "npm": 'case " $* " in *" --silent "*) ;; *) echo "npm ERR! network unreachable" >&2 ;; esac; exit 1',
    "cmake": '''[ "$1" != --build ] || exit 0
tests=ON
for word; do
  case $word in -DVESK_TESTS=*) tests=${word#*=} ;; esac
  case $before in -B) folder=$word ;; esac
  before=$word
done
mkdir -p "$folder/bin"
{ echo "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD"; echo "VESK_TESTS:BOOL=$tests"; } >"$folder/CMakeCache.txt"
: >"$folder/build.ninja"
{ echo "#!/bin/sh"; echo 'echo "vesk-scan $*" >>"$WORLD/log"'; } >"$folder/bin/vesk-scan"
chmod +x "$folder/bin/vesk-scan"''',
    "ctest": '''for word; do
  [ "$before" != --output-junit ] || echo '<testsuite tests="3" failures="0"><testcase name="a" status="run"/><testcase name="b" status="run"/><testcase name="c" status="run"/></testsuite>' >"$word"
  before=$word
done''',
    "chmod": 'exec /bin/chmod "$@"',
    "git": '''case $1 in
  archive) tar -cf "${2#--output=}" -C "$WORLD/a tree" dev ;;
  status) ;;
esac''',
    # The options for namespaces, then the command to run in them.
    "unshare": '''while [ "${1#--}" != "$1" ] || [ "$1" = private ]; do shift; done
case $1 in
  debootstrap) [ ! -e "$WORLD/no-such-release" ] || exit 1; mkdir -p "$4/etc/apt" "$4/usr/local/bin" ;;
  *) echo "a line"
    case $7 in
      test) echo "3 passed, 1 failed"; exit 1 ;;
      *) echo "all is well" ;;
    esac ;;
esac''',
    "debootstrap": "exit 1",
}
QUIET = {"uname", "id", "getconf", "dpkg-query", "apt-cache", "chmod"}


class DevTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.world = Path(temporary.name).resolve()
        self.tree = self.world / "a tree"
        self.bin = self.world / "bin"
        self.bin.mkdir()
        for name in COPIED:
            (self.tree / name).parent.mkdir(parents=True, exist_ok=True)
            if (TREE / name).is_dir():
                shutil.copytree(TREE / name, self.tree / name)
            else:
                shutil.copy(TREE / name, self.tree / name)
        for name in TOOLS:
            (self.bin / name).symlink_to(shutil.which(name))
        (self.bin / "python3").symlink_to(sys.executable)
        for name, does in STAND_INS.items():
            log = "" if name in QUIET else f'echo "{name} $*" >>"$WORLD/log"\n'
            self.script(name, log + does)
        self.set("uid", "1000")
        self.set("installed", "")
        self.set("known", "")
        self.set("log", "")

    def script(self, name, does):
        file = self.bin / name
        file.write_text(f"#!/bin/sh\n{does}\n", encoding="utf-8")
        file.chmod(file.stat().st_mode | stat.S_IXUSR)

    def set(self, name, content=""):
        (self.world / name).write_text(content, encoding="utf-8")

    def dev(self, *words, program="dev", **environment):
        """Runs ./dev; returns its exit status and output. What it called is in self.log()."""
        self.set("log", "")
        run = subprocess.run([self.tree / program, *words], cwd=self.world, capture_output=True, text=True, check=False,
                             env={"PATH": str(self.bin), "WORLD": str(self.world), **environment})
        return run.returncode, run.stdout + run.stderr

    def log(self):
        return (self.world / "log").read_text(encoding="utf-8").splitlines()

    def asked_of_apt(self):
        """The packages that apt-get was told to install."""
        words = [line.split() for line in self.log() if line.startswith("apt-get install")]
        return {name for line in words for name in line[2:] if not name.startswith("-")}

    def install_all_but(self, *names):
        """Pretends that everything ./dev run and ./dev test need is installed, except these."""
        self.set("installed", "")
        self.dev("setup")
        self.set("installed", "".join(f"{name}\n" for name in sorted(self.asked_of_apt() - set(names))))

    # ---- Packages

    def test_the_plugin_for_pictograms_is_a_package_of_its_own_in_newer_debian(self):
        self.install_all_but("qt6-svg-plugins")
        with open(self.world / "installed", "a", encoding="utf-8") as installed:
            installed.write("libqt6svg6\n")
        self.set("known", "libqt6svg6\nqt6-svg-plugins\n")
        self.assertEqual(self.dev("run")[0], 0)
        self.assertEqual(self.asked_of_apt(), {"qt6-svg-plugins"})

    def test_the_plugin_for_pictograms_is_in_the_library_in_older_debian(self):
        self.set("known", "libqt6svg6\n")
        self.install_all_but("libqt6svg6")
        self.dev("run")
        self.assertEqual(self.asked_of_apt(), {"libqt6svg6"})
        self.install_all_but()
        self.dev("run")
        self.assertEqual(self.asked_of_apt(), set())

    def test_what_apt_knows_is_asked_after_its_lists_were_fetched(self):
        self.set("known-after-update", "libqt6svg6\nqt6-svg-plugins\nclang-tidy-19\n")
        self.dev("lint")
        self.assertIn("qt6-svg-plugins", self.asked_of_apt())
        self.assertNotIn("libqt6svg6", self.asked_of_apt())
        self.assertIn("clang-tidy-19", self.asked_of_apt())

    def test_the_newest_tools_of_llvm_are_taken(self):
        self.set("known", "clang-9\nclang-19\nclang-tidy-9\nclang-tidy-19\nclang-tidy-19-doc\n")
        self.dev("lint")
        self.assertIn("clang-tidy-19", self.asked_of_apt())
        self.assertNotIn("clang-format-14", self.asked_of_apt())
        self.dev("fuzz")
        self.assertLessEqual({"clang-19", "libclang-rt-19-dev", "llvm-19"}, self.asked_of_apt())

    def test_tools_of_llvm_that_are_there_are_kept(self):
        self.set("installed", "clang-tidy-14\n")
        self.set("known", "clang-tidy-14\nclang-tidy-19\nclang-format-14\n")
        self.dev("lint")
        self.assertNotIn("clang-tidy-19", self.asked_of_apt())
        self.assertIn("clang-format-14", self.asked_of_apt())

    def test_fuzzing_uses_the_newest_compiler_there_is(self):
        for name in ("clang++-9", "clang++-19"):
            self.script(name, "")
        self.dev(program="tests/fuzz/run")
        self.assertIn(f"-DCMAKE_CXX_COMPILER={self.bin}/clang++-19", " ".join(self.log()))

    def test_formatting_is_judged_by_one_version_alone(self):
        self.script("clang-format", '[ "$1" != --version ] || { echo "Debian clang-format version 19.1.7"; exit; }; exit 1')
        status, said = self.dev("check", program="lint/format.sh")
        self.assertNotEqual(status, 0)
        self.assertIn("there is no clang-format 14 here", said)
        self.script("clang-format", '[ "$1" != --version ] || { echo "clang-format version 14.0.6"; exit; }; exit 0')
        self.assertEqual(self.dev("check", program="lint/format.sh")[0], 0)

    def test_a_broken_source_of_apt_stops_nothing(self):
        self.set("broken-source")
        status, said = self.dev("run")
        self.assertEqual(status, 0, said)
        self.assertIn("could not read all of its sources", said)
        self.assertIn("g++", self.asked_of_apt())

    def test_sudo_keeps_apt_from_asking_questions(self):
        self.dev("run")
        self.assertIn("sudo env DEBIAN_FRONTEND=noninteractive apt-get update", self.log())
        self.assertEqual({line for line in self.log() if line.startswith("frontend=")}, {"frontend=noninteractive"})

    def test_a_message_names_the_whole_command(self):
        self.set("install-fails")
        for user, sudo, command in (("1000", True, "sudo apt-get install"), ("1000", False, "As root: apt-get install"),
                                    ("0", True, "As root: apt-get install")):
            with self.subTest(user=user, sudo=sudo):
                self.set("uid", user)
                if not sudo:
                    (self.bin / "sudo").rename(self.world / "sudo")
                status, said = self.dev("run")
                if not sudo:
                    (self.world / "sudo").rename(self.bin / "sudo")
                self.assertNotEqual(status, 0)
                self.assertIn(f"{command} --no-install-recommends cmake ", said)
                self.assertFalse([line for line in self.log() if line.startswith("cmake")])

    def test_a_failure_of_npm_is_shown(self):
        status, said = self.dev("--without-tests", program="lint/macos/run.sh")
        self.assertNotEqual(status, 0)
        self.assertIn("npm ERR! network unreachable", said)

    # ---- Fresh roots

    def test_roots_are_tried_for_each_user_and_closed_with_a_table(self):
        self.set("uid", "0")
        status, said = self.dev("try-in", "--space", "--small-shm", "trixie")
        self.assertEqual(status, 1)
        table = [line.split("  ") for line in said[said.index("\nenvironment"):].splitlines() if "./dev" in line]
        rows = [[cell.strip() for cell in line if cell.strip()][:4] for line in table]
        where = "trixie, space, small shm"
        self.assertEqual(rows, [[where, user, f"./dev {command}", result] for user in ("root", "newcomer") for command, result
                                in (("run", "all is well"), ("test", "FAILED: 3 passed, 1 failed"), ("lint", "all is well"))])
        entered = [line for line in self.log() if "enter_root" in line]
        self.assertEqual(len(entered), 8)
        for line in entered:
            self.assertIn("--mount --pid --ipc --uts --fork --kill-child --propagation private", line)
            self.assertIn(" 64m as_newcomer ", line)
            self.assertIn("/src/my folder/vesk", line)
        left = sorted(path.name for path in (self.tree / "build/try-in/trixie").iterdir() if path.is_dir())
        self.assertEqual(left, ["base"])

    def test_a_root_that_cannot_be_made_is_told_in_the_table(self):
        self.set("uid", "0")
        self.set("no-such-release")
        status, said = self.dev("try-in", "--only", "run", "sid")
        self.assertEqual(status, 1)
        self.assertRegex(said, r"\nsid +- +debootstrap +FAILED")

    def test_an_ordinary_user_asks_sudo_for_the_roots(self):
        self.assertEqual(self.dev("try-in", "--only", "run", "--as", "root", "sid")[0], 0)
        self.assertIn(f"sudo env VESK_BUILD_DIR={self.tree}/build dev.d/try_in --packed --only run --as root sid", self.log())

    def test_a_root_is_entered_only_in_namespaces_of_its_own(self):
        (self.world / "root").mkdir()
        status, said = self.dev(str(self.world / "root"), "1m", "true", program="dev.d/enter_root")
        self.assertNotEqual(status, 0)
        self.assertIn("not the first process of its own namespace", said)
        self.assertEqual(list((self.world / "root").iterdir()), [])

    # ---- Words

    def test_every_command_has_its_help(self):
        listed = [line.split()[0] for line in self.dev("help")[1].splitlines() if line[:2] == "  " and line[2] != " "]
        self.assertIn("test", listed)
        for command in listed:
            for word in ("--help", "-h"):
                with self.subTest(command=command, word=word):
                    status, said = self.dev(command, word)
                    self.assertEqual(status, 0)
                    self.assertTrue(said.startswith(f"Usage: ./dev {command}"), said)
                    self.assertEqual(self.log(), [])

    def test_unknown_words_are_refused_before_anything_is_done(self):
        for words in ("test asn", "test release asn", "test --foo", "test -R", "build asn", "build release debug",
                      "soak --quickly", "soak 3", "lint-macos --foo", "lint src", "format src", "run --foo", "run there",
                      "run --home", "demo --home x", "bench --fast", "bench --pairs", "package deb", "shots a b",
                      "fuzz many", "fuzz 3 nothing", "fuzz 3 ../corpus", "setup all", "try-in", "try-in potato",
                      "try-in --as nobody sid", "try-in sid --foo", "frobnicate"):
            with self.subTest(words=words):
                status, said = self.dev(*words.split())
                self.assertNotEqual(status, 0)
                self.assertIn("./dev: ", said)
                self.assertEqual(self.log(), [])

    def test_known_words_are_handed_on(self):
        self.assertEqual(self.dev("test", "debug", "-R", "Probe|Scan", "-j4", "--repeat", "until-fail:3")[0], 0)
        called = [line for line in self.log() if line.startswith("ctest")]
        self.assertEqual(len(called), 1)
        self.assertIn("build/debug", called[0])
        self.assertTrue(called[0].endswith("-R Probe|Scan -j4 --repeat until-fail:3"), called[0])

    # ---- Building

    def test_run_builds_vesk_alone_and_installs_only_what_that_needs(self):
        self.assertEqual(self.dev("run")[0], 0)
        asked = self.asked_of_apt()
        self.assertLessEqual({"g++", "qt6-declarative-dev", "qml6-module-qtquick"}, asked)
        self.assertFalse(asked & {"libgtest-dev", "libgmock-dev", "qml6-module-qttest", "xvfb", "python3", "trash-cli"})
        self.assertIn("-DVESK_TESTS=OFF", next(line for line in self.log() if line.startswith("cmake --fresh")))
        self.assertIn(f"cmake --build {self.tree}/build/release --target vesk vesk-scan vesk-has-display", self.log())

    def test_test_adds_the_rest_to_what_run_built(self):
        self.dev("run")
        status, said = self.dev("test")
        self.assertEqual(status, 0, said)
        self.assertIn("3 passed, 0 failed", said)
        self.assertLessEqual({"libgtest-dev", "qml6-module-qttest", "xvfb", "trash-cli"}, self.asked_of_apt())
        self.assertIn(f"cmake --preset release -B {self.tree}/build/release -DVESK_TESTS=ON", self.log())
        self.assertIn(f"cmake --build {self.tree}/build/release", self.log())

    def test_run_leaves_a_build_with_tests_as_it_is(self):
        self.dev("test")
        self.dev("run")
        self.assertFalse([line for line in self.log() if line.startswith("cmake --fresh") or "VESK_TESTS" in line])

    def test_lint_looks_for_sources_that_came_or_went(self):
        self.dev("lint")
        self.dev("lint")
        again = [line for line in self.log() if line.startswith("cmake --preset lint")]
        self.assertTrue(again, "nothing in build/lint is built, so CMake would not notice")

    def test_a_folder_that_moved_is_configured_anew(self):
        self.dev("run")
        moved = self.world / "moved"
        self.tree.rename(moved)
        self.tree = moved
        self.dev("run")
        self.assertTrue([line for line in self.log() if line.startswith("cmake --fresh")])

    def test_options_of_run_give_a_report(self):
        self.assertEqual(self.dev("run", "--json", "--home", "/somewhere", DISPLAY=":0")[0], 0)
        self.assertEqual(self.log()[-1], "vesk-scan --json --home /somewhere")

    def test_a_folder_that_cannot_be_written_says_so(self):
        # A file, since root can write in every folder.
        (self.tree / "build").write_text("", encoding="utf-8")
        status, said = self.dev("test")
        self.assertNotEqual(status, 0)
        self.assertIn("read-only", said)
        self.assertIn("VESK_BUILD_DIR=FOLDER ./dev test", said)
        self.assertEqual(self.log(), [])

    def test_a_build_goes_elsewhere_with_vesk_build_dir(self):
        (self.tree / "build").write_text("", encoding="utf-8")
        for value in (str(self.world / "else where"), "else where"):
            with self.subTest(value=value):
                shutil.rmtree(self.world / "else where", ignore_errors=True)
                status, said = self.dev("run", VESK_BUILD_DIR=value)
                self.assertEqual(status, 0, said)
                self.assertIn(f"-B {self.world}/else where/release", " ".join(self.log()))
                self.assertEqual(self.log()[-1].strip(), "vesk-scan")


if __name__ == "__main__":
    unittest.main(verbosity=2)
