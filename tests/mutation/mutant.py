"""One small fault: a piece of a file and what stands there instead."""

import collections
from dataclasses import dataclass

from source_text import SourceText


@dataclass(frozen=True)
class Mutant:
    file: str
    line: int
    kind: str
    before: str  # the whole lines that change, on one line
    after: str
    text: str  # the whole file with the fault
    nth: int  # of the faults of this file that read the same

    @property
    def key(self):
        """What tells it from all others, wherever its lines move to."""
        return (self.file if self.nth == 1 else f"{self.file} {self.nth}", self.before, self.after)

    def __str__(self):
        return f"{self.file}:{self.line}: {self.kind}\n    - {self.before}\n    + {self.after}"


def _on_one_line(text):
    return " ".join(text.split())


class Planter:
    """Makes the mutants of one file, each once, in the order of their places."""

    def __init__(self, file, text):
        self.file = file
        self.source = SourceText(text)
        self._planted = {}

    def plant(self, kind, start, end, replacement):
        text = self.source.text
        changed = text[:start] + replacement + text[end:]
        first = text.rfind("\n", 0, start) + 1
        last = text.find("\n", end)
        after = changed[first:last + len(replacement) - (end - start)]
        if changed != text:
            self._planted.setdefault(changed, (start, kind, _on_one_line(text[first:last]),
                                               _on_one_line(after) or "(nothing)"))

    def mutants(self):
        seen = collections.Counter()
        mutants = []
        for changed, (start, kind, before, after) in sorted(self._planted.items(), key=lambda entry: entry[1][0]):
            seen[before, after] += 1
            mutants.append(Mutant(self.file, self.source.line_number(start), kind, before, after, changed,
                                  seen[before, after]))
        return mutants
