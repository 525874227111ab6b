"""What it costs to have a frame: drawn, read back, seen by numpy, stored as PNG, encoded as H.264.

python bench_capture.py [FRAMES]   (as `./zor bench capture` does)

All cases draw the same scene without anti-aliasing, and take turns. Raw is a loop of glReadPixels into memory that is there
already, from a frame buffer made by hand. Processor time is that of all threads, without the video encoder's process.
"""

import ctypes
import math
import os
import statistics
import sys
import tempfile
import time

import numpy

import osg
import zor
import zorCollide
import zorIO
import zorOSG

SIZES = ((640, 480), (1920, 1080))
FRAMES = int(sys.argv[1]) if sys.argv[1:] and sys.argv[1].isdigit() else 200
TURN = 5  # frames of a case before the next one draws
STORED = 20  # of those that are stored, whose start and end count, too
BODIES = 200
gl = ctypes.CDLL("libGL.so.1")

FRAMEBUFFER, RENDERBUFFER, COLOR, DEPTH = 0x8D40, 0x8D41, 0x8CE0, 0x8D00
RGBA, RGBA8, DEPTH24, UNSIGNED_BYTE, COMPLETE = 0x1908, 0x8058, 0x81A6, 0x1401, 0x8CD5


class Callback(osg.CameraDrawCallback):
    """Runs a function while a camera draws."""

    def __init__(self, function):
        super().__init__()
        self.function = function

    def __call__(self, info):
        self.function()


class RawReader:
    """A camera that draws into a frame buffer of its own, and glReadPixels."""

    def __init__(self, scene, size):
        self.size, self.buffer = size, None
        self.pixels = numpy.empty((size[1], size[0], 4), numpy.uint8)
        self.camera = osg.Camera()
        self.camera.setRenderOrder(osg.Camera.PRE_RENDER)
        self.camera.setReferenceFrame(osg.Transform.ABSOLUTE_RF)
        self.camera.setClearMask(osg.GL_COLOR_BUFFER_BIT | osg.GL_DEPTH_BUFFER_BIT)
        self.camera.setClearColor(osg.Vec4f(0, 0, 0, 1))
        self.camera.setViewport(0, 0, *size)
        self.camera.addChild(scene)
        self.callbacks = [Callback(self.begin), Callback(self.end)]
        self.camera.setPreDrawCallback(self.callbacks[0])
        self.camera.setPostDrawCallback(self.callbacks[1])

    def make(self):
        self.buffer, buffers = ctypes.c_uint(), (ctypes.c_uint * 2)()
        gl.glGenFramebuffers(1, ctypes.byref(self.buffer))
        gl.glGenRenderbuffers(2, buffers)
        gl.glBindFramebuffer(FRAMEBUFFER, self.buffer)
        for buffer, format, point in zip(buffers, (RGBA8, DEPTH24), (COLOR, DEPTH)):
            gl.glBindRenderbuffer(RENDERBUFFER, buffer)
            gl.glRenderbufferStorage(RENDERBUFFER, format, *self.size)
            gl.glFramebufferRenderbuffer(FRAMEBUFFER, point, RENDERBUFFER, buffer)
        assert gl.glCheckFramebufferStatus(FRAMEBUFFER) == COMPLETE

    def begin(self):
        if self.buffer is None:
            self.make()
        gl.glBindFramebuffer(FRAMEBUFFER, self.buffer)

    def end(self):
        gl.glReadPixels(0, 0, *self.size, RGBA, UNSIGNED_BYTE, ctypes.c_void_p(self.pixels.ctypes.data))
        gl.glBindFramebuffer(FRAMEBUFFER, 0)


def make_scene():
    """Bodies in a spiral, coloured; nothing moves, so that all cases draw the same."""
    scene = osg.Group()
    for i in range(BODIES):
        geometry = zorCollide.Geometry((zorCollide.Box(zor.Vec3(0.3, 0.3, 0.3)), zorCollide.Sphere(0.35))[i % 2])
        place = osg.MatrixTransform(osg.Matrixd.translate(0.05 * i * math.cos(0.5 * i), 0.05 * i * math.sin(0.5 * i), 0))
        zorOSG.setDiffuseColor(zorOSG.createVisual(geometry, place), zor.Vec4f(i % 5 / 4, i % 3 / 2, 0.5, 1))
        scene.addChild(place)
    return scene


