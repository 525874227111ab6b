"""`./zor test`: C++ tests by ctest, Python tests by pytest, one closing line for both."""

import os
import re
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass

from zorcmd import layout
from zorcmd.errors import ZorError
from zorcmd.progress import note, warn


@dataclass
class Outcome:
    """Counts of one runner."""

    passed: int = 0
    failed: int = 0
    skipped: int = 0

    def __add__(self, other):
        return Outcome(self.passed + other.passed, self.failed + other.failed, self.skipped + other.skipped)

    @property
    def status(self):
        """Exit status: well only when something ran and nothing failed."""
        return 0 if self.passed and not self.failed else 1

    def __str__(self):
        skipped = f", {self.skipped} skipped" if self.skipped else ""
        return f"{self.passed} passed, {self.failed} failed{skipped}"


def read_junit(path):
    """Counts of a JUnit report; None where there is no readable one, as after a crash of the runner."""
    try:
        suites = ElementTree.parse(path).getroot()
    except (OSError, ElementTree.ParseError):
        return None
    outcome = Outcome()
    for case in suites.iter("testcase"):
        if case.find("failure") is not None or case.find("error") is not None or case.get("status") == "fail":
            outcome.failed += 1
        elif case.find("skipped") is not None or case.get("status") in ("disabled", "notrun"):
            outcome.skipped += 1
        else:
            outcome.passed += 1
    return outcome


def check_pattern(pattern):
    try:
        re.compile(pattern)
    except re.error as error:
        raise ZorError(f"'{pattern}' is not a regular expression: {error}", status=2) from error


class TestRun:
    """Runs the tests of one built preset."""

    def __init__(self, build, pattern="", verbose=False):
        self.build = build
        self.toolchain = build.toolchain
        self.pattern = pattern
        self.verbose = verbose
        self.reports = build.folder / "reports"
        self.asan = build.preset == "asan"
        file = pattern.split("::", 1)[0]
        # A test file (or a test in it, as pytest names them) instead of an expression.
        self.file = file.endswith(".py") and (layout.REPOSITORY / file).is_file()

    def run(self):
        """Outcome of everything that the pattern selects."""
        if self.pattern and not self.file:
            check_pattern(self.pattern)
        self.reports.mkdir(parents=True, exist_ok=True)
        outcome = Outcome()
        if not self.file:
            outcome += self._cpp()
        outcome += self._python()
        if not outcome.passed and not outcome.failed:
            warn("no test ran" + (f": nothing matches '{self.pattern}'" if self.pattern else ""))
        return outcome

    def _outcome(self, report, status, nothing_ran):
        """Counts of a report, with the runner's own failure counted when no test explains it."""
        outcome = read_junit(report) or Outcome()
        if status not in (0, *nothing_ran) and not outcome.failed:
            note(f"{report.stem} ended with status {status}")
            outcome.failed += 1
        return outcome

    def _cpp(self):
        report = self.reports / "ctest.xml"
        report.unlink(missing_ok=True)
        command = ["ctest", "--test-dir", self.build.folder, "--output-on-failure", "--timeout", "300"]
        command += ["--parallel", str(_cores()), "--output-junit", report, "--no-tests=ignore"]
        command += [] if self.verbose else ["--progress"]
        if self.pattern:
            command += ["--tests-regex", self.pattern]
        note("C++ tests")
        status = self.toolchain.call(command, self._environment(leaks=True))
        return self._outcome(report, status, ())

    def _python(self):
        report = self.reports / "pytest.xml"
        report.unlink(missing_ok=True)
        chosen = [layout.REPOSITORY / self.pattern] if self.file else _python_folders()
        command = ["python3", "-X", "faulthandler", "-m", "pytest", "--rootdir", layout.REPOSITORY, "-c", layout.TOOLCHAIN / "pytest.ini"]
        command += ["-p", "zorcmd.pytest_pattern", f"--junitxml={report}", "-v" if self.verbose else "-q", *chosen]
        environ = self._environment(leaks=False)
        environ["PYTHONPATH"] = f"{self.build.python}:{layout.TOOLCHAIN}"
        environ["ZOR_TEST_PATTERN"] = "" if self.file else self.pattern
        if self.asan:
            command = ["env", *self._preload(), *command]
        note("Python tests")
        status = self.toolchain.call(command, environ)
        return self._outcome(report, status, (5,))

    def _environment(self, leaks):
        """Tests never see the user's display: those that need one start their own."""
        values = {"ZOR_BUILD_DIR": str(self.build.folder), "ZOR_FILE_PATH": str(layout.REPOSITORY / "data")}
        values.update(DISPLAY="", WAYLAND_DISPLAY="", PYTHONDONTWRITEBYTECODE="1")
        if self.asan:
            values.update(sanitizer_options(leaks))
        return values

    def _preload(self):
        """The interpreter is not instrumented, so the sanitizers' libraries have to be there before it."""
        libraries = [
            self.toolchain.output(["g++", f"-print-file-name={name}"]).strip() for name in ("libasan.so", "libubsan.so")
        ]
        return ["LD_PRELOAD=" + ":".join(libraries)]


def sanitizer_options(leaks):
    """Leaks are looked for in our own programs only: the interpreter keeps much on purpose."""
    return {
        "ASAN_OPTIONS": f"detect_leaks={int(leaks)}:check_initialization_order=1:strict_init_order=1:abort_on_error=0",
        "UBSAN_OPTIONS": "print_stacktrace=1:halt_on_error=1",
        "LSAN_OPTIONS": f"suppressions={layout.TOOLCHAIN / 'asan.supp'}:print_suppressions=0",
        "PYTHONMALLOC": "malloc",
    }


def _python_folders():
    return [folder for folder in (layout.REPOSITORY / "tests/python", layout.REPOSITORY / "tests/toolchain") if folder.is_dir()]


def _cores():
    return len(os.sched_getaffinity(0))
