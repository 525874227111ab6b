"""What the guide shows is what happens."""

import os
import pathlib
import re
import subprocess
import sys

import pytest

import osg
import zor
import zorOSG

DOCS = pathlib.Path(__file__).parents[2] / "docs"


def pieces(page):
    """(code, the text below it) of each piece of Python."""
    return re.findall(r"^```python\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", (DOCS / page).read_text(), re.M | re.S)


def test_getting_started_prints_what_it_says(tmp_path):
    mark = "---- next piece"
    shown = pieces("getting-started.md")
    script = tmp_path / "script.py"
    script.write_text(f"print({mark!r})\n".join(code for code, _ in shown))
    environment = {**os.environ, "PYTHONPATH": os.path.dirname(zor.__file__)}
    result = subprocess.run([sys.executable, script.name], cwd=tmp_path, capture_output=True, text=True, timeout=300, env=environment)
    assert result.returncode == 0 and "Traceback" not in result.stderr, result.stderr
    assert result.stdout.split(mark + "\n") == [text for _, text in shown]
    assert (tmp_path / "my_picture.png").stat().st_size > 1000


@pytest.mark.parametrize("code, message", pieces("troubleshooting.md"))
def test_troubles_are_those_that_happen(code, message):
    with pytest.raises(Exception) as raised:
        exec(code, {"osg": osg, "zor": zor, "zorOSG": zorOSG})
    assert f"{raised.type.__name__}: {raised.value}".startswith(message.strip())
