"""Off-screen targets, image and video captures, and screen shots as a script uses them."""

import gc
import math
import subprocess

import numpy
import pytest

import _zorOSG
import osg
import osgDB
import zor
import zorCollide
import zorIO
import zorOSG

NEAR, FAR, DISTANCE, RADIUS = 1.0, 10.0, 5.0, 0.5


@pytest.fixture
def application(new_application):
    """A red sphere without weight, seen from five metres away."""
    app = new_application("--window", "160x120")
    app.getSimulation().setUniformGravity(zor.Vec3())
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(RADIUS)), "ball")
    app.getSimulation().add(body)
    zorOSG.setDiffuseColor(zorOSG.createVisual(body, app.getSceneRoot()), zor.Vec4f(1, 0, 0, 1))
    app.setCameraHome(zor.Vec3(0, -DISTANCE, 0), zor.Vec3())
    return app


def draw(app, count=2):
    timer = zor.HighAccuracyTimer(True)
    for _ in range(count):
        app.executeOneStepWithGraphics(timer)


def look(target):
    size = target.getSize()
    target.setViewMatrixAsLookAt(zor.Vec3(0, -DISTANCE, 0), zor.Vec3(), zor.Vec3(0, 0, 1))
    target.setProjectionMatrixAsPerspective(40, size[0] / size[1], NEAR, FAR)
    target.setComputeNearFarMode(zorOSG.RenderTarget.DO_NOT_COMPUTE_NEAR_FAR)
    return target


def pixels(image):
    return numpy.array(numpy.asarray(image))


def reds(image):
    """Mask of the ball's pixels."""
    values = pixels(image).astype(int)
    return (values[..., 0] > 60) & (values[..., 0] > 3 * values[..., 1]) & (values[..., 0] > 3 * values[..., 2])


def probe(path, entries="codec_name,width,height,r_frame_rate,nb_frames"):
    return subprocess.run(["ffprobe", "-v", "error", "-show_entries", f"stream={entries}", "-of", "csv=p=0", str(path)],
                          capture_output=True, text=True, check=True).stdout.strip().split(",")


def names(folder):
    return sorted(path.name for path in folder.iterdir())


