"""Values and splines: a ball follows a smooth curve through points, at even speed; numpy sees the samples in place.

./zor run examples/values.py --stopAfter 4 --screenShot curve.png
"""

import sys

import numpy
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK
import zorUtil

SPEED = 4.0  # m/s

# Values are made of components, tuples or arrays, and calculate with tuples and lists.
centre = zor.Vec3(0, 0, 2.5)
angles = numpy.linspace(0, 2 * numpy.pi, 9)
corners = numpy.column_stack([3 * numpy.cos(angles), 2 * numpy.sin(2 * angles), numpy.sin(3 * angles)])
spline = zorUtil.CatmullRomSpline([centre + tuple(corner) for corner in corners])
print(f"{spline}: it starts at {spline.evaluate(0):.2f} towards {spline.tangent(0):.2f}")

samples = spline.sample(400)
heights = numpy.asarray(samples)[:, 2]  # a view: nothing is copied
print(f"{len(samples)} samples between {heights.min():.2f} m and {heights.max():.2f} m")


class Follower(zorSDK.StepEventListener):
    """Puts a body on the curve before every step."""

    def __init__(self, body: zor.RigidBody):
        super().__init__()
        self.body = body

    def pre(self, time: float) -> None:
        at = spline.parameterAt(SPEED * time % spline.length())
        self.body.setPosition(spline.evaluate(at))
        self.body.setRotation(zor.Quat((1, 0, 0), spline.tangent(at)))


application = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(sys.argv)
if not application.init(arguments):
    sys.exit(application.getExitCode())
application.initSimulation()
simulation, root = application.getSimulation(), application.getSceneRoot()

ground = zorCollide.Geometry(zorCollide.Box((4.2, 3.2, 0.1)))
simulation.add(ground)
zorOSG.setDiffuseColor(zorOSG.createVisual(ground, root), zor.Vec4f(0.55, 0.6, 0.65, 1))

root.addChild(zorOSG.createPolyline(samples, zor.Vec4(1, 0.75, 0.2, 1), 4))
for corner in spline.getPoints():
    root.addChild(zorOSG.createSphere(corner, zor.Vec4(0.9, 0.2, 0.1, 1), 0.09))

car = zor.RigidBody("car")
car.setMotionControl(zor.RigidBody.KINEMATICS)
car.add(zorCollide.Geometry(zorCollide.Capsule(0.15, 0.5), zor.AffineMatrix4x4(zor.Quat((0, 1, 0), (1, 0, 0)))))
simulation.add(car)
zorOSG.setDiffuseColor(zorOSG.createVisual(car, root), zor.Vec4f(0.2, 0.45, 0.9, 1))
follower = Follower(car)
simulation.add(follower)

application.setCameraHome(zor.Vec3(5.0, -9.2, 6.4), zor.Vec3(0.3, 0, 1.3), zor.Vec3(0, 0, 1))
if not arguments.has("--stopAfter"):
    application.stopAfter(12)
sys.exit(application.run())
