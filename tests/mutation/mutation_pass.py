"""Plants faults in the plugin or in the engine, one at a time, and tells which of them no test notices."""

import argparse
import collections
import os
import queue
import random
import sys
import threading
from pathlib import Path

from cpp_rules import cpp_mutants
from equivalents import Equivalents
from qml_rules import qml_mutants
from work_copy import Stage, WorkCopy

ROOT = Path(__file__).resolve().parents[2]
LEAST_SHARE = 95  # percent of the faults that tests must notice
FAULTS_OF_A_COPY = 100  # fewer are not worth the time that a further copy takes to build


def all_of(folder):
    """The tests of a folder."""
    return Stage(folder, tuple(sorted(file.stem.removeprefix("test_")
                                      for file in (ROOT / "tests" / folder).glob("test_*.cpp"))))


PLUGIN_STAGE = all_of("plugin")
ABI_STAGE = Stage("abi", ("metadata", "entry_points", "symbols", "resource", "qml_types", "catalogue"))
PANEL_STAGE = Stage("panel", ("maintenance_page", "panel_clicks", "page_panel"))
HOST_STAGE = all_of("host")
DEVICES_STAGE = all_of("devices")
BENCH_STAGE = Stage("bench", ("run", "shell", "lists", "trace"))  # the quick ones among those that run orders


class Plugin:
    """The plugin: its sources and its page."""
    files = ("plugins/p_tool_gpio/source/*.cpp", "plugins/p_tool_gpio/source/*.h",
             "plugins/p_tool_gpio/resources/*.qml")
    targets = ("p_tool_gpio_recorded",)
    stages = (PLUGIN_STAGE, ABI_STAGE)
    last_stage = PANEL_STAGE

    @staticmethod
    def stages_for(mutant):
        """First the tests of the source's own class."""
        own = Path(mutant.file).stem
        return ((Stage("plugin", (own,)),) if own in PLUGIN_STAGE.names else ()) + Plugin.stages


class Engine:
    """The host's stand-ins and the devices of lines: their sources, without what they show in headers."""
    files = ("host/*/source/*.cpp", "host/*/source/*.h", "devices/lines/source/*.cpp", "devices/lines/source/*.h",
             "devices/simulated/source/*.cpp")
    targets = ("plugin_management", "device_simulated")
    stages = (HOST_STAGE, DEVICES_STAGE)
    last_stage = BENCH_STAGE

    @staticmethod
    def stages_for(mutant):
        """First the tests of the source's own folder."""
        return Engine.stages if mutant.file.startswith("host/") else tuple(reversed(Engine.stages))


SUBJECTS = {"plugin": Plugin, "engine": Engine}


def positive(text):
    number = int(text)
    if number < 1:
        raise ValueError
    return number


def arguments():
    parser = argparse.ArgumentParser(prog="tests/mutation/run", description=__doc__)
    parser.add_argument("--of", choices=SUBJECTS, default="plugin",
                        help="where: the plugin and its page (the default), or the engine, that is the host's"
                        " stand-ins, the shared part of the devices of lines and the simulated board")
    parser.add_argument("--jobs", type=positive, default=os.cpu_count(), metavar="N", help="work copies and processes")
    parser.add_argument("--only", metavar="FILE", help="faults of this file (or of files whose path ends so) alone")
    parser.add_argument("--sample", type=positive, metavar="N", help="plant N faults drawn by chance")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="of the sample; the same one, the same faults")
    return parser.parse_args()


def all_mutants(subject, only):
    mutants = []
    for file in [file for pattern in subject.files for file in sorted(ROOT.glob(pattern))]:
        name = str(file.relative_to(ROOT))
        if only is None or name.endswith(only):
            rules = qml_mutants if file.suffix == ".qml" else cpp_mutants
            mutants += rules(name, file.read_text())
    return mutants