class TestTargets:
    def test_the_ball_has_the_size_that_its_angle_gives(self, application):
        target = look(zorOSG.RenderToImage(120, 90))
        application.addRenderTarget(target)
        draw(application)
        rows, columns = numpy.nonzero(reds(target.getImage()))
        radius = 45 / math.tan(math.radians(20)) * math.tan(math.asin(RADIUS / DISTANCE))
        assert numpy.ptp(rows) + 1 == pytest.approx(2 * radius, abs=2.5)
        assert numpy.ptp(columns) + 1 == pytest.approx(2 * radius, abs=2.5)
        middle = target.calculateScreenCoords(zor.Vec3())
        assert tuple(middle) == pytest.approx((60, 45))
        assert (columns.mean() + 0.5, rows.mean() + 0.5) == pytest.approx(tuple(middle), abs=1)

    def test_rows_run_upwards(self, application):
        application.getSimulation().getRigidBody("ball").setPosition(zor.Vec3(0.8, 0, 1))
        target = look(zorOSG.RenderToImage(120, 90))
        application.addRenderTarget(target)
        draw(application)
        rows, columns = numpy.nonzero(reds(target.getImage()))
        assert rows.mean() > 55 and columns.mean() > 70
        assert tuple(target.calculateScreenCoords(zor.Vec3(0.8, 0, 1))) == pytest.approx((columns.mean(), rows.mean()), abs=2)

    def test_depth_values(self, application):
        target = look(zorOSG.RenderToImage(64, 48, zorOSG.RenderTarget.DEPTH_BUFFER))
        application.addRenderTarget(target)
        draw(application)
        depth = pixels(target.getImage())
        assert depth.shape == (48, 64, 1) and depth.dtype == numpy.float32
        distance = DISTANCE - RADIUS
        assert depth[24, 32, 0] == pytest.approx(FAR * (distance - NEAR) / (distance * (FAR - NEAR)), abs=2e-3)
        assert depth[0, 0, 0] == 1 and depth.min() == pytest.approx(depth[22:26, 30:34].min())

    def test_formats(self, application):
        rgb = look(zorOSG.RenderToImage(32, 32, zorOSG.RenderTarget.COLOR_BUFFER, 0, zorOSG.RenderTarget.RGB))
        rgba = look(zorOSG.RenderToImage(32, 32, zorOSG.RenderTarget.COLOR_BUFFER, 0))
        for target in (rgb, rgba):
            application.addRenderTarget(target)
        draw(application)
        assert pixels(rgb.getImage()).shape == (32, 32, 3) and pixels(rgba.getImage()).shape == (32, 32, 4)
        assert (pixels(rgb.getImage()) == pixels(rgba.getImage())[..., :3]).all()

    def test_both_forms_of_a_new_size(self, application):
        target = look(zorOSG.RenderToImage(64, 48))
        application.addRenderTarget(target)
        for size, call in (((32, 24), lambda: target.setSize(32, 24)), ((80, 60), lambda: target.setSize(zor.Vec2u(80, 60)))):
            call()
            draw(application)
            assert tuple(target.getSize()) == size
            shown = reds(target.getImage())
            assert shown.shape == size[::-1]
            assert shown.sum() == pytest.approx(size[1] ** 2 * 0.06, rel=0.25)  # the same view

    def test_wrong_sizes_change_nothing(self):
        target = zorOSG.RenderToImage(64, 48)
        for wrong in ((0, 1), (1, 0), (16385, 1), (1, 2**40)):
            with pytest.raises(RuntimeError, match="1 to 16384 pixels"):
                target.setSize(*wrong)
            with pytest.raises(RuntimeError, match="1 to 16384 pixels"):
                zorOSG.RenderToImage(*wrong)
        for wrong in ((-1, 1), (2**64, 1), (1.5, 2), ((3, 4),), (None,), ("32", "24")):
            with pytest.raises(TypeError, match=r"RenderTarget::setSize\(zor::Vec2u\)"):
                target.setSize(*wrong)
        assert tuple(target.getSize()) == (64, 48)
        assert pixels(target.getImage()).shape == (48, 64, 4)

    def test_a_removed_target_is_drawn_no_more(self, application):
        target = look(zorOSG.RenderToImage(32, 24))
        application.addRenderTarget(target)
        draw(application)
        before = pixels(target.getImage())
        assert application.removeRenderTarget(target) is True
        assert application.removeRenderTarget(target) is False
        application.getSimulation().getRigidBody("ball").setPosition(zor.Vec3(50, 0, 0))
        draw(application)
        assert (pixels(target.getImage()) == before).all()

    def test_a_node_of_its_own(self, application):
        """A target can show another part of the graph than the main view."""
        lonely = osg.Group()
        target = look(zorOSG.RenderToImage(32, 24))
        application.addRenderTarget(target, lonely)
        draw(application)
        assert reds(target.getImage()).sum() == 0

    def test_an_image_keeps_its_target(self, application):
        image = look(zorOSG.RenderToImage(16, 16)).getImage()
        gc.collect()
        assert pixels(image).shape == (16, 16, 4)

    def test_a_texture_can_be_shown(self, application):
        target = look(zorOSG.RenderToTexture(64, 64))
        application.addRenderTarget(target)
        texture = target.getTexture()
        assert isinstance(texture, zorOSG.Texture2D)
        screen = zorOSG.RenderToImage(32, 32)
        box = zorCollide.Geometry(zorCollide.Box(0.5, 0.5, 0.5))
        quad = osg.Group()
        node = zorOSG.createVisual(box, quad)
        assert zorOSG.setTexture(node, texture)
        look(screen).setViewMatrixAsLookAt(zor.Vec3(0, -2, 0), zor.Vec3(), zor.Vec3(0, 0, 1))
        application.addRenderTarget(screen, quad)
        draw(application, 3)
        assert reds(screen.getImage()).sum() > 10  # the ball on a side of the box

    def test_saved_pixels_are_the_same_again(self, application, tmp_path):
        target = look(zorOSG.RenderToImage(64, 48))
        application.addRenderTarget(target)
        draw(application)
        assert target.saveImage(str(tmp_path / "t.png")) is True
        again = pixels(osgDB.readImageFile(str(tmp_path / "t.png")))
        assert (again == pixels(target.getImage())).all()

    def test_what_cannot_be_saved_leaves_nothing(self, application, tmp_path, capfd):
        target, depth = zorOSG.RenderToImage(8, 8), zorOSG.RenderToImage(8, 8, zorOSG.RenderTarget.DEPTH_BUFFER)
        for image, name, reason in ((target, "x.nosuch", "nosuch"), (target, "missing/x.png", "missing"), (depth, "x.png", "depth")):
            assert image.saveImage(str(tmp_path / name)) is False
            assert reason in capfd.readouterr().err
        assert names(tmp_path) == []
        with pytest.raises(RuntimeError):
            target.saveImage(None)

    @pytest.mark.parametrize("angle, near, far", [(0, 1, 2), (180, 1, 2), (40, 0, 2), (40, 2, 1), (math.nan, 1, 2)])
    def test_wrong_perspectives(self, angle, near, far):
        with pytest.raises(RuntimeError, match="perspective"):
            zorOSG.RenderToImage(8, 8).setProjectionMatrixAsPerspective(angle, 1, near, far)

    def test_a_point_behind_has_no_place(self):
        target = look(zorOSG.RenderToImage(8, 8))
        assert math.isnan(target.calculateScreenCoords(zor.Vec3(0, -2 * DISTANCE, 0))[0])


