"""A copy of the project in which bugs are planted, built and run."""

import ctypes
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from pathlib import Path

from .errors import Broken, Unplantable
from .test_programs import programs_for, programs_for_all

# A program with a bug may wait or write for ever. It has this many seconds more than five times what it took without.
PATIENCE = 20
TIME_TO_END = 10
MOST_TIME = 600
MOST_MEMORY = 4 << 30


def limit_memory():
    try:
        resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    except (ValueError, OSError):
        pass  # Not every system has this limit; there the time alone is limited.


def adopt_orphans():
    """Makes this process the parent of whatever a test program leaves behind."""
    set_child_subreaper = 36
    if sys.platform == "linux":
        ctypes.CDLL(None).prctl(set_child_subreaper, 1, 0, 0, 0)


def end_orphans():
    """Ends what the last program left behind: a bug may keep a child process of the tool from ending."""
    children = Path(f"/proc/self/task/{os.getpid()}/children")
    while children.is_file() and (processes := children.read_text(encoding="ascii").split()):
        for process in processes:
            os.kill(int(process), signal.SIGKILL)
            os.waitpid(int(process), 0)


class Command:
    """A command that runs in a session of its own, so that what it starts is ended with it."""

    def __init__(self, arguments, limit=None, environment=None):
        self.limit = limit
        self.process = subprocess.Popen(
            arguments,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            encoding="utf-8",
            errors="replace",
            env={**os.environ, **(environment or {})},
            start_new_session=True,
            preexec_fn=limit_memory if limit else None,
        )

    def signal(self, number):
        try:
            os.killpg(self.process.pid, number)
        except ProcessLookupError:
            pass

    def result(self):
        """What it printed and its status, which is None if it was ended because its time was over."""
        try:
            return self.process.communicate(timeout=self.limit)[0], self.process.returncode
        except subprocess.TimeoutExpired:
            return self.end(), None
        except BaseException:
            self.signal(signal.SIGKILL)
            raise

    def end(self):
        """Ends it, with time to take down what it started. Returns what it printed."""
        self.signal(signal.SIGTERM)
        try:
            return self.process.communicate(timeout=TIME_TO_END)[0]
        except subprocess.TimeoutExpired:
            self.signal(signal.SIGKILL)
            return self.process.communicate()[0]


def first_failing(commands):
    """The result of the command that fails first, or None. The others are ended then."""
    failing = None
    with ThreadPoolExecutor(len(commands)) as executor:
        try:
            for finished in as_completed([executor.submit(command.result) for command in commands]):
                if failing is None and finished.result()[1] != 0:
                    failing = finished.result()
                    for command in commands:
                        command.signal(signal.SIGTERM)
        except BaseException:
            # Or the executor would wait until their time is over.
            for command in commands:
                command.signal(signal.SIGTERM)
            raise
    return failing


def first_failure(output, status):
    """The test that failed first, by what a test program printed and how it ended."""
    failed = re.search(r"^\[  FAILED  \] ([^\s,]+)|^FAILED (\S+)", output, re.MULTILINE)
    if failed:
        return failed[1] or f"scenario {failed[2]}"
    begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
    ending = "did not end" if status is None else f"ended with {status}"
    return f"{begun[-1]}, which {ending}" if begun else f"a program that {ending}"


class ProjectCopy:
    """A copy of the tree, including what is not committed yet, and a build of it."""

    def __init__(self, root, directory):
        self.source = Path(directory) / "source"
        self.build = Path(directory) / "build"
        # The most seconds that each program may take, once it is known what it takes without a bug.
        self.limits = {}
        listing = ["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        for name in subprocess.run(listing, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout.split("\0"):
            if (root / name).is_file():
                (self.source / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(root / name, self.source / name)
        os.environ["GTEST_FAIL_FAST"] = "1"
        os.environ["TMPDIR"] = str(directory)
        adopt_orphans()

    def configure(self):
        # Fast to compile, and without warnings: a bug may well leave something unused.
        options = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=", "-DCMAKE_CXX_FLAGS=-w"]
        if shutil.which("ccache"):
            os.environ["CCACHE_BASEDIR"] = str(self.source.parent)
            options.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        command = ["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DLOMARIS_BUILD_BENCHMARKS=OFF"]
        output, status = Command(command + options).result()
        if status != 0:
            raise Broken(output)

    def compile(self, programs):
        """The errors of the compiler, or None."""
        targets = [program.name for program in programs]
        command = ["cmake", "--build", self.build, "--parallel", str(os.cpu_count() or 1), "--target", *targets]
        output, status = Command(command).result()
        errors = [line for line in output.splitlines() if "error:" in line]
        return None if status == 0 else "\n".join(errors) or output

    def test(self, program):
        """The first test of the program that fails, or None."""
        path = self.build / "tests" / program.folder / program.name
        launcher = [self.source / program.launcher[0], *program.launcher[1:]] if program.launcher else []
        try:
            failing = first_failing(
                [
                    Command(
                        [*launcher, path],
                        self.limits.get(program, MOST_TIME),
                        {"GTEST_TOTAL_SHARDS": str(program.shards), "GTEST_SHARD_INDEX": str(index)},
                    )
                    for index in range(program.shards)
                ]
            )
        finally:
            end_orphans()
        return first_failure(*failing) if failing else None

    def test_without_bugs(self, files):
        """Builds and runs all programs that can find a bug in these files. Throws Broken if one of them fails."""
        self.configure()
        programs = programs_for_all(files)
        complaint = self.compile(programs)
        if complaint:
            raise Broken(complaint)
        for program in programs:
            start = time.monotonic()
            failure = self.test(program)
            if failure:
                raise Broken(f"without any bug, {failure} fails")
            self.limits[program] = PATIENCE + 5 * (time.monotonic() - start)

    def test_with(self, bug):
        """The first test that fails with the bug, or None. Throws Unplantable if the bug does not compile."""
        file = self.source / bug.file
        sound = file.read_text(encoding="utf-8")
        file.write_text(bug.planted_in(sound), encoding="utf-8")
        try:
            for program in programs_for(bug.file):
                complaint = self.compile([program])
                if complaint:
                    raise Unplantable(f"it cannot be built\n{complaint}")
                failure = self.test(program)
                if failure:
                    return failure
            return None
        finally:
            file.write_text(sound, encoding="utf-8")
