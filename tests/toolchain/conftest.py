import os
import stat
import subprocess

import pytest
from zorcmd.layout import REPOSITORY


@pytest.fixture
def zor():
    """Runs ./zor with arguments and returns the completed process."""

    def run(*arguments, cwd=None, **environ):
        values = {key: value for key, value in os.environ.items() if key not in ("PYTHONPATH", "LD_PRELOAD")}
        values.update(environ)
        return subprocess.run(
            [REPOSITORY / "zor", *map(str, arguments)], cwd=cwd, env=values, capture_output=True, text=True, timeout=300, check=False
        )

    return run


@pytest.fixture
def programs(tmp_path):
    """A folder of stand-in programs; calling it with a name and shell lines adds one."""
    folder = tmp_path / "programs"
    folder.mkdir()

    def add(name, lines):
        path = folder / name
        path.write_text("#!/bin/sh\n" + lines + "\n")
        path.chmod(path.stat().st_mode | stat.S_IXUSR)
        return path

    add.folder = folder
    return add
