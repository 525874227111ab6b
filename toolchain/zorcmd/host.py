"""Whether this machine itself has the whole toolchain, so that no private root is needed."""

import re
import shutil
import subprocess

PYTHON = "3.14"
SWIG = "4.3"
_PROGRAMS = ("g++", "cmake", "ninja", "pkg-config", "ffmpeg")
_LIBRARIES = (
    "openscenegraph-osg",
    "openscenegraph-osgShadow",
    "bullet-float64",
    "egl",
    "gl",
    "CLI11",
    "gtest",
    "gmock",
    "benchmark",
)
_PYTHON_MODULES = ("pytest", "numpy", "hypothesis", "mypy")


def _output(argv):
    try:
        result = subprocess.run(argv, capture_output=True, text=True, check=False)
    except OSError:
        return ""
    return result.stdout if result.returncode == 0 else ""


def python_version():
    found = re.search(r"Python (\d+\.\d+)", _output(["python3", "--version"]))
    return found.group(1) if found else ""


def swig_version():
    found = re.search(r"SWIG Version (\d+\.\d+)", _output(["swig", "-version"]))
    return found.group(1) if found else ""


def identity():
    """Changes when objects built before by this machine's tools cannot be used any more."""
    parts = [_output(command).strip() for command in (["g++", "-dumpfullversion"], ["python3", "--version"])]
    parts += [_output(["pkg-config", "--modversion", library]).strip() for library in ("openscenegraph-osg", "bullet-float64")]
    return " ".join(["host", *parts])


def missing(first_only=False):
    """What this machine lacks, in words; with `first_only` the search ends at the first thing."""
    return list(_missing()) if not first_only else list(_take_first(_missing()))


def _take_first(items):
    for item in items:
        yield item
        return


def _missing():
    version = python_version()
    if version != PYTHON:
        yield f"Python {PYTHON} as python3 (found {version or 'none'})"
    version = swig_version()
    if version != SWIG:
        yield f"SWIG {SWIG} (found {version or 'none'})"
    for program in _PROGRAMS:
        if not shutil.which(program):
            yield program
    if shutil.which("pkg-config"):
        for library in _LIBRARIES:
            if subprocess.run(["pkg-config", "--exists", library], check=False).returncode != 0:
                yield f"development files of {library}"
    header = _output(["python3", "-c", "import sysconfig; print(sysconfig.get_path('include'))"]).strip()
    if not header or not _output(["sh", "-c", f'test -f "{header}/Python.h" && echo yes']):
        yield f"development files of Python {PYTHON}"
    for module in _PYTHON_MODULES:
        if not _output(["python3", "-c", f"import {module}; print(1)"]):
            yield f"Python module {module}"
