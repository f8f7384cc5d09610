"""The results file: what was run, where, and what came out."""

import os
import platform
import subprocess
import time


def first_line(command):
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False)
    except OSError:
        return "not there"
    return ((done.stdout or done.stderr).strip().splitlines() or ["unknown"])[0]


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as cpus:
        for line in cpus:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.processor()


class Report:
    """Collects lines, prints each at once, and writes them as Markdown at the end."""

    def __init__(self):
        self.lines = []
        self.goals = []

    def line(self, text=""):
        self.lines.append(text)
        print(text, flush=True)

    def section(self, title, text=""):
        self.line()
        self.line(f"## {title}")
        self.line()
        if text:
            self.line(text)
            self.line()

    def table(self, header, alignment):
        self.line("| " + " | ".join(header) + " |")
        self.line("| " + " | ".join(alignment) + " |")

    def row(self, *fields):
        self.line("| " + " | ".join(fields) + " |")

    def goal(self, what, limit, value, form="{:.2f}"):
        """Records a figure and its limit."""
        self.goals.append((what, form.format(limit), form.format(value), value <= limit))

    def machine(self, arguments, trees):
        memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")
        self.line("# Benchmark results")
        self.line()
        self.line("Written by `./dev bench`; every figure comes from one run on one machine.")
        self.line()
        self.line(f"- When: {time.strftime('%Y-%m-%d %H:%M', time.gmtime())} UTC, "
                  f"{' '.join(arguments) if arguments else 'the whole benchmark'}")
        self.line(f"- Machine: {processor()}, {os.cpu_count()} cores, {memory / 2**30:.0f} GiB, "
                  f"{platform.system()} {platform.release()}")
        self.line(f"- Trees on: {first_line(['stat', '-f', '-c', '%T', trees])}")
        self.line(f"- Load average at the start: {os.getloadavg()[0]:.1f} (above 0, others used the machine too)")
        self.line(f"- Vesk: {first_line(['git', 'log', '-1', '--format=%h of %cs'])}")
        for name, command in (("du", ["du", "--version"]), ("gdu", ["gdu", "--version"]),
                              ("ncdu", ["ncdu", "--version"]), ("compiler", ["c++", "--version"])):
            self.line(f"- {name}: {first_line(command)}")

    def closing(self):
        """Prints all goals in one table. Returns how many are missed."""
        self.section("Goals")
        self.table(["what", "at most", "measured", ""], ["---", "---:", "---:", "---"])
        for what, limit, value, reached in self.goals:
            self.row(what, limit, value, "reached" if reached else "**missed**")
        return sum(not reached for _, _, _, reached in self.goals)

    def write(self, path):
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(self.lines) + "\n")
