"""A red box falls on the ground: the smallest complete script."""

import sys

import zor, zorCollide, zorIO, zorOSG

application = zorOSG.ExampleApplication()
if not application.init(zorIO.ArgumentParser(sys.argv)):
    sys.exit(application.getExitCode())
application.initSimulation()
simulation, root = application.getSimulation(), application.getSceneRoot()

ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(10, 10, 0.1)))
simulation.add(ground)
zorOSG.createVisual(ground, root)

box = zor.RigidBody("box")
box.add(zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.5))))
box.setPosition(zor.Vec3(0, 0, 5))
simulation.add(box)
zorOSG.setDiffuseColor(zorOSG.createVisual(box, root), zor.Vec4f(0.9, 0.2, 0.1, 1))

application.stopAfter(3)
exit_code = application.run()
print(f"after {simulation.getTimeStamp():.2f} s the box is at {box.getPosition()}")
sys.exit(exit_code)
