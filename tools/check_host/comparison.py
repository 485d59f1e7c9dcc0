"""What the plugin expects of its host, compared with what the host's libraries hold."""

from itertools import zip_longest

from .debug_information import class_sizes
from .elf_library import PURE_VIRTUAL, Table
from .names import demangled, member, split


class Comparison:
    def __init__(self, plugin, host, report):
        self._plugin = plugin
        self._host = host
        self._report = report
        self._names = demangled([*host.symbols,
                                 *(symbol for library in host.libraries for symbol in library.exports),
                                 *("_ZTI" + each.name for each in plugin.classes),
                                 *_slot_names(table for each in plugin.classes for table in each.tables),
                                 *_slot_names(table for library in host.libraries
                                              for tables in library.tables.values() for table in tables)])

    def check_qt(self):
        expected = self._plugin.qt_version
        if not expected:
            return
        rows = [(self._plugin.name, _version(expected))]
        for library in self._host.libraries:
            found = library.qt_version
            if found and not library.name.startswith("libQt"):
                rows.append((library.name, _version(found)))
                if found[0] == expected[0] and None in (found[1], expected[1]):
                    self._report.untold(f"whether {library.name} was built with the plugin's Qt {found[0]}")
                elif found != expected:
                    self._report.reason(f"{library.name} was built with Qt {_version(found)}, "
                                        f"the plugin with Qt {_version(expected)}")
        self._report.table(("library", "built with Qt"), rows)

    def check_symbols(self):
        wanted = sorted(self._host.symbols, key=self._names.get)
        unwanted = {}  # exports by their names without arguments
        for symbol in set().union(*(library.exports for library in self._host.libraries)).difference(wanted):
            unwanted.setdefault(split(self._names[symbol])[0], set()).add(symbol)
        rows = []
        for symbol in wanted:
            name, arguments = split(self._names[symbol])
            library = self._host.provider(symbol)
            others = sorted(unwanted.get(name, ()))
            # Names that read alike differ in where in its class the function stands.
            alike = [other for other in others if self._names[other] == self._names[symbol]]
            if library:
                rows.append((name, arguments, library.name))
            elif alike:
                self._reject(rows, name, symbol, f"found for another layout of the class: {_listed(alike)}")
            elif others:
                signatures = [split(self._names[other])[1] or "no function" for other in others]
                self._reject(rows, name, arguments, f"found with another signature: {_listed(signatures)}")
            else:
                rows.append((name, arguments, "missing"))
                self._report.reason(f"{name}{arguments} is missing")
        self._report.table(("symbol", "expected", "found"), rows)

    def _reject(self, rows, name, expected, found):
        rows.append((name, expected, found))
        self._report.reason(f"{name}: expected {expected}, {found}")

    def check_tables(self):
        bases = {}
        for each in self._plugin.classes:
            bases.setdefault(each.base, []).append(each)
        for base in sorted(set(self._host.symbols), key=self._names.get):
            if not base.startswith("_ZTI"):
                continue
            library = self._host.provider(base)
            name = self._class(base)
            if library and (base not in bases or base not in library.tables):
                self._report.untold(f"the virtual table of {name}")
            elif library:
                self._check_class(name, bases[base], library.tables[base])

    def _check_class(self, name, classes, found):
        expected = [_common(tables) for tables in zip(*(each.tables for each in classes))]
        if len(expected) != len(found):
            self._report.reason(f"{name}: expected {len(expected)} virtual tables, found {len(found)}")
        derived = _listed(sorted(self._class("_ZTI" + each.name) for each in classes))
        for expected_table, found_table in zip(expected, found):
            print(f"Virtual table of {name} at offset {found_table.offset} (base of {derived})")
            if expected_table.offset != found_table.offset:
                self._report.reason(f"{name}: expected a virtual table at offset {expected_table.offset}, "
                                    f"found at {found_table.offset}")
            self._check_slots(f"{name} at offset {found_table.offset}", expected_table.slots, found_table.slots)

    def _check_slots(self, place, expected, found):
        rows = []
        untold = []
        fits = True
        for number, (wanted, there) in enumerate(zip_longest(expected, found)):
            same = self._are_same(wanted, there)
            mark = ""
            if same is None:
                untold.append(number)
                mark = "?"
            elif not same and fits:
                fits = False
                mark = "<- the first that differs"
                self._report.reason(f"{place}, slot {number}: expected {self._expected(wanted)}, "
                                    f"found {self._found(there)}")
            rows.append((number, self._expected(wanted), self._found(there), mark))
        if fits and untold:
            self._report.untold(f"what stands in slot{'s' * (len(untold) > 1)} {_listed(untold)} of {place}")
        self._report.table(("slot", "expected", "found", ""), rows)

    def _are_same(self, expected, found):
        """Whether a slot holds what is expected; None when that cannot be told."""
        if expected is None or found is None:
            return False
        if not expected.own:
            return bool(self._readable(expected) & self._readable(found))
        if not expected.names or not found.names or PURE_VIRTUAL in found.names:
            return None
        return bool(self._members(expected) & self._members(found))

    def _readable(self, slot):
        return {self._names[name] for name in slot.names}

    def _members(self, slot):
        return {member(name) for name in self._readable(slot)}

    def _expected(self, slot):
        if slot is None:
            return "the end of the table"
        if not slot.own:
            return _any_of(self._readable(slot))
        return f"{_any_of(self._members(slot))}, the plugin's own"

    def _found(self, slot):
        if slot is None:
            return "the end of the table"
        return "a pure virtual function" if PURE_VIRTUAL in slot.names else _any_of(self._readable(slot))

    def check_sizes(self):
        """Of the classes that the plugin derives from or makes: it constructs them."""
        providers = {}
        for symbol in self._host.symbols:
            name, _, function = split(self._names[symbol])[0].rpartition("::")
            if function and name.rpartition("::")[2] == function:
                providers[name] = self._host.provider(symbol)
        expected = class_sizes(self._plugin.path, providers)
        found = {library: class_sizes(library.path, providers) for library in self._host.libraries}
        rows = []
        untold = []
        for name, library in sorted(providers.items()):
            sizes = expected.get(name), found.get(library, {}).get(name)
            if None in sizes:
                untold.append(name)
            elif sizes[0] != sizes[1]:
                self._report.reason(f"{name}: expected {sizes[0]} bytes, found {sizes[1]} bytes")
            rows.append((name, *(f"{size} bytes" if size else "not told" for size in sizes)))
        self._report.table(("class", "expected", "found"), rows)
        if untold:
            self._report.untold(f"the sizes of {_listed(untold)}, where debug information is missing")
        self._report.untold("the types of results and the places of members")

    def _class(self, type_information):
        return self._names[type_information].removeprefix("typeinfo for ")


def _slot_names(tables):
    return [name for table in tables for slot in table.slots for name in slot.names]


def _common(tables):
    """What a table of the base holds, as the tables of the classes that derive from it show it: inherited
    functions where a class inherits them. No class has less than its base."""
    return Table(tables[0].offset, tuple(next((slot for slot in slots if not slot.own), slots[0])
                                         for slots in zip(*(table.slots for table in tables))))


def _listed(items):
    return ", ".join(map(str, items))


def _any_of(names):
    return " or ".join(sorted(names)) or "a function without a name"


def _version(version):
    major, minor = version
    return f"{major}" if minor is None else f"{major}.{minor}"
