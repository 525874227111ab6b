"""Entering a private root with bwrap: the user's own folders, devices and display seen at their own paths."""

import os
import shutil
import subprocess
from pathlib import Path

from zorcmd import layout
from zorcmd.errors import ZorError

ROOT_PATH = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"
# Top-level folders that the root has of its own; every other one is the user's and is shared.
SYSTEM = {"bin", "boot", "dev", "etc", "lib", "lib32", "lib64", "libx32", "lost+found", "proc", "run", "sbin", "sys", "usr", "var"}
# The host's own are seen inside.
HOST_FILES = ("/etc/passwd", "/etc/group", "/etc/hosts", "/etc/localtime", "/etc/machine-id", "/etc/resolv.conf")
# Settings of the host's own interpreter and loader, which mean nothing or harm in the root.
_FOREIGN = (
    "LD_LIBRARY_PATH LD_PRELOAD PYTHONHOME PYTHONPATH PYTHONSTARTUP VIRTUAL_ENV PERL5LIB "
    "PKG_CONFIG_PATH CMAKE_PREFIX_PATH CC CXX CFLAGS CXXFLAGS LDFLAGS CPATH LIBRARY_PATH OSG_LIBRARY_PATH BASH_ENV "
    "LANG LANGUAGE LC_CTYPE LC_NUMERIC LC_TIME LC_COLLATE LC_MONETARY LC_MESSAGES"
).split()


def _system_binds(root):
    """The root's own folders, read-only. /var is taken apart so that homes below it can be shared."""
    arguments = ["--ro-bind", root / "usr", "/usr", "--ro-bind", root / "etc", "/etc"]
    for name in ("bin", "sbin", "lib", "lib32", "lib64", "libx32"):
        path = root / name
        if path.is_symlink():
            arguments += ["--symlink", os.readlink(path), f"/{name}"]
        elif path.is_dir():
            arguments += ["--ro-bind", path, f"/{name}"]
    for parent in (root / "var", root / "var/lib"):
        for path in sorted(parent.iterdir()):
            inside = "/" + str(path.relative_to(root))
            if path.is_symlink():
                arguments += ["--symlink", os.readlink(path), inside]
            elif path.is_dir() and inside not in ("/var/lib", "/var/tmp"):
                arguments += ["--ro-bind", path, inside]
    return arguments + ["--bind-try", "/var/tmp", "/var/tmp"]


def _host_binds(root, top=Path("/")):
    arguments = ["--dev-bind", "/dev", "/dev", "--proc", "/proc", "--ro-bind-try", "/sys", "/sys", "--tmpfs", "/run"]
    arguments += ["--bind-try", f"/run/user/{os.getuid()}", f"/run/user/{os.getuid()}"]
    for entry in sorted(os.scandir(top), key=lambda item: item.name):
        if entry.name in SYSTEM:
            continue
        if entry.is_symlink():
            arguments += ["--symlink", os.readlink(entry.path), entry.path]
        elif entry.is_dir():
            arguments += ["--bind-try", entry.path, entry.path]
    for name in HOST_FILES:
        if os.path.exists(name):
            arguments += ["--ro-bind", os.path.realpath(name), name]
    return arguments


def _shared(path, top=Path("/")):
    """True when a path of the host is seen inside without a bind of its own."""
    parts = Path(path).parts
    return len(parts) < 2 or parts[1] not in SYSTEM or str(path).startswith(("/var/tmp/", "/dev/", "/sys/", "/proc/"))


def _own_binds(paths):
    """Binds for the user's folders that lie below a system folder, as a home below /var/lib does."""
    arguments = []
    for path in dict.fromkeys(str(p) for p in paths):
        if _shared(path):
            continue
        if path.split("/")[1] not in ("var", "run"):
            raise ZorError(f"{path} lies in a system folder, which the private root has of its own", "move it, or work from another folder")
        arguments += ["--bind", path, path]
    return arguments


def environment(extra=None):
    """Environment inside: the user's, less what belongs to the host's interpreter and loader."""
    values = {key: value for key, value in os.environ.items() if key not in _FOREIGN}
    values.update(PATH=ROOT_PATH, LC_ALL="C.UTF-8")
    values.update(extra or {})
    return values


def command(root, argv, cwd=None):
    """Argument list that runs `argv` inside the private root, in the folder `cwd`."""
    cwd = os.path.abspath(cwd or os.getcwd())
    own = [layout.REPOSITORY, layout.cache_folder(), cwd]
    if os.path.isdir(os.path.expanduser("~")):
        own.append(os.path.expanduser("~"))
    authority = os.environ.get("XAUTHORITY")
    if authority and os.path.exists(authority) and not authority.startswith(f"/run/user/{os.getuid()}/"):
        own.append(authority)
    words = [program(), *_system_binds(root), *_host_binds(root), *_own_binds(own)]
    words += ["--die-with-parent", "--chdir", cwd, "--", *argv]
    return [str(word) for word in words]


def program():
    """bwrap by its full path: the search path inside is not the host's."""
    return shutil.which("bwrap") or "bwrap"


def why_not():
    """The reason why bwrap cannot be used here, or "" when it can."""
    if not shutil.which("bwrap"):
        return "bubblewrap is not installed"
    trial = ["bwrap", "--ro-bind", "/", "/", "--dev-bind", "/dev", "/dev", "--proc", "/proc", "true"]
    result = subprocess.run(trial, capture_output=True, text=True, check=False)
    if result.returncode == 0:
        return ""
    return (result.stderr.strip().splitlines() or [f"exit status {result.returncode}"])[-1]