class TestScreenShots:
    def test_a_picture_has_the_size_and_the_scene_of_the_window(self, application, tmp_path):
        application.takeScreenShot(str(tmp_path / "shot.png"))
        application.stopAfter(0.1)
        assert application.run() == 0
        image = osgDB.readImageFile(str(tmp_path / "shot.png"))
        assert (image.s(), image.t()) == (160, 120)
        assert reds(image).sum() > 50 and names(tmp_path) == ["shot.png"]

    def test_what_cannot_be_taken_is_told_at_once(self, application, tmp_path):
        (tmp_path / "file").write_text("")
        with pytest.raises(RuntimeError, match="nosuch"):
            application.takeScreenShot(str(tmp_path / "x.nosuch"))
        with pytest.raises(RuntimeError, match="file"):
            application.takeScreenShot(str(tmp_path / "file" / "x.png"))
        with pytest.raises(TypeError, match="takeScreenShot"):
            application.takeScreenShot(None)
        assert names(tmp_path) == ["file"]

    def test_without_graphics_there_is_none(self):
        app = zorOSG.ExampleApplication()
        arguments = zorIO.ArgumentParser(["plain"])
        assert app.init(arguments, True)
        with pytest.raises(RuntimeError, match="no graphics"):
            app.takeScreenShot("x.png")


