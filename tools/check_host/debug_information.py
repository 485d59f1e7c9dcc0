"""What the debug information of a library tells."""

from elftools.elf.elffile import ELFFile

_CLASSES = ("DW_TAG_class_type", "DW_TAG_structure_type")


def class_sizes(path, names):
    """The sizes in bytes of those of the named classes that the library's debug information describes."""
    sizes = {}
    try:
        with open(path, "rb") as file:
            elf = ELFFile(file)
            if elf.get_section_by_name(".debug_info"):
                _read_sizes(elf.get_dwarf_info(), set(names), sizes)
    except Exception:  # as in a library's other parts; what was read up to the damage holds
        pass
    return sizes


def _read_sizes(information, names, sizes):
    for unit in information.iter_CUs():
        for entry in unit.get_top_DIE().iter_children():
            if entry.tag in _CLASSES and entry.attributes.keys() >= {"DW_AT_name", "DW_AT_byte_size"}:
                name = entry.attributes["DW_AT_name"].value.decode()
                if name in names:
                    sizes[name] = entry.attributes["DW_AT_byte_size"].value
        if names <= sizes.keys():
            return
