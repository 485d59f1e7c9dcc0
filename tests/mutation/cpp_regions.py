"""Where statements stand in a C++ file: function bodies and the initialisers of constructors."""

import re
from dataclasses import dataclass

_DECLARATIVE = re.compile(r"\b(namespace|class|struct|enum)\b")
_BODY = re.compile(r"(\)( const)?( override)?|\belse|\bdo|\})$")
_INITIALISERS = re.compile(r"\)\s*:\s")


@dataclass(frozen=True)
class Statement:
    start: int
    end: int  # past the semicolon
    answers_bool: bool  # whether its function does


class CppRegions:
    def __init__(self, source):
        self.statements = []
        self.spans = []  # of the bodies and initialisers
        self._source = source
        self._walk()

    def _walk(self):
        code = self._source.code
        start = 0
        i = 0
        depth = 0  # of bodies
        answers_bool = False
        while i < len(code):
            if code[i] == "(":
                i = self._source.closing(i)
            elif code[i] == ";":
                if depth > 0:
                    self._add(start, i + 1, answers_bool)
                start = i + 1
            elif code[i] == ":" and depth > 0 and re.match(r"\s*(case\b|default\b)", code[start:i]):
                if code[i + 1] != ":" and code[i - 1] != ":":
                    start = i + 1
            elif code[i] == "{":
                head = code[start:i].strip()
                if _BODY.search(head):
                    if depth == 0:
                        answers_bool = re.search(r"(^|\s)bool \w", head) is not None
                        initialisers = _INITIALISERS.search(code, start, i)
                        self.spans.append((initialisers.end() if initialisers else i, self._source.closing(i)))
                    depth += 1
                    start = i + 1
                elif depth == 0 and _DECLARATIVE.search(head) and not head.startswith("template <typename... "):
                    start = i + 1
                else:
                    i = self._source.closing(i)
            elif code[i] == "}":
                depth = max(0, depth - 1)
                start = i + 1
            i += 1

    def _add(self, start, end, answers_bool):
        first, last = self._source.trimmed(start, end)
        lead = re.match(r"if ", self._source.code[first:last])
        if lead:
            first, last = self._source.trimmed(self._source.closing(first + 3) + 1, last)
        self.statements.append(Statement(first, last, answers_bool))

    def holds(self, position):
        return any(start <= position < end for start, end in self.spans)
