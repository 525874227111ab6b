"""A day of frames in short: a small scene is stepped and drawn off screen very often, and memory must not grow.

python soak_frames.py --frames 1000000   (as `./zor run benchmarks/soak_frames.py --frames 1000000` does)

Balls bounce, a listener in Python is called in every frame, texts and colours change, keys are pressed, and the scene
is built anew now and then. Prints frames, rate and memory as it goes; the exit code is 1 if memory grew.
"""

import argparse
import os
import sys
import time

import zor
import zorCollide
import zorIO
import zorOSG

WARM_UP = 0.2  # part of the run after which memory has to stay as it is
ALLOWED = 4 << 20  # bytes: pages that come and go


def memory_in_use() -> int:
    """Bytes of the process that are resident."""
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def build_scene() -> None:
    """Balls above a plate."""
    application = zorOSG.getCurrentApplication()
    simulation, root = application.getSimulation(), application.getSceneRoot()
    material = zor.Material("rubber")
    material.setRestitution(0.9)
    plate = zorCollide.Geometry(zorCollide.Box(zor.Vec3(4, 4, 0.1)))
    plate.setMaterial(material)
    simulation.add(plate)
    zorOSG.createVisual(plate, root)
    for i in range(5):
        geometry = zorCollide.Geometry(zorCollide.Sphere(0.4))
        geometry.setMaterial(material)
        ball = zor.RigidBody(geometry, f"ball {i}")
        ball.setPosition(zor.Vec3(i - 2, 0, 2 + 0.3 * i))
        simulation.add(ball)
        zorOSG.createVisual(ball, root)
    application.setCameraHome(zor.Vec3(0, -12, 4), zor.Vec3(0, 0, 1))


class Observer(zorOSG.ExampleApplicationListener):
    """Changes things, counts frames and looks at the memory."""

    def __init__(self, options: argparse.Namespace) -> None:
        super().__init__()
        self.options = options
        self.frames = 0
        self.samples: list[tuple[int, int]] = []
        self.started = self.reported = time.monotonic()

    def preFrame(self, app: zorOSG.ExampleApplication) -> None:
        self.frames += 1
        simulation = app.getSimulation()
        body = simulation.getRigidBodies()[self.frames % 5]
        zorOSG.setDiffuseColor(body, zor.Vec4f(self.frames % 7 / 7, 0.4, 0.2, 1), app.getSceneRoot())
        app.getSceneDecorator().setText(0, f"frame {self.frames}")
        if self.frames % 100 == 0:
            body.setPosition(zor.Vec3(self.frames // 100 % 5 - 2, 0, 3))
        if self.frames % 5000 == 0:
            for key in "ih":  # statistics and help appear and go
                app.getViewer().getEventQueue().keyPress(ord(key))
                app.getViewer().getEventQueue().keyRelease(ord(key))
        if self.frames % self.options.reload == 0:
            app.reloadScene()

    def postFrame(self, app: zorOSG.ExampleApplication) -> None:
        if self.frames % max(1, self.options.frames // 100) == 0:
            self.samples.append((self.frames, memory_in_use()))
        now = time.monotonic()
        if now - self.reported > self.options.report:
            self.reported = now
            self.tell()
        if self.frames >= self.options.frames or now - self.started > self.options.seconds:
            app.stop()

    def tell(self) -> None:
        """Prints one line."""
        rate = self.frames / (time.monotonic() - self.started)
        print(f"{self.frames:9d} frames  {rate:7.0f} frames/s  {memory_in_use() / 2**20:8.2f} MiB", flush=True)

    def growth(self) -> int:
        """Bytes by which the memory of the second half is above what it was after warming up."""
        warm = [memory for frame, memory in self.samples if WARM_UP * self.frames <= frame < self.frames / 2]
        late = [memory for frame, memory in self.samples if frame >= self.frames / 2]
        return max(late) - max(warm) if warm and late else 0


def main() -> int:
    """Runs the scene. Returns the exit code."""
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--frames", type=int, default=1_000_000, help="frames to draw")
    parser.add_argument("--seconds", type=float, default=float("inf"), help="time after which to stop in any case")
    parser.add_argument("--reload", type=int, default=10_000, help="frames between two builds of the scene")
    parser.add_argument("--report", type=float, default=10, help="seconds between two lines")
    parser.add_argument("--window", default="32x24", help="size of the picture")
    parser.add_argument("--shadows", default="none", help="kind of shadows, which take most of the time")
    parser.add_argument("--profile", action="store_true", help="say at the end where the time went")
    options = parser.parse_args()

    application = zorOSG.ExampleApplication()
    line = [sys.argv[0], "--offscreen", "--window", options.window, "--shadows", options.shadows, *["--profile"] * options.profile]
    if not application.init(zorIO.ArgumentParser(line)):
        return application.getExitCode()
    application.addScene(os.path.abspath(__file__), "build_scene")
    observer = Observer(options)
    application.addListener(observer)
    if application.run() != 0:
        return 1
    observer.tell()
    grown = observer.growth()
    print(f"memory of the second half against before: {grown / 1024:+.0f} KiB in {observer.frames} frames")
    return 1 if grown > ALLOWED else 0


if __name__ == "__main__":
    sys.exit(main())