class Bench:
    def __init__(self, size):
        self.size = size
        self.application = zorOSG.ExampleApplication()
        self.arguments = zorIO.ArgumentParser(["bench", "--offscreen", "--noRealTime", "--window", "16x16"])
        if not self.application.init(self.arguments):
            raise SystemExit("no graphics")
        self.application.initSimulation()
        self.timer = zor.HighAccuracyTimer(True)
        scene = make_scene()
        self.target = zorOSG.RenderToImage(*size, zorOSG.RenderTarget.COLOR_BUFFER, 0)
        self.target.setViewMatrixAsLookAt(zor.Vec3(0, -12, 12), zor.Vec3(), zor.Vec3(0, 0, 1))
        self.target.setProjectionMatrixAsPerspective(50, size[0] / size[1], 1, 100)
        self.application.addRenderTarget(self.target, scene)
        self.raw = RawReader(scene, size)
        self.raw.camera.setViewMatrix(self.target.getCamera().getViewMatrix())
        self.raw.camera.setProjectionMatrix(self.target.getCamera().getProjectionMatrix())
        self.application.getRoot().addChild(self.raw.camera)
        self.finish = Callback(lambda: gl.glFinish() if self.waits else None)
        self.waits = False
        # Beside the filter that smooths the main view's edges, which does its work before.
        self.application.getCamera().setFinalDrawCallback(self.finish)

    def frame(self):
        self.application.executeOneStepWithGraphics(self.timer)

    def show(self, raw, waits):
        self.waits = waits
        self.raw.camera.setNodeMask(0xffffffff if raw else 0)
        self.target.getCamera().setNodeMask(0 if raw else 0xffffffff)

    def render(self, count):
        self.show(raw=False, waits=True)
        for _ in range(count):
            self.frame()

    def read_raw(self, count):
        self.show(raw=True, waits=False)
        for _ in range(count):
            self.frame()

    def read_back(self, count):
        self.show(raw=False, waits=False)
        for _ in range(count):
            self.frame()
            self.target.getImage()

    def view(self, count):
        self.show(raw=False, waits=False)
        for _ in range(count):
            self.frame()
            self.target.asArray()

    def store(self, count, path):
        self.show(raw=False, waits=False)
        # One picture for each step, so that none is left out or stored twice.
        with self.target.record(path, 60, simulation=self.application.getSimulation()) as recording:
            for _ in range(count):
                self.frame()
        assert recording.frames == count

    def cases(self, folder):
        return {
            "render": self.render,
            "raw glReadPixels": self.read_raw,
            "read-back": self.read_back,
            "numpy view": self.view,
            "PNG": lambda count: self.store(count, os.path.join(folder, "frame_.png")),
            "H.264": lambda count: self.store(count, os.path.join(folder, "frames.mp4")),
        }


def measure(size):
    bench = Bench(size)
    with tempfile.TemporaryDirectory() as folder:
        cases = bench.cases(folder)
        times = {name: ([], []) for name in cases}
        bench.read_raw(3)
        bench.view(3)
        raw, ours = bench.raw.pixels, bench.target.asArray()
        assert raw.std() > 10 and numpy.abs(raw.astype(int) - ours)[..., :3].mean() < 0.5, "the cases draw different pictures"
        del ours
        for turn in range(max(FRAMES // TURN, 1) + 1):
            for name, case in cases.items():
                stores = name in ("PNG", "H.264")
                if stores and turn % (STORED // TURN) != 0:
                    continue
                count = STORED if stores else TURN
                wall, processor = time.perf_counter(), time.process_time()
                case(count)
                if turn:  # the first compiles and allocates
                    times[name][0].append((time.perf_counter() - wall) / count)
                    times[name][1].append((time.process_time() - processor) / count)
    print(f"{size[0]} x {size[1]}, {BODIES} bodies")
    medians = {name: [statistics.median(column) for column in columns] for name, columns in times.items()}
    for name, (wall, processor) in medians.items():
        to_render, to_raw = wall / medians["render"][0], wall / medians["raw glReadPixels"][0]
        print(f"  {name:18} {1 / wall:8.1f} frames/s  {1e3 * wall:7.2f} ms ({1e3 * processor:7.2f} of processors)"
              f"  {to_render:5.2f} x render  {to_raw:5.2f} x raw")
    # In pairs of one turn, so that a machine that is busy for a while counts for both.
    pairs = [ours / raw for ours, raw in zip(times["numpy view"][0], times["raw glReadPixels"][0])]
    print(f"  numpy view over raw glReadPixels: {100 * (statistics.median(pairs) - 1):+.1f} %")


def main():
    for size in SIZES:
        measure(size)


if __name__ == "__main__":
    main()
