"""The scene of bench_visuals.cpp from Python, beside the same one in VTK: creation, frames, memory, lookup.

python bench_visuals.py   (as `./zor bench visuals` does, which gets VTK for it)

Both draw 640 x 480 pixels off screen with smoothed edges, one light and one colour a body, and share what equal bodies
can share. VTK is measured twice: with an actor for each body, as bodies that are coloured and picked one by one need
it, and with all bodies of a kind as glyphs of one actor, its fastest way to draw many of a kind.
"""

import argparse
import json
import math
import os
import statistics
import subprocess
import sys
import time
from collections.abc import Callable

BODIES = 10_000
SPACING = 1.5
PIXELS = (640, 480)
COLORS = [(0.80, 0.25, 0.20), (0.25, 0.55, 0.80), (0.95, 0.75, 0.25), (0.40, 0.70, 0.35), (0.60, 0.45, 0.75)]
SECONDS = 5.0  # of frames, for each case


def place(index: int, count: int, frame: int = 0) -> tuple[float, float, float]:
    """Where a body is: on a square grid, and up and down a little as frames go by."""
    side = math.ceil(math.sqrt(count))
    wave = 0.3 * math.sin(0.1 * frame + index % 17) if frame else 0.0
    return SPACING * (index % side - side / 2), SPACING * (index // side - side / 2), wave


def eye(count: int) -> tuple[float, float, float]:
    distance = 1.1 * SPACING * math.sqrt(count)
    return 0.0, -distance, 0.8 * distance


class Ours:
    """Bodies with visuals, in the application."""

    name = "zorOSG"

    def __init__(self) -> None:
        import zor
        import zorCollide
        import zorIO
        import zorOSG

        self.zor, self.osg = zor, zorOSG
        self.app = zorOSG.ExampleApplication()
        self.app.init(zorIO.ArgumentParser(["bench", "--offscreen", "--noRealTime", f"--window={PIXELS[0]}x{PIXELS[1]}"]))
        self.app.initSimulation()
        self.app.setAutoStepping(False)
        self.app.getSceneDecorator().setEnableShadows(False)  # VTK draws none
        self.root = self.app.getSceneRoot()
        self.timer = zor.HighAccuracyTimer(True)
        vec = zor.Vec3
        self.shapes = [
            lambda: zorCollide.Box(vec(0.4, 0.3, 0.5)),
            lambda: zorCollide.Sphere(0.5),
            lambda: zorCollide.Cylinder(0.4, 1.0),
            lambda: zorCollide.Capsule(0.3, 0.6),
            lambda: zorCollide.Cone(0.5, 1.0),
        ]

    def make_bodies(self, count: int) -> None:
        import zorCollide

        self.geometries = [zorCollide.Geometry(self.shapes[i % 5]()) for i in range(count)]
        self.bodies = [self.zor.RigidBody(geometry) for geometry in self.geometries]
        for i, body in enumerate(self.bodies):
            body.setPosition(self.zor.Vec3(*place(i, count)))
        self.app.setCameraHome(self.zor.Vec3(*eye(count)), self.zor.Vec3())

    def create(self) -> None:
        create, color, root = self.osg.createVisual, self.osg.setDiffuseColor, self.root
        colors = [self.zor.Vec4f(*rgb, 1) for rgb in COLORS]
        for i, geometry in enumerate(self.geometries):
            color(create(geometry, root), colors[i % 5])

    def move(self, frame: int) -> None:
        count = len(self.bodies)
        for i, body in enumerate(self.bodies):
            body.setPosition(self.zor.Vec3(*place(i, count, frame)))

    def draw(self) -> None:
        self.app.executeOneStepWithGraphics(self.timer)

    def find(self, index: int) -> None:
        assert self.osg.findGeometryNode(self.geometries[index], self.root)

    def picture(self, file: str) -> None:
        self.app.takeScreenShot(file)


class Actors:
    """The same scene in VTK, an actor for each body."""

    name = "VTK, actors"

    def __init__(self) -> None:
        import vtk

        self.vtk = vtk
        vtk.vtkLogger.SetStderrVerbosity(vtk.vtkLogger.VERBOSITY_OFF)
        self.renderer = vtk.vtkRenderer()
        self.renderer.SetBackground(0.6, 0.7, 0.8)
        self.renderer.UseFXAAOn()
        self.window = vtk.vtkRenderWindow()
        self.window.SetOffScreenRendering(1)
        self.window.SetMultiSamples(0)
        self.window.SetSize(*PIXELS)
        self.window.AddRenderer(self.renderer)
        sphere, cylinder, capsule, cone = vtk.vtkSphereSource(), vtk.vtkCylinderSource(), vtk.vtkCylinderSource(), vtk.vtkConeSource()
        sphere.SetThetaResolution(32)
        sphere.SetRadius(0.5)
        sphere.SetPhiResolution(17)  # as many triangles as ours
        cylinder.SetRadius(0.4)
        cylinder.SetHeight(1.0)
        cylinder.SetResolution(32)
        capsule.SetRadius(0.3)
        capsule.SetHeight(0.6)
        capsule.SetResolution(16)  # its caps have as many rings
        capsule.CapsuleCapOn()
        cone.SetRadius(0.5)
        cone.SetHeight(1.0)
        cone.SetResolution(32)
        cone.SetDirection(0, 1, 0)
        box = vtk.vtkCubeSource()
        box.SetXLength(0.8)
        box.SetYLength(0.6)
        box.SetZLength(1.0)
        self.sources = [box, sphere, cylinder, capsule, cone]

    def aim(self, count: int) -> None:
        camera = self.renderer.GetActiveCamera()
        camera.SetPosition(*eye(count))
        camera.SetFocalPoint(0, 0, 0)
        camera.SetViewUp(0, 0, 1)
        camera.SetViewAngle(45)
        self.renderer.ResetCameraClippingRange()

    def make_bodies(self, count: int) -> None:
        self.count = count
        self.places = [place(i, count) for i in range(count)]

    def create(self) -> None:
        vtk = self.vtk
        mappers, looks = [], []
        for source, rgb in zip(self.sources, COLORS):
            mapper = vtk.vtkPolyDataMapper()
            mapper.SetInputConnection(source.GetOutputPort())
            mappers.append(mapper)
            look = vtk.vtkProperty()
            look.SetColor(*rgb)
            looks.append(look)
        self.actors = []
        for i, position in enumerate(self.places):
            actor = vtk.vtkActor()
            actor.SetMapper(mappers[i % 5])
            actor.SetProperty(looks[i % 5])
            actor.SetPosition(*position)
            self.renderer.AddActor(actor)
            self.actors.append(actor)
        self.aim(self.count)

    def move(self, frame: int) -> None:
        for i, actor in enumerate(self.actors):
            actor.SetPosition(*place(i, self.count, frame))

    def draw(self) -> None:
        self.window.Render()
        self.window.WaitForCompletion()

    def find(self, index: int) -> None:
        """VTK keeps a list of actors and no way from a body to its actor."""
        wanted = self.actors[index]
        actors = self.renderer.GetActors()
        actors.InitTraversal()
        while (actor := actors.GetNextActor()) is not None:
            if actor is wanted:
                return
        raise AssertionError("the actor is gone")

    def picture(self, file: str) -> None:
        grab = self.vtk.vtkWindowToImageFilter()
        grab.SetInput(self.window)
        writer = self.vtk.vtkPNGWriter()
        writer.SetFileName(file)
        writer.SetInputConnection(grab.GetOutputPort())
        writer.Write()


class Glyphs(Actors):
    """The same scene in VTK, the bodies of a kind as glyphs of one actor."""

    name = "VTK, glyphs"

    def create(self) -> None:
        vtk = self.vtk
        self.points = []
        for kind, source in enumerate(self.sources):
            points = vtk.vtkPoints()
            for position in self.places[kind::5]:
                points.InsertNextPoint(*position)
            data = vtk.vtkPolyData()
            data.SetPoints(points)
            mapper = vtk.vtkGlyph3DMapper()
            mapper.SetInputData(data)
            mapper.SetSourceConnection(source.GetOutputPort())
            mapper.ScalingOff()
            actor = vtk.vtkActor()
            actor.SetMapper(mapper)
            actor.GetProperty().SetColor(*COLORS[kind])
            self.renderer.AddActor(actor)
            self.points.append(points)
        self.aim(self.count)

    def move(self, frame: int) -> None:
        for i in range(self.count):
            self.points[i % 5].SetPoint(i // 5, *place(i, self.count, frame))
        for points in self.points:
            points.Modified()


SIDES = {side.name: side for side in (Ours, Actors, Glyphs)}


def resident() -> int:
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def measure(make: Callable[[], Ours | Actors], case: str, count: int) -> dict[str, float]:
    """Runs one case in this process; the result in seconds, or bytes."""
    side = make()
    side.make_bodies(count)
    if case == "create":
        start = time.perf_counter()
        side.create()
        return {"create": (time.perf_counter() - start)}
    side.draw()  # what a window costs is no part of a visual
    before = resident()
    side.create()
    if case == "memory":
        side.draw()
        return {"memory": (resident() - before) / count}
    if case == "find":
        indices = [(7919 * i) % count for i in range(200)]
        times = []
        for index in indices:
            start = time.perf_counter()
            side.find(index)
            times.append(time.perf_counter() - start)
        return {"find": statistics.median(times)}
    return frames(side, case == "moving")


def frames(side: Ours | Actors, moving: bool) -> dict[str, float]:
    """Time of a frame; what the script does to move the bodies is not counted."""
    for _ in range(3):
        side.draw()
    spent, drawn = 0.0, 0
    while spent < SECONDS and drawn < 1000:
        if moving:
            side.move(drawn + 1)
        start = time.perf_counter()
        side.draw()
        spent += time.perf_counter() - start
        drawn += 1
    return {"frame": spent / drawn}


def in_own_process(name: str, case: str, count: int) -> float:
    """One case in a process of its own, so that neither side finds the other's memory and buffers."""
    command = [sys.executable, __file__, "--side", name, "--case", case, "--count", str(count)]
    run = subprocess.run(command, capture_output=True, text=True, check=False)
    if run.returncode:
        raise SystemExit(f"{name}, {case}: {run.stderr.strip()}")
    return next(iter(json.loads(run.stdout.splitlines()[-1]).values()))


ROWS = [
    ("creation of 10,000 visuals", "create", BODIES, 1e3, "ms"),
    ("a frame, 10,000 at rest", "resting", BODIES, 1e3, "ms"),
    ("a frame, 10,000 moving", "moving", BODIES, 1e3, "ms"),
    ("memory of a visual", "memory", BODIES, 1e-3, "kB"),
    ("lookup among 1,000", "find", 1000, 1e6, "us"),
    ("lookup among 100,000", "find", 100_000, 1e6, "us"),
]


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("pattern", nargs="?", help="part of a row's title")
    parser.add_argument("--side", choices=SIDES, help="measure this side alone")
    parser.add_argument("--case", choices=["create", "resting", "moving", "memory", "find"])
    parser.add_argument("--count", type=int, default=BODIES)
    parser.add_argument("--picture", help="with --side: draw a frame into this file and measure nothing")
    options = parser.parse_args()
    if options.picture:
        side = SIDES[options.side]()
        side.make_bodies(options.count)
        side.create()
        side.draw()
        side.picture(options.picture)
        side.draw()
    elif options.side:
        print(json.dumps(measure(SIDES[options.side], options.case, options.count)))
    else:
        compare(options.pattern or "")


def compare(pattern: str) -> None:
    print(f"{'':28}" + "".join(f"{name:>16}" for name in SIDES))
    for title, case, count, factor, unit in ROWS:
        if pattern not in title:
            continue
        cells = []
        for name in SIDES:
            if case == "find" and name == Glyphs.name:
                cells.append(f"{'-':>16}")  # glyphs are no objects
                continue
            value = statistics.median(in_own_process(name, case, count) for _ in range(3 if case in ("create", "memory") else 1))
            cells.append(f"{factor * value:>13.2f} {unit}")
        print(f"{title:28}" + "".join(cells), flush=True)


if __name__ == "__main__":
    main()
