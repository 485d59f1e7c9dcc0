"""Names of C++ functions and classes, as compilers write them and as people read them."""

import re
import subprocess

from .elf_library import ABSTRACT_DESTRUCTOR

_THUNK = re.compile(r"^(?:non-virtual|virtual|covariant return) thunk to ")


def demangled(symbols):
    """The readable form of each symbol, as a dictionary."""
    mangled = sorted({symbol for symbol in symbols if re.fullmatch(r"_Z[\w.$]+", symbol, re.ASCII)})
    filtered = subprocess.run(["c++filt"], input="\n".join(mangled), text=True, capture_output=True, check=True)
    return {symbol: symbol for symbol in symbols} | dict(zip(mangled, filtered.stdout.split("\n")))


def split(name):
    """A readable name as (name, arguments); without arguments when it is no function's."""
    end = re.search(r"\)(?: const| volatile|&| \[.*\])*$", name)
    if not end:
        return name, ""
    depth = 0
    for place in range(end.start(), -1, -1):
        depth += {")": 1, "(": -1}.get(name[place], 0)
        if depth == 0:
            return name[:place], name[place:]
    return name, ""


def member(name):
    """A readable name without its class, so that the functions of a class and of its base are called alike."""
    if name == ABSTRACT_DESTRUCTOR:
        return "~()"
    name, arguments = split(_THUNK.sub("", name))
    depth = 0
    for place in range(len(name) - 1, 0, -1):
        depth += {">": 1, "<": -1}.get(name[place], 0)
        if depth == 0 and name[place - 1:place + 1] == "::":
            name = name[place + 1:]
            break
    return ("~" if name.startswith("~") else name) + arguments