class TestImageCapture:
    def test_numbered_files_in_step_with_the_simulation(self, application, tmp_path):
        capture = application.getImageCapture()
        capture.setDirectoryPath(str(tmp_path / "made"))
        capture.setPrefix("frame-")
        capture.setPostfix("png")
        capture.setFps(30.0)
        capture.setImageResolution(80, 60)
        capture.startCapture(5)
        application.stopAfter(0.5)
        assert application.run() == 0
        files = names(tmp_path / "made")
        assert files == [f"frame-{number:05}.png" for number in range(5, 5 + len(files))]
        assert 14 <= len(files) <= 16
        image = osgDB.readImageFile(str(tmp_path / "made" / files[-1]))
        assert (image.s(), image.t()) == (80, 60) and reds(image).sum() > 20

    def test_a_limit(self, application, tmp_path):
        capture = application.getImageCapture()
        capture.setDirectoryPath(str(tmp_path))
        capture.setPostfix("png")
        capture.setMaxImages(3)
        capture.startCapture()
        application.stopAfter(0.5)
        assert application.run() == 0
        assert len(names(tmp_path)) == 3

    def test_on_a_target(self, application, tmp_path):
        target = look(zorOSG.RenderToImage(40, 30))
        application.addRenderTarget(target)
        capture = zorOSG.ImageCapture(application.getSimulation())
        capture.setDirectoryPath(str(tmp_path))
        capture.setPostfix("png")
        target.setImageCapture(capture)
        assert target.getImageCapture().this == capture.this
        capture.startCapture()
        draw(application, 5)
        assert capture.stopCapture() is True
        target.setImageCapture(None)
        assert target.getImageCapture() is None
        first = osgDB.readImageFile(str(tmp_path / names(tmp_path)[0]))
        assert (first.s(), first.t()) == (40, 30) and reds(first).sum() > 20

    def test_wrong_settings(self, tmp_path):
        capture = zorOSG.ImageCapture()
        for wrong in (0, -1, math.nan, 1e5):
            with pytest.raises(RuntimeError, match="capture rate"):
                capture.setFps(wrong)
        with pytest.raises(OverflowError, match="ImageCaptureBase_setMaxImages.*'int'"):
            capture.setMaxImages(2**31)
        for setter in (capture.setPostfix, capture.setPrefix, capture.setDirectoryPath):
            with pytest.raises(TypeError, match="invalid null reference|argument 2"):
                setter(None)
        with pytest.raises(RuntimeError, match="null"):
            capture.writeImage(None, 0)
        (tmp_path / "file").write_text("")
        capture.setDirectoryPath(str(tmp_path / "file" / "below"))
        with pytest.raises(RuntimeError, match="below"):
            capture.startCapture()
        capture.setDirectoryPath(str(tmp_path))
        capture.setPostfix("nosuch")
        with pytest.raises(RuntimeError, match="nosuch"):
            capture.startCapture()
        assert names(tmp_path) == ["file"]


def frame(width, height, color):
    image = osg.Image()
    image.allocate(width, height, 3)
    numpy.asarray(image)[:] = color
    return image


