"""What 4,096 rays into a pile of 300 bodies cost from Python: one call each, hits in bulk, and a table for numpy.

python bench_rays.py   (as `./zor bench rays` does)
"""

import statistics
import time

import numpy

import zor
import zorCollide
import zorSDK

ROUNDS = 15


def make_pile():
    simulation = zorSDK.Simulation()
    simulation.add(zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3())))
    shapes = (zorCollide.Box(zor.Vec3(0.2, 0.2, 0.2)), zorCollide.Sphere(0.2), zorCollide.Capsule(0.15, 0.2), zorCollide.Cylinder(0.2, 0.3))
    for i in range(300):
        body = zor.RigidBody(zorCollide.Geometry(shapes[i % 4]))
        body.setPosition(zor.Vec3(0.45 * (i % 6), 0.45 * (i // 6 % 6), 0.5 + 0.45 * (i // 36)))
        simulation.add(body)
    simulation.stepTo(2)
    return simulation


def main():
    simulation = make_pile()
    space, origin = simulation.getSpace(), zor.Vec3(1, 1, 5)
    side = numpy.arange(64) - 32
    x, y = numpy.meshgrid(0.02 * side, 0.02 * side)
    rows = numpy.column_stack([x.ravel(), y.ravel(), numpy.full(x.size, -1.0)])
    directions = zor.Vec3Vector(rows)
    cases = {
        "castRay, one by one": lambda: [space.castRay(origin, direction, 20).getDistance() for direction in directions],
        "castRays": lambda: [hit.getDistance() for hit in space.castRays([origin], directions, 20)],
        "castRayTable": lambda: numpy.asarray(space.castRayTable([origin], directions, 20).getDistances()),
    }
    expected = None
    times = {name: [] for name in cases}
    for _ in range(ROUNDS):  # in turns, so that all see the same machine
        for name, cast in cases.items():
            start = time.perf_counter()
            distances = cast()
            times[name].append(time.perf_counter() - start)
            expected = numpy.array(distances) if expected is None else expected
            assert (numpy.asarray(distances) == expected).all(), f"{name} answers something else"
    for name, measured in times.items():
        median = statistics.median(measured)
        print(f"{name:22} {1e3 * median:8.2f} ms  {1e6 * median / len(rows):6.2f} us a ray")


if __name__ == "__main__":
    main()
