"""A source file as text that rules can look at: comments and the insides of string literals blanked, same length."""

import re

_TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)|(?P<string>"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*')""", re.DOTALL)
_DIRECTIVE = re.compile(r"^[ \t]*(?:#|import ).*$", re.MULTILINE)
_OPENING = {"(": ")", "[": "]", "{": "}"}


class SourceText:
    def __init__(self, text):
        self.text = text
        self.strings = []
        masked = list(text)

        def blank(start, end):
            for i in range(start, end):
                if masked[i] != "\n":
                    masked[i] = " "

        for token in _TOKEN.finditer(text):
            if token.group("comment"):
                blank(*token.span())
            else:
                self.strings.append(token.span())
                blank(token.start() + 1, token.end() - 1)
        for directive in _DIRECTIVE.finditer("".join(masked)):
            blank(*directive.span())
            self.strings = [span for span in self.strings if not directive.start() <= span[0] < directive.end()]
        self.code = "".join(masked)

    def line_number(self, position):
        return self.text.count("\n", 0, position) + 1

    def closing(self, opening):
        """The position of the bracket that closes the one at the position opening."""
        depth = 0
        for i in range(opening, len(self.code)):
            if self.code[i] in _OPENING:
                depth += 1
            elif self.code[i] in _OPENING.values():
                depth -= 1
                if depth == 0:
                    return i
        raise ValueError(f"nothing closes the bracket in line {self.line_number(opening)}")

    def items(self, start, end):
        """The spans of what commas part between start and end, without surrounding blanks."""
        edges = [start]
        depth = 0
        for i in range(start, end):
            if self.code[i] in _OPENING:
                depth += 1
            elif self.code[i] in _OPENING.values():
                depth -= 1
            elif self.code[i] == "," and depth == 0:
                edges += [i, i + 1]
        edges.append(end)
        return [self.trimmed(first, last) for first, last in zip(edges[::2], edges[1::2])]

    def trimmed(self, start, end):
        piece = self.text[start:end]
        return start + len(piece) - len(piece.lstrip()), end - len(piece) + len(piece.rstrip())
