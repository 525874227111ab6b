"""The first scene as its user starts it: files it leaves, what it prints, and how it ends when something is wrong."""

import os
import pathlib
import re
import signal
import subprocess
import sys
import textwrap
import time

import numpy
import pytest

import osgDB

SCENE = pathlib.Path(__file__).parents[2] / "examples" / "first_scene.py"
SMALL = ["--window", "320x180", "--stopAfter", "0.5"]


def environment(**changes):
    path = os.pathsep.join(os.path.abspath(p) for p in os.environ["PYTHONPATH"].split(os.pathsep))
    return {**os.environ, "PYTHONPATH": path, "DISPLAY": "", "WAYLAND_DISPLAY": "", **changes}


def start(folder, *arguments, script=SCENE, **changes):
    return subprocess.Popen(
        [sys.executable, "-W", "error", "-X", "dev", str(script), *arguments], cwd=folder, text=True,
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment(**changes))


def finish(process, seconds=120):
    out, err = process.communicate(timeout=seconds)
    assert "Traceback" not in out
    assert "memory leak" not in out + err
    assert "Fatal Python error" not in err
    return process.returncode, out, err


def run(folder, *arguments, **options):
    return finish(start(folder, *arguments, **options))


def stream(path):
    """Codec, width, height, rate and number of frames that a video says it has."""
    entries = "stream=codec_name,width,height,r_frame_rate,nb_frames"
    text = subprocess.run(["ffprobe", "-v", "error", "-select_streams", "v:0", "-show_entries", entries, "-of", "csv=p=0", path],
                          capture_output=True, text=True, check=True).stdout
    return text.strip().split(",")


def decoded(path, width, height):
    """All frames of a video as numpy pixels."""
    raw = subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                         capture_output=True, check=True).stdout
    return numpy.frombuffer(raw, dtype=numpy.uint8).reshape(-1, height, width, 3)


def leftovers(folder):
    """Files below a folder, cached byte code aside."""
    return sorted(str(p.relative_to(folder)) for p in pathlib.Path(folder).rglob("*") if p.is_file() and p.suffix != ".pyc")


@pytest.fixture(scope="module")
def result(tmp_path_factory):
    folder = tmp_path_factory.mktemp("scene")
    status, out, err = run(folder, *SMALL, "--output", "made/here")
    return status, out, err, folder / "made" / "here"


