"""Configuring and building a preset; an unchanged tree takes a fraction of a second."""

import os
import re
import shutil

from zorcmd import layout, lock
from zorcmd.errors import ZorError
from zorcmd.progress import note

PRESETS = ("release", "debug", "asan", "tidy")
# Memory that one compiler may take, in bytes: generated wrappers against everything else.
_WRAPPER_MEMORY = {"release": 3.0e9, "debug": 2.5e9, "asan": 5.0e9, "tidy": 2.5e9}
_UNIT_MEMORY = 1.2e9


def available_memory(meminfo="/proc/meminfo"):
    """Bytes that can be had without swapping."""
    with open(meminfo) as text:
        found = re.search(r"^MemAvailable:\s+(\d+) kB", text.read(), re.M)
    return int(found.group(1)) * 1024 if found else 4 * 10**9


def jobs(memory_each, memory=None, cores=None):
    """How many compilers may run at once."""
    memory = available_memory() if memory is None else memory
    cores = cores or len(os.sched_getaffinity(0))
    return max(1, min(cores, int(memory // memory_each)))


class Build:
    """One preset's build folder."""

    def __init__(self, toolchain, preset="release"):
        if preset not in PRESETS:
            raise ZorError(f"there is no preset '{preset}'", "presets: " + ", ".join(PRESETS), 2)
        self.toolchain = toolchain
        self.preset = preset
        self.folder = layout.build_folder(preset)
        self.log = self.folder / "zor-build.log"
        self.python = self.folder / "python"

    def bring_up_to_date(self, target="all"):
        """Configures where needed and builds `target`."""
        busy = f"another run is building {self.preset}; waiting for it"
        try:
            with lock.held(self.folder.with_name(f".{self.preset}.lock"), busy):
                self._discard_foreign()
                if not (self.folder / "build.ninja").exists():
                    self._configure()
                self._compile(target)
        except PermissionError as error:
            raise ZorError(f"the build folder cannot be written: {error}") from error

    def _discard_foreign(self):
        """Objects made by another toolchain look up to date to ninja and are not."""
        stamp = self.folder / "zor-toolchain"
        if self.folder.exists() and (not stamp.exists() or stamp.read_text() != self.toolchain.identity):
            if stamp.exists():
                note(f"the toolchain has changed: building {self.preset} anew")
            shutil.rmtree(self.folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        stamp.write_text(self.toolchain.identity)

    def _configure(self):
        options = [f"-DZOR_WRAPPER_JOBS={jobs(_WRAPPER_MEMORY[self.preset])}"]
        command = ["cmake", "-S", layout.REPOSITORY, "-B", self.folder, "--preset", self.preset, *options]
        self.toolchain.step(f"Configuring {self.preset}", command, self.log)

    def _compile(self, target):
        ninja = ["ninja", "-C", self.folder, f"-j{jobs(_UNIT_MEMORY)}", target]
        self.toolchain.step(f"Building {self.preset}", ninja, self.log, silent=2.0)
