"""One small fault: a piece of a file and what stands there instead."""

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
        mutant = Mutant(self.file, self.source.line_number(start), kind, _on_one_line(text[first:last]),
                        _on_one_line(after) or "(nothing)", changed)
        if changed != text:
            self._planted.setdefault(changed, (start, mutant))

    def mutants(self):
        return [mutant for _, mutant in sorted(self._planted.values(), key=lambda entry: entry[0])]
