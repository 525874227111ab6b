"""The examples that no other test runs."""

import pathlib
import subprocess
import sys

import numpy

import osgDB

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"


def test_listeners_colour_by_speed(tmp_path):
    picture = tmp_path / "balls.png"
    result = subprocess.run([sys.executable, EXAMPLES / "listeners.py", "--screenShot", picture, "--stopAfter", "1.8", "--window", "480x270"],
                            capture_output=True, text=True, timeout=300)
    assert result.returncode == 0 and "Traceback" not in result.stderr, result.stderr
    pixels = numpy.asarray(osgDB.readImageFile(str(picture))).astype(int)
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    slow, medium, fast = blue > 2 * red, green > 1.6 * numpy.maximum(red, blue), red > 2 * numpy.maximum(green, blue)
    assert min(slow.sum(), medium.sum(), fast.sum()) > 50
