"""The viewer inside a window of Qt, with a person's mouse and keyboard."""

import pathlib
import shutil
import subprocess
import sys

import numpy
import pytest

import osgDB

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"

DRIVER = """
import subprocess, sys
from PySide6.QtCore import QPoint, QTimer
from PySide6.QtGui import QSurfaceFormat
from PySide6.QtWidgets import QApplication
sys.path.insert(0, sys.argv[1])
import qt_viewer, zorSDK

class Input(zorSDK.GuiEventListener):
    def __init__(self):
        super().__init__()
        self.seen = []

    def keyboard(self, key, modifiers, x, y, down):
        self.seen.append((chr(key), bool(modifiers & zorSDK.GuiEventListener.MODKEY_SHIFT), down))
        return False

surface = QSurfaceFormat()
if sys.argv[2] == "core":
    surface.setProfile(QSurfaceFormat.OpenGLContextProfile.CoreProfile)
    surface.setVersion(3, 3)
QSurfaceFormat.setDefaultFormat(surface)
program = QApplication(sys.argv[:1])
window = qt_viewer.Window(0, "")
window.setGeometry(0, 0, 640, 400)
window.show()
if sys.argv[2] == "core":
    code = program.exec()
    window.close()
    sys.exit(code)

def eye():
    return [round(number, 6) for number in window.view.window3d.getCamera().getInverseViewMatrix().getTrans()]

def at(x, y):
    point = window.view.mapToGlobal(QPoint(x, y))
    return ["mousemove", point.x(), point.y()]

listener, eyes = Input(), []
steps = [
    lambda: window.simulation.add(listener),
    [*at(200, 200), "click", 1],  # the focus
    lambda: eyes.append(eye()),
    [*at(200, 200), "mousedown", 1],
    at(240, 210),
    at(280, 220),
    ["mouseup", 1],
    lambda: eyes.append(eye()),
    ["click", 4],
    lambda: eyes.append(eye()),
    ["key", "k"],
    ["keydown", "shift", "key", "m", "keyup", "shift"],
    lambda: window.resize(520, 360),
    lambda: window.drop_ten(),
    lambda: window.close(),
]

def step():
    action = steps.pop(0)
    if callable(action):
        action()
    else:
        subprocess.run(["xdotool", *map(str, action)], check=True, timeout=60)
    if steps:
        QTimer.singleShot(250, step)

QTimer.singleShot(500, step)
code = program.exec()
print("turned", eyes[0] != eyes[1], "zoomed", eyes[1] != eyes[2])
print("keys", listener.seen)
print("bodies", len(window.simulation.getRigidBodies()))
sys.exit(code)
"""


def run_in_display(*command):
    if not shutil.which("xvfb-run") or not shutil.which("xdotool"):
        pytest.skip("xvfb-run and xdotool are needed")
    return subprocess.run(["xvfb-run", "-a", sys.executable, *map(str, command)], capture_output=True, text=True, timeout=300)


def test_the_example_shows_its_bodies(tmp_path):
    picture = tmp_path / "window.png"
    result = run_in_display(EXAMPLES / "qt_viewer.py", "--screenShot", picture, "--stopAfter", "3")
    assert result.returncode == 0 and "Traceback" not in result.stderr, result.stderr
    pixels = numpy.asarray(osgDB.readImageFile(str(picture))).astype(int)
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    assert ((red > 1.5 * green) & (red > 1.5 * blue)).sum() > 300  # red bodies
    assert ((red > 1.2 * green) & (green > 1.5 * blue)).sum() > 300  # yellow ones


def test_mouse_and_keys_reach_the_viewer():
    result = run_in_display("-c", DRIVER, EXAMPLES, "compatible")
    assert result.returncode == 0 and "Traceback" not in result.stderr, result.stderr
    assert "turned True zoomed True" in result.stdout and "bodies 35" in result.stdout, result.stdout
    assert "('k', False, True), ('k', False, False)" in result.stdout and "('M', True, True)" in result.stdout, result.stdout


def test_a_context_that_cannot_be_drawn_to_ends_the_program():
    result = run_in_display("-c", DRIVER, EXAMPLES, "core")
    assert result.returncode == 1 and "the compatibility profile is needed" in result.stderr and "Traceback" not in result.stderr, result.stderr
