"""Runs workers and tells crashes.

As a command: python -m fuzz.runner [--calls N] [--seconds S] [--seed N] [--skip a,b] [--jobs N]. With ZOR_FUZZ_TRACE set,
a crash shows every call of its worker.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field

from fuzz.worker import HANG, Journal

SHARE = 20_000  # calls of a worker
HERE = pathlib.Path(__file__).resolve().parent.parent


@dataclass
class Result:
    """What the workers did, added up."""

    calls: int = 0
    outcomes: collections.Counter = field(default_factory=collections.Counter)
    called: set = field(default_factory=set)
    missed: set = field(default_factory=set)
    shallow: set = field(default_factory=set)
    wrong: dict = field(default_factory=dict)
    crashes: list = field(default_factory=list)

    def add(self, report):
        self.calls += report["calls"]
        self.outcomes.update(report["outcomes"])
        deep = (self.called - self.shallow) | (set(report["called"]) - set(report["shallow"]))
        self.called |= set(report["called"])
        self.missed = (self.missed | set(report["missed"])) - self.called
        self.shallow = self.called - deep
        self.wrong.update(report["wrong"])

    def __str__(self):
        lines = [f"{self.calls} calls of {len(self.called)} entries, {len(self.shallow)} never past their arguments, "
                 f"{len(self.missed)} not called, {len(self.crashes)} crashes"]
        lines += [f"  {count:9} {kind}" for kind, count in self.outcomes.most_common()]
        return "\n".join(lines)


def command(seed, calls, seconds, skipped, journal):
    return [sys.executable, "-X", "faulthandler", "-m", "fuzz.worker", str(journal), str(seed), str(calls), str(seconds), ",".join(skipped)]


def environment(folder):
    """The modules' and the harness's folders by absolute paths, for the worker has a folder of its own."""
    path = [str(HERE), *(os.path.abspath(entry) for entry in os.environ.get("PYTHONPATH", "").split(os.pathsep) if entry)]
    return {**os.environ, "PYTHONPATH": os.pathsep.join(path), "PYTHONHASHSEED": "0", "DISPLAY": "", "HOME": str(folder)}


def crash_text(seed, status, last, said):
    """What went wrong with a worker; None if nothing did."""
    leak = re.search(r".*detected a memory leak.*", said)
    if status == 0 and not leak:
        return None
    if status == -signal.SIGALRM:
        name = f"no end within {HANG} s"
    else:
        name = f"signal {signal.Signals(-status).name}" if status < 0 else f"exit status {status}"
    shown = said if "ZOR_FUZZ_TRACE" in os.environ else said[-6000:]
    return f"seed {seed}: {leak[0] if leak else name} in {last}\n{shown}"


def work(seed, calls, seconds, skipped=()):
    """One worker. Gives its report, or the text of its crash."""
    with tempfile.TemporaryDirectory(prefix="zor-fuzz-") as folder:
        inside, journal, output = pathlib.Path(folder, "work"), pathlib.Path(folder, "journal"), pathlib.Path(folder, "output")
        inside.mkdir()
        journal.write_bytes(bytes(Journal.SIZE))
        with open(output, "wb") as stream:
            try:
                status = subprocess.run(command(seed, calls, seconds, skipped, journal), cwd=inside, stdin=subprocess.DEVNULL, stdout=stream,
                                        stderr=stream, env=environment(folder), timeout=seconds + 10 * HANG, check=False).returncode
            except subprocess.TimeoutExpired:
                status = -signal.SIGKILL
        report = inside / "report.json"
        status = status if status or report.exists() else 255  # it went before it was done
        last = journal.read_bytes().split(b"\0")[0].decode("utf-8", "replace")
        crash = crash_text(seed, status, last, output.read_bytes().decode("utf-8", "backslashreplace"))
        return (None, crash) if crash else (json.loads(report.read_text()), None)


def run(seed, calls, seconds, jobs, skipped=()):
    """Workers, each with the next seed, until the calls or the time are used up."""
    result = Result()
    shares = max(jobs, -(-calls // SHARE))
    end = time.monotonic() + seconds

    def share(i):
        left = end - time.monotonic()
        return work(seed + i, -(-calls // shares), left, skipped) if left > 1 else (None, None)

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for report, crash in pool.map(share, range(shares)):
            if report:
                result.add(report)
            if crash:
                result.crashes.append(crash)
    return result


def main():
    parser = argparse.ArgumentParser(description="Calls everything with anything, and tells what came of it.")
    parser.add_argument("--calls", type=int, default=20_000)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=len(os.sched_getaffinity(0)))
    parser.add_argument("--skip", default="", help="functions to leave out, separated by commas")
    options = parser.parse_args()
    result = run(options.seed, options.calls, options.seconds, options.jobs, options.skip.split(","))
    for crash in result.crashes:
        print(crash, "\n")
    for text, call in result.wrong.items():
        print(f"not documented: {text}\n    in {call}")
    print("never past their arguments:", *sorted(result.shallow))
    print("not called:", *sorted(result.missed))
    print(result)


if __name__ == "__main__":
    main()