class Pass:
    def __init__(self, subject, jobs):
        self._subject = subject
        self._jobs = jobs
        self._lock = threading.Lock()
        self._failure = None
        self.verdicts = {}  # of mutants: "stillborn", what killed them, or None

    def run(self, mutants):
        sources = queue.SimpleQueue()
        for mutant in mutants:
            if not mutant.file.endswith(".qml"):
                sources.put(mutant)
        if not sources.empty():
            copies = min(self._jobs, 1 + sources.qsize() // FAULTS_OF_A_COPY)
            workers = [threading.Thread(target=self._work_guarded, args=(sources, number, self._jobs // copies))
                       for number in range(copies)]
            for worker in workers:
                worker.start()
            for worker in workers:
                worker.join()
            if self._failure:
                raise self._failure
        self._work_last([mutant for mutant in mutants if self.verdicts.get(mutant) is None])

    def _work_guarded(self, mutants, number, jobs):
        """Whatever ends a worker ends the others, and then the pass."""
        try:
            self._work(mutants, self._copy(number, jobs))
        except BaseException as failure:  # pylint: disable=broad-except
            self._failure = failure

    def _work(self, mutants, copy):
        """The first stages, on the faults of C++ sources."""
        copy.check(self._subject.stages[0])
        while self._failure is None:
            try:
                mutant = mutants.get_nowait()
            except queue.Empty:
                return
            self._note(mutant, self._verdict(copy, mutant))
            copy.restore(mutant)

    def _verdict(self, copy, mutant):
        """A stage is built when the first fault has got past those before it."""
        copy.plant(mutant)
        if not copy.builds(self._subject.targets):
            return "stillborn"
        for stage in self._subject.stages_for(mutant):
            if not copy.has_checked(stage):
                copy.restore(mutant)
                copy.check(stage)
                copy.plant(mutant)
            killer = copy.killer(stage, Path(mutant.file).stem)
            if killer:
                return killer
        return None

    def _work_last(self, mutants):
        """The last stage, which takes longest to build, on what is still alive, and on the faults of the page."""
        if not mutants:
            return
        copy = self._copy(0, self._jobs)
        copy.check(self._subject.last_stage)
        for mutant in mutants:
            copy.plant(mutant)
            self._note(mutant, copy.killer(self._subject.last_stage))
            copy.restore(mutant)

    def _copy(self, number, jobs):
        return WorkCopy(ROOT, ROOT / f"build/mutation/{number}", jobs)

    def _note(self, mutant, verdict):
        with self._lock:
            self.verdicts[mutant] = verdict
            done = len(self.verdicts)
            if verdict is None:
                print(f"alive: {mutant}", file=sys.stderr, flush=True)
            if done % 10 == 0:
                print(f"{done} done", file=sys.stderr, flush=True)


def report(verdicts, equivalents, vanished):
    """Prints the outcome; true when it is good."""
    planted = {mutant: verdict for mutant, verdict in verdicts.items() if verdict != "stillborn"}
    killers = collections.Counter(verdict for mutant, verdict in planted.items() if verdict)
    wrong = [mutant for mutant, verdict in planted.items() if verdict and mutant in equivalents]
    survived = [mutant for mutant, verdict in planted.items() if verdict is None and mutant not in equivalents]
    same = sum(verdict is None and mutant in equivalents for mutant, verdict in planted.items())

    for mutant in wrong:
        print(f"listed as equivalent, but killed by {planted[mutant]}: {mutant}")
    for file, before, after in vanished:
        print(f"listed as equivalent, but not among the faults: {file}\n    - {before}\n    + {after or '(whatever)'}")
    for mutant in survived:
        print(f"survived: {mutant}")
    killed = sum(killers.values())
    share = 100 * killed / (killed + len(survived)) if killed or survived else 100
    print(f"stillborn   {len(verdicts) - len(planted)} (they do not compile, and do not count)")
    print(f"planted     {len(planted)}")
    print(f"killed      {killed}: " + ", ".join(f"{count} by {killer}" for killer, count in sorted(killers.items())))
    print(f"equivalent  {same}")
    print(f"survived    {len(survived)}")
    print(f"{share:.1f} % killed of those that are not equivalent; expected {LEAST_SHARE} %")
    return share >= LEAST_SHARE and not wrong and not vanished


def main():
    options = arguments()
    subject = SUBJECTS[options.of]
    mutants = all_mutants(subject, options.only)
    if not mutants:
        raise SystemExit(f"--only: no faults can be planted in \"{options.only}\"")
    equivalents = Equivalents()
    files = {mutant.file for mutant in mutants}
    vanished = equivalents.vanished(mutants, files) if options.only is None else []
    if options.sample is not None and options.sample < len(mutants):
        drawn = random.Random(options.seed).sample(range(len(mutants)), options.sample)
        mutants = [mutants[i] for i in sorted(drawn)]
    mutation_pass = Pass(subject, options.jobs)
    mutation_pass.run(mutants)
    sys.exit(0 if report(mutation_pass.verdicts, equivalents, vanished) else 1)


if __name__ == "__main__":
    main()
