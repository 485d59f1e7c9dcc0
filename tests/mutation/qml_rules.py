"""The faults of QML pages."""

import re

from mutant import Planter

_NUMBER = re.compile(r"(?<![\w.])\d+(\.\d+)?(?![\w.])")
_TURNED = {"===": "!==", "!==": "===", "&&": "||", "||": "&&"}
_OTHER_OPERATOR = {"*": "+", "/": "*", "-": "+", "+": "-"}


def qml_mutants(file, text):
    planter = Planter(file, text)
    code = planter.source.code
    for found in re.finditer(r"===|!==|&&|\|\|", code):
        planter.plant("turned comparison", *found.span(), _TURNED[found.group()])
    for found in re.finditer(r"(?<= )[-+*/](?= )", code):
        planter.plant("turned operator", *found.span(), _OTHER_OPERATOR[found.group()])
    for found in _NUMBER.finditer(code):
        planter.plant("changed constant", *found.span(), str(float(found.group()) + 1).removesuffix(".0"))
    for found in re.finditer(r"\b(true|false)\b", code):
        planter.plant("negated bool", *found.span(), "false" if found.group() == "true" else "true")
    types = sorted(set(re.findall(r"\bCeCt\w+", code)))
    for found in re.finditer(r"\bCeCt\w+", code):
        planter.plant("changed constant", *found.span(), types[(types.index(found.group()) + 1) % len(types)])
    for _, end in planter.source.strings:
        planter.plant("changed text", end - 1, end - 1, "~")
    for found in re.finditer(r"^ +(?!id:|property )[\w.]+(: | = )(?!.*\{$).+$", code, re.MULTILINE):
        planter.plant("dropped statement", *_whole_binding(code, found), "")
    return planter.mutants()


def _whole_binding(code, found):
    """From the name of a binding to the end of its last line: lines that begin with an operator go on with it."""
    further = re.compile(r"(?:\n +(?:&&|\|\||\?|:).*)*").match(code, found.end())
    return found.start() + len(found.group()) - len(found.group().lstrip()), further.end()
