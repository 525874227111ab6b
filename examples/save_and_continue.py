"""A simulation is stored in the middle of a fall and goes on elsewhere, equal to the last bit."""

import pathlib
import sys
import tempfile

import zor, zorCollide, zorSDK


def build() -> zorSDK.Simulation:
    """A pendulum swings into a tower of bricks."""
    simulation = zorSDK.Simulation()
    ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(10, 10, 0.1)))
    ground.setPosition(zor.Vec3(0, 0, -0.1))
    simulation.add(ground)
    for level in range(12):
        brick = zor.RigidBody(zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.25, 0.4, 0.125))), f"brick {level}")
        brick.setPosition(zor.Vec3(0, 0, 0.125 + 0.25 * level))
        simulation.add(brick)
    ball = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.4)), "ball")
    ball.setPosition(zor.Vec3(-4, 0, 4))
    simulation.add(ball)
    simulation.add(zor.BallJoint(zor.Vec3(0, 0, 5.5), ball))
    return simulation


def state(simulation: zorSDK.Simulation) -> list[tuple[str, str]]:
    """Places and speeds with all their digits."""
    return [(repr(body.getTransform()), repr(body.getVelocity())) for body in simulation.getRigidBodies()]


folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else tempfile.mkdtemp())
original = build()
original.stepTo(1.0)
for name in ("fall.zor", "fall.azor"):  # binary, and JSON for people to read
    original.write(str(folder / name))
    print(f"stored after {original.getTimeStamp():.2f} s: {folder / name}, {(folder / name).stat().st_size} bytes")

original.stepTo(3.0)
for name in ("fall.zor", "fall.azor"):
    restored = zorSDK.Simulation()
    restored.read(str(folder / name))
    restored.stepTo(3.0)
    same = state(restored) == state(original)
    top = restored.getRigidBody("brick 11").getPosition()
    print(f"{name}: at {restored.getTimeStamp():.2f} s the top brick is at {top}, {'equal in every bit' if same else 'DIFFERENT'}")
    if not same:
        sys.exit(1)
