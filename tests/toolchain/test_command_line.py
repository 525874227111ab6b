"""Argument errors, missing scripts, and a script that is really run."""

import os
import signal
import subprocess
import time

import pytest
from zorcmd.layout import REPOSITORY

built = pytest.mark.skipif(
    os.environ.get("ZOR_BUILD_DIR") != str(REPOSITORY / "build/release"),
    reason="needs the release build up to date, as ./zor test leaves it",
)


def test_no_argument_is_help(zor):
    result = zor()
    assert result.returncode == 0
    for command in ("run", "test", "build", "shell", "bench", "doctor"):
        assert f"\n    {command} " in result.stdout


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["fly"], "invalid choice: 'fly'"),
        (["run"], "SCRIPT"),
        (["build", "--preset", "fastest"], "fastest"),
        (["run", "no/such/script.py"], "no/such/script.py does not exist"),
        (["run", "examples"], "examples is a folder"),
    ],
)
def test_bad_arguments_say_what_is_wrong(zor, arguments, message):
    result = zor(*arguments, cwd=REPOSITORY)
    assert result.returncode == 2
    assert message in result.stderr
    assert "Traceback" not in result.stderr


def test_unknown_toolchain_choice(zor, tmp_path):
    script = tmp_path / "script.py"
    script.write_text("")
    result = zor("doctor", ZOR_TOOLCHAIN="magic")
    assert result.returncode == 2
    assert "ZOR_TOOLCHAIN is 'magic'" in result.stderr


def test_bad_expression_of_tests():
    from zorcmd import testing
    from zorcmd.errors import ZorError

    with pytest.raises(ZorError, match="not a regular expression"):
        testing.check_pattern("a(b")


@built
def test_script_gets_folder_arguments_and_modules(zor, tmp_path):
    (tmp_path / "beside.txt").write_text("found")
    (tmp_path / "script.py").write_text(
        "import sys, zor\n"
        "print(sys.argv, open('beside.txt').read(), zor.__file__)\n"
        "sys.exit(7)\n"
    )
    result = zor("run", "script.py", "--preset", "-x", "two words", cwd=tmp_path)
    assert result.stdout.startswith("['script.py', '--preset', '-x', 'two words'] found ")
    assert str(REPOSITORY / "build/release/python/zor.py") in result.stdout
    assert result.returncode == 7


@built
def test_interrupt_reaches_the_script(tmp_path):
    """The script tidies up after Ctrl-C and its own exit status comes back."""
    script = tmp_path / "script.py"
    script.write_text(
        "import sys, time\n"
        "print('ready', flush=True)\n"
        "try:\n    time.sleep(60)\n"
        "except KeyboardInterrupt:\n    time.sleep(0.3); print('tidied', flush=True); sys.exit(5)\n"
    )
    environ = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
    process = subprocess.Popen(
        [REPOSITORY / "zor", "run", script], stdout=subprocess.PIPE, text=True, env=environ, start_new_session=True
    )
    try:
        assert process.stdout.readline() == "ready\n"
        time.sleep(0.1)
        os.killpg(process.pid, signal.SIGINT)
        assert process.stdout.read() == "tidied\n"
        assert process.wait(20) == 5
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
