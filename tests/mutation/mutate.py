#!/usr/bin/env python3
"""Are the tests sharp? Breaks the library on purpose, in one place at a time, and tells which faults no test notices.

The faults are those of the tables beside this script (*.mutants; docs/testing.md says how they are written). Each is
put into a copy of the tree; the test programs that its table names are built and run there until one fails, which kills
the mutant. A mutant that lives on wants a test, or a word in its table why nobody can tell it from the original.

    tests/mutation/mutate.py                          all of them, which takes hours
    tests/mutation/mutate.py --only SpeedDial         those whose place or text match
    tests/mutation/mutate.py --check                  only whether the tables still fit the sources
"""

import argparse
import os
import queue
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from dataclasses import dataclass, field
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
COPIED = ["CMakeLists.txt", "cmake", "tessera", "tests", "tools", "examples", "fuzz", "benchmarks", "docs", "README.md"]
MOST_MEMORY = 4 << 30  # of a test program: a mutant may allocate for ever


class Failure(Exception):
    """Ends the script, with a line that says why."""


@dataclass
class Mutant:
    table: str
    line: int  # of the table
    file: str
    tests: list
    old: str
    new: str = ""
    equivalent: str = ""

    def __str__(self):
        return f"{self.file}: {self.old} => {self.new or '(nothing)'}"

    def pattern(self):
        """Blanks of the fragment stand for any blanks of the source, ends of lines included."""
        return re.compile(r"\s+".join(re.escape(word) for word in self.old.split()))

    def applied_to(self, source):
        found = list(self.pattern().finditer(source))
        if len(found) != 1:
            raise Failure(f"{self.table}:{self.line}: found {len(found)} times in {self.file}: {self.old}")
        return source[: found[0].start()] + self.new + source[found[0].end() :]


# Tables


def read_table(path):
    file, tests, mutants = "", [], []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        mark, _, rest = line.partition(" ")
        rest = rest.strip()
        if not line.strip() or mark == "#":
            continue
        if mark == "file":
            file, tests = rest, []
        elif mark == "tests":
            tests = rest.split()
        elif mark == "-" and file and tests:
            mutants.append(Mutant(path.name, number, file, tests, rest))
        elif mark == "+" and mutants:
            mutants[-1].new = rest
        elif mark == "only" and mutants:
            mutants[-1].tests = rest.split()
        elif mark == "equivalent:" and mutants:
            mutants[-1].equivalent = rest
        else:
            raise Failure(f"{path.name}:{number}: cannot be read: {line}")
    return mutants


def read_tables(only):
    """The mutants that fit their sources, and what is wrong with the others."""
    mutants = [mutant for path in sorted(HERE.glob("*.mutants")) for mutant in read_table(path)]
    mutants = [mutant for mutant in mutants if re.search(only, str(mutant))]
    fitting, errors = [], []
    for mutant in mutants:
        try:
            source = (ROOT / mutant.file).read_text()
            if mutant.applied_to(source) == source:
                raise Failure(f"{mutant.table}:{mutant.line}: changes nothing: {mutant.old}")
            fitting.append(mutant)
        except (Failure, OSError) as failure:
            errors.append(str(failure))
    return fitting, errors


# A copy of the tree, and what is built from it


def copy_if_changed(source, target):
    if target.exists() and target.read_bytes() == source.read_bytes():
        return  # its time stays, and what was built from it
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(source, target)


def copy_tree(target):
    wanted = set()
    for name in COPIED:
        top = ROOT / name
        for source in [top] if top.is_file() else sorted(path for path in top.rglob("*") if path.is_file()):
            relative = source.relative_to(ROOT)
            wanted.add(relative)
            copy_if_changed(source, target / relative)
    for path in [path for path in target.rglob("*") if path.is_file()]:
        if path.relative_to(target) not in wanted:
            path.unlink()