class TestVideo:
    def test_frames_of_a_script(self, tmp_path):
        """Colours and the way up survive the encoder."""
        video = zorOSG.VideoFFMPEGPipeCapture(64, 48, 25.0)
        video.setFilename(str(tmp_path / "v.mp4"))
        video.init()
        assert video.hasActiveVideo()
        for number in range(10):
            image = frame(64, 48, (200, 30, 30))
            numpy.asarray(image)[24:] = (30, 30, 200)  # the upper half
            video.writeImage(image, number)
        assert names(tmp_path) != ["v.mp4"]
        assert video.stopProcess() is True and not video.hasActiveVideo()
        assert names(tmp_path) == ["v.mp4"]
        assert probe(tmp_path / "v.mp4") == ["h264", "64", "48", "25/1", "10"]
        raw = subprocess.run(["ffmpeg", "-v", "error", "-i", str(tmp_path / "v.mp4"), "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                             capture_output=True, check=True).stdout
        shown = numpy.frombuffer(raw, numpy.uint8).reshape(10, 48, 64, 3).astype(int)
        assert abs(shown[5, 10, 30] - (30, 30, 200)).max() < 12 and abs(shown[5, 40, 30] - (200, 30, 30)).max() < 12

    def test_a_video_of_a_run(self, application, tmp_path):
        video = application.getVideoServerCapture()
        video.setFilename(str(tmp_path / "run.mp4"))
        video.setVideoFPS(30)
        video.setImageCaptureFPS(60)  # plays at half speed
        video.startCapture()
        application.stopAfter(0.5)
        assert application.run() == 0
        codec, width, height, rate, count = probe(tmp_path / "run.mp4")
        assert (codec, width, height, rate) == ("h264", "160", "120", "30/1")
        assert 29 <= int(count) <= 32

    def test_lossless_colours_are_kept(self, tmp_path):
        video = zorOSG.VideoFFMPEGPipeCapture(32, 32, 30.0)
        video.setFilename(str(tmp_path / "exact.mkv"))
        video.setOutputVideoCodec(zorOSG.VideoFFMPEGPipeCapture.OutputCodec_H264RGB)
        video.setEnableLossless(True)
        assert video.getEnableLossless() and video.getOutputCodec() == 1
        video.init()
        noise = numpy.random.default_rng(3).integers(0, 256, (32, 32, 3), dtype=numpy.uint8)
        for number in range(3):
            video.writeImage(frame(32, 32, noise), number)
        assert video.stopProcess() is True
        raw = subprocess.run(["ffmpeg", "-v", "error", "-i", str(tmp_path / "exact.mkv"), "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                             capture_output=True, check=True).stdout
        assert (numpy.frombuffer(raw, numpy.uint8).reshape(3, 32, 32, 3)[0] == noise[::-1]).all()

    def test_a_video_without_a_frame_is_not_stored(self, tmp_path, capfd):
        video = zorOSG.VideoFFMPEGPipeCapture(32, 32, 30.0)
        video.setFilename(str(tmp_path / "empty.mp4"))
        video.init()
        assert video.stopProcess() is False
        assert "no frame" in capfd.readouterr().err and names(tmp_path) == []
        assert video.stopProcess() is False  # none is active

    def test_a_dropped_video_is_finished(self, tmp_path):
        video = zorOSG.VideoFFMPEGPipeCapture(32, 32, 30.0)
        video.setFilename(str(tmp_path / "dropped.mp4"))
        video.init()
        video.writeImage(frame(32, 32, (1, 2, 3)), 0)
        del video
        gc.collect()
        assert names(tmp_path) == ["dropped.mp4"] and probe(tmp_path / "dropped.mp4", "nb_frames") == ["1"]

    def test_settings(self):
        video = zorOSG.VideoFFMPEGPipeCapture(32, 32, 30.0)
        assert (video.getVideoFPS(), video.getImageCaptureFPS(), video.getOutputCodec()) == (30, 30, 0)
        video.setFilename("a.b/film.mp4")
        video.setFilenameExtension("avi")
        assert (video.getFilename(), video.getFilenameExtension()) == ("a.b/film.avi", "avi")
        for wrong, message in ((lambda: video.setVideoCRF(52), "0 to 51"), (lambda: video.setVideoFPS(0), "video rate"),
                               (lambda: video.setImageCaptureFPS(math.nan), "rate"), (lambda: video.writeImage(frame(2, 2, 0), 0), "no video"),
                               (lambda: zorOSG.VideoFFMPEGPipeCapture(1, 16, 30.0), "1 x 16"),
                               (lambda: zorOSG.VideoFFMPEGPipeCapture(16, 16, -1.0), "rate")):
            with pytest.raises(RuntimeError, match=message):
                wrong()
        with pytest.raises(OverflowError, match="argument 2 of type 'zor::UInt'"):
            video.setVideoCRF(-1)
        assert (video.getVideoCRF(), video.getVideoFPS()) == (20, 30)

    def test_the_table_of_codec_names(self):
        variable = "variable 'zorOSG::VideoFFMPEGPipeCapture::OutputCodecStrings' of type 'zorOSG::VideoFFMPEGPipeCapture::CodecStringConversionMap'"
        name = "VideoFFMPEGPipeCapture_OutputCodecStrings"
        for assign in (lambda value: setattr(_zorOSG.cvar, name, value), getattr(_zorOSG, name + "_set")):
            with pytest.raises(TypeError) as error:
                assign(None)
            assert str(error.value) == "invalid null reference in " + variable
            for wrong in (5, "libx264", {0: "libx264"}, zor.Vec3()):
                with pytest.raises(TypeError) as error:
                    assign(wrong)
                assert str(error.value) == "in " + variable
        table = getattr(_zorOSG.cvar, name)
        assert table.own() is False and table == getattr(_zorOSG, name + "_get")("ignored")
        with pytest.raises(AttributeError, match="Unknown C global variable 'Other'"):
            _zorOSG.cvar.Other = 1
