#!/usr/bin/python3
"""What tools/check-host tells of hosts that the plugin fits and of hosts that it does not."""

import argparse
import functools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from elftools.elf.elffile import ELFFile

TOOL = Path(__file__).resolve().parents[2] / "tools/check-host"
COMMAND_SLOTS = ["linkWithItsOrder", "commandName", "stopCommandName", "getOrderId", "getParameterOrderId",
                 "isRecurrent", "isValid", "description", "fullDescription", "commandArguments", "commandExecute",
                 "setReply", "finishTheCommand", "sigCommandFinished", "addInstruction"]
MACHINE = (18, 2)  # in the head of an ELF file
SPARC = 2
# What is told of each further small host.
CHANGES = {
    "MISSING": ["hoursOf(Worker const*, int) is missing"],
    "CHANGED_ARGUMENT": ["hoursOf: expected (Worker const*, int), "
                         "found with another signature: (Worker const*, long)"],
    "SWAPPED": ["Worker at offset 0, slot 3: expected work(int), the plugin's own, found Worker::rest(int)"],
    "OWN_SWAPPED": ["Worker at offset 0, slot 5: expected plan(), the plugin's own, found Worker::report()"],
    "ONE_MORE_IN_FRONT": ["Worker at offset 0, slot 3: expected work(int), the plugin's own, "
                          "found Worker::added()"],
    "ONE_MORE_AT_THE_END": ["Worker at offset 0, slot 9: expected the end of the table, "
                            "found Worker::added()"],
    "OVERRIDDEN": ["Worker at offset 0, slot 2: expected Object::wake(), found Worker::wake()"],
    "LARGER_FIRST_BASE": [
        "non-virtual thunk to Worker::forget: expected _ZThn16_N6Worker6forgetEv, "
        "found for another layout of the class: _ZThn32_N6Worker6forgetEv",
        "non-virtual thunk to Worker::hear: expected _ZThn16_N6Worker4hearEi, "
        "found for another layout of the class: _ZThn32_N6Worker4hearEi",
        "Worker: expected a virtual table at offset 16, found at 32",
        "Worker: expected 32 bytes, found 48 bytes"],
    "LARGER": ["Worker: expected 32 bytes, found 48 bytes"],
}
given = None


def run(*arguments):
    return subprocess.run([TOOL, *arguments], text=True, capture_output=True, check=False, timeout=60,
                          env={**os.environ, "PYTHONDONTWRITEBYTECODE": "1"})


def check(folder, plugin):
    return run(folder, "--plugin", plugin)


@functools.lru_cache
def check_stand_ins():
    """One run, which several tests look at."""
    return check(given.host, given.plugin)


def small_host(change):
    return given.small_plugin.parent / change


def reasons(result):
    lines = result.stdout.split("\n")
    first = lines.index("The plugin does not fit:") + 1
    return [line.removeprefix("  ") for line in lines[first:-2]]


def last_line(result):
    return result.stdout.splitlines()[-1]


def rows_of(result, title=""):
    """The rows of the table with a title, or of the first table, which has none, each split into its columns."""
    lines = result.stdout[result.stdout.index(title):].split("\n\n")[0].splitlines()
    return [re.split(r"  +", line) for line in lines[2 if title else 1:]]


def qt_version(major=5):
    """What is told of the version of Qt: on x86, what is built with it names its minor one, too."""
    return f"{major}.15" if b"Qt_5.15" in (given.host / "libutilities.so").read_bytes() else str(major)