@dataclass
class Workshop:
    """One copy of the tree and its build; worked in by one thread."""

    folder: Path
    ninja_jobs: int
    slow: dict = field(default_factory=dict)  # seconds that each test takes on the unbroken library

    @property
    def tree(self):
        return self.folder / "tree"

    @property
    def build(self):
        return self.folder / "build"

    def prepare(self, tests):
        copy_tree(self.tree)
        linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
        configure = ["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-D", "CMAKE_BUILD_TYPE=Debug"]
        configure += ["-D", "CMAKE_CXX_FLAGS_DEBUG=-O0 -g0", "-D", f"CMAKE_EXE_LINKER_FLAGS={linker}"]
        configure += ["-D", f"CMAKE_SHARED_LINKER_FLAGS={linker}"]
        # Tests are not listed when they are built: a mutant may end any program, and the list is not wanted.
        configure += ["-D", "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]
        if subprocess.run(configure, stdout=subprocess.DEVNULL).returncode != 0:
            raise Failure("the copy cannot be configured")
        built = self.make([name_of(test) for test in tests])
        if built.returncode != 0:
            raise Failure("the copy cannot be built:\n" + built.stdout)

    def make(self, targets):
        command = ["ninja", "-C", self.build, "-j", str(self.ninja_jobs), *dict.fromkeys(targets)]
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    def run(self, test):
        """Answers what failed, or nothing."""
        program, _, chosen = test.partition(":")
        command = [self.build / "bin" / program, "--gtest_fail_fast", "--gtest_brief=1"]
        command += [f"--gtest_filter={chosen}"] if chosen else []
        began = time.monotonic()
        limit = max(20.0, 10 * self.slow.get(test, 30.0))
        with tempfile.TemporaryDirectory(dir=self.folder) as scratch:
            failed = failed_test(command, scratch, limit)
        self.slow.setdefault(test, time.monotonic() - began)
        return failed

    def try_out(self, mutant):
        """Answers what killed it, or nothing."""
        source = self.tree / mutant.file
        original = source.read_text()
        source.write_text(mutant.applied_to(original))
        try:
            for test in mutant.tests:
                built = self.make([name_of(test)])
                if built.returncode != 0:
                    if "static assertion failed" in built.stdout:
                        return "the compiler"
                    raise Failure(f"{mutant.table}:{mutant.line}: does not compile:\n{built.stdout[-3000:]}")
                if failed := self.run(test):
                    return failed
            return ""
        finally:
            source.write_text(original)


def name_of(test):
    return test.partition(":")[0]


def environment_for(scratch):
    environment = {name: value for name, value in os.environ.items() if not name.startswith(("TESSERA_", "XDG_"))}
    environment.update(TMPDIR=scratch, HOME=scratch, RC_PARAMS="seed=20031104", LC_ALL="C.UTF-8")
    return environment


def limit_resources():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def failed_test(command, scratch, limit):
    process = subprocess.Popen(
        command,
        cwd=scratch,
        env=environment_for(scratch),
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        preexec_fn=limit_resources,
        start_new_session=True,
    )
    try:
        output = process.communicate(timeout=limit)[0].decode(errors="replace")
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        return f"{Path(command[0]).name}, which did not end"
    if process.returncode == 0:
        return ""
    named = re.search(r"^\[  FAILED  \] ([^ ,]+)", output, re.MULTILINE)
    return named.group(1) if named else f"{Path(command[0]).name}, which ended with {process.returncode}"


# The work


class Run:
    """All mutants, tried out by as many threads as there are workshops."""

    def __init__(self, mutants, workshops, errors, expect_survival):
        self.waiting = queue.Queue()
        for mutant in mutants:
            self.waiting.put(mutant)
        self.total = len(mutants)
        self.expect_survival = expect_survival
        self.workshops = workshops
        self.lock = threading.Lock()
        self.done = 0
        self.alive, self.errors = [], list(errors)
        self.failed = 0

    def work(self, workshop):
        while True:
            try:
                mutant = self.waiting.get_nowait()
            except queue.Empty:
                return
            began = time.monotonic()
            try:
                killer = workshop.try_out(mutant)
            except Failure as failure:
                with self.lock:
                    self.errors.append(str(failure))
                    self.failed += 1
                killer = "ERROR"
            self.tell(mutant, killer, time.monotonic() - began)

    def tell(self, mutant, killer, seconds):
        with self.lock:
            self.done += 1
            if not killer:
                self.alive.append(mutant)
            what = f"killed by {killer}" if killer else "ALIVE"
            where = f"{mutant.table}:{mutant.line}"
            print(f"[{self.done}/{self.total}] {seconds:4.1f} s  {what}\n    {where}: {mutant}", flush=True)

    def all(self):
        began = time.monotonic()
        threads = [threading.Thread(target=self.work, args=[workshop]) for workshop in self.workshops]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        killed = self.total - len(self.alive) - self.failed
        print(f"\n{self.total} mutants in {time.monotonic() - began:.0f} s: {killed} killed, {len(self.alive)} alive")
        for mutant in self.alive:
            print(f"alive: {mutant.table}:{mutant.line}: {mutant}")
        for error in self.errors:
            print(f"error: {error}")
        good = killed == 0 if self.expect_survival else not self.alive
        return 0 if good and not self.errors else 1


def unbroken(workshop, tests):
    """The tests must pass before anything is broken; how long they take is noted."""
    for test in tests:
        if failed := workshop.run(test):
            raise Failure(f"{test} fails as it is: {failed}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="REGEX", default="", help="those whose place or text matches")
    parser.add_argument("--jobs", type=int, default=1, help="how many to try at once, each in a tree of its own")
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "mutation", help="where to work")
    parser.add_argument("--check", action="store_true", help="only look whether the tables fit the sources")
    parser.add_argument("--list", action="store_true", help="only print the mutants")
    parser.add_argument("--equivalent", action="store_true", help="try those that should live")
    arguments = parser.parse_args()

    mutants, errors = read_tables(arguments.only)
    if arguments.check:
        if errors:
            raise Failure("\n".join(["some mutants do not fit:", *errors]))
        print(f"{len(mutants)} mutants, each fits its source in one place")
        return 0
    chosen = [mutant for mutant in mutants if bool(mutant.equivalent) == arguments.equivalent]
    if arguments.list:
        print("\n".join(str(mutant) for mutant in chosen))
        return 0
    if not chosen:
        raise Failure("no mutant matches")
    tests = list(dict.fromkeys(test for mutant in chosen for test in mutant.tests))
    cores = os.cpu_count() or 1
    workshops = [Workshop(arguments.build / str(n), max(1, cores // arguments.jobs)) for n in range(arguments.jobs)]
    for workshop in workshops:
        workshop.prepare(tests)
    unbroken(workshops[0], tests)
    for workshop in workshops:
        workshop.slow = workshops[0].slow
    return Run(chosen, workshops, errors, arguments.equivalent).all()


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as failure:
        sys.exit(f"mutate.py: {failure}")
