"""`./zor doctor`: what was found, which way pictures are made, and what is missing. Changes nothing."""

import json
import os
import platform
import shutil
from pathlib import Path

from zorcmd import display, host, layout, mirror, privateroot, sandbox, toolchain

_VERSIONS = (
    ("Python", ["python3", "--version"]),
    ("SWIG", ["sh", "-c", "swig -version | sed -n 's/^SWIG Version //p'"]),
    ("compiler", ["sh", "-c", "g++ --version | head -n 1"]),
    ("CMake", ["sh", "-c", "cmake --version | head -n 1"]),
    ("OpenSceneGraph", ["pkg-config", "--modversion", "openscenegraph-osg"]),
    ("Bullet (double)", ["pkg-config", "--modversion", "bullet-float64"]),
    ("ffmpeg", ["sh", "-c", "ffmpeg -version | head -n 1 | cut -d' ' -f1-3"]),
)


class _Report:
    """Prints lines as they are found and remembers what was missing."""

    def __init__(self):
        self.missing = []

    def line(self, subject, text):
        print(f"{subject + ':':<18} {text}", flush=True)

    def lacks(self, subject, text):
        self.line(subject, f"MISSING: {text}")
        self.missing.append(text)


def _gigabytes(size):
    return f"{size / 1e9:.1f} GB"


def _existing_parent(path):
    while not os.path.exists(path):
        path = path.parent
    return path


def _machine(report):
    report.line("machine", f"{mirror.os_release().get('PRETTY_NAME', platform.system())}, {platform.machine()}")
    report.line("processors", f"{len(os.sched_getaffinity(0))}, memory {_gigabytes(_total_memory())}")
    cache = layout.cache_folder()
    parent = _existing_parent(cache)
    report.line("cache", f"{cache}, {_gigabytes(shutil.disk_usage(parent).free)} free")
    if not os.access(parent, os.W_OK):
        report.lacks("cache", f"write access to {parent}")
    _, origin = mirror.choose()
    report.line("Debian mirror", origin)


def _total_memory():
    return os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")


def _choose(report):
    """The toolchain that a run would use, or None when it is not there yet."""
    asked = toolchain.choice()
    if privateroot.inside():
        report.line("toolchain", f"this shell's private root, {privateroot.inside()}")
        return toolchain.Toolchain(None, layout.cache_folder())
    lacking = host.missing()
    if not lacking and asked != "root":
        report.line("toolchain", "this machine's own")
        return toolchain.Toolchain(None, layout.cache_folder())
    if asked == "native":
        for item in lacking:
            report.lacks("toolchain", item)
        return None
    if lacking:
        report.line("this machine", "lacks " + ", ".join(lacking[:3]) + (f" and {len(lacking) - 3} more" if len(lacking) > 3 else ""))
    reason = sandbox.why_not()
    if reason:
        report.lacks("bwrap", f"a usable bwrap: {reason}")
    root = privateroot.ready()
    if not root:
        partial = privateroot.folder().with_name(privateroot.folder().name + ".partial")
        state = "its set-up was interrupted" if os.path.exists(partial) else "not made yet"
        report.lacks("private root", f"{privateroot.folder()} ({state}); ./zor build makes it")
        return None
    report.line("private root", str(root))
    for other in privateroot.others():
        report.line("", f"{other} belongs to another package list and may be removed")
    return None if reason else toolchain.Toolchain(root, layout.cache_folder())


def _versions(report, tools):
    for subject, command in _VERSIONS:
        version = tools.output(command).strip()
        if version:
            report.line(subject, version)
        else:
            report.lacks(subject, subject)


def _graphics(report, tools):
    problem = display.problem()
    if problem:
        report.line("display", f"{problem}; pictures are made off screen")
    else:
        name = os.environ.get("DISPLAY", "")
        report.line("display", f"{name}, a window can be opened" if name else "none; pictures are made off screen")
    answer = tools.capture(["python3", Path(__file__).with_name("probe_gl.py")])
    try:
        found = json.loads(answer.stdout)
    except ValueError:
        found = {"error": (answer.stderr.strip().splitlines() or ["the probe printed nothing"])[-1]}
    if "error" in found:
        report.lacks("OpenGL", f"an off-screen OpenGL context: {found['error']}")
    else:
        report.line("OpenGL", f"{found['version']}, {found['renderer']}, by {found['path']}")


def _builds(report):
    for preset in ("release", "debug", "asan", "tidy"):
        log = layout.build_folder(preset) / "zor-build.log"
        if log.exists():
            report.line("build", f"{layout.build_folder(preset)}")


def report():
    """Prints the report; the exit status is 1 when something is missing."""
    found = _Report()
    _machine(found)
    tools = _choose(found)
    if tools:
        _versions(found, tools)
        _graphics(found, tools)
    _builds(found)
    print()
    if found.missing:
        print(f"{len(found.missing)} missing: " + "; ".join(found.missing))
        return 1
    print("nothing is missing")
    return 0
