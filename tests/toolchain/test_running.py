"""Builds, reports of test runs, displays, and this toolchain itself."""

import os
import socket

import pytest
from zorcmd import build, display, host, progress, testing
from zorcmd.errors import ZorError


@pytest.mark.parametrize(
    "each, memory, cores, expected",
    [(3e9, 24e9, 2, 2), (3e9, 8e9, 16, 2), (3e9, 1e9, 4, 1), (1e9, 64e9, 4, 4)],
)
def test_jobs_fit_in_memory(each, memory, cores, expected):
    assert build.jobs(each, memory, cores) == expected


def test_junit_reports_are_counted(tmp_path):
    report = tmp_path / "report.xml"
    report.write_text(
        '<testsuites><testsuite><testcase name="a"/><testcase name="b"><failure/></testcase>'
        '<testcase name="c"><error/></testcase><testcase name="d"><skipped/></testcase>'
        '<testcase name="e" status="run"/><testcase name="f" status="notrun"/></testsuite></testsuites>'
    )
    assert testing.read_junit(report) == testing.Outcome(passed=2, failed=2, skipped=2)
    report.write_text("<testsuites><testsuite>")
    assert testing.read_junit(report) is None
    assert testing.read_junit(tmp_path / "missing.xml") is None


@pytest.mark.parametrize(
    "outcome, status, text",
    [
        (testing.Outcome(3, 0, 0), 0, "3 passed, 0 failed"),
        (testing.Outcome(3, 1, 2), 1, "3 passed, 1 failed, 2 skipped"),
        (testing.Outcome(0, 0, 0), 1, "0 passed, 0 failed"),
        (testing.Outcome(0, 0, 4), 1, "0 passed, 0 failed, 4 skipped"),
    ],
)
def test_closing_line_and_status(outcome, status, text):
    assert outcome.status == status
    assert str(outcome) == text


def test_crashed_runner_counts_as_a_failure(tmp_path):
    class NoBuild:
        toolchain, preset, folder = None, "release", tmp_path

    run = testing.TestRun(NoBuild())
    assert run._outcome(tmp_path / "pytest.xml", 139, (5,)).failed == 1
    assert run._outcome(tmp_path / "pytest.xml", 5, (5,)) == testing.Outcome()


def test_failed_step_shows_the_end_of_its_log(tmp_path, capfd):
    log = tmp_path / "step.log"
    step = progress.Step("Work", log)
    with pytest.raises(ZorError, match=r"exit status 3.*step\.log") as failure:
        step.run(["sh", "-c", "seq 1 100; echo the reason >&2; exit 3"], hint="try again", tail=5)
    shown = str(failure.value).splitlines()
    assert shown[-1] == "  | the reason" and "  | 100" in shown and "  | 50" not in shown
    assert failure.value.hint == "try again"
    assert "Work: failed after" in capfd.readouterr().err
    assert "50\n" in log.read_text()


def test_step_shows_the_first_failure_of_a_build(tmp_path):
    text = "[1/3] one\nFAILED: x.o\nx.cpp:1: error\n" + "\n".join(f"[2/3] more {i}" for i in range(200))
    (tmp_path / "text").write_text(text)
    with pytest.raises(ZorError, match="x.cpp:1: error"):
        progress.Step("Build", tmp_path / "log").run(["sh", "-c", f"cat {tmp_path}/text; exit 1"])


def test_quick_step_is_silent(tmp_path, capfd):
    progress.Step("Nothing", tmp_path / "log", silent=5.0).run(["true"])
    assert capfd.readouterr().err == ""


def test_display_that_answers_and_those_that_do_not():
    number = 5000 + os.getpid() % 1000
    with socket.socket(socket.AF_UNIX) as server:
        server.bind(f"\0/tmp/.X11-unix/X{number}")
        server.listen()
        assert display.problem({"DISPLAY": f":{number}"}) == ""
    assert display.problem({}) == ""
    assert f"':{number}' cannot be opened" in display.problem({"DISPLAY": f":{number}"})
    assert "names no display" in display.problem({"DISPLAY": "screen one"})


def test_this_toolchain_is_complete():
    """The list of packages gives all that a native build asks for, and doctor agrees."""
    assert host.missing() == []
    assert host.identity().startswith("host ")


def test_doctor_finds_an_off_screen_context(zor):
    result = zor("doctor", DISPLAY=":4999")
    assert "':4999' cannot be opened" in result.stdout
    assert "OpenGL:" in result.stdout and "by EGL" in result.stdout
    assert result.returncode == 0, result.stdout
    assert "nothing is missing" in result.stdout
