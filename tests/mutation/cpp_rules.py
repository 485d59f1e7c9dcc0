"""The faults of C++ sources."""

import re

from cpp_regions import CppRegions
from mutant import Planter

_TURNED = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"],
}
_ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*"}
_COMPARES = re.compile(r" (?:==|!=|<=|>=|<|>|&&|\|\|) ")
_NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)(\.\d+)?(?P<suffix>[uUlLfF]*)(?![\w.])")
_NAMED_VALUE = re.compile(r"\bCe([A-Z][a-z])[A-Z]\w*")
_CALL = re.compile(r"(?<!\w)((?:[\w>]|::|->|\.)+)(?:<[\w:*, ]+>)?\(")
_EFFECT = re.compile(r"(?:Q_EMIT )?(?:[\w.]|::|->)+(?:<[\w:*, ]+>)?\(|[\w.]+ = |(?:\+\+|--)\w|continue;|return;")
_EMPTY = re.compile(r"0|nullptr|std::nullopt|\{\}|[A-Z]\w*\(\)")  # what {} stands for already
_NO_CALL = {"if", "for", "switch", "while", "Q_UNUSED", "QStringLiteral", "Q_DISABLE_COPY"}


def cpp_mutants(file, text):
    planter = Planter(file, text)
    source = planter.source
    regions = CppRegions(source)
    _turn_operators(planter, regions)
    _turn_conditions(planter, regions)
    _change_constants(planter)
    _change_texts(planter)
    _drop_statements(planter, regions)
    _change_answers(planter, regions)
    _swap_arguments(planter, regions)
    return planter.mutants()


def _turn_operators(planter, regions):
    code = planter.source.code
    for found in re.finditer(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\|)(?=\s)", code):
        if regions.holds(found.start()):
            for other in _TURNED[found.group()]:
                planter.plant("turned comparison", *found.span(), other)
    for found in re.finditer(r"(?<= )[-+*/](?= )", code):
        if regions.holds(found.start()):
            planter.plant("turned operator", *found.span(), _ARITHMETIC[found.group()])
    for found in re.finditer(r"\+\+|--", code):
        planter.plant("turned operator", *found.span(), "--" if found.group() == "++" else "++")


def _turn_conditions(planter, regions):
    source = planter.source
    for found in re.finditer(r"(?<!\w)!(?!=)", source.code):
        planter.plant("turned condition", *found.span(), "")
    for found in re.finditer(r"\bif \(", source.code):
        condition = source.code[found.end():source.closing(found.end() - 1)]
        if not condition.startswith("!") and not _COMPARES.search(condition):
            planter.plant("turned condition", found.end(), found.end(), "!")
    for found in re.finditer(r"\?", source.code):
        start = _start_of_operand(source.code, found.start())
        operand = source.code[start:found.start()].rstrip()
        if regions.holds(found.start()) and operand and not re.search(r"[<>=]\s*$", source.code[:start]):
            planter.plant("turned condition", start, start, "!")


def _start_of_operand(code, end):
    """Where the operand before a question mark begins: a name, or a chain of calls."""
    i = end
    depth = 0
    while i > 0:
        before = code[i - 1]
        depth += (before == ")") - (before == "(")
        if depth < 0 or (depth == 0 and before.isspace() and i < len(code[:end].rstrip())):
            break
        i -= 1
    return i


def _change_constants(planter):
    code = planter.source.code
    for found in _NUMBER.finditer(code):
        number = int(found.group(1), 0)
        digits = hex(number + 1) if found.group(1)[:2].lower() == "0x" else str(number + 1)
        planter.plant("changed constant", *found.span(),
                      digits + (found.group(2) or "") + found.group("suffix"))
        if number == 1:
            planter.plant("changed constant", *found.span(), "0" + (found.group(2) or "") + found.group("suffix"))
    for found in re.finditer(r"\b(true|false)\b", code):
        planter.plant("negated bool", *found.span(), "false" if found.group() == "true" else "true")
    values = list(_NAMED_VALUE.finditer(code))
    for found in values:
        if re.match(r" = |,\n|:\n", code[found.end():]) or "case" in code[found.start() - 6:found.start()]:
            continue
        group = sorted({value.group() for value in values if value.group(1) == found.group(1)})
        other = group[(group.index(found.group()) + 1) % len(group)]
        planter.plant("changed constant", *found.span(), other)
    for found in re.finditer(r"<< (c_(?!source)\w+)", code):
        if "c_source" in code:
            planter.plant("changed constant", *found.span(1), "c_source")


def _change_texts(planter):
    source = planter.source
    for start, end in source.strings:
        if source.text[start] == "'":
            planter.plant("changed text", start + 1, end - 1, "1" if source.text[start + 1] != "1" else "2")
        else:
            planter.plant("changed text", end - 1, end - 1, "~")


def _drop_statements(planter, regions):
    code = planter.source.code
    for statement in regions.statements:
        text = code[statement.start:statement.end]
        if _EFFECT.match(text) and not text.startswith("Q_UNUSED"):
            kind = "dropped call" if "(" in text.partition(" = ")[0] else "dropped statement"
            planter.plant(kind, statement.start, statement.end, ";")


def _change_answers(planter, regions):
    code = planter.source.code
    for statement in regions.statements:
        answer = re.match(r"return (.+);$", code[statement.start:statement.end], re.DOTALL)
        if not answer or answer.group(1) in ("true", "false") or _EMPTY.fullmatch(answer.group(1)):
            continue
        start, end = statement.start + len("return "), statement.end - 1
        planter.plant("dropped return value", start, end, "{}")
        if statement.answers_bool:
            planter.plant("negated bool", start, end, f"!({planter.source.text[start:end]})")


def _swap_arguments(planter, regions):
    source = planter.source
    for found in _CALL.finditer(source.code):
        if found.group(1) in _NO_CALL or not regions.holds(found.start()):
            continue
        arguments = source.items(found.end(), source.closing(found.end() - 1))
        for (start, middle), (second, end) in zip(arguments, arguments[1:]):
            text = source.text
            if _number(text[start:middle]) == _number(text[second:end]) is not None:
                continue
            planter.plant("swapped arguments", start, end,
                          text[second:end] + text[middle:second] + text[start:middle])


def _number(argument):
    """The number that an argument stands for; None for any other one."""
    if argument in ("true", "false"):
        return float(argument == "true")
    literal = _NUMBER.fullmatch(argument)
    return float(int(literal.group(1), 0)) + float("0" + (literal.group(2) or "")) if literal else None
