#!/usr/bin/env python3
"""Writes the meshes of the robot arm (metres, z up, each in the frame of its link)."""

import math
import pathlib

import numpy
from numpy.typing import NDArray

type Points = NDArray[numpy.float64]

FOLDER = pathlib.Path(__file__).parent / "meshes"
SEGMENTS = 40


def loft(rings: list[Points]) -> tuple[Points, list[tuple[int, ...]]]:
    """Joins closed rings of equally many points, seen counter-clockwise from above, from the bottom to the top."""
    count = len(rings[0])
    faces: list[tuple[int, ...]] = [tuple(reversed(range(count))), tuple(range((len(rings) - 1) * count, len(rings) * count))]
    for ring in range(len(rings) - 1):
        for i in range(count):
            a, b = ring * count + i, ring * count + (i + 1) % count
            faces.append((a, b, b + count, a + count))
    return numpy.vstack(rings), faces


def circle(radius: float, z: float) -> Points:
    angles = numpy.arange(SEGMENTS) * 2 * math.pi / SEGMENTS
    return numpy.stack([radius * numpy.cos(angles), radius * numpy.sin(angles), numpy.full(SEGMENTS, z)], axis=1)


def turned(profile: list[tuple[float, float]]) -> tuple[Points, list[tuple[int, ...]]]:
    """A body of revolution about z through (radius, z), from the bottom to the top."""
    return loft([circle(radius, z) for radius, z in profile])


def slot(length: float, bottom: float, top: float, z: float, inset: float = 0.0) -> Points:
    """Outline around two circles that stand apart along x."""
    half = SEGMENTS // 2
    tilt = math.asin((bottom - top) / length)
    right = numpy.linspace(-math.pi / 2 + tilt, math.pi / 2 - tilt, half)
    left = numpy.linspace(math.pi / 2 - tilt, 3 * math.pi / 2 + tilt, half)
    x = numpy.concatenate([length + (top - inset) * numpy.cos(right), (bottom - inset) * numpy.cos(left)])
    y = numpy.concatenate([(top - inset) * numpy.sin(right), (bottom - inset) * numpy.sin(left)])
    return numpy.stack([x, y, numpy.full(SEGMENTS, z)], axis=1)


def bar(length: float, bottom: float, top: float, width: float, bevel: float) -> tuple[Points, list[tuple[int, ...]]]:
    """A bar between two round ends, bevelled, along x and `width` thick along z."""
    half = width / 2
    return loft([slot(length, bottom, top, -half, bevel), slot(length, bottom, top, -half + bevel),
                 slot(length, bottom, top, half - bevel), slot(length, bottom, top, half, bevel)])


def write(name: str, *parts: tuple[tuple[Points, list[tuple[int, ...]]], Points, tuple[float, float, float]]) -> None:
    """Parts are (points and faces, rotation whose rows are the images of the axes, place)."""
    lines, first = [f"# {name}, made by make_meshes.py"], 1
    for (points, faces), turn, place in parts:
        placed = points @ turn + numpy.array(place)
        lines += [f"v {x:.5f} {y:.5f} {z:.5f}" for x, y, z in placed]
        lines += ["f " + " ".join(str(first + i) for i in face) for face in faces]
        first += len(points)
    (FOLDER / f"{name}.obj").write_text("\n".join(lines) + "\n")


def rotation(*rows: tuple[int, int, int]) -> Points:
    return numpy.array(rows, float)


UPRIGHT = rotation((1, 0, 0), (0, 1, 0), (0, 0, 1))
TO_X = rotation((0, 1, 0), (0, 0, 1), (1, 0, 0))  # the body's z axis along x
TO_Y = rotation((0, 0, 1), (1, 0, 0), (0, 1, 0))  # the body's z axis along y
BAR_UP = rotation((0, 0, 1), (1, 0, 0), (0, 1, 0))  # a bar's length along z, its thickness along y
BAR_X = rotation((1, 0, 0), (0, 0, -1), (0, 1, 0))  # a bar's length along x, its thickness along y


def drum(radius: float, length: float, bevel: float) -> tuple[Points, list[tuple[int, ...]]]:
    half = length / 2
    return turned([(radius - bevel, -half), (radius, -half + bevel), (radius, half - bevel), (radius - bevel, half)])


def main() -> None:
    FOLDER.mkdir(exist_ok=True)
    write("base", (turned([(0.27, 0), (0.27, 0.035), (0.25, 0.055), (0.19, 0.075), (0.165, 0.12), (0.155, 0.22), (0.17, 0.25),
                           (0.17, 0.29), (0.16, 0.30)]), UPRIGHT, (0, 0, 0)))
    write("shoulder", (turned([(0.16, 0.005), (0.175, 0.02), (0.175, 0.07), (0.15, 0.10)]), UPRIGHT, (0, 0, 0)),
          (bar(0.13, 0.14, 0.125, 0.17, 0.02), rotation((0, 0, 1), (1, 0, 0), (0, 1, 0)), (0.07, 0, 0.07)),
          (drum(0.115, 0.25, 0.015), TO_Y, (0.15, 0, 0.20)))
    write("upper_arm", (bar(0.70, 0.105, 0.085, 0.09, 0.02), BAR_UP, (0, -0.175, 0)),
          (drum(0.105, 0.06, 0.01), TO_Y, (0, -0.15, 0)), (drum(0.085, 0.06, 0.01), TO_Y, (0, -0.15, 0.70)))
    write("elbow", (drum(0.095, 0.22, 0.015), TO_Y, (0, -0.01, 0)),
          (bar(0.10, 0.095, 0.085, 0.17, 0.02), rotation((0, 0, 1), (1, 0, 0), (0, 1, 0)), (0.0, 0, 0.0)),
          (turned([(0.075, -0.02), (0.09, 0.0), (0.09, 0.16), (0.08, 0.18)]), TO_X, (0.02, 0, 0.10)))
    write("forearm", (turned([(0.074, 0.005), (0.078, 0.02), (0.058, 0.30), (0.055, 0.38), (0.05, 0.39)]), TO_X, (0, 0, 0)),
          (bar(0.12, 0.05, 0.045, 0.035, 0.008), BAR_X, (0.38, 0.055, 0)),
          (bar(0.12, 0.05, 0.045, 0.035, 0.008), BAR_X, (0.38, -0.055, 0)))
    write("wrist", (drum(0.043, 0.072, 0.006), TO_Y, (0, 0, 0)),
          (turned([(0.036, 0), (0.040, 0.03), (0.040, 0.08), (0.036, 0.085)]), TO_X, (0, 0, 0)))


if __name__ == "__main__":
    main()
