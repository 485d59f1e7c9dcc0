"""What is found out about a host, printed as it comes; what speaks against it is told at the end."""


class Report:
    def __init__(self):
        self._reasons = []
        self._untold = []

    @property
    def fits(self):
        return not self._reasons

    def reason(self, text):
        """Something for which the plugin does not fit."""
        self._reasons.append(text)

    def untold(self, text):
        """Something that the files do not tell."""
        self._untold.append(text)

    @staticmethod
    def table(heads, rows):
        """Prints rows of columns; a text that is much too long for its column moves the rest of its row."""
        rows = [tuple(map(str, row)) for row in (heads, *rows)]
        widths = [min(max(len(row[column]) for row in rows), 56) for column in range(len(heads) - 1)]
        for row in rows:
            print("  ".join([text.ljust(width) for text, width in zip(row, widths)] + [row[-1]]).rstrip())
        print()

    def conclude(self):
        """Prints the verdict and what it leaves open."""
        if self.fits:
            print("The plugin fits.")
        else:
            print("The plugin does not fit:")
            for reason in self._reasons:
                print(f"  {reason}")
        print(f"What the files do not tell: {'; '.join(self._untold)}. "
              "Build the plugin against this host's own headers (HOST_SDK_DIR).")
