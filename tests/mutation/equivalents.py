"""The faults that change nothing: listed in equivalents.txt, each with a reason."""

from pathlib import Path

_LIST = Path(__file__).with_name("equivalents.txt")


class Equivalents:
    """Each entry is a file, "- " the lines before and "+ " the lines after of one or more faults, and why they do the
    same; without "+ ", whatever stands instead. Where the file has several faults that read the same, a number after
    its name tells which of them."""

    def __init__(self):
        self._entries = set()
        for block in _LIST.read_text().strip().split("\n\n"):
            file, *faults, _reason = block.split("\n")
            for line, following in zip(faults, [*faults[1:], ""]):
                if line.startswith("- "):
                    before = line[2:]
                    if not following.startswith("+ "):
                        self._entries.add((file, before, None))
                else:
                    self._entries.add((file, before, line[2:]))

    def __contains__(self, mutant):
        return mutant.key in self._entries or (mutant.file, mutant.before, None) in self._entries

    def vanished(self, mutants, files):
        """The entries for these files that are none of the mutants."""
        listed = {entry for entry in self._entries if entry[0].split(" ")[0] in files}
        found = {mutant.key for mutant in mutants} | {(mutant.file, mutant.before, None) for mutant in mutants}
        return sorted(listed - found, key=str)
