"""A window on a display of its own: its place and size, input from the X server, and a scene that is mended in an editor."""

import os
import subprocess
import sys
import textwrap
import threading
import time

import pytest


class Window:
    """A script that runs in a window, as one who sits in front of it has it."""

    def __init__(self, display, folder, code, *arguments):
        self.environment = {**os.environ, "DISPLAY": display, "PYTHONUNBUFFERED": "1"}
        path = [os.path.abspath(entry) for entry in os.environ["PYTHONPATH"].split(os.pathsep)]
        self.environment["PYTHONPATH"] = os.pathsep.join(path)
        self.process = subprocess.Popen(
            [sys.executable, "-X", "dev", "-c", textwrap.dedent(code), *arguments], env=self.environment, text=True,
            cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.lines = []
        self.changed = threading.Condition()
        self.reader = threading.Thread(target=self.read)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            with self.changed:
                self.lines.append(line.rstrip("\n"))
                self.changed.notify_all()

    @property
    def text(self):
        return "\n".join(self.lines)

    def wait_for(self, word, count=1, seconds=120):
        """The line that says the word for the given time."""
        def found():
            return [line for line in self.lines if word in line]

        with self.changed:
            told = self.changed.wait_for(lambda: len(found()) >= count or self.process.poll() is not None, seconds)
            assert told and len(found()) >= count, f"no {word!r} in\n{self.text}"
            return found()[count - 1]

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.environment, check=True, timeout=60)

    def geometry(self, handle):
        """X, Y, WIDTH and HEIGHT as the X server has them."""
        told = subprocess.run(["xdotool", "getwindowgeometry", "--shell", str(handle)], env=self.environment, check=True,
                              capture_output=True, text=True, timeout=60).stdout
        numbers = dict(line.split("=") for line in told.split())
        return [int(numbers[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")]

    def end(self):
        self.process.kill()
        self.process.wait()
        self.reader.join()


@pytest.fixture
def open_window(x_server, tmp_path):
    windows = []

    def start(code, *arguments):
        windows.append(Window(x_server, tmp_path, code, *arguments))
        return windows[-1]

    yield start
    for window in windows:
        window.end()


LOOK = """
    import sys, zor, zorIO, zorOSG
    class Watcher(zorOSG.ExampleApplicationListener):
        told = None
        def postFrame(self, app):
            size = app.getSceneDecorator().getWindowSize()
            now = (size.x(), size.y())
            if now != self.told:
                self.told = now
                print("size", *now, app.getHWND())
    class Input(zorOSG.GuiEventListener):
        def keyboard(self, key, modKeyMask, x, y, keydown):
            if keydown and key == ord("m"):
                print("moved", app.setWindowRectangle(70, 60, 200, 150), app.setWindowTitle("another"))
            return False
        def mouse(self, button, state, x, y):
            print("button", button, state, round(x), round(y))
            return False
    app = zorOSG.ExampleApplication()
    app.init(zorIO.ArgumentParser(["look", *sys.argv[1:]]))
    app.initSimulation()
    watcher, listener = Watcher(), Input()
    app.addListener(watcher)
    app.getSimulation().add(listener)
    sys.exit(app.run())
"""


def test_place_size_title_and_input(open_window):
    window = open_window(LOOK, "--window", "160x120+30+20", "--noVsync")
    handle = window.wait_for("size 160 120").split()[-1]
    assert window.geometry(handle) == [30, 20, 160, 120]
    window.do("windowfocus", handle)
    window.do("mousemove", "--window", handle, 40, 30, "click", 1)
    assert window.wait_for("button 1 1") == "button 1 1 40 90"  # from the lower edge
    window.do("key", "m")
    window.wait_for("moved True True")
    window.wait_for("size 200 150")
    assert window.geometry(handle) == [70, 60, 200, 150]
    name = subprocess.run(["xdotool", "getwindowname", handle], env=window.environment, capture_output=True, text=True, timeout=60)
    assert name.stdout.strip() == "another"
    window.do("windowsize", handle, 240, 180)
    window.wait_for("size 240 180")
    window.do("key", "Escape")
    assert window.process.wait(60) == 0


def test_full_screen(open_window):
    window = open_window(LOOK, "--fullScreen", "--window", "160x120", "--stopAfter", "1")
    handle = window.wait_for("size 640 480").split()[-1]
    assert window.geometry(handle) == [0, 0, 640, 480]
    assert window.process.wait(60) == 0


def test_a_broken_scene_waits_in_its_window_until_it_is_mended(open_window, tmp_path):
    scene = tmp_path / "scene.py"
    scene.write_text("def build():\n    return 1 / 0\n")
    window = open_window("""
        import sys, zorIO, zorOSG
        app = zorOSG.ExampleApplication()
        app.init(zorIO.ArgumentParser(["broken", "--window", "640x360"]))
        app.addScene("scene.py", "build")
        class Shooter(zorOSG.ExampleApplicationListener):
            frames = 0
            def preFrame(self, app):
                self.frames += 1
                if self.frames == 10:
                    app.takeScreenShot("broken.png")
                elif self.frames == 20:
                    print("alive")
        shooter = Shooter()
        app.addListener(shooter)
        sys.exit(app.run())
    """)
    window.wait_for("alive")
    assert "ZeroDivisionError" in window.text and "scene.py\", line 2" in window.text
    scene.write_text("def build():\n    raise KeyError('still wrong')\n")
    window.wait_for("still wrong")
    scene.write_text("import zorOSG\ndef build():\n    print('mended')\n    zorOSG.getCurrentApplication().stopAfter(0.1)\n")
    window.wait_for("mended")
    assert window.process.wait(60) == 0, window.text
    assert (tmp_path / "broken.png").exists()
