"""Recordings: every frame once, in time and as it was drawn, and what happens when they cannot go on."""

import math
import multiprocessing
import os
import pathlib
import signal
import subprocess
import sys
import time

import numpy
import pytest

import osg
import osgDB
import zor
import zorCollide
import zorIO
import zorOSG

LOSSLESS = {"codec": zorOSG.VideoFFMPEGPipeCapture.OutputCodec_H264RGB, "lossless": True}


@pytest.fixture
def application(new_application):
    """A red ball without weight, five metres away."""
    app = new_application("--window", "160x120")
    app.getSimulation().setUniformGravity(zor.Vec3())
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.5)), "ball")
    app.getSimulation().add(body)
    zorOSG.setDiffuseColor(zorOSG.createVisual(body, app.getSceneRoot()), zor.Vec4f(1, 0, 0, 1))
    app.setCameraHome(zor.Vec3(0, -5, 0), zor.Vec3())
    return app


@pytest.fixture
def steps(application):
    """Draws a number of frames, one for each step."""
    timer = zor.HighAccuracyTimer(True)

    def draw(count):
        for _ in range(count):
            application.executeOneStepWithGraphics(timer)

    return draw


def names(folder):
    return sorted(path.name for path in folder.iterdir())


def color_of(number):
    return numpy.array([number % 256, number // 256 * 40 + 7, 255 - number % 100], numpy.uint8)


class Counted(zorOSG.ExampleApplicationListener):
    """Gives every frame a colour that tells its number."""

    def __init__(self, target):
        super().__init__()
        self.target, self.number = target, 0

    def preFrame(self, application):
        red, green, blue = color_of(self.number) / 255
        self.target.getCamera().setClearColor(osg.Vec4f(red, green, blue, 1))
        self.number += 1


def burn(seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        pass


@pytest.fixture
def full_load():
    workers = [multiprocessing.get_context("spawn").Process(target=burn, args=(120,), daemon=True) for _ in range(os.cpu_count() or 1)]
    for worker in workers:
        worker.start()
    yield
    for worker in workers:
        worker.terminate()
        worker.join()


def show_numbers(application, size):
    target = zorOSG.RenderToTexture(*size, zorOSG.RenderTarget.COLOR_BUFFER, 0)
    application.addRenderTarget(target, osg.Group())
    listener = Counted(target)
    application.addListener(listener)
    return target, listener


def check_numbers(pictures, count):
    assert len(pictures) == count
    wrong = [number for number, picture in enumerate(pictures) if (picture != color_of(number)).any()]
    assert not wrong, f"other frames than they should be, or other colours: {wrong}"


FRAMES = int(os.environ.get("ZOR_TEST_FRAMES", "150"))


class TestFrames:
    def test_every_frame_once_and_exact_under_full_load(self, application, steps, tmp_path, full_load):
        """One video frame for each step of 1/60 s, numbered by their colours."""
        application.setTimeStep(1 / 60)
        target, listener = show_numbers(application, (320, 240))
        with target.record(str(tmp_path / "n.mkv"), 60, simulation=application.getSimulation(), **LOSSLESS) as recording:
            steps(FRAMES)
            assert recording.frames == listener.number == FRAMES
        check_numbers(zorOSG.videoFrames(str(tmp_path / "n.mkv")), FRAMES)
        told = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "packet=pts_time", "-of", "csv=p=0", str(tmp_path / "n.mkv")],
                              capture_output=True, text=True, check=True).stdout.split()
        times = numpy.sort([float(line.strip(",")) for line in told])
        assert numpy.abs(times - numpy.arange(FRAMES) / 60).max() < 1e-3

    @pytest.mark.parametrize("suffix", ["png", "bmp", "tif", "jpg"])
    def test_numbered_pictures(self, application, steps, tmp_path, suffix):
        application.setTimeStep(1 / 60)
        target, _ = show_numbers(application, (30, 20))
        with target.record(str(tmp_path / "made" / f"n_.{suffix}"), 60, simulation=application.getSimulation()):
            steps(40)
        assert names(tmp_path / "made") == [f"n_{number:05}.{suffix}" for number in range(40)]
        pictures = [osgDB.readImageFile(str(path)).asArray(topFirst=True) for path in sorted((tmp_path / "made").iterdir())]
        assert {picture.shape for picture in pictures} == {(20, 30, 3)}
        if suffix == "jpg":
            assert max(numpy.abs(p.astype(int) - color_of(n)).max() for n, p in enumerate(pictures)) < 8
        else:
            check_numbers(pictures, 40)

    def test_the_main_view_in_both_kinds_of_loop(self, application, steps, tmp_path):
        application.setTimeStep(1 / 60)
        with application.record(str(tmp_path / "steps.mkv"), 30, lossless=True):
            steps(30)
        with application.record(str(tmp_path / "run.mp4"), 30, speed=2):
            application.stopAfter(application.getTimeStamp() + 1)
            assert application.run() == 0
        assert len(zorOSG.videoFrames(str(tmp_path / "steps.mkv"))) == 15
        assert len(zorOSG.videoFrames(str(tmp_path / "run.mp4"))) == pytest.approx(15, abs=1)
        application.takeScreenShot(str(tmp_path / "shot.png"))
        steps(2)
        shot = osgDB.readImageFile(str(tmp_path / "shot.png")).asArray(topFirst=True)
        video = zorOSG.videoFrames(str(tmp_path / "steps.mkv"), 1)[0]
        assert (shot == video).all()  # nothing has moved

    def test_encoded_frames_are_near_what_was_drawn(self, application, steps, tmp_path):
        """At least 38 dB at the rate factor that is set if nothing is said, half the colour resolution included."""
        target = zorOSG.RenderToImage(320, 240)
        target.setReferenceCamera(application.getCamera())
        application.addRenderTarget(target)
        for path, settings in (("a.mp4", {}), ("b.avi", {}), ("c.mp4", {"crf": 0})):
            with target.record(str(tmp_path / path), simulation=application.getSimulation(), **settings):
                steps(12)
            frame = zorOSG.videoFrames(str(tmp_path / path))[-1].astype(float)
            noise = numpy.mean((frame - target.asArray(topFirst=True)[..., :3]) ** 2)
            assert 10 * math.log10(255**2 / noise) > 38, path

    def test_a_new_size_and_a_new_start(self, application, steps, tmp_path):
        target = zorOSG.RenderToImage(64, 48)
        target.setReferenceCamera(application.getCamera())
        application.addRenderTarget(target)
        video = zorOSG.VideoFFMPEGPipeCapture(64, 48, 60.0, application.getSimulation())
        images = zorOSG.ImageCapture(application.getSimulation())
        images.setDirectoryPath(str(tmp_path / "images"))
        images.setPostfix("png")
        for capture, name in ((video, "first"), (images, ""), (video, "second")):
            if capture is video:
                video.setFilename(str(tmp_path / f"{name}.mp4"))
            target.setImageCapture(capture)
            target.setSize(64, 48)
            capture.startCapture(3)
            steps(3)
            target.setSize(32, 24)
            steps(3)
            assert capture.getImageNum() > 3
            assert video.stopProcess() if capture is video else capture.stopCapture()
        assert names(tmp_path) == ["first.mp4", "images", "second.mp4"]
        sizes = [osgDB.readImageFile(str(path)).asArray().shape[:2] for path in sorted((tmp_path / "images").iterdir())]
        assert sizes[0] == (48, 64) and sizes[-1] == (24, 32)
        frames = zorOSG.videoFrames(str(tmp_path / "second.mp4"))
        assert (numpy.abs(frames[0].astype(int) - frames[-1]) < 60).mean() > 0.97  # the small one is scaled

    @pytest.mark.parametrize("suffix", ["gif", "webp", "apng"])
    def test_animations(self, application, steps, tmp_path, suffix):
        application.setTimeStep(1 / 60)
        with application.record(str(tmp_path / f"ball.{suffix}"), 20):
            steps(60)
        assert names(tmp_path) == [f"ball.{suffix}"]
        if suffix == "webp":  # the tools make these, but do not read them
            assert (tmp_path / "ball.webp").read_bytes()[:4] == b"RIFF"
            return
        frames = zorOSG.videoFrames(str(tmp_path / f"ball.{suffix}"))
        assert len(frames) == 20 and frames[0].shape == (120, 160, 3)
        assert frames[5][60, 80, 0] > 3 * frames[5][60, 80, 1]


class TestPixels:
    def test_views_share_the_memory_and_live(self, application, steps):
        target = zorOSG.RenderToImage(40, 30)
        target.setReferenceCamera(application.getCamera())
        application.addRenderTarget(target)
        application.getSimulation().getRigidBody("ball").setPosition(zor.Vec3(0.5, 0, 0.8))
        steps(1)
        up, down = target.asArray(), target.asArray(topFirst=True)
        assert up.shape == (30, 40, 4) and numpy.shares_memory(up, down) and (up[::-1] == down).all()
        rows, columns = numpy.nonzero(down[..., 0] > 2.0 * down[..., 1] + 20)
        assert rows.mean() < 13 and columns.mean() > 22  # the ball is up and to the right
        kept = up.copy()
        target.setSize(400, 300)
        steps(1)
        assert (up == kept).all() and target.asArray().shape == (300, 400, 4)
        application.removeRenderTarget(target)
        del target
        assert (up == kept).all()

    def test_a_later_frame_comes_into_the_same_memory(self, application, steps):
        target, _ = show_numbers(application, (8, 8))
        image = zorOSG.RenderToImage(8, 8, zorOSG.RenderTarget.COLOR_BUFFER, 0, zorOSG.RenderTarget.RGB)
        application.addRenderTarget(image, osg.Group())
        listener = Counted(image)
        application.addListener(listener)
        steps(1)
        pixels = image.asArray()
        for number in range(1, 5):
            steps(1)
            assert (pixels == color_of(number)).all()

    @pytest.mark.parametrize("perspective", [True, False])
    def test_depth_is_in_metres(self, application, steps, perspective):
        target = zorOSG.RenderToImage(65, 49, zorOSG.RenderTarget.DEPTH_BUFFER)
        application.addRenderTarget(target)
        assert numpy.isinf(target.depthArray()).all()
        target.setViewMatrixAsLookAt(zor.Vec3(0, -5, 0), zor.Vec3(), zor.Vec3(0, 0, 1))
        if perspective:
            target.setProjectionMatrixAsPerspective(30, 65 / 49, 0.1, 1000)
        else:
            target.setProjectionMatrixAsOrtho(-1.3, 1.3, -1, 1, 0.1, 1000)
        application.getSimulation().getRigidBody("ball").setPosition(zor.Vec3(0, 0, 0.3))
        steps(1)
        depth = target.depthArray(topFirst=True)
        assert depth.shape == (49, 65) and depth.dtype == numpy.float32
        assert depth.min() == pytest.approx(4.5, abs=0.01) and numpy.isinf(depth[-1, 0])
        row, _ = numpy.unravel_index(depth.argmin(), depth.shape)
        assert row < 20
        with pytest.raises(ValueError, match="DEPTH_BUFFER"):
            zorOSG.RenderToImage(4, 4).depthArray()

    def test_contact_sheets(self, tmp_path):
        red, grey = numpy.full((20, 30, 3), (255, 0, 0), numpy.uint8), numpy.full((10, 30), 128, numpy.uint8)
        sheet = zorOSG.contactSheet([red, osg.Image.fromArray(red), grey], 2, gap=2, background=(0, 0, 255), path=str(tmp_path / "s.png"))
        pixels = sheet.asArray(topFirst=True)
        assert pixels.shape == (46, 66, 3) and (osgDB.readImageFile(str(tmp_path / "s.png")).asArray(topFirst=True) == pixels).all()
        assert tuple(pixels[10, 10]) == (255, 0, 0) and tuple(pixels[0, 0]) == (0, 0, 255) and tuple(pixels[34, 10]) == (128,) * 3
        assert tuple(pixels[26, 10]) == (0, 0, 255) == tuple(pixels[34, 40])  # a smaller one is in the middle, a missing one empty
        assert zorOSG.contactSheet([str(tmp_path / "s.png")] * 3, width=33, gap=0).asArray().shape == (46, 66, 3)
        for wrong, message in (([], "a picture"), ([numpy.zeros((2, 2, 3))], "8-bit"), ([str(tmp_path / "none.png")], "none.png")):
            with pytest.raises((ValueError, RuntimeError), match=message):
                zorOSG.contactSheet(wrong)


def children():
    found = []
    for thread in pathlib.Path("/proc/self/task").iterdir():
        found += [int(child) for child in (thread / "children").read_text().split()]
    return [child for child in found if "ffmpeg" in pathlib.Path(f"/proc/{child}/cmdline").read_text()]


class TestFaults:
    def test_an_exception_in_the_block(self, application, steps, tmp_path):
        with pytest.raises(ZeroDivisionError), application.record(str(tmp_path / "v.mp4")):
            steps(20)
            1 / 0
        assert names(tmp_path) == ["v.mp4"] and len(zorOSG.videoFrames(str(tmp_path / "v.mp4"))) > 5
        with pytest.raises(ZeroDivisionError), application.record(str(tmp_path / "i.png")):
            steps(3)
            1 / 0
        assert "i00000.png" in names(tmp_path)

    def test_two_at_a_time(self, application, steps, tmp_path):
        with application.record(str(tmp_path / "v.mp4")):
            with pytest.raises(RuntimeError, match="already recording"), application.record(str(tmp_path / "w.mp4")):
                pass
            steps(5)
        assert names(tmp_path) == ["v.mp4"]
        for wrong, error in (("v", ValueError), ("v.nosuch", RuntimeError), (str(tmp_path / "v.mp4" / "w.mp4"), RuntimeError)):
            with pytest.raises(error), application.record(wrong):
                pass

    def test_an_encoder_that_is_killed(self, application, steps, tmp_path, capfd):
        with pytest.raises(RuntimeError, match="could not be finished"), application.record(str(tmp_path / "v.mp4"), 60):
            steps(300)
            os.kill(children()[0], signal.SIGKILL)
            steps(300)
            assert not application.getVideoServerCapture().getCaptureStarted()
            before = application.getTimeStamp()
            steps(10)  # goes on
            assert application.getTimeStamp() > before
        error = capfd.readouterr().err
        assert "Killed" in error and "v.incomplete.mp4" in error
        assert names(tmp_path) == ["v.incomplete.mp4"] and children() == []
        assert 60 < len(zorOSG.videoFrames(str(tmp_path / "v.incomplete.mp4"))) <= 300
        with application.record(str(tmp_path / "again.mp4")):  # another one is no worse for it
            steps(10)
        assert "again.mp4" in names(tmp_path)

    @pytest.mark.parametrize("kind", ["mp4", "mkv", "png"])
    def test_a_full_disk(self, run_python, tmp_path, kind):
        """A limit of the size of files makes writing fail as a full disk does."""
        result = run_python(f"""
import resource, numpy, osg, zorOSG
resource.setrlimit(resource.RLIMIT_FSIZE, (400_000, 400_000) if {kind!r} != "png" else (20_000, 20_000))
image = osg.Image()
image.allocate(160, 120, 3)
noise = numpy.random.default_rng(1)
if {kind!r} == "png":
    capture = zorOSG.ImageCapture()
    capture.setPostfix("png")
else:
    capture = zorOSG.VideoFFMPEGPipeCapture(160, 120, 30.0)
    capture.setFilename("v.{kind}")
    capture.init()
number = 0
try:
    for number in range(2000):
        numpy.asarray(image)[:] = noise.integers(0, 256, (120, 160, 3), dtype=numpy.uint8)
        capture.writeImage(image, number)
except RuntimeError as error:
    print(number, error)
print({kind!r} == "png" or capture.stopProcess())
""")
        number, told = result.stdout.split(" ", 1)
        assert "File too large" in told or "too large" in told
        if kind == "png":
            assert int(number) == 0 and names(tmp_path) == []
            return
        assert int(number) > 5 and told.endswith("False\n") and names(tmp_path) == [f"v.incomplete.{kind}"]
        assert len(zorOSG.videoFrames(str(tmp_path / f"v.incomplete.{kind}"))) > 3

    def test_a_folder_that_vanishes(self, application, steps, tmp_path, capfd):
        folder = tmp_path / "gone"
        with pytest.raises(RuntimeError, match="could not be finished"), application.record(str(folder / "i_.png"), 60):
            steps(5)
            while list(folder.iterdir()):
                for path in folder.iterdir():
                    path.unlink(missing_ok=True)
            folder.rmdir()
            steps(20)
        assert "No such file" in capfd.readouterr().err and names(tmp_path) == []

    def test_no_encoder_and_no_place_for_its_pipe(self, application, steps, tmp_path, monkeypatch):
        with monkeypatch.context() as patch:
            patch.setenv("PATH", str(tmp_path))
            with pytest.raises(RuntimeError, match="'ffmpeg' is not on PATH"), application.record(str(tmp_path / "v.mp4")):
                pass
        with monkeypatch.context() as patch:
            patch.setenv("TMPDIR", str(tmp_path / "nowhere"))
            with pytest.raises(RuntimeError, match="named pipe.*nowhere"), application.record(str(tmp_path / "v.mp4")):
                pass
        assert names(tmp_path) == []
        with application.record(str(tmp_path / "v.mp4")):
            steps(5)
        assert names(tmp_path) == ["v.mp4"]

    @pytest.mark.parametrize("end", ["raise ValueError('on purpose')", "import sys; sys.exit(3)", "pass",
                                     "import os, signal; os.kill(os.getpid(), signal.SIGINT)"])
    def test_however_a_script_ends_its_video_is_finished(self, run_python, tmp_path, end):
        """Even when somebody still holds the capture, so that it is never destroyed."""
        (tmp_path / "pipes").mkdir()
        result = run_python(f"""
import ctypes, zor, zorIO, zorOSG
app = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(["test", "--window", "64x48", "--offscreen"])
app.init(arguments)
app.initSimulation()
video = app.getVideoServerCapture()
video.setFilename("v.mp4")
video.startCapture()
for object in (app, video):
    ctypes.pythonapi.Py_IncRef(ctypes.py_object(object))
timer = zor.HighAccuracyTimer(True)
for _ in range(60):
    app.executeOneStepWithGraphics(timer)
{end}
""", check=False, environment={"TMPDIR": str(tmp_path / "pipes")})
        assert "memory leak" not in result.stdout + result.stderr
        assert (result.returncode == 0) == (end == "pass")
        assert names(tmp_path) == ["pipes", "v.mp4"] and names(tmp_path / "pipes") == []
        assert len(zorOSG.videoFrames(str(tmp_path / "v.mp4"))) >= 20

    def test_an_interrupted_run(self, tmp_path):
        script = tmp_path / "run.py"
        script.write_text("""
import sys, zorIO, zorOSG
app = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(["test", "--window", "64x48", "--offscreen"])
app.init(arguments)
with app.record(sys.argv[1]):
    app.run()
""")
        process = subprocess.Popen([sys.executable, script, tmp_path / "v.mp4"], stderr=subprocess.DEVNULL, text=True)
        while not (tmp_path / ".v.partial.mp4").exists() or (tmp_path / ".v.partial.mp4").stat().st_size < 2000:
            assert process.poll() is None
            time.sleep(0.05)
        process.send_signal(signal.SIGINT)
        process.wait(60)
        assert names(tmp_path) == ["run.py", "v.mp4"] and len(zorOSG.videoFrames(str(tmp_path / "v.mp4"))) > 10


def test_several_targets_in_a_window(x_server, run_python, tmp_path):
    result = run_python("""
import numpy, osg, zor, zorIO, zorOSG
app = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(["test", "--window", "200x150"])
app.init(arguments)
app.initSimulation()
app.setRealTimeSync(False)
targets = [zorOSG.RenderToImage(40 + 10 * i, 30, zorOSG.RenderTarget.COLOR_BUFFER, i) for i in (0, 2, 8)]
for i, target in enumerate(targets):
    target.getCamera().setClearColor(osg.Vec4f(0.2 * i, 1, 0, 1))
    app.addRenderTarget(target, osg.Group())
timer = zor.HighAccuracyTimer(True)
app.setTargetFPS(0)
for size in ((40, 30), (50, 35)):
    for _ in range(3):
        app.executeOneStepWithGraphics(timer)
    for i, target in enumerate(targets):
        assert (target.asArray() == (51 * i, 255, 0, 255)).all(), (size, i)
        target.setSize(*size)
print("window" if not app.hasOffscreenWindow() else "off screen")
""", environment={"DISPLAY": x_server})
    assert result.stdout.endswith("window\n")
