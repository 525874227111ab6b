"""Long steps: one line that shows how far and how long, everything else in a log file."""

import os
import re
import signal
import subprocess
import sys
import threading
import time

from zorcmd.errors import ZorError

_QUIET_INTERVAL = 30.0
_COUNT = re.compile(r"^\[(\d+)/(\d+)\]")


def duration(seconds):
    seconds = int(seconds)
    return f"{seconds} s" if seconds < 60 else f"{seconds // 60} min {seconds % 60:02d} s"


def note(text):
    """A line to the user; standard output belongs to the script that is run."""
    print(f"zor: {text}", file=sys.stderr, flush=True)


def warn(text):
    note(f"warning: {text}")


class Step:
    """Runs one command, its output going to a log; `title` and the elapsed time are shown meanwhile.

    A step that ends well within `silent` seconds shows nothing.
    """

    def __init__(self, title, log, stream=None, silent=0.0):
        self.title = title
        self._silent = silent
        self.log = log
        self._stream = stream or sys.stderr
        self._live = self._stream.isatty()
        self._latest = ""
        self._done = threading.Event()
        self._started = time.monotonic()

    def run(self, argv, hint="", tail=25, **popen):
        """Returns when the command has ended well, else raises ZorError with the tail of the log."""
        self.log.parent.mkdir(parents=True, exist_ok=True)
        shower = threading.Thread(target=self._show, daemon=True)
        with open(self.log, "ab") as log:
            begin = log.tell()
            log.write(f"\n== {self.title}: {' '.join(map(str, argv))}\n".encode())
            log.flush()
            shower.start()
            try:
                status = self._follow(argv, log, popen)
            finally:
                self._done.set()
                shower.join()
        if status == 0:
            if time.monotonic() - self._started >= self._silent:
                self._line(f"{self.title}: done in {duration(time.monotonic() - self._started)}", last=True)
            return
        self._line(f"{self.title}: failed after {duration(time.monotonic() - self._started)}", last=True)
        raise ZorError(self._failure(status, begin, tail), hint)

    def _follow(self, argv, log, popen):
        process = subprocess.Popen(
            [str(word) for word in argv], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **popen
        )
        try:
            for line in process.stdout:
                log.write(line)
                log.flush()
                text = line.decode(errors="replace").strip()
                self._latest = text or self._latest
            return process.wait()
        except BaseException:
            _end(process)
            raise

    def _failure(self, status, begin, tail):
        with open(self.log, "rb") as log:
            log.seek(begin)
            lines = log.read().decode(errors="replace").splitlines()
        # A build tool goes on with other work after a failure: the first one is what matters.
        first = next((i for i, line in enumerate(lines) if line.startswith("FAILED:")), None)
        shown = lines[-tail:] if first is None else lines[first : first + 2 * tail]
        how = f"signal {-status}" if status < 0 else f"exit status {status}"
        body = "\n".join("  | " + line[:300] for line in shown)
        return f"{self.title} failed ({how}); the whole log is {self.log}\n{body}"

    def _show(self):
        shown = 0.0
        if self._done.wait(self._silent):
            return
        self._line(f"{self.title} ...")
        while not self._done.wait(0.5):
            elapsed = time.monotonic() - self._started
            if self._live or elapsed - shown >= _QUIET_INTERVAL:
                shown = elapsed
                self._line(f"{self.title} ... {duration(elapsed)}{self._detail()}")

    def _detail(self):
        count = _COUNT.match(self._latest)
        if count:
            return f", {count.group(1)} of {count.group(2)}"
        return f", {self._latest[:60]}" if self._live and self._latest else ""

    def _line(self, text, last=False):
        if self._live:
            columns = _columns(self._stream)
            print(f"\r\033[Kzor: {text[: columns - 6]}", end="\n" if last else "", file=self._stream, flush=True)
        else:
            print(f"zor: {text}", file=self._stream, flush=True)


def _columns(stream):
    try:
        return max(20, os.get_terminal_size(stream.fileno()).columns)
    except (OSError, ValueError):
        return 80


def _end(process):
    """Ends a child that we no longer wait for, giving it the time to tidy up."""
    process.send_signal(signal.SIGINT)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
