"""Where things lie: the repository, the cache folder, and the names of private roots."""

import os
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
TOOLCHAIN = REPOSITORY / "toolchain"
PACKAGES = TOOLCHAIN / "packages.txt"
INSTALLER = TOOLCHAIN / "install-packages"


def cache_folder(environ=os.environ):
    """Folder of everything that can be made again: private roots, downloaded packages, compiler cache, logs."""
    chosen = environ.get("ZOR_CACHE")
    if chosen:
        return Path(chosen).expanduser().absolute()
    return Path(environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "zorosg"


def build_folder(preset):
    return REPOSITORY / "build" / preset
