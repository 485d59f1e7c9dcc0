"""The libraries that the plugin and its host need, where the dynamic linker would find them."""

import glob
import os
import re
import subprocess
from pathlib import Path

from .elf_library import ElfLibrary, HostLibrary, SymbolLibrary, UnreadableLibrary

_SANITIZER = re.compile(r"lib(a|l|t|ub)san\.so\.\d+")


class SystemLibraries:
    """The libraries in the linker's cache, and those of other architectures beside them, for one kind of machine."""

    def __init__(self, machine):
        self._machine = machine
        listed = subprocess.run(["/sbin/ldconfig", "-p"], text=True, capture_output=True, check=True).stdout
        self._paths = {}
        for name, path in re.findall(r"^\t(\S+) \(.*\) => (.+)$", listed, re.MULTILINE):
            self._paths.setdefault(name, []).append(path)

    def find(self, name, run_paths):
        """The library of a name, on one of the run paths or of the system; None when there is none."""
        for path in ([os.path.join(folder, name) for folder in run_paths] + self._paths.get(name, [])
                     + glob.glob(f"/lib/*-linux-gnu*/{name}") + glob.glob(f"/usr/lib/*-linux-gnu*/{name}")):
            try:
                library = ElfLibrary(path)
            except UnreadableLibrary:
                continue
            if library.machine == self._machine:
                return library
        return None


class Host:
    """The libraries of a folder that a plugin needs, and those that they need there, in the linker's order."""

    def __init__(self, plugin, folder, report):
        self.libraries = []
        self._elsewhere = set()  # symbols that the plugin finds outside of the host
        self._plugin = plugin
        self._folder = Path(folder)
        self._report = report
        self._system = SystemLibraries(plugin.machine)
        found = {}
        rows = []
        users = [plugin]
        for user in users:
            for name in user.needed:
                if name not in found:
                    found[name] = self._find(user, name)
                    if isinstance(found[name], HostLibrary):
                        users.append(found[name])
                rows.append((user.name, name, found[name].path if found[name] else "not found"))
            self._check_versions(user, found)
        report.table(("library", "needs", "found"), rows)

    @property
    def symbols(self):
        """Those that the plugin takes from its host."""
        return [symbol for symbol in self._plugin.imports if symbol not in self._elsewhere]

    def provider(self, symbol):
        """The library that exports a symbol; None when none of the host's does."""
        return next((library for library in self.libraries if symbol in library.exports), None)

    def _find(self, user, name):
        path = self._folder / name
        if os.path.exists(path):
            return self._open(path)
        library = self._system.find(name, user.run_paths)
        if library and user is self._plugin and not library.versions:
            if _SANITIZER.fullmatch(name):
                self._elsewhere |= SymbolLibrary(library.path).exports.keys()
            else:
                # The libraries of Qt and of the system have versions. This is one of a host, but of another one: that
                # which the plugin was built with, and to which its run path leads.
                library = None
        if not library:
            self._report.reason(f"{user.name} needs {name}, which is not found")
        return library

    def _open(self, path):
        try:
            library = HostLibrary(path)
        except UnreadableLibrary as error:
            self._report.reason(str(error))
            return None
        if library.machine != self._plugin.machine:
            self._report.reason(f"{library.name} is built for {library.machine}, "
                                f"the plugin for {self._plugin.machine}")
        self.libraries.append(library)
        return library

    def _check_versions(self, user, found):
        for name, version in user.needed_versions:
            library = found.get(name)
            # A library without any versions is taken as it is.
            if library and library.versions and version not in library.versions:
                self._report.reason(f"{user.name} needs {name} in the version {version}, "
                                    f"which {library.path} does not have")
