"""The set of tools in use, the host's own or a private root, behind one way of running a command."""

import os
import signal
import subprocess

from zorcmd import host, layout, packages, privateroot, sandbox
from zorcmd.errors import ZorError
from zorcmd.progress import Step

# Interrupts belong to the program inside: bwrap would die of one and take the program with it.
_RESET_SIGNALS = ["env", "--default-signal=INT,QUIT"]


class Toolchain:
    """Runs commands with the tools; `identity` changes when built objects of before cannot be used."""

    def __init__(self, root, cache):
        self.root = root
        self.cache = cache
        self.identity = packages.current_root_name() if root else privateroot.inside() or host.identity()

    def having(self, more):
        """These tools and a list of further packages: a private root gets a copy for them, other tools must have them."""
        return Toolchain(privateroot.ensure(more), self.cache) if self.root else self

    @property
    def name(self):
        return f"private root {self.root}" if self.root else "this machine's own tools"

    def command(self, argv):
        return sandbox.command(self.root, argv) if self.root else [str(word) for word in argv]

    def environment(self, extra=None):
        # Relative paths in the compiler's arguments let another clone use what this one compiled.
        values = {"CCACHE_DIR": str(self.cache / "ccache"), "CCACHE_BASEDIR": str(layout.REPOSITORY), "CCACHE_NOHASHDIR": "1"}
        values.update(extra or {})
        if self.root:
            return sandbox.environment(values)
        own = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
        return {**own, **values}

    def output(self, argv, extra=None):
        """Standard output of a short command; "" when it fails."""
        result = self.capture(argv, extra)
        return result.stdout if result.returncode == 0 else ""

    def capture(self, argv, extra=None):
        try:
            return subprocess.run(
                self.command(argv), env=self.environment(extra), capture_output=True, text=True, errors="replace", check=False
            )
        except OSError as error:
            return subprocess.CompletedProcess(argv, 127, "", str(error))

    def step(self, title, argv, log, hint="", extra=None, silent=0.0):
        Step(title, log, silent=silent).run(self.command(argv), hint=hint, env=self.environment(extra))

    def call(self, argv, extra=None):
        """Runs a command on the user's terminal and returns its exit status, 128 + N after signal N."""
        words = self.command([*_RESET_SIGNALS, *argv])
        before = {number: signal.signal(number, signal.SIG_IGN) for number in (signal.SIGINT, signal.SIGQUIT)}
        try:
            status = subprocess.Popen(words, env=self.environment(extra)).wait()
        finally:
            for number, handler in before.items():
                signal.signal(number, handler)
        return 128 - status if status < 0 else status

    def replace(self, argv, extra=None):
        """Becomes the command; never returns."""
        words = self.command([*_RESET_SIGNALS, *argv])
        for number in (signal.SIGINT, signal.SIGQUIT):
            signal.signal(number, signal.SIG_IGN)
        os.execvpe(words[0], words, self.environment(extra))


def choice(environ=os.environ):
    """"native", "root" or "" (whatever fits) as the user asked for by ZOR_TOOLCHAIN."""
    asked = environ.get("ZOR_TOOLCHAIN", "")
    if asked not in ("", "native", "root"):
        raise ZorError(f"ZOR_TOOLCHAIN is '{asked}'", "leave it unset, or say native or root", 2)
    return asked


def obtain():
    """The toolchain, set up now when it has to be."""
    privateroot.check_machine()
    cache = layout.cache_folder()
    asked = choice()
    if privateroot.inside():
        return Toolchain(None, cache)
    # A complete root answers at once; asking the host takes a dozen processes.
    root = privateroot.ready(cache)
    if root and asked != "native":
        return Toolchain(root, cache)
    lacking = host.missing(first_only=asked != "native") if asked != "root" else ["asked for"]
    if not lacking:
        return Toolchain(None, cache)
    if asked == "native":
        raise ZorError("this machine lacks: " + ", ".join(lacking), "unset ZOR_TOOLCHAIN to use a private root")
    return Toolchain(privateroot.ensure(), cache)
