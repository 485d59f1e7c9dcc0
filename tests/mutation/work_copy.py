"""A copy of the tree, in which faults are planted, built and met by tests."""

import os
import shutil
import subprocess
import threading
import time
from dataclasses import dataclass
from pathlib import Path

_SETTINGS = "-DCMAKE_PROJECT_tool_gpio_INCLUDE=tests/mutation/work_copy.cmake"
# As ctest gives it to tests; and a test that a fault crashes need not be looked at in a debugger.
_ENVIRONMENT = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software", "LC_ALL": "C.UTF-8",
                "QTEST_DISABLE_STACK_DUMP": "1"}
_LONGEST_TEST = 60  # seconds
_MOST_MEMORY = 4 << 30  # of a test gone wild


@dataclass(frozen=True)
class Stage:
    """Tests that a fault must get past: those of one folder, by name."""
    folder: str
    names: tuple

    @property
    def targets(self):
        return [f"test_{self.folder}_{name}" for name in self.names]


class WorkCopy:
    def __init__(self, root, folder, jobs):
        self._root = Path(root)
        self._folder = Path(folder)
        self._build = self._folder / "build"
        self._jobs = str(jobs)
        self._seconds = {}  # that a test takes without any fault, by the target of each that passed
        self._update()
        if not (self._build / "build.ninja").exists():
            self._must_run(["cmake", "-S", self._folder, "-B", self._build, "-G", "Ninja", _SETTINGS])

    def check(self, stage):
        """Builds a stage as the tree is, and ends the program unless its tests pass."""
        self._must_run(self._ninja(stage.targets))
        for target in stage.targets:
            start = time.monotonic()
            failure = self._failure_of(self._program(stage, target))
            if failure:
                raise SystemExit(f"Without any fault, there is a failure: {target}{failure}")
            self._seconds[target] = time.monotonic() - start

    def has_checked(self, stage):
        """Whether its tests passed without any fault."""
        return all(target in self._seconds for target in stage.targets)

    def plant(self, mutant):
        (self._folder / mutant.file).write_text(mutant.text)

    def restore(self, mutant):
        shutil.copyfile(self._root / mutant.file, self._folder / mutant.file)

    def builds(self, targets):
        return self._run(self._ninja(targets)).returncode == 0

    def killer(self, stage, subject=""):
        """What of a stage fails: its build, a test, a test that does not end; None when nothing does. The tests that
        share a word of their name with the subject go first, then the quickest."""
        if not self.builds(stage.targets):
            return f"build of tests/{stage.folder}"
        words = set(subject.split("_"))
        for target in sorted(stage.targets, key=lambda target: (-len(words.intersection(target.split("_")[2:])),
                                                                self._seconds[target])):
            failure = self._failure_of(self._program(stage, target))
            if failure:
                return f"tests/{stage.folder}{failure}"
        return None

    def _program(self, stage, target):
        return self._build / "tests" / stage.folder / target

    @staticmethod
    def _failure_of(program):
        """How a test program fails. Its first failure ends it: those to come may wait for long for what never comes."""
        with subprocess.Popen(["prlimit", f"--as={_MOST_MEMORY}", program], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, errors="replace",
                              env=_ENVIRONMENT) as test:
            hanging = threading.Event()
            watch = threading.Timer(_LONGEST_TEST, lambda: (hanging.set(), test.kill()))
            watch.start()
            failed = any(line.startswith("FAIL!") for line in test.stdout)
            if failed:
                test.kill()
            watch.cancel()
        if hanging.is_set():
            return " (hanging)"
        return " (failing)" if failed or test.returncode != 0 else None

    def _update(self):
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=self._root, check=True,
                               stdout=subprocess.PIPE, text=True).stdout.splitlines()
        for name in names:
            source, copy = self._root / name, self._folder / name
            if source.is_file() and not (copy.exists() and copy.read_bytes() == source.read_bytes()):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source, copy)

    def _ninja(self, targets):
        return ["ninja", "-C", self._build, "-j", self._jobs, *targets]

    def _run(self, command):
        return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace")

    def _must_run(self, command):
        done = self._run(command)
        if done.returncode != 0:
            raise SystemExit(done.stdout[-4000:] + "\nWithout any fault, this fails: "
                             + " ".join(map(str, command)))
