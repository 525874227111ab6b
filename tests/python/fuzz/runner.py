"""Runs workers and tells crashes.

As a command: python -m fuzz.runner [--calls N] [--seconds S] [--seed N] [--skip a,b] [--jobs N] [--go-on].
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field

from fuzz.worker import HANG, Journal

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


def work(seed, calls, seconds, skipped=()):
    """One worker. Gives its report, or the text of its crash."""
    with tempfile.TemporaryDirectory(prefix="zor-fuzz-") as folder:
        journal = pathlib.Path(folder, "journal")
        journal.write_bytes(bytes(Journal.SIZE))
        path = [str(HERE), *(os.path.abspath(entry) for entry in os.environ.get("PYTHONPATH", "").split(os.pathsep) if entry)]
        environment = {**os.environ, "PYTHONPATH": os.pathsep.join(path), "PYTHONHASHSEED": "0", "DISPLAY": "", "HOME": folder}
        inside = pathlib.Path(folder, "work")
        inside.mkdir()
        with open(pathlib.Path(folder, "output"), "wb") as output:
            command = [sys.executable, "-X", "faulthandler", "-m", "fuzz.worker", str(journal), str(seed), str(calls), str(seconds),
                       ",".join(skipped)]
            try:
                status = subprocess.run(command, cwd=inside, stdin=subprocess.DEVNULL, stdout=output, stderr=output, env=environment,
                                        timeout=seconds + 10 * HANG).returncode
            except subprocess.TimeoutExpired:
                status = -signal.SIGKILL
        text = pathlib.Path(folder, "output").read_bytes()
        said = text[-(6000 if "ZOR_FUZZ_TRACE" not in os.environ else 10**9):].decode("utf-8", "backslashreplace")
        report = inside / "report.json"
        last = journal.read_bytes().split(b"\0")[0].decode("utf-8", "replace")
        if status == 0 and report.exists() and b"memory leak" not in text:
            return json.loads(report.read_text()), None
        name = f"signal {signal.Signals(-status).name}" if status < 0 else f"exit status {status}"
        if status == -signal.SIGALRM:
            name = f"no end within {HANG} s"
        if b"memory leak" in text:
            name += ", " + next(line for line in text.splitlines() if b"memory leak" in line).decode("utf-8", "replace")
        return None, f"seed {seed}: {name} in {last}\n{said}"


def run(seed, calls, seconds, jobs, skipped=(), go_on=False):
    """Workers until the calls or the time are used up."""
    result = Result()
    skipped = list(skipped)
    rounds = 1 if not go_on else 50
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for _ in range(rounds):
            done = list(pool.map(lambda i: work(seed + i, calls // jobs, seconds, skipped), range(jobs)))
            seed += jobs
            for report, crash in done:
                if report:
                    result.add(report)
                else:
                    result.crashes.append(crash)
                    skipped.append(crash.split(": ")[-1])
            if result.calls >= calls:
                break
    return result


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--calls", type=int, default=20_000)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--skip", default="")
    options = parser.parse_args()
    result = run(options.seed, options.calls, options.seconds, options.jobs, options.skip.split(","))
    for crash in result.crashes:
        print(crash, "\n")
    for text, call in result.wrong.items():
        print(f"not documented: {text}\n    in {call}")
    print("shallow:", *sorted(result.shallow))
    print("missed:", *sorted(result.missed))
    print(result)


if __name__ == "__main__":
    main()