class CheckHost(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def copy(self, folder):
        """A copy of a folder's libraries, to be changed."""
        for library in folder.glob("*.so"):
            shutil.copy(library, self.folder)

    def stripped(self, file):
        copy = self.folder / file.name
        subprocess.run([given.strip, "-o", copy, file], check=True)
        return copy

    def patch(self, name, *replacements):
        file = self.folder / name
        data = file.read_bytes()
        for old, new in replacements:
            self.assertIn(old, data)
            data = data.replace(old, new)
        file.write_bytes(data)

    def write_number(self, name, place, number):
        """Writes a number into a file; its place is an offset and a length."""
        file = self.folder / name
        data = bytearray(file.read_bytes())
        offset, length = place
        data[offset:offset + length] = number.to_bytes(length, "little")
        file.write_bytes(data)

    def assert_fits(self, result):
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertIn("\nThe plugin fits.\n", result.stdout)

    def assert_does_not_fit(self, result, expected):
        self.assertEqual((result.returncode, result.stderr), (1, ""), result.stdout)
        self.assertEqual(reasons(result), expected)

    def assert_is_wrong_usage(self, result, message):
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertIn(message, result.stderr)


class StandIns(CheckHost):
    """The plugin as it is built, and the libraries that it was built with."""

    def copy_with_qt_versions(self):
        if "." not in qt_version():
            self.skipTest("no library names its minor version of Qt")
        self.copy(given.host)

    def test_they_fit(self):
        result = check_stand_ins()
        self.assert_fits(result)
        self.assertRegex(result.stdout, r"(?m)^getDate +\(\) +libutilities\.so$")
        self.assertRegex(result.stdout, rf"(?m)^libplugin_management\.so +{qt_version()}$")
        self.assertRegex(result.stdout, r"(?m)^libutilities\.so +libQt5Core\.so\.5 +/\S+$")

    def test_slots_are_listed_in_their_order(self):
        rows = rows_of(check_stand_ins(), "Virtual table of DAbstractCommand at offset 0")
        self.assertEqual([int(row[0]) for row in rows], list(range(28)))
        found = [re.match(r"DAbstractCommand::(\w+)\(", row[2]) for row in rows[12:27]]
        self.assertEqual([match[1] for match in found], COMMAND_SLOTS)
        self.assertEqual(rows[27][1:], ["createCommand(QMap<QString, QVariant> const&), the plugin's own",
                                        "a pure virtual function", "?"])

    def test_virtual_tables_of_all_bases_are_compared(self):
        result = check_stand_ins()
        self.assertEqual(re.findall(r"(?m)^Virtual table of (\w+) at offset \d+ \(base of (.*)\)$", result.stdout),
                         [("DAbstractCommand", "DCmdGetValue, DCmdInitGpio, DCmdListenEvents, DCmdListenToAll, "
                                               "DCmdSetValue, DCmdSwitchValue")] * 2
                         + [("DAbstractPlugin", "PToolGpio")] * 2
                         + [("DAbstractPluginBackend", "BeMaintenanceToolGpio"), ("DObject", "DGpioChannel")])

    def test_they_fit_stripped(self):
        for library in given.host.glob("*.so"):
            self.stripped(library)
        result = check(self.folder, given.plugin)
        self.assert_fits(result)
        self.assertIn(" DAbstractPluginBackend::treatmentReleased(int, QString const&, bool)\n", result.stdout)

    def test_a_stripped_plugin_fits(self):
        self.assert_fits(check(given.host, self.stripped(given.plugin)))

    def test_a_library_of_another_qt_does_not_fit(self):
        self.copy(given.host)
        tag = [(b"Qt_5", b"Qt_6")] if "." in qt_version() else []
        self.patch("libutilities.so", (b"libQt5Core.so.5", b"libQt6Core.so.9"), *tag)
        self.assert_does_not_fit(check(self.folder, given.plugin),
                                 ["libutilities.so needs libQt6Core.so.9, which is not found",
                                  f"libutilities.so was built with Qt {qt_version(6)}, the plugin with Qt {qt_version()}"])

    def test_a_library_of_an_older_qt_does_not_fit(self):
        self.copy_with_qt_versions()
        self.patch("libutilities.so", (b"Qt_5.15", b"Qt_5.12"))
        self.assert_does_not_fit(check(self.folder, given.plugin),
                                 ["libutilities.so was built with Qt 5.12, the plugin with Qt 5.15"])

    def test_a_qt_version_that_is_not_told_is_named(self):
        self.copy_with_qt_versions()
        self.patch("libutilities.so", (b"Qt_5.15", b"At_5.15"))
        self.assertIn(": whether libutilities.so was built with the plugin's Qt 5; ",
                      last_line(check(self.folder, given.plugin)))

    def test_a_version_that_a_library_needs_in_vain_is_named(self):
        self.copy(given.host)
        # The first version of the C library on x86, and on 64-bit ARM.
        versions = (b"GLIBC_2.2.5", b"GLIBC_2.17")
        version = next(version for version in versions if version in (self.folder / "libutilities.so").read_bytes())
        self.patch("libutilities.so", (version, version.replace(b"_2", b"_9")))
        result = check(self.folder, given.plugin)
        self.assertEqual(result.returncode, 1)
        self.assertRegex("\n".join(reasons(result)), r"\Alibutilities\.so needs libc\.so\.6 in the version "
                                                     r"GLIBC_9[.0-9]+, which /\S+ does not have\Z")


class ChangedHosts(CheckHost):
    """A small plugin, and hosts that have each changed in one way since it was built."""

    def test_an_unchanged_host_fits(self):
        result = check(small_host("NONE"), given.small_plugin)
        self.assert_fits(result)
        self.assertRegex(result.stdout, r"(?m)^Worker +32 bytes +32 bytes$")
        self.assertRegex(result.stdout, r"(?m)^libsmall_plugin\.so +libm\.so\.6 +/\S+$")
        self.assertIn("\nVirtual table of Worker at offset 16 "
                      "(base of (anonymous namespace)::Digger, (anonymous namespace)::Sleeper)\n", result.stdout)
        self.assertEqual(last_line(result),
                         "What the files do not tell: what stands in slot 3 of Worker at offset 0; the types of "
                         "results and the places of members. Build the plugin against this host's own headers "
                         "(HOST_SDK_DIR).")

    def test_what_has_changed_is_told(self):
        for change, expected in CHANGES.items():
            with self.subTest(change):
                self.assert_does_not_fit(check(small_host(change), given.small_plugin), expected)

    def test_what_has_changed_is_told_of_stripped_libraries(self):
        for change in ("NONE", "SWAPPED", "ONE_MORE_IN_FRONT"):
            with self.subTest(change):
                self.stripped(small_host(change) / "libsmall_host.so")
                result = check(self.folder, given.small_plugin)
                if change in CHANGES:
                    self.assert_does_not_fit(result, CHANGES[change])
                else:
                    self.assert_fits(result)
                self.assertIn(" the sizes of Worker, where debug information is missing; ", last_line(result))

    def test_of_a_stripped_plugin_inherited_functions_are_told(self):
        plugin = self.stripped(given.small_plugin)
        self.assert_does_not_fit(check(small_host("SWAPPED"), plugin),
                                 ["Worker at offset 0, slot 4: expected Worker::rest(int), "
                                  "found a pure virtual function"])
        result = check(small_host("OWN_SWAPPED"), plugin)
        self.assert_fits(result)
        self.assertIn("what stands in slots 0, 1, 3, 5, 6 of Worker at offset 0; ", last_line(result))

    def test_a_library_may_be_on_the_run_path_of_the_one_that_needs_it(self):
        result = check(small_host("NEEDING"), given.small_plugin)
        self.assert_fits(result)
        self.assertIn(["libsmall_host.so", "libsmall_needed.so", str(small_host("needed") / "libsmall_needed.so")],
                      [row[:2] + [os.path.realpath(row[2])] for row in rows_of(result)])

    def test_a_library_of_another_machine_on_the_run_path_is_passed_over(self):
        for name in ("NEEDING", "needed"):
            shutil.copytree(small_host(name), self.folder / name)
        self.assert_fits(check(self.folder / "NEEDING", given.small_plugin))
        self.write_number("needed/libsmall_needed.so", MACHINE, SPARC)
        self.assert_does_not_fit(check(self.folder / "NEEDING", given.small_plugin),
                                 ["libsmall_host.so needs libsmall_needed.so, which is not found"])

    def test_only_the_first_slot_that_differs_is_marked(self):
        rows = rows_of(check(small_host("ONE_MORE_IN_FRONT"), given.small_plugin),
                       "Virtual table of Worker at offset 0")
        self.assertEqual([row[0] for row in rows if row[-1] == "<- the first that differs"], ["3"])
        self.assertEqual(rows[-1], ["9", "the end of the table", "Worker::forget()"])


class FaultyFolders(CheckHost):
    """Folders in which there is something else than the small plugin's host."""

    def setUp(self):
        super().setUp()
        self.library = self.folder / "libsmall_host.so"

    def assert_is_told(self, expected):
        """This is the first reason, and all that the plugin takes from its host is missing."""
        result = check(self.folder, given.small_plugin)
        self.assertEqual((result.returncode, result.stderr), (1, ""), result.stdout)
        self.assertEqual(reasons(result)[0], expected)
        self.assertIn("hoursOf(Worker const*, int) is missing", reasons(result))

    def test_a_text_in_place_of_a_library(self):
        self.library.write_text("no library\n")
        self.assert_is_told(f"{self.library}: expected a shared library in ELF format: Magic number does not match")

    def test_a_folder_in_place_of_a_library(self):
        self.library.mkdir()
        self.assert_is_told(f"{self.library}: expected a file")

    def test_a_library_that_is_missing_is_not_taken_from_where_the_plugin_was_built(self):
        self.assert_is_told("libsmall_plugin.so needs libsmall_host.so, which is not found")

    def test_a_library_of_another_machine(self):
        self.copy(small_host("NONE"))
        self.write_number("libsmall_host.so", MACHINE, SPARC)
        told = reasons(check(self.folder, given.small_plugin))
        self.assertRegex(told[0], r"\Alibsmall_host\.so is built for SPARC, 64 bits, .*, the plugin for ")

    def test_a_library_that_is_cut_off(self):
        whole = (small_host("NONE") / "libsmall_host.so").read_bytes()
        for length in (0, 3, 63, 64, 1000, len(whole) // 2, len(whole) - 1):
            with self.subTest(length=length):
                self.library.write_bytes(whole[:length])
                result = check(self.folder, given.small_plugin)
                self.assertEqual((result.returncode, result.stderr), (1, ""))
                self.assertRegex(reasons(result)[0], r"\A/\S+/libsmall_host\.so: "
                                                     r"expected a shared library in ELF format: .")

    def test_sizes_and_counts_beyond_the_file_are_damage(self):
        host = small_host("NONE")
        with open(host / "libsmall_host.so", "rb") as file:
            elf = ELFFile(file)
            number, = (index for index, symbol in enumerate(elf.get_section_by_name(".dynsym").iter_symbols())
                       if symbol.name == "_ZTV6Worker")
            symbols = elf.get_section_by_name(".dynsym")
            size_of_table = symbols["sh_offset"] + number * symbols["sh_entsize"] + 16
            sections = [section.name for section in elf.iter_sections()]
            count_of_versions = elf["e_shoff"] + sections.index(".gnu.version_r") * elf["e_shentsize"] + 44
        for place, length, told in ((size_of_table, 8, "a virtual table is longer than the file"),
                                    (count_of_versions, 4, "its table of versions is damaged")):
            with self.subTest(told):
                self.copy(host)
                self.write_number("libsmall_host.so", (place, length), (1 << 8 * length - 1) - 8)
                self.assert_is_told(f"{self.library}: expected a shared library in ELF format: {told}")


class Usage(CheckHost):
    def test_a_folder_is_asked_for(self):
        self.assert_is_wrong_usage(run(), "the following arguments are required: LIBRARY_DIR")
        self.assert_is_wrong_usage(run(given.host, given.host), "unrecognized arguments")
        self.assert_is_wrong_usage(run("/nowhere"), "/nowhere: expected a folder")
        self.assert_is_wrong_usage(run(given.plugin), f"{given.plugin}: expected a folder")

    def test_a_plugin_is_asked_for(self):
        self.assert_is_wrong_usage(check(given.host, "/nowhere.so"), "/nowhere.so: No such file or directory")
        self.assert_is_wrong_usage(check(given.host, __file__),
                                   f"{__file__}: expected a shared library in ELF format")
        self.assert_is_wrong_usage(check(given.host, given.host), f"{given.host}: expected a file")

    def test_help_names_the_exit_status(self):
        result = run("--help")
        self.assertEqual(result.returncode, 0)
        self.assertIn("The exit status is 0 when the plugin fits", result.stdout)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--plugin", "--host", "--small-plugin"):
        parser.add_argument(option, type=Path, required=True)
    parser.add_argument("--strip", required=True)
    given, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest)
