"""The private Debian root: made once in a .partial folder, named by its package list, then only read."""

import os
import platform
import shutil
import subprocess
import tempfile
from pathlib import Path

from zorcmd import layout, lock, mirror, packages, sandbox
from zorcmd.errors import ZorError
from zorcmd.progress import Step, note

# What a root knows of itself, seen from inside.
OWN_FOLDER = Path("/usr/local/share/zor")
NEEDED_BYTES = 4 * 1024**3
_NO_MIRROR = (
    "check the network, or name a Debian mirror that holds this release: ZOR_DEBIAN_MIRROR=http://HOST/debian ./zor ...\n"
    "run the same command again to go on from here"
)


def folder(cache=None, more=None):
    """Folder of the root that belongs to the present package list, whether made yet or not.

    `more`: a list of further packages, installed on a copy of that root.
    """
    return (cache or layout.cache_folder()) / "roots" / packages.current_root_name(more)


def ready(cache=None, more=None):
    """The complete root, or None."""
    root = folder(cache, more) / "root"
    return root if os.path.isdir(root) else None


def inside(own=OWN_FOLDER):
    """Name of the private root that this process already runs in; "" outside of one."""
    try:
        return (own / "name").read_text()
    except OSError:
        return ""


def others(cache=None):
    """Roots and left-overs that belong to other package lists."""
    current = folder(cache)
    if not os.path.isdir(current.parent):
        return []
    return sorted(path for path in current.parent.iterdir() if path.is_dir() and not path.name.startswith(current.name))


def ensure(more=None):
    """The complete root, with `more` packages, made now when it is missing."""
    root = ready(more=more)
    if root:
        return root
    base = ensure() if more else None
    final = folder(more=more)
    busy = f"another run is setting up {final.name}; waiting for it"
    try:
        with lock.held(final.parent / (final.name + ".lock"), busy) as descriptor:
            return ready(more=more) or _Maker(final, descriptor, more, base).make()
    except PermissionError as error:
        raise ZorError(f"the cache folder cannot be written: {error}", "choose another with ZOR_CACHE") from error
    except OSError as error:
        raise ZorError(f"the private root cannot be made: {error}") from error


class _Maker:
    """Makes one root in three stages, each of which leaves a mark that the next run starts from."""

    def __init__(self, final, lock_descriptor, more=None, base=None):
        self.final = final
        self.list = more or layout.PACKAGES
        self.base = base
        self.partial = final.with_name(final.name + ".partial")
        self.root = self.partial / "root"
        self.log = self.partial / "setup.log"
        self.archives = layout.cache_folder() / "archives"
        self.pass_fds = (lock_descriptor,)
        self.privileged = os.geteuid() == 0

    def make(self):
        self._check_disk()
        self.mirror, origin = mirror.choose()
        self.settings = mirror.apt_settings()
        install_tools()
        self._check_sandbox()
        what = f"a copy of the toolchain with the packages of {self.list.name}" if self.base else "the toolchain"
        note(f"setting up {what} once, in {self.final} (about {4 if self.base else 2.5} GB; mirror: {origin})")
        self.archives.mkdir(parents=True, exist_ok=True)
        self.partial.mkdir(parents=True, exist_ok=True)
        if not self._marked("base"):
            self._base()
        self._packages()
        self._finish()
        os.rename(self.partial, self.final)
        return self.final / "root"

    def _mark(self, stage):
        (self.partial / f"{stage}.done").touch()

    def _marked(self, stage):
        return (self.partial / f"{stage}.done").exists()

    def _check_disk(self):
        self.final.parent.mkdir(parents=True, exist_ok=True)
        free = shutil.disk_usage(self.final.parent).free
        if free < NEEDED_BYTES and not self._marked("base"):
            raise ZorError(
                f"{self.final.parent} has {free / 1e9:.1f} GB free and the toolchain needs {NEEDED_BYTES / 1e9:.0f} GB",
                "free some space, or choose another folder with ZOR_CACHE",
            )

    def _check_sandbox(self):
        reason = sandbox.why_not()
        if reason:
            raise ZorError(
                f"bwrap cannot make a private root visible here: {reason}",
                "allow user namespaces (on Ubuntu: kernel.apparmor_restrict_unprivileged_userns=0), run as root,\n"
                "or build a container from toolchain/Dockerfile and use ./zor in it",
            )

    def _base(self):
        """A minimal system, or the root to add to. Redone from nothing when it was interrupted: it takes seconds."""
        remove(self.root)
        if self.base:
            Step("Copy of the toolchain", self.log).run(["cp", "-a", "--reflink=auto", self.base, self.root], pass_fds=self.pass_fds)
            (self.root / "tmp").chmod(0o1777)
            self._mark("base")
            return
        step = Step("Base system", self.log)
        # What it mounts below the root ends with its own view of the mounts, even when it is killed.
        command = ["unshare", "--mount"] if self.privileged else []
        command += ["mmdebstrap", "--variant=apt", "--include=ca-certificates,apt-utils"]
        if not self.privileged:
            command += ["--include=fakeroot"]
        command += [f"--aptopt={setting}" for setting in ['Acquire::Check-Valid-Until "false"', *self.settings]]
        target = self.root if self.privileged else self.partial / "base.tar"
        # An ordinary user gets the base as an archive and unpacks it as his own: no file of another owner stays behind.
        command += [packages.RELEASE, target] + ([self.mirror] if self.mirror else [])
        step.run(command, hint=_NO_MIRROR, cwd="/", pass_fds=self.pass_fds)
        if not self.privileged:
            self.root.mkdir(exist_ok=True)
            unpack = ["tar", "-x", "--no-same-owner", "--exclude=./dev/*", "-f", target, "-C", self.root]
            Step("Unpacking the base system", self.log).run(unpack, pass_fds=self.pass_fds)
            target.unlink()
        self._mark("base")

    def _packages(self):
        """Download and installation; both go on where an interrupted run stopped."""
        own = self.root / OWN_FOLDER.relative_to("/")
        own.mkdir(parents=True, exist_ok=True)
        shutil.copy2(self.list, own / layout.PACKAGES.name)
        shutil.copy2(layout.INSTALLER, own / layout.INSTALLER.name)
        (own / "name").write_text(self.final.name)
        install = OWN_FOLDER / layout.INSTALLER.name
        self._inside("Packages: download", [install, "--download-only"], _NO_MIRROR)
        again = "run the same command again; if it fails in the same way, remove " + str(self.partial)
        self._inside("Packages: installation", [install], again)

    def _inside(self, title, argv, hint):
        """Runs a command in the root while it is still writable."""
        words = [sandbox.program(), "--bind", self.root, "/", "--dev-bind", "/dev", "/dev", "--proc", "/proc", "--tmpfs", "/run"]
        words += ["--bind", self.archives, "/var/cache/apt/archives"]
        if os.path.exists("/etc/resolv.conf"):
            words += ["--ro-bind", os.path.realpath("/etc/resolv.conf"), "/etc/resolv.conf"]
        options = []
        bundle = "/etc/ssl/certs/ca-certificates.crt"
        if self.mirror and self.mirror.startswith("https:") and os.path.exists(bundle):
            words += ["--ro-bind", bundle, "/run/ca.crt"]
            options += ["-o", "Acquire::https::CAInfo=/run/ca.crt"]
        if self.mirror and self.mirror.startswith("file:"):
            place = "/" + self.mirror[len("file:") :].lstrip("/")
            words += ["--ro-bind", place, place]
        if not self.privileged:
            words += ["--unshare-user", "--uid", "0", "--gid", "0"]
            options += ["-o", "APT::Sandbox::User=root"]
            argv = ["fakeroot", *argv]
        words += ["--die-with-parent", "--", *argv]
        environ = {key: value for key, value in os.environ.items() if key.lower().endswith("_proxy")}
        environ.update(PATH=sandbox.ROOT_PATH, LC_ALL="C.UTF-8", HOME="/root", ZOR_APT_OPTIONS=" ".join(options))
        environ["FAKEROOTDONTTRYCHOWN"] = "1"
        Step(title, self.log).run(words, hint=hint, env=environ, pass_fds=self.pass_fds)

    def _finish(self):
        """What makes start-up quick and the root small."""
        self._inside("Font cache", ["fc-cache", "--system-only"], "")
        for path in (self.root / "var/lib/apt/lists").glob("*_*"):
            path.unlink()
        # Plain files, for the host's to be bound over.
        for name in sandbox.HOST_FILES:
            place = self.root / name[1:]
            if place.is_symlink():
                place.unlink()
            place.touch()
        remove(self.root / "tmp")
        (self.root / "tmp").mkdir()
        (self.root / "tmp").chmod(0o1777)  # mkdir would heed the umask


