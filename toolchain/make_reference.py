#!/usr/bin/env python3
"""Makes the reference in HTML: Python modules from their stubs, guides and examples by Sphinx, C++ headers by doxygen.

The modules must be importable: constants show their values. What hasn't changed isn't made again.

Usage: make_reference.py REPOSITORY STUBS OUTPUT
"""

import hashlib
import pathlib
import subprocess
import sys

from reference.model import Library
from reference.site import Site


def run_sphinx(repository, source, output):
    """Sphinx over the sources; a warning is an error."""
    # -E would read all anew; changed settings and pages are noticed without it.
    command = [sys.executable, "-m", "sphinx", "-b", "html", "-c", repository / "docs/reference", "-d", output / "doctrees",
               "-j", "auto", "-q", "-W", "--keep-going", source, output / "html"]
    return subprocess.run(command, check=False).returncode


def run_doxygen(repository, output):
    """doxygen over the public headers, where one has changed."""
    settings = (repository / "docs/reference/Doxyfile").read_text()
    front = repository / "docs/reference/mainpage.dox"
    folders = sorted(path for path in (repository / "toolkit").glob("*/include") if path.is_dir())
    target = output / "html/cpp"
    headers = [front, *sorted(header for folder in folders for header in folder.rglob("*.h"))]
    state = hashlib.sha256("\0".join([settings, *(f"{path}{path.stat().st_mtime_ns}" for path in headers)]).encode()).hexdigest()
    stamp = output / "cpp.stamp"
    if stamp.exists() and stamp.read_text() == state and (target / "index.html").exists():
        return 0
    target.mkdir(parents=True, exist_ok=True)
    inputs = " ".join(f'"{folder}"' for folder in folders)
    settings += f'\nOUTPUT_DIRECTORY = "{target}"\nINPUT = {inputs} "{front}"\nSTRIP_FROM_PATH = {inputs}\nSTRIP_FROM_INC_PATH = {inputs}\n'
    status = subprocess.run(["doxygen", "-"], input=settings, text=True, check=False).returncode
    if status == 0:
        stamp.write_text(state)
    return status


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    repository, stubs, output = map(pathlib.Path, arguments)
    # In the order of a reader: what most scripts begin with first.
    names = sorted((path.stem for path in stubs.glob("*.pyi")), key=lambda name: (name.startswith("osg"), name != "zorOSG", name))
    source = output / "source"
    source.mkdir(parents=True, exist_ok=True)
    Site(repository, source, Library(stubs, names)).write()
    return run_sphinx(repository, source, output) or run_doxygen(repository, output)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
