"""The faults that change nothing: listed in equivalents.txt, each with a reason."""

from pathlib import Path

_LIST = Path(__file__).with_name("equivalents.txt")


class Equivalents:
    """Each entry is four lines: the file, "- " the lines before, "+ " the lines after, and why they do the same. Where
    the file has several faults that read the same, a number after its name tells which of them."""

    def __init__(self):
        self._entries = set()
        for block in _LIST.read_text().strip().split("\n\n"):
            file, before, after, _reason = block.split("\n", 3)
            self._entries.add((file, before.removeprefix("- "), after.removeprefix("+ ")))

    def __contains__(self, mutant):
        return mutant.key in self._entries

    def vanished(self, mutants, files):
        """The entries for these files that are none of the mutants."""
        listed = {entry for entry in self._entries if entry[0].split(" ")[0] in files}
        return sorted(listed - {mutant.key for mutant in mutants})
