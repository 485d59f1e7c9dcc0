"""Shared libraries as the dynamic linker finds them in their files; nothing of them is run."""

import io
import re
from dataclasses import dataclass
from pathlib import Path

from elftools.elf.dynamic import DynamicSection
from elftools.elf.elffile import ELFFile
from elftools.elf.gnuversions import GNUVerDefSection, GNUVerNeedSection, GNUVerSymSection
from elftools.elf.relocation import RelocationSection, RelrRelocationSection
from elftools.elf.sections import SymbolTableSection

PURE_VIRTUAL = "__cxa_pure_virtual"
# Stands where gcc leaves the slot of a destructor empty, as nothing can call it in a class that is abstract.
ABSTRACT_DESTRUCTOR = "destructor of an abstract class"
_FIRST_NAMED_VERSION = 2  # lower ones stand for "local" and "without a version"


class UnreadableLibrary(Exception):
    """A file is no shared library that can be read; the text names the file and what is wrong."""


@dataclass(frozen=True)
class Pointer:
    """What a word of a library holds once it is loaded: its own address, or a place behind another's symbol."""
    symbol: str  # empty where an address alone is known
    address: int | None  # None where the symbol is another library's
    behind: int = 0
    is_object: bool = False


@dataclass(frozen=True)
class Slot:
    """A function in a virtual table, under all names it is known by; none where it has none in the file."""
    names: frozenset
    own: bool  # of the library that the table is in


@dataclass(frozen=True)
class Table:
    """A virtual table: where in its class it stands, and its functions in order."""
    offset: int
    slots: tuple


@dataclass(frozen=True)
class PolymorphicClass:
    """A class of a library that derives from one class of another."""
    name: str  # mangled
    base: str  # symbol of the base's type information
    tables: tuple


class ElfLibrary:
    """What a library needs and what it is for. Raises UnreadableLibrary."""

    def __init__(self, path):
        self.path = Path(path)
        self.name = self.path.name
        if self.path.exists() and not self.path.is_file():
            raise UnreadableLibrary(f"{path}: expected a file")
        try:
            self._read(ELFFile(io.BytesIO(self.path.read_bytes())))
        except OSError as error:
            raise UnreadableLibrary(f"{path}: {error.strerror}") from error
        except Exception as error:  # damage has exceptions of many kinds, not all of them pyelftools' own
            raise UnreadableLibrary(f"{path}: expected a shared library in ELF format: "
                                    f"{str(error) or type(error).__name__}") from error

    def _read(self, elf):
        if elf["e_type"] != "ET_DYN":
            raise ValueError("this is another kind of ELF file")
        self.machine = f"{elf.get_machine_arch()}, {elf.elfclass} bits, " \
                       f"{'little' if elf.little_endian else 'big'} endian"
        self.needed = []
        self.run_paths = []
        self.needed_versions = []  # (library, version)
        self.versions = set()
        for section in elf.iter_sections():
            if isinstance(section, DynamicSection):
                self._read_dynamic(section)
            elif isinstance(section, GNUVerNeedSection):
                self.needed_versions += [(version.name, each.name) for version, each in _versions(section)]
            elif isinstance(section, GNUVerDefSection):
                self.versions |= {each.name for _, each in _versions(section)}

    def _read_dynamic(self, section):
        for tag in section.iter_tags():
            if tag.entry.d_tag == "DT_NEEDED":
                self.needed.append(tag.needed)
            elif tag.entry.d_tag in ("DT_RUNPATH", "DT_RPATH"):
                paths = tag.runpath if tag.entry.d_tag == "DT_RUNPATH" else tag.rpath
                here = str(self.path.resolve().parent)
                self.run_paths += [re.sub(r"\$(ORIGIN|\{ORIGIN\})", lambda _: here, path)
                                   for path in paths.split(":") if path]

    @property
    def qt_version(self):
        """(major, minor) of the Qt that the library was built with; minor None where only the major one is told,
        None for a library without Qt."""
        told = [re.fullmatch(r"Qt_(\d+)(?:\.(\d+))?", version) for _, version in self.needed_versions]
        versions = [(int(match[1]), int(match[2] or -1)) for match in told if match]
        named = [re.match(r"libQt(\d+)", library) for library in self.needed]
        versions += [(int(match[1]), -1) for match in named if match]
        if not versions:
            return None
        major, minor = max(versions)
        return major, minor if minor >= 0 else None


