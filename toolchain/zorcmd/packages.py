"""The package list and the name that a private root gets from it."""

import hashlib
import platform

from zorcmd import layout

RELEASE = "forky"
# Raised when the way a root is made changes without its package list changing.
RECIPE_VERSION = 1


def parse(text):
    """Entries of a package list as (name, suite) pairs; suite is "" for the root's own."""
    entries = []
    for line in text.splitlines():
        words = line.split("#", 1)[0].split()
        for word in words:
            name, _, suite = word.partition("/")
            entries.append((name, suite))
    return entries


def root_name(list_text, installer_text, machine=None):
    """Name of the root made of this list: it changes with what is installed, not with comments or order."""
    canonical = "\n".join(sorted(f"{name}/{suite}" for name, suite in set(parse(list_text))))
    digest = hashlib.sha256()
    for part in (RELEASE, str(RECIPE_VERSION), machine or platform.machine(), canonical, installer_text):
        digest.update(part.encode() + b"\0")
    return f"{RELEASE}-{digest.hexdigest()[:12]}"


def current_root_name(more=None):
    """Name of the root of the package list; with a second list, of the one that has its packages on top."""
    name = root_name(layout.PACKAGES.read_text(), layout.INSTALLER.read_text())
    if more:
        name += "-" + root_name(more.read_text(), "").rpartition("-")[2]
    return name