class TestFiles:
    def test_it_ends_well_and_says_where_the_files_are(self, result):
        status, out, err, folder = result
        assert status == 0, out + err
        assert str(folder) in out
        assert "313 bodies" in out and re.search(r"real-time factor \d", out)
        assert "Error" not in err and "Warning" not in err
        assert leftovers(folder) == ["first_scene.mp4", "first_scene.png"]

    def test_the_picture_shows_the_scene(self, result):
        pixels = numpy.asarray(osgDB.readImageFile(str(result[3] / "first_scene.png")))[..., :3].astype(int)
        assert pixels.shape == (180, 320, 3)
        assert len(numpy.unique(pixels.reshape(-1, 3) // 32, axis=0)) > 20  # many colours
        assert 40 < pixels.mean() < 230
        red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
        assert ((red > 90) & (red > 2 * green) & (red > 2 * blue)).sum() > 30  # some of the bodies
        top, bottom = pixels[-1].mean(axis=0), pixels[0].mean(axis=0)  # rows run upwards
        assert top[2] > top[0] + 20 and abs(top - bottom).max() > 10  # a sky, and something else below

    def test_the_video_plays(self, result):
        path = result[3] / "first_scene.mp4"
        codec, width, height, rate, count = stream(path)
        assert (codec, width, height, rate) == ("h264", "320", "180", "30/1")
        assert 14 <= int(count) <= 17  # half a second
        frames = decoded(path, 320, 180).astype(int)
        assert len(frames) == int(count)
        assert frames.std(axis=(1, 2, 3)).min() > 10
        assert abs(frames[-1] - frames[0]).max() > 60  # the bodies fall
        picture = numpy.asarray(osgDB.readImageFile(str(result[3] / "first_scene.png")))[::-1, :, :3].astype(int)
        assert min(abs(frame - picture).mean() for frame in frames) < 12  # the same scene, the same way up


class TestBadInput:
    @pytest.mark.parametrize("arguments, message", [
        (["--nonsense"], "--nonsense"),
        (["--window", "nonsense"], "--window nonsense: expected WIDTHxHEIGHT"),
        (["--window", "0x100"], "--window 0x100"),
        (["--stopAfter", "soon"], "--stopAfter"),
        (["--timeStep", "0"], "--timeStep"),
        (["--output"], "--output"),
    ], ids=lambda value: value[0] + "=" + value[-1] if isinstance(value, list) else "")
    def test_a_wrong_command_line_is_told_before_anything_is_made(self, tmp_path, arguments, message):
        status, out, err = run(tmp_path, *arguments)
        assert status == 2
        assert message in err and "--help" in err and "Traceback" not in err
        assert leftovers(tmp_path) == []

    def test_help_is_no_failure(self, tmp_path):
        status, out, err = run(tmp_path, "--help")
        assert status == 0 and err == ""
        for option in ("--output", "--model", "--stopAfter", "--window"):
            assert option in out

    def test_a_missing_model(self, tmp_path):
        status, out, err = run(tmp_path, *SMALL, "--output", "made", "--model", "missing.obj")
        assert status == 1
        assert 'Model file "missing.obj"' in err and "first_scene.py" in err and "glmark2-data" in err
        assert "picture and video" not in out
        assert leftovers(tmp_path) == []

    def test_a_model_that_is_no_mesh(self, tmp_path):
        (tmp_path / "text.obj").write_text("# nothing in it\n")
        status, out, err = run(tmp_path, *SMALL, "--output", "made", "--model", "text.obj")
        assert status == 1 and "text.obj" in err
        assert leftovers(tmp_path) == ["text.obj"]

    def test_an_output_folder_that_cannot_be_made(self, tmp_path):
        (tmp_path / "file").write_text("in the way")
        status, out, err = run(tmp_path, *SMALL, "--output", "file/below")
        assert status == 1
        assert f"{tmp_path}/file/below" in err and "Not a directory" in err
        assert (tmp_path / "file").read_text() == "in the way" and leftovers(tmp_path) == ["file"]

    def test_no_encoder_on_the_path(self, tmp_path):
        (tmp_path / "empty").mkdir()
        status, out, err = run(tmp_path, *SMALL, "--output", "made", PATH=str(tmp_path / "empty"))
        assert status == 1
        assert "'ffmpeg' is not on PATH" in err
        assert leftovers(tmp_path) == []

    def test_an_encoder_that_fails(self, tmp_path):
        program = tmp_path / "bin" / "ffmpeg"
        program.parent.mkdir()
        program.write_text("#!/bin/sh\necho 'no room for films' >&2\nexit 3\n")
        program.chmod(0o755)
        status, out, err = run(tmp_path, *SMALL, "--output", "made", PATH=f"{program.parent}:{os.environ['PATH']}")
        assert status == 1 and "no room for films" in err
        assert not (tmp_path / "made" / "first_scene.mp4").exists()


STARTER = """
import sys, osg, zor, zorIO, zorOSG
application = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(sys.argv[:1] + ["--window", "64x48", "--stopAfter", "0.1", "--captureVideo", "video.mp4"])
if not application.init(arguments):
    sys.exit(application.getExitCode())
application.addScene(sys.argv[1], "build", ord("1"))
sys.exit(application.run())
"""


class TestScripts:
    def run_scene(self, folder, code, name="scene.py"):
        (folder / name).write_text(textwrap.dedent(code))
        (folder / "starter.py").write_text(STARTER)
        return run(folder, str(folder / name), script=folder / "starter.py")

    @pytest.mark.parametrize("code, words", [
        ("def build(:\n    pass\n", ["scene.py", "line 1", "SyntaxError"]),
        ("import no_such_module\n", ["scene.py", "ModuleNotFoundError", "no_such_module"]),
        ("def build():\n    return 1 / 0\n", ["scene.py", "line 2", "build", "ZeroDivisionError"]),
        ("def other():\n    pass\n", ["scene.py", "build"]),
        ("import zor\ndef build():\n    zor.RigidBody().setPosition('high')\n",
         ["scene.py", "line 3", "TypeError", "RigidBody_setPosition", "argument 2", "zor::Vec3 const &"]),
        ("import zorCollide\ndef build():\n    zorCollide.Sphere(-1)\n", ["scene.py", "line 3", "Sphere", "-1"]),
    ], ids=["syntax", "import", "raise", "no function", "argument", "toolkit"])
    def test_a_broken_scene_is_told_with_its_place(self, tmp_path, code, words):
        status, out, err = self.run_scene(tmp_path, code)
        assert status == 1
        for word in words:
            assert word in err, err
        assert "video.mp4" not in leftovers(tmp_path)

    def test_a_script_that_is_not_there(self, tmp_path):
        (tmp_path / "starter.py").write_text(STARTER)
        status, out, err = run(tmp_path, "gone.py", script=tmp_path / "starter.py")
        assert status == 1 and "gone.py" in err
        assert leftovers(tmp_path) == ["starter.py"]

    def test_a_good_scene(self, tmp_path):
        status, out, err = self.run_scene(tmp_path, "import osg\ndef build():\n    return osg.Group()\n")
        assert status == 0, err
        codec, width, height, rate, count = stream(tmp_path / "video.mp4")
        assert (codec, width, height) == ("h264", "64", "48") and int(count) >= 3


class TestInterrupt:
    def test_ctrl_c_ends_the_video_or_leaves_none(self, tmp_path):
        process = start(tmp_path, "--window", "320x180", "--stopAfter", "500", "--output", "made")
        try:
            deadline = time.monotonic() + 60
            while time.monotonic() < deadline and process.poll() is None:
                if list(tmp_path.glob("made/*")) and process.stdout.readline():  # the scene is built
                    break
                time.sleep(0.05)
            time.sleep(1.0)
            assert process.poll() is None
            process.send_signal(signal.SIGINT)
            status, out, err = finish(process, 60)
        finally:
            if process.poll() is None:
                process.kill()
        assert status != 0
        assert "picture and video" not in out
        video = tmp_path / "made" / "first_scene.mp4"
        if video.exists():
            assert len(decoded(video, 320, 180)) == int(stream(video)[4]) > 0
        assert [name for name in leftovers(tmp_path) if not name.endswith(("first_scene.mp4", "first_scene.png"))] == []
