"""Shared by all Python tests: run with the folder of the built modules on PYTHONPATH (`./zor test` does)."""

import importlib.util
import os
import shutil
import subprocess
import sys

import pytest

import _zorOSG  # noqa: F401 - before its siblings: types get their names from the module that knows all of them

# The modules below tests/binding/, which lie beside those of the project in the build folder.
TEST_MODULES = os.path.join(os.path.dirname(importlib.util.find_spec("zorOSG").origin), os.pardir, "tests", "binding")
sys.path.append(TEST_MODULES)


@pytest.fixture(autouse=True)
def no_leak_message(capfd):
    """A wrapped object that nobody can destroy is reported on standard output by the wrappers themselves."""
    yield
    out, err = capfd.readouterr()
    sys.stdout.write(out)
    sys.stderr.write(err)
    assert "memory leak" not in out + err


@pytest.fixture
def new_application():
    """Makes applications that draw off screen as fast as they can, from the arguments of a command line."""
    import zorIO
    import zorOSG
    import zorPython

    def make(*arguments):
        zorPython.clearErrors()
        app = zorOSG.ExampleApplication()
        # Held by the caller: the application only borrows it.
        app.keptArguments = zorIO.ArgumentParser(["test", *arguments])
        assert app.init(app.keptArguments)
        app.initSimulation()
        app.initScene()
        app.setRealTimeSync(False)
        return app

    yield make
    zorPython.clearErrors()


@pytest.fixture
def shot(application, tmp_path):
    """Draws the main view of the test's `application` and gives its pixels, upper row first."""
    import numpy
    import osgDB
    import zor

    def draw():
        path = str(tmp_path / "shot.png")
        timer = zor.HighAccuracyTimer(True)
        application.executeOneStepWithGraphics(timer)
        application.takeScreenShot(path)
        application.executeOneStepWithGraphics(timer)
        return numpy.array(numpy.asarray(osgDB.readImageFile(path)))[::-1, :, :3].astype(int)

    return draw


@pytest.fixture
def run_python(tmp_path):
    """Runs Python code in a fresh interpreter with every warning an error; gives its standard output."""

    folders = [*os.environ.get("PYTHONPATH", "").split(os.pathsep), TEST_MODULES]
    path = os.pathsep.join(os.path.abspath(folder) for folder in folders)

    def run(code, *arguments, check=True, environment=None):
        result = subprocess.run(
            [sys.executable, "-W", "error", "-X", "dev", "-c", code, *arguments],
            capture_output=True, text=True, cwd=tmp_path, timeout=300, env={**os.environ, "PYTHONPATH": path, **(environment or {})})
        if check:
            assert result.returncode == 0, result.stdout + result.stderr
            assert "memory leak" not in result.stdout + result.stderr
        return result

    return run


@pytest.fixture
def x_server(tmp_path):
    """The name of a display that nobody else uses."""
    if not shutil.which("Xvfb") or not shutil.which("xdotool"):
        pytest.skip("Xvfb and xdotool are needed")
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "640x480x24", "-nolisten", "tcp"],
                              pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as pipe:
        number = pipe.readline().strip()
    if not number:
        server.wait()
        pytest.skip("Xvfb cannot run here")
    yield ":" + number
    server.terminate()
    server.wait()
