"""Which Debian mirror the private root is made from, and the proxies of the host's apt."""

import os
import re
import shutil
import subprocess
from pathlib import Path

APT = Path("/etc/apt")
_SCHEMES = ("http://", "https://", "ftp://", "file:/")
_ALWAYS_DEBIAN = {"stable", "oldstable", "testing", "unstable", "sid"}


def parse_one_line(text):
    """Entries (uri, suite, components) of a one-line *.list file."""
    entries = []
    for line in text.splitlines():
        line = re.sub(r"\[[^\]]*\]", " ", line.split("#", 1)[0])
        words = line.split()
        if len(words) >= 3 and words[0] == "deb":
            entries.append((words[1], words[2], words[3:]))
    return entries


def _stanzas(text):
    fields, key = {}, None
    for line in text.splitlines() + [""]:
        if line.startswith("#"):
            continue
        if not line.strip():
            if fields:
                yield fields
            fields, key = {}, None
        elif line[0].isspace():
            if key:
                fields[key] += " " + line.strip()
        elif ":" in line:
            key, value = line.split(":", 1)
            key = key.strip().lower()
            fields[key] = value.strip()


def parse_deb822(text):
    """Entries (uri, suite, components) of a deb822 *.sources file."""
    entries = []
    for fields in _stanzas(text):
        if fields.get("enabled", "yes").lower() in ("no", "false", "0", "off", "disable"):
            continue
        if "deb" not in fields.get("types", "").split():
            continue
        for uri in fields.get("uris", "").split():
            for suite in fields.get("suites", "").split():
                entries.append((uri, suite, fields.get("components", "").split()))
    return entries


def os_release(path=Path("/etc/os-release")):
    """Fields of os-release; empty where the file is missing."""
    try:
        text = path.read_text()
    except OSError:
        return {}
    pairs = (line.split("=", 1) for line in text.splitlines() if "=" in line)
    return {key.strip(): value.strip().strip("\"'") for key, value in pairs}


def read_sources(apt=APT):
    """Entries of every source file of the host, in the order that apt reads them."""
    files = [apt / "sources.list"] + sorted((apt / "sources.list.d").glob("*"))
    entries = []
    for path in files:
        parser = {".list": parse_one_line, ".sources": parse_deb822}.get(path.suffix)
        if parser and path.is_file():
            entries += parser(path.read_text(errors="replace"))
    return entries


def host_mirror(apt=APT, release=None):
    """Mirror of the host's own Debian release, or None where the host is not Debian."""
    release = os_release() if release is None else release
    if release.get("ID") != "debian":
        return None
    suites = _ALWAYS_DEBIAN | {release.get("VERSION_CODENAME") or "testing"}
    for uri, suite, components in read_sources(apt):
        if suite in suites and "main" in components and uri.startswith(_SCHEMES):
            return uri.rstrip("/")
    return None


def choose(environ=os.environ, apt=APT, release=None):
    """(mirror or None, where it comes from). None leaves the choice to mmdebstrap."""
    if environ.get("ZOR_DEBIAN_MIRROR"):
        return environ["ZOR_DEBIAN_MIRROR"].rstrip("/"), "ZOR_DEBIAN_MIRROR"
    mirror = host_mirror(apt, release)
    if mirror:
        return mirror, "this machine's apt configuration"
    return None, "mmdebstrap's default"


def parse_apt_config(text):
    """The apt settings a root needs to reach the same mirror: proxies and certificate checks."""
    wanted = re.compile(r'^(Acquire::(?:http|https|ftp)::(?:Proxy|Verify-Peer|CaInfo)[^ ]*) "(.+)";$', re.I)
    matches = (wanted.match(line.strip()) for line in text.splitlines())
    return [f'{m.group(1)} "{m.group(2)}"' for m in matches if m]


def apt_settings():
    """Settings of the host's apt that a root needs as well."""
    if not shutil.which("apt-config"):
        return []
    dump = subprocess.run(["apt-config", "dump"], capture_output=True, text=True, check=False)
    return parse_apt_config(dump.stdout)