def remove(path):
    """Removes a root or a part of one; never anything that is still mounted below it."""
    if not path.exists():
        return
    real = str(path.resolve())
    mounts = [line.split()[4] for line in Path("/proc/self/mountinfo").read_text().splitlines()]
    mounted = [point for point in mounts if point == real or point.startswith(real + "/")]
    if mounted:
        raise ZorError(f"{mounted[0]} is still mounted below an unfinished root", f"unmount it: umount {mounted[0]}")

    def make_writable(function, name, _):
        os.chmod(os.path.dirname(name), 0o700)
        function(name)

    shutil.rmtree(path, onerror=make_writable)


def install_tools():
    """Installs mmdebstrap and bubblewrap on the host when they are missing and this user may."""
    missing = [package for package, program in (("mmdebstrap", "mmdebstrap"), ("bubblewrap", "bwrap")) if not shutil.which(program)]
    if os.geteuid() != 0 and not shutil.which("newuidmap"):
        missing.append("uidmap")
    if not Path("/usr/share/keyrings/debian-archive-keyring.gpg").exists():
        missing.append("debian-archive-keyring")
    if not missing:
        return
    wanted = " ".join(missing)
    if not shutil.which("apt-get"):
        raise ZorError(f"needed and not installed: {wanted}; this machine has no apt-get", "install them with its own package manager")
    prefix = _administrator()
    if prefix is None:
        raise ZorError(f"needed and not installed: {wanted}", f"ask for: sudo apt-get install {wanted}")
    note(f"installing on this machine: {wanted}")
    with tempfile.TemporaryDirectory(prefix="zor-") as scratch:
        log = Path(scratch) / "apt.log"
        install = [*prefix, "apt-get", "-y", "--no-install-recommends", "install", *missing]
        environ = dict(os.environ, DEBIAN_FRONTEND="noninteractive")
        try:
            Step("Installing " + wanted, log).run(install, env=environ)
        except ZorError:
            # Usually only the package index is out of date.
            Step("Updating the package index", log).run([*prefix, "apt-get", "update"], env=environ)
            Step("Installing " + wanted, log).run(install, hint="install them by hand: " + wanted, env=environ)


def _administrator():
    """Words that make a command run as root: none for root itself, None when there is no way."""
    if os.geteuid() == 0:
        return []
    if shutil.which("sudo") and subprocess.run(["sudo", "-n", "true"], capture_output=True, check=False).returncode == 0:
        return ["sudo", "-n"]
    return None


def check_machine():
    """Raises where no private root can be made at all."""
    if platform.system() != "Linux" or platform.machine() not in ("x86_64", "aarch64"):
        raise ZorError(f"{platform.system()} on {platform.machine()} is not supported", "use 64-bit Linux")