class SymbolLibrary(ElfLibrary):
    """A library with its symbols, and the addresses that it asks the linker for."""

    def _read(self, elf):
        super()._read(elf)
        self._word = elf.elfclass // 8
        self._byte_order = "little" if elf.little_endian else "big"
        self._segments = [(segment["p_vaddr"], segment.data(), bool(segment["p_flags"] & 1))
                          for segment in elf.iter_segments("PT_LOAD")]
        self.exports = {}  # addresses by name
        self.imports = []  # those that must be found, and in no named version
        self._sizes = {}  # of symbols, by name
        self._names = {}  # of functions, by address
        self._pointers = {}
        symbols = [section for section in elf.iter_sections() if isinstance(section, SymbolTableSection)]
        dynamic = [section for section in symbols if section["sh_type"] == "SHT_DYNSYM"]
        if not dynamic:
            raise ValueError("it has no table of dynamic symbols")
        dynamic_symbols = list(dynamic[0].iter_symbols())
        self._read_dynamic_symbols(dynamic_symbols, _symbol_versions(elf))
        for section in symbols:
            for symbol in section.iter_symbols():
                if _is_defined(symbol) and symbol["st_info"]["type"] == "STT_FUNC":
                    self._names.setdefault(symbol["st_value"], set()).add(symbol.name)
        for section in elf.iter_sections():
            self._read_relocations(section, dynamic_symbols)

    def _read_dynamic_symbols(self, symbols, versions):
        for number, symbol in enumerate(symbols):
            binding = symbol["st_info"]["bind"]
            if binding == "STB_LOCAL" or not symbol.name:
                continue
            if _is_defined(symbol):
                self.exports[symbol.name] = symbol["st_value"]
                self._sizes[symbol.name] = symbol["st_size"]
            elif binding != "STB_WEAK" and (not versions or versions[number] < _FIRST_NAMED_VERSION):
                self.imports.append(symbol.name)

    def _read_relocations(self, section, symbols):
        if not isinstance(section, (RelocationSection, RelrRelocationSection)):
            return
        is_packed = isinstance(section, RelrRelocationSection)
        for relocation in section.iter_relocations():
            place = relocation["r_offset"]
            has_addend = not is_packed and relocation.is_RELA()
            addend = relocation["r_addend"] if has_addend else self._number_at(place)
            # On every machine, a relocation that names no symbol gives an address of the library itself.
            number = 0 if is_packed else relocation["r_info_sym"]
            if number == 0:
                self._pointers[place] = Pointer("", addend)
            else:
                symbol = symbols[number]
                self._pointers[place] = Pointer(symbol.name,
                                                symbol["st_value"] + addend if _is_defined(symbol) else None,
                                                addend, symbol["st_info"]["type"] == "STT_OBJECT")

    def _bytes_at(self, address):
        for start, data, _ in self._segments:
            if start <= address < start + len(data):
                return data[address - start:]
        raise ValueError(f"it points at {address:#x}, which is not in the file")

    def _number_at(self, address):
        return int.from_bytes(self._bytes_at(address)[:self._word], self._byte_order, signed=True)

    def _slot_at(self, place):
        """The function that a word points at; None when it points at none."""
        pointer = self._pointers.get(place)
        if pointer is None:
            return None
        if pointer.address is None:
            return None if pointer.is_object or pointer.behind else Slot(frozenset([pointer.symbol]), False)
        if not any(executable and start <= pointer.address < start + len(data)
                   for start, data, executable in self._segments):
            return None
        return Slot(frozenset([pointer.symbol] if pointer.symbol else self._names.get(pointer.address, ())), True)


class HostLibrary(SymbolLibrary):
    """A library with the virtual tables of its classes, which have names there, also in one that is stripped."""

    def _read(self, elf):
        super()._read(elf)
        self.tables = {}  # of classes, by the symbol of their type information
        for name, address in self.exports.items():
            if name.startswith("_ZTV") and name.replace("_ZTV", "_ZTI", 1) in self.exports:
                type_information = name.replace("_ZTV", "_ZTI", 1)
                self.tables[type_information] = self._tables_in(address, self._sizes[name],
                                                                self.exports[type_information])

    def _tables_in(self, start, size, type_information):
        if size > len(self._bytes_at(start)):
            raise ValueError("a virtual table is longer than the file")
        end = start + size
        heads = [place for place in range(start + self._word, end, self._word)
                 if place in self._pointers and self._pointers[place].address == type_information]
        ends = [head - self._word for head in heads[1:]] + [end]
        return tuple(Table(-self._number_at(head - self._word),
                           tuple(self._named_slot_at(place)
                                 for place in range(head + self._word, end_of_table, self._word)))
                     for head, end_of_table in zip(heads, ends))

    def _named_slot_at(self, place):
        if place not in self._pointers and self._number_at(place) == 0:
            return Slot(frozenset([ABSTRACT_DESTRUCTOR]), True)
        return self._slot_at(place) or Slot(frozenset(), True)


class PluginLibrary(SymbolLibrary):
    """A library with those of its classes that derive from a single class, one of another library."""

    def _read(self, elf):
        super()._read(elf)
        self.classes = []
        for place, pointer in sorted(self._pointers.items()):
            base = self._pointers.get(place + 2 * self._word)
            if (pointer.symbol == "_ZTVN10__cxxabiv120__si_class_type_infoE" and pointer.behind
                    and base and base.address is None):
                name = self._bytes_at(self._pointers[place + self._word].address).split(b"\0", 1)[0].decode()
                self.classes.append(PolymorphicClass(name.lstrip("*"), base.symbol, self._tables_of(place)))

    def _tables_of(self, type_information):
        # Its address stands in front of the functions of each table. The tables' names are not exported: they are
        # gone when the library is stripped.
        tables = []
        for place, pointer in sorted(self._pointers.items()):
            if pointer.address != type_information:
                continue
            slots = []
            while slot := self._slot_at(place + self._word * (len(slots) + 1)):
                slots.append(slot)
            if slots:
                tables.append(Table(-self._number_at(place - self._word), tuple(slots)))
        return tuple(tables)


def _is_defined(symbol):
    return symbol["st_shndx"] != "SHN_UNDEF"


def _symbol_versions(elf):
    """Versions of the dynamic symbols as the file numbers them; empty in a library without any."""
    for section in elf.iter_sections():
        if isinstance(section, GNUVerSymSection):
            data = section.data()
            order = "little" if elf.little_endian else "big"
            return [int.from_bytes(data[at:at + 2], order) for at in range(0, len(data), 2)]
    return []


def _versions(section):
    """Pairs of a version entry and one of its names; as many as the section has room for."""
    room = section["sh_size"] // 8
    for version, names in section.iter_versions():
        for name in names:
            if room == 0:
                raise ValueError("its table of versions is damaged")
            room -= 1
            yield version, name
