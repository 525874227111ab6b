"""Objects to start from: a small scene that has drawn a frame, and Python classes that the toolkit calls."""

import _zorOSG
import _zorSDK
import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

from fuzz.values import Mischief


def subclass(base, random):
    """A subclass that overrides every public method with one that returns something or raises."""
    answers = [None, True, False, 1, "text", object()]

    def override(self, *arguments):
        if random.random() < 0.2:
            raise Mischief
        return random.choice(answers)

    names = [name for name in dir(base) if not name.startswith("_") and callable(getattr(base, name))
             and name not in ("reference", "unreference", "unreferenceNoDelete", "getReferenceCount", "thisown")]
    methods = dict.fromkeys(random.sample(names, len(names) // 2), override)
    return type("Derived" + base.__name__, (base,), methods)


def uninitialised(base):
    """A subclass that never calls the base's __init__."""
    return type("Bare" + base.__name__, (base,), {"__init__": lambda self: None})


def shapes():
    half = zor.Vec3(0.5, 0.4, 0.3)
    return [zorCollide.Box(half), zorCollide.Sphere(0.5), zorCollide.Cylinder(0.3, 1.0), zorCollide.Capsule(0.3, 1.0)]


def scene():
    """An application with bodies of several shapes and their visuals, after a frame."""
    app = zorOSG.ExampleApplication()
    app.init(zorIO.ArgumentParser(["test", "--window", "64x48"]))
    app.initSimulation()
    app.initScene()
    app.setRealTimeSync(False)
    simulation, root = app.getSimulation(), app.getSceneRoot()
    found = [app, simulation, root, app.getSceneDecorator(), app.getViewer(), app.getCamera()]
    for i, shape in enumerate(shapes()):
        body = zor.RigidBody(f"body{i}")
        geometry = zorCollide.Geometry(shape)
        body.add(geometry)
        simulation.add(body)
        found += [body, geometry, shape, zorOSG.createVisual(body, root)]
    hinge = zor.LockJoint(found[6], zor.Frame(), found[10], zor.Frame())
    simulation.add(hinge)
    app.executeOneStepWithGraphics(zor.HighAccuracyTimer())
    return [*found, hinge, zorOSG.findGeometryNodes(found[7], root), osg.Vec3(1, 2, 3), osg.Vec4(1, 0, 0, 1)]


def prepare_steps(simulation):
    """Makes the steps up to a time few, whatever the settings were."""
    _zorSDK.Simulation_setTimeStep(simulation, 0.1)


def prepare_run(app):
    """Makes an application's loop end after a few frames, whatever its settings were."""

    class Stopper(zorOSG.ExampleApplicationListener):
        frames = 0

        def postFrame(self, application):
            self.frames += 1
            if self.frames > 2:
                application.stop()

    stopper = Stopper()
    for name, value in (("setRealTimeSync", False), ("setTargetFPS", 0), ("setTimeStep", 0.01), ("setAutoStepping", True),
                        ("setEnablePauseUpdate", True), ("addListener", stopper),
                        ("stopAfter", _zorOSG.ExampleApplication_getTimeStamp(app) + 0.05)):
        getattr(_zorOSG, "ExampleApplication_" + name)(app, value)
    return stopper
